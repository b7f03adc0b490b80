// The records of the notes file as held in memory, and their coding. The byte layout of
// every record is given in store/notes/note_file.h.
//
// A record keeps its file position, its type code, its body length and its body bytes.
// The kinds decode their fields from the body (Decode) and build the body from their
// fields (Encode). Decoding is strict: a body that is not exactly what the writer makes
// (a note whose key or text does not end where its length says, a node whose capacity does
// not match its length) is refused, so that a damaged file is noticed before it is trusted.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace nv {

// File positions are 8 bytes: low 32 bits, then high 32 bits. All ones is "no position".
inline constexpr uint64_t kNullNotePosition = ~uint64_t{0};

// Type codes in memory. A record whose tag is unknown or that cannot be read is kInvalid.
enum NoteRecType : int {
  kNoteRecInvalid = -1,
  kNoteRecEmpty = 0,
  kNoteRecFirst = 16,
  kNoteRecNote = 32,
  kNoteRecIndex = 48,
};

// The key as the file compares and stores it: cut to the key size and at the first NUL.
std::string_view NoteKeyView(std::string_view key, uint32_t key_size);
// Order of two keys, each cut as above, in natural text order.
[[nodiscard]] int CompareNoteKeys(std::string_view a, std::string_view b, uint32_t key_size);

void EncodeNotePosition(uint8_t* dst, uint64_t position);
uint64_t DecodeNotePosition(const uint8_t* src);

struct NoteFileRec {
  // Frame: tag (6 bytes), body length (4 bytes, signed).
  static constexpr size_t kTagBytes = 6;
  static constexpr size_t kFrameBytes = kTagBytes + 4;
  static_assert(kFrameBytes == 10);

  uint64_t position = kNullNotePosition;  // where the frame starts
  int type = kNoteRecInvalid;             // NoteRecType
  int32_t length = 0;                     // body length, never negative
  std::string body;                       // the body bytes, when read or encoded

  // The 6-byte tag written for a type code ("INVLD\t" for unknown codes).
  static std::string_view Tag(int type);
  // The type code of a tag, compared ignoring case; kNoteRecInvalid when unknown.
  [[nodiscard]] static int TypeOfTag(std::string_view tag);
  // Frame and body as they go into the file. REQUIRES: body.size() == length.
  std::string Bytes() const;
  // Total size in the file: frame plus body.
  uint64_t Extent() const { return kFrameBytes + static_cast<uint64_t>(length); }
};

// Free space: an EMPTY record of `length` zero bytes at `position`.
NoteFileRec MakeEmptyNoteRec(uint64_t position, int32_t length);

// The FIRST record, always at position 0.
struct NoteFileFirstRec : NoteFileRec {
  // Body: the signature NUL-padded to 16 bytes, then the root position.
  static constexpr size_t kSignatureBytes = 16;
  static constexpr size_t kSignatureKept = 14;
  static constexpr size_t kBodyBytes = kSignatureBytes + 8;
  static_assert(kBodyBytes == 24);
  static constexpr char kSignature[] = "NVW3000";

  std::string signature = kSignature;  // at most kSignatureKept characters
  uint64_t root = kNullNotePosition;   // the root INDEX record

  // False when the body is too short.
  [[nodiscard]] bool Decode();
  void Encode();
};

// An INDEX record: a node of the B+-tree of keys.
struct NoteFileIndexRec : NoteFileRec {
  struct IndexItem {
    std::string key;                        // cut as NoteKeyView does, without padding
    uint64_t position = kNullNotePosition;  // leaf: first note; inner: child node
  };

  // Body head: leaf flag (1 byte), items in use (4), capacity (4).
  static constexpr size_t kHeadBytes = 1 + 4 + 4;
  static_assert(kHeadBytes == 9);
  // Every node this program makes holds up to 100 items.
  static constexpr int32_t kCapacity = 100;

  bool leaf = true;
  int32_t capacity = kCapacity;
  std::vector<IndexItem> items;  // the items in use, in key order

  // Body length of a node of `capacity` items of key size K; -1 when it would not fit the
  // 32-bit length.
  [[nodiscard]] static int64_t BodyLength(int64_t capacity, uint32_t key_size);
  // Offset in the file of item `index`'s position field of the node at `node_position`.
  static uint64_t ItemFieldPosition(uint64_t node_position, size_t index, uint32_t key_size);

  // False unless the body is exactly a node of its capacity (2 or more items) with no more
  // items in use than the capacity.
  [[nodiscard]] bool Decode(uint32_t key_size);
  // Writes the items, zeroes the unused ones, and sets the length.
  void Encode(uint32_t key_size);
  bool full() const { return static_cast<int64_t>(items.size()) >= capacity; }
};

// A NOTE record: one note of a key, linked to the next older one.
struct NoteFileNoteRec : NoteFileRec {
  // Body head: date (4), time (4), next note (8); then key and text, each NUL-terminated.
  static constexpr size_t kHeadBytes = 4 + 4 + 8;
  static_assert(kHeadBytes == 16);
  // The body length is n + m + 18 for a key of n and a text of m bytes.
  static constexpr size_t kFixedBytes = kHeadBytes + 2;

  int32_t day_number = 0;  // Julian day number of the date written
  int32_t seconds = 0;     // time of day, seconds since midnight
  uint64_t next = kNullNotePosition;
  std::string key;
  std::string text;

  // Body length for this key and text; -1 when it would not fit the 32-bit length.
  [[nodiscard]] int64_t BodyLength() const;
  // False unless the body is the head, a key and a text, each ending with its NUL, and
  // nothing after.
  [[nodiscard]] bool Decode();
  // REQUIRES: BodyLength() >= 0, and no NUL inside key or text.
  void Encode();
};

}  // namespace nv
