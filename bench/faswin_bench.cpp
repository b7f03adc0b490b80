// The FAS for Windows import against a plain parse of the same source in one run: a WFA
// export of the newer layout with 10,000 and 100,000 generated assets (three books each,
// a chld.wfa record for every fifth, a sale for every tenth) is imported whole, through
// RunImport on a scripted Ui into a new company of a temporary installation, and read
// whole by the reader into memory; a third figure reads and converts without storing.
// The ratio of import to parse and the cost per asset at both sizes are the figures to
// watch; asset_bench's OursAdd times the store's own add, which most of the import is.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "base/file_util.h"
#include "base/str_format.h"
#include "bench/bench_folder.h"
#include "import/faswin/faswin_convert.h"
#include "import/faswin/faswin_importer.h"
#include "import/faswin/faswin_source.h"
#include "import/faswin/faswin_testing.h"
#include "store/company/asset_testing.h"
#include "store/company/company.h"
#include "ui/scripted_ui.h"

namespace nv {
namespace {

using faswin::testing::Record;

const InstallationContext& Context() {
  static InstallationContext ctx = testing::ContextFor(BenchFolder());
  return ctx;
}

// The folder of a generated export of n assets, written on first use.
std::string SourceFolder(int n) {
  const std::string folder = BenchFolder() + "/WFA" + std::to_string(n) + "/";
  if (std::filesystem::exists(folder + "BNCHcmpy.wfa")) return folder;
  std::filesystem::create_directories(folder);
  std::ofstream(folder + "BNCHcmpy.wfa", std::ios::binary) << "1,Bench Co\r\n";
  std::ofstream(folder + "BNCHbook.wfa", std::ios::binary)
      << "B,0,Tax,1\r\nB,1,Internal,1\r\nB,3,AMT,1\r\n";
  std::ofstream asst(folder + "BNCHasst.wfa", std::ios::binary);
  std::ofstream part(folder + "BNCHpart.wfa", std::ios::binary);
  std::ofstream chld(folder + "BNCHchld.wfa", std::ios::binary);
  const char* methods[] = {"MF", "SL", "DB", "AD", "YS"};
  for (int i = 1; i <= n; ++i) {
    const std::string key = std::to_string(i);
    asst << Record(35, {{2, key},
                        {3, i % 7 == 0 ? "R" : "P"},
                        {4, "C" + std::to_string(i % 10)},
                        {6, i % 3 == 0 ? "X" : "N"},
                        {8, "03/15/2021"},
                        {11, "\"Generated asset " + key + ", bench\""},
                        {12, "Site " + std::to_string(i % 20)},
                        {14, "1500-" + std::to_string(i % 100)},
                        {15, "1510-" + std::to_string(i % 100)}})
         << "\r\n";
    const std::string cost = StrPrintf("%.2f", 1000.0 + i % 5000);
    for (const char* book : {"0", "1", "3"}) {
      part << Record(18, {{2, key},
                          {3, book},
                          {5, "03/20/2021"},
                          {6, cost},
                          {7, methods[i % 5]},
                          {8, "150"},
                          {9, i % 7 == 0 ? "3900" : "0700"},
                          {11, i % 2 ? "1" : "0"},
                          {12, "0"},
                          {14, i % 4 == 0 ? "1" : "0"},
                          {18, "100.00"}})
           << "\r\n";
    }
    if (i % 5 == 0) {
      chld << Record(51, {{2, key},
                          {43, i % 10 == 0 ? "D" : "A"},
                          {45, i % 10 == 0 ? "06/30/2023" : ""},
                          {46, "S"},
                          {47, "500"},
                          {48, "0"},
                          {49, "25"},
                          {51, "0"}})
           << "\r\n";
    }
  }
  return folder;
}

benchmark::Counter PerAssetMicroseconds(const benchmark::State& state, int n) {
  return benchmark::Counter(static_cast<double>(state.iterations()) * n / 1e6,
                            benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

void BM_FasWinImport(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const std::string folder = SourceFolder(n);
  const std::string number = "W" + std::to_string(n);
  long added = 0;
  for (auto _ : state) {
    state.PauseTiming();
    static_cast<void>(DeleteCompanyFiles(Context(), number));
    std::string errors;
    auto ui = ScriptedUi::FromString("file " + folder + "BNCHcmpy.wfa\ntext " + number +
                                         "\nsave\nyes\nmatch 202=102\nok\nok\nno\n",
                                     &errors);
    std::unique_ptr<Importer> importer = MakeFasWinImporter();
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

struct SourceBytes {
  std::string assets, books, disposals;
};

SourceBytes ReadSource(const std::string& folder) {
  return {*ReadFileBytes(folder + "BNCHasst.wfa"), *ReadFileBytes(folder + "BNCHpart.wfa"),
          *ReadFileBytes(folder + "BNCHchld.wfa")};
}

void BM_FasWinParse(benchmark::State& state) {
  using namespace faswin;
  const int n = static_cast<int>(state.range(0));
  const std::string folder = SourceFolder(n);
  for (auto _ : state) {
    const SourceBytes bytes = ReadSource(folder);
    WfaReader reader(WfaLayout::kNewer, bytes.assets, bytes.books, bytes.disposals);
    std::vector<WfaAsset> assets;
    WfaAsset asset;
    while (reader.Next(&asset)) assets.push_back(std::move(asset));
    if (static_cast<int>(assets.size()) != n || !reader.TakePassedOver().empty()) std::abort();
    benchmark::DoNotOptimize(assets.data());
  }
  state.SetItemsProcessed(state.iterations() * n);
  state.counters["us_per_asset"] = PerAssetMicroseconds(state, n);
}

void BM_FasWinParseAndConvert(benchmark::State& state) {
  using namespace faswin;
  const int n = static_cast<int>(state.range(0));
  const std::string folder = SourceFolder(n);
  WfaSettings settings;
  settings.layout = WfaLayout::kNewer;
  settings.schedule_letters = "TBA";
  settings.book_letters = {'T', 'B', 0, 'A', 0, 0, 0};
  settings.asset_no_format = {6, 2, 0};
  settings.sources.account = kSourceAssetAccount;
  settings.sources.user_fields[0] = kSourceAccumulatedAccount;
  for (auto _ : state) {
    const SourceBytes bytes = ReadSource(folder);
    WfaReader reader(WfaLayout::kNewer, bytes.assets, bytes.books, bytes.disposals);
    std::vector<AccountGroup> groups;
    std::vector<std::string> notes;
    WfaAsset source;
    long converted = 0;
    while (reader.Next(&source)) {
      NvAsset asset = ConvertWfaAsset(source, settings, &notes);
      asset.account =
          AccountGroupCode(&groups, asset.account, WfaAccounts(source, settings.layout));
      benchmark::DoNotOptimize(asset.schedules.data());
      ++converted;
    }
    if (converted != n) std::abort();
  }
  state.SetItemsProcessed(state.iterations() * n);
  state.counters["us_per_asset"] = PerAssetMicroseconds(state, n);
}

BENCHMARK(BM_FasWinParse)
    ->Arg(10'000)
    ->Arg(100'000)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->Iterations(3);
BENCHMARK(BM_FasWinParseAndConvert)
    ->Arg(10'000)
    ->Arg(100'000)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->Iterations(3);
BENCHMARK(BM_FasWinImport)
    ->Arg(10'000)
    ->Arg(100'000)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->Iterations(3);

}  // namespace
}  // namespace nv

BENCHMARK_MAIN();
