#include "ui/selection/selection_window.h"

#include <gtest/gtest.h>

#include "base/profile.h"
#include "base/temp_dir_testing.h"
#include "store/codes/account_groups.h"
#include "store/codes/loc_cat_list.h"
#include "store/codes/property_codes.h"
#include "store/company/asset_testing.h"
#include "store/company/company.h"
#include "ui/screen/edit_field.h"
#include "ui/scripted_ui_testing.h"
#include "ui/selection/criterion.h"
#include "ui/selection/select_assets.h"
#include "ui/selection/selection_match.h"

namespace nv {
namespace {

using testing::Script;

// A company's lists: three locations (one whose code holds a hyphen), no categories, no
// account groups, two property codes and values for the first user field.
class SelectionWindowTest : public ::testing::Test {
 protected:
  SelectionWindowTest() {
    setup_.files = {dir_.File("ACME.ini"), dir_.File("KELNVWIN.INI")};
    setup_.schedules = {{'B', "Book"}, {'T', "Tax"}};
    setup_.user_field_names[0] = "Building";
    setup_.locations_file = dir_.File("ACME.LOC");
    setup_.categories_file = dir_.File("ACME.CAT");
    setup_.company_folder = dir_.path() + "/";
    setup_.company_number = "ACME";
    NvLocCatList locations;
    locations.Insert("01", "Main Office");
    locations.Insert("02", "Plant");
    locations.Insert("N-7", "North yard");
    EXPECT_EQ(SaveLocCatList(setup_.locations_file, locations), 3);
    EXPECT_TRUE(SavePropertyCodes(setup_.files.company_settings,
                                  {{"RE", "Real estate"}, {"VE", "Vehicles"}}));
    EXPECT_TRUE(SaveUserFieldValues(setup_.files.company_settings, 1, {"East", "West"}));
  }

  std::string Stored(bool all_companies, const std::string& name) const {
    return ReadProfileString(
        all_companies ? setup_.files.installation_settings : setup_.files.company_settings,
        kAssetSelectionSection, name, "", 2000);
  }

