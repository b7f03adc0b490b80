// The BNA import on a generated report of 100,000 lines with a profile of 40 fields, taken
// apart so that each step's share shows, all in one run:
//
//   SplitOnly      every line split into its columns, nothing converted (the floor)
//   ConvertOnly    split, then every field of the profile produced and stored into the
//                  asset, without storing the asset; with the profile's DEFAULT and SPECIAL
//                  fields (the conversion language) and with constants in their place
//   OursAdd        the converted assets added to a new company of our store
//   SqliteAdd      the same assets, with the same keys and record text, into SQLite
//   WholeImport    the company steps and "Import Data" on a scripted Ui, as nvtool runs it
//
// The report has the 29 columns of testdata/bna/FIXEDASSETS.CSV; one line in fifty is a
// comment. The profile is testdata/bna/EXAMPLE.IMP's, with two more user fields and without
// "Note Text", so that the figures are those of the fields and the store, not of the notes
// file.
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "base/str_format.h"
#include "bench/bench_folder.h"
#include "bench/sqlite_keys.h"
#include "import/bna/bna_import.h"
#include "import/bna/bna_line_convert.h"
#include "store/asset/asset_keys.h"
#include "store/asset/asset_record.h"
#include "store/company/asset_testing.h"
#include "store/company/company.h"
#include "ui/scripted_ui.h"

