// Windows-1252 text, the single-byte text of records and source files, to and from UTF-8
// (for display and JSON only; files keep their bytes).
//
// Bytes 0x00-0x7F and 0xA0-0xFF are the code points of the same value; 0x80-0x9F hold the
// Windows punctuation (0x80 is the euro sign U+20AC, 0x93/0x94 curly double quotes, ...).
// The five bytes that code page leaves undefined, 0x81, 0x8D, 0x8F, 0x90 and 0x9D, map to
// the C1 control code points of the same value, as Windows itself converts them; this way
// every byte string survives the trip to UTF-8 and back unchanged.
//
// From UTF-8, a character the code page cannot hold becomes "?", and so does every byte
// of a malformed sequence (overlong forms, surrogates, code points above U+10FFFF,
// truncated or stray continuation bytes).
#pragma once

#include <string>
#include <string_view>

namespace nv {

char32_t Cp1252ToCodePoint(unsigned char byte);
// The byte for a code point, or '?' when the code page has none.
char CodePointToCp1252(char32_t code_point);

std::string Cp1252ToUtf8(std::string_view bytes);
std::string Utf8ToCp1252(std::string_view utf8);

}  // namespace nv
