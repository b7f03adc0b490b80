#include "ui/screen/list_controls.h"

#include <gtest/gtest.h>

namespace nv {
namespace {

FieldDescription Control(int kind, std::string data, std::string attributes = "") {
  FieldDescription field;
  field.kind = kind;
  field.data = std::move(data);
  field.attributes = std::move(attributes);
  return field;
}

TEST(ListControls, ItemsOnePerLineSortedInCombosUnlessNosort) {
  using Items = std::vector<std::string>;
  EXPECT_EQ(ControlItems(Control(kFieldCombo, "tax\nBook\nAMT\n")), (Items{"AMT", "Book", "tax"}));
  EXPECT_EQ(ControlItems(Control(kFieldCombo, "tax\nBook\n\nAMT", "nosort")),
            (Items{"tax", "Book", "", "AMT"}));
  EXPECT_EQ(ControlItems(Control(kFieldList, "tax\nBook")), (Items{"tax", "Book"}));
  EXPECT_EQ(ControlItems(Control(kFieldCombo, "")), Items{});
}

TEST(ListControls, ComboStyleAndListHeight) {
  EXPECT_EQ(StyleOfCombo(Control(kFieldCombo, "", "dropdown")), ComboStyle::kDropDown);
  EXPECT_EQ(StyleOfCombo(Control(kFieldCombo, "", "simple")), ComboStyle::kSimple);
  EXPECT_EQ(StyleOfCombo(Control(kFieldCombo, "", "dropdownlist")), ComboStyle::kDropDownList);
  EXPECT_EQ(StyleOfCombo(Control(kFieldCombo, "")), ComboStyle::kDropDownList);

  const std::string five = "a\nb\nc\nd\ne\n";
  EXPECT_EQ(ComboListLines(Control(kFieldCombo, five)), 7);
  EXPECT_EQ(ComboListLines(Control(kFieldCombo, five, "maxheight(4)")), 4);
  EXPECT_EQ(ComboListLines(Control(kFieldCombo, five, "minheight(10)")), 10);
  EXPECT_EQ(ComboListLines(Control(kFieldCombo, five, "maxheight(4),minheight(6)")), 6);
  EXPECT_EQ(ComboListLines(Control(kFieldCombo, "")), 2);
  EXPECT_EQ(ComboListLines(Control(kFieldCombo, five, "maxheight(-4)")), 0);
}

}  // namespace
}  // namespace nv
