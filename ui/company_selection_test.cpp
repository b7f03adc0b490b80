#include "ui/company_selection.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "base/file.h"
#include "base/file_util.h"
#include "base/temp_dir_testing.h"
#include "store/company/asset_testing.h"
#include "store/company/master_file.h"
#include "store/file/status.h"
#include "ui/change_company_number.h"
#include "ui/scripted_ui_testing.h"

namespace nv {
namespace {

using testing::Script;

class CompanySelectionTest : public ::testing::Test {
 protected:
  CompanySelectionTest() : ctx_(testing::ContextFor(dir_.path())) {}

  void AddCompany(const std::string& number, const std::string& name) {
    NvCompany company(ctx_);
    company.record() = testing::TwoBookCompany();
    company.record().name = name;
    ASSERT_EQ(company.Create({number, name}, NvCompany::kOpenI1 | NvCompany::kOpenI2), 0);
    MasterFile master;
    master.subfolders = ctx_.current.subfolders;
    // The first company of a test makes the list.
    static_cast<void>(ReadMasterFile(ctx_.data_directory(), &master));
    InsertMasterRec(&master.companies, {number, name});
    ASSERT_EQ(WriteMasterFile(ctx_.data_directory(), master), MasterFileStatus::kOk);
  }
  std::string Path(const std::string& name) const { return dir_.File(name); }