namespace nv {
namespace {

constexpr int kLines = 100000;

const InstallationContext& Context() {
  static InstallationContext ctx = testing::ContextFor(BenchFolder());
  return ctx;
}

std::unique_ptr<ScriptedUi> Answers(const std::string& script) {
  std::string errors;
  return ScriptedUi::FromString(script, &errors);
}

constexpr char kProfile[] =
    "[Parameters]\nData CheckBoxes=*GTBAC\nfile type=CSV\nProfile Type=BNA_ND\n"
    "[parameters]\ndollar decimal places=0\nduplicate processing=replace values\n"
    "[conversion definitions]\n"
    "Asset No.=A,ENTIRE,0,\nDescription=B,ENTIRE,0,\nLocation=C,ENTIRE,0,\n"
    "Category=D,LEFT,3,\nAccount No.=E,ENTIRE,0,\nCash and Notes=F,ENTIRE,0,\n"
    "Trade In=G,ENTIRE,0,\nDate Purchased=H,ENTIRE,0,\nDate in Service=I,ENTIRE,0,\n"
    "New/Used=J,LEFT,1,\nProperty Code=K,ENTIRE,0,\nUser Field 1=AA,ENTIRE,0,\n"
    "User Field 2=AB,ENTIRE,0,\nUser Field 3=,SET,0,BNA import\nUser Field 4=AA,RIGHT,4,\n"
    "User Field 5=AB,MID,4,3\nDisposal Code=X,ENTIRE,0,\nDisposal Date=Y,ENTIRE,0,\n"
    "Sale Amount=Z,ENTIRE,0,\n4797 Type=,DEFAULT,0,\nDepr Method=P,ENTIRE,0,\n"
    "Depr Method, Tax=L,ENTIRE,0,\nDepr Method, AMT=,SPECIAL,0,\n"
    "Depr Method, ACE=,SPECIAL,0,\nAmortized=,DEFAULT,0,\nBusiness Percent=W,ENTIRE,0,\n"
    "Useful Life=Q,ENTIRE,0,\nUseful Life, Tax=M,ENTIRE,0,\nStr Line Life=Q,ENTIRE,0,\n"
    "Basis=F,ENTIRE,0,\nITC Code=,DEFAULT,0,\nConvention=,DEFAULT,0,\n"
    "Misc. Codes=D,MID,5,10\nCurrent Depr=S,ENTIRE,0,\nCurrent Depr, Tax=O,ENTIRE,0,\n"
    "Accum. Allowed=R,ENTIRE,0,\nAccum. Allowed, Tax=N,ENTIRE,0,\n"
    "179 Expense, Tax=T,ENTIRE,0,\nBonus=U,ENTIRE,0,\nSalvage Value=V,ENTIRE,0,\n"
    "[special conversions]\n"
    "Depr Method, AMT=table(<Depr Method, Tax>) \"10\" -> \"12\" : default -> <Depr Method, Tax>\n"
    "Depr Method, ACE=table(<Depr Method, Tax>) \"10\" -> \"12\" : default -> <Depr Method, Tax>\n";

std::string Generate(int n) {
  std::string text;
  text.reserve(static_cast<size_t>(n) * 260);
  for (int k = 0; k < n; ++k) {
    if (k % 50 == 0) text += "* BNA Next Dimension - Fixed Asset Detail Report - page\r\n";
    const int cost = 500 + k % 90000;
    const std::string fields[] = {
        StrPrintf("%d", 1000 + k),
        k % 3 == 0 ? StrPrintf("\"Generated asset %d, unit\"", k)
                   : StrPrintf("Generated asset %d", k),
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
        k % 10 == 0 ? "100.00" : "0.00",
        "0.00",
        k % 11 == 0 ? "(120.00)" : "0.00",
        "100",
        k % 20 == 0 ? "S" : "",
        k % 20 == 0 ? "06/30/2024" : "",
        k % 20 == 0 ? "\"1,250.00\"" : "0.00",
        StrPrintf("Dept %d", k % 15),
        StrPrintf("SN-%06d", k * 7),
        "",
    };
    bool first = true;
    for (const std::string& field : fields) {
      if (!first) text += ',';
      first = false;
      text += field;
    }
    text += "\r\n";
  }
  return text;
}

const std::string& Source() {
  static const std::string bytes = Generate(kLines);
  return bytes;
}

// The same 40 fields with the conversion language left out: each DEFAULT and SPECIAL
// definition becomes a constant.
std::string ProfileWithoutLanguage() {
  std::string text = kProfile;
  for (const char* method : {",DEFAULT,0,", ",SPECIAL,0,"}) {
    for (size_t at = text.find(method); at != std::string::npos; at = text.find(method)) {
      text.replace(at, std::string_view(method).size(), ",SET,0,1");
    }
  }
  return text;
}

const std::string& SourcePath() {
  static const std::string path = [] {
    std::string p = BenchFolder() + "/REPORT.CSV";
    std::ofstream(p, std::ios::binary) << Source();
    std::ofstream(BenchFolder() + "/BENCH.IMP", std::ios::binary) << kProfile;
    std::ofstream(BenchFolder() + "/PLAIN.IMP", std::ios::binary) << ProfileWithoutLanguage();
    return p;
  }();
  return path;
}

void PerLine(benchmark::State& state) {
  state.counters["us_per_line"] = benchmark::Counter(
      static_cast<double>(kLines) * 1e-6,
      benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

// The company steps' result: a new company of the four schedules B, T, A and C.
void MakeCompany(const std::string& number) {
  static_cast<void>(DeleteCompanyFiles(Context(), number));
  auto ui = Answers("choose 0\ntext " + number + "\nsave\nyes\n");
  BnaSession session(Context(), *ui);
  if (!RunBnaCompanySteps(session)) std::abort();
}

// The session state the dialog sets up: profile, definitions, source.
void LoadProfile(BnaImportState& state, bool language = true) {
  SwitchBnaProfile(state.profiles, BenchFolder() + (language ? "/BENCH.IMP" : "/PLAIN.IMP"));
  const BnaParameters params = ReadBnaParameters(state.profiles);
  state.file_type = params.file_type;
  state.checked_groups = params.checked_groups;
  LoadDefinitions(state.profiles, state.checked_groups, state.definitions);
  state.source_path = SourcePath();
}

void BM_BnaSplitOnly(benchmark::State& state) {
  const std::string& bytes = Source();
  for (auto _ : state) {
    BnaSourceLines lines(bytes);
    BnaSourceLine line;
    long columns = 0;
    while (lines.Next(&line)) {
      if (line.comment) continue;
      ColumnClass split(line.text, kBnaCommaSeparated);
      columns += split.Count();
    }
    benchmark::DoNotOptimize(columns);
  }
  PerLine(state);
}

// Every line converted into the asset as the run does it, the store left out. The
// converted assets of the last pass are kept for the store benchmarks.
std::vector<NvAsset>& Converted() {
  static std::vector<NvAsset> assets;
  return assets;
}

void BM_BnaConvertOnly(benchmark::State& state) {
  SourcePath();
  MakeCompany("CONVERT");
  auto ui = Answers("");
  BnaSession session(Context(), *ui);
  LoadProfile(session.state, state.range(0) != 0);
  NvCompany company(Context());
  if (company.Open("CONVERT", NvCompany::kOpenI1 | NvCompany::kLoadLocCat | NvCompany::kReadOnly,
                   *ui) <= 0) {
    std::abort();
  }
  const BnaStoreRules rules{0, false, true};
  const std::string& letters = company.record().schedule_letters;
  const NvAssetNoFormat& format = company.record().asset_no_format;
  for (auto _ : state) {
    BnaLineConverter converter(session.state, company, rules, Today(), ui.get());
    std::vector<NvAsset>& out = Converted();
    out.clear();
    out.reserve(kLines);
    BnaSourceLines lines(Source());
    BnaSourceLine line;
    while (lines.Next(&line)) {
      if (line.comment) continue;
      converter.SetLine(line.text, line.number);
      NvAsset& asset = session.state.current_asset;
      asset.Clear(letters);
      asset.number = NvAssetNo::Parse(converter.AssetNumber(9).value_or(""), format);
      static_cast<void>(converter.Fill(asset));
      out.push_back(std::move(asset));
    }
    if (out.size() != static_cast<size_t>(kLines)) std::abort();
  }
  PerLine(state);
}

void BM_BnaOursAdd(benchmark::State& state) {
  if (Converted().empty()) std::abort();  // BM_BnaConvertOnly runs first
  for (auto _ : state) {
    state.PauseTiming();
    MakeCompany("OURSADD");
    auto ui = Answers("");
    NvCompany company(Context());
    if (company.Open("OURSADD", NvCompany::kOpenI1 | NvCompany::kOpenI2, *ui) != 1) std::abort();
    state.ResumeTiming();
    for (const NvAsset& source : Converted()) {
      NvAsset asset = source;
      if (company.AddAsset(&asset) < 0) std::abort();
    }
    if (company.Close() != 0) std::abort();
  }
  PerLine(state);
}

void BM_BnaSqliteAdd(benchmark::State& state) {
  if (Converted().empty()) std::abort();
  MakeCompany("SQLITE");
  NvCompany company(Context());
  auto ui = Answers("");
  if (company.Open("SQLITE", NvCompany::kOpenI1 | NvCompany::kReadOnly, *ui) <= 0) std::abort();
  const AssetRecordFormat format = company.RecordFormat();
  const std::string path = BenchFolder() + "/bna.db";
  for (auto _ : state) {
    std::filesystem::remove(path);
    sqlite3* db = nullptr;
    if (sqlite3_open(path.c_str(), &db) != SQLITE_OK) std::abort();
    AddKeyCollations(db, format.sort_order);
    sqlite3_exec(db,
                 "PRAGMA synchronous=OFF; PRAGMA journal_mode=MEMORY; PRAGMA cache_size=-65536;"
                 "CREATE TABLE assets(number BLOB COLLATE NVNUMBER PRIMARY KEY, sortkey BLOB "
                 "COLLATE NVSORT, record BLOB);"
                 "CREATE UNIQUE INDEX by_sort ON assets(sortkey);"
                 "BEGIN;",
                 nullptr, nullptr, nullptr);
    sqlite3_stmt* ins = nullptr;
    sqlite3_prepare_v2(db, "INSERT INTO assets VALUES(?, ?, ?)", -1, &ins, nullptr);
    for (const NvAsset& asset : Converted()) {
      std::string number = AssetNumberKey(asset, format);
      std::string sort = AssetSortKey(asset, format);
      std::string record = SerializeAssetRecord(asset, format);
      sqlite3_bind_text(ins, 1, number.data(), int(number.size()), SQLITE_STATIC);
      sqlite3_bind_text(ins, 2, sort.data(), int(sort.size()), SQLITE_STATIC);
      sqlite3_bind_blob(ins, 3, record.data(), int(record.size()), SQLITE_STATIC);
      if (sqlite3_step(ins) != SQLITE_DONE) std::abort();
      sqlite3_reset(ins);
    }
    sqlite3_finalize(ins);
    sqlite3_exec(db, "COMMIT;", nullptr, nullptr, nullptr);
    sqlite3_close(db);
  }
  PerLine(state);
}

void BM_BnaWholeImport(benchmark::State& state) {
  SourcePath();
  for (auto _ : state) {
    state.PauseTiming();
    static_cast<void>(DeleteCompanyFiles(Context(), "WHOLE"));
    auto ui = Answers("choose 0\ntext WHOLE\nsave\nyes\n");
    state.ResumeTiming();
    BnaSession session(Context(), *ui);
    if (!RunBnaCompanySteps(session)) std::abort();
    LoadProfile(session.state);
    const BnaImportResult result = RunBnaImportData(session);
    if (result.imported != kLines) {
      std::fprintf(stderr, "%ld of %d imported\n%s\n", result.imported, kLines,
                   ui->transcript().c_str());
      std::abort();
    }
  }
  PerLine(state);
}

BENCHMARK(BM_BnaSplitOnly)->Unit(benchmark::kMillisecond);
// Arg 1: the profile as it is; arg 0: its DEFAULT and SPECIAL fields made constants.
BENCHMARK(BM_BnaConvertOnly)->Arg(1)->Arg(0)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_BnaOursAdd)->Unit(benchmark::kMillisecond)->Iterations(2);
BENCHMARK(BM_BnaSqliteAdd)->Unit(benchmark::kMillisecond)->Iterations(2);
BENCHMARK(BM_BnaWholeImport)->Unit(benchmark::kMillisecond)->Iterations(2);

}  // namespace
}  // namespace nv

BENCHMARK_MAIN();
