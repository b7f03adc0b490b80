#include "base/ascii.h"

#include <gtest/gtest.h>

namespace nv {
namespace {

TEST(Ascii, OnlyLettersAToZFold) {
  EXPECT_TRUE(EqualIgnoringCase("Name Type", "NAME type"));
  EXPECT_FALSE(EqualIgnoringCase("\xE9t\xE9", "\xC9T\xC9"));  // accented letters stay apart
  EXPECT_FALSE(EqualIgnoringCase("[", "{"));                  // 0x5B and 0x7B differ by 0x20 too
  EXPECT_FALSE(EqualIgnoringCase("ab", "abc"));
  EXPECT_EQ(AsciiUpper("company1.fas@`z"), "COMPANY1.FAS@`Z");
  EXPECT_EQ(TrimBlanks(" \t a b \t"), "a b");
  EXPECT_EQ(TrimBlanks("\r\n"), "\r\n");  // line ends are not blanks here
}

}  // namespace
}  // namespace nv
