#include "base/cp1252.h"

namespace nv {
namespace {

// Code points of bytes 0x80 to 0x9F; the undefined ones keep their own value.
constexpr char32_t kHighControls[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,  // 80-87
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,  // 88-8F
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,  // 90-97
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,  // 98-9F
};

void AppendUtf8(char32_t cp, std::string* out) {
  if (cp < 0x80) {
    *out += static_cast<char>(cp);
  } else if (cp < 0x800) {
    *out += static_cast<char>(0xC0 | (cp >> 6));
    *out += static_cast<char>(0x80 | (cp & 0x3F));
  } else {
    *out += static_cast<char>(0xE0 | (cp >> 12));  // the table holds nothing above U+FFFF
    *out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
    *out += static_cast<char>(0x80 | (cp & 0x3F));
  }
}

// Decodes one UTF-8 character at the start of s into *cp and returns its length, or 0
// when the start is malformed.
size_t DecodeUtf8(std::string_view s, char32_t* cp) {
  unsigned char lead = static_cast<unsigned char>(s[0]);
  size_t length;
  char32_t min;
  if (lead < 0x80) {
    *cp = lead;
    return 1;
  } else if (lead >= 0xC2 && lead <= 0xDF) {
    length = 2, min = 0x80, *cp = lead & 0x1F;
  } else if (lead >= 0xE0 && lead <= 0xEF) {
    length = 3, min = 0x800, *cp = lead & 0x0F;
  } else if (lead >= 0xF0 && lead <= 0xF4) {
    length = 4, min = 0x10000, *cp = lead & 0x07;
  } else {
    return 0;
  }
  if (s.size() < length) return 0;
  for (size_t i = 1; i < length; ++i) {
    unsigned char c = static_cast<unsigned char>(s[i]);
    if ((c & 0xC0) != 0x80) return 0;
    *cp = (*cp << 6) | (c & 0x3F);
  }
  if (*cp < min || *cp > 0x10FFFF || (*cp >= 0xD800 && *cp <= 0xDFFF)) return 0;
  return length;
}

}  // namespace

char32_t Cp1252ToCodePoint(unsigned char byte) {
  if (byte >= 0x80 && byte <= 0x9F) return kHighControls[byte - 0x80];
  return byte;
}

char CodePointToCp1252(char32_t code_point) {
  if (code_point < 0x80 || (code_point >= 0xA0 && code_point <= 0xFF)) {
    return static_cast<char>(code_point);
  }
  for (int i = 0; i < 32; ++i) {
    if (kHighControls[i] == code_point) return static_cast<char>(0x80 + i);
  }
  return '?';
}

std::string Cp1252ToUtf8(std::string_view bytes) {
  std::string out;
  out.reserve(bytes.size());
  for (char c : bytes) AppendUtf8(Cp1252ToCodePoint(static_cast<unsigned char>(c)), &out);
  return out;
}

std::string Utf8ToCp1252(std::string_view utf8) {
  std::string out;
  out.reserve(utf8.size());
  while (!utf8.empty()) {
    char32_t cp = 0;
    size_t length = DecodeUtf8(utf8, &cp);
    if (length == 0) {
      out += '?';
      utf8.remove_prefix(1);
    } else {
      out += CodePointToCp1252(cp);
      utf8.remove_prefix(length);
    }
  }
  return out;
}

}  // namespace nv
