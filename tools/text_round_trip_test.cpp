// A company out through the whole-company text file and back in through `nvtool import
// text`: every field the record carries comes back as it was.
#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

#include "base/ascii.h"
#include "base/file.h"
#include "base/file_util.h"
#include "base/money.h"
#include "base/temp_dir_testing.h"
#include "export/text_record.h"
#include "import/frame/import_frame.h"
#include "store/asset/asset_text_layout.h"
#include "store/company/asset_testing.h"
#include "store/company/company.h"
#include "store/store_testing.h"
#include "tools/import_command.h"
#include "ui/scripted_ui_testing.h"

namespace nv {
namespace {

using testing::ContextFor;
using testing::Script;

struct Case {
  const char* name;
  NvAssetNoFormat format;
  const char* letters;
  bool round_dollars;
};

// Main parts that the format takes: digits, letters, dashes.
std::string MainPart(const NvAssetNoFormat& format, int n) {
  if (format.letters()) return std::string(1, static_cast<char>('A' + n % 26)) + std::to_string(n);
  if (format.dashes()) return std::to_string(n % 9 + 1) + "-" + std::to_string(n % 10);
  return std::to_string(n);
}

// Asset n of a varied company: every method and convention, disposals of each kind, empty
// and full dates, amounts with and without cents, texts with commas and quotes.
NvAsset Varied(const NvCompanyRecord& company, int n) {
  NvAsset a;
  a.Clear(company.schedule_letters);
  a.number = NvAssetNo::Parse(MainPart(company.asset_no_format, n) + "." + std::to_string(n % 3),
                              company.asset_no_format);
  a.description = n % 4 == 0   ? "Press, \"heavy\" duty"
                  : n % 4 == 1 ? "Truck, red"
                               : "Desk " + std::to_string(n);
  a.location = n % 3 == 0 ? "" : "L" + std::to_string(n % 7);
  a.category = n % 5 == 0 ? "A,B" : "MCH";
  a.account = "1500-" + std::to_string(n);
  a.cash_and_notes = n % 2 ? 1000 * n + 0.25 : 1000 * n;
  a.trade_in = n % 6 == 0 ? 150.5 : 0;
  if (n % 5 != 1) a.purchase_date = {1 + n % 12, 1 + n % 28, 1931 + n * 3 % 98};
  a.date_in_service = {1 + (n + 3) % 12, 1 + (n + 5) % 28, 1990 + n % 39};
  a.new_used_trade = "NUT"[n % 3];
  a.prior_short_years = n % 4;
  a.property_code = n % 2 ? "P1" : "";
  a.type_4797 = k4797Types[n % k4797Types.size()] * (n % 3 != 0);
  for (int i = 0; i < kTextRecordUserFields; ++i) {
    if ((n + i) % 3 != 0) a.user_fields[i] = "UF" + std::to_string(i) + (i == 2 ? ", \"x\"" : "");
  }
  for (size_t s = 0; s < a.schedules.size(); ++s) {
    NvAssetSchedule& sch = a.schedules[s];
    const int k = n + static_cast<int>(s) * 7;
    if (k % 11 == 10) continue;  // N/A in this schedule
    sch.method = kDeprMethods[k % kDeprMethods.size()].method;
    sch.amortized = k % 4 == 0;
    sch.asset_type = k % 3 == 0 ? "AL" : k % 3 == 1 ? "F" : "";
    sch.business_percent = k % 2 ? 100 : 60;
    sch.useful_life = {k % 40, k % 5 ? 0 : 6};
    sch.sl_life = {k % 3 ? 0 : 27, k % 3 ? 0 : 6};
    sch.depreciable_basis = a.cash_and_notes;
    sch.itc = k % 5 == 0 ? 33.33 : 0;
    sch.further_amount_1 = k % 7 == 0 ? -12.75 : 0;
    sch.further_amount_2 = k % 8 == 0 ? 4 : 0;
    sch.substitute_basis = k % 9 == 0 ? 800.5 : 0;
    sch.subst_itc_basis = k % 10 == 0 ? 700 : 0;
    sch.itc_code = k % 5;
    sch.convention = kConventions[k % kConventions.size()].code;
    sch.sec179_expense = k % 6 == 0 ? 500 : 0;
    sch.prior_allowed_depr = 100.5 * k;
    sch.prior_allowable_depr = 100.5 * k + (k % 2);
    sch.bonus_depr = k % 4 == 1 ? 250.75 : 0;
    sch.salvage_value = k % 13 == 0 ? 99.99 : 0;
    sch.current_depr = 10.1 * k;
  }
  switch (n % 6) {
    case 1:
      a.disposal_code = 'S';
      a.sale_amount = 900.9;
      break;
    case 2:
      a.disposal_code = 'T';
      a.transferred_to =
          NvAssetNo::Parse(MainPart(company.asset_no_format, n + 100), company.asset_no_format);
      break;
    case 3:
      a.disposal_code = 'E';
      a.traded_to =
          NvAssetNo::Parse(MainPart(company.asset_no_format, n + 200), company.asset_no_format);
      break;
    case 4:
      a.disposal_code = 'A';
      break;
  }
  if (a.disposed()) {
    a.amount_disposed = a.cash_and_notes;
    a.disposal_date = {6, 30, 2024};
  }
  return a;
}

// The asset as the record carries it: what the layout has no place for cleared, amounts
// as the company writes them, "L" last among the asset types.
NvAsset Carried(NvAsset a, const NvCompanyRecord& company) {
  const auto amount = [&](double& x) {
    if (company.round_dollars) x = RoundDollars(x);
  };
  for (int i = kTextRecordUserFields; i < kAssetUserFields; ++i) a.user_fields[i].clear();
  // A blank code reads from the store as "0" and blanks; the record keeps 3 characters.
  for (std::string* text : {&a.location, &a.category}) {
    text->resize(std::min<size_t>(text->size(), 3));
    text->erase(text->find_last_not_of(' ') + 1);
  }
  for (double* x : {&a.cash_and_notes, &a.trade_in, &a.amount_disposed, &a.sale_amount}) amount(*x);
  for (NvAssetSchedule& s : a.schedules) {
    for (double* x :
         {&s.depreciable_basis, &s.itc, &s.further_amount_1, &s.further_amount_2,
          &s.substitute_basis, &s.subst_itc_basis, &s.sec179_expense, &s.prior_allowed_depr,
          &s.prior_allowable_depr, &s.bonus_depr, &s.salvage_value, &s.current_depr}) {
      amount(*x);
      *x = std::round(*x * 100) / 100;
    }
    const size_t l = s.asset_type.find('L');
    if (l != std::string::npos) s.asset_type = s.asset_type.erase(l, 1) + "L";
  }
  return a;
}

class TextRoundTrip : public ::testing::TestWithParam<Case> {
 protected:
  TextRoundTrip() : ctx_(ContextFor(dir_.path())) {}

