#include "import/bna/bna_import.h"

#include <gtest/gtest.h>

#include "base/file_util.h"
#include "base/str_format.h"
#include "base/temp_dir_testing.h"
#include "store/company/asset_testing.h"
#include "store/company/company_check.h"
#include "store/notes/note_file.h"
#include "store/store_testing.h"
#include "ui/scripted_ui_testing.h"

namespace nv {
namespace {

using testing::ContextFor;
using testing::Script;
using testing::TempDir;
using testing::WriteText;

constexpr char kNewCompanySteps[] = "choose 0\ntext NEWCO\nsave\nyes\n";
constexpr char kAddToAcmeSteps[] =
    "choose 1\ntext ACME\nchoose-text Add assets to existing company\nyes\n";

class BnaImportTest : public ::testing::Test {
 protected:
  BnaImportTest() : folder_(dir_.path()), ctx_(ContextFor(folder_)) {}

  std::string Path(std::string_view name) const { return folder_ + "/" + std::string(name); }
  // Starts again in an empty installation folder of its own.
  void NewFolder(std::string_view name) {
    folder_ = Path(name);
    ASSERT_TRUE(MakeDirectories(folder_));
    ctx_ = ContextFor(folder_);
  }

  // A comma-separated profile; `checkboxes` none leaves "Data CheckBoxes" out.
  void Profile(std::string_view definitions, std::optional<std::string> checkboxes = "*GTBACSO",
               std::string_view parameters = "", std::string_view specials = "") {
    std::string text = "[Parameters]\nfile type=CSV\n";
    if (checkboxes) text += "Data CheckBoxes=" + *checkboxes + "\n";
    text += std::string(parameters) + "\n[conversion definitions]\n" + std::string(definitions) +
            "\n[special conversions]\n" + std::string(specials);
    WriteText(Path("TEST.IMP"), text);
  }
  void Report(std::string_view lines) { WriteText(Path("REPORT.CSV"), std::string(lines)); }

  // The company steps answered by `steps`, then one "Import Data" with TEST.IMP over
  // REPORT.CSV answered by `run`.
  BnaImportResult Import(std::string_view steps, std::string_view run = "") {
    auto ui = Script(std::string(steps) + std::string(run));
    BnaSession session(ctx_, *ui);
    session.today = {11, 24, 2026};
    session.note_seconds = 13 * 3600;
    BnaImportResult result;
    if (RunBnaCompanySteps(session)) {
      BnaImportState& state = session.state;
      SwitchBnaProfile(state.profiles, "TEST.IMP");
      const BnaParameters params = ReadBnaParameters(state.profiles);
      state.file_type = params.file_type;
      state.checked_groups = params.checked_groups;
      LoadDefinitions(state.profiles, state.checked_groups, state.definitions);
      state.source_path = Path("REPORT.CSV");
      result = RunBnaImportData(session);
    }
    transcript_ = ui->transcript();
    EXPECT_FALSE(ui->failed()) << transcript_;
    return result;
  }

  // Company ACME (format 6, 3, digits; schedules B and T) holding `numbers`, each described
  // "Old" and located in "L1".
  void MakeAcme(const std::vector<std::string>& numbers) {
    NvCompany company(ctx_);
    NvCompanyRecord record = testing::TwoBookCompany();
    record.asset_no_format = {6, 3, 0};
    record.number = "ACME";
    company.record() = record;
    ASSERT_EQ(company.Create({"ACME", "Acme"}, NvCompany::kOpenI1 | NvCompany::kOpenI2), 0);
    ASSERT_GT(company.Open("ACME", NvCompany::kOpenI1 | NvCompany::kOpenI2, *Script("")), 0);
    for (const std::string& n : numbers) {
      NvAsset asset;
      asset.Clear(record.schedule_letters);
      asset.number = NvAssetNo::Parse(n, record.asset_no_format);
      asset.description = "Old";
      asset.location = "L1";
      ASSERT_GE(company.AddAsset(&asset), 0) << n;
    }
    ASSERT_EQ(company.Close(), 0);
  }

  std::optional<NvAsset> Find(std::string_view company_number, std::string_view number) {
    NvCompany company(ctx_);
    EXPECT_GT(company.Open(company_number, NvCompany::kOpenI1 | NvCompany::kReadOnly, *Script("")),
              0);
    NvAsset asset;
    if (company.FindAsset(number, &asset) < 0 || asset.record_number == 0) return std::nullopt;
    return asset;
  }

  bool Has(std::string_view text) const { return transcript_.find(text) != std::string::npos; }

