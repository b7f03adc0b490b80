// A scratch folder for one benchmark program under $TMPDIR or /tmp, removed at exit.
#pragma once

#include <stdlib.h>

#include <filesystem>
#include <string>
#include <vector>

namespace nv {

inline const std::string& BenchFolder() {
  static const std::string folder = [] {
    const char* tmp = getenv("TMPDIR");
    std::string pattern = std::string(tmp && *tmp ? tmp : "/tmp") + "/nv_bench_XXXXXX";
    std::vector<char> buf(pattern.begin(), pattern.end());
    buf.push_back('\0');
    const char* made = mkdtemp(buf.data());
    std::string path = made ? made : "/tmp";
    std::atexit([] { std::filesystem::remove_all(BenchFolder()); });
    return path;
  }();
  return folder;
}

}  // namespace nv