  // The source company with `count` varied assets.
  NvCompanyRecord MakeSource(const Case& c, int count) {
    NvCompanyRecord record;
    record.name = "Source";
    record.asset_no_format = c.format;
    record.round_dollars = c.round_dollars;
    for (char letter : std::string_view(c.letters))
      record.schedules.push_back({letter, std::string(1, letter), "S"});
    record.schedule_letters = c.letters;
    record.sort_order = "ACL";
    NvCompany company(ctx_);
    company.record() = record;
    EXPECT_EQ(company.Create({"SRC", "Source"}, NvCompany::kOpenI1 | NvCompany::kOpenI2), 0);
    EXPECT_GT(company.Open("SRC", NvCompany::kOpenI1 | NvCompany::kOpenI2, *Script("")), 0);
    for (int n = 1; n <= count; ++n) {
      NvAsset asset = Varied(company.record(), n);
      EXPECT_EQ(company.AddAsset(&asset), 0) << n;
    }
    record = company.record();
    EXPECT_EQ(company.Close(), 0);
    return record;
  }

  std::vector<NvAsset> Assets(std::string_view number) {
    NvCompany company(ctx_);
    std::vector<NvAsset> assets;
    if (company.Open(number, NvCompany::kOpenI1 | NvCompany::kReadOnly, *Script("")) <= 0)
      return assets;
    NvAsset asset;
    while (company.NextAsset(AssetOrder::kNumber, &asset) == 0 && asset.record_number != 0) {
      assets.push_back(asset);
    }
    static_cast<void>(company.Close());
    return assets;
  }

  std::string Export(const NvCompanyRecord& company, TextRecordType type) {
    const TextRecordWriter writer(company, type);
    std::string bytes;
    for (const NvAsset& asset : Assets("SRC")) EXPECT_TRUE(writer.Write(asset, bytes));
    const std::string path = dir_.path() + "/src.dbs";
    EXPECT_TRUE(WriteFileAtomically(path, bytes));
    return path;
  }

  int Import(const std::string& path, std::string_view type, std::string_view number) {
    std::string error;
    std::optional<ImportCommandOptions> options = ParseImportCommand(
        {"text", path, dir_.path(), std::string(number), "--type", std::string(type)}, &error);
    EXPECT_TRUE(options) << error;
    std::ostringstream out, err;
    const int status = RunImportCommand(*options, out, err);
    output_ = out.str() + err.str();
    return status;
  }

