#include "ui/screen/attributes.h"

#include <charconv>

#include "base/ascii.h"

namespace nv {
namespace {

bool IsBlank(char c) {
  return c == ' ' || c == '\t';
}

// Position of the ")" that closes the "(" at `open`, or npos when none does.
size_t ClosingParenthesis(std::string_view text, size_t open) {
  int depth = 0;
  for (size_t i = open; i < text.size(); ++i) {
    if (text[i] == '(') {
      ++depth;
    } else if (text[i] == ')' && --depth == 0) {
      return i;
    }
  }
  return std::string_view::npos;
}

// Position of the comma that ends the item starting at `start`, or the end of the text.
size_t ItemEnd(std::string_view text, size_t start) {
  size_t i = start;
  while (i < text.size() && text[i] != ',') {
    if (text[i] != '(') {
      ++i;
    } else {
      size_t close = ClosingParenthesis(text, i);
      i = close == std::string_view::npos ? text.size() : close + 1;
    }
  }
  return i;
}

}  // namespace

std::optional<std::string> FindAttribute(std::string_view keyword, std::string_view attributes) {
  if (keyword.empty()) return std::nullopt;
  size_t start = 0;
  while (start <= attributes.size()) {
    while (start < attributes.size() && IsBlank(attributes[start])) ++start;
    std::string_view rest = attributes.substr(start);
    if (rest.size() >= keyword.size() &&
        EqualIgnoringCase(rest.substr(0, keyword.size()), keyword)) {
      size_t after = start + keyword.size();
      if (after == attributes.size() || attributes[after] == ',') return std::string();
      if (attributes[after] == '(') {
        // Without its closing ")" the argument runs to the end.
        size_t close = ClosingParenthesis(attributes, after);
        return std::string(attributes.substr(after + 1, close == std::string_view::npos
                                                            ? std::string_view::npos
                                                            : close - after - 1));
      }
    }
    start = ItemEnd(attributes, start) + 1;
  }
  return std::nullopt;
}

std::optional<int> ParseAttributeNumber(std::string_view text) {
  text = TrimBlanks(text);
  if (!text.empty() && text.front() == '+') text.remove_prefix(1);
  long long value = 0;
  auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (text.empty() || error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  if (value < -kMaxAttributeNumber || value > kMaxAttributeNumber) return std::nullopt;
  return static_cast<int>(value);
}

std::optional<int> NumberAttribute(std::string_view keyword, std::string_view attributes) {
  std::optional<std::string> argument = FindAttribute(keyword, attributes);
  if (!argument) return std::nullopt;
  return ParseAttributeNumber(*argument);
}

std::optional<std::pair<int, int>> NumberPairAttribute(std::string_view keyword,
                                                       std::string_view attributes,
                                                       char separator) {
  std::optional<std::string> argument = FindAttribute(keyword, attributes);
  if (!argument) return std::nullopt;
  // The separator after the first character, so that a leading sign belongs to the number.
  size_t split = argument->find(separator, argument->empty() ? 0 : 1);
  if (split == std::string::npos) return std::nullopt;
  std::optional<int> first = ParseAttributeNumber(std::string_view(*argument).substr(0, split));
  std::optional<int> second = ParseAttributeNumber(std::string_view(*argument).substr(split + 1));
  if (!first || !second) return std::nullopt;
  return std::make_pair(*first, *second);
}

}  // namespace nv
