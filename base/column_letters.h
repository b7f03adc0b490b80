// Spreadsheet-style column names for a column index from 0: "A" to "Z" are 0 to 25, then
// "AA" to "ZZ" are 26 to 701. Nothing beyond two letters is used.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace nv {

inline constexpr int kColumnCount = 26 + 26 * 26;

// The name of the column; empty when index is outside 0 to kColumnCount - 1.
std::string ColumnLetters(int index);

// The index of a name of one or two letters, either case; nullopt for anything else.
std::optional<int> ColumnIndex(std::string_view letters);

}  // namespace nv
