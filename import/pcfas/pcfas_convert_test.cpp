#include "import/pcfas/pcfas_convert.h"

#include <gtest/gtest.h>

#include <string>
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

// A long record whose five books all cost `cost` with method `method` and a life of
// 7 years, in service on `in_service`.
Fields LongRecord(const std::string& method, const std::string& in_service = "03/15/19",
                  const std::string& cost = "1000") {
  Fields f(120);
  f[0] = "1";
  f[1] = "A";
  f[7] = in_service;
  for (int b = 0; b < 5; ++b) {
    f[LongBook(b, 0)] = cost;
    f[LongBook(b, 1)] = method;
    f[LongBook(b, 5)] = "7";
    f[LongBook(b, 6)] = "0";
  }
  return f;
}

NvAsset Convert(const Fields& f, const PcFasConversion& c) {
  NvAsset asset;
  ConvertPcFasRecord(f, c, &asset);
  return asset;
}

const NvAssetSchedule& Book(const NvAsset& asset, char letter) {
  const NvAssetSchedule* s = asset.Schedule(letter);
  EXPECT_NE(s, nullptr) << letter;
  static const NvAssetSchedule none;
  return s ? *s : none;
}

TEST(PcFasConvertTest, ALongRecordFieldByField) {
  Fields f(120);
  f[0] = " 1001 ";
  f[1] = "A";
  f[2] = "EQUIPMENTXYZ";
  f[3] = "P";
  f[4] = "Dental chair with delivery unit, operatory 1";
  f[5] = "MAIN";
  f[6] = "PO-77";
  f[7] = "03/15/19";
  f[9] = "D";
  f[12] = "0";
  f[20] = "1500-100";
  f[28] = "Building 2";
  f[18] = "09/30/23";
  f[19] = "T";
  f[22] = "750.00";
  // IRS: MACRS, Sec. 179 of 1000; depreciated through 12/2023, after Last Closed.
  f[34] = "12500.00";
  f[35] = "Z";
  f[38] = "1000";
  f[39] = "7";
  f[40] = "0";
  f[42] = "1530.00";
  f[43] = "9840.00";
  f[47] = "1223";
  // Internal book: straight line, salvage 500.
  f[51] = "12500.00";
  f[52] = "S";
  f[55] = "500";
  f[56] = "10";
  f[57] = "0";
  f[59] = "1200";
  f[60] = "5400";
  f[64] = "1223";
  // State: its own cost, 150% declining balance, salvage 250.
  f[68] = "10000";
  f[69] = "C";
  f[70] = "150";
  f[72] = "250";
  f[73] = "7";
  f[74] = "6";
  f[76] = "100";
  f[77] = "2000";
  f[81] = "0623";
  // AMT method, through a month before Last Closed.
  f[85] = "12500";
  f[86] = "U";
  f[89] = "0";
  f[90] = "7";
  f[91] = "0";
  f[93] = "1320";
  f[94] = "8600";
  f[98] = "1122";
  // ACE: not used.
  f[103] = "N";

  PcFasConversion c = Conversion(PcFasLayout::kLong);
  c.account_field = PcFasSourceItemField(101);
  c.user_field_fields = {PcFasSourceItemField(108), PcFasSourceItemField(102), -1};
  const NvAsset a = Convert(f, c);

  EXPECT_EQ(a.number.main(), "1001");
  EXPECT_EQ(a.number.subasset(), 0);
  EXPECT_TRUE(a.number.valid());
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

  const NvAssetSchedule& t = Book(a, 'T');
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

  const NvAssetSchedule& b = Book(a, 'B');
  EXPECT_EQ(b.method, kMethodStraightLine);
  EXPECT_EQ(b.convention, '1');
  EXPECT_DOUBLE_EQ(b.salvage_value, 500);
  EXPECT_DOUBLE_EQ(b.sec179_expense, 0);
  EXPECT_EQ(b.itc_code, 3);
  EXPECT_EQ(b.useful_life, (YearsMonths{10, 0}));
  EXPECT_DOUBLE_EQ(b.prior_allowed_depr, 4200);

  const NvAssetSchedule& s = Book(a, 'S');
  EXPECT_EQ(s.method, kMethodDb150Sl);
  EXPECT_EQ(s.asset_type, "S");
  EXPECT_DOUBLE_EQ(s.substitute_basis, 10000);
  EXPECT_DOUBLE_EQ(s.salvage_value, 250);
  EXPECT_EQ(s.itc_code, 3);
  EXPECT_EQ(s.useful_life, (YearsMonths{7, 6}));
  EXPECT_DOUBLE_EQ(s.prior_allowed_depr, 1900);

  const NvAssetSchedule& amt = Book(a, 'A');
  EXPECT_EQ(amt.method, kMethodAmt);
  EXPECT_EQ(amt.convention, 'Y');
  EXPECT_EQ(amt.itc_code, 2);
  EXPECT_DOUBLE_EQ(amt.prior_allowed_depr, 8600);

  // An unused book costs nothing, which differs from Cash and Notes.
  const NvAssetSchedule& ace = Book(a, 'C');
  EXPECT_EQ(ace.method, kMethodNa);
  EXPECT_EQ(ace.asset_type, "S");
  EXPECT_DOUBLE_EQ(ace.substitute_basis, 0);
}

