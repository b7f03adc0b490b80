// The window "Export Company Data", where the user composes an export definition over one
// open company and runs it. This is the window's state and its commands; the Qt view
// (gui/export_definitions_window.h) only binds controls to it.
//
//   Show:               "*-General Data" and "%c-%s" per company schedule; a checked
//                       group lists its fields under "Available Values" (a schedule's
//                       as "FIELD, SCHEDULE NAME")
//   >  <                append the chosen value as the last column (every kind of asset
//                       but "None of the Above"), remove the chosen column; each is enabled
//                       only while its list has a choice
//   Columns to Export   "LETTERS\tFIELD" or "LETTERS\tFIELD, SCHEDULE NAME"
//   column properties   Column (letters: other letters move the column there), Heading,
//                       Addition, Disposition, "Current, but not Addition or Disposition",
//                       "None of the Above"; disabled without a chosen column
//   options             Include Column Headings, Sort Assets By, Asset Selection,
//                       File Name ("export.txt" when the definition has none), Folder (the
//                       company's folder at first), Browse
//   buttons             Open, Save, Save As, Delete, Export, Help
//
// Changes to what a definition stores mark it changed; Open and Export offer to save a
// changed one. Export checks the folder, the file name and the columns, offers to save,
// runs the asset selection when the definition selects assets, and writes the file.
//
// Script lines (ui/scripted_window.h), as the transcript names them ("export-window"):
//
//   show GROUP | hide GROUP   "*" or a schedule letter
//   add VALUE                 chooses the available value VALUE (as listed) and presses ">"
//   column LETTERS            chooses the column LETTERS
//   set NAME VALUE            column LETTERS, heading TEXT, addition | disposition | current
//                             | none yes|no, include_headings yes|no, sort asset-no|company,
//                             asset_selection all|selected, file_name TEXT, folder TEXT
//   click BUTTON              remove ("<"), open, save, save-as, delete, export, browse, help
//
// A finished export ends the window; `cancel` or `close` closes it.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/installation_context.h"
#include "base/ui.h"
#include "export/export_definition.h"
#include "export/export_run.h"
#include "ui/scripted_window.h"
#include "ui/selection/selection.h"

namespace nv {

class NvCompany;

inline constexpr char kExportWindowTitle[] = "Export Company Data";
inline constexpr char kExportHelpTopic[] = "nvsy2x29.html";
inline constexpr char kExportSelectionTitle[] = "Export Asset Data";

inline constexpr char kCurrentDefinitionText[] = "Current Definition: %s\r\n\r\n%s";
inline constexpr char kNoDefinitionText[] = "**** No Export Definition Selected ****";
inline constexpr char kDefinedForCompany[] = "Defined for This Company Only";
inline constexpr char kDefinedForAll[] = "Defined for All Companies";

inline constexpr char kSaveNewDefinitionQuestion[] = "Save new definition?";
inline constexpr char kSaveDefinitionChangesQuestion[] = "Save changes to definition %s?";
inline constexpr char kNoChangesToSave[] = "No changes to save.";
inline constexpr char kOpenBeforeDeleting[] =
    "You must open an existing definition before deleting it.";
inline constexpr char kDeleteDefinitionQuestion[] =
    "Are you sure you want to delete definition %s?";
inline constexpr char kUnableToSaveDefinition[] = "Unable to save export definition %s in %s";

inline constexpr char kNoExportFolder[] = "No export folder defined.";
inline constexpr char kSaveThisDefinitionQuestion[] = "Save this export definition?";
inline constexpr char kSaveChangesToThisQuestion[] = "Save changes to this export definition?";
inline constexpr char kUnableToInitSelection[] = "Unable to Initialize Asset Selection.";

class ExportWindow : public ScriptedWindow {
 public:
  // The selection window: shows `selection` under `title`; true for OK.
  using SelectAssetsFunction =
      std::function<bool(Ui&, NvCompany&, KelSelection&, std::string_view title)>;
  // Writes the file of a checked definition (folder, file name and columns set) for the
  // company of that number and tells the user how it went; `selection` is given when the
  // definition selects assets. The count of lines written, or nothing when it ended early.
  using WriteFunction =
      std::function<std::optional<int>(const InstallationContext&, std::string_view number,
                                       const ExportDefinition&, const KelSelection*, Ui&)>;

  struct Group {
    char letter = kExportGeneralGroup;  // "*" or a schedule letter
    std::string text;                   // "*-General Data", "B-Book"
    bool shown = false;
  };
  struct AvailableValue {
    char group = kExportGeneralGroup;
    int field = 0;  // ExportField::number
    std::string text;
  };
  enum class Flag { kAddition, kDisposition, kCurrent, kNoneOfTheAbove };

