// The scratch folder of a fuzz run: made on first use and removed at exit. It lies on a memory file
// system where there is one, because every settings-file write syncs its file and a disk would slow
// the runs tenfold.
#pragma once

#include <stdlib.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

namespace nv::fuzzing {

// Kept in a plain array so that it outlives every static destructor that runs before the
// exit handler.
inline char scratch_folder[96];

inline void RemoveScratchFolder() {
  std::error_code ec;
  std::filesystem::remove_all(scratch_folder, ec);
}

// The folder, with a trailing separator, made on the first call; `name` goes into the
// folder's name. Each input removes what it made in it (or calls EmptyScratchFolder).
inline std::string ScratchFolder(const char* name) {
  if (scratch_folder[0] == '\0') {
    for (const char* parent : {"/dev/shm", "/tmp"}) {
      std::snprintf(scratch_folder, sizeof scratch_folder, "%s/nv_%s_fuzz_XXXXXX", parent, name);
      if (::mkdtemp(scratch_folder) != nullptr) break;
      scratch_folder[0] = '\0';
    }
    if (scratch_folder[0] == '\0') std::abort();
    std::atexit(RemoveScratchFolder);
  }
  return std::string(scratch_folder) + "/";
}

// The folder, emptied.
inline std::string EmptyScratchFolder(const char* name) {
  std::string folder = ScratchFolder(name);
  std::error_code ec;
  for (const auto& entry : std::filesystem::directory_iterator(scratch_folder, ec)) {
    std::filesystem::remove_all(entry.path(), ec);
  }
  return folder;
}

}  // namespace nv::fuzzing
