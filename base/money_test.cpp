#include "base/money.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

namespace nv {
namespace {

TEST(Money, TwoDecimalsOrWholeDollars) {
  EXPECT_EQ(FormatMoney(1234.56, false), "1234.56");
  EXPECT_EQ(FormatMoney(1234.56, true), "1235");
  EXPECT_EQ(FormatMoney(1234.4, true), "1234");
  EXPECT_EQ(FormatMoney(2.5, true), "3");  // half away from zero, not to even
  EXPECT_EQ(FormatMoney(-2.5, true), "-3");
  EXPECT_EQ(FormatMoney(0.125, false), "0.12");  // %.2f of the nearest double
  EXPECT_EQ(FormatMoney(-15, false), "-15.00");
  EXPECT_EQ(FormatMoney(1e9, false), "1000000000.00");
}

TEST(Money, NoNegativeZeroAndNoNan) {
  EXPECT_EQ(FormatMoney(-0.001, false), "0.00");
  EXPECT_EQ(FormatMoney(-0.4, true), "0");
  EXPECT_EQ(FormatMoney(-0.0, false), "0.00");
  EXPECT_EQ(FormatMoney(std::nan(""), false), "0.00");
  EXPECT_EQ(FormatMoney(std::numeric_limits<double>::infinity(), true), "0");
}

TEST(Money, ParseAcceptsWrittenAmounts) {
  EXPECT_EQ(ParseMoney("1234.56"), 1234.56);
  EXPECT_EQ(ParseMoney("  1,234.50 "), 1234.5);
  EXPECT_EQ(ParseMoney("-12"), -12.0);
  EXPECT_EQ(ParseMoney("+$7.25"), 7.25);
  EXPECT_EQ(ParseMoney("(1,000)"), -1000.0);
  EXPECT_EQ(ParseMoney("( 3.5 )"), -3.5);
  EXPECT_EQ(ParseMoney(".5"), 0.5);
  EXPECT_EQ(ParseMoney("5."), 5.0);
  EXPECT_EQ(ParseMoney(FormatMoney(-98765.43, false)), -98765.43);
}

TEST(Money, ParseRejectsOtherText) {
  for (const char* bad : {"", "  ", "-", ".", "$", "1.2.3", "12a", "1,,000", ",100", "100,",
                          "1,000.5,0", "(12", "--5", "1e5", "nan", "inf", "(-5)", "1 000"}) {
    EXPECT_EQ(ParseMoney(bad), std::nullopt) << bad;
  }
  EXPECT_EQ(ParseMoney(std::string(400, '9')), std::nullopt);  // overflows to infinity
}

}  // namespace
}  // namespace nv
