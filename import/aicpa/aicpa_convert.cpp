#include "import/aicpa/aicpa_convert.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>

#include "base/ascii.h"

namespace nv::aicpa {
namespace {

constexpr double kCent = 0.005;  // amounts closer than this are equal

struct MethodWord {
  const char* word;
  MethodClass method_class;
};
// In the order of testing: "NO CALC" first, the declining-balance rates before the ACE and
// federal words that could hold them, "LAND" last.
constexpr std::array<MethodWord, 9> kMethodWords = {{
    {"NO CALC", MethodClass::kNoCalc},
    {"125", MethodClass::kDb125},
    {"150", MethodClass::kDb150},
    {"200", MethodClass::kDb200},
    {"SYD", MethodClass::kSyd},
    {"ACE ACRS", MethodClass::kAceAcrs},
    {"ACE MACRS", MethodClass::kAceMacrs},
    {"FED BASIS", MethodClass::kFedBasis},
    {"LAND", MethodClass::kLand},
}};

// Books that are neither MACRS nor ACRS. A class not here keeps the schedule N/A.
struct OtherMethod {
  MethodClass method_class;
  int with_switch;     // the user wants declining balance to switch to straight line
  int without_switch;  // and does not
};
constexpr std::array<OtherMethod, 7> kOtherMethods = {{
    {MethodClass::kStraightLine, kMethodStraightLine, kMethodStraightLine},
    {MethodClass::kDb125, kMethodDb125Sl, kMethodDb125},
    {MethodClass::kDb150, kMethodDb150Sl, kMethodDb150},
    {MethodClass::kDb200, kMethodDb200Sl, kMethodDb200},
    {MethodClass::kSyd, kMethodSyd, kMethodSyd},
    {MethodClass::kLand, kMethodNa, kMethodNa},
    {MethodClass::kNoCalc, kMethodNa, kMethodNa},
}};

struct ConventionWord {
  const char* words;  // the whole cell
  char convention;
};
// The other methods' conventions; any other text is actual months ("1").
constexpr std::array<ConventionWord, 4> kOtherConventions = {{
    {"MID-MONTH", 'M'},
    {"MID-QTR", 'Q'},
    {"HALF-YEAR", 'Y'},
    {"FULL-YEAR", '5'},
}};
constexpr char kOtherDefaultConvention = '1';
// MACRS knows only these two besides half-year.
constexpr std::array<ConventionWord, 2> kMacrsConventions = {{
    {"MID-MONTH", 'M'},
    {"MID-QTR", 'Q'},
}};
constexpr char kMacrsDefaultConvention = 'Y';

// Property words of the Method row.
enum class PropertyEffect { kAmortized, kRealProperty, kAssetType };
struct PropertyWord {
  const char* word;
  PropertyEffect effect;
  const char* asset_type;  // letters added to Asset Type
};
constexpr std::array<PropertyWord, 5> kPropertyWords = {{
    {"AMORT", PropertyEffect::kAmortized, ""},
    {"REAL", PropertyEffect::kRealProperty, ""},
    {"AUTO", PropertyEffect::kAssetType, "AL"},  // an automobile is listed property too
    {"LIST", PropertyEffect::kAssetType, "L"},
    {"LIH", PropertyEffect::kAssetType, "H"},
}};
constexpr int k4797RealProperty = 50;
constexpr int k4797Default = 45;

constexpr char kSubstituteBasisType = 'S';
constexpr char kFarmPropertyType = 'F';
constexpr int kItcNoReduction = 3;
constexpr int kItcReduction = 1;
constexpr char kAceAcrsConvention = '4';
constexpr char kAcrsConvention = '1';
// ACE books of assets placed in service before 1994 keep their straight-line life.
constexpr Date kLastAceSlDate{12, 31, 1993};
// MACRS 150% DB of ten years or less is farm property's 150% DB.
constexpr YearsMonths kFarmMaxLife{10, 0};

bool Holds(std::string_view text, std::string_view word) {
  return text.find(word) != std::string_view::npos;
}

char ConventionOf(std::string_view cell, std::span<const ConventionWord> words, char otherwise) {
  for (const ConventionWord& w : words) {
    if (EqualIgnoringCase(cell, w.words)) return w.convention;
  }
  return otherwise;
}

void AddAssetType(NvAssetSchedule* schedule, std::string_view letters) {
  for (char letter : letters) {
    if (schedule->asset_type.find(letter) == std::string::npos) schedule->asset_type += letter;
  }
}

Date ReadDate(std::string_view cell) {
  std::optional<Date> date = ParseDisplayDate(cell);
  return date ? *date : Date{};
}

// "YY/MM"; a life without "/" is whole years.
YearsMonths ReadLife(std::string_view cell) {
  const size_t slash = cell.find('/');
  YearsMonths life;
  life.years = std::max(0, LeadingInteger(cell.substr(0, slash)));
  if (slash != std::string_view::npos) {
    life.months = std::max(0, LeadingInteger(cell.substr(slash + 1)));
  }
  return life;
}

bool AtMost(const YearsMonths& life, const YearsMonths& limit) {
  return life.years < limit.years || (life.years == limit.years && life.months <= limit.months);
}

void ApplyMacrs(MethodClass method_class, char letter, const NvAsset& asset,
                std::string_view convention, NvAssetSchedule* s) {
  s->convention = ConventionOf(convention, kMacrsConventions, kMacrsDefaultConvention);
  if (method_class == MethodClass::kLand || method_class == MethodClass::kNoCalc) {
    s->method = kMethodNa;
    return;
  }
  s->method = (letter == 'A' || letter == 'C') ? kMethodAmt : kMethodMacrs;
  if (letter == 'C' && !asset.date_in_service.empty() && asset.date_in_service <= kLastAceSlDate) {
    s->sl_life = s->useful_life;
  } else if (method_class == MethodClass::kStraightLine) {
    s->sl_life = s->useful_life;
  } else if (method_class == MethodClass::kDb150 && s->method == kMethodMacrs &&
             AtMost(s->useful_life, kFarmMaxLife)) {
    s->method = kMethodMacrs150Db;
    AddAssetType(s, std::string_view(&kFarmPropertyType, 1));
  }
}

void ApplyAcrs(MethodClass method_class, NvAssetSchedule* s) {
  if (method_class == MethodClass::kLand || method_class == MethodClass::kNoCalc) {
    s->method = kMethodNa;
  } else if (method_class == MethodClass::kAceAcrs) {
    s->method = kMethodStraightLine;
    s->convention = kAceAcrsConvention;
  } else {
    s->method = kMethodAcrs;
    s->convention = kAcrsConvention;
    if (method_class == MethodClass::kStraightLine) s->sl_life = s->useful_life;
  }
}

void ApplyOtherMethod(MethodClass method_class, bool switch_to_sl, std::string_view convention,
                      NvAssetSchedule* s) {
  s->convention = ConventionOf(convention, kOtherConventions, kOtherDefaultConvention);
  for (const OtherMethod& row : kOtherMethods) {
    if (row.method_class == method_class) {
      s->method = switch_to_sl ? row.with_switch : row.without_switch;
    }
  }
}

// One book column's schedule.
void FillSchedule(const AssetPage& page, size_t book, char letter, bool switch_to_sl,
                  NvAsset* asset, NvAssetSchedule* s) {
  const double basis = ReadAmount(page.cell(kCostOrBasis, book));
  if (std::fabs(basis - asset->Cost()) > kCent) {
    s->substitute_basis = basis;
    AddAssetType(s, std::string_view(&kSubstituteBasisType, 1));
  }
  s->salvage_value = ReadAmount(page.cell(kSalvageValue, book));
  s->itc_code = std::fabs(ReadAmount(page.cell(kItcBasisReduction, book))) <= kCent
                    ? kItcNoReduction
                    : kItcReduction;
  s->useful_life = ReadLife(page.cell(kLife, book));
  s->business_percent = std::clamp(LeadingInteger(page.cell(kBusinessPercentage, book)), 0, 100);
  s->sec179_expense = ReadAmount(page.cell(kSection179, book));
  s->prior_allowed_depr = ReadAmount(page.cell(kPriorDepreciation, book)) - s->sec179_expense;
  s->prior_allowable_depr = s->prior_allowed_depr;

  const std::string method = AsciiUpper(page.cell(kMethod, book));
  for (const PropertyWord& w : kPropertyWords) {
    if (!Holds(method, w.word)) continue;
    switch (w.effect) {
      case PropertyEffect::kAmortized:
        s->amortized = true;
        break;
      case PropertyEffect::kRealProperty:
        asset->type_4797 = k4797RealProperty;
        break;
      case PropertyEffect::kAssetType:
        AddAssetType(s, w.asset_type);
        break;
    }
  }

  const MethodClass method_class = MethodClassOf(method);
  const std::string tax_system(TrimBlanks(page.cell(kTaxSystem, book)));
  const std::string_view convention = page.cell(kConvention, book);
  const bool tax_book = letter != 'B' && letter != 'O';
  if (tax_book && EqualIgnoringCase(tax_system, "MACRS")) {
    ApplyMacrs(method_class, letter, *asset, convention, s);
  } else if (tax_book && EqualIgnoringCase(tax_system, "ACRS")) {
    ApplyAcrs(method_class, s);
  } else {
    ApplyOtherMethod(method_class, switch_to_sl, convention, s);
  }
}

}  // namespace

MethodClass MethodClassOf(std::string_view method_text) {
  const std::string upper = AsciiUpper(method_text);
  for (const MethodWord& w : kMethodWords) {
    if (Holds(upper, w.word)) return w.method_class;
  }
  return MethodClass::kStraightLine;
}

size_t GeneralColumn(std::string_view books, std::string_view company_letters) {
  std::string wanted = "BT";
  if (!company_letters.empty()) wanted += company_letters.front();
  for (char letter : wanted) {
    const size_t column = books.find(letter);
    if (company_letters.find(letter) != std::string_view::npos && column != books.npos) {
      return column;
    }
  }
  return 0;
}

NvAsset ConvertAssetPage(const AssetPage& page, std::string_view books,
                         const NvCompanyRecord& company, bool switch_to_straight_line) {
  NvAsset asset;
  asset.Clear(company.schedule_letters);
  asset.number = NvAssetNo::Parse(page.value(kAssetNo), company.asset_no_format);
  asset.description = page.value(kDescription);
  asset.category = std::string(TrimBlanks(page.value(kCategory).substr(0, kCategoryKept)));
  asset.user_fields[0] = page.value(kUserDefined1);
  asset.user_fields[1] = page.value(kUserDefined2);

  const size_t general = GeneralColumn(books, company.schedule_letters);
  asset.cash_and_notes = ReadAmount(page.cell(kCostOrBasis, general));
  asset.trade_in = 0;
  asset.purchase_date = ReadDate(page.cell(kDateAcquired, general));
  asset.date_in_service = asset.purchase_date;
  const std::string& new_used = page.cell(kNewUsed, general);
  if (!new_used.empty()) {
    const char code = AsciiUpper(new_used.front());
    if (code == kNew || code == kUsed || code == kTrade) asset.new_used_trade = code;
  }
  asset.type_4797 = k4797Default;
  asset.disposal_code = kDisposalNone;

  // The Tax book first, so that the books on a federal basis can copy it.
  std::vector<size_t> order;
  const size_t tax = books.find('T');
  if (tax != books.npos) order.push_back(tax);
  for (size_t book = 0; book < books.size() && book < kMaxBooks; ++book) {
    if (book != tax) order.push_back(book);
  }
  std::string done;
  for (size_t book : order) {
    const char letter = books[book];
    if (done.find(letter) != std::string::npos) continue;  // a second column of a book
    done += letter;
    NvAssetSchedule* schedule = asset.Schedule(letter);
    if (schedule == nullptr || TrimBlanks(page.cell(kDateAcquired, book)).empty()) continue;
    if (letter != 'T' && Holds(AsciiUpper(page.cell(kMethod, book)), "FED BASIS")) {
      const NvAssetSchedule* federal = asset.Schedule('T');
      *schedule = federal != nullptr ? *federal : NvAssetSchedule{};
      continue;
    }
    FillSchedule(page, book, letter, switch_to_straight_line, &asset, schedule);
  }
  return asset;
}

std::array<std::string, kAccountGroupAccounts> GroupAccounts(const AccountNumbers& accounts) {
  return {accounts[kAssetAccount], accounts[kAccumulatedAccount], accounts[kExpenseAccount], ""};
}

AccountGroupFinder::AccountGroupFinder(const std::vector<AccountGroup>& groups) {
  for (const AccountGroup& group : groups) {
    const auto& a = group.accounts;
    if (a[3].empty()) by_accounts_.emplace(AccountNumbers{a[0], a[1], a[2]}, group.code);
    by_pair_.emplace(std::make_pair(a[1], a[2]), group.code);
  }
}

std::string AccountGroupFinder::Find(const AccountNumbers& accounts) const {
  if (std::all_of(accounts.begin(), accounts.end(), [](const auto& a) { return a.empty(); })) {
    return "";
  }
  if (auto it = by_accounts_.find(accounts); it != by_accounts_.end()) return it->second;
  if (accounts[kAccumulatedAccount].empty() && accounts[kExpenseAccount].empty()) return "";
  auto it = by_pair_.find({accounts[kAccumulatedAccount], accounts[kExpenseAccount]});
  return it == by_pair_.end() ? "" : it->second;
}

}  // namespace nv::aicpa
