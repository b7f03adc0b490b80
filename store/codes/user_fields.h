// The ten user-definable fields of a company: their captions on the asset screens, and
// the lists of allowed values kept in the company's settings file, one section
// "User Field %d" per field with keys "UF01", "UF02", ... in list order.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace nv {

inline constexpr int kUserFieldCount = 10;
inline constexpr size_t kUserFieldValueMax = 34;  // characters of a value that are read

// The prompt of field `index` (1 to 10): "%d-User Field %d" when the field has no name,
// else "%d-%s" with the name; the leading number is index modulo 10, so the tenth field's
// caption begins with "0-". "" for an index out of range. `name` is the field's name in
// the company record.
std::string UserFieldCaption(int index, std::string_view name);

// Replaces *values with the allowed values of field `index` (1 to 10), in the section's
// key order whatever the keys' names. Returns the number of values.
// `settings_file` is the company's settings file.
[[nodiscard]] int LoadUserFieldValues(const std::string& settings_file, int index,
                                      std::vector<std::string>* values);
// Replaces the field's section with the values as UF01, UF02, ...; blank values are left
// out. False when the settings file could not be written or the index is out of range.
[[nodiscard]] bool SaveUserFieldValues(const std::string& settings_file, int index,
                                       const std::vector<std::string>& values);

}  // namespace nv
