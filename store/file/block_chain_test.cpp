#include "store/file/block_chain.h"

#include <string>

#include <gtest/gtest.h>

#include "store/file/status.h"
#include "store/file/structure_check.h"
#include "store/store_testing.h"

namespace nv {
namespace {

using testing::ByteBuilder;
using testing::Bytes;
using testing::ReadAll;
using testing::Slice;
using testing::TempDir;

// Record bytes 0, 1, 2, ... (mod 251) of the given length.
Bytes Payload(size_t n, uint8_t salt = 0) {
  Bytes b(n);
  for (size_t i = 0; i < n; ++i) b[i] = static_cast<uint8_t>((i + salt) % 251);
  return b;
}

// One current-layout block from the table: length field, marker, next, 138 data bytes.
Bytes Block(uint16_t length, uint8_t marker, uint32_t next, const Bytes& data) {
  ByteBuilder b;
  b.U16(length).Raw({marker}).U32(next);
  Bytes out = b.bytes();
  out.insert(out.end(), data.begin(), data.end());
  out.resize(145, 0);
  return out;
}

class BlockChainTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(file_.Create(path_, kBlockLength, NvRecFile::kCurrentLayout));
    uint32_t company = 0;
    ASSERT_EQ(
        WriteChain(file_, Payload(20), kMarkerCompanyShort, kCompanyBlockLengthField, &company),
        kOk);
  }
  TempDir dir_;
  std::string path_ = dir_.File("C1.A");
  NvRecFile file_;
};

TEST_F(BlockChainTest, ThreeBlockAssetChainBytes) {
  Bytes data = Payload(300);
  uint32_t first = kNoChain;
  ASSERT_EQ(WriteChain(file_, data, kMarkerAssetFirst, kAssetBlockLengthField, &first), kOk);
  EXPECT_EQ(first, 1u);
  Bytes file = ReadAll(path_);
  ASSERT_EQ(file.size(), 4u * 145);
  EXPECT_EQ(Slice(file, 0, 145), Block(145, 0xE3, 0, Payload(20)));
  EXPECT_EQ(Slice(file, 145, 145), Block(0, 0xE4, 2, Slice(data, 0, 138)));
  EXPECT_EQ(Slice(file, 290, 145), Block(0, 0xE1, 3, Slice(data, 138, 138)));
  EXPECT_EQ(Slice(file, 435, 145), Block(0, 0xE1, 0, Slice(data, 276, 24)));

  std::string back;
  uint8_t marker = 0;
  ASSERT_EQ(ReadChain(file_, first, 0, &back, &marker), kOk);
  EXPECT_EQ(marker, 0xE4);
  ASSERT_EQ(back.size(), 3u * 138);
  EXPECT_EQ(Bytes(back.begin(), back.begin() + 300), data);
}

TEST_F(BlockChainTest, RewriteReusesBlocksInPlaceAndFreesTheSurplus) {
  uint32_t first = kNoChain;
  ASSERT_EQ(WriteChain(file_, Payload(300), kMarkerAssetFirst, 0, &first), kOk);
  // Shorter: blocks 1 and 2 reused, block 3 freed.
  ASSERT_EQ(WriteChain(file_, Payload(200, 7), kMarkerAssetFirst, 0, &first), kOk);
  EXPECT_EQ(first, 1u);
  EXPECT_EQ(file_.free_head(), 3u);
  EXPECT_EQ(file_.free_count(), 1u);
  Bytes file = ReadAll(path_);
  EXPECT_EQ(Slice(file, 290, 145), Block(0, 0xE1, 0, Slice(Payload(200, 7), 138, 62)));
  EXPECT_EQ(Slice(file, 435, 7), Bytes({0, 0, 0xF1, 0, 0, 0, 0}));
  // Longer: reuses 1 and 2, takes 3 from the free list, appends 4.
  ASSERT_EQ(WriteChain(file_, Payload(500, 3), kMarkerAssetFirst, 0, &first), kOk);
  EXPECT_EQ(file_.free_count(), 0u);
  EXPECT_EQ(file_.highest_record(), 4u);
  file = ReadAll(path_);
  EXPECT_EQ(Slice(file, 290 + 2, 5), Bytes({0xE1, 3, 0, 0, 0}));
  EXPECT_EQ(Slice(file, 435 + 2, 5), Bytes({0xE1, 4, 0, 0, 0}));
  std::string back;
  ASSERT_EQ(ReadChain(file_, first, 0, &back), kOk);
  EXPECT_EQ(Bytes(back.begin(), back.begin() + 500), Payload(500, 3));
  uint32_t starts[] = {0, first};
  EXPECT_TRUE(CheckBlockFile(file_, starts).empty());
}

