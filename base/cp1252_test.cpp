#include "base/cp1252.h"

#include <gtest/gtest.h>

namespace nv {
namespace {

TEST(Cp1252, WindowsPunctuationAndLatin1) {
  EXPECT_EQ(Cp1252ToUtf8("\x80 5"), "\u20AC 5");
  EXPECT_EQ(Cp1252ToUtf8("\x93Qu\xE9\x62\x65\x63\x94"), "\u201CQu\u00E9bec\u201D");
  EXPECT_EQ(Cp1252ToUtf8("\x9F\xFF\xA0"), "\u0178\u00FF\u00A0");
  EXPECT_EQ(Cp1252ToUtf8("\x8A\x9A\x8E\x9E\x99"), "\u0160\u0161\u017D\u017E\u2122");
  EXPECT_EQ(Cp1252ToUtf8(std::string("a\0b", 3)), std::string("a\0b", 3));
  EXPECT_EQ(Utf8ToCp1252("\u20AC\u2013\u2014\u00A9"), "\x80\x96\x97\xA9");
}

TEST(Cp1252, UndefinedBytesBecomeC1ControlsAndComeBack) {
  EXPECT_EQ(Cp1252ToUtf8("\x81\x8D\x8F\x90\x9D"), "\u0081\u008D\u008F\u0090\u009D");
  std::string all;
  for (int b = 0; b < 256; ++b) all += static_cast<char>(b);
  EXPECT_EQ(Utf8ToCp1252(Cp1252ToUtf8(all)), all);
}

TEST(Cp1252, UnrepresentableCharactersBecomeQuestionMarks) {
  EXPECT_EQ(Utf8ToCp1252("\u4E2D\u0100x\U0001F600"), "??x?");
  EXPECT_EQ(Utf8ToCp1252("\u0080\u0085"), "??");  // C1 controls Windows assigns a glyph to
}

TEST(Cp1252, MalformedUtf8NeverPassesThrough) {
  EXPECT_EQ(Utf8ToCp1252("\xC3"), "?");                 // truncated
  EXPECT_EQ(Utf8ToCp1252("\xC3(\xA9"), "?(?");          // broken, stray continuation
  EXPECT_EQ(Utf8ToCp1252("\xC0\xAF"), "??");            // overlong "/"
  EXPECT_EQ(Utf8ToCp1252("\xE0\x80\xAF"), "???");       // overlong, three bytes
  EXPECT_EQ(Utf8ToCp1252("\xED\xA0\x80"), "???");       // surrogate
  EXPECT_EQ(Utf8ToCp1252("\xF4\x90\x80\x80"), "????");  // above U+10FFFF
  EXPECT_EQ(Utf8ToCp1252("\xF8\x88\x80\x80\x80"), "?????");
  EXPECT_EQ(Utf8ToCp1252("\xC3\xA9t\xC3\xA9"), "\xE9t\xE9");
}

}  // namespace
}  // namespace nv
