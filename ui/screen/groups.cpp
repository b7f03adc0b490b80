#include "ui/screen/groups.h"

#include <algorithm>

#include "base/ascii.h"
#include "base/str_format.h"
#include "ui/screen/attributes.h"

namespace nv {

GroupStyle StyleOfGroup(const FieldDescription& group) {
  if (HasAttribute("radio", group.attributes)) return GroupStyle::kRadio;
  if (HasAttribute("checkbox", group.attributes)) return GroupStyle::kCheckBox;
  return GroupStyle::kTitledBox;
}

std::string GroupTitle(const FieldDescription& group) {
  for (const char* keyword : {"radio", "checkbox", "title"}) {
    if (std::optional<std::string> title = FindAttribute(keyword, group.attributes)) return *title;
  }
  return std::string();
}

std::vector<size_t> GroupMembers(const FieldTable& table, size_t group) {
  std::vector<size_t> members;
  if (group >= table.size() || table[group].kind != kFieldGroup) return members;
  for (size_t i = group + 1; i < table.size() && table[i].kind == kFieldItem; ++i) {
    if (!HasAttribute("nogroup", table[i].attributes)) members.push_back(i);
  }
  return members;
}

std::optional<size_t> GroupOfItem(const FieldTable& table, size_t item) {
  if (item >= table.size() || table[item].kind != kFieldItem ||
      HasAttribute("nogroup", table[item].attributes)) {
    return std::nullopt;
  }
  for (size_t i = item; i-- > 0;) {
    if (table[i].kind == kFieldGroup) return i;
    if (table[i].kind != kFieldItem) break;
  }
  return std::nullopt;
}

std::string ItemCaption(const FieldDescription& item) {
  return FindAttribute("caption", item.attributes).value_or(item.data);
}

std::string RadioChoiceData(const FieldTable& table, size_t group, size_t position) {
  std::vector<size_t> members = GroupMembers(table, group);
  if (position >= members.size()) return std::string();
  const FieldDescription& item = table[members[position]];
  if (HasAttribute("numeric", table[group].attributes) &&
      !HasAttribute("setcheck", item.attributes)) {
    // The width is a field width in characters; more than a screen line is a table error.
    int width = std::clamp(table[group].width, 0, 255);
    return StrPrintf("%*d", width, static_cast<int>(position) + 1);
  }
  return ItemCaption(item);
}

std::optional<size_t> ChosenRadioMember(const FieldTable& table, size_t group) {
  if (group >= table.size()) return std::nullopt;
  std::string_view data = TrimBlanks(table[group].data);
  if (data.empty()) return std::nullopt;
  size_t count = GroupMembers(table, group).size();
  for (size_t position = 0; position < count; ++position) {
    if (TrimBlanks(RadioChoiceData(table, group, position)) == data) return position;
  }
  return std::nullopt;
}

int CheckBoxMaximum(const FieldDescription& group) {
  return std::max(group.width, 0);
}

std::string CheckBoxMaximumText(int maximum) {
  return StrPrintf("A maximum of %d selection%s can be checked.", maximum, maximum == 1 ? "" : "s");
}

CheckBoxGroup::CheckBoxGroup(const FieldTable& table, size_t group) {
  if (group >= table.size()) return;
  maximum_ = CheckBoxMaximum(table[group]);
  const std::string& data = table[group].data;
  int ticks = 0;
  for (size_t index : GroupMembers(table, group)) {
    captions_.push_back(ItemCaption(table[index]));
    const std::string& caption = captions_.back();
    bool tick = !caption.empty() && data.find(caption.front()) != std::string::npos &&
                (maximum_ == 0 || ticks < maximum_);
    ticked_.push_back(tick);
    ticks += tick;
  }
}

bool CheckBoxGroup::Set(size_t position, bool tick, Ui& ui) {
  if (position >= ticked_.size()) return false;
  if (tick && !ticked_[position] && maximum_ > 0 &&
      std::count(ticked_.begin(), ticked_.end(), true) >= maximum_) {
    ui.Message(CheckBoxMaximumText(maximum_), "Note");
    return false;
  }
  ticked_[position] = tick;
  return tick;
}

std::string CheckBoxGroup::Data() const {
  std::string data;
  for (size_t i = 0; i < captions_.size(); ++i) {
    if (ticked_[i] && !captions_[i].empty()) data += captions_[i].front();
  }
  return data;
}

std::optional<int> DisplayTarget(const FieldDescription& field) {
  return NumberAttribute("display", field.attributes);
}

}  // namespace nv
