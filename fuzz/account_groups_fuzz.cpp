// Treats the input as a company's account group file: loads it, saves the groups and
// loads them again, which must give the same groups and settings.
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <string>

#include "base/compare_codes.h"
#include "base/installation_context.h"
#include "fuzz/scratch_company.h"
#include "store/codes/account_groups.h"
#include "store/company/company.h"

using nv::fuzz::Check;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const nv::InstallationContext context;
  nv::NvCompany company(context);
  const std::string path = nv::fuzz::PutCompanyFile(&company, "ACG", data, size);
  if (path.empty()) return 0;

  nv::AccountGroupList list;
  const int read = nv::LoadAccountGroups(company.folder(), company.number(), &list);
  Check(read == static_cast<int>(list.groups.size()));
  for (const nv::AccountGroup& group : list.groups) {
    Check(group.code.size() <= nv::kAccountGroupCodeWidth);
    Check(group.description.size() <= nv::kAccountGroupDescriptionWidth);
    for (const std::string& account : group.accounts) Check(account.size() <= nv::kAccountWidth);
    Check(nv::FindAccountGroupByCode(list.groups, group.code) != nullptr);
  }

  Check(nv::SaveAccountGroups(company.folder(), company.number(), list) == read);
  nv::AccountGroupList again;
  Check(nv::LoadAccountGroups(company.folder(), company.number(), &again) == read);
  Check(again == list);

  // Adding by code ends with a group that has the accounts, or with none when the code ran
  // out of characters.
  if (!list.groups.empty()) {
    const std::string code = list.groups.front().code;
    const nv::AccountGroup* got =
        nv::GetOrAddAccountGroupByCode(&list.groups, "fuzz", "", "", "", code);
    if (got != nullptr) Check(nv::CompareCodes(got->accounts[0], "fuzz") == 0);
  }
  unlink(path.c_str());
  return 0;
}
