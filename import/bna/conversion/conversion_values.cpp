#include "import/bna/conversion/conversion_values.h"

#include <cmath>
#include <cstdlib>
#include <vector>

#include "base/str_format.h"

namespace nv::bna {
namespace {

constexpr long long kIntegerLimit = 1'000'000'000'000'000LL;  // 10^15

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}
bool IsBlank(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

double Finite(double value) {
  return std::isfinite(value) ? value : 0.0;
}

}  // namespace

double ReadNumber(std::string_view text) {
  size_t i = 0;
  while (i < text.size() && IsBlank(text[i])) ++i;
  const size_t start = i;
  if (i < text.size() && (text[i] == '+' || text[i] == '-')) ++i;
  size_t digits = 0;
  while (i < text.size() && IsDigit(text[i])) ++i, ++digits;
  if (i < text.size() && text[i] == '.') {
    ++i;
    while (i < text.size() && IsDigit(text[i])) ++i, ++digits;
  }
  if (digits == 0) return 0.0;
  // strtod on the checked piece alone: it reads no further than we allow.
  const std::string piece(text.substr(start, i - start));
  return Finite(std::strtod(piece.c_str(), nullptr));
}

long long ReadInteger(std::string_view text) {
  size_t i = 0;
  while (i < text.size() && IsBlank(text[i])) ++i;
  bool negative = false;
  if (i < text.size() && (text[i] == '+' || text[i] == '-')) negative = text[i++] == '-';
  long long value = 0;
  for (; i < text.size() && IsDigit(text[i]); ++i) {
    if (value < kIntegerLimit) value = value * 10 + (text[i] - '0');
  }
  if (value > kIntegerLimit) value = kIntegerLimit;
  return negative ? -value : value;
}

int ReadInt(std::string_view text) {
  const long long value = ReadInteger(text);
  if (value > 2'000'000'000LL) return 2'000'000'000;
  if (value < -2'000'000'000LL) return -2'000'000'000;
  return static_cast<int>(value);
}

std::string FormatAmount(double amount) {
  std::string text = StrPrintf("%.2f", Finite(amount));
  if (text == "-0.00") text = "0.00";
  return text;
}

std::string FormatAmountWidth10(double amount) {
  std::string text = StrPrintf("%10.2f", Finite(amount));
  if (const size_t at = text.find("-0.00"); at != std::string::npos && at + 5 == text.size()) {
    text[at] = ' ';
  }
  return text;
}

std::string FormatLife(long long years, long long months) {
  if (months == 0) return StrPrintf("%2lld", years);
  return StrPrintf("%2lld-%lld", years, months);
}

std::string FormatLifeOfMonths(long long months) {
  return FormatLife(months / 12, months % 12);
}

Date ReadDateText(std::string_view text) {
  size_t i = 0;
  while (i < text.size() && IsBlank(text[i])) ++i;
  if (i < text.size() && text[i] == '"') ++i;
  int parts[3] = {0, 0, 0};
  for (int part = 0; part < 3; ++part) {
    if (part > 0) {
      if (i >= text.size() || text[i] != '/') return Date{};
      ++i;
    }
    size_t digits = 0;
    for (; i < text.size() && IsDigit(text[i]) && digits < 4; ++i, ++digits) {
      parts[part] = parts[part] * 10 + (text[i] - '0');
    }
    if (digits == 0) return Date{};
  }
  Date date{parts[0], parts[1], ExpandTwoDigitYear(parts[2])};
  if (date.month == 0 || date.day == 0 || !IsValidDate(date)) return Date{};
  return date;
}

std::string FormatDateText(const Date& date) {
  return FormatDisplayDate(date);
}

double ReadBnaAmount(std::string_view text, int implied_decimals) {
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  const bool negative = !text.empty() && text.front() == '(';
  if (negative) text.remove_prefix(1);
  std::string plain;
  for (char c : text) {
    if (c != ',') plain += c;
  }
  double amount = ReadNumber(plain);
  if (plain.find('.') == std::string::npos && implied_decimals > 0) {
    amount /= std::pow(10.0, implied_decimals > 15 ? 15 : implied_decimals);
  }
  return negative ? -amount : amount;
}

std::string_view WithoutEnclosingQuotes(std::string_view text) {
  if (text.size() >= 2 && text.front() == '"' && text.back() == '"') {
    return text.substr(1, text.size() - 2);
  }
  return text;
}

bool MatchTablePattern(std::string_view pattern, std::string_view text) {
  // "*" is "?" followed by a run of any length; the run is matched greedily, going back to
  // the last run when the rest fails, which keeps the match linear in practice and never
  // worse than the product of the two lengths.
  constexpr int kAny = -1;
  constexpr int kRun = -2;
  std::vector<int> p;
  p.reserve(pattern.size() * 2);
  for (char c : pattern) {
    if (c == '?') {
      p.push_back(kAny);
    } else if (c == '*') {
      p.push_back(kAny);
      p.push_back(kRun);
    } else {
      p.push_back(static_cast<unsigned char>(c));
    }
  }
  size_t pi = 0;
  size_t ti = 0;
  size_t run = std::string_view::npos;
  size_t run_text = 0;
  while (ti < text.size()) {
    if (pi < p.size() && (p[pi] == kAny || p[pi] == static_cast<unsigned char>(text[ti]))) {
      ++pi;
      ++ti;
    } else if (pi < p.size() && p[pi] == kRun) {
      run = pi++;
      run_text = ti;
    } else if (run != std::string_view::npos) {
      pi = run + 1;
      ti = ++run_text;
    } else {
      return false;
    }
  }
  while (pi < p.size() && p[pi] == kRun) ++pi;
  return pi == p.size();
}

}  // namespace nv::bna
