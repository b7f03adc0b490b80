#include "import/bna/conversion/conversion_eval.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "base/ascii.h"
#include "base/str_format.h"
#include "base/ui.h"
#include "import/bna/conversion/conversion_evaluator.h"
#include "import/bna/conversion/conversion_values.h"
#include "store/asset/asset.h"

namespace nv::bna {
namespace {

constexpr size_t kMaxNameLength = 25;
// zerofill widths beyond this are refused rather than padded: no field is nearly as wide.
constexpr long long kMaxFillWidth = 1000;

std::string Cut(std::string_view text, size_t width) {
  return std::string(text.substr(0, width));
}

// The text from the second character to the one before the last.
std::string_view Inside(std::string_view token) {
  return token.size() >= 2 ? token.substr(1, token.size() - 2) : std::string_view();
}

// A name completed with the schedule's name: "Basis" on schedule Tax is "Basis, Tax".
std::string CompletedName(std::string_view name, const ConversionContext& context) {
  if (context.letter == '\0' || name.find(',') != std::string_view::npos) {
    return std::string(name);
  }
  const std::string full =
      std::string(name) + ", " + context.definitions->ScheduleName(context.letter);
  return Cut(full, kMaxNameLength);
}

// The usable definition of a completed name: found, active and to be copied.
std::optional<FieldDefinition> UsableDefinition(std::string_view name,
                                                const ConversionContext& context) {
  std::optional<FieldDefinition> entry = context.definitions->Find(name);
  if (!entry || !entry->active || entry->no_copy) return std::nullopt;
  return entry;
}

Value ColumnText(const ConversionContext& context, long long index) {
  if (index < 0 || static_cast<size_t>(index) >= context.columns.size()) return std::nullopt;
  return context.columns[static_cast<size_t>(index)];
}

// Starting an evaluation from the top gives it a fresh budget; nested ones share it.
void StartFromTop(const ConversionContext& context) {
  if (context.budget.depth == 0) context.budget = EvaluationBudget{};
}

// ---- functions of the evaluator ----

using Values = std::vector<Value>;

bool AnyNone(const Values& args) {
  return std::any_of(args.begin(), args.end(), [](const Value& v) { return !v.has_value(); });
}

Value Right(Evaluator&, const Values& a) {
  if (AnyNone(a)) return std::nullopt;
  const long long n = ReadInteger(*a[1]);
  if (n < 1) return std::nullopt;
  const std::string& text = *a[0];
  if (static_cast<size_t>(n) >= text.size()) return text;
  return text.substr(text.size() - static_cast<size_t>(n));
}

Value Left(Evaluator&, const Values& a) {
  if (AnyNone(a)) return std::nullopt;
  const long long n = ReadInteger(*a[1]);
  if (n < 1) return std::nullopt;
  return Cut(*a[0], static_cast<size_t>(std::min<long long>(n, a[0]->size())));
}

Value Mid(Evaluator&, const Values& a) {
  if (AnyNone(a)) return std::nullopt;
  const std::string& text = *a[0];
  const long long start = ReadInteger(*a[1]);
  const long long n = ReadInteger(*a[2]);
  if (start < 1 || n < 1 || static_cast<size_t>(start) >= text.size()) return std::nullopt;
  return text.substr(static_cast<size_t>(start - 1),
                     static_cast<size_t>(std::min<long long>(n, text.size())));
}

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

Value NumberAtEnd(Evaluator&, const Values& a) {
  if (AnyNone(a) || a[0]->empty()) return std::nullopt;
  std::string_view text = *a[0];
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  size_t start = text.size();
  while (start > 0 && (IsDigit(text[start - 1]) || text[start - 1] == '.')) --start;
  if (start > 0 && text[start - 1] == '-') --start;  // a minus ends the run
  return FormatAmount(ReadNumber(text.substr(start)));
}

// A comparison operand: without a leading double quote and without commas.
std::string CmpOperand(const Value& v) {
  const std::string whole = v.value_or("");
  std::string_view text = whole;
  if (!text.empty() && text.front() == '"') text.remove_prefix(1);
  std::string out;
  for (char c : text) {
    if (c != ',') out += c;
  }
  return out;
}

const char* Sign(int c) {
  return c > 0 ? "+1" : (c < 0 ? "-1" : "0");
}

Value Cmp(Evaluator&, const Values& a) {
  const std::string x = CmpOperand(a[0]);
  const std::string y = CmpOperand(a[1]);
  if (x.find('.') == std::string::npos && y.find('.') == std::string::npos) {
    const long long i = ReadInteger(x);
    const long long j = ReadInteger(y);
    return Sign(i > j ? 1 : (i < j ? -1 : 0));
  }
  const double u = std::round(ReadNumber(x) * 100.0) / 100.0;
  const double v = std::round(ReadNumber(y) * 100.0) / 100.0;
  if (std::fabs(u - v) < 0.005) return Sign(0);
  return Sign(u > v ? 1 : -1);
}

// The line end an argument stands for ("\n", "\r\n" or "\r", bare or quoted), or nullptr.
const char* LineEndOf(std::string_view text) {
  const std::string_view bare = WithoutEnclosingQuotes(text);
  if (bare == "\\n") return "\n";
  if (bare == "\\r\\n") return "\r\n";
  if (bare == "\\r") return "\r";
  return nullptr;
}

Value Concat(Evaluator&, const Values& a) {
  std::string joined;
  for (const Value& v : a) {
    if (!v) continue;
    if (const char* line_end = LineEndOf(*v)) {
      joined += line_end;
    } else {
      std::string_view text = *v;
      if (!text.empty() && text.front() == '"') text.remove_prefix(1);
      joined += text;
    }
    if (!joined.empty() && joined.back() == '"') joined.pop_back();
  }
  return joined;
}

Value Zerofill(Evaluator& e, const Values& a) {
  if (!a[1]) return std::nullopt;
  const long long n = ReadInteger(*a[1]);
  if (n < 1 || !a[0]) return std::nullopt;
  if (n > kMaxFillWidth) {
    e.Fault(0, "zerofill width too large");
    return std::nullopt;
  }
  const std::string_view text = WithoutEnclosingQuotes(*a[0]);
  const size_t width = static_cast<size_t>(n);
  std::string filled = text.size() >= width
                           ? std::string(text.substr(text.size() - width))
                           : std::string(width - text.size(), ' ') + std::string(text);
  for (char& c : filled) {
    if (c != ' ') break;
    c = '0';
  }
  return "\"" + filled + "\"";
}

Value Display(Evaluator& e, const Values& a) {
  if (Ui* ui = e.context().ui) {
    if (a[0]) {
      ui->Message(StrPrintf("<%s>", a[0]->c_str()), "display");
    } else {
      ui->Message(StrPrintf("(%s)", "null"), "display");
    }
  }
  return a[0];
}

Value Trim(Evaluator&, const Values& a) {
  if (!a[0]) return std::nullopt;
  std::string_view text = WithoutEnclosingQuotes(*a[0]);
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return std::string(text);
}

Value Column(Evaluator& e, const Values& a) {
  if (!a[0]) return std::nullopt;
  std::string_view letters = WithoutEnclosingQuotes(*a[0]);
  while (!letters.empty() && letters.front() == ' ') letters.remove_prefix(1);
  while (!letters.empty() && letters.back() == ' ') letters.remove_suffix(1);
  if (letters.empty()) return std::nullopt;
  long long index = 0;
  for (char c : letters) {
    c = AsciiUpper(c);
    if (c < 'A' || c > 'Z') return std::nullopt;
    index = index * 26 + (c - 'A' + 1);
    if (index > 1'000'000) return std::nullopt;  // far past any line's last column
  }
  return ColumnText(e.context(), index - 1);
}

Value Special(Evaluator& e, const Values& a) {
  if (!a[0]) return std::nullopt;
  FieldDefinition temporary;
  temporary.name = Cut(*a[0], kMaxNameLength);
  return EvaluateSpecial(temporary, e.context());
}

Value FindChar(Evaluator&, const Values& a) {
  if (AnyNone(a)) return std::nullopt;
  const std::string& text = *a[0];
  const std::string& set = *a[1];
  const long long n = ReadInteger(*a[2]);
  if (n < 1) return std::nullopt;
  long long seen = 0;
  for (size_t i = 1; i < text.size(); ++i) {
    if (set.find(text[i]) != std::string::npos && ++seen == n) {
      return StrPrintf("%d", static_cast<int>(i + 1));
    }
  }
  return std::nullopt;  // fewer than n: no position to give
}

std::string WithoutCommas(std::string_view text) {
  std::string out;
  for (char c : text) {
    if (c != ',') out += c;
  }
  return out;
}

Value Add(Evaluator&, const Values& a) {
  double sum = 0;
  for (const Value& v : a) {
    if (v) sum += ReadNumber(WithoutCommas(*v));
  }
  return FormatAmount(sum);
}

Value Neg(Evaluator&, const Values& a) {
  return FormatAmount(-ReadNumber(a[0].value_or("")));
}

Value Multiply(Evaluator&, const Values& a) {
  double product = 1;
  for (const Value& v : a) {
    if (v) product *= ReadNumber(*v);
  }
  return FormatAmount(product);
}

Value Divide(Evaluator&, const Values& a) {
  double quotient = ReadNumber(a[0].value_or(""));
  for (size_t i = 1; i < a.size(); ++i) {
    if (!a[i]) continue;
    const double divisor = ReadNumber(*a[i]);
    quotient = std::fabs(divisor) <= 0.005 ? 0.0 : quotient / divisor;
  }
  return FormatAmount(quotient);
}

struct Function {
  const char* name;
  size_t min_args;
  size_t max_args;  // kAny: no limit
  Value (*call)(Evaluator&, const Values&);
};

constexpr size_t kAny = static_cast<size_t>(-1);

// In the order the keywords are tested. "execute" has no entry: its first argument is a
// name, not a value.
constexpr std::array<Function, 16> kFunctions = {{
    {"right", 2, 2, Right},
    {"left", 2, 2, Left},
    {"mid", 3, 3, Mid},
    {"numberatend", 1, 1, NumberAtEnd},
    {"cmp", 2, 2, Cmp},
    {"concat", 1, kAny, Concat},
    {"zerofill", 2, 2, Zerofill},
    {"display", 1, 1, Display},
    {"trim", 1, 1, Trim},
    {"column", 1, 1, Column},
    {"special", 1, 1, Special},
    {"findchar", 3, 3, FindChar},
    {"add", 1, kAny, Add},
    {"neg", 1, kAny, Neg},
    {"multiply", 1, kAny, Multiply},
    {"divide", 1, kAny, Divide},
}};

const Function* FindFunction(std::string_view word) {
  for (const Function& f : kFunctions) {
    if (EqualIgnoringCase(word, f.name)) return &f;
  }
  return nullptr;
}

// ---- tables ----

struct TableRow {
  std::vector<std::optional<std::string>> patterns;  // one per key; nullopt when absent
  bool matches_always = false;                       // a "default" row
  size_t result = 0;                                 // token of the result term
};

// The token after the term at `at`, found without evaluating it.
size_t SkipTerm(Evaluator& e, size_t at) {
  const std::string_view word = e.tokens().Text(at);
  if ((FindFunction(word) != nullptr || EqualIgnoringCase(word, "execute")) &&
      e.tokens().Text(at + 1) == "(") {
    if (std::optional<ArgumentList> list = e.Arguments(at + 1)) return list->next;
    return e.tokens().size();
  }
  return at + 1;
}

// table ::= 'table' arguments [':'] row { ':' row }
// row   ::= pattern { ',' pattern } '->' term { token }
// The result of only the matching row is evaluated, so that a row that does not apply
// adds no location or category and shows nothing.
Value Table(Evaluator& e, const FieldDefinition& entry) {
  const TokenList& t = e.tokens();
  std::optional<ArgumentList> key_list = e.Arguments(1);
  if (!key_list) {
    e.Fault(1, "table keys are not a closed list");
    return std::nullopt;
  }
  std::vector<std::string> keys;
  for (const ArgumentRange& range : key_list->arguments) {
    Value key = (!range.empty() && t.Text(range.first) == "*")
                    ? ColumnText(e.context(), entry.column)
                    : e.Argument(range);
    keys.push_back("\"" + key.value_or("") + "\"");
  }

  std::vector<TableRow> rows;
  size_t i = key_list->next;
  if (t.Text(i) == ":") ++i;
  while (i < t.size()) {
    TableRow row;
    row.patterns.resize(keys.size());
    row.matches_always = EqualIgnoringCase(t.Text(i), "default");
    size_t position = 0;
    bool has_result = false;
    while (i < t.size() && t.Text(i) != ":") {
      if (t.Text(i) == "->") {
        row.result = i + 1;
        has_result = true;
        i = SkipTerm(e, i + 1);
        break;
      }
      if (position < keys.size()) row.patterns[position] = t.tokens[i].text;
      ++position;
      ++i;
      while (i < t.size() && t.Text(i) != "," && t.Text(i) != "->" && t.Text(i) != ":") ++i;
      if (t.Text(i) == ",") ++i;
    }
    while (i < t.size() && t.Text(i) != ":") ++i;  // tokens after the result
    if (i < t.size()) ++i;
    if (has_result) {
      rows.push_back(std::move(row));
    } else {
      e.Fault(i > 0 ? i - 1 : 0, "table row without \"->\"");
    }
  }

  for (const TableRow& row : rows) {
    bool match = row.matches_always;
    if (!match) {
      match = true;
      for (size_t k = 0; k < keys.size() && match; ++k) {
        if (row.patterns[k]) match = MatchTablePattern(*row.patterns[k], keys[k]);
      }
    }
    if (match) {
      if (row.result >= t.size()) return std::string();
      return e.Term(row.result).value.value_or("");
    }
  }
  return std::nullopt;
}

bool HasLongLife(const NvAsset& asset) {
  return std::any_of(asset.schedules.begin(), asset.schedules.end(), [](const NvAssetSchedule& s) {
    return static_cast<long long>(s.useful_life.years) * 12 + s.useful_life.months > 15 * 12;
  });
}

bool HalfYearMethod(int method) {
  return method == kMethodMacrs || method == kMethodAmt || method == kMethodEAndP ||
         method == kMethodMacrsListedSl || method == kMethodMacrs150Db;
}

}  // namespace

// ---- the evaluator ----

std::string ConversionError::ToString() const {
  return StrPrintf("\"%s\" at %zu: %s", expression.c_str(), position, reason.c_str());
}

void RecordFault(const ConversionContext& context, std::string_view expression, size_t position,
                 std::string_view reason) {
  if (context.errors == nullptr || context.errors->size() >= ConversionContext::kMaxErrors) return;
  context.errors->push_back(
      ConversionError{std::string(expression), position, std::string(reason)});
}

void Evaluator::Fault(size_t at, std::string_view reason) {
  RecordFault(context_, tokens_.source, tokens_.Position(at), reason);
}

std::optional<ArgumentList> Evaluator::Arguments(size_t open) {
  if (tokens_.Text(open) != "(") return std::nullopt;
  ArgumentList list;
  size_t start = open + 1;
  int depth = 0;
  for (size_t i = open + 1; i < tokens_.size(); ++i) {
    const std::string_view text = tokens_.Text(i);
    if (text == "(") {
      ++depth;
    } else if (text == ")" && depth > 0) {
      --depth;
    } else if (text == ")") {
      if (!(list.arguments.empty() && start == i)) list.arguments.push_back({start, i});
      list.next = i + 1;
      return list;
    } else if (text == "," && depth == 0) {
      list.arguments.push_back({start, i});
      start = i + 1;
    }
  }
  return std::nullopt;
}

Value Evaluator::Argument(const ArgumentRange& range) {
  if (range.empty()) return std::nullopt;
  return Term(range.first).value;
}

Evaluation Evaluator::Term(size_t at) {
  EvaluationBudget& budget = context_.budget;
  if (budget.exhausted) return {std::nullopt, tokens_.size()};
  if (budget.depth >= EvaluationBudget::kMaxDepth || ++budget.steps > EvaluationBudget::kMaxSteps) {
    budget.exhausted = true;
    Fault(at, budget.depth >= EvaluationBudget::kMaxDepth ? "nested too deeply" : "too many steps");
    return {std::nullopt, tokens_.size()};
  }
  if (at >= tokens_.size()) return {std::nullopt, tokens_.size()};

  ++budget.depth;
  Evaluation result{std::nullopt, at + 1};
  const std::string_view text = tokens_.Text(at);
  switch (text.front()) {
    case '"':
      result.value = std::string(Inside(text));
      break;
    case '<':
      result.value = FieldToken(at);
      break;
    case '{':
      result.value = ColumnToken(at);
      break;
    default:
      if (FindFunction(text) != nullptr || EqualIgnoringCase(text, "execute")) {
        result.value = Keyword(at, &result.next);
      } else {
        result.value = std::string(text);
      }
  }
  --budget.depth;
  if (!budget.exhausted && result.value &&
      result.value->size() > EvaluationBudget::kMaxValueLength) {
    budget.exhausted = true;
    Fault(at, "value too long");
  }
  if (budget.exhausted) return {std::nullopt, tokens_.size()};
  return result;
}

Value Evaluator::FieldToken(size_t at) {
  return EvaluateFieldReference(Inside(tokens_.Text(at)), context_);
}

Value Evaluator::ColumnToken(size_t at) {
  const std::string name = CompletedName(Inside(tokens_.Text(at)), context_);
  std::optional<FieldDefinition> entry = UsableDefinition(name, context_);
  if (!entry) return std::nullopt;
  if (entry->method == ConversionMethod::kSet || entry->method == ConversionMethod::kDefault) {
    return EvaluateFieldReference(name, context_);
  }
  return ColumnText(context_, entry->column);
}

// keyword arguments: "execute" takes a library function's name as its first argument;
// every other keyword evaluates all its arguments.
Value Evaluator::Keyword(size_t at, size_t* next) {
  std::optional<ArgumentList> list = Arguments(at + 1);
  if (!list) {
    *next = tokens_.Text(at + 1) == "(" ? tokens_.size() : at + 1;
    Fault(at, tokens_.Text(at + 1) == "(" ? "argument list is not closed"
                                          : "function without its argument list");
    return std::nullopt;
  }
  *next = list->next;
  const std::vector<ArgumentRange>& ranges = list->arguments;
  const std::string_view word = tokens_.Text(at);

  if (EqualIgnoringCase(word, "execute")) {
    if (ranges.empty() || ranges[0].empty()) {
      Fault(at, "execute without a function name");
      return std::nullopt;
    }
    const std::vector<ArgumentRange> rest(ranges.begin() + 1, ranges.end());
    bool known = true;
    Value value = CallLibrary(*this, tokens_.Text(ranges[0].first), rest, &known);
    if (!known) Fault(ranges[0].first, "no such function");
    return value;
  }

  const Function* function = FindFunction(word);
  if (ranges.size() < function->min_args || ranges.size() > function->max_args) {
    Fault(at, "wrong number of arguments");
    return std::nullopt;
  }
  Values values;
  values.reserve(ranges.size());
  for (const ArgumentRange& range : ranges) values.push_back(Argument(range));
  if (context_.budget.exhausted) return std::nullopt;
  return function->call(*this, values);
}

// ---- entry points ----

Evaluation Evaluate(const TokenList& tokens, size_t at, const ConversionContext& context) {
  StartFromTop(context);
  Evaluator evaluator(tokens, context);
  return evaluator.Term(at);
}

std::optional<std::string> EvaluateFieldReference(std::string_view name,
                                                  const ConversionContext& context) {
  StartFromTop(context);
  const std::string completed = CompletedName(name, context);
  std::optional<FieldDefinition> entry = UsableDefinition(completed, context);
  if (!entry) return std::nullopt;
  switch (entry->method) {
    case ConversionMethod::kSpecial:
      return EvaluateSpecial(*entry, context);
    case ConversionMethod::kDefault:
      return BuiltinDefault(entry->name, context);
    default:
      return context.definitions->ProduceFieldValue(completed, context.columns, context.letter);
  }
}

std::optional<std::string> EvaluateSpecial(const FieldDefinition& entry,
                                           const ConversionContext& context) {
  StartFromTop(context);
  EvaluationBudget& budget = context.budget;
  if (budget.exhausted) return std::nullopt;
  // Each special conversion counts as a nesting level, so that conversions referring to
  // each other in a circle stop.
  if (budget.depth >= EvaluationBudget::kMaxDepth) {
    budget.exhausted = true;
    RecordFault(context, entry.name, 0, "special conversions nested too deeply");
    return std::nullopt;
  }

  std::string expression = context.definitions->SpecialConversion(entry.name);
  if (TrimBlanks(expression).empty()) {
    if (const size_t comma = entry.name.find(','); comma != std::string::npos) {
      expression = context.definitions->SpecialConversion(entry.name.substr(0, comma));
    }
  }
  if (TrimBlanks(expression).empty()) return BuiltinDefault(entry.name, context);

  TokenList read;
  if (context.tokens == nullptr) read = Tokenize(expression);
  const TokenList& tokens = context.tokens != nullptr ? context.tokens->Of(expression) : read;
  if (tokens.unclosed_at != std::string::npos) {
    RecordFault(context, expression, tokens.unclosed_at, "text not closed; the rest is not read");
  }
  if (tokens.size() == 0) return std::nullopt;
  Evaluator evaluator(tokens, context);
  ++budget.depth;
  Value value = EqualIgnoringCase(tokens.Text(0), "table") ? Table(evaluator, entry)
                                                           : evaluator.Term(0).value;
  --budget.depth;
  if (budget.exhausted) return std::nullopt;
  return value;
}

std::optional<std::string> BuiltinDefault(std::string_view name, const ConversionContext& context) {
  const std::string_view field = name.substr(0, name.find(','));
  struct Default {
    const char* field;
    const char* value;
  };
  static constexpr std::array<Default, 9> kFixed = {{
      {"Description", "No Description"},
      {"New/Used", "N"},
      {"Amortized", "N"},
      {"Business Percent", "100"},
      {"Useful Life", "7"},
      {"ITC Code", "3"},
      {"Disposal Code", " "},
      {"Disposal Date", ""},
      {"Sale Amount", "0.0"},
  }};
  for (const Default& d : kFixed) {
    if (EqualIgnoringCase(field, d.field)) return std::string(d.value);
  }
  if (EqualIgnoringCase(field, "4797 Type")) {
    return std::string(context.asset != nullptr && HasLongLife(*context.asset) ? "50" : "45");
  }
  if (EqualIgnoringCase(field, "Convention")) {
    const NvAssetSchedule* schedule =
        context.asset != nullptr ? context.asset->Schedule(context.letter) : nullptr;
    return std::string(schedule != nullptr && HalfYearMethod(schedule->method) ? "Y" : "1");
  }
  return std::nullopt;
}

}  // namespace nv::bna
