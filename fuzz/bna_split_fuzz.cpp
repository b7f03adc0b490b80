// Treats the input as a BNA report: the first byte picks tabs or commas, the rest is the
// file. Measures it as the source grid does, splits every line both ways and reads every
// column as an amount.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "import/bna/bna_source.h"

namespace {

void Check(bool ok) {
  if (!ok) __builtin_trap();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  int file_type = data[0] % 3;
  std::string_view bytes(reinterpret_cast<const char*>(data + 1), size - 1);
  nv::BnaSourceMeasure m = nv::MeasureBnaSource(bytes, file_type);
  Check(m.columns == static_cast<int32_t>(m.widths.size()));
  Check(m.longest_line <= static_cast<int32_t>(bytes.size()));

  nv::BnaSourceLines lines(bytes);
  nv::BnaSourceLine line;
  int32_t data_lines = 0;
  int32_t last = 0;
  while (lines.Next(&line)) {
    Check(line.number == last + 1);
    last = line.number;
    if (line.comment) continue;
    ++data_lines;
    for (int type : {nv::kBnaTabSeparated, nv::kBnaCommaSeparated}) {
      nv::ColumnClass columns(line.text, type);
      Check(columns.Count() <= static_cast<int>(line.text.size()));
      size_t total = 0;
      for (int i = 0; i < columns.Count(); ++i) {
        std::string_view text = *columns.Column(i);
        total += text.size();
        if (type == nv::kBnaTabSeparated) Check(text.find('\t') == std::string_view::npos);
        Check(!std::isnan(nv::BnaAmount(text, data[0] % 5)));
      }
      Check(total <= line.text.size());
      Check(!columns.Column(columns.Count()).has_value());
      if (type == file_type ||
          (file_type != nv::kBnaCommaSeparated && type == nv::kBnaTabSeparated)) {
        Check(columns.Count() <= m.columns);
        for (int i = 0; i < columns.Count(); ++i) {
          Check(static_cast<int32_t>(columns.Column(i)->size()) <= m.widths[i]);
        }
      }
    }
  }
  Check(data_lines == m.data_lines);
  return 0;
}
