#include "ui/schedule_definitions_editor.h"

#include <algorithm>

#include "base/ascii.h"
#include "base/str_format.h"

namespace nv {
namespace {

std::string SourceText(int source) {
  if (source == kStandardSource) return "Standard Definition";
  if (source == kAllCompaniesSource) return "All Companies";
  return "This Company Only";
}

// The short form the replace question uses.
const char* ShortSourceText(int source) {
  if (source == kStandardSource) return "Standard Defn.";
  if (source == kAllCompaniesSource) return "All Companies";
  return "This Co. only";
}

std::string DefaultDescription(std::string_view type) {
  if (type.size() == 2) return StateName(type).value_or("");
  return type.size() == 1 ? ScheduleTypeName(type[0]) : std::string();
}

std::vector<sdefTypeEntry> MakeTypeEntries() {
  std::vector<sdefTypeEntry> entries = {{"T", "Tax"}, {"B", "Book"},  {"A", "AMT"},
                                        {"C", "ACE"}, {"O", "Other"}, {"S", "State(Generic)"}};
  for (std::string_view code : StateCodes()) {
    entries.push_back({std::string(code), ScheduleTypeCaption(code)});
  }
  return entries;
}

}  // namespace

DlgEdScheduleDefinitions::DlgEdScheduleDefinitions(CompanySchedules company,
                                                   const ScheduleDefinitionList& list,
                                                   std::string_view company_letters,
                                                   bool allow_delete, Ui& ui)
    : company_(std::move(company)),
      ui_(ui),
      original_(list),
      list_(list),
      company_letters_(company_letters),
      allow_delete_(allow_delete) {
  Rebuild();
}

const std::vector<sdefTypeEntry>& DlgEdScheduleDefinitions::TypeEntries() {
  static const std::vector<sdefTypeEntry> entries = MakeTypeEntries();
  return entries;
}

std::optional<size_t> DlgEdScheduleDefinitions::selected_row() const {
  if (mode_ != Mode::kSelected) return std::nullopt;
  for (size_t r = 0; r < rows_.size(); ++r) {
    const ScheduleDefinition& d = list_[rows_[r].index];
    if (d.letter == selected_letter_ && d.source == selected_source_) return r;
  }
  return std::nullopt;
}

std::string DlgEdScheduleDefinitions::caption() const {
  return mode_ == Mode::kSelected ? "Selected Definition" : "New Definition";
}

std::optional<size_t> DlgEdScheduleDefinitions::type_entry() const {
  const std::vector<sdefTypeEntry>& entries = TypeEntries();
  for (size_t i = 0; i < entries.size(); ++i) {
    if (entries[i].type == type_) return i;
  }
  return std::nullopt;
}

bool DlgEdScheduleDefinitions::fields_enabled() const {
  if (mode_ == Mode::kNew) return true;
  return mode_ == Mode::kSelected && selected_source_ != kStandardSource;
}

bool DlgEdScheduleDefinitions::delete_enabled() const {
  if (!allow_delete_ || mode_ != Mode::kSelected || selected_source_ == kStandardSource) {
    return false;
  }
  if (!CompanyUses(selected_letter_)) return true;
  // A letter the company uses must keep a definition.
  const bool standard = list_.Find(selected_letter_, kStandardSource).has_value();
  if (selected_source_ == kAllCompaniesSource) return standard;
  return standard || list_.Find(selected_letter_, kAllCompaniesSource).has_value();
}

void DlgEdScheduleDefinitions::ChooseType(size_t entry) {
  const std::vector<sdefTypeEntry>& entries = TypeEntries();
  if (entry >= entries.size() || !fields_enabled()) return;
  type_ = entries[entry].type;
  description_ = DefaultDescription(type_);
}

bool DlgEdScheduleDefinitions::Select(std::optional<size_t> row) {
  if (row == selected_row()) return true;
  const SaveResult saved = SaveEdit();
  if (saved == SaveResult::kFailed || saved == SaveResult::kAborted) return false;
  if (!row || *row >= rows_.size()) {
    mode_ = Mode::kNone;
    ClearFields();
    return true;
  }
  const ScheduleDefinition& d = list_[rows_[*row].index];
  mode_ = Mode::kSelected;
  selected_letter_ = d.letter;
  selected_source_ = d.source;
  LoadFields();
  return true;
}

bool DlgEdScheduleDefinitions::New() {
  const SaveResult saved = SaveEdit();
  if (saved == SaveResult::kFailed || saved == SaveResult::kAborted) return false;
  mode_ = Mode::kNew;
  letter_text_.clear();
  type_ = "O";
  description_ = "New Defn";
  this_company_only_ = true;
  return true;
}

bool DlgEdScheduleDefinitions::Save() {
  return SaveEdit() == SaveResult::kSaved;
}

void DlgEdScheduleDefinitions::Delete() {
  if (!delete_enabled()) return;
  if (std::optional<size_t> at = list_.Find(selected_letter_, selected_source_)) {
    list_.RemoveAt(*at);
  }
  mode_ = Mode::kNone;
  ClearFields();
  Rebuild();
}

void DlgEdScheduleDefinitions::CancelEdit() {
  if (mode_ == Mode::kNew) {
    mode_ = Mode::kNone;
    ClearFields();
  } else if (mode_ == Mode::kSelected) {
    LoadFields();
  }
}

void DlgEdScheduleDefinitions::Help() {
  ui_.ShowHelp(kScheduleDefinitionsHelpTopic);
}

DlgEdScheduleDefinitions::CloseResult DlgEdScheduleDefinitions::Close() {
  const SaveResult result = SaveEdit();
  if ((result == SaveResult::kFailed || result == SaveResult::kAborted) &&
      !AskYes(ui_, DefaultButton::kYes, "Unable to save %s definition.  Close window anyway?",
              mode_ == Mode::kNew ? "new" : "changes to selected")) {
    return CloseResult::kStayOpen;
  }
  if (SameScheduleDefinitions(list_, original_)) return CloseResult::kClosed;
  switch (ui_.Question("Save changes to your Schedule Definitions?", DefaultButton::kYes)) {
    case Answer::kYes:
      if (!(saver_ ? saver_(list_) : SaveScheduleDefinitions(company_, list_))) {
        ui_.Message("Unable to save your Schedule Definitions.", "Error");
        return CloseResult::kStayOpen;
      }
      saved_ = true;
      return CloseResult::kClosed;
    case Answer::kNo:
      return CloseResult::kClosed;
    case Answer::kCancel:
      break;
  }
  return CloseResult::kStayOpen;
}

DlgEdScheduleDefinitions::SaveResult DlgEdScheduleDefinitions::SaveEdit() {
  if (mode_ == Mode::kSelected) return SaveSelected();
  if (mode_ == Mode::kNew) return SaveNew();
  return SaveResult::kNothing;
}

DlgEdScheduleDefinitions::SaveResult DlgEdScheduleDefinitions::SaveSelected() {
  const std::optional<size_t> at = list_.Find(selected_letter_, selected_source_);
  if (!at || selected_source_ == kStandardSource) return SaveResult::kNothing;
  const ScheduleDefinition stored = list_[*at];
  const ScheduleDefinition edited = Edited(stored.letter);
  if (edited.type == stored.type && edited.description == stored.description &&
      edited.source == stored.source) {
    return SaveResult::kNothing;
  }
  if (edited.description.empty()) {
    ui_.Message("You must enter a code letter and a description before saving.", "Error");
    return SaveResult::kFailed;
  }
  if (CompanyUses(stored.letter) && edited.type != stored.type) {
    const std::string question = StrPrintf(
        "The %c schedule is already defined for this company.\nChanging the type may cause "
        "calculations to change.\nAre you sure you want to chnage this schedule definition?",
        stored.letter);
    const Answer answer = ui_.Question(question, DefaultButton::kNo);
    if (answer == Answer::kCancel) return SaveResult::kAborted;
    if (answer == Answer::kNo) {
      LoadFields();
      return SaveResult::kKept;
    }
  }
  // A definition moved to the other store takes the place of the one already there.
  const std::optional<size_t> other =
      edited.source != stored.source ? list_.Find(edited.letter, edited.source) : std::nullopt;
  if (other && !ConfirmReplace(list_[*other])) return SaveResult::kAborted;
  std::vector<size_t> remove = {*at};
  if (other) remove.push_back(*other);
  Store(edited, remove);
  return SaveResult::kSaved;
}

DlgEdScheduleDefinitions::SaveResult DlgEdScheduleDefinitions::SaveNew() {
  const char letter = letter_text_.empty() ? ' ' : AsciiUpper(letter_text_[0]);
  const ScheduleDefinition edited = Edited(letter);
  if (!IsScheduleLetter(letter) || edited.description.empty()) {
    ui_.Message("You must enter a code letter and a description before saving.", "Error");
    return SaveResult::kFailed;
  }
  const std::optional<size_t> existing = list_.Find(letter, edited.source);
  if (existing && !ConfirmReplace(list_[*existing])) return SaveResult::kAborted;
  if (CompanyUses(letter)) {
    const std::string question = StrPrintf(
        "The %c schedule is already defined for this company.\nAdding a new definition for "
        "this schedule may cause\ncalculations to change.\n\nAre you sure you want to create "
        "this new schedule definition?",
        letter);
    const Answer answer = ui_.Question(question, DefaultButton::kNo);
    if (answer == Answer::kCancel) return SaveResult::kAborted;
    if (answer == Answer::kNo) {
      mode_ = Mode::kNone;
      ClearFields();
      return SaveResult::kKept;
    }
  }
  std::vector<size_t> remove;
  if (existing) remove.push_back(*existing);
  Store(edited, remove);
  return SaveResult::kSaved;
}

bool DlgEdScheduleDefinitions::ConfirmReplace(const ScheduleDefinition& old) const {
  return AskYes(ui_, DefaultButton::kNo,
                "Schedule %c (%s, Type %s, %s)\nalready exists.  Replace it?", old.letter,
                old.description.c_str(), old.type.c_str(), ShortSourceText(old.source));
}

void DlgEdScheduleDefinitions::Store(ScheduleDefinition edited, std::vector<size_t> remove) {
  std::sort(remove.begin(), remove.end(), std::greater<size_t>());
  for (size_t at : remove) list_.RemoveAt(at);
  mode_ = Mode::kSelected;
  selected_letter_ = edited.letter;
  selected_source_ = edited.source;
  list_.Add(std::move(edited));
  Rebuild();
  LoadFields();
  // A definition that a more specific one overrides is not in the list to be selected.
  if (!selected_row()) {
    mode_ = Mode::kNone;
    ClearFields();
  }
}

ScheduleDefinition DlgEdScheduleDefinitions::Edited(char letter) const {
  ScheduleDefinition d;
  d.letter = letter;
  d.type = std::string(TrimBlanks(type_).substr(0, kScheduleTypeWidth));
  d.description =
      std::string(TrimBlanks(TrimBlanks(description_).substr(0, kScheduleDescriptionWidth)));
  d.source = this_company_only_ ? kThisCompanySource : kAllCompaniesSource;
  return d;
}

bool DlgEdScheduleDefinitions::CompanyUses(char letter) const {
  return letter != ' ' && company_letters_.find(letter) != std::string::npos;
}

void DlgEdScheduleDefinitions::LoadFields() {
  const std::optional<size_t> at = list_.Find(selected_letter_, selected_source_);
  if (!at) return;
  const ScheduleDefinition& d = list_[*at];
  letter_text_ = std::string(1, d.letter);
  type_ = d.type;
  description_ = d.description;
  this_company_only_ = d.source != kAllCompaniesSource;
}

void DlgEdScheduleDefinitions::ClearFields() {
  letter_text_.clear();
  type_.clear();
  description_.clear();
  this_company_only_ = true;
}

void DlgEdScheduleDefinitions::Rebuild() {
  SetEffectiveAndDisplayOrder(&list_);
  rows_.clear();
  for (size_t i = 0; i < list_.size(); ++i) {
    const ScheduleDefinition& d = list_[i];
    if (!d.effective) continue;
    rows_.push_back({std::string(1, d.letter), d.description, ScheduleTypeCaption(d.type),
                     SourceText(d.source), i});
  }
}

bool EditScheduleDefinitions(ScheduleDefinitionsWindowRunner& window, Ui& ui,
                             CompanySchedules company, ScheduleDefinitionList* list,
                             std::string_view company_letters, bool allow_delete,
                             DlgEdScheduleDefinitions::Saver saver) {
  DlgEdScheduleDefinitions editor(std::move(company), *list, company_letters, allow_delete, ui);
  editor.set_saver(std::move(saver));
  window.Run(editor);
  if (!editor.saved()) return false;
  *list = editor.list();
  return true;
}

}  // namespace nv