TEST(PcFasConvertTest, ShortLayoutBooksAndDisposalCodes) {
  Fields f(110);
  f[0] = "7";
  f[7] = "7/1/86";
  f[17] = "01/02/99";
  f[18] = "C";
  f[21] = "10.5";
  f[ShortBook(kIrs, 0)] = "100";
  f[ShortBook(kIrs, 1)] = "S";
  f[ShortBook(kInternal, 0)] = "90";
  f[ShortBook(kInternal, 1)] = "F";
  f[ShortBook(kAce, 1)] = "H";
  f[ShortBook(kAce, 5)] = "4";
  f[ShortBook(kAce, 9)] = "55";
  f[ShortBook(kAce, 8)] = "5";
  f[ShortBook(kAce, 13)] = "0199";
  const PcFasConversion c = Conversion(PcFasLayout::kShort, {12, 31, 1998});
  NvAsset a = Convert(f, c);
  EXPECT_DOUBLE_EQ(a.cash_and_notes, 90);
  EXPECT_EQ(a.date_in_service, (Date{7, 1, 1986}));
  EXPECT_EQ(a.disposal_code, 'S');
  EXPECT_EQ(a.disposal_date, (Date{1, 2, 1999}));
  EXPECT_DOUBLE_EQ(a.sale_amount, 10.5);
  EXPECT_EQ(Book(a, 'T').method, kMethodStraightLine);
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

  // The long layout's letters, two fields further on.
  Fields g = LongRecord("S");
  g[18] = "12/31/20";
  const PcFasConversion l = Conversion(PcFasLayout::kLong);
  for (auto [letter, code] : {std::pair{"L", 'E'}, {"T", 'E'}, {"S", 'S'}, {"C", 'A'}, {"", 'A'}}) {
    g[19] = letter;
    EXPECT_EQ(Convert(g, l).disposal_code, code) << letter;
  }
}

TEST(PcFasConvertTest, ARecordOfJust101FieldsLacksTheLastBookFields) {
  Fields f(101);
  f[0] = "9";
  f[ShortBook(kAce, 0)] = "10";
  f[ShortBook(kAce, 1)] = "S";
  f[ShortBook(kAce, 8)] = "3";
  f[ShortBook(kAce, 9)] = "7";  // through month (field 101) missing: nothing subtracted
  const NvAsset a = Convert(f, Conversion(PcFasLayout::kShort));
  EXPECT_DOUBLE_EQ(Book(a, 'C').prior_allowed_depr, 7);
  EXPECT_DOUBLE_EQ(a.cash_and_notes, 10);
}

