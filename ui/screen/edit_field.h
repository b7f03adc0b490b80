// The rules of edit fields (kind 2): how much text they take, which characters, and how
// their value is shown.
#pragma once

#include <bitset>
#include <optional>
#include <string>
#include <string_view>

#include "ui/screen/field_description.h"

namespace nv {

// The most characters the field takes: width + 1, or n + 1 under maxlen(n); nothing under
// "notextlimit".
std::optional<size_t> TextLimit(const FieldDescription& field);

// What a field does to each character typed into it. Texts are Windows-1252 bytes.
//   upr          printable characters are turned into upper case (letters with accents
//                too, as the Windows edit control does for this code page)
//   chars(LIST)  only the listed characters are taken: single characters and ranges, for
//                example "chars(0-9A-Za-z-.)". A character, "-" and another character
//                make a range (one written backwards is read forwards); any other "-"
//                stands for itself
//   numeric      (outside radio groups) the characters of a number, "0-9-.,", unless
//                chars gives a list of its own
// Upper case comes first, so "upr,chars(A-Z)" takes "a" as "A".
class InputFilter {
 public:
  explicit InputFilter(std::string_view attributes);

  // The character as the field takes it, or nothing when it refuses it. Control
  // characters (below 0x20, and 0x7F) are keys, not text: they pass unchanged.
  std::optional<char> Filter(char c) const;
  // The whole text filtered, or nothing when any character is refused (a paste).
  std::optional<std::string> FilterText(std::string_view text) const;

  bool upper_case() const { return upper_case_; }
  bool restricted() const { return restricted_; }

 private:
  bool upper_case_ = false;
  bool restricted_ = false;
  std::bitset<256> allowed_;
};

// The character list of chars(LIST) as a set of bytes.
std::bitset<256> ParseCharacterList(std::string_view list);

// Windows-1252 upper case of one byte.
char UpperCaseCp1252(char c);

// The field's data as the field shows it:
//   dollar     an amount with two decimals, right-aligned in the field's width
//   float(n)   a number with n decimals (0 to 15)
//   int, rjust the text right-aligned in the field's width
// A blank value, or one that is not a number where a number is wanted, is shown as it
// stands.
std::string FormatForDisplay(const FieldDescription& field);
// True when the field's format aligns its text to the right.
bool IsRightAligned(const FieldDescription& field);

}  // namespace nv
