#include "ui/barcode/barcode.h"

#include <algorithm>

namespace nv {

int64_t Barcode::ElementWidth(int count) const {
  return count * module_width_;
}

void Barcode::Prepare(BarcodeCanvas&, int64_t, std::string_view) {
  module_width_ = kDefaultModuleWidth;
}

int64_t Barcode::DrawStart(BarcodeCanvas&, int64_t, int64_t, int64_t, int64_t) {
  return 0;
}

int64_t Barcode::DrawStop(BarcodeCanvas&, int64_t, int64_t, int64_t, int64_t) {
  return 0;
}

int64_t Barcode::DrawChar(BarcodeCanvas&, int64_t, int64_t, int64_t, int64_t, unsigned char) {
  return 0;
}

int64_t Barcode::DrawBar(BarcodeCanvas& dc, int64_t x, int64_t y, int64_t width, int64_t height,
                         bool black) {
  if (black && width > 0 && height > 0) dc.FillRect(x, y, width, height, bar_colour_);
  return width;
}

int64_t Barcode::DrawPattern(BarcodeCanvas& dc, int64_t x, int64_t y, int64_t height,
                             std::span<const uint8_t> widths, bool black_first) {
  int64_t total = 0;
  bool black = black_first;
  for (uint8_t modules : widths) {
    total += DrawBar(dc, x + total, y, ElementWidth(modules), height, black);
    black = !black;
  }
  return total;
}

int64_t Barcode::Draw(BarcodeCanvas& dc, int64_t x, int64_t y, int64_t width, int64_t height,
                      std::string_view text) {
  auto held = [](int64_t v) { return std::clamp(v, -kMaxCoordinate, kMaxCoordinate); };
  x = held(x);
  y = held(y);
  width = held(width);
  height = held(height);
  Prepare(dc, width, text);
  int64_t at = x;
  at += DrawStart(dc, at, y, width, height);
  for (char c : text) at += DrawChar(dc, at, y, width, height, static_cast<unsigned char>(c));
  at += DrawStop(dc, at, y, width, height);
  return at - x;
}

void Barcode::set_module_width(int64_t module_width) {
  module_width_ = std::clamp<int64_t>(module_width, 1, kMaxModuleWidth);
}

}  // namespace nv
