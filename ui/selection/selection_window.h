// The selection window without its window: SelectionWindow holds a working copy of one
// selection and carries out the window's commands, asking and telling the user through
// the Ui. A Qt view (gui/selection_window.h) shows it through two screen tables; the
// scripted Ui drives the commands directly; tests call them.
//
// The window shows one row per selectable field, in the table's order:
//
//   [x] caption   [ ] exclude   [R]   criterion.................   [...]
//
// the check box switches the criterion on, the kind button (R values and ranges, V a list
// of values, P pause date ranges) says what the entry takes, the entry holds the criterion
// (30 characters, 1 for the one-letter fields) under the field's character rules, and the
// picker button, on fields with a list of values, adds a value picked from the list. Above
// the rows the schedule of the "sched" fields is chosen; beside them the saved selections
// are listed, loaded (by choosing one), saved and deleted, and asset numbers are scanned.
//
// Controls, by identifier:
//   rows      1000 + 10 * FIELD + 1 in use, + 2 exclude, + 3 kind button, + 4 criterion
//   panel     801 schedule   810 saved selections   811 "Save Current"   812 "Delete"
//             813 "Scan Barcodes"   1 OK   2 Cancel   9 Help
//   save      869 "Save for "   870 "All Companies"   871 "This Company Only"
//             880 description   881 Save   882 Cancel   883 Help
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/ui.h"
#include "store/codes/user_fields.h"
#include "ui/screen/field_description.h"
#include "ui/selection/saved_selections.h"
#include "ui/selection/selection.h"

namespace nv {

class NvCompany;

inline constexpr char kSelectionWindowTitle[] = "Asset Selection";
inline constexpr char kSaveSelectionTitle[] = "Save Asset Selection";
inline constexpr char kSelectionHelpTopic[] = "nvsy8kzc.html";

// A schedule the "sched" fields can take their values in.
struct SelectionScheduleChoice {
  char letter = 0;
  std::string description;
};

// What the window needs of the company: where selections are saved, its schedules, the
// names of its user fields and where its value lists lie.
struct SelectionWindowSetup {
  SelectionFiles files;
  std::vector<SelectionScheduleChoice> schedules;
  std::array<std::string, kUserFieldCount> user_field_names;
  std::string locations_file;
  std::string categories_file;
  std::string company_folder;  // the account groups' file lies here, under the number
  std::string company_number;
};

SelectionWindowSetup SelectionWindowSetupFor(const NvCompany& company);

// The save dialog as it opens.
struct SaveSelectionRequest {
  std::string name;  // the loaded or last saved selection's name
  bool all_companies = false;
  std::vector<std::string> names;  // the names saved so far, offered in the combo box
};

class SelectionWindow {
 public:
  // Control identifiers.
  static constexpr int kRowIdBase = 1000;
  static constexpr int kInUsePart = 1;
  static constexpr int kExcludePart = 2;
  static constexpr int kKindPart = 3;
  static constexpr int kEntryPart = 4;
  static constexpr int kScheduleId = 801;
  static constexpr int kSavedListId = 810;
  static constexpr int kSaveCurrentId = 811;
  static constexpr int kDeleteId = 812;
  static constexpr int kScanId = 813;
  static constexpr int kOkId = 1;
  static constexpr int kCancelId = 2;
  static constexpr int kHelpId = 9;
  static constexpr int kSaveForId = 869;
  static constexpr int kAllCompaniesId = 870;
  static constexpr int kThisCompanyId = 871;
  static constexpr int kDescriptionId = 880;
  static constexpr int kSaveButtonId = 881;
  static constexpr int kSaveCancelId = 882;
  static constexpr int kSaveHelpId = 883;

  static constexpr int RowId(int field, int part) { return kRowIdBase + 10 * field + part; }
  // The field and part of a row control; nothing for another identifier.
  static std::optional<std::pair<int, int>> RowOfId(int id);

  // The window opens on a copy of `selection`; a selection without a schedule, or with
  // one the company lacks, takes the company's first.
  // REQUIRES: `ui` outlives the window.
  SelectionWindow(Ui& ui, SelectionWindowSetup setup, const KelSelection& selection,
                  std::string title);
  SelectionWindow(const SelectionWindow&) = delete;
  SelectionWindow& operator=(const SelectionWindow&) = delete;

