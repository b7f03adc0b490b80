// A scratch folder for one fuzzing run, removed at exit; each input deletes its own files
// in it.
#pragma once

#include <stdlib.h>
#include <unistd.h>

namespace nv::fuzz {

// `pattern` must be a plain array ending in "XXXXXX" that lives as long as the program, so
// that it outlives the exit handler. Falls back to "/tmp" when the folder cannot be made.
inline const char* TempFolder(char* pattern) {
  static char* folder = pattern;
  static const bool made = [] {
    if (mkdtemp(folder) == nullptr) return false;
    atexit([] { rmdir(folder); });
    return true;
  }();
  return made ? folder : "/tmp";
}

}  // namespace nv::fuzz
