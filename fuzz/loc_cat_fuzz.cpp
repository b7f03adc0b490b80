// Treats the input as a company's location file: loads it, saves the list and loads it
// again, which must give the same list, in code order.
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <string>

#include "base/installation_context.h"
#include "fuzz/scratch_company.h"
#include "store/codes/loc_cat_list.h"
#include "store/company/company.h"

using nv::fuzz::Check;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const nv::InstallationContext context;
  nv::NvCompany company(context);
  const std::string path = nv::fuzz::PutCompanyFile(&company, "LOC", data, size);
  if (path.empty()) return 0;

  nv::NvLocCatList list;
  const int read = nv::LoadLocCatList(company.LocCatPath(nv::kLocations), &list);
  Check(read == static_cast<int>(list.size()));
  for (size_t i = 0; i < list.size(); ++i) {
    Check(list[i].code.size() <= nv::kLocCatCodeWidth);
    Check(list[i].description.size() <= nv::kLocCatDescriptionWidth);
    if (i > 0) Check(nv::CompareLocCatCodes(list[i - 1].code, list[i].code) <= 0);
  }
  if (!list.empty()) Check(nv::FindLocCat(list, list[list.size() / 2].code) != nullptr);

  Check(nv::SaveLocCatList(company.LocCatPath(nv::kLocations), list) == read);
  nv::NvLocCatList again;
  Check(nv::LoadLocCatList(company.LocCatPath(nv::kLocations), &again) == read);
  Check(again == list);
  unlink(path.c_str());
  return 0;
}
