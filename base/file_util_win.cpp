// Replacing a file and writing to a descriptor on Windows.
#include "base/file_util.h"

#include <io.h>
#include <windows.h>

#include <atomic>
#include <string>

#include "base/file.h"

namespace nv {

bool WriteFileAtomically(const std::string& path, std::string_view bytes) {
  // A new temporary file beside the old one, unique within this process by a counter and
  // across processes by the process id.
  static std::atomic<unsigned> counter{0};
  std::string temp_path;
  HANDLE h = INVALID_HANDLE_VALUE;
  for (int attempt = 0; attempt < 100 && h == INVALID_HANDLE_VALUE; ++attempt) {
    temp_path =
        path + ".tmp" + std::to_string(::GetCurrentProcessId()) + "_" + std::to_string(counter++);
    h = ::CreateFileA(temp_path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                      FILE_ATTRIBUTE_NORMAL, nullptr);
    if (h == INVALID_HANDLE_VALUE && ::GetLastError() != ERROR_FILE_EXISTS) return false;
  }
  if (h == INVALID_HANDLE_VALUE) return false;
  bool ok = true;
  while (ok && !bytes.empty()) {
    DWORD n = 0;
    const DWORD asked = static_cast<DWORD>(std::min<size_t>(bytes.size(), 1u << 30));
    ok = ::WriteFile(h, bytes.data(), asked, &n, nullptr) && n > 0;
    bytes.remove_prefix(n);
  }
  ok = ok && ::FlushFileBuffers(h);
  ok = ::CloseHandle(h) && ok;
  // MoveFileEx replaces the old file in one step; a reader that has the old one open
  // without delete sharing makes it fail, and the old file stays.
  if (ok) {
    ok = ::MoveFileExA(temp_path.c_str(), path.c_str(),
                       MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH);
  }
  if (!ok) ::DeleteFileA(temp_path.c_str());
  return ok;
}

bool WriteToDescriptor(int fd, std::string_view bytes) {
  while (!bytes.empty()) {
    const unsigned asked = static_cast<unsigned>(std::min<size_t>(bytes.size(), 1u << 30));
    const int n = ::_write(fd, bytes.data(), asked);
    if (n <= 0) return false;
    bytes.remove_prefix(static_cast<size_t>(n));
  }
  return true;
}

}  // namespace nv
