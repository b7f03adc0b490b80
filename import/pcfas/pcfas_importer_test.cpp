#include "import/pcfas/pcfas_importer.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "base/file.h"
#include "base/file_util.h"
#include "import/frame/current_year_files.h"
#include "store/asset/asset.h"
#include "store/company/asset_testing.h"
#include "store/company/company.h"
#include "store/store_testing.h"
#include "ui/scripted_ui_testing.h"

namespace nv {
namespace {

using testing::ContextFor;
using testing::ReadText;
using testing::Script;
using testing::TempDir;
using testing::WriteText;

// A MASTER.ASC line of `count` fields, the given ones filled.
std::string Line(const std::map<int, std::string>& fields, int count = 120) {
  std::string line;
  for (int i = 0; i < count; ++i) {
    if (i > 0) line += ",";
    auto it = fields.find(i);
    if (it != fields.end()) line += it->second;
  }
  return line + "\r\n";
}

// An asset of the long layout: number, status, description; the IRS book (fields 34 on)
// and the internal book (51 on) cost 1000, straight line over 5 years.
std::map<int, std::string> Asset(const std::string& number, const std::string& status = "A") {
  return {{0, number},
          {1, status},
          {2, "TOOLS"},
          {4, "Asset " + number},
          {5, "SHOP"},
          {6, "Dept " + number},
          {7, "01/15/2024"},
          {14, "Bay " + number},
          {20, "1500-" + number},
          {34, "1000"},
          {35, "S"},
          {39, "5"},
          {40, "0"},
          {42, "200"},
          {43, "600"},
          {47, "1224"},
          {51, "1000"},
          {52, "S"},
          {56, "5"},
          {57, "0"},
          {59, "200"},
          {60, "600"},
          {64, "1224"}};
}

class PcFasImportTest : public ::testing::Test {
 protected:
  PcFasImportTest() : ctx_(ContextFor(dir_.path())) {
    folder_ = dir_.path() + "/pcfas/Acme";
    EXPECT_TRUE(MakeDirectories(folder_));
    company_file_ = folder_ + "/COMPANY1.FAS";
    std::string header(256, ' ');
    const auto put = [&header](size_t at, const std::string& text) {
      header.replace(at, text.size(), text);
    };
    put(0, "Acme Widgets");
    put(43, "Y");
    put(44, "ACCOUNT");
    put(104, "DEPT");
    put(54, "BAY");
    put(192, "TAG");
    put(219, "YYNYN");  // IRS, internal book, AMT
    WriteText(company_file_, header);
  }

  void WriteMaster(const std::string& text) { WriteText(folder_ + "/MASTER.ASC", text); }

  ImportResult Run(const std::string& script) {
    PcFasImporter importer;
    auto ui = Script(script);
    ImportResult result = RunImport(ctx_, *ui, importer);
    transcript_ = ui->transcript();
    failed_ = ui->failed();
    return result;
  }

  bool Shows(const std::string& line) const { return transcript_.find(line) != std::string::npos; }

  std::unique_ptr<NvCompany> Open(const std::string& number = "ACME") {
    auto company = std::make_unique<NvCompany>(ctx_);
    EXPECT_GT(company->Open(number, NvCompany::kOpenI1 | NvCompany::kReadOnly, *Script("")), 0);
    return company;
  }

  std::vector<NvAsset> Assets(const std::string& number = "ACME") {
    std::unique_ptr<NvCompany> company = Open(number);
    std::vector<NvAsset> assets;
    NvAsset asset;
    while (company->NextAsset(AssetOrder::kNumber, &asset) == 0 && asset.record_number != 0) {
      assets.push_back(asset);
    }
    static_cast<void>(company->Close());
    return assets;
  }

