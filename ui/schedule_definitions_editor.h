// The schedule definitions editor without its window: DlgEdScheduleDefinitions holds the
// window's state (a copy of the definitions, the selection, the edit fields and which
// controls are enabled) and carries out its commands, asking and telling the user through
// the Ui. A window (gui/) shows the state and calls the commands; tests call them directly.
//
// Controls of the window, by their identifiers:
//   676 list of definitions      677 type list            324 letter     264 description
//   870 "All Companies"          871 "This Company Only"
//   613 save   608 new   618 delete   626 cancel the edit   1 close   9 help
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/ui.h"
#include "store/schedule/schedule_definitions.h"
#include "store/schedule/schedule_entry.h"

namespace nv {

inline constexpr char kScheduleDefinitionsHelpTopic[] = "nvsy16lv.html";

// One line of the definitions list: its four columns and the definition it shows.
struct sdefRow {
  std::string letter;
  std::string description;
  std::string type_caption;  // ScheduleTypeCaption of the type
  std::string source;        // "Standard Definition", "All Companies", "This Company Only"
  size_t index = 0;          // position in DlgEdScheduleDefinitions::list()
};

// One entry of the type list.
struct sdefTypeEntry {
  std::string type;
  std::string text;
};

class DlgEdScheduleDefinitions {
 public:
  enum class Mode { kNone, kNew, kSelected };
  enum class CloseResult { kClosed, kStayOpen };
  // Writes the definitions when the editor closes with changes saved. Unless replaced, both
  // stores with SaveScheduleDefinitions.
  using Saver = std::function<bool(const ScheduleDefinitionList& list)>;

  // `company_letters`: the company's schedule letters; definitions of those letters are in
  // use, so changing or deleting them is guarded.
  DlgEdScheduleDefinitions(CompanySchedules company, const ScheduleDefinitionList& list,
                           std::string_view company_letters, bool allow_delete, Ui& ui);

  // T, B, A, C, O, generic State, then State(%s) for every state code.
  static const std::vector<sdefTypeEntry>& TypeEntries();

  // --- State -----------------------------------------------------------------------
  const ScheduleDefinitionList& list() const { return list_; }
  // The definitions in force, in display order.
  const std::vector<sdefRow>& rows() const { return rows_; }
  std::optional<size_t> selected_row() const;
  Mode mode() const { return mode_; }
  std::string caption() const;  // "New Definition" or "Selected Definition"

  const std::string& letter_text() const { return letter_text_; }
  const std::string& type() const { return type_; }
  const std::string& description() const { return description_; }
  bool this_company_only() const { return this_company_only_; }
  // The type list entry of the edited type, if it has one.
  std::optional<size_t> type_entry() const;

  bool list_enabled() const { return mode_ != Mode::kNew; }
  bool close_enabled() const { return mode_ != Mode::kNew; }
  bool letter_enabled() const { return mode_ == Mode::kNew; }
  // Type, description, source buttons, save and cancel.
  bool fields_enabled() const;
  bool delete_enabled() const;

  // True once the definitions have been written to the settings files on close.
  bool saved() const { return saved_; }
  void set_saver(Saver saver) { saver_ = std::move(saver); }

  // --- Field edits --------------------------------------------------------------------
  void SetLetterText(std::string_view text) { letter_text_ = std::string(text); }
  void SetDescription(std::string_view text) { description_ = std::string(text); }
  void SetThisCompanyOnly(bool this_company) { this_company_only_ = this_company; }
  // Takes the entry's type and its default description.
  void ChooseType(size_t entry);

  // --- Commands -----------------------------------------------------------------------
  // Selects a row (none: no selection) after saving the edit; false when the edit could
  // not be saved and the selection stays.
  bool Select(std::optional<size_t> row);
  // Starts a new definition after saving the edit; false when that could not be saved.
  bool New();
  // Saves the edited definition into the list. False when nothing was saved.
  bool Save();
  void Delete();
  void CancelEdit();
  void Help();
  // Saves the edit, then offers to write changed definitions to the settings files.
  CloseResult Close();

 private:
  enum class SaveResult { kNothing, kSaved, kKept, kFailed, kAborted };

  SaveResult SaveEdit();
  SaveResult SaveSelected();
  SaveResult SaveNew();
  // Asks before an edited definition takes the place of `old`, of its letter and source.
  bool ConfirmReplace(const ScheduleDefinition& old) const;
  // Puts `edited` in place of the definitions at `remove` and selects it.
  void Store(ScheduleDefinition edited, std::vector<size_t> remove);
  ScheduleDefinition Edited(char letter) const;
  bool CompanyUses(char letter) const;
  void LoadFields();
  void ClearFields();
  void Rebuild();

  CompanySchedules company_;
  Ui& ui_;
  ScheduleDefinitionList original_;
  ScheduleDefinitionList list_;
  std::string company_letters_;
  bool allow_delete_;

  std::vector<sdefRow> rows_;
  Mode mode_ = Mode::kNone;
  // The selected definition, by its letter and source.
  char selected_letter_ = ' ';
  int selected_source_ = 0;

  std::string letter_text_;
  std::string type_;
  std::string description_;
  bool this_company_only_ = true;
  bool saved_ = false;
  Saver saver_;
};

// Shows the editor's window over its model and returns when the model's Close command has
// closed it.
class ScheduleDefinitionsWindowRunner {
 public:
  virtual ~ScheduleDefinitionsWindowRunner() = default;
  virtual void Run(DlgEdScheduleDefinitions& editor) = 0;
};

// Runs the editor over a copy of *list. True when the user saved changes; *list is then
// the saved definitions.
// `saver`, when given, writes the definitions in place of SaveScheduleDefinitions.
bool EditScheduleDefinitions(ScheduleDefinitionsWindowRunner& window, Ui& ui,
                             CompanySchedules company, ScheduleDefinitionList* list,
                             std::string_view company_letters, bool allow_delete,
                             DlgEdScheduleDefinitions::Saver saver = {});

}  // namespace nv
