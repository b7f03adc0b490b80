#include "store/notes/note_file.h"

#include <string>

#include <gtest/gtest.h>

#include "base/lock_file.h"
#include "base/path.h"
#include "store/notes/note_file_testing.h"

namespace nv {
namespace {

using testing::Bytes;
using testing::Concat;
using testing::EmptyRecord;
using testing::FirstRecord;
using testing::kNodeRecord;
using testing::kNoteKey;
using testing::kNull;
using testing::NodeRecord;
using testing::NoteRecord;
using testing::ReadAll;
using testing::Slice;
using testing::TempDir;

const std::string kAsset = "   123.01";
// 3/15/2024 is Julian day 2460385; 14:30:05 is 52205 seconds.
const Date kDate{3, 15, 2024};
constexpr uint32_t kDay = 2460385;
constexpr uint32_t kTime = 52205;
// The first note of a new file follows FIRST (34 bytes) and the root leaf.
constexpr uint64_t kFirstNoteAt = 34 + kNodeRecord;

Note MakeNote(Date date, int32_t seconds, std::string text) {
  return Note{date, seconds, kNullNotePosition, std::move(text)};
}

std::vector<std::string> Texts(const NoteList& list) {
  std::vector<std::string> texts;
  for (const Note& note : list.notes) texts.push_back(note.text);
  return texts;
}

class NoteFileTest : public ::testing::Test {
 protected:
  // Saves one note "Roof replaced" under kAsset and reads it back into list_.
  void SaveFirstNote() {
    list_ = NoteList{kAsset, {}};
    list_.Insert(MakeNote(kDate, kTime, "Roof replaced"));
    ASSERT_TRUE(file_.SaveNotes(&list_));
    ASSERT_TRUE(file_.ReadNotes(kAsset, &list_));
    ASSERT_EQ(list_.notes.size(), 1u);
  }

