#include "import/pcfas/pcfas_convert.h"

#include <charconv>
#include <cmath>
#include <limits>

#include "base/ascii.h"

namespace nv {
namespace {

constexpr double kCents = 0.005;  // amounts closer than this to each other are equal
constexpr int kMaxLifeYears = 999;
// ACRS belongs to property placed in service before this day, MACRS from it on.
constexpr Date kMacrsStart = {7, 31, 1986};

// ---- Fields of a record ----------------------------------------------------------------

class RecordFields {
 public:
  RecordFields(const std::vector<std::string>& fields, PcFasLayout layout)
      : fields_(fields),
        books_(layout == PcFasLayout::kLong ? kPcFasLongBooks : kPcFasShortBooks) {}

  // Trimmed; empty when the record has no such field.
  std::string_view General(int index) const {
    if (index < 0 || static_cast<size_t>(index) >= fields_.size()) return {};
    return TrimBlanks(fields_[static_cast<size_t>(index)]);
  }
  std::string_view Raw(int index) const {
    if (index < 0 || static_cast<size_t>(index) >= fields_.size()) return {};
    return fields_[static_cast<size_t>(index)];
  }
  std::string_view Book(int book, int k) const {
    return General(books_.base + books_.stride * book + k);
  }
  double BookAmount(int book, int k) const { return PcFasAmount(Book(book, k)); }

