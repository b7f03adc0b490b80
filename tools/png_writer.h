// A gray-scale PNG writer for nvtool's barcode labels, without a compression library.
//
// The image is 8-bit gray, one filter byte 0 (none) before each row, and the rows go into
// the IDAT chunk as a zlib stream of stored (uncompressed) deflate blocks. A label is a few
// tens of kilobytes this way, and every reader of PNG reads stored blocks.
//
//   file   = signature (8 bytes) IHDR IDAT IEND
//   chunk  = length (4, big-endian) type (4) data (length) CRC-32 of type and data (4)
//   IHDR   = width (4) height (4) bit depth 8, colour type 0, compression 0, filter 0,
//            interlace 0
//   zlib   = 0x78 0x01, stored blocks, Adler-32 of the raw data (4, big-endian)
//   stored = final flag byte (1 or 0), LEN (2, little-endian), ~LEN (2), LEN bytes
#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace nv {

// CRC-32 of PNG and zlib (polynomial 0xEDB88320, reflected, inverted before and after).
uint32_t Crc32(std::span<const uint8_t> bytes);
// Adler-32 of zlib.
uint32_t Adler32(std::span<const uint8_t> bytes);

// The PNG file of a width x height gray image, rows top to bottom, 0 black, 255 white.
// Empty unless width and height are at least 1 and pixels holds width x height bytes.
std::string EncodeGrayPng(uint32_t width, uint32_t height, std::span<const uint8_t> pixels);

}  // namespace nv
