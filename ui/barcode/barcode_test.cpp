#include <gtest/gtest.h>

#include <algorithm>
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
  // The bars and the spaces between them, left to right, in modules of `module` units.
  Widths Elements(int64_t module) const {
    Widths widths;
    for (size_t i = 0; i < rects.size(); ++i) {
      if (i > 0) {
        const int64_t gap = rects[i].x - (rects[i - 1].x + rects[i - 1].width);
        EXPECT_GT(gap, 0) << "bars " << i - 1 << " and " << i << " touch or overlap";
        EXPECT_EQ(gap % module, 0);
        widths.push_back(static_cast<int>(gap / module));
      }
      EXPECT_EQ(rects[i].width % module, 0);
      widths.push_back(static_cast<int>(rects[i].width / module));
    }
    return widths;
  }
  std::vector<Rect> rects;
};

Widths Concat(std::initializer_list<Widths> parts) {
  Widths all;
  for (const Widths& part : parts) all.insert(all.end(), part.begin(), part.end());
  return all;
}

// Patterns from the published Code 128 table, written out by hand.
const Widths kStartB = {2, 1, 1, 2, 1, 4};
const Widths kStop = {2, 3, 3, 1, 1, 1, 2};

TEST(BarcodeTable, EntriesAreDigitTextsEndedByZero) {
  EXPECT_EQ(ToWidths(BarcodeTable::Entry::FromDigits("2-1 1x4").Elements()), Widths({2, 1, 1, 4}));
  EXPECT_EQ(ToWidths(BarcodeTable::Entry::FromDigits("21031").Elements()), Widths({2, 1}));
  EXPECT_TRUE(BarcodeTable::Entry::FromDigits("").Elements().empty());
  EXPECT_TRUE(BarcodeTable::Entry::FromDigits("abc").Elements().empty());
  // Twenty digits: the entry keeps what it holds and stays terminated.
  const BarcodeTable::Entry long_entry = BarcodeTable::Entry::FromDigits("12345678912345678912");
  EXPECT_EQ(long_entry.Elements().size(), BarcodeTable::kMaxElements);
  EXPECT_EQ(long_entry.widths.back(), 0);
  EXPECT_EQ(BarcodeTable::Entry::FromDigits("2331112").Modules(), 13);

  const BarcodeTable table({"A211", "",
                            "\xff"
                            "9",
                            "A31"});
  EXPECT_EQ(ToWidths(table['A'].Elements()), Widths({3, 1}));  // the later row wins
  EXPECT_EQ(ToWidths(table[255].Elements()), Widths({9}));
  EXPECT_TRUE(table['B'].Elements().empty());
  EXPECT_TRUE(table[0].Elements().empty());
}

// The table's own rules: each symbol is 11 modules of three bars and three spaces, its
// bars an even number of modules, each width 1 to 4, and no two symbols alike. A typing
// slip in a pattern breaks at least one of these.
TEST(Code128Table, EverySymbolKeepsTheRulesOfTheSymbology) {
  const BarcodeTable& table = Code128Table();
  EXPECT_EQ(&table, &Code128Table());  // built once
  std::set<Widths> seen;
  for (int value = 0; value <= kCode128StartC; ++value) {
    const Widths widths = ToWidths(table[static_cast<unsigned char>(value)].Elements());
    ASSERT_EQ(widths.size(), 6u) << "value " << value;
    EXPECT_EQ(table[static_cast<unsigned char>(value)].Modules(), 11) << "value " << value;
    EXPECT_EQ((widths[0] + widths[2] + widths[4]) % 2, 0) << "value " << value;
    for (int w : widths) EXPECT_TRUE(w >= 1 && w <= 4) << "value " << value;
    EXPECT_TRUE(seen.insert(widths).second) << "value " << value << " repeats another";
  }
  EXPECT_EQ(ToWidths(table[kCode128StartB].Elements()), kStartB);
  EXPECT_EQ(ToWidths(table[kCode128Stop].Elements()), kStop);
  EXPECT_EQ(table[kCode128Reverse].Modules(), 11);
  for (int value = kCode128Reverse + 1; value < 256; ++value) {
    EXPECT_TRUE(table[static_cast<unsigned char>(value)].Elements().empty());
  }
}

