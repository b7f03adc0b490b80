#include "ui/selection/selection_match.h"

#include <gtest/gtest.h>

namespace nv {
namespace {

const NvAssetNoFormat kFormat{6, 2, 0};

NvAsset Asset(std::string_view number) {
  NvAsset a;
  a.Clear("BT");
  a.number = NvAssetNo::Parse(number, kFormat);
  return a;
}

KelSelection With(int field, std::string text, bool exclude = false, char schedule = 'B') {
  KelSelection s;
  s.schedule = schedule;
  s.criteria[field] = {true, std::move(text), exclude};
  return s;
}

bool Matches(const KelSelection& s, const NvAsset& a, int mask = 0) {
  return MatchAsset(s, AssetSelectionValues(a, s.schedule, kFormat), mask);
}

TEST(SelectionText, WildcardsEscapesCaseAndTrailingBlanks) {
  EXPECT_EQ(CompareSelectionText("Desk lamp", "desk*"), 0);
  EXPECT_EQ(CompareSelectionText("Desk lamp", "*LAMP"), 0);
  EXPECT_EQ(CompareSelectionText("Desk lamp", "*k*m*"), 0);
  EXPECT_EQ(CompareSelectionText("Desk lamp", "D?sk lamp  "), 0);
  EXPECT_EQ(CompareSelectionText("Desk lamp   ", "Desk lamp"), 0);
  EXPECT_NE(CompareSelectionText("Desk lamp", "Desk"), 0);
  EXPECT_NE(CompareSelectionText("Desk", "Desk?"), 0);
  // A backslash makes the next character literal.
  EXPECT_EQ(CompareSelectionText("50% off*", "50% off\\*"), 0);
  EXPECT_NE(CompareSelectionText("50% off!", "50% off\\*"), 0);
  EXPECT_EQ(CompareSelectionText("a?b", "a\\?b"), 0);
  EXPECT_NE(CompareSelectionText("axb", "a\\?b"), 0);
  // A star retried at later positions: "aab" needs the star to take one "a".
  EXPECT_EQ(CompareSelectionText("aab", "*ab"), 0);
  // Order for ranges.
  EXPECT_LT(CompareSelectionText("Bench", "c"), 0);
  EXPECT_GT(CompareSelectionText("desk", "C"), 0);
  EXPECT_GT(CompareSelectionText("Chair", "C"), 0);  // longer text after its prefix
  EXPECT_LT(CompareSelectionText("C", "Chair"), 0);
}

TEST(SelectionMatch, LocationListWithAndWithoutExclude) {
  const std::vector<std::pair<std::string, bool>> cases = {
      {"01", true}, {"03", true},  {"05", true},   {"10", true}, {"06", false},
      {"1", false}, {"1A", false}, {"100", false}, {"0", false}, {"09", false}};
  for (const auto& [location, in] : cases) {
    NvAsset a = Asset("1");
    a.location = location;
    EXPECT_EQ(Matches(With(kSelLocation, "01-05,10"), a), in) << location;
    EXPECT_EQ(Matches(With(kSelLocation, "01-05,10", true), a), !in) << location;
  }
}

TEST(SelectionMatch, EmptyDisposalDateAndDateRanges) {
  NvAsset kept = Asset("1");
  NvAsset sold = Asset("2");
  sold.disposal_code = 'S';
  sold.disposal_date = {3, 15, 2023};
  EXPECT_TRUE(Matches(With(kSelDisposalDate, "//"), kept));
  EXPECT_FALSE(Matches(With(kSelDisposalDate, "//"), sold));
  EXPECT_FALSE(Matches(With(kSelDisposalDate, "//", true), kept));
  EXPECT_TRUE(Matches(With(kSelDisposalDate, "1/1/23-12/31/23"), sold));
  EXPECT_FALSE(Matches(With(kSelDisposalDate, "1/1/23-12/31/23"), kept));
  EXPECT_TRUE(Matches(With(kSelDisposalDate, "031523"), sold));
  EXPECT_FALSE(Matches(With(kSelDisposalDate, "03162023"), sold));
  EXPECT_TRUE(Matches(With(kSelDisposalDate, "3/16/2023-"), kept) == false);
  // An empty low end takes everything up to the high end, empty dates included.
  EXPECT_TRUE(Matches(With(kSelDisposalDate, "-3/15/2023"), kept));
  EXPECT_TRUE(Matches(With(kSelDisposalDate, "-3/15/2023"), sold));
  EXPECT_FALSE(Matches(With(kSelDisposalDate, "-3/14/2023"), sold));
}

TEST(SelectionMatch, MethodListTakesWholeNumbersOnly) {
  for (int method : {3, 33, 13, 1, 23}) {
    NvAsset a = Asset("1");
    a.Schedule('B')->method = method;
    EXPECT_EQ(Matches(With(kSelDeprMethod, "3,33"), a), method == 3 || method == 33) << method;
    EXPECT_EQ(Matches(With(kSelDeprMethod, " 3 , 33 "), a), method == 3 || method == 33);
  }
  // The method is the selection's schedule's: T uses method 3 here, B method 2.
  NvAsset a = Asset("1");
  a.Schedule('B')->method = 2;
  a.Schedule('T')->method = 3;
  EXPECT_FALSE(Matches(With(kSelDeprMethod, "3", false, 'B'), a));
  EXPECT_TRUE(Matches(With(kSelDeprMethod, "3", false, 'T'), a));
  // A schedule the asset lacks shows as unused.
  EXPECT_TRUE(Matches(With(kSelDeprMethod, "13", false, 'Z'), a));
}

TEST(SelectionMatch, LettersCodesYesNoAndAssetTypes) {
  NvAsset a = Asset("1");
  a.new_used_trade = 'U';
  a.property_code = "P1";
  a.type_4797 = 45;
  a.Schedule('B')->convention = 'M';
  a.Schedule('B')->amortized = true;
  a.Schedule('B')->asset_type = "AL";
  EXPECT_TRUE(Matches(With(kSelNewOrUsed, "U"), a));
  EXPECT_FALSE(Matches(With(kSelNewOrUsed, "N"), a));
  EXPECT_TRUE(Matches(With(kSelPropertyCode, "p2,p1"), a));
  EXPECT_FALSE(Matches(With(kSelPropertyCode, "P"), a));
  EXPECT_TRUE(Matches(With(kSel4797Type, "50,45"), a));
  EXPECT_FALSE(Matches(With(kSel4797Type, "4"), a));
  EXPECT_TRUE(Matches(With(kSelConvention, "Y,M"), a));
  EXPECT_FALSE(Matches(With(kSelConvention, "Q"), a));
  // A blank disposal code counts as N.
  EXPECT_TRUE(Matches(With(kSelDisposalCode, "N"), a));
  a.disposal_code = 'S';
  EXPECT_FALSE(Matches(With(kSelDisposalCode, "N"), a));
  EXPECT_TRUE(Matches(With(kSelDisposalCode, "A,S"), a));
  // Yes/no by the letters Y and N.
  EXPECT_TRUE(Matches(With(kSelAmortized, "Yes"), a));
  EXPECT_FALSE(Matches(With(kSelAmortized, "No"), a));
  EXPECT_FALSE(Matches(With(kSelAmortized, "Yes", false, 'T'), a));
  EXPECT_TRUE(Matches(With(kSelForceFullDepr, "N"), a));
  // Any listed letter among the type letters.
  EXPECT_TRUE(Matches(With(kSelAssetType, "F,L"), a));
  EXPECT_FALSE(Matches(With(kSelAssetType, "F, H"), a));
}

TEST(SelectionMatch, AssetNumbersInTheCompanyFormat) {
  // Under 6, 2 "12" is "    12.00": a range compares the numbers right-aligned.
  for (const char* n : {"12", "12.1", "99.99", "100"}) {
    EXPECT_EQ(Matches(With(kSelAssetNumber, "12-99.99"), Asset(n)), std::string(n) != "100") << n;
  }
  EXPECT_TRUE(Matches(With(kSelAssetNumber, "12.01"), Asset("12.1")));
  EXPECT_FALSE(Matches(With(kSelAssetNumber, "12"), Asset("12.1")));
}

TEST(SelectionMatch, AmountsIntegersAndLives) {
  NvAsset a = Asset("1");
  NvAssetSchedule& b = *a.Schedule('B');
  b.depreciable_basis = 1000;
  b.prior_allowed_depr = 300;
  b.current_depr = 200;
  b.business_percent = 80;
  b.useful_life = {5, 6};
  a.cash_and_notes = 1234.56;
  EXPECT_TRUE(Matches(With(kSelCashAndNotes, "1234.56"), a));
  EXPECT_FALSE(Matches(With(kSelCashAndNotes, "1234.5"), a));
  EXPECT_TRUE(Matches(With(kSelCashAndNotes, "1000-"), a));
  EXPECT_TRUE(Matches(With(kSelNetBookValue, "500"), a));  // 1000 - (300 + 200)
  EXPECT_TRUE(Matches(With(kSelBasis, "999.99-1000.01"), a));
  EXPECT_TRUE(Matches(With(kSelBusinessUse, "50-99"), a));
  EXPECT_FALSE(Matches(With(kSelBusinessUse, "81-"), a));
  // A life's months only in quote marks, the hyphen being the range's.
  EXPECT_TRUE(Matches(With(kSelLife, "'5-6'"), a));
  EXPECT_FALSE(Matches(With(kSelLife, "5"), a));
  EXPECT_TRUE(Matches(With(kSelLife, "5-6"), a));  // 5 to 6 years
  EXPECT_FALSE(Matches(With(kSelLife, "'5-7'-"), a));
  // A value that is not a number matches nothing.
  EXPECT_FALSE(Matches(With(kSelCashAndNotes, "x"), a));
  EXPECT_TRUE(Matches(With(kSelCashAndNotes, "x", true), a));
}

TEST(SelectionMatch, CodesBlankValueAndClassMask) {
  NvAsset a = Asset("1");
  a.category = "C10";
  a.cash_and_notes = 50;
  EXPECT_TRUE(Matches(With(kSelCategory, "C9-C11"), a));  // digits compare as numbers
  EXPECT_FALSE(Matches(With(kSelCategory, "C2-C9"), a));
  EXPECT_TRUE(Matches(With(kSelCategory, "''"), a));  // a blank value matches anything
  KelSelection s = With(kSelCategory, "C2");
  s.criteria[kSelCashAndNotes] = {true, "50", false};
  EXPECT_FALSE(Matches(s, a, kSelectAssetData));
  s.criteria[kSelCategory].text = "C10";
  s.criteria[kSelCashAndNotes].text = "60";
  EXPECT_TRUE(Matches(s, a, kSelectAssetData));
  EXPECT_FALSE(Matches(s, a, kSelectAssetData | kSelectScheduleAmounts));
  EXPECT_FALSE(Matches(s, a, 0));
  // A criterion switched off, or blank, restricts nothing.
  s.criteria[kSelCashAndNotes].in_use = false;
  s.criteria[kSelCategory].text = "  ";
  EXPECT_TRUE(Matches(s, a, 0));
}

TEST(SelectionMatch, PausedThroughoutARange) {
  NvAsset a = Asset("1");
  a.date_in_service = {1, 1, 2020};
  a.pauses = NvAssetPauseDeprInfo{"B", {{{3, 1, 2021}, {6, 30, 2021}}, {{1, 1, 2023}, {}}}};
  auto paused = [&](const char* text, char schedule = 'B') {
    return Matches(With(kSelDeprPaused, text, false, schedule), a);
  };
  EXPECT_TRUE(paused("4/1/2021-5/31/2021"));
  EXPECT_TRUE(paused("4/1/2021"));
  EXPECT_FALSE(paused("2/1/2021-5/31/2021"));  // starts before the pause
  EXPECT_FALSE(paused("4/1/2021-7/31/2021"));
  EXPECT_TRUE(paused("6/1/2024-"));  // the open pause covers an open range
  EXPECT_FALSE(paused("6/1/2021-"));
  EXPECT_FALSE(paused("4/1/2021", 'T'));  // the pauses do not name T
  EXPECT_TRUE(Matches(With(kSelDeprPaused, "4/1/2021", true, 'T'), a));
  // A disposal ends every range: the first pause now covers "from May on".
  a.disposal_code = 'S';
  a.disposal_date = {6, 1, 2021};
  EXPECT_TRUE(paused("5/1/2021-"));
  // The range starts no earlier than the date placed in service.
  NvAsset b = Asset("2");
  b.date_in_service = {3, 1, 2021};
  b.pauses = NvAssetPauseDeprInfo{"BT", {{{3, 1, 2021}, {4, 30, 2021}}}};
  EXPECT_TRUE(Matches(With(kSelDeprPaused, "-4/30/2021", false, 'T'), b));
  EXPECT_FALSE(Matches(With(kSelDeprPaused, "-5/1/2021", false, 'T'), b));
  b.pauses->intervals.clear();
  EXPECT_FALSE(Matches(With(kSelDeprPaused, "-4/30/2021", false, 'T'), b));
}

}  // namespace
}  // namespace nv