  Ui& ui() { return ui_; }
  const std::string& title() const { return title_; }
  // The criteria as edited so far; after Ok() the ones the caller keeps.
  const KelSelection& selection() const { return selection_; }

  // --- Rows ---
  // The row's caption: the field's name, or the company's name of a user field.
  std::string Caption(int field) const;
  // "R", "V" or "P".
  static char KindLetter(int field);
  // Entry width in characters.
  static int EntryWidth(int field);
  bool HasPicker(int field) const;

  void SetInUse(int field, bool in_use);
  void SetExclude(int field, bool exclude);
  // Takes the criterion as typed: upper case under the field's "upr"; a text that is not
  // blank switches the criterion on, a blank one off. It is checked on OK.
  void SetText(int field, std::string_view text);
  // The kind button: what the criterion takes, in a note.
  void ShowKindNote(int field);

  // --- Schedule ---
  // The company's schedules as "%c-%s".
  std::vector<std::string> ScheduleCaptions() const;
  // The caption of the selection's schedule ("" when it has none).
  std::string ScheduleCaption() const;
  // Takes the schedule whose letter begins `caption` (or is the letter); false when the
  // company has no such schedule.
  bool SetSchedule(std::string_view caption);

  // --- Pickers ---
  // The list the field's picker shows; empty when the field has none or its list is.
  std::vector<std::string> PickerOptions(int field) const;
  // Shows the picker; returns the criterion with the picked value added, or nothing when
  // nothing was picked. An empty list says so in a note instead.
  std::optional<std::string> PickedText(int field);
  // PickedText, taken into the criterion. True when a value was picked.
  bool Pick(int field);

  // --- Saved selections ---
  const std::vector<SavedSelectionEntry>& saved() const { return saved_; }
  // The list's lines: the name, with " (All Companies)" after one saved for all.
  std::vector<std::string> SavedCaptions() const;
  std::optional<size_t> SavedIndexOfCaption(std::string_view caption) const;
  // Loads the saved selection at `index` of saved(): its criteria replace the window's
  // (all off when it cannot be read) and its schedule, when it names one, is taken.
  bool Load(size_t index);
  SaveSelectionRequest SaveRequest() const;
  // The save dialog's Save: writes the criteria under `name`, for all companies or this
  // one, and lists it. A blank name or a failed write is told, and nothing is saved.
  bool Save(std::string_view name, bool all_companies);
  // Asks "Delete Current Asset Selection(%s)?" and removes the selection at `index`.
  bool Delete(size_t index);

  // "Scan Barcodes": the scanned codes become the asset number criterion, alone in use.
  void Scan(std::string_view scanned);
  void Help();

  // OK: every criterion in use must read under its field's rules; the first that does not
  // is told ("Invalid date", "Invalid input", "Error on input") and the window stays.
  [[nodiscard]] bool Ok();
  // The field that the last Ok() refused.
  std::optional<int> refused_field() const { return refused_field_; }

  // --- Screen tables for a view ---
  // The rows, and the controls around them; a view builds both and calls Refresh after a
  // change so that every control shows the model again.
  FieldTable& rows() { return rows_; }
  FieldTable& panel() { return panel_; }
  // The save dialog's controls for `request`; Save and its checks are the view's to call.
  static FieldTable SaveDialogTable(const SaveSelectionRequest& request);
  void Refresh();

 private:
  void BuildRows();
  void BuildPanel();
  void ReadSavedList();
  // A picker's lines and the value each stands for.
  struct PickerList {
    std::vector<std::string> lines;
    std::vector<std::string> values;
  };
  PickerList ListOf(int field) const;
  std::string EmptyListNote(int field) const;

  Ui& ui_;
  SelectionWindowSetup setup_;
  std::string title_;
  KelSelection selection_;
  std::vector<SavedSelectionEntry> saved_;
  std::optional<int> refused_field_;
  FieldTable rows_;
  FieldTable panel_;
};

// The value that a choice of a field's h(...) list stands for: the part before its "-"
// ("3" of " 3-MACRS"), in a one-letter field its first letter ("U" of "Used").
std::string ChoiceValue(int field, std::string_view choice);

}  // namespace nv
