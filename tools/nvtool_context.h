// The installation nvtool works in: a data directory taken as an installation of its own.
#pragma once

#include <optional>
#include <string>

#include "base/installation_context.h"

namespace nv {

// Companies in `folder` or, when its MASTER.A says so, in NUMBER.CLT folders inside it.
InstallationContext ToolContext(const std::string& folder);

// What is wrong with the data folder itself, if anything.
std::optional<std::string> DataFolderProblem(const InstallationContext& ctx);

}  // namespace nv
