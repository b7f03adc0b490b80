// The BNA Next Dimension report: a text file of one asset per line, its columns separated
// by tabs or by commas. The importer knows nothing else of its layout; the profile says
// which column feeds which field.
//
//   lines     end with LF; a CR before the LF is dropped; a last line without LF counts
//   comments  a line whose first character is "*": shown in the grid, never split or
//             imported, but counted by the line numbers
//   tabs      (file type 1, and any type other than 2) fields between tabs; blanks at the
//             start of a field dropped; a field of two or more characters that begins and
//             ends with a double quote loses both
//   commas    (file type 2) blanks at the start of a field dropped; a field that begins
//             with a double quote runs to its closing quote, two quotes in a row standing
//             for one; text after the closing quote, up to the comma, is kept; any other
//             field runs to the next comma; a field of two or more characters that still
//             begins and ends with a double quote loses both
//   both      nothing after the last separator is no column ("a,b," has two); a line with
//             no text has none
//
// Amounts: blanks before them skipped, a leading "(" makes them negative, commas dropped,
// and a text without a decimal point is divided by ten to the power of the run's implied
// decimals ("dollar decimal places").
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nv {

inline constexpr int kBnaTabSeparated = 1;
inline constexpr int kBnaCommaSeparated = 2;
inline constexpr char kBnaCommentMark = '*';

inline bool IsBnaCommentLine(std::string_view line) {
  return !line.empty() && line.front() == kBnaCommentMark;
}

// One source line split into its column texts. Holds its own copy of the texts.
class ColumnClass {
 public:
  ColumnClass(std::string_view line, int file_type);

  int Count() const { return static_cast<int>(ends_.size()); }
  // The text of column i; none for an index outside 0 to Count() - 1.
  std::optional<std::string_view> Column(int i) const;

 private:
  std::string texts_;           // every column's text, one after the other
  std::vector<uint32_t> ends_;  // where each column's text ends in texts_
};

// One line of the report. `number` counts every line from 1, comment lines included.
struct BnaSourceLine {
  int32_t number = 0;
  std::string_view text;  // without its line end; points into the bytes read
  bool comment = false;
};

// Walks the lines of a report held in memory. REQUIRES: bytes outlive the reader.
class BnaSourceLines {
 public:
  explicit BnaSourceLines(std::string_view bytes) : rest_(bytes) {}
  // The next line; false after the last.
  bool Next(BnaSourceLine* line);

 private:
  std::string_view rest_;
  int32_t number_ = 0;
};

// What the source grid measures of a report for its scroll ranges, column widths and the
// import's meter.
struct BnaSourceMeasure {
  int32_t data_lines = 0;       // lines that are not comments
  int32_t columns = 0;          // the largest column count of any data line
  std::vector<int32_t> widths;  // the longest text of each column
  int32_t total_width = 0;      // the widths plus one per column
  int32_t longest_line = 0;     // the longest line, comments included
};

BnaSourceMeasure MeasureBnaSource(std::string_view bytes, int file_type);

// The amount a report's text stands for (rules above). Text without a number reads as 0.
double BnaAmount(std::string_view text, int implied_decimals);

}  // namespace nv
