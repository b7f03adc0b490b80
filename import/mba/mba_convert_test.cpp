#include "import/mba/mba_convert.h"

#include <gtest/gtest.h>

#include "import/mba/mba_testing.h"

namespace nv {
namespace {

using testing::MbaLineText;

NvAsset Convert(const MbaLineText& text, const NvCompanyRecord& company) {
  MbaRecord record;
  record.line = ParseMbaLine(text.text());
  record.id = SplitMbaAssetId(record.line.id);
  return ConvertMbaLine(record, NvAssetNo::Parse("123", company.asset_no_format), "", company);
}

TEST(MbaConvertTest, EachScheduleTakesTheBlockOfItsType) {
  // T the Tax block, A the AMT block, B the internal one; a state and an Other schedule
  // share the fourth.
  NvCompanyRecord company;
  company.schedules = {{'B', "B", "Book"},
                       {'T', "T", "Tax"},
                       {'A', "A", "AMT"},
                       {'X', "CA", "Calif"},
                       {'O', "O", "Other"}};
  company.schedule_letters = "BTAXO";
  MbaLineText text('A', "01021");
  text.Cost("1000")
      .Book(0, 'S', "5", "1000", "10", "100")
      .Book(1, 'S', "6", "900", "20", "200")
      .Book(2, 'S', "7", "1000.004", "30", "300")
      .Book(3, 'S', "8", "1000.006", "40", "400");
  const NvAsset asset = Convert(text, company);
  // Substitute Basis only where the basis is more than half a cent from the cost.
  const struct {
    char letter;
    int life;
    double substitute, salvage, accumulated;
  } expected[] = {{'T', 5, 0, 10, 100},
                  {'A', 6, 900, 20, 200},
                  {'B', 7, 0, 30, 300},
                  {'X', 8, 1000.006, 40, 400},
                  {'O', 8, 1000.006, 40, 400}};
  for (const auto& e : expected) {
    const NvAssetSchedule* schedule = asset.Schedule(e.letter);
    ASSERT_NE(schedule, nullptr) << e.letter;
    EXPECT_EQ(schedule->method, kMethodStraightLine) << e.letter;
    EXPECT_EQ(schedule->business_percent, 100) << e.letter;
    EXPECT_EQ(schedule->useful_life, (YearsMonths{e.life, 0})) << e.letter;
    EXPECT_DOUBLE_EQ(schedule->substitute_basis, e.substitute) << e.letter;
    EXPECT_DOUBLE_EQ(schedule->salvage_value, e.salvage) << e.letter;
    EXPECT_DOUBLE_EQ(schedule->prior_allowed_depr, e.accumulated) << e.letter;
    EXPECT_DOUBLE_EQ(schedule->prior_allowable_depr, e.accumulated) << e.letter;
  }
}

TEST(MbaConvertTest, MethodLettersSetMethodConventionAndLives) {
  NvCompanyRecord company;
  company.schedules = {{'T', "T", "Tax"}};
  company.schedule_letters = "T";
  const struct {
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
      {'Z', false, 13, ' ', false, 0},  // the schedule does not apply
      {'Q', false, 12, ' ', false, 0},  // a letter of no method: OTHER
      {'m', false, 12, ' ', false, 0},  // letters are upper case
  };
  for (const auto& c : cases) {
    MbaLineText text('A', "01021");
    text.Book(0, c.letter, "7", "0", "0", "0");
    if (c.mid_quarter) text.MidQuarter();
    const NvAsset asset = Convert(text, company);
    EXPECT_EQ(asset.schedules[0].method, c.method) << c.letter;
    EXPECT_EQ(asset.schedules[0].convention, c.convention) << c.letter;
    EXPECT_EQ(asset.schedules[0].sl_life, (c.sl_life ? YearsMonths{7, 0} : YearsMonths{}))
        << c.letter;
    EXPECT_EQ(asset.type_4797, c.type_4797) << c.letter;
  }
}

TEST(MbaConvertTest, AccountGroupsAreNamedByTheAssetAccount) {
  std::vector<AccountGroup> groups;
  auto group_for = [&groups](const char* asset, const char* accumulated, const char* expense) {
    MbaLineText text('A', "01021");
    text.Accounts(asset, accumulated, expense);
    return MbaAccountGroupFor(ParseMbaLine(text.text()), &groups);
  };
  EXPECT_EQ(group_for("1500", "1510", "6100"), "1500");
  EXPECT_EQ(group_for("1500", "1510", "6100"), "1500");
  EXPECT_EQ(group_for("1600", "1510", "6100"), "1600") << "a group of its own";
  EXPECT_EQ(group_for("1500", "1520", "6100"), "1500A");
  EXPECT_EQ(group_for("", "1520", "6100"), "");
  ASSERT_EQ(groups.size(), 3u);
  EXPECT_EQ(groups[1].code, "1500A");
  EXPECT_EQ(groups[1].accounts, (std::array<std::string, 4>{"6100", "1520", "", ""}));
}

}  // namespace
}  // namespace nv
