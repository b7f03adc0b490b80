// Profile (INI) files read and written with the Windows profile-string rules; the line
// rules are ProfileText's. A missing file reads as empty. Every write reads the file,
// changes the lines it concerns and replaces the whole file through a temporary file in
// the same folder, with CR LF line ends; a failed write returns false and leaves the old
// file as it was. A file that exists but cannot be read is never overwritten.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace nv {

// The value of key in section: trimmed, one pair of enclosing quotes removed and cut to
// buffer_size - 1 characters; default_value (cut the same way, trailing blanks dropped)
// when the file, the section or the key is missing.
std::string ReadProfileString(const std::string& file, std::string_view section,
                              std::string_view key, std::string_view default_value,
                              size_t buffer_size = 301);

std::vector<std::string> ListProfileKeys(const std::string& file, std::string_view section);
std::vector<std::string> ListProfileSections(const std::string& file);

// Creates the file, the section and the key as needed.
[[nodiscard]] bool WriteProfileString(const std::string& file, std::string_view section,
                                      std::string_view key, std::string_view value);
// True when the key is gone afterwards (also when it was never there).
[[nodiscard]] bool DeleteProfileKey(const std::string& file, std::string_view section,
                                    std::string_view key);
// True when the section is gone afterwards (also when it was never there).
[[nodiscard]] bool DeleteProfileSection(const std::string& file, std::string_view section);

}  // namespace nv
