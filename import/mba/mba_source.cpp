#include "import/mba/mba_source.h"

#include <charconv>

#include "base/ascii.h"

namespace nv {
namespace {

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

// A line of blanks only; a DOS end-of-file mark (Ctrl-Z) counts as blank too, so that the
// mark some old exports end with is not taken for an asset.
bool IsBlankLine(std::string_view text) {
  for (char c : text) {
    if (c != ' ' && c != '\t' && c != '\r' && c != '\x1a') return false;
  }
  return true;
}

// The digits at the start of `text`, saturating far above any date or life.
int LeadingDigits(std::string_view text, size_t* used) {
  int value = 0;
  size_t i = 0;
  for (; i < text.size() && IsDigit(text[i]); ++i) {
    if (value < 100000) value = value * 10 + (text[i] - '0');
  }
  *used = i;
  return value;
}

// Reads "%d" as scanf would at the start of `text` (blanks are gone by now): an optional
// sign and digits. False, with nothing used, when no digit follows.
bool ScanInt(std::string_view text, size_t* at, int* value) {
  size_t i = *at;
  bool negative = false;
  if (i < text.size() && (text[i] == '-' || text[i] == '+')) negative = text[i++] == '-';
  size_t used = 0;
  const int magnitude = LeadingDigits(text.substr(i), &used);
  if (used == 0) return false;
  *value = negative ? -magnitude : magnitude;
  *at = i + used;
  return true;
}

bool AllDigits(std::string_view text) {
  for (char c : text) {
    if (!IsDigit(c)) return false;
  }
  return true;
}

int TwoDigits(std::string_view text) {
  return (text[0] - '0') * 10 + (text[1] - '0');
}

Date Checked(Date date) {
  if (date.year >= 0 && date.year < 100) date.year = ExpandTwoDigitYear(date.year);
  return IsValidDate(date) ? date : Date{};
}

}  // namespace

std::vector<MbaSourceLine> SplitMbaLines(std::string_view bytes) {
  std::vector<MbaSourceLine> lines;
  long number = 0;
  size_t at = 0;
  while (at < bytes.size()) {
    size_t end = bytes.find('\n', at);
    if (end == std::string_view::npos) end = bytes.size();
    std::string_view text = bytes.substr(at, end - at);
    at = end + 1;
    ++number;
    if (!text.empty() && text.back() == '\r') text.remove_suffix(1);
    if (IsBlankLine(text)) continue;
    lines.push_back({number, text});
  }
  return lines;
}

std::string_view MbaField(std::string_view text, MbaColumn column) {
  if (column.offset >= text.size()) return {};
  return text.substr(column.offset, column.size);
}

double ParseMbaAmount(std::string_view text) {
  text = TrimBlanks(text);
  // The longest start of the text that is a decimal number.
  size_t i = 0;
  bool negative = false;
  if (i < text.size() && (text[i] == '-' || text[i] == '+')) negative = text[i++] == '-';
  const size_t from = i;
  size_t digits = 0;
  for (; i < text.size() && IsDigit(text[i]); ++i) ++digits;
  if (i < text.size() && text[i] == '.') {
    for (++i; i < text.size() && IsDigit(text[i]); ++i) ++digits;
  }
  if (digits == 0) return 0;
  double value = 0;
  // Decimal digits and one point: from_chars reads them whatever the locale says.
  std::from_chars(text.data() + from, text.data() + i, value);
  return negative ? -value : value;
}

Date ParseMbaDate(std::string_view text) {
  std::string date;
  for (char c : text) {
    if (c == ' ' || c == '\t') continue;
    date += c == '-' ? '/' : c;
  }
  if (date.find('/') != std::string::npos) {
    // Month, day and year as "%d/%d/%d" reads them: what is not there stays 0.
    Date read;
    int* parts[] = {&read.month, &read.day, &read.year};
    size_t at = 0;
    for (size_t k = 0; k < 3; ++k) {
      if (k > 0 && (at >= date.size() || date[at++] != '/')) break;
      if (!ScanInt(date, &at, parts[k])) break;
    }
    if (read.month == 0 || read.day == 0) return {};
    return Checked(read);
  }
  if (!AllDigits(date)) return {};
  if (date.size() == 6) {
    return Checked({TwoDigits(date), TwoDigits(date.substr(2)), TwoDigits(date.substr(4))});
  }
  if (date.size() == 8) {
    return Checked({TwoDigits(date), TwoDigits(date.substr(2)),
                    TwoDigits(date.substr(4)) * 100 + TwoDigits(date.substr(6))});
  }
  return {};
}

MbaAssetId SplitMbaAssetId(std::string_view id) {
  id = TrimBlanks(id);
  MbaAssetId split;
  split.location = std::string(id.substr(0, 2));
  if (id.size() > 2) split.category = std::string(id.substr(2, 2));
  if (id.size() <= 4) return split;

  // Walk back from the end while the tail still fits: digits with at most one point, at
  // most 2 digits after it and 6 before it. Each character added at the front can only
  // break a rule, never mend one, so the first misfit ends the tail.
  size_t start = id.size();
  bool point = false;
  bool digit = false;
  int run = 0;  // digits since the end, or since the point
  while (start > 4) {
    const char c = id[start - 1];
    if (IsDigit(c)) {
      if (run == 6) break;
      ++run;
      digit = true;
    } else if (c == '.' && !point && run <= 2) {
      point = true;
      run = 0;
    } else {
      break;
    }
    --start;
  }
  if (!digit) start = id.size();  // a lone point is no number
  split.middle = std::string(id.substr(4, start - 4));
  split.number_text = std::string(id.substr(start));
  split.number = ParseMbaAmount(split.number_text);
  size_t used = 0;
  const std::string_view whole = split.number_text;
  split.whole_number = LeadingDigits(whole, &used);
  return split;
}

MbaLine ParseMbaLine(std::string_view text) {
  MbaLine line;
  if (!text.empty()) line.status = text[0];
  line.id = std::string(MbaField(text, kMbaAssetId));
  line.description = std::string(TrimBlanks(MbaField(text, kMbaDescription)));
  line.cost = ParseMbaAmount(MbaField(text, kMbaCost));
  line.acquired = ParseMbaDate(MbaField(text, kMbaAcquired));
  line.disposed = ParseMbaDate(MbaField(text, kMbaDisposed));
  const std::string_view flag = MbaField(text, kMbaMidQuarter);
  line.mid_quarter = !flag.empty() && flag[0] != ' ';
  line.asset_account = std::string(TrimBlanks(MbaField(text, kMbaAssetAccount)));
  line.accumulated_account = std::string(TrimBlanks(MbaField(text, kMbaAccumulatedAccount)));
  line.expense_account = std::string(TrimBlanks(MbaField(text, kMbaExpenseAccount)));
  for (size_t b = 0; b < kMbaBooks; ++b) {
    const size_t offset = kMbaFirstBook + b * kMbaBookSize;
    if (offset >= text.size()) break;
    const std::string_view block = text.substr(offset, kMbaBookSize);
    MbaBookBlock& book = line.books[b];
    const std::string_view method = MbaField(block, kMbaBookMethod);
    if (!method.empty()) book.method = method[0];
    size_t used = 0;
    book.life = LeadingDigits(TrimBlanks(MbaField(block, kMbaBookLife)), &used);
    book.basis = ParseMbaAmount(MbaField(block, kMbaBookBasis));
    book.salvage = ParseMbaAmount(MbaField(block, kMbaBookSalvage));
    book.accumulated = ParseMbaAmount(MbaField(block, kMbaBookAccumulated));
  }
  return line;
}

std::vector<MbaRecord> ReadMbaSource(std::string_view bytes) {
  std::vector<MbaRecord> records;
  for (const MbaSourceLine& source : SplitMbaLines(bytes)) {
    MbaRecord record;
    record.line_number = source.number;
    record.line = ParseMbaLine(source.text);
    record.id = SplitMbaAssetId(record.line.id);
    records.push_back(std::move(record));
  }
  return records;
}

}  // namespace nv
