// Code 128 barcodes painted with QPainter, on a window or a printer page.
#pragma once

#include <string_view>

#include "ui/barcode/code128_barcode.h"

class QPainter;

namespace nv {

// Draws text (Windows-1252 bytes, as records hold it) as Code 128 in the rectangle x, y,
// width, height of the painter's device; returns the width drawn, quiet zones included.
int DrawCode128(QPainter& painter, int x, int y, int width, int height, std::string_view text,
                const BarcodeOptions& options = {});

}  // namespace nv
