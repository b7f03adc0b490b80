#include "store/schedule/schedule_definitions.h"

#include <algorithm>
#include <array>

#include "base/ascii.h"
#include "base/file_util.h"
#include "base/path.h"
#include "base/profile.h"
#include "base/str_format.h"

namespace nv {
namespace {

const std::array<ScheduleDefinition, 6> kStandardDefinitions = {{
    {'B', "B", "Book", kStandardSource, false},
    {'T', "T", "Tax", kStandardSource, false},
    {'A', "A", "AMT", kStandardSource, false},
    {'C', "C", "ACE", kStandardSource, false},
    {'S', "S", "State", kStandardSource, false},
    {'O', "O", "Other", kStandardSource, false},
}};

// Type letter, a blank, the name.
constexpr std::array<std::string_view, 8> kTypeNames = {
    "B Book", "A AMT", "T Tax", "S State", "O Other", "C ACE", "G General", "D Disposition"};

// Parallel tables; the first entry of each stands for "no state".
constexpr std::array<std::string_view, 53> kStateCodes = {
    "n/a", "AL", "AK", "AZ", "AR", "CA", "CO", "CN", "DE", "DC", "FL", "GA", "HI", "ID",
    "IL",  "IN", "IA", "KS", "KY", "LA", "ME", "MD", "MA", "MI", "MN", "MS", "MO", "MT",
    "NE",  "NV", "NH", "NJ", "NM", "NY", "NC", "ND", "OH", "OK", "OR", "PA", "PR", "RI",
    "SC",  "SD", "TN", "TX", "UT", "VT", "VA", "WA", "WV", "WI", "WY"};
constexpr std::array<std::string_view, 53> kStateNames = {
    "n/a",         "Alabama",     "Alaska",     "Arizona",   "Arkansas",   "California",
    "Colorado",    "Conn",        "Delaware",   "DC",        "Florida",    "Georgia",
    "Hawaii",      "Idaho",       "Illinois",   "Indiana",   "Iowa",       "Kansas",
    "Kentucky",    "Louisiana",   "Maine",      "Maryland",  "Mass",       "Michigan",
    "Minnesota",   "Miss",        "Missouri",   "Montana",   "Nebraska",   "Nevada",
    "New Hampshr", "New JerseyJ", "New Mexico", "New York",  "N Carolina", "N Dakota",
    "Ohio",        "Oklahoma",    "Oregon",     "Penn",      "Prto Rico",  "Rhode Is",
    "S Carolina",  "S Dakota",    "Tennessee",  "Texas",     "Utah",       "Vermont",
    "Virginia",    "Washington",  "W Virginia", "Wisconsin", "Wyoming"};

constexpr std::string_view kDisplayTypeOrder = "TBACSO";

// The longest value the company file may hold: a longer one is not ours.
constexpr size_t kCompanyValueLimit = 22;
constexpr size_t kInstallationValueBuffer = 301;

size_t TypeRank(std::string_view type) {
  if (type.size() == 2) return kDisplayTypeOrder.find('S');
  if (type.size() != 1) return kDisplayTypeOrder.size();
  const size_t place = kDisplayTypeOrder.find(AsciiUpper(type[0]));
  return place == std::string_view::npos ? kDisplayTypeOrder.size() : place;
}

std::string Cut(std::string_view text, size_t width) {
  return std::string(TrimBlanks(TrimBlanks(text).substr(0, width)));
}

// "TYPE,DESCRIPTION": the type before the first comma, the description after it.
ScheduleDefinition ParseDefinitionValue(char letter, std::string_view value, int source) {
  ScheduleDefinition definition;
  definition.letter = letter;
  definition.source = source;
  const size_t comma = value.find(',');
  definition.type = Cut(value.substr(0, comma), kScheduleTypeWidth);
  if (comma != std::string_view::npos) {
    definition.description = Cut(value.substr(comma + 1), kScheduleDescriptionWidth);
  }
  return definition;
}

std::optional<ScheduleDefinition> ReadStoredDefinition(const std::string& file, char letter,
                                                       int source) {
  const std::string key(1, letter);
  std::string value;
  if (source == kThisCompanySource) {
    value = ReadProfileString(file, kScheduleDefinitionsSection, key, "", kCompanyValueLimit + 2);
    if (value.size() > kCompanyValueLimit) return std::nullopt;
  } else {
    value = ReadProfileString(file, kScheduleDefinitionsSection, key, "", kInstallationValueBuffer);
  }
  if (TrimBlanks(value).empty()) return std::nullopt;
  return ParseDefinitionValue(letter, value, source);
}

std::string StoreOf(const CompanySchedules& company, int source) {
  if (source == kThisCompanySource) return company.settings_file;
  if (source == kAllCompaniesSource) return company.installation_settings_file;
  return std::string();
}

// Adds the stored definition of every key of the file's section, each letter once.
void AddStoredDefinitions(const std::string& file, int source, ScheduleDefinitionList* list) {
  for (const std::string& key : ListProfileKeys(file, kScheduleDefinitionsSection)) {
    if (key.empty()) continue;
    const char letter = AsciiUpper(key[0]);
    if (!IsScheduleLetter(letter) || list->Find(letter, source)) continue;
    if (std::optional<ScheduleDefinition> found = ReadStoredDefinition(file, letter, source)) {
      list->Add(std::move(*found));
    }
  }
}

bool TypesMatch(const ScheduleDefinition& definition, std::string_view type) {
  return EqualIgnoringCase(definition.type, type);
}

// Makes sure every schedule of the company has a definition of its type: a this-company
// definition of another type takes the entry's type, and an entry that no source matches
// gains a this-company definition of its own. Both are written to the company file.
void ReconcileWithCompany(const CompanySchedules& company, ScheduleDefinitionList* list) {
  const std::vector<ScheduleEntry>& entries = company.entries;
  const size_t count = std::min(entries.size(), static_cast<size_t>(kMaxSchedules));
  for (size_t e = 0; e < count; ++e) {
    const ScheduleEntry& entry = entries[e];
    if (entry.letter == ' ' || entry.letter == '\0') break;
    const char letter = AsciiUpper(entry.letter);
    if (!IsScheduleLetter(letter)) continue;
    const std::string type = Cut(entry.type, kScheduleTypeWidth);

    bool matched = false;
    for (int source : {kStandardSource, kAllCompaniesSource}) {
      std::optional<size_t> at = list->Find(letter, source);
      if (at && TypesMatch((*list)[*at], type)) matched = true;
    }
    if (matched) continue;
    ScheduleDefinition definition;
    if (std::optional<size_t> at = list->Find(letter, kThisCompanySource)) {
      definition = (*list)[*at];
      if (TypesMatch(definition, type)) continue;
      list->RemoveAt(*at);
      definition.type = type;
    } else {
      definition = {letter, type, Cut(entry.name, kScheduleDescriptionWidth), kThisCompanySource,
                    false};
    }
    // The definition serves this list whether or not the file takes it; the next load
    // reconciles again.
    static_cast<void>(WriteScheduleDefinition(company, definition));
    list->Add(std::move(definition));
  }
}

}  // namespace

bool ByLetterThenSource(const ScheduleDefinition& a, const ScheduleDefinition& b) {
  if (a.letter != b.letter) return a.letter < b.letter;
  return a.source < b.source;
}

bool ByDisplayOrder(const ScheduleDefinition& a, const ScheduleDefinition& b) {
  const size_t rank_a = TypeRank(a.type);
  const size_t rank_b = TypeRank(b.type);
  if (rank_a != rank_b) return rank_a < rank_b;
  return ByLetterThenSource(a, b);
}

size_t ScheduleDefinitionList::Add(ScheduleDefinition definition) {
  auto at = std::upper_bound(items_.begin(), items_.end(), definition, compare_);
  return static_cast<size_t>(items_.insert(at, std::move(definition)) - items_.begin());
}

void ScheduleDefinitionList::RemoveAt(size_t i) {
  items_.erase(items_.begin() + static_cast<std::ptrdiff_t>(i));
}

std::optional<size_t> ScheduleDefinitionList::Find(char letter, int source) const {
  for (size_t i = 0; i < items_.size(); ++i) {
    if (items_[i].letter == letter && items_[i].source == source) return i;
  }
  return std::nullopt;
}

void ScheduleDefinitionList::SetCompare(Compare compare) {
  compare_ = compare;
  std::stable_sort(items_.begin(), items_.end(), compare_);
}

bool SameScheduleDefinitions(const ScheduleDefinitionList& a, const ScheduleDefinitionList& b) {
  if (a.size() != b.size()) return false;
  std::vector<ScheduleDefinition> left(a.begin(), a.end());
  std::vector<ScheduleDefinition> right(b.begin(), b.end());
  std::stable_sort(left.begin(), left.end(), ByLetterThenSource);
  std::stable_sort(right.begin(), right.end(), ByLetterThenSource);
  for (size_t i = 0; i < left.size(); ++i) {
    const ScheduleDefinition& x = left[i];
    const ScheduleDefinition& y = right[i];
    if (x.letter != y.letter || x.source != y.source || x.type != y.type ||
        x.description != y.description) {
      return false;
    }
  }
  return true;
}

void SetEffectiveAndDisplayOrder(ScheduleDefinitionList* list) {
  list->SetCompare(ByLetterThenSource);
  for (size_t i = 0; i < list->size(); ++i) {
    const bool last_of_letter = i + 1 == list->size() || (*list)[i + 1].letter != (*list)[i].letter;
    list->set_effective(i, last_of_letter);
  }
  list->SetCompare(ByDisplayOrder);
}

std::span<const ScheduleDefinition> StandardScheduleDefinitions() {
  return kStandardDefinitions;
}

std::string InstallationSettingsPath(const InstallationContext& context) {
  const std::string& folder = context.installation_folder;
  if (std::optional<std::string> found = FindFileIgnoringCase(folder, "KELNVWIN.INI")) {
    return *found;
  }
  return JoinPath(folder, "KELNVWIN.INI");
}

std::optional<ScheduleDefinition> LookupScheduleDefinition(const CompanySchedules& company,
                                                           char letter, int source_mask) {
  for (int source : {kThisCompanySource, kAllCompaniesSource}) {
    if ((source_mask & source) == 0) continue;
    if (auto found = ReadStoredDefinition(StoreOf(company, source), letter, source)) return found;
  }
  if (source_mask & kStandardSource) {
    for (const ScheduleDefinition& standard : kStandardDefinitions) {
      if (standard.letter == letter) return standard;
    }
  }
  return std::nullopt;
}

ScheduleDefinitionList LoadScheduleDefinitions(const CompanySchedules& company, int source_mask) {
  ScheduleDefinitionList list(ByLetterThenSource);
  if (source_mask & kStandardSource) {
    for (const ScheduleDefinition& standard : kStandardDefinitions) list.Add(standard);
  }
  if (source_mask & kAllCompaniesSource) {
    AddStoredDefinitions(StoreOf(company, kAllCompaniesSource), kAllCompaniesSource, &list);
    if (source_mask & kThisCompanySource) {
      AddStoredDefinitions(StoreOf(company, kThisCompanySource), kThisCompanySource, &list);
    }
  }
  ReconcileWithCompany(company, &list);
  SetEffectiveAndDisplayOrder(&list);
  return list;
}

bool SaveScheduleDefinitions(const CompanySchedules& company, const ScheduleDefinitionList& list) {
  bool ok =
      DeleteProfileSection(StoreOf(company, kAllCompaniesSource), kScheduleDefinitionsSection);
  ok =
      DeleteProfileSection(StoreOf(company, kThisCompanySource), kScheduleDefinitionsSection) && ok;
  for (const ScheduleDefinition& definition : list) {
    if (definition.source == kStandardSource) continue;
    ok = WriteScheduleDefinition(company, definition) && ok;
  }
  return ok;
}

bool WriteScheduleDefinition(const CompanySchedules& company,
                             const ScheduleDefinition& definition) {
  if (definition.source != kAllCompaniesSource && definition.source != kThisCompanySource) {
    return false;
  }
  if (!IsScheduleLetter(definition.letter)) return false;
  std::string value = StrPrintf("%s,%s", definition.type.c_str(), definition.description.c_str());
  // A read drops one pair of enclosing quotes; a value that has them of its own keeps them
  // inside another pair.
  if (value.size() >= 2 && (value[0] == '"' || value[0] == '\'') && value.back() == value[0]) {
    value = '"' + value + '"';
  }
  return WriteProfileString(StoreOf(company, definition.source), kScheduleDefinitionsSection,
                            std::string(1, definition.letter), value);
}

std::string ScheduleTypeName(char type) {
  for (std::string_view entry : kTypeNames) {
    if (entry[0] == type) return std::string(entry.substr(2));
  }
  return std::string();
}

std::string ScheduleTypeCaption(std::string_view type) {
  std::string caption;
  if (type.size() == 2) {
    caption = StrPrintf("State(%.2s)", type.data());
  } else if (type.size() == 1) {
    caption = ScheduleTypeName(type[0]);
    if (type[0] == 'S') caption += "(Generic)";
  }
  if (TrimBlanks(caption).empty()) return "invalid";
  return caption;
}

std::span<const std::string_view> StateCodes() {
  return std::span<const std::string_view>(kStateCodes).subspan(1);
}

std::optional<std::string> StateName(std::string_view code) {
  if (code.size() < 2) return std::nullopt;
  for (size_t i = 0; i < kStateCodes.size(); ++i) {
    if (kStateCodes[i].substr(0, 2) == code.substr(0, 2)) return std::string(kStateNames[i]);
  }
  return std::nullopt;
}

std::string CompanyScheduleName(const CompanySchedules& company, char letter) {
  const ScheduleEntry* entry = FindScheduleEntry(company.entries, letter);
  if (entry == nullptr) return std::string();
  std::string name = entry->name;
  while (!name.empty() && name.back() == ' ') name.pop_back();
  if (entry->type.size() == 2) name += "(" + entry->type + ")";
  return name;
}

bool IsConsolidatedCompany(const std::string& settings_file) {
  return !ListProfileKeys(settings_file, "Consolidated Company").empty();
}

}  // namespace nv
