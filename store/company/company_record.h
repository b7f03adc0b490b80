// The company record: the company's settings, stored as the block chain that starts at
// block 0 of the block file (.A). It begins with the block file's own counters, then
// tab-separated text fields, each followed by one tab (byte 9):
//
//   #   FIELD                       FORM ON DISK
//   1   block file counters         u32 highest record, u32 free head, u32 free count
//   2   separator                   one tab
//   3   version                     "v4.1.141/4.1"; not with the short format 6, 2, 0
//   4   asset number format         "f%d/%d/%d" main length, subasset length, flags; the same
//   5   Current Year End            "%2.2d%2.2d%4.4d" (month, day, year) or empty
//   6   months in current year      decimal, last 2 digits
//   7   reserved text               25
//   8   Company Name                40
//   9   EIN or SSN                  12
//   10  Last Closed                 as field 5
//   11  schedules                   letters, blank, blanks to 7 characters; then per
//                                   schedule and one more: type (2) and name (10); <= 236
//   12  Sort Order                  3
//   13  Business Category           decimal, last digit
//   14  Round Dollars               "Y" or "N"
//   15  Mid-Quarter Override        1
//   16  Global Loc/Cat Designation  1
//   17  number of user fields       "10"
//   18  user fields                 10 x (name 30, default value 20)
//   19  stored asset number         digits, "-" and "." of its text form, leading blanks and
//                                   zeros dropped, at most key length characters
//   20  user permissions            whole text
//   21  Misc Codes                  10
//   22  logging flags               "LOGFLAGS(%d)"
//   23  reserved amounts            "0", "0"
//
// Texts are written trimmed; a text longer than its width keeps its last width characters,
// a number longer than its width its last digits. The first block carries marker 0xE5 when
// fields 3 and 4 are there and 0xE3 with the short format; every block of the company record has
// 145 in its block-length field.
//
// Records of the old layout (first block marker 0xE0, 142 data bytes a block) are read and
// always written back in the current layout; their field list is given in
// company_record.cpp beside the reader.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/date.h"
#include "store/asset/asset_no_format.h"
#include "store/asset/asset_record.h"
#include "store/codes/user_fields.h"
#include "store/file/record_fields.h"
#include "store/schedule/schedule_entry.h"

namespace nv {

struct UserFieldDefinition {
  std::string name;           // at most 30 characters
  std::string default_value;  // at most 20 characters
  friend bool operator==(const UserFieldDefinition&, const UserFieldDefinition&) = default;
};

inline constexpr int32_t kLoggingNone = 0;
inline constexpr int32_t kLoggingPartial = 10;         // bits 1 and 3
inline constexpr int32_t kLoggingDetailed = 0xFFFFFF;  // bits 0 to 23

struct NvCompanyRecord {
  std::string number;   // Company No, 1 to 8 characters, upper case; not stored in the record
  std::string version;  // version field as read ("" when absent); written as the program's
  NvAssetNoFormat asset_no_format;
  Date current_year_end;
  int months_in_year = 12;  // 1 .. 12
  std::string reserved;     // 25, kept and written back
  std::string name;         // 40
  std::string ein;          // 12
  Date last_closed;
  std::string schedule_letters;          // letters of the defined schedules, in order
  std::vector<ScheduleEntry> schedules;  // at most 25, in the order of the letters
  std::string sort_order;                // 3: "L", "C", "A", "P", "D", "Y", "0".."9"
  int business_category = 0;             // 1 Proprietorship .. 4 C Corp
  bool round_dollars = false;
  char mid_quarter_override = ' ';  // blank, "Y", "Q", "E"
  char global_loc_cat = 'N';        // "C", "L", "B", "N"
  std::array<UserFieldDefinition, kUserFieldCount> user_fields;
  std::string stored_asset_no;  // kept and written back
  std::string permissions;      // "NAME:L|*:L", any length
  std::string misc_codes;       // 10
  int32_t logging_flags = kLoggingPartial;

