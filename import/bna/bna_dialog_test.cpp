#include "import/bna/bna_dialog.h"

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/file_util.h"
#include "base/profile.h"
#include "base/temp_dir_testing.h"
#include "ui/scripted_ui.h"

namespace nv {
namespace {

constexpr char kMainProfile[] =
    "[Parameters]\r\n"
    "Data CheckBoxes=*G\r\n"
    "[conversion definitions]\r\n"
    "Asset No.=A,ENTIRE,0,\r\n"
    "Description=B,LEFT,30,\r\n"
    "Basis=C,ENTIRE,0,\r\n"
    "Basis, Tax=D,ENTIRE,0,\r\n"
    "Basis, Book=,DEFAULT,0,\r\n";

class BnaDialogTest : public ::testing::Test {
 protected:
  void SetUp() override {
    context_.installation_folder = dir_.path() + "/";
    context_.current.slot.data_path = dir_.path() + "/";
    context_.user_name = "ANNA";
    Put("@BNA_ND.IMP", kMainProfile);
    Put("report.txt", "* Assets\n1001\tDesk\t500\n1002\tChair\t75\t75\n");
  }

  void Put(const std::string& name, std::string_view bytes) {
    ASSERT_TRUE(WriteFileAtomically(dir_.File(name), bytes));
  }
  std::string Read(const std::string& file, const char* section, const char* key) {
    return ReadProfileString(dir_.File(file), section, key, "<none>", 500);
  }

  // A dialog over the user's remembered profile (or the default one), answering the
  // prompts from `script`.
  std::unique_ptr<BnaNdDialog> Open(std::string_view script = "") {
    std::string errors;
    ui_ = ScriptedUi::FromString(script, &errors);
    EXPECT_TRUE(ui_) << errors;
    state_ = std::make_unique<BnaImportState>();
    state_->profiles = StartBnaProfiles(context_.installation_folder,
                                        ReadUserImportProfile(settings_file(), "ANNA"));
    return std::make_unique<BnaNdDialog>(*state_, context_, settings_file(), *ui_,
                                         [this] { ++imports_; });
  }
  std::string settings_file() const { return dir_.File("KELNVWIN.INI"); }

