// Property codes and user-field values, both kept in the company's settings file.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "store/company/company.h"
#include "store/codes/property_codes.h"
#include "store/store_testing.h"
#include "store/codes/user_fields.h"

namespace nv {
namespace {

using testing::TempDir;

class CodeSettingsTest : public ::testing::Test {
 protected:
  CodeSettingsTest() : company_(context_) { company_.SetLocation("CO1", dir_.path()); }

  TempDir dir_;
  InstallationContext context_;
  NvCompany company_;
};

TEST_F(CodeSettingsTest, PropertyCodesReadInKeyOrderAndRewriteTheSection) {
  testing::WriteText(company_.SettingsPath(),
                     "[Misc]\r\nSingleUserUP=no\r\n[property codes]\r\nRP=Real property\r\n"
                     "LP = \"Listed property\"\r\nZZ=" +
                         std::string(120, 'z') + "\r\n[Other]\r\nk=v\r\n");
  PropertyCodeList codes = {{"old", "row"}};
  ASSERT_EQ(LoadPropertyCodes(company_, &codes), 3);
  EXPECT_EQ(codes,
            (PropertyCodeList{
                {"RP", "Real property"}, {"LP", "Listed property"}, {"ZZ", std::string(99, 'z')}}));

  ASSERT_TRUE(SavePropertyCodes(company_, {{"P1", "Personal"}, {"  ", "no code"}, {"A2", ""}}));
  EXPECT_EQ(testing::ReadText(company_.SettingsPath()),
            "[Misc]\r\nSingleUserUP=no\r\n[Other]\r\nk=v\r\n\r\n"
            "[Property Codes]\r\nP1=Personal\r\nA2=\r\n");
  ASSERT_EQ(LoadPropertyCodes(company_, &codes), 2);
  EXPECT_EQ(codes, (PropertyCodeList{{"P1", "Personal"}, {"A2", ""}}));
}

TEST_F(CodeSettingsTest, UserFieldValuesUseNumberedKeysAndCutTo34) {
  testing::WriteText(company_.SettingsPath(),
                     "[User Field 3]\r\nfirst=Red\r\nUF07=" + std::string(40, 'b') +
                         "\r\n[User Field 10]\r\nUF01=Ten\r\n");
  std::vector<std::string> values;
  ASSERT_EQ(LoadUserFieldValues(company_, 3, &values), 2);
  EXPECT_EQ(values, (std::vector<std::string>{"Red", std::string(34, 'b')}));
  ASSERT_EQ(LoadUserFieldValues(company_, 1, &values), 0);
  EXPECT_TRUE(values.empty());

  ASSERT_TRUE(SaveUserFieldValues(company_, 3, {"Green", "", "Blue"}));
  EXPECT_EQ(testing::ReadText(company_.SettingsPath()),
            "[User Field 10]\r\nUF01=Ten\r\n\r\n[User Field 3]\r\nUF01=Green\r\nUF02=Blue\r\n");
  EXPECT_FALSE(SaveUserFieldValues(company_, 11, {"x"}));
  EXPECT_EQ(LoadUserFieldValues(company_, 0, &values), 0);
}

TEST(UserFieldCaptionTest, NumbersModuloTenAndNamesWhenGiven) {
  NvCompanyRecord record;
  EXPECT_EQ(UserFieldCaption(record, 1), "1-User Field 1");
  EXPECT_EQ(UserFieldCaption(record, 9), "9-User Field 9");
  EXPECT_EQ(UserFieldCaption(record, 10), "0-User Field 10");
  record.user_fields[1].name = "Serial Number";
  record.user_fields[9].name = "Tag";
  record.user_fields[4].name = "   ";
  EXPECT_EQ(UserFieldCaption(record, 2), "2-Serial Number");
  EXPECT_EQ(UserFieldCaption(record, 10), "0-Tag");
  EXPECT_EQ(UserFieldCaption(record, 5), "5-User Field 5");
  EXPECT_EQ(UserFieldCaption(record, 0), "");
  EXPECT_EQ(UserFieldCaption(record, 11), "");
}

}  // namespace
}  // namespace nv
