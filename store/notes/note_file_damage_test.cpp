// Damaged notes files: every operation ends with a result, never crashes, hangs or writes
// into a tree it cannot trust.
#include <cctype>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "store/notes/note_file.h"
#include "store/notes/note_file_testing.h"

namespace nv {
namespace {

using testing::ByteBuilder;
using testing::Bytes;
using testing::Concat;
using testing::FirstRecord;
using testing::kNodeRecord;
using testing::kNoteKey;
using testing::kNull;
using testing::NodeRecord;
using testing::NoteRecord;
using testing::ReadAll;
using testing::TempDir;
using testing::WriteAll;

constexpr uint64_t kNoteAt = 34 + kNodeRecord;
constexpr size_t kNoteBytes = 10 + 2 + 5 + 18;  // key "A1", text "hello"
constexpr uint32_t kDay = 2460385;              // 3/15/2024

Bytes Note(uint64_t next) {
  return NoteRecord(kDay, 0, next, "A1", "hello");
}

// FIRST, a root leaf with the key "A1", and its note.
Bytes Valid(uint64_t next = kNull) {
  return Concat({FirstRecord(34), NodeRecord(true, {{"A1", kNoteAt}}), Note(next)});
}

Bytes Patched(Bytes bytes, size_t offset, uint32_t value) {
  for (int i = 0; i < 4; ++i) bytes[offset + i] = static_cast<uint8_t>(value >> (8 * i));
  return bytes;
}

// A chain of inner nodes, each pointing to the next, deeper than any real tree.
Bytes DeepTree() {
  Bytes bytes = FirstRecord(34);
  for (uint64_t i = 0; i < 40; ++i) {
    bytes = Concat({bytes, NodeRecord(false, {{"ZZ", 34 + (i + 1) * kNodeRecord}})});
  }
  return Concat({bytes, NodeRecord(true, {{"A1", kNull}})});
}

Bytes LowerCaseTags() {
  Bytes bytes = Valid();
  for (size_t at : {size_t{0}, size_t{34}, size_t{kNoteAt}}) {
    for (size_t i = at; i < at + 5; ++i) bytes[i] = static_cast<uint8_t>(std::tolower(bytes[i]));
  }
  return bytes;
}

constexpr int kReadFails = -1;

struct DamageCase {
  const char* name;
  Bytes file;
  int notes_read;            // kReadFails: reading and saving fail and write nothing
  bool tree_intact = false;  // keys can still be found and added
};

// A broken tree or a chain that comes back to a note fails the operation; a record that is
// not a whole NOTE ends the chain, and what was read before it can be saved again.
TEST(NoteFileDamage, EveryOperationEndsWithAResult) {
  Bytes wrong_tag = Valid();
  wrong_tag[4] = 'X';
  Bytes no_final_nul = Valid();
  no_final_nul.back() = 'x';
  const size_t leaf_length = 34 + 6, leaf_count = 34 + 10 + 1, leaf_capacity = 34 + 10 + 5;
  const size_t note_length = kNoteAt + 6;
  const std::vector<DamageCase> cases = {
      {"first tag", wrong_tag, kReadFails},
      {"first body short",
       Concat({ByteBuilder().Text("FIRST\t").U32(8).Fill(0, 8).bytes(), NodeRecord(true, {})}),
       kReadFails},
      {"root past the end", Concat({FirstRecord(100000), NodeRecord(true, {{"A1", kNoteAt}})}),
       kReadFails},
      {"root is a note", Concat({FirstRecord(kNoteAt), NodeRecord(true, {}), Note(kNull)}),
       kReadFails},
      {"root length negative", Patched(Valid(), leaf_length, 0xFFFFFFFF), kReadFails},
      {"root length huge", Patched(Valid(), leaf_length, 0x7FFFFFF0), kReadFails},
      {"root length short", Patched(Valid(), leaf_length, 100), kReadFails},
      {"capacity 0", Concat({FirstRecord(34), NodeRecord(true, {}, 0)}), kReadFails},
      {"capacity 1", Concat({FirstRecord(34), NodeRecord(true, {{"A1", kNull}}, 1)}), kReadFails},
      {"capacity huge", Patched(Valid(), leaf_capacity, 0x7FFFFFFF), kReadFails},
      {"count above capacity", Patched(Valid(), leaf_count, 101), kReadFails},
      {"count negative", Patched(Valid(), leaf_count, 0xFFFFFFFF), kReadFails},
      {"node is its own child", Concat({FirstRecord(34), NodeRecord(false, {{"ZZ", 34}})}),
       kReadFails},
      {"two nodes in a cycle",
       Concat({FirstRecord(34), NodeRecord(false, {{"ZZ", kNoteAt}}),
               NodeRecord(false, {{"ZZ", 34}})}),
       kReadFails},
      {"child past the end", Concat({FirstRecord(34), NodeRecord(false, {{"ZZ", 99999}})}),
       kReadFails},
      {"child inside a node", Concat({FirstRecord(34), NodeRecord(false, {{"ZZ", 40}})}),
       kReadFails},
      {"too deep", DeepTree(), kReadFails},
      {"note is its own next", Valid(kNoteAt), kReadFails, true},
      {"two notes in a cycle", Concat({Valid(kNoteAt + kNoteBytes), Note(kNoteAt)}), kReadFails,
       true},
      {"next past the end", Valid(5000), 1, true},
      {"next inside the note", Valid(kNoteAt + 3), 1, true},
      {"next is the root", Valid(34), 1, true},
      {"text without its NUL", no_final_nul, 0, true},
      {"note length negative", Patched(Valid(), note_length, 0xFFFFFFFF), 0, true},
      {"note length past the end", Patched(Valid(), note_length, 1000), 0, true},
      {"note length short of key and text", Patched(Valid(), note_length, 20), 0, true},
      {"tags in lower case", LowerCaseTags(), 1, true},
  };
  TempDir dir;
  std::string path = dir.File("C1.NOT");
  for (const DamageCase& c : cases) {
    SCOPED_TRACE(c.name);
    WriteAll(path, c.file);
    NoteFile file(path, kNoteKey);
    NoteIndexLocation at;
    EXPECT_EQ(file.FindIndexKey("A1", &at), c.tree_intact);
    NoteList list;
    bool read = file.ReadNotes("A1", &list);
    EXPECT_EQ(read, c.notes_read != kReadFails);
    EXPECT_EQ(list.notes.size(), read ? size_t(c.notes_read) : 0u);
    list.Insert(nv::Note{Date{1, 2, 2024}, 0, kNullNotePosition, "new"});
    EXPECT_EQ(file.SaveNotes(&list), read);
    if (read) {
      NoteList back;
      ASSERT_TRUE(file.ReadNotes("A1", &back));
      EXPECT_EQ(back.notes.size(), list.notes.size());
    } else {
      EXPECT_EQ(ReadAll(path), c.file);
    }
    EXPECT_EQ(file.AddIndexKey("B1"), c.tree_intact);
  }
}

TEST(NoteFileDamage, AFileTooShortForARecordIsSetUpAfresh) {
  TempDir dir;
  std::string path = dir.File("C1.NOT");
  WriteAll(path, Bytes{'a', 'b', 'c', 'd', 'e'});
  NoteFile file(path, kNoteKey);
  NoteList list;
  ASSERT_TRUE(file.ReadNotes("A1", &list));
  EXPECT_TRUE(list.notes.empty());
  list.Insert(nv::Note{DateFromDayNumber(kDay), 0, kNullNotePosition, "hello"});
  ASSERT_TRUE(file.SaveNotes(&list));
  EXPECT_EQ(ReadAll(path), Valid());
}

TEST(NoteFileDamage, AFolderInPlaceOfTheFileFails) {
  TempDir dir;
  std::string path = dir.File("C1.NOT");
  std::filesystem::create_directory(path);
  NoteFile file(path, kNoteKey);
  NoteList list{"A1", {}};
  EXPECT_FALSE(file.ReadNotes("A1", &list));
  list.Insert(nv::Note{Date{1, 2, 2024}, 0, kNullNotePosition, "new"});
  EXPECT_FALSE(file.SaveNotes(&list));
}

}  // namespace
}  // namespace nv
