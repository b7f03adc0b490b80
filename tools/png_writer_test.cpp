#include "tools/png_writer.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace nv {
namespace {

std::span<const uint8_t> Bytes(std::string_view text) {
  return {reinterpret_cast<const uint8_t*>(text.data()), text.size()};
}

uint32_t Big32(const std::string& s, size_t at) {
  return (uint32_t{static_cast<uint8_t>(s[at])} << 24) |
         (uint32_t{static_cast<uint8_t>(s[at + 1])} << 16) |
         (uint32_t{static_cast<uint8_t>(s[at + 2])} << 8) | static_cast<uint8_t>(s[at + 3]);
}

std::string Hex(const std::string& s, size_t at, size_t count) {
  std::string hex;
  for (size_t i = at; i < at + count && i < s.size(); ++i) {
    char part[4];
    std::snprintf(part, sizeof part, "%02x ", static_cast<uint8_t>(s[i]));
    hex += part;
  }
  return hex;
}

TEST(PngChecksums, MatchTheirPublishedCheckValues) {
  EXPECT_EQ(Crc32(Bytes("123456789")), 0xCBF43926u);
  EXPECT_EQ(Adler32(Bytes("Wikipedia")), 0x11E60398u);
}

TEST(EncodeGrayPng, TwoPixelImageByteForByte) {
  const uint8_t pixels[] = {0x00, 0xFF};
  const std::string png = EncodeGrayPng(2, 1, pixels);
  // Signature, then IHDR: 13 bytes, 2 x 1, 8-bit gray, no interlace.
  EXPECT_EQ(Hex(png, 0, 8), "89 50 4e 47 0d 0a 1a 0a ");
  EXPECT_EQ(Hex(png, 8, 25 - 4), "00 00 00 0d 49 48 44 52 00 00 00 02 00 00 00 01 08 00 00 00 00 ");
  EXPECT_EQ(Big32(png, 29), Crc32(Bytes(std::string_view(png).substr(12, 17))));
  // IDAT: the row "00 00 ff" (filter 0, black, white) in one final stored block; Adler-32
  // a = 1 + 0 + 0 + 255 = 256, b = 1 + 1 + 256 = 258.
  EXPECT_EQ(Hex(png, 33, 8 + 14),
            "00 00 00 0e 49 44 41 54 78 01 01 03 00 fc ff 00 00 ff 01 02 01 00 ");
  EXPECT_EQ(Big32(png, 55), Crc32(Bytes(std::string_view(png).substr(37, 18))));
  // IEND with its well-known CRC.
  EXPECT_EQ(Hex(png, 59, 12), "00 00 00 00 49 45 4e 44 ae 42 60 82 ");
  EXPECT_EQ(png.size(), 71u);
}

TEST(EncodeGrayPng, RowsBeyondOneStoredBlockSpanTwo) {
  // 65535 pixels and the filter byte: a full block of 65535 bytes and one of 1.
  const std::vector<uint8_t> pixels(65535, 0xFF);
  const std::string png = EncodeGrayPng(65535, 1, pixels);
  EXPECT_EQ(Big32(png, 33), 2u + 5 + 65535 + 5 + 1 + 4);
  EXPECT_EQ(Hex(png, 41, 8), "78 01 00 ff ff 00 00 00 ");  // not final, LEN, NLEN, filter 0
  EXPECT_EQ(Hex(png, 48 + 65535 - 1, 7), "ff 01 01 00 fe ff ff ");  // final block of 1 byte
}

TEST(EncodeGrayPng, RefusesSizesThePixelsDoNotFill) {
  const uint8_t pixels[] = {1, 2, 3};
  EXPECT_TRUE(EncodeGrayPng(2, 2, pixels).empty());
  EXPECT_TRUE(EncodeGrayPng(0, 3, pixels).empty());
}

}  // namespace
}  // namespace nv
