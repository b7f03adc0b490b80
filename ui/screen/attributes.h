// The attribute text of a field: a comma-separated list of items, each a keyword with an
// optional argument in parentheses, for example
//   "bmp(15),gdiplus(kelimg/bluebutton.png),msg(Define values for this field),xplus(5)"
// An argument may hold commas and nested parentheses ("h(a(b)c),d"). Every lookup reads
// the text afresh; attribute texts are short and written by us, so nothing is cached.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace nv {

// The argument of `keyword` in `attributes`: the text between its outer parentheses, ""
// when the keyword stands without one, nothing when it is absent. The keyword matches,
// ignoring case, only at the start of an item (blanks before it skipped), outside
// parentheses, and only when a comma, "(" or the end follows it. An argument whose
// parentheses never close runs to the end of the text.
std::optional<std::string> FindAttribute(std::string_view keyword, std::string_view attributes);

inline bool HasAttribute(std::string_view keyword, std::string_view attributes) {
  return FindAttribute(keyword, attributes).has_value();
}

// Numbers in arguments are decimal with an optional sign and blanks around them; anything
// else, or a value beyond kMaxAttributeNumber either way, counts as no number, so that
// layout arithmetic on screen coordinates cannot overflow.
inline constexpr int kMaxAttributeNumber = 32767;

// The argument of `keyword` as a number ("xplus(5)" gives 5); nothing when the keyword is
// absent or its argument is not a number.
std::optional<int> NumberAttribute(std::string_view keyword, std::string_view attributes);

// The argument of `keyword` as two numbers separated by `separator`: "bmp(40,20)" with ','
// gives {40, 20}; "group(100-120)" with '-' gives {100, 120}.
std::optional<std::pair<int, int>> NumberPairAttribute(std::string_view keyword,
                                                       std::string_view attributes, char separator);

// `text` as a number under the rule above.
std::optional<int> ParseAttributeNumber(std::string_view text);

}  // namespace nv
