// The export run: which assets fall in which class, what a line holds for them, and the
// file that a definition writes from a company.
#include "export/export_run.h"

#include <gtest/gtest.h>

#include "base/path.h"
#include "base/temp_dir_testing.h"
#include "export/export_testing.h"
#include "store/company/asset_testing.h"
#include "store/file/status.h"
#include "store/store_testing.h"
#include "ui/scripted_ui.h"
#include "ui/scripted_ui_testing.h"

namespace nv {
namespace {

// A path as a transcript line quotes it (backslashes doubled), without the quotes.
std::string InTranscript(const std::string& path) {
  const std::string quoted = QuoteTranscriptText(path);
  return quoted.substr(1, quoted.size() - 2);
}

using testing::MakeColumn;

constexpr Date kLastClosed{12, 31, 2023};
constexpr Date kYearEnd{12, 31, 2024};

NvAsset AssetWithDates(Date in_service, Date disposed = {}) {
  NvAsset asset;
  asset.Clear("BT");
  asset.number = NvAssetNo::Parse("17.1", {6, 2, 0});
  asset.description = "Lathe";
  asset.date_in_service = in_service;
  asset.disposal_date = disposed;
  return asset;
}

std::string Classes(Date in_service, Date disposed = {}) {
  const ExportAssetClass c =
      ClassifyAsset(AssetWithDates(in_service, disposed), kLastClosed, kYearEnd);
  return std::string(c.addition ? "A" : "") + (c.disposition ? "D" : "") + (c.current ? "C" : "") +
         (c.none_of_the_above ? "N" : "");
}

TEST(ClassifyAssetTest, CurrentYearRunsAfterLastClosedUpToYearEnd) {
  EXPECT_EQ(Classes({1, 1, 2024}), "A");
  EXPECT_EQ(Classes({12, 31, 2024}), "A");
  EXPECT_EQ(Classes({12, 31, 2023}), "C");
  EXPECT_EQ(Classes({1, 1, 2025}), "N");
  EXPECT_EQ(Classes({}), "C");
  EXPECT_EQ(Classes({3, 1, 2024}, {9, 30, 2024}), "AD");  // never current as well
  EXPECT_EQ(Classes({3, 1, 2019}, {12, 31, 2024}), "D");
  EXPECT_EQ(Classes({3, 1, 2019}, {12, 31, 2023}), "N");
  EXPECT_EQ(Classes({3, 1, 2019}, {1, 5, 2025}), "C");
}

// The line of `asset`, appended after a line already there; "(none)" when none is written.
std::string Line(const std::vector<ExportColumn>& columns, const NvAsset& asset) {
  std::string out = "before\r\n";
  int count = 7;
  const bool written = WriteAssetLine(columns, {kLastClosed, kYearEnd, false}, asset, out, count);
  EXPECT_EQ(count, written ? 8 : 7);
  EXPECT_EQ(out.substr(0, 8), "before\r\n");
  return written ? out.substr(8) : (out.size() == 8 ? "(none)" : "(left over) " + out);
}

TEST(AssetLineTest, ColumnsHoldValuesOnlyForTheirClasses) {
  const std::vector<ExportColumn> columns = {MakeColumn(1002, '*', "A"), MakeColumn(1002, '*', "D"),
                                             MakeColumn(1002, '*', "C"), MakeColumn(1002, '*', "N"),
                                             MakeColumn(1002, '*', "")};
  EXPECT_EQ(Line(columns, AssetWithDates({3, 1, 2024}, {9, 30, 2024})), "Lathe\tLathe\t\t\t\r\n");
  EXPECT_EQ(Line(columns, AssetWithDates({3, 1, 2019})), "\t\tLathe\t\t\r\n");
  EXPECT_EQ(Line(columns, AssetWithDates({3, 1, 2025})), "\t\t\tLathe\t\r\n");

  // A line of tabs and blanks only is neither written nor counted.
  NvAsset blank = AssetWithDates({3, 1, 2019});
  EXPECT_EQ(Line({MakeColumn(1002, '*', "A"), MakeColumn(1002, '*', "DN")}, blank), "(none)");
  blank.description = "   ";
  EXPECT_EQ(Line({MakeColumn(1002, '*', "C"), MakeColumn(1002, '*', "C")}, blank), "(none)");
}

TEST(AssetLineTest, TextsWithQuotesAreQuotedAndTabsPassThrough) {
  NvAsset asset = AssetWithDates({3, 1, 2019});
  asset.description = "Pipe 3\" \"heavy\"";
  asset.location = "A\tB";
  EXPECT_EQ(Line({MakeColumn(1002, '*', "C"), MakeColumn(1003, '*', "C")}, asset),
            "\"Pipe 3\"\" \"\"heavy\"\"\"\tA\tB\r\n");
  EXPECT_EQ(ExportHeadingsLine({MakeColumn(1002, '*', "", "5\" pipe"), MakeColumn(1003, '*', "")}),
            "\"5\"\" pipe\"\t\r\n");
}

TEST(FieldTextTest, AmountsDatesLivesAndTheComputedAmounts) {
  NvAsset asset = AssetWithDates({});
  NvAssetSchedule& b = *asset.Schedule('B');
  b.business_percent = 50;
  b.prior_allowable_depr = 1000;
  b.prior_allowed_depr = 900;
  b.current_depr = 100;
  b.depreciable_basis = 1234.5;
  b.subst_itc_basis = 0.004;
  b.useful_life = {7, 0};
  b.sl_life = {27, 6};
  b.method = 3;
  asset.cash_and_notes = 1000.25;
  asset.trade_in = 200.5;
  asset.purchase_date = {2, 3, 2021};
  asset.user_fields[9] = "tenth";
  auto text = [&asset](int field, char group = '*', bool round = false) {
    return ExportFieldText(field, group, asset, round);
  };
  EXPECT_EQ(text(2019, 'B'), "1200.00");  // allowable: 1000 + 100 * 100 / 50
  EXPECT_EQ(text(2018, 'B'), "1000.00");  // allowed: 900 + 100
  EXPECT_EQ(text(2010, 'B'), "1234.50");  // a substitute ITC basis below half a cent
  b.subst_itc_basis = -0.006;
  EXPECT_EQ(text(2010, 'B'), "-0.01");
  b.business_percent = 100;
  EXPECT_EQ(text(2019, 'B'), "1100.00");

  EXPECT_EQ(text(1008), "1200.75");
  EXPECT_EQ(text(1008, '*', true), "1201");
  EXPECT_EQ(text(2008, 'B', true), "1235");
  EXPECT_EQ(text(1009), "02/03/2021");
  EXPECT_EQ(text(1027), "");
  EXPECT_EQ(text(2006, 'B'), " 7");
  EXPECT_EQ(text(2007, 'B'), "27-6");
  EXPECT_EQ(text(1024), "tenth");
  EXPECT_EQ(text(1012), "0");
  EXPECT_EQ(text(1001), "    17.01");
  EXPECT_EQ(text(1026), "");  // no Transferred To
  EXPECT_EQ(text(1030), kUnimplementedField);
  EXPECT_EQ(text(2024, 'B'), kUnimplementedField);

  // A schedule the asset does not have reads as an empty one.
  EXPECT_EQ(text(2008, 'S'), "0.00");
  EXPECT_EQ(text(2008, 'S', true), "0");
  EXPECT_EQ(text(2001, 'S'), "0");
  EXPECT_EQ(text(2003, 'S'), "");
  EXPECT_EQ(text(2006, 'S'), " 0");
}

// A company with assets 1 to 5, added out of order; asset 3 was placed in service in the
// current year.
class ExportToFileTest : public ::testing::Test {
 protected:
  ExportToFileTest() : ctx_(testing::ContextFor(dir_.path())) {
    NvCompany company(ctx_);
    company.record() = testing::TwoBookCompany();
    EXPECT_EQ(company.Create({"ACME", "Acme Tools"}, NvCompany::kOpenI1 | NvCompany::kOpenI2), 0);
    auto quiet = testing::Script("");
    EXPECT_EQ(company.Open("ACME", NvCompany::kOpenI1 | NvCompany::kOpenI2, *quiet), 1);
    for (long n : {4, 2, 5, 1, 3}) {
      NvAsset asset = testing::MakeAsset(company.record(), n * 7, static_cast<int>(n));
      if (n == 3) asset.date_in_service = {6, 1, 2024};
      EXPECT_EQ(company.AddAsset(&asset), kOk);
    }
    EXPECT_EQ(company.Close(), 0);

    definition_.folder = dir_.path();
    definition_.file_name = "out.txt";
    definition_.columns = {MakeColumn(1001, '*', "ADCN", "No."),
                           MakeColumn(1002, '*', "A", "Added"),
                           MakeColumn(2008, 'T', "C", "Tax basis")};
  }

