// What the company-file fuzz targets share: a company in the scratch folder whose file is
// the input.
#pragma once

#include <stdlib.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "base/file_util.h"
#include "fuzz/fuzz_scratch.h"
#include "store/company/company.h"

namespace nv::fuzz {

inline void Check(bool ok) {
  if (!ok) __builtin_trap();
}

// Places company FUZZ in the scratch folder and writes the input as its file with
// `extension`. Returns the file's path, or "" when that failed.
inline std::string PutCompanyFile(NvCompany* company, std::string_view extension,
                                  const uint8_t* data, size_t size) {
  company->SetLocation("FUZZ", fuzzing::ScratchFolder("company"));
  std::string path = company->FilePath(extension);
  if (!WriteFileAtomically(path, std::string_view(reinterpret_cast<const char*>(data), size))) {
    return std::string();
  }
  return path;
}

}  // namespace nv::fuzz