  TempDir dir_;
  std::string folder_;
  InstallationContext ctx_;
  std::string transcript_;
};

TEST_F(BnaImportTest, EachDuplicateModeTreatsAnExistingNumberItsOwnWay) {
  struct Case {
    const char* keyword;
    long imported;
    const char* description_of_1;  // what asset 1 says afterwards
    bool location_kept;
    bool subasset_added;
  };
  const Case cases[] = {
      {"replace values", 1, "New", true, false},  // combined: the location stays
      {"replace asset", 1, "New", false, false},  // a new asset in its place
      {"drop new asset", 0, "Old", true, false},
      {"create subasset", 1, "Old", true, true},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.keyword);
    NewFolder(std::string(c.keyword).substr(0, std::string(c.keyword).find(' ')));
    MakeAcme({"1", "1.1"});
    Profile("Asset No.=A,ENTIRE,0,\nDescription=B,ENTIRE,0,", "*G",
            std::string("duplicate processing=") + c.keyword);
    Report("1,New\n");
    const BnaImportResult result = Import(kAddToAcmeSteps, "yes\n");
    EXPECT_TRUE(result.completed);
    EXPECT_EQ(result.imported, c.imported);
    EXPECT_TRUE(Has(StrPrintf("text=\"%ld assets imported.\"", c.imported))) << transcript_;
    std::optional<NvAsset> one = Find("ACME", "1");
    ASSERT_TRUE(one);
    EXPECT_EQ(one->description, c.description_of_1);
    EXPECT_EQ(one->location == "L1", c.location_kept) << one->location;
    std::optional<NvAsset> two = Find("ACME", "1.2");
    EXPECT_EQ(two.has_value(), c.subasset_added);
    if (two) {
      EXPECT_EQ(two->description, "New");
    }
    const std::string log = ReadFileBytes(Path("ACME.LOG")).value_or("");
    EXPECT_EQ(log.find("IMPT") != std::string::npos, std::string(c.keyword) == "replace asset")
        << log;
  }
}

TEST_F(BnaImportTest, ChangingTheDuplicateModeIsWrittenBackAndCancelImportsNothing) {
  MakeAcme({"1"});
  Profile("Asset No.=A,ENTIRE,0,\nDescription=B,ENTIRE,0,", "*G");
  Report("1,New\n2,Two\n");
  // The profile's default mode is asked first; "No" leads to the list.
  BnaImportResult result = Import(kAddToAcmeSteps, "no\nchoose-text Ignore the new asset data.\n");
  EXPECT_TRUE(Has("title=\"Choose Duplicate Processing\"")) << transcript_;
  EXPECT_EQ(result.imported, 1);
  EXPECT_EQ(Find("ACME", "1")->description, "Old");
  EXPECT_NE(ReadFileBytes(Path("TEST.IMP"))->find("duplicate processing=drop new asset"),
            std::string::npos);

  result = Import(kAddToAcmeSteps, "cancel\n");
  EXPECT_FALSE(result.started);
  EXPECT_FALSE(Has("assets imported.")) << transcript_;
}

TEST_F(BnaImportTest, SubassetsRunOutAtNineHundredNinetyNine) {
  std::vector<std::string> numbers;
  for (int s = 0; s <= 999; ++s) numbers.push_back(StrPrintf("5.%d", s));
  for (int s = 0; s <= 998; ++s) numbers.push_back(StrPrintf("6.%d", s));
  MakeAcme(numbers);
  Profile("Asset No.=A,ENTIRE,0,\nDescription=B,ENTIRE,0,", "*G",
          "duplicate processing=create subasset");
  Report("5,Full\n6,Last free\n");
  const BnaImportResult result = Import(kAddToAcmeSteps, "yes\n");
  EXPECT_EQ(result.imported, 1);
  EXPECT_EQ(Find("ACME", "6.999")->description, "Last free");
  EXPECT_NE(result.report_text.find("line 1"), std::string::npos) << result.report_text;
}

TEST_F(BnaImportTest, ValuesOfALineAreConvertedAsTheRunStoresThem) {
  Profile(
      "Asset No.=A,ENTIRE,0,\nCash and Notes=B,ENTIRE,0,\nTrade In=C,ENTIRE,0,\n"
      "Date Purchased=D,ENTIRE,0,\nDate in Service=E,ENTIRE,0,\nDepr Method=,SET,0,2\n"
      "Basis=F,ENTIRE,0,\nBasis, Tax=G,ENTIRE,0,\nUseful Life=H,ENTIRE,0,",
      "*GTB", "dollar decimal places=2");
  // Implied decimals only where there is no point; parentheses are negative. Only one of
  // the two dates on each line. Basis: Book from the general key, Tax from its own.
  Report(
      "* header\n"
      "1,123456,\"(1,234.50)\",03/15/2021,,100000,123456,7-6\n"
      "2,500.00,0,,7/4/98,500.00,700.00,39\n");
  const BnaImportResult result = Import(kNewCompanySteps);
  ASSERT_EQ(result.imported, 2) << result.report_text;

  const NvAsset one = *Find("NEWCO", "1");
  EXPECT_DOUBLE_EQ(one.cash_and_notes, 1234.56);
  EXPECT_DOUBLE_EQ(one.trade_in, -1234.50);
  EXPECT_EQ(one.date_in_service, (Date{3, 15, 2021}));
  const NvAssetSchedule& book = *one.Schedule('B');
  EXPECT_DOUBLE_EQ(book.substitute_basis, 1000.00);
  EXPECT_EQ(book.asset_type, "S");
  EXPECT_EQ(book.useful_life, (YearsMonths{7, 6}));
  EXPECT_EQ(book.method, 2);
  // The cost is 1234.56 - 1234.50: both bases differ from it.
  EXPECT_DOUBLE_EQ(one.Schedule('T')->substitute_basis, 1234.56);
  EXPECT_EQ(one.Schedule('A')->method, 2) << "unchecked AMT box: the general key still serves";

  const NvAsset two = *Find("NEWCO", "2");
  EXPECT_EQ(two.purchase_date, (Date{7, 4, 1998}));
  EXPECT_DOUBLE_EQ(two.Schedule('B')->substitute_basis, 0.0) << "equal to the cost: not kept";
  EXPECT_EQ(two.Schedule('B')->asset_type, "");
  EXPECT_DOUBLE_EQ(two.Schedule('T')->substitute_basis, 700.0);
  EXPECT_EQ(two.Schedule('B')->useful_life, (YearsMonths{39, 0}));
}

TEST_F(BnaImportTest, WithoutCheckBoxesOnlyAssetNumbersAreFilled) {
  Profile("Asset No.=A,ENTIRE,0,\nDescription=B,ENTIRE,0,\nDepr Method, Tax=C,ENTIRE,0,",
          std::nullopt);
  Report("1,Desk,3\n");
  ASSERT_EQ(Import(kNewCompanySteps).imported, 1);
  const NvAsset desk = *Find("NEWCO", "1");
  EXPECT_EQ(desk.description, "");
  EXPECT_EQ(desk.Schedule('T')->method, kMethodNa);
}

TEST_F(BnaImportTest, Section179ComesOutOfTheAccumulatedAmountsOfBnaNdProfilesOnly) {
  const char* definitions =
      "Asset No.=A,ENTIRE,0,\nDepr Method=,SET,0,2\nAccum. Allowed=B,ENTIRE,0,\n"
      "179 Expense=C,ENTIRE,0,\n"
      "Accum. Allowable=D,ENTIRE,0,";
  for (bool bna_nd : {false, true}) {
    SCOPED_TRACE(bna_nd);
    NewFolder(bna_nd ? "bna_nd" : "other");
    // Line 1: Allowed alone stands for both. Line 2: Allowable alone.
    Report("1,1000,300,\n2,,300,800\n");
    Profile(definitions, "*GT", bna_nd ? "Profile Type=bna_nd" : "Profile Type=other");
    ASSERT_EQ(Import(kNewCompanySteps).imported, 2);
    const double taken = bna_nd ? 300 : 0;
    const NvAssetSchedule one = *Find("NEWCO", "1")->Schedule('T');
    EXPECT_DOUBLE_EQ(one.prior_allowed_depr, 1000 - taken);
    EXPECT_DOUBLE_EQ(one.prior_allowable_depr, 1000 - taken);
    EXPECT_DOUBLE_EQ(one.sec179_expense, 300);
    const NvAssetSchedule two = *Find("NEWCO", "2")->Schedule('T');
    EXPECT_DOUBLE_EQ(two.prior_allowed_depr, 800 - taken);
    EXPECT_DOUBLE_EQ(two.prior_allowable_depr, 800 - taken);
  }
}

TEST_F(BnaImportTest, NotesAreStampedAndLeftOutLinesNamedByTheirLineNumber) {
  Profile("Asset No.=A,ENTIRE,0,\nNote Text=B,ENTIRE,0,", "*G");
  // Line 3 has no asset number, line 4 one the company's format cannot hold, line 6
  // repeats line 2's number into a new company (dropped).
  Report("* comment\n7,Bought at auction\n,orphan\nAB7,letters\n* another\n7,again\n");
  const BnaImportResult result = Import(kNewCompanySteps);
  EXPECT_EQ(result.imported, 1);
  for (const char* line : {"line 3", "line 4", "line 6"}) {
    EXPECT_NE(result.report_text.find(line), std::string::npos) << line << result.report_text;
  }
  EXPECT_EQ(result.report_text.find("line 2"), std::string::npos) << result.report_text;
  NoteFile notes(Path("NEWCO.NOT"), 9);  // the default format 6, 2
  NoteList list;
  ASSERT_TRUE(notes.ReadNotes(Find("NEWCO", "7")->number.DisplayText(), &list));
  ASSERT_EQ(list.notes.size(), 1u);
  EXPECT_EQ(list.notes[0].text, "Bought at auction");
  EXPECT_EQ(list.notes[0].date, (Date{11, 24, 2026}));

  NvCompany company(ctx_);
  ASSERT_GT(company.Open("NEWCO", NvCompany::kOpenI1 | NvCompany::kOpenI2 | NvCompany::kReadOnly,
                         *Script("")),
            0);
  EXPECT_TRUE(CheckCompany(company).problems.empty());
}

TEST_F(BnaImportTest, NoAssetNumberDefinitionImportsNothingButStillCounts) {
  Profile("Description=B,ENTIRE,0,", "*G");
  Report("1,Desk\n");
  const BnaImportResult result = Import(kNewCompanySteps);
  EXPECT_TRUE(result.started);
  EXPECT_EQ(result.imported, 0);
  EXPECT_TRUE(Has("message title=\"Note\" text=\"0 assets imported.\"")) << transcript_;
}

}  // namespace
}  // namespace nv
