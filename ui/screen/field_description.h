// One control of a data-entry screen. A screen is a table of these, built into controls
// at run time (gui/), ended by an entry of kind 0. The attribute text is a comma-separated
// list of keywords with optional arguments in parentheses, read with FindAttribute.
//
// The headers beside this one hold the rules: field_table.h (finding fields, entering a
// value), attributes.h (lookup), layout.h (positions and sizes), edit_field.h (text
// limit, input filter, display formats), groups.h (radio and check-box groups),
// list_controls.h (combo and list boxes), field_help.h (h(...)), navigation.h (moving
// between fields, ckkillfocus). gui/build_screen.h makes the controls.
//
// Keywords whose effect is ours to choose, and where each is carried out:
//
//   keyword         effect                                                carried by
//   exception       the screen's enable-all and disable-all leave the     KeepsStateOnEnableAll,
//                   field as it is                                        ScreenControls
//   x-, y-          the control moves half a column left, half a line up  FieldRect
//   key             the field has the focus when the screen opens         InitialFocusField
//   opaque(box)     a static text fills its rectangle with the window     BuildScreen
//                   colour; with "box" it also has a thin frame
//   clipped         a static text stays on one line, cut at its right     BuildScreen
//                   edge, instead of wrapping
//   req             the field must not be left blank; the screen's owner  FirstMissingRequired
//                   asks before it saves
//   button, BUTTON  one keyword (case ignored): an edit field gets the    HasPickerButton,
//                   picker button without a picker of its own; the        RunFieldHelp
//                   button offers the field's help choices
//   numeric         outside radio groups: an edit field takes only the    InputFilter
//                   characters of a number, unless chars(...) says more
//   display(ID)     outside groups too: after the field changes, the      DisplayTarget,
//                   field ID is shown again                               ScreenControls
//   kind 256        a panel: an empty sunken frame at the field's         BuildScreen
//                   rectangle, for the screen's owner to fill
#pragma once

#include <any>
#include <functional>
#include <optional>
#include <string>
#include <utility>
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
// Makes the control of a custom field (kind 1024). The logic knows no toolkit, so the
// parent window is given, and the new control returned, as the toolkit's own pointer type
// in a std::any (gui/: QWidget*). The builder places the control at the field's rectangle;
// an empty result leaves the field without a control.
using FieldCreator =
    std::function<std::any(const std::any& parent, FieldTable& table, size_t index)>;

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
  FieldCreator creator;  // kind 1024 only
  // The field's name in answers scripts and transcripts ("field NAME VALUE"); not shown.
  std::string name;
};

// A control of a table, filled member by member so that members added to the struct later
// keep their defaults.
inline FieldDescription MakeField(int kind, int id, int row, int column, int width,
                                  std::string data = {}, std::string attributes = {}) {
  FieldDescription f;
  f.kind = kind;
  f.id = id;
  f.row = row;
  f.column = column;
  f.width = width;
  f.data = std::move(data);
  f.attributes = std::move(attributes);
  return f;
}

}  // namespace nv
