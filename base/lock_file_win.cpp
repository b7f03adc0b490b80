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

// Share modes keep out other Windows opens. A byte-range lock on top, far beyond any
// content so that it never stands in the way of a reader, also reaches programs that only
// know POSIX record locks: Samba maps it onto one on the server, and so does wine on the
// machine it runs on, where the native programs' whole-file locks meet it.
constexpr DWORD kFarRangeHigh = 0x40000000;  // offset 2^62

bool LockFarRange(HANDLE h, bool exclusive) {
  OVERLAPPED at = {};
  at.OffsetHigh = kFarRangeHigh;
  const DWORD flags = LOCKFILE_FAIL_IMMEDIATELY | (exclusive ? LOCKFILE_EXCLUSIVE_LOCK : 0);
  return ::LockFileEx(h, flags, 0, 1, 0, &at);
}

}  // namespace

std::optional<File> OpenWithoutSharing(const std::string& path, File::Mode mode, bool* missing) {
  assert(mode == File::Mode::kRead || mode == File::Mode::kOpenOrCreate);
  const bool reading = mode == File::Mode::kRead;
  std::optional<File> file =
      File::Open(path, mode, missing, reading ? File::Sharing::kReadOnly : File::Sharing::kNone);
  if (file && !LockFarRange(AsHandle(file->handle()), !reading)) return std::nullopt;
  return file;
}

LockStatus LockFile::TryAcquire(const std::string& path) {
  assert(!held());
  if (held()) return LockStatus::kError;
  // No DELETE access: a reader that shares reading and writing only (as the C library's
  // fopen does) must still be able to read the holder's line.
  HANDLE h = ::CreateFileA(path.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                           OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (h == INVALID_HANDLE_VALUE) {
    // A file another holder has marked for deletion refuses new opens until it is gone.
    const DWORD error = ::GetLastError();
    return IsSharingError(error) || error == ERROR_ACCESS_DENIED ? LockStatus::kHeldByOther
                                                                 : LockStatus::kError;
  }
  if (!LockFarRange(h, true)) {
    const DWORD error = ::GetLastError();
    ::CloseHandle(h);
    return IsSharingError(error) ? LockStatus::kHeldByOther : LockStatus::kError;
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
  const std::string path = path_;
  const bool was_held = held();
  Release();
  // A holder that came in between our close and this delete has the file open without
  // delete sharing, so the delete fails and its lock stays; a file left behind means
  // nothing, as after a crash, and the next holder takes it over.
  if (was_held) static_cast<void>(::DeleteFileA(path.c_str()));
}

bool LockFile::IsHeldByOther(const std::string& path) {
  // An open for writing that shares everything is refused exactly while a holder's open
  // (which shares only reading) exists.
  HANDLE h = ::CreateFileA(path.c_str(), GENERIC_WRITE,
                           FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                           OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (h == INVALID_HANDLE_VALUE) return IsSharingError(::GetLastError());
  const bool free = LockFarRange(h, true);
  ::CloseHandle(h);  // which lets go of our test lock
  return !free;
}

}  // namespace nv
