// One writer per company: an open for writing and a create hold the company's in-use lock
// until the company is closed, so a second writer, in this process or in another, is
// refused with kCompanyInUse and the holder's line.
#include <gtest/gtest.h>

#ifndef _WIN32
#include <sys/wait.h>
#include <unistd.h>
#endif

#include <filesystem>
#include <memory>
#include <set>
#include <string>

#include "base/file_util.h"
#include "base/lock_file.h"
#include "store/company/asset_testing.h"
#include "store/company/company.h"
#include "store/company/company_check.h"
#include "store/company/company_lock.h"
#include "store/file/status.h"
#include "store/store_testing.h"
#include "ui/scripted_ui_testing.h"

namespace nv {
namespace {

using testing::ContextFor;
using testing::MakeAsset;
using testing::TwoBookCompany;

constexpr int kBoth = NvCompany::kOpenI1 | NvCompany::kOpenI2;
const LockTime kSelected{Date{6, 15, 2024}, 13, 30, 5};

class CompanyWritersTest : public ::testing::Test {
 protected:
  CompanyWritersTest() : ctx_(ContextFor(dir_.path())) {}

  void SetUp() override {
    for (const char* number : {"ACME", "ZED"}) {
      NvCompany company(ctx_);
      company.record() = TwoBookCompany();
      ASSERT_EQ(company.Create({number, "Co"}, kBoth), 0);
    }
  }

  std::string File(const std::string& name) const { return dir_.path() + "/" + name; }
  std::string LockPath(const std::string& number) const { return File(number + ".LOK"); }
  bool LockFileThere(const std::string& number) const {
    return std::filesystem::exists(LockPath(number));
  }
  bool LockHeld(const std::string& number) const {
    return LockFile::IsHeldByOther(LockPath(number));
  }

