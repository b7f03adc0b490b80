#include "export/exporters.h"

#include "export/export_window.h"
#include "export/text_file_export.h"
#include "ui/company_selection.h"
#include "ui/selection/select_assets.h"

namespace nv {

void ExportWholeCompanyText(const InstallationContext& ctx, Ui& ui) {
  CompanyInUseLock lock;  // held from the selection until the command ends
  NvCompany company(ctx);
  CreateTextFileForExport(ctx, ui, lock, company);
}

void RunExportDefinitions(const InstallationContext& ctx, Ui& ui) {
  CompanyInUseLock lock;  // held from the selection until the window closes
  NvCompany company(ctx);
  RunExportDefinitions(ctx, ui, lock, company);
}

void RunExportDefinitions(const InstallationContext& ctx, Ui& ui, CompanyInUseLock& lock,
                          NvCompany& company) {
  if (!company.is_open()) {
    const CompanySelectionResult selected =
        SelectCompany(ctx, ui, lock, company, "Select Company", /*offer_new=*/false);
    if (selected.choice != CompanyChoice::kOpened) return;
  }
  // The export reads the company through a read-only open of its own, as the asset
  // selection does; what the window needs of the company stays in memory.
  static_cast<void>(company.Close());
  ExportWindow window(ctx, company, ui);
  window.set_select_assets(SelectAssets);
  static_cast<void>(ui.RunWindow(window));  // the window ends after an export or on close
}

}  // namespace nv
