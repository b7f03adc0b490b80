#include "store/asset/asset_record.h"

#include <gtest/gtest.h>

#include "store/file/record_fields.h"

namespace nv {
namespace {

constexpr NvAssetNoFormat kShort{6, 2, 0};

AssetRecordFormat Company(std::string letters, bool round_dollars = false) {
  return AssetRecordFormat{kShort, round_dollars, std::move(letters), ""};
}

NvAsset NewAsset(const AssetRecordFormat& format) {
  NvAsset asset;
  asset.number = asset.transferred_to = asset.traded_to = NvAssetNo(format.asset_no_format);
  asset.Clear(format.schedule_letters);
  return asset;
}

NvAsset Parse(std::string_view bytes, const AssetRecordFormat& format) {
  NvAsset asset;
  ParseAssetRecord(bytes, format, &asset);
  return asset;
}

// The general section of a record up to the user-field count, with blanks elsewhere.
std::string General(std::string_view number) {
  return std::string(number) + "\tDesk\tHQ\tOFFICE\t\t10.00\t\t\t\tN\t0\t\t0\t";
}

// A sold forklift with schedule B in use and schedule T not applicable.
TEST(AssetRecord, WritesTwoSchedulesAndADisposalByteForByte) {
  AssetRecordFormat format = Company("BT");
  NvAsset a = NewAsset(format);
  a.number = NvAssetNo::Parse("123.1", kShort);
  a.description = "  Forklift  ";
  a.location = "WH1";
  a.category = "EQUIP";
  a.account = "1500-00";
  a.cash_and_notes = 12000.5;
  a.trade_in = 500;
  a.purchase_date = {3, 15, 2023};
  a.date_in_service = {4, 1, 2023};
  a.new_used_trade = kUsed;
  a.property_code = "P";
  a.type_4797 = 50;
  a.user_fields[0] = "Serial 9912";
  a.user_fields[2] = "Red";
  a.disposal_code = kDisposalSold;
  a.amount_disposed = 12500.5;
  a.disposal_date = {6, 30, 2024};
  a.sale_amount = 8000;
  a.asset_codes = "AB";
  NvAssetSchedule& book = *a.Schedule('B');
  book.method = kMethodMacrs;
  book.asset_type = "L";
  book.business_percent = 80;
  book.useful_life = {7, 0};
  book.convention = 'Y';
  book.sec179_expense = 1000;
  book.prior_allowed_depr = 1500.25;
  book.prior_allowable_depr = 1600;
  book.current_depr = 2000;
  book.misc_codes = "X";
  book.state = "CA";
  book.extra_flag = NvAssetSchedule::kExtraMarked;
  book.extra_amount = 12.5;
  book.depreciable_basis = 12500.5;
  NvAssetSchedule& tax = *a.Schedule('T');
  tax.asset_type = "A";
  tax.substitute_basis = 300;
  tax.business_percent = 50;  // not kept by an N/A schedule
  tax.current_depr = 99;

  const std::string expected =
      // general section
      "123.01\tForklift\tWH1\tEQUIP\t1500-00\t12000.50\t500.00\t03152023\t04012023\t"
      "U\t0\tP\t50\t10\tSerial 9912\t\tRed\t\t\t\t\t\t\t\t"
      // disposal
      "D0\tS\t\t12500.50\t06302024\t8000.00\tAB\t\t\t\t\t"
      // schedule B, full form
      "SB\t3\t\tL\t80\t7-0\t0-0\t0.00\t0.00\t0\tY\t1000.00\t1500.25\t1600.00\t0.00\t"
      "0.00\t2000.00\tX\tCA\t\t4:?12.50\t\t12500.50\t0.00\t0.00\t0.00\t"
      // schedule T, N/A short form
      "ST\t13\t\tA\t\t\t\t300.00\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t0.00\t0.00\t0.00\t0.00\t"
      "END\t";
  EXPECT_EQ(SerializeAssetRecord(a, format), expected);

  NvAsset back = Parse(expected, format);
  a.description = "Forklift";
  tax = NvAssetSchedule{};
  tax.asset_type = "A";
  tax.substitute_basis = 300;
  EXPECT_EQ(back, a);
}

TEST(AssetRecord, SchedulePartsThatHaveTheirOwnForms) {
  AssetRecordFormat format = Company("A");
  NvAsset a = NewAsset(format);
  a.number = NvAssetNo::Parse("7", kShort);
  NvAssetSchedule& s = *a.Schedule('A');
  s.method = kMethodAmt;
  s.amortized = true;  // blank code section: "Yes"
  s.business_percent = 100;
  s.useful_life = {39, 6};
  s.sl_life = {40, 0};
  s.itc_code = kItcCodeWithPercents;
  s.itc_percent = 10;
  s.itc_basis_reduction_pct = 50;
  s.extra_flag = NvAssetSchedule::kExtraSet;
  s.extra_amount = -3;
  std::string bytes = SerializeAssetRecord(a, format);
  const std::string section =
      "SA\t14\tYes\t\t100\t39-6\t40-0\t0.00\t0.00\t5(10,50)\t\t0.00\t0.00\t0.00\t0.00\t0.00\t"
      "0.00\t\t\t\t4:-3.00\t\t0.00\t0.00\t0.00\t0.00\tEND\t";
  ASSERT_GE(bytes.size(), section.size());
  EXPECT_EQ(bytes.substr(bytes.size() - section.size()), section);
  EXPECT_EQ(*Parse(bytes, format).Schedule('A'), s);

  // A code section is written in place of "Yes"; a code-5 ITC field keeps its first 8.
  s.am_code_section = "197";
  s.itc_percent = 100;
  bytes = SerializeAssetRecord(a, format);
  EXPECT_NE(bytes.find("\tSA\t14\t197\t"), std::string::npos);
  EXPECT_NE(bytes.find("\t5(100,50\t"), std::string::npos);
  EXPECT_EQ(Parse(bytes, format).Schedule('A')->itc_basis_reduction_pct, 50);
}

TEST(AssetRecord, RoundDollarsWritesWholeDollars) {
  AssetRecordFormat format = Company("", true);
  NvAsset a = NewAsset(format);
  a.number = NvAssetNo::Parse("1", kShort);
  a.cash_and_notes = 1234.56;
  a.trade_in = -0.2;
  EXPECT_EQ(SerializeAssetRecord(a, format).substr(0, 20), "1.00\t\t\t\t\t1235\t0\t\t\tN\t");
  format.round_dollars = false;
  EXPECT_EQ(SerializeAssetRecord(a, format).substr(0, 25), "1.00\t\t\t\t\t1234.56\t-0.20\t\t\t");
}

TEST(AssetRecord, AmountsKeepTwelveCharactersAndReadForgivingly) {
  EXPECT_EQ(FormatRecordAmount(1234.56, false), "1234.56");
  EXPECT_EQ(FormatRecordAmount(999999999.99, false), "999999999.99");
  EXPECT_EQ(FormatRecordAmount(1234567890.126, false), "1234567890.1");  // dimes stay
  EXPECT_EQ(FormatRecordAmount(98765432109.4, false), "98765432109");
  EXPECT_EQ(FormatRecordAmount(1e12, false), "999999999999");  // held at the widest
  EXPECT_EQ(FormatRecordAmount(-5e11, true), "-99999999999");

  EXPECT_EQ(ParseRecordAmount("NAN"), 0);
  EXPECT_EQ(ParseRecordAmount("-NAN"), 0);
  EXPECT_EQ(ParseRecordAmount("inf"), 0);
  EXPECT_EQ(ParseRecordAmount(" -12.5"), -12.5);
  EXPECT_EQ(ParseRecordAmount("+7x"), 7);
  EXPECT_EQ(ParseRecordAmount("--7"), 0);
  EXPECT_EQ(ParseRecordAmount(""), 0);
  EXPECT_EQ(ReadRecordDate("02302024"), (Date{2, 30, 2024}));  // kept, not lost
  EXPECT_EQ(ReadRecordDate("0230202"), Date{});
  EXPECT_EQ(ReadRecordDate("12312024"), (Date{12, 31, 2024}));

  NvAsset a = Parse(General("5") + "0\tSA\t3\t\t\t\t\t\tNAN\t-NAN\tEND\t", Company("A"));
  EXPECT_EQ(a.cash_and_notes, 10);
  EXPECT_EQ(a.Schedule('A')->substitute_basis, 0);
  EXPECT_EQ(a.Schedule('A')->subst_itc_basis, 0);
}

TEST(AssetRecord, ExchangeStoresTradedToAndReadsBackWithoutTransferredTo) {
  AssetRecordFormat format = Company("");
  NvAsset a = NewAsset(format);
  a.number = NvAssetNo::Parse("88", kShort);
  a.disposal_code = kDisposalExchanged;
  a.traded_to = NvAssetNo::Parse("45.2", kShort);
  a.transferred_to = NvAssetNo::Parse("46", kShort);  // not stored beside an exchange
  a.co_transferred_to = "OTHERCO";
  std::string bytes = SerializeAssetRecord(a, format);
  EXPECT_NE(bytes.find("\tD0\tE\t45.02\t0.00\t\t0.00\t\t\t\t\t\tEND\t"), std::string::npos);
  NvAsset back = Parse(bytes, format);
  EXPECT_EQ(back.traded_to, NvAssetNo::Parse("45.2", kShort));
  EXPECT_TRUE(back.transferred_to.empty());
  EXPECT_TRUE(back.co_transferred_to.empty());

  // Any other code reads the number as Transferred To; "N" is not disposed.
  back = Parse(General("1") + "0\tD0\tT\t   46.00\t\t\t\t\t\t\t\t\tEND\t", format);
  EXPECT_EQ(back.transferred_to.Text(), "    46.00");
  EXPECT_TRUE(back.traded_to.empty());
  EXPECT_EQ(Parse(General("1") + "0\tD0\tN\tEND\t", format).disposal_code, kDisposalNone);
  a.disposal_code = 'N';
  EXPECT_NE(SerializeAssetRecord(a, format).find("\tD0\t\t46.00\t"), std::string::npos);
}

TEST(AssetRecord, UserFieldCountSaysHowManyValuesFollow) {
  AssetRecordFormat format = Company("");
  NvAsset three = Parse(General("1") + "3\tu1\tu2\tu3\tD0\tA\tEND\t", format);
  EXPECT_EQ(three.user_fields[0], "u1");
  EXPECT_EQ(three.user_fields[2], "u3");
  EXPECT_EQ(three.user_fields[3], "");
  EXPECT_EQ(three.disposal_code, kDisposalAbandoned);  // the section after them is found

  NvAsset twelve =
      Parse(General("1") + "12\t1\t2\t3\t4\t5\t6\t7\t8\t9\t10\t11\t12\tD0\tS\tEND\t", format);
  EXPECT_EQ(twelve.user_fields[9], "10");
  EXPECT_EQ(twelve.disposal_code, kDisposalSold);
}

TEST(AssetRecord, ParsingStartsFromNotApplicableSchedulesAndDefaults) {
  AssetRecordFormat format = Company("AB");
  NvAsset a = NewAsset(format);
  a.record_number = 17;
  a.stored_number_key = "key";
  a.Schedule('A')->method = kMethodMacrs;
  a.Schedule('B')->depreciable_basis = 5;
  a.pauses = NvAssetPauseDeprInfo{"A", {{{1, 1, 2024}, {6, 30, 2024}}}};
  // Blank Location and Category, no "S" sections, no "END", texts cut keeping their end.
  ParseAssetRecord(" 9.1\t1234567890123456789012345678901\t\t  ", format, &a);
  EXPECT_EQ(a.record_number, 17u);  // left for the reader
  EXPECT_EQ(a.stored_number_key, "key");
  EXPECT_EQ(a.number.Text(), "     9.01");
  EXPECT_EQ(a.description, "234567890123456789012345678901");
  EXPECT_EQ(a.location, "0         ");
  EXPECT_EQ(a.category, "0         ");
  EXPECT_EQ(a.new_used_trade, kNew);
  EXPECT_EQ(*a.Schedule('A'), NvAssetSchedule{});
  EXPECT_EQ(a.Schedule('B')->depreciable_basis, 0);
  EXPECT_FALSE(a.pauses);
  EXPECT_EQ(SerializeAssetRecord(a, format).substr(0, 11), "9.01\t234567");
  EXPECT_NE(SerializeAssetRecord(a, format).find("901\t0\t0\t\t"), std::string::npos);
}

TEST(AssetRecord, PausesAndTagsOfUpToFourCharacters) {
  AssetRecordFormat format = Company("AB");
  const std::string bytes = General("3") +
                            "0\tXYZ\tP*\tAB\t01012024\t06302024\t\t12312024\t\t\tSBzz\t2" +
                            std::string(24, '\t') + "\tEND\tSA\t2\t";  // after END: not read
  NvAsset a = Parse(bytes, format);
  ASSERT_TRUE(a.pauses);
  EXPECT_EQ(a.pauses->schedules, "AB");
  ASSERT_EQ(a.pauses->intervals.size(), 2u);
  EXPECT_EQ(a.pauses->intervals[0], (PauseInterval{{1, 1, 2024}, {6, 30, 2024}}));
  EXPECT_EQ(a.pauses->intervals[1], (PauseInterval{{}, {12, 31, 2024}}));
  EXPECT_EQ(a.Schedule('B')->method, kMethodStraightLine);
  EXPECT_TRUE(a.Schedule('A')->not_applicable());
  std::string out = SerializeAssetRecord(a, format);
  const std::string tail = "P*\tAB\t01012024\t06302024\t\t12312024\t\t\tEND\t";
  EXPECT_EQ(out.substr(out.size() - tail.size()), tail);
}

TEST(AssetRecord, SectionOfALetterTheCompanyLacksIsWrittenBack) {
  const std::string x_section =
      "SX\t3\t\tL\t100\t5-0\t0-0\t0.00\t0.00\t0\tY\t0.00\t0.00\t0.00\t0.00\t0.00\t0.00\t\t\t"
      "\t\t\t7000.00\t0.00\t0.00\t0.00\t";
  const std::string bytes = General("4") + "0\tD0\t\t\t\t\t\t\t\t\t\t\t" + x_section + "END\t";
  AssetRecordFormat format = Company("B");
  NvAsset a = Parse(bytes, format);
  EXPECT_EQ(a.schedule_letters, "B");
  EXPECT_TRUE(a.Schedule('B')->not_applicable());
  ASSERT_EQ(a.retained_sections.size(), 1u);
  EXPECT_EQ(a.retained_sections[0].tag, "SX");
  std::string out = SerializeAssetRecord(a, format);
  const std::string tail =
      "SB\t13\t\t\t\t\t\t0.00\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t0.00\t0.00\t0.00\t0.00\t" + x_section +
      "END\t";
  EXPECT_EQ(out.substr(out.size() - tail.size()), tail);

  // Not when it would overflow the main program's record buffer: 3 blocks without schedules.
  NvAsset wide = Parse(General("4") + "0\tSX\t" + std::string(400, '7') + "\tEND\t", Company(""));
  ASSERT_EQ(wide.retained_sections.size(), 1u);
  EXPECT_EQ(SerializeAssetRecord(wide, Company("")).find("\tSX\t"), std::string::npos);
  EXPECT_LE(SerializeAssetRecord(wide, Company("")).size() + 1, RecordBudget(0));
  ASSERT_EQ(RecordBudget(1), 725u);
  EXPECT_NE(SerializeAssetRecord(wide, Company("B")).find("\tSX\t777"), std::string::npos);

  // Under a company that has X it is that schedule's data.
  NvAsset with_x = Parse(bytes, Company("BX"));
  EXPECT_TRUE(with_x.retained_sections.empty());
  EXPECT_EQ(with_x.Schedule('X')->depreciable_basis, 7000);
  EXPECT_EQ(with_x.Schedule('X')->useful_life, (YearsMonths{5, 0}));
}

TEST(AssetRecord, WritesOnlyTheCompanysSchedulesInTheAssetsOrder) {
  AssetRecordFormat format = Company("AB");
  NvAsset a = NewAsset(format);
  a.number = NvAssetNo::Parse("2", kShort);
  a.schedule_letters = "BZA";
  a.schedules.resize(3);
  std::string out = SerializeAssetRecord(a, format);
  size_t b = out.find("\tSB\t");
  size_t a_at = out.find("\tSA\t");
  EXPECT_NE(b, std::string::npos);
  EXPECT_LT(b, a_at);
  EXPECT_EQ(out.find("\tSZ\t"), std::string::npos);
}

TEST(AssetRecord, DerivedValues) {
  NvAssetSchedule s;
  s.prior_allowed_depr = 100;
  s.prior_allowable_depr = 200;
  s.current_depr = 40;
  s.business_percent = 80;
  EXPECT_EQ(s.EndingAllowedDepr(), 140);
  EXPECT_EQ(s.EndingAllowableDepr(), 250);
  s.business_percent = 100;
  EXPECT_EQ(s.EndingAllowableDepr(), 240);
  s.depreciable_basis = 900;
  s.subst_itc_basis = 0.004;
  EXPECT_EQ(s.ItcBasis(), 900);
  s.subst_itc_basis = -0.005;
  EXPECT_EQ(s.ItcBasis(), -0.005);
  NvAsset a;
  a.cash_and_notes = 10;
  a.trade_in = 2.5;
  EXPECT_EQ(a.Cost(), 12.5);
  a.disposal_code = kDisposalSold;
  a.sale_amount = 3;
  a.asset_codes = "K";
  a.ClearDisposal();
  EXPECT_FALSE(a.disposed());
  EXPECT_EQ(a.sale_amount, 0);
  EXPECT_EQ(a.asset_codes, "K");
  EXPECT_STREQ(DeprMethodName(kMethodMacrs150Db), "MACRS 150% DB");
  EXPECT_STREQ(ConventionName('6'), "Month After Date Placed in Service");
  EXPECT_EQ(DeprMethodName(17), nullptr);
}

}  // namespace
}  // namespace nv
