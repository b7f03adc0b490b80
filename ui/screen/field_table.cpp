#include "ui/screen/field_table.h"

#include "base/ascii.h"

namespace nv {

size_t FieldCount(const FieldTable& table) {
  size_t count = 0;
  while (count < table.size() && table[count].kind != kFieldEnd) ++count;
  return count;
}

std::optional<size_t> FieldIndexOfId(const FieldTable& table, int id) {
  size_t count = FieldCount(table);
  for (size_t i = 0; i < count; ++i) {
    if (table[i].id == id) return i;
  }
  return std::nullopt;
}

std::optional<size_t> FieldIndexOfName(const FieldTable& table, std::string_view name) {
  if (name.empty()) return std::nullopt;
  size_t count = FieldCount(table);
  for (size_t i = 0; i < count; ++i) {
    if (EqualIgnoringCase(table[i].name, name)) return i;
  }
  return std::nullopt;
}

bool EnterFieldValue(FieldTable& table, size_t index, const std::string& text) {
  if (index >= table.size()) return false;
  // The check may look at the table and change other fields; it sees the old value in
  // this one.
  if (table[index].check && !table[index].check(table, index, text)) return false;
  table[index].data = text;
  return true;
}

}  // namespace nv
