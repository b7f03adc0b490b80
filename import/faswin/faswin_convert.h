// From FAS for Windows source records (faswin_source.h) to NORVANE assets, in both forms:
// the WFA files of a whole company, and the CSV export of one book.
//
// FAS books (book numbers 0 to 6; matching items 101 to 107): Tax, Internal Book, State,
// AMT, ACE, Book 6, Book 7. The book panel gives each the letter of its schedule.
//
// Method codes (the first 2 characters of the method), WFA form; the percentage is the
// book line's, the mid-quarter mark "Q" when the line's mark begins with "1", else "Y":
//
//   CODE        DEPR. METHOD                                CONVENTION        SL LIFE
//   MF, MT      14 in FAS book 3 (AMT), else 3              the mid-quarter mark
//   AD          as MF                                       the mark          the life
//   AT          1                                           "1"
//   SA, ST      1                                           "1"               the life
//   SL          2                                           "2"
//   SF          2                                           "1"
//   SH, SD      2                                           "3"
//   DB, DH, DD  percentage 100 -> 16, 125 -> 8, 150 -> 9,   "1", "3", "2"
//               other -> 10
//   DC, DI, DE  percentage 100 -> 16, 125 -> 4, 150 -> 5,   "1", "3", "2"
//               other -> 6
//   YS, YH, YD  7                                           "1", "3", "2"
//   RV          2                                           "4"
//   OC          12                                          "1"
//   NO          13 (N/A); no Useful Life
//   other       the schedule stays N/A; nothing is set
//
// CSV form: the same table, but the MACRS codes MA, MF, MT, MI, MR (and AD, SB with the
// SL Life) give 33 with percentage 150 (14 in a schedule of type "A"), else 3, always
// with Convention "Y"; the Useful Life is "Estimated Life" whatever the code.
//
// Property type letters (both forms; WFA asset field 5 / 3, CSV "Property Type"):
//
//   LETTER   4797 TYPE  ASSET TYPE GAINS                  OTHER
//   A                   "AL" ("L" in FAS book 1, WFA)
//   C, E, R  50
//   F        50         "F"
//   H        50         "H"
//   Q                   "L"
//   S        50         "L"
//   Z                                                     Amortized
//
// Real property (4797 Type 50) under the half-year or mid-quarter convention with a Useful
// Life over 26 years 0 months takes the mid-month convention "M".
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/ascii.h"
#include "import/faswin/faswin_source.h"
#include "store/asset/asset.h"
#include "store/asset/asset_no_format.h"
#include "store/codes/account_groups.h"

