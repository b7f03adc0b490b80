#include "ui/match_panel.h"

#include <algorithm>
#include <utility>

#include "base/ui.h"

namespace nv {

const mapIcon* FindDropTarget(const std::vector<mapIcon>& items, const MapRect& area) {
  for (const mapIcon& item : items) {
    if (item.kind == mapIcon::Kind::kDestination && item.rect().Meets(area)) return &item;
  }
  return nullptr;
}

MatchPanel::MatchPanel(std::string caption, std::string destination_heading,
                       std::string source_heading, int style, MatchScreen screen)
    : caption_(std::move(caption)),
      destination_heading_(destination_heading.empty() ? kDefaultDestinationHeading
                                                       : std::move(destination_heading)),
      source_heading_(source_heading.empty() ? kDefaultSourceHeading : std::move(source_heading)),
      style_(style),
      screen_(screen) {
  Relayout();
}

void MatchPanel::SetScreen(MatchScreen screen) {
  screen_ = screen;
  Relayout();
}

// The height only grows with the rows; laying out again from the items gives the same
// panel as growing it item by item did.
void MatchPanel::Relayout() {
  int height = kStartHeight;
  for (const mapIcon& item : items_) {
    height = std::max(height, screen_.caption_height + (item.row + 1) * mapIcon::kRowStep + 75);
  }
  frame_.width = kWidth;
  frame_.height = height;
  frame_.x = (screen_.width - kWidth) / 2;
  frame_.y = std::max(0, (screen_.height - height) / 2);
}

MapRect MatchPanel::ok_button() const {
  return {kWidth - 80, 75, kButtonWidth, kButtonHeight};
}

MapRect MatchPanel::cancel_button() const {
  return {kWidth - 80, 98, kButtonWidth, kButtonHeight};
}

MapRect MatchPanel::reset_button() const {
  return {kWidth - 80, 121, kButtonWidth, kButtonHeight};
}

bool MatchPanel::AddSource(int id, std::string_view text) {
  return Add(id, text, mapIcon::Kind::kSource);
}

bool MatchPanel::AddDestination(int id, std::string_view text) {
  return Add(id, text, mapIcon::Kind::kDestination);
}

bool MatchPanel::Add(int id, std::string_view text, mapIcon::Kind kind) {
  if (id < 1 || Find(id)) return false;
  mapIcon item;
  item.id = id;
  item.text = std::string(text);
  item.kind = kind;
  item.column = kind == mapIcon::Kind::kDestination ? 0 : 1;
  item.row = rows_[item.column]++;
  item.x = item.home_x();
  item.y = item.home_y();
  // A drag in progress holds an index into the list, which stays valid: items are only
  // ever appended.
  items_.push_back(std::move(item));
  Relayout();
  return true;
}

const mapIcon* MatchPanel::Find(int id) const {
  if (id == 0) return nullptr;
  auto found =
      std::find_if(items_.begin(), items_.end(), [id](const mapIcon& i) { return i.id == id; });
  return found == items_.end() ? nullptr : &*found;
}

mapIcon* MatchPanel::FindMutable(int id) {
  return const_cast<mapIcon*>(std::as_const(*this).Find(id));
}

std::string MatchPanel::ItemText(int id) const {
  const mapIcon* item = Find(id);
  return item ? item->text : std::string();
}

void MatchPanel::SendHome(mapIcon& source) {
  if (mapIcon* destination = FindMutable(source.matched_id)) destination->matched_id = 0;
  source.matched_id = 0;
  source.dragging = false;
  source.x = source.home_x();
  source.y = source.home_y();
}

void MatchPanel::Pair(mapIcon& destination, mapIcon& source) {
  if (destination.matched_id == source.id) {
    source.x = destination.x + mapIcon::kWidth;
    source.y = destination.y;
    return;
  }
  if (mapIcon* previous = FindMutable(destination.matched_id)) SendHome(*previous);
  if (source.matched_id != 0) SendHome(source);
  destination.matched_id = source.id;
  source.matched_id = destination.id;
  source.x = destination.x + mapIcon::kWidth;
  source.y = destination.y;
}

bool MatchPanel::SetMatch(int destination_id, int source_id) {
  mapIcon* destination = FindMutable(destination_id);
  mapIcon* source = FindMutable(source_id);
  if (!destination || destination->kind != mapIcon::Kind::kDestination) return false;
  if (!source || source->kind != mapIcon::Kind::kSource) return false;
  if (source->dragging) drag_index_ = -1;
  source->dragging = false;
  Pair(*destination, *source);
  return true;
}

bool MatchPanel::ClearMatch(int destination_id) {
  mapIcon* destination = FindMutable(destination_id);
  if (!destination || destination->kind != mapIcon::Kind::kDestination) return false;
  if (mapIcon* source = FindMutable(destination->matched_id)) SendHome(*source);
  return true;
}

int MatchPanel::GetMatch(int destination_id) const {
  const mapIcon* destination = Find(destination_id);
  if (!destination || destination->kind != mapIcon::Kind::kDestination) return 0;
  return destination->matched_id;
}

bool MatchPanel::AllDestinationsMatched() const {
  return std::all_of(items_.begin(), items_.end(), [](const mapIcon& i) {
    return i.kind != mapIcon::Kind::kDestination || i.matched_id != 0;
  });
}

std::vector<std::pair<int, int>> MatchPanel::Matches() const {
  std::vector<std::pair<int, int>> pairs;
  for (const mapIcon& item : items_) {
    if (item.kind == mapIcon::Kind::kDestination && item.matched_id != 0)
      pairs.emplace_back(item.id, item.matched_id);
  }
  return pairs;
}

const mapIcon* MatchPanel::dragged() const {
  return drag_index_ < 0 ? nullptr : &items_[static_cast<size_t>(drag_index_)];
}

bool MatchPanel::Press(int x, int y) {
  if (drag_index_ >= 0) SendHome(items_[static_cast<size_t>(drag_index_)]);
  drag_index_ = -1;
  for (size_t i = 0; i < items_.size(); ++i) {
    mapIcon& item = items_[i];
    if (item.kind != mapIcon::Kind::kSource || !item.rect().Contains(x, y)) continue;
    if (mapIcon* destination = FindMutable(item.matched_id)) destination->matched_id = 0;
    item.matched_id = 0;
    item.dragging = true;
    drag_index_ = static_cast<int>(i);
    grab_dx_ = x - item.x;
    grab_dy_ = y - item.y;
    return true;
  }
  return false;
}

void MatchPanel::Move(int x, int y) {
  if (drag_index_ < 0) return;
  mapIcon& item = items_[static_cast<size_t>(drag_index_)];
  item.x = x - grab_dx_;
  item.y = y - grab_dy_;
}

std::optional<MapRect> MatchPanel::DropArea() const {
  const mapIcon* item = dragged();
  if (!item) return std::nullopt;
  const int middle = item->y + mapIcon::kHeight / 2;
  return MapRect{item->x - kDropReach, middle - kDropBand / 2, mapIcon::kWidth + kDropReach,
                 kDropBand};
}

int MatchPanel::Release(int x, int y) {
  if (drag_index_ < 0) return 0;
  Move(x, y);
  const MapRect area = *DropArea();
  mapIcon& item = items_[static_cast<size_t>(drag_index_)];
  drag_index_ = -1;
  item.dragging = false;
  const mapIcon* target = FindDropTarget(items_, area);
  if (!target) {
    SendHome(item);
    return 0;
  }
  Pair(*FindMutable(target->id), item);
  return target->id;
}

void MatchPanel::BeginRun() {
  if (drag_index_ >= 0) SendHome(items_[static_cast<size_t>(drag_index_)]);
  drag_index_ = -1;
  if (ran_) return;
  ran_ = true;
  preset_ = Matches();
}

void MatchPanel::ResetToPresetMatches() {
  if (drag_index_ >= 0) SendHome(items_[static_cast<size_t>(drag_index_)]);
  drag_index_ = -1;
  if (!ran_) return;  // before the panel opens, the pairs in place are the pre-set ones
  for (mapIcon& item : items_) {
    if (item.kind == mapIcon::Kind::kSource) SendHome(item);
  }
  // Both ids of every kept pair are still items: items are never removed.
  for (const auto& [destination, source] : preset_) SetMatch(destination, source);
}

void MatchPanel::SetStandardMatches(std::vector<std::pair<int, int>> pairs) {
  standard_ = std::move(pairs);
}

void MatchPanel::ResetToStandardMatches() {
  if (!standard_) {
    ResetToPresetMatches();
    return;
  }
  if (drag_index_ >= 0) SendHome(items_[static_cast<size_t>(drag_index_)]);
  drag_index_ = -1;
  for (mapIcon& item : items_) {
    if (item.kind == mapIcon::Kind::kSource) SendHome(item);
  }
  // A pair naming an item the panel lacks changes nothing (SetMatch refuses it).
  for (const auto& [destination, source] : *standard_) SetMatch(destination, source);
}

int ExecuteMatchPanel(Ui& ui, MatchPanel& panel, bool every_destination_paired) {
  for (;;) {
    if (ui.RunMatchPanel(panel) != kMatchPanelOk) return kMatchPanelCancel;
    if (!every_destination_paired || panel.AllDestinationsMatched()) return kMatchPanelOk;
    ui.Message(kUnmatchedDestinationsMessage, "Error");
  }
}

}  // namespace nv
