// A fresh folder under the system's temporary folder for one test, removed with everything
// in it at the end.
#pragma once

#include <chrono>
#include <filesystem>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "base/path.h"

namespace nv {

// A new, empty folder whose name starts with `prefix`; "" when none could be made.
inline std::string MakeTempFolder(const std::string& prefix) {
  std::error_code error;
  const std::filesystem::path base = std::filesystem::temp_directory_path(error);
  if (error) return std::string();
  std::mt19937_64 random(
      static_cast<unsigned long long>(std::chrono::steady_clock::now().time_since_epoch().count()) ^
      std::random_device{}());
  for (int attempt = 0; attempt < 100; ++attempt) {
    const std::filesystem::path path = base / (prefix + std::to_string(random() % 1000000000));
    if (std::filesystem::create_directory(path, error)) return path.string();
  }
  return std::string();
}

class TempDir {
 public:
  TempDir() : path_(MakeTempFolder("nv_test_")) { EXPECT_FALSE(path_.empty()); }
  ~TempDir() {
    std::error_code ignored;
    if (!path_.empty()) std::filesystem::remove_all(path_, ignored);
  }
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  const std::string& path() const { return path_; }
  std::string File(const std::string& name) const { return JoinPath(path_, name); }

 private:
  std::string path_;
};

}  // namespace nv
