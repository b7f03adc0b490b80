#include "import/frame/import_backup.h"

#include <gtest/gtest.h>

#include "base/file.h"
#include "base/file_util.h"
#include "import/frame/frame_testing.h"
#include "import/frame/import_frame.h"
#include "store/asset/asset.h"
#include "store/company/asset_testing.h"
#include "store/company/company.h"
#include "store/company/master_file.h"
#include "store/store_testing.h"
#include "ui/scripted_ui_testing.h"

namespace nv {
namespace {

using testing::ContextFor;
using testing::FolderSnapshot;
using testing::MakeAsset;
using testing::Script;
using testing::TempDir;
using testing::TinyDescriptor;
using testing::TinyImporter;
using testing::TwoBookCompany;
using testing::WriteText;
using Snapshot = std::map<std::string, std::string>;

class ImportBackupTest : public ::testing::Test {
 protected:
  ImportBackupTest() : ctx_(ContextFor(dir_.path())) {
    NvCompany company(ctx_);
    company.record() = TwoBookCompany();
    EXPECT_EQ(company.Create({"TINY", "Existing Tiny"}, NvCompany::kOpenI1 | NvCompany::kOpenI2),
              0);
    EXPECT_TRUE(EnterIntoCompanyList(ctx_, "TINY", "Existing Tiny"));
    AddAsset(700);
  }

  // What the main program would do: one more asset.
  void AddAsset(long n) {
    NvCompany company(ctx_);
    ASSERT_GT(company.Open("TINY", NvCompany::kOpenI1 | NvCompany::kOpenI2, *Script("")), 0);
    NvAsset asset = MakeAsset(company.record(), n);
    ASSERT_EQ(company.AddAsset(&asset), 0);
    ASSERT_EQ(company.Close(), 0);
  }

  // Imports assets `numbers` into TINY, adding (or erasing first).
  ImportResult Import(const std::vector<int>& numbers, bool erase = false) {
    std::string text = "Tiny Widgets\n";
    for (int n : numbers) text += std::to_string(n) + "|Press|1000|01/15/2024||\n";
    WriteText(sources_.File("src.tny"), text);
    TinyImporter importer(TinyDescriptor());
    auto ui = Script("file " + sources_.File("src.tny") + "\ntext TINY\nchoose-text " +
                     (erase ? std::string(kEraseAssetsOption) + "\nyes\nfield name Renamed\nsave\n"
                            : std::string(kAddAssetsOption)) +
                     "\nyes\n");
    ImportResult result = RunImport(ctx_, *ui, importer);
    EXPECT_EQ(result.outcome, ImportOutcome::kCompleted) << ui->transcript();
    return result;
  }

  UndoOutcome Undo(const UndoOptions& options = {}) {
    auto ui = Script("");
    const UndoOutcome outcome = UndoLastImport(ctx_, "tiny", *ui, options);
    transcript_ = ui->transcript();
    return outcome;
  }

  // The data directory but the backups and the import reports.
  Snapshot Files() const { return FolderSnapshot(dir_.path(), {"TINY.backups", "import-reports"}); }
  std::vector<std::string> Backups() const {
    return ListCompanyBackups(CompanyBackupsFolder(dir_.path() + "/", "TINY"));
  }

