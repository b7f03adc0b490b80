#include "base/compare_codes.h"

#include <cstddef>

namespace nv {
namespace {

bool IsDigit(unsigned char c) { return c >= '0' && c <= '9'; }

unsigned char Fold(unsigned char c) { return (c >= 'a' && c <= 'z') ? c - ('a' - 'A') : c; }

int Sign(int v) { return (v > 0) - (v < 0); }

// Digits and "." rank below every other character.
int Rank(unsigned char c) { return (IsDigit(c) || c == '.') ? 0 : 1; }

// Compares one "-"-separated piece.
int ComparePiece(std::string_view a, std::string_view b, bool exact_case) {
  size_t i = 0, j = 0;
  const size_t na = a.size(), nb = b.size();
  for (;;) {
    if (i == na || j == nb) return (i == na ? 0 : 1) - (j == nb ? 0 : 1);
    unsigned char ca = a[i], cb = b[j];
    if (IsDigit(ca) && IsDigit(cb)) {
      size_t si = i, sj = j;
      while (i < na && IsDigit(a[i])) ++i;
      while (j < nb && IsDigit(b[j])) ++j;
      if (i - si != j - sj) return (i - si) < (j - sj) ? -1 : 1;
      for (size_t k = 0; k < i - si; ++k) {
        if (a[si + k] != b[sj + k]) return static_cast<unsigned char>(a[si + k]) < static_cast<unsigned char>(b[sj + k]) ? -1 : 1;
      }
      if (i < na && j < nb && a[i] == '.' && b[j] == '.') {
        ++i;
        ++j;
        while (i < na && j < nb && IsDigit(a[i]) && IsDigit(b[j])) {
          if (a[i] != b[j]) return a[i] < b[j] ? -1 : 1;
          ++i;
          ++j;
        }
        bool more_a = i < na && IsDigit(a[i]);
        bool more_b = j < nb && IsDigit(b[j]);
        if (more_a != more_b) return more_a ? 1 : -1;
      }
      continue;
    }
    if (Rank(ca) != Rank(cb)) return Rank(ca) < Rank(cb) ? -1 : 1;
    unsigned char ka = exact_case ? ca : Fold(ca);
    unsigned char kb = exact_case ? cb : Fold(cb);
    if (ka != kb) return ka < kb ? -1 : 1;
    ++i;
    ++j;
  }
}

// Splits off the next token of `s` starting at `pos`, separated by `sep`. Returns false
// when none is left. For words, runs of separators count as one and leading ones are
// skipped; for pieces every separator splits.
bool NextToken(std::string_view s, size_t* pos, char sep, bool collapse, std::string_view* out) {
  if (collapse) {
    while (*pos < s.size() && s[*pos] == sep) ++*pos;
    if (*pos >= s.size()) return false;
  } else if (*pos > s.size()) {
    return false;
  }
  size_t end = s.find(sep, *pos);
  if (end == std::string_view::npos) end = s.size();
  *out = s.substr(*pos, end - *pos);
  *pos = end + 1;
  return true;
}

int CompareWord(std::string_view a, std::string_view b, bool exact_case) {
  size_t pa = 0, pb = 0;
  for (;;) {
    std::string_view ta, tb;
    bool ha = NextToken(a, &pa, '-', false, &ta);
    bool hb = NextToken(b, &pb, '-', false, &tb);
    if (!ha || !hb) return (ha ? 1 : 0) - (hb ? 1 : 0);
    int r = ComparePiece(ta, tb, exact_case);
    if (r != 0) return r;
  }
}

int CompareText(std::string_view a, std::string_view b, bool exact_case) {
  size_t pa = 0, pb = 0;
  for (;;) {
    std::string_view wa, wb;
    bool ha = NextToken(a, &pa, ' ', true, &wa);
    bool hb = NextToken(b, &pb, ' ', true, &wb);
    if (!ha || !hb) return (ha ? 1 : 0) - (hb ? 1 : 0);
    int r = CompareWord(wa, wb, exact_case);
    if (r != 0) return r;
  }
}

}  // namespace

int CompareCodes(std::string_view a, std::string_view b) {
  if (a == b) return 0;  // the common case in keys whose fields repeat, at memcmp's cost
  int r = CompareText(a, b, false);
  if (r == 0) r = CompareText(a, b, true);
  return Sign(r);
}

}  // namespace nv
