#include "base/file_util.h"

#include "base/file.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdlib>

#include "base/ascii.h"

namespace nv {
namespace {

std::string JoinPath(const std::string& folder, std::string_view name) {
  std::string out = folder;
  if (!out.empty() && out.back() != '/') out += '/';
  out += name;
  return out;
}

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

std::optional<std::string> FindFileIgnoringCase(const std::string& folder, std::string_view name) {
  if (name.empty() || name.find('/') != std::string_view::npos) return std::nullopt;
  DIR* dir = ::opendir(folder.empty() ? "." : folder.c_str());
  if (dir == nullptr) return std::nullopt;
  std::optional<std::string> found;
  while (struct dirent* entry = ::readdir(dir)) {
    std::string_view entry_name = entry->d_name;
    if (entry_name == name) {
      found = std::string(entry_name);
      break;
    }
    if (!found && EqualIgnoringCase(entry_name, name)) found = std::string(entry_name);
  }
  ::closedir(dir);
  if (!found) return std::nullopt;
  return JoinPath(folder, *found);
}

std::optional<std::string> ReadFileBytes(const std::string& path, bool* missing) {
  if (missing != nullptr) *missing = false;
  int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) {
    if (missing != nullptr) *missing = (errno == ENOENT || errno == ENOTDIR);
    return std::nullopt;
  }
  std::string out;
  char buf[65536];
  for (;;) {
    ssize_t n = ::read(fd, buf, sizeof buf);
    if (n < 0 && errno == EINTR) continue;
    if (n < 0) {
      ::close(fd);
      return std::nullopt;
    }
    if (n == 0) break;
    out.append(buf, static_cast<size_t>(n));
  }
  ::close(fd);
  return out;
}

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

bool WriteTextFile(const std::string& path, std::string_view text) {
  std::string out;
  out.reserve(text.size() + text.size() / 16);
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\n' && (i == 0 || text[i - 1] != '\r')) out += '\r';
    out += text[i];
  }
  return WriteFileAtomically(path, out);
}

std::vector<std::string> SplitTextLines(std::string_view text) {
  std::vector<std::string> lines;
  while (!text.empty()) {
    size_t end = text.find('\n');
    std::string_view line = text.substr(0, end);
    if (end != std::string_view::npos && !line.empty() && line.back() == '\r') {
      line.remove_suffix(1);
    }
    lines.emplace_back(line);
    if (end == std::string_view::npos) break;
    text.remove_prefix(end + 1);
  }
  return lines;
}

std::optional<std::vector<std::string>> ReadTextLines(const std::string& path) {
  std::optional<std::string> bytes = ReadFileBytes(path);
  if (!bytes) return std::nullopt;
  return SplitTextLines(*bytes);
}

bool MakeDirectories(const std::string& path) {
  if (path.empty()) return false;
  struct stat st;
  if (::stat(path.c_str(), &st) == 0) return S_ISDIR(st.st_mode);
  std::string trimmed = path;
  while (trimmed.size() > 1 && trimmed.back() == '/') trimmed.pop_back();
  size_t slash = trimmed.find_last_of('/');
  if (slash != std::string::npos && slash > 0) {
    if (!MakeDirectories(trimmed.substr(0, slash))) return false;
  }
  if (::mkdir(trimmed.c_str(), 0777) == 0) return true;
  return errno == EEXIST && ::stat(trimmed.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

bool CreateFileDurably(const std::string& path) {
  int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0666);
  if (fd < 0) return false;
  bool ok = ::fsync(fd) == 0;
  ok = (::close(fd) == 0) && ok;
  const size_t slash = path.find_last_of('/');
  const std::string folder =
      slash == std::string::npos ? std::string(".") : path.substr(0, slash == 0 ? 1 : slash);
  return ok && SyncFolder(folder);
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
