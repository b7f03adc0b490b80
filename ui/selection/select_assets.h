// The selection window as callers see it: shows `selection` for `company` under `title`;
// OK keeps the edited criteria and returns true, Cancel leaves `selection` as it was.
#pragma once

#include <string_view>

#include "base/ui.h"
#include "ui/selection/selection.h"

namespace nv {

class NvCompany;

bool SelectAssets(Ui& ui, NvCompany& company, KelSelection& selection, std::string_view title);

}  // namespace nv
