// Entry points of the importers, one per source product, as the import window's buttons
// call them. Each runs its whole import to completion, telling the user through ui.
#pragma once

#include <string>
#include <string_view>

#include "base/installation_context.h"
#include "base/ui.h"

namespace nv {

void ImportPcFas(const InstallationContext& ctx, Ui& ui);             // "Best PC/FAS"
void ImportFas1000(const InstallationContext& ctx, Ui& ui);           // "Best FAS1000 or FAS2000"
void ImportFasWindows(const InstallationContext& ctx, Ui& ui);        // "Best FAS for Windows"
void ImportAicpa(const InstallationContext& ctx, Ui& ui);             // "AICPA Depreciation"
void ImportBnaNextDimension(const InstallationContext& ctx, Ui& ui);  // "BNA Next Dimension"
void ImportTextFormat(const InstallationContext& ctx, Ui& ui);        // "NORVANE Text Format"
void ImportMba(const InstallationContext& ctx, Ui& ui);               // "MBA Software"

// The note an import whose converter is not part of this build shows in its place.
std::string ImportNotAvailableText(std::string_view source);

}  // namespace nv
