// Lock files through Windows share modes: the holder's open allows others only to read,
// which keeps out every second holder and every delete while it is held.
#include "base/lock_file.h"

#include <windows.h>

#include <cassert>

#include "base/file_util.h"

namespace nv {
namespace {

HANDLE AsHandle(File::NativeHandle handle) {
  return reinterpret_cast<HANDLE>(handle);
}

bool IsSharingError(DWORD error) {
  return error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION;
}

}  // namespace

std::optional<File> OpenWithoutSharing(const std::string& path, File::Mode mode, bool* missing) {
  assert(mode == File::Mode::kRead || mode == File::Mode::kOpenOrCreate);
  const File::Sharing sharing =
      mode == File::Mode::kRead ? File::Sharing::kReadOnly : File::Sharing::kNone;
  return File::Open(path, mode, missing, sharing);
}

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

LockStatus LockFile::TryAcquire(const std::string& path) {
  assert(!held());
  if (held()) return LockStatus::kError;
  // DELETE access lets ReleaseAndRemove delete the file through this very handle.
  HANDLE h = ::CreateFileA(path.c_str(), GENERIC_READ | GENERIC_WRITE | DELETE, FILE_SHARE_READ,
                           nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (h == INVALID_HANDLE_VALUE) {
    // A file another holder has marked for deletion refuses new opens until it is gone.
    const DWORD error = ::GetLastError();
    return IsSharingError(error) || error == ERROR_ACCESS_DENIED ? LockStatus::kHeldByOther
                                                                 : LockStatus::kError;
  }
  handle_ = reinterpret_cast<File::NativeHandle>(h);
  path_ = path;
  return LockStatus::kAcquired;
}

bool LockFile::WriteContent(std::string_view text) {
  assert(held());
  if (!held()) return false;
  HANDLE h = AsHandle(handle_);
  LARGE_INTEGER start = {};
  if (!::SetFilePointerEx(h, start, nullptr, FILE_BEGIN) || !::SetEndOfFile(h)) return false;
  while (!text.empty()) {
    DWORD n = 0;
    if (!::WriteFile(h, text.data(), static_cast<DWORD>(text.size()), &n, nullptr) || n == 0) {
      return false;
    }
    text.remove_prefix(n);
  }
  return true;
}

bool LockFile::IsStale() const {
  assert(held());
  // Nobody can delete or replace a file we hold without delete sharing.
  return !held();
}

void LockFile::Release() {
  if (held()) ::CloseHandle(AsHandle(handle_));
  handle_ = File::kNoHandle;
  path_.clear();
}

void LockFile::ReleaseAndRemove() {
  if (held()) {
    FILE_DISPOSITION_INFO remove = {};
    remove.DeleteFile = TRUE;
    // The file goes when the handle closes; if that cannot be arranged it stays behind
    // empty of meaning, as after a crash, and the next holder takes it over.
    static_cast<void>(::SetFileInformationByHandle(AsHandle(handle_), FileDispositionInfo, &remove,
                                                   sizeof remove));
  }
  Release();
}

std::optional<std::string> LockFile::ReadContent(const std::string& path) {
  return ReadFileBytes(path);
}

bool LockFile::IsHeldByOther(const std::string& path) {
  // An open for writing that shares everything is refused exactly while a holder's open
  // (which shares only reading) exists.
  HANDLE h = ::CreateFileA(path.c_str(), GENERIC_WRITE,
                           FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                           OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (h == INVALID_HANDLE_VALUE) return IsSharingError(::GetLastError());
  ::CloseHandle(h);
  return false;
}

}  // namespace nv
