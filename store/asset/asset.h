// NvAsset: one fixed asset of a company, its general data and, per schedule (book) of the
// company, its depreciation data (NvAssetSchedule), with its depreciation pauses
// (NvAssetPauseDeprInfo). Amounts are doubles in dollars. Widths in the comments are the
// widths that the asset record keeps (store/asset/asset_record.h).
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/date.h"
#include "store/asset/asset_no.h"

namespace nv {

// Depreciation methods (Depr. Method).
inline constexpr int kMethodAcrs = 1;
inline constexpr int kMethodStraightLine = 2;
inline constexpr int kMethodMacrs = 3;
inline constexpr int kMethodDb125 = 4;
inline constexpr int kMethodDb150 = 5;
inline constexpr int kMethodDb200 = 6;
inline constexpr int kMethodSyd = 7;
inline constexpr int kMethodDb125Sl = 8;
inline constexpr int kMethodDb150Sl = 9;
inline constexpr int kMethodDb200Sl = 10;
inline constexpr int kMethodSydSl = 11;
inline constexpr int kMethodOther = 12;
inline constexpr int kMethodNa = 13;  // the schedule is not used for this asset
inline constexpr int kMethodAmt = 14;
inline constexpr int kMethodEAndP = 15;
inline constexpr int kMethodDb100 = 16;
inline constexpr int kMethodAcrsListedSl = 21;
inline constexpr int kMethodMacrsListedSl = 23;
inline constexpr int kMethodMacrs150Db = 33;

struct DeprMethodEntry {
  int method;
  const char* name;
};
inline constexpr std::array<DeprMethodEntry, 19> kDeprMethods = {{
    {kMethodAcrs, "ACRS"},
    {kMethodStraightLine, "Straight Line"},
    {kMethodMacrs, "MACRS"},
    {kMethodDb125, "125% DB"},
    {kMethodDb150, "150% DB"},
    {kMethodDb200, "200% DB"},
    {kMethodSyd, "SYD"},
    {kMethodDb125Sl, "125% DB-SL"},
    {kMethodDb150Sl, "150% DB-SL"},
    {kMethodDb200Sl, "200% DB-SL"},
    {kMethodSydSl, "SYD-SL"},
    {kMethodOther, "OTHER"},
    {kMethodNa, "N/A"},
    {kMethodAmt, "AMT"},
    {kMethodEAndP, "E & P"},
    {kMethodDb100, "100% DB"},
    {kMethodAcrsListedSl, "ACRS Lstd SL"},
    {kMethodMacrsListedSl, "MACRS Lstd SL"},
    {kMethodMacrs150Db, "MACRS 150% DB"},
}};

// Conventions, and other one-letter codes with their names.
struct CodeName {
  char code;
  const char* name;
};
inline constexpr std::array<CodeName, 11> kConventions = {{
    {'M', "Mid Month"},
    {'Q', "Mid Quarter"},
    {'Y', "Half Year"},
    {'1', "Actual Months"},
    {'2', "1st 6 Mo/Full Yr"},
    {'3', "Six Months"},
    {'4', "Use Adj Basis"},
    {'5', "Full Year"},
    {'6', "Month After Date Placed in Service"},
    {'7', "Month Placed in Service"},
    {'B', "20% Bonus Depr"},
}};
// Letters of Asset Type.
inline constexpr std::array<CodeName, 5> kAssetTypes = {{
    {'A', "Auto"},
    {'F', "Farm Pty"},
    {'H', "Low Income Housing"},
    {'I', "Indian Resvtn Pty"},
    {'L', "Listed Pty"},
}};
// Disposal Code; blank (or "N", which the record stores as blank) is not disposed.
inline constexpr char kDisposalNone = ' ';
inline constexpr char kDisposalAbandoned = 'A';
inline constexpr char kDisposalExchanged = 'E';
inline constexpr char kDisposalTransferred = 'T';
inline constexpr char kDisposalSold = 'S';
// New/Used/Trade.
inline constexpr char kNew = 'N';
inline constexpr char kUsed = 'U';
inline constexpr char kTrade = 'T';
// 4797 Type.
inline constexpr std::array<int, 6> k4797Types = {45, 50, 51, 52, 54, 55};
// ITC Code that carries ITC Percent and ITC Bas Red Pct.
inline constexpr int kItcCodeWithPercents = 5;

// The name of a method or of a convention; nullptr for a code not in the table.
const char* DeprMethodName(int method);
const char* ConventionName(char code);

// A life in years and months ("%d-%d" in the record).
struct YearsMonths {
  int years = 0;
  int months = 0;
  bool zero() const { return years == 0 && months == 0; }
  friend bool operator==(const YearsMonths&, const YearsMonths&) = default;
};

struct NvAssetSchedule {
  // Extra amount flag: none, set, set and marked (stored with "?").
  static constexpr int kExtraNone = 0;
  static constexpr int kExtraSet = 1;
  static constexpr int kExtraMarked = 2;

