#include "import/aicpa/aicpa_importer.h"

#include <gtest/gtest.h>

#include "base/file.h"
#include "base/file_util.h"
#include "import/aicpa/aicpa_testing.h"
#include "import/frame/current_year_files.h"
#include "store/codes/account_groups.h"
#include "store/codes/loc_cat_list.h"
#include "store/company/asset_testing.h"
#include "store/store_testing.h"
#include "ui/scripted_ui_testing.h"

namespace nv {
namespace {

using testing::AccountRow;
using testing::BookRow;
using testing::ContextFor;
using testing::Joined;
using testing::PadTo;
using testing::ReadText;
using testing::ReportHead;
using testing::Script;
using testing::TempDir;
using testing::ValueRow;
using testing::WriteText;

// Federal, AMT and State books; the first asset has no AMT date, so a new company gets the
// schedules T and S. Asset 103 runs over two pages; 1234567 has a number too long to use.
std::string AcmeReport() {
  std::vector<std::string> lines =
      ReportHead("Acme Widgets Inc.", "             For the 12 Months Ended 12/31/2024",
                 {"Federal", "AMT", "State"});
  const std::vector<std::string> assets = {
      "\f",
      ValueRow("Asset No.", "101", 41),
      ValueRow("Asset Description (line 1)", "Drill press"),
      ValueRow("Category", "Machinery"),
      ValueRow("User-defined 1", "SN-4471"),
      BookRow("Date Acquired", {"03/15/2022", "", "03/15/2022"}),
      BookRow("New/Used", {"New", "", "New"}),
      BookRow("Cost or Basis", {"12,500.00", "", "12,500.00"}),
      BookRow("Tax System", {"MACRS", "", "Other"}),
      BookRow("Method", {"200DB", "", "FED BASIS"}),
      BookRow("Life (YY/MM)", {"7/0", "", ""}),
      BookRow("Convention", {"HALF-YEAR", "", ""}),
      BookRow("Business Percentage", {"100", "", ""}),
      BookRow("Section 179 deduction", {"2,500.00", "", ""}),
      BookRow("Prior Depreciation", {"6,000.00", "", ""}),
      AccountRow("Asset", "1500"),
      AccountRow("Accumulated Depreciation", "1510"),
      AccountRow("Depreciation/Amortization Expense", "6100"),
      "\f",
      ValueRow("Asset No.", "102", 41),
      ValueRow("Asset Description (line 1)", "Office building"),
      ValueRow("Category", "Buildings"),
      BookRow("Date Acquired", {"01/02/2023", "01/02/2023", "01/02/2023"}),
      BookRow("New/Used", {"Used", "Used", "Used"}),
      BookRow("Cost or Basis", {"250,000.00", "250,000.00", "240,000.00"}),
      BookRow("Tax System", {"MACRS", "MACRS", "Other"}),
      BookRow("Method", {"SL REAL", "SL REAL", "150DB"}),
      BookRow("Life (YY/MM)", {"39/0", "40/0", "39/0"}),
      BookRow("Convention", {"MID-MONTH", "MID-MONTH", "MID-MONTH"}),
      BookRow("Business Percentage", {"100", "100", "100"}),
      BookRow("Prior Depreciation", {"6,410.26", "6,250.00", "3,000.00"}),
      AccountRow("Asset", "1600"),
      AccountRow("Accumulated Depreciation", "1610"),
      AccountRow("Depreciation/Amortization Expense", "6200"),
      "\f",
      ValueRow("Asset No.", "103", 41),
      ValueRow("Asset Description (line 1)", "Delivery van"),
      BookRow("Date Acquired", {"07/01/2024", "", ""}),
      BookRow("Cost or Basis", {"30,000.00", "", ""}),
      BookRow("Tax System", {"Other", "", ""}),
      BookRow("Method", {"200DB", "", ""}),
      BookRow("Life (YY/MM)", {"5/0", "", ""}),
      BookRow("Convention", {"FULL-YEAR", "", ""}),
      "\f",
      "Asset Detail Report - Federal Basis (continued)",
      BookRow("Business Percentage", {"80", "", ""}),
      BookRow("Section 179 deduction", {"1,000.00", "", ""}),
      BookRow("Prior Depreciation", {"1,000.00", "", ""}),
      AccountRow("Asset", "1500"),
      AccountRow("Accumulated Depreciation", "1510"),
      AccountRow("Depreciation/Amortization Expense", "6100"),
      "\f",
      ValueRow("Asset No.", "1234567", 41),
      ValueRow("Asset Description (line 1)", "Number too long"),
      BookRow("Date Acquired", {"01/01/2020", "", ""}),
  };
  lines.insert(lines.end(), assets.begin(), assets.end());
  return Joined(lines);
}

// A dispositions line, column by column: number 3-8, dates 36-43 and 46-53, proceeds
// right-aligned in 60-73, expense of sale in 90-103.
std::string DispositionLine(std::string_view number, std::string_view disposed,
                            std::string_view proceeds, std::string_view expense) {
  std::string line = PadTo("   " + std::string(number), 36) + "01/01/20";
  line = PadTo(line, 46) + std::string(disposed);
  line = PadTo(line, 74 - proceeds.size()) + std::string(proceeds);
  line = PadTo(line, 104 - expense.size()) + std::string(expense);
  return PadTo(line, 140);
}

std::string AcmeDispositions() {
  return Joined({"Dispositions Report", "",
                 DispositionLine("101", "06/30/24", "5,000.00", "250.00"),
                 DispositionLine("999", "06/30/24", "1.00", "0.00"),
                 DispositionLine("103", "12/15/24", "100.00", "100.00")});
}

class AicpaImportTest : public ::testing::Test {
 protected:
  AicpaImportTest() : ctx_(ContextFor(dir_.path())) {
    EXPECT_TRUE(MakeFolder(dir_.path() + "/src"));
    source_ = dir_.path() + "/src/ACME-2024.AST";
    WriteText(source_, AcmeReport());
    WriteText(dir_.path() + "/src/acme-2024.dsp", AcmeDispositions());
  }

