#include "store/asset/asset.h"

#include <cmath>

namespace nv {

const char* DeprMethodName(int method) {
  for (const DeprMethodEntry& entry : kDeprMethods) {
    if (entry.method == method) return entry.name;
  }
  return nullptr;
}

const char* ConventionName(char code) {
  for (const CodeName& entry : kConventions) {
    if (entry.code == code) return entry.name;
  }
  return nullptr;
}

double NvAssetSchedule::EndingAllowedDepr() const {
  return prior_allowed_depr + current_depr;
}

double NvAssetSchedule::EndingAllowableDepr() const {
  if (business_percent >= 1 && business_percent <= 99) {
    return prior_allowable_depr + current_depr * 100 / business_percent;
  }
  return prior_allowable_depr + current_depr;
}

double NvAssetSchedule::ItcBasis() const {
  return std::fabs(subst_itc_basis) >= 0.005 ? subst_itc_basis : depreciable_basis;
}

NvAssetSchedule* NvAsset::Schedule(char letter) {
  size_t at = schedule_letters.find(letter);
  return at < schedules.size() ? &schedules[at] : nullptr;
}

const NvAssetSchedule* NvAsset::Schedule(char letter) const {
  size_t at = schedule_letters.find(letter);
  return at < schedules.size() ? &schedules[at] : nullptr;
}

void NvAsset::Clear(std::string_view letters) {
  // The numbers keep their company's format; everything else starts afresh.
  NvAsset cleared;
  cleared.number = NvAssetNo(number.format());
  cleared.transferred_to = NvAssetNo(transferred_to.format());
  cleared.traded_to = NvAssetNo(traded_to.format());
  cleared.schedule_letters = std::string(letters);
  cleared.schedules.assign(letters.size(), NvAssetSchedule{});
  *this = std::move(cleared);
}

void NvAsset::ClearDisposal() {
  disposal_code = kDisposalNone;
  transferred_to = NvAssetNo(transferred_to.format());
  co_transferred_to.clear();
  traded_to = NvAssetNo(traded_to.format());
  amount_disposed = 0;
  disposal_date = Date{};
  sale_amount = 0;
}

}  // namespace nv
