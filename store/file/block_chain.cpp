#include "store/file/block_chain.h"

#include <algorithm>
#include <cstring>
#include <unordered_set>
#include <vector>

#include "base/coding.h"
#include "store/file/status.h"

namespace nv {

bool IsChainMarker(uint8_t marker) {
  return marker >= 0xE0 && marker <= 0xE5;
}

bool IsOldLayoutMarker(uint8_t marker) {
  return marker == kMarkerOldFirst || marker == kMarkerOldAssetFirst;
}

BlockHeader DecodeBlockHeader(const uint8_t* block, bool old_layout) {
  BlockHeader header;
  header.marker = block[kBlockMarkerOffset];
  header.old_layout = old_layout;
  if (old_layout) {
    header.next = DecodeU16(block);
  } else {
    header.length_field = DecodeU16(block);
    header.next = DecodeU32(block + kBlockMarkerOffset + 1);
  }
  return header;
}

BlockHeader DecodeFirstBlockHeader(const uint8_t* block) {
  return DecodeBlockHeader(block, IsOldLayoutMarker(block[kBlockMarkerOffset]));
}

namespace {

// Next block of an old chain's block, from its first bytes; 0 when it is not part of a
// chain (or is the last block). The chain's first block says its layout.
uint32_t OldChainNext(NvRecFile& file, uint32_t block, bool* old_layout, bool first) {
  uint8_t head[kBlockHeaderCurrent];
  if (!file.ReadRecord(block, head, sizeof head)) return 0;
  BlockHeader header = first ? DecodeFirstBlockHeader(head) : DecodeBlockHeader(head, *old_layout);
  if (!IsChainMarker(header.marker)) return 0;
  *old_layout = header.old_layout;
  return header.next;
}

bool ChainBlockAt(NvRecFile& file, uint32_t block) {
  uint8_t head[kBlockHeaderCurrent];
  return file.ReadRecord(block, head, sizeof head) &&
         IsChainMarker(DecodeBlockHeader(head, false).marker);
}

}  // namespace

int WriteChain(NvRecFile& file, std::span<const uint8_t> bytes, uint8_t first_marker,
               uint16_t block_length_field, uint32_t* first_block, bool first_is_new) {
  size_t pieces = std::max<size_t>(1, (bytes.size() + kBlockDataCurrent - 1) / kBlockDataCurrent);
  // Old blocks already taken by this write, so that a looping old chain is not reused twice.
  std::unordered_set<uint32_t> used;
  auto reusable = [&](uint32_t block) {
    return block != 0 && block != kNoChain && block <= file.highest_record() &&
           !used.count(block) && ChainBlockAt(file, block);
  };

  uint32_t current = *first_block;
  uint32_t old_next = 0;  // the old chain's block after the current one, 0 = none
  bool old_layout = false;
  if (current == kNoChain) {
    if (int rc = file.Allocate(&current); rc != kOk) return rc;
  } else if (!first_is_new) {
    old_next = OldChainNext(file, current, &old_layout, true);
  }
  *first_block = current;
  used.insert(current);

  // Blocks that follow each other in the file go out in one write.
  std::vector<uint8_t> run;
  uint32_t run_first = 0;
  auto flush = [&]() {
    bool ok = run.empty() || file.WriteRecords(run_first, run.data(),
                                               static_cast<uint32_t>(run.size() / kBlockLength));
    run.clear();
    return ok;
  };
  for (size_t i = 0; i < pieces; ++i) {
    uint32_t next = 0;
    if (i + 1 < pieces) {
      if (reusable(old_next)) {
        next = old_next;
        old_next = OldChainNext(file, next, &old_layout, false);
      } else {
        old_next = 0;
        if (int rc = file.Allocate(&next); rc != kOk) return rc;
      }
      used.insert(next);
    }
    if (!run.empty() && current != run_first + run.size() / kBlockLength && !flush()) {
      return kChainWriteFailed;
    }
    if (run.empty()) run_first = current;
    run.resize(run.size() + kBlockLength, 0);
    uint8_t* block = run.data() + run.size() - kBlockLength;
    EncodeU16(block, block_length_field);
    block[2] = i == 0 ? first_marker : kMarkerContinuation;
    EncodeU32(block + 3, next);
    size_t offset = i * kBlockDataCurrent;
    size_t n = std::min(kBlockDataCurrent, bytes.size() - std::min(bytes.size(), offset));
    if (n > 0) std::memcpy(block + kBlockHeaderCurrent, bytes.data() + offset, n);
    current = next;
  }
  if (!flush()) return kChainWriteFailed;

  // Free what remains of the old chain; stop at anything that is not a chain block.
  while (reusable(old_next)) {
    uint32_t surplus = old_next;
    old_next = OldChainNext(file, surplus, &old_layout, false);
    used.insert(surplus);
    if (int rc = file.Free(surplus); rc != kOk) return rc;
  }
  return kOk;
}

int ReadChain(NvRecFile& file, uint32_t first_block, size_t max_blocks, std::string* bytes,
              uint8_t* first_marker) {
  bytes->clear();
  uint8_t block[kBlockLength];
  if (!file.ReadRecord(first_block, block, kBlockLength)) return kBrokenChain;
  BlockHeader head = DecodeFirstBlockHeader(block);
  if (first_marker) *first_marker = head.marker;
  if (!IsChainMarker(head.marker) || head.marker == kMarkerContinuation) return kBadMarker;
  const bool old = head.old_layout;
  size_t header = old ? kBlockHeaderOld : kBlockHeaderCurrent;
  // More blocks than the file holds means the chain runs in a circle.
  uint64_t limit = file.RecordsInFile();
  uint64_t count = 0;
  for (;;) {
    bytes->append(reinterpret_cast<const char*>(block + header), kBlockLength - header);
    ++count;
    if (head.next == 0 || (max_blocks != 0 && count >= max_blocks)) return kOk;
    if (count >= limit) return kBrokenChain;
    if (!file.ReadRecord(head.next, block, kBlockLength)) return kBrokenChain;
    head = DecodeBlockHeader(block, old);
    if (head.marker != kMarkerContinuation) return kBrokenChain;
  }
}

}  // namespace nv
