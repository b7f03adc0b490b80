#include "import/mba/mba_convert.h"

#include <gtest/gtest.h>

#include "import/mba/mba_testing.h"

namespace nv {
namespace {

using testing::MbaLineText;

MbaRecord Record(const MbaLineText& text) {
  MbaRecord record;
  record.line = ParseMbaLine(text.text());
  record.id = SplitMbaAssetId(record.line.id);
  return record;
}

NvCompanyRecord Company(std::vector<ScheduleEntry> schedules) {
  NvCompanyRecord company;
  company.schedule_letters.clear();
  for (const ScheduleEntry& entry : schedules) company.schedule_letters += entry.letter;
  company.schedules = std::move(schedules);
  return company;
}

NvAsset Convert(const MbaLineText& text, const NvCompanyRecord& company, std::string account = "") {
  return ConvertMbaLine(Record(text), NvAssetNo::Parse("123", company.asset_no_format),
                        std::move(account), company);
}

TEST(MbaConvertTest, TheGeneralPartComesFromTheLineAndItsId) {
  MbaLineText text('A', "0102PRESS123");
  text.Description("Hydraulic press with tooling, spare dies")
      .Cost("12500.50")
      .Acquired("031598")
      .Disposed("063024");
  const NvAsset asset = Convert(text, Company({{'T', "T", "Tax"}}), "1500");
  EXPECT_EQ(asset.user_fields[0], "A");
  EXPECT_EQ(asset.user_fields[1], "0102PRESS123  ");
  EXPECT_EQ(asset.number.Text(), "   123.00");
  EXPECT_EQ(asset.location, "01");
  EXPECT_EQ(asset.category, "02");
  EXPECT_EQ(asset.description, "Hydraulic press with tooling,") << "its first 30 characters";
  EXPECT_DOUBLE_EQ(asset.cash_and_notes, 12500.50);
  EXPECT_EQ(asset.purchase_date, (Date{3, 15, 1998}));
  EXPECT_EQ(asset.date_in_service, (Date{3, 15, 1998}));
  EXPECT_EQ(asset.account, "1500");
  // Active: the disposal date of the line is not taken.
  EXPECT_FALSE(asset.disposed());
  EXPECT_TRUE(asset.disposal_date.empty());
  EXPECT_DOUBLE_EQ(asset.amount_disposed, 0);
}

TEST(MbaConvertTest, SoldAndDisposedLinesDisposeOfTheWholeCost) {
  const NvCompanyRecord company = Company({{'T', "T", "Tax"}});
  MbaLineText sold('S', "0201TRUCK7");
  sold.Cost("30000").Acquired("01152020").Disposed("06/30/24");
  const NvAsset s = Convert(sold, company);
  EXPECT_EQ(s.disposal_code, 'S');
  EXPECT_EQ(s.disposal_date, (Date{6, 30, 2024}));
  EXPECT_DOUBLE_EQ(s.amount_disposed, 30000);
  EXPECT_DOUBLE_EQ(s.sale_amount, 0);

  MbaLineText gone('D', "0201TRAILER8");
  gone.Cost("5000").Disposed("12-31-23");
  const NvAsset d = Convert(gone, company);
  EXPECT_EQ(d.disposal_code, 'A');
  EXPECT_EQ(d.disposal_date, (Date{12, 31, 2023}));
  EXPECT_DOUBLE_EQ(d.amount_disposed, 5000);
}

TEST(MbaConvertTest, EachScheduleTakesTheBlockOfItsType) {
  // T the Tax block, A the AMT block, B the internal one; a state and an Other schedule
  // share the fourth.
  const NvCompanyRecord company = Company({{'B', "B", "Book"},
                                           {'T', "T", "Tax"},
                                           {'A', "A", "AMT"},
                                           {'X', "CA", "Calif"},
                                           {'O', "O", "Other"}});
  MbaLineText text('A', "01021");
  text.Cost("1000")
      .Book(0, 'S', "5", "1000", "10", "100")
      .Book(1, 'S', "6", "900", "20", "200")
      .Book(2, 'S', "7", "1000.004", "30", "300")
      .Book(3, 'S', "8", "1000.006", "40", "400");
  const NvAsset asset = Convert(text, company);
  struct Expected {
    char letter;
    int life;
    double substitute;
    double salvage;
    double accumulated;
  } expected[] = {
      {'T', 5, 0, 10, 100},        {'A', 6, 900, 20, 200},      {'B', 7, 0, 30, 300},
      {'X', 8, 1000.006, 40, 400}, {'O', 8, 1000.006, 40, 400},
  };
  for (const Expected& e : expected) {
    const NvAssetSchedule* schedule = asset.Schedule(e.letter);
    ASSERT_NE(schedule, nullptr) << e.letter;
    EXPECT_EQ(schedule->method, kMethodStraightLine) << e.letter;
    EXPECT_EQ(schedule->business_percent, 100) << e.letter;
    EXPECT_EQ(schedule->useful_life, (YearsMonths{e.life, 0})) << e.letter;
    EXPECT_DOUBLE_EQ(schedule->substitute_basis, e.substitute)
        << e.letter << ": kept only when more than half a cent from the cost";
    EXPECT_DOUBLE_EQ(schedule->salvage_value, e.salvage) << e.letter;
    EXPECT_DOUBLE_EQ(schedule->prior_allowed_depr, e.accumulated) << e.letter;
    EXPECT_DOUBLE_EQ(schedule->prior_allowable_depr, e.accumulated) << e.letter;
    EXPECT_DOUBLE_EQ(schedule->depreciable_basis, 0) << e.letter;
  }
}

TEST(MbaConvertTest, MethodLettersSetMethodConventionAndLives) {
  const NvCompanyRecord company = Company({{'T', "T", "Tax"}});
  struct Case {
    char letter;
    bool mid_quarter;
    int method;
    char convention;
    bool sl_life;
    int type_4797;
  } cases[] = {
      {'D', false, 6, '1', false, 0},   // 200% DB
      {'B', false, 1, '1', true, 0},    // ACRS with a straight-line life
      {'M', false, 3, 'Y', false, 0},   // MACRS, half-year
      {'M', true, 3, 'Q', false, 0},    // MACRS, mid-quarter by the flag
      {'P', true, 3, 'Q', true, 50},    // MACRS, straight-line life, 4797 Type 50
      {'Y', false, 7, '1', false, 0},   // SYD
      {'Q', false, 12, ' ', false, 0},  // a letter of no method: OTHER
      {'m', false, 12, ' ', false, 0},  // letters are upper case
  };
  for (const Case& c : cases) {
    MbaLineText text('A', "01021");
    text.Book(0, c.letter, "7", "0", "0", "0");
    if (c.mid_quarter) text.MidQuarter();
    const NvAsset asset = Convert(text, company);
    const NvAssetSchedule& tax = asset.schedules[0];
    EXPECT_EQ(tax.method, c.method) << c.letter;
    EXPECT_EQ(tax.convention, c.convention) << c.letter;
    EXPECT_EQ(tax.sl_life, (c.sl_life ? YearsMonths{7, 0} : YearsMonths{})) << c.letter;
    EXPECT_EQ(asset.type_4797, c.type_4797) << c.letter;
  }
  // Z: the schedule does not apply to the asset.
  MbaLineText z('A', "01021");
  z.Book(0, 'Z', "7", "0", "0", "0");
  EXPECT_TRUE(Convert(z, company).schedules[0].not_applicable());
}

TEST(MbaConvertTest, AccountGroupsAreNamedByTheAssetAccount) {
  std::vector<AccountGroup> groups;
  auto line = [](const char* asset, const char* accumulated, const char* expense) {
    MbaLineText text('A', "01021");
    text.Accounts(asset, accumulated, expense);
    return ParseMbaLine(text.text());
  };
  EXPECT_EQ(MbaAccountGroupFor(line("1500", "1510", "6100"), &groups), "1500");
  EXPECT_EQ(MbaAccountGroupFor(line("1500", "1510", "6100"), &groups), "1500");
  EXPECT_EQ(MbaAccountGroupFor(line("1600", "1510", "6100"), &groups), "1600")
      << "the same accounts under another asset account are a group of their own";
  EXPECT_EQ(MbaAccountGroupFor(line("1500", "1520", "6100"), &groups), "1500A");
  EXPECT_EQ(MbaAccountGroupFor(line("", "1520", "6100"), &groups), "");
  ASSERT_EQ(groups.size(), 3u);
  EXPECT_EQ(groups[0].code, "1500");
  EXPECT_EQ(groups[0].accounts, (std::array<std::string, 4>{"6100", "1510", "", ""}));
  EXPECT_EQ(groups[1].code, "1500A");
  EXPECT_EQ(groups[1].accounts, (std::array<std::string, 4>{"6100", "1520", "", ""}));
  EXPECT_EQ(groups[2].code, "1600");
}

}  // namespace
}  // namespace nv
