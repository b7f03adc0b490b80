#include "export/exporters.h"

namespace nv {

std::string ExportNotAvailableText(std::string_view what) {
  return "The " + std::string(what) + " is not available in this build.";
}

// Until a writer exists, its button must say so plainly rather than do nothing.
void ExportWholeCompanyText(const InstallationContext&, Ui& ui) {
  ui.Message(ExportNotAvailableText("export of all asset data fields to a text file"), "Note");
}

void ExportByDefinitions(const InstallationContext&, Ui& ui) {
  ui.Message(ExportNotAvailableText("export of selected asset data by export definitions"), "Note");
}

}  // namespace nv
