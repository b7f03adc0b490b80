#include "ui/company_screen.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <utility>

#include "base/profile.h"
#include "base/temp_dir_testing.h"
#include "store/codes/loc_cat_list.h"
#include "store/codes/user_fields.h"
#include "store/company/asset_testing.h"
#include "store/store_testing.h"
#include "ui/company_record_rules.h"
#include "ui/scripted_ui_testing.h"

namespace nv {
namespace {

using testing::Script;

// Windows for the screen's buttons: each runs what the test gives it and notes its caption.
class TestWindows : public CompanyScreenWindows, public ScheduleDefinitionsWindowRunner {
 public:
  std::function<void(CodeListEditor&)> code_list;
  std::function<bool(UserFieldsScreen&)> user_fields;
  std::function<void(DlgEdScheduleDefinitions&)> definitions;
  std::function<void(PermissionsDialogModel&)> permissions;
  std::vector<std::string> opened;

  void RunCodeList(CodeListEditor& editor) override {
    opened.push_back(editor.caption());
    if (code_list) code_list(editor);
  }
  bool RunUserFields(UserFieldsScreen& screen) override {
    opened.push_back(kUserFieldsTitle);
    return user_fields && user_fields(screen);
  }
  ScheduleDefinitionsWindowRunner& schedule_definitions() override { return *this; }
  void Run(DlgEdScheduleDefinitions& editor) override {
    opened.push_back("Schedule Definitions");
    if (definitions) definitions(editor);
  }
  void RunPermissions(PermissionsDialogModel& model) override {
    opened.push_back("Permissions");
    if (permissions) permissions(model);
  }
};

// The texts of the company's change log, without their prefixes (63 characters and a blank).
std::vector<std::string> LogTexts(const NvCompany& company) {
  std::vector<std::string> texts;
  const std::string bytes = testing::ReadText(company.FilePath("LOG"));
  for (size_t start = 0; start < bytes.size();) {
    const size_t end = bytes.find("\r\n", start);
    if (end == std::string::npos) break;
    texts.push_back(bytes.substr(start + 64, end - start - 64));
    start = end + 2;
  }
  return texts;
}

class CompanyScreenTest : public ::testing::Test {
 protected:
  CompanyScreenTest() : ctx_(testing::ContextFor(dir_.path())), company_(ctx_) {}

  // A company about to be made: named, not created.
  void NewCompany() {
    company_.SetLocation("NEWCO", dir_.path() + "/");
    NvCompanyRecord& r = company_.record();
    r.number = "NEWCO";
    r.schedule_letters = "BT";
    r.schedules = {{'B', "B", "Book"}, {'T', "T", "Tax"}};
  }

  // Company ACME (format 8, 3; schedules B and T; closed 12/31/2023, year end 12/31/2024)
  // open for writing with assets of these numbers.
  void ExistingCompany(const std::vector<std::string>& numbers = {}) {
    NvCompany maker(ctx_);
    maker.record() = testing::TwoBookCompany();
    ASSERT_EQ(maker.Create({"ACME", "Test Co"}, NvCompany::kOpenI1 | NvCompany::kOpenI2), 0);
    auto quiet = Script("");
    ASSERT_EQ(company_.Open(
                  "ACME", NvCompany::kOpenI1 | NvCompany::kOpenI2 | NvCompany::kLoadLocCat, *quiet),
              1);
    for (const std::string& number : numbers) {
      NvAsset asset = testing::MakeAsset(company_.record(), 1);
      asset.number = NvAssetNo::Parse(number, company_.record().asset_no_format);
      asset.description = "Asset " + number;
      ASSERT_EQ(company_.AddAsset(&asset), kOk);
    }
  }

  std::string Transcript(const ScriptedUi& ui) const { return ui.transcript(); }

