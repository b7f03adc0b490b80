#include "base/file.h"

#include <gtest/gtest.h>

#ifndef _WIN32
#include <unistd.h>
#endif

#include <algorithm>
#include <string>

#include "base/file_util.h"
#include "base/temp_dir_testing.h"

namespace nv {
namespace {

TEST(FileTest, ModesCreateTruncateKeepOrRefuse) {
  TempDir dir;
  const std::string path = dir.File("a.bin");
  bool missing = false;
  EXPECT_FALSE(File::Open(path, File::Mode::kReadWrite, &missing));
  EXPECT_TRUE(missing);
  EXPECT_FALSE(File::Open(dir.File("no/such/a.bin"), File::Mode::kRead, &missing));
  EXPECT_TRUE(missing);
  EXPECT_FALSE(File::Open(dir.path(), File::Mode::kRead, &missing));  // a folder is no file
  EXPECT_FALSE(missing);

  ASSERT_TRUE(WriteFileAtomically(path, "abcdef"));
  {
    std::optional<File> keep = File::Open(path, File::Mode::kOpenOrCreate);
    ASSERT_TRUE(keep);
    EXPECT_EQ(keep->Size(), 6u);
  }
  {
    std::optional<File> read = File::Open(path, File::Mode::kRead);
    ASSERT_TRUE(read);
    EXPECT_FALSE(read->WriteAt(0, "x", 1));
  }
  std::optional<File> created = File::Open(path, File::Mode::kCreate);
  ASSERT_TRUE(created);
  EXPECT_EQ(created->Size(), 0u);
}

TEST(FileTest, ReadsAtPositionsAndTellsShortReadsFromErrors) {
  TempDir dir;
  std::optional<File> file = File::Open(dir.File("b.bin"), File::Mode::kCreate);
  ASSERT_TRUE(file);
  ASSERT_TRUE(file->WriteAt(4, "WXYZ", 4));  // a hole of four zero bytes before it
  char buffer[8] = {};
  ASSERT_TRUE(file->ReadAt(2, buffer, 4));
  EXPECT_EQ(std::string(buffer, 4), std::string("\0\0WX", 4));
  EXPECT_FALSE(file->ReadAt(6, buffer, 4));  // past the end
  EXPECT_EQ(file->ReadSomeAt(6, buffer, 8), 2);
  EXPECT_EQ(std::string(buffer, 2), "YZ");
  EXPECT_EQ(file->ReadSomeAt(100, buffer, 8), 0);
  EXPECT_TRUE(file->Sync());
  EXPECT_EQ(file->Close(), 0);
  EXPECT_EQ(file->Close(), 0);
  EXPECT_FALSE(file->is_open());
}

TEST(FileTest, AppendGoesToTheEndWhateverAnotherWriterDid) {
  TempDir dir;
  const std::string path = dir.File("log.txt");
  std::optional<File> first = File::Open(path, File::Mode::kAppend);
  std::optional<File> second = File::Open(path, File::Mode::kAppend);
  ASSERT_TRUE(first && second);
  ASSERT_TRUE(first->Append("one\n"));
  ASSERT_TRUE(second->Append("two\n"));
  ASSERT_TRUE(first->Append("three\n"));
  EXPECT_EQ(ReadFileBytes(path), "one\ntwo\nthree\n");

  File moved = std::move(*first);
  EXPECT_FALSE(first->is_open());
  ASSERT_TRUE(moved.Append("four\n"));
  moved = std::move(*second);  // closes what it held
  EXPECT_TRUE(moved.is_open());
}

TEST(FileTest, FolderOperations) {
  TempDir dir;
  const std::string folder = dir.File("sub");
  EXPECT_FALSE(PathExists(folder));
  ASSERT_TRUE(MakeFolder(folder));
  EXPECT_FALSE(MakeFolder(folder));  // exists already
  EXPECT_TRUE(IsFolder(folder));
  ASSERT_TRUE(WriteFileAtomically(folder + "/x", "1"));
  EXPECT_FALSE(IsFolder(folder + "/x"));
  EXPECT_TRUE(SameFile(folder + "/x", folder + "//x"));
  EXPECT_FALSE(SameFile(folder + "/x", dir.File("none")));
#ifndef _WIN32  // making a link needs privileges on Windows
  ASSERT_EQ(::symlink((folder + "/x").c_str(), dir.File("link").c_str()), 0);
  EXPECT_TRUE(SameFile(dir.File("link"), folder + "/x"));
#endif

  ASSERT_TRUE(CopyFileBytes(folder + "/x", folder + "/y"));
  ASSERT_TRUE(CopyFileBytes(folder + "/x", folder + "/y"));  // replaces
  ASSERT_TRUE(RenamePath(folder + "/y", folder + "/z"));
  std::vector<std::string> names = ListFolder(folder);
  std::sort(names.begin(), names.end());
  EXPECT_EQ(names, (std::vector<std::string>{"x", "z"}));
  EXPECT_TRUE(ListFolder(dir.File("none")).empty());
  EXPECT_TRUE(SyncFolder(folder));

  EXPECT_TRUE(RemoveFile(folder + "/z"));
  EXPECT_TRUE(RemoveFile(folder + "/z"));   // nothing there is no failure
  EXPECT_FALSE(RemoveEmptyFolder(folder));  // x is still in it
  EXPECT_TRUE(IsFolder(folder));
  ASSERT_TRUE(MakeFolder(folder + "/empty"));
  EXPECT_TRUE(RemoveEmptyFolder(folder + "/empty"));
  EXPECT_TRUE(RemoveAll(folder));
  EXPECT_FALSE(PathExists(folder));
  EXPECT_TRUE(RemoveAll(folder));
}

}  // namespace
}  // namespace nv
