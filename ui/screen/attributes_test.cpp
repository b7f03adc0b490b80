#include "ui/screen/attributes.h"

#include <gtest/gtest.h>

namespace nv {
namespace {

using Found = std::optional<std::string>;

TEST(FindAttribute, MatchesWholeKeywordsAtTheStartOfItemsOnly) {
  EXPECT_EQ(FindAttribute("upr", "chars(upr),x"), std::nullopt);  // inside an argument
  EXPECT_EQ(FindAttribute("upr", "UPR,x"), Found(""));            // case ignored, no argument
  EXPECT_EQ(FindAttribute("x", "UPR,x"), Found(""));              // at the end
  EXPECT_EQ(FindAttribute("upr", "upper,uprx,xupr"), std::nullopt);
  EXPECT_EQ(FindAttribute("upr", "sched,  upr"), Found(""));  // blanks before an item
  EXPECT_EQ(FindAttribute("upr", "upr ,x"), std::nullopt);    // but not after the keyword
  EXPECT_EQ(FindAttribute("", "upr"), std::nullopt);
  EXPECT_EQ(FindAttribute("upr", ""), std::nullopt);
}

TEST(FindAttribute, ArgumentIsTheTextBetweenTheOuterParentheses) {
  EXPECT_EQ(FindAttribute("h", "h(a(b)c),d"), Found("a(b)c"));
  EXPECT_EQ(FindAttribute("d", "h(a(b)c),d"), Found(""));
  EXPECT_EQ(FindAttribute("h", "sched,upr,h(Yes\nNo\n)"), Found("Yes\nNo\n"));
  const char* button = "bmp(15),gdiplus(kelimg/bluebutton.png),msg(Define values, say),xplus(5)";
  EXPECT_EQ(FindAttribute("msg", button), Found("Define values, say"));
  EXPECT_EQ(FindAttribute("xplus", button), Found("5"));
  EXPECT_EQ(FindAttribute("say", button), std::nullopt);  // after a comma inside the argument
  EXPECT_EQ(FindAttribute("title", "title()"), Found(""));
  // Text after the closing parenthesis belongs to the same item.
  EXPECT_EQ(FindAttribute("x", "h(a)x,y"), std::nullopt);
  EXPECT_EQ(FindAttribute("y", "h(a)x,y"), Found(""));
}

TEST(FindAttribute, UnbalancedParenthesesEndTheTextWithoutTrouble) {
  EXPECT_EQ(FindAttribute("h", "h(a(b),c"), Found("a(b),c"));
  EXPECT_EQ(FindAttribute("c", "h(a(b),c"), std::nullopt);  // swallowed by the open argument
  EXPECT_EQ(FindAttribute("h", "h("), Found(""));
  EXPECT_EQ(FindAttribute("x", "),x"), Found(""));  // a stray ")" is plain text
  EXPECT_EQ(FindAttribute("x", "a)(,x"), std::nullopt);
}

TEST(NumberAttribute, ReadsSignedNumbersWithinTheScreenRange) {
  EXPECT_EQ(NumberAttribute("xplus", "upr,xplus(5)"), 5);
  EXPECT_EQ(NumberAttribute("yplus", "yplus( -12 )"), -12);
  EXPECT_EQ(NumberAttribute("yplus", "yplus(+3)"), 3);
  EXPECT_EQ(NumberAttribute("xplus", "xplus"), std::nullopt);
  EXPECT_EQ(NumberAttribute("xplus", "xplus(5x)"), std::nullopt);
  EXPECT_EQ(NumberAttribute("xplus", "xplus(32767)"), 32767);
  EXPECT_EQ(NumberAttribute("xplus", "xplus(-32768)"), std::nullopt);
  EXPECT_EQ(NumberAttribute("xplus", "xplus(99999999999999999999)"), std::nullopt);

  using Pair = std::optional<std::pair<int, int>>;
  EXPECT_EQ(NumberPairAttribute("bmp", "bmp(40, 20)", ','), Pair({40, 20}));
  EXPECT_EQ(NumberPairAttribute("group", "ckkillfocus,group(100-120)", '-'), Pair({100, 120}));
  EXPECT_EQ(NumberPairAttribute("group", "group(-5-3)", '-'), Pair({-5, 3}));
  EXPECT_EQ(NumberPairAttribute("bmp", "bmp(15)", ','), std::nullopt);
  EXPECT_EQ(NumberPairAttribute("bmp", "bmp(15,)", ','), std::nullopt);
}

}  // namespace
}  // namespace nv
