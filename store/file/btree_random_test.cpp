// Long random sequences of inserts, deletes, finds and walks, checked against std::map
// ordered by the same comparison, with the structure checker after every batch.
#include <cstdio>
#include <iterator>
#include <map>
#include <ostream>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "store/file/btree_file.h"
#include "store/file/key_compare.h"
#include "store/file/status.h"
#include "store/file/structure_check.h"
#include "store/store_testing.h"

namespace nv {
namespace {

#ifdef NV_SANITIZED
constexpr int kOpsPerRun = 100000;
#else
constexpr int kOpsPerRun = 200000;
#endif
constexpr int kBatch = 10000;

struct Config {
  const char* name;
  NvRecFile::Format format;
  std::string sort_order;
  uint32_t key_length;
  int key_space;  // distinct keys the generator draws from
  uint32_t seed;
};

class RandomTree {
 public:
  explicit RandomTree(const Config& c) : c_(c), rng_(c.seed), map_(Less{this}) {}

  int Compare(std::string_view a, std::string_view b) const {
    return c_.format == NvRecFile::kOldLayout ? CompareOldKeys(a, b, c_.sort_order)
                                              : CompareI2Keys(a, b, c_.sort_order);
  }

  // A key of the configured length: sort-order fields then the asset number.
  std::string MakeKey(int n) {
    std::string key;
    for (char letter : c_.sort_order) {
      switch (letter) {
        case 'L':  // 10 natural (current) or 2 bytewise (old)
          key += Pad(c_.format == NvRecFile::kOldLayout ? std::string(1, char('A' + n % 7))
                                                        : "LOC-" + std::to_string(n % 13),
                     c_.format == NvRecFile::kOldLayout ? 2 : 10);
          break;
        case 'P':
          key += Pad(std::string(1, char('A' + n % 3)), 2);
          break;
        case '1':
          key += Pad(
              (n % 2 ? "bin " : "Bin ") + std::to_string(n % 37) + "-" + std::to_string(n % 5), 20);
          break;
        default:
          ADD_FAILURE() << "no generator for " << letter;
      }
    }
    char number[32];
    if (c_.format == NvRecFile::kOldLayout) {
      std::snprintf(number, sizeof number, "%05d", n % 100000);
    } else if (key.size() + 9 == c_.key_length) {
      std::snprintf(number, sizeof number, "%6d.%02d", n / 40 % 1000000, n % 40 + 1);
    } else {
      std::snprintf(number, sizeof number, "%10d.%03d", n / 40, n % 40 + 1);
    }
    key += number;
    EXPECT_EQ(key.size(), c_.key_length);
    return key;
  }

  void Run(int ops) {
    testing::TempDir dir;
    ASSERT_EQ(tree_.Create(dir.File("T.I2"), c_.key_length, kBadHeaderI2, c_.format), kOk);
    for (int op = 1; op <= ops; ++op) {
      // Grow for the first half, then shrink, so that nodes empty and get reused.
      int insert_weight = op < ops / 2 ? 6 : 3;
      int r = Rand(10);
      std::string key = MakeKey(Rand(c_.key_space));
      if (r < insert_weight) {
        Insert(key);
      } else if (r < 8) {
        Delete(key);
      } else if (r < 9) {
        Find(key);
      } else {
        Walk(key);
      }
      if (::testing::Test::HasFatalFailure()) return;
      if (op % kBatch == 0) CheckAll();
      if (::testing::Test::HasFailure()) return;
    }
    ASSERT_EQ(tree_.Close(), 0);
    // Everything survives a close and reopen.
    ASSERT_EQ(tree_.Open(dir.File("T.I2"), true, c_.key_length, c_.key_length, kBadHeaderI2), kOk);
    CheckAll();
    EXPECT_EQ(tree_.Close(), 0);
  }

 private:
  struct Less {
    const RandomTree* t;
    bool operator()(const std::string& a, const std::string& b) const {
      return t->Compare(a, b) < 0;
    }
  };
  using Map = std::map<std::string, uint32_t, Less>;

  static std::string Pad(std::string s, size_t width) {
    s.resize(width, '\0');
    return s;
  }
  int Rand(int n) { return std::uniform_int_distribution<int>(0, n - 1)(rng_); }

  void Insert(const std::string& key) {
    uint32_t record = next_record_++ % 60000 + 1, node;
    int rc = tree_.Insert(key, record, c_.sort_order, &node);
    bool fresh = map_.emplace(key, record).second;
    ASSERT_EQ(rc, fresh ? kOk : kDuplicate) << key;
  }

