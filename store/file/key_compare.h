// Comparison and length of the keys in the two index files.
//
// .I1 key (asset number): main part right-aligned, ".", subasset zero-padded, e.g.
// "   123.01"; length main length + subasset length + 1 (5 in old-layout files).
//
// .I2 key: one fixed-width field per letter of the company's sort order, then the asset
// number in the widest form of the company's format (9 bytes short format, 14 long).
//
//   LETTER    CURRENT WIDTH / ORDER       OLD WIDTH / ORDER
//   "L" "C"   10  natural                  2  bytewise
//   "A"       24  natural                 24  natural
//   "Y"        5  natural                  -
//   "P"        2  bytewise                 2  bytewise
//   "D"        8  bytewise                 2  bytewise
//   "0".."9"  20  natural ("1".."3" old)  20  natural
//   rest      as an .I1 key               bytewise (5 bytes)
//
// Natural fields are compared as texts cut at the field width and at the first NUL.
// Keys are passed as views of exactly key-length bytes; the caller keeps them alive for the
// call.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace nv {

// The short asset-number format is main length 6, subasset length 2, no flags; anything
// else (main length above 6, subasset length other than 2, letters allowed) is long.
[[nodiscard]] bool IsLongAssetNoFormat(int main_length, int subasset_length, int flags);

// .I1 key length: main + subasset + 1 (current layout), 5 (old layout).
uint32_t I1KeyLength(bool current_layout, int main_length, int subasset_length);
// .I2 key length for a sort order string.
uint32_t I2KeyLength(bool current_layout, std::string_view sort_order, bool long_format);

// Natural order of two texts cut at the first NUL.
[[nodiscard]] int CompareNaturalField(std::string_view a, std::string_view b);
// .I1 comparison: the part before the first "." in natural order, then the subasset number.
[[nodiscard]] int CompareI1Keys(std::string_view a, std::string_view b);
// Current-layout .I2 comparison walking the sort order. An empty sort order compares the
// whole key as an .I1 key.
[[nodiscard]] int CompareI2Keys(std::string_view a, std::string_view b,
                                std::string_view sort_order);
// Old-layout comparison; without a sort order the whole key is compared bytewise.
[[nodiscard]] int CompareOldKeys(std::string_view a, std::string_view b,
                                 std::string_view sort_order);

}  // namespace nv
