// MBA source lines written for tests and benchmarks, column by column from the layout's
// own offsets (written out here as numbers, not taken from the reader).
#pragma once

#include <string>
#include <string_view>

namespace nv::testing {

class MbaLineText {
 public:
  // A line of blanks as long as the layout's columns (490), status and ID filled in.
  MbaLineText(char status, std::string_view id) : text_(490, ' ') {
    Put(0, std::string(1, status));
    Put(1, id);
  }

  // Writes `value` at `offset`, the line growing when it reaches past its end.
  MbaLineText& Put(size_t offset, std::string_view value) {
    if (text_.size() < offset + value.size()) text_.resize(offset + value.size(), ' ');
    text_.replace(offset, value.size(), value);
    return *this;
  }
  // Right-aligns `value` in the `width` columns at `offset`, as MBA writes numbers.
  MbaLineText& PutRight(size_t offset, size_t width, std::string_view value) {
    return Put(offset + width - value.size(), value);
  }

  MbaLineText& Description(std::string_view text) { return Put(15, text); }
  MbaLineText& Cost(std::string_view amount) { return PutRight(55, 14, amount); }
  MbaLineText& Acquired(std::string_view date) { return Put(69, date); }
  MbaLineText& Disposed(std::string_view date) { return Put(77, date); }
  MbaLineText& MidQuarter() { return Put(129, "X"); }
  MbaLineText& Accounts(std::string_view asset, std::string_view accumulated,
                        std::string_view expense) {
    return Put(130, asset).Put(142, accumulated).Put(154, expense);
  }
  // Book block `index` (0 Tax, 1 AMT, 2 internal, 3 other) at 166 + 81 * index.
  MbaLineText& Book(int index, char method, std::string_view life, std::string_view basis,
                    std::string_view salvage, std::string_view accumulated) {
    const size_t at = 166 + 81 * static_cast<size_t>(index);
    Put(at, std::string(1, method));
    PutRight(at + 1, 2, life);
    PutRight(at + 11, 14, basis);
    PutRight(at + 25, 14, salvage);
    return PutRight(at + 67, 14, accumulated);
  }

  const std::string& text() const { return text_; }

 private:
  std::string text_;
};

}  // namespace nv::testing
