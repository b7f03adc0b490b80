// The export run: which assets fall in which class, what a line holds for them, and the
// file that a definition writes from a company.
#include "export/export_run.h"

#include <gtest/gtest.h>

#include "base/temp_dir_testing.h"
#include "store/company/asset_testing.h"
#include "store/file/status.h"
#include "store/store_testing.h"
#include "ui/scripted_ui_testing.h"
#include "ui/selection/selection.h"

namespace nv {
namespace {

constexpr Date kLastClosed{12, 31, 2023};
constexpr Date kYearEnd{12, 31, 2024};

ExportColumn Column(int field, char group, std::string_view flags, std::string heading = {}) {
  ExportColumn column;
  column.field = field;
  column.group = group;
  column.heading = std::move(heading);
  column.addition = flags.find('A') != std::string_view::npos;
  column.disposition = flags.find('D') != std::string_view::npos;
  column.current = flags.find('C') != std::string_view::npos;
  column.none_of_the_above = flags.find('N') != std::string_view::npos;
  return column;
}

NvAsset AssetWithDates(Date in_service, Date disposed = {}) {
  NvAsset asset;
  asset.Clear("B");
  asset.number = NvAssetNo::Parse("17.1", {6, 2, 0});
  asset.description = "Lathe";
  asset.date_in_service = in_service;
  asset.disposal_date = disposed;
  return asset;
}

std::string Classes(const NvAsset& asset) {
  const ExportAssetClass kind = ClassifyAsset(asset, kLastClosed, kYearEnd);
  std::string letters;
  if (kind.addition) letters += 'A';
  if (kind.disposition) letters += 'D';
  if (kind.current) letters += 'C';
  if (kind.none_of_the_above) letters += 'N';
  return letters;
}

TEST(ClassifyAssetTest, CurrentYearRunsAfterLastClosedUpToYearEnd) {
  EXPECT_EQ(Classes(AssetWithDates({1, 1, 2024})), "A");
  EXPECT_EQ(Classes(AssetWithDates({12, 31, 2024})), "A");
  EXPECT_EQ(Classes(AssetWithDates({12, 31, 2023})), "C");  // in service on the last closed day
  EXPECT_EQ(Classes(AssetWithDates({1, 1, 2025})), "N");
  EXPECT_EQ(Classes(AssetWithDates({})), "C");
  // Placed in service and disposed of in the current year: both, never current.
  EXPECT_EQ(Classes(AssetWithDates({3, 1, 2024}, {9, 30, 2024})), "AD");
  EXPECT_EQ(Classes(AssetWithDates({3, 1, 2019}, {12, 31, 2024})), "D");
  EXPECT_EQ(Classes(AssetWithDates({3, 1, 2019}, {12, 31, 2023})), "N");
  EXPECT_EQ(Classes(AssetWithDates({3, 1, 2019}, {1, 5, 2025})), "C");
}

class AssetLineTest : public ::testing::Test {
 protected:
  std::string Line(const std::vector<ExportColumn>& columns, const NvAsset& asset,
                   bool written = true) {
    std::string out = "before\r\n";
    const int counted = count_;
    EXPECT_EQ(WriteAssetLine(columns, settings_, asset, out, count_), written);
    EXPECT_EQ(count_, counted + (written ? 1 : 0));
    EXPECT_TRUE(out.starts_with("before\r\n"));
    return out.substr(8);
  }

