// The program without windows: a whole run of nvimport driven by an answers script
// (ui/scripted_ui.h) instead of a person, for automated runs and end-to-end tests.
#pragma once

#include <string>

namespace nv {

// Exit code of a run whose answers script could not be read or did not fit the run.
inline constexpr int kScriptFailedExitCode = 3;

// The whole scripted run of nvimport (no window): hand-off, mode word, start-up loading
// through a ScriptedUi read from script_path (transcript to transcript_path, or stderr
// when empty), then the main-window commands the script names, in order; ends after the
// last (or at Close, or when an export closed the window). Returns the process exit code:
// that of the hand-off and start-up as the windowed program has them, else 0, or
// kScriptFailedExitCode when the script is broken, a prompt found no fitting answer, a
// command is not a button of the window, or answers were left over. After a failure no
// further command runs. Besides the ScriptedUi's own lines the transcript has
//   command 102 "Best PC/FAS"                before each command, with its button text
//   export buttons 204 and 205 disabled      when an export greys the export buttons
//   window closed                            after Close or an export
int RunScriptedProgram(int argc, const char* const* argv, int stdin_fd,
                       const std::string& script_path, const std::string& transcript_path,
                       const std::string& installation_folder);

// Folder of the running program file, ending in '/'; NV_INSTALL_DIR overrides it when set.
std::string InstallationFolder();

}  // namespace nv