  TempDir dir_;
  SelectionWindowSetup setup_;
};

std::string Criterion(const SelectionWindow& w, int field) {
  return w.selection().criteria[static_cast<size_t>(field)].text;
}

TEST_F(SelectionWindowTest, OkChecksEveryCriterionInUseAndNamesTheFirstRefused) {
  auto ui = Script("");
  SelectionWindow w(*ui, setup_, KelSelection{}, "");
  EXPECT_EQ(w.title(), kSelectionWindowTitle);
  w.SetText(kSelDescription, "a-b-c");          // a second hyphen in one item
  w.SetText(kSelDatePurchased, "02/30/2020-");  // no such day
  w.SetText(kSelBasis, "100-x");                // not an amount
  w.SetText(kSelDisposalDate, "13/01/2020");
  w.SetInUse(kSelDisposalDate, false);  // not in use: not checked
  EXPECT_FALSE(w.Ok());
  EXPECT_EQ(w.refused_field(), kSelDescription);
  w.SetText(kSelDescription, "'a-b'-c");
  EXPECT_FALSE(w.Ok());
  EXPECT_EQ(w.refused_field(), kSelDatePurchased);
  w.SetText(kSelDatePurchased, "02/29/2020-");
  EXPECT_FALSE(w.Ok());
  EXPECT_EQ(w.refused_field(), kSelBasis);
  w.SetText(kSelBasis, "100-");
  EXPECT_TRUE(w.Ok());
  EXPECT_FALSE(w.refused_field());
  EXPECT_EQ(ui->transcript(),
            "message title=\"Message\" text=\"Error on input\"\n"
            "message title=\"Error\" text=\"Invalid date\"\n"
            "message title=\"Error\" text=\"Invalid input\"\n");
}

TEST_F(SelectionWindowTest, TypingUpperCasesCutsToTheWidthAndSwitchesTheCriterion) {
  auto ui = Script("");
  SelectionWindow w(*ui, setup_, KelSelection{}, "Pick");
  w.SetText(kSelAssetNumber, "ab-1.c");
  EXPECT_EQ(Criterion(w, kSelAssetNumber), "AB-1.C");
  EXPECT_TRUE(w.selection().criteria[kSelAssetNumber].in_use);
  w.SetText(kSelNewOrUsed, "used");
  EXPECT_EQ(Criterion(w, kSelNewOrUsed), "U");
  w.SetText(kSelDescription, "desk");  // no upper case here
  EXPECT_EQ(Criterion(w, kSelDescription), "desk");
  w.SetText(kSelDescription, std::string(40, 'x'));
  EXPECT_EQ(Criterion(w, kSelDescription).size(), 30u);
  w.SetText(kSelAssetNumber, "  ");
  EXPECT_FALSE(w.selection().criteria[kSelAssetNumber].in_use);
  w.SetExclude(kSelDescription, true);
  EXPECT_TRUE(w.selection().criteria[kSelDescription].exclude);
  // The entries take as many characters as the field is wide, under the field's rules.
  for (const FieldDescription& f : w.rows()) {
    auto row = SelectionWindow::RowOfId(f.id);
    if (!row || row->second != SelectionWindow::kEntryPart) continue;
    EXPECT_EQ(TextLimit(f), static_cast<size_t>(SelectionWindow::EntryWidth(row->first)));
  }
}

TEST_F(SelectionWindowTest, PickersAddTheCodeOfThePickedLine) {
  auto ui = Script(
      "choose 0\nchoose 2\nchoose-text 33-MACRS 150% DB\nchoose 1\nchoose 1\n"
      "choose 1\nclose\n");
  SelectionWindow w(*ui, setup_, KelSelection{}, "");
  ASSERT_EQ(w.PickerOptions(kSelLocation).size(), 3u);
  EXPECT_TRUE(w.Pick(kSelLocation));
  EXPECT_TRUE(w.Pick(kSelLocation));
  EXPECT_EQ(Criterion(w, kSelLocation), "01,\"N-7\"");
  // The quoted code stays one value, and the location matches it.
  auto items = ParseCriterion(Criterion(w, kSelLocation));
  ASSERT_TRUE(items);
  ASSERT_EQ(items->size(), 2u);
  EXPECT_EQ((*items)[1].low, "N-7");
  EXPECT_FALSE((*items)[1].range);

  EXPECT_TRUE(w.Pick(kSelDeprMethod));
  EXPECT_EQ(Criterion(w, kSelDeprMethod), "33");
  EXPECT_TRUE(w.Pick(kSelNewOrUsed));  // a one-letter field takes the letter alone
  EXPECT_EQ(Criterion(w, kSelNewOrUsed), "U");
  EXPECT_TRUE(w.Pick(kSelPropertyCode));
  EXPECT_EQ(Criterion(w, kSelPropertyCode), "VE");
  EXPECT_EQ(w.Caption(kSelUserField1), "Building");
  EXPECT_EQ(w.Caption(kSelUserField1 + 1), "User Field 2");
  EXPECT_TRUE(w.Pick(kSelUserField1));
  EXPECT_EQ(Criterion(w, kSelUserField1), "West");
  EXPECT_FALSE(w.Pick(kSelDisposalCode));  // closed: nothing taken
  EXPECT_FALSE(w.selection().criteria[kSelDisposalCode].in_use);
  EXPECT_FALSE(ui->failed()) << ui->transcript();

  // Dates and lives are typed; no list.
  EXPECT_FALSE(w.HasPicker(kSelDatePurchased));
  EXPECT_FALSE(w.HasPicker(kSelLife));
  EXPECT_FALSE(w.HasPicker(kSelBasis));
}

TEST_F(SelectionWindowTest, AnEmptyListSaysSoInsteadOfOpening) {
  auto ui = Script("");
  SelectionWindow w(*ui, setup_, KelSelection{}, "");
  EXPECT_TRUE(w.HasPicker(kSelCategory));
  EXPECT_FALSE(w.Pick(kSelCategory));
  EXPECT_FALSE(w.Pick(kSelAccount));
  EXPECT_FALSE(w.Pick(kSelUserField1 + 2));
  const std::string t = ui->transcript();
  EXPECT_NE(t.find("message title=\"Note\" text=\"No categories defined.\\n\""), std::string::npos)
      << t;
  EXPECT_NE(t.find("message title=\"Note\" text=\"No account groups are defined.\\n\""),
            std::string::npos)
      << t;
  EXPECT_EQ(t.find("choice"), std::string::npos) << t;
  EXPECT_FALSE(ui->failed());

  AccountGroupList groups;
  SetAccountGroupDefaults(setup_.company_folder, "ACME", &groups);
  groups.groups.push_back({"OFFICE", "Office equipment", {"1500", "1510", "6100", "2100"}});
  ASSERT_EQ(SaveAccountGroups(setup_.company_folder, "ACME", groups), 1);
  auto picks = Script("choose 0\n");
  SelectionWindow again(*picks, setup_, KelSelection{}, "");
  EXPECT_TRUE(again.Pick(kSelAccount));
  EXPECT_EQ(Criterion(again, kSelAccount), "OFFICE");
}

TEST_F(SelectionWindowTest, SavedSelectionsAreSavedLoadedAndDeletedThroughTheWindow) {
  auto ui = Script("no\nyes\n");
  KelSelection start;
  start.schedule = 'T';
  SelectionWindow w(*ui, setup_, start, "");
  w.SetText(kSelLocation, "01-05,10");
  w.SetText(kSelDisposalCode, "s");
  w.SetExclude(kSelDisposalCode, true);
  w.SetText(kSelDescription, "a;b");
  EXPECT_FALSE(w.Save("  ", false));
  EXPECT_TRUE(w.Save("Mine", false));
  EXPECT_TRUE(w.Save("Ours", true));
  EXPECT_TRUE(Stored(false, "Mine").starts_with("Schedule T;"));
  EXPECT_EQ(Stored(false, "Mine"), Stored(true, "Ours"));
  ASSERT_EQ(w.saved().size(), 2u);
  EXPECT_EQ(w.saved()[0].name, "Ours");  // the installation's first
  EXPECT_TRUE(w.saved()[0].all_companies);
  EXPECT_EQ(w.SaveRequest().name, "Ours");
  EXPECT_TRUE(w.SaveRequest().all_companies);

  // A fresh window loads it back, schedule and all.
  auto other = Script("");
  SelectionWindow fresh(*other, setup_, KelSelection{}, "");
  EXPECT_EQ(fresh.ScheduleCaption(), "B-Book");
  fresh.SetText(kSelCategory, "9");
  ASSERT_TRUE(fresh.Load(*fresh.SavedIndexOfCaption("Ours (All Companies)")));
  EXPECT_EQ(SelectionValue(fresh.selection()), SelectionValue(w.selection()));
  EXPECT_FALSE(fresh.selection().criteria[kSelCategory].in_use);
  EXPECT_EQ(fresh.ScheduleCaption(), "T-Tax");

  // Delete asks; No keeps it, Yes removes it from its file only.
  EXPECT_FALSE(w.Delete(1));
  EXPECT_TRUE(w.Delete(0));
  EXPECT_EQ(Stored(true, "Ours"), "");
  EXPECT_NE(Stored(false, "Mine"), "");
  ASSERT_EQ(w.saved().size(), 1u);
  EXPECT_EQ(w.SavedCaptions()[0], "Mine");
  EXPECT_NE(ui->transcript().find("Delete Current Asset Selection(Mine)?"), std::string::npos);
  EXPECT_NE(ui->transcript().find("Delete Current Asset Selection(Ours)?"), std::string::npos);
}

TEST_F(SelectionWindowTest, ScannedCodesBecomeTheOnlyCriterionEachOnce) {
  auto ui = Script("");
  SelectionWindow w(*ui, setup_, KelSelection{}, "");
  w.SetText(kSelLocation, "01");
  w.SetExclude(kSelAssetNumber, true);
  w.Scan("B2\r\nA1\nA1\r\n\nB2,C3\n");
  EXPECT_EQ(Criterion(w, kSelAssetNumber), "A1,B2,C3");
  EXPECT_TRUE(w.selection().criteria[kSelAssetNumber].in_use);
  EXPECT_FALSE(w.selection().criteria[kSelAssetNumber].exclude);
  EXPECT_FALSE(w.selection().criteria[kSelLocation].in_use);
}

TEST_F(SelectionWindowTest, ScheduleIsChosenAmongTheCompanysOnly) {
  auto ui = Script("");
  KelSelection start;
  start.schedule = 'Q';  // not the company's: its first is taken
  SelectionWindow w(*ui, setup_, start, "");
  EXPECT_EQ(w.selection().schedule, 'B');
  EXPECT_EQ(w.ScheduleCaptions(), (std::vector<std::string>{"B-Book", "T-Tax"}));
  EXPECT_TRUE(w.SetSchedule("T-Tax"));
  EXPECT_FALSE(w.SetSchedule("Z"));
  EXPECT_EQ(w.selection().schedule, 'T');
}

// SelectAssets over a real company: Cancel leaves the caller's selection as it was, OK
// hands over the criteria with the schedule chosen, and the "sched" fields then take the
// asset's values in that schedule.
TEST(SelectAssetsTest, CancelKeepsTheSelectionAndOkHandsOverTheSchedulesCriteria) {
  TempDir dir;
  const InstallationContext ctx = testing::ContextFor(dir.path());
  NvCompany company(ctx);
  company.record() = testing::TwoBookCompany();
  ASSERT_EQ(company.Create({"SEL", "Selection"}, NvCompany::kOpenI1 | NvCompany::kOpenI2), 0);
  ASSERT_GT(company.Open("SEL", NvCompany::kOpenI1 | NvCompany::kOpenI2, *Script("")), 0);

  KelSelection selection;
  selection.criteria[kSelDescription] = {true, "Desk*", false};
  const KelSelection before = selection;
  auto cancelled = Script("select Location=01\nexclude Asset Desc.\nschedule T\ncancel\n");
  EXPECT_FALSE(SelectAssets(*cancelled, company, selection, "Export"));
  EXPECT_EQ(selection, before);
  EXPECT_FALSE(cancelled->failed()) << cancelled->transcript();

  auto chosen = Script(
      "schedule T\nselect Basis=abc\nok\nselect Basis=1000-\nunselect Asset Desc.\n"
      "ok\n");
  ASSERT_TRUE(chosen);
  EXPECT_TRUE(SelectAssets(*chosen, company, selection, "Export"));
  EXPECT_FALSE(chosen->failed()) << chosen->transcript();
  EXPECT_EQ(selection.schedule, 'T');
  EXPECT_FALSE(selection.criteria[kSelDescription].in_use);
  EXPECT_EQ(selection.criteria[kSelBasis].text, "1000-");
  EXPECT_NE(chosen->transcript().find("text=\"Invalid input\""), std::string::npos);

  NvAsset asset;
  asset.Clear(company.record().schedule_letters);
  asset.Schedule('B')->depreciable_basis = 5000;
  asset.Schedule('T')->depreciable_basis = 500;
  const NvAssetNoFormat format = company.record().asset_no_format;
  EXPECT_FALSE(MatchAsset(selection, AssetSelectionValues(asset, selection.schedule, format), 0));
  asset.Schedule('T')->depreciable_basis = 1500;
  EXPECT_TRUE(MatchAsset(selection, AssetSelectionValues(asset, selection.schedule, format), 0));
  EXPECT_EQ(company.Close(), 0);
}

}  // namespace
}  // namespace nv