TEST(PcFasConvertTest, CashAndNotesFallsBackFromTheInternalBookInOrder) {
  Fields f = LongRecord("S", "01/01/20", "0");
  f[LongBook(kInternal, 0)] = "0.004";
  f[LongBook(kAmt, 0)] = "400";
  f[LongBook(kState, 0)] = "300";
  EXPECT_DOUBLE_EQ(Convert(f, Conversion(PcFasLayout::kLong)).cash_and_notes, 300);
  f[LongBook(kIrs, 0)] = "-200";
  EXPECT_DOUBLE_EQ(Convert(f, Conversion(PcFasLayout::kLong)).cash_and_notes, -200);
  f[LongBook(kInternal, 0)] = "0.01";
  const NvAsset a = Convert(f, Conversion(PcFasLayout::kLong));
  EXPECT_DOUBLE_EQ(a.cash_and_notes, 0.01);
  // A book within half a cent of Cash and Notes has no Substitute Basis.
  f[LongBook(kAce, 0)] = "0.014";
  EXPECT_EQ(Convert(f, Conversion(PcFasLayout::kLong)).Schedule('C')->asset_type, "");
}

TEST(PcFasConvertTest, ListedMethodIsAcrsBefore31July1986AndMacrsFromThatDay) {
  const PcFasConversion c = Conversion(PcFasLayout::kLong);
  Fields f = LongRecord("L", "07/30/86");
  f[LongBook(kIrs, 4)] = "800";
  NvAsset a = Convert(f, c);
  EXPECT_EQ(Book(a, 'T').method, kMethodAcrs);
  EXPECT_EQ(Book(a, 'T').asset_type, "AL");
  EXPECT_EQ(Book(a, 'T').convention, '1');
  EXPECT_DOUBLE_EQ(Book(a, 'T').sec179_expense, 800);

  f[7] = "07/31/86";
  a = Convert(f, c);
  EXPECT_EQ(Book(a, 'T').method, kMethodMacrs);
  EXPECT_EQ(Book(a, 'T').asset_type, "AL");
  EXPECT_EQ(Book(a, 'T').convention, 'Y');
  EXPECT_DOUBLE_EQ(Book(a, 'T').sec179_expense, 800);

  // "I" marks low-income housing the same way; listed only by book field 3.
  f = LongRecord("I", "07/30/86");
  a = Convert(f, c);
  EXPECT_EQ(Book(a, 'T').method, kMethodAcrs);
  EXPECT_EQ(Book(a, 'T').asset_type, "H");
  f[7] = "12/01/90";
  f[LongBook(kIrs, 3)] = "L";
  a = Convert(f, c);
  EXPECT_EQ(Book(a, 'T').method, kMethodMacrs);
  EXPECT_EQ(Book(a, 'T').asset_type, "HL");
  // A book of another cost puts its "S" first.
  f[LongBook(kIrs, 0)] = "900";
  EXPECT_EQ(Book(Convert(f, c), 'T').asset_type, "SHL");
}

TEST(PcFasConvertTest, DepreciationThroughAMonthAfterLastClosedExcludesTheCurrentYear) {
  Fields f = LongRecord("S");
  f[LongBook(kIrs, 8)] = "100";
  f[LongBook(kIrs, 9)] = "1000";
  const PcFasConversion c = Conversion(PcFasLayout::kLong, {6, 30, 2023});
  const auto prior = [&](const std::string& through) {
    f[LongBook(kIrs, 13)] = through;
    return Book(Convert(f, c), 'T').prior_allowed_depr;
  };
  EXPECT_DOUBLE_EQ(prior("0623"), 1000) << "the month of Last Closed";
  EXPECT_DOUBLE_EQ(prior("0723"), 900);
  EXPECT_DOUBLE_EQ(prior("0523"), 1000);
  EXPECT_DOUBLE_EQ(prior("1299"), 1000) << "99 is 1999";
  EXPECT_DOUBLE_EQ(prior("0129"), 900) << "29 is 2029";
  EXPECT_DOUBLE_EQ(prior(""), 1000);
  EXPECT_DOUBLE_EQ(prior("1323"), 1000) << "no month 13";
  EXPECT_DOUBLE_EQ(prior("07/23"), 1000);
  f[LongBook(kIrs, 13)] = "0124";
  EXPECT_DOUBLE_EQ(Book(Convert(f, c), 'T').prior_allowable_depr, 900);
}

