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
  void ShowNote(std::string_view, std::string_view) override {}
  std::unique_ptr<nv::ProgressMeter> OpenProgress(std::string_view, std::string_view,
                                                  long) override {
    return nullptr;
  }
  void ShowHelp(std::string_view) override {}
};

// The scratch folder, removed at exit; kept in a plain array so that it outlives every
// static destructor that runs before the exit handler.
char scratch_folder[64];

void RemoveScratchFolder() {
  std::error_code ec;
  std::filesystem::remove_all(scratch_folder, ec);
}

std::string ScratchFolder() {
  if (scratch_folder[0] == '\0') {
    char pattern[] = "/tmp/nv_configuration_fuzz_XXXXXX";
    if (::mkdtemp(pattern) == nullptr) std::abort();
    std::snprintf(scratch_folder, sizeof scratch_folder, "%s", pattern);
    std::atexit(RemoveScratchFolder);
  }
  return std::string(scratch_folder) + "/";
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string folder = ScratchFolder();
  std::error_code ec;
  for (const auto& entry : std::filesystem::directory_iterator(folder, ec)) {
    std::filesystem::remove(entry.path(), ec);
  }
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
