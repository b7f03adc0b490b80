#include "store/codes/user_fields.h"

#include "base/ascii.h"
#include "base/profile.h"
#include "base/str_format.h"
#include "store/company/company.h"
#include "store/company/company_record.h"

namespace nv {
namespace {

bool InRange(int index) {
  return index >= 1 && index <= kUserFieldCount;
}

std::string SectionName(int index) {
  return StrPrintf("User Field %d", index);
}

}  // namespace

std::string UserFieldCaption(const NvCompanyRecord& record, int index) {
  if (!InRange(index)) return std::string();
  const std::string& name = record.user_fields[static_cast<size_t>(index - 1)].name;
  if (TrimBlanks(name).empty()) return StrPrintf("%d-User Field %d", index % 10, index);
  return StrPrintf("%d-%s", index % 10, name.c_str());
}

int LoadUserFieldValues(const NvCompany& company, int index, std::vector<std::string>* values) {
  values->clear();
  if (!InRange(index)) return 0;
  const std::string file = company.SettingsPath();
  const std::string section = SectionName(index);
  for (const std::string& key : ListProfileKeys(file, section)) {
    values->push_back(ReadProfileString(file, section, key, "", kUserFieldValueMax + 1));
  }
  return static_cast<int>(values->size());
}

bool SaveUserFieldValues(const NvCompany& company, int index,
                         const std::vector<std::string>& values) {
  if (!InRange(index)) return false;
  const std::string file = company.SettingsPath();
  const std::string section = SectionName(index);
  if (!DeleteProfileSection(file, section)) return false;
  bool ok = true;
  int number = 0;
  for (const std::string& value : values) {
    if (TrimBlanks(value).empty()) continue;
    ok = WriteProfileString(file, section, StrPrintf("UF%2.2d", ++number), value) && ok;
  }
  return ok;
}

}  // namespace nv