  ExportLineSettings settings_{kLastClosed, kYearEnd, false};
  int count_ = 0;
};

TEST_F(AssetLineTest, ColumnsHoldValuesOnlyForTheirClasses) {
  const std::vector<ExportColumn> columns = {Column(1002, '*', "A"), Column(1002, '*', "D"),
                                             Column(1002, '*', "C"), Column(1002, '*', "N"),
                                             Column(1002, '*', "")};
  EXPECT_EQ(Line(columns, AssetWithDates({3, 1, 2024}, {9, 30, 2024})), "Lathe\tLathe\t\t\t\r\n");
  EXPECT_EQ(Line(columns, AssetWithDates({3, 1, 2019})), "\t\tLathe\t\t\r\n");
  EXPECT_EQ(Line(columns, AssetWithDates({3, 1, 2025})), "\t\t\tLathe\t\r\n");
}

TEST_F(AssetLineTest, LinesWithNothingButBlanksAreNeitherWrittenNorCounted) {
  const NvAsset current = AssetWithDates({3, 1, 2019});
  EXPECT_EQ(Line({Column(1002, '*', "A"), Column(1002, '*', "DN")}, current, false), "");
  // A value of blanks only is no value either.
  NvAsset blank = current;
  blank.description = "   ";
  EXPECT_EQ(Line({Column(1002, '*', "C"), Column(1003, '*', "C")}, blank, false), "");
  // One character is enough.
  blank.location = "9";
  EXPECT_EQ(Line({Column(1002, '*', "C"), Column(1003, '*', "C")}, blank), "   \t9\r\n");
  EXPECT_EQ(count_, 1);
}

TEST_F(AssetLineTest, TextsWithQuotesAreQuotedAndTabsPassThrough) {
  NvAsset asset = AssetWithDates({3, 1, 2019});
  asset.description = "Pipe 3\" \"heavy\"";
  asset.location = "A\tB";
  asset.category = "plain, with comma";
  const std::vector<ExportColumn> columns = {Column(1002, '*', "C"), Column(1003, '*', "C"),
                                             Column(1004, '*', "C")};
  EXPECT_EQ(Line(columns, asset), "\"Pipe 3\"\" \"\"heavy\"\"\"\tA\tB\tplain, with comma\r\n");
  EXPECT_EQ(ExportHeadingsLine({Column(1002, '*', "", "5\" pipe"), Column(1003, '*', "", "")}),
            "\"5\"\" pipe\"\t\r\n");
}

class FieldTextTest : public ::testing::Test {
 protected:
  FieldTextTest() {
    asset_.Clear("BT");
    NvAssetSchedule& b = *asset_.Schedule('B');
    b.business_percent = 50;
    b.prior_allowable_depr = 1000;
    b.prior_allowed_depr = 900;
    b.current_depr = 100;
    b.depreciable_basis = 1234.5;
    b.useful_life = {7, 0};
    b.sl_life = {27, 6};
    b.method = 3;
    asset_.cash_and_notes = 1000.25;
    asset_.trade_in = 200.5;
    asset_.purchase_date = {2, 3, 2021};
    asset_.user_fields[9] = "tenth";
    asset_.number = NvAssetNo::Parse("17.1", {6, 2, 0});
  }
  std::string Text(int field, char group = '*', bool round = false) const {
    return ExportFieldText(field, group, asset_, round);
  }

  NvAsset asset_;
};

TEST_F(FieldTextTest, EndingAllowableIsGrossedUpByThePartialBusinessPercent) {
  EXPECT_EQ(Text(2019, 'B'), "1200.00");  // 1000 + 100 * 100 / 50
  EXPECT_EQ(Text(2018, 'B'), "1000.00");  // allowed: not grossed up
  asset_.Schedule('B')->business_percent = 100;
  EXPECT_EQ(Text(2019, 'B'), "1100.00");
  asset_.Schedule('B')->business_percent = 0;
  EXPECT_EQ(Text(2019, 'B'), "1100.00");
}

TEST_F(FieldTextTest, ItcBasisFallsBackToTheDepreciableBasis) {
  EXPECT_EQ(Text(2010, 'B'), "1234.50");
  asset_.Schedule('B')->subst_itc_basis = 0.004;
  EXPECT_EQ(Text(2010, 'B'), "1234.50");
  asset_.Schedule('B')->subst_itc_basis = -0.006;
  EXPECT_EQ(Text(2010, 'B'), "-0.01");
}

TEST_F(FieldTextTest, ValueForms) {
  EXPECT_EQ(Text(1008), "1200.75");
  EXPECT_EQ(Text(1008, '*', true), "1201");
  EXPECT_EQ(Text(2008, 'B', true), "1235");
  EXPECT_EQ(Text(1009), "02/03/2021");
  EXPECT_EQ(Text(1027), "");
  EXPECT_EQ(Text(2006, 'B'), " 7");
  EXPECT_EQ(Text(2007, 'B'), "27-6");
  EXPECT_EQ(Text(1024), "tenth");
  EXPECT_EQ(Text(1012), "0");
  EXPECT_EQ(Text(1001), "    17.01");
  EXPECT_EQ(Text(1026), "");  // no Transferred To
  EXPECT_EQ(Text(1030), kUnimplementedField);
  EXPECT_EQ(Text(2024, 'B'), kUnimplementedField);
}

TEST_F(FieldTextTest, ScheduleTheAssetLacksReadsAsAnEmptyPart) {
  EXPECT_EQ(Text(2008, 'S'), "0.00");
  EXPECT_EQ(Text(2008, 'S', true), "0");
  EXPECT_EQ(Text(2001, 'S'), "0");
  EXPECT_EQ(Text(2003, 'S'), "");
  EXPECT_EQ(Text(2006, 'S'), " 0");
  EXPECT_EQ(Text(2001, 'B'), "3");
}

// A company with assets 1 to 5; asset 3 was placed in service in the current year.
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

