#include "ui/selection/selection_window.h"

#include <algorithm>

#include "base/ascii.h"
#include "base/str_format.h"
#include "store/codes/account_groups.h"
#include "store/codes/loc_cat_list.h"
#include "store/codes/property_codes.h"
#include "store/company/company.h"
#include "store/schedule/schedule_definitions.h"
#include "ui/screen/attributes.h"
#include "ui/screen/edit_field.h"
#include "ui/screen/field_help.h"
#include "ui/selection/barcode_scan.h"
#include "ui/selection/criterion.h"

namespace nv {
namespace {

constexpr char kAllCompaniesMark[] = " (All Companies)";

// Columns of a row.
constexpr int kInUseColumn = 1;
constexpr int kCaptionWidth = 28;
constexpr int kExcludeColumn = 31;
constexpr int kKindColumn = 39;
constexpr int kEntryColumn = 44;

const SelectionField& FieldOf(int field) {
  return SelectionFields()[static_cast<size_t>(field)];
}

bool ValidField(int field) {
  return field >= 0 && field < kSelectionFieldCount;
}

// The user field (0 to 9) whose name captions the row, if any.
std::optional<int> UserFieldOf(int field) {
  std::optional<int> n = NumberAttribute("user_field", FieldOf(field).attributes);
  if (!n || *n < 0 || *n >= kUserFieldCount) return std::nullopt;
  return n;
}

// The entry's character rules: the field's "upr" and "chars(...)", and its width (the
// language's maxlen(n) leaves room for n + 1 characters).
std::string EntryAttributes(int field) {
  const std::string_view attributes = FieldOf(field).attributes;
  std::string out = StrPrintf("maxlen(%d)", SelectionWindow::EntryWidth(field) - 1);
  if (HasAttribute("upr", attributes)) out += ",upr";
  if (std::optional<std::string> chars = FindAttribute("chars", attributes)) {
    out += ",chars(" + *chars + ")";
  }
  return out;
}

std::vector<std::string> HelpChoices(int field) {
  FieldDescription f;
  f.kind = kFieldEdit;
  f.attributes = FieldOf(field).attributes;
  return HelpOf(f).choices;
}

std::string PickerName(int field) {
  std::optional<std::string> h = FindAttribute("h", FieldOf(field).attributes);
  if (!h || h->empty() || h->front() != '*') return std::string();
  return h->substr(1);
}

// A picked value joins the criterion as one more item; in a range criterion a value
// holding a separator goes in quote marks so that it stays one value.
std::string Quoted(int field, const std::string& value) {
  if (FieldOf(field).kind == SelectionKind::kValues) return value;
  if (value.find_first_of(",-'\"") == std::string::npos) return value;
  const char quote = value.find('"') == std::string::npos ? '"' : '\'';
  return quote + value + quote;
}

FieldDescription Static(int id, int row, int column, const char* text) {
  return MakeField(kFieldStatic, id, row, column, static_cast<int>(std::string_view(text).size()),
                   text);
}

FieldDescription Button(int id, int row, int column, int width, const char* caption,
                        const char* help) {
  return MakeField(kFieldButton, id, row, column, width, caption, StrPrintf("msg(%s)", help));
}

std::string JoinLines(const std::vector<std::string>& lines) {
  std::string out;
  for (const std::string& line : lines) out += line + "\n";
  return out;
}

}  // namespace

SelectionWindowSetup SelectionWindowSetupFor(const NvCompany& company) {
  SelectionWindowSetup setup;
  setup.files = SelectionFilesFor(company, company.context());
  const CompanySchedules schedules = company.Schedules();
  for (char letter : schedules.letters) {
    const ScheduleEntry* entry = FindScheduleEntry(schedules.entries, letter);
    std::string description = entry ? std::string(TrimBlanks(entry->name)) : std::string();
    if (std::optional<ScheduleDefinition> definition =
            LookupScheduleDefinition(schedules, letter, kAllScheduleSources);
        definition && description.empty()) {
      description = definition->description;
    }
    setup.schedules.push_back({letter, description});
  }
  for (int i = 0; i < kUserFieldCount; ++i) {
    setup.user_field_names[static_cast<size_t>(i)] =
        std::string(TrimBlanks(company.record().user_fields[static_cast<size_t>(i)].name));
  }
  setup.locations_file = company.LocCatPath(kLocations);
  setup.categories_file = company.LocCatPath(kCategories);
  setup.company_folder = company.folder();
  setup.company_number = company.number();
  return setup;
}

std::string ChoiceValue(int field, std::string_view choice) {
  std::string_view value = TrimBlanks(choice);
  if (ValidField(field) && SelectionWindow::EntryWidth(field) == 1)
    return std::string(value.substr(0, 1));
  const size_t hyphen = value.find('-');
  if (hyphen != std::string_view::npos && hyphen > 0) value = TrimBlanks(value.substr(0, hyphen));
  return std::string(value);
}

std::optional<std::pair<int, int>> SelectionWindow::RowOfId(int id) {
  const int offset = id - kRowIdBase;
  if (offset < 0) return std::nullopt;
  const int field = offset / 10;
  const int part = offset % 10;
  if (!ValidField(field) || part < kInUsePart || part > kEntryPart) return std::nullopt;
  return std::make_pair(field, part);
}

SelectionWindow::SelectionWindow(Ui& ui, SelectionWindowSetup setup, const KelSelection& selection,
                                 std::string title)
    : ui_(ui), setup_(std::move(setup)), title_(std::move(title)), selection_(selection) {
  if (title_.empty()) title_ = kSelectionWindowTitle;
  const bool known = std::any_of(
      setup_.schedules.begin(), setup_.schedules.end(),
      [&](const SelectionScheduleChoice& s) { return s.letter == selection_.schedule; });
  if (!known && !setup_.schedules.empty()) selection_.schedule = setup_.schedules.front().letter;
  ReadSavedList();
  BuildRows();
  BuildPanel();
  Refresh();
}

// --- Rows ---

std::string SelectionWindow::Caption(int field) const {
  if (!ValidField(field)) return std::string();
  if (std::optional<int> user = UserFieldOf(field)) {
    const std::string& name = setup_.user_field_names[static_cast<size_t>(*user)];
    if (!name.empty()) return name;
  }
  return FieldOf(field).name;
}

char SelectionWindow::KindLetter(int field) {
  switch (FieldOf(field).kind) {
    case SelectionKind::kRange:
      return 'R';
    case SelectionKind::kValues:
      return 'V';
    case SelectionKind::kPauses:
      return 'P';
  }
  return 'R';
}

int SelectionWindow::EntryWidth(int field) {
  return FieldOf(field).width;
}

bool SelectionWindow::HasPicker(int field) const {
  if (!ValidField(field)) return false;
  const std::string_view attributes = FieldOf(field).attributes;
  return field == kSelAccount || HasAttribute("loc", attributes) ||
         HasAttribute("cat", attributes) || UserFieldOf(field).has_value() ||
         PickerName(field) == "rangevlist" || !HelpChoices(field).empty();
}

void SelectionWindow::SetInUse(int field, bool in_use) {
  if (ValidField(field)) selection_.criteria[static_cast<size_t>(field)].in_use = in_use;
}

void SelectionWindow::SetExclude(int field, bool exclude) {
  if (ValidField(field)) selection_.criteria[static_cast<size_t>(field)].exclude = exclude;
}

void SelectionWindow::SetText(int field, std::string_view text) {
  if (!ValidField(field)) return;
  std::string taken(text.substr(0, std::min(text.size(), static_cast<size_t>(EntryWidth(field)))));
  if (HasAttribute("upr", FieldOf(field).attributes)) {
    for (char& c : taken) c = UpperCaseCp1252(c);
  }
  SelectionCriterion& c = selection_.criteria[static_cast<size_t>(field)];
  c.in_use = !TrimBlanks(taken).empty();
  c.text = std::move(taken);
}

void SelectionWindow::ShowKindNote(int field) {
  if (!ValidField(field)) return;
  switch (FieldOf(field).kind) {
    case SelectionKind::kRange:
      ui_.Message(
          "Enter values and ranges separated by commas, for example 01-05,10.\n"
          "A range may leave out either end: -100 is up to 100, 50- is from 50.\n"
          "Put a value that holds a comma or a hyphen in quote marks.",
          "Note");
      break;
    case SelectionKind::kValues:
      ui_.Message("Enter the values to select, separated by commas.", "Note");
      break;
    case SelectionKind::kPauses:
      ui_.Message(
          "Enter date ranges separated by commas, for example 01/01/2024-06/30/2024.\n"
          "The ranges are tested against the depreciation pauses of the selection's "
          "schedule.",
          "Note");
      break;
  }
}

// --- Schedule ---

std::vector<std::string> SelectionWindow::ScheduleCaptions() const {
  std::vector<std::string> captions;
  for (const SelectionScheduleChoice& s : setup_.schedules) {
    captions.push_back(StrPrintf("%c-%s", s.letter, s.description.c_str()));
  }
  return captions;
}

std::string SelectionWindow::ScheduleCaption() const {
  for (const SelectionScheduleChoice& s : setup_.schedules) {
    if (s.letter == selection_.schedule) {
      return StrPrintf("%c-%s", s.letter, s.description.c_str());
    }
  }
  return std::string();
}

bool SelectionWindow::SetSchedule(std::string_view caption) {
  caption = TrimBlanks(caption);
  if (caption.empty()) return false;
  const char letter = AsciiUpper(caption.front());
  for (const SelectionScheduleChoice& s : setup_.schedules) {
    if (s.letter == letter) {
      selection_.schedule = letter;
      return true;
    }
  }
  return false;
}

// --- Pickers ---

SelectionWindow::PickerList SelectionWindow::ListOf(int field) const {
  PickerList list;
  if (!ValidField(field)) return list;
  const std::string_view attributes = FieldOf(field).attributes;
  auto add = [&](std::string line, std::string value) {
    list.lines.push_back(std::move(line));
    list.values.push_back(std::move(value));
  };
  const bool locations = HasAttribute("loc", attributes);
  if (locations || HasAttribute("cat", attributes)) {
    NvLocCatList codes;
    LoadLocCatList(locations ? setup_.locations_file : setup_.categories_file, &codes);
    for (const NvLocCatEntry& e : codes.entries()) {
      constexpr int kCode = static_cast<int>(kLocCatCodeWidth);
      add(StrPrintf("%*.*s - %-25.25s", kCode, kCode, e.code.c_str(), e.description.c_str()),
          std::string(TrimBlanks(e.code)));
    }
  } else if (field == kSelAccount) {
    AccountGroupList groups;
    static_cast<void>(LoadAccountGroups(setup_.company_folder, setup_.company_number, &groups));
    for (const AccountGroup& g : groups.groups) {
      add(StrPrintf("%-24.24s %-24.24s", g.code.c_str(), g.description.c_str()),
          std::string(TrimBlanks(g.code)));
    }
  } else if (PickerName(field) == "rangevlist") {
    PropertyCodeList codes;
    static_cast<void>(LoadPropertyCodes(setup_.files.company_settings, &codes));
    for (const PropertyCode& p : codes) {
      add(StrPrintf("%-2.2s ", p.code.c_str()) + p.description, std::string(TrimBlanks(p.code)));
    }
  } else if (std::optional<int> user = UserFieldOf(field)) {
    std::vector<std::string> values;
    static_cast<void>(LoadUserFieldValues(setup_.files.company_settings, *user + 1, &values));
    for (const std::string& v : values) add(v, std::string(TrimBlanks(v)));
  } else {
    for (const std::string& choice : HelpChoices(field)) add(choice, ChoiceValue(field, choice));
  }
  // A line that stands for nothing cannot be picked.
  for (size_t i = list.values.size(); i-- > 0;) {
    if (list.values[i].empty()) {
      list.lines.erase(list.lines.begin() + static_cast<std::ptrdiff_t>(i));
      list.values.erase(list.values.begin() + static_cast<std::ptrdiff_t>(i));
    }
  }
  return list;
}

std::vector<std::string> SelectionWindow::PickerOptions(int field) const {
  return ListOf(field).lines;
}

std::string SelectionWindow::EmptyListNote(int field) const {
  const std::string_view attributes = FieldOf(field).attributes;
  if (HasAttribute("loc", attributes)) return StrPrintf("No %s defined.\n", "locations");
  if (HasAttribute("cat", attributes)) return StrPrintf("No %s defined.\n", "categories");
  if (field == kSelAccount) return "No account groups are defined.\n";
  if (UserFieldOf(field))
    return StrPrintf("No values are defined for %s.\n", Caption(field).c_str());
  return StrPrintf("No %s defined.\n", "property codes");
}

std::optional<std::string> SelectionWindow::PickedText(int field) {
  if (!HasPicker(field)) return std::nullopt;
  const PickerList list = ListOf(field);
  if (list.lines.empty()) {
    ui_.Message(EmptyListNote(field), "Note");
    return std::nullopt;
  }
  ChoiceListRequest request;
  request.title = Caption(field);
  request.message = "Values for this field:";
  for (const std::string& line : list.lines) request.options.push_back({line, -1});
  const int chosen = ui_.ChoiceList(request);
  if (chosen < 0 || static_cast<size_t>(chosen) >= list.values.size()) return std::nullopt;
  const std::string& value = list.values[static_cast<size_t>(chosen)];
  const std::string& text = selection_.criteria[static_cast<size_t>(field)].text;
  if (EntryWidth(field) == 1 || TrimBlanks(text).empty()) return Quoted(field, value);
  return std::string(TrimBlanks(text)) + "," + Quoted(field, value);
}

bool SelectionWindow::Pick(int field) {
  std::optional<std::string> text = PickedText(field);
  if (!text) return false;
  SetText(field, *text);
  Refresh();
  return true;
}

// --- Saved selections ---

void SelectionWindow::ReadSavedList() {
  saved_ = ListSavedSelections(setup_.files);
}

std::vector<std::string> SelectionWindow::SavedCaptions() const {
  std::vector<std::string> captions;
  for (const SavedSelectionEntry& e : saved_) {
    captions.push_back(e.name + (e.all_companies ? kAllCompaniesMark : ""));
  }
  return captions;
}

std::optional<size_t> SelectionWindow::SavedIndexOfCaption(std::string_view caption) const {
  const std::vector<std::string> captions = SavedCaptions();
  for (size_t i = 0; i < captions.size(); ++i) {
    if (captions[i] == caption) return i;
  }
  return std::nullopt;
}

bool SelectionWindow::Load(size_t index) {
  if (index >= saved_.size()) return false;
  const SavedSelectionEntry entry = saved_[index];
  const char schedule = selection_.schedule;
  const bool loaded =
      LoadSelection(setup_.files, entry.name, entry.all_companies, entry.schedule, &selection_);
  // A selection saved without a schedule keeps the one chosen here.
  if (selection_.schedule == 0) selection_.schedule = schedule;
  Refresh();
  return loaded;
}

SaveSelectionRequest SelectionWindow::SaveRequest() const {
  SaveSelectionRequest request;
  request.name = selection_.name;
  request.all_companies = selection_.all_companies;
  for (const SavedSelectionEntry& e : saved_) {
    if (std::find(request.names.begin(), request.names.end(), e.name) == request.names.end()) {
      request.names.push_back(e.name);
    }
  }
  return request;
}

bool SelectionWindow::Save(std::string_view name, bool all_companies) {
  const std::string trimmed(TrimBlanks(name));
  if (trimmed.empty()) {
    ui_.Message("Enter a description for the asset selection.", "Error");
    return false;
  }
  KelSelection saving = selection_;
  saving.name = trimmed;
  saving.all_companies = all_companies;
  if (!SaveSelection(setup_.files, saving)) {
    MessageF(ui_, "Error", "Unable to save asset selection %s.", trimmed.c_str());
    return false;
  }
  selection_.name = saving.name;
  selection_.all_companies = all_companies;
  ReadSavedList();
  Refresh();
  return true;
}

bool SelectionWindow::Delete(size_t index) {
  if (index >= saved_.size()) return false;
  const SavedSelectionEntry entry = saved_[index];
  if (!DeleteSelection(ui_, setup_.files, entry.name, entry.all_companies)) return false;
  ReadSavedList();
  Refresh();
  return true;
}

void SelectionWindow::Scan(std::string_view scanned) {
  ApplyScannedCodes(scanned, &selection_);
  Refresh();
}

void SelectionWindow::Help() {
  ui_.ShowHelp(kSelectionHelpTopic);
}

bool SelectionWindow::Ok() {
  refused_field_.reset();
  for (int field = 0; field < kSelectionFieldCount; ++field) {
    SelectionCriterion& c = selection_.criteria[static_cast<size_t>(field)];
    if (!c.in_use) continue;
    std::string text = c.text;
    const CriterionError error = ValidateCriterion(field, &text);
    if (error == CriterionError::kNone) {
      c.text = std::move(text);
      continue;
    }
    refused_field_ = field;
    ui_.Message(CriterionErrorMessage(error),
                error == CriterionError::kErrorOnInput ? "Message" : "Error");
    return false;
  }
  return true;
}

// --- Screen tables ---

void SelectionWindow::BuildRows() {
  int row = 0;
  for (int field = 0; field < kSelectionFieldCount; ++field) {
    if (HasAttribute("skipline", FieldOf(field).attributes)) ++row;
    rows_.push_back(MakeField(kFieldItem, RowId(field, kInUsePart), row, kInUseColumn,
                              kCaptionWidth, Caption(field)));
    rows_.push_back(MakeField(kFieldItem, RowId(field, kExcludePart), row, kExcludeColumn, 2));
    FieldDescription kind =
        MakeField(kFieldButton, RowId(field, kKindPart), row, kKindColumn, 3,
                  std::string(1, KindLetter(field)), "height(1),msg(What the criterion takes)");
    kind.check = [this, field](FieldTable&, size_t, const std::string&) {
      ShowKindNote(field);
      return true;
    };
    rows_.push_back(std::move(kind));
    FieldDescription entry = MakeField(kFieldEdit, RowId(field, kEntryPart), row, kEntryColumn,
                                       EntryWidth(field), {}, EntryAttributes(field));
    entry.name = FieldOf(field).name;
    entry.check = [this, field](FieldTable&, size_t, const std::string& text) {
      SetText(field, text);
      return true;
    };
    if (HasPicker(field)) {
      entry.picker = [this, field](FieldTable&, size_t) { return PickedText(field); };
    }
    rows_.push_back(std::move(entry));
    ++row;
  }
  rows_.push_back(MakeField(kFieldEnd, 0, 0, 0, 0));
}

void SelectionWindow::BuildPanel() {
  panel_.push_back(Static(0, 0, 1, "Schedule"));
  FieldDescription schedule =
      MakeField(kFieldCombo, kScheduleId, 0, 11, 24, {}, "dropdownlist,nosort");
  schedule.check = [this](FieldTable&, size_t, const std::string& text) {
    return SetSchedule(text);
  };
  panel_.push_back(std::move(schedule));
  panel_.push_back(Static(0, 1, kExcludeColumn - 2, "Exclude"));
  panel_.push_back(Static(0, 1, kKindColumn - 1, "Range/"));
  panel_.push_back(Static(0, 2, kKindColumn - 1, "Value"));

  constexpr int kSideColumn = kEntryColumn + 39;
  panel_.push_back(Static(0, 0, kSideColumn, "Saved Selections"));
  FieldDescription list = MakeField(kFieldList, kSavedListId, 1, kSideColumn, 26, {}, "height(12)");
  list.check = [this](FieldTable&, size_t, const std::string& text) {
    std::optional<size_t> index = SavedIndexOfCaption(text);
    return index && Load(*index);
  };
  panel_.push_back(std::move(list));
  panel_.push_back(Button(kSaveCurrentId, 14, kSideColumn, 12, "Save Current",
                          "Save these criteria under a name"));
  panel_.push_back(
      Button(kDeleteId, 14, kSideColumn + 14, 12, "Delete", "Delete the saved selection"));
  panel_.push_back(Button(kScanId, 17, kSideColumn, 26, "Scan Barcodes",
                          "Collect asset numbers with a barcode scanner"));
  panel_.push_back(Button(kOkId, 21, kSideColumn, 8, "OK", "Keep these criteria"));
  panel_.push_back(Button(kCancelId, 21, kSideColumn + 9, 8, "Cancel", "Leave the selection"));
  panel_.push_back(Button(kHelpId, 21, kSideColumn + 18, 8, "Help", "Help on asset selection"));
  panel_.push_back(MakeField(kFieldEnd, 0, 0, 0, 0));
}

FieldTable SelectionWindow::SaveDialogTable(const SaveSelectionRequest& request) {
  FieldTable table;
  table.push_back(MakeField(kFieldGroup, kSaveForId, 0, 1, 36,
                            request.all_companies ? "All Companies" : "This Company Only",
                            "radio(Save for ),height(3)"));
  table.push_back(MakeField(kFieldItem, kAllCompaniesId, 1, 3, 30, "All Companies"));
  table.push_back(MakeField(kFieldItem, kThisCompanyId, 2, 3, 30, "This Company Only"));
  table.push_back(Static(0, 4, 1, "Description"));
  FieldDescription name = MakeField(kFieldCombo, kDescriptionId, 5, 1, 36, JoinLines(request.names),
                                    "dropdown,maxheight(10)");
  table.push_back(std::move(name));
  table.push_back(Button(kSaveButtonId, 7, 1, 10, "Save", "Save the selection"));
  table.push_back(Button(kSaveCancelId, 7, 13, 10, "Cancel", "Do not save"));
  table.push_back(Button(kSaveHelpId, 7, 25, 10, "Help", "Help on asset selection"));
  table.push_back(MakeField(kFieldEnd, 0, 0, 0, 0));
  return table;
}

void SelectionWindow::Refresh() {
  for (FieldDescription& f : rows_) {
    std::optional<std::pair<int, int>> row = RowOfId(f.id);
    if (!row) continue;
    const SelectionCriterion& c = selection_.criteria[static_cast<size_t>(row->first)];
    if (row->second == kEntryPart) f.data = c.text;
  }
  for (FieldDescription& f : panel_) {
    if (f.id == kScheduleId) f.data = JoinLines(ScheduleCaptions());
    if (f.id == kSavedListId) f.data = JoinLines(SavedCaptions());
  }
}

}  // namespace nv
