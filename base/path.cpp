#include "base/path.h"

namespace nv {

std::string WithTrailingSeparator(std::string folder) {
  if (!folder.empty() && !IsPathSeparator(folder.back())) folder += kPathSeparator;
  return folder;
}

std::string JoinPath(std::string_view folder, std::string_view name) {
  std::string out = WithTrailingSeparator(std::string(folder));
  out += name;
  return out;
}

size_t LastSeparator(std::string_view path) {
  size_t at = path.find_last_of(kPathSeparators);
#ifdef _WIN32
  if (at == std::string_view::npos && path.size() >= 2 && path[1] == ':') at = 1;
#endif
  return at;
}

std::string ParentFolder(std::string_view path) {
  while (path.size() > 1 && IsPathSeparator(path.back())) path.remove_suffix(1);
  const size_t at = LastSeparator(path);
  if (at == std::string_view::npos) return std::string();
  // A separator that starts the path, or follows a drive, is the root and stays.
  size_t keep = at;
  if (at == 0 || (at == 2 && path[1] == ':' && kPathSeparator == '\\') ||
      (at == 1 && path[1] == ':')) {
    keep = at + 1;
  }
  return std::string(path.substr(0, keep));
}

}  // namespace nv
