// Schedule definitions: what a schedule letter of a company means (its type and its
// description). Definitions come from three sources:
//
//   SOURCE  STORE                                          VALUE
//   1       built in (B Book, T Tax, A AMT, C ACE, S State, O Other); never stored
//   2       installation file KELNVWIN.INI, all companies  [Schedule Definitions] X=TYPE,DESC
//   4       the company's settings file NUMBER.ini         [Schedule Definitions] X=TYPE,DESC
//
// The key is the letter, the value the type (at most 2 characters: one letter for a kind
// of book, a postal code for a state schedule) and the description (at most 10
// characters), for example X=CA,Calif. The source numbers are also the bits of a source
// mask. For every letter the most specific definition is the one in force: this company
// over all companies over standard.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/installation_context.h"
#include "store/schedule/schedule_entry.h"

namespace nv {

inline constexpr int kStandardSource = 1;
inline constexpr int kAllCompaniesSource = 2;
inline constexpr int kThisCompanySource = 4;
inline constexpr int kAllScheduleSources =
    kStandardSource | kAllCompaniesSource | kThisCompanySource;

inline constexpr size_t kScheduleDescriptionWidth = 10;

inline constexpr char kScheduleDefinitionsSection[] = "Schedule Definitions";

struct ScheduleDefinition {
  char letter = ' ';        // upper case; blank: no letter given yet
  std::string type;         // at most 2 characters
  std::string description;  // at most 10 characters
  int source = kThisCompanySource;
  bool effective = false;  // the one definition of its letter in force

  friend bool operator==(const ScheduleDefinition&, const ScheduleDefinition&) = default;
};

// A schedule letter is one of A to Z; nothing else is stored as a key.
[[nodiscard]] inline bool IsScheduleLetter(char c) {
  return c >= 'A' && c <= 'Z';
}

// Orders by letter, then source.
[[nodiscard]] bool ByLetterThenSource(const ScheduleDefinition& a, const ScheduleDefinition& b);
// Display order: by the type's place in "TBACSO" (a two-letter state type counts as S, any
// other type comes after them), then by letter, then by source.
[[nodiscard]] bool ByDisplayOrder(const ScheduleDefinition& a, const ScheduleDefinition& b);

// Owns its definitions and keeps them sorted by a replaceable comparison; a definition is
// added after those that compare equal to it.
class ScheduleDefinitionList {
 public:
  using Compare = bool (*)(const ScheduleDefinition&, const ScheduleDefinition&);

  explicit ScheduleDefinitionList(Compare compare = ByDisplayOrder) : compare_(compare) {}

  size_t size() const { return items_.size(); }
  bool empty() const { return items_.empty(); }
  const ScheduleDefinition& operator[](size_t i) const { return items_[i]; }
  std::vector<ScheduleDefinition>::const_iterator begin() const { return items_.begin(); }
  std::vector<ScheduleDefinition>::const_iterator end() const { return items_.end(); }

  // Inserts in order; returns the new definition's position.
  size_t Add(ScheduleDefinition definition);
  void RemoveAt(size_t i);
  // Position of the first definition with this letter and source.
  std::optional<size_t> Find(char letter, int source) const;
  // Re-sorts (stably) by a new comparison, which later additions follow too.
  void SetCompare(Compare compare);
  void set_effective(size_t i, bool effective) { items_[i].effective = effective; }

 private:
  Compare compare_;
  std::vector<ScheduleDefinition> items_;
};

// True when both lists hold the same definitions (letter, source, type, description),
// whatever their order and effective flags.
[[nodiscard]] bool SameScheduleDefinitions(const ScheduleDefinitionList& a,
                                           const ScheduleDefinitionList& b);

// Marks the definition in force for each letter and sorts the list for display.
void SetEffectiveAndDisplayOrder(ScheduleDefinitionList* list);

// The built-in definitions, in their order.
std::span<const ScheduleDefinition> StandardScheduleDefinitions();

// KELNVWIN.INI of the installation folder, found ignoring case; the path it gets when it
// is created otherwise.
std::string InstallationSettingsPath(const InstallationContext& context);

// The definition of `letter` from the first of company file (mask bit 4), installation
// file (bit 2) and standard table (bit 1) that has one.
std::optional<ScheduleDefinition> LookupScheduleDefinition(const CompanySchedules& company,
                                                           char letter, int source_mask);

// Every definition of the requested sources, reconciled with the company's schedule
// entries (an entry with no matching definition gains a this-company one, written to the
// company file), effective flags set, in display order.
ScheduleDefinitionList LoadScheduleDefinitions(const CompanySchedules& company, int source_mask);

// Replaces both stores' sections by the list's non-standard definitions. False when a file
// could not be written.
[[nodiscard]] bool SaveScheduleDefinitions(const CompanySchedules& company,
                                           const ScheduleDefinitionList& list);

// Writes one definition of source 2 or 4 into its store. False for other sources, for a
// letter that is not A to Z, or when the file could not be written.
[[nodiscard]] bool WriteScheduleDefinition(const CompanySchedules& company,
                                           const ScheduleDefinition& definition);

// "Book", "AMT", "Tax", "State", "Other", "ACE", "General", "Disposition"; empty otherwise.
std::string ScheduleTypeName(char type);
// "State(CA)" for a two-letter type, "State(Generic)" for S, the type name for another
// one-letter type, "invalid" for anything else.
std::string ScheduleTypeCaption(std::string_view type);

// The 52 two-letter state codes in their order ("n/a" not included).
std::span<const std::string_view> StateCodes();
// The name of the state whose code equals the first two characters of `code`.
std::optional<std::string> StateName(std::string_view code);

// The company's own name of a schedule: its description without trailing blanks, with
// "(CA)" after it for a state schedule; empty when the company has no such schedule.
std::string CompanyScheduleName(const CompanySchedules& company, char letter);

// True when the company's settings file has a "Consolidated Company" section with a key.
[[nodiscard]] bool IsConsolidatedCompany(const std::string& settings_file);

}  // namespace nv
