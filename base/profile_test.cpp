#include "base/profile.h"

#include <string>
#ifndef _WIN32
#include <sys/stat.h>
#endif
#include <vector>

#include <gtest/gtest.h>

#include "base/file.h"
#include "base/file_util.h"
#include "base/temp_dir_testing.h"

namespace nv {
namespace {

using Names = std::vector<std::string>;

std::string Contents(const std::string& path) {
  return ReadFileBytes(path).value_or("<none>");
}

class ProfileTest : public ::testing::Test {
 protected:
  void Put(std::string_view bytes) { ASSERT_TRUE(WriteFileAtomically(ini_, bytes)); }
  std::string Read(std::string_view section, std::string_view key, size_t size = 301) {
    return ReadProfileString(ini_, section, key, "<default>", size);
  }

  TempDir dir_;
  std::string ini_ = dir_.File("KELNVWIN.INI");
};

TEST_F(ProfileTest, NamesIgnoreCaseAndValuesAreTrimmedAndUnquoted) {
  Put("[Network]\nName Type = User  \n  NAME case-sensitive=\"no\"\n"
      "[ nv parameters ]\nConfiguration Locked='1'\nodd=\"half\nboth=\"a'\nempty=\n");
  EXPECT_EQ(Read("NETWORK", "name type"), "User");
  EXPECT_EQ(Read("network", "Name Case-Sensitive"), "no");
  EXPECT_EQ(Read("NV Parameters", "configuration locked"), "1");
  EXPECT_EQ(Read("NV Parameters", "odd"), "\"half");  // no closing quote: kept
  EXPECT_EQ(Read("NV Parameters", "both"), "\"a'");   // quotes must be a pair
  EXPECT_EQ(Read("NV Parameters", "empty"), "");
  EXPECT_EQ(Read("NV Parameters", "missing"), "<default>");
  EXPECT_EQ(Read("Missing", "Name Type"), "<default>");
}

TEST_F(ProfileTest, StrayCarriageReturnsReadAsBlanks) {
  Put("[A]\r\r\nk=v\r\r\n");
  EXPECT_EQ(Read("A", "k"), "v");
  ASSERT_TRUE(WriteProfileString(ini_, "A", "j", "w"));
  EXPECT_EQ(Read("A", "k"), "v");
  EXPECT_EQ(Read("A", "j"), "w");
#ifndef _WIN32  // the system's writer lays the file out its own way
  EXPECT_EQ(Contents(ini_), "[A]\r\r\nk=v\r\r\nj=w\r\n");
#endif
}

TEST_F(ProfileTest, ReadIsCutToBufferSizeLessOne) {
  Put("[S]\nk=\"" + std::string(400, 'x') + "\"\nshort=abcdef\n");
  EXPECT_EQ(Read("S", "k").size(), 300u);
  EXPECT_EQ(Read("S", "short", 4), "abc");
  EXPECT_EQ(Read("S", "short", 1), "");
  EXPECT_EQ(Read("S", "short", 0), "");
  EXPECT_EQ(ReadProfileString(ini_, "S", "none", "long default  ", 5), "long");
  EXPECT_EQ(ReadProfileString(ini_, "S", "none", "x  "), "x");
}

TEST_F(ProfileTest, FirstSectionAndFirstKeyWin) {
  Put("k=outside\n[A]\nk=1\nK=2\n[B]\nk=3\n[a]\nk=4\nextra=5\n");
  EXPECT_EQ(Read("A", "k"), "1");
  EXPECT_EQ(Read("a", "extra"), "<default>");  // only the first [A] counts
  // Listings give what the file holds, doubles included.
  EXPECT_EQ(ListProfileKeys(ini_, "a"), (Names{"k", "K"}));
  EXPECT_EQ(ListProfileSections(ini_), (Names{"A", "B", "a"}));
}

TEST_F(ProfileTest, ListingSkipsCommentsAndLinesWithoutEqualsOrBracket) {
  Put("; top comment\r\n[One]\r\n;k=commented\r\nplain line\r\nb = 2\r\na=1\r\n=nokey\r\n"
      "[Two]\r\n[Three\r\n");
  EXPECT_EQ(ListProfileKeys(ini_, "ONE"), (Names{"b", "a"}));
  EXPECT_EQ(ListProfileKeys(ini_, "two"), Names{});
  EXPECT_EQ(ListProfileSections(ini_), (Names{"One", "Two"}));
  EXPECT_EQ(Read("one", ";k"), "commented");  // asked for by name, a comment is an entry
}

TEST_F(ProfileTest, MissingFileReadsEmptyAndWriteCreatesIt) {
  EXPECT_EQ(Read("S", "k"), "<default>");
  EXPECT_EQ(ListProfileSections(ini_), Names{});
  EXPECT_EQ(ListProfileKeys(ini_, "S"), Names{});
  EXPECT_TRUE(DeleteProfileSection(ini_, "S"));
  EXPECT_TRUE(DeleteProfileKey(ini_, "S", "k"));
  EXPECT_EQ(Contents(ini_), "<none>");  // deleting from nothing makes no file

  ASSERT_TRUE(WriteProfileString(ini_, "User ALICE", "print to screen font", "LOGFONT(1)"));
  ASSERT_TRUE(WriteProfileString(ini_, "user alice", "Other", "x"));
  ASSERT_TRUE(WriteProfileString(ini_, "Second", "k", "v"));
  EXPECT_EQ(ListProfileSections(ini_), (Names{"User ALICE", "Second"}));
  EXPECT_EQ(ListProfileKeys(ini_, "USER alice"), (Names{"print to screen font", "Other"}));
  EXPECT_EQ(Contents(ini_).find('\n'), Contents(ini_).find('\r') + 1);  // CR LF
#ifndef _WIN32
  EXPECT_EQ(Contents(ini_),
            "[User ALICE]\r\nprint to screen font=LOGFONT(1)\r\nOther=x\r\n[Second]\r\nk=v\r\n");
#endif
}

TEST_F(ProfileTest, WriteKeepsEveryOtherLine) {
  Put("; comment\n\n[A]\nfirst = 1 ; note\n  junk without equals\nKEY=old\n\n; trailing\n[B]\nx=y");
  ASSERT_TRUE(WriteProfileString(ini_, "a", "key", "new"));
  EXPECT_EQ(Read("A", "KEY"), "new");
  EXPECT_EQ(Read("B", "x"), "y");
#ifndef _WIN32  // the system's writer keeps the lines but not necessarily their blanks
  EXPECT_EQ(Contents(ini_),
            "; comment\r\n\r\n[A]\r\nfirst = 1 ; note\r\n  junk without equals\r\nkey=new\r\n\r\n"
            "; trailing\r\n[B]\r\nx=y\r\n");
  // A new key goes after the section's last entry, before its trailing blank and comment.
  ASSERT_TRUE(WriteProfileString(ini_, "A", "added", " spaced "));
  EXPECT_EQ(Contents(ini_),
            "; comment\r\n\r\n[A]\r\nfirst = 1 ; note\r\n  junk without equals\r\nkey=new\r\n"
            "added= spaced \r\n\r\n; trailing\r\n[B]\r\nx=y\r\n");
#else
  ASSERT_TRUE(WriteProfileString(ini_, "A", "added", " spaced "));
#endif
  EXPECT_EQ(Read("A", "added"), "spaced");
  EXPECT_EQ(Read("A", "first"), "1 ; note");
}

TEST_F(ProfileTest, DeleteKeyAndSection) {
  Put("[A]\nk=1\n; keep me\nk=2\nother=3\n[B]\nk=1\n[a]\nk=9\n");
  // Deletes take the first match only, as reads do: the second entry and the second
  // section come to light.
  ASSERT_TRUE(DeleteProfileKey(ini_, "A", "K"));
  EXPECT_EQ(Read("A", "k"), "2");
  EXPECT_EQ(Read("B", "k"), "1");
  EXPECT_EQ(Contents(ini_), "[A]\r\n; keep me\r\nk=2\r\nother=3\r\n[B]\r\nk=1\r\n[a]\r\nk=9\r\n");

  ASSERT_TRUE(DeleteProfileSection(ini_, "a"));
  EXPECT_EQ(Contents(ini_), "[B]\r\nk=1\r\n[a]\r\nk=9\r\n");
  EXPECT_EQ(ListProfileSections(ini_), (Names{"B", "a"}));
  EXPECT_EQ(Read("A", "k"), "9");
}

TEST_F(ProfileTest, RejectsTextThatWouldBreakTheFile) {
  Put("[A]\nk=1\n");
  EXPECT_FALSE(WriteProfileString(ini_, "A", "k", "two\nlines"));
  EXPECT_FALSE(WriteProfileString(ini_, "A", "a=b", "v"));
  EXPECT_FALSE(WriteProfileString(ini_, "A", "", "v"));
  EXPECT_FALSE(WriteProfileString(ini_, "A]", "k", "v"));
  EXPECT_FALSE(WriteProfileString(ini_, "  ", "k", "v"));
  EXPECT_FALSE(WriteProfileString(ini_, "A", ";k", "v"));
  EXPECT_EQ(Contents(ini_), "[A]\nk=1\n");  // untouched, not even the line ends
}

TEST_F(ProfileTest, FailedWriteLeavesOldFileAndNoLitter) {
  // A folder in the way of the rename: the write must fail and change nothing.
  std::string blocked = dir_.File("blocked.ini");
  ASSERT_TRUE(MakeFolder(blocked));
  EXPECT_FALSE(WriteProfileString(blocked, "A", "k", "v"));
  EXPECT_FALSE(WriteProfileString(dir_.File("no/such/folder.ini"), "A", "k", "v"));

  Put("[A]\nk=1\n");
  EXPECT_FALSE(WriteProfileString(ini_, "A", "k", "bad\r"));
  EXPECT_EQ(Contents(ini_), "[A]\nk=1\n");

  int entries = 0;
  for (const auto& e : std::filesystem::directory_iterator(dir_.path())) {
    (void)e;
    ++entries;
  }
  EXPECT_EQ(entries, 2);  // blocked.ini and KELNVWIN.INI, no temporary files left
}

TEST_F(ProfileTest, ReplaceKeepsPermissions) {
#ifdef _WIN32
  GTEST_SKIP() << "Windows files carry no POSIX permission bits";
#else
  Put("[A]\n");
  ASSERT_EQ(::chmod(ini_.c_str(), 0640), 0);
  ASSERT_TRUE(WriteProfileString(ini_, "A", "k", "v"));
  struct stat st;
  ASSERT_EQ(::stat(ini_.c_str(), &st), 0);
  EXPECT_EQ(st.st_mode & 0777, 0640u);
#endif
}

}  // namespace
}  // namespace nv
