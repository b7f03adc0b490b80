#include "base/lock_file.h"

#include <atomic>
#include <chrono>
#include <random>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "base/temp_dir_testing.h"

namespace nv {
namespace {

TEST(LockFile, TwoOpensInOneProcessExcludeEachOther) {
  TempDir dir;
  std::string path = dir.File("X.LOK");
  LockFile a;
  LockFile b;
  ASSERT_EQ(a.TryAcquire(path), LockStatus::kAcquired);
  EXPECT_EQ(b.TryAcquire(path), LockStatus::kHeldByOther);
  LockFile moved = std::move(a);
  EXPECT_FALSE(a.held());
  EXPECT_TRUE(moved.held());
  EXPECT_EQ(moved.path(), path);
  EXPECT_EQ(b.TryAcquire(path), LockStatus::kHeldByOther);
  a = std::move(moved);
  a.ReleaseAndRemove();
  EXPECT_EQ(LockFile::ReadContent(path), std::nullopt);
  EXPECT_EQ(b.TryAcquire(path), LockStatus::kAcquired);

  LockFile c;
  EXPECT_EQ(c.TryAcquire(dir.File("no/such/X.LOK")), LockStatus::kError);
  EXPECT_FALSE(LockFile::IsHeldByOther(dir.File("missing.LOK")));
}

// Each holder is its own open of the file, so threads of one process contend just as
// processes do; they take and drop the lock at random moments, often deleting the file as
// they let go, which is when a careless lock lets two holders in.
TEST(LockFile, ManyOpensNeverHoldAtOnce) {
  TempDir dir;
  const std::string path = dir.File("X.LOK");
  std::atomic<int> holders{0};
  std::atomic<int> overlaps{0};
  std::atomic<int> acquisitions{0};
  auto contend = [&](unsigned seed) {
    std::mt19937 random(seed);
    const auto until = std::chrono::steady_clock::now() + std::chrono::milliseconds(1500);
    while (std::chrono::steady_clock::now() < until) {
      LockFile lock;
      if (lock.TryAcquire(path) == LockStatus::kAcquired) {
        acquisitions++;
        if (holders.fetch_add(1) != 0) overlaps++;
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 200));
        holders.fetch_sub(1);
        if (random() % 4 != 0) lock.ReleaseAndRemove();
      } else if (random() % 2 == 0) {
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 50));
      }
    }
  };
  std::vector<std::thread> threads;
  for (unsigned i = 0; i < 4; ++i) threads.emplace_back(contend, i + 1);
  for (std::thread& t : threads) t.join();
  EXPECT_EQ(overlaps.load(), 0);
  EXPECT_GT(acquisitions.load(), 100);
}

TEST(OpenWithoutSharing, ReadersShareAndAWriterExcludesEveryone) {
  TempDir dir;
  const std::string path = dir.File("CO1.NOT");
  bool missing = false;
  EXPECT_FALSE(OpenWithoutSharing(path, File::Mode::kRead, &missing));
  EXPECT_TRUE(missing);
  {
    std::optional<File> writer = OpenWithoutSharing(path, File::Mode::kOpenOrCreate, &missing);
    ASSERT_TRUE(writer);
    EXPECT_FALSE(OpenWithoutSharing(path, File::Mode::kRead, &missing));
    EXPECT_FALSE(missing);
    EXPECT_FALSE(OpenWithoutSharing(path, File::Mode::kOpenOrCreate, &missing));
  }
  std::optional<File> reader = OpenWithoutSharing(path, File::Mode::kRead, &missing);
  ASSERT_TRUE(reader);
  EXPECT_TRUE(OpenWithoutSharing(path, File::Mode::kRead, &missing));
  EXPECT_FALSE(OpenWithoutSharing(path, File::Mode::kOpenOrCreate, &missing));
  reader.reset();
  EXPECT_TRUE(OpenWithoutSharing(path, File::Mode::kOpenOrCreate, &missing));
}

}  // namespace
}  // namespace nv
