#include "import/mba/mba_convert.h"

#include <cmath>

#include "base/ascii.h"

namespace nv {
namespace {

// Substitute Basis is kept only when the book's basis is not the cost.
constexpr double kBasisTolerance = 0.005;

void SetSchedule(const MbaBookBlock& book, const MbaLine& line, NvAsset* asset,
                 NvAssetSchedule* schedule) {
  schedule->business_percent = 100;
  schedule->useful_life = {book.life, 0};
  if (std::fabs(book.basis - line.cost) > kBasisTolerance) schedule->substitute_basis = book.basis;
  schedule->salvage_value = book.salvage;
  schedule->prior_allowed_depr = book.accumulated;
  schedule->prior_allowable_depr = book.accumulated;

  const MbaMethodRule& rule = MbaMethodRuleFor(book.method);
  schedule->method = rule.method;
  if (rule.convention == kMbaConventionByFlag) {
    schedule->convention = line.mid_quarter ? 'Q' : 'Y';
  } else {
    schedule->convention = rule.convention;
  }
  if (rule.sl_life) schedule->sl_life = schedule->useful_life;
  if (rule.type_4797 != 0) asset->type_4797 = rule.type_4797;
}

}  // namespace

const MbaMethodRule& MbaMethodRuleFor(char letter) {
  for (const MbaMethodRule& rule : kMbaMethodRules) {
    if (rule.letter == letter) return rule;
  }
  return kMbaOtherMethod;
}

MbaBook MbaBookForScheduleType(std::string_view type) {
  if (type.size() == 1) {
    switch (AsciiUpper(type[0])) {
      case 'T':
        return MbaBook::kTax;
      case 'A':
        return MbaBook::kAmt;
      case 'B':
        return MbaBook::kInternal;
      default:
        break;
    }
  }
  return MbaBook::kOther;
}

std::string MbaAccountGroupFor(const MbaLine& line, std::vector<AccountGroup>* groups) {
  if (line.asset_account.empty()) return "";
  const AccountGroup* group = GetOrAddAccountGroupByCode(
      groups, line.expense_account, line.accumulated_account, "", "", line.asset_account);
  // Every code the group could take was held by other accounts: the asset keeps its asset
  // account, which Acct No./Grp. may hold as well as a group.
  return group != nullptr ? group->code : line.asset_account;
}

NvAsset ConvertMbaLine(const MbaRecord& record, const NvAssetNo& number, std::string account,
                       const NvCompanyRecord& company) {
  const MbaLine& line = record.line;
  NvAsset asset;
  asset.Clear(company.schedule_letters);
  asset.user_fields[0] = std::string(1, line.status);
  asset.user_fields[1] = line.id;
  asset.number = number;
  asset.category = record.id.category;
  asset.location = record.id.location;
  asset.description =
      TrimBlanks(std::string_view(line.description).substr(0, kMbaDescriptionWidth));
  asset.cash_and_notes = line.cost;
  asset.purchase_date = line.acquired;
  asset.date_in_service = line.acquired;
  if (line.status == 'D' || line.status == 'S') {
    asset.disposal_code = line.status == 'D' ? kDisposalAbandoned : kDisposalSold;
    asset.disposal_date = line.disposed;
    asset.amount_disposed = line.cost;
  }
  asset.account = std::move(account);

  for (const ScheduleEntry& entry : company.schedules) {
    NvAssetSchedule* schedule = asset.Schedule(entry.letter);
    if (schedule == nullptr) continue;
    const MbaBookBlock& book = line.book(MbaBookForScheduleType(entry.type));
    SetSchedule(book, line, &asset, schedule);
  }
  return asset;
}

}  // namespace nv
