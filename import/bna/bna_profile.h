// BNA import profiles: settings files of the Windows profile-string kind (base/profile.h)
// that keep the conversion definitions, the special conversions and the parameters of an
// import. A profile may name a main profile, which supplies every parameter and special
// conversion that the profile itself leaves empty; the conversion definitions come from
// the profile alone.
//
//   SECTION                  KEY                     VALUE (default when absent)
//   Parameters               Main Profile            the main profile's file name (none)
//   Parameters               Data CheckBoxes         "*" and the checked group boxes' letters,
//                                                    in the order G T B A C S O ("*")
//   Parameters               source file             the report last chosen (written only)
//   Parameters               file type               "CSV" or "Tabs" ("Tabs")
//   parameters               dollar decimal places   implied decimals of amounts ("0")
//   parameters               subst basis             "always copy..." copies every Basis ("")
//   parameters               duplicate processing    "replace values", "replace asset",
//                                                    "drop new asset", "create subasset"
//                                                    ("replace values")
//   Parameters               Profile Type            "BNA_ND" turns on the Section 179
//                                                    adjustment ("")
//   conversion definitions   one per target field    a definition line (conversion_list.h)
//   special conversions      one per target field    an expression of the conversion language
//
// "Parameters" and "parameters" are one section: names compare ignoring case. A profile
// name without a path separator and without a colon is a file in the program's folder;
// any other name is used as it stands. A profile that does not exist reads as empty.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "import/bna/conversion_list.h"

namespace nv {

inline constexpr char kBnaDefaultProfile[] = "@BNA_ND.IMP";
inline constexpr size_t kBnaValueBufferSize = 500;       // values are read up to 499 characters
inline constexpr size_t kBnaDefinitionBufferSize = 300;  // definition lines up to 299

inline constexpr char kBnaParametersSection[] = "Parameters";
inline constexpr char kBnaDefinitionsSection[] = "conversion definitions";
inline constexpr char kBnaSpecialSection[] = "special conversions";

inline constexpr char kBnaMainProfileKey[] = "Main Profile";
inline constexpr char kBnaCheckBoxesKey[] = "Data CheckBoxes";
inline constexpr char kBnaSourceFileKey[] = "source file";
inline constexpr char kBnaFileTypeKey[] = "file type";
inline constexpr char kBnaDecimalsKey[] = "dollar decimal places";
inline constexpr char kBnaSubstBasisKey[] = "subst basis";
inline constexpr char kBnaDuplicatesKey[] = "duplicate processing";
inline constexpr char kBnaProfileTypeKey[] = "Profile Type";

// The per-user setting of the installation's settings file that remembers the profile.
inline constexpr char kBnaUserSection[] = "User %s";
inline constexpr char kBnaUserProfileKey[] = "Import Profile";

enum class DuplicateMode : int {
  kReplaceValues = 1,
  kReplaceAsset = 2,
  kDropNewAsset = 3,
  kCreateSubasset = 4,
};

// "replace values" and so on.
std::string_view DuplicateKeyword(DuplicateMode mode);
// The mode of a keyword, any case; kReplaceValues for anything else.
DuplicateMode DuplicateModeOfKeyword(std::string_view keyword);

// The profiles a run reads: the current one and the main one behind it.
struct BnaProfiles {
  std::string program_folder;  // ends with the path separator
  std::string current;         // the profile's name as chosen; empty for none
  std::string main;            // the main profile's name; empty for none
  // When set, the file read and written in place of a profile named by a full path (a
  // test import's scratch copy); the names above stay the ones chosen.
  std::function<std::string(const std::string& path)> outside_file;
};

// The file a profile name stands for. An existing file in that folder whose name differs
// only in case is the one used.
std::string BnaProfilePath(std::string_view program_folder, std::string_view name);
// The file read and written for a profile name: BnaProfilePath, or the stand-in for a
// full path when `profiles` has one.
std::string BnaProfileFile(const BnaProfiles& profiles, std::string_view name);

// The profiles at the start of a run: `stored` (the user's "Import Profile") or
// "@BNA_ND.IMP", and the main profile that it names.
BnaProfiles StartBnaProfiles(std::string program_folder, std::string_view stored,
                             std::function<std::string(const std::string&)> outside_file = {});
// After "Select Profile" chose an existing file: it becomes current and its own main
// profile is read.
void SwitchBnaProfile(BnaProfiles& profiles, std::string_view name);
// After "Select Profile" chose a new file: the main profile stays (or becomes
// "@BNA_ND.IMP" when none was named), the new file becomes current and gets the main
// profile's name written into it.
[[nodiscard]] bool CreateBnaProfile(BnaProfiles& profiles, std::string_view name);

// The value of a key: read from the current profile (up to 499 characters); when that
// gives no characters and `use_main` is set and a main profile is named, from the main
// profile; when still empty, `default_value`.
std::string ReadProfileValue(const BnaProfiles& profiles, std::string_view section,
                             std::string_view key, std::string_view default_value,
                             bool use_main = true);
// Writes value under key in the current profile; no value deletes the key. False when
// no profile is current or the file cannot be written.
[[nodiscard]] bool WriteProfileValue(const BnaProfiles& profiles, std::string_view section,
                                     std::string_view key, std::optional<std::string_view> value);

// The parameters an import reads at its start.
struct BnaParameters {
  std::string checked_groups;  // letters of the checked group boxes, in G T B A C S O order
  int file_type = 1;           // 1 tabs, 2 commas
  int implied_decimals = 0;
  bool always_copy_basis = false;  // "subst basis" begins with "always copy"
  DuplicateMode duplicate_mode = DuplicateMode::kReplaceValues;
  bool bna_nd_profile_type = false;  // "Profile Type" is "BNA_ND"
};

BnaParameters ReadBnaParameters(const BnaProfiles& profiles);

// Clears the list and fills it from the current profile's "conversion definitions", one
// entry per key in the file's order, then marks the active ones for `checked_groups`.
void LoadDefinitions(const BnaProfiles& profiles, std::string_view checked_groups,
                     ImportConversionList& list);

// What the dialog writes at each save besides the definitions.
struct BnaDialogSettings {
  std::string checked_groups;
  std::string source_path;  // empty for none
  int file_type = 1;
};

// Writes every definition (in list order) and the dialog's settings into the current
// profile in one replacement of the file. Keys of the file that the list does not hold
// stay as they are. False when no profile is current or the file cannot be written.
[[nodiscard]] bool SaveBnaProfile(const BnaProfiles& profiles, const ImportConversionList& list,
                                  const BnaDialogSettings& settings);

// The user's remembered profile in the installation's settings file; empty when not set.
std::string ReadUserImportProfile(const std::string& settings_file, std::string_view user);
[[nodiscard]] bool WriteUserImportProfile(const std::string& settings_file, std::string_view user,
                                          std::string_view profile);

}  // namespace nv