  TempDir dir_;
  InstallationContext ctx_;
  std::string output_;
};

TEST_P(TextRoundTrip, EveryCarriedFieldComesBack) {
  const Case& c = GetParam();
  const NvCompanyRecord source = MakeSource(c, 36);
  const std::vector<NvAsset> originals = Assets("SRC");
  ASSERT_EQ(originals.size(), 36u);
  const std::pair<TextRecordType, const char*> types[] = {{TextRecordType::kTab, "tab"},
                                                          {TextRecordType::kComma, "comma"},
                                                          {TextRecordType::kFixedLines, "fixed"}};
  for (const auto& [type, option] : types) {
    SCOPED_TRACE(option);
    const std::string number = std::string("R") + option[0];
    ASSERT_EQ(Import(Export(source, type), option, number), 0) << output_;
    const std::vector<NvAsset> imported = Assets(number);
    ASSERT_EQ(imported.size(), originals.size()) << output_;
    NvCompany company(ctx_);
    ASSERT_GT(company.Open(number, NvCompany::kOpenI1 | NvCompany::kReadOnly, *Script("")), 0);
    const NvCompanyRecord target = company.record();
    static_cast<void>(company.Close());
    // A fixed record tells the whole format; delimited numbers are stripped of the blanks
    // that tell the main length, so only a longer number shows it.
    if (type == TextRecordType::kFixedLines) {
      EXPECT_EQ(target.asset_no_format, c.format);
    } else {
      EXPECT_EQ(target.asset_no_format.subasset_length, c.format.subasset_length);
      EXPECT_EQ(target.asset_no_format.flags, c.format.flags);
    }
    for (size_t i = 0; i < originals.size(); ++i) {
      const NvAsset want = Carried(originals[i], source);
      NvAsset got = imported[i];
      for (auto number : {&NvAsset::number, &NvAsset::transferred_to, &NvAsset::traded_to}) {
        EXPECT_EQ(TrimBlanks((got.*number).Text()), TrimBlanks((want.*number).Text()));
      }
      for (char letter : source.schedule_letters) {
        ASSERT_NE(got.Schedule(letter), nullptr) << letter;
        EXPECT_EQ(*got.Schedule(letter), *want.Schedule(letter))
            << want.number.Text() << " " << letter;
      }
      const std::string at = want.number.Text();
      EXPECT_EQ(got.description, want.description) << at;
      EXPECT_EQ(got.location, want.location) << at;
      EXPECT_EQ(got.category, want.category) << at;
      EXPECT_EQ(got.account, want.account) << at;
      EXPECT_EQ(got.cash_and_notes, want.cash_and_notes) << at;
      EXPECT_EQ(got.trade_in, want.trade_in) << at;
      EXPECT_EQ(got.purchase_date, want.purchase_date) << at;
      EXPECT_EQ(got.date_in_service, want.date_in_service) << at;
      EXPECT_EQ(got.new_used_trade, want.new_used_trade) << at;
      EXPECT_EQ(got.prior_short_years, want.prior_short_years) << at;
      EXPECT_EQ(got.property_code, want.property_code) << at;
      EXPECT_EQ(got.type_4797, want.type_4797) << at;
      EXPECT_EQ(got.user_fields, want.user_fields) << at;
      EXPECT_EQ(got.disposal_code, want.disposal_code) << at;
      EXPECT_EQ(got.amount_disposed, want.amount_disposed) << at;
      EXPECT_EQ(got.disposal_date, want.disposal_date) << at;
      EXPECT_EQ(got.sale_amount, want.sale_amount) << at;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(
    Formats, TextRoundTrip,
    ::testing::Values(Case{"six_two", {6, 2, 0}, "BTA", false},
                      Case{"eight_three_letters", {8, 3, NvAssetNoFormat::kLetters}, "BTACF", true},
                      Case{"four_one_dashes", {4, 1, NvAssetNoFormat::kDashes}, "TBSO", false}),
    [](const auto& info) { return std::string(info.param.name); });

TEST_F(TextRoundTrip, FixedRecordsWithoutLineEndsCannotBeReadRecordByRecord) {
  const NvCompanyRecord source = MakeSource({"", {6, 2, 0}, "BT", false}, 5);
  static_cast<void>(Import(Export(source, TextRecordType::kFixedNoLines), "fixed", "NOLINES"));
  const std::vector<NvAsset> imported = Assets("NOLINES");
  const std::vector<NvAsset> originals = Assets("SRC");
  size_t same = 0;
  for (const NvAsset& got : imported) {
    for (const NvAsset& want : originals)
      same += got.number.Text() == want.number.Text() && got.description == want.description;
  }
  EXPECT_LT(same, originals.size()) << output_;
}

}  // namespace
}  // namespace nv
