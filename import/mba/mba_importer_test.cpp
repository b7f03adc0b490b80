#include "import/mba/mba_importer.h"

#include <gtest/gtest.h>

#include "import/mba/mba_testing.h"
#include "store/codes/account_groups.h"
#include "store/company/asset_testing.h"
#include "store/store_testing.h"
#include "ui/scripted_ui_testing.h"

namespace nv {
namespace {

using testing::ContextFor;
using testing::MbaLineText;
using testing::Script;
using testing::TempDir;
using testing::WriteText;

class MbaImporterTest : public ::testing::Test {
 protected:
  MbaImporterTest() : ctx_(ContextFor(dir_.path())) {
    source_ = dir_.path() + "/plantassets.txt";
    MbaLineText press('A', "0102PRESS123");
    press.Description("Hydraulic press with tooling, spare dies")
        .Cost("12500.00")
        .Acquired("031598")
        .Disposed("063024")
        .MidQuarter()
        .Accounts("1500", "1510", "6100")
        .Book(0, 'M', "7", "12500.00", "0", "9000.00");
    MbaLineText truck('S', "0201TRUCK45");
    truck.Description("Delivery truck")
        .Cost("30000.00")
        .Acquired("01152020")
        .Disposed("06/30/24")
        .Accounts("1600", "1610", "6200")
        .Book(0, 'Y', "5", "28000.00", "1000.00", "20000.00");
    MbaLineText old('D', "0102PRESS7");
    old.Description("Old press")
        .Cost("5000")
        .Acquired("010190")
        .Disposed("123123")
        .Book(0, 'Z', "0", "0", "0", "0");
    // The first press again under another description: the same number, so left out.
    MbaLineText again('A', "0102PRESS123");
    again.Description("Press entered twice").Cost("1");
    WriteText(source_, press.text() + "\r\n" + truck.text() + "\r\n\r\n" + old.text() + "\r\n" +
                           again.text() + "\r\n");
  }

  ImportResult Run(std::string_view script) {
    MbaImporter importer;
    auto ui = Script(script);
    ImportResult result = RunImport(ctx_, *ui, importer);
    transcript_ = ui->transcript();
    failed_ = ui->failed();
    return result;
  }

  bool Has(std::string_view text) const { return transcript_.find(text) != std::string::npos; }

