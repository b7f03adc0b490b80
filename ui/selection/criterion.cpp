#include "ui/selection/criterion.h"

#include "base/ascii.h"
#include "ui/screen/attributes.h"
#include "ui/screen/edit_field.h"
#include "ui/selection/selection.h"
#include "ui/selection/selection_match.h"

namespace nv {
namespace {

bool IsBlank(char c) {
  return c == ' ' || c == '\t';
}
bool IsQuote(char c) {
  return c == '"' || c == '\'';
}
bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

// A run of 1 to 4 digits as a number.
std::optional<int> SmallNumber(std::string_view digits) {
  if (digits.empty() || digits.size() > 4) return std::nullopt;
  int n = 0;
  for (char c : digits) {
    if (!IsDigit(c)) return std::nullopt;
    n = n * 10 + (c - '0');
  }
  return n;
}

std::optional<Date> CheckedDate(std::optional<int> m, std::optional<int> d, std::optional<int> y) {
  if (!m || !d || !y) return std::nullopt;
  Date date{*m, *d, ExpandTwoDigitYear(*y)};
  if (!IsValidDate(date)) return std::nullopt;
  return date;
}

// "M?D?Y" with `separator`: three runs of digits.
std::optional<Date> SeparatedDate(std::string_view text, char separator) {
  size_t first = text.find(separator);
  if (first == std::string_view::npos) return std::nullopt;
  size_t second = text.find(separator, first + 1);
  if (second == std::string_view::npos) return std::nullopt;
  return CheckedDate(SmallNumber(text.substr(0, first)),
                     SmallNumber(text.substr(first + 1, second - first - 1)),
                     SmallNumber(text.substr(second + 1)));
}

}  // namespace

std::vector<CriterionToken> TokenizeCriterion(std::string_view text) {
  std::vector<CriterionToken> tokens;
  size_t i = 0;
  while (i < text.size()) {
    if (IsBlank(text[i])) {
      ++i;
      continue;
    }
    const char c = text[i];
    if (c == ',') {
      tokens.push_back({CriterionTokenKind::kComma, ""});
      ++i;
    } else if (c == '-') {
      tokens.push_back({CriterionTokenKind::kHyphen, ""});
      ++i;
    } else if (IsQuote(c)) {
      size_t close = text.find(c, i + 1);
      size_t end = close == std::string_view::npos ? text.size() : close;
      tokens.push_back(
          {CriterionTokenKind::kText, std::string(text.substr(i + 1, end - i - 1)), true});
      i = close == std::string_view::npos ? text.size() : close + 1;
    } else {
      size_t end = text.find_first_of(",-", i);
      if (end == std::string_view::npos) end = text.size();
      tokens.push_back(
          {CriterionTokenKind::kText, std::string(TrimBlanks(text.substr(i, end - i))), false});
      i = end;
    }
  }
  return tokens;
}

std::optional<std::vector<CriterionItem>> ParseCriterion(std::string_view text) {
  std::vector<CriterionItem> items;
  CriterionItem item;
  bool started = false;  // the item has a value or a hyphen
  for (const CriterionToken& token : TokenizeCriterion(text)) {
    switch (token.kind) {
      case CriterionTokenKind::kComma:
        if (started) items.push_back(item);
        item = {};
        started = false;
        break;
      case CriterionTokenKind::kHyphen:
        if (item.range) return std::nullopt;
        item.range = true;
        started = true;
        break;
      case CriterionTokenKind::kText:
        if (item.range ? item.high.has_value() : item.low.has_value()) return std::nullopt;
        (item.range ? item.high : item.low) = token.text;
        started = true;
        break;
    }
  }
  if (started) items.push_back(item);
  return items;
}

std::optional<Date> ParseCriterionDate(std::string_view raw) {
  std::string_view text = TrimBlanks(raw);
  if (text == "//" || text == "--") return Date{};
  if (text.find('/') != std::string_view::npos) return SeparatedDate(text, '/');
  if (text.find('-') != std::string_view::npos) return SeparatedDate(text, '-');
  if (text.size() == 6 || text.size() == 8) {
    return CheckedDate(SmallNumber(text.substr(0, 2)), SmallNumber(text.substr(2, 2)),
                       SmallNumber(text.substr(4)));
  }
  return std::nullopt;
}

const char* CriterionErrorMessage(CriterionError error) {
  switch (error) {
    case CriterionError::kNone:
      return "";
    case CriterionError::kInvalidDate:
      return "Invalid date";
    case CriterionError::kInvalidInput:
      return "Invalid input";
    case CriterionError::kErrorOnInput:
      return "Error on input";
  }
  return "";
}

namespace {

bool CharactersAllowed(std::string_view text, std::string_view attributes) {
  std::optional<std::string> list = FindAttribute("chars", attributes);
  if (!list) return true;
  const std::bitset<256> allowed = ParseCharacterList(*list);
  for (char c : text) {
    if (IsQuote(c) || c == ',' || c == '-') continue;
    if (!allowed[static_cast<unsigned char>(c)]) return false;
  }
  return true;
}

// Each value of the items read as the field compares it.
CriterionError CheckValues(SelectionCompare compare, const std::vector<CriterionItem>& items) {
  for (const CriterionItem& item : items) {
    for (const std::optional<std::string>& value : {item.low, item.high}) {
      if (!value) continue;
      switch (compare) {
        case SelectionCompare::kDate:
        case SelectionCompare::kPauses:
          if (!ParseCriterionDate(*value)) return CriterionError::kInvalidDate;
          break;
        case SelectionCompare::kAmount:
          if (!ParseSelectionAmount(*value)) return CriterionError::kInvalidInput;
          break;
        case SelectionCompare::kInteger:
          if (!ParseSelectionInteger(*value)) return CriterionError::kInvalidInput;
          break;
        case SelectionCompare::kLife:
          if (!ParseSelectionLife(*value)) return CriterionError::kInvalidInput;
          break;
        default:
          break;
      }
    }
  }
  return CriterionError::kNone;
}

}  // namespace

CriterionError ValidateCriterion(int field, std::string* text) {
  if (field < 0 || field >= kSelectionFieldCount) return CriterionError::kErrorOnInput;
  const SelectionField& f = SelectionFields()[field];
  if (HasAttribute("upr", f.attributes)) {
    for (char& c : *text) c = UpperCaseCp1252(c);
  }
  if (!CharactersAllowed(*text, f.attributes)) return CriterionError::kInvalidInput;
  if (f.kind == SelectionKind::kValues) return CriterionError::kNone;
  std::optional<std::vector<CriterionItem>> items = ParseCriterion(*text);
  if (!items) return CriterionError::kErrorOnInput;
  return CheckValues(f.compare, *items);
}

std::optional<int> FirstInvalidCriterion(const KelSelection& selection) {
  for (int field = 0; field < kSelectionFieldCount; ++field) {
    const SelectionCriterion& c = selection.criteria[field];
    if (!c.in_use) continue;
    std::string text = c.text;
    if (ValidateCriterion(field, &text) != CriterionError::kNone) return field;
  }
  return std::nullopt;
}

}  // namespace nv
