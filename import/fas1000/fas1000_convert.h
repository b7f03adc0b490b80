// From FAS 1000/2000 source records (fas1000_source.h) to NORVANE assets.
//
// Books: the book digit of a bookdata line names the schedule that receives it.
//
//   DIGIT  FAS BOOK   SCHEDULE  INVESTMENT-CREDIT BOOK
//   "0"    IRS        T         yes
//   "1"    internal   B         no
//   "2"    state      S         no
//   "3"    AMT        A         yes
//   "5"    ACE        C         yes
//
// Method codes (bookdata columns 36-37); the Useful Life is the line's in every row but
// "NO" and "RR":
//
//   CODE            DEPR. METHOD                                  CONVENTION   SL LIFE
//   MF, MT          AMT book 14; else 33 when the life is at      "Q" with "M" in
//                   most 10-0 and the percentage 150; else 3      column 371, else "Y"
//   AD              AMT book 14; else 3                           as MF        the life
//   AT              1                                             "1"
//   SA, ST          1                                             "1"          the life
//   SL, SF          2                                             "1"
//   SH, SD          2                                             "3"
//   DB              by the percentage: 100 -> 16, 125 -> 8,       "2"
//                   150 -> 9, other -> 10; without "S" in
//                   column 102, 8, 9, 10 become 4, 5, 6
//   DH, DD          as DB                                         "3"
//   YS              7                                             "1"
//   YH, YD          7                                             "3"
//   RV              2                                             "4"
//   OC              12                                            "1"
//   NO              13 (N/A)
//   RR              the asset's Tax schedule as it stands, whole
//   other           the schedule stays N/A
//
// Property type letters (assetgen column 26):
//
//   LETTER  4797 TYPE  ASSET TYPE GAINS                  OTHER
//   A                  "AL" ("L" in the internal book)
//   C, E, R 50
//   F       50         "F"
//   H       50         "H"
//   Q                  "L"
//   S       50         "L"
//   Z                                                    Amortized
//
// Real property (4797 Type 50) under a half-year or mid-quarter convention with a Useful
// Life over 26 years 0 months takes the mid-month convention "M".
#pragma once

#include <string>
#include <vector>

#include "import/fas1000/fas1000_source.h"
#include "store/asset/asset.h"
#include "store/asset/asset_no_format.h"

namespace nv::fas1000 {

// The source items of the field matching panel, and its destinations.
inline constexpr int kSourceGlCode = 101;
inline constexpr int kSourcePoNumber = 102;
inline constexpr int kSourceVendor = 103;
inline constexpr int kSourceSerial = 104;
inline constexpr int kSourceCompanyAssetNo = 105;
inline constexpr int kSourceWarranty = 106;
inline constexpr int kSourceCustodian = 107;
inline constexpr int kSourceClassLife = 108;
inline constexpr int kSourceUserField1 = 109;  // to 113, "FAS User Field 1" to 5
inline constexpr int kDestinationAccount = 201;
inline constexpr int kDestinationUserField1 = 202;  // to 204, "User Field 1" to 3

inline constexpr size_t kAccountWidth = 24;
inline constexpr size_t kUserFieldWidth = 20;
inline constexpr int kMatchedUserFields = 3;

// What the conversion needs of the company and of the matching.
struct ConversionSettings {
  std::string schedule_letters;  // the company's
  NvAssetNoFormat asset_no_format;
  int account_source = 0;                           // source id matched to 201, 0 when none
  int user_field_sources[kMatchedUserFields] = {};  // source ids matched to 202 to 204
};

// A bookdata line that gave the asset nothing, and why.
struct SkippedBook {
  long line = 0;
  std::string reason;
};

// The schedule letter of a book digit; 0 for a digit that names no book imported.
char BookLetter(char digit);

// The text of a source item for a destination `width` characters wide: the item's columns
// without blanks at either end, cut to the width; the class life gains a "-" after its
// first two digits ("0700" becomes "07-00"). Empty without a label line.
std::string SourceItemText(int source, const FasAsset& asset, size_t width);

// The asset of one source record. Book lines that give nothing are listed in *skipped.
NvAsset ConvertAsset(const FasAsset& source, const ConversionSettings& settings,
                     std::vector<SkippedBook>* skipped);

}  // namespace nv::fas1000
