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
  for (const char* name : {"nvtest-old", "other-old", "nvtest-file"}) {
    fs::last_write_time(dir.File(name), two_days_ago);
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