  TempDir dir_;
  TempDir sources_;
  InstallationContext ctx_;
  std::string transcript_;
};

TEST_F(ImportBackupTest, UndoPutsBackEveryFileByteForByteAndTheListedName) {
  const Snapshot before = Files();
  const ImportResult result = Import({1, 2}, /*erase=*/true);
  ASSERT_FALSE(result.backup_folder.empty());
  ASSERT_NE(Files(), before);
  ASSERT_NE(ReadFileBytes(dir_.File("MASTER.A"))->find("Renamed"), std::string::npos);
  std::optional<ImportStateRecord> record =
      ParseImportStateRecord(*ReadFileBytes(result.backup_folder + kImportStateFile));
  ASSERT_TRUE(record && record->complete);
  EXPECT_EQ(record->listed_name, "Existing Tiny");

  EXPECT_EQ(Undo(), UndoOutcome::kRestored) << transcript_;
  EXPECT_EQ(Files(), before);
  EXPECT_FALSE(PathExists(dir_.File("TINY.LOK")));
  EXPECT_TRUE(Backups().empty()) << "the backup undone is gone";
  EXPECT_EQ(Undo(), UndoOutcome::kNoBackup);
}

TEST_F(ImportBackupTest, UndoIsRefusedAfterTheCompanyChangedUnlessForced) {
  const Snapshot before = Files();
  Import({1});
  AddAsset(900);
  const Snapshot changed = Files();
  EXPECT_EQ(Undo(), UndoOutcome::kChanged);
  EXPECT_NE(transcript_.find("was changed after the import"), std::string::npos) << transcript_;
  EXPECT_EQ(Files(), changed);
  UndoOptions forced;
  forced.force = true;
  EXPECT_EQ(Undo(forced), UndoOutcome::kRestored) << transcript_;
  EXPECT_EQ(Files(), before);
}

TEST_F(ImportBackupTest, UndoWaitsWhileTheCompanyIsInUse) {
  Import({1});
  const Snapshot after = Files();
  CompanyInUseLock held;
  ASSERT_EQ(TakeCompanyInUseLock(ctx_, "TINY", held), "");
  EXPECT_EQ(Undo(), UndoOutcome::kInUse);
  held.Release();
  EXPECT_EQ(Files(), after);
  EXPECT_EQ(Backups().size(), 1u);
}

// Every step of an undo fails once, in turn: each time the company stays exactly as the
// import left it, with its backup, and the undo can be done afterwards.
TEST_F(ImportBackupTest, AFailedUndoLeavesTheCompanyAsItWasAtEveryStep) {
  const Snapshot before = Files();
  Import({1, 2});
  const Snapshot after = Files();
  int steps = 0;
  for (int failing = 0;; ++failing) {
    int step = 0;
    UndoOptions options;
    options.before_write = [&](const std::string&) { return step++ != failing; };
    const UndoOutcome outcome = Undo(options);
    if (outcome == UndoOutcome::kRestored) {
      steps = failing;
      break;
    }
    ASSERT_EQ(outcome, UndoOutcome::kFailed) << transcript_;
    ASSERT_EQ(Files(), after) << "failed at step " << failing;
    ASSERT_EQ(Backups().size(), 1u);
    ASSERT_EQ(ListFolder(dir_.File("TINY.backups")).size(), 1u) << "no staging left";
  }
  // Each file is copied, moved aside and moved in.
  EXPECT_GE(steps, 3 * 3);
  EXPECT_EQ(Files(), before);
}

// Five kept; undone one after another they lead back through the imports in order.
TEST_F(ImportBackupTest, TheLastFiveBackupsAreKeptAndUndoWalksBackThroughThem) {
  std::vector<Snapshot> states = {Files()};
  for (int i = 1; i <= 7; ++i) {
    Import({i});
    states.push_back(Files());
  }
  EXPECT_EQ(Backups().size(), static_cast<size_t>(kBackupsKept));
  for (int i = 7; i > 7 - kBackupsKept; --i) {
    ASSERT_EQ(Undo(), UndoOutcome::kRestored) << transcript_;
    ASSERT_EQ(Files(), states[static_cast<size_t>(i - 1)]) << "undo of import " << i;
  }
  EXPECT_EQ(Undo(), UndoOutcome::kNoBackup);
}

TEST_F(ImportBackupTest, AnImportThatChangesNothingLeavesNoBackup) {
  Import({5});
  ASSERT_EQ(Backups().size(), 1u);
  const ImportResult again = Import({5});  // only a duplicate
  EXPECT_EQ(again.added, 0);
  EXPECT_TRUE(again.backup_folder.empty());
  EXPECT_EQ(Backups().size(), 1u);
}

TEST(ImportStateRecord, ReadsWhatIsWrittenAndRefusesAnythingElse) {
  ImportStateRecord record;
  record.listed_name = "Acme Tools";
  record.files = {{"ACME.A", 1450, 0x0123456789abcdefull}, {"ACME.I1", 0, 0}};
  record.complete = true;
  std::optional<ImportStateRecord> read = ParseImportStateRecord(ImportStateRecordText(record));
  ASSERT_TRUE(read);
  EXPECT_EQ(read->listed_name, record.listed_name);
  EXPECT_EQ(read->files, record.files);
  EXPECT_TRUE(read->complete);
  EXPECT_FALSE(ParseImportStateRecord("listed\tAcme\r\n")->complete);
  for (const char* bad :
       {"file\tACME.A\t12\t0123", "file\tACME.A\t-1\t0123456789abcdef",
        "file\t\t1\t0123456789abcdef", "complete\tyes", "junk",
        "file\tA.A\t1\t0123456789abcdef\nfile\tA.A\t2\t0123456789abcdef", "listed\tAcme\x01"}) {
    EXPECT_FALSE(ParseImportStateRecord(bad)) << bad;
  }
}

}  // namespace
}  // namespace nv
