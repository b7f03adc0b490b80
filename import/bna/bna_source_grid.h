// The source grid of the BNA dialog: the report chosen for an import, measured and laid
// out in character cells so that the user can see which column holds what.
//
// Layout, in characters from the left edge of the data area:
//
//   column c starts at the sum of (width + 1) of the columns before it and is as wide as
//   its longest text; a vertical rule follows each column, in the one extra cell;
//   a horizontal position of h shifts everything h cells to the left.
//
// Four lines are shown from the vertical position, headed by their line numbers in the
// file (comment lines counted). Split lines show each column's text in its cells; comment
// lines show the raw line. The vertical range runs over the data lines only, as the
// import's meter does, so it is 0 to data lines - 1.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "import/bna/bna_source.h"

namespace nv {

inline constexpr int kBnaGridLines = 4;

// One line of the grid as shown.
struct BnaGridLine {
  int32_t number = 0;                // in the file, from 1
  bool comment = false;              // shown raw, not split
  std::string text;                  // the raw line
  std::vector<std::string> columns;  // the split texts; empty for a comment line
};

class BnaSourceGrid {
 public:
  // Reads the report at `path` and measures it for `file_type`; no path, or a file that
  // cannot be read, leaves the grid empty. Both scroll positions go back to 0.
  // Returns false only when a path was given and could not be read.
  bool Load(const std::optional<std::string>& path, int file_type);
  // The same for a report already in memory.
  void SetSource(std::string bytes, int file_type);
  void Clear();

  bool empty() const { return lines_.empty(); }
  int file_type() const { return file_type_; }
  const BnaSourceMeasure& measure() const { return measure_; }
  int32_t line_count() const { return static_cast<int32_t>(lines_.size()); }
  int32_t comment_lines() const { return line_count() - measure_.data_lines; }

  // Scrolling. Positions are held within their ranges.
  int32_t vertical_position() const { return vertical_; }
  int32_t horizontal_position() const { return horizontal_; }
  int32_t VerticalMaximum() const;
  // The largest horizontal position when `visible` cells fit in the window; 0 when
  // everything fits.
  int32_t HorizontalMaximum(int32_t visible) const;
  void SetVerticalPosition(int32_t position);
  void SetHorizontalPosition(int32_t position, int32_t visible);

  // The lines shown at the vertical position: up to four, fewer at the end of the file.
  std::vector<BnaGridLine> ShownLines() const;

  // The first cell of column c, before scrolling; -1 for a column the grid does not have.
  int32_t ColumnStart(int c) const;
  // The column under cell x of the window (the horizontal position added), counting the
  // rule after a column as that column's; none past the last column or left of the first.
  std::optional<int> ColumnAt(int32_t x) const;

 private:
  struct Span {
    size_t offset = 0;
    size_t length = 0;
  };
  std::string_view LineText(size_t i) const {
    return {bytes_.data() + lines_[i].offset, lines_[i].length};
  }

  std::string bytes_;
  std::vector<Span> lines_;  // each line of bytes_ without its line end
  int file_type_ = kBnaTabSeparated;
  BnaSourceMeasure measure_;
  std::vector<int32_t> column_starts_;
  int32_t vertical_ = 0;
  int32_t horizontal_ = 0;
};

}  // namespace nv
