// Little-endian byte coding for the binary files the main program shares with us.
// Fixed-length numbers are encoded with the least-significant byte first, whatever the
// host's byte order, with explicit shifts.
#pragma once

#include <cstdint>
#include <string>

namespace nv {

inline void EncodeU16(uint8_t* dst, uint16_t value) {
  dst[0] = static_cast<uint8_t>(value);
  dst[1] = static_cast<uint8_t>(value >> 8);
}

inline void EncodeU32(uint8_t* dst, uint32_t value) {
  dst[0] = static_cast<uint8_t>(value);
  dst[1] = static_cast<uint8_t>(value >> 8);
  dst[2] = static_cast<uint8_t>(value >> 16);
  dst[3] = static_cast<uint8_t>(value >> 24);
}

inline uint16_t DecodeU16(const uint8_t* src) {
  return static_cast<uint16_t>(src[0] | (src[1] << 8));
}

inline uint32_t DecodeU32(const uint8_t* src) {
  return static_cast<uint32_t>(src[0]) | (static_cast<uint32_t>(src[1]) << 8) |
         (static_cast<uint32_t>(src[2]) << 16) | (static_cast<uint32_t>(src[3]) << 24);
}

inline void PutU16(std::string* dst, uint16_t value) {
  uint8_t buf[2];
  EncodeU16(buf, value);
  dst->append(reinterpret_cast<const char*>(buf), sizeof buf);
}

inline void PutU32(std::string* dst, uint32_t value) {
  uint8_t buf[4];
  EncodeU32(buf, value);
  dst->append(reinterpret_cast<const char*>(buf), sizeof buf);
}

}  // namespace nv
