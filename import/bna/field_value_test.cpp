#include "import/bna/field_value.h"

#include <string>

#include <gtest/gtest.h>

namespace nv {
namespace {

class FieldValueTest : public ::testing::Test {
 protected:
  ConversionDefinition& Define(std::string_view name, int column, ConversionMethod method,
                               int number = 0, std::optional<std::string> text = {}) {
    ConversionDefinition& d =
        list_.Add(name, false, column, method, number, std::move(text), GroupOfKey(name));
    d.active = true;
    return d;
  }
  std::optional<std::string> Value(std::string_view field, size_t longest = kNoLengthLimit,
                                   std::optional<std::string_view> schedule = std::nullopt) {
    return ProduceFieldValue(list_, field, columns_, longest, schedule, special_);
  }

  ImportConversionList list_;
  ColumnClass columns_{"1001\tABCDEFG\t\"quoted\"\tOffice desk", kBnaTabSeparated};
  SpecialConversion special_;
};

TEST_F(FieldValueTest, ColumnMethodsTakeTheirPartOfTheColumn) {
  Define("Entire", 1, ConversionMethod::kEntire);
  Define("Right", 1, ConversionMethod::kRight, 4);
  Define("Right long", 1, ConversionMethod::kRight, 10);
  Define("Left", 1, ConversionMethod::kLeft, 2);
  Define("Mid", 1, ConversionMethod::kMid, 3, "2");
  Define("Mid last", 1, ConversionMethod::kMid, 7, "5");
  Define("Mid past", 1, ConversionMethod::kMid, 8, "1");
  Define("Mid no count", 1, ConversionMethod::kMid, 2, "0");
  Define("Mid start 0", 1, ConversionMethod::kMid, 0, "3");
  EXPECT_EQ(Value("Entire"), "ABCDEFG");
  EXPECT_EQ(Value("Right"), "DEFG");
  EXPECT_EQ(Value("Right long"), "ABCDEFG");
  EXPECT_EQ(Value("Left"), "AB");
  EXPECT_EQ(Value("Mid"), "CD");
  EXPECT_EQ(Value("Mid last"), "G");
  EXPECT_EQ(Value("Mid past"), std::nullopt);
  EXPECT_EQ(Value("Mid no count"), std::nullopt);
  EXPECT_EQ(Value("Mid start 0"), std::nullopt);
}

TEST_F(FieldValueTest, NothingForMissingInactiveNoCopyOrColumnlessDefinitions) {
  Define("Past the line", 9, ConversionMethod::kEntire);
  Define("No column", -1, ConversionMethod::kEntire);
  Define("No method", 1, ConversionMethod::kNone);
  Define("Off", 1, ConversionMethod::kEntire).active = false;
  Define("Skipped", 1, ConversionMethod::kEntire).no_copy = true;
  for (std::string_view field :
       {"Past the line", "No column", "No method", "Off", "Skipped", "Undefined"}) {
    EXPECT_EQ(Value(field), std::nullopt) << field;
  }
}

TEST_F(FieldValueTest, ValuesAreCutThenLoseEnclosingQuotes) {
  Define("Description", 3, ConversionMethod::kEntire);
  Define("Constant", -1, ConversionMethod::kSet, 0, "\"Y\"");
  EXPECT_EQ(Value("Description", 6), "Office");
  EXPECT_EQ(Value("Constant"), "Y");
  // Cut first: the closing quote is gone, so the opening one stays.
  EXPECT_EQ(Value("Constant", 2), "\"Y");
  EXPECT_EQ(Value("Constant", 0), "");
}

TEST_F(FieldValueTest, SpecialAndDefaultAskTheConversionLanguage) {
  Define("Location", 0, ConversionMethod::kSpecial);
  Define("Useful Life", -1, ConversionMethod::kDefault);
  std::string asked;
  special_ = [&asked](const ConversionDefinition& d) -> std::optional<std::string> {
    asked += d.name + ";";
    if (d.method == ConversionMethod::kDefault) return std::nullopt;
    return "\"\"Main office\"\"";
  };
  // Enclosing quotes come off before the cut and once more after it.
  EXPECT_EQ(Value("Location"), "Main office");
  EXPECT_EQ(Value("Location", 5), "\"Main");
  EXPECT_EQ(Value("Useful Life"), std::nullopt);
  EXPECT_EQ(asked, "Location;Location;Useful Life;");
}

TEST_F(FieldValueTest, ScheduleFieldsUseTheirOwnKeyOrThePlainOne) {
  Define("Depr Method", -1, ConversionMethod::kSet, 0, "10");
  Define("Depr Method, State", -1, ConversionMethod::kSet, 0, "21");
  EXPECT_EQ(Value("Depr Method", 2, "State"), "21");
  EXPECT_EQ(Value("Depr Method", 2, "Book"), "10");
  EXPECT_EQ(ScheduleFieldName("Basis", "Tax"), "Basis, Tax");
  EXPECT_EQ(ScheduleFieldName("Basis, Book", "Tax"), "Basis, Book");
  EXPECT_EQ(ScheduleFieldName("Accum. Allowable", "Federal Tax"), "Accum. Allowable, Federal");
}

}  // namespace
}  // namespace nv
