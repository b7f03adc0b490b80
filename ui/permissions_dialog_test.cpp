#include "ui/permissions_dialog.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>

#include "base/file_util.h"
#include "base/temp_dir_testing.h"
#include "ui/scripted_ui_testing.h"

namespace nv {
namespace {

using testing::Script;

using Texts = std::vector<std::string>;

TEST(PermissionsDialogModel, ListsEntriesSortedWithDefaultUserNamed) {
  PermissionsDialogModel model("*:R|bob:F|ALICE:W|Carl:X", "JSMITH");
  EXPECT_EQ(model.ListTexts(), (Texts{"ALICE", "bob", "Carl", "Default User (*)"}));
  EXPECT_EQ(model.selection(), 0);
  EXPECT_EQ(model.edit_text(), "ALICE");
  EXPECT_EQ(model.CheckedRadio(), kRadioReadWrite);
  model.Select(1);
  EXPECT_EQ(model.CheckedRadio(), kRadioFullAccess);
  model.Select(2);
  EXPECT_EQ(model.CheckedRadio(), kRadioReadOnly);  // letter X shows as Read Only
  model.Select(3);
  EXPECT_EQ(model.edit_text(), "Default User (*)");
  EXPECT_EQ(model.CheckedRadio(), kRadioReadOnly);
  model.ClickRadio(kRadioNoAccess);
  model.Select(2);
  model.ClickRadio(kRadioFullAccess);
  EXPECT_EQ(model.PermissionsText(), "ALICE:W|bob:F|Carl:F|*:N");
}

TEST(PermissionsDialogModel, StartsWithDefaultReadWriteAndUserFull) {
  for (std::string_view none : {"", "0", "  "}) {
    PermissionsDialogModel model(none, "JSMITH");
    EXPECT_EQ(model.ListTexts(), (Texts{"Default User (*)", "JSMITH"}));
    EXPECT_EQ(model.PermissionsText(), "*:W|JSMITH:F");
  }
}

TEST(PermissionsDialogModel, TypingSelectsOrEnablesAdd) {
  PermissionsDialogModel model("*:R|BOB:F", "JSMITH");
  model.SetEditText(" bob ");
  EXPECT_EQ(model.selection(), 0);
  EXPECT_FALSE(model.add_enabled());
  EXPECT_TRUE(model.remove_enabled());
  model.SetEditText("default user (*)");
  EXPECT_EQ(model.selection(), 1);
  EXPECT_FALSE(model.remove_enabled());  // the default user stays

  model.SetEditText("  Dave ");
  EXPECT_EQ(model.selection(), -1);
  EXPECT_TRUE(model.add_enabled());
  EXPECT_FALSE(model.remove_enabled());
  EXPECT_EQ(model.CheckedRadio(), 0);
  model.ClickRadio(kRadioNoAccess);  // nothing selected: no change
  EXPECT_EQ(model.PermissionsText(), "BOB:F|*:R");

  ASSERT_TRUE(model.Add());
  EXPECT_EQ(model.ListTexts(), (Texts{"BOB", "Dave", "Default User (*)"}));
  EXPECT_EQ(model.selection(), 1);
  EXPECT_EQ(model.edit_text(), "Dave");
  EXPECT_FALSE(model.add_enabled());
  EXPECT_FALSE(model.Add());
  EXPECT_EQ(model.CheckedRadio(), kRadioReadOnly);  // the default user's letter
  model.ClickRadio(kRadioReadWrite);
  EXPECT_EQ(model.PermissionsText(), "BOB:F|Dave:W|*:R");

  for (std::string_view bad : {"", "   ", "A|B", "*:F", "bob"}) {
    model.SetEditText(bad);
    EXPECT_FALSE(model.add_enabled()) << bad;
  }
}

TEST(PermissionsDialogModel, AddWithoutDefaultUserGivesReadWrite) {
  PermissionsDialogModel model("BOB:F", "JSMITH");
  model.SetEditText("EVE");
  ASSERT_TRUE(model.Add());
  EXPECT_EQ(model.PermissionsText(), "BOB:F|EVE:W");
  // "*" typed where there is no default user adds one.
  model.SetEditText("*");
  ASSERT_TRUE(model.Add());
  EXPECT_EQ(model.ListTexts(), (Texts{"BOB", "Default User (*)", "EVE"}));
}

TEST(PermissionsDialogModel, RemoveAsksWithDefaultNo) {
  auto ui = Script("no\nyes\n");
  PermissionsDialogModel model("*:R|BOB:F|EVE:N", "JSMITH");
  model.SetEditText("bob");
  EXPECT_FALSE(model.Remove(*ui));
  EXPECT_EQ(model.PermissionsText(), "BOB:F|*:R|EVE:N");  // written in list order
  EXPECT_TRUE(model.Remove(*ui));
  EXPECT_EQ(model.PermissionsText(), "*:R|EVE:N");
  EXPECT_EQ(model.selection(), -1);
  EXPECT_EQ(model.edit_text(), "");
  // The default user and unlisted names are not removed, and nobody is asked.
  model.SetEditText("Default User (*)");
  EXPECT_FALSE(model.Remove(*ui));
  model.SetEditText("NOBODY");
  EXPECT_FALSE(model.Remove(*ui));
  model.Help(*ui);
  EXPECT_EQ(ui->transcript(),
            "question title=\"Question\" text=\"Remove user BOB?\\n\\nUser Permissions will "
            "revert to default user.\" buttons=[\"&Yes\", \"&No\", \"Cancel\"] default=\"&No\" "
            "-> no\n"
            "question title=\"Question\" text=\"Remove user BOB?\\n\\nUser Permissions will "
            "revert to default user.\" buttons=[\"&Yes\", \"&No\", \"Cancel\"] default=\"&No\" "
            "-> yes\n"
            "help topic=\"nvsy0w6r.html\"\n");
  EXPECT_FALSE(ui->failed());
}

// Every file of a folder with its bytes.
std::map<std::string, std::string> Snapshot(const std::string& folder) {
  std::map<std::string, std::string> files;
  for (const auto& entry : std::filesystem::directory_iterator(folder))
    files[entry.path().filename().string()] =
        ReadFileBytes(entry.path().string()).value_or("<unreadable>");
  return files;
}

class EditUserPermissionsTest : public ::testing::Test {
 protected:
  EditUserPermissionsTest() : company_(context_) {
    context_.run.product_name = "NORVANE";
    context_.user_name = "JSMITH";
    context_.network_mode = true;
    company_.SetLocation("ACME", dir_.path());
    EXPECT_TRUE(WriteTextFile(company_.SettingsPath(), "[Misc]\nSingleUserUP=yes\n"));
    EXPECT_TRUE(WriteTextFile(company_.FilePath("LOG"), "a line\n"));
  }

