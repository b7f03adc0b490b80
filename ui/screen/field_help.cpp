#include "ui/screen/field_help.h"

#include "ui/screen/attributes.h"

namespace nv {

FieldHelp HelpOf(const FieldDescription& field) {
  FieldHelp help;
  if (field.kind == kFieldButton && !HasAttribute("h", field.attributes)) {
    help.text = FindAttribute("msg", field.attributes).value_or("");
    return help;
  }
  std::optional<std::string> text = FindAttribute("h", field.attributes);
  if (!text || text->empty()) return help;
  if (text->front() == '*') {
    help.picker = text->substr(1);
    return help;
  }
  size_t start = 0;
  while (start < text->size()) {
    size_t end = text->find('\n', start);
    if (end == std::string::npos) end = text->size();
    help.choices.push_back(text->substr(start, end - start));
    start = end + 1;
  }
  return help;
}

std::optional<std::string> RunFieldHelp(FieldTable& table, size_t index, Ui& ui,
                                        const BuiltInPickers& pickers) {
  if (index >= table.size()) return std::nullopt;
  FieldHelp help = HelpOf(table[index]);
  if (!help.picker.empty()) {
    auto picker = pickers.find(help.picker);
    if (picker != pickers.end() && picker->second) return picker->second(table, index);
  } else if (!help.choices.empty()) {
    ChoiceListRequest request;
    request.title = "Help";
    request.message = "Values for this field:";
    for (const std::string& choice : help.choices) request.options.push_back({choice, -1});
    int chosen = ui.ChoiceList(request);
    if (chosen < 0 || static_cast<size_t>(chosen) >= help.choices.size()) return std::nullopt;
    return help.choices[static_cast<size_t>(chosen)];
  } else if (!help.text.empty()) {
    ui.Message(help.text);
    return std::nullopt;
  }
  ui.Message(kNoHelpText);
  return std::nullopt;
}

}  // namespace nv
