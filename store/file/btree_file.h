// NvBTreeFile: an index file (.I1 or .I2) whose records are the nodes of a balanced search
// tree with three keys per node, built on NvRecFile.
//
// Header (record 0; the record has the node length; bytes not listed are 0xAA when written):
//
//   OFFSET  SIZE  DESCRIPTION (current layout)
//     0       7     "NVW3300"
//     7       4     highest record (u32)
//    11       4     root node (u32), 0 = empty tree
//    15       4     free head (u32)
//    19       4     free count (u32)
//
//   OFFSET  SIZE  DESCRIPTION (old layout)
//     0       5     bytes FF FF then "721"
//     5       2     highest record (u16)
//     7       2     root node (u16)
//     9       2     free head (u16)
//    11       2     free count (u16)
//
// Node (records 1 .. highest), with K = key length and N = 4 (current) or 2 (old):
//
//   OFFSET        SIZE  DESCRIPTION
//     0             K     key 0 (all zero = empty slot)
//     K             K     key 1
//     2K            K     key 2
//     3K            N     data 0: first block of the asset in the block file
//     3K + N        N     data 1
//     3K + 2N       N     data 2
//     3K + 3N       N     child 0: node left of key 0, 0 = none
//     3K + 4N       N     child 1: node between key 0 and key 1
//     3K + 5N       N     child 2: node between key 1 and key 2
//     3K + 6N       N     child 3: node right of key 2
//
// Node length = 3K + 7 * 4 (current) or 3K + 7 * 2 (old). Keys are right-aligned: a node
// with one key uses slot 2, with two keys slots 1 and 2; keys ascend from slot 0 to slot 2.
// Old-layout numbers are held as 32 bits in memory and narrowed again on writing.
//
// A damaged file never crashes or hangs a caller: node numbers are checked against the
// highest record, a descent stops at kMaxDepth levels or when it meets a node already on its
// path, and a walk stops after more entries than the file can hold; all give kOutOfRange.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "store/file/rec_file.h"

namespace nv {

// One node as held in memory.
struct NvIndexNode {
  uint32_t number = 0;        // record number of the node
  std::vector<uint8_t> keys;  // three slots of key length bytes
  uint32_t data[3] = {};      // first block of each key's asset
  uint32_t child[4] = {};     // child i+1 lies between key i and key i+1
};

class NvBTreeFile {
 public:
  // Header magics and sizes: 7 + 4 * 4 (current) and 2 + 3 + 4 * 2 (old).
  static constexpr char kMagicCurrent[] = "NVW3300";
  static constexpr uint8_t kMagicOld[] = {0xFF, 0xFF, '7', '2', '1'};
  static constexpr size_t kHeaderBytesCurrent = 7 + 4 * 4;
  static constexpr size_t kHeaderBytesOld = 2 + 3 + 4 * 2;
  static_assert(kHeaderBytesCurrent == 23 && kHeaderBytesOld == 13);
  static constexpr uint8_t kHeaderFill = 0xAA;
  // Record numbers per node: three data entries and four children.
  static constexpr uint32_t kNumbersPerNode = 3 + 4;
  // Deeper than any tree the insert procedure builds in a file of this size; a path this
  // long means the file is damaged.
  static constexpr size_t kMaxDepth = 1000;

  // One step of the path from the root: a node and a slot index. For the entry on top the
  // slot is one past the current key; below it, the index of the child taken.
  struct PathEntry {
    uint32_t node;
    uint16_t slot;
  };
  using TreepathStack = std::vector<PathEntry>;

  static uint32_t NodeLength(NvRecFile::Format format, uint32_t key_length) {
    return 3 * key_length + kNumbersPerNode * (format == NvRecFile::kOldLayout ? 2 : 4);
  }

  NvBTreeFile() = default;
  NvBTreeFile(const NvBTreeFile&) = delete;
  NvBTreeFile& operator=(const NvBTreeFile&) = delete;

  // Opens an index and reads its header; the header says the layout and so which key
  // length applies. bad_header_status (kBadHeaderI1 or kBadHeaderI2) is returned when the
  // file cannot be opened or its header is not recognized. kOk on success.
  [[nodiscard]] int Open(const std::string& path, bool read_only, uint32_t key_length_current,
           uint32_t key_length_old, int bad_header_status);
  // Creates an empty index and writes its header.
  [[nodiscard]] int Create(const std::string& path, uint32_t key_length, int bad_header_status,
             NvRecFile::Format format = NvRecFile::kCurrentLayout);
  [[nodiscard]] int ReadHeader();
  [[nodiscard]] int WriteHeader();
  // Writes the header when the root or the counters differ from the header last read or
  // written, so that the file reads as a whole tree between changes: kOk or the status of
  // WriteHeader. Nothing is written to a file open for reading only.
  [[nodiscard]] int WriteHeaderIfChanged();
  // Writes the header when open for writing and makes the file reach the disk (fsync),
  // then closes: 0, or -1 when any step failed. Destroying an open index closes it without
  // writing the header.
  [[nodiscard]] int Close();

