// Treats the input as a company's export definition file (NUMBER.EXP) and, after the first
// NUL byte, an answers script that works the export window over it: definitions opened
// from the file, columns added, moved and removed, saved under other names and deleted.
// The window's lists must stay consistent with its definition whatever the file held.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "base/file_util.h"
#include "export/export_window.h"
#include "fuzz/fuzz_scratch.h"
#include "store/company/company.h"
#include "ui/scripted_ui.h"

namespace {

void Check(bool ok) {
  if (!ok) __builtin_trap();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const size_t nul = bytes.find('\0');
  const std::string_view file = bytes.substr(0, nul);
  const std::string_view script = nul == std::string_view::npos ? "" : bytes.substr(nul + 1);

  std::vector<nv::ScriptError> errors;
  std::optional<nv::AnswerScript> answers = nv::ParseAnswerScript(script, &errors);
  if (!answers) return 0;
  nv::ScriptedUi ui(std::move(*answers));

  const std::string folder = nv::fuzzing::EmptyScratchFolder("export_window");
  nv::InstallationContext context;
  context.installation_folder = folder;
  context.current.slot.data_path = folder;
  nv::NvCompany company(context);
  company.SetLocation("FUZZ", folder);
  company.record().schedule_letters = "BT";
  company.record().schedules = {{'B', "B", "Book"}, {'T', "T", "Tax"}};
  if (!nv::WriteFileAtomically(company.FilePath(nv::kCompanyExportExtension), file)) return 0;

  nv::ExportWindow window(context, company, ui);
  // Nothing leaves the scratch folder: the export's file writing is not part of this target.
  window.set_write([](const nv::InstallationContext&, std::string_view, const nv::ExportDefinition&,
                      const nv::KelSelection*, nv::Ui&) -> std::optional<int> { return 0; });
  static_cast<void>(ui.RunWindow(window));

  const nv::ExportDefinition& definition = window.definition();
  Check(window.ColumnLines().size() == definition.columns.size());
  Check(!window.chosen_column() || *window.chosen_column() < definition.columns.size());
  Check(!window.chosen_value() || *window.chosen_value() < window.available().size());
  Check(window.PropertiesEnabled() == window.chosen_column().has_value());
  for (const nv::ExportColumn& column : definition.columns) {
    Check(nv::FindExportField(column.field) != nullptr);
  }
  // A definition just saved or opened reads back with the same columns.
  if (definition.name && !definition.changed) {
    nv::ExportDefinition stored;
    const std::string path = nv::ExportDefinitionFile(definition.scope, folder, company);
    Check(nv::LoadDefinition(path, *definition.name, stored));
    Check(stored.columns.size() == definition.columns.size());
  }
  return 0;
}
