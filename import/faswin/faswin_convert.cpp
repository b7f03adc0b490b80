#include "import/faswin/faswin_convert.h"

#include <cmath>

#include "base/ascii.h"
#include "base/str_format.h"

namespace nv::faswin {

const std::array<SourceItem, kSourceItems> kSourceItemTable = {{
    {101, "G/L Asset Acct.", "G/L Asset Account No", "G/L Asset Acct No1"},
    {102, "G/L Accum Acct.", "G/L Accum Account No", "G/L Accum Acct No1"},
    {103, "G/L Expense Acct.", "G/L Expense Account No", "G/L Expense Account No1"},
    {104, "P O Number", "Purchase Order No", "Purchase Order No"},
    {105, "Vendor/Mfg", "Vendor/Mfg", "Vendor/Mfg"},
    {106, "Mfg Serial #", "Mfg Serial No", "Mfg Serial No"},
    {107, "Co Asset #", "Company Asset No", "Company Asset No"},
    {108, "Warranty Date", "Warranty Date", "Warranty Date"},
    {109, "Custodian", "Custodian", "Custodian"},
    {110, "ADS Life", "ADS Life", "ADS Life"},
    {111, "FAS User Field 1", "FAS User Field 1", "User Field 1"},
    {112, "FAS User Field 2", "FAS User Field 2", "User Field 2"},
    {113, "FAS User Field 3", "FAS User Field 3", "User Field 3"},
    {114, "FAS User Field 4", "FAS User Field 4", "User Field 4"},
    {115, "FAS User Field 5", "FAS User Field 5", "User Field 5"},
}};

const std::array<const char*, kFasBooks> kFasBookNames = {"Tax", "Internal Book", "State", "AMT",
                                                          "ACE", "Book 6",        "Book 7"};

const SourceItem* FindSourceItem(int id) {
  for (const SourceItem& item : kSourceItemTable) {
    if (item.id == id) return &item;
  }
  return nullptr;
}

namespace {

constexpr double kCent = 0.005;
constexpr YearsMonths kRealPropertyLife{26, 0};
constexpr char kMidQuarterMark = 0;  // the convention is the book line's mid-quarter mark

// ---------------------------------------------------------------------------------------
// Method codes

enum class MethodRule {
  kFixed,           // the row's method
  kMacrs,           // WFA: 14 in the AMT book, else 3
  kMacrsByPercent,  // CSV: 33 (14 in a schedule of type A) at 150%, else 3
  kDecliningSl,     // 100 -> 16, 125 -> 8, 150 -> 9, other -> 10
  kDeclining,       // 100 -> 16, 125 -> 4, 150 -> 5, other -> 6
  kNotApplicable,   // 13, nothing else
};

struct MethodRow {
  const char* code;
  MethodRule rule;
  int method;
  char convention;
  bool sl_life;
};

constexpr MethodRow kCommonRows[] = {
    {"AT", MethodRule::kFixed, kMethodAcrs, '1', false},
    {"SA", MethodRule::kFixed, kMethodAcrs, '1', true},
    {"ST", MethodRule::kFixed, kMethodAcrs, '1', true},
    {"SL", MethodRule::kFixed, kMethodStraightLine, '2', false},
    {"SF", MethodRule::kFixed, kMethodStraightLine, '1', false},
    {"SH", MethodRule::kFixed, kMethodStraightLine, '3', false},
    {"SD", MethodRule::kFixed, kMethodStraightLine, '3', false},
    {"DB", MethodRule::kDecliningSl, 0, '1', false},
    {"DH", MethodRule::kDecliningSl, 0, '3', false},
    {"DD", MethodRule::kDecliningSl, 0, '2', false},
    {"DC", MethodRule::kDeclining, 0, '1', false},
    {"DI", MethodRule::kDeclining, 0, '3', false},
    {"DE", MethodRule::kDeclining, 0, '2', false},
    {"YS", MethodRule::kFixed, kMethodSyd, '1', false},
    {"YH", MethodRule::kFixed, kMethodSyd, '3', false},
    {"YD", MethodRule::kFixed, kMethodSyd, '2', false},
    {"RV", MethodRule::kFixed, kMethodStraightLine, '4', false},
    {"OC", MethodRule::kFixed, kMethodOther, '1', false},
    {"NO", MethodRule::kNotApplicable, kMethodNa, ' ', false},
};

constexpr MethodRow kWfaMacrsRows[] = {
    {"MF", MethodRule::kMacrs, 0, kMidQuarterMark, false},
    {"MT", MethodRule::kMacrs, 0, kMidQuarterMark, false},
    {"AD", MethodRule::kMacrs, 0, kMidQuarterMark, true},
};

constexpr MethodRow kCsvMacrsRows[] = {
    {"MA", MethodRule::kMacrsByPercent, 0, 'Y', false},
    {"MF", MethodRule::kMacrsByPercent, 0, 'Y', false},
    {"MT", MethodRule::kMacrsByPercent, 0, 'Y', false},
    {"MI", MethodRule::kMacrsByPercent, 0, 'Y', false},
    {"MR", MethodRule::kMacrsByPercent, 0, 'Y', false},
    {"AD", MethodRule::kMacrsByPercent, 0, 'Y', true},
    {"SB", MethodRule::kMacrsByPercent, 0, 'Y', true},
};

template <size_t N>
const MethodRow* FindRow(const MethodRow (&rows)[N], std::string_view code) {
  for (const MethodRow& row : rows) {
    if (code == row.code) return &row;
  }
  return nullptr;
}

const MethodRow* WfaMethodRow(std::string_view code) {
  const MethodRow* row = FindRow(kWfaMacrsRows, code);
  return row != nullptr ? row : FindRow(kCommonRows, code);
}

const MethodRow* CsvMethodRow(std::string_view code) {
  const MethodRow* row = FindRow(kCsvMacrsRows, code);
  return row != nullptr ? row : FindRow(kCommonRows, code);
}

int DecliningMethod(int percent, bool switch_to_sl) {
  switch (percent) {
    case 100:
      return kMethodDb100;
    case 125:
      return switch_to_sl ? kMethodDb125Sl : kMethodDb125;
    case 150:
      return switch_to_sl ? kMethodDb150Sl : kMethodDb150;
    default:
      return switch_to_sl ? kMethodDb200Sl : kMethodDb200;
  }
}

// Method and Convention of a row (not the NA row's "nothing").
void ApplyMethodRow(const MethodRow& row, int percent, bool amt, char mark, NvAssetSchedule* s) {
  switch (row.rule) {
    case MethodRule::kFixed:
    case MethodRule::kNotApplicable:
      s->method = row.method;
      break;
    case MethodRule::kMacrs:
      s->method = amt ? kMethodAmt : kMethodMacrs;
      break;
    case MethodRule::kMacrsByPercent:
      s->method = percent != 150 ? kMethodMacrs : amt ? kMethodAmt : kMethodMacrs150Db;
      break;
    case MethodRule::kDecliningSl:
      s->method = DecliningMethod(percent, true);
      break;
    case MethodRule::kDeclining:
      s->method = DecliningMethod(percent, false);
      break;
  }
  if (row.rule != MethodRule::kNotApplicable) {
    s->convention = row.convention == kMidQuarterMark ? mark : row.convention;
  }
  if (row.sl_life) s->sl_life = s->useful_life;
}

// ---------------------------------------------------------------------------------------
// Values

// The whole number that the text begins with (blanks before it skipped); 0 without one.
int LeadingNumber(std::string_view text) {
  text = TrimBlanks(text);
  int value = 0;
  for (char c : text) {
    if (c < '0' || c > '9' || value > 99999) break;
    value = value * 10 + (c - '0');
  }
  return value;
}

// A percentage written as a number, "200" or "200.00".
int Percent(std::string_view text) {
  const double value = Amount(text);
  return std::fabs(value) < 1e6 ? static_cast<int>(std::lround(value)) : 0;
}

std::string Cut(std::string_view text, size_t width) {
  text = TrimBlanks(text);
  return std::string(text.substr(0, width));
}

bool Longer(const YearsMonths& life, const YearsMonths& than) {
  return life.years * 12 + life.months > than.years * 12 + than.months;
}

char FirstLetter(std::string_view text) {
  text = TrimBlanks(text);
  return text.empty() ? 0 : AsciiUpper(text.front());
}

char DisposalCode(char method) {
  switch (method) {
    case 'E':
    case 'L':
      return kDisposalExchanged;
    case 'S':
      return kDisposalSold;
    default:
      return kDisposalAbandoned;
  }
}

void AppendAssetType(NvAssetSchedule* s, std::string_view letters) {
  s->asset_type += letters;
  if (s->asset_type.size() > 10) s->asset_type.resize(10);
}

// The property type letter's share of the asset (4797 Type) and of one schedule.
void ApplyPropertyType(char letter, bool internal_book, NvAsset* asset, NvAssetSchedule* s) {
  switch (letter) {
    case 'A':
      AppendAssetType(s, internal_book ? "L" : "AL");
      break;
    case 'C':
    case 'E':
    case 'R':
      asset->type_4797 = 50;
      break;
    case 'F':
      asset->type_4797 = 50;
      AppendAssetType(s, "F");
      break;
    case 'H':
      asset->type_4797 = 50;
      AppendAssetType(s, "H");
      break;
    case 'Q':
      AppendAssetType(s, "L");
      break;
    case 'S':
      asset->type_4797 = 50;
      AppendAssetType(s, "L");
      break;
    case 'Z':
      s->amortized = true;
      break;
    default:
      break;
  }
  if (asset->type_4797 == 50 && (s->convention == 'Y' || s->convention == 'Q') &&
      Longer(s->useful_life, kRealPropertyLife)) {
    s->convention = 'M';
  }
}

// The fields every new asset of either form starts with.
void SetGeneralDefaults(NvAsset* asset) {
  asset->new_used_trade = kNew;
  asset->prior_short_years = 0;
  asset->property_code.clear();
  asset->type_4797 = 45;
}

void SetDisposal(const std::optional<Date>& date, char method, double sale, NvAsset* asset) {
  asset->ClearDisposal();
  if (!date) return;
  asset->disposal_date = *date;
  asset->disposal_code = DisposalCode(method);
  if (asset->disposal_code == kDisposalSold) asset->sale_amount = sale;
}

// Acct No./Grp. and the user fields from the matched source texts. Unmatched user fields
// among the first `cleared` are emptied; the others are left as they are.
template <typename TextOf>
void SetMatchedFields(const FieldSources& sources, int cleared, TextOf text_of, NvAsset* asset) {
  asset->account = sources.account != 0 ? Cut(text_of(sources.account), kAccountWidth) : "";
  for (int i = 0; i < kMatchedUserFields; ++i) {
    const int source = sources.user_fields[static_cast<size_t>(i)];
    if (source != 0) {
      asset->user_fields[static_cast<size_t>(i)] = Cut(text_of(source), kUserFieldWidth);
    } else if (i < cleared) {
      asset->user_fields[static_cast<size_t>(i)].clear();
    }
  }
}

}  // namespace

// ---------------------------------------------------------------------------------------
// WFA form

char WfaStatus(const WfaAsset& asset, WfaLayout layout) {
  if (layout == WfaLayout::kOlder) return FirstLetter(asset.asset.Field(kOlderFields.status));
  return asset.disposal ? FirstLetter(asset.disposal->Field(kChldStatus)) : 0;
}

namespace {

// A value the older layout keeps in the asset record and the newer in chld.wfa.
std::string_view DisposalValue(const WfaAsset& asset, WfaLayout layout, int older_field,
                               int chld_field) {
  if (layout == WfaLayout::kOlder) return asset.asset.Field(older_field);
  return asset.disposal ? asset.disposal->Field(chld_field) : std::string_view();
}

std::optional<Date> WfaDisposalDate(const WfaAsset& asset, WfaLayout layout) {
  return SourceDate(DisposalValue(asset, layout, kOlderFields.disposal_date, kChldDisposalDate));
}

}  // namespace

std::optional<std::string> WfaLeaveOutReason(const WfaAsset& asset, const WfaSettings& settings) {
  const char status = WfaStatus(asset, settings.layout);
  if (status == 'I') return "status I (inactive)";
  if (status == 'D' && settings.delete_disposed && !settings.last_closed.empty()) {
    const std::optional<Date> disposed = WfaDisposalDate(asset, settings.layout);
    if (disposed && *disposed <= settings.last_closed) {
      return "disposed on or before " + FormatDisplayDate(settings.last_closed);
    }
  }
  return std::nullopt;
}

std::array<std::string, 2> WfaAccounts(const WfaAsset& asset, WfaLayout layout) {
  const WfaFields& f = FieldsOf(layout);
  return {std::string(TrimBlanks(asset.asset.Field(f.asset_account))),
          std::string(TrimBlanks(asset.asset.Field(f.accumulated_account)))};
}

std::optional<std::string> WfaSourceText(int source, const WfaAsset& asset, WfaLayout layout) {
  const std::array<std::string, 2> accounts = WfaAccounts(asset, layout);
  if (source == kSourceAssetAccount) return accounts[0];
  if (source == kSourceAccumulatedAccount) return accounts[1];
  return std::nullopt;
}

namespace {

void ApplyWfaBook(const CommaRecord& book, int number, bool first, const WfaAsset& source,
                  const WfaSettings& settings, NvAsset* asset, NvAssetSchedule* s) {
  const WfaFields& f = FieldsOf(settings.layout);
  const CommaRecord& general = source.asset;
  const double cost = Amount(book.Field(f.cost));
  if (first) {
    const char itc_option = FirstLetter(general.Field(f.itc_option));
    if (itc_option == 'C' || itc_option == 'D') asset->new_used_trade = kUsed;
    asset->cash_and_notes = cost;
    if (asset->disposed()) asset->amount_disposed = cost;
    if (std::optional<Date> in_service = SourceDate(book.Field(f.in_service))) {
      asset->date_in_service = *in_service;
    }
  }

  const std::string_view method_text = TrimBlanks(book.Field(f.method));
  const std::string code = AsciiUpper(method_text.substr(0, 2));
  const MethodRow* row = WfaMethodRow(code);
  if (row != nullptr && row->rule != MethodRule::kNotApplicable) {
    const std::string_view life = TrimBlanks(book.Field(f.life));
    s->useful_life = {LeadingNumber(life.substr(0, 2)),
                      life.size() > 2 ? LeadingNumber(life.substr(2)) : 0};
  }
  const char mark = TrimBlanks(book.Field(f.mid_quarter)).starts_with('1') ? 'Q' : 'Y';
  if (row != nullptr) {
    ApplyMethodRow(*row, Percent(book.Field(f.percent)), number == 3, mark, s);
  }

  s->business_percent = 100;
  if (number == 0 || number == 3 || number == 4) {
    const double itc =
        Amount(DisposalValue(source, settings.layout, kOlderFields.itc_amount, kChldItcAmount));
    s->itc_code = FirstLetter(general.Field(f.itc_option)) == 'X' ? 3
                  : std::fabs(itc) >= kCent                       ? 1
                                                                  : 2;
  } else {
    s->itc_code = 3;
  }
  if (std::fabs(cost - asset->cash_and_notes) > kCent) s->substitute_basis = cost;
  const double sec179_or_bonus = Amount(book.Field(f.sec179_or_bonus));
  if (TrimBlanks(book.Field(f.sec179_flag)) == "1") {
    s->sec179_expense = sec179_or_bonus;
  } else {
    s->bonus_depr = sec179_or_bonus;
  }
  s->prior_allowed_depr = s->prior_allowable_depr = Amount(book.Field(f.prior_depreciation));
  ApplyPropertyType(FirstLetter(general.Field(f.property_type)), number == 1, asset, s);
}

}  // namespace

NvAsset ConvertWfaAsset(const WfaAsset& source, const WfaSettings& settings,
                        std::vector<std::string>* notes) {
  const WfaFields& f = FieldsOf(settings.layout);
  const CommaRecord& general = source.asset;
  NvAsset asset;
  asset.Clear(settings.schedule_letters);
  SetGeneralDefaults(&asset);
  asset.number =
      NvAssetNo::Parse(TrimBlanks(general.Field(kSystemNumberField)), settings.asset_no_format);
  asset.description = Cut(general.Field(f.description), kDescriptionWidth);
  asset.category = Cut(TrimBlanks(general.Field(f.category)).substr(0, 2), 2);
  asset.location = Cut(general.Field(f.location), kLocationWidth);
  asset.purchase_date = SourceDate(general.Field(f.acquisition_date)).value_or(Date{});
  asset.date_in_service = asset.purchase_date;
  SetMatchedFields(
      settings.sources, 3,
      [&](int id) { return WfaSourceText(id, source, settings.layout).value_or(""); }, &asset);

  const WfaLayout layout = settings.layout;
  const double sale =
      Amount(DisposalValue(source, layout, kOlderFields.cash_proceeds, kChldCashProceeds)) +
      Amount(DisposalValue(source, layout, kOlderFields.non_cash_proceeds, kChldNonCashProceeds)) -
      Amount(DisposalValue(source, layout, kOlderFields.expense_of_sale, kChldExpenseOfSale));
  SetDisposal(
      WfaDisposalDate(source, layout),
      FirstLetter(DisposalValue(source, layout, kOlderFields.disposal_method, kChldDisposalMethod)),
      sale, &asset);

  bool first = true;
  for (const CommaRecord& book : source.books) {
    const std::string_view number_text = TrimBlanks(book.Field(kBookNumberField));
    const int number = number_text.size() == 1 ? number_text[0] - '0' : -1;
    if (number < 0 || number >= kFasBooks) {
      notes->push_back(StrPrintf("book line %ld: book number \"%s\" is not 0 to 6", book.line,
                                 std::string(number_text).c_str()));
      continue;
    }
    const char letter = settings.book_letters[static_cast<size_t>(number)];
    NvAssetSchedule* s = letter != 0 ? asset.Schedule(letter) : nullptr;
    if (s == nullptr) continue;  // a book the person matched to no schedule
    ApplyWfaBook(book, number, first, source, settings, &asset, s);
    first = false;
  }
  return asset;
}

std::string AccountGroupCode(std::vector<AccountGroup>* groups, std::string_view account_text,
                             const std::array<std::string, 2>& accounts) {
  if (accounts[0].empty() && accounts[1].empty()) return std::string(account_text);
  const AccountGroup* group = GetOrAddAccountGroup(groups, accounts[0], accounts[0], accounts[1],
                                                   accounts[1], account_text);
  return group != nullptr ? Cut(group->code, kAccountWidth) : std::string(account_text);
}

// ---------------------------------------------------------------------------------------
// CSV form

CsvColumns::CsvColumns(const CsvBook& book)
    : system_no(book.ColumnNumber("System No")),
      activity_code(book.ColumnNumber("Activity Code")),
      disposal_date(book.ColumnNumber("Disposal Date")),
      description(book.ColumnNumber("Description")),
      class_(book.ColumnNumber("Class")),
      acquisition_date(book.ColumnNumber("Acquisition Date")),
      location(book.ColumnNumber("Location")),
      disposal_method(book.ColumnNumber("Disposal Method")),
      cash_proceeds(book.ColumnNumber("Cash Proceeds")),
      non_cash_proceeds(book.ColumnNumber("Non-Cash Proceeds")),
      depreciation_percent(book.ColumnNumber("Depreciation Percent")),
      itc_option(book.ColumnNumber("ITC Option")),
      acquisition_value(book.ColumnNumber("Acquisition Value")),
      depreciation_method(book.ColumnNumber("Depreciation Method")),
      estimated_life(book.ColumnNumber("Estimated Life")),
      section_179_qualified(book.ColumnNumber("Section 179 Qualified")),
      section_179_bonus(book.ColumnNumber("Section 179/Bonus")),
      current_accum_depr(book.ColumnNumber("Current Accum Depr")),
      current_ytd_depr(book.ColumnNumber("Current YTD Depr")),
      property_type(book.ColumnNumber("Property Type")),
      k168_percent(book.ColumnNumber("168(k) Percent")),
      k168_allowance(book.ColumnNumber("168(k) Allowance")),
      asset_account(book.ColumnNumber("G/L Asset Acct No1")),
      accumulated_account(book.ColumnNumber("G/L Accum Acct No1")) {
  for (size_t i = 0; i < kSourceItemTable.size(); ++i) {
    sources[i] = book.ColumnNumber(kSourceItemTable[i].csv_column);
  }
}

std::string_view CsvRow::Source(int id) const {
  const int index = id - kSourceItemTable[0].id;
  if (index < 0 || index >= kSourceItems) return {};
  return TrimBlanks(record_.Field(columns_.sources[static_cast<size_t>(index)]));
}

std::optional<std::string> CsvLeaveOutReason(const CsvRow& row, const CsvSettings& settings) {
  const std::string_view number = row.Get(&CsvColumns::system_no);
  if (number.empty() || !NvAssetNo::Parse(number, settings.asset_no_format).valid()) {
    return "no valid asset number";
  }
  if (AsciiUpper(row.Get(&CsvColumns::activity_code)) == "D" && settings.delete_disposed &&
      !settings.last_closed.empty()) {
    const std::optional<Date> disposed = SourceDate(row.Get(&CsvColumns::disposal_date));
    if (disposed && *disposed <= settings.last_closed) {
      return "disposed on or before " + FormatDisplayDate(settings.last_closed);
    }
  }
  return std::nullopt;
}

namespace {

// Gives the asset the company's schedules, keeping those it has.
void TakeCompanySchedules(const std::string& letters, NvAsset* asset) {
  if (asset->schedule_letters == letters) return;
  std::vector<NvAssetSchedule> schedules(letters.size());
  for (size_t i = 0; i < letters.size(); ++i) {
    if (const NvAssetSchedule* kept = asset->Schedule(letters[i])) schedules[i] = *kept;
  }
  asset->schedule_letters = letters;
  asset->schedules = std::move(schedules);
}

YearsMonths EstimatedLife(std::string_view text) {
  std::string digits;
  for (char c : text) {
    if (c != ' ') digits += c;
  }
  if (digits.size() < 4) digits.insert(0, 4 - digits.size(), '0');
  return {LeadingNumber(std::string_view(digits).substr(0, 2)),
          LeadingNumber(std::string_view(digits).substr(2, 2))};
}

}  // namespace

void ApplyCsvRow(const CsvRow& row, const CsvSettings& settings, bool is_new, NvAsset* asset) {
  using C = CsvColumns;
  TakeCompanySchedules(settings.schedule_letters, asset);
  if (is_new) {
    asset->number = NvAssetNo::Parse(row.Get(&C::system_no), settings.asset_no_format);
  }
  asset->description = Cut(row.Get(&C::description), kDescriptionWidth);
  asset->location = Cut(row.Get(&C::location), kLocationWidth);
  asset->category = Cut(row.Get(&C::class_), kCsvCategoryWidth);
  asset->purchase_date = SourceDate(row.Get(&C::acquisition_date)).value_or(Date{});
  asset->date_in_service = asset->purchase_date;
  SetGeneralDefaults(asset);
  const char itc_option = FirstLetter(row.Get(&C::itc_option));
  if (itc_option == 'C' || itc_option == 'D') asset->new_used_trade = kUsed;
  SetMatchedFields(
      settings.sources, 5, [&](int id) { return row.Source(id); }, asset);

  const double sale = Amount(row.Get(&C::cash_proceeds)) + Amount(row.Get(&C::non_cash_proceeds));
  SetDisposal(SourceDate(row.Get(&C::disposal_date)), FirstLetter(row.Get(&C::disposal_method)),
              sale, asset);
  const double value = Amount(row.Get(&C::acquisition_value));
  if (is_new) asset->cash_and_notes = value;
  // The amount disposed is the whole cost: for an asset already there, the cost it has.
  if (asset->disposed()) asset->amount_disposed = asset->cash_and_notes;

  NvAssetSchedule* s = asset->Schedule(settings.schedule);
  if (s == nullptr) return;
  *s = NvAssetSchedule{};
  s->business_percent = 100;
  s->useful_life = EstimatedLife(row.Get(&C::estimated_life));
  const std::string code = AsciiUpper(row.Get(&C::depreciation_method).substr(0, 2));
  if (const MethodRow* method = CsvMethodRow(code)) {
    ApplyMethodRow(*method, Percent(row.Get(&C::depreciation_percent)),
                   settings.schedule_type == "A", 'Y', s);
  }
  s->itc_code = 3;
  if (std::fabs(value - asset->cash_and_notes) >= kCent) s->substitute_basis = value;
  if (!row.Get(&C::section_179_qualified).empty()) {
    s->sec179_expense = Amount(row.Get(&C::section_179_bonus));
  }
  s->prior_allowed_depr = s->prior_allowable_depr =
      Amount(row.Get(&C::current_accum_depr)) - Amount(row.Get(&C::current_ytd_depr));
  ApplyPropertyType(FirstLetter(row.Get(&C::property_type)), false, asset, s);
  const int k168 = Percent(row.Get(&C::k168_percent));
  if (k168 == 30 || k168 == 50) {
    AppendAssetType(s, k168 == 30 ? "2" : "3");
    s->bonus_depr = Amount(row.Get(&C::k168_allowance));
  }
}

}  // namespace nv::faswin
