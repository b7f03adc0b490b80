#include "store/company/company_lock.h"

#include <string>

#include <gtest/gtest.h>

#include "base/file.h"
#include "base/file_util.h"
#include "base/path.h"
#include "base/temp_dir_testing.h"

namespace nv {
namespace {

const LockTime kMorning{Date{3, 7, 2025}, 9, 5, 1};
const LockTime kEvening{Date{12, 31, 1999}, 23, 59, 58};

TEST(CompanyLockLine, IsWrittenByteForByte) {
  // Name padded to 25 and cut at 25; date and time with leading zeros.
  EXPECT_EQ(FormatLockLine("ALICE", kMorning), "ALICE                     03/07/2025 09:05:01\n");
  EXPECT_EQ(FormatLockLine("A-VERY-LONG-WORKSTATION-NAME", kEvening),
            "A-VERY-LONG-WORKSTATION-N 12/31/1999 23:59:58\n");
  EXPECT_EQ(CompanyLockPath("/data", "ACME"),
            "/data" + std::string(1, kPathSeparator) + "ACME.LOK");
  EXPECT_EQ(CompanyLockPath("/data/ACME.CLT/", "ACME"), "/data/ACME.CLT/ACME.LOK");

  TempDir dir;
  CompanyInUseLock lock;
  std::string path = CompanyLockPath(dir.path(), "ACME");
  ASSERT_EQ(lock.Take(path, "Single-User", kMorning), "");
  EXPECT_EQ(ReadFileBytes(path), "Single-User               03/07/2025 09:05:01\r\n");
  EXPECT_EQ(lock.held_path(), path);
}

TEST(CompanyLockMessage, TellsWhoHasTheCompanyAndSince) {
  struct Case {
    const char* time;
    const char* shown;
  };
  for (const Case& c : {Case{"00:05:00", "0:05 a.m."}, Case{"11:59:59", "11:59 a.m."},
                        Case{"12:00:00", "12:00 p.m."}, Case{"13:30:10", "1:30 p.m."},
                        Case{"23:59:00", "11:59 p.m."}}) {
    std::string line = std::string("BOB                       06/15/2024 ") + c.time + "\r\n";
    EXPECT_EQ(CompanyInUseMessage("ACME", line),
              std::string("You cannot select company ACME, because\ncompany data is in use by "
                          "Network Name\nBOB\n(Company in use since ") +
                  c.shown + " on 06/15/2024)")
        << c.time;
  }
  EXPECT_EQ(CompanyInUseMessage(" ", "BOB                       06/15/2024 12:00:00\n"),
            "You cannot select this company, because\ncompany data is in use by Network Name\n"
            "BOB\n(Company in use since 12:00 p.m. on 06/15/2024)");
}

TEST(CompanyLockMessage, OddHolderLinesStillGiveAMessage) {
  const std::string unknown = "(Company in use since an unknown time on an unknown date)";
  auto message = [](std::string_view line) { return CompanyInUseMessage("X1", line); };
  const std::string head =
      "You cannot select company X1, because\ncompany data is in use by Network Name\n";

  EXPECT_EQ(message("*"), head + "*\n" + unknown);
  EXPECT_EQ(message(""), head + "*\n" + unknown);
  EXPECT_EQ(message("\r\n"), head + "*\n" + unknown);
  EXPECT_EQ(message("  CAROL  "), head + "CAROL\n" + unknown);
  // A line cut short inside the time keeps the date.
  EXPECT_EQ(message("DAN                       01/02/2003 1"),
            head + "DAN\n(Company in use since an unknown time on 01/02/2003)");
  // Out-of-range time and a date with letters in it are not shown.
  EXPECT_EQ(message("ED                        1x/02/2003 25:61:00\r\n"), head + "ED\n" + unknown);
  // Only the first line counts; a NUL ends it; control bytes in the name are masked.
  EXPECT_EQ(message("FAY\tX\n                          01/02/2003 10:00:00"),
            head + "FAY?X\n" + unknown);
  const char with_nul[] = "GUS\0                      01/02/2003 10:00:00";
  EXPECT_EQ(message(std::string_view(with_nul, sizeof with_nul - 1)), head + "GUS\n" + unknown);
  std::string garbage(100, '\xFF');
  garbage[40] = '\x01';
  EXPECT_EQ(message(garbage), head + std::string(25, '\xFF') + "\n" + unknown);
  // An LF-only line as written by a Unix copy of the main program reads the same.
  LockHolder holder = ParseLockHolderLine("HAL                       04/05/2006 07:08:09\n");
  EXPECT_EQ(holder.name, "HAL");
  EXPECT_EQ(holder.date_text, "04/05/2006");
  EXPECT_EQ(holder.hour, 7);
  EXPECT_EQ(holder.minute, 8);
}

TEST(CompanyInUseLock, KeepsItsOwnLockAndRefusesOthersWithTheHoldersLine) {
  TempDir dir;
  std::string acme = CompanyLockPath(dir.path(), "ACME");
  std::string beta = CompanyLockPath(dir.path(), "BETA");
  CompanyInUseLock mine;
  CompanyInUseLock theirs;  // locks are per open file, so a second object is another user

  ASSERT_EQ(mine.Take(acme, "ALICE", kMorning), "");
  EXPECT_EQ(mine.Take(acme, "ALICE", kEvening), "");                       // kept, not rewritten
  EXPECT_EQ(mine.Take(dir.path() + "//ACME.LOK", "ALICE", kEvening), "");  // same file
  const std::string alice_line = "ALICE                     03/07/2025 09:05:01\r\n";
  EXPECT_EQ(ReadFileBytes(acme), alice_line);
  EXPECT_EQ(theirs.Take(acme, "BOB", kEvening), alice_line);
  EXPECT_FALSE(theirs.held());

  // A refused take keeps what was held; a successful one lets go of it and deletes it.
  ASSERT_EQ(theirs.Take(beta, "BOB", kEvening), "");
  EXPECT_EQ(theirs.Take(acme, "BOB", kEvening), alice_line);
  EXPECT_EQ(theirs.held_path(), beta);
  ASSERT_EQ(mine.Take(beta, "ALICE", kMorning).substr(0, 3), "BOB");
  theirs.Release();
  EXPECT_FALSE(theirs.held());
  EXPECT_EQ(theirs.held_path(), "");
  EXPECT_EQ(ReadFileBytes(beta), std::nullopt);
  ASSERT_EQ(mine.Take(beta, "ALICE", kMorning), "");
  EXPECT_EQ(ReadFileBytes(acme), std::nullopt);
  EXPECT_EQ(mine.held_path(), beta);
  theirs.Release();  // holds nothing: harmless
  EXPECT_TRUE(mine.held());
}

TEST(CompanyInUseLock, LockThatCannotBeMadeOrReadNamesNobody) {
  TempDir dir;
  CompanyInUseLock lock;
  EXPECT_EQ(lock.Take(CompanyLockPath(dir.File("NOPE.CLT"), "NOPE"), "ALICE", kMorning), "*");
  EXPECT_FALSE(lock.held());
  // A folder where the lock file should be can be neither created nor read as a file.
  std::string odd = CompanyLockPath(dir.path(), "ODD");
  ASSERT_TRUE(MakeFolder(odd));
  EXPECT_EQ(lock.Take(odd, "ALICE", kMorning), "*");
  EXPECT_FALSE(lock.held());
}

TEST(CompanyInUseLock, FileDeletedUnderTheHolderIsNoLongerItsLock) {
  TempDir dir;
  std::string path = CompanyLockPath(dir.path(), "ACME");
  CompanyInUseLock first;
  CompanyInUseLock second;
  ASSERT_EQ(first.Take(path, "ALICE", kMorning), "");
  EXPECT_FALSE(first.lost());
#ifdef _WIN32
  // The holder's open shares no deleting: nobody can take the file away from it.
  EXPECT_FALSE(RemoveFile(path));
  EXPECT_FALSE(first.lost());
  EXPECT_EQ(second.Take(path, "BOB", kEvening).substr(0, 5), "ALICE");
  return;
#endif
  ASSERT_TRUE(RemoveFile(path));  // someone else removes it
  EXPECT_TRUE(first.lost());

  ASSERT_EQ(second.Take(path, "BOB", kEvening), "");
  const std::string bob_line = "BOB                       12/31/1999 23:59:58\r\n";
  EXPECT_EQ(first.Take(path, "ALICE", kMorning), bob_line);  // must not claim it still holds
  EXPECT_FALSE(first.held());
  first.Release();
  EXPECT_EQ(ReadFileBytes(path), bob_line);

  // Deleted again while nobody else takes it: the old holder takes it afresh.
  ASSERT_TRUE(RemoveFile(path));
  ASSERT_EQ(second.Take(path, "BOB", kMorning), "");
  EXPECT_FALSE(second.lost());
  EXPECT_EQ(ReadFileBytes(path), "BOB                       03/07/2025 09:05:01\r\n");
}

}  // namespace
}  // namespace nv
