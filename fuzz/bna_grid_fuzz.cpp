// Treats the input as a BNA report shown in the dialog's source grid: the first byte picks
// tabs or commas, the next two the scroll positions, the rest is the file. Checks the
// lines shown and the column under every cell against the grid's own layout.
#include <cstddef>
#include <cstdint>
#include <string>

#include "import/bna/bna_source_grid.h"

namespace {

void Check(bool ok) {
  if (!ok) __builtin_trap();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 3) return 0;
  const int file_type = data[0] % 3;
  const int32_t visible = data[1] % 64;
  nv::BnaSourceGrid grid;
  grid.SetSource(std::string(reinterpret_cast<const char*>(data + 3), size - 3), file_type);
  const nv::BnaSourceMeasure& m = grid.measure();
  Check(grid.comment_lines() >= 0);
  Check(m.data_lines <= grid.line_count());

  grid.SetVerticalPosition(data[2]);
  grid.SetHorizontalPosition(data[2] * 3, visible);
  Check(grid.vertical_position() >= 0 && grid.vertical_position() <= grid.VerticalMaximum());
  Check(grid.horizontal_position() >= 0 &&
        grid.horizontal_position() <= grid.HorizontalMaximum(visible));
  Check(grid.HorizontalMaximum(visible) == 0 ||
        grid.HorizontalMaximum(visible) + visible == m.total_width);

  int32_t number = grid.vertical_position();
  for (const nv::BnaGridLine& line : grid.ShownLines()) {
    Check(line.number == ++number);
    Check(line.comment ? line.columns.empty() : line.columns.size() <= m.widths.size());
    for (size_t c = 0; c < line.columns.size(); ++c) {
      Check(static_cast<int32_t>(line.columns[c].size()) <= m.widths[c]);
    }
  }
  Check(number - grid.vertical_position() <= nv::kBnaGridLines);

  // Every cell of the data area lies in the column whose cells hold it, or past the last.
  const int32_t h = grid.horizontal_position();
  for (int32_t x = 0; x < visible + 2; ++x) {
    std::optional<int> c = grid.ColumnAt(x);
    if (!c) {
      Check(x + h >= m.total_width);
      continue;
    }
    const int32_t start = grid.ColumnStart(*c);
    Check(start >= 0 && start <= x + h && x + h <= start + m.widths[*c]);
  }
  return 0;
}