  TempDir dir_;
  std::string path_ = dir_.File("C1.NOT");
  NoteFile file_{path_, kNoteKey};
  NoteList list_;
};

TEST_F(NoteFileTest, FirstNoteOfANewFileFollowsFirstRecordAndRootLeaf) {
  SaveFirstNote();
  EXPECT_EQ(ReadAll(path_), Concat({FirstRecord(34), NodeRecord(true, {{kAsset, kFirstNoteAt}}),
                                    NoteRecord(kDay, kTime, kNull, kAsset, "Roof replaced")}));

  NoteIndexLocation at;
  ASSERT_TRUE(file_.FindIndexKey(kAsset, &at));
  EXPECT_EQ(at.note_position, kFirstNoteAt);
  EXPECT_EQ(at.field_position, 34u + 10 + 9 + kNoteKey);  // item 0's position field
  EXPECT_FALSE(file_.FindIndexKey("   124.01", &at));

  const Note& note = list_.notes[0];
  EXPECT_EQ(note.date, kDate);
  EXPECT_EQ(note.seconds, 52205);
  EXPECT_EQ(note.position, kFirstNoteAt);
  EXPECT_EQ(note.text, "Roof replaced");
}

TEST_F(NoteFileTest, MissingFileReadsAsNoNotesAndIsNotCreated) {
  ASSERT_TRUE(file_.ReadNotes(kAsset, &list_));
  EXPECT_TRUE(list_.notes.empty());
  NoteIndexLocation at;
  EXPECT_FALSE(file_.FindIndexKey(kAsset, &at));
  EXPECT_FALSE(std::filesystem::exists(path_));
  // Nothing to store for an unknown key: no item is made for it.
  EXPECT_FALSE(file_.SaveNotes(&list_));
}

TEST_F(NoteFileTest, NotesAreKeptNewestFirstAndChainedInListOrder) {
  NoteList list{kAsset, {}};
  list.Insert(MakeNote(kDate, 36000, "first"));
  list.Insert(MakeNote(kDate, 36000, "same time, goes after"));
  list.Insert(MakeNote(Date{3, 16, 2024}, 0, "next day"));
  list.Insert(MakeNote(kDate, 35999, "a second earlier"));
  ASSERT_EQ(Texts(list), (std::vector<std::string>{"next day", "first", "same time, goes after",
                                                   "a second earlier"}));
  ASSERT_TRUE(file_.SaveNotes(&list));

  // Appended one after the other: each at the previous one's position + 10 + its length.
  const uint64_t p0 = kFirstNoteAt;
  const uint64_t p1 = p0 + 10 + 9 + 8 + 18;
  const uint64_t p2 = p1 + 10 + 9 + 5 + 18;
  const uint64_t p3 = p2 + 10 + 9 + 21 + 18;
  EXPECT_EQ(Slice(ReadAll(path_), p0, 1000),
            Concat({NoteRecord(kDay + 1, 0, p1, kAsset, "next day"),
                    NoteRecord(kDay, 36000, p2, kAsset, "first"),
                    NoteRecord(kDay, 36000, p3, kAsset, "same time, goes after"),
                    NoteRecord(kDay, 35999, kNull, kAsset, "a second earlier")}));

  NoteList back;
  ASSERT_TRUE(file_.ReadNotes(kAsset, &back));
  EXPECT_EQ(Texts(back), Texts(list));
  EXPECT_EQ(back.notes[3].position, p3);

  // Deleting a note in the middle frees its record and links around it in place.
  back.notes.erase(back.notes.begin() + 2);
  ASSERT_TRUE(file_.SaveNotes(&back));
  Bytes file = ReadAll(path_);
  EXPECT_EQ(Slice(file, p1, p2 - p1), NoteRecord(kDay, 36000, p3, kAsset, "first"));
  EXPECT_EQ(Slice(file, p2, p3 - p2), EmptyRecord(9 + 21 + 18));
  EXPECT_EQ(file.size(), p3 + 10 + 9 + 16 + 18);
}

TEST_F(NoteFileTest, NoteOneCharacterShorterIsRewrittenInPlace) {
  SaveFirstNote();
  list_.notes[0].text = "Roof replace";
  ASSERT_TRUE(file_.SaveNotes(&list_));
  EXPECT_EQ(list_.notes[0].position, kFirstNoteAt);
  // The record freed first leaves its last byte as a zero after the shorter note.
  Bytes tail = NoteRecord(kDay, kTime, kNull, kAsset, "Roof replace");
  tail.push_back(0);
  Bytes file = ReadAll(path_);
  EXPECT_EQ(file.size(), kFirstNoteAt + tail.size());
  EXPECT_EQ(Slice(file, kFirstNoteAt, tail.size()), tail);
}

TEST_F(NoteFileTest, NoteOneCharacterLongerIsAppendedAndLeavesAnEmptyRecord) {
  SaveFirstNote();
  list_.notes[0].text = "Roof replaced!";
  ASSERT_TRUE(file_.SaveNotes(&list_));
  const uint32_t old_length = 9 + 13 + 18;
  const uint64_t moved_to = kFirstNoteAt + 10 + old_length;
  EXPECT_EQ(list_.notes[0].position, moved_to);
  Bytes file = ReadAll(path_);
  EXPECT_EQ(Slice(file, 34, kNodeRecord), NodeRecord(true, {{kAsset, moved_to}}));
  EXPECT_EQ(
      Slice(file, kFirstNoteAt, file.size()),
      Concat({EmptyRecord(old_length), NoteRecord(kDay, kTime, kNull, kAsset, "Roof replaced!")}));
}

TEST_F(NoteFileTest, DeletingTheOnlyNoteKeepsTheKeyWithANullPosition) {
  SaveFirstNote();
  list_.notes.clear();
  ASSERT_TRUE(file_.SaveNotes(&list_));
  Bytes file = ReadAll(path_);
  EXPECT_EQ(Slice(file, 34, kNodeRecord), NodeRecord(true, {{kAsset, kNull}}));
  EXPECT_EQ(Slice(file, kFirstNoteAt, file.size()), EmptyRecord(9 + 13 + 18));

  NoteIndexLocation at;
  ASSERT_TRUE(file_.FindIndexKey(kAsset, &at));
  EXPECT_EQ(at.note_position, kNull);
  ASSERT_TRUE(file_.ReadNotes(kAsset, &list_));
  EXPECT_TRUE(list_.notes.empty());
  // Saving the empty list again finds the key and changes nothing.
  ASSERT_TRUE(file_.SaveNotes(&list_));
  EXPECT_EQ(ReadAll(path_), file);
}

TEST_F(NoteFileTest, KeysSortInNaturalOrderAndAreCutToTheKeySize) {
  ASSERT_TRUE(file_.AddIndexKey("100"));
  ASSERT_TRUE(file_.AddIndexKey("99"));
  ASSERT_TRUE(file_.AddIndexKey("A-2"));
  ASSERT_TRUE(file_.AddIndexKey("A-10"));
  ASSERT_TRUE(file_.AddIndexKey("99"));  // there already
  ASSERT_TRUE(file_.AddIndexKey("123456789ABC"));
  EXPECT_EQ(
      Slice(ReadAll(path_), 34, kNodeRecord),
      NodeRecord(
          true,
          {{"99", kNull}, {"100", kNull}, {"123456789", kNull}, {"A-2", kNull}, {"A-10", kNull}}));
  NoteIndexLocation at;
  EXPECT_TRUE(file_.FindIndexKey("123456789XYZ", &at));
  EXPECT_EQ(at.field_position, 34u + 10 + 9 + 2 * 17 + 9);
}

TEST_F(NoteFileTest, NotesMoveToANewKey) {
  NoteList list{"A1", {}};
  list.Insert(MakeNote(kDate, 100, "older"));
  list.Insert(MakeNote(kDate, 200, "newer"));
  ASSERT_TRUE(file_.SaveNotes(&list));
  ASSERT_TRUE(file_.ReadNotes(list.key, &list));
  const uint64_t p0 = list.notes[0].position;
  const uint64_t p1 = list.notes[1].position;

  list.key = "B2";
  ASSERT_TRUE(file_.SaveNotes(&list, "A1"));
  NoteList moved;
  ASSERT_TRUE(file_.ReadNotes("B2", &moved));
  EXPECT_EQ(Texts(moved), (std::vector<std::string>{"newer", "older"}));
  ASSERT_TRUE(file_.ReadNotes("A1", &list));
  EXPECT_TRUE(list.notes.empty());

  // Keys of equal length: the notes are rewritten in place with the new key; the old key
  // keeps its item with a null position.
  Bytes file = ReadAll(path_);
  EXPECT_EQ(Slice(file, 34, kNodeRecord), NodeRecord(true, {{"A1", kNull}, {"B2", p0}}));
  EXPECT_EQ(Slice(file, p0, file.size() - p0),
            Concat({NoteRecord(kDay, 200, p1, "B2", "newer"),
                    NoteRecord(kDay, 100, kNull, "B2", "older")}));
}

TEST_F(NoteFileTest, TheHundredAndFirstKeySplitsTheLeafUnderANewInnerRoot) {
  std::vector<std::pair<std::string, uint64_t>> first_half, second_half;
  for (int i = 1; i <= 100; ++i) {
    ASSERT_TRUE(file_.AddIndexKey(std::to_string(i)));
    (i <= 50 ? first_half : second_half).push_back({std::to_string(i), kNull});
  }
  ASSERT_EQ(ReadAll(path_).size(), 34 + kNodeRecord);

  // The new leaf takes the first (100 + 1) / 2 = 50 keys and is appended; the old leaf
  // keeps the other 50 and takes the new key; the new root is appended after them.
  ASSERT_TRUE(file_.AddIndexKey("101"));
  second_half.push_back({"101", kNull});
  const uint64_t new_leaf = 34 + kNodeRecord;
  const uint64_t root = new_leaf + kNodeRecord;
  Bytes file = ReadAll(path_);
  ASSERT_EQ(file.size(), root + kNodeRecord);
  EXPECT_EQ(Slice(file, 0, 34), FirstRecord(root));
  EXPECT_EQ(Slice(file, 34, kNodeRecord), NodeRecord(true, second_half));
  EXPECT_EQ(Slice(file, new_leaf, kNodeRecord), NodeRecord(true, first_half));
  EXPECT_EQ(Slice(file, root, kNodeRecord), NodeRecord(false, {{"50", new_leaf}, {"101", 34}}));

  // A key above every key raises the root's last key on the way down.
  ASSERT_TRUE(file_.AddIndexKey("102"));
  EXPECT_EQ(Slice(ReadAll(path_), root, kNodeRecord),
            NodeRecord(false, {{"50", new_leaf}, {"102", 34}}));

  NoteIndexLocation at;
  for (int i = 1; i <= 102; ++i) {
    ASSERT_TRUE(file_.FindIndexKey(std::to_string(i), &at)) << i;
    uint64_t leaf = i <= 50 ? new_leaf : 34;
    int index = i <= 50 ? i - 1 : i - 51;
    EXPECT_EQ(at.field_position, leaf + 10 + 9 + index * 17 + 9) << i;
  }
  EXPECT_FALSE(file_.FindIndexKey("103", &at));
  EXPECT_FALSE(file_.FindIndexKey("0", &at));
}

TEST_F(NoteFileTest, SmallKeyIntoAFullLeafGoesIntoTheNewLeaf) {
  for (int i = 2; i <= 101; ++i) ASSERT_TRUE(file_.AddIndexKey(std::to_string(i)));
  ASSERT_TRUE(file_.AddIndexKey("1"));
  std::vector<std::pair<std::string, uint64_t>> first_half, second_half;
  for (int i = 1; i <= 101; ++i)
    (i <= 51 ? first_half : second_half).push_back({std::to_string(i), kNull});
  const uint64_t new_leaf = 34 + kNodeRecord;
  Bytes file = ReadAll(path_);
  EXPECT_EQ(Slice(file, 34, kNodeRecord), NodeRecord(true, second_half));
  EXPECT_EQ(Slice(file, new_leaf, kNodeRecord), NodeRecord(true, first_half));
  EXPECT_EQ(Slice(file, new_leaf + kNodeRecord, kNodeRecord),
            NodeRecord(false, {{"51", new_leaf}, {"101", 34}}));
}

TEST_F(NoteFileTest, AnotherHolderOfTheFileMakesEveryOperationFail) {
  SaveFirstNote();
  Bytes before = ReadAll(path_);
  {
    LockFile other;
    ASSERT_EQ(other.TryAcquire(path_), LockStatus::kAcquired);
    NoteList list;
    NoteIndexLocation at;
    EXPECT_FALSE(file_.ReadNotes(kAsset, &list));
    EXPECT_FALSE(file_.FindIndexKey(kAsset, &at));
    EXPECT_FALSE(file_.AddIndexKey("   999.01"));
    list_.notes[0].text = "changed";
    EXPECT_FALSE(file_.SaveNotes(&list_));
  }
  EXPECT_EQ(ReadAll(path_), before);
  // Once the other holder has closed the file, and after each operation, it is free.
  ASSERT_TRUE(file_.SaveNotes(&list_));
  EXPECT_FALSE(LockFile::IsHeldByOther(path_));
  ASSERT_TRUE(file_.ReadNotes(kAsset, &list_));
  EXPECT_EQ(Texts(list_), std::vector<std::string>{"changed"});
  EXPECT_FALSE(LockFile::IsHeldByOther(path_));
}

TEST(NoteAttachment, FileNotesNameAPictureInTheCompanysImageFolder) {
  auto path = [](std::string text) {
    return AttachmentPath(Note{{}, 0, kNullNotePosition, std::move(text)}, "/data/C1.CLT/", "C1");
  };
  const std::string img = "/data/C1.CLT/C1.img" + std::string(1, kPathSeparator);
  EXPECT_EQ(path("<FILE: scan 1.jpg >ignored"), img + "scan 1.jpg");
  EXPECT_EQ(path("<file:pic.png"), img + "pic.png");
  EXPECT_EQ(path("note <file:x.png>"), std::nullopt);
  EXPECT_EQ(path("<fil:x.png>"), std::nullopt);
  EXPECT_EQ(path("<file:  >"), std::nullopt);
  EXPECT_EQ(path("<file:../C2.img/x.png>"), std::nullopt);
  EXPECT_EQ(path("<file:..>"), std::nullopt);
}

TEST(NoteTimeStamp, TwelveHourClockWithAmAndPm) {
  auto stamp = [](int seconds) {
    return FormatNoteTimeStamp(Note{Date{3, 5, 2024}, seconds, kNullNotePosition, ""});
  };
  EXPECT_EQ(stamp(0), "3/05/2024--12:00:00 a.m.");
  EXPECT_EQ(stamp(1 * 3600 + 2 * 60 + 3), "3/05/2024--1:02:03 a.m.");
  EXPECT_EQ(stamp(12 * 3600 + 30 * 60 + 5), "3/05/2024--12:30:05 p.m.");
  EXPECT_EQ(stamp(86399), "3/05/2024--11:59:59 p.m.");
}

TEST_F(NoteFileTest, AddNoteInsertsByDateAndTime) {
  ASSERT_TRUE(AddNote(file_, kAsset, MakeNote(kDate, 100, "b")));
  ASSERT_TRUE(AddNote(file_, kAsset, MakeNote(kDate, 50, "a")));
  Note now = MakeNoteNow("now");
  EXPECT_TRUE(IsValidDate(now.date));
  ASSERT_TRUE(AddNote(file_, kAsset, now));
  ASSERT_TRUE(file_.ReadNotes(kAsset, &list_));
  EXPECT_EQ(Texts(list_), (std::vector<std::string>{"now", "b", "a"}));
}

}  // namespace
}  // namespace nv
