// Combo boxes (kind 128) and list boxes (kind 512). The data of both holds their items,
// one per line; an empty last line is no item.
//
// Combo boxes are "dropdown" (a field with a list), "dropdownlist" (the list alone) or
// "simple"; with none of the three a combo box is a dropdownlist, so that a screen never
// takes a value its list does not offer unless it says so. Items are sorted (ignoring
// case, as the Windows list sorts) unless the field says "nosort". The list is as many
// lines high as the combo box has items plus 2, at most maxheight(n) and at least
// minheight(n) lines.
//
// List boxes keep their items in the given order; their height is height(n) lines, 1 when
// not given (the layout's rule).
#pragma once

#include <string>
#include <vector>

#include "ui/screen/field_description.h"

namespace nv {

enum class ComboStyle { kDropDown, kDropDownList, kSimple };

ComboStyle StyleOfCombo(const FieldDescription& field);

// The items as the control lists them.
std::vector<std::string> ControlItems(const FieldDescription& field);

// The height of a combo box's list in lines.
int ComboListLines(const FieldDescription& field);

}  // namespace nv
