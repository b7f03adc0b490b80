// NvCompany: one company of the data directory, its files and its company record.
//
// A company's files lie in the data directory or, when companies live in subfolders, in
// the folder company number + ".CLT" inside it; each is named company number + "." +
// extension: A (block file), I1 and I2 (indexes), LOK (in-use lock), ini (settings), LOC
// and CAT (code lists), LOG (change log), NOT (notes).
#pragma once

#include <string>
#include <string_view>

#include "base/installation_context.h"
#include "store/company_record.h"

namespace nv {

class NvCompany {
 public:
  explicit NvCompany(const InstallationContext& context);
  NvCompany(const NvCompany&) = delete;
  NvCompany& operator=(const NvCompany&) = delete;

  // Names the company and its folder (ends with the path separator) without opening
  // anything; Open and Create do this themselves.
  void SetLocation(std::string_view number, std::string folder);

  const InstallationContext& context() const { return context_; }
  const std::string& number() const { return record_.number; }
  // Folder of the company's files, with trailing separator.
  const std::string& folder() const { return folder_; }
  // folder + number: the company's path, to which the files add "." + extension.
  std::string Path() const { return folder_ + record_.number; }
  // folder + number + "." + extension.
  std::string FilePath(std::string_view extension) const;
  // The company's settings file, company number + ".ini".
  std::string SettingsPath() const { return FilePath("ini"); }

  NvCompanyRecord& record() { return record_; }
  const NvCompanyRecord& record() const { return record_; }

 private:
  const InstallationContext& context_;
  std::string folder_;
  NvCompanyRecord record_;
};

// The folder of a company's files: the data directory, plus number + ".CLT" and the
// separator when companies live in subfolders.
std::string CompanyFolder(const InstallationContext& context, std::string_view number);

}  // namespace nv
