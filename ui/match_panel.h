// The matching panel (mapWindow) as a model: the items of its two columns, the pairs
// between them and every rule in pixels, without a window. The importers pair source
// items (a FAS book, a source data field) with destination items (a schedule, one of our
// fields) through it; the Qt view (gui/match_panel_widget.h) paints the model and turns
// the mouse into Press, Move and Release, and ScriptedUi pairs through SetMatch.
//
// Geometry, in pixels of the panel's client area unless said otherwise:
//
//   item (mapIcon)        125 x 20, home x = 25 + column * 312, y = 75 + row * 23
//                         (column 0 destinations, 1 sources; row in the order added)
//   paired source         right beside its destination: x = destination x + 125, same y
//   OK (id 1), Cancel (2) 70 x 20 at x = panel width - 80, y = 75 and y = 98
//   Reset                 70 x 20 under Cancel, y = 121
//   panel (on screen)     600 wide, centred horizontally; 200 high at first, raised by
//                         each added item to caption height + (row + 1) * 23 + 75 when
//                         that is more, and centred vertically, never above the screen
//   drop area             the dragged item with its left edge 60 further left, cut to
//                         a band 4 high around its vertical middle
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nv {

class Ui;

inline constexpr char kDefaultDestinationHeading[] = "Destination Items";
inline constexpr char kDefaultSourceHeading[] = "Source Items";
inline constexpr char kUnmatchedDestinationsMessage[] =
    "All items in the left column must have matches.";

// Results of running the panel: the ids of its buttons.
inline constexpr int kMatchPanelOk = 1;
inline constexpr int kMatchPanelCancel = 2;

// A rectangle with Windows' rule: left and top inside, right and bottom outside.
struct MapRect {
  int x = 0, y = 0, width = 0, height = 0;

  int right() const { return x + width; }
  int bottom() const { return y + height; }
  bool Contains(int px, int py) const {
    return px >= x && px < right() && py >= y && py < bottom();
  }
  // True when the two share at least one pixel.
  bool Meets(const MapRect& other) const {
    return x < other.right() && other.x < right() && y < other.bottom() && other.y < bottom();
  }
  bool operator==(const MapRect&) const = default;
};

// One item of the panel.
struct mapIcon {
  enum class Kind { kDestination = 1, kSource = 2 };

  static constexpr int kWidth = 125, kHeight = 20;
  static constexpr int kHomeX = 25, kHomeY = 75, kRowStep = 23;
  static constexpr int kColumnStep = 625 / 2;  // 312
  static_assert(kColumnStep == 312);

  int id = 0;
  std::string text;
  Kind kind = Kind::kDestination;
  int row = 0;
  int column = 0;
  int matched_id = 0;  // the paired item of the other kind, 0 when unpaired
  bool dragging = false;
  int x = 0, y = 0;  // where it stands now

  int home_x() const { return kHomeX + column * kColumnStep; }
  int home_y() const { return kHomeY + row * kRowStep; }
  MapRect rect() const { return {x, y, kWidth, kHeight}; }
};

// The screen the panel is laid out for. The Qt view sets the real one before showing it.
struct MatchScreen {
  int width = 1024;
  int height = 768;
  int caption_height = 23;  // the window's caption bar, counted in the panel's height
};

// The first destination, in the order added, whose rectangle meets `area`; nullptr when
// none does.
const mapIcon* FindDropTarget(const std::vector<mapIcon>& items, const MapRect& area);

class MatchPanel {
 public:
  static constexpr int kWidth = 600;
  static constexpr int kStartHeight = 200;
  static constexpr int kButtonWidth = 70, kButtonHeight = 20;
  static constexpr int kDropReach = 60;  // the drop area reaches this far left
  static constexpr int kDropBand = 4;    // and is this high

  // Empty headings become "Destination Items" and "Source Items". `style` selects how the
  // items are drawn; every caller passes 3.
  MatchPanel(std::string caption, std::string destination_heading, std::string source_heading,
             int style = 3, MatchScreen screen = {});

  const std::string& caption() const { return caption_; }
  const std::string& destination_heading() const { return destination_heading_; }
  const std::string& source_heading() const { return source_heading_; }
  int style() const { return style_; }

  // Lays the panel out again for another screen; the items keep their places.
  void SetScreen(MatchScreen screen);
  const MatchScreen& screen() const { return screen_; }
  // The panel's window on the screen, caption included.
  const MapRect& frame() const { return frame_; }
  MapRect ok_button() const;
  MapRect cancel_button() const;
  MapRect reset_button() const;

  // Adds an item at the end of its column. An id below 1 or one already used adds nothing
  // and gives false: 0 stands for "unpaired" and every id names one item.
  bool AddSource(int id, std::string_view text);
  bool AddDestination(int id, std::string_view text);

  // Pairs a destination with a source as a drop does: the destination's previous source
  // goes home unpaired, and the source leaves its previous destination. False, and nothing
  // changes, unless `destination_id` names a destination and `source_id` a source.
  bool SetMatch(int destination_id, int source_id);
  // Unpairs a destination (its source goes home). False when it names no destination.
  bool ClearMatch(int destination_id);
  // The source paired with a destination, or 0 (also for an id that is no destination).
  int GetMatch(int destination_id) const;
  bool AllDestinationsMatched() const;

  // The item of an id, or nullptr.
  const mapIcon* Find(int id) const;
  // The text of the item of an id; empty for an unknown id.
  std::string ItemText(int id) const;
  // Every item in the order added, with its current place.
  const std::vector<mapIcon>& items() const { return items_; }

  // The mouse, in client coordinates. Press on a source item unpairs it and starts
  // dragging it (true); anywhere else nothing happens (false). Move carries a dragged item
  // along. Release drops it: onto the first destination its drop area meets, or, when it
  // meets none, back home unpaired, so that a loose item never hides another. Release
  // gives the destination it was paired with, or 0.
  bool Press(int x, int y);
  void Move(int x, int y);
  int Release(int x, int y);
  // The item being dragged, or nullptr.
  const mapIcon* dragged() const;
  // Where a drop would look for a destination if the dragged item were released now.
  std::optional<MapRect> DropArea() const;

  // Every Ui calls this when the panel opens. The first time, the pairs placed so far are
  // kept as the pre-set matches; every time, a drag left over is dropped home.
  void BeginRun();
  // Back to the pre-set matches (or those in place now, before the panel first opened).
  void ResetToPresetMatches();
  // The importer's own pre-set matches, when the panel opens with others (the ones a
  // person confirmed last time): what Reset returns to. Without them Reset returns to the
  // pre-set matches.
  void SetStandardMatches(std::vector<std::pair<int, int>> pairs);
  // Reset: every source home, then the standard matches placed.
  void ResetToStandardMatches();
  // The pre-set matches as (destination, source) pairs.
  const std::vector<std::pair<int, int>>& preset_matches() const { return preset_; }
  // The pairs in force, by destination in the order added.
  std::vector<std::pair<int, int>> Matches() const;

 private:
  bool Add(int id, std::string_view text, mapIcon::Kind kind);
  mapIcon* FindMutable(int id);
  // Puts a source home, unpairing it and its destination.
  void SendHome(mapIcon& source);
  void Pair(mapIcon& destination, mapIcon& source);
  void Relayout();

  std::string caption_;
  std::string destination_heading_;
  std::string source_heading_;
  int style_;
  MatchScreen screen_;
  MapRect frame_;
  std::vector<mapIcon> items_;
  int rows_[2] = {0, 0};  // items per column
  int drag_index_ = -1;
  int grab_dx_ = 0, grab_dy_ = 0;  // where in the dragged item the mouse holds it
  bool ran_ = false;
  std::vector<std::pair<int, int>> preset_;
  std::optional<std::vector<std::pair<int, int>>> standard_;
};

// Runs the panel through the Ui. With `every_destination_paired`, an OK that leaves a
// destination unpaired shows "All items in the left column must have matches." (title
// "Error") and runs the panel again, until every destination is paired or the user
// cancels. Returns kMatchPanelOk or kMatchPanelCancel.
[[nodiscard]] int ExecuteMatchPanel(Ui& ui, MatchPanel& panel, bool every_destination_paired);

}  // namespace nv