 private:
  const std::vector<std::string>& fields_;
  PcFasBookFields books_;
};

// General fields by layout.
struct GeneralFields {
  int disposal_date;
  int disposal_method;
  int sale_price;
};
constexpr GeneralFields kShortGeneral = {17, 18, 21};
constexpr GeneralFields kLongGeneral = {18, 19, 22};

enum BookField {
  kCost = 0,
  kMethod = 1,
  kDbPercent = 2,
  kListed = 3,
  kSec179OrSalvage = 4,
  kLifeYears = 5,
  kLifeMonths = 6,
  kCurrentDepr = 8,
  kAccumulatedDepr = 9,
  kThrough = 13,
};

std::string Cut(std::string_view text, size_t width) {
  return std::string(text.substr(0, width));
}

// ---- Methods ---------------------------------------------------------------------------

enum class Rule {
  kNa,          // N/A, nothing more
  kPlain,       // the method, the convention, salvage when asked
  kDeclining,   // the method by the declining-balance percentage
  kAcrs,        // A, T
  kAcrsClass,   // M
  kMacrs,       // B, U, Z
  kMacrsClass,  // V
  kByDate,      // I, L: A before MACRS began, Z after
};

struct MethodEntry {
  char letter;
  Rule rule;
  int method;
  char convention;
  bool salvage;            // Salvage Value from book field 4
  const char* asset_type;  // added to Asset Type first
  bool listed;             // listed whatever book field 3 says
};

constexpr MethodEntry kMethods[] = {
    {'I', Rule::kByDate, 0, '1', false, "H", false},
    {'L', Rule::kByDate, 0, '1', false, "A", true},
    {'A', Rule::kAcrs, kMethodAcrs, '1', false, "", false},
    {'T', Rule::kAcrs, kMethodAcrs, '1', false, "", false},
    {'M', Rule::kAcrsClass, kMethodAcrs, '1', false, "", false},
    {'C', Rule::kDeclining, 0, '1', true, "", false},
    {'D', Rule::kDeclining, 0, '3', true, "", false},
    {'S', Rule::kPlain, kMethodStraightLine, '1', true, "", false},
    {'H', Rule::kPlain, kMethodStraightLine, '3', true, "", false},
    {'F', Rule::kPlain, kMethodStraightLine, '4', true, "", false},
    {'N', Rule::kNa, kMethodNa, '1', false, "", false},
    {'B', Rule::kMacrs, kMethodMacrs, '1', false, "", false},
    {'Z', Rule::kMacrs, kMethodMacrs, '1', false, "", false},
    {'U', Rule::kMacrs, kMethodAmt, '1', false, "", false},
    {'V', Rule::kMacrsClass, kMethodMacrs, '1', false, "", false},
};
constexpr MethodEntry kOtherMethod = {'O', Rule::kPlain, kMethodOther, '1', false, "", false};
constexpr MethodEntry kUnknownMethod = {' ', Rule::kNa, kMethodNa, '1', false, "", false};

const MethodEntry& FindMethod(char letter) {
  for (const MethodEntry& entry : kMethods) {
    if (entry.letter == letter) return entry;
  }
  if (letter == 'O' || (letter >= '0' && letter <= '9') || (letter >= 'a' && letter <= 'z')) {
    return kOtherMethod;
  }
  return kUnknownMethod;
}

struct DecliningEntry {
  int percent;
  int method;
};
constexpr DecliningEntry kDeclining[] = {
    {100, kMethodDb100}, {125, kMethodDb125Sl}, {150, kMethodDb150Sl}, {200, kMethodDb200Sl}};

int DecliningMethod(int percent) {
  for (const DecliningEntry& entry : kDeclining) {
    if (entry.percent == percent) return entry.method;
  }
  return kMethodOther;
}

int Months(const YearsMonths& life) {
  return life.years * 12 + life.months;
}

// ACRS class of an "M" asset from its straight-line life.
YearsMonths AcrsClassLife(const YearsMonths& life, bool real_property) {
  const auto whole = [&](int years) { return life == YearsMonths{years, 0}; };
  if (whole(12)) return {5, 0};
  if (whole(25) || whole(35)) return {real_property ? 18 : 10, 0};
  if (whole(45)) return {real_property ? 18 : 15, 0};
  return life;
}

// MACRS class life of a "V" asset.
YearsMonths MacrsClassLife(const YearsMonths& life) {
  const int whole = life.years + life.months / 12;
  for (int kept : {3, 5, 7, 10, 15, 20, 25, 39}) {
    if (whole == kept) return life;
  }
  if (life == YearsMonths{27, 6} || life == YearsMonths{31, 6}) return life;
  return {whole < 10 ? 5 : whole < 20 ? 10 : 20, 0};
}

// What every book of a record shares.
struct AssetFacts {
  Date in_service;
  bool real_property = false;  // property class "R..." or "H..."
  bool amortized = false;      // property class "A"
  bool mid_quarter = false;    // field 32 marked
  bool no_itc = false;         // field 9 "X"
  bool itc_taken = false;      // field 12 not zero
  int type_4797 = 45;
};

void AddAssetType(NvAssetSchedule* s, std::string_view letters) {
  for (char c : letters) {
    if (s->asset_type.find(c) == std::string::npos) s->asset_type += c;
  }
}

void ApplyMethod(const RecordFields& r, int book, const AssetFacts& facts, NvAssetSchedule* s) {
  const std::string_view letters = r.Book(book, kMethod);
  const MethodEntry* entry = &FindMethod(letters.empty() ? ' ' : letters[0]);
  bool listed = entry->listed;
  if (entry->rule == Rule::kByDate) {
    AddAssetType(s, entry->asset_type);
    entry = &FindMethod(facts.in_service < kMacrsStart ? 'A' : 'Z');
  }
  listed = listed || r.Book(book, kListed) == "L";
  const double book4 = r.BookAmount(book, kSec179OrSalvage);
  s->method = entry->method;
  s->convention = entry->convention;
  if (entry->salvage) s->salvage_value = book4;
  switch (entry->rule) {
    case Rule::kNa:
    case Rule::kPlain:
    case Rule::kByDate:
      break;
    case Rule::kDeclining:
      s->method = DecliningMethod(PcFasWholeNumber(r.Book(book, kDbPercent)));
      break;
    case Rule::kAcrs:
    case Rule::kAcrsClass:
    case Rule::kMacrs:
    case Rule::kMacrsClass:
      if (listed) AddAssetType(s, "L");
      s->amortized = facts.amortized;
      s->sec179_expense = book4;
      break;
  }
  if (entry->rule == Rule::kMacrs || entry->rule == Rule::kMacrsClass) {
    if (Months(s->useful_life) > 26 * 12 || facts.type_4797 == 50) {
      s->convention = 'M';
    } else {
      s->convention = facts.mid_quarter ? 'Q' : 'Y';
    }
  }
  if (entry->rule == Rule::kAcrsClass) {
    s->sl_life = s->useful_life;
    s->useful_life = AcrsClassLife(s->useful_life, facts.real_property);
  } else if (entry->rule == Rule::kMacrsClass) {
    s->sl_life = s->useful_life;
    s->useful_life = MacrsClassLife(s->useful_life);
  }
}

int LifePart(std::string_view text, int most) {
  const int value = PcFasWholeNumber(text);
  return value < 0 ? 0 : value > most ? most : value;
}

void ConvertBook(const RecordFields& r, int book, const AssetFacts& facts, double cash_and_notes,
                 const Date& last_closed, NvAssetSchedule* s) {
  *s = NvAssetSchedule{};
  s->business_percent = 100;
  s->useful_life = {LifePart(r.Book(book, kLifeYears), kMaxLifeYears),
                    LifePart(r.Book(book, kLifeMonths), kMaxLifeYears)};
  const double cost = r.BookAmount(book, kCost);
  if (std::fabs(cost - cash_and_notes) > kCents) {
    s->substitute_basis = cost;
    s->asset_type += 'S';
  }
  const bool itc_book = book == kPcFasIrs || book == kPcFasAmt || book == kPcFasAce;
  s->itc_code = itc_book && !facts.no_itc ? (facts.itc_taken ? 1 : 2) : 3;
  s->convention = '1';
  s->prior_allowed_depr = r.BookAmount(book, kAccumulatedDepr);
  // Depreciation through a month after Last Closed includes the current year's.
  if (PcFasThroughDate(r.Book(book, kThrough)) > last_closed) {
    s->prior_allowed_depr -= r.BookAmount(book, kCurrentDepr);
  }
  s->prior_allowable_depr = s->prior_allowed_depr;
  ApplyMethod(r, book, facts, s);
}

// An acquisition or disposal date: MM/DD/YY or MM/DD/YYYY, or the same without the
// slashes; the empty date when it is neither.
Date SourceDate(std::string_view text) {
  text = TrimBlanks(text);
  if (std::optional<Date> date = ParseDisplayDate(text)) return *date;
  if (text.size() != 6 && text.size() != 8) return {};
  for (char c : text) {
    if (c < '0' || c > '9') return {};
  }
  std::string with_slashes = std::string(text.substr(0, 2)) + "/" + std::string(text.substr(2, 2)) +
                             "/" + std::string(text.substr(4));
  return ParseDisplayDate(with_slashes).value_or(Date{});
}

char DisposalCode(PcFasLayout layout, std::string_view method) {
  const char letter = method.empty() ? ' ' : method[0];
  if (layout == PcFasLayout::kShort) {
    if (letter == 'C') return kDisposalSold;
    if (letter == 'E') return kDisposalExchanged;
    return kDisposalAbandoned;
  }
  if (letter == 'L' || letter == 'T') return kDisposalExchanged;
  if (letter == 'S') return kDisposalSold;
  return kDisposalAbandoned;
}

}  // namespace

int PcFasSourceItemField(int item) {
  const int index = item - kPcFasFirstSourceItem;
  if (index < 0 || index >= kPcFasLabelCount) return -1;
  return kPcFasSourceItemFields[static_cast<size_t>(index)];
}

int PcFasBookOfLetter(char letter) {
  switch (letter) {
    case 'T':
      return kPcFasIrs;
    case 'B':
      return kPcFasInternal;
    case 'S':
      return kPcFasState;
    case 'A':
      return kPcFasAmt;
    default:
      return kPcFasAce;
  }
}

double PcFasAmount(std::string_view text) {
  text = TrimBlanks(text);
  if (!text.empty() && text[0] == '+') text.remove_prefix(1);
  double value = 0;
  const auto [end, error] =
      std::from_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed);
  static_cast<void>(end);
  if (error != std::errc() || !std::isfinite(value)) return 0;
  return value;
}

