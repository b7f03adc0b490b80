// Entry points of the two exports, as the export window's buttons call them. Each runs
// its whole export to completion, telling the user through ui.
#pragma once

#include <string>
#include <string_view>

#include "base/installation_context.h"
#include "base/ui.h"

namespace nv {

// Every asset data field of one company as a whole-company text file.
void ExportWholeCompanyText(const InstallationContext& ctx, Ui& ui);
// Selected assets and fields, laid out by a stored export definition.
void ExportByDefinitions(const InstallationContext& ctx, Ui& ui);

// The note an export that is not part of this build shows in its place.
std::string ExportNotAvailableText(std::string_view what);

}  // namespace nv
