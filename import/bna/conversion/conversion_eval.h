// The evaluator of the BNA conversion language. An expression is a single term, which may
// nest; there are no operators, variables or statements, and every value is a text or
// none (no value: the importer then leaves the asset's field as it is).
//
//   term      ::= string | field | column | keyword arguments | word | character
//   arguments ::= '(' [ argument { ',' argument } ] ')'
//   argument  ::= term { token }          tokens after the argument's term are ignored
//   table     ::= 'table' arguments [':'] row { ':' row }
//   row       ::= pattern { ',' pattern } '->' term { token }
//
// A keyword is one of the functions of the evaluator ("right", "left", "mid", ...,
// "execute" with its library of functions); a word that is no keyword, or a keyword
// without its argument list, stands for its own text (a keyword alone gives none).
//
// Faults give none and never stop the import; they are described in the context's error
// sink. The work of one evaluation is bounded (EvaluationBudget).
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "import/bna/conversion/conversion_context.h"
#include "import/bna/conversion/conversion_tokens.h"

namespace nv::bna {

struct Evaluation {
  std::optional<std::string> value;
  size_t next = 0;  // the token after the term
};

// The value of the term that starts at token `at`.
Evaluation Evaluate(const TokenList& tokens, size_t at, const ConversionContext& context);

// The value of the field reference <name>: `name` is completed with the schedule's name
// when the context has a letter, then looked up. No definition, an inactive one or a
// "do not copy" one gives none; SPECIAL gives EvaluateSpecial, DEFAULT BuiltinDefault, any
// other method the importer's ProduceFieldValue. The importer's own DEFAULT and SPECIAL
// fields get their values here.
std::optional<std::string> EvaluateFieldReference(std::string_view name,
                                                  const ConversionContext& context);

// The value of a field whose method is SPECIAL: its expression from "special conversions"
// (for a name with a comma and no expression of its own, the expression of the name up to
// the comma), a table or a term; the built-in default when there is no expression.
std::optional<std::string> EvaluateSpecial(const FieldDefinition& entry,
                                           const ConversionContext& context);

// The built-in default of a field, by its name up to the first comma, ignoring case; none
// for fields that have no default.
std::optional<std::string> BuiltinDefault(std::string_view name, const ConversionContext& context);

}  // namespace nv::bna
