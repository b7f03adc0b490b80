// The whole-company text file against SQLite on the same rows in one run, at 10,000 and
// 100,000 assets of two schedules:
//   export: ours reads every asset of a company in number order and writes its comma
//           record; SQLite selects every row of a table holding the record's fields in
//           number order and writes each as a comma line with the same quoting.
//   import: ours runs the text importer (the whole frame: company made, every asset added
//           under both indexes, closed); SQLite reads the same file, splits each line into
//           its fields, builds the asset's two keys from them (number; account, category,
//           location for sort order "ACL") and inserts fields and keys into that table, which
//           has an index on each key ordered by the company's own comparisons, as our
//           indexes are, in one transaction with PRAGMA synchronous=OFF and
//           journal_mode=MEMORY.
// OursParseOnly is the importer's reading alone, without the store.
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "base/file_util.h"
#include "bench/bench_folder.h"
#include "bench/sqlite_keys.h"
#include "export/text_record.h"
#include "import/dbs/dbs_importer.h"
#include "import/dbs/dbs_reader.h"
#include "store/asset/asset_keys.h"
#include "store/asset/asset_text_layout.h"
#include "store/company/asset_testing.h"
#include "store/company/company.h"
#include "store/file/key_compare.h"
#include "ui/scripted_ui.h"

