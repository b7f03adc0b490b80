#include "store/codes/property_codes.h"

#include "base/ascii.h"
#include "base/profile.h"
#include "store/company/company.h"

namespace nv {
namespace {

constexpr size_t kDescriptionBuffer = 100;  // 99 characters and the terminator

}  // namespace

int LoadPropertyCodes(const NvCompany& company, PropertyCodeList* codes) {
  codes->clear();
  const std::string file = company.SettingsPath();
  for (std::string& key : ListProfileKeys(file, kPropertyCodesSection)) {
    std::string description =
        ReadProfileString(file, kPropertyCodesSection, key, "", kDescriptionBuffer);
    codes->push_back({std::move(key), std::move(description)});
  }
  return static_cast<int>(codes->size());
}

bool SavePropertyCodes(const NvCompany& company, const PropertyCodeList& codes) {
  const std::string file = company.SettingsPath();
  if (!DeleteProfileSection(file, kPropertyCodesSection)) return false;
  bool ok = true;
  for (const PropertyCode& row : codes) {
    if (TrimBlanks(row.code).empty()) continue;
    ok = WriteProfileString(file, kPropertyCodesSection, row.code, row.description) && ok;
  }
  return ok;
}

}  // namespace nv
