#include "ui/screen/groups.h"

#include <gtest/gtest.h>

#include "base/ascii.h"
#include "ui/scripted_ui.h"

namespace nv {
namespace {

FieldDescription Field(int kind, int width, std::string data, std::string attributes = "") {
  FieldDescription field;
  field.kind = kind;
  field.width = width;
  field.data = std::move(data);
  field.attributes = std::move(attributes);
  return field;
}

FieldTable RadioTable(const char* group_attributes) {
  return {
      Field(kFieldGroup, 3, "", group_attributes),
      Field(kFieldItem, 0, "Straight line"),
      Field(kFieldItem, 0, "", "caption(Declining)"),
      Field(kFieldItem, 0, "Other", "setcheck"),
      Field(kFieldItem, 0, "Apart", "nogroup"),
      Field(kFieldItem, 0, "Last"),
      Field(kFieldEnd, 0, ""),
  };
}

TEST(ScreenGroups, MembersFollowTheGroupExceptThoseStandingOutside) {
  FieldTable table = RadioTable("radio(Method)");
  EXPECT_EQ(GroupMembers(table, 0), (std::vector<size_t>{1, 2, 3, 5}));
  EXPECT_EQ(GroupOfItem(table, 5), 0u);
  EXPECT_EQ(GroupOfItem(table, 4), std::nullopt);
  EXPECT_EQ(GroupMembers(table, 1), std::vector<size_t>{});  // not a group
  EXPECT_EQ(GroupOfItem(FieldTable{Field(kFieldItem, 0, "Alone")}, 0), std::nullopt);
  EXPECT_EQ(StyleOfGroup(table[0]), GroupStyle::kRadio);
  EXPECT_EQ(GroupTitle(table[0]), "Method");
  EXPECT_EQ(StyleOfGroup(Field(kFieldGroup, 0, "", "title(Dates)")), GroupStyle::kTitledBox);
}

TEST(ScreenGroups, RadioDataIsTheCaptionOrTheNumber) {
  FieldTable table = RadioTable("radio(Method)");
  EXPECT_EQ(RadioChoiceData(table, 0, 1), "Declining");
  EXPECT_EQ(RadioChoiceData(table, 0, 3), "Last");
  EXPECT_EQ(RadioChoiceData(table, 0, 4), "");

  table = RadioTable("radio(Method),numeric");
  EXPECT_EQ(RadioChoiceData(table, 0, 0), "  1");
  EXPECT_EQ(RadioChoiceData(table, 0, 2), "Other");  // setcheck
  EXPECT_EQ(RadioChoiceData(table, 0, 3), "  4");

  // Reading back what was written, with or without its padding.
  for (const char* data : {"  4", "4", "Other"}) {
    table[0].data = data;
    std::optional<size_t> chosen = ChosenRadioMember(table, 0);
    ASSERT_TRUE(chosen) << data;
    EXPECT_EQ(TrimBlanks(RadioChoiceData(table, 0, *chosen)), TrimBlanks(data));
  }
  table[0].data = "9";
  EXPECT_EQ(ChosenRadioMember(table, 0), std::nullopt);
  table[0].data = "";
  EXPECT_EQ(ChosenRadioMember(table, 0), std::nullopt);
}

FieldTable Schedules(int width, const char* data) {
  return {Field(kFieldGroup, width, data, "checkbox(Schedules)"), Field(kFieldItem, 0, "Book"),
          Field(kFieldItem, 0, "Tax"), Field(kFieldItem, 0, "State"), Field(kFieldItem, 0, "AMT")};
}

TEST(CheckBoxGroup, AThirdTickOfAGroupOfWidthTwoOnlyAfterOneIsCleared) {
  ScriptedUi ui(AnswerScript{});
  FieldTable table = Schedules(2, "");
  CheckBoxGroup group(table, 0);
  EXPECT_TRUE(group.Set(2, true, ui));
  EXPECT_TRUE(group.Set(0, true, ui));
  EXPECT_EQ(group.Data(), "BS");  // in member order
  EXPECT_FALSE(group.Set(1, true, ui));
  EXPECT_FALSE(group.ticked(1));
  EXPECT_EQ(group.Data(), "BS");
  EXPECT_EQ(ui.transcript(),
            "message title=\"Note\" text=\"A maximum of 2 selections can be checked.\"\n");
  const std::string after_note = ui.transcript();

  EXPECT_TRUE(group.Set(2, true, ui));  // ticking a ticked one again is no extra tick
  EXPECT_FALSE(group.Set(0, false, ui));
  EXPECT_TRUE(group.Set(1, true, ui));
  EXPECT_EQ(group.Data(), "TS");
  EXPECT_EQ(ui.transcript(), after_note);
}

TEST(CheckBoxGroup, TicksFromDataAndTheLimits) {
  ScriptedUi ui(AnswerScript{});
  CheckBoxGroup from_data(Schedules(2, "ATS"), 0);  // only two fit, in member order
  EXPECT_EQ(from_data.Data(), "TS");
  EXPECT_FALSE(from_data.ticked(3));

  CheckBoxGroup unlimited(Schedules(0, "ATBS"), 0);
  EXPECT_EQ(unlimited.Data(), "BTSA");
  EXPECT_EQ(CheckBoxMaximumText(1), "A maximum of 1 selection can be checked.");
  EXPECT_FALSE(from_data.Set(9, true, ui));
  EXPECT_TRUE(ui.transcript().empty());
}

TEST(ScreenGroups, DisplayTarget) {
  EXPECT_EQ(DisplayTarget(Field(kFieldEdit, 0, "", "upr,display(77)")), 77);
  EXPECT_EQ(DisplayTarget(Field(kFieldEdit, 0, "", "display")), std::nullopt);
}

}  // namespace
}  // namespace nv
