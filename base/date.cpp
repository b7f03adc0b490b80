#include "base/date.h"

#include <time.h>

#include <algorithm>

#include "base/ascii.h"
#include "base/str_format.h"

namespace nv {
namespace {

constexpr int kMinYear = 1;
constexpr int kMaxYear = 9999;

// The value of a run of 1 to max_digits digits, or -1.
int Digits(std::string_view s, size_t max_digits) {
  if (s.empty() || s.size() > max_digits) return -1;
  int value = 0;
  for (char c : s) {
    if (c < '0' || c > '9') return -1;
    value = value * 10 + (c - '0');
  }
  return value;
}

// The parsed fields as a date: all zeros is the empty date; otherwise the two-digit year
// rule applies and the date must be valid.
std::optional<Date> Checked(int month, int day, int year) {
  if (month < 0 || day < 0 || year < 0) return std::nullopt;
  if (month == 0 && day == 0 && year == 0) return Date{};
  Date date{month, day, ExpandTwoDigitYear(year)};
  if (!IsValidDate(date)) return std::nullopt;
  return date;
}

// Parses a fixed-width form of two-digit month and day and a year of year_width digits,
// each field starting at the given offset.
std::optional<Date> ParseFixed(std::string_view text, int month_at, int day_at, int year_at,
                               size_t year_width) {
  text = TrimBlanks(text);
  if (text.empty()) return Date{};
  if (text.size() != 4 + year_width) return std::nullopt;
  auto field = [&](int at, size_t width) {
    std::string_view s = text.substr(static_cast<size_t>(at), width);
    return s.size() == width ? Digits(s, width) : -1;
  };
  return Checked(field(month_at, 2), field(day_at, 2), field(year_at, year_width));
}

Date Bounded(const Date& date) {
  return (date.year < kMinYear || date.year > kMaxYear) ? Date{} : date;
}

}  // namespace

int ExpandTwoDigitYear(int year) {
  if (year >= 0 && year < 30) return 2000 + year;
  if (year >= 30 && year < 100) return 1900 + year;
  return year;
}

bool IsLeapYear(int year) {
  return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

int LastDayOfMonth(int month, int year) {
  static constexpr int kDays[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  if (month < 1 || month > 12) return 0;
  if (month == 2 && IsLeapYear(year)) return 29;
  return kDays[month - 1];
}

bool IsValidDate(const Date& date) {
  return date.year >= kMinYear && date.year <= kMaxYear && date.day >= 1 &&
         date.day <= LastDayOfMonth(date.month, date.year);
}

std::string FormatDisplayDate(const Date& date) {
  return StrPrintf("%2.2d/%2.2d/%4.4d", date.month, date.day, date.year);
}

std::string FormatRecordDate(const Date& date) {
  return StrPrintf("%2.2d%2.2d%4.4d", date.month, date.day, date.year);
}

std::string FormatSortKeyDate(const Date& date) {
  return StrPrintf("%4.4d%2.2d%2.2d", date.year, date.month, date.day);
}

std::optional<Date> ParseDisplayDate(std::string_view text) {
  text = TrimBlanks(text);
  if (text.empty()) return Date{};
  size_t first = text.find('/');
  if (first == std::string_view::npos) return std::nullopt;
  size_t second = text.find('/', first + 1);
  if (second == std::string_view::npos) return std::nullopt;
  return Checked(Digits(text.substr(0, first), 2),
                 Digits(text.substr(first + 1, second - first - 1), 2),
                 Digits(text.substr(second + 1), 4));
}

std::optional<Date> ParseRecordDate(std::string_view text) {
  return ParseFixed(text, 0, 2, 4, 4);
}

std::optional<Date> ParseSortKeyDate(std::string_view text) {
  return ParseFixed(text, 4, 6, 0, 4);
}

// The usual integer form of the Gregorian calendar to Julian day number conversion
// (Fliegel and Van Flandern), shifted so that the year starts in March.
long DayNumber(const Date& date) {
  if (!IsValidDate(date)) return 0;
  long a = (14 - date.month) / 12;
  long y = date.year + 4800 - a;
  long m = date.month + 12 * a - 3;
  return date.day + (153 * m + 2) / 5 + 365 * y + y / 4 - y / 100 + y / 400 - 32045;
}

Date DateFromDayNumber(long day_number) {
  constexpr long kFirst = 1721426;  // 01/01/0001
  constexpr long kLast = 5373484;   // 12/31/9999
  if (day_number < kFirst || day_number > kLast) return Date{};
  long a = day_number + 32044;
  long b = (4 * a + 3) / 146097;
  long c = a - 146097 * b / 4;
  long d = (4 * c + 3) / 1461;
  long e = c - 1461 * d / 4;
  long m = (5 * e + 2) / 153;
  Date date;
  date.day = static_cast<int>(e - (153 * m + 2) / 5 + 1);
  date.month = static_cast<int>(m + 3 - 12 * (m / 10));
  date.year = static_cast<int>(100 * b + d - 4800 + m / 10);
  return date;
}

Date AddDays(const Date& date, long days) {
  if (!IsValidDate(date)) return date;
  constexpr long kSpan = 4000000;  // more than the whole calendar; keeps the sum in range
  if (days > kSpan || days < -kSpan) return Date{};
  return DateFromDayNumber(DayNumber(date) + days);
}

Date AddMonths(const Date& date, int months) {
  if (!IsValidDate(date)) return date;
  constexpr int kSpan = 12 * kMaxYear;
  if (months > kSpan || months < -kSpan) return Date{};
  long index = static_cast<long>(date.year) * 12 + (date.month - 1) + months;
  Date out;
  out.year = static_cast<int>(index >= 0 ? index / 12 : (index - 11) / 12);
  out.month = static_cast<int>(index - static_cast<long>(out.year) * 12) + 1;
  out.day = std::min(date.day, LastDayOfMonth(out.month, out.year));
  return Bounded(out);
}

Date OneYearAfter(const Date& date) {
  return AddMonths(date, 12);
}
Date OneYearBefore(const Date& date) {
  return AddMonths(date, -12);
}

Date EndOfMonth(const Date& date) {
  if (!IsValidDate(date)) return date;
  return Date{date.month, LastDayOfMonth(date.month, date.year), date.year};
}

Date Today() {
  time_t now = ::time(nullptr);
  struct tm local;
  if (::localtime_r(&now, &local) == nullptr) return Date{};
  return Date{local.tm_mon + 1, local.tm_mday, local.tm_year + 1900};
}

}  // namespace nv
