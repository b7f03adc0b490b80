#include "ui/screen/field_help.h"

#include <gtest/gtest.h>

#include "ui/scripted_ui_testing.h"

namespace nv {
namespace {

FieldTable OneField(std::string attributes) {
  FieldDescription field;
  field.kind = kFieldEdit;
  field.attributes = std::move(attributes);
  return {field};
}

TEST(FieldHelp, ChoicesArePickedFromAList) {
  auto ui = testing::Script("choose 1\nclose\n");
  FieldTable table = OneField("sched,upr,h(Yes\nNo\n)");
  EXPECT_EQ(HelpOf(table[0]).choices, (std::vector<std::string>{"Yes", "No"}));
  EXPECT_EQ(RunFieldHelp(table, 0, *ui, {}), "No");
  EXPECT_EQ(RunFieldHelp(table, 0, *ui, {}), std::nullopt);
  EXPECT_NE(ui->transcript().find("options=[\"Yes\", \"No\"]"), std::string::npos);
  EXPECT_FALSE(ui->failed());
}

TEST(FieldHelp, NamedPickersAndFieldsWithoutHelp) {
  auto ui = testing::Script("");
  BuiltInPickers pickers;
  size_t asked = 99;
  pickers["rangedate"] = [&](FieldTable&, size_t index) {
    asked = index;
    return std::optional<std::string>("01/01/2024");
  };
  FieldTable table = OneField("h(*rangedate)");
  EXPECT_EQ(HelpOf(table[0]).picker, "rangedate");
  EXPECT_EQ(RunFieldHelp(table, 0, *ui, pickers), "01/01/2024");
  EXPECT_EQ(asked, 0u);
  EXPECT_TRUE(ui->transcript().empty());

  for (const char* attributes : {"h(*rangelife)", "upr", "h()"}) {
    table = OneField(attributes);
    EXPECT_EQ(RunFieldHelp(table, 0, *ui, pickers), std::nullopt);
  }
  table = OneField("bmp(15)");
  table[0].kind = kFieldButton;  // a button without msg(...) has none either
  EXPECT_EQ(RunFieldHelp(table, 0, *ui, pickers), std::nullopt);
  std::string note = "message title=\"Message\" text=\"Help is not available for this field.\"\n";
  EXPECT_EQ(ui->transcript(), note + note + note + note);

  table = OneField("bmp(15),msg(Define values, say)");
  table[0].kind = kFieldButton;
  EXPECT_EQ(RunFieldHelp(table, 0, *ui, pickers), std::nullopt);
  EXPECT_TRUE(ui->transcript().ends_with("text=\"Define values, say\"\n"));
}

}  // namespace
}  // namespace nv
