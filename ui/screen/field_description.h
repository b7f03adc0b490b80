// One control of a data-entry screen. A screen is a table of these, built into controls
// at run time (gui/), ended by an entry of kind 0. The attribute text is a comma-separated
// list of keywords with optional arguments in parentheses, read with FindAttribute.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace nv {

enum FieldKind : int {
  kFieldEnd = 0,
  kFieldEdit = 2,
  kFieldButton = 4,
  kFieldGroup = 8,  // radio group, check-box group or titled box
  kFieldItem = 16,  // item of the group before it
  kFieldStatic = 32,
  kFieldCombo = 128,
  kFieldPanel = 256,
  kFieldList = 512,
  kFieldCustom = 1024,  // made by the field's own creator
};

// Flag bits of a field.
inline constexpr int kFieldStartsDisabled = 1 | 2;
inline constexpr int kFieldDisabledAfterCreation = 4;
inline constexpr int kFieldFontMask = 8 | 16;  // which of the screen's two fonts

struct FieldDescription;
using FieldTable = std::vector<FieldDescription>;

// Called with the screen's table, the field's index and the new text; false rejects it.
using FieldCheck = std::function<bool(FieldTable& table, size_t index, const std::string& text)>;
// Opens a list to choose a value; gives the field a picker button. Returns the chosen
// value, or nothing when the list was closed.
using FieldPicker = std::function<std::optional<std::string>(FieldTable& table, size_t index)>;

struct FieldDescription {
  int kind = kFieldEnd;
  int id = 0;
  int row = 0;     // lines
  int column = 0;  // characters
  int width = 0;   // characters; for edit fields also the default text limit
  // The value; the caption of static texts and items; the items of combo boxes, one per
  // line.
  std::string data;
  std::string attributes;
  FieldCheck check;
  FieldPicker picker;
  int flags = 0;
};

}  // namespace nv
