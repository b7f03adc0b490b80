#include "shell/main_commands.h"

#include <gtest/gtest.h>

#include <vector>

#include "export/exporters.h"
#include "import/importers.h"
#include "ui/scripted_ui_testing.h"

namespace nv {
namespace {

using testing::Script;

std::vector<std::pair<int, std::string>> Rows(std::span<const MainCommand> commands) {
  std::vector<std::pair<int, std::string>> rows;
  for (const MainCommand& c : commands) rows.emplace_back(c.id, std::string(c.text));
  return rows;
}

std::string NoteLine(const std::string& text) {
  return "message title=\"Note\" text=" + QuoteTranscriptText(text) + "\n";
}

TEST(MainCommands, TablesHoldTheButtonsInCreationOrder) {
  EXPECT_EQ(Rows(ImportWindowCommands()), (std::vector<std::pair<int, std::string>>{
                                              {102, "Best PC/FAS"},
                                              {103, "Best FAS1000 or FAS2000"},
                                              {104, "Best FAS for Windows"},
                                              {105, "AICPA Depreciation"},
                                              {107, "BNA Next Dimension"},
                                              {106, "NORVANE Text Format"},
                                              {108, "MBA Software"},
                                              {1, "Close"},
                                              {9, "Help"},
                                          }));
  EXPECT_EQ(Rows(ExportWindowCommands()), (std::vector<std::pair<int, std::string>>{
                                              {205, "Export All Asset Data Fields"},
                                              {204, "Export Selected Asset Data"},
                                              {1, "Close"},
                                              {9, "Help"},
                                          }));
  EXPECT_EQ(FindCommand(ImportWindowCommands(), 106)->text, "NORVANE Text Format");
  EXPECT_EQ(FindCommand(ImportWindowCommands(), 205), nullptr);
  EXPECT_EQ(FindCommand(ExportWindowCommands(), 102), nullptr);
}

TEST(MainCommands, EachImportButtonRunsItsOwnImporterAndKeepsTheWindow) {
  const std::vector<std::pair<int, std::string>> sources = {
      {102, "Best PC/FAS"},          {103, "Best FAS1000 or FAS2000"},
      {104, "Best FAS for Windows"}, {105, "AICPA Depreciation"},
      {107, "BNA Next Dimension"},   {106, "the NORVANE text format"},
      {108, "MBA Software"},
  };
  for (const auto& [id, source] : sources) {
    auto ui = Script("");
    CommandEffects effects = RunImportCommand(id, InstallationContext{}, *ui);
    EXPECT_FALSE(effects.close_window) << id;
    EXPECT_EQ(ui->transcript(), NoteLine(ImportNotAvailableText(source))) << id;
    EXPECT_NE(ui->transcript().find(source), std::string::npos);
  }
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
  EXPECT_EQ(ui_->transcript(),
            std::string(kQuestionLine) + " -> yes\ndisabled\n" +
                NoteLine(ExportNotAvailableText("export of all asset data fields to a text file")));
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
  EXPECT_EQ(ui_->transcript(),
            "disabled\n" + NoteLine(ExportNotAvailableText(
                               "export of selected asset data by export definitions")));
}

TEST(MainCommands, ExportWithoutCallbackStillRuns) {
  auto ui = Script("yes\n");
  EXPECT_TRUE(RunExportCommand(205, InstallationContext{}, *ui, nullptr).close_window);
  EXPECT_EQ(ui->answers_left(), 0u);
}

}  // namespace
}  // namespace nv
