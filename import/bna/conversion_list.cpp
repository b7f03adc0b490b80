#include "import/bna/conversion_list.h"

#include <array>
#include <charconv>
#include <climits>
#include <utility>

#include "base/ascii.h"
#include "base/column_letters.h"
#include "base/str_format.h"

namespace nv {
namespace {

struct MethodName {
  ConversionMethod method;
  std::string_view keyword;
};

constexpr std::array<MethodName, 7> kMethodNames{{
    {ConversionMethod::kEntire, "ENTIRE"},
    {ConversionMethod::kRight, "RIGHT"},
    {ConversionMethod::kLeft, "LEFT"},
    {ConversionMethod::kMid, "MID"},
    {ConversionMethod::kDefault, "DEFAULT"},
    {ConversionMethod::kSpecial, "SPECIAL"},
    {ConversionMethod::kSet, "SET"},
}};

struct GroupSchedule {
  char group;
  std::string_view schedule;
};

// The schedule names of the dialog's group boxes.
constexpr std::array<GroupSchedule, 6> kGroupSchedules{{
    {'T', "Tax"},
    {'B', "Book"},
    {'A', "AMT"},
    {'C', "ACE"},
    {'S', "State"},
    {'O', "Other"},
}};

bool IsColumnMethod(ConversionMethod method) {
  return method == ConversionMethod::kEntire || method == ConversionMethod::kRight ||
         method == ConversionMethod::kLeft || method == ConversionMethod::kMid;
}

// One pair of enclosing double quotes off, doubled quotes inside made single.
std::string Unquote(std::string_view field) {
  if (field.size() < 2 || field.front() != '"' || field.back() != '"') return std::string(field);
  field = field.substr(1, field.size() - 2);
  std::string out;
  out.reserve(field.size());
  for (size_t i = 0; i < field.size(); ++i) {
    out += field[i];
    if (field[i] == '"' && i + 1 < field.size() && field[i + 1] == '"') ++i;
  }
  return out;
}

// Cuts the next comma-separated field off `rest`. A field that starts with a double quote
// runs to its closing quote, so a quoted comma does not end it.
std::string NextField(std::string_view& rest) {
  std::string_view trimmed = rest;
  while (!trimmed.empty() && (trimmed.front() == ' ' || trimmed.front() == '\t')) {
    trimmed.remove_prefix(1);
  }
  size_t end = 0;
  if (!trimmed.empty() && trimmed.front() == '"') {
    size_t i = 1;
    while (i < trimmed.size()) {
      if (trimmed[i] == '"') {
        if (i + 1 < trimmed.size() && trimmed[i + 1] == '"') {
          i += 2;
          continue;
        }
        break;
      }
      ++i;
    }
    end = trimmed.find(',', i < trimmed.size() ? i : trimmed.size());
  } else {
    end = trimmed.find(',');
  }
  std::string_view field = trimmed.substr(0, end);
  rest = end == std::string_view::npos ? std::string_view() : trimmed.substr(end + 1);
  return Unquote(TrimBlanks(field));
}

}  // namespace

int32_t ProfileInteger(std::string_view text) {
  text = TrimBlanks(text);
  bool negative = false;
  if (!text.empty() && (text.front() == '-' || text.front() == '+')) {
    negative = text.front() == '-';
    text.remove_prefix(1);
  }
  int64_t value = 0;
  for (char c : text) {
    if (c < '0' || c > '9') break;
    value = value * 10 + (c - '0');
    if (value > int64_t{INT32_MAX} + 1) value = int64_t{INT32_MAX} + 1;
  }
  if (negative) value = -value;
  if (value > INT32_MAX) value = INT32_MAX;
  return static_cast<int32_t>(value);
}

namespace {

bool NeedsQuotes(std::string_view text) {
  if (text.empty()) return false;
  char last = text.back();
  return text.front() == '"' || last == ' ' || last == '\t' || last == '\r';
}

std::string Quoted(std::string_view text) {
  std::string out = "\"";
  for (char c : text) {
    out += c;
    if (c == '"') out += '"';
  }
  out += '"';
  return out;
}

}  // namespace

std::string_view MethodKeyword(ConversionMethod method) {
  for (const MethodName& m : kMethodNames) {
    if (m.method == method) return m.keyword;
  }
  return {};
}

ConversionMethod MethodOfKeyword(std::string_view keyword) {
  for (const MethodName& m : kMethodNames) {
    if (EqualIgnoringCase(m.keyword, keyword)) return m.method;
  }
  return ConversionMethod::kNone;
}

char GroupOfKey(std::string_view key) {
  if (EqualIgnoringCase(key, "Asset No.")) return kAlwaysActiveGroup;
  size_t comma = key.find(',');
  if (comma == std::string_view::npos) return kGeneralGroup;
  std::string_view after = key.substr(comma + 1);
  size_t first = after.find_first_not_of(' ');
  if (first == std::string_view::npos) return kNoGroup;
  char letter = AsciiUpper(after[first]);
  if (letter == 'A' && first + 1 < after.size() && AsciiUpper(after[first + 1]) == 'C') {
    return 'C';
  }
  return letter;
}

std::string_view ScheduleNameOfGroup(char group) {
  for (const GroupSchedule& g : kGroupSchedules) {
    if (g.group == group) return g.schedule;
  }
  return {};
}

std::string CheckedGroupsOfValue(std::string_view value) {
  std::string checked;
  for (char letter : kGroupBoxLetters) {
    if (value.find(letter) != std::string_view::npos) checked += letter;
  }
  return checked;
}

std::string ValueOfCheckedGroups(std::string_view checked) {
  return "*" + CheckedGroupsOfValue(checked);
}

DefinitionLine ParseDefinitionLine(std::string_view line) {
  DefinitionLine out;
  std::string_view rest = line;
  std::string letters = NextField(rest);
  if (EqualIgnoringCase(letters, "nocopy")) {
    out.no_copy = true;
    letters = NextField(rest);
  }
  out.column = ColumnIndex(letters).value_or(-1);
  out.method = MethodOfKeyword(NextField(rest));
  bool has_text = rest.find(',') != std::string_view::npos;
  out.number = ProfileInteger(NextField(rest));
  // The text is what stands after the number's comma, commas and all; the number field
  // above stopped at that comma.
  if (has_text) {
    std::string text = Unquote(rest);
    if (!text.empty()) out.text = std::move(text);
  }
  return out;
}

std::string FormatDefinitionLine(const ConversionDefinition& definition) {
  std::string text = definition.text.value_or(std::string());
  if (NeedsQuotes(text)) text = Quoted(text);
  std::string letters = ColumnLetters(definition.column);
  std::string keyword(MethodKeyword(definition.method));
  // "%s%s,%s,%d,%s", with the text appended so that no byte of it is lost.
  return StrPrintf("%s%s,%s,%d,", definition.no_copy ? "NOCOPY," : "", letters.c_str(),
                   keyword.c_str(), static_cast<int>(definition.number)) +
         text;
}

std::string ListLineOfDefinition(const ConversionDefinition& d) {
  std::string method;
  bool no_column = IsColumnMethod(d.method) && d.column < 0;
  if (d.no_copy || d.method == ConversionMethod::kNone || no_column) {
    method = "No Copy";
  } else {
    switch (d.method) {
      case ConversionMethod::kEntire:
        method = "Entire";
        break;
      case ConversionMethod::kRight:
        method = StrPrintf("Rt %d", static_cast<int>(d.number));
        break;
      case ConversionMethod::kLeft:
        method = StrPrintf("Lft %d", static_cast<int>(d.number));
        break;
      case ConversionMethod::kMid:
        method = StrPrintf("Md %d@%d", static_cast<int>(ProfileInteger(d.text.value_or(""))),
                           static_cast<int>(d.number));
        break;
      case ConversionMethod::kDefault:
        method = "Default";
        break;
      case ConversionMethod::kSpecial:
        method = "Specl";
        break;
      case ConversionMethod::kSet:
        method = "Set";
        break;
      case ConversionMethod::kNone:
        break;
    }
  }
  std::string line = d.name + "\t" + method;
  std::string letters = ColumnLetters(d.column);
  if (!letters.empty()) line += "--" + letters;
  return line;
}

ConversionDefinition& ImportConversionList::Add(std::string_view name, bool no_copy, int32_t column,
                                                ConversionMethod method, int32_t number,
                                                std::optional<std::string> text, char group) {
  std::string full(name);
  std::string_view schedule = ScheduleNameOfGroup(group);
  if (!schedule.empty() && full.find(',') == std::string::npos) {
    full += ", ";
    full += schedule;
  }
  ConversionDefinition& d = entries_.emplace_back();
  d.name = full.substr(0, kConversionNameLength);
  d.column = column;
  d.method = method;
  d.number = number;
  d.text = std::move(text);
  d.no_copy = no_copy;
  d.group = group;
  return d;
}

const ConversionDefinition* ImportConversionList::FindExact(std::string_view name) const {
  for (const ConversionDefinition& d : entries_) {
    if (EqualIgnoringCase(d.name, name)) return &d;
  }
  return nullptr;
}

const ConversionDefinition* ImportConversionList::Find(std::string_view name) const {
  if (const ConversionDefinition* d = FindExact(name)) return d;
  size_t comma = name.find(',');
  if (comma == std::string_view::npos) return nullptr;
  return FindExact(name.substr(0, comma));
}

ConversionDefinition* ImportConversionList::Find(std::string_view name) {
  return const_cast<ConversionDefinition*>(std::as_const(*this).Find(name));
}

void ImportConversionList::SetActive(std::string_view checked_groups) {
  std::string checked = CheckedGroupsOfValue(checked_groups);
  for (ConversionDefinition& d : entries_) {
    d.active = d.group == kAlwaysActiveGroup ||
               (d.group != kNoGroup && checked.find(d.group) != std::string::npos);
  }
}

}  // namespace nv