  TempDir dir_;
  InstallationContext context_;
  std::unique_ptr<ScriptedUi> ui_;
  std::unique_ptr<BnaImportState> state_;
  int imports_ = 0;
};

using Lines = std::vector<std::string>;

TEST_F(BnaDialogTest, PanelStoresEachMethodIntoTheSelectedDefinition) {
  auto dialog = Open();
  ASSERT_TRUE(dialog->SelectDefinition("description"));
  EXPECT_EQ(dialog->panel().name, "Description");
  EXPECT_EQ(dialog->panel().left_count, "30");
  EXPECT_EQ(dialog->panel().column, "B");

  // Typing alone stores nothing; leaving the field does, column letters in any case.
  dialog->TypePanelField(BnaPanelField::kColumn, " aa ");
  dialog->TypePanelField(BnaPanelField::kRightCount, "4");
  EXPECT_EQ(dialog->definitions().Find("Description")->column, 1);
  dialog->SetMethod(ConversionMethod::kRight);
  const ConversionDefinition& d = *dialog->definitions().Find("Description");
  EXPECT_EQ(d.column, 26);
  EXPECT_EQ(d.method, ConversionMethod::kRight);
  EXPECT_EQ(d.number, 4);
  EXPECT_EQ(dialog->list_lines()[1], "Description\tRt 4--AA");

  ASSERT_TRUE(dialog->EnterPanelField("count", "5"));
  ASSERT_TRUE(dialog->EnterPanelField("start", "3"));
  ASSERT_TRUE(dialog->CheckMethod("mid"));
  EXPECT_EQ(d.number, 3);
  EXPECT_EQ(d.text, "5");
  EXPECT_EQ(dialog->list_lines()[1], "Description\tMd 5@3--AA");

  // SET keeps only its text; the counts of the other methods are dropped.
  ASSERT_TRUE(dialog->EnterPanelField("set", "Office"));
  ASSERT_TRUE(dialog->CheckMethod("SET"));
  EXPECT_EQ(d.number, 0);
  EXPECT_EQ(d.text, "Office");

  // A column that names none clears it; the list says so.
  ASSERT_TRUE(dialog->EnterPanelField("column", "AAA"));
  ASSERT_TRUE(dialog->CheckMethod("ENTIRE"));
  EXPECT_EQ(d.column, -1);
  EXPECT_FALSE(d.text.has_value());
  EXPECT_EQ(dialog->list_lines()[1], "Description\tNo Copy");
  EXPECT_FALSE(dialog->EnterPanelField("width", "3"));
  EXPECT_FALSE(dialog->CheckMethod("TRIM"));

  // Shown again: the method's own field carries its value.
  dialog->SelectLine(0);
  EXPECT_EQ(dialog->panel().name, "Asset No.");
  EXPECT_EQ(dialog->panel().method, ConversionMethod::kEntire);
  EXPECT_EQ(dialog->panel().set_text, "");
  dialog->SelectLine(-1);
  EXPECT_EQ(dialog->panel().name, "No value selected.");
  // With nothing selected the panel stores nowhere.
  ASSERT_TRUE(dialog->EnterPanelField("column", "Q"));
  EXPECT_EQ(dialog->definitions().Find("Asset No.")->column, 0);
}

TEST_F(BnaDialogTest, DoNotCopyHoldsTheMethodButtonsOff) {
  auto dialog = Open();
  ASSERT_TRUE(dialog->SelectDefinition("Description"));
  EXPECT_TRUE(dialog->method_buttons_enabled());
  dialog->SetNoCopy(true);
  EXPECT_FALSE(dialog->method_buttons_enabled());
  EXPECT_TRUE(dialog->definitions().Find("Description")->no_copy);
  EXPECT_EQ(dialog->list_lines()[1], "Description\tNo Copy--B");
  EXPECT_FALSE(dialog->CheckMethod("ENTIRE"));
  EXPECT_EQ(dialog->definitions().Find("Description")->method, ConversionMethod::kLeft);
  dialog->SetNoCopy(false);
  EXPECT_TRUE(dialog->method_buttons_enabled());
  EXPECT_EQ(dialog->list_lines()[1], "Description\tLft 30--B");
  // A no-copy definition shows with the box checked and its buttons off.
  dialog->SetNoCopy(true);
  dialog->SelectLine(0);
  EXPECT_TRUE(dialog->method_buttons_enabled());
  ASSERT_TRUE(dialog->SelectDefinition("Description"));
  EXPECT_FALSE(dialog->method_buttons_enabled());
}

TEST_F(BnaDialogTest, GroupBoxesChooseTheListedDefinitionsAndAreSaved) {
  auto dialog = Open();
  EXPECT_EQ(dialog->ProfileCaption(), "@BNA_ND.IMP");
  EXPECT_TRUE(dialog->GroupChecked('G'));
  EXPECT_EQ(dialog->list_lines(),
            (Lines{"Asset No.\tEntire--A", "Description\tLft 30--B", "Basis\tEntire--C"}));

  ASSERT_TRUE(dialog->SelectDefinition("Basis"));
  EXPECT_TRUE(dialog->SetGroupChecked('t', true));
  EXPECT_EQ(dialog->list_lines().back(), "Basis, Tax\tEntire--D");
  EXPECT_EQ(dialog->list_selection(), 2);  // still on Basis
  EXPECT_FALSE(dialog->SelectDefinition("Basis, Book"));
  EXPECT_TRUE(dialog->SetGroupChecked('G', false));
  EXPECT_EQ(dialog->list_lines(), (Lines{"Asset No.\tEntire--A", "Basis, Tax\tEntire--D"}));
  EXPECT_EQ(dialog->list_selection(), -1);
  EXPECT_FALSE(dialog->SetGroupChecked('X', true));

  dialog->Close();
  EXPECT_EQ(Read("@BNA_ND.IMP", "Parameters", "Data CheckBoxes"), "*T");
  EXPECT_EQ(Read("KELNVWIN.INI", "User ANNA", "Import Profile"), "@BNA_ND.IMP");
  // Reopened, the boxes come back as saved.
  dialog = Open();
  EXPECT_FALSE(dialog->GroupChecked('G'));
  EXPECT_TRUE(dialog->GroupChecked('T'));
}

TEST_F(BnaDialogTest, SelectingAnExistingProfileLoadsItsDefinitionsAndFileType) {
  Put("client.imp",
      "[Parameters]\r\nMain Profile=@BNA_ND.IMP\r\nfile type=CSV\r\n"
      "[conversion definitions]\r\nAsset No.=B,ENTIRE,0,\r\n");
  auto dialog =
      Open("file " + dir_.File("report.txt") + "\nfile " + dir_.File("client.imp") + "\n");
  dialog->SelectFile();
  EXPECT_EQ(dialog->grid().measure().columns, 4);
  ASSERT_TRUE(dialog->SelectDefinition("Description"));
  ASSERT_TRUE(dialog->EnterPanelField("column", "E"));

  dialog->SelectProfile();
  // The profile left behind kept the edit; the new one brings its own list, and its
  // group boxes come from the main profile behind it.
  EXPECT_EQ(Read("@BNA_ND.IMP", "conversion definitions", "Description"), "E,LEFT,30,");
  EXPECT_EQ(dialog->ProfileCaption(), dir_.File("client.imp"));
  EXPECT_EQ(dialog->list_lines(), (Lines{"Asset No.\tEntire--B"}));
  EXPECT_EQ(dialog->panel().name, "No value selected.");
  EXPECT_EQ(dialog->file_type(), kBnaCommaSeparated);
  EXPECT_EQ(dialog->grid().file_type(), kBnaCommaSeparated);
  EXPECT_EQ(dialog->grid().measure().columns, 1);
  EXPECT_TRUE(dialog->GroupChecked('G'));
  EXPECT_EQ(state_->profiles.main, "@BNA_ND.IMP");

  dialog->Close();
  EXPECT_EQ(Read("KELNVWIN.INI", "User ANNA", "Import Profile"), dir_.File("client.imp"));
  EXPECT_EQ(Read("client.imp", "Parameters", "source file"), dir_.File("report.txt"));
  EXPECT_NE(ui_->transcript().find("file-open title=\"Import Profiles\" filter=\"Import "
                                   "Profiles|*.imp\" folder=" +
                                   QuoteTranscriptText(dir_.path() + "/") +
                                   " name=\"\" extension=\"imp\" new-allowed"),
            std::string::npos)
      << ui_->transcript();
  EXPECT_FALSE(ui_->failed());
}

TEST_F(BnaDialogTest, ANewProfileKeepsTheDefinitionsOnlyWhenTheUserAgrees) {
  const std::string fresh = dir_.File("fresh.imp");
  auto dialog = Open("file " + fresh + "\nno\nfile " + fresh + "\nyes\n");
  ASSERT_TRUE(dialog->SelectDefinition("Asset No."));
  dialog->SelectProfile();  // answered No: nothing changes
  EXPECT_EQ(dialog->ProfileCaption(), "@BNA_ND.IMP");
  EXPECT_FALSE(std::filesystem::exists(fresh));

  dialog->SelectProfile();
  EXPECT_EQ(dialog->ProfileCaption(), fresh);
  EXPECT_EQ(Read("fresh.imp", "Parameters", "Main Profile"), "@BNA_ND.IMP");
  EXPECT_EQ(dialog->list_lines().size(), 3u);  // the same definitions, boxes from the main
  EXPECT_EQ(dialog->panel().name, "Asset No.");
  dialog->Close();
  EXPECT_EQ(Read("fresh.imp", "conversion definitions", "Basis, Tax"), "D,ENTIRE,0,");
  EXPECT_NE(ui_->transcript().find("text=\"Create a new Profile?\""), std::string::npos);
  EXPECT_FALSE(ui_->failed());
}

TEST_F(BnaDialogTest, ImportNeedsTheAssetNumberColumnAndStoresThePanelFirst) {
  auto dialog = Open();
  ASSERT_TRUE(dialog->SelectDefinition("Asset No."));
  ASSERT_TRUE(dialog->EnterPanelField("column", ""));
  dialog->ImportData();
  EXPECT_EQ(imports_, 0);
  EXPECT_NE(ui_->transcript().find(
                "message title=\"Error\" text=\"You must define the Asset No. column.\""),
            std::string::npos);
  // Typed but not yet left: Import Data stores it before the check.
  dialog->TypePanelField(BnaPanelField::kColumn, "c");
  dialog->ImportData();
  EXPECT_EQ(imports_, 1) << ui_->transcript();
  EXPECT_EQ(dialog->definitions().Find("Asset No.")->column, 2);

  // A profile without the field at all.
  Put("KELNVWIN.INI", "[User ANNA]\r\nImport Profile=bare.imp\r\n");
  Put("bare.imp", "[conversion definitions]\r\nDescription=B,ENTIRE,0,\r\n");
  dialog = Open();
  dialog->ImportData();
  EXPECT_EQ(imports_, 1);
}

TEST_F(BnaDialogTest, SourceFileAndFileTypeRebuildTheGrid) {
  auto dialog = Open("file " + dir_.File("report.txt") + "\ncancel\n");
  dialog->SelectFile();
  EXPECT_EQ(dialog->source_path(), dir_.File("report.txt"));
  EXPECT_EQ(dialog->grid().measure().data_lines, 2);
  EXPECT_EQ(dialog->grid().comment_lines(), 1);
  dialog->grid().SetVerticalPosition(1);

  dialog->SetFileType(kBnaCommaSeparated);
  EXPECT_EQ(dialog->grid().measure().columns, 1);
  EXPECT_EQ(dialog->grid().vertical_position(), 0);
  dialog->SetFileType(kBnaTabSeparated);

  // A click on the grid names the column in the panel: cells 0-4 A, 5-10 B.
  ASSERT_TRUE(dialog->SelectDefinition("Basis"));
  dialog->ClickGrid(7);
  EXPECT_EQ(dialog->panel().column, "B");
  dialog->ClickGrid(500);
  EXPECT_EQ(dialog->panel().column, "B");

  dialog->SelectFile();  // cancelled
  EXPECT_FALSE(dialog->source_path().has_value());
  EXPECT_TRUE(dialog->grid().empty());
  EXPECT_NE(ui_->transcript().find("file-open title=\"Select Source File\" filter=\"BNA Next "
                                   "Dimension report files|*.txt;*.csv\" folder=" +
                                   QuoteTranscriptText(dir_.path() + "/") +
                                   " name=\"\" extension=\"txt\" ->"),
            std::string::npos)
      << ui_->transcript();
}

TEST_F(BnaDialogTest, AScriptDrivesTheDialogAndClosingSaves) {
  std::string script =
      "bna press file\n"
      "file " +
      dir_.File("report.txt") +
      "\n"
      "bna group T on\n"
      "bna select basis, tax\n"
      "bna click 12\n"
      "bna method right\n"
      "bna field right 3\n"
      "bna no-copy on\n"
      "bna method entire\n";
  auto dialog = Open(script);
  ui_->RunBnaDialog(*dialog);
  // The refused method button fails the run and closes the dialog, which saves.
  EXPECT_TRUE(ui_->failed());
  EXPECT_EQ(Read("@BNA_ND.IMP", "conversion definitions", "Basis, Tax"), "NOCOPY,C,RIGHT,3,");
  EXPECT_EQ(Read("@BNA_ND.IMP", "Parameters", "Data CheckBoxes"), "*GT");
  EXPECT_NE(ui_->transcript().find("-> bna press file\nfile-open "), std::string::npos);
  EXPECT_NE(ui_->transcript().find("names no method button that is on"), std::string::npos);

  Open("bna press import\nbna press exit\nyes\n");
  BnaNdDialog second(*state_, context_, settings_file(), *ui_, [this] { ++imports_; });
  ui_->RunBnaDialog(second);
  EXPECT_EQ(imports_, 1);
  EXPECT_FALSE(ui_->failed());
  EXPECT_EQ(ui_->answers_left(), 1u);
}

}  // namespace
}  // namespace nv
