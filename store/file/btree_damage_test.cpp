// Damaged index files: every operation must end with a status, never crash or hang.
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "store/file/btree_file.h"
#include "store/file/status.h"
#include "store/file/structure_check.h"
#include "store/store_testing.h"

namespace nv {
namespace {

using testing::Bytes;
using testing::ReadAll;
using testing::TempDir;
using testing::WriteAll;

constexpr uint32_t kKey = 9;

std::string KeyOf(int i) {
  char buf[16];
  std::snprintf(buf, sizeof buf, "%6d.01", i);
  return buf;
}

class DamagedTree : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(tree_.Create(path_, kKey, kBadHeaderI1), kOk);
    uint32_t node;
    for (int i = 1; i <= 300; ++i)
      ASSERT_EQ(tree_.Insert(KeyOf(i * 7 % 300 + 1), i, "", &node), kOk);
    ASSERT_TRUE(CheckTree(tree_, "").problems.empty());
  }

  // Walks forward and backward in full; returns the first failing status or the number of
  // entries seen forward.
  int WalkAll() {
    tree_.ClearPath();
    uint32_t record;
    int seen = 0;
    for (;;) {
      int rc = tree_.Next(&record);
      if (rc != kOk) return rc;
      if (record == 0) break;
      ++seen;
    }
    for (;;) {
      int rc = tree_.Previous(&record);
      if (rc != kOk) return rc;
      if (record == 0) break;
    }
    return seen;
  }

  // A node on the way down to the key's leaf, below the root.
  NvIndexNode InnerNode() {
    NvIndexNode root, node;
    EXPECT_EQ(tree_.ReadNode(tree_.root(), &root), kOk);
    EXPECT_EQ(tree_.ReadNode(root.child[3], &node), kOk);
    return node;
  }

  TempDir dir_;
  std::string path_ = dir_.File("D.I1");
  NvBTreeFile tree_;
};

TEST_F(DamagedTree, ChildPointingBackUpIsALoop) {
  EXPECT_EQ(WalkAll(), 300);
  NvIndexNode node = InnerNode();
  node.child[3] = tree_.root();
  ASSERT_EQ(tree_.WriteNode(node), kOk);
  EXPECT_LT(WalkAll(), 0);
  uint32_t record, n;
  EXPECT_EQ(tree_.Find(KeyOf(999), "", &record), kOutOfRange);
  EXPECT_EQ(tree_.Insert(KeyOf(999), 1, "", &n), kOutOfRange);
  EXPECT_EQ(tree_.Delete(KeyOf(999), ""), kOutOfRange);
  TreeCheck check = CheckTree(tree_, "");
  ASSERT_FALSE(check.problems.empty());
  EXPECT_NE(check.problems[0].find("reached twice"), std::string::npos) << check.problems[0];
}

TEST_F(DamagedTree, NodeSharedBySiblingsEndsTheWalk) {
  // Every child of the root leads to the same subtree: no loop on any path, but a walk
  // would meet the same entries again and again.
  NvIndexNode root;
  ASSERT_EQ(tree_.ReadNode(tree_.root(), &root), kOk);
  for (int i = 0; i < 4; ++i) root.child[i] = root.child[3];
  ASSERT_EQ(tree_.WriteNode(root), kOk);
  int rc = WalkAll();
  EXPECT_TRUE(rc < 0 || rc <= 3 * 300) << rc;
  EXPECT_FALSE(CheckTree(tree_, "").problems.empty());
}

TEST_F(DamagedTree, NumbersOutOfRangeAndTruncation) {
  NvIndexNode node = InnerNode();
  node.child[3] = 100000;
  ASSERT_EQ(tree_.WriteNode(node), kOk);
  uint32_t record;
  EXPECT_EQ(tree_.Find(KeyOf(300), "", &record), kOutOfRange);
  EXPECT_LT(WalkAll(), 0);
  EXPECT_FALSE(CheckTree(tree_, "").problems.empty());
  ASSERT_EQ(tree_.Close(), 0);

  // Cut the file in half: nodes past the end cannot be read.
  Bytes file = ReadAll(path_);
  file.resize(file.size() / 2);
  WriteAll(path_, file);
  ASSERT_EQ(tree_.Open(path_, false, kKey, 5, kBadHeaderI1), kOk);
  EXPECT_LT(WalkAll(), 0);
  uint32_t n;
  for (int i = 1; i <= 300; ++i) {
    int rc = tree_.Find(KeyOf(i), "", &record);
    EXPECT_TRUE(rc == kOk || rc == kNotFound || rc == kOutOfRange) << rc;
    rc = tree_.Insert(KeyOf(1000 + i), i, "", &n);
    EXPECT_TRUE(rc == kOk || rc == kDuplicate || rc == kOutOfRange) << rc;
  }
  EXPECT_FALSE(CheckTree(tree_, "").problems.empty());
}

TEST_F(DamagedTree, FreeListWithWrongMarkerIsDroppedAndCheckerSaysSo) {
  for (int i = 1; i <= 300; i += 2) ASSERT_EQ(tree_.Delete(KeyOf(i), ""), kOk);
  ASSERT_TRUE(CheckTree(tree_, "").problems.empty());
  uint32_t head = tree_.file().free_head();
  ASSERT_NE(head, 0u);
  uint8_t live[7] = {'1', '2', '3', '4', '5', '6', '7'};
  ASSERT_TRUE(tree_.file().WriteRecord(head, live, sizeof live));
  TreeCheck check = CheckTree(tree_, "");
  ASSERT_FALSE(check.problems.empty());
  EXPECT_NE(check.problems[0].find("marker"), std::string::npos) << check.problems[0];
  uint32_t highest = tree_.file().highest_record(), n;
  // Enough inserts to need new nodes: they are appended once the list proves bad.
  for (int i = 1; i <= 300; i += 2) ASSERT_EQ(tree_.Insert(KeyOf(i), i, "", &n), kOk);
  EXPECT_GT(tree_.file().highest_record(), highest);
  EXPECT_EQ(tree_.file().free_count(), 0u);
}

TEST_F(DamagedTree, RandomlyCorruptedFilesNeverCrashOrHang) {
  ASSERT_EQ(tree_.Close(), 0);
  const Bytes good = ReadAll(path_);
  std::mt19937 rng(42);
  for (int round = 0; round < 300; ++round) {
    Bytes bad = good;
    int flips = 1 + static_cast<int>(rng() % 20);
    for (int i = 0; i < flips; ++i) bad[rng() % bad.size()] = static_cast<uint8_t>(rng());
    if (rng() % 4 == 0) bad.resize(rng() % bad.size());
    WriteAll(path_, bad);
    if (tree_.Open(path_, false, kKey, 5, kBadHeaderI1) != kOk) continue;
    WalkAll();
    uint32_t record, n;
    for (int i = 0; i < 20; ++i) {
      std::string key = KeyOf(static_cast<int>(rng() % 400));
      EXPECT_LE(tree_.Find(key, "", &record), 0);
      EXPECT_LE(tree_.Insert(key, 1, "", &n), 0);
      EXPECT_LE(tree_.Delete(KeyOf(static_cast<int>(rng() % 400)), ""), 0);
    }
    WalkAll();
    CheckTree(tree_, "");
    EXPECT_EQ(tree_.Close(), 0);
  }
}

}  // namespace
}  // namespace nv
