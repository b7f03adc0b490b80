// Moving between the fields of a screen, and the checks that leaving a field runs.
#pragma once

#include <functional>
#include <optional>

#include "ui/screen/field_description.h"

namespace nv {

// Keys that an edit field turns into moves: Enter and Tab go to the next field, Shift+Tab
// and Escape to the one before (Escape so that it never closes a screen from inside a
// field). Enter in a multiline field is a line break and no move.
enum class ScreenKey { kEnter, kEscape, kTab, kBacktab };
enum class FieldMove { kNone, kNext, kPrevious };
FieldMove MoveForKey(const FieldDescription& field, ScreenKey key);

// Whether a control can take the focus now (it exists, is enabled and shown).
using CanFocus = std::function<bool(size_t index)>;

// The field after (or before) `from` in table order that can take the focus, going round
// the table's end; nothing when no other field can.
std::optional<size_t> NextFocusField(const FieldTable& table, size_t from, FieldMove move,
                                     const CanFocus& can_focus);

// The field that has the focus when the screen opens: the first "key" field that can take
// it, or else the first field that can.
std::optional<size_t> InitialFocusField(const FieldTable& table, const CanFocus& can_focus);

// Whether the field at `index`, losing the focus to the control with identifier `to_id`
// (nothing: a control that is not part of the screen's table), runs its check now.
// "ckkillfocus" alone runs it on every loss; with group(a-b) only when the focus goes
// outside the identifiers a to b, or to a field earlier in the table. The field's own
// skipck box and picker button are part of the field. Fields without ckkillfocus never do:
// their check runs when their value changes.
bool RunsCheckOnFocusLoss(const FieldTable& table, size_t index, std::optional<int> to_id);

// The first "req" field whose data is blank; nothing when every one is filled in.
std::optional<size_t> FirstMissingRequired(const FieldTable& table);

// Whether the screen's enable-all and disable-all leave this field alone ("exception").
bool KeepsStateOnEnableAll(const FieldDescription& field);

}  // namespace nv