  ImportResult Run(const std::string& script) {
    std::unique_ptr<Importer> importer = MakeAicpaImporter();
    auto ui = Script(script);
    ImportResult result = RunImport(ctx_, *ui, *importer);
    transcript_ = ui->transcript();
    EXPECT_FALSE(ui->failed()) << transcript_;
    return result;
  }

  // The usual answers for a new company ACME: the account choice, the setup screen
  // saved, and the switch question.
  ImportResult RunNew(std::string_view account_choice, std::string_view switch_answer) {
    return Run("file " + source_ + "\ntext ACME\nchoose " + std::string(account_choice) +
               "\nsave\nyes\n" + std::string(switch_answer) + "\n");
  }

  bool Shown(std::string_view kind, std::string_view text) const {
    return transcript_.find(std::string(kind) + " title=\"") != std::string::npos &&
           transcript_.find("text=" + QuoteTranscriptText(text)) != std::string::npos;
  }

  NvAsset Asset(std::string_view number) {
    NvCompany company(ctx_);
    NvAsset asset;
    EXPECT_GT(company.Open("ACME", NvCompany::kOpenI1 | NvCompany::kReadOnly, *Script("")), 0);
    EXPECT_EQ(company.FindAsset(number, &asset), 0) << number;
    static_cast<void>(company.Close());
    return asset;
  }

  NvCompanyRecord Record() {
    NvCompany company(ctx_);
    EXPECT_GT(company.Open("ACME", NvCompany::kOpenI1 | NvCompany::kReadOnly, *Script("")), 0);
    NvCompanyRecord record = company.record();
    static_cast<void>(company.Close());
    return record;
  }

