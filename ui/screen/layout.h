// Where each control of a screen goes. Positions and sizes are counted in the screen
// font's character width (cw) and line height (lh); the adjustments that keywords carry
// ("xplus(5)") are in units, which are pixels here.
//
//   x      column × cw, + xplus(n); "x-" moves it half a column left
//   y      row × lh, + yplus(n); "y-" moves it half a line up
//   width  (width + 1) × cw; width(n) makes it n × cw; + wplus(n)
//   height lh + 1, buttons 1.5 × lh; height(n) makes it n × lh + 1; + hplus(n)
//
// A group without width(n) is as wide as its widest member plus one column (40 columns
// when no member has a width); without height(n) it is as many lines high as it has
// members, at least one. Each of the two is decided on its own. A button with bmp(w,h) is
// w by h units, whatever else it says.
//
// An edit field with "skipck" gets a check box two columns left of it, and a field with a
// picker (or "button") a picker button just right of it; both have identifiers of their
// own (below).
#pragma once

#include "ui/screen/field_description.h"

namespace nv {

struct ScreenMetrics {
  int cw = 8;   // character width
  int lh = 16;  // line height
};

struct ScreenRect {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;
  bool operator==(const ScreenRect&) const = default;
};

inline constexpr int kSkipCheckIdOffset = 10000;
inline constexpr int kPickerButtonIdOffset = 20000;
inline constexpr int kSkipCheckSize = 13;  // units, both ways
inline constexpr int kGroupDefaultColumns = 40;

// The rectangle of the field at `index`. Coordinates are kept within ±kMaxScreenCoordinate
// whatever the table and its arguments say.
inline constexpr int kMaxScreenCoordinate = 1 << 20;
ScreenRect FieldRect(const FieldTable& table, size_t index, const ScreenMetrics& metrics);

bool HasSkipCheck(const FieldDescription& field);
// The skipck box beside a field whose rectangle is `field`: 13 by 13 units, two columns to
// its left, centred on its height.
ScreenRect SkipCheckRect(const ScreenRect& field, const ScreenMetrics& metrics);

bool HasPickerButton(const FieldDescription& field);
// The picker button of a field whose rectangle is `field`: right of it, 2 columns + 1 unit
// wide, as high as the field.
ScreenRect PickerButtonRect(const ScreenRect& field, const ScreenMetrics& metrics);

}  // namespace nv
