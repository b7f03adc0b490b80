// From an AICPA asset page (import/aicpa/aicpa_report.h) to an NvAsset.
//
// The general data comes from one book column: the company's "B" schedule's, else its
// "T" schedule's, else its first schedule's. Each book column whose letter is a schedule of
// the company fills that schedule; a column whose "Date Acquired" cell is blank has no
// data for the asset and leaves its schedule N/A. A book other than Federal whose method
// is "FED BASIS" is a copy of the asset's Tax schedule. Otherwise the book's Tax System
// picks the table that turns the method words into a Depr. Method (MACRS, ACRS, or the
// other methods, where declining balance switches to straight line when the user asked
// for it); books "B" and "O" always take the other methods.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "import/aicpa/aicpa_report.h"
#include "store/asset/asset.h"
#include "store/codes/account_groups.h"
#include "store/company/company_record.h"

namespace nv::aicpa {

// What the Method row's words make of a book's method, tested in this order: the first
// word the text holds decides; without any, straight line.
enum class MethodClass {
  kNoCalc,
  kDb125,
  kDb150,
  kDb200,
  kSyd,
  kAceAcrs,
  kAceMacrs,
  kFedBasis,
  kLand,
  kStraightLine,
};
MethodClass MethodClassOf(std::string_view method_text);

// The book column that gives the asset's general data.
size_t GeneralColumn(std::string_view books, std::string_view company_letters);

// Converts one page. `books`: the report's book letters in column order. The asset has
// every schedule of the company; what the page does not give is N/A.
NvAsset ConvertAssetPage(const AssetPage& page, std::string_view books,
                         const NvCompanyRecord& company, bool switch_to_straight_line);

// The accounts of the group made of a report's account set, in the group's order: the
// asset account, the accumulated-depreciation account, the expense account, and none.
std::array<std::string, kAccountGroupAccounts> GroupAccounts(const AccountNumbers& accounts);

// Finds an asset's account group among the company's groups: the group of its three
// accounts, else the first group with its accumulated-depreciation and expense accounts.
class AccountGroupFinder {
 public:
  explicit AccountGroupFinder(const std::vector<AccountGroup>& groups);
  // The group's code, "" when none holds the accounts.
  std::string Find(const AccountNumbers& accounts) const;

 private:
  std::map<AccountNumbers, std::string> by_accounts_;
  std::map<std::pair<std::string, std::string>, std::string> by_pair_;
};

}  // namespace nv::aicpa
