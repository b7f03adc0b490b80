// The AICPA depreciation product's printed reports, saved as text: the asset detail report
// (NAME.AST) and the dispositions report beside it (NAME.DSP). Columns are 0-based
// character positions within a line; "A-B" includes both ends.
//
// Asset detail report (.AST). Lines end with LF (a CR before it is dropped) and are read
// up to 750 characters; the rest of a longer line is read as a line of its own. A form
// feed ends a page; text after it on the same line is the new page's first line, with the
// form feed and what stood before it blanked so that its columns stay where they were.
// One page per asset; an asset too long for one page goes on over the next, which has no
// "Asset No." row of its own.
//
//   WHERE                          WHAT
//   lines 1-4 of the first page    a line holding " Basis": the company name is the text
//                                  after it without its last 10 characters (the date)
//   a line holding "Months Ended " the 3 characters before it: months in the year; the
//                                  date after it: Current Year End
//   line 21 on                     after a line shorter than 5 characters, the first line
//                                  longer than 45: the book headings, 15 characters each
//                                  from column 44, at most 6 ("Federal", "AMT", ...)
//   column 1 on                    a row's label, compared ignoring case over its length
//   column 41 on                   a row's values, one 15-character cell per book heading
//   column 5 on                    the account rows ("Asset", "Accumulated Depreciation",
//                                  "Depreciation/Amortization Expense"), from the first form
//                                  feed on; the account number in columns 43-66
//
// Rows of book values (one cell per book):
//
//   ROW  LABEL                          CELL
//   0    "Date Acquired"                acquisition date
//   1    "New/Used"                     first character N, U or T
//   2    "Cost or Basis"                amount, commas removed
//   3    "Salvage Value"                amount, commas removed
//   4    "ITC Basis Reduction"          amount, commas removed
//   5    "Tax System"                   "MACRS", "ACRS" or other
//   6    "Method"                       method words and property words
//   7    "Life (YY/MM)"                 years "/" months
//   8    "Convention"                   convention words
//   9    "Business Percentage"          integer
//   10   "Section 179 deduction"        amount, commas removed
//   11   "Amortization IRC Section"     read, not used
//   12   "Prior Depreciation"           amount, commas removed
//   13   "Remaining Depreciable Basis"  read, not used
//
// Rows of one value:
//
//   LABEL                          COLUMNS  VALUE
//   "Asset No."                    41-50    asset number, blanks removed; at most 6
//   "Asset Description (line 1)"   40-69    description
//   "Category"                     40-64    category
//   "User-defined 1"               40-59    user field 1
//   "User-defined 2"               40-59    user field 2
//
// Dispositions report (.DSP): one disposition per line longer than 133 characters.
//
//   COLUMNS  VALUE
//   3-8      asset number, blanks removed
//   36-43    acquisition date
//   46-53    disposal date
//   60-73    gross proceeds, commas removed
//   90-103   expense of sale, commas removed
#pragma once

#include <array>
#include <cstddef>

namespace nv::aicpa {

// A column span: first column and width.
struct Columns {
  size_t first;
  size_t width;
};
constexpr Columns Span(size_t first, size_t last) {
  return {first, last - first + 1};
}

inline constexpr size_t kMaxLineLength = 750;
inline constexpr char kFormFeed = '\f';

// Header of the report.
inline constexpr size_t kNameLastLine = 4;  // " Basis" is looked for on lines 1 to 4
inline constexpr char kNameMarker[] = " Basis";
inline constexpr size_t kNameDateWidth = 10;  // the date that ends the name's line
inline constexpr size_t kNameKept = 40;
inline constexpr char kMonthsEndedMarker[] = "Months Ended ";
inline constexpr size_t kMonthsWidth = 3;  // before "Months Ended "
inline constexpr long kHeadingsFirstLine = 21;
inline constexpr size_t kShortLineBelow = 5;     // a line shorter than this comes first
inline constexpr size_t kHeadingLineAbove = 45;  // then a line longer than this

// Book columns.
inline constexpr size_t kMaxBooks = 6;
inline constexpr size_t kMaxNewSchedules = 5;  // schedules a new company gets from them
inline constexpr size_t kHeadingFirstColumn = 44;
inline constexpr size_t kCellFirstColumn = 41;
inline constexpr size_t kCellWidth = 15;
// Headings that name a book, and the schedule letter of each.
struct BookHeading {
  const char* heading;
  char letter;
};
inline constexpr std::array<BookHeading, 6> kBookHeadings = {{
    {"Federal", 'T'},
    {"AMT", 'A'},
    {"ACE", 'C'},
    {"State", 'S'},
    {"Book", 'B'},
    {"Other", 'O'},
}};

// Labels start in column 1 (column 0 is the printer's).
inline constexpr size_t kLabelColumn = 1;

enum Row : size_t {
  kDateAcquired,
  kNewUsed,
  kCostOrBasis,
  kSalvageValue,
  kItcBasisReduction,
  kTaxSystem,
  kMethod,
  kLife,
  kConvention,
  kBusinessPercentage,
  kSection179,
  kAmortizationSection,
  kPriorDepreciation,
  kRemainingBasis,
  kRowCount
};
struct RowLabel {
  const char* label;
  bool amount;  // commas are removed from its cells
};
inline constexpr std::array<RowLabel, kRowCount> kRowLabels = {{
    {"Date Acquired", false},
    {"New/Used", false},
    {"Cost or Basis", true},
    {"Salvage Value", true},
    {"ITC Basis Reduction", true},
    {"Tax System", false},
    {"Method", false},
    {"Life (YY/MM)", false},
    {"Convention", false},
    {"Business Percentage", false},
    {"Section 179 deduction", true},
    {"Amortization IRC Section", false},
    {"Prior Depreciation", true},
    {"Remaining Depreciable Basis", false},
}};

enum SingleValue : size_t {
  kAssetNo,
  kDescription,
  kCategory,
  kUserDefined1,
  kUserDefined2,
  kSingleValueCount
};
struct SingleValueRow {
  const char* label;
  Columns columns;
};
inline constexpr std::array<SingleValueRow, kSingleValueCount> kSingleValueRows = {{
    {"Asset No.", Span(41, 50)},
    {"Asset Description (line 1)", Span(40, 69)},
    {"Category", Span(40, 64)},
    {"User-defined 1", Span(40, 59)},
    {"User-defined 2", Span(40, 59)},
}};
inline constexpr size_t kUsableAssetNoBelow = 7;  // a longer number is not used
inline constexpr size_t kCategoryKept = 10;

// Account rows, recognised from column 5.
enum Account : size_t { kAssetAccount, kAccumulatedAccount, kExpenseAccount, kAccountCount };
inline constexpr size_t kAccountLabelColumn = 5;
inline constexpr std::array<const char*, kAccountCount> kAccountLabels = {
    "Asset", "Accumulated Depreciation", "Depreciation/Amortization Expense"};
inline constexpr Columns kAccountNumber = Span(43, 66);
static_assert(kAccountNumber.width == 24);

// Dispositions report.
inline constexpr size_t kDispositionLongerThan = 133;
inline constexpr Columns kDspAssetNo = Span(3, 8);
inline constexpr Columns kDspAcquired = Span(36, 43);
inline constexpr Columns kDspDisposed = Span(46, 53);
inline constexpr Columns kDspProceeds = Span(60, 73);
inline constexpr Columns kDspExpense = Span(90, 103);

}  // namespace nv::aicpa
