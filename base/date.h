// Calendar dates as the layouts keep them: month, day and year as three integers, with
// 0/0/0 as the empty date. Dates are Gregorian; years run from 1 to 9999.
//
// Years below 100 are two-digit years: below 30 they are 20xx, 30 to 99 are 19xx; years of
// 100 and above are taken as they are. Every parser here applies that rule.
//
// Text forms (all zero-padded):
//   display   "%2.2d/%2.2d/%4.4d"  MM/DD/YYYY
//   record    "%2.2d%2.2d%4.4d"    MMDDYYYY, inside record fields
//   sort key  "%4.4d%2.2d%2.2d"    YYYYMMDD, inside index keys so that keys sort by date
// The empty date formats as zeros ("00/00/0000"); a text of zeros or of blanks only parses
// as the empty date.
//
// Day numbers are Julian day numbers (1/1/2000 is 2451545); the notes file stores them.
#pragma once

#include <compare>
#include <optional>
#include <string>
#include <string_view>

namespace nv {

struct Date {
  int month = 0;
  int day = 0;
  int year = 0;

  bool empty() const { return month == 0 && day == 0 && year == 0; }
  friend bool operator==(const Date&, const Date&) = default;
  // Chronological order; the empty date sorts first.
  friend std::strong_ordering operator<=>(const Date& a, const Date& b) {
    if (auto c = a.year <=> b.year; c != 0) return c;
    if (auto c = a.month <=> b.month; c != 0) return c;
    return a.day <=> b.day;
  }
};

// 0..29 -> 2000..2029, 30..99 -> 1930..1999, others unchanged.
[[nodiscard]] int ExpandTwoDigitYear(int year);
[[nodiscard]] bool IsLeapYear(int year);
// 28 to 31; 0 when month is not 1 to 12.
[[nodiscard]] int LastDayOfMonth(int month, int year);
// Month 1..12, day within the month, year 1..9999. The empty date is not valid.
[[nodiscard]] bool IsValidDate(const Date& date);

std::string FormatDisplayDate(const Date& date);
std::string FormatRecordDate(const Date& date);
std::string FormatSortKeyDate(const Date& date);

// Each returns nullopt unless the text is the form exactly (blanks around it allowed) and
// names a valid date or the empty date. The display form also takes one-digit months and
// days and 1- to 4-digit years ("1/5/25" is 01/05/2025).
std::optional<Date> ParseDisplayDate(std::string_view text);
std::optional<Date> ParseRecordDate(std::string_view text);
std::optional<Date> ParseSortKeyDate(std::string_view text);

// Julian day number of a valid date; 0 for an invalid or empty date.
long DayNumber(const Date& date);
// The date of a Julian day number; the empty date outside years 1 to 9999.
Date DateFromDayNumber(long day_number);

// The arithmetic below returns an invalid or empty date unchanged, and the empty date when
// the result would leave years 1 to 9999.
Date AddDays(const Date& date, long days);
// Months carry into the year; a day past the new month's end becomes its last day.
Date AddMonths(const Date& date, int months);
// Same month and day a year later or earlier; 29 February becomes 28 February.
Date OneYearAfter(const Date& date);
Date OneYearBefore(const Date& date);
// The last day of the date's month.
Date EndOfMonth(const Date& date);

// Today's date by the local clock.
Date Today();

}  // namespace nv
