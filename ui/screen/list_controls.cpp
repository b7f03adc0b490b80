#include "ui/screen/list_controls.h"

#include <algorithm>
#include <optional>

#include "base/ascii.h"
#include "ui/screen/attributes.h"

namespace nv {

ComboStyle StyleOfCombo(const FieldDescription& field) {
  if (HasAttribute("dropdown", field.attributes)) return ComboStyle::kDropDown;
  if (HasAttribute("simple", field.attributes)) return ComboStyle::kSimple;
  return ComboStyle::kDropDownList;
}

std::vector<std::string> ControlItems(const FieldDescription& field) {
  std::vector<std::string> items;
  size_t start = 0;
  while (start < field.data.size()) {
    size_t end = field.data.find('\n', start);
    if (end == std::string::npos) end = field.data.size();
    items.push_back(field.data.substr(start, end - start));
    start = end + 1;
  }
  if (field.kind == kFieldCombo && !HasAttribute("nosort", field.attributes)) {
    std::stable_sort(items.begin(), items.end(), [](const std::string& a, const std::string& b) {
      return AsciiUpper(a) < AsciiUpper(b);
    });
  }
  return items;
}

int ComboListLines(const FieldDescription& field) {
  long long lines = static_cast<long long>(ControlItems(field).size()) + 2;
  if (std::optional<int> most = NumberAttribute("maxheight", field.attributes)) {
    lines = std::min<long long>(lines, *most);
  }
  if (std::optional<int> least = NumberAttribute("minheight", field.attributes)) {
    lines = std::max<long long>(lines, *least);
  }
  return static_cast<int>(std::clamp<long long>(lines, 0, kMaxAttributeNumber));
}

}  // namespace nv
