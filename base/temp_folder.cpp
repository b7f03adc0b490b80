#include "base/temp_folder.h"

#include <stdlib.h>

#include <cstdlib>

namespace nv {

std::optional<std::string> MakeTemporaryFolder(std::string_view prefix) {
  const char* tmp = std::getenv("TMPDIR");
  std::string pattern = (tmp != nullptr && *tmp != '\0') ? tmp : "/tmp";
  if (pattern.back() != '/') pattern += '/';
  pattern += std::string(prefix) + "XXXXXX";
  if (::mkdtemp(pattern.data()) == nullptr) return std::nullopt;
  return pattern + "/";
}

}  // namespace nv
