#include "import/bna/bna_dialog.h"

#include <algorithm>
#include <filesystem>
#include <utility>

#include "base/ascii.h"
#include "base/column_letters.h"
#include "base/str_format.h"
#include "import/bna/bna_profile.h"
#include "ui/scripted_ui.h"

namespace nv {
namespace {

struct PanelFieldName {
  const char* name;
  BnaPanelField field;
};
constexpr PanelFieldName kPanelFieldNames[] = {
    {"right", BnaPanelField::kRightCount}, {"left", BnaPanelField::kLeftCount},
    {"count", BnaPanelField::kMidCount},   {"start", BnaPanelField::kMidStart},
    {"set", BnaPanelField::kSetText},      {"column", BnaPanelField::kColumn},
};

}  // namespace

std::string& BnaPanel::Field(BnaPanelField field) {
  return const_cast<std::string&>(std::as_const(*this).Field(field));
}

const std::string& BnaPanel::Field(BnaPanelField field) const {
  switch (field) {
    case BnaPanelField::kRightCount:
      return right_count;
    case BnaPanelField::kLeftCount:
      return left_count;
    case BnaPanelField::kMidCount:
      return mid_count;
    case BnaPanelField::kMidStart:
      return mid_start;
    case BnaPanelField::kSetText:
      return set_text;
    case BnaPanelField::kColumn:
      break;
  }
  return column;
}

BnaNdDialog::BnaNdDialog(BnaImportState& state, const InstallationContext& context,
                         std::string settings_file, Ui& ui, ImportRun run_import)
    : state_(state),
      context_(context),
      settings_file_(std::move(settings_file)),
      ui_(ui),
      run_import_(std::move(run_import)) {
  ReadProfileSettings();
  LoadDefinitions(state_.profiles, state_.checked_groups, state_.definitions);
  FillList();
  RebuildGrid();
}

std::string BnaNdDialog::ProfileCaption() const {
  return state_.profiles.current.empty() ? std::string(kBnaNoProfileSelected)
                                         : state_.profiles.current;
}

bool BnaNdDialog::GroupChecked(char letter) const {
  return state_.checked_groups.find(letter) != std::string::npos;
}

void BnaNdDialog::ReadProfileSettings() {
  BnaParameters parameters = ReadBnaParameters(state_.profiles);
  state_.file_type = parameters.file_type;
  state_.checked_groups = parameters.checked_groups;
}

void BnaNdDialog::RebuildGrid() {
  // An unreadable report shows as an empty grid; the import says "0 assets imported.".
  static_cast<void>(grid_.Load(state_.source_path, state_.file_type));
}

void BnaNdDialog::FillList() {
  list_lines_.clear();
  list_entries_.clear();
  list_selection_ = -1;
  const auto& entries = state_.definitions.entries();
  for (size_t i = 0; i < entries.size(); ++i) {
    if (!entries[i].active) continue;
    if (selected_ == i) list_selection_ = static_cast<int>(list_lines_.size());
    list_lines_.push_back(ListLineOfDefinition(entries[i]));
    list_entries_.push_back(i);
  }
}

ConversionDefinition* BnaNdDialog::SelectedEntry() {
  if (!selected_ || *selected_ >= state_.definitions.size()) return nullptr;
  return &state_.definitions.entries()[*selected_];
}

void BnaNdDialog::SelectLine(int row) {
  if (row < 0 || row >= static_cast<int>(list_entries_.size())) {
    selected_.reset();
    list_selection_ = -1;
  } else {
    selected_ = list_entries_[row];
    list_selection_ = row;
  }
  ShowEntry();
}

void BnaNdDialog::ShowEntry() {
  const ConversionDefinition* entry = SelectedEntry();
  // The MID fields keep what they held: only these three start empty.
  panel_.right_count.clear();
  panel_.left_count.clear();
  panel_.set_text.clear();
  if (!entry) {
    panel_.name = kBnaNoValueSelected;
    panel_.no_copy = false;
    panel_.method = ConversionMethod::kNone;
    panel_.column.clear();
    return;
  }
  panel_.name = entry->name;
  panel_.no_copy = entry->no_copy;
  panel_.column = ColumnLetters(entry->column);
  panel_.method = entry->method;
  const std::string number = StrPrintf("%d", entry->number);
  switch (entry->method) {
    case ConversionMethod::kRight:
      panel_.right_count = number;
      break;
    case ConversionMethod::kLeft:
      panel_.left_count = number;
      break;
    case ConversionMethod::kMid:
      panel_.mid_count = entry->text.value_or("");
      panel_.mid_start = number;
      break;
    case ConversionMethod::kSet:
      panel_.set_text = entry->text.value_or("");
      break;
    default:
      break;
  }
}

void BnaNdDialog::TypePanelField(BnaPanelField field, std::string_view text) {
  panel_.Field(field) = std::string(text);
}

void BnaNdDialog::SetMethod(ConversionMethod method) {
  panel_.method = method;
  StorePanel();
}

void BnaNdDialog::StorePanel() {
  ConversionDefinition* entry = SelectedEntry();
  if (!entry) return;
  entry->column = ColumnIndex(AsciiUpper(TrimBlanks(panel_.column))).value_or(-1);
  entry->number = 0;
  entry->text.reset();
  entry->no_copy = panel_.no_copy;
  switch (panel_.method) {
    case ConversionMethod::kRight:
      entry->number = ProfileInteger(panel_.right_count);
      break;
    case ConversionMethod::kLeft:
      entry->number = ProfileInteger(panel_.left_count);
      break;
    case ConversionMethod::kMid:
      entry->number = ProfileInteger(panel_.mid_start);
      entry->text = panel_.mid_count;
      break;
    case ConversionMethod::kSet:
      entry->text = panel_.set_text;
      break;
    default:
      break;
  }
  // Without a checked button the method stays as it was.
  if (panel_.method != ConversionMethod::kNone) entry->method = panel_.method;
  if (list_selection_ >= 0) list_lines_[list_selection_] = ListLineOfDefinition(*entry);
}

void BnaNdDialog::SelectFile() {
  FileDialogRequest request;
  request.title = kBnaSelectSourceTitle;
  request.filter = kBnaSourceFilter;
  request.default_extension = "txt";
  request.initial_directory = context_.data_directory();
  state_.source_path = ui_.ChooseFile(request);
  RebuildGrid();
}

void BnaNdDialog::SelectProfile() {
  // The definitions being edited belong to the profile being left.
  static_cast<void>(SaveProfile());
  FileDialogRequest request;
  request.title = kBnaProfileDialogTitle;
  request.filter = kBnaProfileFilter;
  request.default_extension = "imp";
  request.initial_directory = context_.data_directory();
  request.must_exist = false;
  std::optional<std::string> chosen = ui_.ChooseFile(request);
  if (!chosen) return;
  std::error_code ec;
  const std::string path = BnaProfileFile(state_.profiles, *chosen);
  if (std::filesystem::exists(path, ec)) {
    SwitchBnaProfile(state_.profiles, *chosen);
    ReadProfileSettings();
    LoadDefinitions(state_.profiles, state_.checked_groups, state_.definitions);
    selected_.reset();
    ShowEntry();
  } else {
    if (ui_.Question(kBnaCreateProfileQuestion, DefaultButton::kYes) != Answer::kYes) return;
    // The definitions stay and go into the new file at the next save.
    if (!CreateBnaProfile(state_.profiles, *chosen)) {
      ui_.Message(StrPrintf("Unable to write %s", chosen->c_str()), "Error");
    }
    ReadProfileSettings();
    state_.definitions.SetActive(state_.checked_groups);
  }
  if (grid_.file_type() != state_.file_type) RebuildGrid();
  FillList();
}

void BnaNdDialog::ImportData() {
  StorePanel();
  const ConversionDefinition* asset_no = state_.definitions.Find(kBnaAssetNoField);
  if (!asset_no || asset_no->column < 0) {
    ui_.Message(kBnaAssetNoColumnMissing, "Error");
    return;
  }
  if (run_import_) run_import_();
}

void BnaNdDialog::SetFileType(int file_type) {
  state_.file_type = file_type == kBnaCommaSeparated ? kBnaCommaSeparated : kBnaTabSeparated;
  RebuildGrid();
}

bool BnaNdDialog::SetGroupChecked(char letter, bool checked) {
  letter = AsciiUpper(letter);
  if (kGroupBoxLetters.find(letter) == std::string_view::npos) return false;
  std::string groups;
  for (char box : kGroupBoxLetters) {
    if (box == letter ? checked : GroupChecked(box)) groups += box;
  }
  state_.checked_groups = groups;
  state_.definitions.SetActive(groups);
  FillList();
  return true;
}

bool BnaNdDialog::SelectDefinition(std::string_view name) {
  const auto& entries = state_.definitions.entries();
  for (size_t row = 0; row < list_entries_.size(); ++row) {
    if (EqualIgnoringCase(entries[list_entries_[row]].name, name)) {
      SelectLine(static_cast<int>(row));
      return true;
    }
  }
  return false;
}

void BnaNdDialog::SetNoCopy(bool no_copy) {
  panel_.no_copy = no_copy;
  StorePanel();
}

bool BnaNdDialog::CheckMethod(std::string_view keyword) {
  if (panel_.no_copy) return false;
  ConversionMethod method = MethodOfKeyword(keyword);
  if (method == ConversionMethod::kNone) return false;
  SetMethod(method);
  return true;
}

bool BnaNdDialog::EnterPanelField(std::string_view field, std::string_view text) {
  for (const PanelFieldName& f : kPanelFieldNames) {
    if (EqualIgnoringCase(f.name, field)) {
      TypePanelField(f.field, text);
      LeavePanelField();
      return true;
    }
  }
  return false;
}

void BnaNdDialog::ClickGrid(int x) {
  if (std::optional<int> column = grid_.ColumnAt(x)) panel_.column = ColumnLetters(*column);
}

void BnaNdDialog::Close() {
  static_cast<void>(SaveProfile());
}

bool BnaNdDialog::SaveProfile() {
  BnaDialogSettings settings;
  settings.checked_groups = state_.checked_groups;
  settings.source_path = state_.source_path.value_or("");
  settings.file_type = state_.file_type;
  bool saved = SaveBnaProfile(state_.profiles, state_.definitions, settings);
  return WriteUserImportProfile(settings_file_, context_.user_name, state_.profiles.current) &&
         saved;
}

std::string BnaNdDialog::Describe() const {
  std::string line =
      "bna-dialog profile=" + QuoteTranscriptText(ProfileCaption()) +
      " source=" + QuoteTranscriptText(state_.source_path.value_or("")) +
      StrPrintf(" file-type=%s", state_.file_type == kBnaCommaSeparated ? "commas" : "tabs") +
      " groups=" + QuoteTranscriptText(state_.checked_groups) + " lines=[";
  for (size_t i = 0; i < list_lines_.size(); ++i) {
    line += (i > 0 ? ", " : "") + QuoteTranscriptText(list_lines_[i]);
  }
  line +=
      StrPrintf("] selected=%d panel=[name=", list_selection_) + QuoteTranscriptText(panel_.name) +
      StrPrintf(" no-copy=%d method=", panel_.no_copy) +
      std::string(panel_.method == ConversionMethod::kNone ? "none" : MethodKeyword(panel_.method));
  for (const PanelFieldName& f : kPanelFieldNames) {
    line += std::string(" ") + f.name + "=" + QuoteTranscriptText(panel_.Field(f.field));
  }
  return line + StrPrintf("] grid=[lines=%d data=%d columns=%d]", grid_.line_count(),
                          grid_.measure().data_lines, grid_.measure().columns);
}

}  // namespace nv
