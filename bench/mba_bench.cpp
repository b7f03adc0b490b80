// The MBA importer on generated exports of 10,000 and 100,000 assets: the whole import
// (reading the file, the numbering scan, converting, adding every asset to a new company
// through the frame on a scripted Ui, the account groups, the report) beside a plain parse
// of the same bytes into memory (every line's fields and ID), in the same run. The
// counter us_per_asset is the cost of one asset; the ratio of the two is the import's
// overhead over reading the source.
//
// The generated lines have four location-plus-category codes, no middle text and trailing
// numbers counting up within each code, so that every line gets a number of its own; eight
// asset accounts in three account groups each; and all four book blocks, with the methods
// of the table in turn.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <string>

#include "base/str_format.h"
#include "bench/bench_folder.h"
#include "import/mba/mba_importer.h"
#include "import/mba/mba_source.h"
#include "import/mba/mba_testing.h"
#include "store/company/asset_testing.h"
#include "store/company/company.h"
#include "ui/scripted_ui.h"

namespace nv {
namespace {

const InstallationContext& Context() {
  static InstallationContext ctx = testing::ContextFor(BenchFolder());
  return ctx;
}

std::string Generate(int n) {
  static const char kMethods[] = "AMNOPSYDBZ";
  std::string text;
  text.reserve(static_cast<size_t>(n) * 492);
  for (int k = 0; k < n; ++k) {
    const int code = k % 4;
    testing::MbaLineText line(k % 20 == 0 ? 'S' : 'A', StrPrintf("01%02d%d", code + 10, k / 4 + 1));
    const std::string cost = StrPrintf("%d.%02d", 500 + k % 9000, k % 100);
    line.Description(StrPrintf("Generated asset %d of the bench", k))
        .Cost(cost)
        .Acquired(StrPrintf("%02d%02d%02d", 1 + k % 12, 1 + k % 28, (k % 30 + 95) % 100))
        .Accounts(StrPrintf("15%02d", k % 8), StrPrintf("159%d", k % 3), StrPrintf("68%d0", k % 3));
    if (k % 20 == 0) line.Disposed("063024");
    if (k % 7 == 0) line.MidQuarter();
    for (int b = 0; b < 4; ++b) {
      line.Book(b, kMethods[(k + b) % 10], StrPrintf("%d", 3 + (k + b) % 37), cost, "0",
                StrPrintf("%d.00", k % 500));
    }
    text += line.text();
    text += "\r\n";
  }
  return text;
}

const std::string& Source(int n) {
  static std::map<int, std::string> cache;
  std::string& bytes = cache[n];
  if (bytes.empty()) bytes = Generate(n);
  return bytes;
}

std::string SourcePath(int n) {
  const std::string path = BenchFolder() + StrPrintf("/export%d.txt", n);
  static std::map<int, bool> written;
  if (!written[n]) {
    std::ofstream(path, std::ios::binary) << Source(n);
    written[n] = true;
  }
  return path;
}

void BM_MbaParseIntoMemory(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const std::string& bytes = Source(n);
  for (auto _ : state) {
    std::vector<MbaRecord> records = ReadMbaSource(bytes);
    if (records.size() != static_cast<size_t>(n)) std::abort();
    benchmark::DoNotOptimize(records.data());
  }
  state.counters["us_per_asset"] = benchmark::Counter(
      static_cast<double>(n) * 1e-6,
      benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void BM_MbaWholeImport(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const std::string path = SourcePath(n);
  const std::string number = StrPrintf("MBA%dK", n / 1000);
  for (auto _ : state) {
    state.PauseTiming();
    static_cast<void>(DeleteCompanyFiles(Context(), number));
    std::string errors;
    auto ui =
        ScriptedUi::FromString("file " + path + "\ntext " + number + "\nsave\nyes\n", &errors);
    state.ResumeTiming();
    MbaImporter importer;
    const ImportResult result = RunImport(Context(), *ui, importer);
    if (result.added != n) {
      std::fprintf(stderr, "%ld of %d assets added\n%s\n", result.added, n,
                   ui->transcript().c_str());
      std::abort();
    }
  }
  state.counters["us_per_asset"] = benchmark::Counter(
      static_cast<double>(n) * 1e-6,
      benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

BENCHMARK(BM_MbaParseIntoMemory)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_MbaWholeImport)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace nv

BENCHMARK_MAIN();
