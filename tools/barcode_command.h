// nvtool barcode TEXT FILE.png [--module N] [--height N]: a label of TEXT as a Code 128
// barcode, drawn by the same coder as the program's printed barcodes and written as a
// gray-scale PNG.
#pragma once

#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "tools/gray_bitmap.h"

namespace nv {

inline constexpr int kDefaultLabelModule = 2;   // pixels
inline constexpr int kDefaultLabelHeight = 60;  // pixels
inline constexpr int kMaxLabelModule = 20;
inline constexpr int kMaxLabelHeight = 1000;
inline constexpr size_t kMaxLabelText = 100;  // characters; asset numbers take 14

// TEXT in an image just wide enough for its symbol and quiet zones at `module` pixels a
// module: (11 x characters + 54) x module by height. REQUIRES: the limits above.
GrayBitmap Code128Label(std::string_view text, int module, int height);

// args after "barcode". 0 when the file was written; 1 when it could not be, or TEXT has
// no character a barcode carries (32 to 126); 2 for a usage error. One line on err for
// each error.
int RunBarcodeCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

}  // namespace nv
