#include "tools/import_command.h"

#include <gtest/gtest.h>

#include <map>
#include <sstream>

#include "base/file.h"
#include "base/file_util.h"
#include "base/temp_dir_testing.h"
#include "import/aicpa/aicpa_importer.h"
#include "import/aicpa/aicpa_testing.h"
#include "import/fas1000/fas1000_testing.h"
#include "import/faswin/faswin_testing.h"
#include "import/frame/frame_testing.h"
#include "store/codes/account_groups.h"
#include "store/company/asset_testing.h"
#include "store/store_testing.h"
#include "ui/scripted_ui_testing.h"

namespace nv {
namespace {

using testing::TinyDescriptor;
using testing::TinyImporter;
using testing::WriteText;

std::string ParseError(std::vector<std::string> args) {
  std::string error;
  EXPECT_FALSE(ParseImportCommand(args, &error).has_value()) << "accepted";
  return error;
}

TEST(ImportCommandTest, OptionsAreReadAndWrongOnesRefusedWithTheReason) {
  std::string error;
  std::optional<ImportCommandOptions> options =
      ParseImportCommand({"pcfas", "COMPANY1.FAS", "/data", "acme", "--existing", "add", "--match",
                          "201=101,205=0", "--books", "t=102", "--company", "c.json"},
                         &error);
  ASSERT_TRUE(options) << error;
  EXPECT_EQ(options->number, "ACME");
  EXPECT_EQ(options->existing, "add");
  EXPECT_EQ(options->matches, (std::vector<std::pair<int, int>>{{201, 101}, {205, 0}}));
  EXPECT_EQ(options->books, (std::vector<std::pair<char, int>>{{'T', 102}}));

  EXPECT_NE(ParseError({"lotus", "x", "/d", "A"}).find("unknown kind 'lotus'"), std::string::npos);
  EXPECT_NE(ParseError({"mba", "x", "/d", "A", "--match", "201"}).find("DEST=SRC"),
            std::string::npos);
  EXPECT_NE(ParseError({"mba", "x", "/d", "A", "--match", "201=x1"}).find("not two item ids"),
            std::string::npos);
  EXPECT_NE(ParseError({"mba", "x", "/d", "A", "--match", "201=101,"}).find("DEST=SRC"),
            std::string::npos);
  EXPECT_NE(ParseError({"faswin", "x", "/d", "A", "--books", "TX=101"}).find("schedule letter"),
            std::string::npos);
  EXPECT_NE(ParseError({"mba", "x", "/d", "A", "--existing", "merge"}).find("--existing"),
            std::string::npos);
  EXPECT_NE(ParseError({"mba", "x", "/d", "A", "--existing"}).find("needs a value"),
            std::string::npos);
  EXPECT_NE(ParseError({"mba", "x", "/d", "A", "--force", "yes"}).find("unknown option --force"),
            std::string::npos);
  EXPECT_NE(ParseError({"mba", "x", "/d"}).find("KIND SOURCE FOLDER NUMBER"), std::string::npos);
  EXPECT_NE(ParseError({"mba", "x", "/d", "AC.ME"}).find("company number"), std::string::npos);
}

TEST(ImportCommandTest, TheAicpaQuestionsHaveOptionsOfTheirOwnWithTheWindowsDefaults) {
  std::string error;
  std::optional<ImportCommandOptions> options =
      ParseImportCommand({"aicpa", "A.AST", "/d", "A"}, &error);
  ASSERT_TRUE(options) << error;
  EXPECT_EQ(options->prompt_answers,
            (std::map<std::string, std::string>{{kAicpaAccountChoice, "Asset Account No."},
                                                {kAicpaSwitchQuestion, "no"},
                                                {kAicpaNoDispositionsQuestion, "no"}}));
  options = ParseImportCommand({"aicpa", "A.AST", "/d", "A", "--account", "accumulated",
                                "--switch-sl", "yes", "--without-dispositions", "yes"},
                               &error);
  ASSERT_TRUE(options) << error;
  EXPECT_EQ(options->prompt_answers,
            (std::map<std::string, std::string>{
                {kAicpaAccountChoice, "Accumulated Depr. Account Account No."},
                {kAicpaSwitchQuestion, "yes"},
                {kAicpaNoDispositionsQuestion, "yes"}}));
  EXPECT_NE(ParseError({"aicpa", "x", "/d", "A", "--account", "cash"})
                .find("--account takes asset|accumulated|expense"),
            std::string::npos);
  EXPECT_NE(ParseError({"mba", "x", "/d", "A", "--switch-sl", "yes"}).find("unknown option"),
            std::string::npos);
}

class ImportCommandRunTest : public ::testing::Test {
 protected:
  ImportCommandRunTest() {
    options_.source = dir_.path() + "/src.tny";
    options_.folder = dir_.path();
    options_.number = "NEWCO";
    WriteText(options_.source, "Tiny Widgets\n100|Press|1000|01/15/2024||\n");
  }

