// Profile files through the system's own profile-string functions.
#include "base/profile.h"

#include <windows.h>
// windows.h names its own WriteProfileString; ours is nv::WriteProfileString.
#undef WriteProfileString

#include <algorithm>

#include "base/profile_text.h"

namespace nv {
namespace {

// A file name without a folder would be looked up in the Windows folder.
std::string FullPath(const std::string& file) {
  char buffer[MAX_PATH * 2];
  const DWORD n = ::GetFullPathNameA(file.c_str(), sizeof buffer, buffer, nullptr);
  if (n == 0 || n >= sizeof buffer) return file;
  return std::string(buffer, n);
}

// Names "a\0b\0\0" as a list; the list is grown until the system's answer fits.
template <typename Fetch>
std::vector<std::string> NameList(Fetch fetch) {
  for (DWORD size = 4096;; size *= 4) {
    std::string buffer(size, '\0');
    const DWORD n = fetch(buffer.data(), size);
    if (n + 2 >= size && size < (1u << 26)) continue;  // cut short: ask again with more room
    std::vector<std::string> names;
    for (size_t at = 0; at < n && buffer[at] != '\0';) {
      const size_t end = buffer.find('\0', at);
      names.push_back(buffer.substr(at, end - at));
      at = end + 1;
    }
    return names;
  }
}

}  // namespace

std::string ReadProfileString(const std::string& file, std::string_view section,
                              std::string_view key, std::string_view default_value,
                              size_t buffer_size) {
  if (buffer_size == 0) return std::string();
  const DWORD size = static_cast<DWORD>(std::min<size_t>(buffer_size, 1u << 26));
  std::string buffer(size, '\0');
  const DWORD n = ::GetPrivateProfileStringA(std::string(section).c_str(), std::string(key).c_str(),
                                             std::string(default_value).c_str(), buffer.data(),
                                             size, FullPath(file).c_str());
  buffer.resize(std::min<DWORD>(n, size - 1));
  return buffer;
}

std::vector<std::string> ListProfileKeys(const std::string& file, std::string_view section) {
  const std::string path = FullPath(file);
  const std::string name(section);
  return NameList([&](char* buffer, DWORD size) {
    return ::GetPrivateProfileStringA(name.c_str(), nullptr, "", buffer, size, path.c_str());
  });
}

std::vector<std::string> ListProfileSections(const std::string& file) {
  const std::string path = FullPath(file);
  return NameList([&](char* buffer, DWORD size) {
    return ::GetPrivateProfileSectionNamesA(buffer, size, path.c_str());
  });
}

bool WriteProfileString(const std::string& file, std::string_view section, std::string_view key,
                        std::string_view value) {
  if (!CanWriteProfileEntry(section, key, value)) return false;
  return ::WritePrivateProfileStringA(std::string(section).c_str(), std::string(key).c_str(),
                                      std::string(value).c_str(), FullPath(file).c_str());
}

bool DeleteProfileKey(const std::string& file, std::string_view section, std::string_view key) {
  const std::string path = FullPath(file);
  if (::GetFileAttributesA(path.c_str()) == INVALID_FILE_ATTRIBUTES) return true;
  return ::WritePrivateProfileStringA(std::string(section).c_str(), std::string(key).c_str(),
                                      nullptr, path.c_str());
}

bool DeleteProfileSection(const std::string& file, std::string_view section) {
  const std::string path = FullPath(file);
  if (::GetFileAttributesA(path.c_str()) == INVALID_FILE_ATTRIBUTES) return true;
  return ::WritePrivateProfileStringA(std::string(section).c_str(), nullptr, nullptr, path.c_str());
}

}  // namespace nv
