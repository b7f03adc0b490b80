#include "import/mba/mba_numbering.h"

#include "base/ascii.h"
#include "base/str_format.h"

namespace nv {
namespace {

double PowerOfTen(int exponent) {
  double value = 1;
  for (int i = 0; i < exponent; ++i) value *= 10;
  return value;
}

bool IsBlank(std::string_view text) {
  return TrimBlanks(text).empty();
}

}  // namespace

int DecimalDigits(long x) {
  int digits = 0;
  for (; x != 0; x /= 10) ++digits;
  return digits;
}

void MbaNumbering::Scan(const MbaAssetId& id) {
  codes_.try_emplace(id.LocationCategory());
  middles_.try_emplace(id.middle, 0);
  if (id.whole_number > largest_) largest_ = id.whole_number;
  ++lines_;
}

void MbaNumbering::Choose() {
  long position = 0;
  for (auto& [code, entry] : codes_) entry.position = position++;
  position = 0;
  for (auto& [middle, at] : middles_) at = position++;

  const int a = DecimalDigits(size_a());
  const int b = DecimalDigits(size_b());
  const int n = DecimalDigits(largest_);
  if (a + b + n < 7) {
    scheme_ = 0;
    p_ = a > 0 ? PowerOfTen(n + b) : 0;
    q_ = b > 0 ? PowerOfTen(n) : 0;
  } else if (DecimalDigits(size_a() + size_b()) + n < 7) {
    scheme_ = 8;
    p_ = PowerOfTen(n);
    q_ = 0;
  } else if (DecimalDigits(size_a() + 1) + n < 7) {
    scheme_ = 2;
    p_ = PowerOfTen(n);
    q_ = 0;
  } else if (DecimalDigits(size_a() + 1) + DecimalDigits(lines_) < 7) {
    scheme_ = 1;
    p_ = PowerOfTen(DecimalDigits(lines_));
    q_ = 0;
  } else {
    scheme_ = 4;
    p_ = 0;
    q_ = 0;
  }
  ResetCounters();
}

void MbaNumbering::ResetCounters() {
  counter_ = 0;
  for (auto& [code, entry] : codes_) entry.counter = 0;
}

double MbaNumbering::Number(const MbaAssetId& id) {
  // An ID that was never scanned has no place in the lists; it takes the place after them,
  // which no scanned ID has.
  auto code = codes_.find(id.LocationCategory());
  Code unscanned{size_a(), 0};
  Code& entry = code == codes_.end() ? unscanned : code->second;
  auto middle = middles_.find(id.middle);
  const double i = static_cast<double>(entry.position);
  const double j = static_cast<double>(middle == middles_.end() ? size_b() : middle->second);
  const double t = id.number;
  const double a = static_cast<double>(size_a());
  const bool has_middle = !IsBlank(id.middle);
  switch (scheme_) {
    case 0:
      return t + q_ * j + p_ * i;
    case 8:
      return has_middle ? t + (a + j) * p_ : t + p_ * i;
    case 2:
      return has_middle ? static_cast<double>(++counter_) + a * p_ : t + p_ * i;
    case 1:
      return static_cast<double>(++entry.counter) + p_ * i;
    default:
      return static_cast<double>(++counter_);
  }
}

NvAssetNo MbaNumbering::AssetNumber(const MbaAssetId& id, const NvAssetNoFormat& format) {
  return NvAssetNo::Parse(StrPrintf("%9.2f", Number(id)), format);
}

}  // namespace nv
