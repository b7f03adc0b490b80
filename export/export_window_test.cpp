// The export window's model: the lists and their buttons, moving a column by its letters,
// the questions of Open, Save, Save As and Delete, and the checks and steps of a run up to
// the writing of the file.
#include "export/export_window.h"

#include <gtest/gtest.h>

#include "base/profile.h"
#include "base/temp_dir_testing.h"
#include "export/exporters.h"
#include "export/select_export_definition.h"
#include "export/text_file_export.h"
#include "store/company/asset_testing.h"
#include "store/company/master_file.h"
#include "store/store_testing.h"
#include "ui/scripted_ui_testing.h"

namespace nv {
namespace {

using testing::Script;

bool Holds(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

class ExportWindowTest : public ::testing::Test {
 protected:
  // Company ACME with schedules B ("Book") and T ("Tax"), selected and closed again, as the
  // window gets it.
  ExportWindowTest() : ctx_(testing::ContextFor(dir_.path())), company_(ctx_) {
    company_.record() = testing::TwoBookCompany();
    EXPECT_EQ(company_.Create({"ACME", "Acme Tools"}, NvCompany::kOpenI1 | NvCompany::kOpenI2), 0);
    auto quiet = Script("");
    EXPECT_EQ(company_.Open("ACME", NvCompany::kOpenI1 | NvCompany::kOpenI2, *quiet), 1);
    EXPECT_EQ(company_.Close(), 0);
  }

  // A window whose file writing is recorded instead of done.
  std::unique_ptr<ExportWindow> Window(Ui& ui) {
    auto window = std::make_unique<ExportWindow>(ctx_, company_, ui);
    window->set_write([this](const InstallationContext&, std::string_view number,
                             const ExportDefinition& definition, const KelSelection* selection,
                             Ui&) -> std::optional<int> {
      written_.push_back(std::string(number) + " " + definition.folder + definition.file_name +
                         (selection ? " selected" : ""));
      return 1;
    });
    return window;
  }

  // Adds the available values of these texts as columns.
  static void AddColumns(ExportWindow& window, std::initializer_list<const char*> values) {
    for (const char* text : values) {
      bool found = false;
      for (size_t i = 0; i < window.available().size() && !found; ++i) {
        if (window.available()[i].text != text) continue;
        window.ChooseValue(i);
        window.Add();
        found = true;
      }
      ASSERT_TRUE(found) << text;
    }
  }

  std::string GlobalFile() const { return ctx_.installation_folder + kGlobalExportFile; }
  std::string CompanyFile() const { return company_.FilePath(kCompanyExportExtension); }

  TempDir dir_;
  InstallationContext ctx_;
  NvCompany company_;
  std::vector<std::string> written_;
};

TEST_F(ExportWindowTest, GroupsListTheirFieldsAndAddMakesColumnsOfThem) {
  auto ui = Script("");
  auto window = Window(*ui);
  ASSERT_EQ(window->groups().size(), 3u);
  EXPECT_EQ(window->groups()[1].text, "B-Book");
  EXPECT_EQ(window->groups()[2].text, "T-Tax");
  const size_t general = window->available().size();
  EXPECT_EQ(general, GeneralExportFields().size());

  window->ShowGroup('T', true);
  EXPECT_EQ(window->available().size(), general + ScheduleExportFields().size());
  AddColumns(*window, {"Cost", "Depr. Method, Tax"});
  EXPECT_EQ(window->ColumnLines(), (std::vector<std::string>{"A\tCost", "B\tDepr. Method, Tax"}));
  const ExportColumn& method = window->definition().columns[1];
  EXPECT_EQ(method.group, 'T');
  EXPECT_EQ(method.heading, "Depr. Method, Tax");
  EXPECT_TRUE(method.addition && method.disposition && method.current);
  EXPECT_FALSE(method.none_of_the_above);
  EXPECT_TRUE(window->definition().changed);

  // Hiding a group takes its values away and with them the chosen one.
  window->ChooseValue(0);
  window->ShowGroup(kExportGeneralGroup, false);
  EXPECT_EQ(window->available().size(), ScheduleExportFields().size());
  EXPECT_FALSE(window->CanAdd());
}

TEST_F(ExportWindowTest, ArrowsWorkOnlyWithAChoiceAndPropertiesFollowTheChosenColumn) {
  auto ui = Script("");
  auto window = Window(*ui);
  EXPECT_FALSE(window->CanAdd());
  EXPECT_FALSE(window->CanRemove());
  window->Add();
  window->Remove();
  EXPECT_TRUE(window->definition().columns.empty());
  EXPECT_FALSE(window->definition().changed);

  AddColumns(*window, {"Asset No.", "Desc."});
  EXPECT_EQ(window->chosen_column(), 1u);  // the new column is chosen
  EXPECT_TRUE(window->CanRemove());
  window->Remove();
  EXPECT_FALSE(window->CanRemove());
  EXPECT_FALSE(window->PropertiesEnabled());
  EXPECT_EQ(window->ColumnText(), "");
  window->SetHeading("ignored");
  window->SetFlag(ExportWindow::Flag::kNoneOfTheAbove, true);
  ASSERT_EQ(window->definition().columns.size(), 1u);
  EXPECT_EQ(window->definition().columns[0].heading, "Asset No.");
  EXPECT_FALSE(window->definition().columns[0].none_of_the_above);

  window->ChooseColumn(0);
  window->SetFlag(ExportWindow::Flag::kNoneOfTheAbove, true);
  EXPECT_TRUE(window->FlagOf(ExportWindow::Flag::kNoneOfTheAbove));
  EXPECT_TRUE(window->definition().columns[0].none_of_the_above);
}

TEST_F(ExportWindowTest, ColumnLettersMoveTheColumnAndBadLettersLeaveItWhereItWas) {
  auto ui = Script("");
  auto window = Window(*ui);
  AddColumns(*window, {"Cost", "Desc.", "Location"});
  window->ChooseColumn(0);
  EXPECT_TRUE(window->SetColumnText("c"));
  EXPECT_EQ(window->ColumnLines(),
            (std::vector<std::string>{"A\tDesc.", "B\tLocation", "C\tCost"}));
  EXPECT_EQ(window->ColumnText(), "C");  // the choice moved with the column
  EXPECT_TRUE(window->SetColumnText("B"));
  EXPECT_EQ(window->definition().columns[1].heading, "Cost");

  for (const char* bad : {"D", "", "1", "AAA", "ZZ"}) {
    EXPECT_FALSE(window->SetColumnText(bad)) << bad;
    EXPECT_EQ(window->ColumnText(), "B") << bad;
  }
  EXPECT_EQ(window->definition().columns[1].heading, "Cost");
}

TEST_F(ExportWindowTest, SaveAsThenOpenBringsTheDefinitionBack) {
  auto ui = Script("set name   Fixed Assets  \nset applies_to all\nclick ok\n");
  auto window = Window(*ui);
  EXPECT_EQ(window->DefinitionText(), kNoDefinitionText);
  window->ShowGroup('B', true);
  AddColumns(*window, {"Asset No.", "Depr. Method, Book"});
  window->SetHeading("Method");
  window->SetFileName("fa.txt");
  window->SaveAs();
  EXPECT_EQ(window->DefinitionText(),
            "Current Definition: Fixed Assets\r\n\r\nDefined for All Companies");
  EXPECT_FALSE(window->definition().changed);
  EXPECT_EQ(ReadProfileString(GlobalFile(), "fixed assets", "1", "", 300),
            "Depr. Method,66,ADC,Method");
  EXPECT_EQ(ReadProfileString(GlobalFile(), "Fixed Assets", "Filename", "", 300), "fa.txt");

  auto other = Script("definition FIXED ASSETS\nclick ok\n");
  auto opened = Window(*other);
  opened->Open();
  EXPECT_EQ(opened->ColumnLines(), window->ColumnLines());
  EXPECT_EQ(opened->file_name_text(), "fa.txt");
  EXPECT_EQ(opened->DefinitionText(), window->DefinitionText());
  EXPECT_FALSE(opened->definition().changed);
  EXPECT_FALSE(ui->failed());
  EXPECT_FALSE(other->failed()) << other->transcript();
}

TEST_F(ExportWindowTest, SaveAndDeleteSayWhyTheyCannotAct) {
  // Save without a name goes through Save As; a second Save finds nothing to save.
  auto ui = Script("set name Mine\nclick ok\nno\nyes\n");
  auto window = Window(*ui);
  window->Delete();
  AddColumns(*window, {"Cost"});
  window->Save();
  EXPECT_EQ(ListDefinitions(CompanyFile()), std::vector<std::string>{"Mine"});
  window->Save();
  window->Delete();  // no
  EXPECT_EQ(ListDefinitions(CompanyFile()).size(), 1u);
  window->Delete();  // yes
  EXPECT_TRUE(ListDefinitions(CompanyFile()).empty());
  EXPECT_EQ(window->DefinitionText(), kNoDefinitionText);
  EXPECT_EQ(window->ColumnLines().size(), 1u);  // what the window showed stays

  const std::string& t = ui->transcript();
  EXPECT_TRUE(
      t.starts_with("message title=\"Message\" text=\"You must open an existing "
                    "definition before deleting it.\"\nselect-export-definition "))
      << t;
  EXPECT_TRUE(Holds(t, "message title=\"Error\" text=\"No changes to save.\"\n")) << t;
  EXPECT_TRUE(Holds(t,
                    "text=\"Are you sure you want to delete definition Mine?\" buttons=[\"&Yes\", "
                    "\"&No\", \"Cancel\"] default=\"&No\" -> no\n"))
      << t;
  EXPECT_FALSE(ui->failed()) << t;
}

TEST_F(ExportWindowTest, OpenOffersToSaveUnsavedChangesFirst) {
  ExportDefinition stored;
  stored.name = "Old";
  stored.columns.push_back({1001, kExportGeneralGroup, "No.", true, false, false, false});
  ASSERT_TRUE(SaveDefinition(CompanyFile(), stored));

  // A new definition: Cancel stops before the dialog.
  auto cancelled = Script("cancel\n");
  auto window = Window(*cancelled);
  AddColumns(*window, {"Cost"});
  window->Open();
  EXPECT_EQ(cancelled->transcript(),
            "question title=\"Question\" text=\"Save new definition?\" buttons=[\"&Yes\", "
            "\"&No\", \"Cancel\"] default=\"&Yes\" -> cancel\n");

  // A named one: Yes saves it under its name, then the dialog opens another.
  auto ui = Script("definition Old\nclick ok\nyes\ndefinition Old\nclick ok\n");
  auto named = Window(*ui);
  named->Open();
  named->ChooseColumn(0);
  named->SetHeading("Number");
  named->Open();
  EXPECT_TRUE(Holds(ui->transcript(), "text=\"Save changes to definition Old?\""))
      << ui->transcript();
  EXPECT_EQ(ReadProfileString(CompanyFile(), "Old", "0", "", 300), "Asset No.,42,A,Number");
  EXPECT_EQ(named->Heading(), "");  // reopened: no column chosen
  EXPECT_EQ(named->definition().columns.at(0).heading, "Number");
}

TEST_F(ExportWindowTest, ExportChecksItsValuesAndOffersToSaveBeforeWriting) {
  auto ui = Script("cancel\nno\nno\n");
  auto window = Window(*ui);
  EXPECT_EQ(window->folder_text(), company_.folder());
  EXPECT_EQ(window->file_name_text(), kDefaultExportFileName);
  window->SetFolder("  ");
  EXPECT_FALSE(window->Export());
  window->SetFolder(dir_.path() + "/");
  window->SetFileName("");
  EXPECT_FALSE(window->Export());
  window->SetFileName(" out.txt ");
  EXPECT_FALSE(window->Export());
  AddColumns(*window, {"Cost"});
  EXPECT_FALSE(window->Export());  // cancel at the save question
  EXPECT_TRUE(written_.empty());
  EXPECT_TRUE(window->Export());  // no: the run goes on unsaved
  ASSERT_EQ(written_.size(), 1u);
  EXPECT_EQ(written_[0], "ACME " + dir_.path() + "/out.txt");

  const std::string& t = ui->transcript();
  size_t at = 0;
  for (const char* step : {"\"No export folder defined.\"", "\"No export file name defined.\"",
                           "\"No columns to export.\"", "\"Save this export definition?\"",
                           "default=\"&No\" -> cancel", "\"Save this export definition?\""}) {
    at = t.find(step, at);
    ASSERT_NE(at, std::string::npos) << step << " in\n" << t;
  }
  EXPECT_EQ(ui->answers_left(), 1u);
}

TEST_F(ExportWindowTest, SelectedAssetsRunTheSelectionOnTheCompanyOpenForReading) {
  auto ui = Script("no\n");
  auto window = Window(*ui);
  AddColumns(*window, {"Cost"});
  window->SetSelectAssets(true);
  ASSERT_FALSE(window->Export());  // no selection window to run
  EXPECT_TRUE(Holds(ui->transcript(),
                    "message title=\"Error\" text=\"Unable to Initialize Asset Selection.\""));

  std::vector<std::string> seen;
  bool answer = false;
  auto quiet = Script("no\nno\n");
  auto again = Window(*quiet);
  AddColumns(*again, {"Cost"});
  again->SetSelectAssets(true);
  again->set_select_assets(
      [&](Ui&, NvCompany& company, KelSelection& selection, std::string_view title) {
        seen.push_back(std::string(title) + (company.is_open() ? " open" : " closed"));
        selection.schedule = 'B';
        return answer;
      });
  EXPECT_FALSE(again->Export());  // Cancel in the selection ends the run
  EXPECT_TRUE(written_.empty());
  answer = true;
  EXPECT_TRUE(again->Export());
  EXPECT_EQ(seen, (std::vector<std::string>{"Export Asset Data open", "Export Asset Data open"}));
  EXPECT_FALSE(company_.is_open());
  ASSERT_EQ(written_.size(), 1u);
  EXPECT_TRUE(written_[0].ends_with(" selected"));
  EXPECT_EQ(again->selection().schedule, 'B');
}

TEST(ExportDefinitionPickerTest, SaveAsAsksBeforeOverwritingAndOpenRefusesUnknownNames) {
  TempDir dir;
  const std::string company = dir.File("ACME.EXP");
  const std::string global = dir.File("global.exp");
  ExportDefinition stored;
  stored.name = "Shared";
  ASSERT_TRUE(SaveDefinition(global, stored));

  auto ui = Script("no\nyes\n");
  ExportDefinitionPicker save(SelectDefinitionMode::kSaveAs, company, global, "shared",
                              ExportScope::kAllCompanies, *ui);
  EXPECT_FALSE(save.Accept());  // no: the dialog stays
  EXPECT_TRUE(save.Accept());
  ASSERT_TRUE(save.chosen());
  EXPECT_EQ(save.chosen()->name, "shared");
  save.SetScope(ExportScope::kThisCompany);  // the company file has none of that name
  EXPECT_TRUE(save.Accept());
  EXPECT_EQ(ui->answers_left(), 0u);
  EXPECT_TRUE(Holds(ui->transcript(), "\"Overwrite existing definition shared?\""));

  ExportDefinitionPicker open(SelectDefinitionMode::kOpen, company, global, "",
                              ExportScope::kThisCompany, *ui);
  ASSERT_EQ(open.items().size(), 1u);
  open.SetName("Shared");
  EXPECT_FALSE(open.Accept());  // not in the company's file
  EXPECT_TRUE(Holds(ui->transcript(),
                    "message title=\"Error\" text=\"Export definition Shared not found.\""));
  open.Pick(0);
  EXPECT_EQ(open.scope(), ExportScope::kAllCompanies);
  EXPECT_TRUE(open.Accept());
  open.SetName("   ");
  EXPECT_TRUE(open.Accept());  // an empty name chooses no definition
  EXPECT_FALSE(open.chosen());
}

TEST_F(ExportWindowTest, AScriptLineTheWindowDoesNotKnowFailsTheRun) {
  auto ui = Script("show B\nclick nothing\n");
  auto window = Window(*ui);
  EXPECT_FALSE(ui->RunWindow(*window));
  EXPECT_TRUE(ui->failed());
  EXPECT_TRUE(Holds(ui->transcript(), "\nexport-window definition=none changed=no show=[*,B] "))
      << ui->transcript();
  EXPECT_TRUE(Holds(ui->transcript(), "error: line 2 (\"click nothing\"): no such button"))
      << ui->transcript();
}

// From the main window's command to the file: the company chosen, columns composed and
// renamed in the window, the run, and the lines it wrote.
TEST_F(ExportWindowTest, AScriptedRunWritesTheComposedColumns) {
  auto quiet = Script("");
  ASSERT_EQ(company_.Open("ACME", NvCompany::kOpenI1 | NvCompany::kOpenI2, *quiet), 1);
  std::vector<NvAsset> assets;
  for (long n : {9, 3}) {
    assets.push_back(testing::MakeAsset(company_.record(), n));
    ASSERT_EQ(company_.AddAsset(&assets.back()), kOk);
  }
  ASSERT_EQ(company_.Close(), 0);
  MasterFile master;
  master.companies = {{"ACME", "Acme Tools"}};
  ASSERT_EQ(WriteMasterFile(ctx_.data_directory(), master), MasterFileStatus::kOk);

  auto ui = Script(
      "choose 0\n"
      "show b\n"
      "add Asset No.\n"
      "add Depr. Method, Book\n"
      "set heading Method\n"
      "column A\n"
      "set heading Number\n"
      "set file_name out.txt\n"
      "set folder " +
      dir_.path() +
      "\n"
      "click export\n"
      "no\n");
  RunExportDefinitions(ctx_, *ui);
  EXPECT_FALSE(ui->failed()) << ui->transcript();
  EXPECT_EQ(ui->answers_left(), 0u);
  EXPECT_TRUE(ui->transcript().ends_with("message title=\"Note\" text=\"2 assets exported.\"\n"))
      << ui->transcript();
  // Asset number order: 3 before 9.
  EXPECT_EQ(testing::ReadText(dir_.File("out.txt")), "Number\tMethod\r\n" +
                                                         assets[1].number.Text() + "\t2\r\n" +
                                                         assets[0].number.Text() + "\t2\r\n");
}

// The whole-company command's way in: no company chosen there, Alt held, and the window
// asks for the company again.
TEST_F(ExportWindowTest, AltHeldWithoutACompanyOpensTheWindowAfterASecondChoice) {
  MasterFile master;
  master.companies = {{"ACME", "Acme Tools"}};
  ASSERT_EQ(WriteMasterFile(ctx_.data_directory(), master), MasterFileStatus::kOk);
  auto ui = Script("alt-held\nclose\nchoose 0\nclose\n");
  CompanyInUseLock lock;
  NvCompany company(ctx_);
  CreateTextFileForExport(ctx_, *ui, lock, company);
  EXPECT_FALSE(ui->failed()) << ui->transcript();
  const std::string& t = ui->transcript();
  const size_t note = t.find("message title=\"Note\" text=\"Entering Advanced Export Program\"");
  ASSERT_NE(note, std::string::npos) << t;
  EXPECT_NE(t.find("\nexport-window definition=none ", note), std::string::npos) << t;
  EXPECT_TRUE(t.ends_with(" -> close\n")) << t;
}

}  // namespace
}  // namespace nv
