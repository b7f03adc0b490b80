#include "ui/barcode/code128_barcode.h"

#include <array>

namespace nv {
namespace {

// Symbol values 0 to 107 in the order of the standard: bar, space, bar, space, bar, space
// (and Stop's final bar).
constexpr std::array<std::string_view, 108> kCode128Patterns = {
    "212222", "222122", "222221", "121223", "121322", "131222", "122213", "122312",  "132212",
    "221213", "221312", "231212", "112232", "122132", "122231", "113222", "123122",  "123221",
    "223211", "221132", "221231", "213212", "223112", "312131", "311222", "321122",  "321221",
    "312212", "322112", "322211", "212123", "212321", "232121", "111323", "131123",  "131321",
    "112313", "132113", "132311", "211313", "231113", "231311", "112133", "112331",  "132131",
    "113123", "113321", "133121", "313121", "211331", "231131", "213113", "213311",  "213131",
    "311123", "311321", "331121", "312113", "312311", "332111", "314111", "221411",  "431111",
    "111224", "111422", "121124", "121421", "141122", "141221", "112214", "112412",  "122114",
    "122411", "142112", "142211", "241211", "221114", "413111", "241112", "134111",  "111242",
    "121142", "121241", "114212", "124112", "124211", "411212", "421112", "421211",  "212141",
    "214121", "412121", "111143", "111341", "131141", "114113", "114311", "411113",  "411311",
    "113141", "114131", "311141", "411131", "211412", "211214", "211232", "2331112", "211133",
};

// Code set B: characters 32 to 126 are the values 0 to 94.
constexpr unsigned char kFirstSetB = 32;
constexpr unsigned char kLastSetB = 126;
// The module and the quiet zone are reckoned on 11 modules per character, 34 for start,
// check and stop, and two quiet zones of 10 modules. The 34 leaves out Stop's final bar, so
// the right quiet zone ends up one module narrower than the left and Draw reports one
// module more than the rectangle; only white falls outside it. Kept, so that printed
// labels keep their layout.
constexpr int64_t kModulesPerCharacter = 11;
constexpr int64_t kSymbolOverhead = 11 + 11 + 12;
constexpr int64_t kQuietModules = 10;
static_assert(kSymbolOverhead + 2 * kQuietModules == 54);

}  // namespace

const BarcodeTable& Code128Table() {
  static const BarcodeTable table = [] {
    BarcodeTable built;
    for (size_t value = 0; value < kCode128Patterns.size(); ++value) {
      built.Set(static_cast<unsigned char>(value), kCode128Patterns[value]);
    }
    return built;
  }();
  return table;
}

int64_t Code128Barcode::ElementWidth(int count) const {
  return count * module_width_;
}

void Code128Barcode::Prepare(BarcodeCanvas&, int64_t width, std::string_view text) {
  const int64_t n = static_cast<int64_t>(text.size());
  const int64_t modules = kModulesPerCharacter * n + kSymbolOverhead + 2 * kQuietModules;
  set_module_width(width / modules);  // held at 1 and more
  quiet_zone_ = (width - (kModulesPerCharacter * n + kSymbolOverhead) * module_width_) / 2;
  characters_drawn_ = 0;
  check_sum_ = 0;
}

int64_t Code128Barcode::DrawStart(BarcodeCanvas& dc, int64_t x, int64_t y, int64_t,
                                  int64_t height) {
  check_sum_ = kCode128StartB;
  return quiet_zone_ + DrawPattern(dc, x + quiet_zone_, y, height,
                                   Code128Table()[kCode128StartB].Elements(), true);
}

int64_t Code128Barcode::DrawChar(BarcodeCanvas& dc, int64_t x, int64_t y, int64_t, int64_t height,
                                 unsigned char character) {
  if (character < kFirstSetB || character > kLastSetB) return 0;
  const int value = character - kFirstSetB;
  const int64_t drawn = DrawPattern(
      dc, x, y, height, Code128Table()[static_cast<unsigned char>(value)].Elements(), true);
  ++characters_drawn_;
  // value x position, reduced as it goes: the same check symbol, and no overflow however
  // long the text.
  const int position = static_cast<int>(characters_drawn_ % kCode128CheckModulus);
  check_sum_ = (check_sum_ + value * position) % kCode128CheckModulus;
  return drawn;
}

int64_t Code128Barcode::DrawStop(BarcodeCanvas& dc, int64_t x, int64_t y, int64_t, int64_t height) {
  const auto check = static_cast<unsigned char>(check_sum_ % kCode128CheckModulus);
  int64_t drawn = DrawPattern(dc, x, y, height, Code128Table()[check].Elements(), true);
  drawn += DrawPattern(dc, x + drawn, y, height, Code128Table()[kCode128Stop].Elements(), true);
  return drawn + quiet_zone_;
}

int64_t DrawCode128(BarcodeCanvas& dc, int64_t x, int64_t y, int64_t width, int64_t height,
                    std::string_view text, const BarcodeOptions& options) {
  Code128Barcode barcode;
  barcode.set_bar_colour(options.bar_colour);
  return barcode.Draw(dc, x, y, width, height, text);
}

}  // namespace nv
