#include "store/file/structure_check.h"

#include <unordered_set>

#include "base/coding.h"
#include "base/str_format.h"
#include "store/file/block_chain.h"

namespace nv {
namespace {

struct Frame {
  uint32_t node;
  int next_slot;  // next step: child i (even steps) or key i (odd steps)
  uint32_t depth;
};

class TreeWalker {
 public:
  TreeWalker(NvBTreeFile& tree, std::string_view sort_order, TreeCheck* out)
      : tree_(tree), order_(sort_order), out_(*out) {}

  void Run() {
    if (tree_.root() == 0) return;
    Visit(tree_.root(), 1, /*is_root=*/true);
    // In-order walk over an explicit stack: a step is child 0, key 0, child 1, ... child 3.
    while (!stack_.empty()) {
      Frame& f = stack_.back();
      if (f.next_slot >= 7) {
        stack_.pop_back();
        continue;
      }
      const NvIndexNode& node = nodes_[stack_.size() - 1];
      int step = f.next_slot++;
      if (step % 2 == 0) {
        uint32_t c = node.child[step / 2];
        if (c != 0) Visit(c, f.depth + 1, false);
      } else if (!tree_.SlotEmpty(node, step / 2)) {
        Entry(node, step / 2);
      }
    }
  }

 private:
  void Problem(std::string text) { out_.problems.push_back(std::move(text)); }

  void Visit(uint32_t n, uint32_t depth, bool is_root) {
    if (n > tree_.file().highest_record()) {
      Problem(
          StrPrintf("node %u out of range (highest record %u)", n, tree_.file().highest_record()));
      return;
    }
    if (!seen_.insert(n).second) {
      Problem(StrPrintf("node %u reached twice", n));
      return;
    }
    NvIndexNode node;
    if (tree_.ReadNode(n, &node) != 0) {
      Problem(StrPrintf("node %u unreadable", n));
      return;
    }
    ++out_.nodes;
    if (depth > out_.depth) out_.depth = depth;
    int first = 0;
    while (first < 3 && tree_.SlotEmpty(node, first)) ++first;
    for (int i = first; i < 3; ++i) {
      if (tree_.SlotEmpty(node, i)) Problem(StrPrintf("node %u: slots not right-aligned", n));
    }
    for (int i = 0; i < first && i < 4; ++i) {
      if (node.child[i] != 0) Problem(StrPrintf("node %u: child %d left of the first key", n, i));
    }
    if (first == 3 && !is_root) Problem(StrPrintf("node %u: empty node below the root", n));
    for (int i = first; i + 1 < 3; ++i) {
      if (!tree_.SlotEmpty(node, i + 1) &&
          tree_.CompareKeys(tree_.Key(node, i), tree_.Key(node, i + 1), order_) >= 0) {
        Problem(StrPrintf("node %u: keys %d and %d out of order", n, i, i + 1));
      }
    }
    stack_.push_back({n, 0, depth});
    nodes_.resize(stack_.size());
    nodes_.back() = std::move(node);
  }

  void Entry(const NvIndexNode& node, int slot) {
    std::string_view key = tree_.Key(node, slot);
    if (have_last_ && tree_.CompareKeys(last_, key, order_) >= 0) {
      Problem(StrPrintf("node %u slot %d: key out of order in the tree", node.number, slot));
    }
    last_.assign(key);
    have_last_ = true;
    ++out_.keys;
    out_.data.push_back(node.data[slot]);
  }

  NvBTreeFile& tree_;
  std::string_view order_;
  TreeCheck& out_;
  std::vector<Frame> stack_;
  std::vector<NvIndexNode> nodes_;  // node of each stack frame
  std::unordered_set<uint32_t> seen_;
  std::string last_;
  bool have_last_ = false;