TEST(PcFasConvertTest, DecliningBalanceMethodsByPercentage) {
  const PcFasConversion c = Conversion(PcFasLayout::kLong);
  Fields f = LongRecord("C");
  f[LongBook(kIrs, 4)] = "75";
  for (auto [percent, method] : {std::pair{"100", kMethodDb100},
                                 {"125", kMethodDb125Sl},
                                 {"150", kMethodDb150Sl},
                                 {"200", kMethodDb200Sl},
                                 {"175", kMethodOther},
                                 {"", kMethodOther}}) {
    f[LongBook(kIrs, 2)] = percent;
    const NvAsset a = Convert(f, c);
    const NvAssetSchedule& t = Book(a, 'T');
    EXPECT_EQ(t.method, method) << percent;
    EXPECT_EQ(t.convention, '1');
    EXPECT_DOUBLE_EQ(t.salvage_value, 75);
    EXPECT_DOUBLE_EQ(t.sec179_expense, 0);
  }
  // "DH": only the first letter counts; the cost equals Cash and Notes, so no "S".
  f[LongBook(kIrs, 1)] = "DH";
  f[LongBook(kIrs, 2)] = "125";
  const NvAsset a = Convert(f, c);
  const NvAssetSchedule& t = Book(a, 'T');
  EXPECT_EQ(t.method, kMethodDb125Sl);
  EXPECT_EQ(t.convention, '3');
  EXPECT_EQ(t.asset_type, "");
  EXPECT_DOUBLE_EQ(t.salvage_value, 75);
}

TEST(PcFasConvertTest, AcrsClassesFromTheStraightLineLifeOfM) {
  const PcFasConversion c = Conversion(PcFasLayout::kLong);
  Fields f = LongRecord("M");
  struct Case {
    const char* property_class;
    int years;
    int acrs_years;
  } cases[] = {{"P", 12, 5},  {"P", 25, 10},  {"R", 25, 18}, {"H1", 35, 18},
               {"P", 35, 10}, {"RP", 45, 18}, {"P", 45, 15}, {"P", 7, 7}};
  for (const Case& k : cases) {
    f[3] = k.property_class;
    f[LongBook(kIrs, 5)] = std::to_string(k.years);
    const NvAsset a = Convert(f, c);
    const NvAssetSchedule& t = Book(a, 'T');
    EXPECT_EQ(t.method, kMethodAcrs);
    EXPECT_EQ(t.sl_life, (YearsMonths{k.years, 0})) << k.years;
    EXPECT_EQ(t.useful_life, (YearsMonths{k.acrs_years, 0})) << k.property_class << k.years;
  }
}

TEST(PcFasConvertTest, MacrsClassLivesOfV) {
  const PcFasConversion c = Conversion(PcFasLayout::kLong);
  Fields f = LongRecord("V");
  struct Case {
    int years, months;
    YearsMonths life;
  } cases[] = {{3, 0, {3, 0}},   {0, 40, {0, 40}}, {39, 0, {39, 0}}, {25, 11, {25, 11}},
               {27, 6, {27, 6}}, {31, 6, {31, 6}}, {27, 0, {20, 0}}, {8, 0, {5, 0}},
               {9, 11, {5, 0}},  {12, 0, {10, 0}}, {19, 0, {10, 0}}, {40, 0, {20, 0}}};
  for (const Case& k : cases) {
    f[LongBook(kIrs, 5)] = std::to_string(k.years);
    f[LongBook(kIrs, 6)] = std::to_string(k.months);
    const NvAsset a = Convert(f, c);
    const NvAssetSchedule& t = Book(a, 'T');
    EXPECT_EQ(t.method, kMethodMacrs);
    EXPECT_EQ(t.sl_life, (YearsMonths{k.years, k.months}));
    EXPECT_EQ(t.useful_life, k.life) << k.years << "-" << k.months;
  }
  // The convention looks at the life as PC/FAS gave it: 27 years is mid-month.
  f[LongBook(kIrs, 5)] = "27";
  f[LongBook(kIrs, 6)] = "0";
  EXPECT_EQ(Book(Convert(f, c), 'T').convention, 'M');
}

