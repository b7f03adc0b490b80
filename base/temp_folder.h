// Temporary folders, for work that must leave nothing behind where it came from.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace nv {

// A new, empty folder in the system's folder for temporary files (TMPDIR, else /tmp),
// its name beginning with `prefix`; the path ends with the separator. nullopt when none
// can be made. The caller removes it (RemoveAll).
std::optional<std::string> MakeTemporaryFolder(std::string_view prefix);

}  // namespace nv
