#include "base/file.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>

namespace nv {
namespace {

int OpenFlags(File::Mode mode) {
  switch (mode) {
    case File::Mode::kRead:
      return O_RDONLY;
    case File::Mode::kReadWrite:
      return O_RDWR;
    case File::Mode::kCreate:
      return O_RDWR | O_CREAT | O_TRUNC;
    case File::Mode::kOpenOrCreate:
      return O_RDWR | O_CREAT;
    case File::Mode::kAppend:
      return O_WRONLY | O_APPEND | O_CREAT;
  }
  return O_RDONLY;
}

}  // namespace

File& File::operator=(File&& other) noexcept {
  if (this != &other) {
    static_cast<void>(Close());  // what it held is given up either way
    handle_ = other.handle_;
    other.handle_ = -1;
  }
  return *this;
}

std::optional<File> File::Open(const std::string& path, Mode mode, bool* missing) {
  if (missing != nullptr) *missing = false;
  int fd;
  do {
    fd = ::open(path.c_str(), OpenFlags(mode) | O_CLOEXEC, 0666);
  } while (fd < 0 && errno == EINTR);
  if (fd < 0) {
    if (missing != nullptr) *missing = errno == ENOENT || errno == ENOTDIR;
    return std::nullopt;
  }
  // A folder opens for reading on this platform; it is never a file of ours.
  struct stat st;
  if (::fstat(fd, &st) != 0 || S_ISDIR(st.st_mode)) {
    ::close(fd);
    return std::nullopt;
  }
  return File(fd);
}

bool File::ReadAt(uint64_t offset, void* buffer, size_t count) const {
  auto* out = static_cast<char*>(buffer);
  while (count > 0) {
    const ssize_t n = ::pread(handle_, out, count, static_cast<off_t>(offset));
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) return false;
    out += n;
    count -= static_cast<size_t>(n);
    offset += static_cast<uint64_t>(n);
  }
  return true;
}

int64_t File::ReadSomeAt(uint64_t offset, void* buffer, size_t count) const {
  auto* out = static_cast<char*>(buffer);
  size_t got = 0;
  while (got < count) {
    const ssize_t n = ::pread(handle_, out + got, count - got, static_cast<off_t>(offset + got));
    if (n < 0 && errno == EINTR) continue;
    if (n < 0) return -1;
    if (n == 0) break;
    got += static_cast<size_t>(n);
  }
  return static_cast<int64_t>(got);
}

bool File::WriteAt(uint64_t offset, const void* buffer, size_t count) {
  auto* in = static_cast<const char*>(buffer);
  while (count > 0) {
    const ssize_t n = ::pwrite(handle_, in, count, static_cast<off_t>(offset));
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) return false;
    in += n;
    count -= static_cast<size_t>(n);
    offset += static_cast<uint64_t>(n);
  }
  return true;
}

bool File::Append(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t n = ::write(handle_, bytes.data(), bytes.size());
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) return false;
    bytes.remove_prefix(static_cast<size_t>(n));
  }
  return true;
}

bool File::Sync() {
  return handle_ >= 0 && ::fsync(handle_) == 0;
}

std::optional<uint64_t> File::Size() const {
  struct stat st;
  if (handle_ < 0 || ::fstat(handle_, &st) != 0 || st.st_size < 0) return std::nullopt;
  return static_cast<uint64_t>(st.st_size);
}

int File::Close() {
  if (handle_ < 0) return 0;
  const int rc = ::close(handle_);
  handle_ = -1;
  return rc == 0 ? 0 : -1;
}

bool PathExists(const std::string& path) {
  struct stat st;
  return ::stat(path.c_str(), &st) == 0;
}

bool IsFolder(const std::string& path) {
  struct stat st;
  return ::stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

bool SameFile(const std::string& a, const std::string& b) {
  struct stat sa;
  struct stat sb;
  return ::stat(a.c_str(), &sa) == 0 && ::stat(b.c_str(), &sb) == 0 && sa.st_dev == sb.st_dev &&
         sa.st_ino == sb.st_ino;
}

std::vector<std::string> ListFolder(const std::string& folder) {
  std::vector<std::string> names;
  DIR* dir = ::opendir(folder.empty() ? "." : folder.c_str());
  if (dir == nullptr) return names;
  while (const struct dirent* entry = ::readdir(dir)) {
    const std::string_view name = entry->d_name;
    if (name != "." && name != "..") names.emplace_back(name);
  }
  ::closedir(dir);
  return names;
}

bool MakeFolder(const std::string& path) {
  return ::mkdir(path.c_str(), 0777) == 0;
}

bool CopyFileBytes(const std::string& from, const std::string& to) {
  std::error_code error;
  return std::filesystem::copy_file(from, to, std::filesystem::copy_options::overwrite_existing,
                                    error);
}

bool RenamePath(const std::string& from, const std::string& to) {
  return std::rename(from.c_str(), to.c_str()) == 0;
}

bool RemoveFile(const std::string& path) {
  return ::unlink(path.c_str()) == 0 || errno == ENOENT;
}

bool RemoveEmptyFolder(const std::string& path) {
  return ::rmdir(path.c_str()) == 0;
}

bool RemoveAll(const std::string& path) {
  std::error_code error;
  std::filesystem::remove_all(path, error);
  return !error;
}

bool SyncFolder(const std::string& folder) {
  const int fd = ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (fd < 0) return false;
  const bool synced = ::fsync(fd) == 0;
  ::close(fd);
  return synced;
}

}  // namespace nv
