// Tab-separated text fields, the form of the company and asset records inside their block
// chains. Every field is followed by one tab (byte 9); the record ends at "END" or at the
// end of the data, and the data ends at the first zero byte (the rest of the last block).
//
// Writing: texts are trimmed and cut to their width keeping their last characters; a tab or
// zero byte inside a text would split or end the record, so it is written as a blank.
// Numbers are decimal, cut the same way. Amounts are "%.*f" with 0 decimals for a company
// that rounds dollars, else 2, in at most 12 characters (FormatRecordAmount). Dates are
// "%2.2d%2.2d%4.4d" (month, day, year), the empty date an empty field.
//
// Reading is forgiving, as the records come from other programs: a missing field reads as
// empty, a number reads as far as it has digits, anything that is not an amount as 0.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "base/date.h"

namespace nv {

inline constexpr char kFieldSeparator = '\t';
inline constexpr size_t kMaxAmountChars = 12;

// Trimmed, cut to `width` keeping the last characters, trimmed again (the cut may leave a
// blank in front).
std::string FitText(std::string_view text, size_t width);

// A text as the writer stores it: tabs and zero bytes as blanks, then FitText.
std::string RecordText(std::string_view text, size_t width);
// The last character of the trimmed field, a blank when it is empty.
char FieldChar(std::string_view field);

// "%.*f" with 0 or 2 decimals. An amount that does not fit in 12 characters is written with
// fewer decimals, down to none (from a billion dollars on, cents and then dimes give way);
// one that still does not fit is written as the largest amount of its sign that fits,
// 999999999999 or -99999999999. Keeping the last 12 characters instead would turn
// 1000000000000.00 into 000000000.00, a silent loss of the whole amount; this keeps the
// amount as near as the field allows. Non-finite amounts are written as 0.
std::string FormatRecordAmount(double amount, bool round_dollars);
// The decimal number at the start of the text (blanks before it allowed); "NAN", "-NAN",
// infinities and texts without a number read as 0.
double ParseRecordAmount(std::string_view text);
// The integer at the start of the text (blanks and a sign allowed), 0 without digits; held
// to the int range. *end (when given) is set past the last character read.
[[nodiscard]] int ParseRecordInt(std::string_view text, size_t* end = nullptr);
// The record date form. A field of eight digits that names no valid date (02/30, month 13)
// keeps its numbers rather than being lost; anything else that is not a date reads as the
// empty date.
Date ReadRecordDate(std::string_view text);

class RecordFieldWriter {
 public:
  void Text(std::string_view text, size_t width) { Raw(RecordText(text, width)); }
  // A one-character field; a blank (or a tab or zero byte) is an empty field.
  void Char(char c);
  // "%d", cut to `width` keeping the last digits.
  void Int(long value, size_t width);
  void Amount(double amount, bool round_dollars);
  void Date(const nv::Date& date);
  // A field written as it is; the caller makes sure it holds no tab or zero byte.
  void Raw(std::string_view text);
  void Empty(int count = 1);
  // Fields already written by another writer.
  void Append(std::string_view fields) { bytes_.append(fields); }

  const std::string& bytes() const { return bytes_; }
  std::string Take() { return std::move(bytes_); }

 private:
  std::string bytes_;
};

// Reads fields in order from a view of the record bytes; the view must outlive the reader.
class RecordFieldReader {
 public:
  // The data ends at its first zero byte.
  explicit RecordFieldReader(std::string_view data);

  [[nodiscard]] bool AtEnd() const { return pos_ >= data_.size(); }
  // The next field as it stands; empty at the end of the data.
  std::string_view Next();
  void Skip(int count);

  std::string Text(size_t width) { return FitText(Next(), width); }
  char Char() { return FieldChar(Next()); }
  [[nodiscard]] int Int() { return ParseRecordInt(Next()); }
  double Amount() { return ParseRecordAmount(Next()); }
  nv::Date Date() { return ReadRecordDate(Next()); }

 private:
  std::string_view data_;
  size_t pos_ = 0;
};

}  // namespace nv
