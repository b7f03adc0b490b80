#include "base/money.h"

#include <charconv>
#include <cmath>
#include <cstdlib>

#include "base/ascii.h"
#include "base/str_format.h"

namespace nv {
namespace {

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

// Digits with "," between them and an optional fraction, copied without the commas into
// *plain. Commas must stand between digits of the whole part.
bool UnsignedAmount(std::string_view s, std::string* plain) {
  size_t i = 0;
  bool digits = false;
  while (i < s.size() && (IsDigit(s[i]) || s[i] == ',')) {
    if (s[i] == ',') {
      if (!digits || i + 1 >= s.size() || !IsDigit(s[i + 1])) return false;
    } else {
      *plain += s[i];
      digits = true;
    }
    ++i;
  }
  if (i < s.size() && s[i] == '.') {
    *plain += '.';
    ++i;
    while (i < s.size() && IsDigit(s[i])) {
      *plain += s[i++];
      digits = true;
    }
  }
  return digits && i == s.size();
}

}  // namespace

double RoundDollars(double amount) {
  return std::round(amount);
}

std::string FixedDecimals(double amount, int decimals) {
  // As "%.*f" writes it (to_chars promises the same digits), without printf's parsing.
  char buffer[400];  // the largest double has 309 digits before the point
  const std::to_chars_result r =
      std::to_chars(buffer, buffer + sizeof buffer, amount, std::chars_format::fixed, decimals);
  return r.ec == std::errc() ? std::string(buffer, r.ptr) : StrPrintf("%.*f", decimals, amount);
}

std::string FormatMoney(double amount, bool round_dollars) {
  if (!std::isfinite(amount)) amount = 0;
  std::string text =
      round_dollars ? FixedDecimals(RoundDollars(amount), 0) : FixedDecimals(amount, 2);
  if (text == "-0" || text == "-0.00") text.erase(0, 1);
  return text;
}

std::optional<double> ParseMoney(std::string_view text) {
  text = TrimBlanks(text);
  bool negative = false;
  if (text.size() >= 2 && text.front() == '(' && text.back() == ')') {
    negative = true;
    text = TrimBlanks(text.substr(1, text.size() - 2));
  } else if (!text.empty() && (text.front() == '-' || text.front() == '+')) {
    negative = text.front() == '-';
    text.remove_prefix(1);
  }
  if (!text.empty() && text.front() == '$') text.remove_prefix(1);
  std::string plain;
  if (!UnsignedAmount(text, &plain)) return std::nullopt;
  double value = std::strtod(plain.c_str(), nullptr);
  if (!std::isfinite(value)) return std::nullopt;
  return negative ? -value : value;
}

}  // namespace nv
