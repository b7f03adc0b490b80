// Treats the input as the attribute text of every kind of screen field (and as a field's
// value): every lookup, layout and rule must come back without trouble, arguments must be
// pieces of the text, and rectangles must stay within the screen's range.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "ui/screen/attributes.h"
#include "ui/screen/edit_field.h"
#include "ui/screen/field_help.h"
#include "ui/screen/groups.h"
#include "ui/screen/layout.h"
#include "ui/screen/list_controls.h"
#include "ui/screen/navigation.h"
#include "ui/scripted_ui.h"

namespace {

void Check(bool ok) {
  if (!ok) __builtin_trap();
}

constexpr const char* kKeywords[] = {
    "upr",   "chars",   "h",       "xplus",   "yplus",     "x-",        "y-",    "width",
    "wplus", "height",  "hplus",   "maxlen",  "bmp",       "group",     "radio", "checkbox",
    "title", "caption", "nogroup", "display", "maxheight", "minheight", "float", "dollar",
};

void CheckRect(const nv::ScreenRect& rect) {
  Check(rect.x >= -nv::kMaxScreenCoordinate && rect.x <= nv::kMaxScreenCoordinate);
  Check(rect.y >= -nv::kMaxScreenCoordinate && rect.y <= nv::kMaxScreenCoordinate);
  Check(rect.width >= 0 && rect.width <= nv::kMaxScreenCoordinate);
  Check(rect.height >= 0 && rect.height <= nv::kMaxScreenCoordinate);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string_view text(reinterpret_cast<const char*>(data), size);
  for (const char* keyword : kKeywords) {
    if (std::optional<std::string> argument = nv::FindAttribute(keyword, text)) {
      Check(text.find(*argument) != std::string_view::npos);
    }
  }
  // A keyword from the text itself: its first item up to "(" or ",".
  std::string_view own = text.substr(0, text.find_first_of("(,"));
  static_cast<void>(nv::FindAttribute(own, text));

  nv::FieldTable table;
  for (int kind : {nv::kFieldGroup, nv::kFieldEdit, nv::kFieldItem, nv::kFieldButton,
                   nv::kFieldCombo, nv::kFieldList, nv::kFieldItem}) {
    nv::FieldDescription field;
    field.kind = kind;
    field.id = static_cast<int>(100 + table.size());
    field.row = static_cast<int>(size % 40);
    field.column = static_cast<int>(size % 80) - 10;
    field.width = static_cast<int>(size % 300) - 5;
    field.data = std::string(text);
    field.attributes = std::string(text);
    table.push_back(field);
  }
  table.push_back(nv::FieldDescription{});

  nv::ScriptedUi ui(nv::AnswerScript{});
  for (size_t i = 0; i < table.size(); ++i) {
    nv::ScreenRect rect = nv::FieldRect(table, i, nv::ScreenMetrics{7, 20});
    CheckRect(rect);
    CheckRect(nv::SkipCheckRect(rect, nv::ScreenMetrics{7, 20}));
    CheckRect(nv::PickerButtonRect(rect, nv::ScreenMetrics{7, 20}));
    static_cast<void>(nv::TextLimit(table[i]));
    static_cast<void>(nv::FormatForDisplay(table[i]));
    static_cast<void>(nv::ControlItems(table[i]));
    static_cast<void>(nv::ComboListLines(table[i]));
    static_cast<void>(nv::RunsCheckOnFocusLoss(table, i, 100 + static_cast<int>(size % 8)));
    static_cast<void>(nv::RunFieldHelp(table, i, ui, {}));
  }

  nv::InputFilter filter(text);
  if (std::optional<std::string> filtered = filter.FilterText(text)) {
    Check(filtered->size() == text.size());
    Check(filter.FilterText(*filtered) == filtered);  // filtering twice changes nothing
  }

  nv::CheckBoxGroup group(table, 0);
  for (size_t i = 0; i < group.size(); ++i) static_cast<void>(group.Set(i, true, ui));
  int maximum = group.maximum();
  Check(maximum == 0 || group.Data().size() <= static_cast<size_t>(maximum));
  static_cast<void>(nv::RadioChoiceData(table, 0, 0));
  static_cast<void>(nv::ChosenRadioMember(table, 0));
  return 0;
}
