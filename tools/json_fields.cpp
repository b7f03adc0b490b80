#include "tools/json_fields.h"

#include <cmath>
#include <cstdio>
#include <limits>

#include "base/cp1252.h"
#include "base/str_format.h"

namespace nv {

std::string JsonText(std::string_view cp1252) {
  while (!cp1252.empty() && cp1252.back() == ' ') cp1252.remove_suffix(1);
  return Cp1252ToUtf8(cp1252);
}

std::string JsonAssetNo(const NvAssetNo& number) {
  if (number.empty()) return std::string();
  std::string text = number.Text();
  size_t first = text.find_first_not_of(' ');
  return JsonText(first == std::string::npos ? std::string_view()
                                             : std::string_view(text).substr(first));
}

void WriteJsonValue(const std::string& text, JsonWriter& out) {
  out.String(JsonText(text));
}

void WriteJsonValue(char letter, JsonWriter& out) {
  out.String(letter == ' ' || letter == '\0' ? std::string() : JsonText(std::string(1, letter)));
}

void WriteJsonValue(const Date& date, JsonWriter& out) {
  out.String(date.empty() ? std::string() : FormatDisplayDate(date));
}

void WriteJsonValue(const YearsMonths& life, JsonWriter& out) {
  out.String(StrPrintf("%d-%d", life.years, life.months));
}

void WriteJsonValue(int whole, JsonWriter& out) {
  out.Integer(whole);
}

void WriteJsonValue(double amount, JsonWriter& out) {
  out.Number(amount);
}

void WriteJsonValue(bool truth, JsonWriter& out) {
  out.Bool(truth);
}

void WriteJsonValue(const NvAssetNo& number, JsonWriter& out) {
  out.String(JsonAssetNo(number));
}

const char* ReadJsonValue(JsonScalar& value, std::string* out) {
  if (value.type != JsonScalar::Type::kText) return "is not a text";
  *out = Utf8ToCp1252(*value.text);
  return nullptr;
}

const char* ReadJsonValue(JsonScalar& value, char* out) {
  if (value.type != JsonScalar::Type::kText) return "is not a text";
  std::string text = Utf8ToCp1252(*value.text);
  if (text.size() > 1) return "is longer than one character";
  *out = text.empty() ? ' ' : text[0];
  return nullptr;
}

const char* ReadJsonValue(JsonScalar& value, Date* out) {
  constexpr const char* kWrong = "is not a date MM/DD/YYYY";
  if (value.type != JsonScalar::Type::kText) return kWrong;
  if (value.text->empty()) {
    *out = Date{};
    return nullptr;
  }
  std::optional<Date> date = ParseDisplayDate(*value.text);
  if (!date) return kWrong;
  *out = *date;
  return nullptr;
}

const char* ReadJsonValue(JsonScalar& value, YearsMonths* out) {
  constexpr const char* kWrong = "is not a life Y-M";
  if (value.type != JsonScalar::Type::kText) return kWrong;
  int years = 0, months = 0;
  char rest = 0;
  if (std::sscanf(value.text->c_str(), "%d-%d%c", &years, &months, &rest) != 2) return kWrong;
  *out = {years, months};
  return nullptr;
}

const char* ReadJsonValue(JsonScalar& value, int* out) {
  if (!value.is_number()) return "is not a number";
  // Whole numbers may come as 7.0; anything the int cannot hold is refused, not cut.
  if (value.number != std::trunc(value.number)) return "is not a whole number";
  if (value.type == JsonScalar::Type::kInteger
          ? value.integer < std::numeric_limits<int>::min() ||
                value.integer > std::numeric_limits<int>::max()
          : !(value.number >= std::numeric_limits<int>::min() &&
              value.number <= std::numeric_limits<int>::max())) {
    return "is out of range";
  }
  *out = value.type == JsonScalar::Type::kInteger ? static_cast<int>(value.integer)
                                                  : static_cast<int>(value.number);
  return nullptr;
}

const char* ReadJsonValue(JsonScalar& value, double* out) {
  if (!value.is_number()) return "is not a number";
  *out = value.number;
  return nullptr;
}

const char* ReadJsonValue(JsonScalar& value, bool* out) {
  if (value.type != JsonScalar::Type::kBool) return "is not true or false";
  *out = value.truth;
  return nullptr;
}

const char* ReadJsonValue(JsonScalar& value, const NvAssetNoFormat& format, NvAssetNo* out) {
  if (value.type != JsonScalar::Type::kText) return "is not a text";
  std::string text = Utf8ToCp1252(*value.text);
  *out = text.empty() ? NvAssetNo(format) : NvAssetNo::Parse(text, format);
  return nullptr;
}

}  // namespace nv
