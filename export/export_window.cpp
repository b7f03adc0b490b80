#include "export/export_window.h"

#include "base/ascii.h"
#include "base/column_letters.h"
#include "base/str_format.h"
#include "export/select_export_definition.h"
#include "store/company/company.h"
#include "store/schedule/schedule_definitions.h"
#include "ui/scripted_ui.h"

namespace nv {

namespace {

bool* FlagMember(ExportColumn& column, ExportWindow::Flag flag) {
  switch (flag) {
    case ExportWindow::Flag::kAddition:
      return &column.addition;
    case ExportWindow::Flag::kDisposition:
      return &column.disposition;
    case ExportWindow::Flag::kCurrent:
      return &column.current;
    case ExportWindow::Flag::kNoneOfTheAbove:
      return &column.none_of_the_above;
  }
  return &column.addition;
}

const char* YesNo(bool yes) {
  return yes ? "yes" : "no";
}

std::optional<bool> ParseYesNo(std::string_view text) {
  if (text == "yes") return true;
  if (text == "no") return false;
  return std::nullopt;
}

}  // namespace

ExportWindow::ExportWindow(const InstallationContext& context, NvCompany& company, Ui& ui)
    : context_(context),
      company_(company),
      ui_(ui),
      folder_text_(company.folder()),
      write_(ExportToFile) {
  groups_.push_back({kExportGeneralGroup, "*-General Data", true});
  const CompanySchedules schedules = company_.Schedules();
  for (char letter : schedules.letters) {
    groups_.push_back({letter,
                       StrPrintf("%c-%s", letter, CompanyScheduleName(schedules, letter).c_str()),
                       false});
  }
  ListAvailable();
}

std::string ExportWindow::FileOf(ExportScope scope) const {
  return ExportDefinitionFile(scope, context_.installation_folder, company_);
}

std::string ExportWindow::ScheduleName(char letter) const {
  // A group's text is "%c-%s": the name follows the letter and the hyphen.
  for (const Group& group : groups_) {
    if (group.letter == letter) return group.text.substr(2);
  }
  // A loaded definition may name a schedule the company no longer has.
  return std::string(1, letter);
}

void ExportWindow::ListAvailable() {
  available_.clear();
  chosen_value_.reset();
  for (const Group& group : groups_) {
    if (!group.shown) continue;
    if (group.letter == kExportGeneralGroup) {
      for (const ExportField& field : GeneralExportFields()) {
        available_.push_back({kExportGeneralGroup, field.number, field.name});
      }
    } else {
      const std::string schedule = ScheduleName(group.letter);
      for (const ExportField& field : ScheduleExportFields()) {
        available_.push_back({group.letter, field.number, field.name + (", " + schedule)});
      }
    }
  }
}

void ExportWindow::ShowGroup(char letter, bool shown) {
  for (Group& group : groups_) {
    if (group.letter == letter && group.shown != shown) {
      group.shown = shown;
      ListAvailable();
    }
  }
}

void ExportWindow::ChooseValue(std::optional<size_t> index) {
  chosen_value_ = index && *index < available_.size() ? index : std::nullopt;
}

void ExportWindow::Add() {
  if (!chosen_value_) return;
  const AvailableValue& value = available_[*chosen_value_];
  ExportColumn column;
  column.field = value.field;
  column.group = value.group;
  column.heading = value.text;
  column.addition = column.disposition = column.current = true;
  definition_.columns.push_back(std::move(column));
  chosen_column_ = definition_.columns.size() - 1;
  definition_.changed = true;
}

std::vector<std::string> ExportWindow::ColumnLines() const {
  std::vector<std::string> lines;
  for (size_t i = 0; i < definition_.columns.size(); ++i) {
    const ExportColumn& column = definition_.columns[i];
    const ExportField* field = FindExportField(column.field);
    std::string line = ColumnLetters(static_cast<int>(i)) + "\t" + (field ? field->name : "");
    if (column.group != kExportGeneralGroup) line += ", " + ScheduleName(column.group);
    lines.push_back(std::move(line));
  }
  return lines;
}

void ExportWindow::ChooseColumn(std::optional<size_t> index) {
  chosen_column_ = index && *index < definition_.columns.size() ? index : std::nullopt;
}

void ExportWindow::Remove() {
  if (!chosen_column_) return;
  definition_.columns.erase(definition_.columns.begin() +
                            static_cast<std::ptrdiff_t>(*chosen_column_));
  chosen_column_.reset();
  definition_.changed = true;
}

std::string ExportWindow::ColumnText() const {
  return chosen_column_ ? ColumnLetters(static_cast<int>(*chosen_column_)) : std::string();
}

bool ExportWindow::SetColumnText(std::string_view letters) {
  if (!chosen_column_) return false;
  const std::optional<int> to = ColumnIndex(TrimBlanks(letters));
  if (!to || static_cast<size_t>(*to) >= definition_.columns.size()) return false;
  const size_t from = *chosen_column_;
  const size_t target = static_cast<size_t>(*to);
  if (target == from) return true;
  auto& columns = definition_.columns;
  ExportColumn moved = std::move(columns[from]);
  columns.erase(columns.begin() + static_cast<std::ptrdiff_t>(from));
  columns.insert(columns.begin() + static_cast<std::ptrdiff_t>(target), std::move(moved));
  chosen_column_ = target;
  definition_.changed = true;
  return true;
}

std::string ExportWindow::Heading() const {
  return chosen_column_ ? definition_.columns[*chosen_column_].heading : std::string();
}

void ExportWindow::SetHeading(std::string_view heading) {
  if (!chosen_column_) return;
  std::string& current = definition_.columns[*chosen_column_].heading;
  if (current == heading) return;
  current = std::string(heading);
  definition_.changed = true;
}

bool ExportWindow::FlagOf(Flag flag) const {
  if (!chosen_column_) return false;
  ExportColumn column = definition_.columns[*chosen_column_];
  return *FlagMember(column, flag);
}

void ExportWindow::SetFlag(Flag flag, bool set) {
  if (!chosen_column_) return;
  bool* member = FlagMember(definition_.columns[*chosen_column_], flag);
  if (*member == set) return;
  *member = set;
  definition_.changed = true;
}

void ExportWindow::SetIncludeHeadings(bool include) {
  if (definition_.include_headings == include) return;
  definition_.include_headings = include;
  definition_.changed = true;
}

void ExportWindow::SetSelectAssets(bool select) {
  if (definition_.select_assets == select) return;
  definition_.select_assets = select;
  definition_.changed = true;
}

void ExportWindow::SetFileName(std::string_view text) {
  if (file_name_text_ == text) return;
  file_name_text_ = std::string(text);
  definition_.changed = true;
}

void ExportWindow::Browse() {
  if (std::optional<std::string> folder = ui_.ChooseFolder("Export Folder", folder_text_)) {
    folder_text_ = std::move(*folder);
  }
}

std::string ExportWindow::DefinitionText() const {
  if (!definition_.name) return kNoDefinitionText;
  return StrPrintf(
      kCurrentDefinitionText, definition_.name->c_str(),
      definition_.scope == ExportScope::kAllCompanies ? kDefinedForAll : kDefinedForCompany);
}

void ExportWindow::TakeBoxes() {
  definition_.file_name = std::string(TrimBlanks(file_name_text_));
  definition_.folder = std::string(TrimBlanks(folder_text_));
}

bool ExportWindow::Write() {
  const std::string file = FileOf(definition_.scope);
  if (SaveDefinition(file, definition_)) return true;
  MessageF(ui_, "Error", kUnableToSaveDefinition, definition_.name.value_or("").c_str(),
           file.c_str());
  return false;
}

bool ExportWindow::SaveCurrent() {
  if (!definition_.name) {
    SaveAs();
    return definition_.name && !definition_.changed;
  }
  TakeBoxes();
  return Write();
}

void ExportWindow::SaveAs() {
  TakeBoxes();
  ExportDefinition named = definition_;
  if (!SelectExportDefinition(SelectDefinitionMode::kSaveAs, FileOf(ExportScope::kThisCompany),
                              FileOf(ExportScope::kAllCompanies), named, ui_)) {
    return;
  }
  definition_.name = named.name;
  definition_.scope = named.scope;
  static_cast<void>(Write());  // a failure has been told
}

void ExportWindow::Save() {
  if (!definition_.name) {
    SaveAs();
    return;
  }
  if (!definition_.changed) {
    ui_.Message(kNoChangesToSave, "Error");
    return;
  }
  static_cast<void>(SaveCurrent());  // a failure has been told
}

bool ExportWindow::OfferSave() {
  if (!definition_.changed) return true;
  const Answer answer =
      definition_.name
          ? ui_.Question(StrPrintf(kSaveDefinitionChangesQuestion, definition_.name->c_str()),
                         DefaultButton::kYes)
          : ui_.Question(kSaveNewDefinitionQuestion, DefaultButton::kYes);
  if (answer == Answer::kCancel) return false;
  if (answer == Answer::kYes) return SaveCurrent();
  return true;
}

void ExportWindow::Open() {
  if (!OfferSave()) return;
  ExportDefinition chosen = definition_;
  if (!SelectExportDefinition(SelectDefinitionMode::kOpen, FileOf(ExportScope::kThisCompany),
                              FileOf(ExportScope::kAllCompanies), chosen, ui_)) {
    return;
  }
  if (!LoadDefinition(FileOf(chosen.scope), *chosen.name, chosen)) {
    MessageF(ui_, "Error", kDefinitionNotFound, chosen.name->c_str());
    return;
  }
  definition_ = std::move(chosen);
  file_name_text_ = definition_.file_name.empty() ? kDefaultExportFileName : definition_.file_name;
  chosen_column_.reset();
}

void ExportWindow::Delete() {
  if (!definition_.name) {
    ui_.Message(kOpenBeforeDeleting);
    return;
  }
  if (!AskYes(ui_, DefaultButton::kNo, kDeleteDefinitionQuestion, definition_.name->c_str())) {
    return;
  }
  if (!DeleteDefinition(FileOf(definition_.scope), *definition_.name)) {
    MessageF(ui_, "Error", kUnableToSaveDefinition, definition_.name->c_str(),
             FileOf(definition_.scope).c_str());
    return;
  }
  // What the window shows stays, as a definition not saved anywhere.
  definition_.name.reset();
  definition_.changed = true;
}

bool ExportWindow::Export() {
  TakeBoxes();
  if (definition_.folder.empty()) {
    ui_.Message(kNoExportFolder, "Error");
    return false;
  }
  if (definition_.file_name.empty()) {
    ui_.Message(kNoExportFileName, "Error");
    return false;
  }
  if (definition_.columns.empty()) {
    ui_.Message(kNoColumnsToExport, "Error");
    return false;
  }
  if (!definition_.name || definition_.changed) {
    const Answer answer =
        ui_.Question(definition_.name ? kSaveChangesToThisQuestion : kSaveThisDefinitionQuestion,
                     DefaultButton::kNo);
    if (answer == Answer::kCancel) return false;
    // Declining to name the definition, or a save that failed, does not stop the run.
    if (answer == Answer::kYes) static_cast<void>(SaveCurrent());
  }
  if (definition_.select_assets && !RunSelection()) return false;
  if (!write_) return false;
  return write_(context_, company_.number(), definition_,
                definition_.select_assets ? &selection_ : nullptr, ui_)
      .has_value();
}

bool ExportWindow::RunSelection() {
  // The selection window lists the company's codes, so it works on the company open for
  // reading; a company that was open already stays as it was.
  const bool was_open = company_.is_open();
  if (!select_assets_ || (!was_open && company_.Open(company_.number(),
                                                     NvCompany::kOpenI1 | NvCompany::kLoadLocCat |
                                                         NvCompany::kReadOnly,
                                                     ui_) <= 0)) {
    ui_.Message(kUnableToInitSelection, "Error");
    return false;
  }
  const bool chosen = select_assets_(ui_, company_, selection_, kExportSelectionTitle);
  if (!was_open) static_cast<void>(company_.Close());  // read-only: nothing to write
  // Cancel in the selection window ends the run: the user did not ask for every asset.
  return chosen;
}

void ExportWindow::Help() {
  ui_.ShowHelp(kExportHelpTopic);
}

std::string ExportWindow::ScriptName() const {
  return "export-window";
}

std::string ExportWindow::ScriptState() const {
  std::string line = "definition=";
  line += definition_.name ? QuoteTranscriptText(*definition_.name) : "none";
  if (definition_.name) {
    line += definition_.scope == ExportScope::kAllCompanies ? " scope=all" : " scope=company";
  }
  line += StrPrintf(" changed=%s show=[", YesNo(definition_.changed));
  bool first = true;
  for (const Group& group : groups_) {
    if (!group.shown) continue;
    if (!first) line += ",";
    line += group.letter;
    first = false;
  }
  line += "] columns=[";
  const std::vector<std::string> lines = ColumnLines();
  for (size_t i = 0; i < lines.size(); ++i) {
    if (i > 0) line += ", ";
    line += QuoteTranscriptText(lines[i]);
  }
  line += "]";
  if (chosen_column_) {
    line += " column=" + ColumnText() + " heading=" + QuoteTranscriptText(Heading()) + " flags=";
    const ExportColumn& column = definition_.columns[*chosen_column_];
    if (column.addition) line += 'A';
    if (column.disposition) line += 'D';
    if (column.current) line += 'C';
    if (column.none_of_the_above) line += 'N';
  }
  line += StrPrintf(" include_headings=%s sort=%s asset_selection=%s", YesNo(include_headings()),
                    sort_order() == ExportSortOrder::kAssetNumber ? "asset-no" : "company",
                    select_assets() ? "selected" : "all");
  line += " file_name=" + QuoteTranscriptText(file_name_text_);
  line += " folder=" + QuoteTranscriptText(folder_text_);
  return line;
}

std::optional<ScriptedWindow::Step> ExportWindow::ScriptSet(std::string_view name,
                                                            std::string_view value,
                                                            std::string* error) {
  static constexpr struct {
    const char* name;
    Flag flag;
  } kFlags[] = {{"addition", Flag::kAddition},
                {"disposition", Flag::kDisposition},
                {"current", Flag::kCurrent},
                {"none", Flag::kNoneOfTheAbove}};
  const std::optional<bool> yes = ParseYesNo(value);
  for (const auto& entry : kFlags) {
    if (name != entry.name) continue;
    if (!yes || !PropertiesEnabled()) {
      *error = !yes ? "a box takes yes or no" : "no column is chosen";
      return std::nullopt;
    }
    SetFlag(entry.flag, *yes);
    return Step::kStays;
  }
  if (name == "column" || name == "heading") {
    if (!PropertiesEnabled()) {
      *error = "no column is chosen";
      return std::nullopt;
    }
    // Letters that name no position are put back, as the box does.
    if (name == "column") {
      static_cast<void>(SetColumnText(value));
    } else {
      SetHeading(value);
    }
    return Step::kStays;
  }
  if (name == "include_headings" && yes) {
    SetIncludeHeadings(*yes);
  } else if (name == "sort" && (value == "asset-no" || value == "company")) {
    SetSortOrder(value == "company" ? ExportSortOrder::kCompanySortOrder
                                    : ExportSortOrder::kAssetNumber);
  } else if (name == "asset_selection" && (value == "all" || value == "selected")) {
    SetSelectAssets(value == "selected");
  } else if (name == "file_name") {
    SetFileName(value);
  } else if (name == "folder") {
    SetFolder(value);
  } else {
    *error = "no such box, or a value it does not take";
    return std::nullopt;
  }
  return Step::kStays;
}

std::optional<ScriptedWindow::Step> ExportWindow::ScriptClick(std::string_view button,
                                                              std::string* error) {
  if (button == "remove") {
    if (!CanRemove()) {
      *error = "\"<\" is disabled: no column is chosen";
      return std::nullopt;
    }
    Remove();
  } else if (button == "open") {
    Open();
  } else if (button == "save") {
    Save();
  } else if (button == "save-as") {
    SaveAs();
  } else if (button == "delete") {
    Delete();
  } else if (button == "export") {
    return Export() ? Step::kEnds : Step::kStays;
  } else if (button == "browse") {
    Browse();
  } else if (button == "help") {
    Help();
  } else {
    *error = "no such button";
    return std::nullopt;
  }
  return Step::kStays;
}

std::optional<ScriptedWindow::Step> ExportWindow::ScriptStep(std::string_view directive,
                                                             std::string_view argument,
                                                             std::string* error) {
  if (directive == "show" || directive == "hide") {
    for (const Group& group : groups_) {
      if (argument.size() == 1 && AsciiUpper(argument[0]) == group.letter) {
        ShowGroup(group.letter, directive == "show");
        return Step::kStays;
      }
    }
    *error = "no such group";
    return std::nullopt;
  }
  if (directive == "add") {
    for (size_t i = 0; i < available_.size(); ++i) {
      if (available_[i].text == argument) {
        ChooseValue(i);
        Add();
        return Step::kStays;
      }
    }
    *error = "no such available value";
    return std::nullopt;
  }
  if (directive == "column") {
    const std::optional<int> index = ColumnIndex(argument);
    if (!index || static_cast<size_t>(*index) >= definition_.columns.size()) {
      *error = "no such column";
      return std::nullopt;
    }
    ChooseColumn(static_cast<size_t>(*index));
    return Step::kStays;
  }
  if (directive == "set") {
    const size_t blank = argument.find(' ');
    return ScriptSet(
        argument.substr(0, blank),
        blank == std::string_view::npos ? std::string_view() : argument.substr(blank + 1), error);
  }
  if (directive == "click") return ScriptClick(argument, error);
  *error = "the window does not take this line";
  return std::nullopt;
}

}  // namespace nv
