// BarcodeTable: the bar-and-space patterns of a symbology as element widths in modules.
//
// The table has one entry per symbol value or character (256 of them). An entry is a
// zero-terminated list of widths: the elements of one symbol, alternately bar and space,
// each so many modules wide. An entry is written as a text of digits, "211214", where each
// digit is one width; other characters are skipped, and a "0" ends the list as the
// terminating zero does.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <span>
#include <string_view>

namespace nv {

class BarcodeTable {
 public:
  static constexpr size_t kEntries = 256;
  // The longest pattern an entry holds; Code 128's Stop, the longest in use, has 7.
  static constexpr size_t kMaxElements = 15;

  struct Entry {
    // Widths in modules, ended by the first 0; the last slot always stays 0.
    std::array<uint8_t, kMaxElements + 1> widths{};

    // Reads a digit text as above; digits past kMaxElements are dropped.
    static Entry FromDigits(std::string_view digits);
    // The widths before the terminating zero (a view into this entry).
    std::span<const uint8_t> Elements() const;
    // Sum of the widths: the symbol's width in modules.
    int Modules() const;
  };

  // Every entry empty.
  BarcodeTable() = default;
  // From texts whose first character is the entry's index and whose remaining characters
  // are its widths: {"A211214", ...} fills entry 65. Empty texts are skipped; a later text
  // for the same index replaces the earlier.
  explicit BarcodeTable(std::initializer_list<std::string_view> rows);

  const Entry& operator[](unsigned char index) const { return entries_[index]; }
  void Set(unsigned char index, std::string_view digits) {
    entries_[index] = Entry::FromDigits(digits);
  }

 private:
  std::array<Entry, kEntries> entries_{};
};

}  // namespace nv
