// The B+-tree of the notes file: finding a key and inserting one.
#include <algorithm>
#include <utility>
#include <vector>

#include "store/notes/note_file.h"
#include "store/file/status.h"

namespace nv {
namespace {

using IndexItem = NoteFileIndexRec::IndexItem;

// One node on the way down from the root, and the item taken (for the leaf: where the key
// goes).
struct PathStep {
  NoteFileIndexRec node;
  size_t index = 0;
  bool raised = false;  // its item's key was raised to the new key
};

bool OnPath(const std::vector<PathStep>& path, uint64_t position) {
  return std::any_of(path.begin(), path.end(),
                     [&](const PathStep& step) { return step.node.position == position; });
}

}  // namespace

// The first item whose key is not less than `key`; the item count when there is none.
size_t NoteFile::Search(const NoteFileIndexRec& node, std::string_view key) const {
  size_t low = 0;
  size_t high = node.items.size();
  while (low < high) {
    size_t mid = low + (high - low) / 2;
    if (CompareNoteKeys(node.items[mid].key, key, key_size_) < 0) {
      low = mid + 1;
    } else {
      high = mid;
    }
  }
  return low;
}

int NoteFile::Find(std::string_view key, NoteIndexLocation* location) {
  NoteFileFirstRec first;
  if (!ReadFirst(&first)) return kOutOfRange;
  std::vector<uint64_t> path;
  uint64_t position = first.root;
  while (path.size() < kMaxDepth) {
    if (std::find(path.begin(), path.end(), position) != path.end()) return kOutOfRange;
    path.push_back(position);
    NoteFileIndexRec node;
    if (!ReadNode(position, &node)) return kOutOfRange;
    size_t i = Search(node, key);
    if (i == node.items.size()) return kNotFound;
    if (!node.leaf) {
      position = node.items[i].position;
      continue;
    }
    if (CompareNoteKeys(node.items[i].key, key, key_size_) != 0) return kNotFound;
    location->note_position = node.items[i].position;
    location->field_position = NoteFileIndexRec::ItemFieldPosition(position, i, key_size_);
    return kOk;
  }
  return kOutOfRange;
}

bool NoteFile::Add(std::string_view key_in) {
  const std::string key(NoteKeyView(key_in, key_size_));
  NoteFileFirstRec first;
  if (!ReadFirst(&first)) return false;

  // Down to the leaf. Past the last item of an inner node the key goes into the last
  // subtree, whose largest key it becomes.
  std::vector<PathStep> path;
  uint64_t position = first.root;
  for (;;) {
    if (path.size() >= kMaxDepth || OnPath(path, position)) return false;
    PathStep step;
    if (!ReadNode(position, &step.node)) return false;
    std::vector<IndexItem>& items = step.node.items;
    step.index = Search(step.node, key);
    if (step.node.leaf) {
      if (step.index < items.size() &&
          CompareNoteKeys(items[step.index].key, key, key_size_) == 0) {
        return true;  // there already
      }
      path.push_back(std::move(step));
      break;
    }
    if (items.empty()) return false;  // an inner node always has items
    if (step.index == items.size()) {
      step.index = items.size() - 1;
      items[step.index].key = key;
      step.raised = true;
    }
    position = items[step.index].position;
    path.push_back(std::move(step));
  }

  // Up again: insert the item, splitting full nodes, until a node takes it without
  // splitting; above that only raised nodes change.
  IndexItem item{key, kNullNotePosition};
  bool inserting = true;
  for (size_t level = path.size(); level-- > 0;) {
    PathStep& step = path[level];
    NoteFileIndexRec& node = step.node;
    if (!inserting) {
      if (step.raised) {
        node.Encode(key_size_);
        if (!WriteRec(node)) return false;
      }
      continue;
    }
    std::vector<IndexItem>& items = node.items;
    if (!node.full()) {
      items.insert(items.begin() + static_cast<ptrdiff_t>(step.index), std::move(item));
      node.Encode(key_size_);
      if (!WriteRec(node)) return false;
      inserting = false;
      continue;
    }
    // Split: a new node of the same kind takes the first half and goes to the end of the
    // file; this node keeps the rest.
    NoteFileIndexRec split;
    split.leaf = node.leaf;
    split.capacity = node.capacity;
    const size_t half = (items.size() + 1) / 2;
    split.items.assign(std::make_move_iterator(items.begin()),
                       std::make_move_iterator(items.begin() + static_cast<ptrdiff_t>(half)));
    items.erase(items.begin(), items.begin() + static_cast<ptrdiff_t>(half));
    if (step.index < half) {
      split.items.insert(split.items.begin() + static_cast<ptrdiff_t>(step.index), std::move(item));
    } else {
      items.insert(items.begin() + static_cast<ptrdiff_t>(step.index - half), std::move(item));
    }
    split.Encode(key_size_);
    node.Encode(key_size_);
    if (!AppendRec(&split) || !WriteRec(node)) return false;
    // The parent takes the new node just before this one.
    item = IndexItem{split.items.back().key, split.position};
    if (level == 0) {
      NoteFileIndexRec root;
      root.leaf = false;
      root.items = {std::move(item), IndexItem{items.back().key, node.position}};
      root.Encode(key_size_);
      return AppendRec(&root) && WriteFirst(root.position);
    }
  }
  return true;
}

}  // namespace nv
