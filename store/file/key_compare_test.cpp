#include "store/file/key_compare.h"

#include <string>

#include <gtest/gtest.h>

namespace nv {
namespace {

std::string Field(std::string text, size_t width) {
  text.resize(width, '\0');
  return text;
}

TEST(KeyLength, I1AndI2InBothLayoutsAndFormats) {
  EXPECT_EQ(I1KeyLength(true, 6, 2), 9u);
  EXPECT_EQ(I1KeyLength(true, 10, 3), 14u);
  EXPECT_EQ(I1KeyLength(false, 10, 3), 5u);
  EXPECT_EQ(I2KeyLength(true, "", false), 9u);
  EXPECT_EQ(I2KeyLength(true, "", true), 14u);
  // L 10 + C 10 + A 24 + P 2 + D 8 + Y 5 + two digits 20 each.
  EXPECT_EQ(I2KeyLength(true, "LCAPDY09", false), 9u + 10 + 10 + 24 + 2 + 8 + 5 + 40);
  EXPECT_EQ(I2KeyLength(true, "LX", true), 24u);  // unknown letters add nothing
  // Old: 5 + L 2 + C 2 + P 2 + D 2 + A 24 + "1".."3" 20; Y and 4 add nothing.
  EXPECT_EQ(I2KeyLength(false, "LCPDA1234Y", false), 5u + 8 + 24 + 60);
  EXPECT_FALSE(IsLongAssetNoFormat(6, 2, 0));
  EXPECT_TRUE(IsLongAssetNoFormat(7, 2, 0));
  EXPECT_TRUE(IsLongAssetNoFormat(6, 3, 0));
  EXPECT_TRUE(IsLongAssetNoFormat(6, 2, 1));
  EXPECT_FALSE(IsLongAssetNoFormat(5, 2, 2));  // dashes alone keep the short format
}

TEST(KeyCompare, I1ComparesMainPartNaturallyThenSubassetAsNumber) {
  EXPECT_LT(CompareI1Keys("     9.01", "    10.01"), 0);
  EXPECT_LT(CompareI1Keys("    A9.99", "   A10.01"), 0);
  EXPECT_LT(CompareI1Keys("   100.02", "   100.10"), 0);
  EXPECT_EQ(CompareI1Keys("   100.2", "   100.002"), 0);
  EXPECT_GT(CompareI1Keys("   abc.01", "   ABC.01"), 0);
  EXPECT_LT(CompareI1Keys("   abc.99", "   abd.01"), 0);
  EXPECT_EQ(CompareI1Keys(Field("  12.01", 9), "  12.01"), 0);  // cut at the first NUL
}

TEST(KeyCompare, I2WalksTheSortOrderFields) {
  // "L" 10 natural, then the asset number.
  std::string a = Field("LOC9", 10) + "     1.01";
  std::string b = Field("LOC10", 10) + "     0.01";
  EXPECT_LT(CompareI2Keys(a, b, "L"), 0);
  // "D" 8 bytewise: "20241231" < "20250101"; "P" bytewise is case-sensitive.
  EXPECT_LT(CompareI2Keys("20241231     2.01", "20250101     1.01", "D"), 0);
  EXPECT_LT(CompareI2Keys("B      1.01", "a      1.01", "P"), 0);
  EXPECT_GT(CompareI2Keys("b      1.01", "B      1.01", "P"), 0);
  // The first differing field decides; later fields only break ties.
  std::string y1 = "2024A" + Field("Z", 20) + "     1.01";
  std::string y2 = "2024B" + Field("A", 20) + "     1.01";
  EXPECT_LT(CompareI2Keys(y1, y2, "Y1"), 0);
  std::string y3 = "2024A" + Field("A", 20) + "     9.01";
  EXPECT_GT(CompareI2Keys(y1, y3, "Y1"), 0);
  // Equal fields fall through to the asset number.
  EXPECT_LT(CompareI2Keys(Field("X", 24) + "     2.01", Field("X", 24) + "     2.02", "A"), 0);
}

TEST(KeyCompare, OldLayoutRules) {
  EXPECT_LT(CompareOldKeys("AB001", "AB002", ""), 0);
  EXPECT_LT(CompareOldKeys("Zz001", "a1001", ""), 0);  // whole key bytewise
  // "L" 2 bytewise, "1" 20 natural, asset number bytewise.
  std::string a = "LA" + Field("bin 9", 20) + "00002";
  std::string b = "LA" + Field("bin 10", 20) + "00001";
  EXPECT_LT(CompareOldKeys(a, b, "L1"), 0);
  EXPECT_GT(CompareOldKeys("LA" + Field("bin 9", 20) + "00002", "LA" + Field("BIN 9", 20) + "00001",
                           "L1"),
            0);
  EXPECT_GT(CompareOldKeys("LB00001", "LA00009", "L"), 0);
}

}  // namespace
}  // namespace nv