    definition_.name = "Test";
    definition_.folder = dir_.path();
    definition_.file_name = "out.txt";
    definition_.columns = {Column(1001, '*', "ADCN", "No."), Column(1002, '*', "A", "Added"),
                           Column(2008, 'T', "C", "Tax basis")};
  }

  std::string Run(std::string_view answers, std::optional<int> expected,
                  const KelSelection* selection = nullptr) {
    auto ui = testing::Script(answers);
    EXPECT_EQ(ExportToFile(ctx_, "acme", definition_, selection, *ui), expected);
    EXPECT_FALSE(ui->failed()) << ui->transcript();
    return ui->transcript();
  }

  TempDir dir_;
  InstallationContext ctx_;
  ExportDefinition definition_;
  std::string file_ = dir_.File("out.txt");
};

TEST_F(ExportToFileTest, WritesHeadingsAndOneLinePerAssetInNumberOrder) {
  const std::string transcript = Run("", 5);
  EXPECT_NE(transcript.find("title=\"Note\" text=\"5 assets exported.\""), std::string::npos)
      << transcript;
  EXPECT_EQ(testing::ReadText(file_),
            "No.\tAdded\tTax basis\r\n"
            "       1.001\t\t1008.00\r\n"
            "       2.001\t\t1016.00\r\n"
            "       3.001\tAsset 21 variant 3\t\r\n"
            "       4.001\t\t1032.00\r\n"
            "       5.001\t\t1040.00\r\n");
}

TEST_F(ExportToFileTest, SelectionAndSortOrderChooseTheLines) {
  definition_.include_headings = false;
  definition_.sort_order = ExportSortOrder::kCompanySortOrder;  // by account first: "ACL"
  definition_.columns = {Column(1005, '*', "ADCN")};
  Run("", 5);
  EXPECT_EQ(testing::ReadText(file_),
            "1500-009\r\n1501-007\r\n1502-001\r\n1503-008\r\n1504-002\r\n");

  KelSelection selection;
  const std::optional<int> location = FindSelectionField("Location");
  ASSERT_TRUE(location);
  selection.criteria[*location] = {true, "L1-L2", false};
  definition_.sort_order = ExportSortOrder::kAssetNumber;
  Run("yes", 3, &selection);  // locations L1, L2, L3, L0, L1 of assets 1 to 5
  EXPECT_EQ(testing::ReadText(file_), "1501-007\r\n1502-001\r\n1500-009\r\n");
}

TEST_F(ExportToFileTest, AnExistingFileIsErasedOnlyWhenTheUserAgrees) {
  testing::WriteText(dir_.File("OUT.TXT"), "keep me");
  std::string transcript = Run("no", std::nullopt);
  EXPECT_NE(transcript.find("File " + file_ +
                            " already exists.  If you wish to continue,\\nthe data currently on "
                            "this file will be erased.\\n\\n  Continue?"),
            std::string::npos)
      << transcript;
  EXPECT_NE(transcript.find("default=\"&No\""), std::string::npos);
  EXPECT_EQ(testing::ReadText(dir_.File("OUT.TXT")), "keep me");

  Run("yes", 5);
  EXPECT_TRUE(testing::ReadText(dir_.File("OUT.TXT")).starts_with("No.\tAdded"));
  EXPECT_FALSE(PathExists(file_));  // the existing file was written, in its own case
}

TEST_F(ExportToFileTest, FailuresAreToldAndEndTheRun) {
  definition_.folder = dir_.File("missing");
  std::string transcript = Run("", std::nullopt);
  EXPECT_NE(transcript.find("title=\"Error\" text=\"Unable to open file " + dir_.File("missing") +
                            "/out.txt\""),
            std::string::npos)
      << transcript;

  definition_.folder = dir_.path() + "/";
  auto ui = testing::Script("");
  EXPECT_EQ(ExportToFile(ctx_, "NOSUCH", definition_, nullptr, *ui), std::nullopt);
  EXPECT_NE(ui->transcript().find("title=\"Error\" text=\"Unable to open company files.\""),
            std::string::npos)
      << ui->transcript();
  EXPECT_EQ(testing::ReadText(file_), "No.\tAdded\tTax basis\r\n");

  // Without a folder the file goes beside the company's files.
  definition_.folder.clear();
  definition_.file_name = "beside.txt";
  Run("", 5);
  EXPECT_TRUE(PathExists(dir_.File("beside.txt")));
}

}  // namespace
}  // namespace nv
