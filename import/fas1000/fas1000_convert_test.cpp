#include "import/fas1000/fas1000_convert.h"

#include <gtest/gtest.h>

namespace nv::fas1000 {
namespace {

// The company of most tests: all five books, 6-character numbers with a 2-digit subasset.
ConversionSettings AllBooks() {
  ConversionSettings s;
  s.schedule_letters = "TBSAC";
  s.asset_no_format = {6, 2, 0};
  return s;
}

BookLine Book(char digit, std::string method, int years, int months = 0, int percent = 0) {
  BookLine b;
  b.key = "       100";
  b.digit = digit;
  b.method = std::move(method);
  b.life_years = years;
  b.life_months = months;
  b.percent = percent;
  b.cost = 1000;
  return b;
}

FasAsset Asset(std::vector<BookLine> books, char property_type = ' ') {
  FasAsset a;
  a.general.line = 1;
  a.general.key = "       100";
  a.general.status = 'A';
  a.general.property_type = property_type;
  a.books = std::move(books);
  return a;
}

NvAsset Convert(const FasAsset& source, std::vector<SkippedBook>* skipped = nullptr,
                ConversionSettings settings = AllBooks()) {
  std::vector<SkippedBook> ignored;
  return ConvertAsset(source, settings, skipped ? skipped : &ignored);
}

TEST(Fas1000ConvertTest, AnAssetWithTwoBooksAndALabelLineFieldByField) {
  FasAsset source;
  GeneralLine& g = source.general;
  g.line = 3;
  g.key = "    123.01";
  g.company_asset_no = "  CO-77     ";
  g.status = 'A';
  g.property_type = ' ';
  g.category = "BL";
  g.class_life = "0700";
  g.credit_code = ' ';
  g.credit_amount = 250;
  g.description = "Warehouse shelving" + std::string(12, ' ');

  LabelLine label;
  label.key = g.key;
  label.gl_code = "  1500-200-ABCDEFGHIJKLMNOPQ";  // 25 characters after its blanks
  label.location = "Plant 4";
  label.custodian = "J Smith             ";
  label.user_fields[2] = "third user field    ";
  source.label = label;

  BookLine tax = Book('0', "MF", 7, 0, 200);
  tax.key = g.key;
  tax.acquired = {3, 15, 2021};
  tax.cost = 12500;
  tax.sec179 = 1500;
  tax.accumulated = 7500.63;
  tax.business_percent = 80;
  BookLine internal = Book('1', "SL", 10, 6);
  internal.key = g.key;
  internal.acquired = {4, 1, 2021};
  internal.cost = 12000;
  internal.accumulated = 4000;
  source.books = {tax, internal};

  ConversionSettings settings;
  settings.schedule_letters = "TB";
  settings.asset_no_format = {6, 2, 0};
  settings.account_source = kSourceGlCode;
  settings.user_field_sources[0] = kSourceClassLife;
  settings.user_field_sources[1] = kSourceCustodian;
  settings.user_field_sources[2] = kSourceUserField1 + 2;
  std::vector<SkippedBook> skipped;
  const NvAsset a = ConvertAsset(source, settings, &skipped);
  EXPECT_TRUE(skipped.empty());

  EXPECT_EQ(a.number.Text(), "   123.01");
  EXPECT_TRUE(a.number.valid());
  EXPECT_EQ(a.description, "Warehouse shelving");
  EXPECT_EQ(a.category, "BL");
  EXPECT_EQ(a.location, "Plant 4");
  EXPECT_EQ(a.account, "1500-200-ABCDEFGHIJKLMNO") << "cut to 24";
  EXPECT_EQ(a.user_fields[0], "07-00");
  EXPECT_EQ(a.user_fields[1], "J Smith");
  EXPECT_EQ(a.user_fields[2], "third user field");
  EXPECT_EQ(a.user_fields[3], "");
  EXPECT_EQ(a.cash_and_notes, 12500) << "the first book's cost";
  EXPECT_EQ(a.trade_in, 0);
  EXPECT_EQ(a.purchase_date, (Date{3, 15, 2021}));
  EXPECT_EQ(a.date_in_service, (Date{3, 15, 2021}));
  EXPECT_EQ(a.new_used_trade, 'N');
  EXPECT_EQ(a.prior_short_years, 0);
  EXPECT_EQ(a.type_4797, 45);
  EXPECT_FALSE(a.disposed());
  EXPECT_EQ(a.amount_disposed, 0);
  EXPECT_EQ(a.sale_amount, 0);
  ASSERT_EQ(a.schedule_letters, "TB");

  NvAssetSchedule t;
  t.method = kMethodMacrs;
  t.business_percent = 80;
  t.useful_life = {7, 0};
  t.itc_code = 1;  // a credit of 250 was taken
  t.convention = 'Y';
  t.sec179_expense = 1500;
  t.prior_allowed_depr = 7500.63;
  t.prior_allowable_depr = 7500.63;
  EXPECT_EQ(*a.Schedule('T'), t);

  NvAssetSchedule b;
  b.method = kMethodStraightLine;
  b.business_percent = 100;
  b.useful_life = {10, 6};
  b.substitute_basis = 12000;  // differs from Cash and Notes
  b.itc_code = 3;              // not an investment-credit book
  b.convention = '1';
  b.prior_allowed_depr = 4000;
  b.prior_allowable_depr = 4000;
  EXPECT_EQ(*a.Schedule('B'), b);
}

TEST(Fas1000ConvertTest, WithoutALabelLineMatchedFieldsStayEmptyEvenFromAssetgen) {
  FasAsset source = Asset({Book('0', "SL", 5)});
  source.general.company_asset_no = "CO-77       ";
  source.general.class_life = "0500";
  ConversionSettings settings = AllBooks();
  settings.account_source = kSourceCompanyAssetNo;
  settings.user_field_sources[0] = kSourceClassLife;
  const NvAsset a = Convert(source, nullptr, settings);
  EXPECT_EQ(a.account, "");
  EXPECT_EQ(a.user_fields[0], "");
  EXPECT_EQ(a.location, "");

  // With a label line they come from assetgen.asc; a blank class life gains no "-".
  source.label = LabelLine{};
  source.general.class_life = "    ";
  settings.user_field_sources[1] = kSourceClassLife;
  const NvAsset b = Convert(source, nullptr, settings);
  EXPECT_EQ(b.account, "CO-77");
  EXPECT_EQ(b.user_fields[1], "");
  EXPECT_EQ(SourceItemText(kSourceClassLife, Asset({}), 20), "") << "no label line";
}

TEST(Fas1000ConvertTest, InvestmentCreditFromTheFirstLineInTheCreditBooksOnly) {
  // "X": no credit, in every book.
  FasAsset source =
      Asset({Book('0', "SL", 5), Book('1', "SL", 5), Book('3', "SL", 5), Book('5', "SL", 5)});
  source.general.credit_code = 'X';
  source.general.credit_amount = 900;
  NvAsset a = Convert(source);
  for (char letter : std::string("TBAC")) EXPECT_EQ(a.Schedule(letter)->itc_code, 3) << letter;
  EXPECT_EQ(a.new_used_trade, 'N');

  // "C": used property; a credit amount below half a cent counts as none.
  source.general.credit_code = 'C';
  source.general.credit_amount = -0.004;
  a = Convert(source);
  EXPECT_EQ(a.new_used_trade, 'U');
  EXPECT_EQ(a.Schedule('T')->itc_code, 2);
  EXPECT_EQ(a.Schedule('B')->itc_code, 3);
  EXPECT_EQ(a.Schedule('A')->itc_code, 2);
  EXPECT_EQ(a.Schedule('C')->itc_code, 2);

  source.general.credit_code = 'D';
  source.general.credit_amount = -0.005;
  a = Convert(source);
  EXPECT_EQ(a.new_used_trade, 'U');
  EXPECT_EQ(a.Schedule('C')->itc_code, 1);
}

TEST(Fas1000ConvertTest, BooksThatGiveNothingAreSkippedAndTheFirstUsedOneSetsTheCost) {
  BookLine other = Book('4', "SL", 5);
  other.line = 7;
  other.cost = 999;
  BookLine state = Book('2', "SL", 5);
  state.line = 8;
  state.cost = 5000;
  state.acquired = {1, 2, 2020};
  BookLine amt = Book('3', "MF", 5);
  amt.line = 9;
  amt.cost = 5000;
  ConversionSettings settings = AllBooks();
  settings.schedule_letters = "TBA";
  std::vector<SkippedBook> skipped;
  const NvAsset a = Convert(Asset({other, state, amt}), &skipped, settings);
  ASSERT_EQ(skipped.size(), 2u);
  EXPECT_EQ(skipped[0].line, 7);
  EXPECT_EQ(skipped[0].reason, "book digit \"4\" is not a book that is imported");
  EXPECT_EQ(skipped[1].line, 8);
  EXPECT_EQ(skipped[1].reason, "the company has no schedule S");
  EXPECT_EQ(a.cash_and_notes, 5000);
  EXPECT_EQ(a.purchase_date, (Date{}));
  EXPECT_EQ(a.Schedule('A')->method, kMethodAmt);
  EXPECT_TRUE(a.Schedule('T')->not_applicable());
  EXPECT_TRUE(a.Schedule('B')->not_applicable());
}

struct MethodCase {
  const char* what;
  BookLine book;
  int method;
  char convention;
  YearsMonths sl_life;
};

MethodCase Case(const char* what, BookLine book, int method, char convention,
                YearsMonths sl_life = {}) {
  return {what, std::move(book), method, convention, sl_life};
}

BookLine Marked(BookLine b, bool mid_quarter, bool switch_to_sl) {
  b.mid_quarter = mid_quarter;
  b.switch_to_sl = switch_to_sl;
  return b;
}

TEST(Fas1000ConvertTest, MethodCodesWhereTheirRulesTurn) {
  const MethodCase cases[] = {
      Case("MACRS 150% within ten years", Book('0', "MF", 10, 0, 150), 33, 'Y'),
      Case("MACRS 150% past ten years", Book('0', "MT", 10, 1, 150), 3, 'Y'),
      Case("MACRS 200%", Book('2', "MF", 5, 0, 200), 3, 'Y'),
      Case("MACRS in the AMT book", Marked(Book('3', "MF", 5, 0, 150), true, false), 14, 'Q'),
      Case("alternative MACRS", Marked(Book('0', "AD", 12, 0), true, false), 3, 'Q', {12, 0}),
      Case("alternative MACRS, AMT", Book('3', "AD", 12, 0), 14, 'Y', {12, 0}),
      Case("ACRS", Book('0', "AT", 5), 1, '1'),
      Case("ACRS straight line", Book('0', "ST", 15), 1, '1', {15, 0}),
      Case("straight line, half year", Book('1', "SH", 5), 2, '3'),
      Case("100% DB switches regardless", Book('1', "DB", 5, 0, 100), 16, '2'),
      Case("125% DB without the switch", Book('1', "DH", 5, 0, 125), 4, '3'),
      Case("150% DB with the switch", Marked(Book('1', "DD", 5, 0, 150), false, true), 9, '3'),
      Case("other DB without the switch", Book('1', "DB", 5, 0, 175), 6, '2'),
      Case("other DB with the switch", Marked(Book('1', "DB", 5, 0, 200), false, true), 10, '2'),
      Case("SYD half year", Book('1', "YD", 5), 7, '3'),
      Case("remaining value", Book('1', "RV", 5), 2, '4'),
      Case("other", Book('1', "OC", 5), 12, '1'),
  };
  for (const MethodCase& c : cases) {
    SCOPED_TRACE(c.what);
    const NvAsset a = Convert(Asset({c.book}));
    const NvAssetSchedule& s = *a.Schedule(BookLetter(c.book.digit));
    EXPECT_EQ(s.method, c.method);
    EXPECT_EQ(s.convention, c.convention);
    EXPECT_EQ(s.useful_life, (YearsMonths{c.book.life_years, c.book.life_months}));
    EXPECT_EQ(s.sl_life, c.sl_life);
  }

  // "NO" and an unknown code leave the schedule not applicable; "NO" takes no life.
  const NvAsset none = Convert(Asset({Book('0', "NO", 5), Book('1', "ZZ", 5)}));
  EXPECT_EQ(none.Schedule('T')->method, kMethodNa);
  EXPECT_EQ(none.Schedule('T')->useful_life, (YearsMonths{}));
  EXPECT_EQ(none.Schedule('B')->method, kMethodNa);
}

TEST(Fas1000ConvertTest, RRTakesTheTaxScheduleWhole) {
  BookLine tax = Marked(Book('0', "MF", 7, 0, 200), true, false);
  tax.sec179 = 2000;
  tax.accumulated = 3000;
  tax.business_percent = 75;
  BookLine state = Book('2', "RR", 0);
  state.cost = 800;  // its own figures are not used
  state.accumulated = 123;
  state.sec179 = 9;
  state.business_percent = 10;
  FasAsset source = Asset({tax, state}, 'A');
  source.general.credit_amount = 40;
  const NvAsset a = Convert(source);
  const NvAssetSchedule& t = *a.Schedule('T');
  EXPECT_EQ(t.method, kMethodMacrs);
  EXPECT_EQ(t.asset_type, "AL");
  EXPECT_EQ(*a.Schedule('S'), t);

  // Without a Tax schedule in the company there is nothing to take.
  ConversionSettings settings = AllBooks();
  settings.schedule_letters = "BS";
  const NvAsset b = Convert(source, nullptr, settings);
  EXPECT_TRUE(b.Schedule('S')->not_applicable());
  EXPECT_EQ(b.cash_and_notes, 800) << "the first line of the asset that was used";
}

TEST(Fas1000ConvertTest, PropertyTypesAndTheTwentySixYearRule) {
  // Autos: "AL", but only "L" in the internal book.
  NvAsset a = Convert(Asset({Book('0', "MF", 5), Book('1', "SL", 5)}, 'A'));
  EXPECT_EQ(a.Schedule('T')->asset_type, "AL");
  EXPECT_EQ(a.Schedule('B')->asset_type, "L");
  EXPECT_EQ(a.type_4797, 45);

  a = Convert(Asset({Book('0', "MF", 7), Book('1', "SL", 7)}, 'F'));
  EXPECT_EQ(a.type_4797, 50);
  EXPECT_EQ(a.Schedule('T')->asset_type, "F");
  EXPECT_EQ(a.Schedule('B')->asset_type, "F");

  a = Convert(Asset({Book('0', "SL", 7)}, 'Z'));
  EXPECT_TRUE(a.Schedule('T')->amortized);
  EXPECT_EQ(a.type_4797, 45);

  a = Convert(Asset({Book('0', "SL", 7)}, 'Q'));
  EXPECT_EQ(a.Schedule('T')->asset_type, "L");
  EXPECT_EQ(a.type_4797, 45);

  // Real property under MACRS over 26 years takes mid-month; at 26 years it does not, nor
  // does a straight-line convention, nor property that is not real.
  a = Convert(Asset({Book('0', "MF", 39), Book('3', "AD", 26, 0), Book('1', "SL", 40)}, 'R'));
  EXPECT_EQ(a.type_4797, 50);
  EXPECT_EQ(a.Schedule('T')->convention, 'M');
  EXPECT_EQ(a.Schedule('A')->convention, 'Y');
  EXPECT_EQ(a.Schedule('B')->convention, '1');
  a = Convert(Asset({Marked(Book('0', "MF", 26, 1), true, false)}, 'S'));
  EXPECT_EQ(a.Schedule('T')->convention, 'M');
  EXPECT_EQ(a.Schedule('T')->asset_type, "L");
  a = Convert(Asset({Book('0', "MF", 39)}, 'A'));
  EXPECT_EQ(a.Schedule('T')->convention, 'Y');
}

TEST(Fas1000ConvertTest, DisposalCodesAndTheSaleAmount) {
  FasAsset source = Asset({Book('0', "SL", 5)});
  source.general.disposed = true;
  source.general.disposal_date = {9, 30, 2023};
  source.general.cash_proceeds = 8000;
  source.general.other_proceeds = 500;
  source.general.expense_of_sale = 250;

  source.general.disposal_method = 'S';
  NvAsset a = Convert(source);
  EXPECT_EQ(a.disposal_code, 'S');
  EXPECT_EQ(a.disposal_date, (Date{9, 30, 2023}));
  EXPECT_EQ(a.sale_amount, 8250);
  EXPECT_EQ(a.amount_disposed, 1000) << "Cash and Notes";

  const std::pair<char, char> codes[] = {{'A', 'A'}, {'E', 'E'}, {'L', 'E'}, {'T', 'A'}};
  for (const auto& [fas, ours] : codes) {
    source.general.disposal_method = fas;
    a = Convert(source);
    EXPECT_EQ(a.disposal_code, ours) << fas;
    EXPECT_EQ(a.sale_amount, 0) << fas;
  }
}

}  // namespace
}  // namespace nv::fas1000
