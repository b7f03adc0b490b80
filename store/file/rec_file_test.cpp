#include "store/file/rec_file.h"

#include <gtest/gtest.h>

#include "store/file/status.h"
#include "store/store_testing.h"

namespace nv {
namespace {

using testing::ByteBuilder;
using testing::Bytes;
using testing::ReadAll;
using testing::Slice;
using testing::TempDir;

constexpr uint32_t kLen = 16;

// A file of `records` records, record n filled with byte n.
void MakeFile(NvRecFile& f, const std::string& path, uint32_t records, NvRecFile::Format format) {
  ASSERT_TRUE(f.Create(path, kLen, format));
  for (uint32_t n = 0; n < records; ++n) {
    Bytes rec(kLen, static_cast<uint8_t>(n));
    ASSERT_TRUE(f.WriteRecord(n, rec.data()));
  }
  f.SetCounters(records - 1, 0, 0);
}

TEST(NvRecFile, FreedRecordsCarryTheFreeBytesOfTheirLayout) {
  TempDir dir;
  NvRecFile f;
  MakeFile(f, dir.File("cur"), 4, NvRecFile::kCurrentLayout);
  ASSERT_EQ(f.Free(2), kOk);
  ASSERT_EQ(f.Free(3), kOk);
  EXPECT_EQ(f.free_head(), 3u);
  EXPECT_EQ(f.free_count(), 2u);
  EXPECT_EQ(f.Close(), 0);
  Bytes file = ReadAll(dir.File("cur"));
  // 00 00, marker F1, u32 next free; the rest of the record is untouched.
  EXPECT_EQ(Slice(file, 2 * kLen, kLen),
            ByteBuilder().Raw({0, 0, 0xF1}).U32(0).Fill(2, kLen - 7).bytes());
  EXPECT_EQ(Slice(file, 3 * kLen, kLen),
            ByteBuilder().Raw({0, 0, 0xF1}).U32(2).Fill(3, kLen - 7).bytes());

  MakeFile(f, dir.File("old"), 4, NvRecFile::kOldLayout);
  ASSERT_EQ(f.Free(1), kOk);
  ASSERT_EQ(f.Free(3), kOk);
  EXPECT_EQ(f.Close(), 0);
  file = ReadAll(dir.File("old"));
  // u16 next free, marker F0.
  EXPECT_EQ(Slice(file, kLen, kLen), ByteBuilder().Raw({0, 0, 0xF0}).Fill(1, kLen - 3).bytes());
  EXPECT_EQ(Slice(file, 3 * kLen, kLen), ByteBuilder().Raw({1, 0, 0xF0}).Fill(3, kLen - 3).bytes());
}

TEST(NvRecFile, AllocateTakesTheFreeListThenAppends) {
  TempDir dir;
  NvRecFile f;
  MakeFile(f, dir.File("a"), 5, NvRecFile::kCurrentLayout);
  ASSERT_EQ(f.Free(1), kOk);
  ASSERT_EQ(f.Free(4), kOk);
  uint32_t n = 0;
  ASSERT_EQ(f.Allocate(&n), kOk);
  EXPECT_EQ(n, 4u);
  ASSERT_EQ(f.Allocate(&n), kOk);
  EXPECT_EQ(n, 1u);
  EXPECT_EQ(f.free_count(), 0u);
  ASSERT_EQ(f.Allocate(&n), kOk);
  EXPECT_EQ(n, 5u);
  EXPECT_EQ(f.highest_record(), 5u);
  EXPECT_EQ(f.Free(0), kOutOfRange);  // record 0 is never a data record
  EXPECT_EQ(f.Free(6), kOutOfRange);
}

TEST(NvRecFile, CorruptFreeListIsDroppedSilently) {
  TempDir dir;
  NvRecFile f;
  MakeFile(f, dir.File("a"), 5, NvRecFile::kCurrentLayout);
  uint32_t n = 0;
  // Head points at a live record (marker byte 2, not F0/F1): appended instead.
  f.SetCounters(4, 2, 3);
  ASSERT_EQ(f.Allocate(&n), kOk);
  EXPECT_EQ(n, 5u);
  EXPECT_EQ(f.free_head(), 0u);
  EXPECT_EQ(f.free_count(), 0u);
  // Head beyond the highest record: ignored.
  f.SetCounters(5, 9, 1);
  ASSERT_EQ(f.Allocate(&n), kOk);
  EXPECT_EQ(n, 6u);
  // Head within range but past the end of the file: the read fails.
  f.SetCounters(20, 15, 1);
  EXPECT_EQ(f.Allocate(&n), kAllocReadFailed);
}

TEST(NvRecFile, RecordLimitsOfBothLayouts) {
  TempDir dir;
  NvRecFile f;
  ASSERT_TRUE(f.Create(dir.File("a"), kLen, NvRecFile::kOldLayout));
  uint32_t n = 0;
  f.SetCounters(65534, 0, 0);
  ASSERT_EQ(f.Allocate(&n), kOk);
  EXPECT_EQ(n, 65535u);
  EXPECT_EQ(f.Allocate(&n), kOutOfRange);
  f.SetLayout(kLen, NvRecFile::kCurrentLayout);
  f.SetCounters(4294967294u, 0, 0);
  ASSERT_EQ(f.Allocate(&n), kOk);
  EXPECT_EQ(n, 4294967295u);
  EXPECT_EQ(f.Allocate(&n), kOutOfRange);
}

TEST(NvRecFile, ReadOnlyFilesRefuseWritesAndShortReadsFail) {
  TempDir dir;
  NvRecFile f;
  MakeFile(f, dir.File("a"), 3, NvRecFile::kCurrentLayout);
  EXPECT_EQ(f.Close(), 0);
  ASSERT_TRUE(f.Open(dir.File("a"), true, kLen, NvRecFile::kCurrentLayout));
  f.SetCounters(2, 0, 0);
  uint8_t buf[kLen];
  ASSERT_TRUE(f.ReadRecord(2, buf));
  EXPECT_EQ(buf[0], 2);
  EXPECT_FALSE(f.ReadRecord(3, buf));            // past the end
  EXPECT_FALSE(f.ReadRecord(1, buf, kLen + 1));  // more than a record
  EXPECT_FALSE(f.WriteRecord(1, buf));
  EXPECT_EQ(f.Free(1), kFreeWriteFailed);
  EXPECT_EQ(f.free_count(), 0u);
  EXPECT_FALSE(f.Open(dir.File("missing"), true, kLen, NvRecFile::kCurrentLayout));
  EXPECT_FALSE(f.ReadRecord(0, buf));  // closed
  EXPECT_FALSE(f.Sync());
}

TEST(NvRecFile, CachedReadsSeeEveryWrite) {
  TempDir dir;
  NvRecFile f;
  MakeFile(f, dir.File("a"), 3, NvRecFile::kCurrentLayout);
  uint8_t buf[kLen];
  ASSERT_TRUE(f.ReadRecord(1, buf));  // now cached
  const uint8_t part[3] = {7, 8, 9};
  ASSERT_TRUE(f.WriteRecord(1, part, sizeof part));
  ASSERT_TRUE(f.ReadRecord(1, buf));
  EXPECT_EQ(Bytes(buf, buf + 4), Bytes({7, 8, 9, 1}));
  EXPECT_EQ(Slice(ReadAll(dir.File("a")), kLen, 4), Bytes({7, 8, 9, 1}));
  // Reading record 1 also took in record 2; a later write to record 2 must be seen.
  Bytes two(kLen, 0x22);
  ASSERT_TRUE(f.WriteRecord(2, two.data()));
  ASSERT_TRUE(f.ReadRecord(2, buf));
  EXPECT_EQ(Bytes(buf, buf + kLen), two);
  // A record appended after the read-ahead is read from the file.
  Bytes three(kLen, 0x33);
  ASSERT_TRUE(f.WriteRecord(3, three.data(), 5));
  EXPECT_FALSE(f.ReadRecord(3, buf));  // only 5 bytes of it exist
  ASSERT_TRUE(f.WriteRecord(3, three.data()));
  ASSERT_TRUE(f.ReadRecord(3, buf));
  EXPECT_EQ(Bytes(buf, buf + kLen), three);
}

}  // namespace
}  // namespace nv
