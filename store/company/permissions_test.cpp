#include "store/company/permissions.h"

#include <gtest/gtest.h>

#include "base/profile.h"
#include "store/store_testing.h"
#include "ui/scripted_ui.h"

namespace nv {
namespace {

using testing::TempDir;

// The letters and texts of the four levels show in LevelOfUser and RefusalTexts; here what
// lies between and beyond them.
TEST(Permissions, LevelsBetweenAndBeyondTheFourAreReadWrite) {
  EXPECT_STREQ(PermissionLevelText(1), "Read/Write Access");
  EXPECT_STREQ(PermissionLevelText(7), "Read/Write Access");
  EXPECT_EQ(PermissionLetter(kNoAccess), 'N');
  EXPECT_EQ(PermissionLetter(5), 'W');
}

TEST(Permissions, LevelOfUser) {
  EXPECT_EQ(UserPermissionLevel("*:R|BOB:F", "BOB", true), kFullAccess);
  EXPECT_EQ(UserPermissionLevel("*:R|BOB:F", "ALICE", true), kReadOnlyAccess);
  EXPECT_EQ(UserPermissionLevel("*:R|BOB:F", "bob", true), kFullAccess);  // ignoring case
  EXPECT_EQ(UserPermissionLevel("*:R|bob:w", "Bob", true), kReadWriteAccess);
  EXPECT_EQ(UserPermissionLevel("BOB:F", "ALICE", true), kFullAccess);  // no default entry
  EXPECT_EQ(UserPermissionLevel("*:X", "ALICE", true), kNoAccess);
  // A name must match whole: BOBBY is not BOB, and BOB is not the end of JIMBOB.
  EXPECT_EQ(UserPermissionLevel("BOBBY:F|JIMBOB:F|*:N", "BOB", true), kNoAccess);
  // The first entry of a name counts.
  EXPECT_EQ(UserPermissionLevel("BOB:R|BOB:F", "BOB", true), kReadOnlyAccess);
  // No letter after the colon, at the end or before the next entry.
  EXPECT_EQ(UserPermissionLevel("*:F|BOB:", "BOB", true), kNoAccess);
  EXPECT_EQ(UserPermissionLevel("BOB:|*:F", "BOB", true), kNoAccess);
  // Not defined, or not enforced: Full Access.
  EXPECT_EQ(UserPermissionLevel("", "BOB", true), kFullAccess);
  EXPECT_EQ(UserPermissionLevel("0", "BOB", true), kFullAccess);
  EXPECT_EQ(UserPermissionLevel("   ", "BOB", true), kFullAccess);
  EXPECT_EQ(UserPermissionLevel("*:N", "BOB", false), kFullAccess);
}

class CompanyPermissionTest : public ::testing::Test {
 protected:
  CompanyPermissionTest() : company_(context_) {
    context_.user_name = "alice";
    company_.SetLocation("ACME", dir_.path());
    company_.record().permissions = "*:R|BOB:F";
  }
  TempDir dir_;
  InstallationContext context_;
  NvCompany company_;
};

TEST_F(CompanyPermissionTest, SingleUserIgnoresTextUnlessSettingsSayYes) {
  EXPECT_EQ(CurrentUserPermission(company_), kFullAccess);  // no settings file
  ASSERT_TRUE(WriteProfileString(company_.SettingsPath(), "Misc", "SingleUserUP", "no"));
  EXPECT_EQ(CurrentUserPermission(company_), kFullAccess);
  ASSERT_TRUE(WriteProfileString(company_.SettingsPath(), "Other", "SingleUserUP", "yes"));
  EXPECT_EQ(CurrentUserPermission(company_), kFullAccess);  // wrong section
  ASSERT_TRUE(WriteProfileString(company_.SettingsPath(), "Misc", "SingleUserUP", "yes"));
  EXPECT_TRUE(PermissionsEnforced(company_));
  EXPECT_EQ(CurrentUserPermission(company_), kReadOnlyAccess);
  context_.user_name = "Bob";
  EXPECT_EQ(CurrentUserPermission(company_), kFullAccess);
}

TEST_F(CompanyPermissionTest, NetworkModeAppliesText) {
  context_.network_mode = true;
  EXPECT_EQ(CurrentUserPermission(company_), kReadOnlyAccess);
  company_.record().permissions = "0";
  EXPECT_EQ(CurrentUserPermission(company_), kFullAccess);
}

TEST(Permissions, ParseAndFormat) {
  EXPECT_EQ(ParsePermissions("*:R|Bob:f|junk|:W|EVE:|DAN:RX"),
            (std::vector<PermissionEntry>{
                {"*", 'R'}, {"Bob", 'F'}, {"", 'W'}, {"EVE", 'N'}, {"DAN", 'R'}}));
  EXPECT_TRUE(ParsePermissions("0").empty());
  EXPECT_TRUE(ParsePermissions("  ").empty());
  EXPECT_EQ(FormatPermissions({{"*", 'W'}, {"JSMITH", 'F'}}), "*:W|JSMITH:F");
  EXPECT_EQ(FormatPermissions({}), "");
}

TEST(Permissions, RefusalTexts) {
  ScriptedUi ui(AnswerScript{});
  RefuseFeature(ui, kReadOnlyAccess, kFullAccess);
  RefuseFeature(ui, kNoAccess);
  EXPECT_EQ(ui.transcript(),
            "message title=\"Message\" text=\"You are not permitted to use this feature.\\n\\n"
            "Permission required for this feature is Full Access.  You have Read Only Access.\"\n"
            "message title=\"Message\" text=\"You are not permitted to use this feature.  Your "
            "permission for this company is No Access.\"\n");
  EXPECT_FALSE(ui.failed());
}

}  // namespace
}  // namespace nv
