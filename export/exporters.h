// Entry points of the two exports, as the export window's buttons call them. Each runs
// its whole export to completion, telling the user through ui.
#pragma once

#include "base/installation_context.h"
#include "base/ui.h"
#include "store/company/company.h"
#include "store/company/company_lock.h"

namespace nv {

// Every asset data field of one company as a whole-company text file.
void ExportWholeCompanyText(const InstallationContext& ctx, Ui& ui);

// The window "Export Company Data" (export/export_window.h) over a company the user selects
// first; without a company chosen it ends at once.
void RunExportDefinitions(const InstallationContext& ctx, Ui& ui);
// The same for `company`, which is asked for when it is not open (its lock goes into
// `lock`). The window works on the company closed, with its lock held.
void RunExportDefinitions(const InstallationContext& ctx, Ui& ui, CompanyInUseLock& lock,
                          NvCompany& company);

}  // namespace nv
