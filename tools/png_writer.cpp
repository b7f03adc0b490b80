#include "tools/png_writer.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

namespace nv {
namespace {

constexpr size_t kMaxStoredBlock = 65535;  // LEN is 16 bits

constexpr std::array<uint32_t, 256> MakeCrcTable() {
  std::array<uint32_t, 256> table{};
  for (uint32_t n = 0; n < 256; ++n) {
    uint32_t c = n;
    for (int k = 0; k < 8; ++k) c = (c & 1) != 0 ? 0xEDB88320u ^ (c >> 1) : c >> 1;
    table[n] = c;
  }
  return table;
}
constexpr std::array<uint32_t, 256> kCrcTable = MakeCrcTable();

void PutBig32(std::vector<uint8_t>& out, uint32_t v) {
  out.push_back(static_cast<uint8_t>(v >> 24));
  out.push_back(static_cast<uint8_t>(v >> 16));
  out.push_back(static_cast<uint8_t>(v >> 8));
  out.push_back(static_cast<uint8_t>(v));
}

void PutLittle16(std::vector<uint8_t>& out, uint32_t v) {
  out.push_back(static_cast<uint8_t>(v));
  out.push_back(static_cast<uint8_t>(v >> 8));
}

// Appends one chunk: length, type, data, CRC of type and data.
void PutChunk(std::string& file, std::string_view type, std::span<const uint8_t> data) {
  std::vector<uint8_t> chunk;
  chunk.reserve(12 + data.size());
  PutBig32(chunk, static_cast<uint32_t>(data.size()));
  chunk.insert(chunk.end(), type.begin(), type.end());
  chunk.insert(chunk.end(), data.begin(), data.end());
  PutBig32(chunk, Crc32(std::span<const uint8_t>(chunk).subspan(4)));
  file.append(chunk.begin(), chunk.end());
}

// The raw bytes as a zlib stream of stored blocks.
std::vector<uint8_t> ZlibStored(std::span<const uint8_t> raw) {
  std::vector<uint8_t> out = {0x78, 0x01};  // deflate, 32K window; (0x7801 % 31) == 0
  size_t at = 0;
  do {
    const size_t length = std::min(kMaxStoredBlock, raw.size() - at);
    out.push_back(at + length == raw.size() ? 1 : 0);  // BFINAL, BTYPE 00
    PutLittle16(out, static_cast<uint32_t>(length));
    PutLittle16(out, static_cast<uint32_t>(~length & 0xFFFF));
    out.insert(out.end(), raw.begin() + static_cast<ptrdiff_t>(at),
               raw.begin() + static_cast<ptrdiff_t>(at + length));
    at += length;
  } while (at < raw.size());
  PutBig32(out, Adler32(raw));
  return out;
}

}  // namespace

uint32_t Crc32(std::span<const uint8_t> bytes) {
  uint32_t c = 0xFFFFFFFFu;
  for (uint8_t b : bytes) c = kCrcTable[(c ^ b) & 0xFF] ^ (c >> 8);
  return c ^ 0xFFFFFFFFu;
}

uint32_t Adler32(std::span<const uint8_t> bytes) {
  constexpr uint32_t kBase = 65521;
  uint32_t a = 1, b = 0;
  for (uint8_t byte : bytes) {
    a = (a + byte) % kBase;
    b = (b + a) % kBase;
  }
  return (b << 16) | a;
}

std::string EncodeGrayPng(uint32_t width, uint32_t height, std::span<const uint8_t> pixels) {
  if (width == 0 || height == 0 || pixels.size() != size_t{width} * height) return {};
  std::string file = "\x89PNG\r\n\x1a\n";

  std::vector<uint8_t> header;
  PutBig32(header, width);
  PutBig32(header, height);
  header.insert(header.end(), {8, 0, 0, 0, 0});  // 8-bit gray, deflate, no filter, no interlace
  PutChunk(file, "IHDR", header);

  std::vector<uint8_t> rows;
  rows.reserve((size_t{width} + 1) * height);
  for (uint32_t y = 0; y < height; ++y) {
    rows.push_back(0);  // filter: none
    const auto row = pixels.subspan(size_t{y} * width, width);
    rows.insert(rows.end(), row.begin(), row.end());
  }
  PutChunk(file, "IDAT", ZlibStored(rows));
  PutChunk(file, "IEND", {});
  return file;
}

}  // namespace nv
