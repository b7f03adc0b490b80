#include "import/frame/remembered_matches.h"

#include <algorithm>
#include <set>

#include "base/ascii.h"
#include "base/file_util.h"
#include "base/profile_text.h"
#include "import/frame/matching.h"
#include "ui/match_panel.h"

namespace nv {
namespace {

// The value as written: a text in double quotes keeps its blanks; nothing is "unpaired".
std::optional<std::string> SourceOfValue(std::string_view raw) {
  if (raw.empty()) return std::nullopt;
  if (raw.size() >= 2 && raw.front() == '"' && raw.back() == '"') {
    return std::string(raw.substr(1, raw.size() - 2));
  }
  return std::string(raw);
}

const RememberedMatch* FindRemembered(const RememberedMatches& remembered,
                                      std::string_view destination) {
  const std::string_view key = TrimBlanks(destination);
  for (const RememberedMatch& match : remembered) {
    if (EqualIgnoringCase(match.destination, key)) return &match;
  }
  return nullptr;
}

int SourceWithText(const std::vector<MatchItem>& sources, const std::string& text) {
  for (const MatchItem& item : sources) {
    if (item.text == text) return item.id;
  }
  return 0;
}

}  // namespace

std::string RememberedMatchesSection(std::string_view user, std::string_view kind,
                                     MatchPanelKind panel) {
  return "User " + std::string(user) +
         (panel == MatchPanelKind::kFields ? " Field Matches " : " Book Matches ") +
         std::string(kind);
}

RememberedMatches ParseRememberedMatches(std::string_view settings, std::string_view section) {
  const ProfileText text = ProfileText::Parse(settings);
  RememberedMatches remembered;
  for (const std::string& key : text.Keys(section)) {
    std::optional<std::string> raw = text.Find(section, key);
    if (!raw) continue;
    remembered.push_back({key, SourceOfValue(*raw)});
  }
  return remembered;
}

RememberedMatches ReadRememberedMatches(const std::string& path, std::string_view section) {
  std::optional<std::string> bytes = ReadFileBytes(path);
  if (!bytes) return {};
  return ParseRememberedMatches(*bytes, section);
}

bool WriteRememberedMatches(const std::string& path, std::string_view section,
                            const MatchPanel& panel) {
  bool missing = false;
  std::optional<std::string> bytes = ReadFileBytes(path, &missing);
  // A settings file that is there but cannot be read is never replaced.
  if (!bytes && !missing) return false;
  ProfileText text = ProfileText::Parse(bytes ? *bytes : "");
  static_cast<void>(text.RemoveSection(section));  // false only when there was none
  for (const mapIcon& item : panel.items()) {
    if (item.kind != mapIcon::Kind::kDestination) continue;
    const int source = panel.GetMatch(item.id);
    const std::string value = source == 0 ? "" : "\"" + panel.ItemText(source) + "\"";
    // Set refuses a text that cannot stand in the file; that destination is not kept.
    static_cast<void>(text.Set(section, TrimBlanks(item.text), value));
  }
  return WriteFileAtomically(path, text.Serialize());
}

std::vector<std::pair<int, int>> PresetWithRemembered(
    const RememberedMatches& remembered, const std::vector<MatchItem>& destinations,
    const std::vector<MatchItem>& sources, const std::vector<std::pair<int, int>>& standard) {
  std::vector<std::pair<int, int>> pairs;
  std::set<int> decided;  // destinations the memory settles
  std::set<int> sources_used;
  for (const MatchItem& destination : destinations) {
    const RememberedMatch* match = FindRemembered(remembered, destination.text);
    if (match == nullptr) continue;
    if (!match->source) {
      decided.insert(destination.id);
      continue;
    }
    const int source = SourceWithText(sources, *match->source);
    // A source this import does not have: the importer's own pre-set match stands.
    if (source == 0 || sources_used.contains(source)) continue;
    decided.insert(destination.id);
    sources_used.insert(source);
    pairs.emplace_back(destination.id, source);
  }
  for (const auto& [destination, source] : standard) {
    if (decided.contains(destination) || sources_used.contains(source)) continue;
    sources_used.insert(source);
    pairs.emplace_back(destination, source);
  }
  return pairs;
}

}  // namespace nv
