#include "import/bna/field_value.h"

#include <algorithm>

namespace nv {
namespace {

std::string WithoutEnclosingQuotes(std::string text) {
  if (text.size() > 1 && text.front() == '"' && text.back() == '"') {
    text.pop_back();
    text.erase(0, 1);
  }
  return text;
}

std::optional<std::string> ColumnValue(const ConversionDefinition& d, const ColumnClass& columns) {
  std::optional<std::string_view> text = columns.Column(d.column);
  if (!text) return std::nullopt;
  size_t n = static_cast<size_t>(std::max(d.number, 0));
  switch (d.method) {
    case ConversionMethod::kEntire:
      return std::string(*text);
    case ConversionMethod::kRight:
      return std::string(text->substr(text->size() - std::min(n, text->size())));
    case ConversionMethod::kLeft:
      return std::string(text->substr(0, n));
    case ConversionMethod::kMid: {
      int32_t count = ProfileInteger(d.text.value_or(std::string()));
      if (d.number < 1 || count < 1 || text->size() < n) return std::nullopt;
      return std::string(text->substr(n - 1, static_cast<size_t>(count)));
    }
    default:
      return std::nullopt;
  }
}

}  // namespace

std::string ScheduleFieldName(std::string_view field, std::string_view schedule_name) {
  if (field.find(',') != std::string_view::npos) return std::string(field);
  std::string name = std::string(field) + ", " + std::string(schedule_name);
  return name.substr(0, kConversionNameLength);
}

std::optional<std::string> ProduceFieldValue(const ImportConversionList& list,
                                             std::string_view field, const ColumnClass& columns,
                                             size_t longest,
                                             std::optional<std::string_view> schedule_name,
                                             const SpecialConversion& special) {
  const ConversionDefinition* d =
      schedule_name ? list.Find(ScheduleFieldName(field, *schedule_name)) : list.Find(field);
  return ProduceDefinitionValue(d, columns, longest, special);
}

std::optional<std::string> ProduceDefinitionValue(const ConversionDefinition* d,
                                                  const ColumnClass& columns, size_t longest,
                                                  const SpecialConversion& special) {
  if (d == nullptr || !d->active || d->no_copy) return std::nullopt;
  std::optional<std::string> value;
  switch (d->method) {
    case ConversionMethod::kEntire:
    case ConversionMethod::kRight:
    case ConversionMethod::kLeft:
    case ConversionMethod::kMid:
      value = ColumnValue(*d, columns);
      break;
    case ConversionMethod::kDefault:
    case ConversionMethod::kSpecial:
      if (special) value = special(*d);
      if (value) value = WithoutEnclosingQuotes(std::move(*value));
      break;
    case ConversionMethod::kSet:
      value = d->text;
      break;
    case ConversionMethod::kNone:
      break;
  }
  if (!value) return std::nullopt;
  if (value->size() > longest) value->resize(longest);
  return WithoutEnclosingQuotes(std::move(*value));
}

}  // namespace nv
