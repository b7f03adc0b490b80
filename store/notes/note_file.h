// NoteFile: the company's notes file (company path + ".NOT"). Free-text notes, any number
// per key (an asset number), each stamped with the date and time it was written. A B+-tree
// of fixed-size keys points to a chain of NOTE records per key, newest first. Notes are
// rewritten in place when they fit and appended when they grow; the space they leave is
// marked EMPTY and never reused. Keys are never removed from the tree.
//
// All integers are little-endian. A position is 8 bytes, low 32 bits then high 32 bits;
// all ones (FF x 8) is the null position. K is the key size, fixed per file by its user.
//
// Record frame (every record):
//
//   OFFSET  SIZE    DESCRIPTION
//     0       6       tag, compared ignoring case: "FIRST\t", "INDEX\t", "NOTE \t" (blank
//                     before the tab), "EMPTY\t"; "INVLD\t" for a record of unknown type
//     6       4       body length L (signed, never negative)
//    10       L       body
//
// FIRST body (the record stands at position 0; 10 + 24 = 34 bytes in all):
//
//   OFFSET  SIZE    DESCRIPTION
//     0      16       "NVW3000", NUL-padded (at most 14 characters are kept)
//    16       8       position of the root INDEX record
//
// INDEX body (a node of the B+-tree; L = 9 + capacity * (K + 8)):
//
//   OFFSET  SIZE    DESCRIPTION
//     0       1       1 = leaf (items point to notes), 0 = inner (items point to nodes)
//     1       4       items in use
//     5       4       capacity, 100 for every node this program makes
//     9       K+8     item 0: key (K bytes, NUL-padded, no terminator when it fills the
//                     field), then a position; unused items are all zero
//   9+(K+8)   K+8     item 1, and so on up to the capacity
//
// In an inner node each item's key is the largest key of the subtree it points to. Keys
// are cut to K bytes and at the first NUL and compared with CompareCodes.
//
// NOTE body (L = n + m + 18 for a key of n bytes and a text of m bytes):
//
//   OFFSET  SIZE    DESCRIPTION
//     0       4       date written, as a Julian day number (base/date.h DayNumber)
//     4       4       time of day, seconds since midnight
//     8       8       position of the next (older) note of the same key, or null
//    16      n+1      the key, NUL-terminated
//   17+n     m+1      the text, NUL-terminated
//
// EMPTY body: L zero bytes, where L is the length of the record it replaced. When a note is
// rewritten shorter in place, the bytes after its new end keep the EMPTY record's zeros.
//
// An empty file is set up by the first write: FIRST at 0, an empty leaf appended at 34,
// FIRST rewritten with the root position.
//
// Every operation opens the file, locks it, works and closes it again, which lets go of the
// lock. Writing opens read-write (creating the file) and takes an exclusive lock; reading
// opens read-only, where only a shared lock can be had, so a reader keeps writers out and
// a writer keeps everyone out. The locks are open-file-description locks (fcntl
// F_OFD_SETLK) on the whole file, taken without waiting: an operation that meets another
// holder fails at once.
//
// A damaged file never crashes, hangs or exhausts memory: positions are checked against
// the file size, record bodies are read only when they fit in the file, nodes and notes
// must decode exactly, a tree descent stops at kMaxDepth levels or at a node already on its
// path, and a note chain that comes back to a note it has passed is refused.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/date.h"
#include "base/file.h"
#include "store/notes/note_file_records.h"

namespace nv {

struct Note {
  Date date;                              // when the note was written
  int32_t seconds = 0;                    // time of day, seconds since midnight
  uint64_t position = kNullNotePosition;  // its NOTE record, null when not yet saved
  std::string text;
};

// A key's notes, newest first: by date, then time of day, descending.
struct NoteList {
  std::string key;
  std::vector<Note> notes;

  // Puts the note in date-and-time order; after any note of the same date and time.
  void Insert(Note note);
};

// Where a key sits in the tree: its first note (or null), and the file position of the
// item's 8-byte position field, so that it can be rewritten in place.
struct NoteIndexLocation {
  uint64_t note_position = kNullNotePosition;
  uint64_t field_position = kNullNotePosition;
};

class NoteFile {
 public:
  // No tree this program builds comes near this depth: a node holds up to 100 items.
  static constexpr size_t kMaxDepth = 32;

