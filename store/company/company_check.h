// Verifies a whole company: the structure of both indexes, every asset chain, the free
// list and the counters of the block file, and that the two indexes name the same assets
// under the keys their records give. Only reads; never crashes on a damaged company.
#pragma once

#include <string>
#include <vector>

#include "store/company/company.h"

namespace nv {

struct CompanyCheck {
  std::vector<std::string> problems;  // one line each
  uint64_t assets = 0;                // entries of the asset-number index
};

// REQUIRES: company is open with both indexes (NvCompany::kOpenI1 | kOpenI2).
CompanyCheck CheckCompany(NvCompany& company);

}  // namespace nv
