// Custom accounting years: a schedule may run on accounting years and periods of its own
// instead of the company's fiscal year. Its years form a chain, and one of them is the
// current year. They are kept in the company's settings file, one section per schedule:
//
//   [Custom Accounting Year X]
//   PeriodWeight=Days          "Days" or "Equal"; on reading "DAYS" in any case is Days
//   CurrentYear=12/31/2024*4:03/31/2024,06/30/2024,09/30/2024,12/31/2024
//   PrevYear001=12/31/2023     the year right before the current one, then 002, ...
//   NextYear001=12/31/2025     the year right after it, then 002, ...
//
// A year is its end date "%2.2d/%2.2d/%4.4d", and with a period table "*" + the period
// count + ":" + the end dates of all periods separated by ",", the last being the year's
// own end. In memory a period's end is its number of days from the year's start
// reference: the end of the previous year, or for the first year of the chain its own end
// a year back (29 February going to 28 February).
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/date.h"

namespace nv {

inline constexpr int kEqualPeriods = 1;   // "Equal"
inline constexpr int kPeriodsByDays = 2;  // "Days": periods weighted by their days
inline constexpr int kDefaultPeriodCount = 12;

class CustomAccountingYear {
 public:
  Date end;  // last day of the year
  // Days from the start reference to each period's last day, increasing; none when the
  // year has no period table.
  std::optional<std::vector<int32_t>> period_ends;
  int period_count = kDefaultPeriodCount;
  int period_weight = kEqualPeriods;

  const CustomAccountingYear* previous() const { return previous_; }
  const CustomAccountingYear* next() const { return next_; }
  // The day before the year's first day: the previous year's end, or the own end a year
  // back for a year without a previous one.
  Date StartReference() const;

 private:
  friend class AccountingYearChain;
  CustomAccountingYear* previous_ = nullptr;
  CustomAccountingYear* next_ = nullptr;
};

// Owns the years of one schedule, linked in order, and knows which one is current.
class AccountingYearChain {
 public:
  AccountingYearChain() = default;
  AccountingYearChain(AccountingYearChain&&) = default;
  AccountingYearChain& operator=(AccountingYearChain&&) = default;
  AccountingYearChain(const AccountingYearChain&) = delete;
  AccountingYearChain& operator=(const AccountingYearChain&) = delete;

  // Links a copy of `year` after the last year; returns it.
  CustomAccountingYear& Append(const CustomAccountingYear& year);

  size_t size() const { return years_.size(); }
  const CustomAccountingYear* first() const {
    return years_.empty() ? nullptr : years_.front().get();
  }
  const CustomAccountingYear* current() const { return current_; }
  // REQUIRES: `year` is one of this chain's years (or null).
  void set_current(const CustomAccountingYear* year);

 private:
  std::vector<std::unique_ptr<CustomAccountingYear>> years_;  // in chain order
  const CustomAccountingYear* current_ = nullptr;
};

// The schedule's years from the company's settings file, or none when its section has no
// "CurrentYear" key (or no year in it can be read).
std::optional<AccountingYearChain> LoadCustomAccountingYear(const std::string& settings_file,
                                                            char letter);

// Rewrites the schedule's section from the chain's current year (none: removes it). False
// when the file could not be written.
[[nodiscard]] bool SaveCustomAccountingYear(const std::string& settings_file, char letter,
                                            const AccountingYearChain* chain);

// One year as its settings value.
std::string FormatAccountingYear(const CustomAccountingYear& year);

// Moves `date` by whole years, one year at a time, then forward by `periods` periods of
// the chain's years. Without a chain, in a year without a period table, past the last year
// or for a negative number of periods, the periods are calendar months.
Date MoveDateByPeriods(const Date& date, int years, int periods, const AccountingYearChain* chain);

}  // namespace nv
