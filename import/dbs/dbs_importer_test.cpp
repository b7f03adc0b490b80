#include "import/dbs/dbs_importer.h"

#include <gtest/gtest.h>

#include "base/file.h"
#include "store/company/asset_testing.h"
#include "store/store_testing.h"
#include "ui/scripted_ui_testing.h"

namespace nv {
namespace {

using testing::ContextFor;
using testing::Script;
using testing::TempDir;
using testing::WriteText;

// A tab record with the given slot letters, number and the methods of slots 1 and 2 (the
// other slots N/A); every other field empty.
std::string Record(std::string_view letters, std::string_view number, int method1, int method2) {
  std::string line = std::string(letters) + "\t" + std::string(20, '\t') + std::string(number) +
                     "\t" + "Item " + std::string(number) + std::string(17, '\t');
  for (int slot = 0; slot < 5; ++slot) {
    const int method = slot == 0 ? method1 : slot == 1 ? method2 : 13;
    line += std::to_string(method) + std::string(17, '\t');
  }
  return line + std::string(5, '\t') + "\r\n";
}

class DbsImporterTest : public ::testing::Test {
 protected:
  DbsImporterTest() : ctx_(ContextFor(dir_.path())) {}

  ImportResult Run(std::string_view script) {
    std::unique_ptr<Importer> importer = MakeDataBaseFileImporter();
    auto ui = Script(script);
    ImportResult result = RunImport(ctx_, *ui, *importer);
    transcript_ = ui->transcript();
    return result;
  }

  TempDir dir_;
  InstallationContext ctx_;
  std::string transcript_;
};

TEST_F(DbsImporterTest, NewCompanyFromTheFileWithItsQuestionsAndCount) {
  // Blank lines between records (counted as lines), and a duplicate number left out.
  const std::string source = dir_.path() + "/widgets2024.dbs";
  WriteText(source, Record("BATSC", "1.01", 2, 13) + "\r\n  \r\n" +
                        Record("BATSC", "2.01", 13, 13) + Record("XTB", "3.01", 3, 6) +
                        Record("BATSC", "1.01", 2, 13));
  const ImportResult result = Run("yes\nfile " + source + "\nchoose 0\ntext WIDGETS2\nsave\nyes\n");
  ASSERT_EQ(result.outcome, ImportOutcome::kCompleted) << transcript_;
  EXPECT_EQ(result.added, 3);
  for (std::string_view shown :
       {"question title=\"Question\" text=\"This import format only supports 5 user definable "
        "fields.\\n\\nContinue?\"",
        "text=\"Select record type\" note=\"\" options=[\"Tab-Delimited\", \"Comma-Delimited\", "
        "\"Fixed Length\"]",
        "text=\"WIDGETS2\"", "text=\"3 assets copied.\""}) {
    EXPECT_NE(transcript_.find(shown), std::string::npos) << shown << "\n" << transcript_;
  }
  // The schedules that some record uses, in the order the file first uses them: B from the
  // first record, X and T from the third; A, S and C hold none anywhere.
  NvCompany company(ctx_);
  ASSERT_GT(company.Open("WIDGETS2", NvCompany::kOpenI1 | NvCompany::kReadOnly, *Script("")), 0);
  EXPECT_EQ(company.record().schedule_letters, "BXT");
  EXPECT_EQ(company.record().sort_order, "ACL");
  EXPECT_EQ(company.record().global_loc_cat, 'N');
  EXPECT_EQ(company.record().FindSchedule('B')->name, "Book");
  EXPECT_TRUE(PathExists(dir_.path() + "/WIDGETS2.LOC"));
  EXPECT_TRUE(PathExists(dir_.path() + "/WIDGETS2.CAT"));
  NvAsset asset;
  ASSERT_EQ(company.FindAsset("3.01", &asset), 0);
  EXPECT_EQ(asset.Schedule('X')->method, 3);
  EXPECT_EQ(asset.Schedule('T')->method, 6);
  EXPECT_TRUE(asset.Schedule('B')->not_applicable());
  static_cast<void>(company.Close());
  EXPECT_NE(result.report_text.find("line 6: asset \"1.01\": duplicate"), std::string::npos)
      << result.report_text;
}

TEST_F(DbsImporterTest, EndsOnNoAndOnAClosedRecordTypeList) {
  const std::string source = dir_.path() + "/a.dbs";
  WriteText(source, Record("BATSC", "1.01", 2, 13));
  EXPECT_EQ(Run("no\n").outcome, ImportOutcome::kEnded);
  EXPECT_EQ(transcript_.find("file"), std::string::npos) << "No ends before the file dialog";
  EXPECT_EQ(Run("yes\nfile " + source + "\nclose\n").outcome, ImportOutcome::kEnded);
  EXPECT_NE(transcript_.find("message title=\"Error\" text=\"No record type selected.\""),
            std::string::npos)
      << transcript_;
}

TEST_F(DbsImporterTest, SchedulesTheCompanyLacksAreNotedInTheReport) {
  // An existing company of schedules B and T; the file's slot S holds a schedule.
  NvCompany company(ctx_);
  company.record() = testing::TwoBookCompany();
  ASSERT_EQ(company.Create({"TWO", "Two"}, NvCompany::kOpenI1 | NvCompany::kOpenI2), 0);
  ASSERT_TRUE(EnterIntoCompanyList(ctx_, "TWO", "Two"));
  const std::string source = dir_.path() + "/two.dbs";
  WriteText(source, Record("SBT", "5.001", 2, 3));
  const ImportResult result =
      Run("yes\nfile " + source +
          "\nchoose 0\ntext TWO\nchoose-text Add assets to existing company\nyes\n");
  ASSERT_EQ(result.added, 1) << transcript_;
  EXPECT_NE(result.report_text.find("line 1: asset \"5.001\": schedules S are not schedules of the "
                                    "company"),
            std::string::npos)
      << result.report_text;
}

}  // namespace
}  // namespace nv
