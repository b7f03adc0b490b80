// The company screen's buttons: the editors of the company's code lists, user fields,
// schedule definitions and permissions, and the settings kept for a company not yet made.
#include <algorithm>

#include "base/ascii.h"
#include "base/profile.h"
#include "base/str_format.h"
#include "store/codes/loc_cat_list.h"
#include "store/codes/user_fields.h"
#include "store/company/permissions.h"
#include "ui/company_screen.h"
#include "ui/refused_features.h"

namespace nv {

namespace {

// Runs the editor in the window the caller gives for it.
class DefinitionsWindow : public ScheduleDefinitionsWindowRunner {
 public:
  explicit DefinitionsWindow(CompanyScreenWindows& windows) : windows_(windows) {}
  void Run(DlgEdScheduleDefinitions& editor) override {
    windows_.schedule_definitions().Run(editor);
  }

 private:
  CompanyScreenWindows& windows_;
};

// The definition in force of each letter.
const ScheduleDefinition* Effective(const ScheduleDefinitionList& list, char letter) {
  for (const ScheduleDefinition& d : list) {
    if (d.letter == letter && d.effective) return &d;
  }
  return nullptr;
}

void TellUnwritten(Ui& ui, const std::string& path) {
  ui.Message(StrPrintf("Unable to write file\n%s", path.c_str()), "Error");
}

}  // namespace

bool CompanyScreen::Press(std::string_view button, CompanyScreenWindows& windows) {
  if (button == "schedule_definitions") {
    EditScheduleDefinitions(windows);
  } else if (button == "locations") {
    EditLocCat(kLocations, windows);
  } else if (button == "categories") {
    EditLocCat(kCategories, windows);
  } else if (button == "property_codes") {
    EditPropertyCodes(windows);
  } else if (button == "user_fields") {
    EditUserFields(windows);
  } else if (button == "permissions") {
    EditPermissions(windows);
  } else {
    return false;
  }
  Refresh();
  return true;
}

// ---- Locations and categories -------------------------------------------------------------

std::string CompanyScreen::LocCatFile(char which, char choice) const {
  if (new_company_ && !LocCatListIsGlobal(choice, which)) return std::string();
  return LocCatFilePath(
      {company_.folder(), company_.number(), company_.context().installation_folder, choice},
      which);
}

NvLocCatList& CompanyScreen::LocCatListUnderChoice(char which) {
  NvLocCatList& list = which == kLocations ? company_.locations() : company_.categories();
  const char before = loc_cat_choice_[which];
  const char now = record_.global_loc_cat;
  loc_cat_choice_[which] = now;
  if (LocCatListIsGlobal(before, which) == LocCatListIsGlobal(now, which)) return list;
  // The company's own list is put away; a global one was only read here.
  if (!LocCatListIsGlobal(before, which)) {
    if (new_company_) {
      own_lists_[which] = list;
    } else if (const std::string path = LocCatFile(which, before); SaveLocCatList(path, list) < 0) {
      TellUnwritten(ui_, path);
    }
  }
  if (new_company_ && !LocCatListIsGlobal(now, which)) {
    list = own_lists_[which];
  } else {
    LoadLocCatList(LocCatFile(which, now), &list);
  }
  return list;
}

// Global code files are shared by every company of the installation; this program leaves
// their editing to the main program.
void CompanyScreen::EditLocCat(char which, CompanyScreenWindows& windows) {
  NvLocCatList& list = LocCatListUnderChoice(which);
  if (LocCatListIsGlobal(record_.global_loc_cat, which)) {
    RefuseGlobalFileEditing(ui_);
    return;
  }
  std::vector<CodeListEditor::Row> rows;
  for (const NvLocCatEntry& entry : list.entries()) rows.push_back({entry.code, entry.description});
  CodeListEditor editor(which == kLocations ? kLocationsCaption : kCategoriesCaption,
                        kLocCatEditorWidth, kLocCatEditorHeight, LocCatColumns(), std::move(rows),
                        [this, which, &list](const std::vector<CodeListEditor::Row>& edited) {
                          NvLocCatList rebuilt;
                          for (const CodeListEditor::Row& row : edited)
                            rebuilt.Append(row[0], row[1]);
                          const std::string path = LocCatFile(which, record_.global_loc_cat);
                          if (path.empty()) {
                            rebuilt.Sort();  // as reading the file back would
                            list = std::move(rebuilt);
                            return true;
                          }
                          if (SaveLocCatList(path, rebuilt) < 0) {
                            TellUnwritten(ui_, path);
                            return false;
                          }
                          LoadLocCatList(path, &list);
                          return true;
                        });
  windows.RunCodeList(editor);
}

// ---- Property codes and user fields --------------------------------------------------------

void CompanyScreen::EditPropertyCodes(CompanyScreenWindows& windows) {
  PropertyCodeList codes;
  if (new_company_) {
    codes = pending_property_codes_.value_or(PropertyCodeList{});
  } else {
    // A settings file that does not read gives no codes, as for the main program.
    static_cast<void>(LoadPropertyCodes(company_.SettingsPath(), &codes));
  }
  std::vector<CodeListEditor::Row> rows;
  for (const PropertyCode& code : codes) rows.push_back({code.code, code.description});
  CodeListEditor editor(kPropertyCodesCaption, kSmallListEditorWidth, kSmallListEditorHeight,
                        PropertyCodeColumns(), std::move(rows),
                        [this](const std::vector<CodeListEditor::Row>& edited) {
                          PropertyCodeList saved;
                          for (const CodeListEditor::Row& row : edited)
                            saved.push_back({row[0], row[1]});
                          if (new_company_) {
                            pending_property_codes_ = std::move(saved);
                            return true;
                          }
                          if (SavePropertyCodes(company_.SettingsPath(), saved)) return true;
                          TellUnwritten(ui_, company_.SettingsPath());
                          return false;
                        });
  windows.RunCodeList(editor);
}

void CompanyScreen::EditUserFields(CompanyScreenWindows& windows) {
  UserFieldsScreen screen(record_.user_fields,
                          [this, &windows](int index) { EditValues(index, windows); });
  if (windows.RunUserFields(screen)) record_.user_fields = screen.fields();
}

void CompanyScreen::EditValues(int index, CompanyScreenWindows& windows) {
  std::vector<std::string> values;
  if (new_company_) {
    if (auto kept = pending_values_.find(index); kept != pending_values_.end())
      values = kept->second;
  } else {
    static_cast<void>(LoadUserFieldValues(company_.SettingsPath(), index, &values));
  }
  std::vector<CodeListEditor::Row> rows;
  for (const std::string& value : values) rows.push_back({value});
  CodeListEditor editor(kValuesCaption, kSmallListEditorWidth, kSmallListEditorHeight,
                        ValueColumns(), std::move(rows),
                        [this, index](const std::vector<CodeListEditor::Row>& edited) {
                          std::vector<std::string> saved;
                          for (const CodeListEditor::Row& row : edited) saved.push_back(row[0]);
                          if (new_company_) {
                            pending_values_[index] = std::move(saved);
                            return true;
                          }
                          if (SaveUserFieldValues(company_.SettingsPath(), index, saved))
                            return true;
                          TellUnwritten(ui_, company_.SettingsPath());
                          return false;
                        });
  windows.RunCodeList(editor);
}

void CompanyScreen::EditPermissions(CompanyScreenWindows& windows) {
  // The user who makes a company has every right to it.
  const int level = new_company_ ? kFullAccess : company_.permission();
  static_cast<void>(EditUserPermissions(
      company_.context(), &record_.permissions, level, ui_,
      [&windows](PermissionsDialogModel& model) { windows.RunPermissions(model); }));
}

// ---- Schedule definitions ------------------------------------------------------------------

// A company not yet made has no settings file: its rules see the standard and the
// all-companies definitions, and the screen keeps its own ones.
CompanySchedules CompanyScreen::SchedulesForRules() const {
  return SchedulesFor(company_, new_company_);
}

CompanySchedules CompanyScreen::SchedulesFor(const NvCompany& company, bool new_company) {
  CompanySchedules schedules = company.Schedules();
  if (new_company) schedules.settings_file.clear();
  return schedules;
}

std::optional<ScheduleDefinition> CompanyScreen::DefinitionInForce(char letter) const {
  if (new_company_ && pending_definitions_) {
    for (const ScheduleDefinition& d : *pending_definitions_) {
      if (d.letter == letter) return d;
    }
  }
  const int sources = new_company_ ? kStandardSource | kAllCompaniesSource : kAllScheduleSources;
  return LookupScheduleDefinition(SchedulesForRules(), letter, sources);
}

ScheduleDefinitionList CompanyScreen::LoadDefinitions() const {
  CompanySchedules schedules = SchedulesForRules();
  schedules.letters = record_.schedule_letters;
  schedules.entries = record_.schedules;
  if (!new_company_) return LoadScheduleDefinitions(schedules, kAllScheduleSources);
  // Reconciling with the record's schedules would write this company's definitions; they
  // are made here instead, for the entries that no shared definition matches.
  schedules.entries.clear();
  ScheduleDefinitionList list =
      LoadScheduleDefinitions(schedules, kStandardSource | kAllCompaniesSource);
  std::vector<ScheduleDefinition> own;
  if (pending_definitions_) {
    own = *pending_definitions_;
  } else {
    for (const ScheduleEntry& entry : record_.schedules) {
      const bool matched = std::any_of(list.begin(), list.end(), [&](const ScheduleDefinition& d) {
        return d.letter == entry.letter && EqualIgnoringCase(d.type, entry.type);
      });
      if (!matched)
        own.push_back({entry.letter, entry.type, entry.name, kThisCompanySource, false});
    }
  }
  for (ScheduleDefinition& d : own) list.Add(std::move(d));
  SetEffectiveAndDisplayOrder(&list);
  return list;
}

void CompanyScreen::EditScheduleDefinitions(CompanyScreenWindows& windows) {
  const ScheduleDefinitionList before = LoadDefinitions();
  ScheduleDefinitionList list = before;
  CompanySchedules schedules = SchedulesForRules();
  DlgEdScheduleDefinitions::Saver saver;
  if (new_company_) {
    saver = [this, schedules](const ScheduleDefinitionList& saved) {
      bool ok =
          DeleteProfileSection(schedules.installation_settings_file, kScheduleDefinitionsSection);
      std::vector<ScheduleDefinition> own;
      for (const ScheduleDefinition& d : saved) {
        if (d.source == kAllCompaniesSource) ok = WriteScheduleDefinition(schedules, d) && ok;
        if (d.source == kThisCompanySource) own.push_back(d);
      }
      pending_definitions_ = std::move(own);
      return ok;
    };
  }
  DefinitionsWindow window(windows);
  if (!nv::EditScheduleDefinitions(window, ui_, schedules, &list, record_.schedule_letters, true,
                                   std::move(saver))) {
    return;
  }
  // A schedule of the company whose definition in force changed takes the new type and
  // description; the others keep the record's own.
  for (ScheduleEntry& entry : record_.schedules) {
    const ScheduleDefinition* old_definition = Effective(before, entry.letter);
    const ScheduleDefinition* new_definition = Effective(list, entry.letter);
    if (new_definition == nullptr) continue;
    if (old_definition == nullptr || old_definition->type != new_definition->type ||
        old_definition->description != new_definition->description) {
      entry.type = new_definition->type;
      entry.name = new_definition->description;
    }
  }
}

// ---- Settings of a new company --------------------------------------------------------------

bool CompanyScreen::WriteSettings(NvCompany& company) const {
  if (!new_company_) return true;
  const std::string settings = company.SettingsPath();
  bool ok = true;
  if (pending_property_codes_) ok = SavePropertyCodes(settings, *pending_property_codes_) && ok;
  for (const auto& [index, values] : pending_values_) {
    ok = SaveUserFieldValues(settings, index, values) && ok;
  }
  if (pending_definitions_) {
    const CompanySchedules schedules = company.Schedules();
    ok = DeleteProfileSection(settings, kScheduleDefinitionsSection) && ok;
    for (const ScheduleDefinition& d : *pending_definitions_) {
      ok = WriteScheduleDefinition(schedules, d) && ok;
    }
  }
  return ok;
}

}  // namespace nv
