#include "store/company.h"

#include "base/ascii.h"

namespace nv {

NvCompany::NvCompany(const InstallationContext& context) : context_(context) {}

void NvCompany::SetLocation(std::string_view number, std::string folder) {
  record_.number = AsciiUpper(TrimBlanks(number));
  if (record_.number.size() > 8) record_.number.resize(8);
  folder_ = std::move(folder);
  if (!folder_.empty() && folder_.back() != '/') folder_ += '/';
}

std::string NvCompany::FilePath(std::string_view extension) const {
  std::string path = Path();
  path += '.';
  path += extension;
  return path;
}

std::string CompanyFolder(const InstallationContext& context, std::string_view number) {
  std::string folder = context.data_directory();
  if (!folder.empty() && folder.back() != '/') folder += '/';
  if (context.current.subfolders) {
    folder += AsciiUpper(TrimBlanks(number));
    folder += ".CLT/";
  }
  return folder;
}

}  // namespace nv
