// The company screen: the company record on one screen, as an import shows it while it
// sets up a company, with every rule a company record must obey (ui/company_record_rules.h)
// and the editors of the company's code lists, schedule definitions and permissions.
//
// The screen works on a copy of the record. Each field has a script name; setting a field
// runs the rule of leaving it, and a refused value is told through the Ui and leaves the
// field as it was. Save runs the rules of saving and the questions that go with them; only
// a save that gets through them puts the copy into company.record().
//
// Script names (the members of nvtool's JSON company object where one exists):
//
//   NAME                          SHOWS                         TEXT
//   number                        Company No. (read-only)       the company number
//   name                          Company Name                  text, 40
//   ein                           EIN or SSN                    text, 12
//   last_closed                   Last Closed                   MM/DD/YYYY or blank
//   current_year_end              Current Year End              MM/DD/YYYY or blank
//   asset_number_format.main      Digits/Chars in Asset No.     3 to 10
//   asset_number_format.sub       Digits in Subasset Part       1 to 3 (others are held to it)
//   asset_number_format.letters   Letters                       Y or N
//   asset_number_format.dashes    Dashes                        Y or N
//   schedule_letters              Schedules                     letters, at most 17
//   sort_order                    Sort Order                    up to 3 of L C A P D Y 0-9
//   business_category             Business Category             1 to 4
//   round_dollars                 Round Dollars                 Y or N
//   mid_quarter_override          Mid-Quarter Override          A (automatic), Y, Q or E
//   global_loc_cat                Global Cat/Loc Definitions    C, L, B or N
//   misc_codes                    Misc Codes                    text, 10
//   logging_flags                 Asset Logging                 N, P or D
//   user_fields.N.name            User field N's name           text, 30 (N from 1 to 10)
//   user_fields.N.default         User field N's default value  text, 20
//
// A choice field also takes its option's whole caption ("D-Detailed"). The user fields are
// edited on the screen "User Definable Fields" that the button user_fields opens.
//
// Buttons: schedule_definitions, locations, categories, property_codes, user_fields,
// permissions.
//
// Settings of a company that does not exist yet: its location and category lists are kept
// in company.locations() and company.categories() for the caller to write once the company
// is made; its property codes, user-field values and this-company schedule definitions,
// which live in the company's settings file, are kept by the screen until the caller has
// made the company and calls WriteSettings. Global code files are not edited here.
#pragma once

#include <array>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/ui.h"
#include "store/codes/property_codes.h"
#include "store/company/change_log.h"
#include "store/company/company.h"
#include "store/schedule/schedule_definitions.h"
#include "store/schedule/schedule_letters.h"
#include "ui/code_list_editor.h"
#include "ui/permissions_dialog.h"
#include "ui/schedule_definitions_editor.h"
#include "ui/screen/field_description.h"
#include "ui/user_fields_screen.h"

namespace nv {

// Action codes of the screen, as the import frame's setup loop reads them. This screen
// ends with a save (2) or a cancel; it does everything its buttons ask while it is open, so
// it never asks to be shown again.
inline constexpr int kCompanyScreenShowAgain = 1;  // show the screen again
inline constexpr int kCompanyScreenSave = 2;       // 2, 3 and 4 all mean save
inline constexpr int kCompanyScreenCancelled = -11;
// Not an action code: the save was refused and the screen stays open.
inline constexpr int kCompanyScreenStays = 0;

inline constexpr char kCompanyScreenTitle[] = "Company Information";
inline constexpr char kSaveNewCompanyQuestion[] = "Save this company?";
inline constexpr char kSaveChangesQuestion[] = "Save changes to this company?";
// The most schedule letters: with more, the record's schedules field would pass its 236
// characters (letters and a blank, then 12 for each schedule and one more: 18 x 13 = 234).
inline constexpr size_t kScheduleLettersFieldWidth = 17;

// The windows that the screen's buttons open. The Qt view gives windows for people; tests
// give their own. Each runs modally over its model and returns when it is closed.
class CompanyScreenWindows {
 public:
  virtual ~CompanyScreenWindows() = default;
  // The view saves through editor.Save() when the user saves, and stays open while that
  // fails.
  virtual void RunCodeList(CodeListEditor& editor) = 0;
  // True when the screen was closed with OK.
  virtual bool RunUserFields(UserFieldsScreen& screen) = 0;
  virtual ScheduleDefinitionsWindowRunner& schedule_definitions() = 0;
  virtual void RunPermissions(PermissionsDialogModel& model) = 0;
};

class CompanyScreen {
 public:
  // An option of a choice field: the letter or digit the record keeps, and its caption.
  struct Choice {
    char code;
    const char* caption;
  };

  // `company.record()` is the record to edit. For an existing company `company` is open (at
  // least for reading: the narrowing check reads its assets); for a new one it is not
  // created yet (new_company true). Messages name the product of the hand-off.
  CompanyScreen(NvCompany& company, bool new_company, Ui& ui);
  CompanyScreen(const CompanyScreen&) = delete;
  CompanyScreen& operator=(const CompanyScreen&) = delete;

