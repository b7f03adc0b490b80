#include "base/log_font.h"

#include <cctype>
#include <climits>

#include "base/ascii.h"
#include "base/str_format.h"

namespace nv {
namespace {

constexpr std::string_view kPrefix = "LOGFONT(";
constexpr int kNumberCount = 13;

// One "%d": optional white space, optional sign, at least one digit.
bool ParseInt(std::string_view text, size_t* pos, int* value) {
  size_t p = *pos;
  while (p < text.size() && std::isspace(static_cast<unsigned char>(text[p]))) ++p;
  bool negative = false;
  if (p < text.size() && (text[p] == '-' || text[p] == '+')) negative = text[p++] == '-';
  const size_t first_digit = p;
  long long magnitude = 0;
  while (p < text.size() && text[p] >= '0' && text[p] <= '9') {
    magnitude = magnitude * 10 + (text[p] - '0');
    if (magnitude > static_cast<long long>(INT_MAX) + 1) return false;
    ++p;
  }
  if (p == first_digit) return false;
  const long long signed_value = negative ? -magnitude : magnitude;
  if (signed_value > INT_MAX || signed_value < INT_MIN) return false;
  *value = static_cast<int>(signed_value);
  *pos = p;
  return true;
}

}  // namespace

std::string FormatLogFont(const LogFont& f) {
  return StrPrintf("LOGFONT(%d,%d,%d,%d,%d,%d,%d,%d,%d,%d,%d,%d,%d,%-32.32s)", f.height, f.width,
                   f.escapement, f.orientation, f.weight, f.italic, f.underline, f.strike_out,
                   f.char_set, f.out_precision, f.clip_precision, f.quality, f.pitch_and_family,
                   f.face_name.c_str());
}

std::optional<LogFont> ParseLogFont(std::string_view text) {
  if (text.substr(0, kPrefix.size()) != kPrefix) return std::nullopt;
  size_t pos = kPrefix.size();
  int numbers[kNumberCount];
  for (int i = 0; i < kNumberCount; ++i) {
    if (!ParseInt(text, &pos, &numbers[i])) return std::nullopt;
    if (pos >= text.size() || text[pos] != ',') return std::nullopt;
    ++pos;
  }
  if (text.size() - pos < kLogFontFaceSize) return std::nullopt;
  std::string_view face = text.substr(pos, kLogFontFaceSize - 1);
  face = face.substr(0, face.find('\0'));
  face = TrimBlanks(face);

  LogFont font;
  font.height = numbers[0];
  font.width = numbers[1];
  font.escapement = numbers[2];
  font.orientation = numbers[3];
  font.weight = numbers[4];
  font.italic = static_cast<unsigned char>(numbers[5]);
  font.underline = static_cast<unsigned char>(numbers[6]);
  font.strike_out = static_cast<unsigned char>(numbers[7]);
  font.char_set = static_cast<unsigned char>(numbers[8]);
  font.out_precision = static_cast<unsigned char>(numbers[9]);
  font.clip_precision = static_cast<unsigned char>(numbers[10]);
  font.quality = static_cast<unsigned char>(numbers[11]);
  font.pitch_and_family = static_cast<unsigned char>(numbers[12]);
  font.face_name = std::string(face);
  return font;
}

}  // namespace nv
