#include "store/codes/user_fields.h"

#include "base/ascii.h"
#include "base/profile.h"
#include "base/str_format.h"

namespace nv {
namespace {

bool InRange(int index) {
  return index >= 1 && index <= kUserFieldCount;
}

std::string SectionName(int index) {
  return StrPrintf("User Field %d", index);
}

}  // namespace

std::string UserFieldCaption(int index, std::string_view name) {
  if (!InRange(index)) return std::string();
  if (TrimBlanks(name).empty()) return StrPrintf("%d-User Field %d", index % 10, index);
  return StrPrintf("%d-%.*s", index % 10, static_cast<int>(name.size()), name.data());
}

int LoadUserFieldValues(const std::string& file, int index, std::vector<std::string>* values) {
  values->clear();
  if (!InRange(index)) return 0;
  const std::string section = SectionName(index);
  for (const std::string& key : ListProfileKeys(file, section)) {
    values->push_back(ReadProfileString(file, section, key, "", kUserFieldValueMax + 1));
  }
  return static_cast<int>(values->size());
}

bool SaveUserFieldValues(const std::string& file, int index,
                         const std::vector<std::string>& values) {
  if (!InRange(index)) return false;
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
