#include "import/frame/import_frame.h"
#include "import/frame/frame_testing.h"
#include "import/frame/matching.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "base/ascii.h"
#include "base/file.h"
#include "base/file_util.h"
#include "base/str_format.h"
#include "store/asset/asset.h"
#include "store/codes/loc_cat_list.h"
#include "store/company/asset_testing.h"
#include "store/company/master_file.h"
#include "store/store_testing.h"
#include "ui/scripted_ui_testing.h"

namespace nv {
namespace {

using testing::ContextFor;
using testing::MakeAsset;
using testing::ReadText;
using testing::Script;
using testing::TempDir;
using testing::TinyDescriptor;
using testing::TinyImporter;
using testing::TwoBookCompany;
using testing::WriteText;

class ImportFrameTest : public ::testing::Test {
 protected:
  ImportFrameTest() : ctx_(ContextFor(dir_.path())) {
    source_ = dir_.path() + "/src.tny";
    WriteText(source_,
              "Tiny Widgets\n100|Press|1000|01/15/2024||\n200|Lathe|500|03/01/2019|S|02/10/2024\n"
              "#300|old line\n100|Press again|7|01/15/2024||\n");
  }

  // Runs the tiny importer with an answers script; keeps the transcript.
  ImportResult Run(std::string_view script, ImportDescriptor d = TinyDescriptor(),
                   bool throw_in_copy = false) {
    TinyImporter importer(std::move(d));
    importer.throw_in_copy = throw_in_copy;
    auto ui = Script(script);
    ImportResult result = RunImport(ctx_, *ui, importer);
    transcript_ = ui->transcript();
    failed_ = ui->failed();
    return result;
  }

  // An existing company TINY with two assets, a location list and a name of its own.
  void MakeExistingCompany(std::string permissions = "") {
    NvCompany company(ctx_);
    company.record() = TwoBookCompany();
    company.record().permissions = std::move(permissions);
    ASSERT_EQ(company.Create({"TINY", "Existing Tiny"}, NvCompany::kOpenI1 | NvCompany::kOpenI2),
              0);
    ASSERT_GT(company.Open("TINY", NvCompany::kOpenI1 | NvCompany::kOpenI2, *Script("")), 0);
    for (long n : {700L, 100L}) {
      NvAsset asset = MakeAsset(company.record(), n);
      asset.number = NvAssetNo::Parse(std::to_string(n), company.record().asset_no_format);
      ASSERT_EQ(company.AddAsset(&asset), 0);
    }
    ASSERT_EQ(company.Close(), 0);
    NvLocCatList locations;
    locations.Insert("SHOP", "Machine shop");
    ASSERT_EQ(SaveLocCatList(dir_.path() + "/TINY.LOC", locations), 1);
    ASSERT_TRUE(EnterIntoCompanyList(ctx_, "TINY", "Existing Tiny"));
  }

  std::vector<std::string> AssetNumbers(std::string_view number = "TINY") {
    NvCompany company(ctx_);
    std::vector<std::string> numbers;
    if (company.Open(number, NvCompany::kOpenI1 | NvCompany::kReadOnly, *Script("")) <= 0) {
      return {"(cannot open)"};
    }
    NvAsset asset;
    while (company.NextAsset(AssetOrder::kNumber, &asset) == 0 && asset.record_number != 0) {
      numbers.push_back(std::string(TrimBlanks(asset.number.Text())));
    }
    static_cast<void>(company.Close());
    return numbers;
  }

  size_t Count(std::string_view what) const {
    size_t n = 0;
    for (size_t at = transcript_.find(what); at != std::string::npos;
         at = transcript_.find(what, at + 1)) {
      ++n;
    }
    return n;
  }

