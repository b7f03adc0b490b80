// Code128Barcode: Code 128, code set B, with its modulo-103 check symbol.
//
// A symbol is Start B, one symbol per character, the check symbol and Stop, between two
// quiet zones. Code set B carries the characters 32 to 126 as the values 0 to 94; other
// characters are left out, drawn as nothing and not counted. The check symbol is
// (104 + the sum of value x position) mod 103, positions counted from 1 over the
// characters drawn. Every symbol is 11 modules (Stop 13, its final bar included).
//
// The module is as wide as the rectangle allows for n characters and 54 modules for start,
// check, stop and two 10-module quiet zones (Stop's final bar is not reckoned, so the
// right quiet zone comes out a module short): width / (11 x n + 54), at least 1 unit. The quiet
// zone is what remains either side: (width - (11 x n + 34) x module) / 2, rounded toward zero. A
// rectangle too narrow for the text thus gets a module of 1 and a quiet zone that may be negative:
// the bars then reach past its left edge rather than lose a module, which no scanner could read. n
// counts every character of the text, left-out ones included.
#pragma once

#include <cstdint>
#include <string_view>

#include "ui/barcode/barcode.h"
#include "ui/barcode/barcode_table.h"

namespace nv {

// Entry values of the Code 128 table, beside the symbol values 0 to 102 (ISO/IEC 15417).
inline constexpr int kCode128StartA = 103;
inline constexpr int kCode128StartB = 104;
inline constexpr int kCode128StartC = 105;
inline constexpr int kCode128Stop = 106;     // seven elements, the terminating bar included
inline constexpr int kCode128Reverse = 107;  // in the table, never drawn
inline constexpr int kCode128CheckModulus = 103;

// The Code 128 patterns, entries 0 to 107; built on first use and kept for the run.
const BarcodeTable& Code128Table();

class Code128Barcode final : public Barcode {
 public:
  int64_t ElementWidth(int count) const override;
  void Prepare(BarcodeCanvas& dc, int64_t width, std::string_view text) override;
  int64_t DrawStart(BarcodeCanvas& dc, int64_t x, int64_t y, int64_t width,
                    int64_t height) override;
  int64_t DrawStop(BarcodeCanvas& dc, int64_t x, int64_t y, int64_t width, int64_t height) override;
  int64_t DrawChar(BarcodeCanvas& dc, int64_t x, int64_t y, int64_t width, int64_t height,
                   unsigned char character) override;

  int64_t quiet_zone() const { return quiet_zone_; }
  int64_t characters_drawn() const { return characters_drawn_; }
  // The running check sum, kept modulo 103 (the check symbol is all that is read of it).
  int check_sum() const { return check_sum_; }

 private:
  int64_t quiet_zone_ = 0;
  int64_t characters_drawn_ = 0;
  int check_sum_ = 0;
};

struct BarcodeOptions {
  uint32_t bar_colour = Barcode::kBlack;  // 0xRRGGBB
};

// Draws text as Code 128 in the rectangle; returns the width drawn, quiet zones included.
int64_t DrawCode128(BarcodeCanvas& dc, int64_t x, int64_t y, int64_t width, int64_t height,
                    std::string_view text, const BarcodeOptions& options = {});

}  // namespace nv