  int method = kMethodNa;           // Depr. Method, 2 digits
  bool amortized = false;           // Amortized
  std::string am_code_section;      // Am. Code Section, 10
  std::string asset_type;           // Asset Type, 10: letters of kAssetTypes
  int business_percent = 0;         // Business Percent, 0 .. 100
  YearsMonths useful_life;          // Useful Life
  YearsMonths sl_life;              // SL Life, optional straight-line life
  double depreciable_basis = 0;     // Depreciable Basis
  double substitute_basis = 0;      // Substitute Basis
  double subst_itc_basis = 0;       // Subst. ITC Basis
  int itc_code = 0;                 // ITC Code, 1 digit
  int itc_percent = 0;              // ITC Percent, with code 5 only
  int itc_basis_reduction_pct = 0;  // ITC Bas Red Pct, with code 5 only
  double itc = 0;                   // ITC
  char convention = ' ';            // Convention: a code of kConventions
  double sec179_expense = 0;        // Sec. 179 Expense
  double prior_allowed_depr = 0;    // Prior Allowd Dpr, before the current year
  double prior_allowable_depr = 0;  // Prior Allowble Dpr, before the current year
  double bonus_depr = 0;            // Bonus Depr
  double salvage_value = 0;         // Salvage Value
  double current_depr = 0;          // Current Depr, of the current year
  std::string misc_codes;           // Misc Codes, 10
  std::string state;                // State, 2
  int extra_flag = kExtraNone;      // extra amount, stored as "4:" + amount
  double extra_amount = 0;
  double further_amount_1 = 0;  // two further amounts, stored and carried
  double further_amount_2 = 0;

  bool not_applicable() const { return method == kMethodNa; }
  // Prior Allowd Dpr + Current Depr.
  double EndingAllowedDepr() const;
  // Prior Allowble Dpr + Current Depr grossed up by the Business Percent when that is 1 to
  // 99, else + Current Depr.
  double EndingAllowableDepr() const;
  // Subst. ITC Basis when it is at least 0.005 in magnitude, else Depreciable Basis.
  double ItcBasis() const;

  friend bool operator==(const NvAssetSchedule&, const NvAssetSchedule&) = default;
};

struct PauseInterval {
  Date start;
  Date end;
  friend bool operator==(const PauseInterval&, const PauseInterval&) = default;
};

struct NvAssetPauseDeprInfo {
  std::string schedules;  // 10: letters of the schedules concerned
  std::vector<PauseInterval> intervals;
  friend bool operator==(const NvAssetPauseDeprInfo&, const NvAssetPauseDeprInfo&) = default;
};

inline constexpr int kAssetUserFields = 10;

// An "S" section of the record for a letter that the company does not have, kept as read so
// that rewriting the asset gives it back (see store/asset/asset_record.h).
struct RetainedScheduleSection {
  std::string tag;                  // "S" + letter, as read (at most 4 characters)
  std::vector<std::string> fields;  // the section's fields as they stood
  friend bool operator==(const RetainedScheduleSection&, const RetainedScheduleSection&) = default;
};

class NvAsset {
 public:
  uint32_t record_number = 0;     // first block in the block file; 0 for a new asset
  std::string stored_number_key;  // .I1 key as last stored, for replace
  std::string stored_sort_key;    // .I2 key as last stored, for replace

  std::string schedule_letters;            // this asset's schedules, in the company's order
  std::vector<NvAssetSchedule> schedules;  // one per letter of schedule_letters

  NvAssetNo number;                                       // Asset No.
  std::string description;                                // Desc., 30
  std::string asset_codes;                                // Asset Codes, 5
  std::string location;                                   // Location, 10
  std::string category;                                   // Category, 10
  std::string account;                                    // Acct No./Grp., 24
  double cash_and_notes = 0;                              // Cash and Notes
  double trade_in = 0;                                    // Trade In
  Date purchase_date;                                     // Purchase Date
  Date date_in_service;                                   // Date in Service
  char new_used_trade = kNew;                             // New/Used/Trade
  int prior_short_years = 0;                              // Prior Short Years, 1 digit
  std::string property_code;                              // Property Code, 2
  int type_4797 = 0;                                      // 4797 Type, 2 digits: k4797Types or 0
  std::array<std::string, kAssetUserFields> user_fields;  // User Field 1 .. 10, 20 each

  char disposal_code = kDisposalNone;  // Disposal Code
  NvAssetNo transferred_to;            // Transferred To (code "T")
  std::string co_transferred_to;       // Co. Transferred To, 8; not in the record
  NvAssetNo traded_to;                 // Traded To (code "E")
  double amount_disposed = 0;          // Amount Disposed ($)
  Date disposal_date;                  // Disposal Date
  double sale_amount = 0;              // Sale Amount

  std::optional<NvAssetPauseDeprInfo> pauses;
  std::vector<RetainedScheduleSection> retained_sections;

  // Cash and Notes + Trade In.
  double Cost() const { return cash_and_notes + trade_in; }
  bool disposed() const { return disposal_code != kDisposalNone && disposal_code != 'N'; }

  // The schedule of a letter, or nullptr when the asset does not have it.
  NvAssetSchedule* Schedule(char letter);
  const NvAssetSchedule* Schedule(char letter) const;

  // A new asset with the given schedules: no record, texts empty, amounts 0, dates empty,
  // New/Used/Trade "N", no user field values, not disposed, every schedule N/A with its
  // fields cleared, no pauses.
  void Clear(std::string_view schedule_letters);
  // Not disposed: code blank, no Transferred To or Traded To, amounts 0, no date.
  void ClearDisposal();

  friend bool operator==(const NvAsset&, const NvAsset&) = default;
};

}  // namespace nv
