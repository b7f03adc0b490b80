#include "gui/barcode_painter.h"

#include <QBrush>
#include <QColor>
#include <QPainter>
#include <QRect>
#include <algorithm>
#include <climits>
#include <optional>

namespace nv {
namespace {

// Far beyond any device, and safe for QRect's int arithmetic.
constexpr int64_t kPaintLimit = int64_t{1} << 24;

class PainterCanvas final : public BarcodeCanvas {
 public:
  explicit PainterCanvas(QPainter& painter) : painter_(painter) {}

  void FillRect(int64_t x, int64_t y, int64_t width, int64_t height, uint32_t colour) override {
    const int64_t left = std::clamp(x, -kPaintLimit, kPaintLimit);
    const int64_t top = std::clamp(y, -kPaintLimit, kPaintLimit);
    const int64_t right = std::clamp(x + width, -kPaintLimit, kPaintLimit);
    const int64_t bottom = std::clamp(y + height, -kPaintLimit, kPaintLimit);
    if (right <= left || bottom <= top) return;
    // The brush is made once for the barcode's colour and reused for every bar.
    if (!brush_ || colour_ != colour) {
      brush_ = QBrush(QColor::fromRgb(static_cast<QRgb>(colour | 0xFF000000u)));
      colour_ = colour;
    }
    painter_.fillRect(QRect(static_cast<int>(left), static_cast<int>(top),
                            static_cast<int>(right - left), static_cast<int>(bottom - top)),
                      *brush_);
  }

 private:
  QPainter& painter_;
  std::optional<QBrush> brush_;
  uint32_t colour_ = 0;
};

}  // namespace

int DrawCode128(QPainter& painter, int x, int y, int width, int height, std::string_view text,
                const BarcodeOptions& options) {
  PainterCanvas canvas(painter);
  const int64_t drawn = DrawCode128(canvas, x, y, width, height, text, options);
  return static_cast<int>(std::clamp<int64_t>(drawn, INT_MIN, INT_MAX));
}

}  // namespace nv
