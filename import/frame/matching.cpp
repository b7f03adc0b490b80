#include "import/frame/matching.h"

#include "base/str_format.h"
#include "import/frame/remembered_matches.h"
#include "store/schedule/schedule_definitions.h"
#include "ui/match_panel.h"

namespace nv {
namespace {

constexpr size_t kUserFieldLabelWidth = 20;

// Where this user's matchings of the importer's product are remembered.
struct MatchMemory {
  std::string path;
  std::string section;

  MatchMemory(const ImportRun& run, MatchPanelKind kind)
      : path(InstallationSettingsPath(run.context())),
        section(RememberedMatchesSection(run.context().user_name, run.descriptor().kind, kind)) {}
};

// The items, and as pre-set matches the ones the person confirmed last time where there
// are some; Reset returns to the importer's own.
void AddItems(MatchPanel& panel, const MatchMemory& memory,
              const std::vector<MatchItem>& destinations, const std::vector<MatchItem>& sources,
              const std::vector<std::pair<int, int>>& preset) {
  for (const MatchItem& item : destinations) panel.AddDestination(item.id, item.text);
  for (const MatchItem& item : sources) panel.AddSource(item.id, item.text);
  const RememberedMatches remembered = ReadRememberedMatches(memory.path, memory.section);
  for (const auto& [destination, source] :
       PresetWithRemembered(remembered, destinations, sources, preset)) {
    panel.SetMatch(destination, source);
  }
  panel.SetStandardMatches(preset);
}

// Keeps what the person confirmed. A settings file that cannot be written costs only the
// convenience next time, so the import goes on.
void Remember(const MatchMemory& memory, const MatchPanel& panel) {
  static_cast<void>(WriteRememberedMatches(memory.path, memory.section, panel));
}

std::string WithInitials(const char* format) {
  return StrPrintf(format, kMakerInitials);
}

}  // namespace

bool MatchFields(ImportRun& run, const FieldMatching& matching) {
  MatchPanel panel(WithInitials("FAS to %s data field conversion"), WithInitials("%s Data Field"),
                   "FAS Data Field");
  const MatchMemory memory(run, MatchPanelKind::kFields);
  AddItems(panel, memory, matching.destinations, matching.sources, matching.preset);
  if (ExecuteMatchPanel(run.ui(), panel, false) != kMatchPanelOk) return false;
  Remember(memory, panel);
  ImportState& state = run.state();
  state.field_matches.clear();
  for (const MatchItem& item : matching.destinations) {
    state.field_matches[item.id] = panel.GetMatch(item.id);
  }
  for (size_t i = 0; i < matching.user_field_destinations.size() && i < kUserFieldCount; ++i) {
    const int destination = matching.user_field_destinations[i];
    const int source = destination == 0 ? 0 : panel.GetMatch(destination);
    std::string label = source == 0 ? "" : panel.ItemText(source);
    if (label.size() > kUserFieldLabelWidth) label.resize(kUserFieldLabelWidth);
    state.user_field_labels[i] = label;
  }
  return true;
}

bool MatchBooks(ImportRun& run, const BookMatching& matching) {
  MatchPanel panel(WithInitials("FAS to %s book conversion"), WithInitials("%s Schedule"),
                   "FAS Book");
  const MatchMemory memory(run, MatchPanelKind::kBooks);
  AddItems(panel, memory, matching.schedules, matching.books, matching.preset);
  if (ExecuteMatchPanel(run.ui(), panel, true) != kMatchPanelOk) return false;
  Remember(memory, panel);
  ImportState& state = run.state();
  state.book_matches.clear();
  for (size_t i = 0; i < matching.schedules.size() && i < matching.letters.size(); ++i) {
    const int book = panel.GetMatch(matching.schedules[i].id);
    if (book != 0) state.book_matches[book] = matching.letters[i];
  }
  return true;
}

}  // namespace nv
