// Block chains in the block file (.A): the company record and every asset record are their
// serialized bytes cut into pieces, one piece per 145-byte block, the blocks linked by their
// next fields. The company record always starts at block 0; an asset record starts at the
// block named by the data entry of its index keys.
//
// Block, current layout:
//
//   OFFSET  SIZE  DESCRIPTION
//     0       2     block length (u16): 145 in company-record blocks, 0 in asset blocks
//     2       1     marker (table below)
//     3       4     next block (u32), 0 = last
//     7     138     data
//
// Block, old layout:
//
//   OFFSET  SIZE  DESCRIPTION
//     0       2     next block (u16), 0 = last
//     2       1     marker
//     3     142     data
//
//   MARKER  MEANING
//   0xE3    first block of the company record (current layout, short asset-number format)
//   0xE5    first block of the company record (current layout, long format)
//   0xE0    first block of the company record or of an asset record, old layout
//   0xE2    first block of an asset record, old layout
//   0xE4    first block of an asset record, current layout
//   0xE1    continuation block
//   0xF1    free record (current layout); 0xF0 free record (old layout)
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "store/file/rec_file.h"

namespace nv {

// Block length 2 + 1 + 4 + 138 (current) = 2 + 1 + 142 (old).
inline constexpr size_t kBlockDataCurrent = 138;
inline constexpr size_t kBlockDataOld = 142;
inline constexpr size_t kBlockHeaderCurrent = 2 + 1 + 4;
inline constexpr size_t kBlockHeaderOld = 2 + 1;
inline constexpr uint32_t kBlockLength = 2 + 1 + 4 + 138;
static_assert(kBlockLength == 145 && kBlockLength == kBlockHeaderOld + kBlockDataOld);
static_assert(kBlockLength == kBlockHeaderCurrent + kBlockDataCurrent);

inline constexpr uint8_t kMarkerCompanyShort = 0xE3;
inline constexpr uint8_t kMarkerCompanyLong = 0xE5;
inline constexpr uint8_t kMarkerOldFirst = 0xE0;
inline constexpr uint8_t kMarkerOldAssetFirst = 0xE2;
inline constexpr uint8_t kMarkerAssetFirst = 0xE4;
inline constexpr uint8_t kMarkerContinuation = 0xE1;
inline constexpr uint8_t kMarkerFree = 0xF1;
inline constexpr uint8_t kMarkerOldFree = 0xF0;

// Block-length field values.
inline constexpr uint16_t kCompanyBlockLengthField = 145;
inline constexpr uint16_t kAssetBlockLengthField = 0;

// A block's header in either layout; the marker sits at the same offset in both.
inline constexpr size_t kBlockMarkerOffset = 2;
struct BlockHeader {
  uint16_t length_field = 0;  // current layout only; 0 in the old one
  uint8_t marker = 0;
  uint32_t next = 0;  // next block of the chain, 0 = last
  bool old_layout = false;
};
// Decodes the first kBlockHeaderOld (old layout) or kBlockHeaderCurrent bytes of a block.
// A chain's layout is the one its first block's marker says; later blocks follow it.
BlockHeader DecodeBlockHeader(const uint8_t* block, bool old_layout);
// The header of a chain's first block, in the layout its marker says.
// REQUIRES: block holds kBlockHeaderCurrent bytes.
BlockHeader DecodeFirstBlockHeader(const uint8_t* block);

// Passed as the old first block when a record has no chain yet.
inline constexpr uint32_t kNoChain = 0xFFFFFFFF;

// True for the markers of a first or continuation block of either layout.
[[nodiscard]] bool IsChainMarker(uint8_t marker);
// True for the first-block markers of the old layout (16-bit next field at offset 0).
[[nodiscard]] bool IsOldLayoutMarker(uint8_t marker);

// Writes bytes as a current-layout chain. *first_block is the old chain's first block (its
// blocks are reused in place while their markers are chain markers), or kNoChain to allocate
// a first block; on success it holds the chain's first block. Surplus old blocks are freed.
// At least one block is written. Returns kOk, kChainWriteFailed, or the status of a failed
// allocation or free.
// With `first_is_new`, *first_block is a block just allocated for a new chain: nothing of
// an old chain is read from it.
[[nodiscard]] int WriteChain(NvRecFile& file, std::span<const uint8_t> bytes, uint8_t first_marker,
                             uint16_t block_length_field, uint32_t* first_block,
                             bool first_is_new = false);

// Reads the chain starting at first_block into *bytes (all data parts, whole blocks).
// max_blocks 0 reads to the end. *first_marker (optional) receives the first block's marker.
// Returns kOk, kBadMarker (first block is not a first block), or kBrokenChain (a
// continuation without the 0xE1 marker, an unreadable block, or a chain that loops).
[[nodiscard]] int ReadChain(NvRecFile& file, uint32_t first_block, size_t max_blocks,
                            std::string* bytes, uint8_t* first_marker = nullptr);

}  // namespace nv
