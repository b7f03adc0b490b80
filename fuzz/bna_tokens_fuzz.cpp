// Tokenizes arbitrary bytes as a conversion expression and checks that every token is a
// piece of the text where it says it is, in order, and that nothing was skipped but blanks.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "import/bna/conversion/conversion_tokens.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  const nv::bna::TokenList list = nv::bna::Tokenize(text);
  if (list.source != text) std::abort();
  const size_t end = list.unclosed_at == std::string::npos ? text.size() : list.unclosed_at;
  if (end > text.size()) std::abort();
  size_t at = 0;
  for (const nv::bna::Token& token : list.tokens) {
    if (token.text.empty() || token.position < at) std::abort();
    for (size_t i = at; i < token.position; ++i) {
      const char c = text[i];
      if (c != ' ' && c != '\t' && c != '\r' && c != '\n') std::abort();
    }
    if (text.compare(token.position, token.text.size(), token.text) != 0) std::abort();
    at = token.position + token.text.size();
    if (at > end) std::abort();
  }
  return 0;
}
