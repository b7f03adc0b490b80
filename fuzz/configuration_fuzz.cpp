// Loads a configuration from arbitrary installation files. The input is split at NUL
// bytes into TERM.1, TERM.001, TERM.000 and MASTER.A of a scratch installation folder;
// the first byte chooses locked configuration and exact name matching.
#include <stdlib.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include "fuzz/fuzz_scratch.h"
#include "shell/configuration.h"

namespace {

class SilentUi : public nv::Ui {
 public:
  void Message(std::string_view, std::string_view) override {}
  nv::Answer Question(std::string_view, nv::DefaultButton) override { return nv::Answer::kNo; }
  int ChoiceList(const nv::ChoiceListRequest&) override { return -1; }
  std::optional<std::string> ChooseFile(const nv::FileDialogRequest&) override { return {}; }
  std::optional<std::string> ChooseFolder(std::string_view, std::string_view) override {
    return {};
  }
  std::optional<std::string> EnterText(const nv::TextEntryRequest&) override { return {}; }
  void ShowNote(std::string_view, std::string_view) override {}
  std::unique_ptr<nv::ProgressMeter> OpenProgress(std::string_view, std::string_view,
                                                  long) override {
    return nullptr;
  }
  void ShowHelp(std::string_view) override {}
  int RunMatchPanel(nv::MatchPanel&) override { return 2; }          // Cancel, as closing it does
  int RunCompanyScreen(nv::CompanyScreen&) override { return -11; }  // cancelled
  bool RunTextFileScreen(nv::TextFileScreen&) override { return false; }    // closed
  bool RunSelectionWindow(nv::SelectionWindow&) override { return false; }  // cancelled
  void RunBnaDialog(nv::BnaDialogCommands&) override {}  // closed at once, never reached here
  bool RunWindow(nv::ScriptedWindow&) override { return false; }  // closed
  bool AltKeyHeld() override { return false; }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string folder = nv::fuzzing::EmptyScratchFolder("configuration");
  std::string_view input(reinterpret_cast<const char*>(data), size);
  const uint8_t flags = size > 0 ? data[0] : 0;
  if (size > 0) input.remove_prefix(1);
  for (const char* name : {"TERM.1", "TERM.001", "TERM.000", "MASTER.A"}) {
    const size_t end = std::min(input.find('\0'), input.size());
    if (end > 0 || name == std::string_view("TERM.1")) {
      std::ofstream(folder + name, std::ios::binary) << input.substr(0, end);
    }
    input.remove_prefix(std::min(end + 1, input.size()));
  }

  nv::InstallationContext ctx;
  ctx.installation_folder = folder;
  ctx.user_name = "ALICE";
  ctx.configuration_locked = flags & 1;
  ctx.exact_name_match = flags & 2;
  SilentUi ui;
  int exit_code = 0;
  const int result = nv::LoadConfiguration(&ctx, true, ui, &exit_code);
  if (result > nv::kTerminalAdded || result < nv::kMasterFileFailed) std::abort();
  if (exit_code != 0 && (exit_code != nv::kLockedExitCode || !ctx.configuration_locked)) {
    std::abort();
  }
  if (result >= 0 && (ctx.configuration.current < 0 || ctx.configuration.current > 9)) {
    std::abort();
  }
  return 0;
}
