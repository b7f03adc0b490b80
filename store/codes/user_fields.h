// The ten user-definable fields of a company: their captions on the asset screens, and
// the lists of allowed values kept in the company's settings file, one section
// "User Field %d" per field with keys "UF01", "UF02", ... in list order.
#pragma once

#include <string>
#include <vector>

namespace nv {

class NvCompany;
struct NvCompanyRecord;

inline constexpr size_t kUserFieldValueMax = 34;  // characters of a value that are read

// The prompt of field `index` (1 to 10): "%d-User Field %d" when the field has no name,
// else "%d-%s" with the name; the leading number is index modulo 10, so the tenth field's
// caption begins with "0-". "" for an index out of range.
std::string UserFieldCaption(const NvCompanyRecord& record, int index);

// Replaces *values with the allowed values of field `index` (1 to 10), in the section's
// key order whatever the keys' names. Returns the number of values.
int LoadUserFieldValues(const NvCompany& company, int index, std::vector<std::string>* values);
// Replaces the field's section with the values as UF01, UF02, ...; blank values are left
// out. False when the settings file could not be written or the index is out of range.
bool SaveUserFieldValues(const NvCompany& company, int index,
                         const std::vector<std::string>& values);

}  // namespace nv
