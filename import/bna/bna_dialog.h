// The BNA Next Dimension import dialog: the source grid, the list of conversion
// definitions, the panel that edits the selected definition, the group boxes that choose
// which definitions take part, and the buttons that pick the report and the profile and
// start the import. The window (gui/bna_dialog_window.h) only shows this state and calls
// these commands.
//
// The panel, by control:
//
//   482  the selected definition's name, "No value selected." without one
//   113  "Do not copy"; while checked, the seven method buttons are off
//   114-120  the method buttons, in the order ENTIRE RIGHT LEFT MID DEFAULT SPECIAL SET
//   121  RIGHT's count     122  LEFT's count     123  MID's count    124  MID's start
//   125  SET's text        126  the column letters (a click in the grid fills it)
//
// Every change of the panel but typing is stored into the selected definition at once;
// typed fields are stored when they lose the focus.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/installation_context.h"
#include "base/ui.h"
#include "import/bna/bna_fields.h"
#include "import/bna/bna_source_grid.h"
#include "import/bna/bna_state.h"
#include "import/bna/conversion_list.h"
#include "ui/bna_dialog_commands.h"

namespace nv {

inline constexpr char kBnaDialogCaption[] = "BNA Next Dimension import";
inline constexpr char kBnaNoProfileSelected[] = "** No Profile Selected **";
inline constexpr char kBnaNoValueSelected[] = "No value selected.";
inline constexpr char kBnaAssetNoColumnMissing[] = "You must define the Asset No. column.";
inline constexpr char kBnaSelectSourceTitle[] = "Select Source File";
inline constexpr char kBnaSourceFilter[] = "BNA Next Dimension report files|*.txt;*.csv";
inline constexpr char kBnaProfileDialogTitle[] = "Import Profiles";
inline constexpr char kBnaProfileFilter[] = "Import Profiles|*.imp";
inline constexpr char kBnaCreateProfileQuestion[] = "Create a new Profile?";

// The typed fields of the panel.
enum class BnaPanelField { kRightCount, kLeftCount, kMidCount, kMidStart, kSetText, kColumn };

// What the panel shows. `method` is the checked button; kNone for none.
struct BnaPanel {
  std::string name = kBnaNoValueSelected;
  bool no_copy = false;
  ConversionMethod method = ConversionMethod::kNone;
  std::string right_count;  // 121
  std::string left_count;   // 122
  std::string mid_count;    // 123
  std::string mid_start;    // 124
  std::string set_text;     // 125
  std::string column;       // 126

  std::string& Field(BnaPanelField field);
  const std::string& Field(BnaPanelField field) const;
};

// The group boxes: letter and caption, in the order the window shows them.
struct BnaGroupBox {
  char letter;
  const char* caption;
};
inline constexpr BnaGroupBox kBnaGroupBoxes[] = {
    {'G', "General Data"}, {'T', "Tax Data"},   {'B', "Book Data"},  {'A', "AMT Data"},
    {'C', "ACE Data"},     {'S', "State Data"}, {'O', "Other Data"},
};

class BnaNdDialog final : public BnaDialogCommands {
 public:
  using ImportRun = std::function<void()>;

  // Sets the dialog up from the current profile of `state`: file type, definitions, group
  // boxes, the list. `settings_file` is the installation's settings file, where the
  // profile in use is remembered for the user; `run_import` runs the import once the
  // definitions pass their check.
  // REQUIRES: state, context and ui outlive the dialog.
  BnaNdDialog(BnaImportState& state, const InstallationContext& context, std::string settings_file,
              Ui& ui, ImportRun run_import);
  BnaNdDialog(const BnaNdDialog&) = delete;
  BnaNdDialog& operator=(const BnaNdDialog&) = delete;

  const char* caption() const { return kBnaDialogCaption; }
  // Control 483: the current profile's name, or "** No Profile Selected **".
  std::string ProfileCaption() const;
  int file_type() const { return state_.file_type; }
  bool GroupChecked(char letter) const;
  const std::optional<std::string>& source_path() const { return state_.source_path; }
  const ImportConversionList& definitions() const { return state_.definitions; }

  // The list box: one line per active definition, in list order.
  const std::vector<std::string>& list_lines() const { return list_lines_; }
  // The selected line, -1 for none.
  int list_selection() const { return list_selection_; }
  // Shows the definition of line `row` in the panel; -1 (or a row the list does not have)
  // leaves nothing selected.
  void SelectLine(int row);

  const BnaPanel& panel() const { return panel_; }
  bool method_buttons_enabled() const { return !panel_.no_copy; }
  // Typing into a field: the panel holds the text until the field loses the focus.
  void TypePanelField(BnaPanelField field, std::string_view text);
  // The field lost the focus.
  void LeavePanelField() { StorePanel(); }
  // A method button: ConversionMethod::kNone is no button.
  void SetMethod(ConversionMethod method);
  // Stores the panel into the selected definition and rewrites its list line.
  void StorePanel();

  BnaSourceGrid& grid() { return grid_; }
  const BnaSourceGrid& grid() const { return grid_; }

  // BnaDialogCommands.
  BnaNdDialog& dialog() override { return *this; }
  std::string Describe() const override;
  void SelectFile() override;
  void SelectProfile() override;
  void ImportData() override;
  void SetFileType(int file_type) override;
  bool SetGroupChecked(char letter, bool checked) override;
  bool SelectDefinition(std::string_view name) override;
  void SetNoCopy(bool no_copy) override;
  bool CheckMethod(std::string_view keyword) override;
  bool EnterPanelField(std::string_view field, std::string_view text) override;
  void ClickGrid(int x) override;
  void Close() override;

  // Writes the definitions and the dialog's settings into the current profile and
  // remembers the profile for the user. False when either could not be written.
  [[nodiscard]] bool SaveProfile();

 private:
  // The file type and group boxes of the current profile (with its main profile behind).
  void ReadProfileSettings();
  void RebuildGrid();
  void FillList();
  void ShowEntry();
  ConversionDefinition* SelectedEntry();

  BnaImportState& state_;
  const InstallationContext& context_;
  std::string settings_file_;
  Ui& ui_;
  ImportRun run_import_;
  BnaSourceGrid grid_;
  std::vector<std::string> list_lines_;
  std::vector<size_t> list_entries_;  // the definition of each list line
  int list_selection_ = -1;
  std::optional<size_t> selected_;  // the definition the panel shows
  BnaPanel panel_;
};

}  // namespace nv
