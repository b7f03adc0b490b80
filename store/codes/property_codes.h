// Property codes: two-character codes with a description, kept in the company's settings
// file (company number + ".ini"), section "Property Codes", one key per code whose value
// is the description.
#pragma once

#include <string>
#include <vector>

namespace nv {

inline constexpr char kPropertyCodesSection[] = "Property Codes";

struct PropertyCode {
  std::string code;         // 2 characters, letters and digits, upper case
  std::string description;  // at most 99 characters read; the editor takes 20
  friend bool operator==(const PropertyCode&, const PropertyCode&) = default;
};
using PropertyCodeList = std::vector<PropertyCode>;

// Replaces *codes with the section's keys in file order and their values. Returns the
// number of codes.
[[nodiscard]] int LoadPropertyCodes(const std::string& settings_file, PropertyCodeList* codes);
// Replaces the section with the codes in their order; rows without a code are left out.
// False when the settings file could not be written.
[[nodiscard]] bool SavePropertyCodes(const std::string& settings_file,
                                     const PropertyCodeList& codes);

}  // namespace nv
