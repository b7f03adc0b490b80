#include "tools/gray_bitmap.h"

#include <algorithm>

namespace nv {
namespace {

// start + extent held within 0 to limit; a sum past the 64-bit range lies past any limit.
int64_t EdgeWithin(int64_t start, int64_t extent, int64_t limit) {
  int64_t end = 0;
  if (__builtin_add_overflow(start, std::max<int64_t>(extent, 0), &end)) return limit;
  return std::clamp<int64_t>(end, 0, limit);
}

}  // namespace

GrayBitmap::GrayBitmap(int width, int height)
    : width_(std::max(width, 0)),
      height_(std::max(height, 0)),
      pixels_(static_cast<size_t>(width_) * height_, 255) {}

void GrayBitmap::FillRect(int64_t x, int64_t y, int64_t width, int64_t height, uint32_t colour) {
  const int64_t left = std::clamp<int64_t>(x, 0, width_);
  const int64_t top = std::clamp<int64_t>(y, 0, height_);
  const int64_t right = EdgeWithin(x, width, width_);
  const int64_t bottom = EdgeWithin(y, height, height_);
  const uint8_t gray = GrayOf(colour);
  for (int64_t row = top; row < bottom; ++row) {
    std::fill(pixels_.begin() + row * width_ + left, pixels_.begin() + row * width_ + right, gray);
  }
}

uint8_t GrayOf(uint32_t colour) {
  const uint32_t r = (colour >> 16) & 0xFF, g = (colour >> 8) & 0xFF, b = colour & 0xFF;
  return static_cast<uint8_t>((r * 299 + g * 587 + b * 114 + 500) / 1000);
}

}  // namespace nv
