// Files and folders through the Windows kernel: CreateFile with share modes, positioned
// reads and writes through OVERLAPPED offsets, and appends through an append-only handle.
#include "base/file.h"

#include <windows.h>

#include <filesystem>

namespace nv {
namespace {

HANDLE AsHandle(File::NativeHandle handle) {
  return reinterpret_cast<HANDLE>(handle);
}

DWORD ShareFlags(File::Sharing sharing) {
  switch (sharing) {
    case File::Sharing::kAll:
      return FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    case File::Sharing::kReadOnly:
      return FILE_SHARE_READ;
    case File::Sharing::kNone:
      return 0;
  }
  return 0;
}

OVERLAPPED At(uint64_t offset) {
  OVERLAPPED at = {};
  at.Offset = static_cast<DWORD>(offset & 0xFFFFFFFFu);
  at.OffsetHigh = static_cast<DWORD>(offset >> 32);
  return at;
}

// One call moves at most this much, so that the count fits a DWORD.
constexpr size_t kMaxChunk = 1u << 30;

bool IsMissingError(DWORD error) {
  return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND ||
         error == ERROR_INVALID_NAME;
}

std::string FolderPattern(const std::string& folder) {
  std::string pattern = folder.empty() ? std::string(".") : folder;
  if (pattern.back() != '/' && pattern.back() != '\\') pattern += '\\';
  return pattern + "*";
}

}  // namespace

File& File::operator=(File&& other) noexcept {
  if (this != &other) {
    static_cast<void>(Close());  // what it held is given up either way
    handle_ = other.handle_;
    other.handle_ = kNoHandle;
  }
  return *this;
}

std::optional<File> File::Open(const std::string& path, Mode mode, bool* missing, Sharing sharing) {
  if (missing != nullptr) *missing = false;
  DWORD access = GENERIC_READ | GENERIC_WRITE;
  DWORD disposition = OPEN_EXISTING;
  switch (mode) {
    case Mode::kRead:
      access = GENERIC_READ;
      break;
    case Mode::kReadWrite:
      break;
    case Mode::kCreate:
      disposition = CREATE_ALWAYS;
      break;
    case Mode::kOpenOrCreate:
      disposition = OPEN_ALWAYS;
      break;
    case Mode::kAppend:
      // Without FILE_WRITE_DATA every write lands at the end, in one piece.
      access = FILE_APPEND_DATA | SYNCHRONIZE;
      disposition = OPEN_ALWAYS;
      break;
  }
  HANDLE h = ::CreateFileA(path.c_str(), access, ShareFlags(sharing), nullptr, disposition,
                           FILE_ATTRIBUTE_NORMAL, nullptr);
  if (h == INVALID_HANDLE_VALUE) {
    if (missing != nullptr) *missing = IsMissingError(::GetLastError());
    return std::nullopt;
  }
  return File(reinterpret_cast<NativeHandle>(h));
}

bool File::ReadAt(uint64_t offset, void* buffer, size_t count) const {
  const int64_t got = ReadSomeAt(offset, buffer, count);
  return got >= 0 && static_cast<size_t>(got) == count;
}

int64_t File::ReadSomeAt(uint64_t offset, void* buffer, size_t count) const {
  auto* out = static_cast<char*>(buffer);
  size_t got = 0;
  while (got < count) {
    OVERLAPPED at = At(offset + got);
    DWORD n = 0;
    const DWORD asked = static_cast<DWORD>(std::min(count - got, kMaxChunk));
    if (!::ReadFile(AsHandle(handle_), out + got, asked, &n, &at)) {
      if (::GetLastError() == ERROR_HANDLE_EOF) break;
      return -1;
    }
    if (n == 0) break;
    got += n;
  }
  return static_cast<int64_t>(got);
}

bool File::WriteAt(uint64_t offset, const void* buffer, size_t count) {
  auto* in = static_cast<const char*>(buffer);
  while (count > 0) {
    OVERLAPPED at = At(offset);
    DWORD n = 0;
    const DWORD asked = static_cast<DWORD>(std::min(count, kMaxChunk));
    if (!::WriteFile(AsHandle(handle_), in, asked, &n, &at) || n == 0) return false;
    in += n;
    count -= n;
    offset += n;
  }
  return true;
}

bool File::Append(std::string_view bytes) {
  while (!bytes.empty()) {
    DWORD n = 0;
    const DWORD asked = static_cast<DWORD>(std::min(bytes.size(), kMaxChunk));
    if (!::WriteFile(AsHandle(handle_), bytes.data(), asked, &n, nullptr) || n == 0) {
      return false;
    }
    bytes.remove_prefix(n);
  }
  return true;
}

bool File::Sync() {
  return is_open() && ::FlushFileBuffers(AsHandle(handle_));
}

std::optional<uint64_t> File::Size() const {
  LARGE_INTEGER size;
  if (!is_open() || !::GetFileSizeEx(AsHandle(handle_), &size) || size.QuadPart < 0) {
    return std::nullopt;
  }
  return static_cast<uint64_t>(size.QuadPart);
}

int File::Close() {
  if (!is_open()) return 0;
  const bool closed = ::CloseHandle(AsHandle(handle_));
  handle_ = kNoHandle;
  return closed ? 0 : -1;
}

// Windows refuses "NAME\" for a file: the trailing separator goes, unless it is a root's.
static std::string WithoutTrailingSeparator(std::string path) {
  while (path.size() > 1 && (path.back() == '/' || path.back() == '\\') &&
         path[path.size() - 2] != ':') {
    path.pop_back();
  }
  return path;
}

bool PathExists(const std::string& path) {
  return ::GetFileAttributesA(WithoutTrailingSeparator(path).c_str()) != INVALID_FILE_ATTRIBUTES;
}

bool IsFolder(const std::string& path) {
  const DWORD attributes = ::GetFileAttributesA(WithoutTrailingSeparator(path).c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool SameFile(const std::string& a, const std::string& b) {
  auto identity = [](const std::string& path, BY_HANDLE_FILE_INFORMATION* info) {
    HANDLE h =
        ::CreateFileA(path.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                      nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (h == INVALID_HANDLE_VALUE) return false;
    const bool got = ::GetFileInformationByHandle(h, info);
    ::CloseHandle(h);
    return got;
  };
  BY_HANDLE_FILE_INFORMATION ia;
  BY_HANDLE_FILE_INFORMATION ib;
  return identity(a, &ia) && identity(b, &ib) &&
         ia.dwVolumeSerialNumber == ib.dwVolumeSerialNumber &&
         ia.nFileIndexHigh == ib.nFileIndexHigh && ia.nFileIndexLow == ib.nFileIndexLow;
}

std::vector<std::string> ListFolder(const std::string& folder) {
  std::vector<std::string> names;
  WIN32_FIND_DATAA entry;
  HANDLE find = ::FindFirstFileA(FolderPattern(folder).c_str(), &entry);
  if (find == INVALID_HANDLE_VALUE) return names;
  do {
    const std::string_view name = entry.cFileName;
    if (name != "." && name != "..") names.emplace_back(name);
  } while (::FindNextFileA(find, &entry));
  ::FindClose(find);
  return names;
}

bool MakeFolder(const std::string& path) {
  return ::CreateDirectoryA(path.c_str(), nullptr);
}

bool CopyFileBytes(const std::string& from, const std::string& to) {
  return ::CopyFileA(from.c_str(), to.c_str(), FALSE);
}

bool RenamePath(const std::string& from, const std::string& to) {
  return ::MoveFileExA(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING);
}

bool RemoveFile(const std::string& path) {
  return ::DeleteFileA(path.c_str()) || IsMissingError(::GetLastError());
}

bool RemoveEmptyFolder(const std::string& path) {
  return ::RemoveDirectoryA(path.c_str());
}

bool RemoveAll(const std::string& path) {
  std::error_code error;
  std::filesystem::remove_all(path, error);
  return !error;
}

bool SyncFolder(const std::string& folder) {
  // The file system journals its folders itself; a folder handle cannot be flushed
  // without administrator rights. It only has to be there.
  return IsFolder(folder.empty() ? std::string(".") : folder);
}

}  // namespace nv
