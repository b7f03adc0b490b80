// Remembered matchings: the pairs a person confirmed in a matching panel, kept per user
// and per source product in the installation's KELNVWIN.INI and placed as the pre-set
// matches of the next panel of that product. The importer's own pre-set matches stay
// what the panel's Reset returns to.
//
// One section per user, product and panel; one key per destination item, named by the
// item's text, with the paired source item's text in double quotes, or nothing when the
// person left the destination unpaired:
//
//   [User ALICE Field Matches pcfas]
//   Account Number="Acct. No."
//   User Field 1=
//
// Items are remembered by their texts, not their ids: a book panel numbers its
// destinations in the order of the company's schedules and a field panel's sources come
// from the source file, while the texts name the same things from one import to the
// next. A text that cannot stand as a key or a value (a line break, an "=" in a key) is
// not remembered; its destination keeps the importer's own pre-set match.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/installation_context.h"

namespace nv {

class MatchPanel;
struct MatchItem;

enum class MatchPanelKind { kFields, kBooks };

// Destination text -> source text; nullopt: confirmed unpaired.
struct RememberedMatch {
  std::string destination;
  std::optional<std::string> source;
};
using RememberedMatches = std::vector<RememberedMatch>;

// "User ALICE Field Matches pcfas".
std::string RememberedMatchesSection(std::string_view user, std::string_view kind,
                                     MatchPanelKind panel);

// The section's entries in a settings file's bytes, in file order; empty when there is
// no such section.
RememberedMatches ParseRememberedMatches(std::string_view settings, std::string_view section);
// The same, read from the file; empty when it is missing or unreadable.
RememberedMatches ReadRememberedMatches(const std::string& path, std::string_view section);

// Rewrites the section whole with the panel's pairs (every destination). False when the
// file could not be written (it is then as it was).
[[nodiscard]] bool WriteRememberedMatches(const std::string& path, std::string_view section,
                                          const MatchPanel& panel);

// The pairs (destination id, source id) to place before the panel opens: a remembered
// destination whose remembered source is among `sources` (or that was left unpaired)
// takes that; every other destination keeps its pair in `standard`. No source is placed
// twice: a remembered pair wins over a standard one.
std::vector<std::pair<int, int>> PresetWithRemembered(
    const RememberedMatches& remembered, const std::vector<MatchItem>& destinations,
    const std::vector<MatchItem>& sources, const std::vector<std::pair<int, int>>& standard);

}  // namespace nv
