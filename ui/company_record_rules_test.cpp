#include "ui/company_record_rules.h"

#include <gtest/gtest.h>

namespace nv {
namespace {

TEST(CompanyRecordRulesTest, YearEndMustFollowLastClosedByAtMostAYear) {
  const Date closed{12, 31, 2024};
  EXPECT_EQ(YearEndProblem(closed, {6, 30, 2025}), nullptr);  // a short year
  EXPECT_EQ(YearEndProblem(closed, {12, 31, 2025}), nullptr);
  EXPECT_STREQ(YearEndProblem(closed, {1, 31, 2026}), kYearEndWithinYearMessage);
  EXPECT_STREQ(YearEndProblem(closed, closed), kYearEndAfterLastClosedMessage);
  // One year after 29 February is 28 February.
  EXPECT_EQ(YearEndProblem({2, 29, 2024}, {2, 28, 2025}), nullptr);
  EXPECT_STREQ(YearEndProblem({2, 29, 2024}, {3, 31, 2025}), kYearEndWithinYearMessage);
  EXPECT_EQ(YearEndProblem({}, {1, 31, 2030}), nullptr);
}

TEST(CompanyRecordRulesTest, MonthEndsAndScreenDates) {
  EXPECT_TRUE(IsMonthEnd({2, 29, 2024}));
  EXPECT_FALSE(IsMonthEnd({2, 28, 2024}));
  EXPECT_FALSE(IsMonthEnd({6, 15, 2025}));
  EXPECT_FALSE(IsMonthEnd({}));
  EXPECT_EQ(ParseScreenDate("  "), Date{});
  EXPECT_EQ(ParseScreenDate("6/30/25"), (Date{6, 30, 2025}));
  EXPECT_FALSE(ParseScreenDate("13/31/2025"));
  EXPECT_EQ(ScreenDateText({}), "");
}

struct ElectionCase {
  Date last_closed;
  Date year_end;
  bool allowed;
};

void PrintTo(const ElectionCase& c, std::ostream* os) {
  *os << FormatDisplayDate(c.last_closed) << " to " << FormatDisplayDate(c.year_end);
}

class ElectionTest : public ::testing::TestWithParam<ElectionCase> {};

TEST_P(ElectionTest, NineElevenMustFallInTheThirdOrFourthQuarter) {
  EXPECT_EQ(ElectionAllowed(GetParam().last_closed, GetParam().year_end), GetParam().allowed);
}

INSTANTIATE_TEST_SUITE_P(
    Years, ElectionTest,
    ::testing::Values(
        // Calendar 2001: the third quarter begins 07/01/2001.
        ElectionCase{{12, 31, 2000}, {12, 31, 2001}, true},
        // Fiscal years: 9/11 in the fourth quarter of one, the first quarter of the next.
        ElectionCase{{9, 30, 2000}, {9, 30, 2001}, true},
        ElectionCase{{8, 31, 2001}, {8, 31, 2002}, false},
        // A year that begins in April holds 9/11 in its second quarter, one that begins in
        // March in its third.
        ElectionCase{{3, 31, 2001}, {3, 31, 2002}, false},
        ElectionCase{{2, 28, 2001}, {2, 28, 2002}, true},
        // Short years: seven months have a seventh month, six months none.
        ElectionCase{{2, 28, 2001}, {9, 30, 2001}, true},
        ElectionCase{{3, 31, 2001}, {9, 30, 2001}, false},
        ElectionCase{{12, 31, 2000}, {6, 30, 2001}, false},
        // Years that do not hold 9/11 at all, and a company without dates.
        ElectionCase{{12, 31, 2023}, {12, 31, 2024}, false}, ElectionCase{{}, {}, true}));

TEST(CompanyRecordRulesTest, RestrictionsListEveryNarrowing) {
  const NvAssetNoFormat wide{10, 3, NvAssetNoFormat::kLetters | NvAssetNoFormat::kDashes};
  EXPECT_EQ(FormatRestrictions(wide, {8, 2, 0}),
            (std::vector<std::string>{"Digits (characters) in asset number decreased from 10 to 8.",
                                      "Length of subasset number decreased from 3 to 2.",
                                      "Letters no longer allowed.", "Dashes no longer allowed."}));
  // Widening restricts nothing, whatever else changes.
  EXPECT_TRUE(FormatRestrictions({6, 2, 0}, wide).empty());
  EXPECT_EQ(FormatRestrictions({6, 2, NvAssetNoFormat::kDashes}, {8, 3, NvAssetNoFormat::kLetters}),
            (std::vector<std::string>{"Dashes no longer allowed."}));
}

TEST(CompanyRecordRulesTest, MisfitMessageListsEachAsset) {
  std::vector<FormatMisfit> misfits = {{"1234567.001", "Truck"}, {"AB.001", "Desk"}};
  EXPECT_EQ(FormatMisfitMessage(misfits),
            "2 assets do not fit your new asset number format.  These assets are:\n"
            "  1234567.001  Truck\n  AB.001  Desk\n"
            "Asset number cannot be changed until these asset numbers are corrected.");
}

TEST(CompanyRecordRulesTest, SortOrderKeys) {
  EXPECT_EQ(SortOrderProblem(""), nullptr);
  EXPECT_EQ(SortOrderProblem("LC0"), nullptr);
  EXPECT_STREQ(SortOrderProblem("LCL"), "Do not repeat letters.");
  EXPECT_STREQ(SortOrderProblem("LX"), kSortOrderKeysMessage);
  EXPECT_STREQ(SortOrderProblem("LCAP"), kSortOrderKeysMessage);
}

}  // namespace
}  // namespace nv
