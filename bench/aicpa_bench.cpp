// The AICPA import against a plain parse of the same report in one run: a generated asset
// detail report of 10,000 and 100,000 assets (three books, a page each, every tenth asset
// over two pages) with a dispositions report of one asset in fifty.
//
//   BM_AicpaParse   reads the report's pages into memory (the reader alone)
//   BM_AicpaImport  the whole import through RunImport on a scripted Ui into a new company
//                   of a temporary installation: the company pass, the setup screen, the
//                   account groups, the copy with the current-year files, the dispositions
//
// The ratio of the two is the cost of everything the import does beyond reading; the cost
// per asset (items per second) should not grow with the size of the report.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "base/str_format.h"
#include "bench/bench_folder.h"
#include "import/aicpa/aicpa_importer.h"
#include "import/aicpa/aicpa_report.h"
#include "import/aicpa/aicpa_testing.h"
#include "store/company/asset_testing.h"
#include "store/company/company.h"
#include "ui/scripted_ui.h"

namespace nv {
namespace {

const InstallationContext& Context() {
  static InstallationContext ctx = testing::ContextFor(BenchFolder());
  return ctx;
}

std::string Money(long cents) {
  return StrPrintf("%ld.%02ld", cents / 100, cents % 100);
}

// One asset's page; asset n varies its methods, dates and accounts.
void AppendAsset(long n, std::ofstream& out) {
  using testing::AccountRow;
  using testing::BookRow;
  using testing::ValueRow;
  static const char* const kMethods[] = {"200DB", "SL", "150DB", "SL REAL", "SYD"};
  static const char* const kSystems[] = {"MACRS", "MACRS", "Other", "MACRS", "Other"};
  const std::string date = StrPrintf("%02ld/%02ld/20%02ld", 1 + n % 12, 1 + n % 28, 10 + n % 14);
  const std::string cost = Money(100000 + (n % 5000) * 137);
  const int kind = static_cast<int>(n % 5);
  std::vector<std::string> lines = {
      "\fAsset Detail Report - Federal Basis   Bench Co            12/31/2024",
      "",
      ValueRow("Asset No.", std::to_string(n + 1), 41),
      ValueRow("Asset Description (line 1)", StrPrintf("Bench asset %ld", n)),
      ValueRow("Category", StrPrintf("Class %ld", n % 7)),
      "",
      testing::HeadingLine({"Federal", "State", "Book"}),
      BookRow("Date Acquired", {date, date, date}),
      BookRow("New/Used", {"New", "New", "New"}),
      BookRow("Cost or Basis", {cost, cost, cost}),
      BookRow("Salvage Value", {"0.00", "0.00", "0.00"}),
      BookRow("ITC Basis Reduction", {"0.00", "0.00", "0.00"}),
      BookRow("Tax System", {kSystems[kind], "Other", "Other"}),
      BookRow("Method", {kMethods[kind], n % 3 == 0 ? "FED BASIS" : "200DB", "SL"}),
      BookRow("Life (YY/MM)", {"7/0", "7/0", "10/0"}),
      BookRow("Convention", {"HALF-YEAR", "HALF-YEAR", "FULL-YEAR"}),
  };
  if (n % 10 == 9) lines.push_back("\f   (continued)");
  const std::vector<std::string> rest = {
      BookRow("Business Percentage", {"100", "100", "100"}),
      BookRow("Section 179 deduction", {"0.00", "0.00", "0.00"}),
      BookRow("Prior Depreciation", {Money(n % 900 * 100), "0.00", "0.00"}),
      "",
      AccountRow("Asset", StrPrintf("15%02ld", n % 20)),
      AccountRow("Accumulated Depreciation", StrPrintf("16%02ld", n % 20)),
      AccountRow("Depreciation/Amortization Expense", StrPrintf("61%02ld", n % 20)),
  };
  lines.insert(lines.end(), rest.begin(), rest.end());
  for (const std::string& line : lines) out << line << "\r\n";
}

// The report of `n` assets and its dispositions report, written once.
const std::string& Source(long n) {
  static std::map<long, std::string> made;
  std::string& path = made[n];
  if (!path.empty()) return path;
  path = BenchFolder() + StrPrintf("/BENCH%ld.AST", n);
  {
    std::ofstream out(path, std::ios::binary);
    for (const std::string& line : testing::ReportHead(
             "Bench Co", "For the 12 Months Ended 12/31/2024", {"Federal", "State", "Book"})) {
      out << line << "\r\n";
    }
    for (long i = 0; i < n; ++i) AppendAsset(i, out);
  }
  std::ofstream dsp(BenchFolder() + StrPrintf("/BENCH%ld.DSP", n), std::ios::binary);
  for (long i = 0; i < n; i += 50) {
    std::string line = testing::PadTo("   " + std::to_string(i + 1), 36) + "01/01/20";
    line = testing::PadTo(line, 46) + "06/30/24";
    line = testing::PadTo(line, 64) + "1000.00";
    line = testing::PadTo(line, 96) + " 100.00";
    dsp << testing::PadTo(line, 136) << "\r\n";
  }
  return path;
}

void BM_AicpaParse(benchmark::State& state) {
  const long n = state.range(0);
  const std::string& path = Source(n);
  for (auto _ : state) {
    std::vector<aicpa::AssetPage> pages;
    aicpa::AssetPageReader reader([&](const aicpa::AssetPage& page) { pages.push_back(page); });
    if (!aicpa::ReadReportFile(path, reader)) std::abort();
    reader.Finish();
    if (static_cast<long>(pages.size()) != n) std::abort();
    benchmark::DoNotOptimize(pages.data());
  }
  state.SetItemsProcessed(state.iterations() * n);
}

void BM_AicpaImport(benchmark::State& state) {
  const long n = state.range(0);
  const std::string& path = Source(n);
  const std::string number = StrPrintf("B%ld", n);
  const std::string script = "file " + path + "\ntext " + number + "\nchoose 0\nsave\nyes\nno\n";
  for (auto _ : state) {
    state.PauseTiming();
    static_cast<void>(DeleteCompanyFiles(Context(), number));
    std::string errors;
    std::unique_ptr<ScriptedUi> ui = ScriptedUi::FromString(script, &errors);
    std::unique_ptr<Importer> importer = MakeAicpaImporter();
    state.ResumeTiming();
    const ImportResult result = RunImport(Context(), *ui, *importer);
    if (result.added != n || ui->failed()) std::abort();
  }
  state.SetItemsProcessed(state.iterations() * n);
}

BENCHMARK(BM_AicpaParse)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_AicpaImport)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond)->Iterations(2);

}  // namespace
}  // namespace nv

BENCHMARK_MAIN();