 public:
  const std::unordered_set<uint32_t>& seen() const { return seen_; }
};

}  // namespace

std::vector<std::string> CheckFreeList(NvRecFile& file, std::vector<uint32_t>* free_records) {
  std::vector<std::string> problems;
  std::unordered_set<uint32_t> seen;
  bool old = file.format() == NvRecFile::kOldLayout;
  uint8_t want = old ? NvRecFile::kFreeMarkerOld : NvRecFile::kFreeMarkerCurrent;
  uint32_t n = file.free_head();
  uint64_t length = 0;
  while (n != 0) {
    if (n > file.highest_record()) {
      problems.push_back(
          StrPrintf("free record %u out of range (highest record %u)", n, file.highest_record()));
      break;
    }
    if (!seen.insert(n).second) {
      problems.push_back(StrPrintf("free list loops back to record %u", n));
      break;
    }
    uint8_t head[NvRecFile::kFreeBytesCurrent];
    if (!file.ReadRecord(n, head, sizeof head)) {
      problems.push_back(StrPrintf("free record %u unreadable", n));
      break;
    }
    if (head[NvRecFile::kMarkerOffset] != want) {
      problems.push_back(StrPrintf("free record %u has marker 0x%02X, not 0x%02X", n,
                                   head[NvRecFile::kMarkerOffset], want));
      break;
    }
    ++length;
    if (free_records) free_records->push_back(n);
    n = old ? DecodeU16(head) : DecodeU32(head + 3);
  }
  if (problems.empty() && length != file.free_count()) {
    problems.push_back(StrPrintf("free list holds %llu records, free count says %u",
                                 static_cast<unsigned long long>(length), file.free_count()));
  }
  return problems;
}

TreeCheck CheckTree(NvBTreeFile& tree, std::string_view sort_order) {
  TreeCheck out;
  if (!tree.is_open()) {
    out.problems.push_back("index not open");
    return out;
  }
  TreeWalker walker(tree, sort_order, &out);
  walker.Run();
  std::vector<uint32_t> free_records;
  for (std::string& p : CheckFreeList(tree.file(), &free_records)) out.problems.push_back(p);
  for (uint32_t f : free_records) {
    if (walker.seen().count(f)) out.problems.push_back(StrPrintf("free node %u still in tree", f));
  }
  return out;
}

std::vector<std::string> CheckBlockFile(NvRecFile& file, std::span<const uint32_t> chain_starts) {
  std::vector<std::string> problems;
  std::unordered_set<uint32_t> used;
  for (uint32_t first : chain_starts) {
    uint32_t n = first;
    bool old = false;
    for (bool at_first = true; n != 0 || at_first; at_first = false) {
      if (n != 0 && n > file.highest_record()) {
        problems.push_back(StrPrintf("chain from %u: block %u out of range", first, n));
        break;
      }
      if (!used.insert(n).second) {
        problems.push_back(StrPrintf("chain from %u: block %u reached twice", first, n));
        break;
      }
      uint8_t head[kBlockHeaderCurrent];
      if (!file.ReadRecord(n, head, sizeof head)) {
        problems.push_back(StrPrintf("chain from %u: block %u unreadable", first, n));
        break;
      }
      const BlockHeader header =
          at_first ? DecodeFirstBlockHeader(head) : DecodeBlockHeader(head, old);
      const uint8_t marker = header.marker;
      if (at_first) {
        old = header.old_layout;
        if (!IsChainMarker(marker) || marker == kMarkerContinuation) {
          problems.push_back(
              StrPrintf("chain from %u: first block has marker 0x%02X", first, marker));
          break;
        }
      } else if (marker != kMarkerContinuation) {
        problems.push_back(
            StrPrintf("chain from %u: block %u has marker 0x%02X", first, n, marker));
        break;
      }
      n = header.next;
    }
  }
  std::vector<uint32_t> free_records;
  for (std::string& p : CheckFreeList(file, &free_records)) problems.push_back(p);
  for (uint32_t f : free_records) {
    if (used.count(f)) problems.push_back(StrPrintf("free block %u used by a chain", f));
  }
  return problems;
}

}  // namespace nv
