// Groups of a screen (kind 8) and their items (kind 16). A group is a radio group
// ("radio(Title)"), a check-box group ("checkbox(Title)") or a plain titled box
// ("title(Text)"). Its members are the items that follow it in the table, up to the first
// field of another kind; an item with "nogroup" stands outside the group before it.
//
// The group's data holds the members' state:
// - radio: the chosen member's caption; with "numeric" its number (1 for the first member)
//   written "%*d" in the group's width, except for a member with "setcheck", which writes
//   its caption all the same;
// - check box: the first character of each ticked member's caption, in member order, at
//   most the group's width of them. Ticking one more is refused with a note.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/ui.h"
#include "ui/screen/field_description.h"

namespace nv {

enum class GroupStyle { kTitledBox, kRadio, kCheckBox };

GroupStyle StyleOfGroup(const FieldDescription& group);
// The text shown on the group's frame (the argument of radio, checkbox or title).
std::string GroupTitle(const FieldDescription& group);

// Table indexes of the group's members, in order.
std::vector<size_t> GroupMembers(const FieldTable& table, size_t group);
// The group an item belongs to; nothing for an item that stands on its own.
std::optional<size_t> GroupOfItem(const FieldTable& table, size_t item);

// An item's caption: its "caption" argument, or else its data.
std::string ItemCaption(const FieldDescription& item);

// What the radio group's data becomes when its member at `position` is chosen.
std::string RadioChoiceData(const FieldTable& table, size_t group, size_t position);
// The member whose choice the group's data shows (blanks around either side ignored).
std::optional<size_t> ChosenRadioMember(const FieldTable& table, size_t group);

// The most members a check-box group lets be ticked: its width; 0 for no limit (a group of
// width 0 or less).
int CheckBoxMaximum(const FieldDescription& group);
// "A maximum of 2 selections can be checked."
std::string CheckBoxMaximumText(int maximum);

// The ticks of one check-box group while the screen shows it.
class CheckBoxGroup {
 public:
  // Ticks the members whose first caption character is in the group's data, in member
  // order up to the maximum.
  CheckBoxGroup(const FieldTable& table, size_t group);

  size_t size() const { return captions_.size(); }
  bool ticked(size_t position) const { return ticked_[position]; }
  int maximum() const { return maximum_; }

  // Ticks or clears the member at `position`. A tick past the maximum shows the note
  // through `ui` and leaves the member clear. Returns the member's state afterwards.
  bool Set(size_t position, bool tick, Ui& ui);

  // The group's data for the ticks as they stand.
  std::string Data() const;

 private:
  std::vector<std::string> captions_;
  std::vector<bool> ticked_;
  int maximum_ = 0;
};

// The identifier named by "display(ID)": the field shown again after this one changes.
std::optional<int> DisplayTarget(const FieldDescription& field);

}  // namespace nv
