// What an evaluation of the conversion language sees of the import around it: the
// conversion definitions (through an interface the importer implements over its
// ImportConversionList and profile), the split source line, the schedule being filled,
// and the few parts of the import state that library functions use.
//
// The language itself reads no file and opens no window: "display" goes through the Ui
// port, and the location, category and account group lists are the importer's, loaded and
// written back by it.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "base/date.h"
#include "import/bna/conversion/conversion_tokens.h"
#include "import/bna/conversion_list.h"

namespace nv {
class Ui;
class NvAsset;
class NvLocCatList;
struct AccountGroupList;
}  // namespace nv

namespace nv::bna {

// Method of a conversion definition: the conversion list's own (import/bna/conversion_list.h).
using ConversionMethod = ::nv::ConversionMethod;

// What the language needs to know of one conversion definition.
struct FieldDefinition {
  std::string name;  // the definition's own name, at most 25 characters
  int column = -1;   // source column from 0; -1 for none
  ConversionMethod method = ConversionMethod::kNone;
  bool active = false;   // its group box is checked
  bool no_copy = false;  // "Do not copy"
};

// The importer's side of field references, implemented over its conversion list and
// profile.
class ConversionDefinitions {
 public:
  virtual ~ConversionDefinitions() = default;

  // The definition of `name`, compared ignoring case; when no definition has that name and
  // it holds a comma, the one named by the part before the first comma. nullopt for none.
  virtual std::optional<FieldDefinition> Find(std::string_view name) const = 0;

  // The value of the definition `name` for this line, without a length limit, as the
  // importer produces a field's value. Asked only for the methods ENTIRE, RIGHT, LEFT,
  // MID, SET and none: the language settles SPECIAL and DEFAULT itself.
  virtual std::optional<std::string> ProduceFieldValue(std::string_view name,
                                                       std::span<const std::string> columns,
                                                       char letter) = 0;

  // The expression kept under `key` in "special conversions" (the main profile's when the
  // current profile has none), at most 499 characters; empty when there is none.
  virtual std::string SpecialConversion(std::string_view key) = 0;

  // The display name of the company's schedule `letter` (CompanyScheduleName).
  virtual std::string ScheduleName(char letter) const = 0;
};

// A fault found while evaluating: the expression, where in it, and why. The language
// reports nothing to the user; the importer may log these.
struct ConversionError {
  std::string expression;
  size_t position = 0;  // offset in the expression
  std::string reason;

  // `"EXPRESSION" at POSITION: REASON`
  std::string ToString() const;
};

// Work done by one evaluation, so that no expression runs without end: a field reference
// to a field whose conversion refers back to it, a nest of parentheses thousands deep, or
// a value that keeps doubling stops with no value and an error.
struct EvaluationBudget {
  static constexpr int kMaxDepth = 64;       // terms nested inside each other
  static constexpr long kMaxSteps = 20'000;  // terms evaluated in all
  // No field is nearly this long; a value that grows past it is a conversion that doubles
  // itself through field references.
  static constexpr size_t kMaxValueLength = 64 * 1024;
  int depth = 0;
  long steps = 0;
  bool exhausted = false;
};

// The tokens of the expressions a run has evaluated, so that each is read once per run and
// not once per line. Lists stay where they are while the cache grows.
class TokenCache {
 public:
  const TokenList& Of(const std::string& expression) {
    auto at = lists_.find(expression);
    if (at == lists_.end()) at = lists_.emplace(expression, Tokenize(expression)).first;
    return at->second;
  }

 private:
  std::unordered_map<std::string, TokenList> lists_;
};

struct ConversionContext {
  ConversionDefinitions* definitions = nullptr;  // REQUIRED
  std::span<const std::string> columns;          // the split source line
  char letter = '\0';                            // schedule being filled; '\0' for general fields
  long line_number = 0;                          // from 1, comment lines counted
  int implied_decimals = 0;                      // "dollar decimal places"
  Date today;
  const NvAsset* asset = nullptr;      // the asset being built: defaults of 4797 Type, Convention
  NvLocCatList* locations = nullptr;   // for stdloccat and stdloccatlookup
  NvLocCatList* categories = nullptr;  // likewise
  // The run's account group list, loaded by the importer at the first call; nullptr when
  // it cannot be had.
  std::function<AccountGroupList*()> account_groups;
  Ui* ui = nullptr;                                // for "display"; nothing is shown without one
  std::vector<ConversionError>* errors = nullptr;  // optional sink, at most kMaxErrors kept
  TokenCache* tokens = nullptr;                    // optional; without it each is read anew

  static constexpr size_t kMaxErrors = 20;

  // Reset by each evaluation that starts from the top; shared by the evaluations nested in
  // it.
  mutable EvaluationBudget budget;
};

}  // namespace nv::bna
