#include "store/file/structure_check.h"

#include <string>

#include <gtest/gtest.h>

#include "store/file/block_chain.h"
#include "store/file/status.h"
#include "store/store_testing.h"

namespace nv {
namespace {

using testing::TempDir;

bool Mentions(const std::vector<std::string>& problems, const std::string& text) {
  for (const std::string& p : problems) {
    if (p.find(text) != std::string::npos) return true;
  }
  return false;
}

class TreeCheckTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(tree_.Create(dir_.File("C.I1"), 9, kBadHeaderI1), kOk);
    uint32_t node;
    for (const char* k : {"     2.01", "     4.01", "     6.01", "     8.01"}) {
      ASSERT_EQ(tree_.Insert(k, 1, "", &node), kOk);
    }
    TreeCheck ok = CheckTree(tree_, "");
    ASSERT_TRUE(ok.problems.empty());
    EXPECT_EQ(ok.keys, 4u);
    EXPECT_EQ(ok.nodes, 3u);
    EXPECT_EQ(ok.depth, 2u);
    ASSERT_EQ(tree_.ReadNode(1, &leaf_), kOk);  // holds 6 and 8 in slots 1 and 2
  }
  TempDir dir_;
  NvBTreeFile tree_;
  NvIndexNode leaf_;
};

TEST_F(TreeCheckTest, KeysOutOfOrderWithinANodeAndAcrossTheTree) {
  std::swap_ranges(leaf_.keys.begin() + 9, leaf_.keys.begin() + 18, leaf_.keys.begin() + 18);
  ASSERT_EQ(tree_.WriteNode(leaf_), kOk);
  auto problems = CheckTree(tree_, "").problems;
  EXPECT_TRUE(Mentions(problems, "node 1: keys 1 and 2 out of order")) << problems.size();
  leaf_.keys.assign(27, 0);
  std::string low = "     1.01";
  std::copy(low.begin(), low.end(), leaf_.keys.begin() + 18);
  ASSERT_EQ(tree_.WriteNode(leaf_), kOk);
  EXPECT_TRUE(Mentions(CheckTree(tree_, "").problems, "key out of order in the tree"));
}

TEST_F(TreeCheckTest, SlotsNotRightAlignedAndStrayChildren) {
  std::fill(leaf_.keys.begin() + 18, leaf_.keys.end(), 0);  // slot 1 used, slot 2 empty
  leaf_.child[0] = 3;
  ASSERT_EQ(tree_.WriteNode(leaf_), kOk);
  auto problems = CheckTree(tree_, "").problems;
  EXPECT_TRUE(Mentions(problems, "not right-aligned"));
  EXPECT_TRUE(Mentions(problems, "child 0 left of the first key"));
  EXPECT_TRUE(Mentions(problems, "reached twice"));
}

TEST_F(TreeCheckTest, FreeListLoopsCountsAndNodesStillInUse) {
  ASSERT_EQ(tree_.file().Free(3), kOk);  // node 3 is still the root's child
  auto problems = CheckTree(tree_, "").problems;
  EXPECT_TRUE(Mentions(problems, "free node 3 still in tree"));
  tree_.file().SetCounters(3, 3, 2);
  EXPECT_TRUE(Mentions(CheckTree(tree_, "").problems, "free count says 2"));
  // Record 3 names itself as the next free record.
  uint8_t self[7] = {0, 0, 0xF1, 3, 0, 0, 0};
  ASSERT_TRUE(tree_.file().WriteRecord(3, self, sizeof self));
  EXPECT_TRUE(Mentions(CheckTree(tree_, "").problems, "loops back to record 3"));
}

TEST(BlockFileCheck, ChainsSharingBlocksAndFreeBlocksInUse) {
  TempDir dir;
  NvRecFile file;
  ASSERT_TRUE(file.Create(dir.File("C.A"), kBlockLength, NvRecFile::kCurrentLayout));
  std::vector<uint8_t> bytes(200, 'x');
  uint32_t company = 0, a = kNoChain, b = kNoChain;
  ASSERT_EQ(WriteChain(file, bytes, kMarkerCompanyLong, 145, &company), kOk);
  ASSERT_EQ(WriteChain(file, bytes, kMarkerAssetFirst, 0, &a), kOk);
  ASSERT_EQ(WriteChain(file, bytes, kMarkerAssetFirst, 0, &b), kOk);
  std::vector<uint32_t> starts = {0, a, b};
  ASSERT_TRUE(CheckBlockFile(file, starts).empty());
  starts.push_back(a);
  EXPECT_TRUE(Mentions(CheckBlockFile(file, starts), "reached twice"));
  starts.pop_back();
  ASSERT_EQ(file.Free(b + 1), kOk);  // b's continuation block
  auto problems = CheckBlockFile(file, starts);
  EXPECT_TRUE(Mentions(problems, "has marker 0xF1"));
  file.SetCounters(file.highest_record(), b + 1, 1);
  starts = {0, a, b + 1};
  EXPECT_TRUE(Mentions(CheckBlockFile(file, starts), "first block has marker 0xF1"));
}

}  // namespace
}  // namespace nv
