// The whole-company text record: one asset per record, the layout that the text-file export
// writes and the text importer reads back. The export writes it; the importer reads it; both
// walk this one table, so that a field cannot be added, moved or widened on one side only.
//
// A record, in order:
//   1  the five slot letters                                  text     11
//   2  per slot 1 to 5: Depreciable Basis, ITC and the two further amounts
//                                                             amount   11 each
//   3  Asset No.                                              number   company's key length
//   4  Desc. 30, Location 3, Category 3, Acct No./Grp. 24     text
//   5  Cash and Notes, Trade In                               amount   11
//   6  Purchase Date, Date in Service                         date     8
//   7  New/Used/Trade                                         char     1
//   8  Prior Short Years                                      integer  2
//   9  Property Code                                          text     2
//  10  4797 Type                                              integer  2
//  11  User Field 1 to 5                                      text     20 each
//  12  per slot 1 to 5, the schedule block:
//        Depr. Method (integer 2), listed flag (flag 1), Amortized (flag 1), Asset Type
//        without its first "L" (text 4), Business Percent (integer 3), Useful Life and SL
//        Life (life 5), Substitute Basis and Subst. ITC Basis (amount 11), ITC Code
//        (integer 1), Convention (char 1), Sec. 179 Expense, Prior Allowd Dpr, Prior
//        Allowble Dpr, Bonus Depr, Salvage Value, Current Depr (amount 11)
//  13  Disposal Code (char 1), Transferred To (number; Traded To for code "E"), Amount
//      Disposed (amount 11), Disposal Date (date 8), Sale Amount (amount 11)
//
// Slot n belongs to the n-th slot letter. What the record cannot carry: user fields 6 to 10,
// Asset Codes, Misc Codes and State, Am. Code Section, ITC Percent and ITC Bas Red Pct, the
// extra amount, pauses, more than five schedules; Location and Category beyond 3 characters,
// Asset Type beyond 4, amounts that need more than 11 characters, and the century of a date
// outside 1930 to 2029 (years are written with two digits).
#pragma once

#include <span>
#include <string_view>
#include <variant>

#include "store/asset/asset.h"

namespace nv {

enum class TextFieldKind {
  kText,
  kAmount,
  kInteger,
  kFlag,       // "Y" or "N"
  kDate,       // MM/DD/YY
  kLife,       // "YY   " or "YY-MM"
  kCharacter,  // one character
  kAssetNumber,
};

// What a field holds beyond a plain member of the asset or of a slot's schedule.
enum class TextFieldRole {
  kMember,        // the member named by the field
  kSlotLetters,   // the five slot letters
  kUserField,     // user field `index`
  kListedFlag,    // "Y" when the slot's Asset Type holds "L"
  kAssetType,     // the slot's Asset Type without its first "L"
  kTransferredTo  // Transferred To, or Traded To when the Disposal Code is "E"
};

using AssetTextMember =
    std::variant<std::monostate, std::string NvAsset::*, double NvAsset::*, Date NvAsset::*,
                 char NvAsset::*, int NvAsset::*, NvAssetNo NvAsset::*>;
using ScheduleTextMember =
    std::variant<std::monostate, std::string NvAssetSchedule::*, double NvAssetSchedule::*,
                 int NvAssetSchedule::*, bool NvAssetSchedule::*, char NvAssetSchedule::*,
                 YearsMonths NvAssetSchedule::*>;

struct TextRecordField {
  std::string_view name;
  TextFieldKind kind;
  int width;  // characters; kAssetNumberWidth: the company's asset-number key length
  TextFieldRole role = TextFieldRole::kMember;
  int slot = -1;  // 0 to 4 for a field of a slot's schedule, -1 for the asset's own
  int index = 0;  // user field index
  AssetTextMember asset_member = {};
  ScheduleTextMember schedule_member = {};
  bool block_start = false;  // the Depr. Method that opens a slot's schedule block
};

inline constexpr int kTextRecordSlots = 5;
inline constexpr int kTextRecordUserFields = 5;
inline constexpr int kTextAmountWidth = 11;
inline constexpr int kAssetNumberWidth = 0;
// Longest record, line end included, that the importer reads as one line.
inline constexpr size_t kTextRecordMaxLength = 1200;

// Every field of a record, in order.
std::span<const TextRecordField> TextRecordLayout();

}  // namespace nv
