// Tokens of the BNA conversion language: the expressions that a BNA import profile keeps
// in its section "special conversions", one per target field.
//
// Token forms, in the order the tokenizer tries them (blanks between tokens are skipped):
//   string     '"' ... '"'   runs to the next quote that is not doubled; keeps both quotes
//                            and any doubled quotes inside
//   arrow      "->"          (a lone "-" is a token of its own)
//   field      '<' ... '>'   a field reference, brackets included
//   column     '{' ... '}'   a column reference, braces included
//   word       letter or digit, then letters, digits and full stops ("12.50", "A12")
//   other      any other character alone: "(", ")", ",", ":", "*", ...
// A string, field or column token that is not closed ends the list there: what follows
// is not read, and the list says where it stopped.
//
// Tokens are as long as the text makes them; the language never cuts one.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace nv::bna {

struct Token {
  std::string text;
  size_t position = 0;  // offset of its first character in the expression
};

struct TokenList {
  std::string source;  // the expression as given
  std::vector<Token> tokens;
  // Where an unclosed string, field or column token began; npos when the whole text was
  // read.
  size_t unclosed_at = std::string::npos;

  size_t size() const { return tokens.size(); }
  // The text of token i, or "" past the end, so that look-ahead needs no bounds checks.
  std::string_view Text(size_t i) const {
    return i < tokens.size() ? std::string_view(tokens[i].text) : std::string_view();
  }
  // The offset in the source of token i, or the source's length past the end.
  size_t Position(size_t i) const { return i < tokens.size() ? tokens[i].position : source.size(); }
};

TokenList Tokenize(std::string_view text);

}  // namespace nv::bna
