// Companies and assets made up for the store tests.
#pragma once

#include <string>

#include "base/installation_context.h"
#include "base/str_format.h"
#include "store/asset/asset.h"
#include "store/company/company.h"

namespace nv::testing {

inline InstallationContext ContextFor(const std::string& folder) {
  InstallationContext ctx;
  ctx.run.product_name = "NORVANE";
  ctx.installation_folder = folder + "/";
  ctx.current.slot.data_path = folder + "/";
  ctx.user_name = "TESTER";
  return ctx;
}

// A company with the long format 8, 3 (digits only), schedules B and T, sort order "ACL".
inline NvCompanyRecord TwoBookCompany() {
  NvCompanyRecord r;
  r.name = "Test Co";
  r.asset_no_format = {8, 3, 0};
  r.schedule_letters = "BT";
  r.schedules = {{'B', "B", "Book"}, {'T', "T", "Tax"}};
  r.sort_order = "ACL";
  r.current_year_end = {12, 31, 2024};
  r.last_closed = {12, 31, 2023};
  r.global_loc_cat = 'N';
  return r;
}

// Asset number `n` with fields that vary with `variant`: account, category and location
// (the sort fields of "ACL"), and figures in both schedules.
inline NvAsset MakeAsset(const NvCompanyRecord& company, long n, int variant = 0) {
  NvAsset asset;
  asset.Clear(company.schedule_letters);
  asset.number = NvAssetNo::Parse(StrPrintf("%ld.%d", n / 7, static_cast<int>(n % 7) + 1),
                                  company.asset_no_format);
  asset.description = StrPrintf("Asset %ld variant %d", n, variant);
  asset.account = StrPrintf("%d-%03ld", 1500 + variant % 5, n % 13);
  asset.category = StrPrintf("C%d", (variant + static_cast<int>(n)) % 9);
  asset.location = StrPrintf("L%d", variant % 4);
  asset.cash_and_notes = 1000 + (n % 1000) + variant;
  asset.date_in_service = {1 + static_cast<int>(n % 12), 1 + static_cast<int>(n % 28), 2020};
  if (NvAssetSchedule* b = asset.Schedule('B')) {
    b->method = 2;
    b->business_percent = 100;
    b->useful_life = {5 + variant % 3, 0};
    b->depreciable_basis = asset.cash_and_notes;
    b->convention = 'Y';
    b->current_depr = asset.cash_and_notes / 5;
  }
  if (NvAssetSchedule* t = asset.Schedule('T')) {
    t->method = 3;
    t->business_percent = 100;
    t->useful_life = {7, 0};
    t->depreciable_basis = asset.cash_and_notes;
    t->convention = 'H';
  }
  return asset;
}

}  // namespace nv::testing
