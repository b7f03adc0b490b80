#include "ui/screen/navigation.h"

#include "base/ascii.h"
#include "ui/screen/attributes.h"
#include "ui/screen/field_table.h"
#include "ui/screen/layout.h"

namespace nv {
FieldMove MoveForKey(const FieldDescription& field, ScreenKey key) {
  switch (key) {
    case ScreenKey::kEnter:
      return HasAttribute("multiline", field.attributes) ? FieldMove::kNone : FieldMove::kNext;
    case ScreenKey::kTab:
      return FieldMove::kNext;
    case ScreenKey::kEscape:
    case ScreenKey::kBacktab:
      return FieldMove::kPrevious;
  }
  return FieldMove::kNone;
}

std::optional<size_t> NextFocusField(const FieldTable& table, size_t from, FieldMove move,
                                     const CanFocus& can_focus) {
  size_t count = FieldCount(table);
  if (move == FieldMove::kNone || count == 0 || from >= count) return std::nullopt;
  size_t index = from;
  for (size_t step = 1; step < count; ++step) {
    index = move == FieldMove::kNext ? (index + 1) % count : (index + count - 1) % count;
    if (can_focus(index)) return index;
  }
  return std::nullopt;
}

std::optional<size_t> InitialFocusField(const FieldTable& table, const CanFocus& can_focus) {
  size_t count = FieldCount(table);
  for (size_t i = 0; i < count; ++i) {
    if (HasAttribute("key", table[i].attributes) && can_focus(i)) return i;
  }
  for (size_t i = 0; i < count; ++i) {
    if (can_focus(i)) return i;
  }
  return std::nullopt;
}

bool RunsCheckOnFocusLoss(const FieldTable& table, size_t index, std::optional<int> to_id) {
  if (index >= table.size()) return false;
  const FieldDescription& field = table[index];
  if (!HasAttribute("ckkillfocus", field.attributes)) return false;
  if (to_id && (*to_id == field.id + static_cast<long long>(kSkipCheckIdOffset) ||
                *to_id == field.id + static_cast<long long>(kPickerButtonIdOffset))) {
    return false;
  }
  std::optional<std::pair<int, int>> range = NumberPairAttribute("group", field.attributes, '-');
  if (!range) return true;
  if (!to_id || *to_id < range->first || *to_id > range->second) return true;
  std::optional<size_t> to_index = FieldIndexOfId(table, *to_id);
  return to_index && *to_index < index;
}

std::optional<size_t> FirstMissingRequired(const FieldTable& table) {
  size_t count = FieldCount(table);
  for (size_t i = 0; i < count; ++i) {
    if (HasAttribute("req", table[i].attributes) && TrimBlanks(table[i].data).empty()) return i;
  }
  return std::nullopt;
}

bool KeepsStateOnEnableAll(const FieldDescription& field) {
  return HasAttribute("exception", field.attributes);
}

}  // namespace nv
