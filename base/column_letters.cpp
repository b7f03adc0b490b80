#include "base/column_letters.h"

namespace nv {
namespace {

// 0 to 25 for a letter of either case, else -1.
int LetterValue(char c) {
  if (c >= 'A' && c <= 'Z') return c - 'A';
  if (c >= 'a' && c <= 'z') return c - 'a';
  return -1;
}

}  // namespace

std::string ColumnLetters(int index) {
  if (index < 0 || index >= kColumnCount) return std::string();
  if (index < 26) return std::string(1, static_cast<char>('A' + index));
  index -= 26;
  return {static_cast<char>('A' + index / 26), static_cast<char>('A' + index % 26)};
}

std::optional<int> ColumnIndex(std::string_view letters) {
  if (letters.size() == 1) {
    int v = LetterValue(letters[0]);
    if (v >= 0) return v;
  } else if (letters.size() == 2) {
    int first = LetterValue(letters[0]);
    int second = LetterValue(letters[1]);
    if (first >= 0 && second >= 0) return 26 + first * 26 + second;
  }
  return std::nullopt;
}

}  // namespace nv
