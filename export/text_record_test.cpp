#include "export/text_record.h"

#include <gtest/gtest.h>

#include <string>

#include "store/asset/asset_text_layout.h"

namespace nv {
namespace {

// Schedules B, T and A (slots BATSC), format 6/2, cents kept.
NvCompanyRecord ThreeBookCompany() {
  NvCompanyRecord company;
  company.schedule_letters = "BTA";
  company.schedules = {{'B', "B", "Book"}, {'T', "T", "Tax"}, {'A', "A", "AMT"}};
  return company;
}

// Listed MACRS on the book, amortized straight line on the tax schedule, AMT not used, sold.
NvAsset Lathe(const NvCompanyRecord& company) {
  NvAsset a;
  a.Clear(company.schedule_letters);
  a.number = NvAssetNo::Parse("123.01", company.asset_no_format);
  a.description = "Lathe, \"big\"";
  a.location = "SHP";
  a.category = "MCH";
  a.account = "1500";
  a.cash_and_notes = 12000.5;
  a.purchase_date = {1, 15, 2022};
  a.date_in_service = {2, 1, 2022};
  a.new_used_trade = 'U';
  a.property_code = "P1";
  a.user_fields[0] = "Dept 7";
  a.user_fields[5] = "not carried";
  NvAssetSchedule& b = *a.Schedule('B');
  b.method = 3;
  b.asset_type = "L";
  b.business_percent = 100;
  b.useful_life = {7, 0};
  b.depreciable_basis = 12000.5;
  b.convention = 'Y';
  b.sec179_expense = 1000;
  b.prior_allowed_depr = 2500.25;
  b.prior_allowable_depr = 2500.25;
  b.current_depr = 1200;
  NvAssetSchedule& t = *a.Schedule('T');
  t.method = 2;
  t.amortized = true;
  t.asset_type = "AL";
  t.business_percent = 80;
  t.useful_life = {27, 6};
  t.depreciable_basis = 12000.5;
  t.itc = -3.456;
  t.convention = 'M';
  a.disposal_code = 'S';
  a.amount_disposed = 12000.5;
  a.disposal_date = {6, 30, 2024};
  a.sale_amount = 9000;
  return a;
}

std::string Write(const NvAsset& asset, const NvCompanyRecord& company, TextRecordType type) {
  std::string out;
  EXPECT_TRUE(WriteAssetRecord(asset, company, type, out));
  return out;
}

TEST(TextRecord, TabRecordOfAHandBuiltAsset) {
  const NvCompanyRecord company = ThreeBookCompany();
  // A schedule the asset lacks (S, C) and one it has as N/A (A) are written alike.
  const std::string na = "13\tN\tN\t\t\t00\t00\t\t\t\t\t\t\t\t\t\t\t";
  const std::string expected =
      "BATSC\t"
      "12000.50\t\t\t\t"
      "\t\t\t\t"
      "12000.50\t-3.46\t\t\t"
      "\t\t\t\t"
      "\t\t\t\t"
      "123.01\t\"Lathe, \"\"big\"\"\"\tSHP\tMCH\t1500\t12000.50\t\t01/15/22\t02/01/22\tU\t\tP1\t\t"
      "Dept 7\t\t\t\t\t"
      "3\tY\tN\t\t100\t07\t00\t\t\t\tY\t1000.00\t2500.25\t2500.25\t\t\t1200.00\t" +
      na + "2\tY\tY\tA\t80\t27-06\t00\t\t\t\tM\t\t\t\t\t\t\t" + na + na +
      "S\t\t12000.50\t06/30/24\t9000.00\t\r\n";
  EXPECT_EQ(Write(Lathe(company), company, TextRecordType::kTab), expected);
}

TEST(TextRecord, CommaRecordQuotesTextsWithCommasAndRoundsDollars) {
  NvCompanyRecord company = ThreeBookCompany();
  company.round_dollars = true;
  NvAsset asset = Lathe(company);
  asset.description = "Lathe, big";
  asset.account = "15\t00";  // a tab is nothing special in comma records
  const std::string na = "13,N,N,,,00,00,,,,,,,,,,,";
  const std::string expected =
      "BATSC,"
      "12001,,,,"
      ",,,,"
      "12001,-3,,,"
      ",,,,"
      ",,,,"
      "123.01,\"Lathe, big\",SHP,MCH,15\t00,12001,,01/15/22,02/01/22,U,,P1,,"
      "Dept 7,,,,,"
      "3,Y,N,,100,07,00,,,,Y,1000,2500,2500,,,1200," +
      na + "2,Y,Y,A,80,27-06,00,,,,M,,,,,,," + na + na + "S,,12001,06/30/24,9000,\r\n";
  EXPECT_EQ(Write(asset, company, TextRecordType::kComma), expected);
}

TEST(TextRecord, FixedRecordsPadEveryFieldToItsWidth) {
  const NvCompanyRecord company = ThreeBookCompany();
  const std::string amount_none(11, ' ');
  const std::string basis_none = amount_none + amount_none + amount_none + amount_none;
  const std::string na =
      "13NN"
      "    "
      "   "
      "00   "
      "00   " +
      amount_none + amount_none + " " + " " + amount_none + amount_none + amount_none +
      amount_none + amount_none + amount_none;
  const std::string body =
      "BATSC      "
      "   12000.50" +
      amount_none + amount_none + amount_none + basis_none +
      "   12000.50"
      "      -3.46" +
      amount_none + amount_none + basis_none + basis_none +
      "   123.01"
      "Lathe, \"big\"                  "  // 30
      "SHP"
      "MCH"
      "1500                    "  // 24
      "   12000.50" +
      amount_none +
      "01/15/22"
      "02/01/22"
      "U"
      "  "
      "P1"
      "  " +
      "Dept 7              " + std::string(80, ' ') +
      "3 YN"
      "    "
      "100"
      "07   "
      "00   " +
      amount_none + amount_none +
      " "
      "Y" +
      "    1000.00"
      "    2500.25"
      "    2500.25" +
      amount_none + amount_none + "    1200.00" + na +
      "2 YY"
      "A   "
      "80 "
      "27-06"
      "00   " +
      amount_none + amount_none +
      " "
      "M" +
      amount_none + amount_none + amount_none + amount_none + amount_none + amount_none + na + na +
      "S"
      "         "
      "   12000.50"
      "06/30/24"
      "    9000.00";
  EXPECT_EQ(Write(Lathe(company), company, TextRecordType::kFixedLines), body + "\r\n");
  EXPECT_EQ(Write(Lathe(company), company, TextRecordType::kFixedNoLines), body);
}

TEST(TextRecord, AmountsThatDoNotFitAreStarsAndCentsBelowHalfAreNothing) {
  const NvCompanyRecord company = ThreeBookCompany();
  NvAsset asset = Lathe(company);
  asset.cash_and_notes = 123456789.5;  // "123456789.50": 12 characters
  asset.trade_in = 0.004;
  for (TextRecordType type : {TextRecordType::kTab, TextRecordType::kFixedLines}) {
    const std::string record = Write(asset, company, type);
    const std::string trade_in =
        type == TextRecordType::kTab ? "***********\t\t" : "***********           ";
    EXPECT_NE(record.find(trade_in), std::string::npos) << record;
  }
}

TEST(TextRecord, ExchangedAssetsWriteTheirTradedToNumber) {
  NvCompanyRecord company = ThreeBookCompany();
  company.asset_no_format = {8, 3, NvAssetNoFormat::kLetters};
  NvAsset asset = Lathe(company);
  asset.number = NvAssetNo::Parse("AB12.5", company.asset_no_format);
  asset.disposal_code = 'E';
  asset.traded_to = NvAssetNo::Parse("AB13", company.asset_no_format);
  asset.transferred_to = NvAssetNo::Parse("99", company.asset_no_format);
  const std::string fixed = Write(asset, company, TextRecordType::kFixedLines);
  EXPECT_NE(fixed.find("    AB12.005Lathe"), std::string::npos) << fixed;
  EXPECT_NE(fixed.find("E    AB13.000   12000.50"), std::string::npos) << fixed;
  EXPECT_NE(Write(asset, company, TextRecordType::kTab).find("E\tAB13.000\t"), std::string::npos);
}

TEST(TextRecord, RecordsLongerThanAnImportLineAreRefused) {
  NvCompanyRecord company;
  company.schedule_letters = "BATSO";
  NvAsset asset;
  asset.Clear(company.schedule_letters);
  // Every amount at its full 11 characters, every text full of quotes (written whole, each
  // quote doubled): about 1,400 bytes delimited, while fixed records keep their widths.
  const double wide = -9999999.99;
  asset.number = NvAssetNo::Parse("1", company.asset_no_format);
  asset.cash_and_notes = asset.trade_in = asset.amount_disposed = asset.sale_amount = wide;
  asset.description = std::string(30, '"');
  asset.location = asset.category = std::string(10, '"');
  asset.account = std::string(24, '"');
  asset.property_code = "\"\"";
  for (int i = 0; i < kTextRecordUserFields; ++i) asset.user_fields[i] = std::string(20, '"');
  for (NvAssetSchedule& s : asset.schedules) {
    s.method = 2;
    s.asset_type = std::string(10, '"');
    for (double* amount :
         {&s.depreciable_basis, &s.itc, &s.further_amount_1, &s.further_amount_2,
          &s.substitute_basis, &s.subst_itc_basis, &s.sec179_expense, &s.prior_allowed_depr,
          &s.prior_allowable_depr, &s.bonus_depr, &s.salvage_value, &s.current_depr}) {
      *amount = wide;
    }
  }
  std::string out = "kept";
  EXPECT_FALSE(WriteAssetRecord(asset, company, TextRecordType::kComma, out));
  EXPECT_EQ(out, "kept");
  EXPECT_TRUE(WriteAssetRecord(asset, company, TextRecordType::kFixedLines, out));
  EXPECT_LE(out.size() - 4, kTextRecordMaxLength);
}

TEST(TextRecord, SlotLetters) {
  EXPECT_EQ(SlotLetters("BTA"), "BATSC");    // O is the first of OSBTA missing
  EXPECT_EQ(SlotLetters("BTACF"), "BATFC");  // then F takes the place of the missing S
  EXPECT_EQ(SlotLetters("BATSO"), "BATSO");
  EXPECT_EQ(SlotLetters("T"), "BATSC");
  EXPECT_EQ(SlotLetters("XYZ"), "XYZSC");  // O gives way to C, then X, Y, Z take B, A, T
}

}  // namespace
}  // namespace nv
