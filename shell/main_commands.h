// The commands of the two main windows: one button each, the command id being the
// button's control id. The tables list the buttons in the order the windows create them;
// the Run functions carry a command out without any window, so that the Qt windows and
// scripted runs behave alike.
#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>

#include "base/installation_context.h"
#include "base/ui.h"

namespace nv {

struct MainCommand {
  int id;
  std::string_view text;  // button text
};

inline constexpr int kCloseCommand = 1, kHelpCommand = 9;

// 102, 103, 104, 105, 107, 106, 108, then Close and Help.
std::span<const MainCommand> ImportWindowCommands();
// 205, 204, then Close and Help.
std::span<const MainCommand> ExportWindowCommands();

// The button of `id` in `commands`, or nullptr when the window has none.
const MainCommand* FindCommand(std::span<const MainCommand> commands, int id);

// What the window must do after a command ran.
struct CommandEffects {
  bool close_window = false;
  bool disable_export_buttons = false;
};

// The import window's controls beside its command table: the "Test import" check box
// (off until ticked) and the button that undoes a company's last import.
inline constexpr int kUndoImportCommand = 110;
inline constexpr char kUndoImportButton[] = "Undo Last Import";
inline constexpr char kTestImportCheckBox[] = "Test import";
inline constexpr char kUndoWhichCompany[] = "Undo the last import into which company?";

struct ImportWindowState {
  bool test_import = false;  // run the importers as test imports
};

// Runs one command of the import window to completion. An id the window does not have
// does nothing. kUndoImportCommand asks for the company from the company list and
// restores it as it was before its last import.
CommandEffects RunImportCommand(int id, const InstallationContext& ctx, Ui& ui,
                                const ImportWindowState& window = {});

// Runs one command of the export window to completion. For 205 the question is asked
// first; disable_export_buttons is called BEFORE an export runs so the window can grey
// 204 and 205 while it works. Either export closes the window: it serves one export.
CommandEffects RunExportCommand(int id, const InstallationContext& ctx, Ui& ui,
                                const std::function<void()>& disable_export_buttons);

std::string_view ImportHelpTopic();  // "nvsy6dis.html"
std::string_view ExportHelpTopic();  // "nvsy0xnp.html"

inline constexpr char kFiveUserFieldsQuestion[] =
    "This export format only supports 5 user definable fields.\n\nContinue?";

}  // namespace nv
