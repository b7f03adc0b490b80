// The PC/FAS import against a plain parse of the same source, in one run: a generated
// company of 10,000 and 100,000 assets (long layout, four books used, a mix of methods,
// every tenth asset disposed), once imported whole through RunImport on a scripted Ui into
// a new company of a temporary installation, and once only read into memory as records.
// The import's time over the parse's is the ratio to watch; items per second give the
// cost per asset at both sizes. A third run reads and converts without storing, to tell the
// importer's own share from the company store's.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <map>
#include <string>
#include <vector>

#include "base/file.h"
#include "base/file_util.h"
#include "base/str_format.h"
#include "bench/bench_folder.h"
#include "import/pcfas/pcfas_convert.h"
#include "import/pcfas/pcfas_importer.h"
#include "import/pcfas/pcfas_source.h"
#include "store/company/asset_testing.h"
#include "store/company/company.h"
#include "ui/scripted_ui.h"

namespace nv {
namespace {

const InstallationContext& Context() {
  static InstallationContext ctx = testing::ContextFor(BenchFolder());
  return ctx;
}

std::string SourceFolder(int n) {
  return BenchFolder() + StrPrintf("/pcfas%d", n);
}

// One MASTER.ASC line of the long layout (120 fields, books from 34, 17 apart).
std::string Line(int i) {
  static const char* const kMethods[] = {"Z", "S", "C", "V", "M", "L", "B", "A", "D", "U"};
  std::vector<std::string> f(120);
  f[0] = std::to_string(i + 1);
  f[1] = "A";
  f[2] = i % 3 ? "EQUIPMENT" : "VEHICLES";
  f[3] = i % 7 ? "P" : "R";
  f[4] = StrPrintf("\"Generated asset %d, bay %d\"", i + 1, i % 40);
  f[5] = i % 2 ? "MAIN" : "BRANCH";
  f[7] = StrPrintf("%02d/%02d/%02d", 1 + i % 12, 1 + i % 28, (i % 40 + 84) % 100);
  f[9] = i % 5 ? "N" : "C";
  f[12] = i % 4 ? "0" : "120.00";
  f[20] = StrPrintf("1500-%d", i % 90);
  if (i % 10 == 9) {
    f[18] = "06/30/23";
    f[19] = "S";
    f[22] = "350.00";
  }
  const std::string cost = StrPrintf("%d.%02d", 1000 + i % 50000, i % 100);
  for (int b = 0; b < 4; ++b) {
    const int base = 34 + 17 * b;
    f[base] = b == 2 && i % 6 == 0 ? "900.00" : cost;
    f[base + 1] = kMethods[(i + b) % 10];
    f[base + 2] = "150";
    f[base + 4] = b == 0 ? "250.00" : "0";
    f[base + 5] = std::to_string(3 + i % 37);
    f[base + 6] = i % 4 ? "0" : "6";
    f[base + 8] = "180.00";
    f[base + 9] = "720.00";
    f[base + 13] = i % 3 ? "1223" : "0624";
  }
  std::string line;
  for (const std::string& field : f) line += (line.empty() ? "" : ",") + field;
  return line + "\r\n";
}

// COMPANY1.FAS and MASTER.ASC of `n` assets, written once.
void MakeSource(int n) {
  static std::map<int, bool> made;
  if (made[n]) return;
  made[n] = true;
  if (!MakeDirectories(SourceFolder(n))) std::abort();
  std::string header(kPcFasHeaderSize, ' ');
  header.replace(0, 15, "Bench Equipment");
  header.replace(44, 7, "ACCOUNT");
  header.replace(219, 4, "YYYY");
  std::string master;
  master.reserve(static_cast<size_t>(n) * 420);
  for (int i = 0; i < n; ++i) master += Line(i);
  if (!WriteFileAtomically(SourceFolder(n) + "/COMPANY1.FAS", header) ||
      !WriteFileAtomically(SourceFolder(n) + "/MASTER.ASC", master)) {
    std::abort();
  }
}

void BM_PcFasPlainParse(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  MakeSource(n);
  for (auto _ : state) {
    std::optional<File> file = File::Open(SourceFolder(n) + "/MASTER.ASC", File::Mode::kRead);
    if (!file) std::abort();
    uint64_t at = 0;
    PcFasMasterReader reader([&](char* buffer, size_t capacity) -> size_t {
      const int64_t got = file->ReadSomeAt(at, buffer, capacity);
      if (got <= 0) return 0;
      at += static_cast<uint64_t>(got);
      return static_cast<size_t>(got);
    });
    std::vector<PcFasRecord> records;
    PcFasRecord record;
    while (reader.Next(&record)) records.push_back(record);
    if (records.size() != static_cast<size_t>(n)) std::abort();
    benchmark::DoNotOptimize(records.data());
  }
  state.SetItemsProcessed(state.iterations() * n);
}

// The importer's own share: every record read and converted, nothing stored.
void BM_PcFasParseAndConvert(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  MakeSource(n);
  PcFasConversion conversion;
  conversion.layout = PcFasLayout::kLong;
  conversion.schedule_letters = "TBSA";
  conversion.account_field = PcFasSourceItemField(101);
  for (auto _ : state) {
    std::optional<std::string> bytes = ReadFileBytes(SourceFolder(n) + "/MASTER.ASC");
    if (!bytes) std::abort();
    PcFasMasterReader reader = PcFasMasterReader::FromBytes(*bytes);
    PcFasRecord record;
    NvAsset asset;
    int converted = 0;
    while (reader.Next(&record)) {
      ConvertPcFasRecord(record.fields, conversion, &asset);
      benchmark::DoNotOptimize(asset.cash_and_notes);
      ++converted;
    }
    if (converted != n) std::abort();
  }
  state.SetItemsProcessed(state.iterations() * n);
}

void BM_PcFasWholeImport(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  MakeSource(n);
  const std::string number = StrPrintf("PC%d", n);
  const std::string script =
      "file " + SourceFolder(n) + "/COMPANY1.FAS\ntext " + number + "\nsave\nyes\nok\n";
  for (auto _ : state) {
    state.PauseTiming();
    static_cast<void>(DeleteCompanyFiles(Context(), number));
    std::string errors;
    std::unique_ptr<ScriptedUi> ui = ScriptedUi::FromString(script, &errors);
    PcFasImporter importer;
    state.ResumeTiming();
    const ImportResult result = RunImport(Context(), *ui, importer);
    if (result.added != n) std::abort();
  }
  state.SetItemsProcessed(state.iterations() * n);
}

BENCHMARK(BM_PcFasPlainParse)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PcFasParseAndConvert)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PcFasWholeImport)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace nv

BENCHMARK_MAIN();
