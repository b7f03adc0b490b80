// The library of "execute": functions named by the first token of execute's first
// argument, any case, each with the least number of arguments it needs.
//
// "date" arguments are date texts (ReadDateText) and date results are written as the
// 10-character date text; "life" results are years ("%2d") or years and months ("%2d-%d").
#include <algorithm>
#include <array>
#include <cmath>

#include "base/ascii.h"
#include "base/str_format.h"
#include "import/bna/conversion/conversion_evaluator.h"
#include "import/bna/conversion/conversion_values.h"
#include "store/codes/account_groups.h"
#include "store/codes/loc_cat_list.h"

namespace nv::bna {
namespace {

using Values = std::vector<Value>;

// Everything a library function may use: the evaluator (for functions that read their
// arguments' tokens), the argument ranges and their values.
struct LibraryCall {
  Evaluator& evaluator;
  const std::vector<ArgumentRange>& ranges;
  const Values& values;

  std::string Text(size_t i) const { return values[i].value_or(""); }
};

constexpr size_t kAccountGroupNameWidth = 24;
// Lives, dates and offsets beyond these are no sensible input; they are held here so that
// the arithmetic cannot overflow.
constexpr long long kMaxMonths = 12LL * 10'000;
constexpr long long kMaxDays = 366LL * 10'000;

long long Held(long long value, long long limit) {
  return std::clamp(value, -limit, limit);
}

Value BnaLife(const LibraryCall& c) {
  const std::string text = c.Text(0);
  const long long years = Held(ReadInteger(text), kMaxMonths);
  const size_t blank = text.find(' ');
  const long long months =
      blank == std::string::npos
          ? 0
          : Held(ReadInteger(std::string_view(text).substr(blank + 1)), kMaxMonths);
  return FormatLife(years, months);
}

NvLocCatList* LocCatList(const LibraryCall& c, const Value& kind) {
  if (!kind) return nullptr;
  if (EqualIgnoringCase(*kind, "loc")) return c.evaluator.context().locations;
  if (EqualIgnoringCase(*kind, "cat")) return c.evaluator.context().categories;
  return nullptr;
}

bool IsLocCatKind(const Value& kind) {
  return kind && (EqualIgnoringCase(*kind, "loc") || EqualIgnoringCase(*kind, "cat"));
}

// The text as a list entry takes it: trimmed and cut to the description's width.
std::string LocCatText(const Value& text) {
  return std::string(TrimBlanks(TrimBlanks(text.value_or("")).substr(0, kLocCatDescriptionWidth)));
}

Value StdLocCat(const LibraryCall& c) {
  if (!IsLocCatKind(c.values[0])) return std::nullopt;
  const std::string text = LocCatText(c.values[1]);
  if (text.empty()) return std::nullopt;
  if (NvLocCatList* list = LocCatList(c, c.values[0])) {
    // The code is what the asset keeps of the text: its first 10 characters, trimmed.
    AddLocCatIfAbsent(list, TrimBlanks(std::string_view(text).substr(0, kLocCatCodeWidth)), text);
  }
  return text;
}

Value StdLocCatLookup(const LibraryCall& c) {
  if (!IsLocCatKind(c.values[0])) return std::nullopt;
  const std::string text = LocCatText(c.values[1]);
  if (text.empty()) return std::nullopt;
  if (NvLocCatList* list = LocCatList(c, c.values[0])) return LocCatCodeForText(list, text);
  return text;
}

Value StdLife(const LibraryCall& c) {
  const double years = std::clamp(ReadNumber(c.Text(0)), -10'000.0, 10'000.0);
  const long long months = std::llround(years * 12) + Held(ReadInteger(c.Text(1)), kMaxMonths);
  return FormatLifeOfMonths(months);
}

Value StdDatePlusDays(const LibraryCall& c) {
  return FormatDateText(AddDays(ReadDateText(c.Text(0)), Held(ReadInteger(c.Text(1)), kMaxDays)));
}

Value StdDateLastDay(const LibraryCall& c) {
  return FormatDateText(EndOfMonth(ReadDateText(c.Text(0))));
}

Value StdDateFirstDay(const LibraryCall& c) {
  Date date = ReadDateText(c.Text(0));
  if (!date.empty()) date.day = 1;
  return FormatDateText(date);
}

Value StdDateDiff(const LibraryCall& c) {
  const Date a = ReadDateText(c.Text(0));
  const Date b = ReadDateText(c.Text(1));
  const long long years = a.year - b.year;
  const long long months = a.month - b.month;
  if (months == 0) return StrPrintf("%lld", years);
  return FormatLifeOfMonths(years * 12 + months);
}

Value StdAccumFromNbv(const LibraryCall& c) {
  return FormatAmountWidth10(ReadNumber(c.Text(0)) - ReadNumber(c.Text(1)));
}

Value StdLineNumber(const LibraryCall& c) {
  const long long offset = c.values.empty() ? 0 : ReadInteger(c.Text(0));
  return StrPrintf("%lld", static_cast<long long>(c.evaluator.context().line_number) + offset);
}

// The group whose four accounts are these; when none has them, one is made under the name
// (or the first account when there is no name). The result is the group's name, or the
// name given when no group has the accounts.
Value StdAgrp(const LibraryCall& c) {
  const Value& name = c.values[0];
  const std::string a1 = c.Text(1), a2 = c.Text(2), a3 = c.Text(3), a4 = c.Text(4);
  const ConversionContext& context = c.evaluator.context();
  AccountGroupList* list = context.account_groups ? context.account_groups() : nullptr;
  if (list == nullptr) return name;
  if (const AccountGroup* g = FindAccountGroupByAccounts(list->groups, a1, a2, a3, a4)) {
    return g->code;
  }
  const std::string wanted = name ? *name : a1;
  const std::string_view code =
      TrimBlanks(std::string_view(wanted).substr(0, kAccountGroupNameWidth));
  if (!code.empty()) {
    if (const AccountGroup* g = GetOrAddAccountGroup(&list->groups, a1, a2, a3, a4, code)) {
      return g->code;
    }
  }
  return name;
}

Value StdItc(const LibraryCall& c) {
  return std::string(ReadNumber(c.Text(0)) < 0.005 ? "3" : "1");
}

Value StdDollar(const LibraryCall& c) {
  return FormatAmount(ReadBnaAmount(c.Text(0), c.evaluator.context().implied_decimals));
}

Value StdDateCompare(const LibraryCall& c) {
  const Date a = ReadDateText(c.Text(0));
  const Date b = ReadDateText(c.Text(1));
  return std::string(a > b ? "1" : (a < b ? "-1" : "0"));
}

Value IntDate(const LibraryCall& c) {
  const long long value = ReadInteger(c.Text(0));
  if (value < 1'000'000) {
    return StrPrintf("%2.2lld/%2.2lld/%2.2lld", value / 10'000, value / 100 % 100, value % 100);
  }
  return StrPrintf("%2.2lld/%2.2lld/%4.4lld", value / 1'000'000, value / 10'000 % 100,
                   value % 10'000);
}

// PLUSMDY(months [, days [, years]]): months first, carrying into the year, then years;
// a day past the month's end goes back to its last day; then the days, by the calendar.
Date PlusMdy(Evaluator& e, size_t open, Date date) {
  std::optional<ArgumentList> list = e.Arguments(open);
  if (!list || list->arguments.empty() || list->arguments.size() > 3) return date;
  long long amounts[3] = {0, 0, 0};
  for (size_t i = 0; i < list->arguments.size(); ++i) {
    amounts[i] = ReadInteger(e.Argument(list->arguments[i]).value_or(""));
  }
  if (date.empty()) return date;
  const long long months = Held(amounts[0], kMaxMonths);
  const long long days = Held(amounts[1], kMaxDays);
  const long long years = Held(amounts[2], kMaxMonths);
  const long long total = (date.year + years) * 12 + (date.month - 1) + months;
  const long long year = total >= 0 ? total / 12 : (total - 11) / 12;
  if (year < 1 || year > 9999) return Date{};
  Date moved{static_cast<int>(total - year * 12 + 1), date.day, static_cast<int>(year)};
  moved.day = std::min(moved.day, LastDayOfMonth(moved.month, moved.year));
  return AddDays(moved, days);
}

Value StdDate(const LibraryCall& c) {
  const TokenList& tokens = c.evaluator.tokens();
  Date date;
  for (const ArgumentRange& range : c.ranges) {
    if (range.empty()) continue;
    const std::string_view word = tokens.Text(range.first);
    if (EqualIgnoringCase(word, "TODAY")) {
      date = c.evaluator.context().today;
    } else if (EqualIgnoringCase(word, "PLUSMDY") && tokens.Text(range.first + 1) == "(") {
      date = PlusMdy(c.evaluator, range.first + 1, date);
    }
  }
  return FormatDateText(date);
}

struct LibraryFunction {
  const char* name;
  size_t min_args;  // after the name
  Value (*call)(const LibraryCall&);
};

constexpr std::array<LibraryFunction, 16> kLibrary = {{
    {"bnalife", 1, BnaLife},
    {"stdloccat", 2, StdLocCat},
    {"stdloccatlookup", 2, StdLocCatLookup},
    {"stdlife", 2, StdLife},
    {"stddateplusdays", 2, StdDatePlusDays},
    {"stddatelastday", 1, StdDateLastDay},
    {"stddatefirstday", 1, StdDateFirstDay},
    {"stddatediff", 2, StdDateDiff},
    {"STDACCUMFROMNBV", 2, StdAccumFromNbv},
    {"STDLINENUMBER", 0, StdLineNumber},
    {"STDAGRP", 5, StdAgrp},
    {"STDITC", 1, StdItc},
    {"STDDOLLAR", 1, StdDollar},
    {"STDDATECOMPARE", 2, StdDateCompare},
    {"INTDATE", 1, IntDate},
    {"STDDATE", 0, StdDate},
}};

}  // namespace

Value CallLibrary(Evaluator& evaluator, std::string_view name,
                  const std::vector<ArgumentRange>& arguments, bool* known) {
  const auto function =
      std::find_if(kLibrary.begin(), kLibrary.end(),
                   [&](const LibraryFunction& f) { return EqualIgnoringCase(name, f.name); });
  *known = function != kLibrary.end();
  if (!*known) return std::nullopt;
  if (arguments.size() < function->min_args) {
    evaluator.Fault(0, "too few arguments");
    return std::nullopt;
  }
  Values values;
  values.reserve(arguments.size());
  for (const ArgumentRange& range : arguments) values.push_back(evaluator.Argument(range));
  if (evaluator.context().budget.exhausted) return std::nullopt;
  return function->call(LibraryCall{evaluator, arguments, values});
}

}  // namespace nv::bna
