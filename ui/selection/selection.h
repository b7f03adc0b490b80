// Asset selection: a set of criteria, one per selectable asset field, each a list of values
// or ranges, optionally negated; the "sched" fields take their value in one schedule of the
// selection. Criteria are joined by AND.
//
// The selectable fields, in their fixed order (kinds: R values and ranges, V a list of
// values, P date ranges of depreciation pauses; classes: 1 asset data, 2 amounts of a
// schedule, 4 the computed net book value):
//
//   FIELD                          KIND CLASS  COMPARED AS
//   Asset Number                    R    1     asset number in the company's format
//   Asset Desc.                     R    1     text (* ? and backslash)
//   Location, Category              R    1     code (CompareCodes), blank matches anything
//   Acct No/Group                   R    1     code
//   Cash and Notes, Trade-in        R    2     amount
//   Date Purchased, .. Placed in Sv R    1     date ("//" is the empty date)
//   New or Used                     V    1     letter in list
//   Property Code                   V    1     code in list
//   4797 Type                       V    1     number in list
//   Disposal Code                   V    1     letter in list (blank counts as N)
//   Disposal Date                   R    1     date
//   Basis .. Current Ded. (9)       R    2     amount of the schedule
//   NetBook Value                   R    4     amount
//   Depr Method                     V    1     number in list
//   Asset Type                      V    1     any listed letter among the type letters
//   Amortized                       V    1     yes/no
//   State Rules                     V    1     text
//   Business Use                    R    1     integer
//   Life, Opt. SL Life              R    1     years and months
//   Convention                      V    1     letter in list
//   Force Full Depr in Final Yr     V    1     yes/no
//   User Field 1 .. 10              R    1     text
//   Depr Paused                     P    1     pause intervals
#pragma once

#include <array>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace nv {

enum class SelectionKind { kRange, kValues, kPauses };  // R, V, P

// Classes of fields; MatchAsset evaluates the fields whose class shares a bit with its mask.
inline constexpr int kSelectAssetData = 1;
inline constexpr int kSelectScheduleAmounts = 2;
inline constexpr int kSelectNetBookValue = 4;

enum class SelectionCompare {
  kAssetNumber,
  kText,
  kCode,
  kAmount,
  kDate,
  kLetterList,  // letters, numbers and property codes: membership in a list
  kYesNo,
  kTypeLetters,
  kInteger,
  kLife,
  kPauses,
};

struct SelectionField {
  const char* name;  // caption, and the name in saved selections
  SelectionKind kind;
  int field_class;         // kSelectAssetData, kSelectScheduleAmounts or kSelectNetBookValue
  const char* attributes;  // in the edit-screen description language
  SelectionCompare compare;
  int width;  // entry width in characters
};

// Positions of the fields in the table.
enum SelectionFieldId : int {
  kSelAssetNumber,
  kSelDescription,
  kSelLocation,
  kSelCategory,
  kSelAccount,
  kSelCashAndNotes,
  kSelTradeIn,
  kSelDatePurchased,
  kSelDateInService,
  kSelNewOrUsed,
  kSelPropertyCode,
  kSel4797Type,
  kSelDisposalCode,
  kSelDisposalDate,
  kSelBasis,
  kSelSubstBasis,
  kSelSubstItcBasis,
  kSelSec179Expense,
  kSelAccumAllowed,
  kSelAccumAllowable,
  kSelBonusDepr,
  kSelSalvageValue,
  kSelCurrentDed,
  kSelNetBookValue,
  kSelDeprMethod,
  kSelAssetType,
  kSelAmortized,
  kSelStateRules,
  kSelBusinessUse,
  kSelLife,
  kSelSlLife,
  kSelConvention,
  kSelForceFullDepr,
  kSelUserField1,
  kSelUserField10 = kSelUserField1 + 9,
  kSelDeprPaused,
  kSelectionFieldCount
};
// 33 fields, the ten user fields and "Depr Paused".
static_assert(kSelectionFieldCount == 33 + 10 + 1);

std::span<const SelectionField> SelectionFields();
// The field of a name, compared ignoring case.
std::optional<int> FindSelectionField(std::string_view name);
// The field that takes scanned barcodes ("Asset Number").
int BarcodeSelectionField();
// True when the field takes its value in the selection's schedule.
bool IsScheduleField(int field);

struct SelectionCriterion {
  bool in_use = false;
  std::string text;
  bool exclude = false;
  friend bool operator==(const SelectionCriterion&, const SelectionCriterion&) = default;
};

struct KelSelection {
  std::array<SelectionCriterion, kSelectionFieldCount> criteria;
  char schedule = 0;  // the letter of the "sched" fields; 0 for none
  std::string name;   // when saved
  bool all_companies = false;

  // Every criterion off; texts and the schedule kept.
  void SwitchOffAll();
  bool AnyInUse() const;
  friend bool operator==(const KelSelection&, const KelSelection&) = default;
};

}  // namespace nv
