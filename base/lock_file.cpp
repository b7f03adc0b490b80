// What the lock files of both platforms share; the locking itself is in
// lock_file_posix.cpp and lock_file_win.cpp.
#include "base/lock_file.h"

#include <utility>

#include "base/file_util.h"

namespace nv {

LockFile::LockFile(LockFile&& other) noexcept
    : handle_(other.handle_), path_(std::move(other.path_)) {
  other.handle_ = File::kNoHandle;
}

LockFile& LockFile::operator=(LockFile&& other) noexcept {
  if (this != &other) {
    Release();
    handle_ = other.handle_;
    path_ = std::move(other.path_);
    other.handle_ = File::kNoHandle;
  }
  return *this;
}

std::optional<std::string> LockFile::ReadContent(const std::string& path) {
  return ReadFileBytes(path);
}

}  // namespace nv
