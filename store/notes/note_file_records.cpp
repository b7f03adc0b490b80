#include "store/notes/note_file_records.h"

#include <cassert>
#include <cstring>
#include <limits>

#include "base/ascii.h"
#include "base/coding.h"
#include "base/compare_codes.h"

namespace nv {
namespace {

constexpr int64_t kMaxBody = std::numeric_limits<int32_t>::max();

struct TagName {
  int type;
  std::string_view tag;
};

constexpr TagName kTags[] = {
    {kNoteRecFirst, "FIRST\t"}, {kNoteRecIndex, "INDEX\t"},   {kNoteRecNote, "NOTE \t"},
    {kNoteRecEmpty, "EMPTY\t"}, {kNoteRecInvalid, "INVLD\t"},
};

const uint8_t* Bytes(const std::string& s, size_t offset = 0) {
  return reinterpret_cast<const uint8_t*>(s.data()) + offset;
}
uint8_t* Bytes(std::string* s, size_t offset = 0) {
  return reinterpret_cast<uint8_t*>(s->data()) + offset;
}

}  // namespace

std::string_view NoteKeyView(std::string_view key, uint32_t key_size) {
  key = key.substr(0, key_size);
  return key.substr(0, key.find('\0'));
}

int CompareNoteKeys(std::string_view a, std::string_view b, uint32_t key_size) {
  return CompareCodes(NoteKeyView(a, key_size), NoteKeyView(b, key_size));
}

void EncodeNotePosition(uint8_t* dst, uint64_t position) {
  EncodeU32(dst, static_cast<uint32_t>(position));
  EncodeU32(dst + 4, static_cast<uint32_t>(position >> 32));
}

uint64_t DecodeNotePosition(const uint8_t* src) {
  return DecodeU32(src) | (static_cast<uint64_t>(DecodeU32(src + 4)) << 32);
}

std::string_view NoteFileRec::Tag(int type) {
  for (const TagName& t : kTags) {
    if (t.type == type) return t.tag;
  }
  return "INVLD\t";
}

int NoteFileRec::TypeOfTag(std::string_view tag) {
  for (const TagName& t : kTags) {
    if (t.type != kNoteRecInvalid && EqualIgnoringCase(tag, t.tag)) return t.type;
  }
  return kNoteRecInvalid;
}

std::string NoteFileRec::Bytes() const {
  assert(body.size() == static_cast<size_t>(length));
  std::string out(Tag(type));
  PutU32(&out, static_cast<uint32_t>(length));
  out += body;
  return out;
}

NoteFileRec MakeEmptyNoteRec(uint64_t position, int32_t length) {
  NoteFileRec rec;
  rec.position = position;
  rec.type = kNoteRecEmpty;
  rec.length = length;
  rec.body.assign(static_cast<size_t>(length), '\0');
  return rec;
}

bool NoteFileFirstRec::Decode() {
  if (body.size() < kBodyBytes) return false;
  std::string_view sig(body.data(), kSignatureKept);
  signature = std::string(sig.substr(0, sig.find('\0')));
  root = DecodeNotePosition(nv::Bytes(body, kSignatureBytes));
  return true;
}

void NoteFileFirstRec::Encode() {
  type = kNoteRecFirst;
  body.assign(kBodyBytes, '\0');
  std::memcpy(body.data(), signature.data(), std::min(signature.size(), kSignatureKept));
  EncodeNotePosition(nv::Bytes(&body, kSignatureBytes), root);
  length = static_cast<int32_t>(kBodyBytes);
}

int64_t NoteFileIndexRec::BodyLength(int64_t capacity, uint32_t key_size) {
  if (capacity < 0 || capacity > kMaxBody) return -1;
  int64_t bytes = static_cast<int64_t>(kHeadBytes) + capacity * (int64_t{key_size} + 8);
  return bytes <= kMaxBody ? bytes : -1;
}

uint64_t NoteFileIndexRec::ItemFieldPosition(uint64_t node_position, size_t index,
                                             uint32_t key_size) {
  return node_position + kFrameBytes + kHeadBytes + index * (uint64_t{key_size} + 8) + key_size;
}

bool NoteFileIndexRec::Decode(uint32_t key_size) {
  if (body.size() < kHeadBytes) return false;
  int32_t count = static_cast<int32_t>(DecodeU32(nv::Bytes(body, 1)));
  capacity = static_cast<int32_t>(DecodeU32(nv::Bytes(body, 5)));
  // A node must be able to split into two non-empty halves.
  if (capacity < 2 || count < 0 || count > capacity) return false;
  if (BodyLength(capacity, key_size) != static_cast<int64_t>(body.size())) return false;
  leaf = body[0] != 0;
  items.assign(static_cast<size_t>(count), IndexItem{});
  size_t offset = kHeadBytes;
  for (IndexItem& item : items) {
    item.key = std::string(NoteKeyView(std::string_view(body).substr(offset, key_size), key_size));
    item.position = DecodeNotePosition(nv::Bytes(body, offset + key_size));
    offset += key_size + 8;
  }
  return true;
}

void NoteFileIndexRec::Encode(uint32_t key_size) {
  assert(static_cast<int64_t>(items.size()) <= capacity);
  type = kNoteRecIndex;
  body.assign(static_cast<size_t>(BodyLength(capacity, key_size)), '\0');
  body[0] = leaf ? 1 : 0;
  EncodeU32(nv::Bytes(&body, 1), static_cast<uint32_t>(items.size()));
  EncodeU32(nv::Bytes(&body, 5), static_cast<uint32_t>(capacity));
  size_t offset = kHeadBytes;
  for (const IndexItem& item : items) {
    std::string_view key = NoteKeyView(item.key, key_size);
    std::memcpy(body.data() + offset, key.data(), key.size());
    EncodeNotePosition(nv::Bytes(&body, offset + key_size), item.position);
    offset += key_size + 8;
  }
  length = static_cast<int32_t>(body.size());
}

int64_t NoteFileNoteRec::BodyLength() const {
  uint64_t bytes = kFixedBytes + key.size() + text.size();
  return bytes <= static_cast<uint64_t>(kMaxBody) ? static_cast<int64_t>(bytes) : -1;
}

bool NoteFileNoteRec::Decode() {
  if (body.size() < kFixedBytes || body.back() != '\0') return false;
  size_t key_end = body.find('\0', kHeadBytes);
  size_t text_end = body.find('\0', key_end + 1);
  if (text_end != body.size() - 1) return false;
  day_number = static_cast<int32_t>(DecodeU32(nv::Bytes(body, 0)));
  seconds = static_cast<int32_t>(DecodeU32(nv::Bytes(body, 4)));
  next = DecodeNotePosition(nv::Bytes(body, 8));
  key = body.substr(kHeadBytes, key_end - kHeadBytes);
  text = body.substr(key_end + 1, text_end - key_end - 1);
  return true;
}

void NoteFileNoteRec::Encode() {
  assert(BodyLength() >= 0);
  type = kNoteRecNote;
  body.assign(kHeadBytes, '\0');
  EncodeU32(nv::Bytes(&body, 0), static_cast<uint32_t>(day_number));
  EncodeU32(nv::Bytes(&body, 4), static_cast<uint32_t>(seconds));
  EncodeNotePosition(nv::Bytes(&body, 8), next);
  body += key;
  body += '\0';
  body += text;
  body += '\0';
  length = static_cast<int32_t>(body.size());
}

}  // namespace nv
