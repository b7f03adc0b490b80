// The two index keys of an asset (current layout).
//
// .I1: the asset number's text form in key length bytes (main length + subasset length + 1).
//
// .I2: one fixed-width piece per letter of the company's sort order, then the asset number's
// text form; zero bytes fill the key to the .I2 key length (store/file/key_compare.h
// I2KeyLength), whose count for the number is 9 with the short asset-number format and 14
// with the long one.
//
//   LETTER    PIECE                                                       WIDTH
//   "L" "C"   Location / Category "%-10.10s", "0" when blank                 10
//   "A"       Acct No./Grp. "%-24.24s"                                      24
//   "P"       Property Code "%2.2s"                                          2
//   "D"       "%4.4d%2.2d%2.2d" (year, month, day): Purchase Date when        8
//             New/Used/Trade is "T", else Date in Service
//   "Y"       first schedule's SL Life, or its Useful Life when that is       5
//             zero: "%2d-%d" (years, months), "%2d" with 0 months; blanks
//             after it or cut to 5
//   "1".."9"  User Field 1 .. 9 "%-20.20s"; "0" User Field 10                20
//   other     nothing
#pragma once

#include <string>

#include "store/asset/asset.h"
#include "store/asset/asset_record.h"

namespace nv {

std::string AssetNumberKey(const NvAsset& asset, const AssetRecordFormat& format);
std::string AssetSortKey(const NvAsset& asset, const AssetRecordFormat& format);

}  // namespace nv