  testing::TempDir dir_;
  InstallationContext ctx_;
  std::unique_ptr<ScriptedUi> ui_ = testing::Script("");
};

TEST_F(CompanyWritersTest, TheStoreLetsGoOfItsOwnLockOnEveryPath) {
  // Create (in SetUp) took the lock and let go of it.
  EXPECT_FALSE(LockFileThere("ACME"));
  EXPECT_FALSE(LockFileThere("ZED"));

  NvCompany company(ctx_);
  // Open for writing holds the lock, with this user's line; Close lets go.
  ASSERT_EQ(company.Open("ACME", kBoth, *ui_), 1);
  EXPECT_TRUE(LockHeld("ACME"));
  EXPECT_EQ(ReadFileBytes(LockPath("ACME")).value_or("").substr(0, 7), "TESTER ");
  EXPECT_EQ(company.Close(), 0);
  EXPECT_FALSE(LockFileThere("ACME"));

  // Reading takes no lock.
  ASSERT_EQ(company.Open("ACME", kBoth | NvCompany::kReadOnly, *ui_), 1);
  EXPECT_FALSE(LockFileThere("ACME"));
  EXPECT_EQ(company.Close(), 0);

  // Opening another company on the same object lets go of the first one's lock, and so does
  // a read-only open.
  ASSERT_EQ(company.Open("ACME", kBoth, *ui_), 1);
  ASSERT_EQ(company.Open("ZED", kBoth, *ui_), 1);
  EXPECT_FALSE(LockFileThere("ACME"));
  EXPECT_TRUE(LockHeld("ZED"));
  ASSERT_EQ(company.Open("ZED", kBoth | NvCompany::kReadOnly, *ui_), 1);
  EXPECT_FALSE(LockFileThere("ZED"));
  EXPECT_EQ(company.Close(), 0);

  // A failed open: the index is missing.
  std::filesystem::rename(File("ACME.I1"), File("keep.I1"));
  EXPECT_EQ(company.Open("ACME", kBoth, *ui_), kI1Failed);
  EXPECT_FALSE(company.is_open());
  EXPECT_FALSE(LockFileThere("ACME"));
  std::filesystem::rename(File("keep.I1"), File("ACME.I1"));
  // No company: no lock file is made at all.
  EXPECT_EQ(company.Open("NONE", kBoth, *ui_), kBlockFileMissing);
  EXPECT_FALSE(LockFileThere("NONE"));

  // Destruction of an open company.
  {
    NvCompany open(ctx_);
    ASSERT_EQ(open.Open("ACME", kBoth, *ui_), 1);
    EXPECT_TRUE(LockHeld("ACME"));
  }
  EXPECT_FALSE(LockFileThere("ACME"));

  // A failed create: the sort index cannot be made where a folder has its name.
  ASSERT_TRUE(std::filesystem::create_directory(File("BAD.I2")));
  NvCompany bad(ctx_);
  bad.record() = TwoBookCompany();
  EXPECT_EQ(bad.Create({"BAD", "Bad"}, kBoth), kI2Failed);
  EXPECT_FALSE(LockFileThere("BAD"));
}

TEST_F(CompanyWritersTest, AWriterIsRefusedWhileAnotherHoldsTheLock) {
  // Held as company selection (or the main program) holds it.
  CompanyInUseLock selection;
  ASSERT_EQ(selection.Take(LockPath("ACME"), "SELECTOR", kSelected), "");
  const std::string line = ReadFileBytes(LockPath("ACME")).value_or("");
  ASSERT_EQ(line.substr(0, 9), "SELECTOR ");
  const std::string before = *ReadFileBytes(File("ACME.A"));

  NvCompany writer(ctx_);
  EXPECT_EQ(writer.Open("acme", kBoth, *ui_), kCompanyInUse);
  EXPECT_FALSE(writer.is_open());
  EXPECT_EQ(writer.lock_holder(), line);
  // Create would write the company over: refused the same way, nothing written.
  writer.record() = TwoBookCompany();
  EXPECT_EQ(writer.Create({"ACME", "Other"}, kBoth), kCompanyInUse);
  EXPECT_EQ(writer.lock_holder(), line);
  EXPECT_EQ(*ReadFileBytes(File("ACME.A")), before);
  // The holder keeps its lock and its line.
  EXPECT_TRUE(selection.held());
  EXPECT_FALSE(selection.lost());
  EXPECT_EQ(ReadFileBytes(LockPath("ACME")), line);

  // Reading needs no lock.
  ASSERT_EQ(writer.Open("ACME", kBoth | NvCompany::kReadOnly, *ui_), 1);
  EXPECT_EQ(writer.lock_holder(), "");
  EXPECT_EQ(writer.Close(), 0);

  selection.Release();
  ASSERT_EQ(writer.Open("ACME", kBoth, *ui_), 1);
  // Now the writer holds it: another company object is refused with the writer's line.
  NvCompany second(ctx_);
  EXPECT_EQ(second.Open("ACME", kBoth, *ui_), kCompanyInUse);
  EXPECT_EQ(second.lock_holder().substr(0, 7), "TESTER ");
  EXPECT_EQ(selection.Take(LockPath("ACME"), "SELECTOR", kSelected).substr(0, 7), "TESTER ");
  EXPECT_EQ(writer.Close(), 0);
  EXPECT_EQ(second.Open("ACME", kBoth, *ui_), 1);
}

TEST_F(CompanyWritersTest, UnderTheCallersLockTheLockStaysWithTheCaller) {
  CompanyInUseLock program;
  ASSERT_EQ(program.Take(LockPath("ACME"), "TESTER", kSelected), "");
  NvCompany company(ctx_);
  ASSERT_EQ(company.Open("ACME", kBoth, *ui_, program), 1);
  EXPECT_TRUE(program.has_writer());
  EXPECT_EQ(company.Close(), 0);
  EXPECT_FALSE(program.has_writer());
  EXPECT_TRUE(program.held());
  EXPECT_EQ(program.held_path(), LockPath("ACME"));
  EXPECT_TRUE(LockHeld("ACME"));

  // A failed open leaves it held too.
  std::filesystem::rename(File("ACME.I2"), File("keep.I2"));
  EXPECT_EQ(company.Open("ACME", kBoth, *ui_, program), kI2Failed);
  EXPECT_FALSE(program.has_writer());
  EXPECT_TRUE(program.HoldsFileAt(LockPath("ACME")));
  std::filesystem::rename(File("keep.I2"), File("ACME.I2"));

  // So does destruction.
  {
    NvCompany open(ctx_);
    ASSERT_EQ(open.Open("ACME", kBoth, *ui_, program), 1);
  }
  EXPECT_FALSE(program.has_writer());
  EXPECT_TRUE(program.HoldsFileAt(LockPath("ACME")));

  // Erased (which lets go of the lock) and made again: the create takes the lock into the
  // program's lock, where it stays.
  ASSERT_TRUE(DeleteCompanyFiles(ctx_, "ACME", &program));
  EXPECT_FALSE(program.held());
  EXPECT_FALSE(LockFileThere("ACME"));
  EXPECT_FALSE(std::filesystem::exists(File("ACME.A")));
  company.record() = TwoBookCompany();
  ASSERT_EQ(company.Create({"ACME", "Again"}, kBoth, program), 0);
  EXPECT_TRUE(program.HoldsFileAt(LockPath("ACME")));
  ASSERT_EQ(company.Open("ACME", kBoth, *ui_, program), 1);
  EXPECT_EQ(company.record().name, "Again");

  // One writer per lock: a second company object under the same lock is refused, for this
  // company and for another one (whose lock would replace the first writer's).
  NvCompany second(ctx_);
  EXPECT_EQ(second.Open("ACME", kBoth, *ui_, program), kCompanyInUse);
  EXPECT_EQ(second.lock_holder().substr(0, 7), "TESTER ");
  EXPECT_EQ(second.Open("ZED", kBoth, *ui_, program), kCompanyInUse);
  second.record() = TwoBookCompany();
  EXPECT_EQ(second.Create({"NEW", "New"}, kBoth, program), kCompanyInUse);
  EXPECT_TRUE(program.HoldsFileAt(LockPath("ACME")));
  EXPECT_FALSE(LockFileThere("ZED"));
  EXPECT_EQ(company.Close(), 0);

  // With no writer the program's lock moves to the company opened, as selection moves it.
  ASSERT_EQ(second.Open("ZED", kBoth, *ui_, program), 1);
  EXPECT_TRUE(program.HoldsFileAt(LockPath("ZED")));
  EXPECT_FALSE(LockFileThere("ACME"));
  EXPECT_EQ(second.Close(), 0);
  program.Release();
  EXPECT_FALSE(LockFileThere("ZED"));
}

// Two processes open the company for writing at the same moment and add their own assets.
// Each reports every add that returned; one refused reports kCompanyInUse. Afterwards the
// company is whole and holds exactly the reported assets.
TEST_F(CompanyWritersTest, TwoProcessesStartedTogetherNeverWriteAtOnce) {
#ifdef _WIN32
  GTEST_SKIP() << "starts its writers with fork; the lock tests cover other processes here";
#else
#if defined(NV_SANITIZED)
  constexpr int kRounds = 12;
#else
  constexpr int kRounds = 25;
#endif
  constexpr long kPerWriter = 120;
  constexpr int kRefused = 10;
  std::set<long> reported;
  for (int round = 0; round < kRounds; ++round) {
    int start[2];
    ASSERT_EQ(pipe(start), 0);
    pid_t children[2];
    int reports[2];
    for (int w = 0; w < 2; ++w) {
      int fds[2];
      ASSERT_EQ(pipe(fds), 0);
      const long first = 1 + (round * 2L + w) * kPerWriter;
      children[w] = fork();
      ASSERT_GE(children[w], 0);
      if (children[w] == 0) {
        close(start[1]);
        close(fds[0]);
        char go;
        // Only the end of file matters: the parent closes the pipe to let both go.
        static_cast<void>(!read(start[0], &go, 1));
        auto ui = testing::Script("");
        NvCompany company(ctx_);
        int rc = company.Open("ACME", kBoth, *ui);
        if (rc == kCompanyInUse) _exit(kRefused);  // nothing written: nothing reported
        if (rc != 1) _exit(3);
        for (long n = first; n < first + kPerWriter; ++n) {
          NvAsset asset = MakeAsset(company.record(), n, static_cast<int>(n % 7));
          if (company.AddAsset(&asset) != kOk) _exit(4);
          int32_t added = static_cast<int32_t>(n);
          if (write(fds[1], &added, sizeof added) != sizeof added) _exit(5);
        }
        _exit(company.Close() == 0 ? 0 : 7);
      }
      close(fds[1]);
      reports[w] = fds[0];
    }
    close(start[0]);
    close(start[1]);  // both go
    int succeeded = 0;
    for (int w = 0; w < 2; ++w) {
      int32_t n = 0;
      while (read(reports[w], &n, sizeof n) == sizeof n) reported.insert(n);
      close(reports[w]);
      int status = 0;
      waitpid(children[w], &status, 0);
      ASSERT_TRUE(WIFEXITED(status)) << "round " << round;
      const int code = WEXITSTATUS(status);
      ASSERT_TRUE(code == 0 || code == kRefused) << "round " << round << ": exit " << code;
      if (code == 0) ++succeeded;
    }
    EXPECT_GE(succeeded, 1) << "round " << round;
    EXPECT_FALSE(LockFileThere("ACME")) << "round " << round;

    NvCompany company(ctx_);
    ASSERT_EQ(company.Open("ACME", kBoth | NvCompany::kReadOnly, *ui_), 1);
    CompanyCheck check = CheckCompany(company);
    ASSERT_TRUE(check.problems.empty()) << "round " << round << ": " << check.problems[0];
    ASSERT_EQ(check.assets, reported.size()) << "round " << round;
    for (long r : reported) {
      NvAsset expected = MakeAsset(company.record(), r, static_cast<int>(r % 7));
      NvAsset found;
      ASSERT_EQ(company.FindAsset(expected.number.Text(), &found), kOk) << "asset " << r;
      ASSERT_EQ(found.description, expected.description);
    }
  }
#endif
}

}  // namespace
}  // namespace nv
