#include "import/fas1000/fas1000_importer.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "base/ascii.h"
#include "base/file_util.h"
#include "base/str_format.h"
#include "import/fas1000/fas1000_testing.h"
#include "store/asset/asset.h"
#include "store/company/asset_testing.h"
#include "store/company/master_file.h"
#include "store/store_testing.h"
#include "ui/scripted_ui_testing.h"

namespace nv {
namespace {

using fas1000::testing::CmpSetup;
using fas1000::testing::ColumnLine;
using fas1000::testing::CompanySaf;
using fas1000::testing::Key;
using nv::testing::ContextFor;
using nv::testing::ReadText;
using nv::testing::Script;
using nv::testing::TempDir;
using nv::testing::WriteText;

// A FAS company folder "ACME" beside the installation's data, and runs of the importer on it.
class Fas1000ImportTest : public ::testing::Test {
 protected:
  Fas1000ImportTest() : ctx_(ContextFor(dir_.path())), folder_(dir_.path() + "/ACME/") {
    std::filesystem::create_directory(folder_);
    Put("COMPANY.SAF", CompanySaf("Acme Widget Co", false));
    Put("cmpsetup.dat", CmpSetup(true, true, false, true, false));
    // Asset 100: a chair, fully labelled; asset 200: sold; asset 300: inactive.
    Put("assetgen.asc", Lines({ColumnLine()
                                   .At(0, Key("100"))
                                   .At(11, "CO-100")
                                   .At(24, "A")
                                   .At(28, "OF")
                                   .At(31, "0700")
                                   .At(77, "Office chair"),
                               ColumnLine()
                                   .At(0, Key("200"))
                                   .At(24, "A")
                                   .At(26, "R")
                                   .At(28, "BL")
                                   .At(77, "Shed")
                                   .At(190, "063023")
                                   .At(197, "S")
                                   .At(199, "5000.00")
                                   .At(215, "0")
                                   .At(231, "125.50"),
                               ColumnLine().At(0, Key("300")).At(24, "D").At(77, "Gone")}));
    Put("bookdata.asc", Lines({Book("100", '0', "031521", "1200.00", "MF", "200", "0700", "300.00"),
                               Book("100", '1', "031521", "1200.00", "SL", "", "0700", "171.43"),
                               Book("100", '3', "031521", "1200.00", "RR", "", "0000", "0"),
                               Book("200", '0', "011019", "45000.00", "MF", "", "3900", "5000.00"),
                               Book("300", '0', "011019", "100.00", "SL", "", "0500", "100.00")}));
    Put("lablinfo.asc", Lines({ColumnLine()
                                   .At(0, Key("100"))
                                   .At(11, "1500-100")
                                   .At(79, "Main office")
                                   .At(139, "SN-42")
                                   .At(193, "Floor 2")}));
    Put("listed.asc", Lines({ColumnLine().At(0, Key("100")).At(12, "1").At(22, " 60")}));
  }

  static std::string Book(std::string_view number, char digit, std::string_view date,
                          std::string_view cost, std::string_view method, std::string_view percent,
                          std::string_view life, std::string_view accumulated) {
    return ColumnLine()
        .At(0, Key(number))
        .At(11, std::string(1, digit))
        .At(13, date)
        .At(20, cost)
        .At(36, method)
        .At(39, percent)
        .At(43, life)
        .At(270, accumulated)
        .str();
  }

  static std::string Lines(std::initializer_list<std::string> lines) {
    std::string text;
    for (const std::string& line : lines) text += line + "\r\n";
    return text;
  }

  void Put(const std::string& name, const std::string& bytes) { WriteText(folder_ + name, bytes); }

  // Runs the importer with an answers script; keeps the transcript.
  ImportResult Run(std::string_view script, ImportHooks hooks = {}) {
    std::unique_ptr<Importer> importer = MakeFas1000Importer();
    auto ui = Script(script);
    ImportResult result = RunImport(ctx_, *ui, *importer, std::move(hooks));
    transcript_ = ui->transcript();
    failed_ = ui->failed();
    return result;
  }

