#include "store/file/btree_file.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "base/coding.h"
#include "store/file/key_compare.h"
#include "store/file/status.h"

namespace nv {
namespace {

bool AllZero(const uint8_t* p, size_t n) {
  for (size_t i = 0; i < n; ++i) {
    if (p[i] != 0) return false;
  }
  return true;
}

}  // namespace

// ---- Header -----------------------------------------------------------------------------

int NvBTreeFile::Open(const std::string& path, bool read_only, uint32_t key_length_current,
                      uint32_t key_length_old, int bad_header_status) {
  static_cast<void>(Close());  // an index open before is given up for this one
  bad_header_status_ = bad_header_status;
  key_length_current_ = key_length_current;
  key_length_old_ = key_length_old;
  // The layout is not known before the header is read; its first bytes fit either.
  if (!file_.Open(path, read_only, kHeaderBytesCurrent, NvRecFile::kCurrentLayout)) {
    return bad_header_status_;
  }
  int rc = ReadHeader();
  if (rc != kOk) static_cast<void>(file_.Close());  // read-only use; nothing written
  return rc;
}

int NvBTreeFile::Create(const std::string& path, uint32_t key_length, int bad_header_status,
                        NvRecFile::Format format) {
  static_cast<void>(Close());  // an index open before is given up for this one
  bad_header_status_ = bad_header_status;
  key_length_ = key_length_current_ = key_length_old_ = key_length;
  if (key_length == 0 || !file_.Create(path, NodeLength(format, key_length), format)) {
    return bad_header_status_;
  }
  root_ = 0;
  ClearPath();
  if (WriteHeader() != kOk) {
    static_cast<void>(file_.Close());  // the status below says it failed
    return bad_header_status_;
  }
  return kOk;
}

int NvBTreeFile::ReadHeader() {
  if (!file_.is_open()) return bad_header_status_;
  uint8_t h[kHeaderBytesCurrent];
  // Both layouts' headers fit in the smallest node, but the file may hold only the old one.
  file_.SetLayout(kHeaderBytesCurrent, file_.format());
  bool have_current = file_.ReadRecord(0, h, kHeaderBytesCurrent);
  if (!have_current && !file_.ReadRecord(0, h, kHeaderBytesOld)) return bad_header_status_;
  uint32_t highest, root, head, count;
  NvRecFile::Format format;
  if (have_current && std::memcmp(h, kMagicCurrent, 7) == 0) {
    format = NvRecFile::kCurrentLayout;
    highest = DecodeU32(h + 7);
    root = DecodeU32(h + 11);
    head = DecodeU32(h + 15);
    count = DecodeU32(h + 19);
    key_length_ = key_length_current_;
  } else if (std::memcmp(h, kMagicOld, sizeof kMagicOld) == 0) {
    format = NvRecFile::kOldLayout;
    highest = DecodeU16(h + 5);
    root = DecodeU16(h + 7);
    head = DecodeU16(h + 9);
    count = DecodeU16(h + 11);
    key_length_ = key_length_old_;
  } else {
    return bad_header_status_;
  }
  if (key_length_ == 0) return bad_header_status_;
  on_disk_ = {highest, root, head, count};
  // A free count above the highest record cannot be right: do not trust the list.
  if (highest < count) head = count = 0;
  file_.SetLayout(NodeLength(format, key_length_), format);
  file_.SetCounters(highest, head, count);
  root_ = root;
  ClearPath();
  return kOk;
}

int NvBTreeFile::WriteHeader() {
  if (!file_.is_open()) return bad_header_status_;
  std::vector<uint8_t> h(file_.record_length(), kHeaderFill);
  if (file_.format() == NvRecFile::kOldLayout) {
    std::memcpy(h.data(), kMagicOld, sizeof kMagicOld);
    EncodeU16(&h[5], static_cast<uint16_t>(file_.highest_record()));
    EncodeU16(&h[7], static_cast<uint16_t>(root_));
    EncodeU16(&h[9], static_cast<uint16_t>(file_.free_head()));
    EncodeU16(&h[11], static_cast<uint16_t>(file_.free_count()));
  } else {
    std::memcpy(h.data(), kMagicCurrent, 7);
    EncodeU32(&h[7], file_.highest_record());
    EncodeU32(&h[11], root_);
    EncodeU32(&h[15], file_.free_head());
    EncodeU32(&h[19], file_.free_count());
  }
  if (!file_.WriteRecord(0, h.data())) return kChainWriteFailed;
  on_disk_ = CurrentHeaderValues();
  return kOk;
}

NvBTreeFile::HeaderValues NvBTreeFile::CurrentHeaderValues() const {
  return {file_.highest_record(), root_, file_.free_head(), file_.free_count()};
}

int NvBTreeFile::WriteHeaderIfChanged() {
  if (!file_.is_open()) return bad_header_status_;
  if (file_.read_only() || CurrentHeaderValues() == on_disk_) return kOk;
  return WriteHeader();
}

int NvBTreeFile::Close() {
  if (!file_.is_open()) return 0;
  int rc = 0;
  if (!file_.read_only() && (WriteHeader() != kOk || !file_.Sync())) rc = -1;
  if (file_.Close() != 0) rc = -1;
  ClearPath();
  return rc;
}

// ---- Nodes ------------------------------------------------------------------------------

int NvBTreeFile::CompareKeys(std::string_view a, std::string_view b,
                             std::string_view sort_order) const {
  return file_.format() == NvRecFile::kOldLayout ? CompareOldKeys(a, b, sort_order)
                                                 : CompareI2Keys(a, b, sort_order);
}

bool NvBTreeFile::SlotEmpty(const NvIndexNode& node, int slot) const {
  return AllZero(&node.keys[size_t(slot) * key_length_], key_length_);
}

std::string_view NvBTreeFile::Key(const NvIndexNode& node, int slot) const {
  return {reinterpret_cast<const char*>(&node.keys[size_t(slot) * key_length_]), key_length_};
}

int NvBTreeFile::ReadNode(uint32_t number, NvIndexNode* node) {
  if (node == &scratch_) scratch_.number = 0;  // until it holds the new node
  if (number < 1 || number > file_.highest_record()) return kOutOfRange;
  node_bytes_.resize(file_.record_length());
  if (!file_.ReadRecord(number, node_bytes_.data())) return kOutOfRange;
  size_t keys = size_t{3} * key_length_;
  node->number = number;
  node->keys.assign(node_bytes_.begin(), node_bytes_.begin() + keys);
  const uint8_t* p = node_bytes_.data() + keys;
  bool old = file_.format() == NvRecFile::kOldLayout;
  for (int i = 0; i < 7; ++i) {
    uint32_t v = old ? DecodeU16(p + 2 * i) : DecodeU32(p + 4 * i);
    if (i < 3) {
      node->data[i] = v;
    } else {
      node->child[i - 3] = v;
    }
  }
  return kOk;
}

// A walk reads each node once on its way down and emits from the copy in scratch_; every
// write of that node drops the copy.
int NvBTreeFile::ReadNodeOnce(uint32_t number, NvIndexNode* node) {
  if (node == &scratch_ && scratch_.number == number && number != 0) return kOk;
  return ReadNode(number, node);
}

int NvBTreeFile::WriteNode(const NvIndexNode& node) {
  if (&node != &scratch_ && node.number == scratch_.number) scratch_.number = 0;
  node_bytes_.resize(file_.record_length());
  size_t keys = size_t{3} * key_length_;
  std::memcpy(node_bytes_.data(), node.keys.data(), keys);
  uint8_t* p = node_bytes_.data() + keys;
  bool old = file_.format() == NvRecFile::kOldLayout;
  for (int i = 0; i < 7; ++i) {
    uint32_t v = i < 3 ? node.data[i] : node.child[i - 3];
    if (old) {
      if (v > NvRecFile::kRecordLimitOld) return kOutOfRange;
      EncodeU16(p + 2 * i, static_cast<uint16_t>(v));
    } else {
      EncodeU32(p + 4 * i, v);
    }
  }
  return file_.WriteRecord(node.number, node_bytes_.data()) ? kOk : kChainWriteFailed;
}

void NvBTreeFile::CopyEntry(NvIndexNode* to, int to_slot, const NvIndexNode& from,
                            int from_slot) const {
  std::memmove(&to->keys[size_t(to_slot) * key_length_],
               &from.keys[size_t(from_slot) * key_length_], key_length_);
  to->data[to_slot] = from.data[from_slot];
  to->child[to_slot] = from.child[from_slot];
}

void NvBTreeFile::ClearEntry(NvIndexNode* node, int slot) const {
  std::memset(&node->keys[size_t(slot) * key_length_], 0, key_length_);
  node->data[slot] = 0;
  node->child[slot] = 0;
}

void NvBTreeFile::ZeroNode(NvIndexNode* node, uint32_t number) const {
  node->number = number;
  node->keys.assign(size_t{3} * key_length_, 0);
  std::fill(std::begin(node->data), std::end(node->data), 0);
  std::fill(std::begin(node->child), std::end(node->child), 0);
}

void NvBTreeFile::SetProbe(std::string_view key) {
  probe_.assign(key.substr(0, key_length_));
  probe_.resize(key_length_, '\0');
}

int NvBTreeFile::Push(uint32_t node, uint16_t slot) {
  if (path_.size() >= kMaxDepth) return kOutOfRange;
  for (const PathEntry& e : path_) {
    if (e.node == node) return kOutOfRange;  // the tree points back into itself
  }
  path_.push_back({node, slot});
  return kOk;
}

// ---- Find -------------------------------------------------------------------------------

int NvBTreeFile::Find(std::string_view key, std::string_view sort_order, uint32_t* record) {
  if (!file_.is_open()) return bad_header_status_;
  ClearPath();
  walk_steps_ = 0;
  if (root_ == 0) return kNotFound;
  SetProbe(key);
  NvIndexNode& node = scratch_;
  uint32_t n = root_;
  for (;;) {
    if (int rc = ReadNode(n, &node); rc != kOk) return rc;
    int slot = 0;
    int c = 1;
    for (; slot < 3; ++slot) {
      if (SlotEmpty(node, slot)) continue;  // empty slots are smaller than any key
      c = CompareKeys(probe_, Key(node, slot), sort_order);
      if (c <= 0) break;
    }
    if (slot < 3 && c == 0) {
      if (int rc = Push(n, static_cast<uint16_t>(slot + 1)); rc != kOk) return rc;
      current_key_.assign(Key(node, slot));
      *record = node.data[slot];
      return kOk;
    }
    if (int rc = Push(n, static_cast<uint16_t>(slot)); rc != kOk) return rc;
    if (node.child[slot] == 0) {
      at_gap_ = true;
      return kNotFound;
    }
    n = node.child[slot];
  }
}

// ---- Insert -----------------------------------------------------------------------------

int NvBTreeFile::InsertPosition(const NvIndexNode& node, std::string_view sort_order,
                                int* pos) const {
  int c1 = SlotEmpty(node, 1) ? 1 : CompareKeys(probe_, Key(node, 1), sort_order);
  int c2 = SlotEmpty(node, 2) ? 1 : CompareKeys(probe_, Key(node, 2), sort_order);
  if (c1 == 0 || c2 == 0) return kDuplicate;
  *pos = c1 < 0 ? 0 : (c2 < 0 ? 1 : 2);
  return kOk;
}

void NvBTreeFile::PlaceProbe(NvIndexNode* node, int pos, uint32_t record) const {
  for (int i = 0; i < pos; ++i) CopyEntry(node, i, *node, i + 1);
  std::memcpy(&node->keys[size_t(pos) * key_length_], probe_.data(), key_length_);
  node->data[pos] = record;
  node->child[pos] = 0;
}

int NvBTreeFile::Insert(std::string_view key, uint32_t record, std::string_view sort_order,
                        uint32_t* node_number) {
  if (!file_.is_open()) return bad_header_status_;
  ClearPath();
  SetProbe(key);
  // An all-zero key would read back as an empty slot.
  if (AllZero(reinterpret_cast<const uint8_t*>(probe_.data()), probe_.size())) {
    return kOutOfRange;
  }
  NvIndexNode node, parent, fresh;
  if (root_ == 0) {
    uint32_t n;
    if (int rc = file_.Allocate(&n); rc != kOk) return rc;
    ZeroNode(&node, n);
    std::memcpy(&node.keys[2 * key_length_], probe_.data(), key_length_);
    node.data[2] = record;
    if (int rc = WriteNode(node); rc != kOk) return rc;
    root_ = n;
    *node_number = n;
    return kOk;
  }

  bool has_parent = false;
  int parent_pos = 0;  // position in the parent whose right child is the current node
  std::vector<uint32_t> seen;
  uint32_t current = root_;
  for (;;) {
    if (seen.size() >= kMaxDepth || std::find(seen.begin(), seen.end(), current) != seen.end()) {
      return kOutOfRange;
    }
    seen.push_back(current);
    if (int rc = ReadNode(current, &node); rc != kOk) return rc;

    int pos = 0;  // slot the key takes in the node, or whose right child it goes down to
    if (!SlotEmpty(node, 0)) {
      // Full: split it, moving key 1 up into the parent.
      const uint32_t highest_before = file_.highest_record();
      const bool new_root = !has_parent;
      // Records appended for a split that fails while nothing written points at them are
      // not taken after all.
      auto give_back = [&](int status) {
        if (file_.highest_record() > highest_before) {
          file_.SetCounters(highest_before, file_.free_head(), file_.free_count());
        }
        return status;
      };
      if (new_root) {
        uint32_t r;
        if (int rc = file_.Allocate(&r); rc != kOk) return rc;
        ZeroNode(&parent, r);
        parent.child[3] = node.number;
        parent_pos = 2;
        has_parent = true;
      }
      for (int i = 0; i < parent_pos; ++i) CopyEntry(&parent, i, parent, i + 1);
      uint32_t x;
      if (int rc = file_.Allocate(&x); rc != kOk) return give_back(rc);
      ZeroNode(&fresh, x);
      std::memcpy(&fresh.keys[2 * key_length_], &node.keys[0], key_length_);
      fresh.data[2] = node.data[0];
      fresh.child[2] = node.child[0];
      fresh.child[3] = node.child[1];
      std::memcpy(&parent.keys[size_t(parent_pos) * key_length_], &node.keys[key_length_],
                  key_length_);
      parent.data[parent_pos] = node.data[1];
      parent.child[parent_pos] = x;
      ClearEntry(&node, 0);
      ClearEntry(&node, 1);
      const int c = CompareKeys(probe_, Key(parent, parent_pos), sort_order);
      // The half the key belongs in: the new node takes the keys below the middle one.
      NvIndexNode& target = c < 0 ? fresh : node;
      const int status = c == 0 ? kDuplicate : InsertPosition(target, sort_order, &pos);
      // A key that stays in its half goes in before the halves are written: each is
      // written once.
      const bool placed = status == kOk && target.child[pos + 1] == 0;
      if (placed) PlaceProbe(&target, pos, record);
      // The new node first, as nothing points at it yet; then the parent, which points at
      // it; then the split node. A new root is named only when all three are written, so
      // a failed write leaves the tree under the old root as it was.
      if (int rc = WriteNode(fresh); rc != kOk) return give_back(rc);
      if (int rc = WriteNode(parent); rc != kOk) return give_back(rc);
      if (int rc = WriteNode(node); rc != kOk) return new_root ? give_back(rc) : rc;
      if (new_root) root_ = parent.number;
      if (status != kOk) return status;
      if (placed) {
        *node_number = target.number;
        return kOk;
      }
      if (c < 0) std::swap(node, fresh);
      current = node.child[pos + 1];
    } else {
      if (int rc = InsertPosition(node, sort_order, &pos); rc != kOk) return rc;
      if (node.child[pos + 1] == 0) {
        PlaceProbe(&node, pos, record);
        if (int rc = WriteNode(node); rc != kOk) return rc;
        *node_number = node.number;
        return kOk;
      }
      current = node.child[pos + 1];
    }
    std::swap(parent, node);
    has_parent = true;
    parent_pos = pos;
  }
}

// ---- Delete -----------------------------------------------------------------------------

int NvBTreeFile::Delete(std::string_view key, std::string_view sort_order) {
  uint32_t record;
  int rc = Find(key, sort_order, &record);
  if (rc != kOk) {
    ClearPath();
    return rc;
  }
  rc = [&]() -> int {
    NvIndexNode node, sub;
    if (int rc = ReadNode(path_.back().node, &node); rc != kOk) return rc;
    int s = path_.back().slot - 1;
    // Move the entry down, replacing it by its neighbour in order, until it sits in a node
    // without children on either side of it. Each round goes at least one level deeper.
    for (;;) {
      int take;
      if (node.child[s] != 0) {
        path_.back().slot = static_cast<uint16_t>(s);
        uint32_t m = node.child[s];
        for (;;) {
          if (int rc = ReadNode(m, &sub); rc != kOk) return rc;
          if (int rc = Push(m, 3); rc != kOk) return rc;
          if (sub.child[3] == 0) break;
          m = sub.child[3];
        }
        take = 2;
      } else if (node.child[s + 1] != 0) {
        uint32_t m = node.child[s + 1];
        for (;;) {
          if (int rc = ReadNode(m, &sub); rc != kOk) return rc;
          take = 0;
          while (take < 3 && SlotEmpty(sub, take)) ++take;
          if (int rc = Push(m, static_cast<uint16_t>(take)); rc != kOk) return rc;
          if (take == 3) return kOutOfRange;  // an empty node inside the tree
          if (sub.child[take] == 0) break;
          m = sub.child[take];
        }
      } else {
        break;
      }
      if (SlotEmpty(sub, take)) return kOutOfRange;
      std::memcpy(&node.keys[size_t(s) * key_length_], &sub.keys[size_t(take) * key_length_],
                  key_length_);
      node.data[s] = sub.data[take];
      if (int rc = WriteNode(node); rc != kOk) return rc;
      path_.back().slot = static_cast<uint16_t>(take + 1);
      std::swap(node, sub);
      s = take;
    }
    for (int i = s; i > 0; --i) CopyEntry(&node, i, node, i - 1);
    ClearEntry(&node, 0);
    if (int rc = WriteNode(node); rc != kOk) return rc;
    path_.pop_back();
    if (SlotEmpty(node, 2) && !path_.empty()) {
      if (int rc = file_.Free(node.number); rc != kOk) return rc;
      PathEntry up = path_.back();
      path_.pop_back();
      NvIndexNode& parent = sub;
      if (int rc = ReadNode(up.node, &parent); rc != kOk) return rc;
      parent.child[up.slot] = 0;
      if (int rc = WriteNode(parent); rc != kOk) return rc;
    }
    return kOk;
  }();
  ClearPath();
  return rc;
}

// ---- Next and previous ------------------------------------------------------------------

int NvBTreeFile::DescendLeft(uint32_t n) {
  NvIndexNode& node = scratch_;
  for (;;) {
    if (int rc = ReadNode(n, &node); rc != kOk) return rc;
    int first = 0;
    while (first < 3 && SlotEmpty(node, first)) ++first;
    if (int rc = Push(n, static_cast<uint16_t>(first)); rc != kOk) return rc;
    if (node.child[first] == 0) return kOk;
    n = node.child[first];
  }
}

int NvBTreeFile::DescendRight(uint32_t n) {
  NvIndexNode& node = scratch_;
  for (;;) {
    if (int rc = ReadNode(n, &node); rc != kOk) return rc;
    if (int rc = Push(n, 3); rc != kOk) return rc;
    if (node.child[3] == 0) return kOk;
    n = node.child[3];
  }
}

int NvBTreeFile::Emit(const NvIndexNode& node, int slot, uint32_t* record) {
  // A sound tree holds at most three entries per record; more means we are going round.
  if (++walk_steps_ > 3 * (uint64_t{file_.highest_record()} + 1)) {
    ClearPath();
    return kOutOfRange;
  }
  path_.back().slot = static_cast<uint16_t>(slot + 1);
  current_key_.assign(Key(node, slot));
  *record = node.data[slot];
  return kOk;
}

// The top entry's child has been walked: the next entry is its key, or the parent's.
int NvBTreeFile::EmitNext(uint32_t* record) {
  NvIndexNode& node = scratch_;
  while (!path_.empty()) {
    PathEntry& top = path_.back();
    if (top.slot <= 2) {
      if (int rc = ReadNodeOnce(top.node, &node); rc != kOk) return rc;
      if (!SlotEmpty(node, top.slot)) return Emit(node, top.slot, record);
      ++top.slot;  // only a damaged node has a gap here
      continue;
    }
    path_.pop_back();
  }
  current_key_.clear();
  *record = 0;
  return kOk;
}

// The top entry's child has been walked backwards: the entry before it is the key left of
// that child, or the parent's.
int NvBTreeFile::EmitPrevious(uint32_t* record) {
  NvIndexNode& node = scratch_;
  while (!path_.empty()) {
    PathEntry& top = path_.back();
    int slot = int{top.slot} - 1;
    if (slot >= 0 && slot <= 2) {
      if (int rc = ReadNodeOnce(top.node, &node); rc != kOk) return rc;
      // Keys are right-aligned: an empty slot means none is left in this node.
      if (!SlotEmpty(node, slot)) return Emit(node, slot, record);
    }
    path_.pop_back();
  }
  current_key_.clear();
  *record = 0;
  return kOk;
}

int NvBTreeFile::Next(uint32_t* record) {
  return Step(true, record);
}

int NvBTreeFile::Previous(uint32_t* record) {
  return Step(false, record);
}

int NvBTreeFile::Step(bool forward, uint32_t* record) {
  if (!file_.is_open()) return bad_header_status_;
  if (root_ == 0) {
    ClearPath();
    return kOutOfRange;
  }
  int rc = forward ? StepDown(true) : StepDown(false);
  if (rc == kOk) rc = forward ? EmitNext(record) : EmitPrevious(record);
  if (rc != kOk) ClearPath();
  return rc;
}

// First half of a step: from the current entry down into the subtree next to it in the
// direction of the walk, leaving the path where the next entry is emitted from.
int NvBTreeFile::StepDown(bool forward) {
  if (path_.empty()) {
    walk_steps_ = 0;
    return forward ? DescendLeft(root_) : DescendRight(root_);
  }
  if (at_gap_) {
    at_gap_ = false;
    return kOk;
  }
  PathEntry& top = path_.back();
  if (top.slot > 3 || (!forward && top.slot == 0)) {
    path_.pop_back();
    return kOk;
  }
  // The current entry is key slot - 1: after it lies child slot, before it child slot - 1.
  if (!forward) top.slot = static_cast<uint16_t>(top.slot - 1);
  uint16_t child = top.slot;
  if (int rc = ReadNode(top.node, &scratch_); rc != kOk) return rc;
  if (scratch_.child[child] == 0) return kOk;
  return forward ? DescendLeft(scratch_.child[child]) : DescendRight(scratch_.child[child]);
}

}  // namespace nv
