#include "import/mba/mba_source.h"

#include <gtest/gtest.h>

#include "import/mba/mba_testing.h"

namespace nv {
namespace {

using testing::MbaLineText;

MbaLineText FullLine() {
  MbaLineText line('S', "0102PRESS 123");
  line.Description("Hydraulic press, 40 ton")
      .Cost("12500.50")
      .Acquired("03151998")
      .Disposed("06/30/24")
      .MidQuarter()
      .Accounts("1500", "1510-ACC", "6100")
      .Book(0, 'M', "7", "12500.50", "0", "9000.25")
      .Book(1, 'N', "10", "12000", "100", "8000")
      .Book(2, 'S', "15", "11000", "500.75", "7000")
      .Book(3, 'D', " 5", "10000", "250", "6000");
  return line;
}

TEST(MbaSourceTest, EveryFieldIsReadFromItsColumns) {
  const MbaLine line = ParseMbaLine(FullLine().text());
  EXPECT_EQ(line.status, 'S');
  EXPECT_EQ(line.id, "0102PRESS 123 ") << "the ID keeps its 14 columns";
  EXPECT_EQ(line.description, "Hydraulic press, 40 ton");
  EXPECT_DOUBLE_EQ(line.cost, 12500.50);
  EXPECT_EQ(line.acquired, (Date{3, 15, 1998}));
  EXPECT_EQ(line.disposed, (Date{6, 30, 2024}));
  EXPECT_TRUE(line.mid_quarter);
  EXPECT_EQ(line.asset_account, "1500");
  EXPECT_EQ(line.accumulated_account, "1510-ACC");
  EXPECT_EQ(line.expense_account, "6100");

  const MbaBookBlock& tax = line.book(MbaBook::kTax);
  EXPECT_EQ(tax.method, 'M');
  EXPECT_EQ(tax.life, 7);
  EXPECT_DOUBLE_EQ(tax.basis, 12500.50);
  EXPECT_DOUBLE_EQ(tax.salvage, 0);
  EXPECT_DOUBLE_EQ(tax.accumulated, 9000.25);
  EXPECT_EQ(line.book(MbaBook::kAmt).method, 'N');
  EXPECT_EQ(line.book(MbaBook::kAmt).life, 10);
  EXPECT_DOUBLE_EQ(line.book(MbaBook::kAmt).salvage, 100);
  EXPECT_EQ(line.book(MbaBook::kInternal).method, 'S');
  EXPECT_DOUBLE_EQ(line.book(MbaBook::kInternal).salvage, 500.75);
  const MbaBookBlock& other = line.book(MbaBook::kOther);
  EXPECT_EQ(other.method, 'D');
  EXPECT_EQ(other.life, 5);
  EXPECT_DOUBLE_EQ(other.basis, 10000);
  EXPECT_DOUBLE_EQ(other.salvage, 250);
  EXPECT_DOUBLE_EQ(other.accumulated, 6000);
}

TEST(MbaSourceTest, ALongerLineReadsTheSameAndAShorterOneOnlyWhatItHas) {
  const std::string full = FullLine().text();
  ASSERT_EQ(full.size(), 490u);
  // Text past the last column is not read, and is not taken for another line.
  const std::string longer = full + std::string(800, '9') + "S0399EXTRA\n";
  const std::vector<MbaSourceLine> lines = SplitMbaLines(longer);
  ASSERT_EQ(lines.size(), 1u);
  const MbaLine a = ParseMbaLine(lines[0].text);
  const MbaLine b = ParseMbaLine(full);
  EXPECT_EQ(a.id, b.id);
  EXPECT_DOUBLE_EQ(a.book(MbaBook::kOther).accumulated, 6000);
  EXPECT_EQ(a.book(MbaBook::kOther).life, b.book(MbaBook::kOther).life);

  // Cut inside the description: what the line has, and nothing after it.
  const MbaLine cut = ParseMbaLine(full.substr(0, 24));
  EXPECT_EQ(cut.status, 'S');
  EXPECT_EQ(cut.id, "0102PRESS 123 ");
  EXPECT_EQ(cut.description, "Hydraulic");
  EXPECT_DOUBLE_EQ(cut.cost, 0);
  EXPECT_TRUE(cut.acquired.empty());
  EXPECT_FALSE(cut.mid_quarter);
  EXPECT_EQ(cut.asset_account, "");
  EXPECT_EQ(cut.book(MbaBook::kTax).method, ' ');

  // Cut inside the AMT block's basis: the Tax block whole, the AMT basis in part.
  // The basis is right-aligned in columns 258 to 271: "12000" starts at 267.
  const MbaLine mid = ParseMbaLine(full.substr(0, 268));
  EXPECT_DOUBLE_EQ(mid.book(MbaBook::kTax).accumulated, 9000.25);
  EXPECT_EQ(mid.book(MbaBook::kAmt).method, 'N');
  EXPECT_DOUBLE_EQ(mid.book(MbaBook::kAmt).basis, 1);
  EXPECT_DOUBLE_EQ(mid.book(MbaBook::kAmt).accumulated, 0);
  EXPECT_EQ(mid.book(MbaBook::kInternal).method, ' ');

  // A status alone is a line of its own.
  EXPECT_EQ(ParseMbaLine("A").id, "");
}

TEST(MbaSourceTest, LinesEndWithLfOrCrLfAndBlankOnesAreSkipped) {
  const std::string text = "A0101X1\r\n\r\n   \nD0101X2\n\t\nS0101X3\x1a\n\x1a";
  const std::vector<MbaSourceLine> lines = SplitMbaLines(text);
  ASSERT_EQ(lines.size(), 3u);
  EXPECT_EQ(lines[0].number, 1);
  EXPECT_EQ(lines[0].text, "A0101X1");
  EXPECT_EQ(lines[1].number, 4);
  EXPECT_EQ(lines[1].text, "D0101X2");
  EXPECT_EQ(lines[2].number, 6);
  EXPECT_EQ(lines[2].text, "S0101X3\x1a") << "only a line of nothing else is passed over";
  EXPECT_TRUE(SplitMbaLines("").empty());
  EXPECT_TRUE(SplitMbaLines("\n\n  \r\n").empty());
  ASSERT_EQ(SplitMbaLines("A1").size(), 1u) << "a last line without a line end";
}

TEST(MbaSourceTest, DatesInTheirThreeFormsAndTheTwoDigitYearRule) {
  EXPECT_EQ(ParseMbaDate("012029"), (Date{1, 20, 2029}));
  EXPECT_EQ(ParseMbaDate("012030"), (Date{1, 20, 1930}));
  EXPECT_EQ(ParseMbaDate("01202030"), (Date{1, 20, 2030}));
  EXPECT_EQ(ParseMbaDate("1/2/29"), (Date{1, 2, 2029}));
  EXPECT_EQ(ParseMbaDate("12-31-1999"), (Date{12, 31, 1999}));
  EXPECT_EQ(ParseMbaDate(" 3/ 4/2001"), (Date{3, 4, 2001})) << "blanks inside are dropped";
  EXPECT_EQ(ParseMbaDate("02/29/2024"), (Date{2, 29, 2024}));
  for (const char* empty : {"", "        ", "00/00/00", "000000", "0101", "1234567", "13/01/24",
                            "02/30/2024", "0/5/24", "5/0/24", "AB0124", "-1/5/24"}) {
    EXPECT_TRUE(ParseMbaDate(empty).empty()) << "\"" << empty << "\"";
  }
}

TEST(MbaSourceTest, AmountsReadAsFarAsTheyAreDecimal) {
  EXPECT_DOUBLE_EQ(ParseMbaAmount("     1234.56"), 1234.56);
  EXPECT_DOUBLE_EQ(ParseMbaAmount("-12.5"), -12.5);
  EXPECT_DOUBLE_EQ(ParseMbaAmount(".25"), 0.25);
  EXPECT_DOUBLE_EQ(ParseMbaAmount("300.00CR"), 300);
  EXPECT_DOUBLE_EQ(ParseMbaAmount("1,234.00"), 1);
  EXPECT_DOUBLE_EQ(ParseMbaAmount("abc"), 0);
  EXPECT_DOUBLE_EQ(ParseMbaAmount("."), 0);
}

struct IdCase {
  const char* id;
  const char* location;
  const char* category;
  const char* middle;
  const char* number_text;
  double number;
  long whole;
};

TEST(MbaSourceTest, TheIdSplitsIntoCodesMiddleTextAndTrailingNumber) {
  const IdCase cases[] = {
      {"0102123", "01", "02", "", "123", 123, 123},
      {"0102ABC45", "01", "02", "ABC", "45", 45, 45},
      {"0102AB12.5", "01", "02", "AB", "12.5", 12.5, 12},
      {"0102AB.25", "01", "02", "AB", ".25", 0.25, 0},
      // At most six digits before the point and two after it.
      {"01021234567", "01", "02", "1", "234567", 234567, 234567},
      {"0102123456.78", "01", "02", "", "123456.78", 123456.78, 123456},
      {"010212.345", "01", "02", "12.", "345", 345, 345},
      {"01021.2.3", "01", "02", "1.", "2.3", 2.3, 2},
      // The number starts after the category at the earliest.
      {"12345678", "12", "34", "", "5678", 5678, 5678},
      {"0102", "01", "02", "", "", 0, 0},
      {"0102AB.", "01", "02", "AB.", "", 0, 0},
      {"0102 X 9", "01", "02", " X ", "9", 9, 9},
      {"", "", "", "", "", 0, 0},
  };
  for (const IdCase& c : cases) {
    const MbaAssetId id = SplitMbaAssetId(c.id);
    EXPECT_EQ(id.location, c.location) << c.id;
    EXPECT_EQ(id.category, c.category) << c.id;
    EXPECT_EQ(id.middle, c.middle) << c.id;
    EXPECT_EQ(id.number_text, c.number_text) << c.id;
    EXPECT_DOUBLE_EQ(id.number, c.number) << c.id;
    EXPECT_EQ(id.whole_number, c.whole) << c.id;
  }
}

}  // namespace
}  // namespace nv
