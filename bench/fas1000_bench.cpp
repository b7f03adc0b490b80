// The FAS 1000/2000 import against a plain parse of the same source in one run: a company
// folder of 10,000 and 100,000 generated assets (three books each, a label line for every
// asset, listed percentages for every fifth, a sale for every tenth) is imported whole,
// through RunImport on a scripted Ui into a new company of a temporary installation, and
// read whole by the source reader into memory. The ratio of the two, and the cost per asset
// at both sizes, are the figures to watch; for scale, asset_bench's OursAdd times the
// store's own add of ready-made assets, which most of the import is.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "base/str_format.h"
#include "bench/bench_folder.h"
#include "import/fas1000/fas1000_importer.h"
#include "import/fas1000/fas1000_source.h"
#include "import/fas1000/fas1000_testing.h"
#include "store/company/asset_testing.h"
#include "store/company/company.h"
#include "ui/scripted_ui.h"

namespace nv {
namespace {

using fas1000::testing::ColumnLine;
using fas1000::testing::Key;

const InstallationContext& Context() {
  static InstallationContext ctx = testing::ContextFor(BenchFolder());
  return ctx;
}

// The folder of a generated source of n assets, written on first use.
std::string SourceFolder(int n) {
  const std::string folder = BenchFolder() + "/FAS" + std::to_string(n) + "/";
  if (std::filesystem::exists(folder + "COMPANY.SAF")) return folder;
  std::filesystem::create_directories(folder);
  std::ofstream(folder + "COMPANY.SAF", std::ios::binary)
      << fas1000::testing::CompanySaf("Bench Co", false);
  std::ofstream(folder + "cmpsetup.dat", std::ios::binary)
      << fas1000::testing::CmpSetup(true, true, false, true, false);
  std::ofstream gen(folder + "assetgen.asc", std::ios::binary);
  std::ofstream book(folder + "bookdata.asc", std::ios::binary);
  std::ofstream label(folder + "lablinfo.asc", std::ios::binary);
  std::ofstream listed(folder + "listed.asc", std::ios::binary);
  const char* methods[] = {"MF", "SL", "DB", "AD", "YS"};
  for (int i = 1; i <= n; ++i) {
    const std::string key = Key(std::to_string(i));
    ColumnLine g;
    g.At(0, key)
        .At(11, "CO-" + std::to_string(i))
        .At(24, "A")
        .At(26, i % 7 == 0 ? "R" : " ")
        .At(28, "C" + std::to_string(i % 10))
        .At(31, "0700")
        .At(61, StrPrintf("%15.2f", i % 3 == 0 ? 10.0 : 0.0))
        .At(77, "Generated asset " + std::to_string(i));
    if (i % 10 == 0) {
      g.At(190, "063023")
          .At(197, "S")
          .At(199, StrPrintf("%15.2f", 500.0))
          .At(215, "0")
          .At(231, "25");
    }
    gen << g.str() << "\r\n";
    const std::string cost = StrPrintf("%15.2f", 1000.0 + i % 5000);
    for (const char* digit : {"0", "1", "3"}) {
      book << ColumnLine()
                  .At(0, key)
                  .At(11, digit)
                  .At(13, "031521")
                  .At(20, cost)
                  .At(36, methods[i % 5])
                  .At(39, "150")
                  .At(43, i % 7 == 0 ? "3900" : "0700")
                  .At(84, StrPrintf("%15.2f", 0.0))
                  .At(102, i % 2 ? "S" : " ")
                  .At(270, StrPrintf("%15.2f", 100.0))
                  .At(371, i % 4 == 0 ? "M" : " ")
                  .str()
           << "\r\n";
    }
    label << ColumnLine()
                 .At(0, key)
                 .At(11, "1500-" + std::to_string(i % 100))
                 .At(79, "Site " + std::to_string(i % 20))
                 .At(139, "SN" + std::to_string(i))
                 .At(193, "User " + std::to_string(i))
                 .str()
          << "\r\n";
    if (i % 5 == 0) listed << ColumnLine().At(0, key).At(12, "0").At(22, " 80").str() << "\r\n";
  }
  return folder;
}

// Microseconds of real time per asset: a rate, inverted, over millions of assets.
benchmark::Counter PerAssetMicroseconds(const benchmark::State& state, int n) {
  return benchmark::Counter(static_cast<double>(state.iterations()) * n / 1e6,
                            benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

void BM_Fas1000Import(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const std::string folder = SourceFolder(n);
  const std::string number = "F" + std::to_string(n);  // at most 8 characters
  long added = 0;
  for (auto _ : state) {
    state.PauseTiming();
    static_cast<void>(DeleteCompanyFiles(Context(), number));
    std::string errors;
    auto ui = ScriptedUi::FromString(
        "file " + folder + "COMPANY.SAF\ntext " + number + "\nsave\nyes\nmatch 202=104\nok\n",
        &errors);
    std::unique_ptr<Importer> importer = MakeFas1000Importer();
    state.ResumeTiming();
    added = RunImport(Context(), *ui, *importer).added;
    if (added != n || ui->failed()) {
      std::fprintf(stderr, "added %ld of %d\n%s\n", added, n,
                   ui->transcript().substr(0, 3000).c_str());
      std::abort();
    }
  }
  state.SetItemsProcessed(state.iterations() * n);
  state.counters["us_per_asset"] = PerAssetMicroseconds(state, n);
}

void BM_Fas1000Parse(benchmark::State& state) {
  using namespace fas1000;
  const int n = static_cast<int>(state.range(0));
  const std::string folder = SourceFolder(n);
  for (auto _ : state) {
    std::vector<FasAsset> assets;
    FasSourceReader reader(
        *LineSource::Open(folder + "assetgen.asc"), *LineSource::Open(folder + "bookdata.asc"),
        *LineSource::Open(folder + "lablinfo.asc"), *LineSource::Open(folder + "listed.asc"));
    FasAsset asset;
    while (reader.Next(&asset)) assets.push_back(std::move(asset));
    if (static_cast<int>(assets.size()) != n || !reader.TakePassedOver().empty()) std::abort();
    benchmark::DoNotOptimize(assets.data());
  }
  state.SetItemsProcessed(state.iterations() * n);
  state.counters["us_per_asset"] = PerAssetMicroseconds(state, n);
}

BENCHMARK(BM_Fas1000Parse)
    ->Arg(10'000)
    ->Arg(100'000)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->Iterations(3);
BENCHMARK(BM_Fas1000Import)
    ->Arg(10'000)
    ->Arg(100'000)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->Iterations(3);

}  // namespace
}  // namespace nv

BENCHMARK_MAIN();
