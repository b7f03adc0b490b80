#include "export/exporters.h"

#include "export/text_file_export.h"

namespace nv {

std::string ExportNotAvailableText(std::string_view what) {
  return "The " + std::string(what) + " is not available in this build.";
}

void ExportWholeCompanyText(const InstallationContext& ctx, Ui& ui) {
  CompanyInUseLock lock;  // held from the selection until the command ends
  NvCompany company(ctx);
  CreateTextFileForExport(ctx, ui, lock, company);
}

// Until the window exists, its button must say so plainly rather than do nothing.
void ExportByDefinitions(const InstallationContext&, Ui& ui) {
  ui.Message(ExportNotAvailableText("export of selected asset data by export definitions"), "Note");
}

}  // namespace nv