  TempDir dir_;
  InstallationContext ctx_;
  std::string folder_;
  std::string company_file_;
  std::string transcript_;
  bool failed_ = false;
};

TEST_F(PcFasImportTest, ANewCompanyTakesTheHeaderAndTheMatchedFields) {
  std::map<int, std::string> second = Asset("2");
  second[47] = "0125";  // IRS depreciated through January 2025, after Last Closed
  WriteMaster(Line(Asset("1")) + Line(second));
  ImportResult result = Run("file " + company_file_ +
                            "\ntext ACME\nfield last_closed 12/31/2024\nsave\nyes\n"
                            "match 202=103\nok\n");
  ASSERT_FALSE(failed_) << transcript_;
  EXPECT_EQ(result.outcome, ImportOutcome::kCompleted);
  EXPECT_TRUE(
      Shows("file-open title=\"Select PC/FAS Company File\" filter=\"PC/FAS "
            "files|*.fas\" folder=\"c:\\\\pcfas\""))
      << transcript_;
  // The folder's name is the default number.
  EXPECT_TRUE(Shows("prompt=\"NORVANE company number.\" text=\"ACME\""));
  EXPECT_TRUE(
      Shows("company-screen number=\"ACME\" name=\"Acme Widgets\" ein=\"\" last_closed=\"\" "
            "current_year_end=\"\""));
  EXPECT_TRUE(
      Shows("schedule_letters=\"TBA\" sort_order=\"C\" business_category=\"1\" "
            "round_dollars=\"Y\" mid_quarter_override=\"A\" global_loc_cat=\"L\""));
  EXPECT_TRUE(Shows(
      "match-panel caption=\"FAS to KEL data field conversion\" destination-heading=\"KEL Data "
      "Field\" source-heading=\"FAS Data Field\" destinations=[201 \"Account No.\", 202 \"User "
      "Field 1\", 203 \"User Field 2\", 204 \"User Field 3\"] sources=[101 \"ACCOUNT\", 102 "
      "\"DEPT\", 103 \"BAY\", 104 \"\", 105 \"\", 106 \"\", 107 \"\", 108 \"\", 109 \"\", 110 "
      "\"\", 111 \"TAG\"] preset=[201=101]"))
      << transcript_;
  EXPECT_TRUE(Shows("progress title=\"PC/FAS Import\" text=\"Copying PC/FAS assets\\n \""));
  EXPECT_TRUE(Shows("message title=\"Done\" text=\"2 assets copied.\""));

  std::unique_ptr<NvCompany> company = Open();
  const NvCompanyRecord& record = company->record();
  EXPECT_EQ(record.name, "Acme Widgets");
  EXPECT_TRUE(record.round_dollars);
  EXPECT_EQ(record.schedules,
            (std::vector<ScheduleEntry>{{'T', "T", "Tax"}, {'B', "B", "Book"}, {'A', "A", "AMT"}}));
  EXPECT_EQ(record.user_fields[0].name, "BAY");
  EXPECT_EQ(record.user_fields[1].name, "");
  static_cast<void>(company->Close());

  std::vector<NvAsset> assets = Assets();
  ASSERT_EQ(assets.size(), 2u);
  EXPECT_EQ(assets[0].account, "1500-1");
  EXPECT_EQ(assets[0].user_fields[0], "Bay 1");
  EXPECT_EQ(assets[0].Schedule('A')->method, kMethodNa);  // no AMT book in the source
  // Through 12/2024, the month of Last Closed: all of it is prior depreciation.
  EXPECT_DOUBLE_EQ(assets[0].Schedule('T')->prior_allowed_depr, 600);
  EXPECT_DOUBLE_EQ(assets[1].Schedule('T')->prior_allowed_depr, 400);
  EXPECT_DOUBLE_EQ(assets[1].Schedule('B')->prior_allowed_depr, 600);
}

TEST_F(PcFasImportTest, SourceChecksTellWhatIsWrongAndEndTheImport) {
  WriteMaster(Line(Asset("1")));
  WriteText(folder_ + "/COMPANY2.FAS", std::string(256, ' '));
  Run("file " + folder_ + "/COMPANY2.FAS\n");
  EXPECT_EQ(transcript_.substr(transcript_.find('\n') + 1),
            "message title=\"Error\" text=\"You must select a file called COMPANY1.FAS\"\n");

  ASSERT_TRUE(RemoveFile(folder_ + "/MASTER.ASC"));
  Run("file " + company_file_ + "\n");
  EXPECT_EQ(transcript_.substr(transcript_.find('\n') + 1),
            "message title=\"Error\" text=\"You must use PC/FAS to produce ASCII files\\nbefore "
            "importing company Acme.\"\n");

  WriteText(folder_ + "/master.asc", Line(Asset("1")));
  WriteText(company_file_, std::string(255, ' '));
  Run("file " + company_file_ + "\n");
  EXPECT_EQ(transcript_.substr(transcript_.find('\n') + 1),
            "message title=\"Error\" text=\"Unable to read PC/FAS company files.\"\n");
  EXPECT_FALSE(PathExists(dir_.path() + "/ACME.A"));

  // Names are matched ignoring case.
  WriteText(company_file_, std::string(256, 'Y'));
  ASSERT_TRUE(RenamePath(company_file_, folder_ + "/company1.fas"));
  Run("file " + folder_ + "/company1.fas\ntext ACME\nsave\nyes\nok\n");
  EXPECT_FALSE(failed_) << transcript_;
  EXPECT_EQ(Assets().size(), 1u);
}

TEST_F(PcFasImportTest, TheReportNamesEveryRecordPassedOverAndWhy) {
  std::map<int, std::string> blank = Asset("4", " ");
  WriteMaster(Line(Asset("1")) + Line(Asset("2"), 119) + Line(Asset("3", "D")) + Line(blank) +
              Line(Asset("5", "")) + Line(Asset("1")));
  ImportResult result = Run("file " + company_file_ + "\ntext ACME\nsave\nyes\nok\n");
  ASSERT_FALSE(failed_) << transcript_;
  EXPECT_TRUE(Shows("message title=\"Done\" text=\"2 assets copied.\"")) << transcript_;
  std::vector<NvAsset> assets = Assets();
  ASSERT_EQ(assets.size(), 2u);
  EXPECT_EQ(assets[1].number.main(), "4");
  EXPECT_NE(result.report_text.find("Records read: 6\nAssets added: 2\nLeft out: 4\n"),
            std::string::npos)
      << result.report_text;
  for (const char* line :
       {"  line 2: asset \"2\": passed over by the importer (119 fields where the first record "
        "has 120)\n",
        "  line 3: asset \"3\": passed over by the importer (record status \"D\"; only \"A\" or a "
        "blank is imported)\n",
        "  line 5: asset \"5\": passed over by the importer (record status \"\"; only \"A\" or a "
        "blank is imported)\n",
        "  line 6: asset \"1.00\": duplicate asset number\n"}) {
    EXPECT_NE(result.report_text.find(line), std::string::npos) << line << result.report_text;
  }
}

TEST_F(PcFasImportTest, TheFirstRecordAloneChoosesTheLayout) {
  // 118 fields: the short layout, IRS book from field 28; 119: the long one, from 34.
  const auto book_cost = [&](int count, const std::string& company) {
    std::map<int, std::string> fields = {{0, "10"}, {1, "A"}, {28, "111"}, {34, "222"}};
    WriteMaster(Line(fields, count) + Line(fields, 120));
    Run("file " + company_file_ + "\ntext " + company + "\nsave\nyes\nok\n");
    std::vector<NvAsset> assets = Assets(company);
    return assets.size() == 1 ? assets[0].cash_and_notes : -1.0;
  };
  EXPECT_EQ(book_cost(118, "L118"), 111);
  EXPECT_EQ(book_cost(119, "L119"), 222);
  // 100 fields or fewer: nothing is an asset.
  WriteMaster(Line(Asset("30"), 100) + Line(Asset("31"), 120));
  ImportResult result = Run("file " + company_file_ + "\ntext L100\nsave\nyes\nok\n");
  EXPECT_TRUE(Shows("message title=\"Done\" text=\"0 assets copied.\"")) << transcript_;
  EXPECT_NE(result.report_text.find("line 2: asset \"31\": passed over by the importer (the first "
                                    "record has 100 fields; asset records have more than 100)"),
            std::string::npos)
      << result.report_text;
}

TEST_F(PcFasImportTest, AddingKeepsNamedUserFieldsAndRecordsTheCurrentYear) {
  {
    NvCompany company(ctx_);
    company.record() = testing::TwoBookCompany();
    company.record().user_fields[0].name = "Custom";
    ASSERT_EQ(company.Create({"ACME", "Acme Old"}, NvCompany::kOpenI1 | NvCompany::kOpenI2), 0);
    ASSERT_GT(company.Open("ACME", NvCompany::kOpenI1 | NvCompany::kOpenI2, *Script("")), 0);
    NvAsset asset = testing::MakeAsset(company.record(), 1);
    asset.number = NvAssetNo::Parse("1", company.record().asset_no_format);
    ASSERT_EQ(company.AddAsset(&asset), 0);
    ASSERT_EQ(company.Close(), 0);
  }
  std::map<int, std::string> old = Asset("3");
  old[7] = "05/01/2010";
  WriteMaster(Line(Asset("1")) + Line(Asset("2")) + Line(old));
  ImportResult result = Run("file " + company_file_ + "\ntext ACME\nchoose-text " +
                            kAddAssetsOption + "\nyes\nsave\nyes\nmatch 202=103 203=102\nok\n");
  ASSERT_FALSE(failed_) << transcript_;
  EXPECT_TRUE(
      Shows("options=[\"Select different company number\", \"Add assets to existing "
            "company\", \"Abort this import\"]"))
      << transcript_;
  EXPECT_EQ(result.added, 2);
  std::unique_ptr<NvCompany> company = Open();
  EXPECT_EQ(company->record().user_fields[0].name, "Custom");
  EXPECT_EQ(company->record().user_fields[1].name, "DEPT");
  static_cast<void>(company->Close());

  // Last Closed 12/31/2023: asset 2 (in service 2024) is current-year activity, asset 3
  // (2010) is not.
  std::vector<NvAsset> assets = Assets();
  ASSERT_EQ(assets.size(), 3u);
  EXPECT_EQ(assets[1].user_fields[0], "Bay 2");
  EXPECT_EQ(assets[1].user_fields[1], "Dept 2");
  const std::string cy = ReadText(dir_.path() + "/ACME.CY");
  EXPECT_EQ(ParseCurrentYearFile(cy), (std::vector<uint32_t>{assets[1].record_number}));
  EXPECT_EQ(cy.substr(0, 9), "NVW3000\r\n");
}

TEST_F(PcFasImportTest, AMasterFileGoneBeforeTheCopyCopiesNothingAndSaysWhy) {
  WriteMaster(Line(Asset("1")));
  PcFasImporter importer;
  auto ui = Script("file " + company_file_ + "\ntext ACME\nsave\nyes\nok\n");
  ImportHooks hooks;
  hooks.before_setup_screen = [this](NvCompanyRecord&) {
    EXPECT_TRUE(RemoveFile(folder_ + "/MASTER.ASC"));
  };
  ImportResult result = RunImport(ctx_, *ui, importer, std::move(hooks));
  EXPECT_NE(ui->transcript().find("message title=\"Done\" text=\"0 assets copied.\""),
            std::string::npos)
      << ui->transcript();
  EXPECT_NE(result.report_text.find("MASTER.ASC: asset (no number): passed over by the importer "
                                    "(the file cannot be opened; nothing was copied)"),
            std::string::npos)
      << result.report_text;
}

}  // namespace
}  // namespace nv
