#include "shell/main_commands.h"

#include <algorithm>

#include "export/exporters.h"
#include "import/importers.h"

namespace nv {
namespace {

constexpr MainCommand kImportCommands[] = {
    {102, "Best PC/FAS"},        {103, "Best FAS1000 or FAS2000"}, {104, "Best FAS for Windows"},
    {105, "AICPA Depreciation"}, {107, "BNA Next Dimension"},      {106, "NORVANE Text Format"},
    {108, "MBA Software"},       {kCloseCommand, "Close"},         {kHelpCommand, "Help"},
};

constexpr MainCommand kExportCommands[] = {
    {205, "Export All Asset Data Fields"},
    {204, "Export Selected Asset Data"},
    {kCloseCommand, "Close"},
    {kHelpCommand, "Help"},
};

// Greys the export buttons, runs one export, and closes the window after it.
CommandEffects RunOneExport(void (*exporter)(const InstallationContext&, Ui&),
                            const InstallationContext& ctx, Ui& ui,
                            const std::function<void()>& disable_export_buttons) {
  if (disable_export_buttons) disable_export_buttons();
  exporter(ctx, ui);
  return {.close_window = true, .disable_export_buttons = true};
}

}  // namespace

std::span<const MainCommand> ImportWindowCommands() {
  return kImportCommands;
}
std::span<const MainCommand> ExportWindowCommands() {
  return kExportCommands;
}

const MainCommand* FindCommand(std::span<const MainCommand> commands, int id) {
  auto found = std::find_if(commands.begin(), commands.end(),
                            [id](const MainCommand& c) { return c.id == id; });
  return found == commands.end() ? nullptr : &*found;
}

std::string_view ImportHelpTopic() {
  return "nvsy6dis.html";
}
std::string_view ExportHelpTopic() {
  return "nvsy0xnp.html";
}

CommandEffects RunImportCommand(int id, const InstallationContext& ctx, Ui& ui) {
  if (id == kCloseCommand) return {.close_window = true};
  if (id == kHelpCommand) {
    ui.ShowHelp(ImportHelpTopic());
  } else if (const ImporterEntry* importer = FindImporterByCommand(id)) {
    RunImporterCommand(*importer, ctx, ui);
  }
  return {};
}

CommandEffects RunExportCommand(int id, const InstallationContext& ctx, Ui& ui,
                                const std::function<void()>& disable_export_buttons) {
  switch (id) {
    case kCloseCommand:
      return {.close_window = true};
    case kHelpCommand:
      ui.ShowHelp(ExportHelpTopic());
      return {};
    case 205:
      if (ui.Question(kFiveUserFieldsQuestion, DefaultButton::kYes) != Answer::kYes) return {};
      return RunOneExport(ExportWholeCompanyText, ctx, ui, disable_export_buttons);
    case 204:
      return RunOneExport(RunExportDefinitions, ctx, ui, disable_export_buttons);
  }
  return {};
}

}  // namespace nv
