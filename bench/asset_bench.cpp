// Assets in a company against SQLite on the same rows in one run: add 10,000, 100,000 and
// 1,000,000 assets of two schedules to a new company with sort order "ACL" (shuffled
// numbers), then read them all in asset-number order and in sort order.
//
// SQLite gets a table of (number key, sort key, record) with the number key as its primary
// key and an index on the sort key, both with collations that call our key comparisons,
// every insert in one transaction, PRAGMA synchronous=OFF, journal_mode=MEMORY and a 64 MB
// page cache. Both sides build the keys and the record text inside the timing, and both
// parse every record they read. SQLite never calls fsync; ours does only around a run, for
// its marker file as the run begins and for its three files as the company closes.
#include <benchmark/benchmark.h>
#include <sqlite3.h>
#include <stdlib.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "bench/bench_folder.h"
#include "bench/sqlite_keys.h"
#include "store/asset/asset_keys.h"
#include "store/asset/asset_record.h"
#include "store/company/asset_testing.h"
#include "store/company/company.h"
#include "store/file/key_compare.h"
#include "store/file/status.h"
#include "ui/scripted_ui.h"

namespace nv {
namespace {

std::string Folder() {
  return BenchFolder();
}

const InstallationContext& Context() {
  static InstallationContext ctx = testing::ContextFor(Folder());
  return ctx;
}

const NvCompanyRecord& Company() {
  static NvCompanyRecord record = testing::TwoBookCompany();
  return record;
}

// Assets 0 .. n-1 in a fixed shuffled order.
const std::vector<NvAsset>& Assets(int n) {
  static std::map<int, std::vector<NvAsset>> cache;
  auto& assets = cache[n];
  if (assets.empty()) {
    std::vector<int> order(n);
    for (int i = 0; i < n; ++i) order[i] = i;
    std::mt19937 rng(99);
    std::shuffle(order.begin(), order.end(), rng);
    assets.reserve(n);
    for (int i : order) assets.push_back(testing::MakeAsset(Company(), i, i % 50));
  }
  return assets;
}

std::string Number(int n) {
  return "B" + std::to_string(n);
}

std::unique_ptr<ScriptedUi> NoAnswers() {
  std::string errors;
  return ScriptedUi::FromString("", &errors);
}

// ---- Ours -------------------------------------------------------------------------------

void BuildOurs(int n) {
  static_cast<void>(DeleteCompanyFiles(Context(), Number(n)));  // a fresh company next
  NvCompany company(Context());
  company.record() = Company();
  if (company.Create({Number(n), "Bench"}, NvCompany::kOpenI1 | NvCompany::kOpenI2) != 0) {
    std::abort();
  }
  auto ui = NoAnswers();
  if (company.Open(Number(n), NvCompany::kOpenI1 | NvCompany::kOpenI2, *ui) != 1) std::abort();
  for (const NvAsset& source : Assets(n)) {
    NvAsset asset = source;
    if (company.AddAsset(&asset) != kOk) std::abort();
  }
  if (company.Close() != 0) std::abort();
}

void BM_OursAdd(benchmark::State& state) {
  int n = static_cast<int>(state.range(0));
  Assets(n);
  for (auto _ : state) BuildOurs(n);
  state.SetItemsProcessed(state.iterations() * n);
}

void OursRead(benchmark::State& state, AssetOrder order) {
  int n = static_cast<int>(state.range(0));
  if (!std::filesystem::exists(Folder() + "/" + Number(n) + ".A")) BuildOurs(n);
  auto ui = NoAnswers();
  NvCompany company(Context());
  if (company.Open(Number(n), NvCompany::kOpenI1 | NvCompany::kOpenI2 | NvCompany::kReadOnly,
                   *ui) != 1) {
    std::abort();
  }
  for (auto _ : state) {
    company.ResetAssetWalk();
    int seen = 0;
    NvAsset asset;
    while (company.NextAsset(order, &asset) == kOk && asset.record_number != 0) ++seen;
    if (seen != n) std::abort();
  }
  state.SetItemsProcessed(state.iterations() * n);
}

void BM_OursReadByNumber(benchmark::State& state) {
  OursRead(state, AssetOrder::kNumber);
}
void BM_OursReadBySort(benchmark::State& state) {
  OursRead(state, AssetOrder::kSort);
}

// ---- SQLite -----------------------------------------------------------------------------

std::string SqlitePath(int n) {
  return Folder() + "/assets_" + std::to_string(n) + ".db";
}

sqlite3* OpenSqlite(const std::string& path) {
  sqlite3* db = nullptr;
  if (sqlite3_open(path.c_str(), &db) != SQLITE_OK) std::abort();
  AddKeyCollations(db, Company().sort_order);
  sqlite3_exec(db, "PRAGMA synchronous=OFF; PRAGMA journal_mode=MEMORY; PRAGMA cache_size=-65536;",
               nullptr, nullptr, nullptr);
  return db;
}

void BuildSqlite(int n) {
  std::filesystem::remove(SqlitePath(n));
  sqlite3* db = OpenSqlite(SqlitePath(n));
  sqlite3_exec(db,
               "CREATE TABLE assets(number BLOB COLLATE NVNUMBER PRIMARY KEY, sortkey BLOB COLLATE "
               "NVSORT, record BLOB);"
               "CREATE UNIQUE INDEX by_sort ON assets(sortkey);"
               "BEGIN;",
               nullptr, nullptr, nullptr);
  sqlite3_stmt* ins;
  sqlite3_prepare_v2(db, "INSERT INTO assets VALUES(?, ?, ?)", -1, &ins, nullptr);
  const AssetRecordFormat format = AssetRecordFormatOf(Company());
  for (const NvAsset& asset : Assets(n)) {
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

void BM_SqliteAdd(benchmark::State& state) {
  int n = static_cast<int>(state.range(0));
  Assets(n);
  for (auto _ : state) BuildSqlite(n);
  state.SetItemsProcessed(state.iterations() * n);
}

void SqliteRead(benchmark::State& state, const char* sql) {
  int n = static_cast<int>(state.range(0));
  if (!std::filesystem::exists(SqlitePath(n))) BuildSqlite(n);
  sqlite3* db = OpenSqlite(SqlitePath(n));
  sqlite3_stmt* sel;
  sqlite3_prepare_v2(db, sql, -1, &sel, nullptr);
  const AssetRecordFormat format = AssetRecordFormatOf(Company());
  for (auto _ : state) {
    int seen = 0;
    NvAsset asset;
    while (sqlite3_step(sel) == SQLITE_ROW) {
      const char* bytes = static_cast<const char*>(sqlite3_column_blob(sel, 0));
      ParseAssetRecord({bytes, size_t(sqlite3_column_bytes(sel, 0))}, format, &asset);
      ++seen;
    }
    sqlite3_reset(sel);
    if (seen != n) std::abort();
  }
  sqlite3_finalize(sel);
  sqlite3_close(db);
  state.SetItemsProcessed(state.iterations() * n);
}

void BM_SqliteReadByNumber(benchmark::State& state) {
  SqliteRead(state, "SELECT record FROM assets ORDER BY number");
}
void BM_SqliteReadBySort(benchmark::State& state) {
  SqliteRead(state, "SELECT record FROM assets ORDER BY sortkey");
}

void Register() {
  struct Named {
    const char* name;
    void (*fn)(benchmark::State&);
  };
  const Named all[] = {{"OursAdd", BM_OursAdd},
                       {"SqliteAdd", BM_SqliteAdd},
                       {"OursReadByNumber", BM_OursReadByNumber},
                       {"SqliteReadByNumber", BM_SqliteReadByNumber},
                       {"OursReadBySort", BM_OursReadBySort},
                       {"SqliteReadBySort", BM_SqliteReadBySort}};
  for (int n : {10000, 100000, 1000000}) {
    for (const Named& f : all) {
      benchmark::RegisterBenchmark(f.name, f.fn)
          ->Arg(n)
          ->Unit(benchmark::kMillisecond)
          ->UseRealTime()
          ->Iterations(n >= 1000000 ? 1 : (n >= 100000 ? 2 : 5));
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
