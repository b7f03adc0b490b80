#include "ui/barcode/barcode_table.h"

namespace nv {

BarcodeTable::Entry BarcodeTable::Entry::FromDigits(std::string_view digits) {
  Entry entry;
  size_t count = 0;
  for (char c : digits) {
    if (c < '0' || c > '9') continue;
    if (c == '0' || count == kMaxElements) break;
    entry.widths[count++] = static_cast<uint8_t>(c - '0');
  }
  return entry;
}

std::span<const uint8_t> BarcodeTable::Entry::Elements() const {
  size_t count = 0;
  while (widths[count] != 0) ++count;  // the last slot is always 0
  return {widths.data(), count};
}

int BarcodeTable::Entry::Modules() const {
  int modules = 0;
  for (uint8_t width : Elements()) modules += width;
  return modules;
}

BarcodeTable::BarcodeTable(std::initializer_list<std::string_view> rows) {
  for (std::string_view row : rows) {
    if (row.empty()) continue;
    Set(static_cast<unsigned char>(row[0]), row.substr(1));
  }
}

}  // namespace nv
