#include "ui/screen/edit_field.h"

#include <gtest/gtest.h>

namespace nv {
namespace {

FieldDescription Edit(int width, std::string attributes, std::string data = "") {
  FieldDescription field;
  field.kind = kFieldEdit;
  field.width = width;
  field.attributes = std::move(attributes);
  field.data = std::move(data);
  return field;
}

TEST(EditField, TextLimitFromWidthOrMaxlen) {
  EXPECT_EQ(TextLimit(Edit(10, "")), 11u);
  EXPECT_EQ(TextLimit(Edit(10, "maxlen(4)")), 5u);
  EXPECT_EQ(TextLimit(Edit(10, "maxlen(0)")), 1u);
  EXPECT_EQ(TextLimit(Edit(10, "maxlen(x)")), 11u);
  EXPECT_EQ(TextLimit(Edit(10, "maxlen(4),notextlimit")), std::nullopt);
  EXPECT_EQ(TextLimit(Edit(-3, "")), 1u);
}

TEST(InputFilter, UpperCaseComesBeforeTheCharacterList) {
  InputFilter filter("upr,chars(0-9A-Za-z-.)");
  EXPECT_EQ(filter.Filter('a'), 'A');
  EXPECT_EQ(filter.Filter('z'), 'Z');
  // Both ends of each range, and the characters just outside them.
  for (char c : {'0', '9', 'A', 'Z', '-', '.'}) EXPECT_EQ(filter.Filter(c), c) << c;
  for (char c : {'/', ':', '@', '[', ' ', ',', '_'}) EXPECT_EQ(filter.Filter(c), std::nullopt) << c;
  EXPECT_EQ(filter.Filter('\b'), '\b');            // keys pass
  EXPECT_EQ(filter.Filter('\xE9'), std::nullopt);  // é is É, which the list does not hold
  EXPECT_EQ(filter.FilterText("ab-12.x"), std::string("AB-12.X"));
  EXPECT_EQ(filter.FilterText("ab 12"), std::nullopt);
}

TEST(InputFilter, UpperCaseAloneTakesEveryPrintableCharacter) {
  InputFilter filter("UPR");
  EXPECT_FALSE(filter.restricted());
  EXPECT_EQ(filter.FilterText("ab c{}~"), std::string("AB C{}~"));
  EXPECT_EQ(filter.Filter('\xE9'), '\xC9');  // é É
  EXPECT_EQ(filter.Filter('\xF7'), '\xF7');  // ÷ is no letter
  EXPECT_EQ(filter.Filter('\xFF'), '\x9F');  // ÿ Ÿ
  EXPECT_EQ(filter.Filter('\x9A'), '\x8A');  // š Š
  EXPECT_EQ(InputFilter("").FilterText("ab"), std::string("ab"));
}

TEST(InputFilter, CharacterLists) {
  auto takes = [](const char* attributes, const char* text) {
    return InputFilter(attributes).FilterText(text).has_value();
  };
  EXPECT_TRUE(takes("chars(9-0)", "0459"));  // a range written backwards
  EXPECT_TRUE(takes("chars(-a)", "-a"));     // a leading "-" stands for itself
  EXPECT_FALSE(takes("chars(-a)", "b"));
  EXPECT_TRUE(takes("chars(a-c-)", "abc-"));
  EXPECT_FALSE(takes("chars()", "a"));
  EXPECT_TRUE(takes("numeric", "-1,234.50"));
  EXPECT_FALSE(takes("numeric", "12a"));
  EXPECT_TRUE(takes("numeric,chars(A-Z)", "ABC"));  // the list of its own wins
  EXPECT_FALSE(takes("chars(a-z)", "A"));           // no upr: case matters
}

TEST(DisplayFormat, AmountsNumbersAndRightAlignment) {
  EXPECT_EQ(FormatForDisplay(Edit(10, "dollar", "1234.5")), "   1234.50");
  EXPECT_EQ(FormatForDisplay(Edit(10, "dollar", "(1,234.567)")), "  -1234.57");
  EXPECT_EQ(FormatForDisplay(Edit(4, "dollar", "-0.001")), "0.00");
  EXPECT_EQ(FormatForDisplay(Edit(4, "dollar", "123456")), "123456.00");  // wider than the field
  EXPECT_EQ(FormatForDisplay(Edit(10, "dollar", "ten")), "ten");
  EXPECT_EQ(FormatForDisplay(Edit(10, "dollar", "  ")), "  ");
  EXPECT_EQ(FormatForDisplay(Edit(5, "int", " 42 ")), "   42");
  EXPECT_EQ(FormatForDisplay(Edit(2, "rjust", "ABCD")), "ABCD");
  EXPECT_EQ(FormatForDisplay(Edit(8, "float(2)", "3.14159")), "3.14");
  EXPECT_EQ(FormatForDisplay(Edit(8, "float(0)", "2.6")), "3");
  EXPECT_EQ(FormatForDisplay(Edit(8, "float(99)", "1")), "1.000000000000000");
  EXPECT_EQ(FormatForDisplay(Edit(8, "float(2)", "1e999")), "1e999");
  EXPECT_EQ(FormatForDisplay(Edit(8, "float(2)", "1.2.3")), "1.2.3");
  EXPECT_EQ(FormatForDisplay(Edit(8, "upr", " x ")), " x ");
  EXPECT_TRUE(IsRightAligned(Edit(8, "float(2)")));
  EXPECT_FALSE(IsRightAligned(Edit(8, "upr")));
}

}  // namespace
}  // namespace nv
