#include "store/file/record_fields.h"

#include <charconv>
#include <climits>
#include <cmath>

#include "base/ascii.h"
#include "base/money.h"
#include "base/str_format.h"

namespace nv {
namespace {

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

std::string_view LastChars(std::string_view text, size_t width) {
  return text.size() > width ? text.substr(text.size() - width) : text;
}

}  // namespace

std::string FitText(std::string_view text, size_t width) {
  return std::string(TrimBlanks(LastChars(TrimBlanks(text), width)));
}

std::string RecordText(std::string_view text, size_t width) {
  std::string clean(text);
  for (char& c : clean) {
    if (c == kFieldSeparator || c == '\0') c = ' ';
  }
  return FitText(clean, width);
}

char FieldChar(std::string_view field) {
  field = TrimBlanks(field);
  return field.empty() ? ' ' : field.back();
}

std::string FormatRecordAmount(double amount, bool round_dollars) {
  std::string text = FormatMoney(amount, round_dollars);
  for (int decimals = round_dollars ? 0 : 1; text.size() > kMaxAmountChars && decimals >= 0;
       --decimals) {
    text = decimals == 0 ? FixedDecimals(RoundDollars(amount), 0) : FixedDecimals(amount, decimals);
  }
  if (text.size() <= kMaxAmountChars) return text;
  return amount < 0 ? "-99999999999" : "999999999999";
}

double ParseRecordAmount(std::string_view text) {
  text = TrimBlanks(text);
  bool negative = false;
  if (!text.empty() && (text.front() == '-' || text.front() == '+')) {
    negative = text.front() == '-';
    text.remove_prefix(1);
  }
  // from_chars takes no sign of its own here and, unlike strtod, ignores the locale.
  if (text.empty() || text.front() == '-' || text.front() == '+') return 0;
  double value = 0;
  auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  (void)end;
  if (error != std::errc() || !std::isfinite(value)) return 0;
  return negative ? -value : value;
}

int ParseRecordInt(std::string_view text, size_t* end) {
  size_t i = 0;
  while (i < text.size() && (text[i] == ' ' || text[i] == '\t')) ++i;
  bool negative = false;
  if (i < text.size() && (text[i] == '-' || text[i] == '+')) {
    negative = text[i] == '-';
    ++i;
  }
  long long value = 0;
  for (; i < text.size() && IsDigit(text[i]); ++i) {
    if (value <= INT_MAX) value = value * 10 + (text[i] - '0');
  }
  if (end) *end = i;
  if (negative) value = -value;
  if (value > INT_MAX) return INT_MAX;
  if (value < INT_MIN) return INT_MIN;
  return static_cast<int>(value);
}

Date ReadRecordDate(std::string_view text) {
  text = TrimBlanks(text);
  if (std::optional<Date> date = ParseRecordDate(text)) return *date;
  if (text.size() != 8) return Date{};
  for (char c : text) {
    if (!IsDigit(c)) return Date{};
  }
  return Date{ParseRecordInt(text.substr(0, 2)), ParseRecordInt(text.substr(2, 2)),
              ExpandTwoDigitYear(ParseRecordInt(text.substr(4, 4)))};
}

void RecordFieldWriter::Char(char c) {
  if (c == ' ' || c == kFieldSeparator || c == '\0') {
    Empty();
  } else {
    Raw(std::string_view(&c, 1));
  }
}

void RecordFieldWriter::Int(long value, size_t width) {
  Raw(LastChars(StrPrintf("%ld", value), width));
}

void RecordFieldWriter::Amount(double amount, bool round_dollars) {
  Raw(FormatRecordAmount(amount, round_dollars));
}

void RecordFieldWriter::Date(const nv::Date& date) {
  if (date.empty()) {
    Empty();
  } else {
    Raw(FormatRecordDate(date));
  }
}

void RecordFieldWriter::Raw(std::string_view text) {
  bytes_.append(text);
  bytes_ += kFieldSeparator;
}

void RecordFieldWriter::Empty(int count) {
  for (int i = 0; i < count; ++i) bytes_ += kFieldSeparator;
}

RecordFieldReader::RecordFieldReader(std::string_view data)
    : data_(data.substr(0, data.find('\0'))) {}

std::string_view RecordFieldReader::Next() {
  if (AtEnd()) return {};
  size_t tab = data_.find(kFieldSeparator, pos_);
  if (tab == std::string_view::npos) tab = data_.size();
  std::string_view field = data_.substr(pos_, tab - pos_);
  pos_ = tab + 1;
  return field;
}

void RecordFieldReader::Skip(int count) {
  for (int i = 0; i < count; ++i) Next();
}

}  // namespace nv