TEST_F(BlockChainTest, BrokenChainsAndWrongMarkers) {
  uint32_t first = kNoChain;
  ASSERT_EQ(WriteChain(file_, Payload(300), kMarkerAssetFirst, 0, &first), kOk);
  std::string back;
  // Block 3 points back to block 2: a loop.
  uint8_t loop[7] = {0, 0, 0xE1, 2, 0, 0, 0};
  ASSERT_TRUE(file_.WriteRecord(3, loop, sizeof loop));
  EXPECT_EQ(ReadChain(file_, first, 0, &back), kBrokenChain);
  uint32_t starts[] = {0, first};
  EXPECT_FALSE(CheckBlockFile(file_, starts).empty());
  // Reading at most two blocks stops before the loop.
  EXPECT_EQ(ReadChain(file_, first, 2, &back), kOk);
  EXPECT_EQ(back.size(), 2u * 138);
  // A continuation block with another marker.
  uint8_t wrong[7] = {0, 0, 0xE4, 0, 0, 0, 0};
  ASSERT_TRUE(file_.WriteRecord(3, wrong, sizeof wrong));
  EXPECT_EQ(ReadChain(file_, first, 0, &back), kBrokenChain);
  // Next block past the end of the file.
  uint8_t far[7] = {0, 0, 0xE1, 99, 0, 0, 0};
  ASSERT_TRUE(file_.WriteRecord(3, far, sizeof far));
  EXPECT_EQ(ReadChain(file_, first, 0, &back), kBrokenChain);
  // A first block that is not a first block.
  EXPECT_EQ(ReadChain(file_, 2, 0, &back), kBadMarker);
  ASSERT_TRUE(file_.WriteRecord(3, Bytes(145, 0xF1).data()));
  EXPECT_EQ(ReadChain(file_, 3, 0, &back), kBadMarker);
  EXPECT_EQ(ReadChain(file_, 40, 0, &back), kBrokenChain);
}

TEST(BlockHeaderTest, DecodesBothLayoutsFromTheirTables) {
  // Current: length 145, marker E3, next 0x0A0B0C0D.
  const Bytes current = ByteBuilder().U16(145).Raw({0xE3}).U32(0x0A0B0C0D).bytes();
  BlockHeader h = DecodeBlockHeader(current.data(), false);
  EXPECT_EQ(h.length_field, 145);
  EXPECT_EQ(h.marker, 0xE3);
  EXPECT_EQ(h.next, 0x0A0B0C0Du);
  EXPECT_FALSE(h.old_layout);
  // Old: next 0x1234, marker E1; nothing after the marker belongs to the header.
  const Bytes old = ByteBuilder().U16(0x1234).Raw({0xE1}).U32(0xFFFFFFFF).bytes();
  h = DecodeBlockHeader(old.data(), true);
  EXPECT_EQ(h.next, 0x1234u);
  EXPECT_EQ(h.marker, 0xE1);
  EXPECT_EQ(h.length_field, 0);
  EXPECT_TRUE(h.old_layout);
  // A first block says its layout by its marker: E0 and E2 are old, E4 and E5 current.
  for (uint8_t marker : {0xE0, 0xE2}) {
    const Bytes first = ByteBuilder().U16(7).Raw({marker}).U32(0x00090000).bytes();
    h = DecodeFirstBlockHeader(first.data());
    EXPECT_TRUE(h.old_layout) << int{marker};
    EXPECT_EQ(h.next, 7u) << int{marker};
  }
  for (uint8_t marker : {0xE4, 0xE5}) {
    const Bytes first = ByteBuilder().U16(0).Raw({marker}).U32(0x00090000).bytes();
    h = DecodeFirstBlockHeader(first.data());
    EXPECT_FALSE(h.old_layout) << int{marker};
    EXPECT_EQ(h.next, 0x00090000u) << int{marker};
  }
}

TEST_F(BlockChainTest, OldLayoutChainsReadWithSixteenBitLinks) {
  // Old first block: u16 next, marker E0, 142 data bytes; continuation E1.
  Bytes b1 = ByteBuilder().U16(2).Raw({0xE2}).bytes();
  Bytes d1 = Payload(142);
  b1.insert(b1.end(), d1.begin(), d1.end());
  Bytes b2 = ByteBuilder().U16(0).Raw({0xE1}).Fill('x', 142).bytes();
  file_.SetCounters(2, 0, 0);
  ASSERT_TRUE(file_.WriteRecord(1, b1.data()));
  ASSERT_TRUE(file_.WriteRecord(2, b2.data()));
  std::string back;
  ASSERT_EQ(ReadChain(file_, 1, 0, &back), kOk);
  ASSERT_EQ(back.size(), 284u);
  EXPECT_EQ(Bytes(back.begin(), back.begin() + 142), d1);
  EXPECT_EQ(back.substr(142), std::string(142, 'x'));
  // Rewritten in the current layout over the old chain, reusing its blocks.
  uint32_t first = 1;
  ASSERT_EQ(WriteChain(file_, Payload(10), kMarkerAssetFirst, 0, &first), kOk);
  EXPECT_EQ(file_.free_head(), 2u);
  EXPECT_EQ(Slice(ReadAll(path_), 145, 7), Bytes({0, 0, 0xE4, 0, 0, 0, 0}));
}

}  // namespace
}  // namespace nv
