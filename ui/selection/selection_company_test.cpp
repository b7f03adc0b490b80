// Selections over a company of varied assets, written to the store and read back, each
// checked against a filter written out here on the assets' own fields.
#include <gtest/gtest.h>

#include <functional>
#include <set>

#include "base/str_format.h"
#include "base/temp_dir_testing.h"
#include "store/company/asset_testing.h"
#include "store/company/company.h"
#include "ui/scripted_ui_testing.h"
#include "ui/selection/selection_match.h"

namespace nv {
namespace {

constexpr int kAssets = 60;

NvAsset Varied(const NvCompanyRecord& company, int n) {
  NvAsset a;
  a.Clear(company.schedule_letters);
  a.number = NvAssetNo::Parse(StrPrintf("%d.%d", n, n % 3), company.asset_no_format);
  a.description = n % 3 == 0 ? "Truck, red" : n % 3 == 1 ? "Desk " + std::to_string(n) : "Press";
  a.location = n % 3 == 0 ? "" : StrPrintf("%02d", n % 12);
  a.cash_and_notes = 500.0 * n + (n % 2 ? 0.25 : 0);
  if (n % 5 != 1) a.purchase_date = {1 + n % 12, 1 + n % 28, 2000 + n % 20};
  a.date_in_service = {1 + (n + 3) % 12, 1 + (n + 5) % 28, 2001 + n % 20};
  if (n % 2) a.user_fields[0] = "Bldg " + std::to_string(n);
  a.disposal_code = " SAT"[n % 4];
  if (a.disposed()) a.disposal_date = {6, 30, 2024};
  NvAssetSchedule& b = *a.Schedule('B');
  b.method = kDeprMethods[n % kDeprMethods.size()].method;
  if (b.method == kMethodNa) b.method = kMethodMacrs150Db;
  b.amortized = n % 4 == 0;
  b.asset_type = n % 3 == 0 ? "AL" : n % 3 == 1 ? "F" : "";
  b.business_percent = (n % 2 ? 100 : 60) + n % 7;
  if (b.business_percent > 100) b.business_percent = 100;
  b.useful_life = {n % 40, n % 5 ? 0 : 6};
  b.depreciable_basis = a.cash_and_notes;
  b.prior_allowed_depr = 100.0 * n;
  b.current_depr = 10.0 * n;
  b.convention = 'Y';
  return a;
}

class SelectionOverCompany : public ::testing::Test {
 protected:
  SelectionOverCompany() : ctx_(testing::ContextFor(dir_.path())) {
    NvCompany company(ctx_);
    company.record() = testing::TwoBookCompany();
    company.record().asset_no_format = {6, 2, 0};
    EXPECT_EQ(company.Create({"SEL", "Selection"}, NvCompany::kOpenI1 | NvCompany::kOpenI2), 0);
    EXPECT_GT(company.Open("SEL", NvCompany::kOpenI1 | NvCompany::kOpenI2, *testing::Script("")),
              0);
    format_ = company.record().asset_no_format;
    for (int n = 1; n <= kAssets; ++n) {
      NvAsset asset = Varied(company.record(), n);
      EXPECT_EQ(company.AddAsset(&asset), 0) << n;
    }
    company.ResetAssetWalk();
    for (NvAsset asset;
         company.NextAsset(AssetOrder::kNumber, &asset) == 0 && asset.record_number != 0;) {
      assets_.push_back(asset);
    }
    EXPECT_EQ(company.Close(), 0);
    EXPECT_EQ(assets_.size(), static_cast<size_t>(kAssets));
  }

  // The asset numbers the selection takes, and those the filter takes.
  void Expect(const KelSelection& selection, const std::function<bool(const NvAsset&)>& filter,
              int mask = 0) {
    std::set<std::string> selected, filtered;
    for (const NvAsset& a : assets_) {
      if (MatchAsset(selection, AssetSelectionValues(a, selection.schedule, format_), mask)) {
        selected.insert(a.number.Text());
      }
      if (filter(a)) filtered.insert(a.number.Text());
    }
    EXPECT_EQ(selected, filtered);
    // A filter that takes nothing or everything would not tell a wrong match from a right one.
    EXPECT_FALSE(filtered.empty());
    EXPECT_LT(filtered.size(), assets_.size());
  }

  static KelSelection With(int field, std::string text, bool exclude = false) {
    KelSelection s;
    s.schedule = 'B';
    s.criteria[field] = {true, std::move(text), exclude};
    return s;
  }

  static int Main(const NvAsset& a) { return std::stoi(a.number.main()); }
  static std::string Trimmed(std::string s) { return s.erase(s.find_last_not_of(' ') + 1); }

