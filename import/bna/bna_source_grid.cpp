#include "import/bna/bna_source_grid.h"

#include <algorithm>
#include <utility>

#include "base/file_util.h"

namespace nv {

bool BnaSourceGrid::Load(const std::optional<std::string>& path, int file_type) {
  if (!path) {
    Clear();
    file_type_ = file_type;
    return true;
  }
  std::optional<std::string> bytes = ReadFileBytes(*path);
  SetSource(bytes.value_or(std::string()), file_type);
  return bytes.has_value();
}

void BnaSourceGrid::SetSource(std::string bytes, int file_type) {
  Clear();
  file_type_ = file_type;
  bytes_ = std::move(bytes);
  BnaSourceLines lines(bytes_);
  BnaSourceLine line;
  while (lines.Next(&line)) {
    lines_.push_back({static_cast<size_t>(line.text.data() - bytes_.data()), line.text.size()});
  }
  measure_ = MeasureBnaSource(bytes_, file_type_);
  int32_t start = 0;
  for (int32_t width : measure_.widths) {
    column_starts_.push_back(start);
    start += width + 1;
  }
}

void BnaSourceGrid::Clear() {
  bytes_.clear();
  lines_.clear();
  measure_ = BnaSourceMeasure();
  column_starts_.clear();
  vertical_ = 0;
  horizontal_ = 0;
}

int32_t BnaSourceGrid::VerticalMaximum() const {
  return std::max<int32_t>(0, measure_.data_lines - 1);
}

int32_t BnaSourceGrid::HorizontalMaximum(int32_t visible) const {
  return std::max<int32_t>(0, measure_.total_width - std::max<int32_t>(0, visible));
}

void BnaSourceGrid::SetVerticalPosition(int32_t position) {
  vertical_ = std::clamp<int32_t>(position, 0, VerticalMaximum());
}

void BnaSourceGrid::SetHorizontalPosition(int32_t position, int32_t visible) {
  horizontal_ = std::clamp<int32_t>(position, 0, HorizontalMaximum(visible));
}

std::vector<BnaGridLine> BnaSourceGrid::ShownLines() const {
  std::vector<BnaGridLine> shown;
  for (size_t i = static_cast<size_t>(vertical_);
       i < lines_.size() && shown.size() < static_cast<size_t>(kBnaGridLines); ++i) {
    BnaGridLine line;
    line.number = static_cast<int32_t>(i + 1);
    line.text = std::string(LineText(i));
    line.comment = IsBnaCommentLine(line.text);
    if (!line.comment) {
      ColumnClass columns(line.text, file_type_);
      for (int c = 0; c < columns.Count(); ++c) line.columns.emplace_back(*columns.Column(c));
    }
    shown.push_back(std::move(line));
  }
  return shown;
}

int32_t BnaSourceGrid::ColumnStart(int c) const {
  if (c < 0 || c >= static_cast<int>(column_starts_.size())) return -1;
  return column_starts_[c];
}

std::optional<int> BnaSourceGrid::ColumnAt(int32_t x) const {
  if (x < 0) return std::nullopt;
  int64_t cell = static_cast<int64_t>(x) + horizontal_;
  if (column_starts_.empty() || cell >= measure_.total_width) return std::nullopt;
  // The last column whose first cell is not past the one clicked.
  auto after = std::upper_bound(column_starts_.begin(), column_starts_.end(), cell);
  return static_cast<int>(after - column_starts_.begin()) - 1;
}

}  // namespace nv
