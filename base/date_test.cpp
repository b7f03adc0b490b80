#include "base/date.h"

#include <gtest/gtest.h>

namespace nv {
namespace {

TEST(Date, TwoDigitYearsPivotAtThirty) {
  EXPECT_EQ(ExpandTwoDigitYear(0), 2000);
  EXPECT_EQ(ExpandTwoDigitYear(29), 2029);
  EXPECT_EQ(ExpandTwoDigitYear(30), 1930);
  EXPECT_EQ(ExpandTwoDigitYear(99), 1999);
  EXPECT_EQ(ExpandTwoDigitYear(100), 100);
  EXPECT_EQ(ParseDisplayDate("1/5/25"), (Date{1, 5, 2025}));
  EXPECT_EQ(ParseDisplayDate("12/31/30"), (Date{12, 31, 1930}));
  EXPECT_EQ(ParseRecordDate("07040076"), (Date{7, 4, 1976}));
}

TEST(Date, LeapYearsAndMonthEnds) {
  EXPECT_TRUE(IsLeapYear(2024));
  EXPECT_TRUE(IsLeapYear(2000));
  EXPECT_FALSE(IsLeapYear(1900));
  EXPECT_EQ(LastDayOfMonth(2, 2024), 29);
  EXPECT_EQ(LastDayOfMonth(2, 2100), 28);
  EXPECT_EQ(LastDayOfMonth(4, 2023), 30);
  EXPECT_EQ(LastDayOfMonth(0, 2023), 0);
  EXPECT_EQ(EndOfMonth(Date{2, 10, 2024}), (Date{2, 29, 2024}));
  EXPECT_TRUE(IsValidDate(Date{2, 29, 2024}));
  EXPECT_FALSE(IsValidDate(Date{2, 29, 2023}));
  EXPECT_FALSE(IsValidDate(Date{}));
  EXPECT_FALSE(IsValidDate(Date{1, 1, 10000}));
}

TEST(Date, TextFormsRoundTrip) {
  Date d{3, 7, 2024};
  EXPECT_EQ(FormatDisplayDate(d), "03/07/2024");
  EXPECT_EQ(FormatRecordDate(d), "03072024");
  EXPECT_EQ(FormatSortKeyDate(d), "20240307");
  EXPECT_EQ(FormatDisplayDate(Date{}), "00/00/0000");
  EXPECT_EQ(ParseDisplayDate("03/07/2024"), d);
  EXPECT_EQ(ParseRecordDate("03072024"), d);
  EXPECT_EQ(ParseSortKeyDate("20240307"), d);
  EXPECT_EQ(ParseDisplayDate("00/00/0000"), Date{});
  EXPECT_EQ(ParseRecordDate("00000000"), Date{});
  EXPECT_EQ(ParseRecordDate("        "), Date{});
  EXPECT_EQ(ParseSortKeyDate(""), Date{});
}

TEST(Date, BadTextIsRejected) {
  for (const char* bad :
       {"02/30/2024", "13/01/2024", "1/2", "1//2024", "/1/2024", "a1/01/2024", "01/01/-024",
        "01/01/20245", "001/01/2024", "01/01/2024/", "1 /1/2024", "00/01/2024", "01/00/2024"}) {
    EXPECT_EQ(ParseDisplayDate(bad), std::nullopt) << bad;
  }
  for (const char* bad : {"0307202", "030720245", "0307202x", "13012024", "02292023", "-3072024"}) {
    EXPECT_EQ(ParseRecordDate(bad), std::nullopt) << bad;
  }
  EXPECT_EQ(ParseSortKeyDate("20241301"), std::nullopt);
  EXPECT_EQ(ParseSortKeyDate("03072024"), std::nullopt);  // record form is not a sort key
}

TEST(Date, JulianDayNumbers) {
  EXPECT_EQ(DayNumber(Date{1, 1, 2000}), 2451545);
  EXPECT_EQ(DayNumber(Date{10, 15, 1582}), 2299161);  // first Gregorian day
  EXPECT_EQ(DayNumber(Date{1, 1, 1}), 1721426);
  EXPECT_EQ(DayNumber(Date{}), 0);
  EXPECT_EQ(DayNumber(Date{2, 30, 2024}), 0);
  EXPECT_EQ(DateFromDayNumber(2451545), (Date{1, 1, 2000}));
  EXPECT_EQ(DateFromDayNumber(0), Date{});
  // Every day of four centuries (one leap cycle) maps back to itself in order.
  Date previous{12, 31, 1899};
  for (long n = DayNumber(Date{1, 1, 1900}); n <= DayNumber(Date{12, 31, 2299}); ++n) {
    Date d = DateFromDayNumber(n);
    ASSERT_TRUE(IsValidDate(d)) << n;
    ASSERT_EQ(DayNumber(d), n);
    ASSERT_LT(previous, d);
    previous = d;
  }
}

TEST(Date, AddDaysAndMonths) {
  EXPECT_EQ(AddDays(Date{12, 31, 2023}, 1), (Date{1, 1, 2024}));
  EXPECT_EQ(AddDays(Date{3, 1, 2024}, -1), (Date{2, 29, 2024}));
  EXPECT_EQ(AddDays(Date{1, 1, 2024}, 366), (Date{1, 1, 2025}));
  EXPECT_EQ(AddDays(Date{}, 5), Date{});
  EXPECT_EQ(AddDays(Date{12, 31, 9999}, 1), Date{});
  EXPECT_EQ(AddMonths(Date{1, 31, 2024}, 1), (Date{2, 29, 2024}));
  EXPECT_EQ(AddMonths(Date{11, 30, 2023}, 3), (Date{2, 29, 2024}));
  EXPECT_EQ(AddMonths(Date{1, 15, 2024}, -1), (Date{12, 15, 2023}));
  EXPECT_EQ(AddMonths(Date{1, 15, 2024}, -25), (Date{12, 15, 2021}));
  EXPECT_EQ(AddMonths(Date{1, 1, 1}, -1), Date{});
  EXPECT_EQ(AddMonths(Date{1, 1, 2000}, 2000000000), Date{});
  EXPECT_EQ(AddDays(Date{1, 1, 2000}, -2000000000L), Date{});
}

TEST(Date, YearStepsMoveLeapDay) {
  EXPECT_EQ(OneYearAfter(Date{2, 29, 2024}), (Date{2, 28, 2025}));
  EXPECT_EQ(OneYearBefore(Date{2, 29, 2024}), (Date{2, 28, 2023}));
  EXPECT_EQ(OneYearBefore(Date{12, 31, 2024}), (Date{12, 31, 2023}));
  EXPECT_EQ(OneYearAfter(Date{}), Date{});
  EXPECT_LT((Date{12, 31, 2023}), (Date{1, 1, 2024}));  // order is chronological
}

TEST(Date, TodayIsAValidRecentDate) {
  Date today = Today();
  EXPECT_TRUE(IsValidDate(today));
  EXPECT_GE(today, (Date{1, 1, 2024}));
}

}  // namespace
}  // namespace nv
