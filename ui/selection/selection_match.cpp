#include "ui/selection/selection_match.h"

#include <charconv>
#include <cmath>
#include <string>
#include <vector>

#include "base/ascii.h"
#include "base/compare_codes.h"
#include "base/str_format.h"
#include "store/asset/asset_no.h"
#include "ui/selection/criterion.h"

namespace nv {
namespace {

// An unused schedule, for an asset without the selection's schedule.
const NvAssetSchedule kUnusedSchedule{};

int Sign(auto a, auto b) {
  return a < b ? -1 : (b < a ? 1 : 0);
}

// ---- text with wildcards ----

struct PatternChar {
  enum Kind { kLiteral, kAnyOne, kAnyRun } kind;
  char c;
};

std::vector<PatternChar> ReadPattern(std::string_view value) {
  std::vector<PatternChar> pattern;
  size_t trailing_blanks = 0;  // unescaped blanks at the end, which do not count
  for (size_t i = 0; i < value.size(); ++i) {
    char c = value[i];
    if (c == '\\' && i + 1 < value.size()) {
      pattern.push_back({PatternChar::kLiteral, AsciiUpper(value[++i])});
      trailing_blanks = 0;
    } else if (c == '*') {
      if (pattern.empty() || pattern.back().kind != PatternChar::kAnyRun) {
        pattern.push_back({PatternChar::kAnyRun, c});
      }
      trailing_blanks = 0;
    } else if (c == '?') {
      pattern.push_back({PatternChar::kAnyOne, c});
      trailing_blanks = 0;
    } else {
      pattern.push_back({PatternChar::kLiteral, AsciiUpper(c)});
      trailing_blanks = c == ' ' ? trailing_blanks + 1 : 0;
    }
  }
  pattern.resize(pattern.size() - trailing_blanks);
  return pattern;
}

bool OneMatches(const PatternChar& p, char c) {
  return p.kind == PatternChar::kAnyOne || p.c == AsciiUpper(c);
}

// Whether the pattern matches the whole text: a "*" retried at every later position, kept
// linear by going back only to the last "*" seen.
bool WildcardMatches(std::string_view text, const std::vector<PatternChar>& pattern) {
  size_t t = 0, p = 0;
  size_t star = std::string_view::npos, star_text = 0;
  while (t < text.size()) {
    if (p < pattern.size() && pattern[p].kind == PatternChar::kAnyRun) {
      star = p++;
      star_text = t;
    } else if (p < pattern.size() && OneMatches(pattern[p], text[t])) {
      ++p;
      ++t;
    } else if (star != std::string_view::npos) {
      p = star + 1;
      t = ++star_text;
    } else {
      return false;
    }
  }
  while (p < pattern.size() && pattern[p].kind == PatternChar::kAnyRun) ++p;
  return p == pattern.size();
}

// The order of a text the pattern does not match, with each "*" taken as no characters.
int OrderAgainst(std::string_view text, const std::vector<PatternChar>& pattern) {
  size_t t = 0;
  for (const PatternChar& p : pattern) {
    if (p.kind == PatternChar::kAnyRun) continue;
    if (t == text.size()) return -1;
    if (p.kind == PatternChar::kLiteral) {
      const unsigned char a = static_cast<unsigned char>(AsciiUpper(text[t]));
      const unsigned char b = static_cast<unsigned char>(p.c);
      if (a != b) return a < b ? -1 : 1;
    }
    ++t;
  }
  return t < text.size() ? 1 : 0;
}

std::string_view TrimTrailingBlanks(std::string_view s) {
  while (!s.empty() && s.back() == ' ') s.remove_suffix(1);
  return s;
}

// ---- list membership ----

std::string WithoutBlanksUpper(std::string_view s) {
  std::string out;
  for (char c : s) {
    if (c != ' ' && c != '\t') out.push_back(AsciiUpper(c));
  }
  return out;
}

bool InList(std::string_view asset_value, std::string_view list) {
  const std::string needle = "," + WithoutBlanksUpper(asset_value) + ",";
  const std::string haystack = "," + WithoutBlanksUpper(list) + ",";
  return haystack.find(needle) != std::string::npos;
}

bool ListHas(std::string_view list, char letter) {
  for (char c : list) {
    if (AsciiUpper(c) == letter) return true;
  }
  return false;
}

// ---- the asset's values ----

const NvAssetSchedule& Schedule(const SelectionAssetValues& v) {
  return v.schedule != nullptr ? *v.schedule : kUnusedSchedule;
}

double AmountOf(int field, const SelectionAssetValues& v) {
  const NvAsset& a = *v.asset;
  const NvAssetSchedule& s = Schedule(v);
  switch (field) {
    case kSelCashAndNotes:
      return a.cash_and_notes;
    case kSelTradeIn:
      return a.trade_in;
    case kSelBasis:
      return s.depreciable_basis;
    case kSelSubstBasis:
      return s.substitute_basis;
    case kSelSubstItcBasis:
      return s.subst_itc_basis;
    case kSelSec179Expense:
      return s.sec179_expense;
    case kSelAccumAllowed:
      return s.prior_allowed_depr;
    case kSelAccumAllowable:
      return s.prior_allowable_depr;
    case kSelBonusDepr:
      return s.bonus_depr;
    case kSelSalvageValue:
      return s.salvage_value;
    case kSelCurrentDed:
      return s.current_depr;
    case kSelNetBookValue:
      return v.net_book_value;
    default:
      return 0;
  }
}

std::string TextOf(int field, const SelectionAssetValues& v) {
  const NvAsset& a = *v.asset;
  switch (field) {
    case kSelDescription:
      return a.description;
    case kSelLocation:
      return a.location;
    case kSelCategory:
      return a.category;
    case kSelAccount:
      return a.account;
    case kSelStateRules:
      return Schedule(v).state;
    default:
      if (field >= kSelUserField1 && field <= kSelUserField10) {
        return a.user_fields[field - kSelUserField1];
      }
      return "";
  }
}

Date DateOf(int field, const SelectionAssetValues& v) {
  switch (field) {
    case kSelDatePurchased:
      return v.asset->purchase_date;
    case kSelDateInService:
      return v.asset->date_in_service;
    default:
      return v.asset->disposal_date;
  }
}

// The value of a list field as the list holds it.
std::string ListValueOf(int field, const SelectionAssetValues& v) {
  const NvAsset& a = *v.asset;
  switch (field) {
    case kSelNewOrUsed:
      return std::string(1, a.new_used_trade);
    case kSelPropertyCode:
      return a.property_code;
    case kSel4797Type:
      return StrPrintf("%d", a.type_4797);
    case kSelDisposalCode:
      return a.disposed() ? std::string(1, a.disposal_code) : "N";
    case kSelDeprMethod:
      return StrPrintf("%d", Schedule(v).method);
    case kSelConvention:
      return std::string(1, Schedule(v).convention);
    default:
      return "";
  }
}

// ---- comparisons of one value (kinds R and P) ----

// The order of the asset's value against a criterion value, or nothing when the value
// cannot be read as the field's kind (such an item matches nothing).
std::optional<int> CompareValue(int field, const SelectionAssetValues& v, std::string_view value) {
  switch (SelectionFields()[field].compare) {
    case SelectionCompare::kAssetNumber: {
      const std::string asset = v.asset->number.InFormat(v.number_format).Text();
      const std::string wanted = NvAssetNo::Parse(value, v.number_format).Text();
      return Sign(asset, wanted);
    }
    case SelectionCompare::kText:
      return CompareSelectionText(TextOf(field, v), value);
    case SelectionCompare::kCode:
      if (TrimBlanks(value).empty()) return 0;
      return Sign(CompareCodes(TextOf(field, v), value), 0);
    case SelectionCompare::kAmount: {
      std::optional<double> amount = ParseSelectionAmount(value);
      if (!amount) return std::nullopt;
      const double asset = AmountOf(field, v);
      if (std::fabs(asset - *amount) < 0.005) return 0;  // equal to the cent
      return Sign(asset, *amount);
    }
    case SelectionCompare::kDate: {
      std::optional<Date> date = ParseCriterionDate(value);
      if (!date) return std::nullopt;
      return Sign(DateOf(field, v), *date);  // the empty date sorts first
    }
    case SelectionCompare::kInteger: {
      std::optional<int> n = ParseSelectionInteger(value);
      if (!n) return std::nullopt;
      return Sign(Schedule(v).business_percent, *n);
    }
    case SelectionCompare::kLife: {
      std::optional<YearsMonths> life = ParseSelectionLife(value);
      if (!life) return std::nullopt;
      const YearsMonths& asset =
          field == kSelSlLife ? Schedule(v).sl_life : Schedule(v).useful_life;
      return Sign(asset.years * 12L + asset.months, life->years * 12L + life->months);
    }
    default:
      return std::nullopt;
  }
}

bool ItemMatches(int field, const SelectionAssetValues& v, const CriterionItem& item) {
  if (!item.range) {
    std::optional<int> c = CompareValue(field, v, item.low.value_or(""));
    return c && *c == 0;
  }
  if (item.low) {
    std::optional<int> c = CompareValue(field, v, *item.low);
    if (!c || *c < 0) return false;
  }
  if (item.high) {
    std::optional<int> c = CompareValue(field, v, *item.high);
    if (!c || *c > 0) return false;
  }
  return true;
}

// ---- "Depr Paused" ----
//
// Our reading: the criterion selects the assets whose depreciation in the selection's
// schedule was paused throughout one of the listed date ranges. Each range is first held
// to the asset's life: its start raised to the date placed in service (the purchase date
// when that is empty), its end lowered to the disposal date, an open end taking the
// disposal date. A pause interval covers a range when it starts on or before the range's
// start (or has no start) and ends on or after its end (or has no end; an open range end
// is covered only by an interval without an end). An asset without the schedule, whose
// pauses do not name it, or without intervals is not paused, and a range that ends before
// it starts selects nothing. Unreadable dates select nothing.
bool PausedThroughout(const SelectionAssetValues& v, std::string_view text) {
  const NvAsset& a = *v.asset;
  if (v.schedule == nullptr || !a.pauses || a.pauses->intervals.empty()) return false;
  if (!ListHas(a.pauses->schedules, AsciiUpper(v.schedule_letter))) return false;
  std::optional<std::vector<CriterionItem>> items = ParseCriterion(text);
  if (!items) return false;
  const Date life_start = a.date_in_service.empty() ? a.purchase_date : a.date_in_service;
  for (const CriterionItem& item : *items) {
    std::optional<Date> start = ParseCriterionDate(item.low.value_or("//"));
    std::optional<Date> end =
        ParseCriterionDate(item.range ? item.high.value_or("//") : item.low.value_or("//"));
    if (!start || !end) return false;
    if (*start < life_start) start = life_start;
    if (!a.disposal_date.empty() && (end->empty() || a.disposal_date < *end)) {
      end = a.disposal_date;
    }
    if (!start->empty() && !end->empty() && *end < *start) continue;
    for (const PauseInterval& pause : a.pauses->intervals) {
      const bool from = pause.start.empty() || pause.start <= *start;
      const bool to = pause.end.empty() || (!end->empty() && pause.end >= *end);
      if (from && to) return true;
    }
  }
  return false;
}

// ---- comparisons of the whole text (kinds V and P) ----

bool ListMatches(int field, const SelectionAssetValues& v, std::string_view text) {
  switch (SelectionFields()[field].compare) {
    case SelectionCompare::kLetterList:
      return InList(ListValueOf(field, v), text);
    case SelectionCompare::kYesNo: {
      const bool flag = field == kSelAmortized ? Schedule(v).amortized : v.force_full_depr;
      return flag ? ListHas(text, 'Y') : ListHas(text, 'N');
    }
    case SelectionCompare::kTypeLetters:
      for (char c : text) {
        if (c == ' ' || c == ',') continue;
        if (ListHas(Schedule(v).asset_type, AsciiUpper(c))) return true;
      }
      return false;
    case SelectionCompare::kText:
      return CompareSelectionText(TextOf(field, v), TrimBlanks(text)) == 0;
    case SelectionCompare::kPauses:
      return PausedThroughout(v, text);
    default:
      return false;
  }
}

bool CriterionHolds(int field, const SelectionCriterion& criterion, const SelectionAssetValues& v) {
  bool matched = false;
  if (SelectionFields()[field].kind == SelectionKind::kRange) {
    std::optional<std::vector<CriterionItem>> items = ParseCriterion(criterion.text);
    if (items) {
      for (const CriterionItem& item : *items) {
        if (ItemMatches(field, v, item)) {
          matched = true;
          break;
        }
      }
    }
  } else {
    matched = ListMatches(field, v, criterion.text);
  }
  return matched != criterion.exclude;
}

}  // namespace

SelectionAssetValues AssetSelectionValues(const NvAsset& asset, char schedule_letter,
                                          const NvAssetNoFormat& number_format) {
  SelectionAssetValues v;
  v.asset = &asset;
  v.number_format = number_format;
  v.schedule_letter = schedule_letter;
  v.schedule = schedule_letter != 0 ? asset.Schedule(schedule_letter) : nullptr;
  const NvAssetSchedule& s = Schedule(v);
  v.net_book_value = s.depreciable_basis - s.EndingAllowedDepr();
  return v;
}

bool MatchAsset(const KelSelection& selection, const SelectionAssetValues& values, int class_mask) {
  if (values.asset == nullptr) return false;
  for (int field = 0; field < kSelectionFieldCount; ++field) {
    const SelectionCriterion& criterion = selection.criteria[field];
    if (!criterion.in_use) continue;
    if (class_mask != 0 && (SelectionFields()[field].field_class & class_mask) == 0) continue;
    if (TrimBlanks(criterion.text).empty()) continue;  // no restriction
    if (!CriterionHolds(field, criterion, values)) return false;
  }
  return true;
}

std::optional<double> ParseSelectionAmount(std::string_view raw) {
  std::string_view text = TrimBlanks(raw);
  if (text.empty() || text.front() == '+') return std::nullopt;
  double value = 0;
  auto [end, ec] =
      std::from_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed);
  if (ec != std::errc() || end != text.data() + text.size() || !std::isfinite(value)) {
    return std::nullopt;
  }
  return value;
}

