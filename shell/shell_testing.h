// Helpers for the shell's tests: a temporary installation folder, whole-file reading and
// writing, and the transcript lines of the message boxes a run is expected to show.
#pragma once

#include <memory>

#include "ui/scripted_ui.h"

#include <gtest/gtest.h>
#include <stdlib.h>
#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#else
#include <unistd.h>
#endif

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "base/path.h"
#include "base/temp_dir_testing.h"
#include "base/ui.h"

namespace nv::testing {

// A pipe as two descriptors, read end first; 0 on success.
inline int MakePipe(int fds[2]) {
#ifdef _WIN32
  return ::_pipe(fds, 65536, _O_BINARY);
#else
  return ::pipe(fds);
#endif
}

// Sets an environment variable, or removes it when value is null.
inline void SetEnvironment(const char* name, const char* value) {
#ifdef _WIN32
  ::_putenv_s(name, value != nullptr ? value : "");
#else
  value != nullptr ? ::setenv(name, value, 1) : ::unsetenv(name);
#endif
}

// A fresh folder under /tmp, removed with everything in it at the end of the test. path()
// ends with the separator, as installation folders and data paths do.
class TempFolder {
 public:
  TempFolder() {
    path_ = MakeTempFolder("nv_shell_");
    EXPECT_FALSE(path_.empty());
    path_ = WithTrailingSeparator(path_);
  }
  ~TempFolder() {
    std::error_code ec;
    std::filesystem::remove_all(path_, ec);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  const std::string& path() const { return path_; }
  std::string operator/(const std::string& name) const { return path_ + name; }

 private:
  std::string path_;
};

inline void WriteFile(const std::string& path, const std::string& bytes) {
  std::ofstream out(path, std::ios::binary);
  out << bytes;
}

inline std::string ReadFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

inline bool FileExists(const std::string& path) {
  return std::filesystem::exists(path);
}

struct RecordedMessage {
  std::string title;
  std::string text;
};

// The transcript lines a ScriptedUi writes for these message boxes. Start-up asks
// nothing, so the tests' Ui has no answers and any other prompt shows up in the
// transcript as a difference.
inline std::string MessageLines(const std::vector<RecordedMessage>& messages) {
  std::string out;
  for (const auto& m : messages) {
    out += "message title=" + QuoteTranscriptText(m.title) +
           " text=" + QuoteTranscriptText(m.text) + "\n";
  }
  return out;
}

inline std::unique_ptr<ScriptedUi> SilentUi() {
  return std::make_unique<ScriptedUi>(AnswerScript{});
}

}  // namespace nv::testing
