// NvRecFile: a file of fixed-length numbered records with a free list. The block file and
// both index files are built on it.
//
// Record n starts at byte n * record length. Record 0 is the index header or, in the block
// file, the company record's first block; data records are numbered from 1. All numbers
// are little-endian.
//
// Free (deleted) record, first bytes of the record:
//
//   OFFSET  SIZE  DESCRIPTION
//   current layout (7 bytes):
//     0       2     0x00 0x00
//     2       1     marker 0xF1
//     3       4     next free record (u32), 0 = end of the list
//   old layout (3 bytes):
//     0       2     next free record (u16), 0 = end of the list
//     2       1     marker 0xF0
//
// The counters (highest record, free head, free count) live in memory while the file is
// open; the owner stores them (index header, company record) and sets them after opening.
//
// Reads may be served from an in-memory copy of records already read or written (a whole
// record read takes in its neighbours of the same 16 KB chunk too); every write goes to
// the file at once, so the file's bytes never differ from an uncached run. Writes reach
// the disk when the system flushes them, or at Sync.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "base/file.h"

namespace nv {

class NvRecFile {
 public:
  enum Format : uint8_t { kOldLayout = 0, kCurrentLayout = 1 };

  // First bytes of a free record: 2 + 1 + 4 (current) and 2 + 1 (old).
  static constexpr size_t kFreeBytesCurrent = 2 + 1 + 4;
  static constexpr size_t kFreeBytesOld = 2 + 1;
  static_assert(kFreeBytesCurrent == 7 && kFreeBytesOld == 3);
  static constexpr size_t kMarkerOffset = 2;
  static constexpr uint8_t kFreeMarkerCurrent = 0xF1;
  static constexpr uint8_t kFreeMarkerOld = 0xF0;
  // Highest record number each layout can address.
  static constexpr uint32_t kRecordLimitOld = 65535;
  static constexpr uint32_t kRecordLimitCurrent = 4294967295u;

  NvRecFile() = default;
  ~NvRecFile();
  NvRecFile(const NvRecFile&) = delete;
  NvRecFile& operator=(const NvRecFile&) = delete;

  // Opens an existing file for reading only or for reading and writing. Counters are zero
  // until the owner sets them.
  [[nodiscard]] bool Open(const std::string& path, bool read_only, uint32_t record_length,
                          Format format);
  // Creates (or truncates) a file for reading and writing, with zero counters.
  [[nodiscard]] bool Create(const std::string& path, uint32_t record_length, Format format);
  // 0, or -1 when the file could not be closed. Closing a closed file does nothing.
  [[nodiscard]] int Close();
  // Makes every write so far reach the disk (fsync). False when the file is closed or the
  // system could not.
  [[nodiscard]] bool Sync();

  // Transfers the whole record (count 0) or its first count bytes. False when the file is
  // closed, count exceeds the record length, or fewer bytes were transferred.
  [[nodiscard]] bool ReadRecord(uint32_t number, uint8_t* buffer, size_t count = 0);
  [[nodiscard]] bool WriteRecord(uint32_t number, const uint8_t* buffer, size_t count = 0);
  // Writes `records` whole records from `first` on in one transfer.
  [[nodiscard]] bool WriteRecords(uint32_t first, const uint8_t* buffer, uint32_t records);

  // Takes the free head, or appends a record. kOk with *number set, kAllocReadFailed or
  // kOutOfRange (record limit reached).
  [[nodiscard]] int Allocate(uint32_t* number);
  // Puts a record (1 .. highest) at the head of the free list: kOk, kOutOfRange or
  // kFreeWriteFailed.
  [[nodiscard]] int Free(uint32_t number);

  bool is_open() const { return file_.is_open(); }
  bool read_only() const { return read_only_; }
  Format format() const { return format_; }
  // Changes the record length and layout of an open file (an index learns both from its
  // header); drops the read cache.
  void SetLayout(uint32_t record_length, Format format);
  uint32_t record_length() const { return record_length_; }
  uint32_t highest_record() const { return highest_record_; }
  uint32_t free_head() const { return free_head_; }
  uint32_t free_count() const { return free_count_; }
  void SetCounters(uint32_t highest_record, uint32_t free_head, uint32_t free_count);
  // Size of the file in bytes (0 when closed or unknown).
  uint64_t FileSize() const;
  // Number of whole records the file holds.
  uint64_t RecordsInFile() const;

  // Most bytes the read cache may hold; 0 turns it off (and drops what it holds).
  void set_cache_limit(size_t bytes);

 private:
  [[nodiscard]] bool OpenFile(const std::string& path, File::Mode mode, uint32_t record_length,
                              Format format);
  [[nodiscard]] bool ReadAhead(uint32_t number, uint8_t* buffer);
  const uint8_t* Cached(uint32_t number) const;
  void Remember(uint32_t number, const uint8_t* record, size_t offset, size_t count, bool whole);

  Format format_ = kCurrentLayout;
  File file_;
  uint32_t record_length_ = 0;
  uint32_t highest_record_ = 0;
  uint32_t free_head_ = 0;
  uint32_t free_count_ = 0;
  bool read_only_ = false;

  // Read cache: whole records by number, valid_[n] when cache_ holds record n.
  size_t cache_limit_ = size_t{64} << 20;
  std::vector<uint8_t> cache_;
  std::vector<bool> valid_;
  static constexpr uint32_t kReadAheadBytes = 16384;
  std::vector<uint8_t> chunk_;
};

}  // namespace nv
