// Temporary folders, for work that must leave nothing behind where it came from.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace nv {

// A new, empty folder in the system's folder for temporary files (TMPDIR, else /tmp),
// its name beginning with `prefix`; the path ends with the separator. nullopt when none
// can be made. The caller removes it (RemoveAll).
std::optional<std::string> MakeTemporaryFolder(std::string_view prefix);

// Removes the folders in `folder` whose names begin with `prefix` and that nothing has
// changed for `age`: what runs that were killed left behind. Returns how many went.
int RemoveStaleFolders(const std::string& folder, std::string_view prefix, std::chrono::hours age);
// RemoveStaleFolders on the system's folder for temporary files.
int RemoveStaleTemporaryFolders(std::string_view prefix, std::chrono::hours age);

}  // namespace nv
