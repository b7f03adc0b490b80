#include "store/notes/note_file.h"

#include <time.h>

#include <algorithm>
#include <cassert>
#include <tuple>
#include <unordered_set>
#include <utility>

#include "base/ascii.h"
#include "base/coding.h"
#include "base/lock_file.h"
#include "base/path.h"
#include "base/str_format.h"
#include "store/file/status.h"

namespace nv {
namespace {

constexpr int kSecondsPerDay = 24 * 60 * 60;

auto When(const Note& note) {
  return std::tie(note.date, note.seconds);
}

}  // namespace

void NoteList::Insert(Note note) {
  // Newest first; a note goes after every note that is not older than it.
  auto at = std::partition_point(notes.begin(), notes.end(),
                                 [&](const Note& n) { return !(When(n) < When(note)); });
  notes.insert(at, std::move(note));
}

NoteFile::NoteFile(std::string path, uint32_t key_size)
    : path_(std::move(path)), key_size_(key_size) {
  assert(key_size > 0);
}

NoteFile::~NoteFile() {
  Close();
}

// ---- Opening and locking ----

bool NoteFile::Open(Access access, bool* missing) {
  file_ = OpenWithoutSharing(
      path_, access == Access::kWrite ? File::Mode::kOpenOrCreate : File::Mode::kRead, missing);
  if (!file_) return false;
  size_ = file_->Size().value_or(0);
  return true;
}

void NoteFile::Close() {
  file_.reset();  // lets go of the lock
  size_ = 0;
}

// A file too short to hold a record frame holds nothing yet: FIRST at 0, an empty leaf
// appended after it, FIRST rewritten with the leaf as root.
bool NoteFile::SetUpIfEmpty() {
  if (size_ >= NoteFileRec::kFrameBytes) return true;
  if (!WriteFirst(kNullNotePosition)) return false;
  NoteFileIndexRec leaf;
  leaf.Encode(key_size_);
  return AppendRec(&leaf) && WriteFirst(leaf.position);
}

// ---- Records ----

void NoteFile::ReadRec(uint64_t position, NoteFileRec* rec) {
  rec->position = position;
  rec->type = kNoteRecInvalid;
  rec->length = 0;
  rec->body.clear();
  if (position >= size_ || size_ - position < NoteFileRec::kFrameBytes) return;
  uint8_t frame[NoteFileRec::kFrameBytes];
  if (!file_->ReadAt(position, frame, sizeof frame)) return;
  int type = NoteFileRec::TypeOfTag(
      std::string_view(reinterpret_cast<const char*>(frame), NoteFileRec::kTagBytes));
  int32_t length = static_cast<int32_t>(DecodeU32(frame + NoteFileRec::kTagBytes));
  // The body must lie inside the file, which also bounds what a damaged length can make us
  // allocate.
  if (type == kNoteRecInvalid || length < 0 ||
      static_cast<uint64_t>(length) > size_ - position - NoteFileRec::kFrameBytes) {
    return;
  }
  rec->body.resize(static_cast<size_t>(length));
  if (!file_->ReadAt(position + NoteFileRec::kFrameBytes, rec->body.data(), rec->body.size())) {
    rec->body.clear();
    return;
  }
  rec->type = type;
  rec->length = length;
}

bool NoteFile::WriteRec(const NoteFileRec& rec) {
  std::string bytes = rec.Bytes();
  if (!file_->WriteAt(rec.position, bytes.data(), bytes.size())) return false;
  size_ = std::max(size_, rec.position + bytes.size());
  return true;
}

bool NoteFile::AppendRec(NoteFileRec* rec) {
  rec->position = size_;
  return WriteRec(*rec);
}

bool NoteFile::WritePosition(uint64_t at, uint64_t position) {
  uint8_t field[8];
  EncodeNotePosition(field, position);
  return at < size_ && size_ - at >= sizeof field && file_->WriteAt(at, field, sizeof field);
}

bool NoteFile::ReadFirst(NoteFileFirstRec* first) {
  ReadRec(0, first);
  return first->type == kNoteRecFirst && first->Decode();
}

bool NoteFile::ReadNode(uint64_t position, NoteFileIndexRec* node) {
  ReadRec(position, node);
  return node->type == kNoteRecIndex && node->Decode(key_size_);
}

bool NoteFile::WriteFirst(uint64_t root) {
  NoteFileFirstRec first;
  first.position = 0;
  first.root = root;
  first.Encode();
  return WriteRec(first);
}

bool NoteFile::ReadChain(uint64_t position, std::vector<NoteFileNoteRec>* chain) {
  chain->clear();
  std::unordered_set<uint64_t> passed;
  while (position != kNullNotePosition) {
    if (!passed.insert(position).second) return false;
    NoteFileNoteRec rec;
    ReadRec(position, &rec);
    // A record that is not a whole NOTE ends the chain.
    if (rec.type != kNoteRecNote || !rec.Decode()) break;
    rec.body = std::string();
    position = rec.next;
    chain->push_back(std::move(rec));
  }
  return true;
}

// ---- Operations ----

bool NoteFile::ReadNotes(std::string_view key_in, NoteList* list) {
  const std::string key(key_in);  // the view may be list->key itself
  list->key = key;
  list->notes.clear();
  bool missing = false;
  if (!Open(Access::kRead, &missing)) return missing;
  bool ok = true;
  if (size_ >= NoteFileRec::kFrameBytes) {  // a shorter file has not been set up yet
    NoteIndexLocation at;
    int found = Find(key, &at);
    std::vector<NoteFileNoteRec> chain;
    ok = found == kNotFound || (found == kOk && ReadChain(at.note_position, &chain));
    if (!ok) chain.clear();
    for (NoteFileNoteRec& rec : chain) {
      list->Insert(
          Note{DateFromDayNumber(rec.day_number), rec.seconds, rec.position, std::move(rec.text)});
    }
  }
  Close();
  return ok;
}

bool NoteFile::SaveNotes(NoteList* list, std::optional<std::string_view> old_key) {
  bool missing = false;
  if (!Open(Access::kWrite, &missing)) return false;
  bool ok = SetUpIfEmpty() && Save(list, old_key);
  Close();
  return ok;
}

bool NoteFile::Save(NoteList* list, std::optional<std::string_view> old_key) {
  const std::string key(NoteKeyView(list->key, key_size_));
  const size_t count = list->notes.size();
  // The records as they will be written. A NUL would end the text on reading, so the text
  // ends there now.
  std::vector<NoteFileNoteRec> recs(count);
  for (size_t i = 0; i < count; ++i) {
    const Note& note = list->notes[i];
    recs[i].day_number = static_cast<int32_t>(DayNumber(note.date));
    recs[i].seconds = note.seconds;
    recs[i].key = key;
    recs[i].text = note.text.substr(0, note.text.find('\0'));
    if (recs[i].BodyLength() < 0) return false;
  }

  // 1. The key's item, added when missing and there is something to store.
  NoteIndexLocation at;
  int found = Find(key, &at);
  if (found == kNotFound && count > 0) {
    if (!Add(key)) return false;
    found = Find(key, &at);
  }
  if (found != kOk) return false;

  // 2. The notes stored now: under the old key when they move, else under the key.
  const bool moving = old_key && CompareNoteKeys(*old_key, key, key_size_) != 0;
  uint64_t stored_from = at.note_position;
  NoteIndexLocation old_at;
  if (moving) {
    found = Find(*old_key, &old_at);
    if (found == kOutOfRange) return false;
    stored_from = found == kOk ? old_at.note_position : kNullNotePosition;
  }
  std::vector<NoteFileNoteRec> stored;
  if (!ReadChain(stored_from, &stored)) return false;
  if (moving && stored_from != kNullNotePosition &&
      !WritePosition(old_at.field_position, kNullNotePosition)) {
    return false;
  }

  // 3. A stored note stays where it is when the list still holds it (same position) and
  // its record does not grow; any other stored note becomes free space. A record that
  // shrinks is freed first, so its tail is left as zeros.
  std::vector<bool> in_place(count, false);
  for (const NoteFileNoteRec& old : stored) {
    size_t i = 0;
    while (i < count && (in_place[i] || list->notes[i].position != old.position)) ++i;
    bool keep = i < count && recs[i].BodyLength() <= old.length;
    if (keep) {
      in_place[i] = true;
      recs[i].position = old.position;
    }
    if ((!keep || recs[i].BodyLength() < old.length) &&
        !WriteRec(MakeEmptyNoteRec(old.position, old.length))) {
      return false;
    }
  }

  // 4. The others go to the end of the file one after the other; the key's item points to
  // the first note.
  uint64_t end = size_;
  for (size_t i = 0; i < count; ++i) {
    if (in_place[i]) continue;
    recs[i].position = end;
    end += NoteFileRec::kFrameBytes + static_cast<uint64_t>(recs[i].BodyLength());
  }
  uint64_t first = count > 0 ? recs[0].position : kNullNotePosition;
  if (first != at.note_position && !WritePosition(at.field_position, first)) return false;

  // 5. The notes in list order, each linked to the next.
  for (size_t i = 0; i < count; ++i) {
    recs[i].next = i + 1 < count ? recs[i + 1].position : kNullNotePosition;
    recs[i].Encode();
    if (!WriteRec(recs[i])) return false;
    list->notes[i].position = recs[i].position;
  }
  return true;
}

bool NoteFile::FindIndexKey(std::string_view key, NoteIndexLocation* location) {
  bool missing = false;
  if (!Open(Access::kRead, &missing)) return false;
  bool found = size_ >= NoteFileRec::kFrameBytes && Find(key, location) == kOk;
  Close();
  return found;
}

bool NoteFile::AddIndexKey(std::string_view key) {
  bool missing = false;
  if (!Open(Access::kWrite, &missing)) return false;
  bool ok = SetUpIfEmpty() && Add(key);
  Close();
  return ok;
}

// ---- Notes as the user sees them ----

std::optional<std::string> AttachmentPath(const Note& note, std::string_view company_folder,
                                          std::string_view company_number) {
  constexpr std::string_view kPrefix = "<file:";
  std::string_view text = note.text;
  if (text.size() < kPrefix.size() || !EqualIgnoringCase(text.substr(0, kPrefix.size()), kPrefix)) {
    return std::nullopt;
  }
  std::string_view name = text.substr(kPrefix.size());
  name = TrimBlanks(name.substr(0, name.find('>')));
  // The picture must lie in the company's image folder, not beside or above it.
  // Both separators are refused everywhere, and a drive's colon too ("C:x").
  if (name.empty() || name == "." || name == ".." || name.find_first_of("/\\:") != name.npos) {
    return std::nullopt;
  }
  // "%s%s.img\\%s": company folder, company number, name.
  return JoinPath(std::string(company_folder) + std::string(company_number) + ".img", name);
}

std::string FormatNoteTimeStamp(const Note& note) {
  int seconds = note.seconds % kSecondsPerDay;
  if (seconds < 0) seconds += kSecondsPerDay;
  int hour = seconds / 3600;
  int hour12 = hour % 12 == 0 ? 12 : hour % 12;
  return StrPrintf("%d/%2.2d/%4.4d--%d:%2.2d:%2.2d %s", note.date.month, note.date.day,
                   note.date.year, hour12, seconds / 60 % 60, seconds % 60,
                   hour < 12 ? "a.m." : "p.m.");
}

Note MakeNoteNow(std::string text) {
  Note note;
  note.text = std::move(text);
  time_t now = ::time(nullptr);
  struct tm local;
  if (::localtime_r(&now, &local) != nullptr) {
    note.date = Date{local.tm_mon + 1, local.tm_mday, local.tm_year + 1900};
    note.seconds = local.tm_hour * 3600 + local.tm_min * 60 + local.tm_sec;
  }
  return note;
}

bool AddNote(NoteFile& file, std::string_view key, Note note) {
  NoteList list;
  if (!file.ReadNotes(key, &list)) return false;
  list.Insert(std::move(note));
  return file.SaveNotes(&list);
}

}  // namespace nv
