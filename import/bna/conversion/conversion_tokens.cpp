#include "import/bna/conversion/conversion_tokens.h"

namespace nv::bna {
namespace {

bool IsAsciiLetterOrDigit(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9');
}

bool IsSpace(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

// The end (one past the closing quote) of the string token opening at `at`, or npos.
// string ::= '"' { any-but-quote | '""' } '"'
size_t StringEnd(std::string_view text, size_t at) {
  size_t i = at + 1;
  while (true) {
    const size_t quote = text.find('"', i);
    if (quote == std::string_view::npos) return std::string_view::npos;
    if (quote + 1 < text.size() && text[quote + 1] == '"') {
      i = quote + 2;  // a doubled quote stays inside the string
      continue;
    }
    return quote + 1;
  }
}

// The end of a token opening with `open` at `at` and running to `close` inclusive, or npos.
size_t BracketEnd(std::string_view text, size_t at, char close) {
  const size_t end = text.find(close, at + 1);
  return end == std::string_view::npos ? end : end + 1;
}

}  // namespace

// tokens ::= { blank } { token { blank } }
// token  ::= string | '->' | '<' { any-but-'>' } '>' | '{' { any-but-'}' } '}'
//          | alnum { alnum | '.' } | any-other-character
TokenList Tokenize(std::string_view text) {
  TokenList list;
  list.source = std::string(text);
  size_t i = 0;
  while (i < text.size()) {
    const char c = text[i];
    if (IsSpace(c)) {
      ++i;
      continue;
    }
    size_t end = i + 1;
    if (c == '"') {
      end = StringEnd(text, i);
    } else if (c == '<') {
      end = BracketEnd(text, i, '>');
    } else if (c == '{') {
      end = BracketEnd(text, i, '}');
    } else if (c == '-') {
      if (i + 1 < text.size() && text[i + 1] == '>') end = i + 2;
    } else if (IsAsciiLetterOrDigit(c)) {
      while (end < text.size() && (IsAsciiLetterOrDigit(text[end]) || text[end] == '.')) ++end;
    }
    if (end == std::string_view::npos) {
      list.unclosed_at = i;
      break;
    }
    list.tokens.push_back(Token{std::string(text.substr(i, end - i)), i});
    i = end;
  }
  return list;
}

}  // namespace nv::bna
