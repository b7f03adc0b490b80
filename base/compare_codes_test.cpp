#include "base/compare_codes.h"

#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace nv {
namespace {

std::vector<std::string> Sorted(std::vector<std::string> v) {
  std::stable_sort(v.begin(), v.end(), CodeLess());
  return v;
}

TEST(CompareCodes, DigitRunsCompareAsNumbers) {
  EXPECT_LT(CompareCodes("A9", "A10"), 0);
  EXPECT_GT(CompareCodes("007", "7"), 0);  // equal value, longer run is larger
  EXPECT_LT(CompareCodes("123", "124"), 0);
  EXPECT_EQ(Sorted({"10", "9", "9-2"}), (std::vector<std::string>{"9", "9-2", "10"}));
  EXPECT_EQ(Sorted({"A100", "A2", "B1", "A10B", "A10A"}),
            (std::vector<std::string>{"A2", "A10A", "A10B", "A100", "B1"}));
}

TEST(CompareCodes, FractionsCompareDigitByDigit) {
  EXPECT_GT(CompareCodes("1.5", "1.10"), 0);
  EXPECT_GT(CompareCodes("1.10", "1.1"), 0);
  EXPECT_EQ(CompareCodes("1.25", "1.25"), 0);
  EXPECT_GT(CompareCodes("1.5", "1"), 0);    // end of text is smallest
  EXPECT_LT(CompareCodes("1.5", "1A"), 0);   // "." is smaller than a letter
}

TEST(CompareCodes, CaseIgnoredFirstThenByCode) {
  EXPECT_NE(CompareCodes("abc", "ABC"), 0);
  EXPECT_GT(CompareCodes("abc", "ABC"), 0);
  EXPECT_LT(CompareCodes("abc", "abd"), 0);
  EXPECT_LT(CompareCodes("ABC", "abd"), 0);
  EXPECT_LT(CompareCodes("abc", "ABD"), 0);
}

TEST(CompareCodes, DigitsAndDotBeforeOtherCharacters) {
  EXPECT_LT(CompareCodes("A1", "AB"), 0);
  EXPECT_LT(CompareCodes("A.", "A!"), 0);
  EXPECT_LT(CompareCodes("A", "A1"), 0);  // end of text before a digit
  EXPECT_LT(CompareCodes("", "0"), 0);
}

TEST(CompareCodes, WordsAndPieces) {
  EXPECT_EQ(CompareCodes("  OFFICE   CHAIR", "OFFICE CHAIR"), 0);
  EXPECT_LT(CompareCodes("OFFICE", "OFFICE CHAIR"), 0);   // words left over
  EXPECT_LT(CompareCodes("OFFICE CHAIR", "OFFICEA"), 0);  // word by word
  EXPECT_LT(CompareCodes("12-9", "12-10"), 0);            // piece by piece
  EXPECT_LT(CompareCodes("12", "12-1"), 0);
  EXPECT_GT(CompareCodes("12-1", "12 1"), 0);  // "-" is part of the word's pieces
}

TEST(CompareCodes, IsAntisymmetricAndTransitiveOnASample) {
  std::vector<std::string> sample = {"",     "0",   "00",    "1",      "1.1",  "1.10", "1.5",
                                     "1-1",  "1 1", "a",     "A",      "ab",   "aB",   "A10",
                                     "A9",   "a.",  "a.1",   "9-2",    "10",   "x y",  "x-y",
                                     "x  y", "-",   "--",    " lead",  "Z",    "z1",   "Z01"};
  for (const auto& a : sample) {
    for (const auto& b : sample) {
      EXPECT_EQ(CompareCodes(a, b), -CompareCodes(b, a)) << a << " / " << b;
      for (const auto& c : sample) {
        if (CompareCodes(a, b) < 0 && CompareCodes(b, c) < 0) {
          EXPECT_LT(CompareCodes(a, c), 0) << a << " < " << b << " < " << c;
        }
      }
    }
  }
}

}  // namespace
}  // namespace nv
