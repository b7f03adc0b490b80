// ASCII-only text helpers. Texts here are Windows-1252 bytes, and names compared "ignoring
// case" (profile sections and keys, file names, company numbers) fold only A-Z, as the
// Windows routines in the "C" locale do; bytes above 0x7F compare as they are.
#pragma once

#include <string>
#include <string_view>

namespace nv {

inline char AsciiUpper(char c) {
  return (c >= 'a' && c <= 'z') ? static_cast<char>(c - 'a' + 'A') : c;
}

inline std::string AsciiUpper(std::string_view s) {
  std::string out(s);
  for (char& c : out) c = AsciiUpper(c);
  return out;
}

[[nodiscard]] inline bool EqualIgnoringCase(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i) {
    if (AsciiUpper(a[i]) != AsciiUpper(b[i])) return false;
  }
  return true;
}

// Without blanks (space and tab) at either end.
inline std::string_view TrimBlanks(std::string_view s) {
  while (!s.empty() && (s.front() == ' ' || s.front() == '\t')) s.remove_prefix(1);
  while (!s.empty() && (s.back() == ' ' || s.back() == '\t')) s.remove_suffix(1);
  return s;
}

}  // namespace nv
