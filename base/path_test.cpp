#include "base/path.h"

#include <gtest/gtest.h>

namespace nv {
namespace {

TEST(Path, JoinsWithoutDoublingSeparators) {
  const std::string sep(1, kPathSeparator);
  EXPECT_EQ(JoinPath("/data/", "MASTER.A"), "/data/MASTER.A");
  EXPECT_EQ(JoinPath("/data", "MASTER.A"), "/data" + sep + "MASTER.A");
  EXPECT_EQ(JoinPath("", "MASTER.A"), "MASTER.A");
  EXPECT_EQ(WithTrailingSeparator(""), "");
  EXPECT_EQ(WithTrailingSeparator("/data/"), "/data/");
  EXPECT_EQ(ParentFolder("/data/CO1.CLT/CO1.A"), "/data/CO1.CLT");
  EXPECT_EQ(ParentFolder("/data/CO1.CLT/"), "/data");
  EXPECT_EQ(ParentFolder("/CO1.A"), "/");
  EXPECT_EQ(ParentFolder("CO1.A"), "");
}

#ifdef _WIN32
TEST(Path, WindowsSpellingsOfFoldersAndDrives) {
  EXPECT_TRUE(IsPathSeparator('\\'));
  EXPECT_EQ(WithTrailingSeparator("C:\\NVDATA"), "C:\\NVDATA\\");
  EXPECT_EQ(WithTrailingSeparator("C:\\NVDATA\\"), "C:\\NVDATA\\");
  EXPECT_EQ(JoinPath("\\\\server\\share\\nv\\", "MASTER.A"), "\\\\server\\share\\nv\\MASTER.A");
  EXPECT_EQ(ParentFolder("C:\\NVDATA\\CO1.CLT\\"), "C:\\NVDATA");
  EXPECT_EQ(ParentFolder("C:\\CO1.A"), "C:\\");
  EXPECT_EQ(ParentFolder("C:CO1.A"), "C:");
  EXPECT_EQ(ParentFolder("D:/mixed\\sep/CO1.A"), "D:/mixed\\sep");
}
#else
TEST(Path, BackslashIsAnOrdinaryCharacterHere) {
  EXPECT_FALSE(IsPathSeparator('\\'));
  EXPECT_EQ(WithTrailingSeparator("a\\b"), "a\\b/");
  EXPECT_EQ(ParentFolder("a\\b"), "");
}
#endif

}  // namespace
}  // namespace nv
