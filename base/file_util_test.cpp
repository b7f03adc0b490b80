#include "base/file_util.h"

#include "base/file.h"

#include <string>
#include <vector>

#ifndef _WIN32
#include <sys/stat.h>
#include <unistd.h>
#endif

#include <gtest/gtest.h>

#include "base/temp_dir_testing.h"

namespace nv {
namespace {

using Lines = std::vector<std::string>;

TEST(FileUtil, FindsFilesIgnoringCasePreferringExactName) {
  TempDir dir;
  ASSERT_TRUE(WriteFileAtomically(dir.File("COMPANY1.FAS"), "x"));
  EXPECT_EQ(FindFileIgnoringCase(dir.path(), "company1.fas"), dir.File("COMPANY1.FAS"));
  EXPECT_EQ(FindFileIgnoringCase(WithTrailingSeparator(dir.path()), "Company1.Fas"),
            dir.File("COMPANY1.FAS"));
  EXPECT_EQ(FindFileIgnoringCase(dir.path(), "company1.fa"), std::nullopt);
  EXPECT_EQ(FindFileIgnoringCase(dir.path(), ""), std::nullopt);
  EXPECT_EQ(FindFileIgnoringCase(dir.path(), "x/COMPANY1.FAS"), std::nullopt);
  EXPECT_EQ(FindFileIgnoringCase(dir.File("missing"), "a"), std::nullopt);

  ASSERT_TRUE(WriteFileAtomically(dir.File("assetgen.asc"), "1"));
  ASSERT_TRUE(WriteFileAtomically(dir.File("ASSETGEN.ASC"), "2"));
#ifdef _WIN32
  // One file under any spelling: the second write replaced the first.
  EXPECT_EQ(ReadFileBytes(dir.File("AssetGen.asc")), "2");
  EXPECT_TRUE(FindFileIgnoringCase(dir.path(), "AssetGen.asc").has_value());
#else
  ASSERT_TRUE(WriteFileAtomically(dir.File("AssetGen.asc"), "3"));
  EXPECT_EQ(FindFileIgnoringCase(dir.path(), "AssetGen.asc"), dir.File("AssetGen.asc"));
  EXPECT_EQ(FindFileIgnoringCase(dir.path(), "assetgen.asc"), dir.File("assetgen.asc"));
#endif
}

TEST(FileUtil, TextFilesAreWrittenWithCrLf) {
  TempDir dir;
  std::string path = dir.File("TERM.1");
  ASSERT_TRUE(WriteTextFile(path, "\"7.1N\",\"/x/\",\"0\"\nline two\r\n\nlast"));
  EXPECT_EQ(ReadFileBytes(path), "\"7.1N\",\"/x/\",\"0\"\r\nline two\r\n\r\nlast");
  EXPECT_EQ(ReadTextLines(path), (Lines{"\"7.1N\",\"/x/\",\"0\"", "line two", "", "last"}));
  ASSERT_TRUE(WriteTextFile(path, ""));  // overwrite with nothing
  EXPECT_EQ(ReadFileBytes(path), "");
  EXPECT_EQ(ReadTextLines(path), Lines{});
}

#ifndef _WIN32
TEST(FileUtil, ReplacingThroughALinkKeepsTheLink) {
  TempDir dir;
  ASSERT_TRUE(MakeDirectories(dir.File("real")));
  ASSERT_TRUE(WriteFileAtomically(dir.File("real/KELNVWIN.INI"), "old"));
  ASSERT_EQ(::symlink("real/KELNVWIN.INI", dir.File("link.ini").c_str()), 0);
  ASSERT_TRUE(WriteFileAtomically(dir.File("link.ini"), "new"));
  struct stat st;
  ASSERT_EQ(::lstat(dir.File("link.ini").c_str(), &st), 0);
  EXPECT_TRUE(S_ISLNK(st.st_mode));
  EXPECT_EQ(ReadFileBytes(dir.File("real/KELNVWIN.INI")), "new");
  ASSERT_EQ(::symlink("nowhere/x", dir.File("dangling").c_str()), 0);
  EXPECT_FALSE(WriteFileAtomically(dir.File("dangling"), "x"));
}
#endif  // symbolic links are a POSIX habit; Windows needs privileges to make one

TEST(FileUtil, LinesSplitAtLfAndCrLfOnly) {
  EXPECT_EQ(SplitTextLines("a\nb\r\nc"), (Lines{"a", "b", "c"}));
  EXPECT_EQ(SplitTextLines("a\r\n"), Lines{"a"});
  EXPECT_EQ(SplitTextLines("\n\n"), (Lines{"", ""}));
  EXPECT_EQ(SplitTextLines("a\rb\r\r\n"), (Lines{"a\rb\r"}));  // only the CR before LF goes
  EXPECT_EQ(SplitTextLines(std::string("n\0l\n", 4)), Lines{std::string("n\0l", 3)});
}

TEST(FileUtil, ReadTellsMissingFromUnreadable) {
  TempDir dir;
  bool missing = false;
  EXPECT_EQ(ReadFileBytes(dir.File("none"), &missing), std::nullopt);
  EXPECT_TRUE(missing);
  EXPECT_EQ(ReadFileBytes(dir.path(), &missing), std::nullopt);  // a folder
  EXPECT_FALSE(missing);
  EXPECT_EQ(ReadTextLines(dir.File("none")), std::nullopt);

  std::string big(200000, 'z');
  big[123456] = '\0';
  ASSERT_TRUE(WriteFileAtomically(dir.File("big"), big));
  EXPECT_EQ(ReadFileBytes(dir.File("big"), &missing), big);
}

TEST(FileUtil, DurableCreationKeepsAnExistingFileAndNeedsItsFolder) {
  TempDir dir;
  const std::string path = dir.File("ACME.DTY");
  ASSERT_TRUE(CreateFileDurably(path));
  EXPECT_EQ(ReadFileBytes(path), "");
  ASSERT_TRUE(WriteFileAtomically(path, "kept"));
  ASSERT_TRUE(CreateFileDurably(path));
  EXPECT_EQ(ReadFileBytes(path), "kept");
  EXPECT_FALSE(CreateFileDurably(dir.File("missing/ACME.DTY")));

  EXPECT_TRUE(SyncFolder(dir.path()));
  EXPECT_FALSE(SyncFolder(dir.File("missing")));
  EXPECT_FALSE(SyncFolder(path));  // a file is no folder
}

TEST(FileUtil, MakeDirectoriesMakesTheWholePath) {
  TempDir dir;
  std::string deep = dir.File("a/b/c.CLT/");
  EXPECT_TRUE(MakeDirectories(deep));
  struct stat st;
  ASSERT_EQ(::stat(deep.c_str(), &st), 0);
  EXPECT_TRUE(S_ISDIR(st.st_mode));
  EXPECT_TRUE(MakeDirectories(deep));  // already there
  ASSERT_TRUE(WriteFileAtomically(dir.File("file"), "x"));
  EXPECT_FALSE(MakeDirectories(dir.File("file")));
  EXPECT_FALSE(MakeDirectories(dir.File("file/sub")));
  EXPECT_FALSE(MakeDirectories(""));
}

}  // namespace
}  // namespace nv
