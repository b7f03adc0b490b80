// Long random runs of add, replace (with a changed number and changed sort fields), delete,
// find and walks in both orders against an in-memory model; the company is checked whole
// after every batch.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <vector>

#include "store/asset/asset_keys.h"
#include "store/asset/asset_record.h"
#include "store/company/asset_testing.h"
#include "store/company/company_check.h"
#include "store/file/key_compare.h"
#include "store/file/status.h"
#include "store/store_testing.h"
#include "ui/scripted_ui_testing.h"

namespace nv {
namespace {

using testing::ContextFor;
using testing::MakeAsset;
using testing::TwoBookCompany;

#ifdef NV_SANITIZED
constexpr int kOperations = 30000;
#else
constexpr int kOperations = 120000;
#endif
constexpr int kBatch = 10000;
constexpr long kNumberRange = 6000;

// Asset number -> the variant it was written with.
using Model = std::map<long, int>;

long Pick(const Model& model, std::mt19937& random) {
  return std::next(model.begin(), static_cast<long>(random() % model.size()))->first;
}

// The descriptions of the model's assets in the order the chosen index gives them.
std::vector<std::string> ExpectedOrder(const Model& model, const NvCompanyRecord& company,
                                       AssetOrder order) {
  const AssetRecordFormat format = AssetRecordFormatOf(company);
  std::vector<std::pair<std::string, std::string>> keyed;
  for (const auto& [n, variant] : model) {
    NvAsset a = MakeAsset(company, n, variant);
    keyed.emplace_back(
        order == AssetOrder::kNumber ? AssetNumberKey(a, format) : AssetSortKey(a, format),
        a.description);
  }
  std::sort(keyed.begin(), keyed.end(), [&](const auto& x, const auto& y) {
    return order == AssetOrder::kNumber ? CompareI1Keys(x.first, y.first) < 0
                                        : CompareI2Keys(x.first, y.first, company.sort_order) < 0;
  });
  std::vector<std::string> out;
  for (auto& k : keyed) out.push_back(k.second);
  return out;
}

std::vector<std::string> Walk(NvCompany& company, AssetOrder order, bool forward) {
  std::vector<std::string> out;
  company.ResetAssetWalk();
  for (;;) {
    NvAsset a;
    int rc = forward ? company.NextAsset(order, &a) : company.PreviousAsset(order, &a);
    EXPECT_EQ(rc, kOk);
    if (rc != kOk || a.record_number == 0) break;
    out.push_back(a.description);
  }
  if (!forward) std::reverse(out.begin(), out.end());
  return out;
}

TEST(CompanyRandomTest, OperationsAgainstAModel) {
  testing::TempDir dir;
  const InstallationContext ctx = ContextFor(dir.path());
  auto ui = testing::Script("");
  NvCompany company(ctx);
  company.record() = TwoBookCompany();
  ASSERT_EQ(company.Create({"RAND", "Random Co"}, NvCompany::kOpenI1 | NvCompany::kOpenI2), 0);
  ASSERT_EQ(company.Open("RAND", NvCompany::kOpenI1 | NvCompany::kOpenI2, *ui), 1);
  const NvCompanyRecord record = company.record();

  std::mt19937 random(4242);
  Model model;
  for (int op = 1; op <= kOperations; ++op) {
    const int kind = static_cast<int>(random() % 100);
    if (kind < 45 || model.size() < 10) {
      long n = 1 + static_cast<long>(random() % kNumberRange);
      int variant = static_cast<int>(random() % 50);
      NvAsset a = MakeAsset(record, n, variant);
      int rc = company.AddAsset(&a);
      ASSERT_EQ(rc, model.count(n) ? kDuplicate : kOk) << "add " << n << " at op " << op;
      if (rc == kOk) model[n] = variant;
    } else if (kind < 65) {
      long n = Pick(model, random);
      long to = random() % 2 ? n : 1 + static_cast<long>(random() % kNumberRange);
      int variant = static_cast<int>(random() % 50);
      NvAsset a;
      ASSERT_EQ(company.FindAsset(MakeAsset(record, n).number.Text(), &a), kOk);
      NvAsset changed = MakeAsset(record, to, variant);
      changed.record_number = a.record_number;
      changed.stored_number_key = a.stored_number_key;
      changed.stored_sort_key = a.stored_sort_key;
      int rc = company.ReplaceAsset(&changed);
      if (to != n && model.count(to)) {
        ASSERT_EQ(rc, kDuplicate) << "replace " << n << " by " << to;
      } else {
        ASSERT_EQ(rc, kOk) << "replace " << n << " by " << to << " at op " << op;
        model.erase(n);
        model[to] = variant;
      }
    } else if (kind < 80) {
      long n = Pick(model, random);
      NvAsset a;
      ASSERT_EQ(company.FindAsset(MakeAsset(record, n).number.Text(), &a), kOk);
      ASSERT_EQ(company.DeleteAsset(a), kOk) << "delete " << n;
      model.erase(n);
    } else {
      long n = 1 + static_cast<long>(random() % kNumberRange);
      NvAsset a;
      int rc = company.FindAsset(MakeAsset(record, n).number.Text(), &a);
      if (model.count(n)) {
        ASSERT_EQ(rc, kOk);
        ASSERT_EQ(a.description, MakeAsset(record, n, model.at(n)).description);
      } else {
        ASSERT_EQ(rc, kNotFound) << "find " << n;
      }
    }
    if (op % kBatch == 0) {
      EXPECT_EQ(Walk(company, AssetOrder::kNumber, true),
                ExpectedOrder(model, record, AssetOrder::kNumber));
      EXPECT_EQ(Walk(company, AssetOrder::kNumber, false),
                ExpectedOrder(model, record, AssetOrder::kNumber));
      EXPECT_EQ(Walk(company, AssetOrder::kSort, true),
                ExpectedOrder(model, record, AssetOrder::kSort));
      ASSERT_EQ(company.Close(), 0);
      ASSERT_EQ(
          company.Open("RAND", NvCompany::kOpenI1 | NvCompany::kOpenI2 | NvCompany::kReadOnly, *ui),
          1);
      CompanyCheck check = CheckCompany(company);
      ASSERT_TRUE(check.problems.empty()) << "after op " << op << ": " << check.problems[0];
      ASSERT_EQ(check.assets, model.size());
      ASSERT_EQ(company.Open("RAND", NvCompany::kOpenI1 | NvCompany::kOpenI2, *ui), 1);
    }
  }
}

}  // namespace
}  // namespace nv