  // The file is written by ExportToFile; the selection window must be given (until it is,
  // selecting assets cannot start).
  // REQUIRES: `company` has been selected (opened once, its lock held); it may be closed
  // since. It outlives the window, as do `context` and `ui`.
  // The general fields are shown at first.
  ExportWindow(const InstallationContext& context, NvCompany& company, Ui& ui);
  ExportWindow(const ExportWindow&) = delete;
  ExportWindow& operator=(const ExportWindow&) = delete;

  void set_select_assets(SelectAssetsFunction select) { select_assets_ = std::move(select); }
  void set_write(WriteFunction write) { write_ = std::move(write); }

  // "Show:" and "Available Values". Changing the groups clears the chosen value.
  const std::vector<Group>& groups() const { return groups_; }
  void ShowGroup(char letter, bool shown);
  const std::vector<AvailableValue>& available() const { return available_; }
  std::optional<size_t> chosen_value() const { return chosen_value_; }
  void ChooseValue(std::optional<size_t> index);

  // ">" appends the chosen value as the last column and chooses that column.
  bool CanAdd() const { return chosen_value_.has_value(); }
  void Add();

  // "Columns to Export".
  std::vector<std::string> ColumnLines() const;
  std::optional<size_t> chosen_column() const { return chosen_column_; }
  void ChooseColumn(std::optional<size_t> index);
  // "<" removes the chosen column; no column is chosen then.
  bool CanRemove() const { return chosen_column_.has_value(); }
  void Remove();

  // The chosen column's properties; without a chosen column they are disabled, show
  // nothing and the setters do nothing.
  bool PropertiesEnabled() const { return chosen_column_.has_value(); }
  std::string ColumnText() const;
  // Moves the chosen column to the position of `letters`; false (the column stays) for
  // letters that name no position of the list.
  bool SetColumnText(std::string_view letters);
  std::string Heading() const;
  void SetHeading(std::string_view heading);
  bool FlagOf(Flag flag) const;
  void SetFlag(Flag flag, bool set);

  // Options.
  bool include_headings() const { return definition_.include_headings; }
  void SetIncludeHeadings(bool include);
  ExportSortOrder sort_order() const { return definition_.sort_order; }
  void SetSortOrder(ExportSortOrder order) { definition_.sort_order = order; }
  bool select_assets() const { return definition_.select_assets; }
  void SetSelectAssets(bool select);
  const std::string& file_name_text() const { return file_name_text_; }
  void SetFileName(std::string_view text);
  const std::string& folder_text() const { return folder_text_; }
  void SetFolder(std::string_view text) { folder_text_ = std::string(text); }
  // The folder dialog at the folder; a chosen folder replaces it.
  void Browse();

  // The box at the top.
  std::string DefinitionText() const;

  // Buttons.
  void Open();
  void Save();
  void SaveAs();
  void Delete();
  // The run: true when the file was written (the window then ends).
  bool Export();
  void Help();

  const ExportDefinition& definition() const { return definition_; }
  const KelSelection& selection() const { return selection_; }

  std::string ScriptName() const override;
  std::string ScriptState() const override;
  std::optional<Step> ScriptStep(std::string_view directive, std::string_view argument,
                                 std::string* error) override;

 private:
  // The file that holds definitions of `scope`.
  std::string FileOf(ExportScope scope) const;
  void ListAvailable();
  std::string ScheduleName(char letter) const;
  // The file name and folder boxes into the definition.
  void TakeBoxes();
  // Saves under the definition's name, or through Save As without one; true when saved.
  bool SaveCurrent();
  bool Write();
  // Step 2 of the run: the selection window; false when the run ends here.
  bool RunSelection();
  // Offers to save a changed definition before another is opened; false for Cancel.
  bool OfferSave();
  std::optional<Step> ScriptSet(std::string_view name, std::string_view value, std::string* error);
  std::optional<Step> ScriptClick(std::string_view button, std::string* error);

  const InstallationContext& context_;
  NvCompany& company_;
  Ui& ui_;
  ExportDefinition definition_;
  KelSelection selection_;
  std::vector<Group> groups_;
  std::vector<AvailableValue> available_;
  std::optional<size_t> chosen_value_;
  std::optional<size_t> chosen_column_;
  std::string file_name_text_ = kDefaultExportFileName;
  std::string folder_text_;
  SelectAssetsFunction select_assets_;
  WriteFunction write_;
};

}  // namespace nv