std::optional<int> ParseSelectionInteger(std::string_view raw) {
  std::string_view text = TrimBlanks(raw);
  int value = 0;
  auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (text.empty() || ec != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value;
}

std::optional<YearsMonths> ParseSelectionLife(std::string_view raw) {
  std::string_view text = TrimBlanks(raw);
  size_t dash = text.find('-');
  auto part = [](std::string_view digits) -> std::optional<int> {
    digits = TrimBlanks(digits);
    if (digits.empty() || digits.size() > 4) return std::nullopt;
    for (char c : digits) {
      if (c < '0' || c > '9') return std::nullopt;
    }
    return ParseSelectionInteger(digits);
  };
  std::optional<int> years = part(text.substr(0, dash));
  if (!years) return std::nullopt;
  if (dash == std::string_view::npos) return YearsMonths{*years, 0};
  std::optional<int> months = part(text.substr(dash + 1));
  if (!months) return std::nullopt;
  return YearsMonths{*years, *months};
}

int CompareSelectionText(std::string_view text, std::string_view value) {
  text = TrimTrailingBlanks(text);
  const std::vector<PatternChar> pattern = ReadPattern(value);
  if (WildcardMatches(text, pattern)) return 0;
  const int order = OrderAgainst(text, pattern);
  return order != 0 ? order : 1;  // not a match, so never "equal"
}

}  // namespace nv
