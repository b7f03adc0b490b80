#include "shell/main_commands.h"

#include <gtest/gtest.h>

#include <vector>

#include "base/file_util.h"
#include "base/temp_dir_testing.h"
#include "import/frame/frame_testing.h"
#include "store/company/asset_testing.h"
#include "ui/scripted_ui_testing.h"

namespace nv {
namespace {

using testing::Script;

TEST(MainCommands, EveryImportButtonKeepsTheWindowAndNoExportRunsThere) {
  for (const MainCommand& command : ImportWindowCommands()) {
    if (command.id == kCloseCommand || command.id == kHelpCommand) continue;
    // An importer's first windows closed by the user: it ends there, the window stays.
    auto ui = Script("close\nclose\n");
    EXPECT_FALSE(RunImportCommand(command.id, InstallationContext{}, *ui).close_window)
        << command.id;
    EXPECT_FALSE(ui->failed()) << command.id;
  }
  for (const MainCommand& command : ExportWindowCommands()) {
    EXPECT_EQ(FindCommand(ImportWindowCommands(), command.id) != nullptr,
              command.id == kCloseCommand || command.id == kHelpCommand)
        << command.id;
  }
}

// With the window's "Test import" ticked an importer runs in full but changes nothing;
// unticked, the same answers import.
TEST(MainCommands, TheTestImportBoxMakesEveryImportATestImport) {
  TempDir dir;
  const InstallationContext ctx = testing::ContextFor(dir.path());
  const std::string script =
      "file " + std::string(NV_SOURCE_DIR) + "/testdata/mba/mbademo.txt\ntext MBADEMO\nsave\nyes\n";
  auto tested = Script(script);
  RunImportCommand(108, ctx, *tested, {.test_import = true});
  EXPECT_FALSE(tested->failed()) << tested->transcript();
  EXPECT_NE(tested->transcript().find("text=\"Test import: 6 assets would be copied."),
            std::string::npos)
      << tested->transcript();
  EXPECT_TRUE(testing::FolderSnapshot(dir.path()).empty());

  auto real = Script(script);
  RunImportCommand(108, ctx, *real);
  EXPECT_NE(real->transcript().find("text=\"6 assets copied.\""), std::string::npos);
  EXPECT_TRUE(PathExists(dir.File("MBADEMO.A")));
}

TEST(MainCommands, CloseAndHelpOfBothWindows) {
  auto ui = Script("");
  EXPECT_TRUE(RunImportCommand(kCloseCommand, InstallationContext{}, *ui).close_window);
  EXPECT_FALSE(RunImportCommand(kHelpCommand, InstallationContext{}, *ui).close_window);
  EXPECT_TRUE(RunExportCommand(kCloseCommand, InstallationContext{}, *ui, {}).close_window);
  EXPECT_FALSE(RunExportCommand(kHelpCommand, InstallationContext{}, *ui, {}).close_window);
  EXPECT_FALSE(RunImportCommand(205, InstallationContext{}, *ui).close_window);  // not its button
  EXPECT_EQ(ui->transcript(),
            "help topic=\"nvsy6dis.html\"\n"
            "help topic=\"nvsy0xnp.html\"\n");
}

class ExportCommandTest : public ::testing::Test {
 protected:
  CommandEffects Run(int id, std::string_view answers) {
    ui_ = Script(answers);
    return RunExportCommand(id, InstallationContext{}, *ui_, [this] {
      ++disabled_;
      ui_->Note("disabled");
    });
  }

  std::unique_ptr<ScriptedUi> ui_;
  int disabled_ = 0;
};

constexpr char kQuestionLine[] =
    "question title=\"Question\" text=\"This export format only supports 5 user definable "
    "fields.\\n\\nContinue?\" buttons=[\"&Yes\", \"&No\", \"Cancel\"] default=\"&Yes\"";

TEST_F(ExportCommandTest, AllFieldsOnYesDisablesBeforeExportingAndCloses) {
  CommandEffects effects = Run(205, "yes\n");
  EXPECT_TRUE(effects.close_window);
  EXPECT_TRUE(effects.disable_export_buttons);
  EXPECT_EQ(disabled_, 1);
  EXPECT_EQ(ui_->transcript().rfind(std::string(kQuestionLine) + " -> yes\ndisabled\n", 0), 0u);
}

TEST_F(ExportCommandTest, AllFieldsOnNoOrCancelDoesNothing) {
  for (const char* answer : {"no", "cancel"}) {
    CommandEffects effects = Run(205, answer);
    EXPECT_FALSE(effects.close_window);
    EXPECT_FALSE(effects.disable_export_buttons);
    EXPECT_EQ(disabled_, 0);
    EXPECT_EQ(ui_->transcript(), std::string(kQuestionLine) + " -> " + answer + "\n");
  }
}

TEST_F(ExportCommandTest, SelectedDataAsksNothingDisablesAndCloses) {
  CommandEffects effects = Run(204, "");
  EXPECT_TRUE(effects.close_window);
  EXPECT_TRUE(effects.disable_export_buttons);
  EXPECT_EQ(disabled_, 1);
  EXPECT_FALSE(ui_->failed());
  EXPECT_EQ(ui_->transcript().rfind("disabled\n", 0), 0u);
}

TEST(MainCommands, ExportWithoutCallbackStillRuns) {
  auto ui = Script("yes\n");
  EXPECT_TRUE(RunExportCommand(205, InstallationContext{}, *ui, nullptr).close_window);
  EXPECT_EQ(ui->answers_left(), 0u);
}

}  // namespace
}  // namespace nv