  // The schedule entry of a letter, or nullptr.
  const ScheduleEntry* FindSchedule(char letter) const;

  friend bool operator==(const NvCompanyRecord&, const NvCompanyRecord&) = default;
};

// The block file's own counters, kept in the first 12 bytes of the company record.
struct BlockFileCounters {
  uint32_t highest_record = 0;
  uint32_t free_head = 0;
  uint32_t free_count = 0;
  friend bool operator==(const BlockFileCounters&, const BlockFileCounters&) = default;
};

// Field widths of the record.
inline constexpr size_t kReservedTextWidth = 25;
inline constexpr size_t kCompanyNameWidth = 40;
inline constexpr size_t kEinWidth = 12;
inline constexpr size_t kSortOrderWidth = 3;
inline constexpr size_t kUserFieldNameWidth = 30;
inline constexpr size_t kUserFieldDefaultWidth = 20;
inline constexpr size_t kMiscCodesWidth = 10;
// The letters and their blank take at least this many characters of the schedules field.
inline constexpr size_t kScheduleLettersWidth = 7;
// Counters (3 x u32), then the tab that ends them.
inline constexpr size_t kCountersBytes = 3 * 4;
inline constexpr size_t kOldCountersBytes = 3 * 2;
// Open reads at most ten blocks of the record: 10 x 138 data bytes (1,451-byte buffer).
inline constexpr size_t kMaxCompanyRecordBlocks = 10;

// The schedules field: letters, a blank, blanks up to 7 characters; then for each
// schedule and one more entry the type (2) and the name (10), padded with blanks.
std::string FormatSchedulesField(const NvCompanyRecord& record);
// Fills schedule_letters and schedules from the field; entries without a letter are dropped.
void ParseSchedulesField(std::string_view field, NvCompanyRecord* record);

// The current layout's bytes of a record; version and format fields unless the format is
// the short one (NvAssetNoFormat::NeedsRecordFields), the version always the program's own.
std::string SerializeCompanyRecord(const NvCompanyRecord& record,
                                   const BlockFileCounters& counters);

// Result of parsing a record's bytes (the data parts of its blocks, in order).
struct ParsedCompanyRecord {
  NvCompanyRecord record;
  BlockFileCounters counters;
  bool newer_version = false;  // the version field names a version after this program's
};

// Parses the current layout; the record's number is left empty (it comes from the file
// name). Missing trailing fields keep their defaults, so a record cut short by a damaged
// chain still yields what it holds.
ParsedCompanyRecord ParseCompanyRecord(std::string_view bytes);
// Parses the old layout (first block marker 0xE0); see company_record.cpp for its fields.
ParsedCompanyRecord ParseOldCompanyRecord(std::string_view bytes);
// The old layout's bytes of a record (for tests and for tools that make old companies).
std::string SerializeOldCompanyRecord(const NvCompanyRecord& record,
                                      const BlockFileCounters& counters);

// True when a version text "MAJOR.MINOR.BUILD[/...]" names a version after this program's.
[[nodiscard]] bool IsNewerVersion(std::string_view version);

// Months from Last Closed to Current Year End: the difference of their months, plus 12
// when below 1, and 12 when still outside 1 to 12.
[[nodiscard]] int MonthsInCurrentYear(const Date& last_closed, const Date& current_year_end);

// Moves a Current Year End that is not after Last Closed, or more than a year after it,
// to Last Closed plus one year. An empty or invalid Last Closed leaves it as it is.
void CorrectYearEnd(NvCompanyRecord* record);

// The letters of the schedule table's entries, in table order.
std::string ScheduleLettersOf(const std::vector<ScheduleEntry>& schedules);

// The values a new record derives from what was filled in: the letter string from the
// schedule table, the year end corrected against Last Closed, the months of the current
// year, the asset-number format within its limits.
void InitializeDerivedValues(NvCompanyRecord* record);

// The form of the company's asset records.
AssetRecordFormat AssetRecordFormatOf(const NvCompanyRecord& company);

}  // namespace nv
