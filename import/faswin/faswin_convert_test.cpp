#include "import/faswin/faswin_convert.h"

#include <gtest/gtest.h>

#include "import/faswin/faswin_testing.h"

namespace nv::faswin {
namespace {

using testing::AllRows;
using testing::Record;

CommaRecord Rec(const std::string& text) {
  return SplitRecords(text).at(0);
}

// An asset of the older layout with one book line of the newer field numbers shifted by
// one: older book fields are 4 in service, 5 cost, 6 method, 7 percent, 8 life,
// 10 Sec. 179 flag, 11 amount, 13 mid-quarter mark, 19 prior depreciation.
std::string OlderBook(std::string_view book, std::string_view cost, std::string_view method,
                      std::string_view percent, std::string_view life,
                      std::string_view mark = "0") {
  return Record(19, {{2, "7"},
                     {3, book},
                     {4, "02/01/2021"},
                     {5, cost},
                     {6, method},
                     {7, percent},
                     {8, life},
                     {13, mark},
                     {19, "10.00"}});
}

WfaSettings OlderSettings() {
  WfaSettings s;
  s.layout = WfaLayout::kOlder;
  s.schedule_letters = "TBSAC";
  s.book_letters = {'T', 'B', 'S', 'A', 'C', 0, 0};
  return s;
}

NvAsset Convert(const WfaAsset& source, const WfaSettings& settings = OlderSettings()) {
  std::vector<std::string> notes;
  NvAsset asset = ConvertWfaAsset(source, settings, &notes);
  EXPECT_TRUE(notes.empty());
  return asset;
}

// One book line in FAS book `book` with the given property type letter.
WfaAsset OneBook(std::string_view property, const std::string& book_line) {
  WfaAsset source;
  source.asset = Rec(Record(33, {{2, "7"}, {5, property}, {12, "01/15/2021"}}));
  source.books.push_back(Rec(book_line));
  return source;
}

const NvAssetSchedule& Only(const NvAsset& asset, char letter) {
  const NvAssetSchedule* s = asset.Schedule(letter);
  EXPECT_NE(s, nullptr);
  return *s;
}

TEST(FasWinMethodTest, DecliningBalanceByPercentageAndConvention) {
  struct Case {
    const char* code;
    const char* percent;
    int method;
    char convention;
  } cases[] = {
      {"DD", "200", kMethodDb200Sl, '2'},    {"DB", "100", kMethodDb100, '1'},
      {"DH", "125.00", kMethodDb125Sl, '3'}, {"DI", "150", kMethodDb150, '3'},
      {"DE", "175", kMethodDb200, '2'},      {"DC", "125", kMethodDb125, '1'},
  };
  for (const Case& c : cases) {
    const NvAsset asset = Convert(OneBook("P", OlderBook("0", "100", c.code, c.percent, "0500")));
    const NvAssetSchedule& tax = Only(asset, 'T');
    EXPECT_EQ(tax.method, c.method) << c.code << " " << c.percent;
    EXPECT_EQ(tax.convention, c.convention) << c.code;
    EXPECT_EQ(tax.useful_life, (YearsMonths{5, 0}));
  }
}

TEST(FasWinMethodTest, MacrsTakesTheMidQuarterMarkAndAmtInTheAmtBook) {
  WfaAsset source = OneBook("P", OlderBook("0", "100", "MF", "", "0700", "1"));
  source.books.push_back(Rec(OlderBook("3", "100", "AD", "", "1006", "0")));
  const NvAsset asset = Convert(source);
  EXPECT_EQ(Only(asset, 'T').method, kMethodMacrs);
  EXPECT_EQ(Only(asset, 'T').convention, 'Q');
  EXPECT_TRUE(Only(asset, 'T').sl_life.zero());
  const NvAssetSchedule& amt = Only(asset, 'A');
  EXPECT_EQ(amt.method, kMethodAmt);
  EXPECT_EQ(amt.convention, 'Y');
  EXPECT_EQ(amt.useful_life, (YearsMonths{10, 6}));
  EXPECT_EQ(amt.sl_life, (YearsMonths{10, 6})) << "AD carries the SL Life";
}

TEST(FasWinMethodTest, NoAndUnknownCodesSetNoLife) {
  WfaAsset source = OneBook("P", OlderBook("0", "100", "NO", "", "0700"));
  source.books.push_back(Rec(OlderBook("1", "100", "QQ", "", "0700")));
  source.books.push_back(Rec(OlderBook("2", "100", "st", "", "0503")));
  const NvAsset asset = Convert(source);
  EXPECT_EQ(Only(asset, 'T').method, kMethodNa);
  EXPECT_TRUE(Only(asset, 'T').useful_life.zero());
  EXPECT_EQ(Only(asset, 'B').method, kMethodNa);
  EXPECT_TRUE(Only(asset, 'B').useful_life.zero());
  EXPECT_EQ(Only(asset, 'B').convention, ' ');
  // Codes are read ignoring case.
  EXPECT_EQ(Only(asset, 'S').method, kMethodAcrs);
  EXPECT_EQ(Only(asset, 'S').sl_life, (YearsMonths{5, 3}));
  // Every matched book line is a used schedule, whatever its method.
  EXPECT_EQ(Only(asset, 'B').business_percent, 100);
}

TEST(FasWinPropertyTest, RealPropertyOverTwentySixYearsIsMidMonth) {
  // S: 4797 Type 50 and "L"; 27-6 years under MACRS half-year becomes mid-month.
  NvAsset asset = Convert(OneBook("S", OlderBook("0", "100", "MF", "", "2706")));
  EXPECT_EQ(asset.type_4797, 50);
  EXPECT_EQ(Only(asset, 'T').asset_type, "L");
  EXPECT_EQ(Only(asset, 'T').convention, 'M');
  // Exactly 26-0 is not longer; the straight-line convention never changes.
  asset = Convert(OneBook("R", OlderBook("0", "100", "MT", "", "2600")));
  EXPECT_EQ(Only(asset, 'T').convention, 'Y');
  asset = Convert(OneBook("R", OlderBook("0", "100", "SL", "", "3900")));
  EXPECT_EQ(Only(asset, 'T').convention, '2');
  // Residential property is not 50 without a letter that says so.
  asset = Convert(OneBook("Q", OlderBook("0", "100", "MF", "", "2706")));
  EXPECT_EQ(asset.type_4797, 45);
  EXPECT_EQ(Only(asset, 'T').convention, 'Y');
}

TEST(FasWinPropertyTest, AutosListedInTheInternalBookAndAmortization) {
  WfaAsset source = OneBook("A", OlderBook("0", "100", "MF", "", "0500"));
  source.books.push_back(Rec(OlderBook("1", "100", "SL", "", "0500")));
  NvAsset asset = Convert(source);
  EXPECT_EQ(Only(asset, 'T').asset_type, "AL");
  EXPECT_EQ(Only(asset, 'B').asset_type, "L");
  asset = Convert(OneBook("Z", OlderBook("0", "100", "SL", "", "1500")));
  EXPECT_TRUE(Only(asset, 'T').amortized);
  EXPECT_EQ(asset.type_4797, 45);
}

TEST(FasWinBookTest, FirstLineSetsCostLaterLinesASubstituteBasis) {
  WfaAsset source;
  // Older asset fields: 8 ITC option "C" (used property), 11 ITC amount.
  source.asset = Rec(Record(33, {{2, "7"}, {8, "C"}, {11, "0.01"}, {12, "01/15/2021"}}));
  source.books.push_back(Rec(OlderBook("0", "1000.00", "SL", "", "0500")));
  source.books.push_back(Rec(OlderBook("2", "1000.004", "SL", "", "0500")));
  source.books.push_back(Rec(OlderBook("4", "800", "SL", "", "0500")));
  // Field 10 "1": field 11 is Sec. 179 expense.
  source.books.push_back(
      Rec(Record(19, {{2, "7"}, {3, "3"}, {5, "1000"}, {10, "1"}, {11, "250"}})));
  const NvAsset asset = Convert(source);
  EXPECT_EQ(asset.cash_and_notes, 1000);
  EXPECT_EQ(asset.new_used_trade, kUsed);
  EXPECT_EQ(asset.purchase_date, (Date{1, 15, 2021}));
  EXPECT_EQ(asset.date_in_service, (Date{2, 1, 2021})) << "the first book line's date";
  EXPECT_EQ(Only(asset, 'T').substitute_basis, 0);
  EXPECT_EQ(Only(asset, 'S').substitute_basis, 0) << "less than half a cent apart";
  EXPECT_EQ(Only(asset, 'C').substitute_basis, 800);
  EXPECT_EQ(Only(asset, 'T').prior_allowed_depr, 10);
  EXPECT_EQ(Only(asset, 'T').prior_allowable_depr, 10);
  // ITC: a credit amount gives 1 in books 0, 3 and 4; other books 3.
  EXPECT_EQ(Only(asset, 'T').itc_code, 1);
  EXPECT_EQ(Only(asset, 'C').itc_code, 1);
  EXPECT_EQ(Only(asset, 'S').itc_code, 3);
  EXPECT_EQ(Only(asset, 'A').sec179_expense, 250);
  EXPECT_EQ(Only(asset, 'A').bonus_depr, 0);
  EXPECT_TRUE(Only(asset, 'B').not_applicable()) << "no line of book 1";
}

TEST(FasWinBookTest, ItcCodeWithoutCreditAndBonusWithoutTheFlag) {
  WfaAsset source;
  source.asset = Rec(Record(33, {{2, "7"}, {8, "N"}, {11, "0.004"}}));
  source.books.push_back(Rec(Record(19, {{2, "7"}, {3, "0"}, {5, "10"}, {10, "0"}, {11, "4"}})));
  NvAsset asset = Convert(source);
  EXPECT_EQ(Only(asset, 'T').itc_code, 2);
  EXPECT_EQ(Only(asset, 'T').bonus_depr, 4);
  EXPECT_EQ(Only(asset, 'T').sec179_expense, 0);
  source.asset = Rec(Record(33, {{2, "7"}, {8, "X"}, {11, "90"}}));
  asset = Convert(source);
  EXPECT_EQ(Only(asset, 'T').itc_code, 3);
}

TEST(FasWinStatusTest, InactiveAndOldDisposalsAreLeftOut) {
  WfaSettings settings = OlderSettings();
  settings.delete_disposed = true;
  settings.last_closed = {12, 31, 2023};
  WfaAsset source;
  source.asset = Rec(Record(33, {{2, "7"}, {3, "Inactive"}}));
  EXPECT_TRUE(WfaLeaveOutReason(source, settings));
  source.asset = Rec(Record(33, {{2, "7"}, {3, "D"}, {14, "12/31/2023"}}));
  EXPECT_TRUE(WfaLeaveOutReason(source, settings));
  source.asset = Rec(Record(33, {{2, "7"}, {3, "D"}, {14, "01/01/2024"}}));
  EXPECT_FALSE(WfaLeaveOutReason(source, settings));
  settings.delete_disposed = false;
  source.asset = Rec(Record(33, {{2, "7"}, {3, "D"}, {14, "06/30/2020"}}));
  EXPECT_FALSE(WfaLeaveOutReason(source, settings));

  // The newer layout's status is chld.wfa's, and without a chld record there is none.
  settings.layout = WfaLayout::kNewer;
  settings.delete_disposed = true;
  source.asset = Rec(Record(35, {{2, "7"}, {3, "I"}}));
  EXPECT_FALSE(WfaLeaveOutReason(source, settings)) << "field 3 is the property type here";
  source.disposal = Rec(Record(51, {{2, "7"}, {43, "D"}, {45, "12/31/2023"}}));
  EXPECT_TRUE(WfaLeaveOutReason(source, settings));
}

TEST(FasWinDisposalTest, SaleAmountIsProceedsLessExpense) {
  WfaSettings settings = OlderSettings();
  settings.layout = WfaLayout::kNewer;
  WfaAsset source;
  source.asset = Rec(Record(35, {{2, "7"}}));
  source.disposal = Rec(Record(51, {{2, "7"},
                                    {43, "D"},
                                    {45, "03/31/2024"},
                                    {46, "Sold"},
                                    {47, "900"},
                                    {48, "100.50"},
                                    {49, "25"}}));
  source.books.push_back(Rec(Record(18, {{2, "7"}, {3, "0"}, {6, "4000"}})));
  NvAsset asset = Convert(source, settings);
  EXPECT_EQ(asset.disposal_code, kDisposalSold);
  EXPECT_EQ(asset.disposal_date, (Date{3, 31, 2024}));
  EXPECT_EQ(asset.sale_amount, 975.5);
  EXPECT_EQ(asset.amount_disposed, 4000);
  // "L" (like-kind) is an exchange; no date, no disposal whatever the method says.
  source.disposal->fields[45] = "L";
  EXPECT_EQ(Convert(source, settings).disposal_code, kDisposalExchanged);
  source.disposal->fields[44] = "";
  EXPECT_FALSE(Convert(source, settings).disposed());
}

TEST(FasWinAccountGroupTest, AccountsGiveTheGroupTheTextIsItsCode) {
  std::vector<AccountGroup> groups;
  EXPECT_EQ(AccountGroupCode(&groups, "1500", {"1500", "1510"}), "1500");
  ASSERT_EQ(groups.size(), 1u);
  EXPECT_EQ(groups[0].accounts, (std::array<std::string, 4>{"1500", "1500", "1510", "1510"}));
  // The same accounts find the group; other accounts under the same text get a new code.
  EXPECT_EQ(AccountGroupCode(&groups, "1500", {"1500", "1510"}), "1500");
  EXPECT_EQ(AccountGroupCode(&groups, "1500", {"1500", "1590"}), "1500A");
  // Without accounts the text stays as it is and nothing is added.
  EXPECT_EQ(AccountGroupCode(&groups, "Custodian", {"", ""}), "Custodian");
  EXPECT_EQ(groups.size(), 2u);
}

CsvSettings CsvFor(char letter, std::string type) {
  CsvSettings s;
  s.schedule = letter;
  s.schedule_type = std::move(type);
  s.schedule_letters = "TA";
  return s;
}

TEST(FasWinCsvConvertTest, MacrsAt150PercentDependsOnTheScheduleType) {
  const std::optional<CsvBook> book = CsvBook::Parse(
      "a,b,c\nSystem No,Depreciation Method,Depreciation Percent,Estimated Life,Acquisition "
      "Value,168(k) Percent,168(k) Allowance\n"
      "1,MA,150,07 06,1000,30,300\n"
      "2,MR,200,39,1000,50,500\n");
  ASSERT_TRUE(book);
  const CsvColumns columns(*book);
  NvAsset asset;
  asset.Clear("TA");
  ApplyCsvRow(CsvRow(columns, AllRows(*book)[0]), CsvFor('T', "T"), true, &asset);
  ApplyCsvRow(CsvRow(columns, AllRows(*book)[0]), CsvFor('A', "A"), false, &asset);
  EXPECT_EQ(Only(asset, 'T').method, kMethodMacrs150Db);
  EXPECT_EQ(Only(asset, 'A').method, kMethodAmt);
  EXPECT_EQ(Only(asset, 'T').convention, 'Y');
  EXPECT_EQ(Only(asset, 'T').useful_life, (YearsMonths{7, 6}));
  EXPECT_EQ(Only(asset, 'T').asset_type, "2");
  EXPECT_EQ(Only(asset, 'T').bonus_depr, 300);
  EXPECT_EQ(Only(asset, 'T').itc_code, 3);

  asset.Clear("TA");
  ApplyCsvRow(CsvRow(columns, AllRows(*book)[1]), CsvFor('T', "T"), true, &asset);
  EXPECT_EQ(Only(asset, 'T').method, kMethodMacrs);
  EXPECT_EQ(Only(asset, 'T').useful_life, (YearsMonths{0, 39})) << "\"39\" is zero-filled to 0039";
  EXPECT_EQ(Only(asset, 'T').asset_type, "3");
  EXPECT_EQ(Only(asset, 'T').bonus_depr, 500);
}

}  // namespace
}  // namespace nv::faswin
