// Help of a field: h(LIST) gives its choices, one per line ("h(Yes\nNo\n)"), or, starting
// with "*", the name of a built-in picker ("h(*rangedate)"); a button's help is its
// msg(TEXT). Help shows the choices in a list to pick from, runs the named picker, shows
// the button's text, or says that there is none.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "base/ui.h"
#include "ui/screen/field_description.h"

namespace nv {

inline constexpr char kNoHelpText[] = "Help is not available for this field.";

struct FieldHelp {
  std::vector<std::string> choices;
  std::string picker;  // the name after "*", for example "rangedate"
  std::string text;    // a button's msg(TEXT)
  bool available() const { return !choices.empty() || !picker.empty() || !text.empty(); }
};

FieldHelp HelpOf(const FieldDescription& field);

// The built-in pickers a screen offers, by name ("rangedate").
using BuiltInPickers = std::map<std::string, FieldPicker, std::less<>>;

// Shows the help of the field at `index` through `ui`: a choice list of its choices, its
// built-in picker, a button's text in a message box, or "Help is not available for this
// field." (also for a picker that `pickers` does not have). Returns the value chosen, for the
// caller to check and write as if typed; nothing when none was.
std::optional<std::string> RunFieldHelp(FieldTable& table, size_t index, Ui& ui,
                                        const BuiltInPickers& pickers);

}  // namespace nv