  TempDir dir_;
  InstallationContext ctx_;
  std::string source_;
  std::string transcript_;
  bool failed_ = false;
};

TEST_F(ImportFrameTest, ANewNumberGoesStraightToTheSetupScreenAndIsCreated) {
  ImportResult result = Run("file " + source_ + "\ntext NEWCO\nsave\nyes\n");
  ASSERT_FALSE(failed_) << transcript_;
  EXPECT_EQ(result.outcome, ImportOutcome::kCompleted) << transcript_;
  EXPECT_EQ(result.added, 2);
  // The prompt names the product; the default number is the importer's, upper case.
  EXPECT_NE(transcript_.find("prompt=\"NORVANE company number.\" text=\"TINY\""), std::string::npos)
      << transcript_;
  EXPECT_EQ(Count("choice "), 0u) << "a new number asks nothing about an existing company";
  EXPECT_NE(transcript_.find("message title=\"Done\" text=\"2 assets copied.\""), std::string::npos)
      << transcript_;
  EXPECT_EQ(AssetNumbers("NEWCO"), (std::vector<std::string>{"100.00", "200.00"}));

  MasterFile master;
  ASSERT_EQ(ReadMasterFile(ctx_.data_directory(), &master), MasterFileStatus::kOk);
  ASSERT_EQ(master.companies.size(), 1u);
  EXPECT_EQ(master.companies[0].number, "NEWCO");
  EXPECT_EQ(master.companies[0].name, "Tiny Widgets");
  // Released: the lock file is gone and the company opens for writing again.
  EXPECT_FALSE(PathExists(dir_.path() + "/NEWCO.LOK"));
  NvCompany again(ctx_);
  EXPECT_GT(again.Open("NEWCO", NvCompany::kOpenI1 | NvCompany::kOpenI2, *Script("")), 0);
  EXPECT_EQ(again.record().months_in_year, 12);
  EXPECT_EQ(again.Close(), 0);
}

TEST_F(ImportFrameTest, ANameTypedWithoutExtensionTakesTheDialogs) {
  const std::string typed = source_.substr(0, source_.size() - 4);
  ImportResult result = Run("file " + typed + "\ntext NEWCO\nsave\nyes\n");
  EXPECT_EQ(result.added, 2) << transcript_;
  EXPECT_NE(result.report_text.find("Source: Tiny " + source_), std::string::npos);
}

TEST_F(ImportFrameTest, TheReportListsWhatWasLeftOutAndTotalsWhatWasAdded) {
  ImportResult result = Run("file " + source_ + "\ntext NEWCO\nsave\nyes\n");
  ASSERT_EQ(result.outcome, ImportOutcome::kCompleted) << transcript_;
  // The second 100 is a duplicate: dropped without a message, not counted, but reported.
  EXPECT_EQ(Count("message "), 1u) << transcript_;
  EXPECT_NE(result.report_text.find("Records read: 4\nAssets added: 2\nLeft out: 2\n"),
            std::string::npos)
      << result.report_text;
  EXPECT_NE(
      result.report_text.find("line 4: asset \"300\": passed over by the importer (a comment)"),
      std::string::npos)
      << result.report_text;
  EXPECT_NE(result.report_text.find("line 5: asset \"100.00\": duplicate asset number"),
            std::string::npos)
      << result.report_text;
  // Tax: two assets, cost 1000 + 500, Sec. 179 100 each, prior 250 + 125.
  EXPECT_NE(result.report_text.find(
                StrPrintf("  %-8c %8ld %18s %18s %18s\n", 'T', 2L, "1500.00", "200.00", "375.00")),
            std::string::npos)
      << result.report_text;
  // The same text is in the report file, with CR LF line ends.
  ASSERT_NE(result.report_path.find("import-reports"), std::string::npos);
  ASSERT_NE(result.report_path.find("NEWCO-"), std::string::npos);
  std::string file = ReadText(result.report_path);
  std::erase(file, '\r');
  EXPECT_EQ(file, result.report_text);
}

TEST_F(ImportFrameTest, SelectingAnotherNumberAsksAgainAsOftenAsChosen) {
  MakeExistingCompany();
  Run("file " + source_ + "\ntext TINY\nchoose 0\ntext TINY\nchoose 0\ntext TINY\nchoose-text " +
      kAbortImportOption + "\n");
  EXPECT_FALSE(failed_) << transcript_;
  EXPECT_EQ(Count("entry "), 3u);
  EXPECT_NE(transcript_.find("listing=[\"    TINY  Existing Tiny"), std::string::npos)
      << "the entry lists the companies there are";
  EXPECT_EQ(Count("text=\"Company TINY already exists in NORVANE\""), 3u) << transcript_;
  EXPECT_EQ(Count("file-open "), 1u);
  EXPECT_EQ(AssetNumbers(), (std::vector<std::string>{"100.000", "700.000"}));
  EXPECT_FALSE(PathExists(dir_.path() + "/TINY.LOK"));
}

TEST_F(ImportFrameTest, WithoutPermissionToChangeOnlySelectAndAbortAreOffered) {
  MakeExistingCompany("*:R");
  ctx_.network_mode = true;  // permissions count in network mode
  Run("file " + source_ + "\ntext TINY\nchoose 1\n");
  EXPECT_NE(transcript_.find("note=\"Note: You do not have permission to delete or change the "
                             "existing company.\" options=[\"Select different company number\", "
                             "\"Abort this import\"]"),
            std::string::npos)
      << transcript_;
  EXPECT_EQ(AssetNumbers().size(), 2u);
}

TEST_F(ImportFrameTest, NoToTheDuplicatesQuestionReturnsToTheNumberPrompt) {
  MakeExistingCompany();
  Run("file " + source_ + "\ntext TINY\nchoose-text " + kAddAssetsOption +
      "\nno\ntext OTHER\nsave\nyes\n");
  EXPECT_FALSE(failed_) << transcript_;
  EXPECT_EQ(Count("file-open "), 1u) << "not back to the start";
  EXPECT_EQ(AssetNumbers("OTHER"), (std::vector<std::string>{"100.00", "200.00"}));
  EXPECT_EQ(AssetNumbers(), (std::vector<std::string>{"100.000", "700.000"}));
}

TEST_F(ImportFrameTest, AddingDropsDuplicatesOfTheExistingCompany) {
  MakeExistingCompany();
  ImportResult result =
      Run("file " + source_ + "\ntext TINY\nchoose-text " + kAddAssetsOption + "\nyes\n");
  EXPECT_FALSE(failed_) << transcript_;
  EXPECT_EQ(result.added, 1);
  EXPECT_EQ(AssetNumbers(), (std::vector<std::string>{"100.000", "200.000", "700.000"}));
  EXPECT_EQ(Count("line 2: asset \"100\": duplicate"), 0u);
  EXPECT_NE(result.report_text.find("line 2: asset \"100.000\": duplicate asset number"),
            std::string::npos);
}

// Rows without Erase: Abort in third place is Abort (not the Add that FAS 1000/2000's -1
// would read as), and the setup screen follows Add where the row says so.
TEST_F(ImportFrameTest, RowsWithoutEraseAbortByPlaceAndShowTheScreenAfterAddWhereAsked) {
  MakeExistingCompany();
  ImportDescriptor fas = TinyDescriptor();
  fas.existing = {};
  Run("file " + source_ + "\ntext TINY\nchoose-text " + kAbortImportOption + "\n", fas);
  EXPECT_FALSE(failed_) << transcript_;
  EXPECT_NE(transcript_.find("options=[\"Select different company number\", \"Add assets to "
                             "existing company\", \"Abort this import\"] -> choose 2"),
            std::string::npos)
      << transcript_;
  EXPECT_EQ(Count("question "), 0u) << "Abort is no Add";

  ImportDescriptor pcfas = TinyDescriptor();
  pcfas.existing = {.offers_erase = false, .confirm_erase = false, .setup_screen_after_add = true};
  ImportResult result = Run("file " + source_ + "\ntext TINY\nchoose-text " + kAddAssetsOption +
                                "\nyes\nfield name Renamed Tiny\nsave\nyes\n",
                            pcfas);
  EXPECT_FALSE(failed_) << transcript_;
  EXPECT_EQ(result.added, 1);
  EXPECT_EQ(Count("company-screen "), 1u);
  MasterFile master;
  ASSERT_EQ(ReadMasterFile(ctx_.data_directory(), &master), MasterFileStatus::kOk);
  ASSERT_EQ(master.companies.size(), 1u);
  EXPECT_EQ(master.companies[0].name, "Renamed Tiny");
}

TEST_F(ImportFrameTest, EraseKeepsTheRecordAndTheCodeLists) {
  MakeExistingCompany();
  ImportResult result = Run("file " + source_ + "\ntext TINY\nchoose-text " + kEraseAssetsOption +
                            "\nyes\nsave\nyes\n");
  EXPECT_FALSE(failed_) << transcript_;
  EXPECT_EQ(result.added, 2);
  EXPECT_EQ(AssetNumbers(), (std::vector<std::string>{"100.000", "200.000"}));
  NvCompany company(ctx_);
  ASSERT_GT(company.Open("TINY", NvCompany::kOpenI1 | NvCompany::kLoadLocCat | NvCompany::kReadOnly,
                         *Script("")),
            0);
  EXPECT_EQ(company.record().name, "Existing Tiny");
  EXPECT_EQ(company.record().schedule_letters, "BT");
  ASSERT_EQ(company.locations().size(), 1u);
  EXPECT_EQ(company.locations()[0].description, "Machine shop");
  EXPECT_EQ(company.Close(), 0);
}

TEST_F(ImportFrameTest, NoToTheEraseQuestionErasesNothing) {
  MakeExistingCompany();
  Run("file " + source_ + "\ntext TINY\nchoose-text " + kEraseAssetsOption + "\nno\nclose\n");
  EXPECT_EQ(AssetNumbers(), (std::vector<std::string>{"100.000", "700.000"}));
}

TEST_F(ImportFrameTest, CancellingTheSetupScreenCreatesNothing) {
  ImportResult result = Run("file " + source_ + "\ntext NEWCO\ncancel\n");
  EXPECT_EQ(result.outcome, ImportOutcome::kEnded);
  EXPECT_FALSE(PathExists(dir_.path() + "/NEWCO.A"));
  EXPECT_FALSE(PathExists(dir_.path() + "/NEWCO.LOK"));
  EXPECT_FALSE(PathExists(dir_.path() + "/MASTER.A"));
}

TEST_F(ImportFrameTest, AFailedCreateLeavesNoCompanyAndTheLockReleased) {
  // The sort index cannot be made where a folder of its name stands.
  ASSERT_TRUE(MakeFolder(dir_.path() + "/NEWCO.I2"));
  ImportResult result = Run("file " + source_ + "\ntext NEWCO\nsave\nyes\n");
  EXPECT_EQ(result.outcome, ImportOutcome::kEnded);
  EXPECT_NE(transcript_.find("message title=\"Error\" text=\"Unable to create company.\""),
            std::string::npos)
      << transcript_;
  EXPECT_FALSE(PathExists(dir_.path() + "/NEWCO.A"));
  EXPECT_FALSE(PathExists(dir_.path() + "/NEWCO.I1"));
  EXPECT_FALSE(PathExists(dir_.path() + "/NEWCO.LOK"));
}

TEST_F(ImportFrameTest, AnExceptionInTheCopyStillClosesTheCompanyAndLetsTheLockGo) {
  EXPECT_THROW(Run("file " + source_ + "\ntext NEWCO\nsave\nyes\n", TinyDescriptor(), true),
               std::runtime_error);
  EXPECT_FALSE(PathExists(dir_.path() + "/NEWCO.LOK"));
  EXPECT_FALSE(PathExists(dir_.path() + "/NEWCO.DTY"));
  EXPECT_TRUE(AssetNumbers("NEWCO").empty());
}

TEST_F(ImportFrameTest, ACompanyInUseIsNotTakenForANewOne) {
  MakeExistingCompany();
  CompanyInUseLock other;
  ASSERT_EQ(other.Take(dir_.path() + "/TINY.LOK", "MAIN PROGRAM", LockTimeNow()), "");
  Run("file " + source_ + "\ntext TINY\ncancel\n");
  EXPECT_NE(transcript_.find("You cannot select company TINY"), std::string::npos) << transcript_;
  other.Release();
  EXPECT_EQ(AssetNumbers(), (std::vector<std::string>{"100.000", "700.000"}));
}

TEST_F(ImportFrameTest, CurrentYearFilesRecordActivityOnce) {
  ImportDescriptor d = TinyDescriptor();
  d.current_year_files = true;
  MakeExistingCompany();  // last closed 12/31/2023: the current year is 2024
  WriteText(dir_.path() + "/TINY.CY", std::string("\x07\x00\x00\x00", 4));  // older layout
  ImportResult result =
      Run("file " + source_ + "\ntext TINY\nchoose-text " + kAddAssetsOption + "\nyes\n", d);
  ASSERT_EQ(result.added, 1) << transcript_;
  const std::string cy = ReadText(dir_.path() + "/TINY.CY");
  const std::vector<uint32_t> records = ParseCurrentYearFile(cy);
  EXPECT_TRUE(cy.starts_with(kCurrentYearHeader));
  ASSERT_EQ(records.size(), 2u);  // the old entry and the disposed 200
  EXPECT_EQ(records[0], 7u);
  // Disposed in 2024: one line for each of the company's schedules.
  const std::map<char, Section179Line> s179 =
      ParseSection179File(ReadText(dir_.path() + "/TINY.179"));
  EXPECT_EQ(s179.size(), 2u);
  EXPECT_EQ(s179.at('T'), (Section179Line{1, 100}));
}

TEST(CurrentYearTest, TheYearStartsAfterLastClosedOrAYearBeforeTheYearEnd) {
  CurrentYear year = CompanyCurrentYear({12, 31, 2023}, {12, 31, 2024});
  EXPECT_FALSE(year.OnOrAfterStart({12, 31, 2023}));
  EXPECT_TRUE(year.Contains({1, 1, 2024}));
  EXPECT_FALSE(year.Contains({1, 1, 2025}));
  year = CompanyCurrentYear({}, {6, 30, 2024});
  EXPECT_TRUE(year.Contains({7, 1, 2023}));
  EXPECT_FALSE(year.Contains({6, 30, 2023}));
  year = CompanyCurrentYear({}, {});
  EXPECT_FALSE(year.OnOrAfterStart({1, 1, 2024}));
}

TEST(CurrentYearTest, FilesOfEitherLayoutAndBadLinesAreRead) {
  EXPECT_EQ(ParseCurrentYearFile(std::string(kCurrentYearHeader) +
                                 std::string("\x02\x00\x00\x00\x01", 5)),
            (std::vector<uint32_t>{2}));
  EXPECT_EQ(ParseCurrentYearFile(std::string("\x05\x00\x00\x00\x06\x01\x00\x00", 8)),
            (std::vector<uint32_t>{5, 262}));
  const auto lines = ParseSection179File("NVW179\r\nT\t2\t150.50\r\nB\tx\t1\r\nS\t1\t\r\nA\t3\t9");
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_EQ(lines.at('T'), (Section179Line{2, 150.5}));
  EXPECT_EQ(lines.at('A'), (Section179Line{3, 9}));
}

// The panels' answers land in the state's tables: user-field labels from the paired
// sources' texts (cut to 20), unpaired ones empty; each book keeps its schedule's letter.
TEST_F(ImportFrameTest, MatchingWritesTheStateTables) {
  auto ui = Script(
      "match 202=102 203=0\nok\n"
      "ok\nmatch 202=101\nok\n");
  TinyImporter importer(TinyDescriptor());
  ImportRun run(ctx_, *ui, importer);
  FieldMatching fields;
  fields.destinations = {{201, "Account"}, {202, "User Field 1"}, {203, "User Field 2"}};
  fields.sources = {{101, "Acct"}, {102, "A label longer than twenty"}, {103, "Dept"}};
  fields.preset = {{201, 101}, {203, 103}};
  fields.user_field_destinations = {202, 203};
  ASSERT_TRUE(MatchFields(run, fields)) << ui->transcript();
  EXPECT_EQ(run.state().FieldMatch(201), 101);
  EXPECT_EQ(run.state().FieldMatch(202), 102);
  EXPECT_EQ(run.state().FieldMatch(203), 0);
  EXPECT_EQ(run.state().user_field_labels[0], "A label longer than ");
  EXPECT_EQ(run.state().user_field_labels[1], "");

  // Both schedules must get a book: the first OK leaves B unpaired and is refused.
  BookMatching books;
  books.schedules = {{201, "T Tax"}, {202, "B Book"}};
  books.letters = "TB";
  books.books = {{101, "Internal"}, {102, "Federal"}};
  books.preset = {{201, 102}};
  ASSERT_TRUE(MatchBooks(run, books)) << ui->transcript();
  EXPECT_FALSE(ui->failed()) << ui->transcript();
  EXPECT_NE(ui->transcript().find("All items in the left column must have matches."),
            std::string::npos);
  EXPECT_EQ(run.state().book_matches, (std::map<int, char>{{101, 'B'}, {102, 'T'}}));
}

}  // namespace
}  // namespace nv
