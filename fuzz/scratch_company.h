// What the company-file fuzz targets share: a scratch folder for the whole run, removed
// at exit, and a company in it whose file is the input.
#pragma once

#include <stdlib.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "base/file_util.h"
#include "store/company.h"

namespace nv::fuzz {

inline void Check(bool ok) {
  if (!ok) __builtin_trap();
}

// nullptr when it could not be made. Each input deletes its own files, so the folder is
// empty by the time the exit handler removes it.
inline const char* ScratchFolder() {
  static char folder[] = "/tmp/nv_company_fuzz_XXXXXX";
  static const bool made = [] {
    if (mkdtemp(folder) == nullptr) return false;
    atexit([] { rmdir(folder); });
    return true;
  }();
  return made ? folder : nullptr;
}

// Places company FUZZ in the scratch folder and writes the input as its file with
// `extension`. Returns the file's path, or "" when that failed.
inline std::string PutCompanyFile(NvCompany* company, std::string_view extension,
                                  const uint8_t* data, size_t size) {
  const char* folder = ScratchFolder();
  if (folder == nullptr) return std::string();
  company->SetLocation("FUZZ", folder);
  std::string path = company->FilePath(extension);
  if (!WriteFileAtomically(path, std::string_view(reinterpret_cast<const char*>(data), size))) {
    return std::string();
  }
  return path;
}

}  // namespace nv::fuzz
