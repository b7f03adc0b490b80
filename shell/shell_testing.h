// Helpers for the shell's tests: a temporary installation folder, whole-file reading and
// writing, and a Ui that records its messages and answers nothing else.
#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "ui/ui.h"

namespace nv::testing {

// A fresh folder under /tmp, removed with everything in it at the end of the test. path()
// ends with the separator, as installation folders and data paths do.
class TempFolder {
 public:
  TempFolder() {
    char pattern[] = "/tmp/nv_shell_XXXXXX";
    const char* made = ::mkdtemp(pattern);
    EXPECT_NE(made, nullptr);
    path_ = std::string(made ? made : "/tmp") + "/";
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
  friend bool operator==(const RecordedMessage&, const RecordedMessage&) = default;
};

inline void PrintTo(const RecordedMessage& m, std::ostream* os) {
  *os << "[" << m.title << "] " << m.text;
}

// Records message boxes; any other prompt is a test failure (start-up asks nothing).
class RecordingUi : public Ui {
 public:
  void Message(std::string_view text, std::string_view title) override {
    messages.push_back({std::string(title), std::string(text)});
  }
  Answer Question(std::string_view text, DefaultButton) override {
    ADD_FAILURE() << "unexpected question: " << text;
    return Answer::kCancel;
  }
  int ChoiceList(const ChoiceListRequest& request) override {
    ADD_FAILURE() << "unexpected choice list: " << request.message;
    return -1;
  }
  std::optional<std::string> ChooseFile(const FileDialogRequest& request) override {
    ADD_FAILURE() << "unexpected file dialog: " << request.title;
    return std::nullopt;
  }
  std::optional<std::string> ChooseFolder(std::string_view title, std::string_view) override {
    ADD_FAILURE() << "unexpected folder dialog: " << title;
    return std::nullopt;
  }
  void ShowNote(std::string_view title, std::string_view) override {
    ADD_FAILURE() << "unexpected note: " << title;
  }
  std::unique_ptr<ProgressMeter> OpenProgress(std::string_view title, std::string_view,
                                              long) override {
    ADD_FAILURE() << "unexpected progress meter: " << title;
    return nullptr;
  }
  void ShowHelp(std::string_view topic) override { ADD_FAILURE() << "unexpected help " << topic; }

  std::vector<RecordedMessage> messages;
};

}  // namespace nv::testing
