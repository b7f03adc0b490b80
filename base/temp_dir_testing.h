// A fresh folder under /tmp for one test, removed with everything in it at the end.
#pragma once

#include <stdlib.h>

#include <filesystem>
#include <string>

#include <gtest/gtest.h>

namespace nv {

class TempDir {
 public:
  TempDir() {
    char pattern[] = "/tmp/nv_test_XXXXXX";
    const char* made = ::mkdtemp(pattern);
    EXPECT_NE(made, nullptr);
    if (made != nullptr) path_ = made;
  }
  ~TempDir() {
    std::error_code ignored;
    if (!path_.empty()) std::filesystem::remove_all(path_, ignored);
  }
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  const std::string& path() const { return path_; }
  std::string File(const std::string& name) const { return path_ + "/" + name; }

 private:
  std::string path_;
};

}  // namespace nv
