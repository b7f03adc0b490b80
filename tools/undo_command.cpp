#include "tools/undo_command.h"

#include "import/frame/import_backup.h"
#include "tools/nvtool_context.h"
#include "ui/scripted_ui.h"

namespace nv {

int RunUndoCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
  std::vector<std::string> positional;
  UndoOptions options;
  for (const std::string& arg : args) {
    if (arg == "--force") {
      options.force = true;
    } else if (arg.starts_with("--")) {
      err << "nvtool: unknown option " << arg << " for undo (options: --force)\n";
      return 2;
    } else {
      positional.push_back(arg);
    }
  }
  if (positional.size() != 2) {
    err << "nvtool: undo takes FOLDER NUMBER\n";
    return 2;
  }
  const InstallationContext ctx = ToolContext(positional[0]);
  if (std::optional<std::string> problem = DataFolderProblem(ctx)) {
    err << "nvtool: " << *problem << "\n";
    return 1;
  }
  // The messages the window would show, as the transcript of import shows them.
  ScriptedUi ui{AnswerScript{}};
  ui.set_sink(&out);
  const UndoOutcome outcome = UndoLastImport(ctx, positional[1], ui, options);
  if (outcome == UndoOutcome::kChanged) {
    err << "nvtool: nothing restored; --force restores the backup all the same\n";
  }
  return outcome == UndoOutcome::kRestored ? 0 : 1;
}

}  // namespace nv
