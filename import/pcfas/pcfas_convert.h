// From a MASTER.ASC record (import/pcfas/pcfas_source.h) to an NvAsset with one schedule
// per schedule letter of the company. Each schedule takes one PC/FAS book:
//
//   SCHEDULE LETTER   BOOK
//   T                 IRS
//   B                 internal book
//   S                 state
//   A                 AMT
//   any other         ACE
//
// PC/FAS method letters (first character of book field 1) and what they become:
//
//   LETTER          DEPR. METHOD                OTHER SETTINGS
//   I               as A before 7/31/1986,      "H" added to Asset Type first
//                   else as Z
//   L               as A before 7/31/1986,      "A" added to Asset Type and listed first
//                   else as Z
//   A, T            1 ACRS                      Convention "1", Sec. 179 from book field 4
//   M               1 ACRS                      as A; SL Life = Useful Life; the ACRS class
//                                               from the straight-line life (below)
//   C               by book field 2: 100 16,    Salvage Value from book field 4
//                   125 8, 150 9, 200 10,
//                   other 12
//   D               as C                        Convention "3", salvage from book field 4
//   S               2 Straight Line             salvage from book field 4
//   H               2                           Convention "3", salvage from book field 4
//   F               2                           Convention "4", salvage from book field 4
//   N               13 N/A
//   B, Z            3 MACRS                     MACRS settings
//   U               14 AMT                      MACRS settings
//   V               3 MACRS                     MACRS settings; SL Life = Useful Life; the
//                                               class life rule (below)
//   O, 0-9, a-z     12 OTHER
//   anything else   13 N/A
//
// ACRS and MACRS methods are listed ("L" added to Asset Type) when book field 3 is "L",
// and amortized when general field 3 is "A". MACRS settings: Convention "M" for a life
// over 26 years or 4797 Type 50, else "Q" when general field 32 begins with 0x9A or 0x92,
// else "Y"; Sec. 179 from book field 4.
//
// "M" class from the straight-line life: 12 years is 5; 25 or 35 years is 18 for real
// property, else 10; 45 years is 18 for real property, else 15.
// "V" class life: kept when its whole years are 3, 5, 7, 10, 15, 20, 25 or 39, or it is
// 27 1/2 or 31 1/2 years; otherwise 5 years below 10 whole years, 10 below 20, else 20.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "base/date.h"
#include "import/pcfas/pcfas_source.h"
#include "store/asset/asset.h"
#include "store/asset/asset_no_format.h"

namespace nv {

// The matching panel's items: sources 101 .. 111 (the header's labels), destinations
// 201 .. 204.
inline constexpr int kPcFasAccountItem = 201;
inline constexpr int kPcFasUserField1Item = 202;
inline constexpr int kPcFasUserFieldItems = 3;
inline constexpr std::array<const char*, 4> kPcFasDestinationTexts = {
    "Account No.", "User Field 1", "User Field 2", "User Field 3"};
// The record field that source item 101 + i names.
inline constexpr std::array<int, kPcFasLabelCount> kPcFasSourceItemFields = {20, 6,  14, 15, 16, 21,
                                                                             17, 28, 29, 30, 31};

// The record field of a source item, or -1 for 0 (unmatched) and ids out of range.
int PcFasSourceItemField(int item);

// What the conversion needs to know of the company and of the run.
struct PcFasConversion {
  PcFasLayout layout = PcFasLayout::kShort;
  std::string schedule_letters;
  NvAssetNoFormat asset_no_format;
  Date last_closed;
  int account_field = -1;  // -1: unmatched
  std::array<int, kPcFasUserFieldItems> user_field_fields = {-1, -1, -1};
};

// The book a schedule letter takes (PcFasBook).
int PcFasBookOfLetter(char letter);

// The asset of one record. Fields the record does not have count as empty.
void ConvertPcFasRecord(const std::vector<std::string>& fields, const PcFasConversion& conversion,
                        NvAsset* asset);

// Amounts and whole numbers as PC/FAS writes them: blanks around, an optional sign, the
// leading number of the text; anything else (and a number out of range) is 0.
double PcFasAmount(std::string_view text);
int PcFasWholeNumber(std::string_view text);
// The last day of the month that a "MMYY" text names; the empty date when it names none.
Date PcFasThroughDate(std::string_view mmyy);

}  // namespace nv
