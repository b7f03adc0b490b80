#include "store/file/key_compare.h"

#include <algorithm>
#include <cstring>

#include "base/compare_codes.h"

namespace nv {
namespace {

// Widths of the sort-order fields, by layout; 0 for a letter that adds no field.
uint32_t CurrentFieldWidth(char letter) {
  switch (letter) {
    case 'L':
    case 'C':
      return 10;
    case 'A':
      return 24;
    case 'P':
      return 2;
    case 'D':
      return 8;
    case 'Y':
      return 5;
    default:
      return letter >= '0' && letter <= '9' ? 20 : 0;
  }
}

uint32_t OldFieldWidth(char letter) {
  switch (letter) {
    case 'L':
    case 'C':
    case 'P':
    case 'D':
      return 2;
    case 'A':
      return 24;
    default:
      return letter >= '1' && letter <= '3' ? 20 : 0;
  }
}

bool CurrentFieldIsNatural(char letter) {
  return letter != 'P' && letter != 'D';
}
bool OldFieldIsNatural(char letter) {
  return letter == 'A' || (letter >= '1' && letter <= '3');
}

std::string_view CutAtNul(std::string_view s) {
  size_t nul = s.find('\0');
  return nul == std::string_view::npos ? s : s.substr(0, nul);
}

// The field at *offset of width bytes (shorter when the key ends early).
std::string_view Field(std::string_view key, size_t offset, size_t width) {
  if (offset >= key.size()) return {};
  return key.substr(offset, width);
}

int CompareBytes(std::string_view a, std::string_view b) {
  size_t n = std::min(a.size(), b.size());
  int c = n == 0 ? 0 : std::memcmp(a.data(), b.data(), n);
  if (c != 0) return c < 0 ? -1 : 1;
  return a.size() < b.size() ? -1 : (a.size() > b.size() ? 1 : 0);
}

// Decimal integer at the start of s (leading blanks skipped); saturates instead of
// overflowing on absurd digit runs.
uint64_t SubassetNumber(std::string_view s) {
  size_t i = 0;
  while (i < s.size() && s[i] == ' ') ++i;
  uint64_t value = 0;
  for (; i < s.size() && s[i] >= '0' && s[i] <= '9'; ++i) {
    if (value > (uint64_t{1} << 59)) return value;
    value = value * 10 + static_cast<uint64_t>(s[i] - '0');
  }
  return value;
}

}  // namespace

bool IsLongAssetNoFormat(int main_length, int subasset_length, int flags) {
  return main_length > 6 || subasset_length != 2 || (flags & 1) != 0;
}

uint32_t I1KeyLength(bool current_layout, int main_length, int subasset_length) {
  if (!current_layout) return 5;
  return static_cast<uint32_t>(main_length + subasset_length + 1);
}

uint32_t I2KeyLength(bool current_layout, std::string_view sort_order, bool long_format) {
  uint32_t length = current_layout ? (long_format ? 14 : 9) : 5;
  for (char letter : sort_order) {
    length += current_layout ? CurrentFieldWidth(letter) : OldFieldWidth(letter);
  }
  return length;
}

int CompareNaturalField(std::string_view a, std::string_view b) {
  return CompareCodes(CutAtNul(a), CutAtNul(b));
}

int CompareI1Keys(std::string_view a, std::string_view b) {
  a = CutAtNul(a);
  b = CutAtNul(b);
  size_t dot_a = a.find('.');
  size_t dot_b = b.find('.');
  int c = CompareCodes(a.substr(0, dot_a), b.substr(0, dot_b));
  if (c != 0) return c;
  uint64_t sub_a = dot_a == std::string_view::npos ? 0 : SubassetNumber(a.substr(dot_a + 1));
  uint64_t sub_b = dot_b == std::string_view::npos ? 0 : SubassetNumber(b.substr(dot_b + 1));
  return sub_a < sub_b ? -1 : (sub_a > sub_b ? 1 : 0);
}

namespace {

// Compares the sort-order fields of two keys in the given layout; *offset ends past them.
int CompareSortFields(std::string_view a, std::string_view b, std::string_view sort_order,
                      bool current_layout, size_t* offset) {
  for (char letter : sort_order) {
    size_t width = current_layout ? CurrentFieldWidth(letter) : OldFieldWidth(letter);
    if (width == 0) continue;
    std::string_view fa = Field(a, *offset, width);
    std::string_view fb = Field(b, *offset, width);
    bool natural = current_layout ? CurrentFieldIsNatural(letter) : OldFieldIsNatural(letter);
    int c = natural ? CompareNaturalField(fa, fb) : CompareBytes(fa, fb);
    if (c != 0) return c;
    *offset += width;
  }
  return 0;
}

}  // namespace

int CompareI2Keys(std::string_view a, std::string_view b, std::string_view sort_order) {
  size_t offset = 0;
  if (int c = CompareSortFields(a, b, sort_order, true, &offset); c != 0) return c;
  return CompareI1Keys(Field(a, offset, a.size()), Field(b, offset, b.size()));
}

int CompareOldKeys(std::string_view a, std::string_view b, std::string_view sort_order) {
  size_t offset = 0;
  if (int c = CompareSortFields(a, b, sort_order, false, &offset); c != 0) return c;
  return CompareBytes(Field(a, offset, a.size()), Field(b, offset, b.size()));
}

}  // namespace nv
