#include "store/schedule/accounting_year.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/profile.h"
#include "store/schedule/schedule_testing.h"

namespace nv {
namespace {

using testing::ScheduleTestCompany;

Date D(int month, int day, int year) {
  return Date{month, day, year};
}

CustomAccountingYear Year(Date end, std::optional<std::vector<int32_t>> periods = std::nullopt,
                          int count = 12) {
  CustomAccountingYear year;
  year.end = end;
  year.period_ends = std::move(periods);
  year.period_count = count;
  return year;
}

// Calendar 2024 in quarters: 91, 91, 92 and 92 days (a leap year).
CustomAccountingYear Quarters2024() {
  return Year(D(12, 31, 2024), {{91, 182, 274, 366}}, 4);
}

// The chain as "END[:ends...]" per year, "<" before the current one.
std::string Describe(const AccountingYearChain& chain) {
  std::string out;
  for (const CustomAccountingYear* y = chain.first(); y != nullptr; y = y->next()) {
    if (!out.empty()) out += " ";
    if (y == chain.current()) out += "<";
    out += FormatDisplayDate(y->end);
    if (y->period_ends) {
      out += ":" + std::to_string(y->period_count);
      for (int32_t days : *y->period_ends) out += "," + std::to_string(days);
    }
  }
  return out;
}

TEST(AccountingYearTest, FourQuartersAreWrittenAsTheirEndDates) {
  ScheduleTestCompany t;
  AccountingYearChain chain;
  CustomAccountingYear quarters = Quarters2024();
  quarters.period_weight = kPeriodsByDays;
  chain.set_current(&chain.Append(quarters));
  ASSERT_TRUE(SaveCustomAccountingYear(t.SettingsPath(), 'B', &chain));
  EXPECT_EQ(t.Settings(),
            "[Custom Accounting Year B]\r\nPeriodWeight=Days\r\n"
            "CurrentYear=12/31/2024*4:03/31/2024,06/30/2024,09/30/2024,12/31/2024\r\n");

  std::optional<AccountingYearChain> read = LoadCustomAccountingYear(t.SettingsPath(), 'B');
  ASSERT_TRUE(read);
  EXPECT_EQ(Describe(*read), "<12/31/2024:4,91,182,274,366");
  EXPECT_EQ(read->current()->period_weight, kPeriodsByDays);
}

TEST(AccountingYearTest, ChainIsReadInOrderAndWrittenOutwardsFromTheCurrentYear) {
  ScheduleTestCompany t;
  t.PutSettings(
      "[Custom Accounting Year T]\r\n"
      "NextYear001=12/31/2024\r\n"
      "PrevYear001=06/30/2023\r\n"
      "CurrentYear=12/31/2023*2:9/30/23,12/31/2023\r\n"
      "PrevYear002=6/30/2022*4:\r\n"
      "PeriodWeight=dAyS\r\n"
      "NextYear002=12/31/2025*3\r\n"
      "NextYear004=12/31/2027\r\n");
  std::optional<AccountingYearChain> chain = LoadCustomAccountingYear(t.SettingsPath(), 'T');
  ASSERT_TRUE(chain);
  // Periods count from the end of the year before; NextYear004 follows a gap and is not read.
  EXPECT_EQ(Describe(*chain),
            "06/30/2022:4 06/30/2023 <12/31/2023:2,92,184 12/31/2024 12/31/2025:3");
  ASSERT_TRUE(SaveCustomAccountingYear(t.SettingsPath(), 'T', &*chain));
  EXPECT_EQ(t.Settings(),
            "[Custom Accounting Year T]\r\n"
            "PeriodWeight=Days\r\n"
            "CurrentYear=12/31/2023*2:09/30/2023,12/31/2023\r\n"
            "PrevYear001=06/30/2023\r\n"
            "PrevYear002=06/30/2022*4:\r\n"
            "NextYear001=12/31/2024\r\n"
            "NextYear002=12/31/2025*3:\r\n");
}

TEST(AccountingYearTest, APreviousYearRemovedByHandLeavesTheOthersLinked) {
  ScheduleTestCompany t;
  AccountingYearChain chain;
  chain.Append(Year(D(12, 31, 2021)));
  chain.Append(Year(D(12, 31, 2022)));
  chain.Append(Year(D(12, 31, 2023)));
  chain.set_current(&chain.Append(Quarters2024()));
  ASSERT_TRUE(SaveCustomAccountingYear(t.SettingsPath(), 'A', &chain));
  std::optional<AccountingYearChain> read = LoadCustomAccountingYear(t.SettingsPath(), 'A');
  ASSERT_TRUE(read);
  EXPECT_EQ(Describe(*read), Describe(chain));

  ASSERT_TRUE(DeleteProfileKey(t.SettingsPath(), "Custom Accounting Year A", "PrevYear002"));
  read = LoadCustomAccountingYear(t.SettingsPath(), 'A');
  ASSERT_TRUE(read);
  EXPECT_EQ(Describe(*read), "12/31/2021 12/31/2023 <12/31/2024:4,91,182,274,366");
  EXPECT_EQ(read->current()->period_weight, kEqualPeriods);
}

TEST(AccountingYearTest, WithoutAReadableCurrentYear) {
  ScheduleTestCompany t;
  // The key must be spelled exactly.
  t.PutSettings("[Custom Accounting Year S]\r\ncurrentyear=12/31/2024\r\n");
  EXPECT_FALSE(LoadCustomAccountingYear(t.SettingsPath(), 'S'));
  EXPECT_FALSE(LoadCustomAccountingYear(t.SettingsPath(), 'Q'));

  // An unreadable current year leaves the last previous year current.
  t.PutSettings(
      "[Custom Accounting Year S]\r\nCurrentYear=13/45/2024\r\nPrevYear001=12/31/2023\r\n"
      "PrevYear002=\r\nPrevYear003=12/31/2021*4:03/31/2021,03/31/2021,09/30/2021\r\n"
      "NextYear001=12/31/2025\r\n");
  std::optional<AccountingYearChain> chain = LoadCustomAccountingYear(t.SettingsPath(), 'S');
  ASSERT_TRUE(chain);
  // A period that does not end after the one before it ends the table.
  EXPECT_EQ(Describe(*chain), "12/31/2021:4,90 <12/31/2023 12/31/2025");

  ASSERT_TRUE(SaveCustomAccountingYear(t.SettingsPath(), 'S', nullptr));
  EXPECT_EQ(t.Settings(), "");
}

TEST(AccountingYearTest, DatesMoveByThePeriodsOfTheirYear) {
  AccountingYearChain chain;
  chain.Append(Quarters2024());
  // 2025 in quarters from the end of 2024: 90, 91, 92 and 92 days.
  chain.set_current(&chain.Append(Year(D(12, 31, 2025), {{90, 181, 273, 365}}, 4)));

  // By the length of the date's own period, then of the ones after it.
  EXPECT_EQ(MoveDateByPeriods(D(2, 15, 2024), 0, 1, &chain), D(5, 16, 2024));
  EXPECT_EQ(MoveDateByPeriods(D(3, 31, 2024), 0, 1, &chain), D(6, 30, 2024));
  EXPECT_EQ(MoveDateByPeriods(D(1, 1, 2024), 0, 4, &chain), D(1, 1, 2025));
  // Q4 of 2024 (92 days), then two quarters of 2025 (181 days).
  EXPECT_EQ(MoveDateByPeriods(D(11, 15, 2024), 0, 3, &chain), D(8, 15, 2025));
  // Whole years first, one at a time.
  EXPECT_EQ(MoveDateByPeriods(D(2, 15, 2023), 1, 1, &chain), D(5, 16, 2024));
  // Past the last year the rest are calendar months.
  EXPECT_EQ(MoveDateByPeriods(D(11, 15, 2025), 0, 3, &chain), D(4, 15, 2026));
}

TEST(AccountingYearTest, WithoutPeriodTablesDatesMoveByYearsAndMonths) {
  EXPECT_EQ(MoveDateByPeriods(D(2, 29, 2024), 4, 0, nullptr), D(2, 28, 2028));
  EXPECT_EQ(MoveDateByPeriods(D(1, 31, 2024), 1, 1, nullptr), D(2, 28, 2025));
  EXPECT_EQ(MoveDateByPeriods(D(11, 30, 2024), 0, 3, nullptr), D(2, 28, 2025));
  EXPECT_EQ(MoveDateByPeriods(D(3, 15, 2024), -1, -3, nullptr), D(12, 15, 2022));

  AccountingYearChain plain;
  plain.set_current(&plain.Append(Year(D(12, 31, 2024))));
  EXPECT_EQ(MoveDateByPeriods(D(6, 30, 2024), 0, 2, &plain), D(8, 30, 2024));
  EXPECT_EQ(MoveDateByPeriods(D(12, 31, 9999), 0, 1, &plain), Date{});
}

}  // namespace
}  // namespace nv
