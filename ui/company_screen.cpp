#include "ui/company_screen.h"

#include <functional>

#include "base/ascii.h"
#include "base/str_format.h"
#include "store/company/change_log.h"
#include "ui/company_record_rules.h"

namespace nv {

// One field of the screen: its script name, the control that shows it (0: none on this
// screen), the caption messages name it by, its options when it is a choice, and how its
// text is read and set.
struct CompanyScreen::Field {
  std::string name;
  int id = 0;
  const char* caption = "";
  const std::vector<Choice>* choices = nullptr;
  bool numeric = false;  // a choice whose control holds the option's number
  std::function<std::string(const CompanyScreen&)> text;
  std::function<bool(CompanyScreen&, std::string_view)> set;
};

namespace {

std::string Letter(char c) {
  return c == ' ' || c == '\0' ? std::string() : std::string(1, c);
}

std::string YesNoText(bool yes) {
  return yes ? "Y" : "N";
}

// Control identifiers of the fields and buttons.
enum : int {
  kNumberId = 101,
  kNameId,
  kEinId,
  kLastClosedId,
  kYearEndId,
  kMainLengthId,
  kSubassetLengthId,
  kLettersId,
  kDashesId,
  kScheduleLettersId,
  kSortOrderId,
  kBusinessCategoryId,
  kRoundDollarsId,
  kMidQuarterId,
  kGlobalLocCatId,
  kMiscCodesId,
  kLoggingId,
  kFirstButtonId = 201,
};

}  // namespace

namespace {

using Choices = std::vector<CompanyScreen::Choice>;

const Choices& YesNo() {
  static const Choices choices = {{'Y', "Yes"}, {'N', "No"}};
  return choices;
}

const Choices& BusinessCategories() {
  static const Choices choices = {
      {'1', "1-Proprietorship"}, {'2', "2-Partnership"}, {'3', "3-S Corp"}, {'4', "4-C Corp"}};
  return choices;
}

const Choices& MidQuarterOverrides() {
  static const Choices choices = {{'A', "A-Automatic"},
                                  {'Y', "Y-Half-Year"},
                                  {'Q', "Q-Mid-Quarter"},
                                  {'E', "E-Elect Half-Year (Notice 2001-70)"}};
  return choices;
}

const Choices& GlobalLocCatChoices() {
  static const Choices choices = {{'C', "C-Categories only"},
                                  {'L', "L-Locations only"},
                                  {'B', "B-Both Cats and Locs"},
                                  {'N', "N-No Global Cats/Locs"}};
  return choices;
}

const Choices& LoggingLevels() {
  static const Choices choices = {{'N', "N-None"}, {'P', "P-Partial"}, {'D', "D-Detailed"}};
  return choices;
}

}  // namespace

// ---- The fields -------------------------------------------------------------------------

const std::vector<CompanyScreen::Field>& CompanyScreen::Fields() {
  static const std::vector<Field> fields = [] {
    using S = CompanyScreen;
    std::vector<Field> f = {
        {"number", kNumberId, "Company No.", nullptr, false,
         [](const S& s) { return s.record_.number; },
         [](S& s, std::string_view) {
           s.ui_.Message("The company number cannot be changed on this screen.", "Error");
           return false;
         }},
        {"name", kNameId, "Company Name", nullptr, false, [](const S& s) { return s.record_.name; },
         [](S& s, std::string_view t) { return s.SetText(&s.record_.name, kCompanyNameWidth, t); }},
        {"ein", kEinId, "EIN or SSN", nullptr, false, [](const S& s) { return s.record_.ein; },
         [](S& s, std::string_view t) { return s.SetText(&s.record_.ein, kEinWidth, t); }},
        {"last_closed", kLastClosedId, "Last Closed", nullptr, false,
         [](const S& s) { return ScreenDateText(s.record_.last_closed); },
         [](S& s, std::string_view t) { return s.SetLastClosed(t); }},
        {"current_year_end", kYearEndId, "Current Year End", nullptr, false,
         [](const S& s) { return ScreenDateText(s.record_.current_year_end); },
         [](S& s, std::string_view t) { return s.SetYearEnd(t); }},
        {"asset_number_format.main", kMainLengthId, "Digits/Chars in Asset No.", nullptr, false,
         [](const S& s) { return StrPrintf("%d", s.record_.asset_no_format.main_length); },
         [](S& s, std::string_view t) { return s.SetMainLength(t); }},
        {"asset_number_format.sub", kSubassetLengthId, "Digits in Subasset Part", nullptr, false,
         [](const S& s) { return StrPrintf("%d", s.record_.asset_no_format.subasset_length); },
         [](S& s, std::string_view t) { return s.SetSubassetLength(t); }},
        {"asset_number_format.letters", kLettersId, "Letters", &YesNo(), false,
         [](const S& s) { return YesNoText(s.record_.asset_no_format.letters()); },
         [](S& s, std::string_view t) { return s.SetFormatFlag(NvAssetNoFormat::kLetters, t); }},
        {"asset_number_format.dashes", kDashesId, "Dashes", &YesNo(), false,
         [](const S& s) { return YesNoText(s.record_.asset_no_format.dashes()); },
         [](S& s, std::string_view t) { return s.SetFormatFlag(NvAssetNoFormat::kDashes, t); }},
        {"schedule_letters", kScheduleLettersId, "Schedules", nullptr, false,
         [](const S& s) { return s.record_.schedule_letters; },
         [](S& s, std::string_view t) { return s.SetScheduleLetters(t); }},
        {"sort_order", kSortOrderId, "Sort Order", nullptr, false,
         [](const S& s) { return s.record_.sort_order; },
         [](S& s, std::string_view t) { return s.SetSortOrder(t); }},
        {"business_category", kBusinessCategoryId, "Business Category", &BusinessCategories(), true,
         [](const S& s) {
           const int c = s.record_.business_category;
           return c >= 1 && c <= 4 ? StrPrintf("%d", c) : std::string();
         },
         [](S& s, std::string_view t) { return s.SetBusinessCategory(t); }},
        {"round_dollars", kRoundDollarsId, "Round Dollars", &YesNo(), false,
         [](const S& s) { return YesNoText(s.record_.round_dollars); },
         [](S& s, std::string_view t) { return s.SetRoundDollars(t); }},
        {"mid_quarter_override", kMidQuarterId, "Mid-Quarter Override", &MidQuarterOverrides(),
         false,
         [](const S& s) {
           const char c = s.record_.mid_quarter_override;
           return c == ' ' || c == '\0' ? std::string("A") : std::string(1, c);
         },
         [](S& s, std::string_view t) { return s.SetMidQuarterOverride(t); }},
        {"global_loc_cat", kGlobalLocCatId, "Global Cat/Loc Definitions", &GlobalLocCatChoices(),
         false, [](const S& s) { return Letter(s.record_.global_loc_cat); },
         [](S& s, std::string_view t) { return s.SetGlobalLocCat(t); }},
        {"misc_codes", kMiscCodesId, "Misc Codes", nullptr, false,
         [](const S& s) { return s.record_.misc_codes; },
         [](S& s, std::string_view t) {
           return s.SetText(&s.record_.misc_codes, kMiscCodesWidth, t);
         }},
        {"logging_flags", kLoggingId, "Asset Logging", &LoggingLevels(), false,
         [](const S& s) {
           const int32_t flags = s.record_.logging_flags;
           // Any other level shows as Partial and is saved as Partial.
           return flags == kLoggingNone       ? std::string("N")
                  : flags == kLoggingDetailed ? std::string("D")
                                              : std::string("P");
         },
         [](S& s, std::string_view t) { return s.SetLogging(t); }},
    };
    for (int i = 1; i <= kUserFieldCount; ++i) {
      const size_t at = static_cast<size_t>(i - 1);
      f.push_back({StrPrintf("user_fields.%d.name", i), 0, "User Field", nullptr, false,
                   [at](const S& s) { return s.record_.user_fields[at].name; },
                   [i](S& s, std::string_view t) { return s.SetUserField(i, true, t); }});
      f.push_back({StrPrintf("user_fields.%d.default", i), 0, "User Field", nullptr, false,
                   [at](const S& s) { return s.record_.user_fields[at].default_value; },
                   [i](S& s, std::string_view t) { return s.SetUserField(i, false, t); }});
    }
    return f;
  }();
  return fields;
}

const std::vector<std::string>& CompanyScreen::FieldNames() {
  static const std::vector<std::string> names = [] {
    std::vector<std::string> n;
    for (const Field& f : Fields()) n.push_back(f.name);
    return n;
  }();
  return names;
}

bool CompanyScreen::IsFieldName(std::string_view name) {
  return FindField(name) != nullptr;
}

const std::vector<std::string>& CompanyScreen::ButtonNames() {
  static const std::vector<std::string> names = {"schedule_definitions", "locations",
                                                 "categories",           "property_codes",
                                                 "user_fields",          "permissions"};
  return names;
}

int CompanyScreen::ControlId(std::string_view name) {
  if (const Field* field = FindField(name)) return field->id;
  const std::vector<std::string>& buttons = ButtonNames();
  for (size_t b = 0; b < buttons.size(); ++b) {
    if (buttons[b] == name) return kFirstButtonId + static_cast<int>(b);
  }
  return 0;
}

std::string CompanyScreen::ButtonOfControl(int id) {
  const std::vector<std::string>& buttons = ButtonNames();
  const int b = id - kFirstButtonId;
  if (b < 0 || b >= static_cast<int>(buttons.size())) return std::string();
  return buttons[static_cast<size_t>(b)];
}

const CompanyScreen::Field* CompanyScreen::FindField(std::string_view name) {
  for (const Field& f : Fields()) {
    if (f.name == name) return &f;
  }
  return nullptr;
}

// ---- The screen -------------------------------------------------------------------------

CompanyScreen::CompanyScreen(NvCompany& company, bool new_company, Ui& ui)
    : company_(company),
      new_company_(new_company),
      ui_(ui),
      record_(company.record()),
      original_(company.record()),
      letters_edit_(SchedulesFor(company, new_company), !new_company, kScheduleLettersFieldWidth) {
  loc_cat_choice_[kLocations] = original_.global_loc_cat;
  loc_cat_choice_[kCategories] = original_.global_loc_cat;
  Build();
  Refresh();
}

std::string CompanyScreen::FieldText(std::string_view name) const {
  const Field* field = FindField(name);
  return field ? field->text(*this) : std::string();
}

bool CompanyScreen::SetField(std::string_view name, std::string_view text) {
  const Field* field = FindField(name);
  if (field == nullptr) return false;
  const bool accepted = field->set(*this, text);
  Refresh();
  return accepted;
}

namespace {

// Where things stand on the screen: two columns of fields, the choices under them and the
// buttons at the foot. A button is a line and a half high, so a line is left under each.
constexpr int kLabelColumn = 1;
constexpr int kValueColumn = 27;
constexpr int kRightLabelColumn = 44;
constexpr int kRightValueColumn = 63;

FieldDescription Label(int row, int column, const char* text) {
  return MakeField(kFieldStatic, 0, row, column, static_cast<int>(std::string_view(text).size()),
                   text);
}

}  // namespace

void CompanyScreen::Build() {
  auto edit = [this](int id, int row, int column, int width, std::string attributes) {
    table_.push_back(MakeField(kFieldEdit, id, row, column, width, {}, std::move(attributes)));
  };
  // A radio group with its items laid out from (row, column), `per_line` items to a line.
  auto radio = [this](int id, int row, int column, int width, const char* title,
                      const std::vector<Choice>& choices, int per_line, bool numeric) {
    FieldDescription group = MakeField(kFieldGroup, id, row, column, width);
    const int lines = (static_cast<int>(choices.size()) + per_line - 1) / per_line;
    group.attributes = StrPrintf("radio(%s),width(%d),height(%d)%s", title, width, lines + 1,
                                 numeric ? ",numeric" : "");
    if (numeric) group.width = 1;
    table_.push_back(std::move(group));
    const int item_width = (width - 2) / per_line;
    for (size_t i = 0; i < choices.size(); ++i) {
      const int k = static_cast<int>(i);
      table_.push_back(MakeField(kFieldItem, id * 10 + k + 1, row + 1 + k / per_line,
                                 column + 1 + (k % per_line) * item_width, item_width - 1,
                                 choices[i].caption));
    }
  };
  table_.push_back(Label(0, kLabelColumn, "Company No."));
  edit(kNumberId, 0, kValueColumn, 8, "readonly,upr");
  table_.push_back(Label(1, kLabelColumn, "Company Name"));
  edit(kNameId, 1, kValueColumn, static_cast<int>(kCompanyNameWidth), "");
  table_.push_back(Label(2, kLabelColumn, "EIN or SSN"));
  edit(kEinId, 2, kValueColumn, static_cast<int>(kEinWidth), "");
  table_.push_back(Label(3, kLabelColumn, "Last Closed"));
  edit(kLastClosedId, 3, kValueColumn, 10, "chars(0-9/)");
  table_.push_back(Label(3, kRightLabelColumn, "Current Year End"));
  edit(kYearEndId, 3, kRightValueColumn, 10, "chars(0-9/)");

  table_.push_back(Label(4, kLabelColumn, "Schedules"));
  edit(kScheduleLettersId, 4, kValueColumn, static_cast<int>(kScheduleLettersFieldWidth),
       "upr,chars(A-Za-z)");
  table_.push_back(Label(6, kLabelColumn, "Sort Order"));
  edit(kSortOrderId, 6, kValueColumn, static_cast<int>(kSortOrderWidth),
       "upr,chars(LCAPDYlcapdy0-9)");
  table_.push_back(Label(6, kRightLabelColumn, "Misc Codes"));
  edit(kMiscCodesId, 6, kRightValueColumn, static_cast<int>(kMiscCodesWidth), "");

  table_.push_back(MakeField(kFieldGroup, 0, 8, kLabelColumn, 40, {},
                             "title(Asset Number Format),width(40),height(5)"));
  table_.push_back(Label(9, kLabelColumn + 2, "Digits/Chars in Asset No."));
  edit(kMainLengthId, 9, kValueColumn + 4, 2, "chars(0-9),rjust");
  table_.push_back(Label(10, kLabelColumn + 2, "Digits in Subasset Part"));
  edit(kSubassetLengthId, 10, kValueColumn + 4, 2, "chars(0-9),rjust");
  radio(kLettersId, 11, kLabelColumn + 2, 17, "Letters", YesNo(), 2, false);
  radio(kDashesId, 11, kLabelColumn + 21, 17, "Dashes", YesNo(), 2, false);

  radio(kBusinessCategoryId, 8, kRightLabelColumn, 36, "Business Category", BusinessCategories(), 2,
        true);
  radio(kRoundDollarsId, 11, kRightLabelColumn, 36, "Round Dollars", YesNo(), 2, false);
  radio(kMidQuarterId, 14, kLabelColumn, 40, "Mid-Quarter Override", MidQuarterOverrides(), 1,
        false);
  radio(kGlobalLocCatId, 14, kRightLabelColumn, 36, "Global Cat/Loc Definitions",
        GlobalLocCatChoices(), 1, false);
  radio(kLoggingId, 20, kLabelColumn, 40, "Asset Logging", LoggingLevels(), 3, false);

  static const char* const kButtonCaptions[] = {"Definitions...", "Locations...",
                                                "Categories...",  "Property Codes...",
                                                "User Fields...", "User Access Permissions..."};
  static const char* const kButtonHelp[] = {
      "Edit the schedule definitions",  "Edit the company's locations",
      "Edit the company's categories",  "Edit the company's property codes",
      "Name the user definable fields", "Set which users may use this company"};
  // The definitions button stands beside the schedule letters; the others at the foot.
  for (size_t b = 0; b < ButtonNames().size(); ++b) {
    const int id = kFirstButtonId + static_cast<int>(b);
    FieldDescription button =
        b == 0 ? MakeField(kFieldButton, id, 4, kValueColumn + 19, 14)
               : MakeField(kFieldButton, id, 23 + 2 * (static_cast<int>(b - 1) / 3),
                           kLabelColumn + static_cast<int>((b - 1) % 3) * 27, 25);
    button.data = kButtonCaptions[b];
    button.attributes = StrPrintf("msg(%s)", kButtonHelp[b]);
    table_.push_back(std::move(button));
  }
  table_.push_back(MakeField(kFieldEnd, 0, 0, 0, 0));

  for (size_t i = 0; i < table_.size(); ++i) {
    const int id = table_[i].id;
    for (const Field& field : Fields()) {
      if (field.id == 0 || field.id != id) continue;
      if (table_[i].kind == kFieldEdit || table_[i].kind == kFieldGroup) {
        const std::string name = field.name;
        table_[i].name = name;
        table_[i].check = [this, name](FieldTable&, size_t, const std::string& text) {
          return SetField(name, text);
        };
      }
    }
  }
}

void CompanyScreen::Refresh() {
  for (FieldDescription& control : table_) {
    for (const Field& field : Fields()) {
      if (field.id == 0 || field.id != control.id) continue;
      std::string text = field.text(*this);
      if (field.choices != nullptr && !field.numeric) {
        for (const Choice& choice : *field.choices) {
          if (text.size() == 1 && text[0] == choice.code) text = choice.caption;
        }
      }
      control.data = std::move(text);
    }
  }
}

// ---- Leaving a field --------------------------------------------------------------------

bool CompanyScreen::SetText(std::string* member, size_t width, std::string_view text) {
  text = TrimBlanks(text);
  *member = std::string(text.substr(0, std::min(text.size(), width)));
  return true;
}

bool CompanyScreen::SetLastClosed(std::string_view text) {
  const std::optional<Date> date = ParseScreenDate(text);
  const bool changed = !date || *date != record_.last_closed;
  if (!changed) return true;
  if (!new_company_ && !AskYes(ui_, DefaultButton::kNo, "%s", kLastClosedQuestion)) return false;
  if (!date || (!date->empty() && !IsMonthEnd(*date))) {
    ui_.Message(kLastDayOfMonthMessage);
    return false;
  }
  record_.last_closed = *date;
  if (record_.current_year_end.empty()) record_.current_year_end = OneYearAfter(*date);
  return true;
}

bool CompanyScreen::SetYearEnd(std::string_view text) {
  const std::optional<Date> date = ParseScreenDate(text);
  if (date && *date == record_.current_year_end) return true;
  const bool blank = date && date->empty();
  if (!new_company_ && !blank && !year_end_change_confirmed_) {
    if (!AskYes(ui_, DefaultButton::kNo, "%s", kYearEndQuestion)) return false;
    year_end_change_confirmed_ = true;
  }
  if (!date || (!blank && !IsMonthEnd(*date))) {
    ui_.Message(kLastDayOfMonthMessage);
    return false;
  }
  if (const char* problem = YearEndProblem(record_.last_closed, *date)) {
    ui_.Message(problem);
    return false;
  }
  record_.current_year_end = *date;
  return true;
}

bool CompanyScreen::SetMainLength(std::string_view text) {
  const std::optional<int> length = ParseMainLength(text);
  if (!length) {
    ui_.Message(kMainLengthMessage);
    return false;
  }
  record_.asset_no_format.main_length = *length;
  return true;
}

bool CompanyScreen::SetSubassetLength(std::string_view text) {
  record_.asset_no_format.subasset_length = ClampSubassetLength(text);
  return true;
}

bool CompanyScreen::SetFormatFlag(int flag, std::string_view text) {
  const std::optional<char> choice =
      PickChoice(flag == NvAssetNoFormat::kLetters ? "Letters" : "Dashes", YesNo(), text);
  if (!choice) return false;
  int& flags = record_.asset_no_format.flags;
  flags = *choice == 'Y' ? (flags | flag) : (flags & ~flag);
  return true;
}

bool CompanyScreen::SetScheduleLetters(std::string_view text) {
  if (TrimBlanks(text).size() > kScheduleLettersFieldWidth) {
    ui_.Message(StrPrintf("A company has at most %zu schedules.", kScheduleLettersFieldWidth));
    return false;
  }
  std::optional<std::string> letters = letters_edit_.Leave(text, ui_);
  if (!letters) return false;
  std::vector<ScheduleEntry> entries;
  for (char letter : *letters) {
    if (letter == ' ') continue;
    if (const ScheduleEntry* kept = record_.FindSchedule(letter)) {
      entries.push_back(*kept);
      continue;
    }
    const std::optional<ScheduleDefinition> definition = DefinitionInForce(letter);
    if (!definition) {
      ui_.Message(
          StrPrintf("Schedule %c has no definition.\nDefine it with the Schedule "
                    "Definitions button first.",
                    letter));
      return false;
    }
    entries.push_back({letter, definition->type, definition->description});
  }
  record_.schedule_letters.clear();
  for (const ScheduleEntry& entry : entries) record_.schedule_letters += entry.letter;
  record_.schedules = std::move(entries);
  return true;
}

bool CompanyScreen::SetSortOrder(std::string_view text) {
  const std::string sort_order = AsciiUpper(TrimBlanks(text));
  if (sort_order == record_.sort_order) return true;
  if (const char* problem = SortOrderProblem(sort_order)) {
    ui_.Message(problem);
    return false;
  }
  if (!new_company_ && !AskYes(ui_, DefaultButton::kNo, "%s", kSortOrderQuestion)) return false;
  record_.sort_order = sort_order;
  return true;
}

bool CompanyScreen::SetBusinessCategory(std::string_view text) {
  const std::optional<char> choice = PickChoice("Business Category", BusinessCategories(), text);
  if (!choice) return false;
  record_.business_category = *choice - '0';
  return true;
}

bool CompanyScreen::SetRoundDollars(std::string_view text) {
  const std::optional<char> choice = PickChoice("Round Dollars", YesNo(), text);
  if (!choice) return false;
  record_.round_dollars = *choice == 'Y';
  return true;
}

bool CompanyScreen::SetMidQuarterOverride(std::string_view text) {
  const std::optional<char> choice =
      PickChoice("Mid-Quarter Override", MidQuarterOverrides(), text);
  if (!choice) return false;
  if (*choice == 'E' && !ElectionAllowed(record_.last_closed, record_.current_year_end)) {
    ui_.Message(kElectionMessage);
    return false;
  }
  // Blank: the convention is determined automatically; the screen shows it as A.
  record_.mid_quarter_override = *choice == 'A' ? ' ' : *choice;
  return true;
}

bool CompanyScreen::SetGlobalLocCat(std::string_view text) {
  const std::optional<char> choice =
      PickChoice("Global Cat/Loc Definitions", GlobalLocCatChoices(), text);
  if (!choice) return false;
  record_.global_loc_cat = *choice;
  return true;
}

bool CompanyScreen::SetLogging(std::string_view text) {
  const std::optional<char> choice = PickChoice("Asset Logging", LoggingLevels(), text);
  if (!choice) return false;
  if (*choice == 'N') record_.logging_flags = kLoggingNone;
  if (*choice == 'D') record_.logging_flags = kLoggingDetailed;
  // Choosing Partial again keeps another non-zero level until the save makes it Partial.
  if (*choice == 'P' &&
      (record_.logging_flags == kLoggingNone || record_.logging_flags == kLoggingDetailed)) {
    record_.logging_flags = kLoggingPartial;
  }
  return true;
}

bool CompanyScreen::SetUserField(int index, bool name, std::string_view text) {
  UserFieldDefinition& field = record_.user_fields[static_cast<size_t>(index - 1)];
  if (name) return SetText(&field.name, kUserFieldNameWidth, text);
  return SetText(&field.default_value, kUserFieldDefaultWidth, text);
}

std::optional<char> CompanyScreen::PickChoice(const char* field_caption,
                                              const std::vector<Choice>& choices,
                                              std::string_view text) {
  text = TrimBlanks(text);
  for (const Choice& choice : choices) {
    if ((text.size() == 1 && AsciiUpper(text[0]) == choice.code) ||
        EqualIgnoringCase(text, choice.caption)) {
      return choice.code;
    }
  }
  const std::string shown(text);
  ui_.Message(StrPrintf("\"%s\" is not one of the choices for %s.", shown.c_str(), field_caption),
              "Error");
  return std::nullopt;
}

}  // namespace nv