int PcFasWholeNumber(std::string_view text) {
  text = TrimBlanks(text);
  if (!text.empty() && text[0] == '+') text.remove_prefix(1);
  long long value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  static_cast<void>(end);
  if (error != std::errc() || value < std::numeric_limits<int>::min() ||
      value > std::numeric_limits<int>::max()) {
    return 0;
  }
  return static_cast<int>(value);
}

Date PcFasThroughDate(std::string_view mmyy) {
  mmyy = TrimBlanks(mmyy);
  if (mmyy.size() < 3 || mmyy.size() > 6) return {};
  for (char c : mmyy) {
    if (c < '0' || c > '9') return {};
  }
  const int month = PcFasWholeNumber(mmyy.substr(0, 2));
  const int year = ExpandTwoDigitYear(PcFasWholeNumber(mmyy.substr(2)));
  const Date first = {month, 1, year};
  return IsValidDate(first) ? EndOfMonth(first) : Date{};
}

void ConvertPcFasRecord(const std::vector<std::string>& fields, const PcFasConversion& conversion,
                        NvAsset* asset) {
  const RecordFields r(fields, conversion.layout);
  asset->Clear(conversion.schedule_letters);
  asset->number = NvAssetNo::Parse(r.General(0), conversion.asset_no_format);
  asset->description = Cut(r.General(4), 30);
  asset->location = Cut(r.General(5), 10);
  asset->category = Cut(r.General(2), 10);
  asset->property_code = Cut(r.General(2), 2);
  asset->account = Cut(r.General(conversion.account_field), 24);
  for (int i = 0; i < kPcFasUserFieldItems; ++i) {
    asset->user_fields[static_cast<size_t>(i)] =
        Cut(r.General(conversion.user_field_fields[static_cast<size_t>(i)]), 20);
  }

  // Cash and Notes: the internal book's cost, else the first other book that has one.
  double cost = 0;
  for (int book : {kPcFasInternal, kPcFasIrs, kPcFasState, kPcFasAmt, kPcFasAce}) {
    cost = r.BookAmount(book, kCost);
    if (std::fabs(cost) >= kCents) break;
  }
  asset->cash_and_notes = cost;
  asset->purchase_date = SourceDate(r.General(7));
  asset->date_in_service = asset->purchase_date;

  const std::string_view property_class = r.General(3);
  const std::string_view used = r.General(9);
  asset->new_used_trade = used.starts_with('C') || used.starts_with('D') ? kUsed : kNew;
  asset->type_4797 = property_class == "R" ? 50 : 45;

  const GeneralFields& general =
      conversion.layout == PcFasLayout::kLong ? kLongGeneral : kShortGeneral;
  const Date disposed_on = SourceDate(r.General(general.disposal_date));
  if (!disposed_on.empty()) {
    asset->disposal_code = DisposalCode(conversion.layout, r.General(general.disposal_method));
    asset->disposal_date = disposed_on;
    asset->amount_disposed = asset->cash_and_notes;
    asset->sale_amount =
        asset->disposal_code == kDisposalAbandoned ? 0 : PcFasAmount(r.General(general.sale_price));
  }

  AssetFacts facts;
  facts.in_service = asset->date_in_service;
  facts.real_property = property_class.starts_with('R') || property_class.starts_with('H');
  facts.amortized = property_class == "A";
  const std::string_view marker = r.Raw(32);
  facts.mid_quarter = !marker.empty() && (static_cast<unsigned char>(marker[0]) == 0x9A ||
                                          static_cast<unsigned char>(marker[0]) == 0x92);
  facts.no_itc = used == "X";
  facts.itc_taken = std::fabs(PcFasAmount(r.General(12))) >= kCents;
  facts.type_4797 = asset->type_4797;
  for (size_t i = 0; i < asset->schedules.size(); ++i) {
    ConvertBook(r, PcFasBookOfLetter(asset->schedule_letters[i]), facts, asset->cash_and_notes,
                conversion.last_closed, &asset->schedules[i]);
  }
}

}  // namespace nv