  // A dialog that must not open.
  static void NoDialog(PermissionsDialogModel&) { ADD_FAILURE() << "dialog opened"; }

  TempDir dir_;
  InstallationContext context_;
  NvCompany company_;
};

TEST_F(EditUserPermissionsTest, SingleUserOnlyGetsTheNote) {
  context_.network_mode = false;
  auto ui = Script("");
  EXPECT_FALSE(EditUserPermissions(company_, kFullAccess, *ui, NoDialog));
  EXPECT_EQ(ui->transcript(),
            "message title=\"Note\" text=\"This feature is only available for network versions "
            "of NORVANE\"\n");
}

TEST_F(EditUserPermissionsTest, LessThanFullAccessIsRefused) {
  company_.record().permissions = "*:W";
  auto ui = Script("");
  EXPECT_FALSE(EditUserPermissions(company_, kReadWriteAccess, *ui, NoDialog));
  EXPECT_EQ(ui->transcript(),
            "message title=\"Message\" text=\"You are not permitted to use this feature.\\n\\n"
            "Permission required for this feature is Full Access.  You have Read/Write "
            "Access.\"\n");
  EXPECT_EQ(company_.record().permissions, "*:W");
}

TEST_F(EditUserPermissionsTest, FirstTimeQuestionNoChangesNothing) {
  const auto before = Snapshot(dir_.path());
  auto ui = Script("no\n");
  EXPECT_FALSE(EditUserPermissions(company_, kFullAccess, *ui, NoDialog));
  EXPECT_EQ(company_.record().permissions, "");
  EXPECT_EQ(Snapshot(dir_.path()), before);
  EXPECT_EQ(ui->transcript(),
            "question title=\"Question\" text=\"This company currently has no user permissions "
            "defined:  All users\\nhave full access.  If you edit user permissions, by default "
            "you (JSMITH)\\nwill be given full access and all other users will only be allowed "
            "to\\nread or change company.  That is, other users cannot change user "
            "permissions,\\nunless you set them to full access.\\n\\nAlso note that any of your "
            "changes to user permissions are not actually made\\nuntil you save the company data "
            "from the company edit screen.\\n\\nEdit user permissions?\" buttons=[\"&Yes\", "
            "\"&No\", \"Cancel\"] default=\"&No\" -> no\n");
}

TEST_F(EditUserPermissionsTest, DialogResultReplacesTheText) {
  auto ui = Script("yes\n");
  EXPECT_TRUE(EditUserPermissions(company_, kFullAccess, *ui, [](PermissionsDialogModel& m) {
    EXPECT_EQ(m.PermissionsText(), "*:W|JSMITH:F");
    m.SetEditText("BOB");
    m.Add();
    m.ClickRadio(kRadioNoAccess);
  }));
  EXPECT_EQ(company_.record().permissions, "BOB:N|*:W|JSMITH:F");
  // With permissions defined there is no question.
  EXPECT_TRUE(EditUserPermissions(company_, kFullAccess, *ui, [](PermissionsDialogModel& m) {
    m.Select(0);
    m.ClickRadio(kRadioReadOnly);
  }));
  EXPECT_EQ(company_.record().permissions, "BOB:R|*:W|JSMITH:F");
  EXPECT_EQ(ui->answers_left(), 0u);
  EXPECT_FALSE(ui->failed());
}

}  // namespace
}  // namespace nv