  int Run(TinyImporter& importer) {
    out_.str("");
    err_.str("");
    return RunImportCommandWith(importer, options_, out_, err_);
  }

  TempDir dir_;
  ImportCommandOptions options_;
  std::ostringstream out_, err_;
};

TEST_F(ImportCommandRunTest, ANewCompanyTakesTheDocumentsMembersAndPrintsWhatTheWindowsShow) {
  const std::string json = dir_.path() + "/c.json";
  WriteText(json, R"({"company": {"name": "From JSON", "last_closed": "12/31/2024"}})");
  options_.company_json = json;
  TinyImporter importer(TinyDescriptor());
  ASSERT_EQ(Run(importer), 0) << out_.str() << err_.str();
  const std::string out = out_.str();
  EXPECT_NE(out.find("company-screen number=\"NEWCO\" name=\"From JSON\" ein=\"\" "
                     "last_closed=\"12/31/2024\" current_year_end=\"12/31/2025\""),
            std::string::npos)
      << out;
  EXPECT_NE(out.find("message title=\"Done\" text=\"1 assets copied.\""), std::string::npos);
  EXPECT_NE(out.find("answered by default: question \"Save this company?\": yes"),
            std::string::npos)
      << out;
  EXPECT_NE(out.find("Assets added: 1"), std::string::npos);
  EXPECT_TRUE(PathExists(dir_.path() + "/NEWCO.A"));

  // Again: the company exists, and the default --existing abort refuses as the window does.
  ASSERT_EQ(Run(importer), 1);
  EXPECT_NE(out_.str().find("-> choose 3 \"Abort this import\""), std::string::npos) << out_.str();
  options_.existing = "add";
  ASSERT_EQ(Run(importer), 0) << out_.str();
  EXPECT_NE(out_.str().find("text=\"0 assets copied.\""), std::string::npos) << out_.str();
}

TEST_F(ImportCommandRunTest, MatchPairsGoOnThePanelAndAnUnknownIdIsAUsageError) {
  TinyImporter importer(TinyDescriptor());
  importer.fields.destinations = {{201, "Account"}, {202, "User Field 1"}};
  importer.fields.sources = {{101, "Acct"}, {102, "Dept"}};
  importer.fields.preset = {{201, 101}};
  options_.matches = {{202, 102}, {201, 0}};
  ASSERT_EQ(Run(importer), 0) << out_.str() << err_.str();
  EXPECT_NE(out_.str().find("-> match 202=102 201=0, ok pairs=[202=102]"), std::string::npos)
      << out_.str();

  options_.number = "OTHER";
  options_.matches = {{203, 101}};
  EXPECT_EQ(Run(importer), 2);
  EXPECT_NE(err_.str().find("--match: no destination item 203"), std::string::npos) << err_.str();
  EXPECT_FALSE(PathExists(dir_.path() + "/OTHER.A") &&
               out_.str().find("assets copied") != std::string::npos);
}

// The AICPA importer's own questions are answered from its options; without a dispositions
// file the default ends the import as the window's No does.
TEST_F(ImportCommandRunTest, AicpaOptionsAnswerTheAccountChoiceAndBothQuestions) {
  const std::string source = dir_.path() + "/ACME.AST";
  std::vector<std::string> lines =
      testing::ReportHead("Acme", "For the 12 Months Ended 12/31/2024", {"Federal"});
  for (const std::string& line :
       {std::string("\f"), testing::ValueRow("Asset No.", "7", 41),
        testing::ValueRow("Asset Description (line 1)", "Lathe"),
        testing::BookRow("Date Acquired", {"01/01/2024"}), testing::BookRow("Method", {"200DB"}),
        testing::AccountRow("Asset", "1500"),
        testing::AccountRow("Accumulated Depreciation", "1510"),
        testing::AccountRow("Depreciation/Amortization Expense", "6100")}) {
    lines.push_back(line);
  }
  WriteText(source, testing::Joined(lines));
  std::string error;
  std::optional<ImportCommandOptions> options =
      ParseImportCommand({"aicpa", source, dir_.path(), "NEWCO"}, &error);
  ASSERT_TRUE(options) << error;
  std::ostringstream out, err;
  EXPECT_EQ(RunImportCommand(*options, out, err), 1);
  EXPECT_NE(
      out.str().find("Continue?\" buttons=[\"&Yes\", \"&No\", \"Cancel\"] default=\"&No\" -> no"),
      std::string::npos)
      << out.str();
  EXPECT_FALSE(PathExists(dir_.path() + "/NEWCO.A"));

  options = ParseImportCommand({"aicpa", source, dir_.path(), "NEWCO", "--without-dispositions",
                                "yes", "--account", "expense", "--switch-sl", "yes"},
                               &error);
  ASSERT_TRUE(options) << error;
  out.str("");
  ASSERT_EQ(RunImportCommand(*options, out, err), 0) << out.str() << err.str();
  EXPECT_NE(out.str().find("-> choose 2 \"Depreciation Expense Account No.\""), std::string::npos)
      << out.str();
  EXPECT_NE(out.str().find("Straight Line?\" buttons=[\"&Yes\", \"&No\", \"Cancel\"] "
                           "default=\"&No\" -> yes"),
            std::string::npos)
      << out.str();
  EXPECT_NE(out.str().find("text=\"1 assets copied.\""), std::string::npos);
  AccountGroupList groups;
  ASSERT_EQ(LoadAccountGroups(dir_.path() + "/", "NEWCO", &groups), 1);
  EXPECT_EQ(groups.groups[0].code, "6100");
}

TEST_F(ImportCommandRunTest, RefusesBeforeTouchingAnything) {
  TinyImporter importer(TinyDescriptor());
  options_.company_json = dir_.path() + "/bad.json";
  WriteText(options_.company_json, R"({"company": {"name": )");
  EXPECT_EQ(Run(importer), 1);
  EXPECT_NE(err_.str().find("--company:"), std::string::npos) << err_.str();
  options_.company_json.clear();
  options_.folder = dir_.path() + "/missing";
  EXPECT_EQ(Run(importer), 1);
  EXPECT_NE(err_.str().find("does not exist"), std::string::npos) << err_.str();
  EXPECT_FALSE(PathExists(dir_.path() + "/NEWCO.A"));

  ImportCommandOptions not_built = options_;
  not_built.kind = "lotus";  // no importer of this build
  std::ostringstream out, err;
  EXPECT_EQ(RunImportCommand(not_built, out, err), 1);
  EXPECT_NE(err.str().find("not available in this build"), std::string::npos);
}

// nvtool import fas1000 runs the FAS 1000/2000 importer on COMPANY.SAF with the options'
// answers: the match pairs, and --existing add for the second run.
TEST(ImportCommandFas1000Test, RunsTheImporterOfItsKind) {
  using fas1000::testing::ColumnLine;
  using fas1000::testing::Key;
  TempDir dir;
  const std::string source = dir.path() + "/FASCO/";
  ASSERT_TRUE(MakeDirectories(source));
  WriteText(source + "COMPANY.SAF", fas1000::testing::CompanySaf("Fas Co", false));
  WriteText(source + "cmpsetup.dat", fas1000::testing::CmpSetup(true, false, false, false, false));
  WriteText(source + "assetgen.asc",
            ColumnLine().At(0, Key("7")).At(24, "A").At(31, "0500").str() + "\n");
  WriteText(source + "bookdata.asc",
            ColumnLine().At(0, Key("7")).At(11, "0").At(20, "50").At(36, "SL").str() + "\n");
  WriteText(source + "lablinfo.asc", ColumnLine().At(0, Key("7")).str() + "\n");
  std::string error;
  std::optional<ImportCommandOptions> options = ParseImportCommand(
      {"fas1000", source + "COMPANY.SAF", dir.path(), "fasco", "--match", "202=108"}, &error);
  ASSERT_TRUE(options) << error;
  std::ostringstream out, err;
  ASSERT_EQ(RunImportCommand(*options, out, err), 0) << out.str() << err.str();
  EXPECT_NE(out.str().find("-> match 202=108, ok pairs=[201=101, 202=108]"), std::string::npos)
      << out.str();
  EXPECT_NE(out.str().find("text=\"1 assets copied.\""), std::string::npos) << out.str();

  options->existing = "add";
  std::ostringstream again;
  ASSERT_EQ(RunImportCommand(*options, again, err), 0) << again.str() << err.str();
  EXPECT_NE(again.str().find("text=\"0 assets copied.\""), std::string::npos) << again.str();
  EXPECT_NE(again.str().find("asset \"7.00\": duplicate asset number"), std::string::npos)
      << again.str();
}

// nvtool import faswin: the WFA files make the company with the books paired by --books
// and old disposals deleted, then a CSV book merges into the schedule --schedule names.
TEST(ImportCommandFasWinTest, BooksScheduleAndTheDeleteQuestionFromOptions) {
  using faswin::testing::Lines;
  using faswin::testing::Record;
  TempDir dir;
  const std::string source = dir.path() + "/wfa/";
  ASSERT_TRUE(MakeDirectories(source));
  WriteText(source + "WINScmpy.wfa", Lines({"1,Win Co"}));
  WriteText(source + "WINSbook.wfa", Lines({"B,0,Tax,1", "B,1,Internal,1"}));
  // Asset 5 (status in chld.wfa: disposed before Last Closed) and asset 6.
  WriteText(source + "WINSasst.wfa",
            Lines({Record(35, {{2, "5"}, {11, "Old"}}), Record(35, {{2, "6"}, {11, "New"}})}));
  WriteText(source + "WINSpart.wfa",
            Lines({Record(18, {{2, "5"}, {3, "1"}, {6, "70"}, {7, "SL"}, {9, "0500"}}),
                   Record(18, {{2, "6"}, {3, "1"}, {6, "80"}, {7, "SL"}, {9, "0500"}})}));
  WriteText(source + "WINSchld.wfa", Lines({Record(51, {{2, "5"}, {43, "D"}, {45, "1/1/00"}})}));
  WriteText(dir.path() + "/co.json", R"({"company": {"last_closed": "12/31/2023"}})");
  std::string error;
  // Both FAS books into the Tax schedule's place swapped: Internal to T, Tax to B.
  std::optional<ImportCommandOptions> options = ParseImportCommand(
      {"faswin", source + "WINScmpy.wfa", dir.path(), "wins", "--books", "T=102,B=101",
       "--delete-disposed", "yes", "--company", dir.path() + "/co.json"},
      &error);
  ASSERT_TRUE(options) << error;
  std::ostringstream out, err;
  ASSERT_EQ(RunImportCommand(*options, out, err), 0) << out.str() << err.str();
  EXPECT_NE(out.str().find("before 12/31/2023\" buttons=[\"&Yes\", \"&No\", \"Cancel\"] "
                           "default=\"&No\" -> yes"),
            std::string::npos)
      << out.str();
  EXPECT_NE(out.str().find("text=\"1 assets copied.\""), std::string::npos) << out.str();

  WriteText(dir.path() + "/book.csv",
            "Win,Book,2024\nSystem No,Description,Depreciation Method,Estimated Life\n"
            "6,New name,YD,0300\n");
  EXPECT_NE(ParseError({"fas1000", "x", "y", "z", "--schedule", "B"}).find("faswin only"),
            std::string::npos);
  options = ParseImportCommand({"faswin", dir.path() + "/book.csv", dir.path(), "wins",
                                "--existing", "add", "--schedule", "B"},
                               &error);
  ASSERT_TRUE(options) << error;
  std::ostringstream merged;
  ASSERT_EQ(RunImportCommand(*options, merged, err), 0) << merged.str() << err.str();
  EXPECT_NE(merged.str().find("-> choose 1 \"B - Book\""), std::string::npos) << merged.str();

  const InstallationContext context = testing::ContextFor(dir.path());
  NvCompany company(context);
  ASSERT_GT(company.Open("WINS", NvCompany::kOpenI1 | NvCompany::kReadOnly, *testing::Script("")),
            0);
  NvAsset asset;
  ASSERT_GE(company.FindAsset("6", &asset), 0);
  EXPECT_EQ(asset.description, "New name");
  EXPECT_EQ(asset.cash_and_notes, 80) << "kept on merge";
  EXPECT_EQ(asset.Schedule('T')->method, kMethodStraightLine) << "the Internal book";
  EXPECT_EQ(asset.Schedule('B')->method, kMethodSyd) << "the CSV book";
  EXPECT_EQ(company.FindAsset("5", &asset), kNotFound);
  static_cast<void>(company.Close());
}

}  // namespace
}  // namespace nv
