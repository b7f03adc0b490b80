#include "ui/screen/edit_field.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "base/ascii.h"
#include "base/money.h"
#include "base/str_format.h"
#include "ui/screen/attributes.h"

namespace nv {
namespace {

constexpr int kMaxDecimals = 15;
constexpr int kMaxFormatWidth = 255;

bool IsPrintable(unsigned char c) {
  return c >= 0x20 && c != 0x7F;
}

std::string RightAligned(std::string_view text, int width) {
  return StrPrintf("%*.*s", std::clamp(width, 0, kMaxFormatWidth), static_cast<int>(text.size()),
                   text.data());
}

// A plain decimal number with blanks around it, as strtod reads it, finite.
std::optional<double> ParseNumber(std::string_view text) {
  std::string plain(TrimBlanks(text));
  if (plain.empty()) return std::nullopt;
  for (char c : plain) {
    if (!(c >= '0' && c <= '9') && c != '.' && c != '-' && c != '+' && c != 'e' && c != 'E')
      return std::nullopt;
  }
  char* end = nullptr;
  double value = std::strtod(plain.c_str(), &end);
  if (end != plain.c_str() + plain.size() || !std::isfinite(value)) return std::nullopt;
  return value;
}

}  // namespace

std::optional<size_t> TextLimit(const FieldDescription& field) {
  if (HasAttribute("notextlimit", field.attributes)) return std::nullopt;
  std::optional<int> maxlen = NumberAttribute("maxlen", field.attributes);
  int characters = maxlen && *maxlen >= 0 ? *maxlen : std::max(field.width, 0);
  return static_cast<size_t>(characters) + 1;
}

char UpperCaseCp1252(char c) {
  unsigned char u = static_cast<unsigned char>(c);
  if (u >= 'a' && u <= 'z') return static_cast<char>(u - 0x20);
  // à to þ except ÷ (0xF7); then š, œ, ž and ÿ, whose capitals sit elsewhere.
  if (u >= 0xE0 && u <= 0xFE && u != 0xF7) return static_cast<char>(u - 0x20);
  switch (u) {
    case 0x9A:
      return static_cast<char>(0x8A);
    case 0x9C:
      return static_cast<char>(0x8C);
    case 0x9E:
      return static_cast<char>(0x8E);
    case 0xFF:
      return static_cast<char>(0x9F);
    default:
      return c;
  }
}

std::bitset<256> ParseCharacterList(std::string_view list) {
  std::bitset<256> allowed;
  size_t i = 0;
  while (i < list.size()) {
    unsigned char first = static_cast<unsigned char>(list[i]);
    if (i + 2 < list.size() && list[i + 1] == '-') {
      unsigned char last = static_cast<unsigned char>(list[i + 2]);
      if (first > last) std::swap(first, last);
      for (unsigned c = first; c <= last; ++c) allowed.set(c);
      i += 3;
    } else {
      allowed.set(first);
      ++i;
    }
  }
  return allowed;
}

InputFilter::InputFilter(std::string_view attributes) {
  upper_case_ = HasAttribute("upr", attributes);
  if (std::optional<std::string> list = FindAttribute("chars", attributes)) {
    restricted_ = true;
    allowed_ = ParseCharacterList(*list);
  } else if (HasAttribute("numeric", attributes)) {
    // Outside radio groups, "numeric" keeps an edit field to the characters of a number.
    restricted_ = true;
    allowed_ = ParseCharacterList("0-9-.,");
  }
}

std::optional<char> InputFilter::Filter(char c) const {
  unsigned char u = static_cast<unsigned char>(c);
  if (!IsPrintable(u)) return c;
  if (upper_case_) c = UpperCaseCp1252(c);
  if (restricted_ && !allowed_.test(static_cast<unsigned char>(c))) return std::nullopt;
  return c;
}

std::optional<std::string> InputFilter::FilterText(std::string_view text) const {
  std::string out;
  out.reserve(text.size());
  for (char c : text) {
    std::optional<char> taken = Filter(c);
    if (!taken) return std::nullopt;
    out += *taken;
  }
  return out;
}

std::string FormatForDisplay(const FieldDescription& field) {
  const std::string& a = field.attributes;
  if (TrimBlanks(field.data).empty()) return field.data;
  if (HasAttribute("dollar", a)) {
    std::optional<double> amount = ParseMoney(field.data);
    if (!amount) return field.data;
    return RightAligned(FormatMoney(*amount, false), field.width);
  }
  if (std::optional<std::string> decimals = FindAttribute("float", a)) {
    std::optional<double> value = ParseNumber(field.data);
    if (!value) return field.data;
    int n = std::clamp(ParseAttributeNumber(*decimals).value_or(0), 0, kMaxDecimals);
    return StrPrintf("%.*f", n, *value);
  }
  if (HasAttribute("int", a) || HasAttribute("rjust", a)) {
    return RightAligned(TrimBlanks(field.data), field.width);
  }
  return field.data;
}

bool IsRightAligned(const FieldDescription& field) {
  const std::string& a = field.attributes;
  return HasAttribute("dollar", a) || HasAttribute("float", a) || HasAttribute("int", a) ||
         HasAttribute("rjust", a);
}

}  // namespace nv