TEST(PcFasConvertTest, MacrsConventionsListingAndAmortization) {
  const PcFasConversion c = Conversion(PcFasLayout::kLong);
  Fields f = LongRecord("B");
  const auto convention = [&] { return Book(Convert(f, c), 'T').convention; };
  EXPECT_EQ(convention(), 'Y');
  f[32] = "\x9a";
  EXPECT_EQ(convention(), 'Q');
  f[32] = "\x92Q";
  EXPECT_EQ(convention(), 'Q');
  f[32] = "Q";
  EXPECT_EQ(convention(), 'Y');
  f[LongBook(kIrs, 5)] = "26";
  EXPECT_EQ(convention(), 'Y');
  f[LongBook(kIrs, 6)] = "1";
  EXPECT_EQ(convention(), 'M');
  f[LongBook(kIrs, 5)] = "5";
  f[3] = "R";  // 4797 Type 50
  EXPECT_EQ(convention(), 'M');
  EXPECT_EQ(Convert(f, c).type_4797, 50);
  f[3] = "RP";  // real property for the lives, but 4797 Type 45
  EXPECT_EQ(Convert(f, c).type_4797, 45);
  EXPECT_EQ(convention(), 'Y');

  // Listed by book field 3, amortized by property class "A": ACRS and MACRS methods only.
  f[3] = "A";
  f[LongBook(kIrs, 3)] = "L";
  f[LongBook(kInternal, 1)] = "T";
  f[LongBook(kInternal, 3)] = "L";
  f[LongBook(kState, 1)] = "S";
  f[LongBook(kState, 3)] = "L";
  const NvAsset a = Convert(f, c);
  EXPECT_TRUE(Book(a, 'T').amortized);
  EXPECT_EQ(Book(a, 'T').asset_type, "L");
  EXPECT_TRUE(Book(a, 'B').amortized);
  EXPECT_EQ(Book(a, 'B').method, kMethodAcrs);
  EXPECT_EQ(Book(a, 'B').asset_type, "L");
  EXPECT_FALSE(Book(a, 'S').amortized);
  EXPECT_EQ(Book(a, 'S').asset_type, "");
}

TEST(PcFasConvertTest, OtherLettersAndItcCodes) {
  const PcFasConversion c = Conversion(PcFasLayout::kLong);
  for (auto [letter, method] : {std::pair{"O", kMethodOther},
                                {"4", kMethodOther},
                                {"q", kMethodOther},
                                {"N", kMethodNa},
                                {"?", kMethodNa},
                                {"", kMethodNa},
                                {"H", kMethodStraightLine}}) {
    EXPECT_EQ(Book(Convert(LongRecord(letter), c), 'T').method, method) << letter;
  }
  Fields f = LongRecord("S");
  f[12] = "0.01";
  NvAsset a = Convert(f, c);
  EXPECT_EQ(std::string({char('0' + Book(a, 'T').itc_code), char('0' + Book(a, 'B').itc_code),
                         char('0' + Book(a, 'S').itc_code), char('0' + Book(a, 'A').itc_code),
                         char('0' + Book(a, 'C').itc_code)}),
            "13311");
  f[9] = "X";
  a = Convert(f, c);
  EXPECT_EQ(Book(a, 'T').itc_code, 3);
  EXPECT_EQ(Book(a, 'C').itc_code, 3);
  EXPECT_EQ(a.new_used_trade, 'N');
}

TEST(PcFasConvertTest, NumbersAndMonthsAsPcFasWritesThem) {
  EXPECT_DOUBLE_EQ(PcFasAmount(" 12.50 "), 12.5);
  EXPECT_DOUBLE_EQ(PcFasAmount("+3"), 3);
  EXPECT_DOUBLE_EQ(PcFasAmount("-4.25"), -4.25);
  EXPECT_DOUBLE_EQ(PcFasAmount("12abc"), 12);
  for (const char* zero : {"", "abc", "nan", "inf", "-"}) EXPECT_EQ(PcFasAmount(zero), 0) << zero;
  EXPECT_EQ(PcFasWholeNumber("150"), 150);
  EXPECT_EQ(PcFasWholeNumber("150.0"), 150);
  EXPECT_EQ(PcFasWholeNumber("99999999999"), 0);
  EXPECT_EQ(PcFasThroughDate("0224"), (Date{2, 29, 2024}));
  EXPECT_EQ(PcFasThroughDate("1130"), (Date{11, 30, 1930}));
  EXPECT_EQ(PcFasThroughDate("0095"), Date{});
}

}  // namespace
}  // namespace nv