TEST(Code128Barcode, LetterAIsStartBThenValue33Check34Stop) {
  RecordingCanvas dc;
  Code128Barcode barcode;
  // 65 modules of 3 units: 1 character + 54. The quiet zones are reckoned on 45 modules of
  // bars, Stop's final bar not counted, so 30 + 46 x 3 + 30 units are reported: the right
  // quiet zone reaches one module past the rectangle.
  EXPECT_EQ(barcode.Draw(dc, 100, 7, 195, 40, "A"), 198);
  EXPECT_EQ(barcode.module_width(), 3);
  EXPECT_EQ(barcode.quiet_zone(), 30);
  EXPECT_EQ(barcode.characters_drawn(), 1);
  EXPECT_EQ(barcode.check_sum(), 34);  // (104 + 33 x 1) mod 103
  ASSERT_FALSE(dc.rects.empty());
  EXPECT_EQ(dc.rects.front().x, 130);
  EXPECT_EQ(dc.rects.back().x + dc.rects.back().width, 268);
  for (const Rect& r : dc.rects) {
    EXPECT_EQ(r.y, 7);
    EXPECT_EQ(r.height, 40);
    EXPECT_EQ(r.colour, Barcode::kBlack);
  }
  const Widths value33 = {1, 1, 1, 3, 2, 3};
  const Widths check34 = {1, 3, 1, 1, 2, 3};
  EXPECT_EQ(dc.Elements(3), Concat({kStartB, value33, check34, kStop}));
}

TEST(Code128Barcode, CharactersOutsideSetBAreLeftOutOfBarsAndCheckSum) {
  RecordingCanvas dc;
  Code128Barcode barcode;
  // "B" is 34 at position 1 and "C" 35 at position 2: (104 + 34 + 70) mod 103 = 2. Had the
  // left-out characters counted, "C" would stand at position 4 and the check be 3.
  const std::string text =
      "\x01"
      "B\x80\xe9"
      "C\n";
  // n = 6 counts them all: 120 modules, so 360 units give a module of 3 and a quiet zone
  // of (360 - 100 x 3) / 2 = 30, though only 2 characters are drawn.
  EXPECT_EQ(barcode.Draw(dc, 0, 0, 360, 10, text), 30 + (11 + 22 + 11 + 13) * 3 + 30);
  EXPECT_EQ(barcode.characters_drawn(), 2);
  EXPECT_EQ(barcode.check_sum(), 2);
  const Widths value34 = {1, 3, 1, 1, 2, 3};
  const Widths value35 = {1, 3, 1, 3, 2, 1};
  const Widths check2 = {2, 2, 2, 2, 2, 1};
  EXPECT_EQ(dc.Elements(3), Concat({kStartB, value34, value35, check2, kStop}));
  EXPECT_EQ(dc.rects.front().x, 30);

  // Nothing drawable at all: start, check 104 mod 103 = 1, stop.
  RecordingCanvas empty;
  Code128Barcode none;
  none.Draw(empty, 0, 0, 1000, 10, "\x7f\x1f");
  EXPECT_EQ(none.characters_drawn(), 0);
  EXPECT_EQ(empty.Elements(none.module_width()),
            Concat({kStartB, Widths{2, 2, 2, 1, 2, 2}, kStop}));
}

TEST(Code128Barcode, CheckSumHoldsOverLongTexts) {
  // 103 times "!" (value 1): 104 + (1 + 2 + ... + 103) = 5460 = 53 x 103 + 1.
  RecordingCanvas dc;
  Code128Barcode barcode;
  barcode.Draw(dc, 0, 0, 0, 5, std::string(103, '!'));
  EXPECT_EQ(barcode.characters_drawn(), 103);
  EXPECT_EQ(barcode.check_sum(), 1);
  const Widths elements = dc.Elements(1);
  // The check symbol sits before the stop: value 1's pattern.
  const Widths check(elements.end() - 13, elements.end() - 7);
  EXPECT_EQ(check, Widths({2, 2, 2, 1, 2, 2}));
}

