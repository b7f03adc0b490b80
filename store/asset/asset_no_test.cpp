#include "store/asset/asset_no.h"

#include <gtest/gtest.h>

namespace nv {
namespace {

constexpr NvAssetNoFormat kShort{6, 2, 0};
constexpr NvAssetNoFormat kDashes{6, 2, NvAssetNoFormat::kDashes};
constexpr NvAssetNoFormat kLetters{8, 3, NvAssetNoFormat::kLetters};
constexpr NvAssetNoFormat kFreeForm{8, 2, NvAssetNoFormat::kFreeForm};

bool Valid(std::string_view text, const NvAssetNoFormat& format) {
  return NvAssetNo::Parse(text, format).valid();
}

TEST(AssetNo, TextFormRightAlignsTheMainPartAndPadsTheSubasset) {
  NvAssetNo number = NvAssetNo::Parse("123.1", kShort);
  EXPECT_TRUE(number.valid());
  EXPECT_EQ(number.main(), "123");
  EXPECT_EQ(number.subasset(), 1);
  EXPECT_EQ(number.Text(), "   123.01");
  EXPECT_EQ(number.Key(), "   123.01");
  EXPECT_EQ(number.KeyLength(), 9);
  EXPECT_EQ(NvAssetNo::Parse("  ab12 ", kLetters).Text(), "    AB12.000");
  EXPECT_EQ(NvAssetNo::Parse("7.", kShort).Text(), "     7.00");
  // No company: 10, 3, letters.
  NvAssetNo loose = NvAssetNo::Parse("x1.2", NvAssetNoFormat(kNoCompanyAssetNoFormat));
  EXPECT_TRUE(loose.valid());
  EXPECT_EQ(loose.Text(), "        X1.002");
}

TEST(AssetNo, CountsCharactersWithoutLeadingZeros) {
  EXPECT_FALSE(Valid("1234567", kShort));  // 7 characters
  EXPECT_TRUE(Valid("123456", kShort));
  EXPECT_TRUE(Valid("000123.001", kShort));  // 3 and 1 counted
  EXPECT_FALSE(Valid("1.100", kShort));      // a trailing zero counts
  // Leading zeros beyond the main length give way before the cut, keeping the value.
  NvAssetNo padded = NvAssetNo::Parse("0000000123", kShort);
  EXPECT_TRUE(padded.valid());
  EXPECT_EQ(padded.main(), "000123");
  EXPECT_EQ(NvAssetNo::Parse("1234567.5", kShort).main(), "123456");
}

TEST(AssetNo, CharacterRules) {
  EXPECT_FALSE(Valid("12A", kShort));  // letters not allowed
  EXPECT_TRUE(Valid("12a", kLetters));
  EXPECT_FALSE(Valid("12.A", kLetters));  // letters only before the point
  EXPECT_TRUE(Valid("   123", kShort));   // leading blanks
  EXPECT_FALSE(Valid("12 3", kShort));    // a blank inside
  EXPECT_FALSE(Valid("12 .3", kShort));
  EXPECT_FALSE(Valid("1.2.3", kShort));
  EXPECT_FALSE(Valid("12#", kLetters));
  EXPECT_FALSE(Valid("", kShort));
  EXPECT_FALSE(Valid(".5", kShort));  // no main part
  EXPECT_TRUE(Valid("0", kShort));

  NvAssetNo dashed = NvAssetNo::Parse("12-34.5", kDashes);
  EXPECT_TRUE(dashed.valid());
  EXPECT_EQ(dashed.Text(), " 12-34.05");
  EXPECT_FALSE(Valid("12.3-4", kDashes));  // dash after the point
  EXPECT_FALSE(Valid("12-34", kShort));    // dashes not allowed
  EXPECT_TRUE(Valid("12-345", kDashes));
  EXPECT_FALSE(Valid("12-3456", kDashes));  // the dash counts: 7 characters
}

TEST(AssetNo, SeparateSubassetRange) {
  EXPECT_TRUE(NvAssetNo::Parse("123", 99, kShort).valid());
  EXPECT_FALSE(NvAssetNo::Parse("123", 100, kShort).valid());
  EXPECT_FALSE(NvAssetNo::Parse("123", 0, kShort).valid());
  EXPECT_TRUE(NvAssetNo::Parse("123", 999, kLetters).valid());
  EXPECT_FALSE(NvAssetNo::Parse("1", 10, NvAssetNoFormat{6, 1, 0}).valid());
  NvAssetNo given = NvAssetNo::Parse("123.4", 7, kShort);
  EXPECT_EQ(given.subasset(), 7);  // the given number wins over the text's
  EXPECT_EQ(given.Text(), "   123.07");
}

TEST(AssetNo, FreeFormKeepsItsText) {
  NvAssetNo number = NvAssetNo::Parse(" ab.c-1 ", kFreeForm);
  EXPECT_TRUE(number.valid());
  EXPECT_EQ(number.Text(), "ab.c-1");
  EXPECT_EQ(number.Key(), std::string("ab.c-1\0\0\0\0\0", 11));
  EXPECT_FALSE(Valid("123456789", kFreeForm));
  EXPECT_EQ(NvAssetNo::Parse("123456789", kFreeForm).main(), "12345678");
  EXPECT_FALSE(Valid("   ", kFreeForm));
}

TEST(AssetNo, DisplayShowsSubassetZeroAsBlanks) {
  EXPECT_EQ(NvAssetNo::Parse("123", kShort).DisplayText(), "   123   ");
  EXPECT_EQ(NvAssetNo::Parse("123.2", kShort).DisplayText(), "   123.02");
  EXPECT_EQ(NvAssetNo::Parse("Q1", kLetters).DisplayText(), "      Q1    ");
}

TEST(AssetNo, InFormatReadsTheNumberAgain) {
  NvAssetNo loose = NvAssetNo::Parse("12.5", NvAssetNoFormat(kNoCompanyAssetNoFormat));
  NvAssetNo company = loose.InFormat(kShort);
  EXPECT_EQ(company.Text(), "    12.05");
  EXPECT_TRUE(company.valid());
  EXPECT_FALSE(NvAssetNo::Parse("AB1", kLetters).InFormat(kShort).valid());
  // A damaged format is held to the lengths the keys can have.
  NvAssetNo wide = NvAssetNo::Parse("1", NvAssetNoFormat{40, 9, 0});
  EXPECT_EQ(wide.KeyLength(), 14);
  EXPECT_EQ(wide.Text(), "         1.000");
}

}  // namespace
}  // namespace nv
