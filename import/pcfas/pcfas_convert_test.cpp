#include "import/pcfas/pcfas_convert.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace nv {
namespace {

// Record fields of the layouts, worked out from the layout: the long layout's books start
// at 34, 17 fields apart; the short layout's at 28, 15 apart.
int LongBook(int book, int k) {
  return 34 + 17 * book + k;
}
int ShortBook(int book, int k) {
  return 28 + 15 * book + k;
}
enum { kIrs, kInternal, kState, kAmt, kAce };

using Fields = std::vector<std::string>;

PcFasConversion Conversion(PcFasLayout layout, Date last_closed = {12, 31, 2022}) {
  PcFasConversion c;
  c.layout = layout;
  c.schedule_letters = "TBSAC";
  c.asset_no_format = {10, 3, NvAssetNoFormat::kLetters};
  c.last_closed = last_closed;
  return c;
}
const PcFasConversion kLong = Conversion(PcFasLayout::kLong);

// A record of `count` fields with the given ones filled.
Fields Record(int count, const std::map<int, std::string>& set) {
  Fields f(static_cast<size_t>(count));
  for (const auto& [i, value] : set) f[static_cast<size_t>(i)] = value;
  return f;
}

// Puts the comma-separated values into consecutive fields from `first` on.
void Put(Fields* f, int first, std::string_view values) {
  for (size_t at = 0, i = static_cast<size_t>(first);; ++i) {
    const size_t comma = values.find(',', at);
    (*f)[i] = std::string(values.substr(at, comma - at));
    if (comma == std::string_view::npos) return;
    at = comma + 1;
  }
}

// A long record whose five books all cost `cost` with method `method` and a life of
// 7 years, in service on `in_service`.
Fields LongRecord(const std::string& method, const std::string& in_service = "03/15/19",
                  const std::string& cost = "1000") {
  Fields f = Record(120, {{0, "1"}, {1, "A"}, {7, in_service}});
  for (int b = 0; b < 5; ++b) {
    f[LongBook(b, 0)] = cost;
    f[LongBook(b, 1)] = method;
    f[LongBook(b, 5)] = "7";
    f[LongBook(b, 6)] = "0";
  }
  return f;
}

NvAsset Convert(const Fields& f, const PcFasConversion& c = kLong) {
  NvAsset asset;
  ConvertPcFasRecord(f, c, &asset);
  return asset;
}

NvAssetSchedule Book(const NvAsset& asset, char letter) {
  const NvAssetSchedule* s = asset.Schedule(letter);
  EXPECT_NE(s, nullptr) << letter;
  return s ? *s : NvAssetSchedule{};
}

// The IRS book's schedule of a record.
NvAssetSchedule Tax(const Fields& f, const PcFasConversion& c = kLong) {
  return Book(Convert(f, c), 'T');
}

TEST(PcFasConvertTest, ALongRecordFieldByField) {
  Fields f = Record(120, {{0, " 1001 "},
                          {1, "A"},
                          {2, "EQUIPMENTXYZ"},
                          {3, "P"},
                          {5, "MAIN"},
                          {4, "Dental chair with delivery unit, operatory 1"},
                          {6, "PO-77"},
                          {7, "03/15/19"},
                          {9, "D"},
                          {12, "0"},
                          {18, "09/30/23"},
                          {19, "T"},
                          {20, "1500-100"},
                          {22, "750.00"},
                          {28, "Building 2"}});
  // Book fields 0 to 13 from the book's first field. IRS: MACRS, Sec. 179 of 1000, through
  // 12/2023 (after Last Closed).
  Put(&f, 34, "12500.00,Z,,,1000,7,0,,1530.00,9840.00,,,,1223");
  // Internal book: straight line, salvage 500.
  Put(&f, 51, "12500.00,S,,,500,10,0,,1200,5400,,,,1223");
  // State: a cost of its own, 150% declining balance, salvage 250.
  Put(&f, 68, "10000,C,150,,250,7,6,,100,2000,,,,0623");
  // AMT: the AMT method, through a month before Last Closed.
  Put(&f, 85, "12500,U,,,,7,0,,1320,8600,,,,1122");
  // ACE: not used.
  Put(&f, 102, ",N");
  PcFasConversion c = kLong;
  c.account_field = PcFasSourceItemField(101);
  c.user_field_fields = {PcFasSourceItemField(108), PcFasSourceItemField(102), -1};
  const NvAsset a = Convert(f, c);

  EXPECT_EQ(a.number.main(), "1001");
  EXPECT_EQ(a.number.subasset(), 0);
  EXPECT_EQ(a.description, "Dental chair with delivery uni");
  EXPECT_EQ(a.location, "MAIN");
  EXPECT_EQ(a.category, "EQUIPMENTX");
  EXPECT_EQ(a.property_code, "EQ");
  EXPECT_EQ(a.account, "1500-100");
  EXPECT_EQ(a.user_fields[0], "Building 2");
  EXPECT_EQ(a.user_fields[1], "PO-77");
  EXPECT_EQ(a.user_fields[2], "");
  EXPECT_DOUBLE_EQ(a.cash_and_notes, 12500);
  EXPECT_EQ(a.purchase_date, (Date{3, 15, 2019}));
  EXPECT_EQ(a.date_in_service, (Date{3, 15, 2019}));
  EXPECT_EQ(a.new_used_trade, 'U');
  EXPECT_EQ(a.type_4797, 45);
  EXPECT_EQ(a.disposal_code, 'E');
  EXPECT_EQ(a.disposal_date, (Date{9, 30, 2023}));
  EXPECT_DOUBLE_EQ(a.amount_disposed, 12500);
  EXPECT_DOUBLE_EQ(a.sale_amount, 750);
  ASSERT_EQ(a.schedule_letters, "TBSAC");

  const NvAssetSchedule t = Book(a, 'T');
  EXPECT_EQ(t.method, kMethodMacrs);
  EXPECT_EQ(t.convention, 'Y');
  EXPECT_DOUBLE_EQ(t.sec179_expense, 1000);
  EXPECT_EQ(t.business_percent, 100);
  EXPECT_EQ(t.useful_life, (YearsMonths{7, 0}));
  EXPECT_TRUE(t.sl_life.zero());
  EXPECT_EQ(t.asset_type, "");
  EXPECT_DOUBLE_EQ(t.substitute_basis, 0);
  EXPECT_EQ(t.itc_code, 2);
  EXPECT_DOUBLE_EQ(t.prior_allowed_depr, 9840 - 1530);
  EXPECT_DOUBLE_EQ(t.prior_allowable_depr, 9840 - 1530);
  EXPECT_DOUBLE_EQ(t.current_depr, 0);
  EXPECT_DOUBLE_EQ(t.salvage_value, 0);
  EXPECT_FALSE(t.amortized);

  const NvAssetSchedule b = Book(a, 'B');
  EXPECT_EQ(b.method, kMethodStraightLine);
  EXPECT_EQ(b.convention, '1');
  EXPECT_DOUBLE_EQ(b.salvage_value, 500);
  EXPECT_DOUBLE_EQ(b.sec179_expense, 0);
  EXPECT_EQ(b.itc_code, 3);
  EXPECT_EQ(b.useful_life, (YearsMonths{10, 0}));
  EXPECT_DOUBLE_EQ(b.prior_allowed_depr, 4200);

  const NvAssetSchedule s = Book(a, 'S');
  EXPECT_EQ(s.method, kMethodDb150Sl);
  EXPECT_EQ(s.asset_type, "S");
  EXPECT_DOUBLE_EQ(s.substitute_basis, 10000);
  EXPECT_DOUBLE_EQ(s.salvage_value, 250);
  EXPECT_EQ(s.itc_code, 3);
  EXPECT_EQ(s.useful_life, (YearsMonths{7, 6}));
  EXPECT_DOUBLE_EQ(s.prior_allowed_depr, 1900);

  const NvAssetSchedule amt = Book(a, 'A');
  EXPECT_EQ(amt.method, kMethodAmt);
  EXPECT_EQ(amt.convention, 'Y');
  EXPECT_EQ(amt.itc_code, 2);
  EXPECT_DOUBLE_EQ(amt.prior_allowed_depr, 8600);

  // An unused book costs nothing, which differs from Cash and Notes.
  EXPECT_EQ(Book(a, 'C').method, kMethodNa);
  EXPECT_EQ(Book(a, 'C').asset_type, "S");
  EXPECT_DOUBLE_EQ(Book(a, 'C').substitute_basis, 0);
}

TEST(PcFasConvertTest, ShortLayoutBooksAndDisposalCodesOfBothLayouts) {
  Fields f = Record(110, {{0, "7"}, {7, "7/1/86"}, {17, "01/02/99"}, {18, "C"}, {21, "10.5"}});
  Put(&f, ShortBook(kIrs, 0), "100,S");
  Put(&f, ShortBook(kInternal, 0), "90,F");
  Put(&f, ShortBook(kAce, 0), ",H,,,,4,,,5,55,,,,0199");
  const PcFasConversion c = Conversion(PcFasLayout::kShort, {12, 31, 1998});
  NvAsset a = Convert(f, c);
  EXPECT_DOUBLE_EQ(a.cash_and_notes, 90);
  EXPECT_EQ(a.date_in_service, (Date{7, 1, 1986}));
  EXPECT_EQ(a.disposal_code, 'S');
  EXPECT_EQ(a.disposal_date, (Date{1, 2, 1999}));
  EXPECT_DOUBLE_EQ(a.sale_amount, 10.5);
  EXPECT_EQ(Book(a, 'T').asset_type, "S");
  EXPECT_DOUBLE_EQ(Book(a, 'T').substitute_basis, 100);
  EXPECT_EQ(Book(a, 'B').convention, '4');
  EXPECT_EQ(Book(a, 'C').convention, '3');
  EXPECT_EQ(Book(a, 'C').useful_life, (YearsMonths{4, 0}));
  EXPECT_DOUBLE_EQ(Book(a, 'C').prior_allowed_depr, 50);

  f[18] = "E";
  EXPECT_EQ(Convert(f, c).disposal_code, 'E');
  f[18] = "S";  // a short-layout "S" is no sale
  a = Convert(f, c);
  EXPECT_EQ(a.disposal_code, 'A');
  EXPECT_DOUBLE_EQ(a.sale_amount, 0);
  f[17] = "";  // no disposal date: not disposed, whatever the method says
  a = Convert(f, c);
  EXPECT_EQ(a.disposal_code, ' ');
  EXPECT_DOUBLE_EQ(a.amount_disposed, 0);

  // The long layout's letters, a field further on.
  Fields g = LongRecord("S");
  g[18] = "12/31/20";
  for (auto [letter, code] : {std::pair{"L", 'E'}, {"T", 'E'}, {"S", 'S'}, {"C", 'A'}, {"", 'A'}}) {
    g[19] = letter;
    EXPECT_EQ(Convert(g).disposal_code, code) << letter;
  }
}

TEST(PcFasConvertTest, ARecordOfJust101FieldsLacksTheLastBookFields) {
  // The ACE book's through month would be field 101.
  Fields f = Record(101, {{0, "9"}});
  Put(&f, ShortBook(kAce, 0), "10,S,,,,,,,3,7");
  const NvAsset a = Convert(f, Conversion(PcFasLayout::kShort));
  EXPECT_DOUBLE_EQ(Book(a, 'C').prior_allowed_depr, 7);
  EXPECT_DOUBLE_EQ(a.cash_and_notes, 10);
}

TEST(PcFasConvertTest, CashAndNotesFallsBackFromTheInternalBookInOrder) {
  Fields f = LongRecord("S", "01/01/20", "0");
  f[LongBook(kInternal, 0)] = "0.004";
  f[LongBook(kAmt, 0)] = "400";
  f[LongBook(kState, 0)] = "300";
  EXPECT_DOUBLE_EQ(Convert(f).cash_and_notes, 300);
  f[LongBook(kIrs, 0)] = "-200";
  EXPECT_DOUBLE_EQ(Convert(f).cash_and_notes, -200);
  f[LongBook(kInternal, 0)] = "0.01";
  EXPECT_DOUBLE_EQ(Convert(f).cash_and_notes, 0.01);
  // A book within half a cent of Cash and Notes has no Substitute Basis.
  f[LongBook(kAce, 0)] = "0.014";
  EXPECT_EQ(Book(Convert(f), 'C').asset_type, "");
}

TEST(PcFasConvertTest, ListedMethodIsAcrsBefore31July1986AndMacrsFromThatDay) {
  Fields f = LongRecord("L", "07/30/86");
  f[LongBook(kIrs, 4)] = "800";
  NvAssetSchedule t = Tax(f);
  EXPECT_EQ(t.method, kMethodAcrs);
  EXPECT_EQ(t.asset_type, "AL");
  EXPECT_EQ(t.convention, '1');
  EXPECT_DOUBLE_EQ(t.sec179_expense, 800);
  f[7] = "07/31/86";
  t = Tax(f);
  EXPECT_EQ(t.method, kMethodMacrs);
  EXPECT_EQ(t.asset_type, "AL");
  EXPECT_EQ(t.convention, 'Y');
  EXPECT_DOUBLE_EQ(t.sec179_expense, 800);

  // "I" marks low-income housing the same way; listed only by book field 3.
  f = LongRecord("I", "07/30/86");
  EXPECT_EQ(Tax(f).method, kMethodAcrs);
  EXPECT_EQ(Tax(f).asset_type, "H");
  f[7] = "12/01/90";
  f[LongBook(kIrs, 3)] = "L";
  EXPECT_EQ(Tax(f).method, kMethodMacrs);
  EXPECT_EQ(Tax(f).asset_type, "HL");
  f[LongBook(kIrs, 0)] = "900";  // a cost of its own puts its "S" first
  EXPECT_EQ(Tax(f).asset_type, "SHL");
}

TEST(PcFasConvertTest, DepreciationThroughAMonthAfterLastClosedExcludesTheCurrentYear) {
  Fields f = LongRecord("S");
  f[LongBook(kIrs, 8)] = "100";
  f[LongBook(kIrs, 9)] = "1000";
  const PcFasConversion c = Conversion(PcFasLayout::kLong, {6, 30, 2023});
  const auto prior = [&](const std::string& through) {
    f[LongBook(kIrs, 13)] = through;
    return Tax(f, c).prior_allowed_depr;
  };
  EXPECT_DOUBLE_EQ(prior("0623"), 1000) << "the month of Last Closed";
  EXPECT_DOUBLE_EQ(prior("0723"), 900);
  EXPECT_DOUBLE_EQ(prior("0523"), 1000);
  EXPECT_DOUBLE_EQ(prior("1299"), 1000) << "99 is 1999";
  EXPECT_DOUBLE_EQ(prior("0129"), 900) << "29 is 2029";
  EXPECT_DOUBLE_EQ(prior(""), 1000);
  EXPECT_DOUBLE_EQ(prior("1323"), 1000) << "no month 13";
  EXPECT_DOUBLE_EQ(prior("07/23"), 1000);
  EXPECT_DOUBLE_EQ(Tax(f, c).prior_allowable_depr, 1000);
}

TEST(PcFasConvertTest, DecliningBalanceMethodsByPercentage) {
  Fields f = LongRecord("C");
  f[LongBook(kIrs, 4)] = "75";
  for (auto [percent, method] : {std::pair{"100", kMethodDb100},
                                 {"125", kMethodDb125Sl},
                                 {"150", kMethodDb150Sl},
                                 {"200", kMethodDb200Sl},
                                 {"175", kMethodOther},
                                 {"", kMethodOther}}) {
    f[LongBook(kIrs, 2)] = percent;
    const NvAssetSchedule t = Tax(f);
    EXPECT_EQ(t.method, method) << percent;
    EXPECT_EQ(t.convention, '1');
    EXPECT_DOUBLE_EQ(t.salvage_value, 75);
    EXPECT_DOUBLE_EQ(t.sec179_expense, 0);
  }
  // "DH": only the first letter counts; the cost equals Cash and Notes, so no "S".
  f[LongBook(kIrs, 1)] = "DH";
  f[LongBook(kIrs, 2)] = "125";
  const NvAssetSchedule t = Tax(f);
  EXPECT_EQ(t.method, kMethodDb125Sl);
  EXPECT_EQ(t.convention, '3');
  EXPECT_EQ(t.asset_type, "");
  EXPECT_DOUBLE_EQ(t.salvage_value, 75);
}

TEST(PcFasConvertTest, RecoveryClassesFromTheLivesOfMAndV) {
  // M: ACRS classes from the straight-line life, by real property ("R..." or "H...").
  Fields m = LongRecord("M");
  struct AcrsCase {
    const char* property_class;
    int years;
    int acrs_years;
  } acrs[] = {{"P", 12, 5},  {"P", 25, 10},  {"R", 25, 18}, {"H1", 35, 18},
              {"P", 35, 10}, {"RP", 45, 18}, {"P", 45, 15}, {"P", 7, 7}};
  for (const AcrsCase& k : acrs) {
    m[3] = k.property_class;
    m[LongBook(kIrs, 5)] = std::to_string(k.years);
    const NvAssetSchedule t = Tax(m);
    EXPECT_EQ(t.method, kMethodAcrs);
    EXPECT_EQ(t.sl_life, (YearsMonths{k.years, 0})) << k.years;
    EXPECT_EQ(t.useful_life, (YearsMonths{k.acrs_years, 0})) << k.property_class << k.years;
  }
  // V: MACRS class lives.
  Fields v = LongRecord("V");
  struct MacrsCase {
    int years, months;
    YearsMonths life;
  } macrs[] = {{3, 0, {3, 0}},   {0, 40, {0, 40}}, {39, 0, {39, 0}}, {25, 11, {25, 11}},
               {27, 6, {27, 6}}, {31, 6, {31, 6}}, {27, 0, {20, 0}}, {8, 0, {5, 0}},
               {9, 11, {5, 0}},  {12, 0, {10, 0}}, {19, 0, {10, 0}}, {40, 0, {20, 0}}};
  for (const MacrsCase& k : macrs) {
    v[LongBook(kIrs, 5)] = std::to_string(k.years);
    v[LongBook(kIrs, 6)] = std::to_string(k.months);
    const NvAssetSchedule t = Tax(v);
    EXPECT_EQ(t.method, kMethodMacrs);
    EXPECT_EQ(t.sl_life, (YearsMonths{k.years, k.months}));
    EXPECT_EQ(t.useful_life, k.life) << k.years << "-" << k.months;
  }
  // The convention looks at the life as PC/FAS gave it: 27 years is mid-month.
  v[LongBook(kIrs, 5)] = "27";
  v[LongBook(kIrs, 6)] = "0";
  EXPECT_EQ(Tax(v).convention, 'M');
}

TEST(PcFasConvertTest, MacrsConventionsListingAndAmortization) {
  Fields f = LongRecord("B");
  EXPECT_EQ(Tax(f).convention, 'Y');
  f[32] = "\x9a";
  EXPECT_EQ(Tax(f).convention, 'Q');
  f[32] = "\x92Q";
  EXPECT_EQ(Tax(f).convention, 'Q');
  f[32] = "Q";
  EXPECT_EQ(Tax(f).convention, 'Y');
  f[LongBook(kIrs, 5)] = "26";
  EXPECT_EQ(Tax(f).convention, 'Y');
  f[LongBook(kIrs, 6)] = "1";
  EXPECT_EQ(Tax(f).convention, 'M');
  f[LongBook(kIrs, 5)] = "5";
  f[3] = "R";  // 4797 Type 50
  EXPECT_EQ(Tax(f).convention, 'M');
  EXPECT_EQ(Convert(f).type_4797, 50);
  f[3] = "RP";  // real property for the lives, but 4797 Type 45
  EXPECT_EQ(Convert(f).type_4797, 45);
  EXPECT_EQ(Tax(f).convention, 'Y');

  // Listed by book field 3, amortized by property class "A": ACRS and MACRS methods only.
  f[3] = "A";
  f[LongBook(kIrs, 3)] = "L";
  f[LongBook(kInternal, 1)] = "T";
  f[LongBook(kInternal, 3)] = "L";
  f[LongBook(kState, 1)] = "S";
  f[LongBook(kState, 3)] = "L";
  const NvAsset a = Convert(f);
  EXPECT_TRUE(Book(a, 'T').amortized);
  EXPECT_EQ(Book(a, 'T').asset_type, "L");
  EXPECT_TRUE(Book(a, 'B').amortized);
  EXPECT_EQ(Book(a, 'B').method, kMethodAcrs);
  EXPECT_EQ(Book(a, 'B').asset_type, "L");
  EXPECT_FALSE(Book(a, 'S').amortized);
  EXPECT_EQ(Book(a, 'S').asset_type, "");
}

TEST(PcFasConvertTest, OtherLettersItcCodesAndOddNumbers) {
  for (auto [letter, method] : {std::pair{"O", kMethodOther},
                                {"4", kMethodOther},
                                {"q", kMethodOther},
                                {"N", kMethodNa},
                                {"?", kMethodNa},
                                {"", kMethodNa},
                                {"H", kMethodStraightLine}}) {
    EXPECT_EQ(Tax(LongRecord(letter)).method, method) << letter;
  }
  // ITC codes: 1 or 2 by the ITC amount for IRS, AMT and ACE; 3 for the others and "X".
  Fields f = LongRecord("S");
  f[12] = "0.01";
  NvAsset a = Convert(f);
  for (auto [letter, code] : {std::pair{'T', 1}, {'B', 3}, {'S', 3}, {'A', 1}, {'C', 1}}) {
    EXPECT_EQ(Book(a, letter).itc_code, code) << letter;
  }
  f[9] = "X";
  a = Convert(f);
  EXPECT_EQ(Book(a, 'T').itc_code, 3);
  EXPECT_EQ(Book(a, 'C').itc_code, 3);
  EXPECT_EQ(a.new_used_trade, 'N');
  // Amounts that are no numbers count as 0; a number leads what follows it.
  for (const char* zero : {"abc", "nan", "inf", "-", "+"}) {
    f[LongBook(kInternal, 0)] = zero;
    f[LongBook(kIrs, 0)] = zero;
    EXPECT_DOUBLE_EQ(Convert(f).cash_and_notes, 1000) << zero;
  }
  f[LongBook(kInternal, 0)] = " +12.50xyz ";
  EXPECT_DOUBLE_EQ(Convert(f).cash_and_notes, 12.5);
}

}  // namespace
}  // namespace nv