// A rectangle narrower than 11 x n + 54 units draws with a module of 1 unit, centred as
// well as it goes, overhanging both edges when even the bars do not fit.
TEST(Code128Barcode, NarrowRectanglesDrawOneUnitModules) {
  struct Case {
    int64_t width, module, quiet_zone;
  };
  // "A": 45 modules of bars, 65 with the quiet zones.
  for (const Case& c : {Case{130, 2, 20}, Case{129, 1, 42}, Case{65, 1, 10}, Case{64, 1, 9},
                        Case{45, 1, 0}, Case{40, 1, -2}, Case{0, 1, -22}, Case{-9, 1, -27}}) {
    RecordingCanvas dc;
    Code128Barcode barcode;
    const int64_t drawn = barcode.Draw(dc, 50, 0, c.width, 12, "A");
    EXPECT_EQ(barcode.module_width(), c.module) << "width " << c.width;
    EXPECT_EQ(barcode.quiet_zone(), c.quiet_zone) << "width " << c.width;
    EXPECT_EQ(drawn, 46 * c.module + 2 * c.quiet_zone) << "width " << c.width;
    ASSERT_FALSE(dc.rects.empty());
    EXPECT_EQ(dc.rects.front().x, 50 + c.quiet_zone) << "width " << c.width;
    EXPECT_EQ(dc.rects.front().width, 2 * c.module) << "width " << c.width;
  }
}

TEST(Code128Barcode, ExtremeRectanglesAndTextsStayInRange) {
  Code128Barcode barcode;
  RecordingCanvas dc;
  barcode.Draw(dc, LLONG_MIN, LLONG_MAX, LLONG_MAX, LLONG_MIN, "A");
  EXPECT_EQ(barcode.module_width(), Barcode::kMaxModuleWidth);
  EXPECT_TRUE(dc.rects.empty());  // no height: nothing to fill

  RecordingCanvas wide;
  barcode.Draw(wide, INT_MAX, 0, INT_MAX, 1, std::string(100000, '~'));
  EXPECT_EQ(barcode.characters_drawn(), 100000);
  EXPECT_GT(wide.rects.back().x, wide.rects.front().x);
}

// The base class draws no symbology: only what the derived class asks of it.
class TwoBars final : public Barcode {
 public:
  int64_t DrawChar(BarcodeCanvas& dc, int64_t x, int64_t y, int64_t, int64_t height,
                   unsigned char) override {
    const uint8_t widths[] = {1, 2, 3};
    return DrawPattern(dc, x, y, height, widths, false);
  }
};

TEST(Barcode, BaseDrawsPatternsPerCharacterAtFiveUnitModules) {
  RecordingCanvas dc;
  TwoBars barcode;
  barcode.set_module_width(2);
  barcode.set_bar_colour(0x123456);
  // Prepare sets the module back to 5; space 5, bar 10, space 15 per character.
  EXPECT_EQ(barcode.Draw(dc, 10, 1, 999, 3, "ab"), 60);
  EXPECT_EQ(barcode.module_width(), 5);
  ASSERT_EQ(dc.rects.size(), 2u);
  EXPECT_EQ(dc.rects[0].x, 15);
  EXPECT_EQ(dc.rects[0].width, 10);
  EXPECT_EQ(dc.rects[1].x, 45);
  EXPECT_EQ(dc.rects[1].colour, 0x123456u);

  RecordingCanvas plain;
  Barcode base;
  EXPECT_EQ(base.Draw(plain, 0, 0, 100, 10, "text"), 0);
  EXPECT_TRUE(plain.rects.empty());
  EXPECT_EQ(base.DrawBar(plain, 0, 0, 7, 10, false), 7);
  EXPECT_TRUE(plain.rects.empty());
  base.set_module_width(0);
  EXPECT_EQ(base.module_width(), 1);
}

TEST(DrawCode128, PaintsInTheChosenColour) {
  RecordingCanvas dc;
  EXPECT_EQ(DrawCode128(dc, 0, 0, 65, 5, "A", {.bar_colour = 0xff0000}), 10 + 46 + 10);
  ASSERT_FALSE(dc.rects.empty());
  for (const Rect& r : dc.rects) EXPECT_EQ(r.colour, 0xff0000u);
}

}  // namespace
}  // namespace nv
