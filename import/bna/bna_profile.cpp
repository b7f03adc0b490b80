#include "import/bna/bna_profile.h"

#include <array>
#include <filesystem>
#include <utility>

#include "base/ascii.h"
#include "base/file_util.h"
#include "base/profile.h"
#include "base/profile_text.h"
#include "base/str_format.h"
#include "import/bna/bna_source.h"

namespace nv {
namespace {

constexpr std::array<std::string_view, 4> kDuplicateKeywords{"replace values", "replace asset",
                                                             "drop new asset", "create subasset"};

constexpr std::string_view kAlwaysCopy = "always copy";

std::string PathOf(const BnaProfiles& profiles, std::string_view name) {
  return BnaProfileFile(profiles, name);
}

std::string MainProfileNamedIn(const BnaProfiles& profiles, std::string_view profile) {
  return ReadProfileString(PathOf(profiles, profile), kBnaParametersSection, kBnaMainProfileKey, "",
                           kBnaValueBufferSize);
}

}  // namespace

std::string_view DuplicateKeyword(DuplicateMode mode) {
  int i = static_cast<int>(mode) - 1;
  if (i < 0 || i >= static_cast<int>(kDuplicateKeywords.size())) return kDuplicateKeywords[0];
  return kDuplicateKeywords[i];
}

DuplicateMode DuplicateModeOfKeyword(std::string_view keyword) {
  for (size_t i = 0; i < kDuplicateKeywords.size(); ++i) {
    if (EqualIgnoringCase(kDuplicateKeywords[i], keyword)) {
      return static_cast<DuplicateMode>(i + 1);
    }
  }
  return DuplicateMode::kReplaceValues;
}

std::string BnaProfilePath(std::string_view program_folder, std::string_view name) {
  if (name.find_first_of("\\/:") != std::string_view::npos) return std::string(name);
  std::string folder(program_folder);
  std::string path = folder + std::string(name);
  // The profile is read anew for many values of every line: a plain check for the exact
  // name first, and the folder is searched only when that fails.
  std::error_code ec;
  if (name.empty() || folder.empty() || std::filesystem::exists(path, ec)) return path;
  if (std::optional<std::string> found = FindFileIgnoringCase(folder, name)) return *found;
  return path;
}

std::string BnaProfileFile(const BnaProfiles& profiles, std::string_view name) {
  std::string path = BnaProfilePath(profiles.program_folder, name);
  if (profiles.outside_file && name.find_first_of("\\/:") != std::string_view::npos) {
    return profiles.outside_file(path);
  }
  return path;
}

BnaProfiles StartBnaProfiles(std::string program_folder, std::string_view stored,
                             std::function<std::string(const std::string&)> outside_file) {
  BnaProfiles profiles;
  profiles.program_folder = std::move(program_folder);
  profiles.outside_file = std::move(outside_file);
  profiles.current = stored.empty() ? std::string(kBnaDefaultProfile) : std::string(stored);
  profiles.main = MainProfileNamedIn(profiles, profiles.current);
  return profiles;
}

void SwitchBnaProfile(BnaProfiles& profiles, std::string_view name) {
  profiles.current = std::string(name);
  profiles.main = MainProfileNamedIn(profiles, profiles.current);
}

bool CreateBnaProfile(BnaProfiles& profiles, std::string_view name) {
  if (profiles.main.empty()) profiles.main = kBnaDefaultProfile;
  profiles.current = std::string(name);
  return WriteProfileValue(profiles, kBnaParametersSection, kBnaMainProfileKey, profiles.main);
}

std::string ReadProfileValue(const BnaProfiles& profiles, std::string_view section,
                             std::string_view key, std::string_view default_value, bool use_main) {
  std::string value;
  if (!profiles.current.empty()) {
    value = ReadProfileString(PathOf(profiles, profiles.current), section, key, "",
                              kBnaValueBufferSize);
  }
  if (value.empty() && use_main && !profiles.main.empty()) {
    value =
        ReadProfileString(PathOf(profiles, profiles.main), section, key, "", kBnaValueBufferSize);
  }
  if (value.empty()) value = default_value.substr(0, kBnaValueBufferSize - 1);
  return value;
}

bool WriteProfileValue(const BnaProfiles& profiles, std::string_view section, std::string_view key,
                       std::optional<std::string_view> value) {
  if (profiles.current.empty()) return false;
  std::string path = PathOf(profiles, profiles.current);
  if (!value) return DeleteProfileKey(path, section, key);
  return WriteProfileString(path, section, key, *value);
}

BnaParameters ReadBnaParameters(const BnaProfiles& profiles) {
  auto read = [&profiles](std::string_view key, std::string_view default_value) {
    return ReadProfileValue(profiles, kBnaParametersSection, key, default_value);
  };
  BnaParameters p;
  p.checked_groups = CheckedGroupsOfValue(read(kBnaCheckBoxesKey, "*"));
  p.file_type = EqualIgnoringCase(read(kBnaFileTypeKey, "Tabs"), "CSV") ? kBnaCommaSeparated
                                                                        : kBnaTabSeparated;
  p.implied_decimals = ProfileInteger(read(kBnaDecimalsKey, "0"));
  std::string basis = read(kBnaSubstBasisKey, "");
  p.always_copy_basis =
      EqualIgnoringCase(std::string_view(basis).substr(0, kAlwaysCopy.size()), kAlwaysCopy);
  p.duplicate_mode = DuplicateModeOfKeyword(read(kBnaDuplicatesKey, "replace values"));
  p.bna_nd_profile_type = EqualIgnoringCase(read(kBnaProfileTypeKey, ""), "BNA_ND");
  return p;
}

void LoadDefinitions(const BnaProfiles& profiles, std::string_view checked_groups,
                     ImportConversionList& list) {
  list.Clear();
  if (profiles.current.empty()) return;
  // One read of the file for all keys: the definitions never fall back to the main profile.
  std::string path = PathOf(profiles, profiles.current);
  ProfileText text = ProfileText::Parse(ReadFileBytes(path).value_or(std::string()));
  for (const std::string& key : text.Keys(kBnaDefinitionsSection)) {
    std::optional<std::string> raw = text.Find(kBnaDefinitionsSection, key);
    DefinitionLine line =
        ParseDefinitionLine(ProfileValueForRead(raw.value_or(""), kBnaDefinitionBufferSize));
    list.Add(key, line.no_copy, line.column, line.method, line.number, std::move(line.text),
             GroupOfKey(key));
  }
  list.SetActive(checked_groups);
}

bool SaveBnaProfile(const BnaProfiles& profiles, const ImportConversionList& list,
                    const BnaDialogSettings& settings) {
  if (profiles.current.empty()) return false;
  std::string path = PathOf(profiles, profiles.current);
  bool missing = false;
  std::optional<std::string> bytes = ReadFileBytes(path, &missing);
  if (!bytes && !missing) return false;  // there but unreadable: never overwritten
  ProfileText text = ProfileText::Parse(bytes.value_or(std::string()));
  bool all_set = true;
  for (const ConversionDefinition& d : list.entries()) {
    all_set &= text.Set(kBnaDefinitionsSection, d.name, FormatDefinitionLine(d));
  }
  all_set &= text.Set(kBnaParametersSection, kBnaCheckBoxesKey,
                      ValueOfCheckedGroups(settings.checked_groups));
  all_set &= text.Set(kBnaParametersSection, kBnaSourceFileKey, settings.source_path);
  all_set &= text.Set(kBnaParametersSection, kBnaFileTypeKey,
                      settings.file_type == kBnaCommaSeparated ? "CSV" : "Tabs");
  return WriteFileAtomically(path, text.Serialize()) && all_set;
}

std::string ReadUserImportProfile(const std::string& settings_file, std::string_view user) {
  std::string section = StrPrintf(kBnaUserSection, std::string(user).c_str());
  return ReadProfileString(settings_file, section, kBnaUserProfileKey, "", kBnaValueBufferSize);
}

bool WriteUserImportProfile(const std::string& settings_file, std::string_view user,
                            std::string_view profile) {
  std::string section = StrPrintf(kBnaUserSection, std::string(user).c_str());
  return WriteProfileString(settings_file, section, kBnaUserProfileKey, profile);
}

}  // namespace nv
