// The MBA Software fixed-asset export: a text file of one asset per line, in fixed
// columns. This reader turns its bytes into plain source records and knows nothing of
// companies; import/mba/mba_convert.h makes assets of them.
//
// Lines end with LF (a CR before it is dropped); lines of blanks only are skipped. Columns
// are 0-based; a line shorter than a field gives that field as far as it reaches (nothing,
// when it ends before the field), and what stands past the last column is ignored.
//
//   OFFSET  SIZE  CONTENT
//   0       1     status: "A" active, "D" disposed, "S" sold
//   1       14    asset ID (see MbaAssetId)
//   15      40    description
//   55      14    cost
//   69      8     acquisition date
//   77      8     disposal date (used only for status "D" or "S")
//   85      18    not used
//   103     13    not used
//   116     13    not used
//   129     1     mid-quarter flag: blank half-year, anything else mid-quarter
//   130     12    asset account
//   142     12    accumulated-depreciation account
//   154     12    depreciation-expense account
//   166     81    book block: Tax
//   247     81    book block: AMT
//   328     81    book block: internal book
//   409     81    book block: any other schedule
//
// Book block, offsets within the block:
//
//   OFFSET  SIZE  CONTENT
//   0       1     method letter (import/mba/mba_convert.h)
//   1       2     life in years
//   3       8     not used
//   11      14    depreciable basis
//   25      14    salvage value
//   39      28    not used
//   67      14    accumulated depreciation
//
// Amounts are decimal texts (blanks, an optional sign, digits, an optional point and
// decimals; reading stops at anything else, and text without digits is 0). Dates are
// MMDDYY, MMDDYYYY, or month, day and year separated by "/" or "-"; blanks inside are
// dropped, two-digit years below 30 are 20xx, and anything that is no valid date is the
// empty date.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "base/date.h"

namespace nv {

struct MbaColumn {
  size_t offset;
  size_t size;
};

inline constexpr MbaColumn kMbaStatus{0, 1};
inline constexpr MbaColumn kMbaAssetId{1, 14};
inline constexpr MbaColumn kMbaDescription{15, 40};
inline constexpr MbaColumn kMbaCost{55, 14};
inline constexpr MbaColumn kMbaAcquired{69, 8};
inline constexpr MbaColumn kMbaDisposed{77, 8};
inline constexpr MbaColumn kMbaMidQuarter{129, 1};
inline constexpr MbaColumn kMbaAssetAccount{130, 12};
inline constexpr MbaColumn kMbaAccumulatedAccount{142, 12};
inline constexpr MbaColumn kMbaExpenseAccount{154, 12};
inline constexpr size_t kMbaFirstBook = 166;
inline constexpr size_t kMbaBookSize = 1 + 2 + 8 + 14 + 14 + 28 + 14;
static_assert(kMbaBookSize == 81);
inline constexpr size_t kMbaBooks = 4;
inline constexpr size_t kMbaLineLength = kMbaFirstBook + kMbaBooks * kMbaBookSize;
static_assert(kMbaLineLength == 490);

// Within a book block.
inline constexpr MbaColumn kMbaBookMethod{0, 1};
inline constexpr MbaColumn kMbaBookLife{1, 2};
inline constexpr MbaColumn kMbaBookBasis{11, 14};
inline constexpr MbaColumn kMbaBookSalvage{25, 14};
inline constexpr MbaColumn kMbaBookAccumulated{67, 14};

// The book blocks in the order of the line.
enum class MbaBook { kTax = 0, kAmt = 1, kInternal = 2, kOther = 3 };

struct MbaBookBlock {
  char method = ' ';       // method letter as it stands
  int life = 0;            // life in years, 0 .. 99
  double basis = 0;        // depreciable basis
  double salvage = 0;      // salvage value
  double accumulated = 0;  // accumulated depreciation
};

// One asset line. Texts are the columns as they stand, blanks at the ends removed, except
// `id`, which keeps its 14 columns (the ID is kept as MBA shows it).
struct MbaLine {
  char status = ' ';
  std::string id;
  std::string description;
  double cost = 0;
  Date acquired;
  Date disposed;
  bool mid_quarter = false;
  std::string asset_account;
  std::string accumulated_account;
  std::string expense_account;
  std::array<MbaBookBlock, kMbaBooks> books;

  const MbaBookBlock& book(MbaBook which) const { return books[static_cast<size_t>(which)]; }
};

// A non-blank line of the file: its 1-based line number and its text (no line end). The
// text points into the bytes it was split from.
struct MbaSourceLine {
  long number = 0;
  std::string_view text;
};

// The asset lines of a file, in order.
std::vector<MbaSourceLine> SplitMbaLines(std::string_view bytes);

// The fields of one line.
MbaLine ParseMbaLine(std::string_view text);

// The columns of `column` in `text`, as far as the text reaches.
std::string_view MbaField(std::string_view text, MbaColumn column);

// An asset ID taken apart. The ID, blanks removed at both ends, is: location (characters 0
// and 1), category (2 and 3), a middle text, and a trailing number: the longest tail after
// character 3 made of digits with at most one ".", at most 6 digits before the point and at
// most 2 after it. The middle text lies between character 4 and the trailing number.
struct MbaAssetId {
  std::string location;
  std::string category;
  std::string middle;
  std::string number_text;  // the trailing number as it stands, "" when there is none
  double number = 0;        // its value
  long whole_number = 0;    // its integer part

  // Location followed by category: the ID's first four characters.
  std::string LocationCategory() const { return location + category; }
};

MbaAssetId SplitMbaAssetId(std::string_view id);

// The value conversions of the layout, for the fields above.
double ParseMbaAmount(std::string_view text);
Date ParseMbaDate(std::string_view text);

// A source line read whole into memory, as the benchmark's plain parse does.
struct MbaRecord {
  long line_number = 0;
  MbaLine line;
  MbaAssetId id;
};
std::vector<MbaRecord> ReadMbaSource(std::string_view bytes);

}  // namespace nv
