#include "base/column_letters.h"

#include <gtest/gtest.h>

namespace nv {
namespace {

TEST(ColumnLetters, NamesAroundTheBoundaries) {
  EXPECT_EQ(ColumnLetters(0), "A");
  EXPECT_EQ(ColumnLetters(25), "Z");
  EXPECT_EQ(ColumnLetters(26), "AA");
  EXPECT_EQ(ColumnLetters(51), "AZ");
  EXPECT_EQ(ColumnLetters(52), "BA");
  EXPECT_EQ(ColumnLetters(701), "ZZ");
  EXPECT_EQ(ColumnLetters(702), "");
  EXPECT_EQ(ColumnLetters(-1), "");
}

TEST(ColumnLetters, EveryIndexRoundTripsInEitherCase) {
  for (int i = 0; i < kColumnCount; ++i) {
    std::string name = ColumnLetters(i);
    ASSERT_EQ(ColumnIndex(name), i) << name;
    for (char& c : name) c = static_cast<char>(c - 'A' + 'a');
    ASSERT_EQ(ColumnIndex(name), i) << name;
  }
  EXPECT_EQ(ColumnIndex("aB"), 27);
}

TEST(ColumnLetters, OtherTextHasNoIndex) {
  for (const char* bad : {"", "AAA", "1", "A1", " A", "[", "@", "`", "{"}) {
    EXPECT_EQ(ColumnIndex(bad), std::nullopt) << bad;
  }
}

}  // namespace
}  // namespace nv
