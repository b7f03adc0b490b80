// Finding fields in a screen's table, and taking a value into one the way a screen does,
// so that a window and an answers script change a field alike.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "ui/screen/field_description.h"

namespace nv {

// The number of fields before the end entry (kind 0), or all of them without one.
size_t FieldCount(const FieldTable& table);

// Table index of the field with identifier `id` (or with `name`, ignoring case) before the
// end entry; nothing when no field has it.
std::optional<size_t> FieldIndexOfId(const FieldTable& table, int id);
std::optional<size_t> FieldIndexOfName(const FieldTable& table, std::string_view name);

// Runs the field's check with `text` and, when it accepts (or there is none), writes the
// text into the field's data. False when the check refused it; the data is then as the
// check left it.
bool EnterFieldValue(FieldTable& table, size_t index, const std::string& text);

}  // namespace nv
