// The value of one target field for one source line, as its conversion definition says.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "import/bna/bna_source.h"
#include "import/bna/conversion_list.h"

namespace nv {

// The value of a DEFAULT or SPECIAL definition: its special conversion or built-in default,
// which the conversion language works out. None leaves the field as it is.
using SpecialConversion = std::function<std::optional<std::string>(const ConversionDefinition&)>;

inline constexpr size_t kNoLengthLimit = static_cast<size_t>(-1);

// The name a field is looked up by while a schedule is filled: the field, a comma, a blank
// and the schedule's name, cut to 25 characters; the field itself when it has a comma.
std::string ScheduleFieldName(std::string_view field, std::string_view schedule_name);

// The field's value for the line, or none when the asset's field is to stay as it is (no
// definition, an inactive or no-copy one, no method, a column the line lacks):
//   ENTIRE the column's text; RIGHT and LEFT its last or first `number` characters; MID
//   up to (text as integer) characters from position `number` (none when the column is
//   shorter than that position or the count is below 1); SET the definition's text;
//   DEFAULT and SPECIAL what `special` gives, without enclosing double quotes.
// The value is cut to `longest` characters, and a value of two or more characters that
// begins and ends with a double quote loses both. With a schedule name the field is looked
// up as ScheduleFieldName gives it, falling back to the plain name.
// The same for a definition already looked up (nullptr: none), for callers that look their
// fields up once per run.
std::optional<std::string> ProduceDefinitionValue(const ConversionDefinition* definition,
                                                  const ColumnClass& columns, size_t longest,
                                                  const SpecialConversion& special);

std::optional<std::string> ProduceFieldValue(const ImportConversionList& list,
                                             std::string_view field, const ColumnClass& columns,
                                             size_t longest,
                                             std::optional<std::string_view> schedule_name,
                                             const SpecialConversion& special);

}  // namespace nv
