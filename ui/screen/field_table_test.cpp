#include "ui/screen/field_table.h"

#include <gtest/gtest.h>

namespace nv {
namespace {

FieldDescription Named(int id, std::string name) {
  FieldDescription field;
  field.kind = kFieldEdit;
  field.id = id;
  field.name = std::move(name);
  return field;
}

TEST(FieldTable, FieldsAreFoundBeforeTheEndEntryOnly) {
  FieldTable table = {Named(77, "Name"), Named(78, ""), FieldDescription{}, Named(88, "Late")};
  EXPECT_EQ(FieldCount(table), 2u);
  EXPECT_EQ(FieldCount(FieldTable{Named(1, "")}), 1u);
  EXPECT_EQ(FieldIndexOfId(table, 78), 1u);
  EXPECT_EQ(FieldIndexOfId(table, 88), std::nullopt);
  EXPECT_EQ(FieldIndexOfName(table, "NAME"), 0u);
  EXPECT_EQ(FieldIndexOfName(table, "Late"), std::nullopt);
  EXPECT_EQ(FieldIndexOfName(table, ""), std::nullopt);  // unnamed fields are not found
}

TEST(FieldTable, EnteredValuesPassTheCheckFirst) {
  FieldTable table = {Named(1, "Cost"), Named(2, "Echo")};
  table[0].data = "10";
  table[0].check = [](FieldTable& t, size_t index, const std::string& text) {
    t[1].data = "was " + t[index].data;  // sees the old value
    return text != "-1";
  };
  EXPECT_FALSE(EnterFieldValue(table, 0, "-1"));
  EXPECT_EQ(table[0].data, "10");
  EXPECT_TRUE(EnterFieldValue(table, 0, "12"));
  EXPECT_EQ(table[0].data, "12");
  EXPECT_EQ(table[1].data, "was 10");
  EXPECT_TRUE(EnterFieldValue(table, 1, "anything"));  // no check
  EXPECT_FALSE(EnterFieldValue(table, 5, "x"));
}

}  // namespace
}  // namespace nv