  // Every field's script name, in the order of the screen.
  static const std::vector<std::string>& FieldNames();
  [[nodiscard]] static bool IsFieldName(std::string_view name);
  static const std::vector<std::string>& ButtonNames();
  // The control identifier of a field or button in table(); 0 for a field that has no
  // control there (the user fields) or an unknown name.
  static int ControlId(std::string_view name);
  // The button of a control identifier, "" for none.
  static std::string ButtonOfControl(int id);

  // The screen in the screen language, its data the record copy's values; a field's check
  // runs the field's rule.
  FieldTable& table() { return table_; }
  const NvCompanyRecord& record() const { return record_; }
  bool new_company() const { return new_company_; }
  Ui& ui() { return ui_; }

  // Puts the record copy's values into the table's data again: a view calls it after its
  // controls wrote what was typed there, which the rules may have changed.
  void Refresh();

  // The field's text as the screen shows it ("" for an unknown name).
  std::string FieldText(std::string_view name) const;
  // Runs the field's rule on `text`. False when the name is unknown or the value was
  // refused (the user has been told why).
  bool SetField(std::string_view name, std::string_view text);

  // Opens the editor of a button. False for an unknown name.
  bool Press(std::string_view button, CompanyScreenWindows& windows);

  // Runs the rules of saving. kCompanyScreenSave with the record in company.record(), or
  // kCompanyScreenStays when the save was refused.
  [[nodiscard]] int Save();
  // kCompanyScreenCancelled; company.record() stays as it was.
  [[nodiscard]] int Cancel() const { return kCompanyScreenCancelled; }

  // After the caller has written the saved company: the change-log entry of the save, a
  // new company's or the edit's changes.
  void LogSaved(NvCompany& company, const LogClock& clock = LocalLogTime) const;

  // After the caller has made a new company: writes the settings the screen kept for it
  // (property codes, user-field values, this-company schedule definitions) into its
  // settings file. False when the file could not be written. Nothing to do for an
  // existing company, whose editors write at once.
  [[nodiscard]] bool WriteSettings(NvCompany& company) const;

 private:
  struct Field;

  static const std::vector<Field>& Fields();
  static const Field* FindField(std::string_view name);

  void Build();

  // Leave-field rules, each true when the value stands.
  bool SetText(std::string* member, size_t width, std::string_view text);
  bool SetLastClosed(std::string_view text);
  bool SetYearEnd(std::string_view text);
  bool SetMainLength(std::string_view text);
  bool SetSubassetLength(std::string_view text);
  bool SetFormatFlag(int flag, std::string_view text);
  bool SetScheduleLetters(std::string_view text);
  bool SetSortOrder(std::string_view text);
  bool SetBusinessCategory(std::string_view text);
  bool SetRoundDollars(std::string_view text);
  bool SetMidQuarterOverride(std::string_view text);
  bool SetGlobalLocCat(std::string_view text);
  bool SetLogging(std::string_view text);
  bool SetUserField(int index, bool name, std::string_view text);
  // The option of a choice field that `text` names (its code or its caption), or nothing
  // after telling the user.
  std::optional<char> PickChoice(const char* field_caption, const std::vector<Choice>& choices,
                                 std::string_view text);

  // Save rules, each true to go on.
  bool CheckDates();
  bool CheckScheduleLetters();
  bool CheckSortOrderChange();
  bool CheckFormatChange();

  // Schedules.
  static CompanySchedules SchedulesFor(const NvCompany& company, bool new_company);
  CompanySchedules SchedulesForRules() const;
  std::optional<ScheduleDefinition> DefinitionInForce(char letter) const;
  ScheduleDefinitionList LoadDefinitions() const;
  void EditScheduleDefinitions(CompanyScreenWindows& windows);

  // Editors.
  void EditLocCat(char which, CompanyScreenWindows& windows);
  void EditPropertyCodes(CompanyScreenWindows& windows);
  void EditUserFields(CompanyScreenWindows& windows);
  void EditValues(int index, CompanyScreenWindows& windows);
  void EditPermissions(CompanyScreenWindows& windows);
  // The company's list `which` held under the screen's global choice: when the choice has
  // changed since the list was read, the list is put away under the old one and read
  // again under the new.
  NvLocCatList& LocCatListUnderChoice(char which);
  // Where list `which` lies under `choice`: its file, or "" for the list of a company not
  // yet made, which is kept in memory.
  std::string LocCatFile(char which, char choice) const;

  NvCompany& company_;
  bool new_company_;
  Ui& ui_;
  NvCompanyRecord record_;    // the screen's copy
  NvCompanyRecord original_;  // the record as the screen found it
  FieldTable table_;
  ScheduleLettersEdit letters_edit_;
  bool year_end_change_confirmed_ = false;
  // The global choice under which each of the company's two lists was last read.
  std::map<char, char> loc_cat_choice_;
  // The company's own lists of a company not yet made, while a global list stands in the
  // company's place.
  std::map<char, NvLocCatList> own_lists_;
  // Settings kept for a company not yet made.
  std::optional<PropertyCodeList> pending_property_codes_;
  std::map<int, std::vector<std::string>> pending_values_;
  std::optional<std::vector<ScheduleDefinition>> pending_definitions_;
};

}  // namespace nv
