// Treats the input as a BNA import profile, then (after the first NUL byte) a report, then
// (after the second) a list of dialog commands, one byte each with the bytes after it as
// arguments: selecting lines, checking group boxes, editing the panel, choosing the report
// and the report as a profile, importing and closing. After every command the list must show the
// active definitions and the selected line must be the panel's definition.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>

#include "base/file_util.h"
#include "fuzz/fuzz_scratch.h"
#include "import/bna/bna_dialog.h"
#include "ui/scripted_ui.h"

namespace {

void Check(bool ok) {
  if (!ok) __builtin_trap();
}

void CheckList(const nv::BnaNdDialog& dialog) {
  size_t active = 0;
  for (const nv::ConversionDefinition& d : dialog.definitions().entries()) active += d.active;
  Check(dialog.list_lines().size() == active);
  const int row = dialog.list_selection();
  Check(row >= -1 && row < static_cast<int>(dialog.list_lines().size()));
  if (row >= 0) {
    const nv::ConversionDefinition* shown = nullptr;
    size_t seen = 0;
    for (const nv::ConversionDefinition& d : dialog.definitions().entries()) {
      if (d.active && seen++ == static_cast<size_t>(row)) shown = &d;
    }
    Check(shown != nullptr && shown->name == dialog.panel().name);
    Check(dialog.list_lines()[row] == nv::ListLineOfDefinition(*shown));
  }
  Check(dialog.method_buttons_enabled() == !dialog.panel().no_copy);
}

constexpr nv::ConversionMethod kMethods[] = {
    nv::ConversionMethod::kNone, nv::ConversionMethod::kEntire,  nv::ConversionMethod::kRight,
    nv::ConversionMethod::kLeft, nv::ConversionMethod::kDefault, nv::ConversionMethod::kSpecial,
    nv::ConversionMethod::kSet,  nv::ConversionMethod::kMid,
};

// Takes the next byte of the commands, 0 when none is left.
uint8_t Take(std::string_view& commands) {
  if (commands.empty()) return 0;
  uint8_t b = static_cast<uint8_t>(commands.front());
  commands.remove_prefix(1);
  return b;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string_view input(reinterpret_cast<const char*>(data), size);
  const size_t first = input.find('\0');
  if (first == std::string_view::npos) return 0;
  const size_t second = input.find('\0', first + 1);
  if (second == std::string_view::npos) return 0;
  std::string_view commands = input.substr(second + 1);
  if (commands.size() > 64) return 0;  // long runs only repeat the short ones

  const std::string folder = nv::fuzzing::EmptyScratchFolder("bna_dialog");
  if (!nv::WriteFileAtomically(folder + "@BNA_ND.IMP", input.substr(0, first)) ||
      !nv::WriteFileAtomically(folder + "report.txt",
                               input.substr(first + 1, second - first - 1))) {
    return 0;
  }
  // Every file dialog takes the report.
  std::string script;
  for (int i = 0; i < 8; ++i) script += "file " + folder + "report.txt\n";
  std::string errors;
  std::unique_ptr<nv::ScriptedUi> ui = nv::ScriptedUi::FromString(script, &errors);
  Check(ui != nullptr);

  nv::InstallationContext context;
  context.installation_folder = folder;
  context.current.slot.data_path = folder;
  context.user_name = "FUZZ";
  nv::BnaImportState state;
  state.profiles = nv::StartBnaProfiles(folder, "");
  // An import runs only with an Asset No. column.
  const nv::BnaNdDialog* shown = nullptr;
  auto import = [&shown] {
    const nv::ConversionDefinition* asset_no = shown->definitions().Find(nv::kBnaAssetNoField);
    Check(asset_no != nullptr && asset_no->column >= 0);
  };
  nv::BnaNdDialog dialog(state, context, folder + "KELNVWIN.INI", *ui, import);
  shown = &dialog;
  CheckList(dialog);

  while (!commands.empty()) {
    const uint8_t op = Take(commands);
    const uint8_t arg = Take(commands);
    switch (op % 13) {
      case 0:
        dialog.SelectLine(static_cast<int>(arg % 16) - 1);
        break;
      case 1:
        Check(dialog.SetGroupChecked(nv::kBnaGroupBoxes[arg % 7].letter, arg & 8));
        break;
      case 2:
        dialog.SetNoCopy(arg & 1);
        break;
      case 3:
        dialog.SetMethod(kMethods[arg % std::size(kMethods)]);
        break;
      case 4: {
        const size_t length = std::min<size_t>(arg % 8, commands.size());
        dialog.TypePanelField(static_cast<nv::BnaPanelField>(arg % 6), commands.substr(0, length));
        commands.remove_prefix(length);
        break;
      }
      case 5:
        dialog.LeavePanelField();
        break;
      case 6:
        dialog.ImportData();
        break;
      case 7:
        dialog.SetFileType(arg % 3);
        break;
      case 8:
        dialog.ClickGrid(arg);
        break;
      case 9:
        dialog.grid().SetVerticalPosition(arg);
        dialog.grid().SetHorizontalPosition(arg, arg % 40);
        break;
      case 10:
        dialog.SelectFile();
        break;
      case 11:
        dialog.Close();
        break;
      case 12:
        dialog.SelectProfile();  // the report, read as a profile
        break;
    }
    CheckList(dialog);
  }
  return 0;
}
