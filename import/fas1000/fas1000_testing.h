// FAS 1000/2000 source files for the tests, written from the layouts: fixed-column lines
// built by placing texts at their columns, and the two binary headers with their bytes
// set at the offsets the layouts give (written out here, not taken from the reader).
#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

namespace nv::fas1000::testing {

// A line of a fixed-column file: texts placed at 0-based columns, blanks between them.
class ColumnLine {
 public:
  explicit ColumnLine(std::string_view start = "") : text_(start) {}
  ColumnLine& At(size_t column, std::string_view text) {
    if (text_.size() < column + text.size()) text_.resize(column + text.size(), ' ');
    text_.replace(column, text.size(), text);
    return *this;
  }
  operator std::string() const { return text_; }
  const std::string& str() const { return text_; }

 private:
  std::string text_;
};

// COMPANY.SAF: 125 bytes, the name at 16 (30 bytes), the round-dollars byte at 47.
inline std::string CompanySaf(std::string_view name, bool round_dollars, size_t size = 125) {
  std::string bytes(size, '\0');
  for (size_t i = 0; i < name.size() && 16 + i < size && i < 30; ++i) bytes[16 + i] = name[i];
  if (size > 47) bytes[47] = round_dollars ? 1 : 0;
  return bytes;
}

// cmpsetup.dat: 396 bytes, the books' flags at 135 IRS, 168 internal, 201 state, 234 AMT,
// 300 ACE.
inline std::string CmpSetup(bool irs, bool internal, bool state, bool amt, bool ace,
                            size_t size = 396) {
  std::string bytes(size, '\0');
  const std::pair<size_t, bool> flags[] = {
      {135, irs}, {168, internal}, {201, state}, {234, amt}, {300, ace}};
  for (const auto& [at, used] : flags) {
    if (at < size) bytes[at] = used ? 'Y' : 0;
  }
  return bytes;
}

// A right-aligned asset key of 10 characters.
inline std::string Key(std::string_view number) {
  return std::string(10 - std::min<size_t>(10, number.size()), ' ') + std::string(number);
}

}  // namespace nv::fas1000::testing
