// Command 107 as a test import: the company steps, the dialog and its runs go to a scratch
// installation; the profiles the dialog changed come back only when the person says so.
#include <gtest/gtest.h>

#include <string>

#include "base/file_util.h"
#include "base/temp_dir_testing.h"
#include "import/bna/bna_import.h"
#include "import/bna/bna_profile.h"
#include "import/frame/frame_testing.h"
#include "ui/scripted_ui.h"

namespace nv {
namespace {

using testing::FolderSnapshot;

const std::string kExample = std::string(NV_SOURCE_DIR) + "/testdata/bna/";

class BnaTestImport : public ::testing::Test {
 protected:
  void SetUp() override {
    for (const char* folder : {"/install", "/data", "/profiles"}) {
      ASSERT_TRUE(MakeFolder(dir_.path() + folder));
    }
    ctx_.run.product_name = "NORVANE";
    ctx_.installation_folder = dir_.path() + "/install/";
    ctx_.current.slot.data_path = dir_.path() + "/data/";
    ctx_.user_name = "TESTER";
    // A profile outside the installation, chosen in the dialog by its full path.
    profile_ = dir_.path() + "/profiles/EXAMPLE.IMP";
    ASSERT_TRUE(CopyFileBytes(kExample + "EXAMPLE.IMP", profile_));
  }

  // The answers of one command 107 into a new company: profile, report, one import, exit;
  // then `after` (the answer to keeping the profiles' changes).
  std::string Run(bool test_import, std::string_view after) {
    const std::string script =
        "choose-text New Company\ntext BNADEMO\nsave\nyes\n"
        "bna press profile\nfile " +
        profile_ + "\nbna press file\nfile " + kExample +
        "FIXEDASSETS.CSV\nbna press import\nbna press exit\n" + std::string(after);
    std::string errors;
    std::unique_ptr<ScriptedUi> ui = ScriptedUi::FromString(script, &errors);
    EXPECT_TRUE(ui) << errors;
    RunBnaImport(ctx_, *ui, test_import);
    EXPECT_FALSE(ui->failed()) << ui->transcript();
    EXPECT_EQ(ui->answers_left(), 0u) << ui->transcript();
    return ui->transcript();
  }

  // The import report the run's count message carries.
  static std::string ReportOf(const std::string& transcript) {
    const size_t at = transcript.find("details=\"Import report");
    if (at == std::string::npos) return "(no report)";
    return transcript.substr(at, transcript.find('\n', at) - at);
  }

  TempDir dir_;
  InstallationContext ctx_;
  std::string profile_;
};

TEST_F(BnaTestImport, ChangesNothingUnlessTheProfilesAreKeptAndReportsTheRealRun) {
  const auto before = FolderSnapshot(dir_.path());
  const std::string dropped = Run(true, "no\n");
  EXPECT_NE(dropped.find("text=\"Test import: 6 assets would be copied.\\nNothing was changed.\""),
            std::string::npos)
      << dropped;
  EXPECT_NE(dropped.find("The test import changed these import profiles:"), std::string::npos);
  EXPECT_EQ(FolderSnapshot(dir_.path()), before) << dropped;

  // Kept: the profile the dialog saved (it names the report now) and the user's choice of
  // it; the data directory still as it was.
  const std::string kept = Run(true, "yes\n");
  EXPECT_TRUE(FolderSnapshot(dir_.path() + "/data").empty());
  EXPECT_NE(ReadFileBytes(profile_)->find("FIXEDASSETS.CSV"), std::string::npos);
  EXPECT_EQ(ReadUserImportProfile(BnaSettingsFile(ctx_), "TESTER"), profile_);

  // Nothing left to keep after a test that changed nothing more: no question.
  const auto now = FolderSnapshot(dir_.path());
  const std::string again = Run(true, "");
  EXPECT_EQ(again.find("import profiles:"), std::string::npos) << again;
  EXPECT_EQ(FolderSnapshot(dir_.path()), now);

  const std::string real = Run(false, "");
  EXPECT_NE(real.find("text=\"6 assets imported.\""), std::string::npos) << real;
  EXPECT_EQ(ReportOf(real), ReportOf(dropped));
  EXPECT_TRUE(PathExists(dir_.path() + "/data/BNADEMO.A"));
}

}  // namespace
}  // namespace nv
