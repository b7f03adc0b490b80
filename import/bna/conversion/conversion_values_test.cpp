#include "import/bna/conversion/conversion_values.h"

#include <gtest/gtest.h>

namespace nv::bna {
namespace {

TEST(ConversionValuesTest, NumbersReadAsTheCLibraryReadsThem) {
  EXPECT_DOUBLE_EQ(ReadNumber("  -12.5kg"), -12.5);
  EXPECT_DOUBLE_EQ(ReadNumber("1,234"), 1.0);
  EXPECT_DOUBLE_EQ(ReadNumber("abc"), 0.0);
  EXPECT_DOUBLE_EQ(ReadNumber("-"), 0.0);
  EXPECT_DOUBLE_EQ(ReadNumber("1e5"), 1.0);  // no exponents
  EXPECT_EQ(ReadInteger("99999999999999999999"), 1'000'000'000'000'000LL);
  EXPECT_EQ(ReadInt("-99999999999"), -2'000'000'000);
  EXPECT_EQ(FormatAmount(-0.001), "0.00");
  EXPECT_EQ(FormatAmountWidth10(-0.001), "      0.00");
}

TEST(ConversionValuesTest, DatesUseThePivotAndEmptyForNonsense) {
  EXPECT_EQ(ReadDateText("1/5/29"), (Date{1, 5, 2029}));
  EXPECT_EQ(ReadDateText("\"12/31/30 rest"), (Date{12, 31, 1930}));
  EXPECT_TRUE(ReadDateText("02/30/2020").empty());
  EXPECT_TRUE(ReadDateText("00/10/2020").empty());
  EXPECT_TRUE(ReadDateText("2020-01-05").empty());
  EXPECT_EQ(FormatDateText(Date{}), "00/00/0000");
}

TEST(ConversionValuesTest, BnaAmountsHonourImpliedDecimalsAndParentheses) {
  EXPECT_DOUBLE_EQ(ReadBnaAmount("1234", 2), 12.34);
  EXPECT_DOUBLE_EQ(ReadBnaAmount(" (1,234.50)", 2), -1234.5);
  EXPECT_DOUBLE_EQ(ReadBnaAmount("1,234", 0), 1234.0);
}

TEST(ConversionValuesTest, LivesAndQuotes) {
  EXPECT_EQ(FormatLifeOfMonths(33), " 2-9");
  EXPECT_EQ(FormatLifeOfMonths(84), " 7");
  EXPECT_EQ(FormatLife(39, 6), "39-6");
  EXPECT_EQ(WithoutEnclosingQuotes("\"ab\""), "ab");
  EXPECT_EQ(WithoutEnclosingQuotes("\""), "\"");
  EXPECT_EQ(WithoutEnclosingQuotes("\"ab"), "\"ab");
}

TEST(ConversionValuesTest, PatternStarNeedsAtLeastOneCharacter) {
  EXPECT_TRUE(MatchTablePattern("\"1*\"", "\"1A\""));
  EXPECT_TRUE(MatchTablePattern("\"1*\"", "\"1ABC\""));
  EXPECT_FALSE(MatchTablePattern("\"1*\"", "\"1\""));
  EXPECT_TRUE(MatchTablePattern("*", "\"\""));
  EXPECT_TRUE(MatchTablePattern("\"?B?\"", "\"ABC\""));
  EXPECT_FALSE(MatchTablePattern("\"?B?\"", "\"ABCD\""));
  EXPECT_FALSE(MatchTablePattern("\"ab\"", "\"AB\""));  // case counts
  EXPECT_TRUE(MatchTablePattern("*X*Y*", "aXbXcYd"));
  EXPECT_FALSE(MatchTablePattern("*X*Y*", "aXbXcY"));
  // Many stars against a long text that fails late stay quick.
  EXPECT_FALSE(MatchTablePattern("*a*a*a*a*a*a*a*a*b", std::string(3000, 'a')));
}

}  // namespace
}  // namespace nv::bna
