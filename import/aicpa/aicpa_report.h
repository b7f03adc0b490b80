// Readers of the AICPA reports (layout in import/aicpa/aicpa_layout.h): bytes in, plain
// source records out. They know nothing of companies; the importer makes schedules,
// account groups and assets of what they give.
//
// Every reader takes the report as a stream of lines and page breaks (ReportSplitter), so
// that a report of any size is read in pieces and never held whole.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "base/date.h"
#include "import/aicpa/aicpa_layout.h"

namespace nv::aicpa {

// The columns of a line; the part past its end is missing (shorter or empty).
std::string_view ColumnsOf(std::string_view line, Columns columns);
// True when `line` from `column` on begins with `label`, ignoring case.
[[nodiscard]] bool HasLabelAt(std::string_view line, size_t column, std::string_view label);

// Receives a report's lines in order.
class ReportVisitor {
 public:
  virtual ~ReportVisitor() = default;
  // One line without its line end; `number` is its line in the file, from 1.
  virtual void OnLine(std::string_view text, long number) = 0;
  // A form feed: the page ends.
  virtual void OnPageBreak() = 0;
};

// Cuts bytes, fed in pieces of any size, into lines (at most kMaxLineLength characters)
// and page breaks.
class ReportSplitter {
 public:
  explicit ReportSplitter(ReportVisitor& visitor) : visitor_(visitor) {}
  ReportSplitter(const ReportSplitter&) = delete;
  ReportSplitter& operator=(const ReportSplitter&) = delete;

  void Feed(std::string_view bytes);
  // The last line, when the bytes did not end with a line end.
  void Finish();

 private:
  // A whole line without its LF: its CR dropped, cut into pieces of kMaxLineLength.
  void EndLine(std::string_view line);
  // A piece of at most kMaxLineLength characters, with its form feeds.
  void Emit(std::string_view line);

  ReportVisitor& visitor_;
  std::string carry_;  // the line begun in an earlier piece
  long number_ = 0;
};

// Splits a whole report held in memory.
void SplitReport(std::string_view bytes, ReportVisitor& visitor);
// Reads the file at `path` through a splitter in pieces, telling `progress` the bytes read
// so far after each. False when the file cannot be opened or read (what was read before a
// failed read has been given to the visitor).
[[nodiscard]] bool ReadReportFile(const std::string& path, ReportVisitor& visitor,
                                  const std::function<void(uint64_t done)>& progress = {});

// ---------------------------------------------------------------------------------------
// The report's company data, read in one pass over the whole report.

using AccountNumbers = std::array<std::string, kAccountCount>;

struct ReportSummary {
  std::optional<std::string> company_name;  // at most kNameKept characters
  int months = 0;                           // months of the year, 0 when not given
  std::optional<Date> year_end;             // Current Year End
  std::string books;                        // the book columns' schedule letters, in column order
  // The letters of the books whose cell in the first "Date Acquired" row after the
  // headings is not blank, in column order, each once, at most kMaxNewSchedules.
  std::string acquired_books;
  // The accounts of every asset, each set once, in the order met.
  std::vector<AccountNumbers> account_sets;
  bool accounts_started = false;  // the first form feed has been read
  // Usable asset numbers hold letters, or dashes: the company's numbers must allow them.
  bool letters_in_numbers = false;
  bool dashes_in_numbers = false;
};

class SummaryReader final : public ReportVisitor {
 public:
  void OnLine(std::string_view text, long number) override;
  void OnPageBreak() override;
  const ReportSummary& summary() const { return summary_; }

 private:
  void ReadHeadings(std::string_view text);

  ReportSummary summary_;
  bool text_seen_ = false;  // a line with text has been read (a page break before is none)
  bool first_page_ = true;
  bool short_line_seen_ = false;
  bool headings_found_ = false;
  bool acquired_found_ = false;
  AccountNumbers accounts_;
  std::set<AccountNumbers> sets_seen_;
};

// Which account row a line is, or kAccountCount for none.
Account AccountRowOf(std::string_view line);
// The book letters of a heading line, up to the first heading that names no book.
std::string BookLettersOf(std::string_view heading_line);

// ---------------------------------------------------------------------------------------
// The assets: one AssetPage per asset, with every labelled row it holds.

struct BookCells {
  bool present = false;
  std::array<std::string, kMaxBooks> cells;  // blanks removed at both ends
};

struct AssetPage {
  long line = 0;  // the line of its "Asset No." row, else of its first row
  std::array<std::optional<std::string>, kSingleValueCount> values;  // blanks removed
  std::array<BookCells, kRowCount> rows;
  AccountNumbers accounts;

  bool has(SingleValue value) const { return values[value].has_value(); }
  const std::string& value(SingleValue value) const;  // "" when absent
  const std::string& cell(Row row, size_t book) const;
  // The row of any label was read.
  bool HasRows() const;
};

// Gives each asset's page when it is complete: an asset's rows run over form feeds until a
// page brings an "Asset No." row of its own (so an asset printed over two pages is read
// whole), and a second "Asset No." row on one page begins another asset. A page with rows
// but no asset before it is given too, without an asset number, so that it can be told.
class AssetPageReader final : public ReportVisitor {
 public:
  using Sink = std::function<void(const AssetPage& page)>;
  explicit AssetPageReader(Sink sink) : sink_(std::move(sink)) {}

  void OnLine(std::string_view text, long number) override;
  void OnPageBreak() override;
  // Gives the last asset.
  void Finish();

 private:
  void EndPage();

  Sink sink_;
  AssetPage page_;                    // the page being read
  std::optional<AssetPage> pending_;  // the asset read so far, which the page may continue
};

// Reads one labelled row of `line` into `page`; false when the line has no label.
bool ReadRow(std::string_view line, long number, AssetPage* page);

// ---------------------------------------------------------------------------------------
// The dispositions report.

struct Disposition {
  long line = 0;
  std::string asset_no;               // blanks removed
  std::optional<Date> disposal_date;  // nullopt: the text is no date
  std::string disposal_text;
  double gross_proceeds = 0;
  double expense_of_sale = 0;
};

// A line longer than 133 characters whose acquisition and disposal dates are both there.
std::optional<Disposition> ParseDispositionLine(std::string_view line, long number);

class DispositionReader final : public ReportVisitor {
 public:
  void OnLine(std::string_view text, long number) override;
  void OnPageBreak() override {}
  const std::vector<Disposition>& dispositions() const { return dispositions_; }

 private:
  std::vector<Disposition> dispositions_;
};

// An amount as the reports print it, commas removed: "1234.50", "-12", "(12.00)",
// "12.00-"; 0 for a cell that is no amount.
double ReadAmount(std::string_view text);
// A whole number at the start of the text (blanks before it allowed), 0 when there is none.
int LeadingInteger(std::string_view text);

}  // namespace nv::aicpa
