// Property codes and user-field values, both kept in the company's settings file.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "store/codes/property_codes.h"
#include "store/codes/user_fields.h"
#include "store/store_testing.h"

namespace nv {
namespace {

using testing::TempDir;

class CodeSettingsTest : public ::testing::Test {
 protected:
  TempDir dir_;
  const std::string settings_ = dir_.File("CO1.ini");
};

TEST_F(CodeSettingsTest, PropertyCodesReadInKeyOrderAndRewriteTheSection) {
  testing::WriteText(settings_,
                     "[Misc]\r\nSingleUserUP=no\r\n[property codes]\r\nRP=Real property\r\n"
                     "LP = \"Listed property\"\r\nZZ=" +
                         std::string(120, 'z') + "\r\n[Other]\r\nk=v\r\n");
  PropertyCodeList codes = {{"old", "row"}};
  ASSERT_EQ(LoadPropertyCodes(settings_, &codes), 3);
  EXPECT_EQ(codes,
            (PropertyCodeList{
                {"RP", "Real property"}, {"LP", "Listed property"}, {"ZZ", std::string(99, 'z')}}));

  ASSERT_TRUE(SavePropertyCodes(settings_, {{"P1", "Personal"}, {"  ", "no code"}, {"A2", ""}}));
  EXPECT_EQ(testing::ReadText(settings_),
            "[Misc]\r\nSingleUserUP=no\r\n[Other]\r\nk=v\r\n"
            "[Property Codes]\r\nP1=Personal\r\nA2=\r\n");
  ASSERT_EQ(LoadPropertyCodes(settings_, &codes), 2);
  EXPECT_EQ(codes, (PropertyCodeList{{"P1", "Personal"}, {"A2", ""}}));
}

TEST_F(CodeSettingsTest, UserFieldValuesUseNumberedKeysAndCutTo34) {
  testing::WriteText(settings_, "[User Field 3]\r\nfirst=Red\r\nUF07=" + std::string(40, 'b') +
                                    "\r\n[User Field 10]\r\nUF01=Ten\r\n");
  std::vector<std::string> values;
  ASSERT_EQ(LoadUserFieldValues(settings_, 3, &values), 2);
  EXPECT_EQ(values, (std::vector<std::string>{"Red", std::string(34, 'b')}));
  ASSERT_EQ(LoadUserFieldValues(settings_, 1, &values), 0);
  EXPECT_TRUE(values.empty());

  ASSERT_TRUE(SaveUserFieldValues(settings_, 3, {"Green", "", "Blue"}));
  EXPECT_EQ(testing::ReadText(settings_),
            "[User Field 10]\r\nUF01=Ten\r\n[User Field 3]\r\nUF01=Green\r\nUF02=Blue\r\n");
  EXPECT_FALSE(SaveUserFieldValues(settings_, 11, {"x"}));
  EXPECT_EQ(LoadUserFieldValues(settings_, 0, &values), 0);
}

TEST(UserFieldCaptionTest, NumbersModuloTenAndNamesWhenGiven) {
  EXPECT_EQ(UserFieldCaption(1, ""), "1-User Field 1");
  EXPECT_EQ(UserFieldCaption(10, ""), "0-User Field 10");
  EXPECT_EQ(UserFieldCaption(2, "Serial Number"), "2-Serial Number");
  EXPECT_EQ(UserFieldCaption(10, "Tag"), "0-Tag");
  EXPECT_EQ(UserFieldCaption(5, "   "), "5-User Field 5");
  EXPECT_EQ(UserFieldCaption(0, "Tag"), "");
  EXPECT_EQ(UserFieldCaption(11, "Tag"), "");
}

}  // namespace
}  // namespace nv
