#include "store/schedule/accounting_year.h"

#include <algorithm>
#include <cassert>
#include <climits>
#include <string_view>

#include "base/ascii.h"
#include "base/profile.h"
#include "base/str_format.h"

namespace nv {
namespace {

constexpr char kCurrentYearKey[] = "CurrentYear";
constexpr char kPeriodWeightKey[] = "PeriodWeight";
constexpr std::string_view kPrevYearPrefix = "PrevYear";

std::string SectionName(char letter) {
  return StrPrintf("Custom Accounting Year %c", letter);
}

// As atoi does: blanks, a sign and the digits after them; held to the range of int.
int LeadingNumber(std::string_view text) {
  size_t i = 0;
  while (i < text.size() && (text[i] == ' ' || text[i] == '\t')) ++i;
  bool negative = false;
  if (i < text.size() && (text[i] == '-' || text[i] == '+')) negative = text[i++] == '-';
  long long value = 0;
  for (; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i) {
    value = std::min<long long>(value * 10 + (text[i] - '0'), 1LL + INT_MAX);
  }
  if (negative) value = -value;
  return static_cast<int>(std::clamp<long long>(value, INT_MIN, INT_MAX));
}

bool HasDigit(std::string_view text) {
  return std::any_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

std::optional<Date> ParseValidDate(std::string_view text) {
  std::optional<Date> date = ParseDisplayDate(text);
  if (!date || !IsValidDate(*date)) return std::nullopt;
  return date;
}

// The whole value of a key; empty when it is missing.
std::string ReadWholeValue(const std::string& file, const std::string& section,
                           const std::string& key) {
  return ReadProfileString(file, section, key, "", std::string::npos);
}

// One year value: "END" or "END*COUNT:PERIOD,PERIOD,...". Period ends count from
// `start_reference`; the table ends before the first period that is unreadable or does not
// end after the one before it, so that every period has at least one day.
std::optional<CustomAccountingYear> ParseYearValue(std::string_view value,
                                                   std::optional<Date> start_reference) {
  const size_t star = value.find('*');
  std::optional<Date> end = ParseValidDate(value.substr(0, star));
  if (!end) return std::nullopt;
  CustomAccountingYear year;
  year.end = *end;
  if (star == std::string_view::npos) return year;

  std::string_view rest = value.substr(star + 1);
  if (!start_reference) start_reference = OneYearBefore(*end);
  if (!IsValidDate(*start_reference)) return year;  // no period can be counted
  const size_t colon = rest.find(':');
  const std::string_view count = rest.substr(0, colon);
  year.period_count = HasDigit(count) ? LeadingNumber(count) : kDefaultPeriodCount;
  year.period_ends.emplace();
  if (colon == std::string_view::npos) return year;

  const long start = DayNumber(*start_reference);
  std::string_view periods = rest.substr(colon + 1);
  int32_t last = 0;
  while (true) {
    const size_t comma = periods.find(',');
    std::optional<Date> period_end = ParseValidDate(periods.substr(0, comma));
    if (!period_end) break;
    const long days = DayNumber(*period_end) - start;
    if (days <= last) break;
    last = static_cast<int32_t>(days);
    year.period_ends->push_back(last);
    if (comma == std::string_view::npos) break;
    periods.remove_prefix(comma + 1);
  }
  return year;
}

// The numbers N of the keys "PrevYear%3.3d" that a read can find, from `largest` down to 1.
std::vector<int> PreviousYearNumbers(const std::vector<std::string>& keys) {
  int largest = 0;
  for (const std::string& key : keys) {
    if (key.compare(0, kPrevYearPrefix.size(), kPrevYearPrefix) == 0) {
      largest = std::max(largest, LeadingNumber(std::string_view(key).substr(8)));
    }
  }
  std::vector<int> numbers;
  for (const std::string& key : keys) {
    if (key.size() <= kPrevYearPrefix.size() ||
        !EqualIgnoringCase(std::string_view(key).substr(0, 8), kPrevYearPrefix)) {
      continue;
    }
    const int n = LeadingNumber(std::string_view(key).substr(8));
    if (n >= 1 && n <= largest && EqualIgnoringCase(key, StrPrintf("PrevYear%3.3d", n))) {
      numbers.push_back(n);
    }
  }
  std::sort(numbers.begin(), numbers.end(), std::greater<int>());
  numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
  return numbers;
}

}  // namespace

Date CustomAccountingYear::StartReference() const {
  return previous_ != nullptr ? previous_->end : OneYearBefore(end);
}

CustomAccountingYear& AccountingYearChain::Append(const CustomAccountingYear& year) {
  auto added = std::make_unique<CustomAccountingYear>();
  added->end = year.end;
  added->period_ends = year.period_ends;
  added->period_count = year.period_count;
  added->period_weight = year.period_weight;
  if (!years_.empty()) {
    added->previous_ = years_.back().get();
    years_.back()->next_ = added.get();
  }
  years_.push_back(std::move(added));
  return *years_.back();
}

void AccountingYearChain::set_current(const CustomAccountingYear* year) {
  assert(year == nullptr || std::any_of(years_.begin(), years_.end(),
                                        [year](const auto& own) { return own.get() == year; }));
  current_ = year;
}

std::optional<AccountingYearChain> LoadCustomAccountingYear(const std::string& file, char letter) {
  const std::string section = SectionName(letter);
  const std::vector<std::string> keys = ListProfileKeys(file, section);
  if (std::find(keys.begin(), keys.end(), kCurrentYearKey) == keys.end()) return std::nullopt;

  const int weight =
      EqualIgnoringCase(ReadProfileString(file, section, kPeriodWeightKey, ""), "DAYS")
          ? kPeriodsByDays
          : kEqualPeriods;
  AccountingYearChain chain;
  const CustomAccountingYear* last = nullptr;
  // Each year read is linked after the one read before it and counts its periods from it.
  auto read = [&](const std::string& key) -> const CustomAccountingYear* {
    const std::string value = ReadWholeValue(file, section, key);
    std::optional<Date> start;
    if (last != nullptr) start = last->end;
    std::optional<CustomAccountingYear> year = ParseYearValue(value, start);
    if (!year) return nullptr;
    year->period_weight = weight;
    last = &chain.Append(*year);
    return last;
  };

  for (int n : PreviousYearNumbers(keys)) read(StrPrintf("PrevYear%3.3d", n));
  const CustomAccountingYear* last_previous = last;
  const CustomAccountingYear* current = read(kCurrentYearKey);
  const CustomAccountingYear* first_next = nullptr;
  for (int n = 1;; ++n) {
    const std::string key = StrPrintf("NextYear%3.3d", n);
    if (TrimBlanks(ReadWholeValue(file, section, key)).empty()) break;
    const CustomAccountingYear* year = read(key);
    if (first_next == nullptr) first_next = year;
  }
  if (current == nullptr) current = last_previous != nullptr ? last_previous : first_next;
  if (current == nullptr) return std::nullopt;
  chain.set_current(current);
  return chain;
}

std::string FormatAccountingYear(const CustomAccountingYear& year) {
  std::string value = FormatDisplayDate(year.end);
  if (!year.period_ends) return value;
  value += StrPrintf("*%d:", year.period_count);
  const Date start = year.StartReference();
  for (size_t i = 0; i < year.period_ends->size(); ++i) {
    if (i > 0) value += ',';
    value += FormatDisplayDate(AddDays(start, (*year.period_ends)[i]));
  }
  return value;
}

bool SaveCustomAccountingYear(const std::string& file, char letter,
                              const AccountingYearChain* chain) {
  const std::string section = SectionName(letter);
  bool ok = DeleteProfileSection(file, section);
  if (chain == nullptr || chain->current() == nullptr) return ok;
  const CustomAccountingYear& current = *chain->current();
  auto write = [&](const std::string& key, const std::string& value) {
    ok = WriteProfileString(file, section, key, value) && ok;
  };
  write(kPeriodWeightKey, current.period_weight == kPeriodsByDays ? "Days" : "Equal");
  write(kCurrentYearKey, FormatAccountingYear(current));
  int n = 1;
  for (const CustomAccountingYear* y = current.previous(); y != nullptr; y = y->previous()) {
    write(StrPrintf("PrevYear%3.3d", n++), FormatAccountingYear(*y));
  }
  n = 1;
  for (const CustomAccountingYear* y = current.next(); y != nullptr; y = y->next()) {
    write(StrPrintf("NextYear%3.3d", n++), FormatAccountingYear(*y));
  }
  return ok;
}

Date MoveDateByPeriods(const Date& date, int years, int periods, const AccountingYearChain* chain) {
  Date moved = date;
  for (; years > 0 && IsValidDate(moved); --years) moved = OneYearAfter(moved);
  for (; years < 0 && IsValidDate(moved); ++years) moved = OneYearBefore(moved);

  const CustomAccountingYear* year = chain != nullptr ? chain->first() : nullptr;
  while (periods > 0 && IsValidDate(moved) && year != nullptr && year->period_ends &&
         !year->period_ends->empty()) {
    const std::vector<int32_t>& ends = *year->period_ends;
    const long start = DayNumber(year->StartReference());
    const long days = DayNumber(moved) - start;
    const auto period = std::lower_bound(ends.begin(), ends.end(), days);
    if (moved > year->end || start == 0 || period == ends.end()) {
      year = year->next();
      continue;
    }
    const size_t first = static_cast<size_t>(period - ends.begin());
    const size_t k = std::min(static_cast<size_t>(periods), ends.size() - first);
    const int32_t before = first == 0 ? 0 : ends[first - 1];
    moved = AddDays(moved, ends[first + k - 1] - before);
    periods -= static_cast<int>(k);
  }
  if (periods != 0 && IsValidDate(moved)) moved = AddMonths(moved, periods);
  return moved;
}

}  // namespace nv