  void Delete(const std::string& key) {
    int rc = tree_.Delete(key, c_.sort_order);
    ASSERT_EQ(rc, map_.erase(key) ? kOk : kNotFound) << key;
  }

  void Find(const std::string& key) {
    uint32_t record = 0;
    int rc = tree_.Find(key, c_.sort_order, &record);
    auto it = map_.find(key);
    if (it == map_.end()) {
      ASSERT_EQ(rc, kNotFound) << key;
    } else {
      ASSERT_EQ(rc, kOk) << key;
      ASSERT_EQ(record, it->second);
    }
  }

  // Finds a key (present or not), then steps a few entries one way or the other.
  void Walk(const std::string& key) {
    uint32_t record = 0;
    int rc = tree_.Find(key, c_.sort_order, &record);
    if (map_.empty()) {
      ASSERT_EQ(rc, kNotFound);
      return;
    }
    auto it = map_.lower_bound(key);
    bool found = it != map_.end() && Compare(it->first, key) == 0;
    ASSERT_EQ(rc, found ? kOk : kNotFound) << key;
    bool forward = Rand(2) == 0;
    // Position of the map iterator on the current entry (or the gap before `it`).
    bool in_gap = !found;
    int steps = 1 + Rand(12);
    for (int i = 0; i < steps; ++i) {
      if (forward) {
        ASSERT_EQ(tree_.Next(&record), kOk);
        if (!in_gap) ++it;
      } else {
        ASSERT_EQ(tree_.Previous(&record), kOk);
        if (it == map_.begin()) {
          it = map_.end();
        } else {
          --it;
        }
      }
      in_gap = false;
      if (it == map_.end()) {
        ASSERT_EQ(record, 0u);
        return;
      }
      ASSERT_EQ(record, it->second);
      ASSERT_EQ(Compare(tree_.current_key(), it->first), 0);
      if (Rand(4) == 0) forward = !forward;
    }
  }

  void CheckAll() {
    TreeCheck check = CheckTree(tree_, c_.sort_order);
    for (const std::string& p : check.problems) ADD_FAILURE() << c_.name << ": " << p;
    ASSERT_EQ(check.keys, map_.size());
    ASSERT_EQ(check.data.size(), map_.size());
    size_t i = 0;
    for (const auto& [key, record] : map_) ASSERT_EQ(check.data[i++], record) << key;
    max_depth_ = std::max(max_depth_, check.depth);
    EXPECT_LT(max_depth_, 40u);
    // A full walk in each direction.
    tree_.ClearPath();
    uint32_t record;
    auto fwd = map_.begin();
    for (;;) {
      record = 0;
      ASSERT_EQ(tree_.Next(&record), tree_.root() == 0 ? kOutOfRange : kOk);
      if (record == 0) break;
      ASSERT_NE(fwd, map_.end());
      ASSERT_EQ(record, (fwd++)->second);
    }
    ASSERT_EQ(fwd, map_.end());
    auto back = map_.rbegin();
    for (;;) {
      record = 0;
      ASSERT_EQ(tree_.Previous(&record), tree_.root() == 0 ? kOutOfRange : kOk);
      if (record == 0) break;
      ASSERT_NE(back, map_.rend());
      ASSERT_EQ(record, (back++)->second);
    }
    ASSERT_EQ(back, map_.rend());
  }

  Config c_;
  std::mt19937 rng_;
  Map map_;
  NvBTreeFile tree_;
  uint32_t next_record_ = 0;
  uint32_t max_depth_ = 0;
};

void PrintTo(const Config& c, std::ostream* os) {
  *os << c.name;
}

class BTreeRandom : public ::testing::TestWithParam<Config> {};

TEST_P(BTreeRandom, MatchesStdMap) {
  RandomTree(GetParam()).Run(kOpsPerRun);
}

INSTANTIATE_TEST_SUITE_P(
    Layouts, BTreeRandom,
    ::testing::Values(Config{"I1Short", NvRecFile::kCurrentLayout, "", 9, 30000, 1},
                      Config{"I1Long", NvRecFile::kCurrentLayout, "", 14, 8000, 2},
                      Config{"I2", NvRecFile::kCurrentLayout, "1P", 31, 20000, 3},
                      Config{"I2Location", NvRecFile::kCurrentLayout, "L", 19, 400, 4},
                      Config{"OldI1", NvRecFile::kOldLayout, "", 5, 20000, 5},
                      Config{"OldI2", NvRecFile::kOldLayout, "L1", 27, 20000, 6}),
    [](const ::testing::TestParamInfo<Config>& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace nv