  // REQUIRES: key_size > 0.
  NoteFile(std::string path, uint32_t key_size);
  ~NoteFile();
  NoteFile(const NoteFile&) = delete;
  NoteFile& operator=(const NoteFile&) = delete;

  // The notes of `key`, newest first, in *list (with list->key set). True also when the
  // key or the file is missing (no notes); false when the file is in use, cannot be read,
  // or its tree or the key's chain is damaged. A missing file is not created.
  [[nodiscard]] bool ReadNotes(std::string_view key, NoteList* list);

  // Makes the stored notes of list->key equal to the list, in list order, and sets each
  // note's position. A note read from the file keeps its record when the record does not
  // grow (the key is part of it); otherwise it is appended, and every record given up
  // becomes EMPTY. Notes whose position is not one of the key's stored notes count as new.
  // With an old key (different from list->key), the notes stored under
  // the old key are the ones replaced, and the old key's item is set to null. False when
  // the file is in use, damaged or cannot be written, and when the key is missing and the
  // list is empty; records already rewritten then stay as written. Creates the file when
  // missing.
  [[nodiscard]] bool SaveNotes(NoteList* list,
                               std::optional<std::string_view> old_key = std::nullopt);

  // Where `key` is in the tree. False when it is not there, or the file is missing, in use
  // or damaged.
  [[nodiscard]] bool FindIndexKey(std::string_view key, NoteIndexLocation* location);
  // Adds `key` with a null position; true also when it was there already.
  [[nodiscard]] bool AddIndexKey(std::string_view key);

  const std::string& path() const { return path_; }
  uint32_t key_size() const { return key_size_; }

 private:
  enum class Access { kRead, kWrite };

  // Opens and locks the file; *missing tells a reader that there is no file.
  [[nodiscard]] bool Open(Access access, bool* missing);
  void Close();
  [[nodiscard]] bool SetUpIfEmpty();

  // Records. ReadRec leaves type kNoteRecInvalid for a record that is not wholly in the
  // file or has an unknown tag.
  void ReadRec(uint64_t position, NoteFileRec* rec);
  [[nodiscard]] bool WriteRec(const NoteFileRec& rec);
  [[nodiscard]] bool AppendRec(NoteFileRec* rec);
  [[nodiscard]] bool WritePosition(uint64_t at, uint64_t position);
  [[nodiscard]] bool ReadFirst(NoteFileFirstRec* first);
  [[nodiscard]] bool ReadNode(uint64_t position, NoteFileIndexRec* node);
  [[nodiscard]] bool WriteFirst(uint64_t root);

  // The tree (note_file_index.cpp). Find gives kOk, kNotFound or kOutOfRange (damaged).
  [[nodiscard]] int Find(std::string_view key, NoteIndexLocation* location);
  [[nodiscard]] bool Add(std::string_view key);
  size_t Search(const NoteFileIndexRec& node, std::string_view key) const;

  // The key's stored notes from `position` on, in chain order. False for a chain that
  // comes back to a note it has passed. Bodies are dropped; lengths are kept.
  [[nodiscard]] bool ReadChain(uint64_t position, std::vector<NoteFileNoteRec>* chain);
  [[nodiscard]] bool Save(NoteList* list, std::optional<std::string_view> old_key);

  std::string path_;
  uint32_t key_size_;
  std::optional<File> file_;  // open, and locked, for one operation
  uint64_t size_ = 0;         // file size while open
};

// The path of the file a note stands for: a text beginning "<file:" (ignoring case) names
// it, up to the first ">" or the end, trimmed of blanks; the file lies in the folder
// company number + ".img" inside the company's folder (which ends with a separator).
// nullopt for other notes, and for names that are empty or would leave that folder.
std::optional<std::string> AttachmentPath(const Note& note, std::string_view company_folder,
                                          std::string_view company_number);

// "M/DD/YYYY--H:MM:SS a.m." on a 12-hour clock.
std::string FormatNoteTimeStamp(const Note& note);

// A note written now, by the local clock.
Note MakeNoteNow(std::string text);

// Reads the key's notes, adds `note` in its place and saves them: how an importer adds a
// note to an asset. False when reading or saving failed.
[[nodiscard]] bool AddNote(NoteFile& file, std::string_view key, Note note);

}  // namespace nv
