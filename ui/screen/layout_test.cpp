#include "ui/screen/layout.h"

#include <gtest/gtest.h>

namespace nv {
namespace {

// Distinct character width and line height, so that a mix-up shows.
constexpr ScreenMetrics kMetrics{7, 20};

FieldDescription Field(int kind, int row, int column, int width, std::string attributes = "") {
  FieldDescription field;
  field.kind = kind;
  field.row = row;
  field.column = column;
  field.width = width;
  field.attributes = std::move(attributes);
  return field;
}

ScreenRect RectOf(const FieldDescription& field) {
  return FieldRect(FieldTable{field}, 0, kMetrics);
}

TEST(ScreenLayout, FieldsFromRowColumnAndWidthWithTheirAdjustments) {
  EXPECT_EQ(RectOf(Field(kFieldEdit, 2, 3, 10)), (ScreenRect{21, 40, 77, 21}));
  EXPECT_EQ(RectOf(Field(kFieldEdit, 2, 3, 10, "xplus(5),yplus(-4),wplus(3),hplus(2)")),
            (ScreenRect{26, 36, 80, 23}));
  EXPECT_EQ(RectOf(Field(kFieldEdit, 2, 3, 10, "width(4),height(3)")),
            (ScreenRect{21, 40, 28, 61}));
  EXPECT_EQ(RectOf(Field(kFieldEdit, 2, 3, 10, "width(4),wplus(2),height(3),hplus(-1)")),
            (ScreenRect{21, 40, 30, 60}));
  EXPECT_EQ(RectOf(Field(kFieldStatic, 2, 3, 10, "x-,y-")), (ScreenRect{18, 30, 77, 21}));
  EXPECT_EQ(RectOf(Field(kFieldList, 1, 0, 20, "height(5)")), (ScreenRect{0, 20, 147, 101}));
  EXPECT_EQ(RectOf(Field(kFieldList, 1, 0, 20)).height, 21);  // one line
  EXPECT_EQ(RectOf(Field(kFieldCombo, 1, 0, 20)).height, 21);
}

TEST(ScreenLayout, ButtonsAreALineAndAHalfUnlessAPictureSizesThem) {
  EXPECT_EQ(RectOf(Field(kFieldButton, 1, 1, 8)), (ScreenRect{7, 20, 63, 30}));
  EXPECT_EQ(RectOf(Field(kFieldButton, 1, 1, 8, "height(2)")).height, 41);
  EXPECT_EQ(RectOf(Field(kFieldButton, 1, 1, 8, "bmp(40,24),gdiplus(x.png),wplus(9)")),
            (ScreenRect{7, 20, 40, 24}));
  EXPECT_EQ(RectOf(Field(kFieldButton, 1, 1, 8, "bmp(15)")).width, 63);  // no size, no picture
}

TEST(ScreenLayout, GroupsAreSizedFromTheirMembers) {
  FieldTable table = {
      Field(kFieldGroup, 4, 2, 0, "radio(Method)"),
      Field(kFieldItem, 5, 3, 6),
      Field(kFieldItem, 6, 3, 30, "nogroup"),  // stands outside: neither counted nor measured
      Field(kFieldItem, 7, 3, 12),
      Field(kFieldStatic, 8, 3, 50),
  };
  EXPECT_EQ(FieldRect(table, 0, kMetrics), (ScreenRect{14, 80, 91, 41}));

  table[1].width = table[3].width = 0;
  EXPECT_EQ(FieldRect(table, 0, kMetrics).width, 280);  // 40 columns

  table[0].attributes = "radio(Method),height(4),wplus(1)";
  EXPECT_EQ(FieldRect(table, 0, kMetrics), (ScreenRect{14, 80, 281, 81}));
  table[0].attributes = "radio(Method),width(10)";
  EXPECT_EQ(FieldRect(table, 0, kMetrics), (ScreenRect{14, 80, 70, 41}));

  FieldTable empty = {Field(kFieldGroup, 0, 0, 0, "title(Nothing)"), Field(kFieldEnd, 0, 0, 0)};
  EXPECT_EQ(FieldRect(empty, 0, kMetrics), (ScreenRect{0, 0, 280, 21}));
}

TEST(ScreenLayout, SkipCheckBoxAndPickerButtonBesideTheField) {
  const ScreenRect field{21, 40, 77, 21};
  EXPECT_EQ(SkipCheckRect(field, kMetrics), (ScreenRect{7, 44, 13, 13}));
  EXPECT_EQ(PickerButtonRect(field, kMetrics), (ScreenRect{98, 40, 15, 21}));

  FieldDescription edit = Field(kFieldEdit, 0, 0, 4, "skipck");
  EXPECT_TRUE(HasSkipCheck(edit));
  EXPECT_FALSE(HasPickerButton(edit));
  edit.picker = [](FieldTable&, size_t) { return std::optional<std::string>(); };
  EXPECT_TRUE(HasPickerButton(edit));
  EXPECT_TRUE(HasPickerButton(Field(kFieldEdit, 0, 0, 4, "BUTTON")));
  EXPECT_FALSE(HasSkipCheck(Field(kFieldStatic, 0, 0, 4, "skipck")));
}

TEST(ScreenLayout, HostileNumbersStayWithinTheScreenRange) {
  FieldDescription field = Field(kFieldEdit, 2147483647, -2147483647, 2147483647,
                                 "xplus(32767),wplus(32767),height(32767)");
  ScreenRect rect = FieldRect(FieldTable{field}, 0, ScreenMetrics{2147483647, 2147483647});
  EXPECT_EQ(rect.x, -kMaxScreenCoordinate);
  EXPECT_EQ(rect.y, kMaxScreenCoordinate);
  EXPECT_EQ(rect.width, kMaxScreenCoordinate);
  EXPECT_EQ(RectOf(Field(kFieldEdit, 0, 0, 2, "width(-9)")).width, 0);
  EXPECT_EQ(FieldRect(FieldTable{}, 3, kMetrics), ScreenRect());
}

}  // namespace
}  // namespace nv
