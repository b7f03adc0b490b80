#include "shell/program.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>

#ifdef _WIN32
#include <windows.h>
#endif

#include "base/path.h"
#include "base/str_format.h"
#include "shell/hand_off.h"
#include "shell/main_commands.h"
#include "shell/startup.h"
#include "ui/scripted_ui.h"

namespace nv {
namespace {

// Runs the script's commands through the window of `mode` until one closes it.
void RunCommands(ProgramMode mode, const InstallationContext& ctx, ScriptedUi& ui) {
  std::span<const MainCommand> window =
      mode == ProgramMode::kImport ? ImportWindowCommands() : ExportWindowCommands();
  for (const ScriptCommand& line : ui.commands()) {
    const int id = line.id;
    // A run that has lost step stops here rather than press further buttons.
    if (ui.failed()) return;
    const MainCommand* command = FindCommand(window, id);
    if (!command) {
      ui.Fail(StrPrintf("command %d is not a button of the %s window", id,
                        mode == ProgramMode::kImport ? "import" : "export"));
      return;
    }
    ui.Note(StrPrintf("command %d %s%s", id, QuoteTranscriptText(command->text).c_str(),
                      line.test_import ? " test" : ""));
    CommandEffects effects = mode == ProgramMode::kImport
                                 ? RunImportCommand(id, ctx, ui, {.test_import = line.test_import})
                                 : RunExportCommand(id, ctx, ui, [&] {
                                     ui.Note("export buttons 204 and 205 disabled");
                                   });
    if (effects.close_window) {
      ui.Note("window closed");
      return;
    }
  }
}

// Lines of answers that no prompt asked for mean the script was written for another run.
void CheckAllAnswersUsed(ScriptedUi& ui) {
  if (!ui.failed() && ui.answers_left() > 0) {
    ui.Fail(StrPrintf("%zu answers of the script were not used", ui.answers_left()));
  }
}

}  // namespace

int RunScriptedProgram(int argc, const char* const* argv, int stdin_fd,
                       const std::string& script_path, const std::string& transcript_path,
                       const std::string& installation_folder) {
  std::string errors;
  std::unique_ptr<ScriptedUi> ui = ScriptedUi::FromFile(script_path, &errors);
  if (!ui) {
    std::fprintf(stderr, "nvimport: the answers script cannot be used:\n%s", errors.c_str());
    return kScriptFailedExitCode;
  }
  std::ofstream transcript_file;
  if (transcript_path.empty()) {
    ui->set_sink(&std::cerr);
  } else {
    transcript_file.open(transcript_path, std::ios::binary | std::ios::trunc);
    if (!transcript_file) {
      std::fprintf(stderr, "nvimport: cannot write the transcript %s\n", transcript_path.c_str());
      return kScriptFailedExitCode;
    }
    ui->set_sink(&transcript_file);
  }

  std::optional<RunParameters> run = CheckHandOff(argc, argv, stdin_fd);
  if (!run) {
    ui->Message(kStandaloneMessage, "Error");
    return 0;
  }
  ProgramMode mode = ParseModeWord(argc, argv);
  if (mode == ProgramMode::kNone) return 0;
  int exit_code = 0;
  std::optional<InstallationContext> ctx = LoadStartup(*run, installation_folder, *ui, &exit_code);
  if (!ctx) return exit_code;

  RunCommands(mode, *ctx, *ui);
  CheckAllAnswersUsed(*ui);
  return ui->failed() ? kScriptFailedExitCode : 0;
}

namespace {

// The path of this program's executable; "" when it cannot be told.
std::string ProgramPath() {
#ifdef _WIN32
  char buffer[MAX_PATH * 2];
  const DWORD n = ::GetModuleFileNameA(nullptr, buffer, sizeof buffer);
  return n > 0 && n < sizeof buffer ? std::string(buffer, n) : std::string();
#else
  std::error_code ec;
  std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", ec);
  return ec ? std::string() : program.string();
#endif
}

}  // namespace

std::string InstallationFolder() {
  std::string folder;
  if (const char* override_dir = std::getenv("NV_INSTALL_DIR"); override_dir && *override_dir) {
    folder = override_dir;
  } else {
    folder = ParentFolder(ProgramPath());
  }
  if (folder.empty()) folder = ".";
  return WithTrailingSeparator(std::move(folder));
}

}  // namespace nv
