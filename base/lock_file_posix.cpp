#include "base/lock_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cassert>
#include <cerrno>

#include "base/file_util.h"

namespace nv {
namespace {

// How often the file may be replaced under us before we give up; each round means another
// process deleted the file between our open and our lock, which is rare.
constexpr int kMaxAttempts = 50;

struct flock WholeFileLock(short type) {
  struct flock lock = {};
  lock.l_type = type;
  lock.l_whence = SEEK_SET;
  lock.l_start = 0;
  lock.l_len = 0;  // to the end of the file, however long it grows
  lock.l_pid = 0;  // required for open-file-description locks
  return lock;
}

// True when `path` names the same file as the open descriptor.
bool PathNamesDescriptor(const std::string& path, int fd) {
  struct stat by_fd;
  struct stat by_path;
  if (::fstat(fd, &by_fd) != 0 || ::stat(path.c_str(), &by_path) != 0) return false;
  return by_fd.st_dev == by_path.st_dev && by_fd.st_ino == by_path.st_ino;
}

}  // namespace

std::optional<File> OpenWithoutSharing(const std::string& path, File::Mode mode, bool* missing) {
  assert(mode == File::Mode::kRead || mode == File::Mode::kOpenOrCreate);
  *missing = false;
  for (int attempt = 0; attempt < kMaxAttempts; ++attempt) {
    std::optional<File> file = File::Open(path, mode, missing);
    if (!file) return std::nullopt;
    struct flock lock = WholeFileLock(mode == File::Mode::kRead ? F_RDLCK : F_WRLCK);
    const int fd = static_cast<int>(file->handle());
    if (::fcntl(fd, F_OFD_SETLK, &lock) != 0) return std::nullopt;
    // Another process may have deleted or replaced the file between our open and our
    // lock; then the lock guards nothing and we try the file now at the path.
    if (PathNamesDescriptor(path, fd)) return file;
  }
  return std::nullopt;
}

LockStatus LockFile::TryAcquire(const std::string& path) {
  assert(!held());
  if (held()) return LockStatus::kError;
  for (int attempt = 0; attempt < kMaxAttempts; ++attempt) {
    int fd = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
    if (fd < 0) return LockStatus::kError;
    struct flock lock = WholeFileLock(F_WRLCK);
    if (::fcntl(fd, F_OFD_SETLK, &lock) != 0) {
      int error = errno;
      ::close(fd);
      if (error == EAGAIN || error == EACCES) return LockStatus::kHeldByOther;
      return LockStatus::kError;
    }
    if (PathNamesDescriptor(path, fd)) {
      handle_ = fd;
      path_ = path;
      return LockStatus::kAcquired;
    }
    ::close(fd);  // we locked a file that is no longer there: try the one that is
  }
  return LockStatus::kError;
}

bool LockFile::WriteContent(std::string_view text) {
  assert(held());
  const int fd = static_cast<int>(handle_);
  if (!held() || ::ftruncate(fd, 0) != 0) return false;
  off_t offset = 0;
  while (!text.empty()) {
    ssize_t n = ::pwrite(fd, text.data(), text.size(), offset);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) return false;
    text.remove_prefix(static_cast<size_t>(n));
    offset += n;
  }
  return true;
}

bool LockFile::IsStale() const {
  assert(held());
  return !held() || !PathNamesDescriptor(path_, static_cast<int>(handle_));
}

void LockFile::Release() {
  if (held()) ::close(static_cast<int>(handle_));
  handle_ = File::kNoHandle;
  path_.clear();
}

void LockFile::ReleaseAndRemove() {
  // Only remove the file if it is still ours; a replacement belongs to someone else.
  if (held() && !IsStale()) ::unlink(path_.c_str());
  Release();
}

bool LockFile::IsHeldByOther(const std::string& path) {
  int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) return false;
  struct flock lock = WholeFileLock(F_WRLCK);
  bool held = ::fcntl(fd, F_OFD_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
  ::close(fd);
  return held;
}

}  // namespace nv