namespace nv {
namespace {

constexpr int kFields = 129;

const NvCompanyRecord& Company() {
  static NvCompanyRecord record = testing::TwoBookCompany();
  return record;
}

std::string Folder(const std::string& name) {
  const std::string folder = BenchFolder() + "/" + name;
  std::filesystem::create_directories(folder);
  return folder;
}

// A company SRC of n assets, and its comma file, made once.
const std::string& SourceFile(int n) {
  static std::map<int, std::string> files;
  std::string& path = files[n];
  if (!path.empty()) return path;
  const InstallationContext ctx = testing::ContextFor(Folder("src" + std::to_string(n)));
  NvCompany company(ctx);
  company.record() = Company();
  ScriptedUi ui(AnswerScript{});
  if (company.Create({"SRC", "Source"}, NvCompany::kOpenI1 | NvCompany::kOpenI2) != 0) std::abort();
  if (company.Open("SRC", NvCompany::kOpenI1 | NvCompany::kOpenI2, ui) <= 0) std::abort();
  std::string bytes;
  const TextRecordWriter writer(Company(), TextRecordType::kComma);
  for (int i = 0; i < n; ++i) {
    NvAsset asset = testing::MakeAsset(Company(), i, i % 50);
    if (company.AddAsset(&asset) != 0) std::abort();
    if (!writer.Write(asset, bytes)) std::abort();
  }
  if (company.Close() != 0) std::abort();
  path = ctx.data_directory() + "SRC.DBS";
  if (!WriteFileAtomically(path, bytes)) std::abort();
  return path;
}

std::string SourceFolder(int n) {
  return BenchFolder() + "/src" + std::to_string(n);
}

void BM_OursExport(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  SourceFile(n);
  const InstallationContext ctx = testing::ContextFor(SourceFolder(n));
  for (auto _ : state) {
    NvCompany company(ctx);
    ScriptedUi ui(AnswerScript{});
    if (company.Open("SRC", NvCompany::kOpenI1 | NvCompany::kReadOnly, ui) <= 0) std::abort();
    const TextRecordWriter writer(company.record(), TextRecordType::kComma);
    std::string bytes;
    NvAsset asset;
    int written = 0;
    while (company.NextAsset(AssetOrder::kNumber, &asset) == 0 && asset.record_number != 0) {
      if (!writer.Write(asset, bytes)) std::abort();
      ++written;
    }
    static_cast<void>(company.Close());
    if (written != n || !WriteFileAtomically(SourceFolder(n) + "/out.dbs", bytes)) std::abort();
  }
  state.SetItemsProcessed(state.iterations() * n);
}

void BM_OursImport(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const std::string& source = SourceFile(n);
  int run = 0;
  for (auto _ : state) {
    state.PauseTiming();
    const InstallationContext ctx = testing::ContextFor(Folder("imp" + std::to_string(++run)));
    std::unique_ptr<Importer> importer = MakeDataBaseFileImporter();
    std::vector<ScriptError> errors;
    std::optional<AnswerScript> script =
        ParseAnswerScript("yes\nfile " + source + "\nchoose 1\ntext NEW\nsave\nyes\n", &errors);
    ScriptedUi ui(*script);
    state.ResumeTiming();
    const ImportResult result = RunImport(ctx, ui, *importer);
    if (result.added != n) {
      fprintf(stderr, "%s\n%s\n", ui.transcript().c_str(), result.report_text.c_str());
      std::abort();
    }
    state.PauseTiming();
    std::filesystem::remove_all(ctx.data_directory());
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * n);
}

// Only the reading: every line of the file read into an asset, nothing stored; the part of
// OursImport that is the importer's own.
void BM_OursParseOnly(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const std::optional<std::string> bytes = ReadFileBytes(SourceFile(n));
  for (auto _ : state) {
    DbsLineReader lines(*bytes);
    NvAsset asset;
    int read = 0;
    while (std::optional<std::string_view> line = lines.Next()) {
      ReadDbsRecord(*line, ',', Company().asset_no_format, Company().schedule_letters, &asset);
      ++read;
    }
    if (read != n) std::abort();
  }
  state.SetItemsProcessed(state.iterations() * n);
}

// The comma fields of a line, with the record's quoting.
void SplitComma(std::string_view line, std::vector<std::string>* fields) {
  fields->clear();
  size_t pos = 0;
  while (pos < line.size() && fields->size() < static_cast<size_t>(kFields)) {
    std::string field;
    if (line[pos] == '"') {
      for (++pos; pos < line.size(); ++pos) {
        if (line[pos] == '"') {
          if (pos + 1 >= line.size() || line[pos + 1] == ',') break;
          ++pos;
        }
        field.push_back(line[pos]);
      }
      pos += 2;
    } else {
      const size_t comma = std::min(line.find(',', pos), line.size());
      field.assign(line.substr(pos, comma - pos));
      pos = comma + 1;
    }
    fields->push_back(std::move(field));
  }
  fields->resize(kFields);
}

sqlite3* OpenSqlite(const std::string& path, bool fresh) {
  if (fresh) std::filesystem::remove(path);
  sqlite3* db = nullptr;
  if (sqlite3_open(path.c_str(), &db) != SQLITE_OK) std::abort();
  AddKeyCollations(db, Company().sort_order);
  if (!fresh) return db;
  sqlite3_exec(db, "PRAGMA synchronous=OFF; PRAGMA journal_mode=MEMORY; PRAGMA cache_size=-65536;",
               nullptr, nullptr, nullptr);
  std::string create =
      "CREATE TABLE assets(number BLOB COLLATE NVNUMBER, sortkey BLOB COLLATE NVSORT";
  for (int i = 0; i < kFields; ++i) create += ", f" + std::to_string(i);
  create +=
      "); CREATE UNIQUE INDEX by_number ON assets(number); "
      "CREATE UNIQUE INDEX by_sort ON assets(sortkey);";
  if (sqlite3_exec(db, create.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) std::abort();
  return db;
}

std::string SqlitePath(int n) {
  return SourceFolder(n) + "/assets.db";
}

void SqliteImport(int n) {
  const std::optional<std::string> bytes = ReadFileBytes(SourceFile(n));
  sqlite3* db = OpenSqlite(SqlitePath(n), true);
  sqlite3_exec(db, "BEGIN;", nullptr, nullptr, nullptr);
  std::string insert = "INSERT INTO assets VALUES(?,?";
  for (int i = 0; i < kFields; ++i) insert += ",?";
  insert += ")";
  sqlite3_stmt* ins = nullptr;
  sqlite3_prepare_v2(db, insert.c_str(), -1, &ins, nullptr);
  DbsLineReader lines(*bytes);
  std::vector<std::string> fields;
  const AssetRecordFormat format = AssetRecordFormatOf(Company());
  NvAsset keys;
  int added = 0;
  while (std::optional<std::string_view> line = lines.Next()) {
    SplitComma(*line, &fields);
    keys.number = NvAssetNo::Parse(fields[21], format.asset_no_format);
    keys.location = fields[23];
    keys.category = fields[24];
    keys.account = fields[25];
    const std::string number = AssetNumberKey(keys, format);
    const std::string sort = AssetSortKey(keys, format);
    sqlite3_bind_blob(ins, 1, number.data(), static_cast<int>(number.size()), SQLITE_STATIC);
    sqlite3_bind_blob(ins, 2, sort.data(), static_cast<int>(sort.size()), SQLITE_STATIC);
    for (int i = 0; i < kFields; ++i) {
      sqlite3_bind_text(ins, i + 3, fields[i].data(), static_cast<int>(fields[i].size()),
                        SQLITE_STATIC);
    }
    if (sqlite3_step(ins) != SQLITE_DONE) {
      fprintf(stderr, "%s\n", sqlite3_errmsg(db));
      std::abort();
    }
    sqlite3_reset(ins);
    ++added;
  }
  sqlite3_finalize(ins);
  sqlite3_exec(db, "COMMIT;", nullptr, nullptr, nullptr);
  sqlite3_close(db);
  if (added != n) std::abort();
}

void BM_SqliteImport(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  SourceFile(n);
  for (auto _ : state) SqliteImport(n);
  state.SetItemsProcessed(state.iterations() * n);
}

void BM_SqliteExport(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  SqliteImport(n);
  sqlite3* db = OpenSqlite(SqlitePath(n), false);
  std::string select = "SELECT f0";
  for (int i = 1; i < kFields; ++i) select += ", f" + std::to_string(i);
  select += " FROM assets ORDER BY number";
  sqlite3_stmt* sel = nullptr;
  sqlite3_prepare_v2(db, select.c_str(), -1, &sel, nullptr);
  for (auto _ : state) {
    std::string bytes;
    int written = 0;
    while (sqlite3_step(sel) == SQLITE_ROW) {
      for (int i = 0; i < kFields; ++i) {
        const std::string_view text(reinterpret_cast<const char*>(sqlite3_column_text(sel, i)),
                                    static_cast<size_t>(sqlite3_column_bytes(sel, i)));
        if (text.find_first_of(",\"") == std::string_view::npos) {
          bytes.append(text);
        } else {
          bytes.push_back('"');
          for (char c : text) {
            if (c == '"') bytes.push_back('"');
            bytes.push_back(c);
          }
          bytes.push_back('"');
        }
        bytes.push_back(',');
      }
      bytes.append("\r\n");
      ++written;
    }
    sqlite3_reset(sel);
    if (written != n || !WriteFileAtomically(SourceFolder(n) + "/sqlite.csv", bytes)) std::abort();
  }
  sqlite3_finalize(sel);
  sqlite3_close(db);
  state.SetItemsProcessed(state.iterations() * n);
}

void Register() {
  struct Named {
    const char* name;
    void (*fn)(benchmark::State&);
  };
  const Named all[] = {{"OursExport", BM_OursExport},
                       {"SqliteExport", BM_SqliteExport},
                       {"OursImport", BM_OursImport},
                       {"SqliteImport", BM_SqliteImport},
                       {"OursParseOnly", BM_OursParseOnly}};
  for (int n : {10000, 100000}) {
    for (const Named& f : all) {
      benchmark::RegisterBenchmark(f.name, f.fn)
          ->Arg(n)
          ->Unit(benchmark::kMillisecond)
          ->UseRealTime()
          ->Iterations(n >= 100000 ? 2 : 5);
    }
  }
}

}  // namespace
}  // namespace nv

int main(int argc, char** argv) {
  nv::Register();
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
}
