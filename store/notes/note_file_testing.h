// Notes-file records written out by hand from the layout tables, for the tests. Keys are 9
// bytes, as an asset number of the short format.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "store/store_testing.h"

namespace nv::testing {

constexpr uint32_t kNoteKey = 9;
// INDEX body: 1 + 4 + 4 + 100 items of 9 + 8 bytes; whole record with its 10-byte frame.
constexpr size_t kNodeBody = 9 + 100 * (9 + 8);
constexpr size_t kNodeRecord = 10 + kNodeBody;
static_assert(kNodeRecord == 1719);
constexpr uint64_t kNull = 0xFFFFFFFFFFFFFFFFull;

inline ByteBuilder& Position(ByteBuilder& b, uint64_t position) {
  return b.U32(static_cast<uint32_t>(position)).U32(static_cast<uint32_t>(position >> 32));
}

inline Bytes FirstRecord(uint64_t root) {
  ByteBuilder b;
  b.Text("FIRST\t").U32(24).Text("NVW3000").Fill(0, 9);
  return Position(b, root).bytes();
}

inline Bytes NodeRecord(bool leaf, const std::vector<std::pair<std::string, uint64_t>>& items,
                        uint32_t capacity = 100) {
  ByteBuilder b;
  b.Text("INDEX\t").U32(9 + capacity * 17).Raw({uint8_t(leaf ? 1 : 0)});
  b.U32(static_cast<uint32_t>(items.size())).U32(capacity);
  for (const auto& [key, position] : items) {
    b.Text(key).Fill(0, kNoteKey - key.size());
    Position(b, position);
  }
  return b.Fill(0, (capacity - items.size()) * 17).bytes();
}

inline Bytes NoteRecord(uint32_t day_number, uint32_t seconds, uint64_t next,
                        const std::string& key, const std::string& text) {
  ByteBuilder b;
  b.Text("NOTE \t").U32(static_cast<uint32_t>(key.size() + text.size() + 18));
  b.U32(day_number).U32(seconds);
  Position(b, next).Text(key).Raw({0}).Text(text).Raw({0});
  return b.bytes();
}

inline Bytes EmptyRecord(uint32_t length) {
  return ByteBuilder().Text("EMPTY\t").U32(length).Fill(0, length).bytes();
}

inline Bytes Concat(std::initializer_list<Bytes> parts) {
  Bytes out;
  for (const Bytes& part : parts) out.insert(out.end(), part.begin(), part.end());
  return out;
}

}  // namespace nv::testing
