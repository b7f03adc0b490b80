// Long random sequences of note additions, edits, deletions and moves checked against a
// std::map of keys to notes, and a tree grown past one level of inner nodes checked for
// order and shape.
#include <algorithm>
#include <map>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/compare_codes.h"
#include "store/notes/note_file.h"
#include "store/notes/note_file_testing.h"

namespace nv {
namespace {

using testing::kNoteKey;
using testing::TempDir;

struct ModelNote {
  Date date;
  int32_t seconds;
  std::string text;
  friend bool operator==(const ModelNote&, const ModelNote&) = default;
};

std::vector<ModelNote> FromList(const NoteList& list) {
  std::vector<ModelNote> out;
  for (const Note& n : list.notes) out.push_back({n.date, n.seconds, n.text});
  return out;
}

class RandomNotes {
 public:
  explicit RandomNotes(const std::string& path) : file_(path, kNoteKey) {
    for (int i = 0; i < 600; ++i) {
      char key[16];
      std::snprintf(key, sizeof key, "%6d.%02d", 1 + i * 37 % 997, 1 + i % 3);
      keys_.push_back(key);
    }
  }

  void AddNote() {
    const std::string& key = AnyKey();
    ModelNote note{Date{1, 1 + Pick(3), 2024}, 3600 * Pick(3), Text()};
    ASSERT_TRUE(
        nv::AddNote(file_, key, Note{note.date, note.seconds, kNullNotePosition, note.text}));
    // Newest first; a note of the same date and time goes after the ones already there.
    std::vector<ModelNote>& notes = model_[key];
    notes.push_back(note);
    std::stable_sort(notes.begin(), notes.end(), [](const ModelNote& a, const ModelNote& b) {
      return std::tie(a.date, a.seconds) > std::tie(b.date, b.seconds);
    });
  }

  // Changes one stored note's text (shorter, longer or the same length) or deletes it.
  void EditOrDelete() {
    const std::string& key = AnyKey();
    NoteList list;
    ASSERT_TRUE(file_.ReadNotes(key, &list));
    std::vector<ModelNote>& notes = model_[key];
    ASSERT_EQ(FromList(list), notes) << key;
    if (notes.empty()) return;
    size_t j = static_cast<size_t>(Pick(static_cast<int>(notes.size())));
    if (Pick(3) == 0) {
      list.notes.erase(list.notes.begin() + static_cast<ptrdiff_t>(j));
      notes.erase(notes.begin() + static_cast<ptrdiff_t>(j));
    } else {
      std::string text = Text();
      list.notes[j].text = notes[j].text = text;
    }
    ASSERT_TRUE(file_.SaveNotes(&list));
  }

  // Moves a key's notes to another key, whose own notes are then left behind unreachable.
  void Move() {
    std::string from = AnyKey();
    std::string to = AnyKey();
    NoteList list;
    ASSERT_TRUE(file_.ReadNotes(from, &list));
    if (list.notes.empty() || from == to) return;
    list.key = to;
    ASSERT_TRUE(file_.SaveNotes(&list, from));
    model_[to] = std::move(model_[from]);
    model_[from].clear();
  }

  void CheckAll() {
    for (const std::string& key : keys_) {
      NoteList list;
      ASSERT_TRUE(file_.ReadNotes(key, &list));
      ASSERT_EQ(FromList(list), model_[key]) << key;
    }
  }

  int Pick(int n) { return std::uniform_int_distribution<int>(0, n - 1)(rng_); }

 private:
  const std::string& AnyKey() {
    return keys_[static_cast<size_t>(Pick(static_cast<int>(keys_.size())))];
  }
  std::string Text() {
    int length = Pick(10) == 0 ? 200 + Pick(200) : Pick(24);
    std::string text;
    for (int i = 0; i < length; ++i) text += static_cast<char>('a' + Pick(26));
    return text;
  }