  // The sort order is the company's for .I2 and empty for .I1. Keys shorter than the key
  // length are padded with zero bytes, longer ones cut.
  [[nodiscard]] int Find(std::string_view key, std::string_view sort_order, uint32_t* record);
  [[nodiscard]] int Insert(std::string_view key, uint32_t record, std::string_view sort_order, uint32_t* node);
  [[nodiscard]] int Delete(std::string_view key, std::string_view sort_order);
  // Step in key order from the current path; an empty path starts at the first (last)
  // entry. At the end: kOk with *record 0 and an empty path.
  [[nodiscard]] int Next(uint32_t* record);
  [[nodiscard]] int Previous(uint32_t* record);
  // Key of the entry last found or stepped to.
  const std::string& current_key() const { return current_key_; }
  const TreepathStack& path() const { return path_; }
  void ClearPath() {
    path_.clear();
    at_gap_ = false;
    scratch_.number = 0;
  }

  [[nodiscard]] int CompareKeys(std::string_view a, std::string_view b, std::string_view sort_order) const;
  // Reads and checks a node number (1 .. highest record): kOk or kOutOfRange.
  [[nodiscard]] int ReadNode(uint32_t number, NvIndexNode* node);
  [[nodiscard]] int WriteNode(const NvIndexNode& node);
  [[nodiscard]] bool SlotEmpty(const NvIndexNode& node, int slot) const;
  std::string_view Key(const NvIndexNode& node, int slot) const;

  bool is_open() const { return file_.is_open(); }
  uint32_t key_length() const { return key_length_; }
  uint32_t root() const { return root_; }
  NvRecFile::Format format() const { return file_.format(); }
  NvRecFile& file() { return file_; }

 private:
  void SetProbe(std::string_view key);
  // Where the probe goes in a node that is not full: kOk with *pos the slot it takes (or
  // whose right child it goes down to), or kDuplicate.
  [[nodiscard]] int InsertPosition(const NvIndexNode& node, std::string_view sort_order, int* pos) const;
  // Puts the probe and its record in at slot pos, moving the keys before it one slot left.
  void PlaceProbe(NvIndexNode* node, int pos, uint32_t record) const;
  [[nodiscard]] int Push(uint32_t node, uint16_t slot);
  [[nodiscard]] int DescendLeft(uint32_t node);
  [[nodiscard]] int DescendRight(uint32_t node);
  [[nodiscard]] int ReadNodeOnce(uint32_t number, NvIndexNode* node);
  [[nodiscard]] int Step(bool forward, uint32_t* record);
  [[nodiscard]] int StepDown(bool forward);
  [[nodiscard]] int EmitNext(uint32_t* record);
  [[nodiscard]] int EmitPrevious(uint32_t* record);
  [[nodiscard]] int Emit(const NvIndexNode& node, int slot, uint32_t* record);
  void CopyEntry(NvIndexNode* to, int to_slot, const NvIndexNode& from, int from_slot) const;
  void ClearEntry(NvIndexNode* node, int slot) const;
  void ZeroNode(NvIndexNode* node, uint32_t number) const;

  // Root and counters as the header on disk holds them.
  struct HeaderValues {
    uint32_t highest_record = 0;
    uint32_t root = 0;
    uint32_t free_head = 0;
    uint32_t free_count = 0;
    friend bool operator==(const HeaderValues&, const HeaderValues&) = default;
  };
  HeaderValues CurrentHeaderValues() const;

  NvRecFile file_;
  HeaderValues on_disk_;
  uint32_t key_length_ = 0;
  uint32_t key_length_current_ = 0;
  uint32_t key_length_old_ = 0;
  uint32_t root_ = 0;
  int bad_header_status_ = -112;
  TreepathStack path_;
  // The path's top marks a gap between keys (left by an unsuccessful find), not an entry.
  bool at_gap_ = false;
  uint64_t walk_steps_ = 0;
  std::string current_key_;
  std::string probe_;                // searched key, padded to the key length
  std::vector<uint8_t> node_bytes_;  // one node as on disk
  NvIndexNode scratch_;
};

}  // namespace nv
