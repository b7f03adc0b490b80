// One MBA line (import/mba/mba_source.h) as an NvAsset of a company.
//
// General part: User Field 1 the status, User Field 2 the ID as MBA shows it, Category and
// Location the ID's codes, Desc. the description (its first 30 characters), Cash and Notes
// the cost, Purchase Date and Date in Service the acquisition date. Status "D" is disposal
// code "A" (abandoned), status "S" code "S" (sold); both take the disposal date and dispose
// of the whole cost (Amount Disposed). Acct No./Grp. names the account group of the line's
// accounts (MbaAccountGroupFor).
//
// Each schedule of the company takes the book block of its type: "T" Tax, "A" AMT, "B" the
// internal book, any other type the fourth block. The schedule gets Business Percent 100,
// Useful Life the block's life in years, Substitute Basis the block's basis when it differs
// from the cost by more than 0.005, the Salvage Value, the accumulated depreciation as both
// Prior Allowd Dpr and Prior Allowble Dpr, and the settings of its method letter:
//
//   LETTER  DEPR. METHOD     CONVENTION                         ALSO
//   A       1 ACRS           "1"
//   B, C    1 ACRS           "1"                                SL Life = Useful Life
//   D       6 200% DB        "1"
//   M       3 MACRS          "Y", or "Q" with the mid-quarter flag
//   N       3 MACRS          as M                               SL Life = Useful Life
//   O, P    3 MACRS          as M                               SL Life; 4797 Type 50
//   S       2 Straight Line  "1"
//   Y       7 SYD            "1"
//   Z       13 N/A
//   other   12 OTHER
#pragma once

#include <span>
#include <string>
#include <vector>

#include "import/mba/mba_source.h"
#include "store/asset/asset.h"
#include "store/codes/account_groups.h"
#include "store/company/company_record.h"

namespace nv {

inline constexpr size_t kMbaDescriptionWidth = 30;
inline constexpr char kMbaStatusFieldName[] = "MBA Asset Status";
inline constexpr char kMbaIdFieldName[] = "MBA Asset ID";

// The convention a rule gives: a fixed one, or half-year / mid-quarter by the line's flag.
inline constexpr char kMbaConventionByFlag = '*';

struct MbaMethodRule {
  char letter;
  int method;
  char convention;  // a convention code, kMbaConventionByFlag, or ' ' for none
  bool sl_life;     // SL Life = Useful Life
  int type_4797;    // the asset's 4797 Type, 0 for none
};

inline constexpr MbaMethodRule kMbaMethodRules[] = {
    {'A', kMethodAcrs, '1', false, 0},
    {'B', kMethodAcrs, '1', true, 0},
    {'C', kMethodAcrs, '1', true, 0},
    {'D', kMethodDb200, '1', false, 0},
    {'M', kMethodMacrs, kMbaConventionByFlag, false, 0},
    {'N', kMethodMacrs, kMbaConventionByFlag, true, 0},
    {'O', kMethodMacrs, kMbaConventionByFlag, true, 50},
    {'P', kMethodMacrs, kMbaConventionByFlag, true, 50},
    {'S', kMethodStraightLine, '1', false, 0},
    {'Y', kMethodSyd, '1', false, 0},
    {'Z', kMethodNa, ' ', false, 0},
};
// A letter not in the table.
inline constexpr MbaMethodRule kMbaOtherMethod{' ', kMethodOther, ' ', false, 0};

const MbaMethodRule& MbaMethodRuleFor(char letter);

// The book block a schedule of type `type` takes.
MbaBook MbaBookForScheduleType(std::string_view type);

// The account group for the line's accounts: the group whose code is the asset account and
// whose first two accounts are the depreciation-expense and the accumulated-depreciation
// account, added when missing. When the code is taken by a group of other accounts, the
// code gains a letter (store/codes/account_groups.h). Returns the code for Acct No./Grp.:
// empty for a line without an asset account, the asset account itself when no code was
// left for a group.
std::string MbaAccountGroupFor(const MbaLine& line, std::vector<AccountGroup>* groups);

// The asset of one line (its fields and its ID taken apart), numbered `number`, with the
// company's schedules; `account` is its Acct No./Grp.
NvAsset ConvertMbaLine(const MbaRecord& record, const NvAssetNo& number, std::string account,
                       const NvCompanyRecord& company);

}  // namespace nv
