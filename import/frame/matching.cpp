#include "import/frame/matching.h"

#include "base/str_format.h"
#include "ui/match_panel.h"

namespace nv {
namespace {

constexpr size_t kUserFieldLabelWidth = 20;

void AddItems(MatchPanel& panel, const std::vector<MatchItem>& destinations,
              const std::vector<MatchItem>& sources,
              const std::vector<std::pair<int, int>>& preset) {
  for (const MatchItem& item : destinations) panel.AddDestination(item.id, item.text);
  for (const MatchItem& item : sources) panel.AddSource(item.id, item.text);
  for (const auto& [destination, source] : preset) panel.SetMatch(destination, source);
}

std::string WithInitials(const char* format) {
  return StrPrintf(format, kMakerInitials);
}

}  // namespace

bool MatchFields(ImportRun& run, const FieldMatching& matching) {
  MatchPanel panel(WithInitials("FAS to %s data field conversion"), WithInitials("%s Data Field"),
                   "FAS Data Field");
  AddItems(panel, matching.destinations, matching.sources, matching.preset);
  if (ExecuteMatchPanel(run.ui(), panel, false) != kMatchPanelOk) return false;
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
  AddItems(panel, matching.schedules, matching.books, matching.preset);
  if (ExecuteMatchPanel(run.ui(), panel, true) != kMatchPanelOk) return false;
  ImportState& state = run.state();
  state.book_matches.clear();
  for (size_t i = 0; i < matching.schedules.size() && i < matching.letters.size(); ++i) {
    const int book = panel.GetMatch(matching.schedules[i].id);
    if (book != 0) state.book_matches[book] = matching.letters[i];
  }
  return true;
}

}  // namespace nv
