#include "shell/main_commands.h"

#include <algorithm>

#include "export/exporters.h"
#include "import/frame/import_backup.h"
#include "import/importers.h"
#include "store/company/master_file.h"
#include "ui/company_selection.h"

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

// Which company, from the company list as it is now; then the undo, which tells the
// outcome itself.
void UndoImportCommand(const InstallationContext& ctx, Ui& ui) {
  MasterFile master;
  master.subfolders = ctx.current.subfolders;
  if (ReadMasterFile(ctx.data_directory(), &master) != MasterFileStatus::kOk) {
    ui.Message("Unable to read Master File", "Error");
    return;
  }
  ChoiceListRequest request;
  request.message = kUndoWhichCompany;
  for (const NvMasterRec& company : master.companies) {
    request.options.push_back({CompanyListLine(company), -1});
  }
  const int chosen = ui.ChoiceList(request);
  if (chosen < 0 || static_cast<size_t>(chosen) >= master.companies.size()) return;
  static_cast<void>(UndoLastImport(ctx, master.companies[static_cast<size_t>(chosen)].number, ui));
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

CommandEffects RunImportCommand(int id, const InstallationContext& ctx, Ui& ui,
                                const ImportWindowState& window) {
  if (id == kCloseCommand) return {.close_window = true};
  if (id == kHelpCommand) {
    ui.ShowHelp(ImportHelpTopic());
  } else if (id == kUndoImportCommand) {
    UndoImportCommand(ctx, ui);
  } else if (const ImporterEntry* importer = FindImporterByCommand(id)) {
    RunImporterCommand(*importer, ctx, ui, window.test_import);
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
