// Consistency checks of an index file and a block file, for tests, tools and support. They
// only read, never crash on a damaged file, and describe each problem in one line.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "store/file/btree_file.h"
#include "store/file/rec_file.h"

namespace nv {

struct TreeCheck {
  std::vector<std::string> problems;
  uint64_t keys = 0;           // entries reached
  uint32_t nodes = 0;          // nodes reached
  uint32_t depth = 0;          // deepest level reached (root = 1)
  std::vector<uint32_t> data;  // data entries in key order
};

// Walks the whole tree: node numbers out of range or unreadable, a node reached twice, keys
// out of order (within a node and across the tree), slots not right-aligned, children left
// of the first key, empty nodes below the root; then the free list (see CheckFreeList) and
// free records that the tree still uses.
TreeCheck CheckTree(NvBTreeFile& tree, std::string_view sort_order);

// Follows the free list from the free head: numbers out of range, loops, records without
// the free marker of the file's layout, and a length that differs from the free count.
// *free_records (optional) receives the records found on it.
std::vector<std::string> CheckFreeList(NvRecFile& file, std::vector<uint32_t>* free_records);

// Walks the block file: every chain from its first block (block 0 for the company record,
// the data entries of the indexes for the assets) for unreadable blocks, wrong markers,
// loops and blocks reached twice, and the free list, including free blocks used by a chain.
std::vector<std::string> CheckBlockFile(NvRecFile& file, std::span<const uint32_t> chain_starts);

}  // namespace nv
