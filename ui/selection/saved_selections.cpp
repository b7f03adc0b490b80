#include "ui/selection/saved_selections.h"

#include "base/ascii.h"
#include "base/profile.h"
#include "base/str_format.h"
#include "store/company/company.h"
#include "store/schedule/schedule_definitions.h"

namespace nv {
namespace {

constexpr std::string_view kSchedulePrefix = "Schedule ";

const std::string& FileFor(const SelectionFiles& files, bool all_companies) {
  return all_companies ? files.installation_settings : files.company_settings;
}

// The whole value, read into a buffer that starts at 200 bytes and doubles until it fits.
std::string ReadWholeValue(const std::string& file, std::string_view key) {
  for (size_t size = 200;; size *= 2) {
    std::string value = ReadProfileString(file, kAssetSelectionSection, key, "", size);
    if (value.size() + 1 < size) return value;
  }
}

bool HasLineEnd(std::string_view s) {
  return s.find_first_of("\r\n") != std::string_view::npos;
}

bool UsableName(std::string_view name) {
  std::string_view trimmed = TrimBlanks(name);
  return !trimmed.empty() && trimmed.size() == name.size() &&
         name.find('=') == std::string_view::npos && !HasLineEnd(name) && name.front() != '[' &&
         name.front() != ';';
}

// The position of the first ";" that no "\" makes literal.
size_t EndOfPair(std::string_view s) {
  for (size_t i = 0; i < s.size(); ++i) {
    if (s[i] == '\\') {
      ++i;
    } else if (s[i] == ';') {
      return i;
    }
  }
  return std::string_view::npos;
}

std::string Unescaped(std::string_view s) {
  std::string out;
  for (size_t i = 0; i < s.size(); ++i) {
    if (s[i] != '\\') {
      out.push_back(s[i]);
    } else if (i + 1 < s.size()) {
      out.push_back(s[++i]);
    }
  }
  return out;
}

}  // namespace

SelectionFiles SelectionFilesFor(const NvCompany& company, const InstallationContext& context) {
  return {company.SettingsPath(), InstallationSettingsPath(context)};
}

std::string SelectionValue(const KelSelection& selection) {
  std::string value;
  if (selection.schedule != 0) value = StrPrintf("Schedule %c;", selection.schedule);
  for (int i = 0; i < kSelectionFieldCount; ++i) {
    const SelectionCriterion& c = selection.criteria[i];
    if (!c.in_use) continue;
    if (c.exclude) value += '!';
    value += SelectionFields()[i].name;
    value += ':';
    for (char ch : c.text) {
      if (ch == ';' || ch == '\\') value += '\\';
      value += ch;
    }
    value += ';';
  }
  return value;
}

bool ReadSelectionValue(std::string_view value, char schedule, KelSelection* selection) {
  selection->SwitchOffAll();
  if (schedule != 0) {
    const std::string prefix = StrPrintf("Schedule %c;", schedule);
    if (value.substr(0, prefix.size()) != prefix) return false;
    value.remove_prefix(prefix.size());
  }
  KelSelection read = *selection;
  while (!value.empty()) {
    const size_t end = EndOfPair(value);
    if (end == std::string_view::npos) return false;
    std::string_view pair = value.substr(0, end);
    value.remove_prefix(end + 1);
    const size_t colon = pair.find(':');
    if (colon == std::string_view::npos) return false;
    std::string_view name = pair.substr(0, colon);
    const bool exclude = !name.empty() && name.front() == '!';
    if (exclude) name.remove_prefix(1);
    std::optional<int> field = FindSelectionField(name);
    if (!field) continue;
    read.criteria[*field] = {true, Unescaped(pair.substr(colon + 1)), exclude};
  }
  *selection = std::move(read);
  return true;
}

bool SaveSelection(const SelectionFiles& files, const KelSelection& selection) {
  if (!UsableName(selection.name)) return false;
  for (const SelectionCriterion& c : selection.criteria) {
    if (c.in_use && HasLineEnd(c.text)) return false;
  }
  return WriteProfileString(FileFor(files, selection.all_companies), kAssetSelectionSection,
                            selection.name, SelectionValue(selection));
}

bool LoadSelection(const SelectionFiles& files, std::string_view name, bool all_companies,
                   char schedule, KelSelection* selection) {
  const std::string& file = FileFor(files, all_companies);
  bool found = false;
  for (const std::string& key : ListProfileKeys(file, kAssetSelectionSection)) {
    found = found || EqualIgnoringCase(key, name);
  }
  if (!found || !ReadSelectionValue(ReadWholeValue(file, name), schedule, selection)) {
    selection->SwitchOffAll();
    return false;
  }
  selection->name = std::string(name);
  selection->all_companies = all_companies;
  selection->schedule = schedule;
  return true;
}

bool DeleteSelection(Ui& ui, const SelectionFiles& files, std::string_view name,
                     bool all_companies) {
  const std::string shown(name);
  if (!AskYes(ui, DefaultButton::kNo, "Delete Current Asset Selection(%s)?", shown.c_str())) {
    return false;
  }
  return DeleteProfileKey(FileFor(files, all_companies), kAssetSelectionSection, name);
}

std::vector<SavedSelectionEntry> ListSavedSelections(const SelectionFiles& files) {
  std::vector<SavedSelectionEntry> entries;
  for (bool all_companies : {true, false}) {
    const std::string& file = FileFor(files, all_companies);
    for (const std::string& key : ListProfileKeys(file, kAssetSelectionSection)) {
      const std::string value = ReadWholeValue(file, key);
      char schedule = 0;
      if (value.size() > kSchedulePrefix.size() && value.starts_with(kSchedulePrefix)) {
        schedule = value[kSchedulePrefix.size()];
      }
      entries.push_back({key, all_companies, schedule});
    }
  }
  return entries;
}

}  // namespace nv
