// Natural text order, used for the company list, code lists, index keys and note keys.
//
// Texts compare word by word (words separated by runs of blanks, leading blanks
// skipped), each word piece by piece (pieces separated by "-"); a text with words or
// pieces left over is larger. Within a piece:
//   - a run of digits compares as a number: the longer run is larger, runs of equal
//     length by their first differing digit (so "007" > "7");
//   - a "." right after such a run starts a fraction compared digit by digit, the longer
//     fraction larger when the shorter is its prefix ("1.5" > "1.10" > "1.1");
//   - other characters compare ignoring case; a digit or "." is smaller than any other
//     character, and the end of the text is smaller than any character.
// Texts equal ignoring case are then ordered by character code ("ABC" < "abc" < "abd").
#pragma once

#include <string_view>

namespace nv {

// Returns a negative number, zero or a positive number as a sorts before, equal to or
// after b.
[[nodiscard]] int CompareCodes(std::string_view a, std::string_view b);

// Strict weak ordering for containers kept in natural order.
struct CodeLess {
  bool operator()(std::string_view a, std::string_view b) const { return CompareCodes(a, b) < 0; }
};

}  // namespace nv
