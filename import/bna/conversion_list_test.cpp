#include "import/bna/conversion_list.h"

#include <gtest/gtest.h>

namespace nv {
namespace {

TEST(DefinitionLine, ReadsTheFourShapesOfTheLine) {
  DefinitionLine entire = ParseDefinitionLine("A,ENTIRE,0,");
  EXPECT_FALSE(entire.no_copy);
  EXPECT_EQ(entire.column, 0);
  EXPECT_EQ(entire.method, ConversionMethod::kEntire);
  EXPECT_EQ(entire.number, 0);
  EXPECT_FALSE(entire.text.has_value());

  DefinitionLine right = ParseDefinitionLine("NOCOPY,C,RIGHT,4,");
  EXPECT_TRUE(right.no_copy);
  EXPECT_EQ(right.column, 2);
  EXPECT_EQ(right.method, ConversionMethod::kRight);
  EXPECT_EQ(right.number, 4);

  DefinitionLine set = ParseDefinitionLine(",SET,0,Y");
  EXPECT_EQ(set.column, -1);
  EXPECT_EQ(set.method, ConversionMethod::kSet);
  EXPECT_EQ(set.text, "Y");

  DefinitionLine mid = ParseDefinitionLine("D,MID,3,5");
  EXPECT_EQ(mid.column, 3);
  EXPECT_EQ(mid.method, ConversionMethod::kMid);
  EXPECT_EQ(mid.number, 3);
  EXPECT_EQ(mid.text, "5");
}

TEST(DefinitionLine, LowerCaseWordsQuotesAndCommasInTheText) {
  DefinitionLine nocopy = ParseDefinitionLine("nocopy,b,entire,0,");
  EXPECT_TRUE(nocopy.no_copy);
  EXPECT_EQ(nocopy.column, 1);
  EXPECT_EQ(nocopy.method, ConversionMethod::kEntire);

  // The text is the rest of the line, commas and blanks included.
  EXPECT_EQ(ParseDefinitionLine(",SET,0, a, b,c").text, " a, b,c");
  // Quoted fields lose their quotes; a quoted text has its doubled quotes made single.
  DefinitionLine quoted = ParseDefinitionLine("\"AA\",\"set\",\"7\",\"say \"\"hi\"\"\"");
  EXPECT_EQ(quoted.column, 26);
  EXPECT_EQ(quoted.method, ConversionMethod::kSet);
  EXPECT_EQ(quoted.number, 7);
  EXPECT_EQ(quoted.text, "say \"hi\"");
  // An unquoted text keeps its quotes as they stand.
  EXPECT_EQ(ParseDefinitionLine(",SET,0,a\"\"b").text, "a\"\"b");
}

TEST(DefinitionLine, WhatNamesNoColumnOrMethodReadsAsNone) {
  EXPECT_EQ(ParseDefinitionLine("ZZ,ENTIRE,0,").column, 701);
  EXPECT_EQ(ParseDefinitionLine("AAA,ENTIRE,0,").column, -1);
  EXPECT_EQ(ParseDefinitionLine("7,ENTIRE,0,").column, -1);
  EXPECT_EQ(ParseDefinitionLine("A,COPY,0,").method, ConversionMethod::kNone);
  EXPECT_EQ(ParseDefinitionLine("A,LEFT,x3,").number, 0);
  EXPECT_EQ(ParseDefinitionLine("A,LEFT,-2,").number, -2);
  EXPECT_EQ(ParseDefinitionLine("A,LEFT,99999999999,").number, 2147483647);
  DefinitionLine empty = ParseDefinitionLine("");
  EXPECT_EQ(empty.column, -1);
  EXPECT_EQ(empty.method, ConversionMethod::kNone);
  EXPECT_FALSE(empty.text.has_value());
  EXPECT_FALSE(ParseDefinitionLine("A,ENTIRE").text.has_value());
}

ConversionDefinition Definition(bool no_copy, int column, ConversionMethod method, int number,
                                std::optional<std::string> text) {
  ConversionDefinition d;
  d.no_copy = no_copy;
  d.column = column;
  d.method = method;
  d.number = number;
  d.text = std::move(text);
  return d;
}

TEST(DefinitionLine, IsWrittenFieldByFieldWithNocopyInCapitals) {
  EXPECT_EQ(FormatDefinitionLine(Definition(true, 2, ConversionMethod::kRight, 4, {})),
            "NOCOPY,C,RIGHT,4,");
  EXPECT_EQ(FormatDefinitionLine(Definition(false, -1, ConversionMethod::kSet, 0, "Y")),
            ",SET,0,Y");
  EXPECT_EQ(FormatDefinitionLine(Definition(false, 27, ConversionMethod::kMid, 3, "5")),
            "AB,MID,3,5");
  EXPECT_EQ(FormatDefinitionLine(Definition(false, 0, ConversionMethod::kNone, 0, {})), "A,,0,");
  // Texts a profile would change on reading go between quotes.
  EXPECT_EQ(FormatDefinitionLine(Definition(false, -1, ConversionMethod::kSet, 0, "Y ")),
            ",SET,0,\"Y \"");
  EXPECT_EQ(FormatDefinitionLine(Definition(false, -1, ConversionMethod::kSet, 0, "\"x\"")),
            ",SET,0,\"\"\"x\"\"\"");
  EXPECT_EQ(ParseDefinitionLine(",SET,0,\"\"\"x\"\"\"").text, "\"x\"");
}

TEST(GroupOfKey, AssetNoIsAlwaysActiveAndScheduleKeysTakeTheirLetter) {
  EXPECT_EQ(GroupOfKey("Asset No."), '*');
  EXPECT_EQ(GroupOfKey("Description"), 'G');
  EXPECT_EQ(GroupOfKey("Basis"), 'G');
  EXPECT_EQ(GroupOfKey("Basis, Tax"), 'T');
  EXPECT_EQ(GroupOfKey("Basis,   Book"), 'B');
  EXPECT_EQ(GroupOfKey("Basis, AMT"), 'A');
  EXPECT_EQ(GroupOfKey("Basis, ACE"), 'C');
  EXPECT_EQ(GroupOfKey("Basis, Federal"), 'F');
  EXPECT_EQ(GroupOfKey("Basis,  "), '\0');
}

TEST(CheckBoxes, ValueListsTheBoxesInTheirOwnOrder) {
  EXPECT_EQ(CheckedGroupsOfValue("*OBT"), "TBO");
  EXPECT_EQ(CheckedGroupsOfValue("*"), "");
  EXPECT_EQ(CheckedGroupsOfValue("*gXZ"), "");
  EXPECT_EQ(ValueOfCheckedGroups("OG"), "*GO");
  EXPECT_EQ(ValueOfCheckedGroups(""), "*");
}

TEST(ImportConversionList, ScheduleKeysFallBackToThePlainName) {
  ImportConversionList list;
  list.Add("Basis", false, 4, ConversionMethod::kEntire, 0, {}, 'G');
  list.Add("Basis, Tax", false, 5, ConversionMethod::kEntire, 0, {}, 'T');
  ASSERT_NE(list.Find("basis, TAX"), nullptr);
  EXPECT_EQ(list.Find("basis, TAX")->column, 5);
  ASSERT_NE(list.Find("Basis, Book"), nullptr);
  EXPECT_EQ(list.Find("Basis, Book")->column, 4);
  EXPECT_EQ(list.Find("Cost, Tax"), nullptr);
  EXPECT_EQ(list.Find("Bas"), nullptr);
  list.Clear();
  EXPECT_EQ(list.Find("Basis"), nullptr);
  EXPECT_EQ(list.size(), 0u);
}

TEST(ImportConversionList, AddNamesScheduleGroupsAndCutsNamesAt25) {
  ImportConversionList list;
  EXPECT_EQ(list.Add("Basis", false, -1, ConversionMethod::kNone, 0, {}, 'T').name, "Basis, Tax");
  EXPECT_EQ(list.Add("Basis, Book", false, -1, ConversionMethod::kNone, 0, {}, 'T').name,
            "Basis, Book");
  EXPECT_EQ(list.Add("Basis", false, -1, ConversionMethod::kNone, 0, {}, 'G').name, "Basis");
  EXPECT_EQ(list.Add("Asset No.", false, 0, ConversionMethod::kEntire, 0, {}, '*').name,
            "Asset No.");
  EXPECT_EQ(
      list.Add("Accumulated Depreciation", false, -1, ConversionMethod::kNone, 0, {}, 'O').name,
      "Accumulated Depreciation,");
  ASSERT_EQ(list.size(), 5u);
  EXPECT_EQ(list.entries()[0].name, "Basis, Tax");  // in the order added
}

TEST(ImportConversionList, ActiveAreStarAndTheCheckedBoxesLetters) {
  ImportConversionList list;
  list.Add("Asset No.", false, 0, ConversionMethod::kEntire, 0, {}, GroupOfKey("Asset No."));
  list.Add("Basis", false, 1, ConversionMethod::kEntire, 0, {}, GroupOfKey("Basis"));
  list.Add("Basis, Tax", false, 2, ConversionMethod::kEntire, 0, {}, GroupOfKey("Basis, Tax"));
  list.Add("Basis, Federal", false, 3, ConversionMethod::kEntire, 0, {},
           GroupOfKey("Basis, Federal"));
  list.Add("Basis,", false, 3, ConversionMethod::kEntire, 0, {}, GroupOfKey("Basis,"));

  list.SetActive("*T");
  EXPECT_TRUE(list.entries()[0].active);
  EXPECT_FALSE(list.entries()[1].active);
  EXPECT_TRUE(list.entries()[2].active);
  EXPECT_FALSE(list.entries()[3].active);  // F has no box
  EXPECT_FALSE(list.entries()[4].active);

  list.SetActive("*GBACSOF");
  EXPECT_TRUE(list.entries()[1].active);
  EXPECT_FALSE(list.entries()[2].active);
  EXPECT_FALSE(list.entries()[3].active);
}

TEST(ListLine, ShowsMethodAndColumn) {
  ConversionDefinition right = Definition(false, 2, ConversionMethod::kRight, 4, {});
  right.name = "Account No.";
  EXPECT_EQ(ListLineOfDefinition(right), "Account No.\tRt 4--C");
  ConversionDefinition mid = Definition(false, 26, ConversionMethod::kMid, 3, "5");
  mid.name = "Location";
  EXPECT_EQ(ListLineOfDefinition(mid), "Location\tMd 5@3--AA");
  ConversionDefinition set = Definition(false, -1, ConversionMethod::kSet, 0, "Y");
  set.name = "New/Used";
  EXPECT_EQ(ListLineOfDefinition(set), "New/Used\tSet");
  // No copy: flagged, without a method, or a column method without a column.
  right.no_copy = true;
  EXPECT_EQ(ListLineOfDefinition(right), "Account No.\tNo Copy--C");
  ConversionDefinition lost = Definition(false, -1, ConversionMethod::kLeft, 2, {});
  lost.name = "Bonus";
  EXPECT_EQ(ListLineOfDefinition(lost), "Bonus\tNo Copy");
}

}  // namespace
}  // namespace nv