  TempDir dir_;
  InstallationContext ctx_;
  CompanyInUseLock lock_;
};

TEST_F(CompanySelectionTest, ListedCompanyIsLockedAndOpened) {
  AddCompany("ACME", "Acme Tools");
  AddCompany("Z9", "Zed");
  auto ui = Script("choose 1\n");
  NvCompany company(ctx_);
  CompanySelectionResult result = SelectCompany(ctx_, *ui, lock_, company, "Export", true);
  EXPECT_EQ(result.choice, CompanyChoice::kOpened);
  EXPECT_TRUE(company.is_open());
  EXPECT_EQ(company.number(), "Z9");
  EXPECT_TRUE(lock_.held());
  EXPECT_TRUE(SameFile(lock_.held_path(), Path("Z9.LOK"))) << lock_.held_path();
  EXPECT_EQ(
      ui->transcript(),
      "choice title=\"Export\" text=\"Select a company:\" note=\"\" options=[\"    ACME  Acme "
      "Tools                              \", \"      Z9  Zed                          "
      "           \", \"New Company\"] -> choose 1 \"      Z9  Zed                        "
      "             \" result=1\n");
}

TEST_F(CompanySelectionTest, AnotherUsersLockRefusesTheCompany) {
  AddCompany("ACME", "Acme Tools");
  CompanyInUseLock other;
  ASSERT_EQ(other.Take(Path("ACME.LOK"), "ALICE", {{5, 17, 2024}, 14, 3, 9}), "");
  auto ui = Script("choose 0\n");
  NvCompany company(ctx_);
  EXPECT_EQ(SelectCompany(ctx_, *ui, lock_, company, "", false).choice, CompanyChoice::kCancelled);
  EXPECT_FALSE(company.is_open());
  EXPECT_FALSE(lock_.held());
  EXPECT_NE(ui->transcript().find(
                "message title=\"Error\" text=\"You cannot select company ACME, because\\n"
                "company data is in use by Network Name\\nALICE\\n(Company in use "
                "since 2:03 p.m. on 05/17/2024)\""),
            std::string::npos)
      << ui->transcript();
}

TEST_F(CompanySelectionTest, NewCompanyNumberIsCheckedAndNoCompaniesIsTold) {
  auto empty = Script("");
  NvCompany company(ctx_);
  EXPECT_EQ(SelectCompany(ctx_, *empty, lock_, company, "", false).choice,
            CompanyChoice::kCancelled);
  EXPECT_EQ(empty->transcript(),
            "message title=\"Message\" text=\"No companies in data directory.\"\n");

  auto ui = Script("choose-text New Company\ntext ab.c\ntext  new1 \n");
  CompanySelectionResult result = SelectCompany(ctx_, *ui, lock_, company, "", true);
  EXPECT_EQ(result.choice, CompanyChoice::kNewNumber);
  EXPECT_EQ(result.new_number, "NEW1");
  EXPECT_NE(
      ui->transcript().find("entry title=\"Enter New Company Number\" prompt=\"Company "
                            "Number:\" text=\"\" -> text \"ab.c\"\nmessage title=\"Error\" "
                            "text=\"Only Letters, Numbers and the symbols\\n&&#$@ are allowed "
                            "in company numbers.\"\n"),
      std::string::npos)
      << ui->transcript();
  EXPECT_FALSE(lock_.held());
}

TEST_F(CompanySelectionTest, UnusableCompaniesAreToldAndTheLockLetGo) {
  AddCompany("ACME", "Acme Tools");
  NvCompany company(ctx_);
  // A damaged index offers the quick rebuild, which is left to the main program.
  ASSERT_TRUE(WriteFileAtomically(Path("ACME.I1"), std::string(64, 'j')));
  auto rebuild = Script("choose 0\nyes\n");
  EXPECT_EQ(SelectCompany(ctx_, *rebuild, lock_, company, "", false).choice,
            CompanyChoice::kCancelled);
  const std::string& t = rebuild->transcript();
  EXPECT_NE(t.find("A quick rebuild will automatically be\\nperformed on this company, in order "
                   "to\\nmake its index files usable for the\\ncurrent version of NORVANE.\\n\\n"
                   "Continue?\" buttons=[\"&Yes\", \"&No\", \"Cancel\"] default=\"&Yes\" -> yes\n"
                   "message title=\"Note\" text=\"Company file backup is not supported by the "
                   "import program.\"\nmessage title=\"Error\" text=\"Exit import software to "
                   "perform company rebuild.\"\nmessage title=\"Message\" text=\"Unable to open "
                   "company ACME\"\n"),
            std::string::npos)
      << t;
  EXPECT_FALSE(lock_.held());
  EXPECT_FALSE(std::filesystem::exists(Path("ACME.LOK")));

  auto declined = Script("choose 0\nno\n");
  SelectCompany(ctx_, *declined, lock_, company, "", false);
  EXPECT_EQ(declined->transcript().find("Unable to open"), std::string::npos);
  EXPECT_FALSE(lock_.held());
}

TEST_F(CompanySelectionTest, NoAccessClosesTheCompany) {
  AddCompany("ACME", "Acme Tools");
  {
    NvCompany company(ctx_);
    auto ui = Script("");
    ASSERT_EQ(company.Open("ACME", 0, *ui), 1);
    company.record().permissions = "BOB:F|*:N";
  }
  ctx_.network_mode = true;
  auto ui = Script("choose 0\n");
  NvCompany company(ctx_);
  EXPECT_EQ(SelectCompany(ctx_, *ui, lock_, company, "", false).choice, CompanyChoice::kCancelled);
  EXPECT_FALSE(company.is_open());
  EXPECT_FALSE(lock_.held());
  EXPECT_NE(ui->transcript().find("text=\"You are not permitted to access company ACME\""),
            std::string::npos);
}

TEST_F(CompanySelectionTest, ChangeNumberMovesFilesLockAndListEntry) {
  ctx_.current.subfolders = true;
  AddCompany("ACME", "Acme Tools");
  AddCompany("ZED", "Zed");
  auto select = Script("choose 0\n");
  NvCompany company(ctx_);
  ASSERT_EQ(SelectCompany(ctx_, *select, lock_, company, "", false).choice, CompanyChoice::kOpened);
  ASSERT_TRUE(WriteFileAtomically(Path("ACME.CLT/ACME.LOG"), "log\r\n"));

  auto ui = Script("text ACME\ntext zed\ntext b a d\ntext New1\n");
  ASSERT_TRUE(RunChangeCompanyNumber(ctx_, company, lock_, *ui));
  EXPECT_NE(ui->transcript().find("entry title=\"Change Company Number\" prompt=\"Old Company "
                                  "Number: ACME\\n\\nNew Company Number:\" text=\"\" -> text "
                                  "\"ACME\"\nmessage title=\"Error\" text=\"New company number is "
                                  "the same as the old one.\"\n"),
            std::string::npos)
      << ui->transcript();
  EXPECT_NE(ui->transcript().find("text=\"Files for this company already exist.\""),
            std::string::npos);
  EXPECT_NE(ui->transcript().find("text=\"Only Letters, Numbers"), std::string::npos);

  EXPECT_FALSE(std::filesystem::exists(Path("ACME.CLT")));
  for (const char* name : {"NEW1.A", "NEW1.I1", "NEW1.I2", "NEW1.LOG", "NEW1.LOK"}) {
    EXPECT_TRUE(std::filesystem::exists(Path(std::string("NEW1.clt/") + name))) << name;
  }
  EXPECT_TRUE(lock_.held());
  EXPECT_TRUE(SameFile(lock_.held_path(), Path("NEW1.clt/NEW1.LOK"))) << lock_.held_path();
  MasterFile master;
  ASSERT_EQ(ReadMasterFile(ctx_.data_directory(), &master), MasterFileStatus::kOk);
  ASSERT_EQ(master.companies.size(), 2u);
  EXPECT_EQ(master.companies[0].number, "NEW1");
  EXPECT_EQ(master.companies[0].name, "Acme Tools");

  // The lock taken under the new number keeps other writers out; under it the renamed
  // company opens for writing.
  auto reopen = Script("");
  NvCompany renamed(ctx_);
  EXPECT_EQ(renamed.Open("new1", NvCompany::kOpenI1 | NvCompany::kOpenI2, *reopen), kCompanyInUse);
  ASSERT_EQ(renamed.Open("new1", NvCompany::kOpenI1 | NvCompany::kOpenI2, *reopen, lock_), 1);
  EXPECT_EQ(renamed.record().name, "Acme Tools");
  EXPECT_EQ(renamed.Close(), 0);
  EXPECT_TRUE(lock_.held());
}

}  // namespace
}  // namespace nv