  TempDir dir_;
  InstallationContext ctx_;
  NvCompany company_;
  TestWindows windows_;
};

TEST_F(CompanyScreenTest, AccountingDatesOfANewCompany) {
  NewCompany();
  auto ui = Script("");
  CompanyScreen screen(company_, true, *ui);
  EXPECT_TRUE(screen.SetField("last_closed", "12/31/2024"));
  EXPECT_EQ(screen.FieldText("current_year_end"), "12/31/2025");   // filled one year on
  EXPECT_TRUE(screen.SetField("current_year_end", "06/30/2025"));  // a short year
  EXPECT_FALSE(screen.SetField("current_year_end", "01/31/2026"));
  EXPECT_FALSE(screen.SetField("current_year_end", "06/15/2025"));
  EXPECT_FALSE(screen.SetField("last_closed", "11/31/2024"));
  EXPECT_EQ(screen.FieldText("current_year_end"), "06/30/2025");
  EXPECT_EQ(screen.FieldText("last_closed"), "12/31/2024");
  EXPECT_EQ(Transcript(*ui),
            "message title=\"Message\" text=\"Year end must be at most one\\nyear after last "
            "closed date.\"\n"
            "message title=\"Message\" text=\"Must be last day of the month.\"\n"
            "message title=\"Message\" text=\"Must be last day of the month.\"\n");
  EXPECT_TRUE(company_.record().last_closed.empty()) << "the screen edits a copy";

  CompanyScreen leap(company_, true, *ui);
  EXPECT_TRUE(leap.SetField("last_closed", "02/29/2024"));
  EXPECT_EQ(leap.FieldText("current_year_end"), "02/28/2025");
}

TEST_F(CompanyScreenTest, ChangingTheDatesOfAnExistingCompanyIsConfirmed) {
  ExistingCompany();
  auto ui = Script("no\nyes\nyes\n");
  CompanyScreen screen(company_, false, *ui);
  EXPECT_FALSE(screen.SetField("last_closed", "12/31/2024"));  // no
  EXPECT_EQ(screen.FieldText("last_closed"), "12/31/2023");
  EXPECT_TRUE(screen.SetField("last_closed", "06/30/2024"));       // yes
  EXPECT_TRUE(screen.SetField("current_year_end", "12/31/2024"));  // unchanged: no question
  EXPECT_TRUE(screen.SetField("current_year_end", "03/31/2025"));  // yes, remembered...
  EXPECT_TRUE(screen.SetField("current_year_end", "06/30/2025"));  // ...for the screen's life
  EXPECT_EQ(ui->answers_left(), 0u);
  EXPECT_FALSE(ui->failed()) << Transcript(*ui);
  EXPECT_NE(Transcript(*ui).find("Are you sure you want to change the year end?\" buttons=[\"&Yes"
                                 "\", \"&No\", \"Cancel\"] default=\"&No\" -> yes"),
            std::string::npos);
}

TEST_F(CompanyScreenTest, ElectionNeedsNineElevenInTheSecondHalfOfTheTaxYear) {
  NewCompany();
  auto ui = Script("yes\n");
  CompanyScreen screen(company_, true, *ui);
  ASSERT_TRUE(screen.SetField("last_closed", "12/31/2000"));
  EXPECT_TRUE(screen.SetField("mid_quarter_override", "E"));
  EXPECT_EQ(screen.record().mid_quarter_override, 'E');
  // Moving Last Closed makes 2001 a six-month year; the save looks again.
  EXPECT_TRUE(screen.SetField("last_closed", "06/30/2001"));
  EXPECT_EQ(screen.Save(), kCompanyScreenStays);
  EXPECT_NE(Transcript(*ui).find("The Notice 2001-70 election is allowed only"), std::string::npos);
  // "A" stands for a blank override.
  EXPECT_TRUE(screen.SetField("mid_quarter_override", "A-Automatic"));
  EXPECT_EQ(screen.record().mid_quarter_override, ' ');
  EXPECT_FALSE(screen.SetField("mid_quarter_override", "E"));
  EXPECT_FALSE(screen.SetField("mid_quarter_override", "Z"));
  EXPECT_EQ(screen.FieldText("mid_quarter_override"), "A");
}

TEST_F(CompanyScreenTest, AssetNumberFormatFields) {
  NewCompany();
  auto ui = Script("");
  CompanyScreen screen(company_, true, *ui);
  EXPECT_FALSE(screen.SetField("asset_number_format.main", "2"));
  EXPECT_FALSE(screen.SetField("asset_number_format.main", "11"));
  EXPECT_EQ(screen.FieldText("asset_number_format.main"), "6");
  EXPECT_TRUE(screen.SetField("asset_number_format.main", "10"));
  EXPECT_TRUE(screen.SetField("asset_number_format.sub", "5"));
  EXPECT_EQ(screen.record().asset_no_format.subasset_length, 3);
  EXPECT_TRUE(screen.SetField("asset_number_format.letters", "yes"));
  EXPECT_TRUE(screen.SetField("asset_number_format.dashes", "Y"));
  EXPECT_TRUE(screen.SetField("asset_number_format.dashes", "n"));
  EXPECT_EQ(screen.record().asset_no_format.flags, NvAssetNoFormat::kLetters);
  EXPECT_TRUE(screen.SetField("asset_number_format.sub", "0"));
  EXPECT_EQ(screen.FieldText("asset_number_format.sub"), "1");
  EXPECT_NE(Transcript(*ui).find(kMainLengthMessage), std::string::npos);
}

TEST_F(CompanyScreenTest, NarrowingTheFormatChecksEveryAsset) {
  ExistingCompany({"1234567.1", "12345.1", "123456.2"});
  auto ui = Script("yes\nyes\n");
  CompanyScreen screen(company_, false, *ui);
  ASSERT_TRUE(screen.SetField("asset_number_format.main", "6"));
  EXPECT_EQ(screen.Save(), kCompanyScreenStays);
  EXPECT_EQ(company_.record().asset_no_format.main_length, 8);
  const std::string& t = Transcript(*ui);
  EXPECT_NE(t.find("NORVANE will check to see that all assets are allowed \\nunder this format.  "
                   "Changes requiring this check are shown below:\\nDigits (characters) in asset "
                   "number decreased from 8 to 6.\\n\\nContinue?\""),
            std::string::npos)
      << t;
  EXPECT_NE(t.find("progress title=\"Asset Number Format\" text=\"Checking Existing Assets\""),
            std::string::npos);
  EXPECT_NE(t.find("message title=\"Error\" text=\"1 assets do not fit your new asset number "
                   "format.  These assets are:\\n   1234567.001  Asset 1234567.1\\nAsset number "
                   "cannot be changed"),
            std::string::npos)
      << t;
}

TEST_F(CompanyScreenTest, MoreThanTenMisfitsListTen) {
  std::vector<std::string> numbers;
  for (int i = 0; i < 12; ++i) numbers.push_back(std::to_string(1000000 + i) + ".1");
  ExistingCompany(numbers);
  auto ui = Script("yes\nyes\n");
  CompanyScreen screen(company_, false, *ui);
  ASSERT_TRUE(screen.SetField("asset_number_format.main", "6"));
  EXPECT_EQ(screen.Save(), kCompanyScreenStays);
  const std::string& t = Transcript(*ui);
  EXPECT_NE(t.find("12 assets do not fit your new asset number format.  Ten of these assets are:"),
            std::string::npos);
  EXPECT_NE(t.find("1000009.001"), std::string::npos);
  EXPECT_EQ(t.find("1000010.001"), std::string::npos);
}

TEST_F(CompanyScreenTest, AChangedFormatNeedsARebuildThatIsLeftToTheMainProgram) {
  ExistingCompany({"1234567.1"});
  // Widening needs no check, only the rebuild: No, then Yes; then the save goes through.
  auto ui = Script("yes\nno\nyes\nyes\nyes\n");
  CompanyScreen screen(company_, false, *ui);
  ASSERT_TRUE(screen.SetField("asset_number_format.main", "10"));
  EXPECT_EQ(screen.Save(), kCompanyScreenStays);
  EXPECT_EQ(screen.FieldText("asset_number_format.main"), "8");
  ASSERT_TRUE(screen.SetField("asset_number_format.main", "10"));
  EXPECT_EQ(screen.Save(), kCompanyScreenStays);
  EXPECT_EQ(screen.FieldText("asset_number_format.main"), "8");
  EXPECT_NE(Transcript(*ui).find("message title=\"Error\" text=\"Exit import software to perform "
                                 "company rebuild.\""),
            std::string::npos);
  EXPECT_EQ(screen.Save(), kCompanyScreenSave);
  EXPECT_EQ(Transcript(*ui).find("progress"), std::string::npos);
}

TEST_F(CompanyScreenTest, RemovingSchedulesAsksBeforeTheSave) {
  ExistingCompany();
  auto ui = Script("yes\nno\n");
  CompanyScreen screen(company_, false, *ui);
  ASSERT_TRUE(screen.SetField("schedule_letters", "b"));
  EXPECT_EQ(screen.FieldText("schedule_letters"), "B");
  EXPECT_EQ(screen.Save(), kCompanyScreenStays);
  EXPECT_EQ(company_.record().schedule_letters, "BT");
  EXPECT_NE(Transcript(*ui).find("CAUTION: Depreciation Schedules\\nhave been changed from BT to "
                                 "B.\\nData currently in the following schedules will be lost.\\n"
                                 "Tax\\n    Continue?"),
            std::string::npos)
      << Transcript(*ui);
}

TEST_F(CompanyScreenTest, NewScheduleLettersTakeTheirDefinitions) {
  NewCompany();
  auto ui = Script("");
  CompanyScreen screen(company_, true, *ui);
  EXPECT_FALSE(screen.SetField("schedule_letters", "BTX"));
  EXPECT_FALSE(screen.SetField("schedule_letters", "BTB"));
  EXPECT_TRUE(screen.SetField("schedule_letters", "BTS"));
  EXPECT_EQ(screen.record().schedules.back(), (ScheduleEntry{'S', "S", "State"}));
  EXPECT_EQ(Transcript(*ui),
            "message title=\"Message\" text=\"Schedule X has no definition.\\nDefine it with the "
            "Schedule Definitions button first.\"\n"
            "message title=\"Message\" text=\"Do not repeat letters.\"\n");
}

TEST_F(CompanyScreenTest, SortOrder) {
  ExistingCompany();
  auto ui = Script("no\nyes\nyes\n");
  CompanyScreen screen(company_, false, *ui);
  EXPECT_FALSE(screen.SetField("sort_order", "LCL"));
  EXPECT_FALSE(screen.SetField("sort_order", "LC"));  // no
  EXPECT_EQ(screen.FieldText("sort_order"), "ACL");
  EXPECT_TRUE(screen.SetField("sort_order", "lc"));  // yes
  EXPECT_EQ(screen.FieldText("sort_order"), "LC");
  // The sort index would have to be rebuilt, which is left to the main program.
  EXPECT_EQ(screen.Save(), kCompanyScreenStays);
  EXPECT_EQ(screen.FieldText("sort_order"), "ACL");
  EXPECT_NE(Transcript(*ui).find("Do not repeat letters."), std::string::npos);
  EXPECT_NE(Transcript(*ui).find("Exit import software"), std::string::npos);
}

TEST_F(CompanyScreenTest, OnlyASaveChangesTheRecord) {
  NewCompany();
  auto ui = Script("no\nyes\n");
  CompanyScreen screen(company_, true, *ui);
  ASSERT_TRUE(screen.SetField("name", "  Acme Tools  "));
  ASSERT_TRUE(screen.SetField("logging_flags", "D-Detailed"));
  ASSERT_TRUE(screen.SetField("business_category", "3"));
  EXPECT_FALSE(screen.SetField("number", "OTHER"));
  EXPECT_FALSE(screen.SetField("no_such_field", "x"));
  EXPECT_EQ(screen.Cancel(), kCompanyScreenCancelled);
  EXPECT_EQ(screen.Save(), kCompanyScreenStays);  // "Save this company?" no
  EXPECT_EQ(company_.record().name, "");
  EXPECT_EQ(screen.Save(), kCompanyScreenSave);
  EXPECT_EQ(company_.record().name, "Acme Tools");
  EXPECT_EQ(company_.record().logging_flags, kLoggingDetailed);
  EXPECT_EQ(company_.record().business_category, 3);
  EXPECT_NE(Transcript(*ui).find("text=\"Save this company?\" buttons=[\"&Yes\", \"&No\", "
                                 "\"Cancel\"] default=\"&Yes\" -> no"),
            std::string::npos);
}

TEST_F(CompanyScreenTest, AnUnofferedLoggingLevelIsSavedAsPartial) {
  ExistingCompany();
  company_.record().logging_flags = 5;
  auto ui = Script("yes\n");
  CompanyScreen screen(company_, false, *ui);
  EXPECT_EQ(screen.FieldText("logging_flags"), "P");
  EXPECT_EQ(screen.Save(), kCompanyScreenSave);
  EXPECT_EQ(company_.record().logging_flags, kLoggingPartial);
}

TEST_F(CompanyScreenTest, TheSaveIsLoggedWithTheHeadingOnlyInDetail) {
  ExistingCompany();
  const LogClock clock = [] { return LogTime{2025, 1, 2, 3, 4}; };
  auto ui = Script("yes\nyes\n");
  CompanyScreen partial(company_, false, *ui);
  ASSERT_TRUE(partial.SetField("name", "Acme"));
  ASSERT_EQ(partial.Save(), kCompanyScreenSave);
  partial.LogSaved(company_, clock);
  CompanyScreen detailed(company_, false, *ui);
  ASSERT_TRUE(detailed.SetField("ein", "12-3456789"));
  ASSERT_TRUE(detailed.SetField("logging_flags", "D"));
  ASSERT_EQ(detailed.Save(), kCompanyScreenSave);
  detailed.LogSaved(company_, clock);
  EXPECT_EQ(LogTexts(company_),
            (std::vector<std::string>{"Company Name changed from <Test Co> to <Acme>",
                                      "Edit Company", "EIN set to <12-3456789>",
                                      "Logging Flags changed from <10> to <16777215>"}));
  EXPECT_NE(testing::ReadText(company_.FilePath("LOG")).find(" CEDT "), std::string::npos);
}

TEST_F(CompanyScreenTest, ListEditorsSaveThroughTheCompanyFiles) {
  ExistingCompany();
  auto ui = Script("");
  CompanyScreen screen(company_, false, *ui);
  windows_.code_list = [](CodeListEditor& editor) {
    if (editor.caption() == kLocationsCaption) {
      editor.SetCell(0, 0, "10");
      editor.SetCell(0, 1, "Yard");
      editor.SetCell(1, 0, "9");
      editor.SetCell(1, 1, "Main office");
      editor.InsertRow(2);  // a blank row is left out
    } else if (editor.caption() == kPropertyCodesCaption) {
      editor.SetCell(0, 0, "a-1x");
      editor.SetCell(0, 1, "Residential rental");
    } else {
      editor.SetCell(0, 0, "Red");
      editor.SetCell(1, 0, "Blue");
    }
    EXPECT_TRUE(editor.Save());
  };
  windows_.user_fields = [](UserFieldsScreen& fields) {
    fields.SetName(1, "Color");
    fields.PressValues(1);
    return true;
  };
  ASSERT_TRUE(screen.Press("locations", windows_));
  ASSERT_TRUE(screen.Press("property_codes", windows_));
  ASSERT_TRUE(screen.Press("user_fields", windows_));
  EXPECT_FALSE(screen.Press("no_such_button", windows_));
  EXPECT_EQ(windows_.opened,
            (std::vector<std::string>{"Locations", "Property Codes", kUserFieldsTitle, "Values"}));

  NvLocCatList read;
  LoadLocCatList(company_.LocCatPath(kLocations), &read);
  ASSERT_EQ(read.size(), 2u);
  EXPECT_EQ(read[0], (NvLocCatEntry{"9", "Main office"}));  // read back in code order
  EXPECT_EQ(company_.locations(), read);
  PropertyCodeList codes;
  ASSERT_EQ(LoadPropertyCodes(company_.SettingsPath(), &codes), 1);
  EXPECT_EQ(codes[0], (PropertyCode{"A1", "Residential rental"}));
  std::vector<std::string> values;
  ASSERT_EQ(LoadUserFieldValues(company_.SettingsPath(), 1, &values), 2);
  EXPECT_EQ(values[1], "Blue");
  EXPECT_EQ(screen.FieldText("user_fields.1.name"), "Color");
  EXPECT_EQ(company_.record().user_fields[0].name, "");
}

TEST_F(CompanyScreenTest, GlobalListsAreNotEditedHereButFollowTheChoice) {
  ExistingCompany();
  NvLocCatList own;
  own.Append("01", "Main office");
  ASSERT_EQ(SaveLocCatList(company_.LocCatPath(kLocations), own), 1);
  NvLocCatList global;
  global.Append("G1", "Everywhere");
  ASSERT_EQ(SaveLocCatList(dir_.File("GLOBAL.LOC"), global), 1);
  company_.locations() = own;
  auto ui = Script("");
  CompanyScreen screen(company_, false, *ui);
  ASSERT_TRUE(screen.SetField("global_loc_cat", "L"));
  EXPECT_TRUE(screen.Press("locations", windows_));
  EXPECT_TRUE(windows_.opened.empty());
  EXPECT_EQ(Transcript(*ui),
            "message title=\"Error\" text=\"You must exit the import software\\nto edit global "
            "files.\"\n");
  EXPECT_EQ(company_.locations(), global);  // read again under the new choice
  // Back to the company's own list, which was written away under the old choice.
  ASSERT_TRUE(screen.SetField("global_loc_cat", "N"));
  std::vector<CodeListEditor::Row> shown;
  windows_.code_list = [&shown](CodeListEditor& editor) { shown = editor.rows(); };
  EXPECT_TRUE(screen.Press("locations", windows_));
  EXPECT_EQ(shown, (std::vector<CodeListEditor::Row>{{"01", "Main office"}}));
}

TEST_F(CompanyScreenTest, ANewCompanysSettingsWaitUntilItIsMade) {
  NewCompany();
  auto ui = Script("yes\nyes\n");
  CompanyScreen screen(company_, true, *ui);
  windows_.code_list = [](CodeListEditor& editor) {
    editor.SetCell(0, 0, editor.caption() == kPropertyCodesCaption ? "R1" : "01");
    editor.SetCell(0, 1, "First");
    EXPECT_TRUE(editor.Save());
  };
  windows_.definitions = [](DlgEdScheduleDefinitions& editor) {
    ASSERT_TRUE(editor.New());
    editor.SetLetterText("X");
    const auto& types = DlgEdScheduleDefinitions::TypeEntries();
    for (size_t i = 0; i < types.size(); ++i) {
      if (types[i].type == "CA") editor.ChooseType(i);
    }
    ASSERT_TRUE(editor.Save());
    EXPECT_EQ(editor.Close(), DlgEdScheduleDefinitions::CloseResult::kClosed);  // yes
  };
  ASSERT_TRUE(screen.Press("property_codes", windows_));
  ASSERT_TRUE(screen.Press("locations", windows_));
  ASSERT_TRUE(screen.Press("schedule_definitions", windows_));
  EXPECT_TRUE(screen.SetField("schedule_letters", "BTX"));
  EXPECT_EQ(screen.record().schedules.back(), (ScheduleEntry{'X', "CA", "California"}));
  EXPECT_EQ(std::filesystem::directory_iterator(dir_.path()), std::filesystem::directory_iterator())
      << "nothing is written before the company is made";
  EXPECT_EQ(company_.locations()[0], (NvLocCatEntry{"01", "First"}));

  ASSERT_EQ(screen.Save(), kCompanyScreenSave);
  ASSERT_EQ(company_.Create({"NEWCO", ""}, NvCompany::kOpenI1 | NvCompany::kOpenI2), 0);
  ASSERT_TRUE(screen.WriteSettings(company_));
  PropertyCodeList codes;
  EXPECT_EQ(LoadPropertyCodes(company_.SettingsPath(), &codes), 1);
  EXPECT_EQ(ReadProfileString(company_.SettingsPath(), "Schedule Definitions", "X", ""),
            "CA,California");
}

TEST_F(CompanyScreenTest, PermissionsAreEditedOnTheCopy) {
  ctx_.network_mode = true;
  ExistingCompany();
  auto ui = Script("yes\n");  // define permissions
  CompanyScreen screen(company_, false, *ui);
  windows_.permissions = [](PermissionsDialogModel& model) {
    model.SetEditText("ALICE");
    ASSERT_TRUE(model.Add());
  };
  ASSERT_TRUE(screen.Press("permissions", windows_));
  EXPECT_NE(screen.record().permissions.find("ALICE:W"), std::string::npos);
  EXPECT_EQ(company_.record().permissions, "");
}

}  // namespace
}  // namespace nv