  std::string Run(std::string_view answers, std::optional<int> expected) {
    auto ui = testing::Script(answers);
    EXPECT_EQ(ExportToFile(ctx_, "acme", definition_, nullptr, *ui), expected);
    EXPECT_FALSE(ui->failed()) << ui->transcript();
    return ui->transcript();
  }

  TempDir dir_;
  InstallationContext ctx_;
  ExportDefinition definition_;
  std::string file_ = dir_.File("out.txt");
};

TEST_F(ExportToFileTest, WritesHeadingsAndOneLinePerAssetInTheChosenOrder) {
  const std::string transcript = Run("", 5);
  EXPECT_NE(transcript.find("title=\"Note\" text=\"5 assets exported.\""), std::string::npos);
  EXPECT_NE(transcript.find("progress title=\"Exporting Assets\" text=\"Company ACME\\nto "),
            std::string::npos)
      << transcript;
  EXPECT_EQ(testing::ReadText(file_),
            "No.\tAdded\tTax basis\r\n"
            "       1.001\t\t1008.00\r\n"
            "       2.001\t\t1016.00\r\n"
            "       3.001\tAsset 21 variant 3\t\r\n"
            "       4.001\t\t1032.00\r\n"
            "       5.001\t\t1040.00\r\n");

  // The company sorts by account first: accounts 1501 to 1504 and 1500 for assets 1 to 5.
  definition_.include_headings = false;
  definition_.sort_order = ExportSortOrder::kCompanySortOrder;
  definition_.columns = {MakeColumn(1005, '*', "ADCN")};
  std::remove(file_.c_str());
  Run("", 5);
  EXPECT_EQ(testing::ReadText(file_),
            "1500-009\r\n1501-007\r\n1502-001\r\n1503-008\r\n1504-002\r\n");
}

TEST_F(ExportToFileTest, AnExistingFileIsErasedOnlyWhenTheUserAgrees) {
  testing::WriteText(dir_.File("OUT.TXT"), "keep me");
  const std::string transcript = Run("no", std::nullopt);
  EXPECT_NE(transcript.find("text=\"File " + InTranscript(file_) +
                            " already exists.  If you wish to continue,\\nthe data currently on "
                            "this file will be erased.\\n\\n  Continue?\""),
            std::string::npos)
      << transcript;
  EXPECT_NE(transcript.find("default=\"&No\""), std::string::npos);
  EXPECT_EQ(testing::ReadText(dir_.File("OUT.TXT")), "keep me");

  Run("yes", 5);  // the file is found in any case and written in its own
  EXPECT_TRUE(testing::ReadText(dir_.File("OUT.TXT")).starts_with("No.\tAdded"));
#ifndef _WIN32  // where names ignore case, the two names are one file
  EXPECT_FALSE(PathExists(file_));
#endif
}

TEST_F(ExportToFileTest, FailuresAreToldAndEndTheRun) {
  definition_.folder = dir_.File("missing");
  EXPECT_NE(Run("", std::nullopt)
                .find("title=\"Error\" text=\"Unable to open file " +
                      InTranscript(JoinPath(dir_.File("missing"), "out.txt"))),
            std::string::npos);

  definition_.folder = dir_.path() + "/";
  auto ui = testing::Script("");
  EXPECT_EQ(ExportToFile(ctx_, "NOSUCH", definition_, nullptr, *ui), std::nullopt);
  EXPECT_NE(ui->transcript().find("title=\"Error\" text=\"Unable to open company files.\""),
            std::string::npos)
      << ui->transcript();

  // Without a folder the file goes beside the company's files.
  definition_.folder.clear();
  definition_.file_name = "beside.txt";
  Run("", 5);
  EXPECT_TRUE(PathExists(dir_.File("beside.txt")));
}

}  // namespace
}  // namespace nv
