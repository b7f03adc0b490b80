// GrayBitmap: an 8-bit gray image that barcodes are drawn on, for nvtool's labels.
#pragma once

#include <cstdint>
#include <vector>

#include "ui/barcode/barcode.h"

namespace nv {

class GrayBitmap final : public BarcodeCanvas {
 public:
  // White, width x height pixels. REQUIRES: width, height >= 0.
  GrayBitmap(int width, int height);

  // Fills the part of the rectangle that lies on the image with the colour's gray.
  void FillRect(int64_t x, int64_t y, int64_t width, int64_t height, uint32_t colour) override;

  int width() const { return width_; }
  int height() const { return height_; }
  // Rows top to bottom, 0 black, 255 white.
  const std::vector<uint8_t>& pixels() const { return pixels_; }
  uint8_t at(int x, int y) const { return pixels_[static_cast<size_t>(y) * width_ + x]; }

 private:
  int width_;
  int height_;
  std::vector<uint8_t> pixels_;
};

// The gray of a 0xRRGGBB colour by the luma weights of television (0.299, 0.587, 0.114).
uint8_t GrayOf(uint32_t colour);

}  // namespace nv