namespace nv::faswin {

// The data-field panel's items.
inline constexpr int kSourceAssetAccount = 101;        // "G/L Asset Acct."
inline constexpr int kSourceAccumulatedAccount = 102;  // "G/L Accum Acct."
inline constexpr int kSourceExpenseAccount = 103;      // "G/L Expense Acct."
inline constexpr int kSourceUserField1 = 111;          // to 115, "FAS User Field 1" to 5
inline constexpr int kSourceItems = 15;                // 101 to 115
inline constexpr int kDestinationAccount = 201;        // "Account No./Group"
inline constexpr int kDestinationUserField1 = 202;     // to 211, "User Field 1" to 10
inline constexpr int kMatchedUserFields = 10;
inline constexpr int kBookItem0 = 101;  // FAS book 0 ("Tax"); to 107

inline constexpr size_t kAccountWidth = 24;
inline constexpr size_t kUserFieldWidth = 20;
inline constexpr size_t kDescriptionWidth = 30;
inline constexpr size_t kLocationWidth = 10;
inline constexpr size_t kCsvCategoryWidth = 10;

// The label of a data-field source item in the panel, and the label a user field takes
// from it in the CSV form with the CSV column it reads there.
struct SourceItem {
  int id;
  const char* panel_text;
  const char* csv_label;
  const char* csv_column;
};
extern const std::array<SourceItem, kSourceItems> kSourceItemTable;
const SourceItem* FindSourceItem(int id);

// The names of the FAS books, by book number.
extern const std::array<const char*, kFasBooks> kFasBookNames;

// What the person matched in the data-field panel.
struct FieldSources {
  int account = 0;                                    // source id matched to 201, 0 when none
  std::array<int, kMatchedUserFields> user_fields{};  // source ids matched to 202 to 211
};

// ---------------------------------------------------------------------------------------
// WFA form

struct WfaSettings {
  WfaLayout layout = WfaLayout::kNewer;
  std::string schedule_letters;  // the company's
  NvAssetNoFormat asset_no_format;
  std::array<char, kFasBooks> book_letters{};  // the schedule of each FAS book; 0 when none
  FieldSources sources;
  bool delete_disposed = false;
  Date last_closed;
};

// The status letter of an asset (older layout: asset field 3; newer: chld.wfa field 43),
// 0 when it has none.
char WfaStatus(const WfaAsset& asset, WfaLayout layout);
// Why the asset is not copied (inactive; disposed on or before Last Closed when old
// disposals are deleted); nullopt when it is.
std::optional<std::string> WfaLeaveOutReason(const WfaAsset& asset, const WfaSettings& settings);

// The text of a data-field source item for an asset; nullopt for the items that the WFA
// files do not carry (only the two G/L accounts are in them).
std::optional<std::string> WfaSourceText(int source, const WfaAsset& asset, WfaLayout layout);

// The asset of one WFA record with its book lines. Acct No./Grp. is the matched text; the
// caller turns it into an account group (AccountGroupCode). Notes on what could not be
// carried are appended to *notes.
NvAsset ConvertWfaAsset(const WfaAsset& source, const WfaSettings& settings,
                        std::vector<std::string>* notes);

// The asset's G/L asset and accumulated depreciation accounts (fields 23, 24 / 14, 15).
std::array<std::string, 2> WfaAccounts(const WfaAsset& asset, WfaLayout layout);

// The account group for an asset: looked up or added with the two accounts, each given
// twice (asset, asset, accumulated, accumulated), under the Acct No./Grp. text as the
// preferred code. Returns the group's code; the text itself when neither account is
// given or no group could be added.
std::string AccountGroupCode(std::vector<AccountGroup>* groups, std::string_view account_text,
                             const std::array<std::string, 2>& accounts);

// ---------------------------------------------------------------------------------------
// CSV form

// The field numbers of the columns the conversion reads, looked up once per file.
struct CsvColumns {
  explicit CsvColumns(const CsvBook& book);
  int system_no, activity_code, disposal_date, description, class_, acquisition_date, location,
      disposal_method, cash_proceeds, non_cash_proceeds, depreciation_percent, itc_option,
      acquisition_value, depreciation_method, estimated_life, section_179_qualified,
      section_179_bonus, current_accum_depr, current_ytd_depr, property_type, k168_percent,
      k168_allowance, asset_account, accumulated_account;
  std::array<int, kSourceItems> sources{};  // the column of each source item, 101 to 115
};

struct CsvSettings {
  char schedule = 'T';        // the chosen schedule's letter
  std::string schedule_type;  // its type code ("A" for AMT)
  std::string schedule_letters;
  NvAssetNoFormat asset_no_format;
  FieldSources sources;
  bool delete_disposed = false;
  Date last_closed;
};

// One data line, its values by column.
class CsvRow {
 public:
  CsvRow(const CsvColumns& columns, const CommaRecord& record)
      : columns_(columns), record_(record) {}
  std::string_view Get(int CsvColumns::*column) const {
    return TrimBlanks(record_.Field(columns_.*column));
  }
  std::string_view Source(int id) const;
  long line() const { return record_.line; }

 private:
  const CsvColumns& columns_;
  const CommaRecord& record_;
};

// Why the line is not imported: no valid asset number, or an old disposal to delete.
std::optional<std::string> CsvLeaveOutReason(const CsvRow& row, const CsvSettings& settings);

// Sets an asset from a line: the general fields always, Cash and Notes and the disposal
// amount only for a new asset, and the chosen schedule cleared and set.
void ApplyCsvRow(const CsvRow& row, const CsvSettings& settings, bool is_new, NvAsset* asset);

}  // namespace nv::faswin
