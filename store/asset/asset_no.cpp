#include "store/asset/asset_no.h"

#include "base/ascii.h"
#include "base/str_format.h"

namespace nv {
namespace {

// A subasset number never needs more digits than this; longer runs saturate.
constexpr int kSubassetCeiling = 999999999;

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}
bool IsLetter(char c) {
  return c >= 'A' && c <= 'Z';
}

// The number at the start of s, as far as it has digits.
int LeadingNumber(std::string_view s) {
  int value = 0;
  for (size_t i = 0; i < s.size() && IsDigit(s[i]); ++i) {
    if (value > kSubassetCeiling / 10) return kSubassetCeiling;
    value = value * 10 + (s[i] - '0');
  }
  return value;
}

// Counts characters of the main part and digits of the subasset as the rules say; false
// when a rule is broken. `text` is trimmed and upper-cased.
bool CheckCharacters(std::string_view text, const NvAssetNoFormat& format, int* main_count,
                     int* subasset_count) {
  bool after_point = false;
  bool main_leading = true;
  bool subasset_leading = true;
  bool has_main = false;
  for (char c : text) {
    if (c == '.') {
      if (after_point) return false;
      after_point = true;
      continue;
    }
    if (after_point) {
      if (!IsDigit(c)) return false;
      if (c != '0' || !subasset_leading) {
        subasset_leading = false;
        ++*subasset_count;
      }
      continue;
    }
    bool allowed = IsDigit(c) || (IsLetter(c) && format.letters()) || (c == '-' && format.dashes());
    if (!allowed) return false;  // blanks inside, letters or dashes not allowed, others
    has_main = true;
    if (c != '0' || !main_leading) {
      main_leading = false;
      ++*main_count;
    }
  }
  return has_main;
}

}  // namespace

NvAssetNo NvAssetNo::Parse(std::string_view text, const NvAssetNoFormat& format) {
  NvAssetNo number(format);
  const NvAssetNoFormat& f = number.format_;
  std::string entry(TrimBlanks(text));
  if (f.free_form()) {
    number.valid_ = !entry.empty() && entry.size() <= static_cast<size_t>(f.main_length);
    number.main_ = entry.substr(0, static_cast<size_t>(f.main_length));
    return number;
  }
  entry = AsciiUpper(entry);
  int main_count = 0;
  int subasset_count = 0;
  bool characters_ok = CheckCharacters(entry, f, &main_count, &subasset_count);
  number.valid_ =
      characters_ok && main_count <= f.main_length && subasset_count <= f.subasset_length;

  size_t point = entry.find('.');
  std::string main = entry.substr(0, point);
  const size_t width = static_cast<size_t>(f.main_length);
  size_t zeros = 0;
  while (main.size() - zeros > width && main[zeros] == '0') ++zeros;
  main.erase(0, zeros);
  if (main.size() > width) main.resize(width);
  number.main_ = std::move(main);
  if (point != std::string::npos) {
    number.subasset_ = LeadingNumber(std::string_view(entry).substr(point + 1));
  }
  return number;
}

NvAssetNo NvAssetNo::Parse(std::string_view text, int subasset, const NvAssetNoFormat& format) {
  NvAssetNo number = Parse(text, format);
  number.subasset_ = subasset;
  int limit = 9;
  for (int digits = 1; digits < number.format_.subasset_length; ++digits) limit = limit * 10 + 9;
  if (subasset < 1 || subasset > limit) number.valid_ = false;
  return number;
}

NvAssetNo NvAssetNo::InFormat(const NvAssetNoFormat& format) const {
  if (format.Normalized() == format_) return *this;
  if (format.free_form()) {
    NvAssetNo number = Parse(main_, format);
    number.subasset_ = subasset_;
    return number;
  }
  NvAssetNo number = Parse(main_ + StrPrintf(".%d", subasset_), format);
  number.subasset_ = subasset_;  // as it was, even beyond what the text could carry
  return number;
}

std::string NvAssetNo::Text() const {
  if (format_.free_form()) return main_;
  const size_t width = static_cast<size_t>(format_.main_length);
  std::string text(main_.size() < width ? width - main_.size() : 0, ' ');
  text += main_;
  text += StrPrintf(".%*.*d", format_.subasset_length, format_.subasset_length, subasset_);
  return text;
}

std::string NvAssetNo::DisplayText() const {
  if (format_.free_form() || subasset_ != 0) return Text();
  std::string text = Text();
  text.resize(static_cast<size_t>(format_.main_length));
  text.append(static_cast<size_t>(format_.subasset_length) + 1, ' ');
  return text;
}

std::string NvAssetNo::Key() const {
  std::string key = Text();
  key.resize(static_cast<size_t>(KeyLength()), '\0');
  return key;
}

}  // namespace nv