namespace nv {
namespace {

// One run of the window from an answers script: each line is written before the prompts it
// raises, and the scanned code given twice is kept once.
TEST_F(SelectionWindowTest, ScriptDrivesTheWindowLineByLine) {
  auto ui = Script(
      "pick Location\nchoose 1\nexclude location\nsave-as Mine\nsave-all Ours\n"
      "delete Mine\nyes\nload Ours (All Companies)\nscan A1,B2,A1\nok\n");
  SelectionWindow w(*ui, setup_, KelSelection{}, "Export");
  EXPECT_TRUE(ui->RunSelectionWindow(w));
  EXPECT_FALSE(ui->failed()) << ui->transcript();
  EXPECT_EQ(ui->answers_left(), 0u);
  EXPECT_EQ(Criterion(w, kSelAssetNumber), "A1,B2");
  EXPECT_FALSE(w.selection().criteria[kSelLocation].in_use);
  EXPECT_EQ(Stored(false, "Mine"), "");
  EXPECT_EQ(Stored(true, "Ours"), "Schedule B;!Location:02;");
  const std::string t = ui->transcript();
  const std::vector<std::string> in_order = {
      "selection-window title=\"Export\" schedule=\"B-Book\"",
      "selection-window -> pick \"Location\"",
      "choice title=\"Location\"",
      "selection-window -> delete \"Mine\"",
      "question title=\"Question\" text=\"Delete Current Asset Selection(Mine)?\"",
      "selection-window -> ok",
      "selection-window closed criteria=[\"Asset Number\"=\"A1,B2\"] schedule=\"B-Book\""};
  size_t at = 0;
  for (const std::string& line : in_order) {
    at = t.find(line, at);
    ASSERT_NE(at, std::string::npos) << line << "\n" << t;
  }

  // A name the list does not have fails the run and closes the window.
  auto lost = Script("load Nobody\nok\n");
  SelectionWindow again(*lost, setup_, KelSelection{}, "");
  EXPECT_FALSE(lost->RunSelectionWindow(again));
  EXPECT_TRUE(lost->failed());
}

TEST(SelectionScriptTest, SelectionLinesNameFieldsOfTheTable) {
  std::vector<ScriptError> errors;
  EXPECT_TRUE(
      ParseAnswerScript("select asset desc.=a=b\nexclude Location\nsave-as Mine\n"
                        "save-all Ours\nschedule T\nload Mine\nscan A1,B2\nok\n",
                        &errors))
      << errors.size();
  for (const char* wrong : {"select Purchase=1", "select Location", "exclude", "pick Nothing",
                            "schedule t", "schedule TT", "load", "save-as", "save-all"}) {
    EXPECT_FALSE(ParseAnswerScript(wrong, &errors)) << wrong;
  }
}

}  // namespace
}  // namespace nv