  TempDir dir_;
  InstallationContext ctx_;
  NvAssetNoFormat format_;
  std::vector<NvAsset> assets_;
};

TEST_F(SelectionOverCompany, AssetNumbersTextsAndCodes) {
  Expect(With(kSelAssetNumber, "10-20.01,33.00"), [](const NvAsset& a) {
    const int key = Main(a) * 100 + a.number.subasset();
    return (key >= 1000 && key <= 2001) || key == 3300;
  });
  Expect(With(kSelDescription, "desk 1*"),
         [](const NvAsset& a) { return a.description.starts_with("Desk 1"); });
  Expect(With(kSelDescription, "'*, *'"),
         [](const NvAsset& a) { return a.description.find(", ") != std::string::npos; });
  Expect(With(kSelUserField1, "bldg ?5"), [](const NvAsset& a) {
    return a.user_fields[0].size() == 7 && a.user_fields[0].ends_with('5');
  });
  const std::set<std::string> wanted = {"01", "02", "03", "04", "05", "10"};
  Expect(With(kSelLocation, "01-05,10"),
         [&](const NvAsset& a) { return wanted.count(Trimmed(a.location)) > 0; });
  Expect(With(kSelLocation, "01-05,10", true),
         [&](const NvAsset& a) { return wanted.count(Trimmed(a.location)) == 0; });
}

TEST_F(SelectionOverCompany, AmountsDatesAndNumbers) {
  Expect(With(kSelCashAndNotes, "10000-20000.25"), [](const NvAsset& a) {
    return a.cash_and_notes >= 10000 && a.cash_and_notes <= 20000.25;
  });
  Expect(With(kSelNetBookValue, "20000-"), [](const NvAsset& a) {
    const NvAssetSchedule& b = *a.Schedule('B');
    return b.depreciable_basis - b.prior_allowed_depr - b.current_depr >= 20000;
  });
  Expect(With(kSelDateInService, "1/1/2010-12/31/2015"), [](const NvAsset& a) {
    return a.date_in_service.year >= 2010 && a.date_in_service.year <= 2015;
  });
  Expect(With(kSelDatePurchased, "//"), [](const NvAsset& a) { return a.purchase_date.empty(); });
  Expect(With(kSelDisposalDate, "//", true),
         [](const NvAsset& a) { return a.disposal_code != ' '; });
  Expect(With(kSelBusinessUse, "60-62"),
         [](const NvAsset& a) { return a.Schedule('B')->business_percent <= 62; });
  Expect(With(kSelLife, "10-20"), [](const NvAsset& a) {
    const YearsMonths& l = a.Schedule('B')->useful_life;
    return l.years >= 10 && (l.years < 20 || (l.years == 20 && l.months == 0));
  });
}

TEST_F(SelectionOverCompany, ListsFlagsAndTypes) {
  Expect(With(kSelDisposalCode, "s,a"),
         [](const NvAsset& a) { return a.disposal_code == 'S' || a.disposal_code == 'A'; });
  Expect(With(kSelDeprMethod, "3,33"), [](const NvAsset& a) {
    const int m = a.Schedule('B')->method;
    return m == 3 || m == 33;
  });
  Expect(With(kSelAmortized, "Y"), [](const NvAsset& a) { return a.Schedule('B')->amortized; });
  Expect(With(kSelAssetType, "A"), [](const NvAsset& a) {
    return a.Schedule('B')->asset_type.find('A') != std::string::npos;
  });
  // Schedule T is N/A throughout: its method list takes every asset, and the location
  // alone decides.
  KelSelection t = With(kSelDeprMethod, "13");
  t.schedule = 'T';
  t.criteria[kSelLocation] = {true, "05-", false};
  Expect(t, [](const NvAsset& a) { return std::stoi(a.location) >= 5; });
  t.criteria[kSelDeprMethod].exclude = true;
  for (const NvAsset& a : assets_) {
    EXPECT_FALSE(MatchAsset(t, AssetSelectionValues(a, 'T', format_), 0));
  }
}

TEST_F(SelectionOverCompany, CriteriaJoinedByAndAndTheClassMask) {
  KelSelection s = With(kSelDescription, "Desk*");
  s.criteria[kSelCashAndNotes] = {true, "-10000", false};
  Expect(s, [](const NvAsset& a) {
    return a.description.starts_with("Desk") && a.cash_and_notes <= 10000;
  });
  // The amounts are left for a later pass: only the asset data counts now.
  Expect(
      s, [](const NvAsset& a) { return a.description.starts_with("Desk"); }, kSelectAssetData);
}

}  // namespace
}  // namespace nv
