#include "import/mba/mba_numbering.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/str_format.h"

namespace nv {
namespace {

// Scans the IDs, chooses, and numbers them in the same order.
struct Numbered {
  MbaNumbering numbering;
  std::vector<double> numbers;
};

Numbered NumberIds(const std::vector<std::string>& ids) {
  Numbered result;
  for (const std::string& id : ids) result.numbering.Scan(SplitMbaAssetId(id));
  result.numbering.Choose();
  for (const std::string& id : ids) {
    result.numbers.push_back(result.numbering.Number(SplitMbaAssetId(id)));
  }
  return result;
}

TEST(MbaNumberingTest, Scheme0PlacesCodeMiddleAndNumberSideBySide) {
  // Three codes (0102, 0103, 0201), two middle texts ("" and "AB"), numbers up to 9,999:
  // a = 1, b = 1, n = 4, so P = 10^5 and Q = 10^4.
  Numbered n = NumberIds({"01039999", "01021", "0201500", "0102AB7", "0201AB0"});
  EXPECT_EQ(n.numbering.scheme(), 0);
  EXPECT_EQ(n.numbering.size_a(), 3);
  EXPECT_EQ(n.numbering.size_b(), 2);
  EXPECT_EQ(n.numbering.largest_number(), 9999);
  EXPECT_DOUBLE_EQ(n.numbering.p(), 100000);
  EXPECT_DOUBLE_EQ(n.numbering.q(), 10000);
  EXPECT_EQ(n.numbers, (std::vector<double>{109999, 1, 200500, 10007, 210000}));
}

TEST(MbaNumberingTest, Scheme8GivesMiddleTextsPlacesAfterTheCodes) {
  // a + b + n = 1 + 1 + 5 = 7 rules out scheme 0; |A| + |B| = 2 + 2 has one digit, so
  // scheme 8 with P = 10^5. "X" is at place 1 of B ("" is at 0).
  Numbered n = NumberIds({"010212345", "02037", "0102X5", "0203X12.5"});
  EXPECT_EQ(n.numbering.scheme(), 8);
  EXPECT_DOUBLE_EQ(n.numbering.p(), 100000);
  EXPECT_DOUBLE_EQ(n.numbering.q(), 0);
  EXPECT_EQ(n.numbers, (std::vector<double>{12345, 100007, 300005, 300012.5}));
}

TEST(MbaNumberingTest, Scheme2CountsTheLinesWithAMiddleText) {
  // One code and eleven middle texts ("", " " and A to I) with a five-digit number:
  // digits(1 + 11) + 5 = 7 rules out scheme 8; digits(1 + 1) + 5 = 6 gives scheme 2,
  // P = 10^5.
  std::vector<std::string> ids = {"010212345"};
  for (char m = 'A'; m <= 'I'; ++m) ids.push_back(StrPrintf("0102%c99", m));
  ids.push_back("0102 7");  // a middle text of a blank: blank, so numbered as without one
  Numbered n = NumberIds(ids);
  EXPECT_EQ(n.numbering.scheme(), 2);
  EXPECT_DOUBLE_EQ(n.numbering.p(), 100000);
  std::vector<double> expected = {12345};
  for (int k = 1; k <= 9; ++k) expected.push_back(100000 + k);
  expected.push_back(7);
  EXPECT_EQ(n.numbers, expected);
}

TEST(MbaNumberingTest, Scheme1CountsWithinEachCode) {
  // A six-digit number rules out 0, 8 and 2; two codes and three lines: digits(3) +
  // digits(3) = 2 gives scheme 1 with P = 10^digits(3) = 10.
  Numbered n = NumberIds({"0102123456", "0203 5", "0102 7"});
  EXPECT_EQ(n.numbering.scheme(), 1);
  EXPECT_DOUBLE_EQ(n.numbering.p(), 10);
  EXPECT_EQ(n.numbers, (std::vector<double>{1, 11, 2}));

  // A second pass after ResetCounters numbers the lines the same way again.
  n.numbering.ResetCounters();
  EXPECT_DOUBLE_EQ(n.numbering.Number(SplitMbaAssetId("0102123456")), 1);
}

TEST(MbaNumberingTest, Scheme4CountsEveryLineWhenNothingElseFits) {
  // 999 codes and a six-digit number: digits(1000) + digits(1000 lines) = 8.
  std::vector<std::string> ids;
  for (int k = 0; k < 999; ++k) ids.push_back(StrPrintf("%04d1", k));
  ids.push_back("0000999999");
  Numbered n = NumberIds(ids);
  EXPECT_EQ(n.numbering.scheme(), 4);
  EXPECT_EQ(n.numbering.lines(), 1000);
  ASSERT_EQ(n.numbers.size(), 1000u);
  for (size_t k = 0; k < n.numbers.size(); ++k) {
    ASSERT_DOUBLE_EQ(n.numbers[k], static_cast<double>(k + 1)) << k;
  }
}

TEST(MbaNumberingTest, TheNumberIsReadUnderTheCompanysFormat) {
  Numbered n = NumberIds({"0102AB12.5", "01034"});
  ASSERT_EQ(n.numbering.scheme(), 0);
  n.numbering.ResetCounters();
  // a = 1, b = 1, n = 2: P = 1000, Q = 100; "AB" is at place 1 of B.
  const NvAssetNo first = n.numbering.AssetNumber(SplitMbaAssetId("0102AB12.5"), {6, 2, 0});
  EXPECT_EQ(first.Text(), "   112.50");
  EXPECT_TRUE(first.valid());
  const NvAssetNo second = n.numbering.AssetNumber(SplitMbaAssetId("01034"), {8, 3, 0});
  EXPECT_EQ(second.Text(), "    1004.000");
  // A subasset of two digits does not fit a format of one.
  EXPECT_FALSE(n.numbering.AssetNumber(SplitMbaAssetId("0102AB12.5"), {6, 1, 0}).valid());
}

}  // namespace
}  // namespace nv
