// Inside the evaluator: the state of one expression's evaluation, shared by the functions
// of the evaluator and those of "execute". Not for use outside this folder.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "import/bna/conversion/conversion_context.h"
#include "import/bna/conversion/conversion_eval.h"
#include "import/bna/conversion/conversion_tokens.h"

namespace nv::bna {

// Tokens [first, end) of one argument of a list.
struct ArgumentRange {
  size_t first = 0;
  size_t end = 0;
  bool empty() const { return first >= end; }
};

struct ArgumentList {
  std::vector<ArgumentRange> arguments;
  size_t next = 0;  // the token after the closing ")"
};

using Value = std::optional<std::string>;

class Evaluator {
 public:
  // REQUIRES: tokens and context outlive the evaluator.
  Evaluator(const TokenList& tokens, const ConversionContext& context)
      : tokens_(tokens), context_(context) {}

  const TokenList& tokens() const { return tokens_; }
  const ConversionContext& context() const { return context_; }

  // term ::= string | field | column | keyword arguments | word | character
  Evaluation Term(size_t at);

  // arguments ::= '(' [ argument { ',' argument } ] ')'
  // `open` is the index of the "("; nullopt when it is none or the list is not closed.
  std::optional<ArgumentList> Arguments(size_t open);

  // The value of one argument: its first term; none for an empty argument.
  Value Argument(const ArgumentRange& range);

  // Records a fault at token `at`.
  void Fault(size_t at, std::string_view reason);

 private:
  Value Keyword(size_t at, size_t* next);
  Value FieldToken(size_t at);
  Value ColumnToken(size_t at);

  const TokenList& tokens_;
  const ConversionContext& context_;
};

// The functions of "execute", by name, ignoring case. `arguments` are those after the name.
// Sets *known to false for an unknown name (the result is then none).
Value CallLibrary(Evaluator& evaluator, std::string_view name,
                  const std::vector<ArgumentRange>& arguments, bool* known);

// Recording a fault outside an Evaluator (an unclosed expression, say).
void RecordFault(const ConversionContext& context, std::string_view expression, size_t position,
                 std::string_view reason);

}  // namespace nv::bna