  TempDir dir_;
  InstallationContext ctx_;
  std::string source_;
  std::string transcript_;
};

TEST_F(AicpaImportTest, ANewCompanyFromTheReport) {
  const ImportResult result = RunNew("0", "no");
  ASSERT_EQ(result.outcome, ImportOutcome::kCompleted) << transcript_;
  EXPECT_EQ(result.added, 3);
  EXPECT_NE(transcript_.find("prompt=\"NORVANE company number.\" text=\"ACME\""), std::string::npos)
      << "the default number is the file's name up to its first dash";
  EXPECT_TRUE(Shown("choice", kAicpaAccountChoice)) << transcript_;
  EXPECT_NE(transcript_.find("options=[\"Asset Account No.\", \"Accumulated Depr. Account Account "
                             "No.\", \"Depreciation Expense Account No.\"]"),
            std::string::npos);
  EXPECT_TRUE(Shown("question", kAicpaSwitchQuestion)) << transcript_;
  EXPECT_NE(transcript_.find("progress title=\"AICPA Import\" text=\"Getting Company Data\""),
            std::string::npos)
      << transcript_;
  EXPECT_NE(transcript_.find("last-text=\"Finding Categories && Accounts\""), std::string::npos);
  EXPECT_NE(transcript_.find("progress title=\"AICPA Import\" text=\"Copying Assets\""),
            std::string::npos);
  EXPECT_NE(transcript_.find("last-text=\"Finding Dispositions\""), std::string::npos);
  EXPECT_TRUE(Shown("message", "3 assets copied.")) << transcript_;
  EXPECT_NE(result.report_text.find("line 75: asset \"1234567\": passed over by the importer"),
            std::string::npos)
      << result.report_text;
  EXPECT_NE(result.report_text.find("dispositions line 4: asset \"999\""), std::string::npos)
      << result.report_text;

  const NvCompanyRecord r = Record();
  EXPECT_EQ(r.name, "Acme Widgets Inc.");
  EXPECT_EQ(r.current_year_end, (Date{12, 31, 2024}));
  EXPECT_EQ(r.last_closed, (Date{12, 31, 2023}));
  EXPECT_EQ(r.schedule_letters, "TS");
  EXPECT_EQ(r.schedules, (std::vector<ScheduleEntry>{{'T', "T", "Tax"}, {'S', "S", "State"}}));
  EXPECT_EQ(r.sort_order, "C");
  EXPECT_EQ(r.business_category, 1);
  EXPECT_FALSE(r.round_dollars);
  EXPECT_EQ(r.global_loc_cat, 'L');
  EXPECT_EQ(r.user_fields[0].name, "User-defined 1");
  EXPECT_EQ(r.user_fields[1].name, "") << "no asset has a second user field";

  NvAsset drill = Asset("101");
  EXPECT_EQ(drill.description, "Drill press");
  EXPECT_EQ(drill.category, "Machinery");
  EXPECT_EQ(drill.account, "1500");
  EXPECT_EQ(drill.user_fields[0], "SN-4471");
  EXPECT_DOUBLE_EQ(drill.cash_and_notes, 12500.0);
  EXPECT_EQ(drill.date_in_service, (Date{3, 15, 2022}));
  EXPECT_EQ(drill.purchase_date, (Date{3, 15, 2022}));
  EXPECT_EQ(drill.new_used_trade, 'N');
  EXPECT_EQ(drill.type_4797, 45);
  const NvAssetSchedule& drill_tax = *drill.Schedule('T');
  EXPECT_EQ(drill_tax.method, 3);
  EXPECT_EQ(drill_tax.convention, 'Y');
  EXPECT_EQ(drill_tax.useful_life, (YearsMonths{7, 0}));
  EXPECT_EQ(drill_tax.itc_code, 3);
  EXPECT_DOUBLE_EQ(drill_tax.sec179_expense, 2500.0);
  EXPECT_DOUBLE_EQ(drill_tax.prior_allowed_depr, 3500.0);
  EXPECT_EQ(*drill.Schedule('S'), drill_tax) << "FED BASIS on the State book";
  // Sold: proceeds less the expense of sale.
  EXPECT_EQ(drill.disposal_code, 'S');
  EXPECT_EQ(drill.disposal_date, (Date{6, 30, 2024}));
  EXPECT_DOUBLE_EQ(drill.sale_amount, 4750.0);
  EXPECT_DOUBLE_EQ(drill.amount_disposed, 12500.0);

  NvAsset building = Asset("102");
  EXPECT_EQ(building.category, "Buildings");
  EXPECT_EQ(building.account, "1600");
  EXPECT_EQ(building.new_used_trade, 'U');
  EXPECT_EQ(building.type_4797, 50);
  EXPECT_EQ(building.Schedule('T')->method, 3);
  EXPECT_EQ(building.Schedule('T')->sl_life, (YearsMonths{39, 0}));
  EXPECT_EQ(building.Schedule('T')->convention, 'M');
  const NvAssetSchedule& building_state = *building.Schedule('S');
  EXPECT_EQ(building_state.method, 5);
  EXPECT_DOUBLE_EQ(building_state.substitute_basis, 240000.0);
  EXPECT_EQ(building_state.asset_type, "S");
  EXPECT_DOUBLE_EQ(building_state.prior_allowed_depr, 3000.0);
  EXPECT_FALSE(building.disposed());

  // The van's second page gave its percentage, Sec. 179 and accounts.
  NvAsset van = Asset("103");
  const NvAssetSchedule& van_tax = *van.Schedule('T');
  EXPECT_EQ(van_tax.method, 6);
  EXPECT_EQ(van_tax.convention, '5');
  EXPECT_EQ(van_tax.business_percent, 80);
  EXPECT_DOUBLE_EQ(van_tax.sec179_expense, 1000.0);
  EXPECT_DOUBLE_EQ(van_tax.prior_allowed_depr, 0.0);
  EXPECT_EQ(van.account, "1500");
  EXPECT_TRUE(van.Schedule('S')->not_applicable());
  // Proceeds equal to the expense of sale: abandoned, nothing received.
  EXPECT_EQ(van.disposal_code, 'A');
  EXPECT_DOUBLE_EQ(van.sale_amount, 0.0);
  EXPECT_DOUBLE_EQ(van.amount_disposed, 30000.0);

  // Current year 2024: the van came and both it and the drill went; the building did not.
  const std::string cy = ReadText(dir_.path() + "/ACME.CY");
  EXPECT_EQ(ParseCurrentYearFile(cy),
            (std::vector<uint32_t>{van.record_number, drill.record_number}));
  EXPECT_EQ(ReadText(dir_.path() + "/ACME.179"), "NVW179\r\nS\t2\t2500.00\r\nT\t2\t3500.00\r\n");

  NvLocCatList categories;
  ASSERT_EQ(LoadLocCatList(dir_.path() + "/ACME.CAT", &categories), 2);
  EXPECT_EQ(categories[0].code, "Buildings");
  EXPECT_EQ(categories[1].code, "Machinery");
}

// The account groups file, written out by hand from its layout: five header lines, three
// size bytes, then code, description and four accounts padded to 24, 24 and 100 each.
TEST_F(AicpaImportTest, AccountGroupsAreNamedByTheChosenAccount) {
  RunNew("2", "no");
  std::string expected =
      "321\n" + dir_.path() + "/\nACME.EX1\nN\nN\n" + std::string("\x18\x04\x64");
  for (const auto& [asset, accumulated, expense] :
       {std::tuple{"1500", "1510", "6100"}, {"1600", "1610", "6200"}}) {
    expected += PadTo(expense, 24) + std::string(24, ' ') + PadTo(asset, 100) +
                PadTo(accumulated, 100) + PadTo(expense, 100) + std::string(100, ' ');
  }
  EXPECT_EQ(ReadText(dir_.path() + "/ACME.ACG"), expected);

  AccountGroupList groups;
  ASSERT_EQ(LoadAccountGroups(dir_.path() + "/", "ACME", &groups), 2);
  EXPECT_EQ(groups.groups[0].code, "6100");
  EXPECT_EQ(groups.groups[1].accounts[1], "1610");
  EXPECT_EQ(Asset("101").account, "6100");
  EXPECT_EQ(Asset("102").account, "6200");
}

// An account groups file of a format this program does not know is not written over.
TEST_F(AicpaImportTest, AnAccountGroupsFileOfAnUnknownFormatIsLeftAlone) {
  const std::string unknown = "999\nwritten by a newer program\n";
  WriteText(dir_.path() + "/ACME.ACG", unknown);
  RunNew("0", "no");
  EXPECT_NE(transcript_.find("message title=\"Warning\" text=\"The account groups of company "
                             "ACME are in a form this program cannot read."),
            std::string::npos)
      << transcript_;
  EXPECT_EQ(ReadText(dir_.path() + "/ACME.ACG"), unknown);
  EXPECT_EQ(Asset("101").account, "");
}

TEST_F(AicpaImportTest, YesToTheSwitchQuestionSwitchesDecliningBalanceOfOtherBooks) {
  RunNew("0", "yes");
  EXPECT_EQ(Asset("103").Schedule('T')->method, 10);
  EXPECT_EQ(Asset("102").Schedule('S')->method, 9);
  EXPECT_EQ(Asset("101").Schedule('T')->method, 3) << "MACRS books do not switch";
}

TEST_F(AicpaImportTest, ClosingTheSwitchQuestionEndsTheImportBeforeCopying) {
  const ImportResult result = RunNew("0", "cancel");
  EXPECT_EQ(result.outcome, ImportOutcome::kEnded);
  EXPECT_FALSE(Shown("message", "0 assets copied."));
  EXPECT_EQ(transcript_.find("Copying Assets"), std::string::npos);
  EXPECT_FALSE(PathExists(dir_.path() + "/ACME.LOK"));
}

TEST_F(AicpaImportTest, AMissingDispositionsFileIsAskedAboutFirst) {
  ASSERT_TRUE(RemoveFile(dir_.path() + "/src/acme-2024.dsp"));
  // No: nothing is made.
  ImportResult result = Run("file " + source_ + "\nno\n");
  EXPECT_EQ(result.outcome, ImportOutcome::kEnded);
  EXPECT_TRUE(Shown("question", kAicpaNoDispositionsQuestion)) << transcript_;
  EXPECT_EQ(transcript_.find("entry "), std::string::npos) << "no company number is asked";
  EXPECT_FALSE(PathExists(dir_.path() + "/ACME.A"));

  // Yes: the assets come without their dispositions.
  result = Run("file " + source_ + "\nyes\ntext ACME\nchoose 0\nsave\nyes\nno\n");
  EXPECT_EQ(result.added, 3) << transcript_;
  EXPECT_FALSE(Asset("101").disposed());
  EXPECT_EQ(transcript_.find("Finding Dispositions"), std::string::npos);
}

TEST_F(AicpaImportTest, TheSourceMustBeAnAstFileThatCanBeRead) {
  const std::string other = dir_.path() + "/src/ACME.TXT";
  WriteText(other, AcmeReport());
  Run("file " + other + "\n");
  EXPECT_NE(
      transcript_.find("message title=\"Error\" text=" + QuoteTranscriptText(kAicpaWrongExtension)),
      std::string::npos)
      << transcript_;

  // A folder of that name opens but cannot be read.
  const std::string folder = dir_.path() + "/src/BAD.AST";
  ASSERT_TRUE(MakeFolder(folder));
  const ImportResult result = Run("file " + folder + "\nyes\ntext BAD\nchoose 0\n");
  EXPECT_EQ(result.outcome, ImportOutcome::kEnded);
  EXPECT_NE(transcript_.find("message title=\"Error\" text=" +
                             QuoteTranscriptText(kAicpaCannotOpenAssetFile)),
            std::string::npos)
      << transcript_;
  EXPECT_FALSE(PathExists(dir_.path() + "/BAD.A"));
}

// No heading line names a book: the user is told, and the asset still comes, with its
// general data and its letters, which the new company's number format then allows.
TEST_F(AicpaImportTest, AReportWithoutBookHeadingsIsToldAndItsAssetsStillCome) {
  WriteText(
      source_,
      Joined({"Asset Detail Report - Federal Basis   Bare Co            12/31/2024", "\f",
              ValueRow("Asset No.", "A1", 41), ValueRow("Asset Description (line 1)", "Scanner"),
              BookRow("Date Acquired", {"05/01/2024"}), BookRow("Cost or Basis", {"900.00"})}));
  const ImportResult result = RunNew("0", "no");
  EXPECT_EQ(result.added, 1) << transcript_;
  EXPECT_NE(transcript_.find("message title=\"Warning\" text=" +
                             QuoteTranscriptText(kAicpaNoBooksWarning)),
            std::string::npos)
      << transcript_;
  EXPECT_TRUE(Record().asset_no_format.letters());
  const NvAsset scanner = Asset("A1");
  EXPECT_DOUBLE_EQ(scanner.cash_and_notes, 900.0);
  EXPECT_EQ(scanner.date_in_service, (Date{5, 1, 2024}));
  EXPECT_TRUE(scanner.Schedule('T')->not_applicable());
}

// Adding to a company that has asset 101 already: that asset and its groups stay as they
// were, and the report's disposition of 101 is not the existing asset's. The company
// rounds to whole dollars.
TEST_F(AicpaImportTest, AddingToAnExistingCompanyKeepsItsAssetsAndGroups) {
  {
    NvCompany company(ctx_);
    company.record() = testing::TwoBookCompany();
    company.record().round_dollars = true;
    ASSERT_EQ(company.Create({"ACME", "Acme"}, NvCompany::kOpenI1 | NvCompany::kOpenI2), 0);
    ASSERT_GT(company.Open("ACME", NvCompany::kOpenI1 | NvCompany::kOpenI2, *Script("")), 0);
    NvAsset asset = testing::MakeAsset(company.record(), 101);
    asset.number = NvAssetNo::Parse("101", company.record().asset_no_format);
    asset.description = "Our own drill";
    ASSERT_EQ(company.AddAsset(&asset), 0);
    ASSERT_EQ(company.Close(), 0);
    AccountGroupList groups;
    SetAccountGroupDefaults(dir_.path() + "/", "ACME", &groups);
    groups.groups.push_back({"OLD", "Kept", {"1", "2", "3", "4"}});
    ASSERT_EQ(SaveAccountGroups(dir_.path() + "/", "ACME", groups), 1);
  }
  WriteText(dir_.path() + "/src/acme-2024.dsp",
            Joined({DispositionLine("101", "06/30/24", "5,000.00", "250.00"),
                    DispositionLine("102", "09/30/24", "1,000.60", "0.25")}));
  const ImportResult result = Run("file " + source_ + "\ntext ACME\nchoose-text " +
                                  kAddAssetsOption + "\nyes\nchoose 0\nno\n");
  EXPECT_EQ(result.added, 2) << transcript_;
  EXPECT_EQ(transcript_.find("company-screen"), std::string::npos);
  const NvAsset ours = Asset("101");
  EXPECT_EQ(ours.description, "Our own drill");
  EXPECT_FALSE(ours.disposed());
  EXPECT_NE(result.report_text.find(
                "dispositions line 1: asset \"101\": passed over by the importer (disposition of "
                "an asset this import did not add)"),
            std::string::npos)
      << result.report_text;
  // The company rounds to dollars: so do the amounts of a disposition.
  const NvAsset building = Asset("102");
  EXPECT_EQ(building.disposal_code, 'S');
  EXPECT_DOUBLE_EQ(building.sale_amount, 1000.0);
  EXPECT_DOUBLE_EQ(building.amount_disposed, 250000.0);
  EXPECT_EQ(Record().schedule_letters, "BT") << "the company's record is its own";
  EXPECT_EQ(Asset("102").account, "1600");

  AccountGroupList groups;
  ASSERT_EQ(LoadAccountGroups(dir_.path() + "/", "ACME", &groups), 3);
  EXPECT_EQ(groups.groups[2].code, "OLD");
  EXPECT_EQ(groups.groups[2].accounts[3], "4");
}

}  // namespace
}  // namespace nv
