#include <gtest/gtest.h>

#include <climits>
#include <set>
#include <string>
#include <vector>

#include "ui/barcode/barcode.h"
#include "ui/barcode/barcode_table.h"
#include "ui/barcode/code128_barcode.h"

namespace nv {
namespace {

using Widths = std::vector<int>;

Widths ToWidths(std::span<const uint8_t> elements) {
  return {elements.begin(), elements.end()};
}

struct Rect {
  int64_t x, y, width, height;
  uint32_t colour;
};

// Keeps every rectangle filled, in order.
class RecordingCanvas final : public BarcodeCanvas {
 public:
  void FillRect(int64_t x, int64_t y, int64_t width, int64_t height, uint32_t colour) override {
    rects.push_back({x, y, width, height, colour});
  }
  // The bars and the gaps between them, left to right, in modules of `module` units.
  Widths Elements(int64_t module) const {
    Widths widths;
    for (size_t i = 0; i < rects.size(); ++i) {
      if (i > 0) widths.push_back(int(rects[i].x - rects[i - 1].x - rects[i - 1].width) / module);
      widths.push_back(int(rects[i].width / module));
    }
    return widths;
  }
  std::vector<Rect> rects;
};

// Patterns of the published Code 128 table, written out by hand.
#define START_B 2, 1, 1, 2, 1, 4
#define STOP 2, 3, 3, 1, 1, 1, 2

TEST(BarcodeTable, EntriesAreDigitTextsEndedByZero) {
  EXPECT_EQ(ToWidths(BarcodeTable::Entry::FromDigits("2-1 1x4").Elements()), Widths({2, 1, 1, 4}));
  EXPECT_EQ(ToWidths(BarcodeTable::Entry::FromDigits("21031").Elements()), Widths({2, 1}));
  const BarcodeTable::Entry twenty = BarcodeTable::Entry::FromDigits("12345678912345678912");
  EXPECT_EQ(twenty.Elements().size(), BarcodeTable::kMaxElements);  // cut, still terminated

  const BarcodeTable table({"A211", "",
                            "\xff"
                            "9",
                            "A31"});
  EXPECT_EQ(ToWidths(table['A'].Elements()), Widths({3, 1}));  // the later row wins
  EXPECT_EQ(ToWidths(table[255].Elements()), Widths({9}));
  EXPECT_TRUE(table['B'].Elements().empty());
}

// The symbology's own rules: each symbol 11 modules of three bars and three spaces 1 to 4
// wide, its bars an even number of modules, no two alike. A slip in a pattern breaks one.
TEST(Code128Table, EverySymbolKeepsTheRulesOfTheSymbology) {
  const BarcodeTable& table = Code128Table();
  std::set<Widths> seen;
  for (int value = 0; value <= kCode128StartC; ++value) {
    const Widths w = ToWidths(table[static_cast<unsigned char>(value)].Elements());
    ASSERT_EQ(w.size(), 6u) << "value " << value;
    EXPECT_EQ(table[static_cast<unsigned char>(value)].Modules(), 11) << "value " << value;
    EXPECT_EQ((w[0] + w[2] + w[4]) % 2, 0) << "value " << value;
    EXPECT_TRUE(*std::max_element(w.begin(), w.end()) <= 4) << "value " << value;
    EXPECT_TRUE(seen.insert(w).second) << "value " << value << " repeats another";
  }
  EXPECT_EQ(ToWidths(table[kCode128Stop].Elements()), Widths({STOP}));
  EXPECT_TRUE(table[kCode128Reverse + 1].Elements().empty());
}

TEST(Code128Barcode, LetterAIsStartBThenValue33Check34Stop) {
  RecordingCanvas dc;
  Code128Barcode barcode;
  // 65 modules of 3 units: 1 character + 54. The quiet zones are reckoned on 45 modules of
  // bars, Stop's final bar not counted, so 30 + 46 x 3 + 30 units are reported: the right
  // quiet zone reaches one module past the rectangle.
  EXPECT_EQ(barcode.Draw(dc, 100, 7, 195, 40, "A"), 198);
  EXPECT_EQ(barcode.module_width(), 3);
  EXPECT_EQ(barcode.check_sum(), 34);  // (104 + 33 x 1) mod 103
  ASSERT_FALSE(dc.rects.empty());
  EXPECT_EQ(dc.rects.front().x, 130);
  EXPECT_EQ(dc.rects.back().x + dc.rects.back().width, 268);
  EXPECT_EQ(dc.rects.back().height, 40);
  EXPECT_EQ(dc.Elements(3), Widths({START_B, 1, 1, 1, 3, 2, 3, 1, 3, 1, 1, 2, 3, STOP}));
}

TEST(Code128Barcode, CharactersOutsideSetBAreLeftOutOfBarsAndCheckSum) {
  RecordingCanvas dc;
  Code128Barcode barcode;
  // "B" is 34 at position 1 and "C" 35 at position 2: (104 + 34 + 70) mod 103 = 2. Had the
  // left-out characters counted, "C" would stand at position 4 and the check be 3.
  // n = 6 counts them all: 120 modules, so 360 units give a module of 3 and a quiet zone
  // of (360 - 100 x 3) / 2 = 30, though only 2 characters are drawn.
  EXPECT_EQ(barcode.Draw(dc, 0, 0, 360, 10,
                         "\x01"
                         "B\x80\xe9"
                         "C\n"),
            30 + 57 * 3 + 30);
  EXPECT_EQ(barcode.characters_drawn(), 2);
  EXPECT_EQ(dc.Elements(3), Widths({START_B, 1, 3, 1, 1, 2, 3,   1, 3, 1, 3, 2, 1,  // B, C
                                    2,       2, 2, 2, 2, 1, STOP}));                // check 2

  RecordingCanvas empty;  // nothing drawable: check 104 mod 103 = 1; module 1000 / 76
  DrawCode128(empty, 0, 0, 1000, 10, "\x7f\x1f");
  EXPECT_EQ(empty.Elements(13), Widths({START_B, 2, 2, 2, 1, 2, 2, STOP}));
}

TEST(Code128Barcode, CheckSumHoldsOverLongTexts) {
  // 103 times "!" (value 1): 104 + (1 + 2 + ... + 103) = 5460 = 53 x 103 + 1.
  RecordingCanvas dc;
  Code128Barcode barcode;
  barcode.Draw(dc, 0, 0, 0, 5, std::string(103, '!'));
  EXPECT_EQ(barcode.check_sum(), 1);
  const Widths elements = dc.Elements(1);
  EXPECT_EQ(Widths(elements.end() - 13, elements.end() - 7), Widths({2, 2, 2, 1, 2, 2}));
}

// A rectangle narrower than 11 x n + 54 units draws with a module of 1 unit, centred as
// well as it goes, overhanging both edges when even the bars do not fit.
TEST(Code128Barcode, NarrowRectanglesDrawOneUnitModules) {
  struct Case {
    int64_t width, module, quiet_zone;
  };
  for (const Case& c :
       {Case{130, 2, 20}, Case{129, 1, 42}, Case{64, 1, 9}, Case{40, 1, -2}, Case{-9, 1, -27}}) {
    RecordingCanvas dc;
    Code128Barcode barcode;
    EXPECT_EQ(barcode.Draw(dc, 50, 0, c.width, 12, "A"), 46 * c.module + 2 * c.quiet_zone);
    EXPECT_EQ(barcode.module_width(), c.module) << "width " << c.width;
    ASSERT_FALSE(dc.rects.empty());
    EXPECT_EQ(dc.rects.front().x, 50 + c.quiet_zone) << "width " << c.width;
    EXPECT_EQ(dc.rects.front().width, 2 * c.module) << "width " << c.width;
  }
  Code128Barcode barcode;  // and the extremes stay within range
  RecordingCanvas dc;
  barcode.Draw(dc, LLONG_MIN, LLONG_MAX, LLONG_MAX, LLONG_MIN, "A");
  EXPECT_EQ(barcode.module_width(), Barcode::kMaxModuleWidth);
  barcode.Draw(dc, INT_MAX, 0, INT_MAX, 1, std::string(100000, '~'));
  EXPECT_EQ(barcode.characters_drawn(), 100000);
}

// The base class draws no symbology: only what the derived class asks of it.
class ThreeElements final : public Barcode {
 public:
  int64_t DrawChar(BarcodeCanvas& dc, int64_t x, int64_t y, int64_t, int64_t height,
                   unsigned char) override {
    const uint8_t widths[] = {1, 2, 3};
    return DrawPattern(dc, x, y, height, widths, false);
  }
};

TEST(Barcode, BaseDrawsPatternsPerCharacterAtFiveUnitModules) {
  RecordingCanvas dc;
  ThreeElements barcode;
  barcode.set_module_width(2);
  barcode.set_bar_colour(0x123456);
  // Prepare sets the module back to 5; space 5, bar 10, space 15 per character.
  EXPECT_EQ(barcode.Draw(dc, 10, 1, 999, 3, "ab"), 60);
  ASSERT_EQ(dc.rects.size(), 2u);
  EXPECT_EQ(dc.rects[0].x, 15);
  EXPECT_EQ(dc.rects[1].x, 45);
  EXPECT_EQ(dc.rects[1].colour, 0x123456u);
  Barcode base;
  EXPECT_EQ(base.Draw(dc, 0, 0, 100, 10, "text"), 0);
  EXPECT_EQ(dc.rects.size(), 2u);
}

}  // namespace
}  // namespace nv
