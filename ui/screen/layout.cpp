#include "ui/screen/layout.h"

#include <algorithm>
#include <optional>

#include "ui/screen/attributes.h"
#include "ui/screen/groups.h"

namespace nv {
namespace {

int Clamp(long long value) {
  return static_cast<int>(
      std::clamp<long long>(value, -kMaxScreenCoordinate, kMaxScreenCoordinate));
}

// Width and height in units of a group sized from its members.
long long GroupWidth(const FieldTable& table, size_t group, const ScreenMetrics& metrics) {
  int widest = 0;
  for (size_t member : GroupMembers(table, group)) widest = std::max(widest, table[member].width);
  return widest > 0 ? (widest + 1LL) * metrics.cw : 1LL * kGroupDefaultColumns * metrics.cw;
}

long long GroupHeight(const FieldTable& table, size_t group, const ScreenMetrics& metrics) {
  long long lines = std::max<size_t>(GroupMembers(table, group).size(), 1);
  return lines * metrics.lh + 1;
}

}  // namespace

ScreenRect FieldRect(const FieldTable& table, size_t index, const ScreenMetrics& metrics) {
  if (index >= table.size()) return ScreenRect();
  const FieldDescription& field = table[index];
  const std::string& a = field.attributes;

  long long x = 1LL * field.column * metrics.cw + NumberAttribute("xplus", a).value_or(0);
  if (HasAttribute("x-", a)) x -= metrics.cw / 2;
  long long y = 1LL * field.row * metrics.lh + NumberAttribute("yplus", a).value_or(0);
  if (HasAttribute("y-", a)) y -= metrics.lh / 2;

  std::optional<int> width_columns = NumberAttribute("width", a);
  long long width = (field.width + 1LL) * metrics.cw;
  if (width_columns) {
    width = 1LL * *width_columns * metrics.cw;
  } else if (field.kind == kFieldGroup) {
    width = GroupWidth(table, index, metrics);
  }
  width += NumberAttribute("wplus", a).value_or(0);

  std::optional<int> height_lines = NumberAttribute("height", a);
  long long height = metrics.lh + 1LL;
  if (height_lines) {
    height = 1LL * *height_lines * metrics.lh + 1;
  } else if (field.kind == kFieldButton) {
    height = metrics.lh * 3LL / 2;
  } else if (field.kind == kFieldGroup) {
    height = GroupHeight(table, index, metrics);
  }
  height += NumberAttribute("hplus", a).value_or(0);

  if (field.kind == kFieldButton) {
    if (std::optional<std::pair<int, int>> picture = NumberPairAttribute("bmp", a, ',')) {
      width = picture->first;
      height = picture->second;
    }
  }
  return ScreenRect{Clamp(x), Clamp(y), Clamp(std::max(width, 0LL)), Clamp(std::max(height, 0LL))};
}

bool HasSkipCheck(const FieldDescription& field) {
  return field.kind == kFieldEdit && HasAttribute("skipck", field.attributes);
}

ScreenRect SkipCheckRect(const ScreenRect& field, const ScreenMetrics& metrics) {
  long long x = field.x - 2LL * metrics.cw;
  long long y = field.y + (field.height - kSkipCheckSize) / 2;
  return ScreenRect{Clamp(x), Clamp(y), kSkipCheckSize, kSkipCheckSize};
}

bool HasPickerButton(const FieldDescription& field) {
  // "button" asks for the button without a picker of the field's own: it then offers the
  // field's help choices (see RunFieldHelp).
  return field.kind == kFieldEdit &&
         (static_cast<bool>(field.picker) || HasAttribute("button", field.attributes));
}

ScreenRect PickerButtonRect(const ScreenRect& field, const ScreenMetrics& metrics) {
  long long x = 1LL * field.x + field.width;
  return ScreenRect{Clamp(x), field.y, Clamp(2LL * metrics.cw + 1), field.height};
}

}  // namespace nv
