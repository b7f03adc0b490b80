#include "import/fas1000/fas1000_convert.h"

#include <cmath>
#include <string_view>

#include "base/ascii.h"
#include "base/str_format.h"

namespace nv::fas1000 {
namespace {

// Amounts that differ by less than half a cent are the same amount.
constexpr double kCent = 0.005;

// ITC Code: 1 credit taken, 2 no credit taken, 3 no credit allowed.
constexpr int kItcTaken = 1;
constexpr int kItcNotTaken = 2;
constexpr int kItcNone = 3;

constexpr int k4797Default = 45;
constexpr int k4797RealProperty = 50;

constexpr YearsMonths kTenYears{10, 0};
constexpr YearsMonths kTwentySixYears{26, 0};

struct BookEntry {
  char digit;
  char letter;
  bool investment_credit;
};
constexpr BookEntry kBooks[] = {
    {'0', 'T', true}, {'1', 'B', false}, {'2', 'S', false}, {'3', 'A', true}, {'5', 'C', true},
};
constexpr char kTaxLetter = 'T';
constexpr char kAmtDigit = '3';
constexpr char kInternalDigit = '1';

const BookEntry* FindBook(char digit) {
  for (const BookEntry& book : kBooks) {
    if (book.digit == digit) return &book;
  }
  return nullptr;
}

// How a method code sets the schedule.
enum class MethodRule {
  kFixed,             // the row's method
  kMacrs,             // 14 in the AMT book; 33 for 150% within ten years; else 3
  kMacrsAlternative,  // 14 in the AMT book; else 3
  kDecliningBalance,  // by the percentage and the switch to straight line
  kNotApplicable,     // 13, the life not taken
  kCopyTax,           // the Tax schedule as it stands
};

// A convention of '\0' is the MACRS one: "Q" with the mid-quarter mark, else "Y".
constexpr char kMacrsConvention = '\0';

struct MethodRow {
  std::string_view code;
  MethodRule rule;
  int method;  // kFixed only
  char convention;
  bool sl_life;  // SL Life takes the line's life
};

constexpr MethodRow kMethods[] = {
    {"MF", MethodRule::kMacrs, 0, kMacrsConvention, false},
    {"MT", MethodRule::kMacrs, 0, kMacrsConvention, false},
    {"AD", MethodRule::kMacrsAlternative, 0, kMacrsConvention, true},
    {"AT", MethodRule::kFixed, kMethodAcrs, '1', false},
    {"SA", MethodRule::kFixed, kMethodAcrs, '1', true},
    {"ST", MethodRule::kFixed, kMethodAcrs, '1', true},
    {"SL", MethodRule::kFixed, kMethodStraightLine, '1', false},
    {"SF", MethodRule::kFixed, kMethodStraightLine, '1', false},
    {"SH", MethodRule::kFixed, kMethodStraightLine, '3', false},
    {"SD", MethodRule::kFixed, kMethodStraightLine, '3', false},
    {"DB", MethodRule::kDecliningBalance, 0, '2', false},
    {"DH", MethodRule::kDecliningBalance, 0, '3', false},
    {"DD", MethodRule::kDecliningBalance, 0, '3', false},
    {"YS", MethodRule::kFixed, kMethodSyd, '1', false},
    {"YH", MethodRule::kFixed, kMethodSyd, '3', false},
    {"YD", MethodRule::kFixed, kMethodSyd, '3', false},
    {"RV", MethodRule::kFixed, kMethodStraightLine, '4', false},
    {"OC", MethodRule::kFixed, kMethodOther, '1', false},
    {"NO", MethodRule::kNotApplicable, kMethodNa, ' ', false},
    {"RR", MethodRule::kCopyTax, 0, ' ', false},
};

const MethodRow* FindMethod(std::string_view code) {
  for (const MethodRow& row : kMethods) {
    if (row.code == code) return &row;
  }
  return nullptr;
}

// Declining balance by its percentage, switching to straight line or not.
struct DecliningBalanceEntry {
  int percent;
  int with_switch;
  int without_switch;
};
constexpr DecliningBalanceEntry kDecliningBalance[] = {
    {100, kMethodDb100, kMethodDb100},
    {125, kMethodDb125Sl, kMethodDb125},
    {150, kMethodDb150Sl, kMethodDb150},
};
constexpr DecliningBalanceEntry kOtherDecliningBalance{0, kMethodDb200Sl, kMethodDb200};

int DecliningBalanceMethod(int percent, bool switch_to_sl) {
  const DecliningBalanceEntry* entry = &kOtherDecliningBalance;
  for (const DecliningBalanceEntry& row : kDecliningBalance) {
    if (row.percent == percent) entry = &row;
  }
  return switch_to_sl ? entry->with_switch : entry->without_switch;
}

// What a property type letter does.
struct PropertyTypeEntry {
  char letter;
  bool real_property;         // 4797 Type 50
  const char* asset_type;     // letters appended to Asset Type
  const char* internal_type;  // ... in the internal book
  bool amortized;
};
constexpr PropertyTypeEntry kPropertyTypes[] = {
    {'A', false, "AL", "L", false}, {'C', true, "", "", false},   {'E', true, "", "", false},
    {'R', true, "", "", false},     {'F', true, "F", "F", false}, {'H', true, "H", "H", false},
    {'Q', false, "L", "L", false},  {'S', true, "L", "L", false}, {'Z', false, "", "", true},
};

const PropertyTypeEntry* FindPropertyType(char letter) {
  for (const PropertyTypeEntry& entry : kPropertyTypes) {
    if (entry.letter == letter) return &entry;
  }
  return nullptr;
}

bool Longer(const YearsMonths& a, const YearsMonths& b) {
  return a.years != b.years ? a.years > b.years : a.months > b.months;
}

std::string Fit(std::string_view text, size_t width) {
  text = TrimBlanks(text);
  std::string fitted(text.substr(0, width));
  return std::string(TrimBlanks(fitted));
}

// The disposal of the assetgen line.
void ConvertDisposal(const GeneralLine& g, NvAsset* asset) {
  if (!g.disposed) return;
  asset->disposal_date = g.disposal_date;
  switch (g.disposal_method) {
    case 'E':
    case 'L':
      asset->disposal_code = kDisposalExchanged;
      break;
    case 'S':
      asset->disposal_code = kDisposalSold;
      asset->sale_amount = g.cash_proceeds + g.other_proceeds - g.expense_of_sale;
      break;
    default:  // "A" and anything unknown
      asset->disposal_code = kDisposalAbandoned;
      break;
  }
}

// Account, user fields and location from the label line and the matching.
void ConvertLabels(const FasAsset& source, const ConversionSettings& settings, NvAsset* asset) {
  if (!source.label) return;
  asset->location = source.label->location;
  asset->account = SourceItemText(settings.account_source, source, kAccountWidth);
  for (int i = 0; i < kMatchedUserFields; ++i) {
    asset->user_fields[static_cast<size_t>(i)] =
        SourceItemText(settings.user_field_sources[i], source, kUserFieldWidth);
  }
}

// What the first used book line gives the whole asset; the ITC Code of the
// investment-credit books.
int ConvertFirstBook(const GeneralLine& g, const BookLine& book, NvAsset* asset) {
  if (g.credit_code == 'C' || g.credit_code == 'D') asset->new_used_trade = kUsed;
  asset->cash_and_notes = book.cost;
  if (asset->disposed()) asset->amount_disposed = asset->cash_and_notes;
  asset->purchase_date = book.acquired;
  asset->date_in_service = book.acquired;
  if (g.credit_code == 'X') return kItcNone;
  return std::fabs(g.credit_amount) >= kCent ? kItcTaken : kItcNotTaken;
}

void ConvertMethod(const MethodRow* row, const BookLine& book, NvAssetSchedule* s) {
  const YearsMonths life{book.life_years, book.life_months};
  if (row == nullptr) {  // an unknown code: the schedule is not used
    s->useful_life = life;
    return;
  }
  const bool amt_book = book.digit == kAmtDigit;
  if (row->rule != MethodRule::kNotApplicable) s->useful_life = life;
  switch (row->rule) {
    case MethodRule::kFixed:
    case MethodRule::kNotApplicable:
      s->method = row->method;
      break;
    case MethodRule::kMacrs:
      s->method = amt_book                                          ? kMethodAmt
                  : !Longer(life, kTenYears) && book.percent == 150 ? kMethodMacrs150Db
                                                                    : kMethodMacrs;
      break;
    case MethodRule::kMacrsAlternative:
      s->method = amt_book ? kMethodAmt : kMethodMacrs;
      break;
    case MethodRule::kDecliningBalance:
      s->method = DecliningBalanceMethod(book.percent, book.switch_to_sl);
      break;
    case MethodRule::kCopyTax:
      break;  // done by the caller
  }
  if (row->rule != MethodRule::kNotApplicable) {
    s->convention = row->convention != kMacrsConvention ? row->convention
                    : book.mid_quarter                  ? 'Q'
                                                        : 'Y';
  }
  if (row->sl_life) s->sl_life = life;
}

void ConvertPropertyType(char letter, const BookLine& book, NvAsset* asset, NvAssetSchedule* s) {
  const PropertyTypeEntry* entry = FindPropertyType(letter);
  if (entry == nullptr) return;
  if (entry->real_property) asset->type_4797 = k4797RealProperty;
  s->asset_type += book.digit == kInternalDigit ? entry->internal_type : entry->asset_type;
  if (entry->amortized) s->amortized = true;
}

}  // namespace

char BookLetter(char digit) {
  const BookEntry* book = FindBook(digit);
  return book ? book->letter : 0;
}

std::string SourceItemText(int source, const FasAsset& asset, size_t width) {
  if (!asset.label || source == 0) return "";
  const LabelLine& l = *asset.label;
  switch (source) {
    case kSourceGlCode:
      return Fit(l.gl_code, width);
    case kSourcePoNumber:
      return Fit(l.po_number, width);
    case kSourceVendor:
      return Fit(l.vendor, width);
    case kSourceSerial:
      return Fit(l.serial, width);
    case kSourceCompanyAssetNo:
      return Fit(asset.general.company_asset_no, width);
    case kSourceWarranty:
      return Fit(l.warranty, width);
    case kSourceCustodian:
      return Fit(l.custodian, width);
    case kSourceClassLife: {
      const std::string& life = asset.general.class_life;
      if (width <= life.size() || TrimBlanks(life).empty() || life.size() < 2) {
        return Fit(life, width);
      }
      return Fit(life.substr(0, 2) + "-" + life.substr(2), width);
    }
    default:
      break;
  }
  const int user = source - kSourceUserField1;
  if (user >= 0 && user < static_cast<int>(kLabelUserFieldCount)) {
    return Fit(l.user_fields[user], width);
  }
  return "";
}

NvAsset ConvertAsset(const FasAsset& source, const ConversionSettings& settings,
                     std::vector<SkippedBook>* skipped) {
  const GeneralLine& g = source.general;
  NvAsset asset;
  asset.number = NvAssetNo(settings.asset_no_format);
  asset.Clear(settings.schedule_letters);
  asset.number = NvAssetNo::Parse(g.key, settings.asset_no_format);
  asset.description = Fit(g.description, kGenDescription.width);
  asset.category = Fit(g.category, kGenCategory.width);
  asset.type_4797 = k4797Default;
  ConvertLabels(source, settings, &asset);
  ConvertDisposal(g, &asset);

  bool first = true;
  int first_itc = kItcNone;
  for (const BookLine& book : source.books) {
    const BookEntry* entry = FindBook(book.digit);
    if (entry == nullptr) {
      skipped->push_back(
          {book.line, "book digit " + ShownChar(book.digit) + " is not a book that is imported"});
      continue;
    }
    NvAssetSchedule* s = asset.Schedule(entry->letter);
    if (s == nullptr) {
      skipped->push_back({book.line, StrPrintf("the company has no schedule %c", entry->letter)});
      continue;
    }
    if (first) {
      first_itc = ConvertFirstBook(g, book, &asset);
      first = false;
    }
    const MethodRow* row = FindMethod(book.method);
    if (row != nullptr && row->rule == MethodRule::kCopyTax) {
      const NvAssetSchedule* tax = asset.Schedule(kTaxLetter);
      if (tax != nullptr && tax != s) *s = *tax;
      continue;
    }
    s->business_percent = book.business_percent.value_or(100);
    ConvertMethod(row, book, s);
    if (std::fabs(book.cost - asset.cash_and_notes) >= kCent) s->substitute_basis = book.cost;
    s->itc_code = entry->investment_credit ? first_itc : kItcNone;
    s->sec179_expense = book.sec179;
    s->prior_allowed_depr = book.accumulated;
    s->prior_allowable_depr = book.accumulated;
    ConvertPropertyType(g.property_type, book, &asset, s);
    if (asset.type_4797 == k4797RealProperty && (s->convention == 'Y' || s->convention == 'Q') &&
        Longer(s->useful_life, kTwentySixYears)) {
      s->convention = 'M';
    }
  }
  return asset;
}

}  // namespace nv::fas1000
