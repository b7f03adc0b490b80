// Saved selections: section "Asset Selection" of the company's settings file (NUMBER.ini)
// or, for all companies, of the installation's KELNVWIN.INI. The key is the selection's
// name; the value is
//   "Schedule %c;"                      when the selection has a schedule letter
//   then per criterion in use, in the table's order:
//   ["!" when excluded] FIELD NAME ":" CRITERION TEXT ";"
// for example  Schedule T;Location:01-05;!Disposal Code:S;
// In the criterion text a ";" and a "\" are written with a "\" in front; reading drops
// every "\" and keeps the character after it, so a value written before backslashes were
// doubled reads as it always did.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/installation_context.h"
#include "base/ui.h"
#include "ui/selection/selection.h"

namespace nv {

class NvCompany;

inline constexpr char kAssetSelectionSection[] = "Asset Selection";

struct SelectionFiles {
  std::string company_settings;       // the company's NUMBER.ini
  std::string installation_settings;  // KELNVWIN.INI
};

SelectionFiles SelectionFilesFor(const NvCompany& company, const InstallationContext& context);

struct SavedSelectionEntry {
  std::string name;
  bool all_companies = false;
  char schedule = 0;  // 0 when the value has no schedule prefix
  friend bool operator==(const SavedSelectionEntry&, const SavedSelectionEntry&) = default;
};

// The value form of the selection's criteria.
std::string SelectionValue(const KelSelection& selection);

// Reads a value into `selection`: every criterion is switched off first; with `schedule`
// set the value must begin with "Schedule %c;" of that letter. Pairs of an unknown field
// name are passed over. False when the prefix does not fit or a pair lacks its ":" or ";";
// every criterion is then off.
[[nodiscard]] bool ReadSelectionValue(std::string_view value, char schedule,
                                      KelSelection* selection);

// Writes the selection under its name into the file its all_companies flag names. False
// for a blank name, a name that a settings file cannot hold as a key ("=", a line end, a
// leading "[" or ";"), a criterion with a line end, or a file that cannot be written.
[[nodiscard]] bool SaveSelection(const SelectionFiles& files, const KelSelection& selection);

// Loads the named selection; on success it carries the name, the flag and the schedule.
// False when it is missing or cannot be read (every criterion then off).
[[nodiscard]] bool LoadSelection(const SelectionFiles& files, std::string_view name,
                                 bool all_companies, char schedule, KelSelection* selection);

// Asks "Delete Current Asset Selection(%s)?" (default No) and on Yes removes the key. True
// when it was removed.
[[nodiscard]] bool DeleteSelection(Ui& ui, const SelectionFiles& files, std::string_view name,
                                   bool all_companies);

// The saved selections of the installation file, then of the company's.
std::vector<SavedSelectionEntry> ListSavedSelections(const SelectionFiles& files);

}  // namespace nv
