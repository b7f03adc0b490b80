// Helpers shared by the store tests: a private temporary folder and raw file access, so
// that tests compare the files' bytes with bytes written out by hand.
#pragma once

#ifndef _WIN32
#include <signal.h>
#include <stdlib.h>
#include <sys/resource.h>
#endif

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <iterator>
#include <string>
#include <vector>

#include "base/temp_dir_testing.h"

// Defined in builds with the address sanitizer, where long runs are cut shorter.
#if defined(__SANITIZE_ADDRESS__)
#define NV_SANITIZED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define NV_SANITIZED 1
#endif
#endif

namespace nv::testing {

using Bytes = std::vector<uint8_t>;

using TempDir = ::nv::TempDir;  // a fresh folder under /tmp, removed afterwards

inline Bytes ReadAll(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return Bytes(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

inline void WriteAll(const std::string& path, const Bytes& bytes) {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out.write(reinterpret_cast<const char*>(bytes.data()),
            static_cast<std::streamsize>(bytes.size()));
}

// The same for files whose bytes are easier to write out as text.
inline std::string ReadText(const std::string& path) {
  Bytes b = ReadAll(path);
  return std::string(b.begin(), b.end());
}

inline void WriteText(const std::string& path, const std::string& text) {
  WriteAll(path, Bytes(text.begin(), text.end()));
}

inline Bytes Slice(const Bytes& b, size_t offset, size_t count) {
  if (offset >= b.size()) return {};
  return Bytes(b.begin() + offset, b.begin() + std::min(b.size(), offset + count));
}

// Builds expected bytes piece by piece, little-endian as in the files.
class ByteBuilder {
 public:
  ByteBuilder& Raw(std::initializer_list<uint8_t> bytes) {
    bytes_.insert(bytes_.end(), bytes);
    return *this;
  }
  ByteBuilder& Text(const std::string& text) {
    bytes_.insert(bytes_.end(), text.begin(), text.end());
    return *this;
  }
  ByteBuilder& Fill(uint8_t value, size_t count) {
    bytes_.insert(bytes_.end(), count, value);
    return *this;
  }
  ByteBuilder& U16(uint16_t v) { return Raw({uint8_t(v & 0xFF), uint8_t(v >> 8)}); }
  ByteBuilder& U32(uint32_t v) {
    return Raw(
        {uint8_t(v & 0xFF), uint8_t((v >> 8) & 0xFF), uint8_t((v >> 16) & 0xFF), uint8_t(v >> 24)});
  }
  const Bytes& bytes() const { return bytes_; }
  size_t size() const { return bytes_.size(); }

 private:
  Bytes bytes_;
};

#ifndef _WIN32  // Windows has no per-process file size limit to stand in for a full disk
// While it lives, no file of this process can grow past `bytes`: a write there fails as on
// a full disk, and writes below it succeed. Keep its scope to the call under test, as it
// holds for every file the process writes.
class FilesCannotGrowPast {
 public:
  explicit FilesCannotGrowPast(uint64_t bytes) {
    getrlimit(RLIMIT_FSIZE, &saved_);
    // The signal would end the process; the failed write is what the test wants.
    saved_handler_ = signal(SIGXFSZ, SIG_IGN);
    rlimit limited = saved_;
    limited.rlim_cur = static_cast<rlim_t>(bytes);
    setrlimit(RLIMIT_FSIZE, &limited);
  }
  ~FilesCannotGrowPast() {
    setrlimit(RLIMIT_FSIZE, &saved_);
    signal(SIGXFSZ, saved_handler_);
  }
  FilesCannotGrowPast(const FilesCannotGrowPast&) = delete;
  FilesCannotGrowPast& operator=(const FilesCannotGrowPast&) = delete;

 private:
  rlimit saved_{};
  sighandler_t saved_handler_ = SIG_DFL;
};

#endif

}  // namespace nv::testing