  std::string NewCompanyScript(std::string_view matches = "") const {
    return "file " + folder_ + "COMPANY.SAF\ntext ACME\nsave\nyes\n" + std::string(matches) +
           "ok\n";
  }

  bool Shown(std::string_view line) const { return transcript_.find(line) != std::string::npos; }

  // The assets of company ACME by number, read back from its files.
  std::map<std::string, NvAsset> Assets(NvCompanyRecord* record = nullptr) {
    NvCompany company(ctx_);
    std::map<std::string, NvAsset> assets;
    EXPECT_GT(company.Open("ACME", NvCompany::kOpenI1 | NvCompany::kReadOnly, *Script("")), 0);
    if (record) *record = company.record();
    NvAsset asset;
    while (company.NextAsset(AssetOrder::kNumber, &asset) == 0 && asset.record_number != 0) {
      assets[std::string(TrimBlanks(asset.number.Text()))] = asset;
    }
    static_cast<void>(company.Close());
    return assets;
  }

  TempDir dir_;
  InstallationContext ctx_;
  std::string folder_;
  std::string transcript_;
  bool failed_ = false;
};

TEST_F(Fas1000ImportTest, ANewCompanyFromTheFolderWithItsAssetsFieldByField) {
  const ImportResult result = Run(NewCompanyScript("match 202=108 203=104 204=109\n"));
  ASSERT_FALSE(failed_) << transcript_;
  EXPECT_EQ(result.outcome, ImportOutcome::kCompleted) << transcript_;
  EXPECT_EQ(result.added, 2);
  // The number offered is the folder's name; the record shown comes from the FAS files.
  EXPECT_TRUE(Shown("prompt=\"NORVANE company number.\" text=\"ACME\"")) << transcript_;
  EXPECT_TRUE(
      Shown("company-screen number=\"ACME\" name=\"Acme Widget Co\" ein=\"\" "
            "last_closed=\"\" current_year_end=\"\""));
  EXPECT_TRUE(
      Shown("schedule_letters=\"TBA\" sort_order=\"C\" business_category=\"1\" "
            "round_dollars=\"N\" mid_quarter_override=\"A\" global_loc_cat=\"L\""));
  EXPECT_TRUE(
      Shown("match-panel caption=\"FAS to KEL data field conversion\" "
            "destination-heading=\"KEL Data Field\" source-heading=\"FAS Data Field\" "
            "destinations=[201 \"Account No.\", 202 \"User Field 1\", 203 \"User Field "
            "2\", 204 \"User Field 3\"] sources=[101 \"G/L Code\", 102 \"P O Number\", 103 "
            "\"Vendor/Mfg\", 104 \"Mfg Serial #\", 105 \"Co Asset #\", 106 \"Warranty "
            "Date\", 107 \"Custodian\", 108 \"Class Life\", 109 \"FAS User Field 1\", 110 "
            "\"FAS User Field 2\", 111 \"FAS User Field 3\", 112 \"FAS User Field 4\", 113 "
            "\"FAS User Field 5\"] preset=[201=101]"))
      << transcript_;
  // The meter ends on the last asset copied (200), its first nine columns.
  EXPECT_TRUE(Shown("progress title=\"FAS Import\" text=\"Copying FAS assets\\n \" total=" +
                    std::to_string(ReadText(folder_ + "assetgen.asc").size())))
      << transcript_;
  EXPECT_TRUE(Shown("last-text=\"Copying FAS assets\\nAsset        20\"")) << transcript_;
  EXPECT_TRUE(Shown("message title=\"Done\" text=\"2 assets copied.\"")) << transcript_;
  EXPECT_EQ(transcript_.find("message title=\"Note\""), std::string::npos) << "cmpsetup.dat read";

  NvCompanyRecord company;
  std::map<std::string, NvAsset> assets = Assets(&company);
  EXPECT_EQ(company.name, "Acme Widget Co");
  EXPECT_FALSE(company.round_dollars);
  EXPECT_EQ(company.schedule_letters, "TBA");
  ASSERT_EQ(company.schedules.size(), 3u);
  EXPECT_EQ(company.schedules[0], (ScheduleEntry{'T', "T", "Tax"}));
  EXPECT_EQ(company.schedules[1], (ScheduleEntry{'B', "B", "Book"}));
  EXPECT_EQ(company.schedules[2], (ScheduleEntry{'A', "A", "AMT"}));
  EXPECT_EQ(company.user_fields[0].name, "Class Life");
  EXPECT_EQ(company.user_fields[1].name, "Mfg Serial #");
  EXPECT_EQ(company.user_fields[2].name, "FAS User Field 1");
  ASSERT_EQ(assets.size(), 2u);

  const NvAsset& chair = assets["100.00"];
  EXPECT_EQ(chair.description, "Office chair");
  EXPECT_EQ(chair.category, "OF");
  EXPECT_EQ(chair.location, "Main offic") << "columns 79-90, 10 characters at most";
  EXPECT_EQ(chair.account, "1500-100");
  EXPECT_EQ(chair.user_fields[0], "07-00");
  EXPECT_EQ(chair.user_fields[1], "SN-42");
  EXPECT_EQ(chair.user_fields[2], "Floor 2");
  EXPECT_EQ(chair.cash_and_notes, 1200);
  EXPECT_EQ(chair.purchase_date, (Date{3, 15, 2021}));
  EXPECT_EQ(chair.date_in_service, (Date{3, 15, 2021}));
  EXPECT_EQ(chair.new_used_trade, 'N');
  EXPECT_EQ(chair.type_4797, 45);
  EXPECT_FALSE(chair.disposed());
  const NvAssetSchedule& tax = *chair.Schedule('T');
  EXPECT_EQ(tax.method, kMethodMacrs);
  EXPECT_EQ(tax.convention, 'Y');
  EXPECT_EQ(tax.useful_life, (YearsMonths{7, 0}));
  EXPECT_EQ(tax.business_percent, 100);
  EXPECT_EQ(tax.itc_code, 2);
  EXPECT_EQ(tax.prior_allowed_depr, 300);
  EXPECT_EQ(tax.prior_allowable_depr, 300);
  const NvAssetSchedule& book = *chair.Schedule('B');
  EXPECT_EQ(book.method, kMethodStraightLine);
  EXPECT_EQ(book.convention, '1');
  EXPECT_EQ(book.business_percent, 60) << "from listed.asc";
  EXPECT_EQ(book.itc_code, 3);
  EXPECT_EQ(book.prior_allowed_depr, 171.43);
  EXPECT_EQ(*chair.Schedule('A'), tax) << "RR";

  const NvAsset& shed = assets["200.00"];
  EXPECT_EQ(shed.location, "0         ") << "a blank location as the store reads it back";
  EXPECT_EQ(shed.account, "") << "no label line";
  EXPECT_EQ(shed.user_fields[1], "");
  EXPECT_EQ(shed.type_4797, 50);
  EXPECT_EQ(shed.disposal_code, 'S');
  EXPECT_EQ(shed.disposal_date, (Date{6, 30, 2023}));
  EXPECT_EQ(shed.sale_amount, 4874.5);
  EXPECT_EQ(shed.amount_disposed, 45000);
  EXPECT_EQ(shed.Schedule('T')->convention, 'M') << "real property over 26 years";
  EXPECT_TRUE(shed.Schedule('B')->not_applicable());
  EXPECT_TRUE(shed.Schedule('A')->not_applicable());

  // The disposed shed is current-year activity: its record number follows the header.
  const std::string cy = ReadText(dir_.path() + "/ACME.CY");
  ASSERT_EQ(cy.size(), 9u + 4u);
  EXPECT_EQ(cy.substr(0, 9), "NVW3000\r\n");
  const uint32_t record = static_cast<uint8_t>(cy[9]) | static_cast<uint8_t>(cy[10]) << 8 |
                          static_cast<uint8_t>(cy[11]) << 16 |
                          static_cast<uint32_t>(static_cast<uint8_t>(cy[12])) << 24;
  EXPECT_EQ(record, shed.record_number);

  // The inactive asset and its book line are named in the report.
  EXPECT_NE(result.report_text.find("assetgen.asc line 3: asset \"300\": passed over by the "
                                    "importer (status \"D\" in column 24, not \"A\")"),
            std::string::npos)
      << result.report_text;
  EXPECT_NE(result.report_text.find("bookdata.asc line 5: asset \"300\""), std::string::npos);
}

TEST_F(Fas1000ImportTest, WithoutCmpsetupAllFiveBooksAreMadeAfterANote) {
  std::filesystem::remove(folder_ + "cmpsetup.dat");
  Run(NewCompanyScript());
  ASSERT_FALSE(failed_) << transcript_;
  EXPECT_TRUE(Shown(
      "message title=\"Note\" text=\"FAS File CMPSETUP.DAT was not found.\\nThis file is used by "
      "the import software\\nto determine which depreciation books are\\ndefined by FAS.  All "
      "books (IRS, Internal\\nBook, State, AMT and ACE) will be assumed\\nso that no data is "
      "lost.\"\ncompany-screen "))
      << transcript_;
  NvCompanyRecord company;
  const std::map<std::string, NvAsset> assets = Assets(&company);
  EXPECT_EQ(company.schedule_letters, "TBSAC");
  EXPECT_EQ(company.user_fields[0].name, "") << "nothing was matched to it";

  // A setup file cut short counts as missing too.
  std::filesystem::remove_all(dir_.path() + "/ACME.A");
  Put("cmpsetup.dat", CmpSetup(true, false, false, false, false, 395));
  Run("file " + folder_ + "COMPANY.SAF\ntext OTHER\nsave\nyes\nok\n");
  EXPECT_TRUE(Shown("message title=\"Note\" text=\"FAS File CMPSETUP.DAT")) << transcript_;
  EXPECT_TRUE(Shown("schedule_letters=\"TBSAC\"")) << transcript_;
}

TEST_F(Fas1000ImportTest, TheSourceIsCheckedBeforeAnythingElse) {
  Put("company.saf", CompanySaf("Lower case", false));
#ifndef _WIN32  // on Windows both spellings are the one file just written
  std::filesystem::remove(folder_ + "COMPANY.SAF");
#endif
  Run("file " + folder_ + "company.saf\ntext ACME\nsave\nyes\nok\n");
  EXPECT_FALSE(failed_) << "the name compares ignoring case: " << transcript_;
  EXPECT_TRUE(Shown("name=\"Lower case\""));

  Put("OTHER.SAF", CompanySaf("Other", false));
  Run("file " + folder_ + "OTHER.SAF\n");
  EXPECT_TRUE(Shown("message title=\"Error\" text=\"You must select a file called COMPANY.SAF\"\n"))
      << transcript_;
  EXPECT_EQ(transcript_.find("entry "), std::string::npos);

  std::filesystem::remove(folder_ + "bookdata.asc");
  Run("file " + folder_ + "company.saf\n");
  EXPECT_TRUE(
      Shown("message title=\"Error\" text=\"You must use FAS to produce ASCII "
            "files\\nbefore importing companyACME.\"\n"))
      << transcript_;
  EXPECT_EQ(transcript_.find("entry "), std::string::npos);
}

TEST_F(Fas1000ImportTest, AShortCompanyHeaderEndsTheImportWithoutAnotherWord) {
  Put("COMPANY.SAF", CompanySaf("Acme", false, 124));
  const ImportResult result = Run("file " + folder_ + "COMPANY.SAF\ntext ACME\n");
  EXPECT_FALSE(failed_) << transcript_;
  EXPECT_EQ(result.outcome, ImportOutcome::kEnded);
  EXPECT_EQ(transcript_.find("company-screen"), std::string::npos) << transcript_;
  EXPECT_EQ(transcript_.find("message "), std::string::npos) << transcript_;
  EXPECT_FALSE(std::filesystem::exists(dir_.path() + "/ACME.A"));
  EXPECT_FALSE(std::filesystem::exists(dir_.path() + "/ACME.LOK"));
}

TEST_F(Fas1000ImportTest, AddingToACompanyDropsDuplicatesAndSkipsBooksItLacks) {
  ASSERT_EQ(Run(NewCompanyScript("match 202=107\n")).added, 2) << transcript_;
  // Two more assets, one of them out of key order, a book line for a schedule the company
  // has not got, and the chair again.
  Put("cmpsetup.dat", CmpSetup(true, true, true, true, true));
  Put("assetgen.asc", Lines({ColumnLine().At(0, Key("100")).At(24, "A").At(77, "Chair again"),
                             ColumnLine().At(0, Key("500")).At(24, "A").At(77, "Desk"),
                             ColumnLine().At(0, Key("400")).At(24, "A").At(77, "Lamp")}));
  Put("bookdata.asc", Lines({Book("500", '0', "010224", "900.00", "SL", "", "0500", "0"),
                             Book("500", '2', "010224", "900.00", "SL", "", "0500", "0")}));
  Put("lablinfo.asc", Lines({ColumnLine().At(0, Key("500")).At(79, "Annex").At(160, "Steelcase")}));
  const ImportResult result = Run("file " + folder_ +
                                  "COMPANY.SAF\ntext ACME\nchoose-text Add assets to existing "
                                  "company\nyes\nmatch 202=103\nok\n");
  ASSERT_FALSE(failed_) << transcript_;
  EXPECT_TRUE(
      Shown("options=[\"Select different company number\", \"Add assets to existing "
            "company\", \"Abort this import\"]"))
      << transcript_;
  EXPECT_EQ(transcript_.find("company-screen"), std::string::npos) << "no setup screen after Add";
  EXPECT_TRUE(Shown("message title=\"Done\" text=\"1 assets copied.\"")) << transcript_;
  EXPECT_EQ(result.added, 1);
  for (const char* line :
       {"assetgen.asc line 1: asset \"100.00\": duplicate asset number",
        "assetgen.asc line 3: asset \"400\": passed over by the importer (out of key order in "
        "assetgen.asc)",
        "bookdata.asc line 2: asset \"500\": passed over by the importer (the company has no "
        "schedule S)"}) {
    EXPECT_NE(result.report_text.find(line), std::string::npos) << line << "\n"
                                                                << result.report_text;
  }

  NvCompanyRecord company;
  std::map<std::string, NvAsset> assets = Assets(&company);
  EXPECT_EQ(company.schedule_letters, "TBA") << "the company keeps its own books";
  EXPECT_EQ(company.user_fields[0].name, "Custodian") << "a label once given stays";
  EXPECT_EQ(assets.size(), 3u);
  EXPECT_EQ(assets["100.00"].description, "Office chair");
  EXPECT_EQ(assets["500.00"].location, "Annex");
  EXPECT_EQ(assets["500.00"].user_fields[0], "Steelcase") << "matched to the vendor this time";
  EXPECT_EQ(assets["500.00"].Schedule('T')->method, kMethodStraightLine);
}

TEST_F(Fas1000ImportTest, FilesGoneByTheTimeOfTheCopyAreToldAndNothingIsCopied) {
  ImportHooks hooks;
  hooks.before_setup_screen = [this](NvCompanyRecord&) {
    std::filesystem::remove(folder_ + "bookdata.asc");
  };
  const ImportResult result = Run(NewCompanyScript(), std::move(hooks));
  EXPECT_FALSE(failed_) << transcript_;
  EXPECT_EQ(result.added, 0);
  EXPECT_TRUE(
      Shown("message title=\"Error\" text=\"Unable to open assetgen.asc or bookdata.asc "
            "file(s).\\nCannot perform import without these files.\"\n"))
      << transcript_;
  EXPECT_TRUE(Shown("message title=\"Done\" text=\"0 assets copied.\"")) << transcript_;
  EXPECT_TRUE(Assets().empty());
}

}  // namespace
}  // namespace nv
