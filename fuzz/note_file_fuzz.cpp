// Reads a notes file made of the input bytes: finds and reads a few keys, then on a copy
// edits, adds and moves notes and adds keys. The first input byte picks the key size.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include <unistd.h>

#include "fuzz/fuzz_scratch.h"
#include "store/notes/note_file.h"

namespace {

constexpr uint32_t kKeySizes[] = {9, 14, 4, 24};
const char* const kKeys[] = {"   123.01", "A1", "100", "99", "ZZZZ", ""};

// Kept for the whole run: the exit handler removes the folder made from it.

bool WriteBytes(const std::string& path, const uint8_t* data, size_t size) {
  FILE* f = std::fopen(path.c_str(), "wb");
  if (!f) return false;
  bool ok = std::fwrite(data, 1, size, f) == size;
  return std::fclose(f) == 0 && ok;
}

void Edit(nv::NoteFile& file, size_t size) {
  nv::NoteList list;
  if (!file.ReadNotes("A1", &list)) return;
  if (!list.notes.empty()) {
    nv::Note& note = list.notes[size % list.notes.size()];
    note.text.resize(size % 3 == 0 ? note.text.size() + 1 : note.text.size() / 2, 'x');
    if (size % 5 == 0) list.notes.erase(list.notes.begin());
  }
  list.Insert(nv::Note{nv::Date{1, 2, 2024}, 3600, nv::kNullNotePosition, "fuzz"});
  static_cast<void>(file.SaveNotes(&list));
  static_cast<void>(file.ReadNotes("A1", &list));
  list.key = "B2";
  static_cast<void>(file.SaveNotes(&list, "A1"));
  static_cast<void>(file.ReadNotes("B2", &list));
}

}  // namespace

// Statuses dropped with static_cast<void> are dropped on purpose: on arbitrary bytes any
// outcome is fine; only crashes, hangs and the checks count.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 1) return 0;
  const uint32_t key_size = kKeySizes[data[0] % 4];
  const std::string path = nv::fuzzing::ScratchFolder("note_file") + "fuzz.NOT";
  const std::string copy = nv::fuzzing::ScratchFolder("note_file") + "copy.NOT";
  if (WriteBytes(path, data + 1, size - 1) && WriteBytes(copy, data + 1, size - 1)) {
    nv::NoteFile file(path, key_size);
    nv::NoteList list;
    nv::NoteIndexLocation at;
    for (const char* key : kKeys) {
      static_cast<void>(file.FindIndexKey(key, &at));
      static_cast<void>(file.ReadNotes(key, &list));
      for (const nv::Note& note : list.notes) {
        nv::AttachmentPath(note, "/data/", "C1");
        nv::FormatNoteTimeStamp(note);
      }
    }
    nv::NoteFile writable(copy, key_size);
    Edit(writable, size);
    for (const char* key : kKeys) static_cast<void>(writable.AddIndexKey(key));
  }
  unlink(path.c_str());
  unlink(copy.c_str());
  return 0;
}