  TempDir dir_;
  InstallationContext ctx_;
  std::string source_;
  std::string transcript_;
  bool failed_ = false;
};

// The IDs give list A {0102, 0201}, list B {PRESS, TRUCK} and numbers up to 123: scheme 0
// with P = 10^4 and Q = 10^3. PRESS123 is 123, TRUCK45 is 45 + 1000 + 10000, PRESS7 is 7.
TEST_F(MbaImporterTest, ANewCompanyGetsItsRecordAndEveryLineAsAnAsset) {
  const ImportResult result = Run("file " + source_ + "\ntext PLANT\nsave\nyes\n");
  ASSERT_FALSE(failed_) << transcript_;
  EXPECT_EQ(result.outcome, ImportOutcome::kCompleted);
  EXPECT_EQ(result.added, 3);
  EXPECT_TRUE(
      Has("file-open title=\"Select Source File\" filter=\"MBA Software text files|*.txt|"
          "All files|*.*\" folder=\"/MBAS2DAT\""))
      << transcript_;
  EXPECT_TRUE(Has("prompt=\"NORVANE company number.\" text=\"PLANTASS\"")) << transcript_;
  EXPECT_TRUE(Has("message title=\"Done\" text=\"3 assets copied.\"")) << transcript_;
  EXPECT_TRUE(
      Has("progress title=\"MBA Import\" text=\"Copying MBA assets\\n \" total=4 "
          "position=4"))
      << transcript_;
  EXPECT_NE(result.report_text.find("line 5: asset \"123.00\": duplicate asset number"),
            std::string::npos)
      << result.report_text;

  NvCompany company(ctx_);
  ASSERT_GT(company.Open("PLANT", NvCompany::kOpenI1 | NvCompany::kReadOnly, *Script("")), 0);
  const NvCompanyRecord& record = company.record();
  EXPECT_EQ(record.name, "");
  EXPECT_EQ(record.schedules, (std::vector<ScheduleEntry>{{'T', "T", "Tax"}}));
  EXPECT_EQ(record.sort_order, "ACL");
  EXPECT_EQ(record.business_category, 1);
  EXPECT_FALSE(record.round_dollars);
  EXPECT_EQ(record.global_loc_cat, 'N');
  EXPECT_EQ(record.months_in_year, 12);
  EXPECT_EQ(record.user_fields[0].name, "MBA Asset Status");
  EXPECT_EQ(record.user_fields[1].name, "MBA Asset ID");
  EXPECT_EQ(record.user_fields[2].name, "");

  NvAsset press;
  ASSERT_EQ(company.FindAsset("123", &press), 0);
  EXPECT_EQ(press.user_fields[0], "A");
  EXPECT_EQ(press.user_fields[1], "0102PRESS123");
  EXPECT_EQ(press.location, "01");
  EXPECT_EQ(press.category, "02");
  EXPECT_EQ(press.description, "Hydraulic press with tooling,");
  EXPECT_DOUBLE_EQ(press.cash_and_notes, 12500);
  EXPECT_EQ(press.purchase_date, (Date{3, 15, 1998}));
  EXPECT_EQ(press.date_in_service, (Date{3, 15, 1998}));
  EXPECT_EQ(press.account, "1500");
  EXPECT_FALSE(press.disposed());
  EXPECT_TRUE(press.disposal_date.empty()) << "active: the disposal date is not read";
  const NvAssetSchedule& macrs = press.schedules.at(0);
  EXPECT_EQ(macrs.method, kMethodMacrs);
  EXPECT_EQ(macrs.convention, 'Q');
  EXPECT_EQ(macrs.useful_life, (YearsMonths{7, 0}));
  EXPECT_DOUBLE_EQ(macrs.substitute_basis, 0);
  EXPECT_DOUBLE_EQ(macrs.prior_allowed_depr, 9000);

  NvAsset truck;
  ASSERT_EQ(company.FindAsset("11045", &truck), 0);
  EXPECT_EQ(truck.user_fields[0], "S");
  EXPECT_EQ(truck.location, "02");
  EXPECT_EQ(truck.category, "01");
  EXPECT_EQ(truck.disposal_code, 'S');
  EXPECT_EQ(truck.disposal_date, (Date{6, 30, 2024}));
  EXPECT_DOUBLE_EQ(truck.amount_disposed, 30000);
  EXPECT_EQ(truck.account, "1600");
  const NvAssetSchedule& syd = truck.schedules.at(0);
  EXPECT_EQ(syd.method, kMethodSyd);
  EXPECT_EQ(syd.convention, '1');
  EXPECT_DOUBLE_EQ(syd.substitute_basis, 28000);
  EXPECT_DOUBLE_EQ(syd.salvage_value, 1000);
  EXPECT_DOUBLE_EQ(syd.prior_allowed_depr, 20000);

  NvAsset old;
  ASSERT_EQ(company.FindAsset("7", &old), 0);
  EXPECT_EQ(old.disposal_code, 'A');
  EXPECT_EQ(old.disposal_date, (Date{12, 31, 2023}));
  EXPECT_EQ(old.purchase_date, (Date{1, 1, 1990}));
  EXPECT_EQ(old.account, "");
  EXPECT_TRUE(old.schedules.at(0).not_applicable());
  EXPECT_EQ(company.Close(), 0);

  // The account groups the lines called for, read back from PLANT.ACG.
  AccountGroupList groups;
  ASSERT_EQ(LoadAccountGroups(dir_.path() + "/", "PLANT", &groups), 2);
  EXPECT_EQ(groups.groups[0], (AccountGroup{"1500", "", {"6100", "1510", "", ""}}));
  EXPECT_EQ(groups.groups[1], (AccountGroup{"1600", "", {"6200", "1610", "", ""}}));
  EXPECT_EQ(groups.file_name, "PLANT.EX1") << "a new file has the default settings";
}

TEST_F(MbaImporterTest, AnExistingCompanyIsErasedAtOnceOrAddedToAfterTheQuestion) {
  ASSERT_EQ(Run("file " + source_ + "\ntext PLANT\nsave\nyes\n").added, 3) << transcript_;
  // A group of the main program's, which the import keeps and works around.
  AccountGroupList groups;
  ASSERT_EQ(LoadAccountGroups(dir_.path() + "/", "PLANT", &groups), 2);
  groups.groups.insert(groups.groups.begin() + 1, {"1600", "Vehicles", {"1", "2", "3", "4"}});
  groups.groups.erase(groups.groups.begin() + 2);
  ASSERT_EQ(SaveAccountGroups(dir_.path() + "/", "PLANT", groups), 2);

  ImportResult erased = Run("file " + source_ + "\ntext PLANT\nchoose-text " +
                            std::string(kEraseAssetsOption) + "\nsave\nyes\n");
  ASSERT_FALSE(failed_) << transcript_;
  EXPECT_EQ(erased.added, 3);
  EXPECT_TRUE(
      Has("text=\"Company PLANT already exists in NORVANE\" note=\"\" options=[\"Select "
          "different company number\", \"Erase existing company's assets only\", \"Add "
          "assets to existing company\", \"Abort this import\"]"))
      << transcript_;
  EXPECT_FALSE(Has(kEraseQuestion)) << "erased without a question";
  EXPECT_TRUE(Has("company-screen ")) << "Erase shows the company once more";
  ASSERT_EQ(LoadAccountGroups(dir_.path() + "/", "PLANT", &groups), 3);
  EXPECT_EQ(groups.groups[1].code, "1600");
  EXPECT_EQ(groups.groups[1].description, "Vehicles");
  EXPECT_EQ(groups.groups[2].code, "1600A");
  EXPECT_EQ(groups.groups[2].accounts[0], "6200");

  ImportResult added = Run("file " + source_ + "\ntext PLANT\nchoose-text " +
                           std::string(kAddAssetsOption) + "\nyes\n");
  ASSERT_FALSE(failed_) << transcript_;
  EXPECT_TRUE(
      Has("question title=\"Question\" text=\"Duplicate asset numbers will\\nbe dropped.  "
          "Continue?\""))
      << transcript_;
  EXPECT_EQ(added.added, 0);
  EXPECT_TRUE(Has("message title=\"Done\" text=\"0 assets copied.\"")) << transcript_;
}

TEST_F(MbaImporterTest, AFileWithoutAssetLinesOrNoFileAtAllIsToldAndNothingIsMade) {
  const std::string empty = dir_.path() + "/empty.txt";
  WriteText(empty, "\r\n   \r\n");
  ImportResult result = Run("file " + empty + "\n");
  EXPECT_EQ(result.outcome, ImportOutcome::kEnded);
  EXPECT_TRUE(Has("message title=\"Error\" text=\"The file " + testing::TranscriptText(empty) +
                  "\\nholds no asset lines.  Choose the text file\\nthat MBA Software exported.\""))
      << transcript_;
  EXPECT_FALSE(Has("entry ")) << "no company number is asked for";

  const std::string missing = dir_.path() + "/missing.txt";
  Run("file " + missing + "\n");
  EXPECT_TRUE(Has("message title=\"Error\" text=\"Unable to read the MBA file\\n" +
                  testing::TranscriptText(missing) + "\""))
      << transcript_;
  EXPECT_FALSE(PathExists(dir_.path() + "/MASTER.A"));
}

}  // namespace
}  // namespace nv
