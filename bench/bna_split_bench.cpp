// Splitting a BNA report of 100,000 lines into columns: the work every line of a BNA
// import starts with, and the baseline the whole import is compared against. The same
// bytes are also walked by a plain scan that only counts separators, in the same run, so
// the ratio of the two is what the quoting rules and the copies cost.
//
// The generated lines have the 29 columns of testdata/bna/FIXEDASSETS.CSV: quoted amounts
// with thousands commas, a quoted description with a comma in one line of three, dates,
// lives and codes; one line in fifty is a comment.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <map>
#include <string>

#include "base/str_format.h"
#include "import/bna/bna_source.h"

namespace nv {
namespace {

std::string Generate(int n, int file_type) {
  const char sep = file_type == kBnaCommaSeparated ? ',' : '\t';
  std::string text;
  text.reserve(static_cast<size_t>(n) * 260);
  for (int k = 0; k < n; ++k) {
    if (k % 50 == 0) text += "* BNA Next Dimension - Fixed Asset Detail Report - page\r\n";
    std::string description = k % 3 == 0 ? StrPrintf("\"Generated asset %d, unit\"", k)
                                         : StrPrintf("Generated asset %d", k);
    const int cost = 500 + k % 90000;
    const std::string fields[] = {
        StrPrintf("%d", 1000 + k),
        description,
        StrPrintf("LOC%d", k % 12),
        StrPrintf("%d Category %d", 100 + k % 9 * 100, k % 9),
        StrPrintf("15%02d-00", k % 40),
        StrPrintf("\"%d,%03d.%02d\"", cost / 1000, cost % 1000, k % 100),
        "0.00",
        StrPrintf("%02d/%02d/%d", 1 + k % 12, 1 + k % 28, 1995 + k % 30),
        StrPrintf("%02d/%02d/%d", 1 + k % 12, 1 + k % 28, 1995 + k % 30),
        "New",
        "P",
        StrPrintf("%d", 10 + k % 7),
        StrPrintf("%d-0", 3 + k % 37),
        StrPrintf("\"%d.%02d\"", cost / 3, k % 100),
        StrPrintf("%d.%02d", cost / 7, k % 100),
        "1",
        StrPrintf("%d-0", 3 + k % 37),
        StrPrintf("\"%d.%02d\"", cost / 4, k % 100),
        StrPrintf("%d.%02d", cost / 9, k % 100),
        "0.00",
        "0.00",
        k % 11 == 0 ? "(120.00)" : "0.00",
        "100",
        k % 20 == 0 ? "S" : "",
        k % 20 == 0 ? "06/30/2024" : "",
        k % 20 == 0 ? "\"1,250.00\"" : "0.00",
        StrPrintf("Dept %d", k % 15),
        StrPrintf("SN-%06d", k * 7),
        k % 4 == 0 ? "Note with \"\"quoted\"\" words" : "",
    };
    bool first = true;
    for (const std::string& field : fields) {
      if (!first) text += sep;
      first = false;
      text += field;
    }
    text += "\r\n";
  }
  return text;
}

const std::string& Source(int n, int file_type) {
  static std::map<std::pair<int, int>, std::string> cache;
  std::string& bytes = cache[{n, file_type}];
  if (bytes.empty()) bytes = Generate(n, file_type);
  return bytes;
}

void PerLine(benchmark::State& state, int n) {
  state.counters["us_per_line"] = benchmark::Counter(
      static_cast<double>(n) * 1e-6,
      benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void BM_BnaSplitLines(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const int file_type = static_cast<int>(state.range(1));
  const std::string& bytes = Source(n, file_type);
  for (auto _ : state) {
    BnaSourceLines lines(bytes);
    BnaSourceLine line;
    int data = 0;
    long columns = 0;
    while (lines.Next(&line)) {
      if (line.comment) continue;
      ColumnClass split(line.text, file_type);
      columns += split.Count();
      ++data;
    }
    if (data != n || columns < 28L * n) std::abort();
    benchmark::DoNotOptimize(columns);
  }
  PerLine(state, n);
}

void BM_BnaMeasureReport(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const int file_type = static_cast<int>(state.range(1));
  const std::string& bytes = Source(n, file_type);
  for (auto _ : state) {
    BnaSourceMeasure m = MeasureBnaSource(bytes, file_type);
    if (m.data_lines != n || m.columns != 29) std::abort();
    benchmark::DoNotOptimize(m.total_width);
  }
  PerLine(state, n);
}

// The floor: the same bytes, only line ends and separators counted.
void BM_BnaPlainScan(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const int file_type = static_cast<int>(state.range(1));
  const std::string& bytes = Source(n, file_type);
  const char sep = file_type == kBnaCommaSeparated ? ',' : '\t';
  for (auto _ : state) {
    long lines = 0;
    long separators = 0;
    for (char c : bytes) {
      lines += c == '\n';
      separators += c == sep;
    }
    if (lines < n) std::abort();
    benchmark::DoNotOptimize(separators);
  }
  PerLine(state, n);
}

BENCHMARK(BM_BnaSplitLines)
    ->Args({100000, kBnaCommaSeparated})
    ->Args({100000, kBnaTabSeparated})
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_BnaMeasureReport)->Args({100000, kBnaCommaSeparated})->Unit(benchmark::kMillisecond);
BENCHMARK(BM_BnaPlainScan)
    ->Args({100000, kBnaCommaSeparated})
    ->Args({100000, kBnaTabSeparated})
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace nv
BENCHMARK_MAIN();
