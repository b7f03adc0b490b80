#include "import/bna/bna_source.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace nv {
namespace {

void SkipSpaces(std::string_view line, size_t* i) {
  while (*i < line.size() && line[*i] == ' ') ++*i;
}

bool Enclosed(std::string_view text) {
  return text.size() > 1 && text.front() == '"' && text.back() == '"';
}

}  // namespace

ColumnClass::ColumnClass(std::string_view line, int file_type) {
  texts_.reserve(line.size());
  const char separator = file_type == kBnaCommaSeparated ? ',' : '\t';
  size_t i = 0;
  while (i < line.size()) {
    SkipSpaces(line, &i);
    size_t start = texts_.size();
    if (file_type == kBnaCommaSeparated && i < line.size() && line[i] == '"') {
      ++i;
      while (i < line.size()) {
        if (line[i] == '"') {
          if (i + 1 < line.size() && line[i + 1] == '"') {
            texts_ += '"';
            i += 2;
            continue;
          }
          ++i;
          break;
        }
        texts_ += line[i++];
      }
    }
    size_t end = std::min(line.find(separator, i), line.size());
    texts_.append(line.substr(i, end - i));
    if (Enclosed(std::string_view(texts_).substr(start))) {
      texts_.pop_back();
      texts_.erase(start, 1);
    }
    ends_.push_back(static_cast<uint32_t>(texts_.size()));
    i = end + 1;  // past the separator; past the end when there was none
  }
}

std::optional<std::string_view> ColumnClass::Column(int i) const {
  if (i < 0 || i >= Count()) return std::nullopt;
  size_t begin = i == 0 ? 0 : ends_[i - 1];
  return std::string_view(texts_).substr(begin, ends_[i] - begin);
}

bool BnaSourceLines::Next(BnaSourceLine* line) {
  if (rest_.empty()) return false;
  size_t lf = rest_.find('\n');
  std::string_view text = rest_.substr(0, lf);
  rest_ = lf == std::string_view::npos ? std::string_view() : rest_.substr(lf + 1);
  if (lf != std::string_view::npos && !text.empty() && text.back() == '\r') text.remove_suffix(1);
  if (number_ < INT32_MAX) ++number_;
  line->number = number_;
  line->text = text;
  line->comment = IsBnaCommentLine(text);
  return true;
}

BnaSourceMeasure MeasureBnaSource(std::string_view bytes, int file_type) {
  BnaSourceMeasure m;
  BnaSourceLines lines(bytes);
  BnaSourceLine line;
  while (lines.Next(&line)) {
    m.longest_line = std::max(m.longest_line, static_cast<int32_t>(line.text.size()));
    if (line.comment) continue;
    ColumnClass columns(line.text, file_type);
    if (columns.Count() > m.columns) {
      m.columns = columns.Count();
      m.widths.resize(columns.Count(), 0);
    }
    for (int c = 0; c < columns.Count(); ++c) {
      m.widths[c] = std::max(m.widths[c], static_cast<int32_t>(columns.Column(c)->size()));
    }
    ++m.data_lines;
  }
  for (int32_t w : m.widths) m.total_width += w + 1;
  return m;
}

double BnaAmount(std::string_view text, int implied_decimals) {
  size_t i = 0;
  SkipSpaces(text, &i);
  bool negative = i < text.size() && text[i] == '(';
  if (negative) ++i;
  // The number as strtod would read it, with the commas taken out first.
  std::string digits;
  bool seen_point = false;
  for (; i < text.size(); ++i) {
    char c = text[i];
    if (c == ',') continue;
    if (digits.empty() && (c == '-' || c == '+')) {
      if (c == '-') digits += c;
      continue;
    }
    if (c == '.' && !seen_point) {
      seen_point = true;
    } else if (c < '0' || c > '9') {
      break;
    }
    digits += c;
  }
  double value = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), value);
  if (text.find('.') == std::string_view::npos && implied_decimals > 0) {
    value /= std::pow(10.0, implied_decimals);
  }
  return negative ? -value : value;
}

}  // namespace nv
