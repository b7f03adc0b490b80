#include "base/temp_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "base/file.h"
#include "base/temp_dir_testing.h"

namespace nv {
namespace {

namespace fs = std::filesystem;

TEST(StaleFolders, OnlyOldFoldersOfThePrefixGoWithEverythingInThem) {
  TempDir dir;
  const auto two_days_ago = fs::file_time_type::clock::now() - std::chrono::hours(48);
  for (const char* name : {"nvtest-old", "nvtest-new", "other-old"}) {
    fs::create_directories(dir.File(name) + "/data");
    std::ofstream(dir.File(name) + "/data/COMPANY.A") << "assets";
  }
  std::ofstream(dir.File("nvtest-file")) << "not a folder";
  // Any age at all: the folder times can be read on every platform.
  fs::create_directories(dir.File("nvtest-now") + "/data");
  EXPECT_EQ(RemoveStaleFolders(dir.path(), "nvtest-now", std::chrono::hours(0)), 1);
  EXPECT_FALSE(PathExists(dir.File("nvtest-now")));
  for (const char* name : {"nvtest-old", "other-old", "nvtest-file"}) {
    std::error_code error;
    fs::last_write_time(dir.File(name), two_days_ago, error);
    // The Windows runtime opens a folder in a way that cannot set its times.
    if (error) GTEST_SKIP() << "cannot set the time of " << name << ": " << error.message();
  }

  EXPECT_EQ(RemoveStaleFolders(dir.path(), "nvtest-", std::chrono::hours(24)), 1);
  EXPECT_FALSE(PathExists(dir.File("nvtest-old")));
  EXPECT_TRUE(PathExists(dir.File("nvtest-new") + "/data/COMPANY.A"));
  EXPECT_TRUE(PathExists(dir.File("other-old")));
  EXPECT_TRUE(PathExists(dir.File("nvtest-file")));
  EXPECT_EQ(RemoveStaleFolders(dir.File("missing"), "nvtest-", std::chrono::hours(24)), 0);
}

}  // namespace
}  // namespace nv
