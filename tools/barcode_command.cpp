#include "tools/barcode_command.h"

#include <algorithm>
#include <charconv>
#include <fstream>
#include <optional>

#include "tools/png_writer.h"
#include "ui/barcode/code128_barcode.h"

namespace nv {
namespace {

// A whole decimal number from 1 to max, or nothing.
std::optional<int> SizeArgument(const std::string& text, int max) {
  int value = 0;
  const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (ec != std::errc() || end != text.data() + text.size() || value < 1 || value > max) {
    return std::nullopt;
  }
  return value;
}

bool IsBarcodeCharacter(char c) {
  const auto code = static_cast<unsigned char>(c);
  return code >= 32 && code <= 126;
}

}  // namespace

GrayBitmap Code128Label(std::string_view text, int module, int height) {
  const int modules = 11 * static_cast<int>(text.size()) + 54;
  GrayBitmap image(modules * module, height);
  DrawCode128(image, 0, 0, image.width(), image.height(), text);
  return image;
}

int RunBarcodeCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
  if (args.size() < 2 || args.size() % 2 != 0) return 2;
  const std::string& text = args[0];
  const std::string& file = args[1];
  int module = kDefaultLabelModule;
  int height = kDefaultLabelHeight;
  for (size_t i = 2; i < args.size(); i += 2) {
    const bool is_module = args[i] == "--module";
    if (!is_module && args[i] != "--height") {
      err << "nvtool: barcode: unknown option '" << args[i] << "'\n";
      return 2;
    }
    const int max = is_module ? kMaxLabelModule : kMaxLabelHeight;
    const std::optional<int> value = SizeArgument(args[i + 1], max);
    if (!value) {
      err << "nvtool: barcode: " << args[i] << " takes a number from 1 to " << max << "\n";
      return 2;
    }
    (is_module ? module : height) = *value;
  }
  if (text.size() > kMaxLabelText) {
    err << "nvtool: barcode: the text is longer than " << kMaxLabelText << " characters\n";
    return 1;
  }
  const auto carried = std::count_if(text.begin(), text.end(), IsBarcodeCharacter);
  if (carried == 0) {
    err << "nvtool: barcode: the text has no character a barcode carries (32 to 126)\n";
    return 1;
  }
  const GrayBitmap image = Code128Label(text, module, height);
  const std::string png = EncodeGrayPng(static_cast<uint32_t>(image.width()),
                                        static_cast<uint32_t>(image.height()), image.pixels());
  std::ofstream stream(file, std::ios::binary | std::ios::trunc);
  if (!stream || !stream.write(png.data(), static_cast<std::streamsize>(png.size())) ||
      !stream.flush()) {
    err << "nvtool: cannot write " << file << "\n";
    return 1;
  }
  out << "wrote " << file << " (" << image.width() << " x " << image.height() << " pixels)";
  if (static_cast<size_t>(carried) < text.size()) {
    out << "; characters left out (outside 32 to 126): "
        << text.size() - static_cast<size_t>(carried);
  }
  out << "\n";
  return 0;
}

}  // namespace nv
