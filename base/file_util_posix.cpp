// Replacing a file and writing to a descriptor with POSIX calls.
#include "base/file_util.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdlib>

namespace nv {
namespace {

// Opens a new temporary file beside `path`; the name is unique within this process by a
// counter and across processes by the process id.
int OpenTemporaryBeside(const std::string& path, std::string* temp_path) {
  static std::atomic<unsigned> counter{0};
  for (int attempt = 0; attempt < 100; ++attempt) {
    *temp_path = path + ".tmp" + std::to_string(::getpid()) + "_" + std::to_string(counter++);
    int fd = ::open(temp_path->c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (fd >= 0 || errno != EEXIST) return fd;
  }
  return -1;
}

}  // namespace

bool WriteFileAtomically(const std::string& given_path, std::string_view bytes) {
  // Replace the file a symbolic link points to, not the link.
  std::string path = given_path;
  struct stat link_stat;
  if (::lstat(given_path.c_str(), &link_stat) == 0 && S_ISLNK(link_stat.st_mode)) {
    char* target = ::realpath(given_path.c_str(), nullptr);
    if (target == nullptr) return false;
    path = target;
    ::free(target);
  }
  std::string temp_path;
  int fd = OpenTemporaryBeside(path, &temp_path);
  if (fd < 0) return false;
  // Keep the permissions of the file we replace.
  struct stat old_stat;
  if (::stat(path.c_str(), &old_stat) == 0) ::fchmod(fd, old_stat.st_mode & 07777);
  bool ok = WriteToDescriptor(fd, bytes) && ::fsync(fd) == 0;
  ok = (::close(fd) == 0) && ok;
  if (ok) ok = ::rename(temp_path.c_str(), path.c_str()) == 0;
  if (!ok) ::unlink(temp_path.c_str());
  return ok;
}

bool WriteToDescriptor(int fd, std::string_view bytes) {
  while (!bytes.empty()) {
    ssize_t n = ::write(fd, bytes.data(), bytes.size());
    if (n < 0) {
      if (errno == EINTR) continue;
      return false;
    }
    if (n == 0) return false;
    bytes.remove_prefix(static_cast<size_t>(n));
  }
  return true;
}

}  // namespace nv
