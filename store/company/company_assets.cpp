// NvCompany's asset operations and the recovery after an interrupted run.

#include <cstdio>
#include <span>
#include <string>
#include <vector>

#include "base/coding.h"
#include "base/file_util.h"
#include "store/asset/asset.h"
#include "store/asset/asset_keys.h"
#include "store/asset/asset_record.h"
#include "store/company/change_log.h"
#include "store/company/company.h"
#include "store/file/block_chain.h"
#include "store/file/key_compare.h"
#include "store/file/status.h"

namespace nv {
namespace {

std::span<const uint8_t> AsBytes(const std::string& s) {
  return {reinterpret_cast<const uint8_t*>(s.data()), s.size()};
}

}  // namespace

AssetRecordFormat NvCompany::RecordFormat() const {
  return AssetRecordFormatOf(record_);
}

void NvCompany::MarkChanging() {
  if (marked_changing_) return;
  // On disk before the first change, so that after a power loss the next writer still
  // finds it. Without it (a folder that takes no new file) the run goes on as before and
  // the next operation tries again.
  marked_changing_ = CreateFileDurably(FilePath(kChangingMarkerExtension));
}

int NvCompany::AddAsset(NvAsset* asset) {
  return WithCountersWritten(InsertAsset(asset));
}

int NvCompany::ReplaceAsset(NvAsset* asset) {
  return WithCountersWritten(RewriteAsset(asset));
}

int NvCompany::DeleteAsset(const NvAsset& asset, std::string_view log_tag) {
  return WithCountersWritten(RemoveAsset(asset, log_tag));
}

// The asset's chain is written first and the counters that hold its blocks taken next;
// only then do the indexes name it. A failed add leaves nothing behind: a refused number
// writes nothing, and blocks already written go back on the free list.
int NvCompany::InsertAsset(NvAsset* asset) {
  if (!i1_.is_open()) return kBadHeaderI1;
  if (!i2_.is_open()) return kBadHeaderI2;
  const AssetRecordFormat format = RecordFormat();
  asset->number = asset->number.InFormat(format.asset_no_format);
  if (!asset->number.valid()) return kInvalidAsset;
  const std::string number_key = AssetNumberKey(*asset, format);
  const std::string sort_key = AssetSortKey(*asset, format);
  uint32_t existing = 0;
  const int found = i1_.Find(number_key, "", &existing);
  i1_.ClearPath();
  if (found != kNotFound) return found == kOk ? kDuplicate : found;
  MarkChanging();

  const std::string bytes = SerializeAssetRecord(*asset, format);
  const BlockFileCounters before{blocks_.highest_record(), blocks_.free_head(),
                                 blocks_.free_count()};
  uint32_t first = kNoChain;
  if (WriteChain(blocks_, AsBytes(bytes), kMarkerAssetFirst, kAssetBlockLengthField, &first) !=
      kOk) {
    // The blocks written go back on the free list; when not even the first one was,
    // blocks appended are simply not taken (freeing one would leave a piece of a block at
    // the end of the file). The failed write is the status to report.
    if (first == kNoChain || FreeAssetChain(first) != kOk) {
      if (blocks_.free_head() == before.free_head && blocks_.free_count() == before.free_count) {
        blocks_.SetCounters(before.highest_record, before.free_head, before.free_count);
      }
    }
    return kChainWriteFailed;
  }
  // The status of these writes shows when the add ends, where they are tried again.
  (void)WriteCountersThrough();
  auto give_back = [&](int status) {
    // Nothing names the chain any more; the status of the add is what to report.
    (void)FreeAssetChain(first);
    return status;
  };
  uint32_t node = 0;
  if (int rc = i1_.Insert(number_key, first, "", &node); rc != kOk) return give_back(rc);
  (void)WriteCountersThrough();  // as above
  if (int rc = i2_.Insert(sort_key, first, record_.sort_order, &node); rc != kOk) {
    // No key may point at a block that is free again. Should this delete fail too, the
    // key stays and the company check reports it; the add's own status is what counts.
    static_cast<void>(i1_.Delete(number_key, ""));
    return give_back(rc);
  }
  asset->record_number = first;
  asset->stored_number_key = number_key;
  asset->stored_sort_key = sort_key;
  return kOk;
}

int NvCompany::RewriteAsset(NvAsset* asset) {
  if (asset->record_number == 0) return kInvalidAsset;
  if (!i1_.is_open()) return kBadHeaderI1;
  if (!i2_.is_open()) return kBadHeaderI2;
  MarkChanging();
  const AssetRecordFormat format = RecordFormat();
  asset->number = asset->number.InFormat(format.asset_no_format);
  if (!asset->number.valid()) return kInvalidAsset;
  const std::string number_key = AssetNumberKey(*asset, format);
  const std::string sort_key = AssetSortKey(*asset, format);
  uint32_t node = 0;
  if (number_key != asset->stored_number_key) {
    // Insert the new key first, so that a duplicate number leaves the asset as it was.
    if (int rc = i1_.Insert(number_key, asset->record_number, "", &node); rc != kOk) return rc;
    if (i1_.Delete(asset->stored_number_key, "") != kOk) {
      static_cast<void>(i1_.Delete(number_key, ""));  // undoing; kNumberKeyFailed tells
      return kNumberKeyFailed;
    }
    asset->stored_number_key = number_key;
  }
  if (sort_key != asset->stored_sort_key) {
    if (int rc = i2_.Insert(sort_key, asset->record_number, record_.sort_order, &node); rc != kOk) {
      return rc;
    }
    if (i2_.Delete(asset->stored_sort_key, record_.sort_order) != kOk) {
      static_cast<void>(i2_.Delete(sort_key, record_.sort_order));  // undoing; kSortKeyFailed tells
      return kSortKeyFailed;
    }
    asset->stored_sort_key = sort_key;
  }
  const std::string bytes = SerializeAssetRecord(*asset, format);
  uint32_t chain = asset->record_number;
  return WriteChain(blocks_, AsBytes(bytes), kMarkerAssetFirst, kAssetBlockLengthField, &chain) ==
                 kOk
             ? kOk
             : kChainWriteFailed;
}

int NvCompany::RemoveAsset(const NvAsset& asset, std::string_view log_tag) {
  if (asset.record_number == 0) return kInvalidAsset;
  MarkChanging();
  const AssetRecordFormat format = RecordFormat();
  std::string number_key =
      asset.stored_number_key.empty() ? AssetNumberKey(asset, format) : asset.stored_number_key;
  std::string sort_key =
      asset.stored_sort_key.empty() ? AssetSortKey(asset, format) : asset.stored_sort_key;
  if (!i1_.is_open() || i1_.Delete(number_key, "") != kOk) return kNumberKeyFailed;
  if (!i2_.is_open() || i2_.Delete(sort_key, record_.sort_order) != kOk) return kSortKeyFailed;
  if (int rc = FreeAssetChain(asset.record_number); rc != kOk) return rc;
  // The asset is gone whether or not the log takes the line.
  static_cast<void>(LogIf(kLogAllMask, *this, asset.number.DisplayText(),
                          log_tag.empty() ? kTagAssetDeleted : log_tag, "Asset deleted"));
  return kOk;
}

// Frees every block of a chain: the first block must be an asset's (0xE4 with a 32-bit
// next, or 0xE0 / 0xE2 with a 16-bit one), later blocks continuations.
int NvCompany::FreeAssetChain(uint32_t first_block) {
  uint32_t block = first_block;
  const uint64_t limit = blocks_.RecordsInFile();
  bool old = false;
  for (uint64_t count = 0; block != 0; ++count) {
    if (count > limit) return kBrokenChain;
    uint8_t head[kBlockHeaderCurrent];
    if (!blocks_.ReadRecord(block, head, sizeof head)) return kBrokenChain;
    const BlockHeader header =
        count == 0 ? DecodeFirstBlockHeader(head) : DecodeBlockHeader(head, old);
    if (count == 0) {
      if (header.marker != kMarkerAssetFirst && !header.old_layout) return kBadMarker;
      old = header.old_layout;
    } else if (header.marker != kMarkerContinuation) {
      return kBadMarker;
    }
    if (int rc = blocks_.Free(block); rc != kOk) return rc;
    block = header.next;
  }
  return kOk;
}

int NvCompany::FindAsset(std::string_view number, NvAsset* asset) {
  const AssetRecordFormat format = RecordFormat();
  NvAssetNo parsed = NvAssetNo::Parse(number, format.asset_no_format);
  if (!parsed.valid()) return kNumberKeyFailed;
  if (!i1_.is_open()) return kBadHeaderI1;
  uint32_t record = 0;
  if (int rc = i1_.Find(parsed.Key(), "", &record); rc != kOk) return rc;
  return ReadAsset(record, asset);
}

int NvCompany::ReadAsset(uint32_t record, NvAsset* asset) {
  std::string bytes;
  uint8_t marker = 0;
  if (record == 0 || record > blocks_.highest_record()) return kOutOfRange;
  if (int rc = ReadChain(blocks_, record, 0, &bytes, &marker); rc != kOk) return rc;
  if (marker != kMarkerAssetFirst && !IsOldLayoutMarker(marker)) return kBadMarker;
  const AssetRecordFormat format = RecordFormat();
  ParseAssetRecord(bytes, format, asset);
  asset->record_number = record;
  asset->stored_number_key = AssetNumberKey(*asset, format);
  asset->stored_sort_key = AssetSortKey(*asset, format);
  return kOk;
}

void NvCompany::ResetAssetWalk() {
  i1_.ClearPath();
  i2_.ClearPath();
}

int NvCompany::Step(AssetOrder order, bool forward, NvAsset* asset) {
  NvBTreeFile& index = order == AssetOrder::kNumber ? i1_ : i2_;
  if (!index.is_open()) return order == AssetOrder::kNumber ? kBadHeaderI1 : kBadHeaderI2;
  // The index refuses a step in a tree without a root; a company without assets is no
  // damage but the end of the walk.
  if (index.root() == 0) {
    index.ClearPath();
    asset->record_number = 0;
    return kOk;
  }
  uint32_t record = 0;
  int rc = forward ? index.Next(&record) : index.Previous(&record);
  if (rc != kOk) return rc;
  if (record == 0) {
    asset->record_number = 0;
    return kOk;
  }
  if (int read = ReadAsset(record, asset); read != kOk) return read;
  // The key the index holds is the one to replace or delete later.
  std::string key = index.current_key();
  if (order == AssetOrder::kNumber) {
    asset->stored_number_key = std::move(key);
  } else {
    asset->stored_sort_key = std::move(key);
  }
  return kOk;
}

int NvCompany::NextAsset(AssetOrder order, NvAsset* asset) {
  return Step(order, true, asset);
}

int NvCompany::PreviousAsset(AssetOrder order, NvAsset* asset) {
  return Step(order, false, asset);
}

// After a run died inside an operation the block file's counters and the indexes may be
// behind the blocks: an add's blocks are written before the counters, and a split of an
// index node is three writes. The asset chains themselves are whole for every add that returned, so
// the free list and both indexes are built again from them:
//   1. every block the file holds counts, the company record's chain is kept;
//   2. each block with an asset's first-block marker whose chain reads whole, uses no block
//      of another chain and whose number is new gets its keys in fresh indexes;
//   3. every other block goes on the free list.
// A chain whose add had not returned may thereby come back whole; a chain cut short by the
// end of the run is dropped.
int NvCompany::RecoverInterruptedRun() {
  const uint64_t in_file = blocks_.RecordsInFile();
  if (in_file == 0) return kBlockFileMissing;
  const uint32_t highest = static_cast<uint32_t>(std::min<uint64_t>(in_file - 1, UINT32_MAX - 1));
  blocks_.SetCounters(highest, 0, 0);
  std::vector<bool> used(static_cast<size_t>(highest) + 1, false);

  // Follows an asset's chain from its first block; false when it is broken, too long for
  // an asset or meets a block of another chain.
  constexpr size_t kMaxAssetBlocks = 4096;
  auto claim_chain = [&](uint32_t first, std::string* bytes, std::vector<uint32_t>* blocks) {
    bytes->clear();
    blocks->clear();
    uint8_t block[kBlockLength];
    uint32_t at = first;
    bool old = false;
    while (at != 0) {
      if (at > highest || used[at] || blocks->size() >= kMaxAssetBlocks) return false;
      for (uint32_t b : *blocks) {
        if (b == at) return false;
      }
      if (!blocks_.ReadRecord(at, block, kBlockLength)) return false;
      const BlockHeader head =
          blocks->empty() ? DecodeFirstBlockHeader(block) : DecodeBlockHeader(block, old);
      if (blocks->empty()) {
        old = head.old_layout;
      } else if (head.marker != kMarkerContinuation) {
        return false;
      }
      blocks->push_back(at);
      const size_t header = old ? kBlockHeaderOld : kBlockHeaderCurrent;
      bytes->append(reinterpret_cast<const char*>(block + header), kBlockLength - header);
      at = head.next;
    }
    for (uint32_t b : *blocks) used[b] = true;
    return true;
  };

  // The company record's chain: block 0 and its continuations.
  used[0] = true;
  uint8_t head[kBlockHeaderCurrent];
  uint32_t at = 0;
  for (size_t count = 0; count <= highest; ++count) {
    if (!blocks_.ReadRecord(at, head, sizeof head)) break;
    const BlockHeader header = DecodeBlockHeader(head, old_layout_);
    if (count > 0 && header.marker != kMarkerContinuation) break;
    used[at] = true;
    at = header.next;
    if (at == 0 || at > highest || used[at]) break;
  }

  std::string bytes;
  std::vector<uint32_t> chain;
  const AssetRecordFormat format = RecordFormat();
  const NvAssetNoFormat& f = format.asset_no_format;
  NvBTreeFile i1, i2;
  if (i1.Create(FilePath("I1"), I1KeyLength(true, f.main_length, f.subasset_length),
                kBadHeaderI1) != kOk) {
    return kI1Failed;
  }
  if (i2.Create(FilePath("I2"), I2KeyLength(true, record_.sort_order, f.IsLong()), kBadHeaderI2) !=
      kOk) {
    return kI2Failed;
  }
  for (uint32_t b = 1; b <= highest; ++b) {
    if (used[b] || !blocks_.ReadRecord(b, head, sizeof head)) continue;
    // Outside the company record's chain, 0xE0 starts an old asset chain as 0xE2 does.
    const BlockHeader first = DecodeFirstBlockHeader(head);
    if (first.marker != kMarkerAssetFirst && !first.old_layout) continue;
    if (!claim_chain(b, &bytes, &chain)) continue;
    NvAsset asset;
    ParseAssetRecord(bytes, format, &asset);
    const std::string number_key = AssetNumberKey(asset, format);
    uint32_t node = 0;
    bool keyed = !asset.number.empty() && i1.Insert(number_key, b, "", &node) == kOk;
    if (keyed && i2.Insert(AssetSortKey(asset, format), b, record_.sort_order, &node) != kOk) {
      static_cast<void>(i1.Delete(number_key, ""));  // a fresh index; the check counts what is left
      keyed = false;
    }
    if (!keyed) {
      for (uint32_t c : chain) used[c] = false;
    }
  }
  if (i1.Close() != 0) return kI1Failed;
  if (i2.Close() != 0) return kI2Failed;
  // Highest first, so that the list hands out low blocks first.
  for (uint32_t b = highest; b >= 1; --b) {
    if (!used[b] && blocks_.Free(b) != kOk) return kFreeWriteFailed;
  }
  return WriteCompanyRecord();
}

}  // namespace nv
