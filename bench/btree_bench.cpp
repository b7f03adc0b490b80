// Index file against SQLite on the same keys in one run: insert, find and walk 10,000,
// 100,000 and 1,000,000 keys of 9 bytes (.I1, short asset-number format) and 31 bytes (.I2
// with sort order "1P"), in a shuffled order.
//
// SQLite gets a WITHOUT ROWID table keyed on the same bytes with a collation that calls the
// same key comparison, all inserts in one transaction, PRAGMA synchronous=OFF,
// journal_mode=MEMORY and a 64 MB page cache (the size of the index file's read cache).
// Neither side calls fsync. Files live in a temporary folder under $TMPDIR or /tmp.
#include <benchmark/benchmark.h>
#include <sqlite3.h>
#include <stdlib.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <map>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include "bench/bench_folder.h"
#include "store/file/btree_file.h"
#include "store/file/key_compare.h"
#include "store/file/status.h"

namespace nv {
namespace {

struct KeyKind {
  uint32_t length;
  const char* sort_order;
};
constexpr KeyKind kKinds[] = {{9, ""}, {31, "1P"}};

std::string Folder() {
  return BenchFolder();
}

std::string MakeKey(const KeyKind& kind, int n) {
  char asset[16];
  std::snprintf(asset, sizeof asset, "%6d.%02d", n / 50 + 1, n % 50 + 1);
  if (kind.length == 9) return asset;
  std::string field = "BIN " + std::to_string(n % 997) + "-" + std::to_string(n % 13);
  field.resize(20, '\0');
  std::string p = n % 2 ? "AB" : "CD";
  return field + p + asset;
}

// Keys 0 .. n-1 in a fixed shuffled order, and a second order for the finds.
const std::vector<std::string>& Keys(const KeyKind& kind, int n, int which) {
  static std::map<std::tuple<uint32_t, int, int>, std::vector<std::string>> cache;
  auto& keys = cache[{kind.length, n, which}];
  if (keys.empty()) {
    std::vector<int> order(n);
    for (int i = 0; i < n; ++i) order[i] = i;
    std::mt19937 rng(1234 + which);
    std::shuffle(order.begin(), order.end(), rng);
    keys.reserve(n);
    for (int i : order) keys.push_back(MakeKey(kind, i));
  }
  return keys;
}

std::string OurPath(const KeyKind& kind, int n) {
  return Folder() + "/k" + std::to_string(kind.length) + "_" + std::to_string(n) + ".I2";
}
std::string SqlitePath(const KeyKind& kind, int n) {
  return Folder() + "/k" + std::to_string(kind.length) + "_" + std::to_string(n) + ".db";
}

// ---- Ours -------------------------------------------------------------------------------

void BuildOurs(const KeyKind& kind, int n) {
  NvBTreeFile tree;
  if (tree.Create(OurPath(kind, n), kind.length, kBadHeaderI2) != kOk) std::abort();
  uint32_t node;
  uint32_t record = 1;
  for (const std::string& key : Keys(kind, n, 0)) {
    if (tree.Insert(key, record++, kind.sort_order, &node) != kOk) std::abort();
  }
  static_cast<void>(tree.Close());  // timing only
}

void OpenOurs(const KeyKind& kind, int n, NvBTreeFile* tree) {
  if (!std::filesystem::exists(OurPath(kind, n))) BuildOurs(kind, n);
  if (tree->Open(OurPath(kind, n), true, kind.length, kind.length, kBadHeaderI2) != kOk) {
    std::abort();
  }
}

void BM_OursInsert(benchmark::State& state, KeyKind kind) {
  int n = static_cast<int>(state.range(0));
  Keys(kind, n, 0);
  for (auto _ : state) BuildOurs(kind, n);
  state.SetItemsProcessed(state.iterations() * n);
}

void BM_OursFind(benchmark::State& state, KeyKind kind) {
  int n = static_cast<int>(state.range(0));
  const auto& keys = Keys(kind, n, 1);
  NvBTreeFile tree;
  OpenOurs(kind, n, &tree);
  uint64_t depth = 0;
  for (auto _ : state) {
    uint32_t record;
    for (const std::string& key : keys) {
      if (tree.Find(key, kind.sort_order, &record) != kOk) std::abort();
      depth += tree.path().size();
    }
  }
  state.SetItemsProcessed(state.iterations() * n);
  state.counters["depth"] = double(depth) / double(state.iterations() * n);
}

void BM_OursWalk(benchmark::State& state, KeyKind kind) {
  int n = static_cast<int>(state.range(0));
  NvBTreeFile tree;
  OpenOurs(kind, n, &tree);
  for (auto _ : state) {
    tree.ClearPath();
    uint32_t record;
    int seen = 0;
    while (tree.Next(&record) == kOk && record != 0) ++seen;
    if (seen != n) std::abort();
  }
  state.SetItemsProcessed(state.iterations() * n);
}

// ---- SQLite -----------------------------------------------------------------------------

int Collate(void* order, int la, const void* a, int lb, const void* b) {
  return CompareI2Keys({static_cast<const char*>(a), size_t(la)},
                       {static_cast<const char*>(b), size_t(lb)}, static_cast<const char*>(order));
}

sqlite3* OpenSqlite(const KeyKind& kind, const std::string& path) {
  sqlite3* db = nullptr;
  if (sqlite3_open(path.c_str(), &db) != SQLITE_OK) std::abort();
  sqlite3_create_collation(db, "NVKEY", SQLITE_UTF8, const_cast<char*>(kind.sort_order), Collate);
  sqlite3_exec(db, "PRAGMA synchronous=OFF; PRAGMA journal_mode=MEMORY; PRAGMA cache_size=-65536;",
               nullptr, nullptr, nullptr);
  return db;
}

void BuildSqlite(const KeyKind& kind, int n) {
  std::string path = SqlitePath(kind, n);
  std::filesystem::remove(path);
  sqlite3* db = OpenSqlite(kind, path);
  sqlite3_exec(db,
               "CREATE TABLE t(k TEXT COLLATE NVKEY PRIMARY KEY, v INTEGER) WITHOUT ROWID;"
               "BEGIN;",
               nullptr, nullptr, nullptr);
  sqlite3_stmt* ins;
  sqlite3_prepare_v2(db, "INSERT INTO t VALUES(?, ?)", -1, &ins, nullptr);
  int record = 1;
  for (const std::string& key : Keys(kind, n, 0)) {
    sqlite3_bind_text(ins, 1, key.data(), int(key.size()), SQLITE_STATIC);
    sqlite3_bind_int(ins, 2, record++);
    if (sqlite3_step(ins) != SQLITE_DONE) std::abort();
    sqlite3_reset(ins);
  }
  sqlite3_finalize(ins);
  sqlite3_exec(db, "COMMIT;", nullptr, nullptr, nullptr);
  sqlite3_close(db);
}

sqlite3* ReadySqlite(const KeyKind& kind, int n) {
  if (!std::filesystem::exists(SqlitePath(kind, n))) BuildSqlite(kind, n);
  return OpenSqlite(kind, SqlitePath(kind, n));
}

void BM_SqliteInsert(benchmark::State& state, KeyKind kind) {
  int n = static_cast<int>(state.range(0));
  Keys(kind, n, 0);
  for (auto _ : state) BuildSqlite(kind, n);
  state.SetItemsProcessed(state.iterations() * n);
}

void BM_SqliteFind(benchmark::State& state, KeyKind kind) {
  int n = static_cast<int>(state.range(0));
  const auto& keys = Keys(kind, n, 1);
  sqlite3* db = ReadySqlite(kind, n);
  sqlite3_stmt* sel;
  sqlite3_prepare_v2(db, "SELECT v FROM t WHERE k = ?", -1, &sel, nullptr);
  for (auto _ : state) {
    for (const std::string& key : keys) {
      sqlite3_bind_text(sel, 1, key.data(), int(key.size()), SQLITE_STATIC);
      if (sqlite3_step(sel) != SQLITE_ROW) std::abort();
      benchmark::DoNotOptimize(sqlite3_column_int(sel, 0));
      sqlite3_reset(sel);
    }
  }
  sqlite3_finalize(sel);
  sqlite3_close(db);
  state.SetItemsProcessed(state.iterations() * n);
}

void BM_SqliteWalk(benchmark::State& state, KeyKind kind) {
  int n = static_cast<int>(state.range(0));
  sqlite3* db = ReadySqlite(kind, n);
  sqlite3_stmt* sel;
  sqlite3_prepare_v2(db, "SELECT k, v FROM t ORDER BY k", -1, &sel, nullptr);
  for (auto _ : state) {
    int seen = 0;
    while (sqlite3_step(sel) == SQLITE_ROW) {
      benchmark::DoNotOptimize(sqlite3_column_int(sel, 1));
      ++seen;
    }
    sqlite3_reset(sel);
    if (seen != n) std::abort();
  }
  sqlite3_finalize(sel);
  sqlite3_close(db);
  state.SetItemsProcessed(state.iterations() * n);
}

// The 1,000,000 cases run once; the smaller ones a few times.
void Sizes(benchmark::internal::Benchmark* b) {
  b->Unit(benchmark::kMillisecond)->UseRealTime();
}

void Register() {
  using Fn = void (*)(benchmark::State&, KeyKind);
  struct Named {
    const char* name;
    Fn fn;
  };
  const Named all[] = {{"OursInsert", BM_OursInsert}, {"SqliteInsert", BM_SqliteInsert},
                       {"OursFind", BM_OursFind},     {"SqliteFind", BM_SqliteFind},
                       {"OursWalk", BM_OursWalk},     {"SqliteWalk", BM_SqliteWalk}};
  for (const KeyKind& kind : kKinds) {
    for (int n : {10000, 100000, 1000000}) {
      for (const Named& f : all) {
        std::string name = std::string(f.name) + "/key" + std::to_string(kind.length);
        auto* b = benchmark::RegisterBenchmark(name.c_str(), f.fn, kind)->Arg(n);
        Sizes(b);
        b->Iterations(n >= 1000000 ? 1 : (n >= 100000 ? 2 : 5));
      }
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
  return 0;
}
