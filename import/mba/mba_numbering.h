// Asset numbers for MBA asset IDs. An MBA ID is a location, a category, a middle text and
// a trailing number (import/mba/mba_source.h); our asset numbers are numeric, so a scan of
// the whole file first chooses a scheme that fits every ID of the file into six digits
// where it can, and then each line gets its number under that scheme.
//
// The scan keeps list A, the distinct location-plus-category codes, and list B, the
// distinct middle texts (the empty one too), both in byte order; N, the largest integer
// part of a trailing number; and L, the number of lines. With digits(x) the count of
// decimal digits of x (0 for 0), a = digits(|A|), b = digits(|B|), n = digits(N), the
// first scheme whose test holds is chosen:
//
//   SCHEME  TEST                           P                        Q
//   0       a + b + n < 7                  10^(n+b) (0 when a = 0)  10^n (0 when b = 0)
//   8       digits(|A| + |B|) + n < 7      10^n                     0
//   2       digits(|A| + 1) + n < 7        10^n                     0
//   1       digits(|A| + 1) + digits(L) < 7  10^digits(L)           0
//   4       otherwise                      0                        0
//
// A line with trailing number t, its code at position i of A and its middle text at
// position j of B (both from 0) is numbered:
//
//   0  t + Q*j + P*i
//   8  t + (|A| + j)*P when the middle text is not blank, else t + P*i
//   2  the global counter, increased first, + |A|*P when the middle text is not blank,
//      else t + P*i
//   1  the counter of entry i of A, increased first, + P*i
//   4  the global counter, increased first
//
// and the number is written "%9.2f" and read under the company's asset-number format, so a
// trailing number "12.5" gives subasset 50. Two IDs can still meet on one number (scheme 2
// and 4 counters past six digits, a number already in the company); the add step then
// leaves the second one out and reports it.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "import/mba/mba_source.h"
#include "store/asset/asset_no.h"

namespace nv {

// Number of decimal digits of x; 0 for 0.
int DecimalDigits(long x);

class MbaNumbering {
 public:
  // Adds one line's ID to the scan.
  void Scan(const MbaAssetId& id);
  // Chooses the scheme for everything scanned and starts the counters at 0. Scan no more
  // after this.
  void Choose();
  // Starts the counters at 0 again, for a second pass over the same lines.
  void ResetCounters();

  // The number of the next line, whose ID was scanned; counters move as the scheme says.
  double Number(const MbaAssetId& id);
  // The same written "%9.2f" and read under `format`.
  NvAssetNo AssetNumber(const MbaAssetId& id, const NvAssetNoFormat& format);

  int scheme() const { return scheme_; }
  double p() const { return p_; }
  double q() const { return q_; }
  long size_a() const { return static_cast<long>(codes_.size()); }
  long size_b() const { return static_cast<long>(middles_.size()); }
  long largest_number() const { return largest_; }
  long lines() const { return lines_; }

 private:
  struct Code {
    long position = 0;
    long counter = 0;
  };
  std::map<std::string, Code> codes_;    // list A, with the counter of each entry
  std::map<std::string, long> middles_;  // list B, with positions
  long largest_ = 0;                     // N
  long lines_ = 0;                       // L
  long counter_ = 0;                     // the global counter
  int scheme_ = 4;
  double p_ = 0;
  double q_ = 0;
};

}  // namespace nv
