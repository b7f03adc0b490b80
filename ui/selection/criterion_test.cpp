#include "ui/selection/criterion.h"

#include <gtest/gtest.h>

#include "ui/selection/selection.h"

namespace nv {
namespace {

using T = CriterionTokenKind;

TEST(CriterionTokens, QuotesKeepSeparatorsAndBlanksBeforeTokensAreSkipped) {
  std::vector<CriterionToken> tokens = TokenizeCriterion("  'a,b' - \"c-d\" , x y ,'open");
  std::vector<CriterionToken> expected = {
      {T::kText, "a,b", true},  {T::kHyphen, ""}, {T::kText, "c-d", true},  {T::kComma, ""},
      {T::kText, "x y", false}, {T::kComma, ""},  {T::kText, "open", true},
  };
  EXPECT_EQ(tokens, expected);
  // A double quote inside single quotes is text.
  EXPECT_EQ(TokenizeCriterion("'say \"hi\"'")[0].text, "say \"hi\"");
}

TEST(CriterionItems, ValuesRangesAndOpenEnds) {
  auto items = ParseCriterion("01-05,10, -100 ,50-,-");
  ASSERT_TRUE(items);
  ASSERT_EQ(items->size(), 5u);
  EXPECT_EQ((*items)[0], (CriterionItem{true, "01", "05"}));
  EXPECT_EQ((*items)[1], (CriterionItem{false, "10", std::nullopt}));
  EXPECT_EQ((*items)[2], (CriterionItem{true, std::nullopt, "100"}));
  EXPECT_EQ((*items)[3], (CriterionItem{true, "50", std::nullopt}));
  EXPECT_EQ((*items)[4], (CriterionItem{true, std::nullopt, std::nullopt}));
  // Empty items are skipped.
  EXPECT_EQ(ParseCriterion(",,7,")->size(), 1u);
  EXPECT_TRUE(ParseCriterion("")->empty());
}

TEST(CriterionItems, SecondHyphenOrTwoValuesInOneItemAreRefused) {
  EXPECT_FALSE(ParseCriterion("1-2-3"));
  EXPECT_FALSE(ParseCriterion("'a'b"));
  EXPECT_FALSE(ParseCriterion("1-'2'x"));
  EXPECT_TRUE(ParseCriterion("'1-2'-'3-4'"));
}

TEST(CriterionDates, EveryFormAndTheCenturyRule) {
  EXPECT_EQ(ParseCriterionDate("1/5/25"), (Date{1, 5, 2025}));
  EXPECT_EQ(ParseCriterionDate("1/5/30"), (Date{1, 5, 1930}));
  EXPECT_EQ(ParseCriterionDate("12-31-1999"), (Date{12, 31, 1999}));
  EXPECT_EQ(ParseCriterionDate("123199"), (Date{12, 31, 1999}));
  EXPECT_EQ(ParseCriterionDate("07041776"), (Date{7, 4, 1776}));
  EXPECT_EQ(ParseCriterionDate("//"), Date{});
  EXPECT_EQ(ParseCriterionDate(" -- "), Date{});
  EXPECT_EQ(ParseCriterionDate("02292024"), (Date{2, 29, 2024}));
}

TEST(CriterionDates, ImpossibleDatesAndOtherShapesAreRefused) {
  for (const char* bad : {"02292023", "13/1/2020", "4/31/2020", "0/1/2020", "1/0/2020", "12345",
                          "1234567", "1/2", "a/b/c", "1/2/3/4", "1/-2/2020", "/1/2020", ""}) {
    EXPECT_FALSE(ParseCriterionDate(bad)) << bad;
  }
}

TEST(CriterionValidation, UpperCaseCharactersDatesAndSyntax) {
  std::string number = "a12.1,b3";
  EXPECT_EQ(ValidateCriterion(kSelAssetNumber, &number), CriterionError::kNone);
  EXPECT_EQ(number, "A12.1,B3");

  std::string location = "01 5";  // a blank is not among the location's characters
  EXPECT_EQ(ValidateCriterion(kSelLocation, &location), CriterionError::kInvalidInput);
  std::string quoted = "'01-05'";  // quote marks and hyphens are separators
  EXPECT_EQ(ValidateCriterion(kSelLocation, &quoted), CriterionError::kNone);
  std::string twice = "01-05-07";
  EXPECT_EQ(ValidateCriterion(kSelLocation, &twice), CriterionError::kErrorOnInput);

  std::string date = "1/1/2020-13/1/2020";
  EXPECT_EQ(ValidateCriterion(kSelDisposalDate, &date), CriterionError::kInvalidDate);
  std::string empty_date = "//";
  EXPECT_EQ(ValidateCriterion(kSelDisposalDate, &empty_date), CriterionError::kNone);
  std::string pause = "1/1/2020-x";
  EXPECT_EQ(ValidateCriterion(kSelDeprPaused, &pause), CriterionError::kInvalidDate);

  std::string methods = "3,33";
  EXPECT_EQ(ValidateCriterion(kSelDeprMethod, &methods), CriterionError::kNone);
  std::string semicolon = "3;4";
  EXPECT_EQ(ValidateCriterion(kSelDeprMethod, &semicolon), CriterionError::kInvalidInput);
  std::string amount = "1.2.3";
  EXPECT_EQ(ValidateCriterion(kSelBasis, &amount), CriterionError::kInvalidInput);
  std::string life = "'5-x'";
  EXPECT_EQ(ValidateCriterion(kSelLife, &life), CriterionError::kInvalidInput);
  std::string state = "ca";
  EXPECT_EQ(ValidateCriterion(kSelStateRules, &state), CriterionError::kNone);
  EXPECT_EQ(state, "CA");

  EXPECT_STREQ(CriterionErrorMessage(CriterionError::kInvalidDate), "Invalid date");
  EXPECT_STREQ(CriterionErrorMessage(CriterionError::kErrorOnInput), "Error on input");
}

TEST(CriterionValidation, TheFirstUnsoundCriterionInUseStopsASelection) {
  KelSelection s;
  s.criteria[kSelDisposalDate] = {false, "2/30/2020", false};  // off: not looked at
  EXPECT_EQ(FirstInvalidCriterion(s), std::nullopt);
  s.criteria[kSelLocation] = {true, "01-05,10", true};
  s.criteria[kSelDescription] = {true, "a-b-c", false};
  s.criteria[kSelDisposalDate].in_use = true;
  EXPECT_EQ(FirstInvalidCriterion(s), kSelDescription);
  s.criteria[kSelDescription].text = "'a-b-c'";
  EXPECT_EQ(FirstInvalidCriterion(s), kSelDisposalDate);
}

TEST(SelectionFieldTable, NamesAreFoundIgnoringCaseAndScheduleFieldsAreMarked) {
  EXPECT_EQ(FindSelectionField("disposal code"), kSelDisposalCode);
  EXPECT_EQ(FindSelectionField("USER FIELD 10"), kSelUserField10);
  EXPECT_FALSE(FindSelectionField("User Field 11"));
  EXPECT_EQ(BarcodeSelectionField(), kSelAssetNumber);
  EXPECT_TRUE(IsScheduleField(kSelDeprMethod));
  EXPECT_TRUE(IsScheduleField(kSelDeprPaused));
  EXPECT_FALSE(IsScheduleField(kSelLocation));
  EXPECT_FALSE(IsScheduleField(kSelectionFieldCount));
}

}  // namespace
}  // namespace nv