  NoteFile file_;
  std::vector<std::string> keys_;
  std::map<std::string, std::vector<ModelNote>> model_;
  std::mt19937 rng_{20240315};
};

TEST(NoteFileRandom, MatchesAMapOfKeysToNotes) {
  TempDir dir;
  RandomNotes notes(dir.File("C1.NOT"));
  for (int round = 0; round < 6; ++round) {
    for (int op = 0; op < 500; ++op) {
      int kind = notes.Pick(10);
      if (kind < 5) {
        ASSERT_NO_FATAL_FAILURE(notes.AddNote());
      } else if (kind < 9) {
        ASSERT_NO_FATAL_FAILURE(notes.EditOrDelete());
      } else {
        ASSERT_NO_FATAL_FAILURE(notes.Move());
      }
    }
    ASSERT_NO_FATAL_FAILURE(notes.CheckAll());
  }
}

// Walks the tree from the file's bytes: every leaf at the same depth, keys ascending across
// the leaves, each inner item's key the largest key below it. Returns the depth.
class TreeWalk {
 public:
  explicit TreeWalk(const std::string& path) : bytes_(testing::ReadAll(path)) {}

  int Check() {
    NoteFileFirstRec first;
    EXPECT_TRUE(Load(0, &first) && first.Decode());
    std::string largest;
    Walk(first.root, 1, &largest);
    return leaf_depth_;
  }
  const std::vector<std::string>& keys() const { return keys_; }

 private:
  bool Load(uint64_t position, NoteFileRec* rec) {
    if (position + 10 > bytes_.size()) return false;
    uint32_t length = bytes_[position + 6] | bytes_[position + 7] << 8 |
                      bytes_[position + 8] << 16 | uint32_t{bytes_[position + 9]} << 24;
    if (position + 10 + length > bytes_.size()) return false;
    rec->position = position;
    rec->body.assign(bytes_.begin() + static_cast<ptrdiff_t>(position + 10),
                     bytes_.begin() + static_cast<ptrdiff_t>(position + 10 + length));
    return true;
  }

  void Walk(uint64_t position, int depth, std::string* largest) {
    NoteFileIndexRec node;
    ASSERT_TRUE(Load(position, &node) && node.Decode(kNoteKey)) << position;
    ASSERT_FALSE(node.items.empty());
    EXPECT_EQ(node.capacity, 100);
    if (node.leaf) {
      if (leaf_depth_ == 0) leaf_depth_ = depth;
      EXPECT_EQ(depth, leaf_depth_);
      for (const auto& item : node.items) {
        if (!keys_.empty()) {
          EXPECT_LT(CompareCodes(keys_.back(), item.key), 0) << item.key;
        }
        keys_.push_back(item.key);
      }
    } else {
      for (const auto& item : node.items) {
        std::string below;
        ASSERT_NO_FATAL_FAILURE(Walk(item.position, depth + 1, &below));
        EXPECT_EQ(item.key, below);
      }
    }
    *largest = node.items.back().key;
  }

  testing::Bytes bytes_;
  std::vector<std::string> keys_;
  int leaf_depth_ = 0;
};

TEST(NoteFileRandom, ManyKeysSplitInnerNodesAndStayInOrder) {
  TempDir dir;
  std::string path = dir.File("C1.NOT");
  NoteFile file(path, kNoteKey);
  std::vector<std::string> keys;
  for (int i = 1; i <= 8000; ++i) keys.push_back("K-" + std::to_string(i));
  std::shuffle(keys.begin(), keys.end(), std::mt19937(7));
  for (const std::string& key : keys) ASSERT_TRUE(file.AddIndexKey(key)) << key;

  TreeWalk walk(path);
  EXPECT_EQ(walk.Check(), 3);  // more than 100 leaves: the first inner root has split
  EXPECT_EQ(walk.keys().size(), keys.size());
  NoteIndexLocation at;
  for (const std::string& key : keys) ASSERT_TRUE(file.FindIndexKey(key, &at)) << key;
  EXPECT_FALSE(file.FindIndexKey("K-0", &at));
  EXPECT_FALSE(file.FindIndexKey("K-8001", &at));
  EXPECT_FALSE(file.FindIndexKey("K-", &at));
}

}  // namespace
}  // namespace nv
