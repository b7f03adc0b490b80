// For tests: a ScriptedUi from an answers script written in the test; a script that does
// not parse fails the test with the parser's reasons.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>

#include "ui/scripted_ui.h"

namespace nv::testing {

// Text as a transcript shows it: backslashes (in Windows paths) doubled.
inline std::string TranscriptText(std::string_view text) {
  std::string out;
  for (char c : text) {
    out += c;
    if (c == '\\') out += c;
  }
  return out;
}

inline std::unique_ptr<ScriptedUi> Script(std::string_view text) {
  std::string errors;
  auto ui = ScriptedUi::FromString(text, &errors);
  EXPECT_TRUE(ui) << errors;
  return ui;
}

}  // namespace nv::testing
