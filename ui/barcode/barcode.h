// Barcode: a bar-and-space painter driven by tables of element widths, and the surface it
// paints on.
//
// A symbology derives from Barcode and decides, per character of the text, which pattern
// to draw; Barcode draws the patterns element by element, from left to right, each as high
// as the rectangle. Positions and widths are device units in 64 bits, so that a long text
// or a rectangle near the edge of the int range cannot overflow the arithmetic: Draw holds
// coordinates within +-2^40 units and set_module_width the module within 2^24, far beyond
// any device. The surface clips what lies outside it.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace nv {

// The device a barcode is drawn on: the printer or window in the program, a bitmap in
// nvtool, a recorder in the tests.
class BarcodeCanvas {
 public:
  virtual ~BarcodeCanvas() = default;
  // Fills the rectangle in the colour 0xRRGGBB. Width and height are at least 1 when
  // Barcode calls it; the rectangle may lie partly or wholly outside the surface.
  virtual void FillRect(int64_t x, int64_t y, int64_t width, int64_t height, uint32_t colour) = 0;
};

class Barcode {
 public:
  static constexpr int64_t kDefaultModuleWidth = 5;
  static constexpr int64_t kMaxModuleWidth = int64_t{1} << 24;
  static constexpr int64_t kMaxCoordinate = int64_t{1} << 40;
  static constexpr uint32_t kBlack = 0x000000;

  Barcode() = default;
  virtual ~Barcode() = default;
  Barcode(const Barcode&) = delete;
  Barcode& operator=(const Barcode&) = delete;

  // count modules in device units.
  virtual int64_t ElementWidth(int count) const;
  // Sets up the drawing of text in a rectangle width units wide. Base: module width 5.
  virtual void Prepare(BarcodeCanvas& dc, int64_t width, std::string_view text);
  // The parts of the symbol; each draws at x and returns the width it took. Base: nothing.
  virtual int64_t DrawStart(BarcodeCanvas& dc, int64_t x, int64_t y, int64_t width, int64_t height);
  virtual int64_t DrawStop(BarcodeCanvas& dc, int64_t x, int64_t y, int64_t width, int64_t height);
  virtual int64_t DrawChar(BarcodeCanvas& dc, int64_t x, int64_t y, int64_t width, int64_t height,
                           unsigned char character);
  // One element: filled with the bar colour when black; returns width either way.
  virtual int64_t DrawBar(BarcodeCanvas& dc, int64_t x, int64_t y, int64_t width, int64_t height,
                          bool black);
  // The elements of widths one after the other, alternately bar and space, the first a bar
  // when black_first; returns their total width.
  virtual int64_t DrawPattern(BarcodeCanvas& dc, int64_t x, int64_t y, int64_t height,
                              std::span<const uint8_t> widths, bool black_first);
  // Prepare, then the start, every character of text and the stop, each right after the
  // one before; returns the total width.
  virtual int64_t Draw(BarcodeCanvas& dc, int64_t x, int64_t y, int64_t width, int64_t height,
                       std::string_view text);

  int64_t module_width() const { return module_width_; }
  // Held within 1 to kMaxModuleWidth.
  void set_module_width(int64_t module_width);
  uint32_t bar_colour() const { return bar_colour_; }
  void set_bar_colour(uint32_t colour) { bar_colour_ = colour; }

 protected:
  int64_t module_width_ = kDefaultModuleWidth;

 private:
  uint32_t bar_colour_ = kBlack;
};

}  // namespace nv
