#include "ui/screen/navigation.h"

#include <gtest/gtest.h>

namespace nv {
namespace {

FieldDescription Field(int id, std::string attributes, std::string data = "") {
  FieldDescription field;
  field.kind = kFieldEdit;
  field.id = id;
  field.attributes = std::move(attributes);
  field.data = std::move(data);
  return field;
}

// A date in three fields checked together, a field before and one after.
FieldTable DateTable() {
  return {Field(90, ""),  Field(100, "ckkillfocus,group(100-120)"),
          Field(110, ""), Field(120, ""),
          Field(130, ""), FieldDescription{}};
}

TEST(ScreenNavigation, CheckOnFocusLossOnlyWhenLeavingTheGroup) {
  FieldTable table = DateTable();
  EXPECT_FALSE(RunsCheckOnFocusLoss(table, 1, 110));
  EXPECT_FALSE(RunsCheckOnFocusLoss(table, 1, 120));
  EXPECT_TRUE(RunsCheckOnFocusLoss(table, 1, 130));
  EXPECT_TRUE(RunsCheckOnFocusLoss(table, 1, 90));
  EXPECT_TRUE(RunsCheckOnFocusLoss(table, 1, std::nullopt));  // a control outside the table
  EXPECT_FALSE(RunsCheckOnFocusLoss(table, 1, 20100));        // its own picker button
  EXPECT_FALSE(RunsCheckOnFocusLoss(table, 2, 130));          // no ckkillfocus

  // The last field of the group: going back inside the range is going to an earlier field.
  table[3].attributes = "ckkillfocus,group(100-120)";
  EXPECT_TRUE(RunsCheckOnFocusLoss(table, 3, 110));
  table[1].attributes = "ckkillfocus";
  EXPECT_TRUE(RunsCheckOnFocusLoss(table, 1, 110));
}

TEST(ScreenNavigation, KeysMoveThroughFieldsThatCanTakeTheFocus) {
  FieldTable table = DateTable();
  EXPECT_EQ(MoveForKey(table[0], ScreenKey::kEnter), FieldMove::kNext);
  EXPECT_EQ(MoveForKey(table[0], ScreenKey::kEscape), FieldMove::kPrevious);
  EXPECT_EQ(MoveForKey(Field(1, "multiline"), ScreenKey::kEnter), FieldMove::kNone);
  EXPECT_EQ(MoveForKey(Field(1, "multiline"), ScreenKey::kTab), FieldMove::kNext);

  auto all_but_110 = [&](size_t index) { return table[index].id != 110; };
  EXPECT_EQ(NextFocusField(table, 1, FieldMove::kNext, all_but_110), 3u);
  EXPECT_EQ(NextFocusField(table, 3, FieldMove::kPrevious, all_but_110), 1u);
  EXPECT_EQ(NextFocusField(table, 4, FieldMove::kNext, all_but_110), 0u);  // round the end
  EXPECT_EQ(NextFocusField(table, 0, FieldMove::kPrevious, all_but_110), 4u);
  auto only_2 = [](size_t index) { return index == 2; };
  EXPECT_EQ(NextFocusField(table, 2, FieldMove::kNext, only_2), std::nullopt);
  EXPECT_EQ(NextFocusField(table, 7, FieldMove::kNext, only_2), std::nullopt);

  EXPECT_EQ(InitialFocusField(table, all_but_110), 0u);
  table[3].attributes = "key";
  EXPECT_EQ(InitialFocusField(table, all_but_110), 3u);
  EXPECT_EQ(InitialFocusField(table, only_2), 2u);
}

TEST(ScreenNavigation, RequiredFieldsAndExceptions) {
  FieldTable table = {Field(1, "req", "ACME"), Field(2, ""), Field(3, "upr,req", " "),
                      Field(4, "req")};
  EXPECT_EQ(FirstMissingRequired(table), 2u);
  table[2].data = "X";
  EXPECT_EQ(FirstMissingRequired(table), 3u);
  table[3].data = "Y";
  EXPECT_EQ(FirstMissingRequired(table), std::nullopt);
  EXPECT_TRUE(KeepsStateOnEnableAll(Field(1, "readonly,exception")));
  EXPECT_FALSE(KeepsStateOnEnableAll(Field(1, "readonly")));
}

}  // namespace
}  // namespace nv
