#include "import/aicpa/aicpa_convert.h"

#include <gtest/gtest.h>

#include "import/aicpa/aicpa_testing.h"

namespace nv::aicpa {
namespace {

using testing::AccountRow;
using testing::BookRow;
using testing::ValueRow;

AssetPage PageOf(const std::vector<std::string>& lines) {
  AssetPage page;
  long number = 0;
  for (const std::string& line : lines) EXPECT_TRUE(ReadRow(line, ++number, &page)) << line;
  return page;
}

NvCompanyRecord CompanyWith(std::string_view letters) {
  NvCompanyRecord record;
  for (char letter : letters) record.schedules.push_back({letter, std::string(1, letter), ""});
  record.schedule_letters = std::string(letters);
  return record;
}

// Federal, AMT, ACE and State books of a MACRS asset placed in service in 1992.
AssetPage FourBookPage() {
  return PageOf({
      ValueRow("Asset No.", "501", 41),
      ValueRow("Asset Description (line 1)", "Combine harvester"),
      ValueRow("Category", "Farm machinery"),
      ValueRow("User-defined 1", "Serial 88-1"),
      BookRow("Date Acquired", {"03/15/92", "03/15/92", "03/15/92", "03/15/92"}),
      BookRow("New/Used", {"Used", "Used", "Used", "Used"}),
      BookRow("Cost or Basis", {"10,000.00", "10,000.00", "10,000.00", "9,500.00"}),
      BookRow("Salvage Value", {"0.00", "0.00", "0.00", "500.00"}),
      BookRow("ITC Basis Reduction", {"0.00", "250.00", "0.00", "0.00"}),
      BookRow("Tax System", {"MACRS", "MACRS", "MACRS", "Other"}),
      BookRow("Method", {"150DB", "150DB", "ACE MACRS", "200DB"}),
      BookRow("Life (YY/MM)", {"7/0", "10/0", "9/6", "12/3"}),
      BookRow("Convention", {"MID-QTR", "MID-MONTH", "HALF-YEAR", "HALF-YEAR"}),
      BookRow("Business Percentage", {"100", "100", "100", "80"}),
      BookRow("Section 179 deduction", {"1,000.00", "0.00", "0.00", "0.00"}),
      BookRow("Prior Depreciation", {"5,000.00", "4,000.00", "3,000.00", "2,000.00"}),
      AccountRow("Depreciation/Amortization Expense", "6100"),
  });
}

TEST(AicpaConvert, MacrsBooksAndTheGeneralData) {
  const NvAsset a = ConvertAssetPage(FourBookPage(), "TACS", CompanyWith("TACS"), false);
  EXPECT_EQ(a.number.Text(), "   501.00");
  EXPECT_EQ(a.description, "Combine harvester");
  EXPECT_EQ(a.category, "Farm machi") << "ten characters are kept";
  EXPECT_EQ(a.user_fields[0], "Serial 88-1");
  EXPECT_EQ(a.user_fields[1], "");
  // No Book schedule: the general data is Federal's.
  EXPECT_DOUBLE_EQ(a.cash_and_notes, 10000.0);
  EXPECT_DOUBLE_EQ(a.trade_in, 0.0);
  EXPECT_EQ(a.purchase_date, (Date{3, 15, 1992}));
  EXPECT_EQ(a.date_in_service, (Date{3, 15, 1992}));
  EXPECT_EQ(a.new_used_trade, 'U');
  EXPECT_EQ(a.type_4797, 45);
  EXPECT_FALSE(a.disposed());

  // Federal: 150% DB of 7 years is MACRS 150% DB of farm property.
  const NvAssetSchedule& t = *a.Schedule('T');
  EXPECT_EQ(t.method, 33);
  EXPECT_EQ(t.asset_type, "F");
  EXPECT_EQ(t.convention, 'Q');
  EXPECT_EQ(t.useful_life, (YearsMonths{7, 0}));
  EXPECT_TRUE(t.sl_life.zero());
  EXPECT_EQ(t.itc_code, 3);
  EXPECT_EQ(t.business_percent, 100);
  EXPECT_DOUBLE_EQ(t.substitute_basis, 0.0);
  EXPECT_DOUBLE_EQ(t.sec179_expense, 1000.0);
  EXPECT_DOUBLE_EQ(t.prior_allowed_depr, 4000.0) << "prior depreciation less Sec. 179";
  EXPECT_DOUBLE_EQ(t.prior_allowable_depr, 4000.0);

  // AMT: the AMT method, and a basis reduction makes ITC code 1.
  const NvAssetSchedule& amt = *a.Schedule('A');
  EXPECT_EQ(amt.method, 14);
  EXPECT_EQ(amt.asset_type, "");
  EXPECT_EQ(amt.convention, 'M');
  EXPECT_EQ(amt.itc_code, 1);

  // ACE of an asset in service before 1994 keeps a straight-line life.
  const NvAssetSchedule& ace = *a.Schedule('C');
  EXPECT_EQ(ace.method, 14);
  EXPECT_EQ(ace.sl_life, (YearsMonths{9, 6}));
  EXPECT_EQ(ace.convention, 'Y');

  // State on no tax system: 200% DB without the switch; its own basis is a substitute.
  const NvAssetSchedule& state = *a.Schedule('S');
  EXPECT_EQ(state.method, 6);
  EXPECT_DOUBLE_EQ(state.substitute_basis, 9500.0);
  EXPECT_EQ(state.asset_type, "S");
  EXPECT_DOUBLE_EQ(state.salvage_value, 500.0);
  EXPECT_EQ(state.useful_life, (YearsMonths{12, 3}));
  EXPECT_EQ(state.business_percent, 80);
  EXPECT_EQ(state.convention, 'Y');
  EXPECT_DOUBLE_EQ(state.prior_allowed_depr, 2000.0);
}

TEST(AicpaConvert, DecliningBalanceOfOtherBooksFollowsTheSwitchQuestion) {
  const NvCompanyRecord company = CompanyWith("TS");
  for (const auto& [method, with_switch, without] : {std::tuple{"200DB", 10, 6},
                                                     {"150 DB", 9, 5},
                                                     {"125%", 8, 4},
                                                     {"SYD", 7, 7},
                                                     {"SL", 2, 2}}) {
    const AssetPage page = PageOf({
        ValueRow("Asset No.", "1", 41),
        BookRow("Date Acquired", {"01/01/2020", "01/01/2020"}),
        BookRow("Tax System", {"Other", "Other"}),
        BookRow("Method", {"SL", method}),
        BookRow("Convention", {"FULL-YEAR", "MID MONTH"}),
    });
    EXPECT_EQ(ConvertAssetPage(page, "TS", company, true).Schedule('S')->method, with_switch)
        << method;
    const NvAsset no = ConvertAssetPage(page, "TS", company, false);
    EXPECT_EQ(no.Schedule('S')->method, without) << method;
    EXPECT_EQ(no.Schedule('T')->convention, '5');
    EXPECT_EQ(no.Schedule('S')->convention, '1') << "only the exact words name a convention";
  }
}

TEST(AicpaConvert, FedBasisOnTheStateBookCopiesTheTaxSchedule) {
  const AssetPage page = PageOf({
      ValueRow("Asset No.", "2", 41),
      BookRow("Date Acquired", {"05/05/2015", "05/05/2015", "05/05/2015"}),
      BookRow("Cost or Basis", {"8,000.00", "", "8,000.00"}),
      BookRow("Tax System", {"Other", "", "MACRS"}),
      BookRow("Method", {"SL", "FED BASIS", "200DB"}),
      BookRow("Life (YY/MM)", {"5/0", "", "7/0"}),
      BookRow("Prior Depreciation", {"1,000.00", "", "3,000.00"}),
  });
  // State comes before Federal in this report: Federal is converted first all the same.
  const NvAsset a = ConvertAssetPage(page, "BST", CompanyWith("BTS"), false);
  const NvAssetSchedule& tax = *a.Schedule('T');
  EXPECT_EQ(tax.method, 3);
  EXPECT_EQ(tax.convention, 'Y');
  EXPECT_EQ(tax.useful_life, (YearsMonths{7, 0}));
  EXPECT_DOUBLE_EQ(tax.prior_allowed_depr, 3000.0);
  EXPECT_EQ(*a.Schedule('S'), tax) << "method and all";
  // The general data is the Book column's; Book itself is straight line.
  EXPECT_DOUBLE_EQ(a.cash_and_notes, 8000.0);
  const NvAssetSchedule& book = *a.Schedule('B');
  EXPECT_EQ(book.method, 2);
  EXPECT_EQ(book.useful_life, (YearsMonths{5, 0}));
  EXPECT_DOUBLE_EQ(book.prior_allowed_depr, 1000.0);

  // Without a Tax schedule in the company there is nothing to copy.
  const NvAsset no_tax = ConvertAssetPage(page, "BST", CompanyWith("BS"), false);
  EXPECT_EQ(no_tax.Schedule('S')->method, 13);
}

TEST(AicpaConvert, AcrsBooksLandAndProperty) {
  const AssetPage page = PageOf({
      ValueRow("Asset No.", "3", 41),
      BookRow("Date Acquired", {"06/01/1985", "06/01/1985", "06/01/1985", "06/01/1985"}),
      BookRow("Tax System", {"ACRS", "ACRS", "ACRS", "ACRS"}),
      BookRow("Method", {"SL AUTO LIST", "ACE ACRS", "LAND", "LIH AMORT REAL"}),
      BookRow("Life (YY/MM)", {"5", "5/0", "0/0", "19/0"}),
  });
  const NvAsset a = ConvertAssetPage(page, "TCBO", CompanyWith("TCBO"), true);
  const NvAssetSchedule& t = *a.Schedule('T');
  EXPECT_EQ(t.method, 1);
  EXPECT_EQ(t.convention, '1');
  EXPECT_EQ(t.sl_life, (YearsMonths{5, 0}));
  EXPECT_EQ(t.asset_type, "AL") << "an automobile is listed property: L once";
  const NvAssetSchedule& ace = *a.Schedule('C');
  EXPECT_EQ(ace.method, 2);
  EXPECT_EQ(ace.convention, '4');
  // Books B and O are never ACRS books: the other methods.
  EXPECT_EQ(a.Schedule('B')->method, 13) << "land";
  const NvAssetSchedule& other = *a.Schedule('O');
  EXPECT_EQ(other.method, 2);
  EXPECT_EQ(other.asset_type, "H");
  EXPECT_TRUE(other.amortized);
  EXPECT_EQ(a.type_4797, 50) << "real property";
}

TEST(AicpaConvert, BooksWithoutADateOrUnknownToTheCompanyStayNotApplicable) {
  const AssetPage page = PageOf({
      ValueRow("Asset No.", "4", 41),
      BookRow("Date Acquired", {"02/02/2002", "", "02/02/2002"}),
      BookRow("Tax System", {"MACRS", "MACRS", "MACRS"}),
      BookRow("Method", {"NO CALC", "200DB", "200DB"}),
  });
  const NvAsset a = ConvertAssetPage(page, "TAS", CompanyWith("TAB"), false);
  EXPECT_EQ(a.schedule_letters, "TAB");
  EXPECT_EQ(a.Schedule('T')->method, 13) << "no calculation";
  EXPECT_EQ(a.Schedule('A')->method, 13) << "no date in the AMT column";
  EXPECT_EQ(a.Schedule('B')->method, 13) << "the report has no Book column";
  EXPECT_EQ(a.Schedule('S'), nullptr);
}

TEST(AicpaConvert, GeneralColumnPrefersBookThenTaxThenTheFirstSchedule) {
  EXPECT_EQ(GeneralColumn("TAB", "TAB"), 2u);
  EXPECT_EQ(GeneralColumn("TAB", "TA"), 0u) << "the company has no Book schedule";
  EXPECT_EQ(GeneralColumn("SAT", "AS"), 1u);
  EXPECT_EQ(GeneralColumn("S", "T"), 0u) << "no column of the company's books";
}

TEST(AicpaConvert, AccountGroupOfThreeAccountsElseOfThePair) {
  std::vector<AccountGroup> groups(3);
  groups[0] = {"1500", "", {"1500", "1510", "6100", ""}};
  groups[1] = {"1600", "", {"1600", "1610", "6200", ""}};
  groups[2] = {"X", "", {"9", "1610", "6200", "4th"}};
  const AccountGroupFinder finder(groups);
  EXPECT_EQ(finder.Find({"1600", "1610", "6200"}), "1600");
  EXPECT_EQ(finder.Find({"1700", "1510", "6100"}), "1500") << "the pair decides";
  EXPECT_EQ(finder.Find({"1500", "1510", "6999"}), "");
  EXPECT_EQ(finder.Find({"", "", ""}), "");
  EXPECT_EQ(GroupAccounts({"a", "b", "c"}), (std::array<std::string, 4>{"a", "b", "c", ""}));
}

}  // namespace
}  // namespace nv::aicpa
