#include "store/codes/property_codes.h"

#include "base/ascii.h"
#include "base/profile.h"

namespace nv {
namespace {

constexpr size_t kDescriptionBuffer = 100;  // 99 characters and the terminator

}  // namespace

int LoadPropertyCodes(const std::string& file, PropertyCodeList* codes) {
  codes->clear();
  for (std::string& key : ListProfileKeys(file, kPropertyCodesSection)) {
    std::string description =
        ReadProfileString(file, kPropertyCodesSection, key, "", kDescriptionBuffer);
    codes->push_back({std::move(key), std::move(description)});
  }
  return static_cast<int>(codes->size());
}

bool SavePropertyCodes(const std::string& file, const PropertyCodeList& codes) {
  if (!DeleteProfileSection(file, kPropertyCodesSection)) return false;
  bool ok = true;
  for (const PropertyCode& row : codes) {
    if (TrimBlanks(row.code).empty()) continue;
    ok = WriteProfileString(file, kPropertyCodesSection, row.code, row.description) && ok;
  }
  return ok;
}

}  // namespace nv
