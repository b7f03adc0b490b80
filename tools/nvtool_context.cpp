#include "tools/nvtool_context.h"

#include "base/file.h"
#include "base/path.h"
#include "shell/user_name.h"
#include "store/company/master_file.h"

namespace nv {

InstallationContext ToolContext(const std::string& folder) {
  InstallationContext ctx;
  std::string dir = folder.empty() ? std::string(1, kPathSeparator) : WithTrailingSeparator(folder);
  ctx.installation_folder = dir;
  ctx.current.slot.data_path = dir;
  ctx.run.product_name = "NORVANE";
  ctx.today = Today();
  ctx.user_name = DetermineUserName(NameType::kUser);
  MasterFile master;
  if (ReadMasterFile(dir, &master) == MasterFileStatus::kOk) {
    ctx.current.subfolders = master.subfolders;
    ctx.current.companies = master.companies;
  }
  return ctx;
}

std::optional<std::string> DataFolderProblem(const InstallationContext& ctx) {
  std::string data = ctx.data_directory();
  while (data.size() > 1 && IsPathSeparator(data.back())) data.pop_back();
  if (!PathExists(data)) return "the folder " + data + " does not exist";
  if (!IsFolder(data)) return data + " is not a folder";
  return std::nullopt;
}

}  // namespace nv
