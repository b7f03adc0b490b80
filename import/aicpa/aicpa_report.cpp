#include "import/aicpa/aicpa_report.h"

#include <algorithm>
#include <vector>

#include "base/ascii.h"
#include "base/file.h"
#include "base/money.h"

namespace nv::aicpa {
namespace {

// Reports are read in pieces of this size.
constexpr size_t kReadPiece = 64 * 1024;

std::string Trimmed(std::string_view text) {
  return std::string(TrimBlanks(text));
}

std::string WithoutCommas(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (char c : text) {
    if (c != ',') out.push_back(c);
  }
  return out;
}

Columns BookCell(size_t book) {
  return {kCellFirstColumn + book * kCellWidth, kCellWidth};
}

}  // namespace

std::string_view ColumnsOf(std::string_view line, Columns columns) {
  if (columns.first >= line.size()) return {};
  return line.substr(columns.first, columns.width);
}

bool HasLabelAt(std::string_view line, size_t column, std::string_view label) {
  if (line.size() < column + label.size()) return false;
  return EqualIgnoringCase(line.substr(column, label.size()), label);
}

double ReadAmount(std::string_view text) {
  text = TrimBlanks(text);
  if (std::optional<double> amount = ParseMoney(text)) return *amount;
  // Some reports put the sign of a negative amount after it.
  if (text.ends_with('-')) {
    if (std::optional<double> amount = ParseMoney(text.substr(0, text.size() - 1))) {
      return -*amount;
    }
  }
  return 0;
}

int LeadingInteger(std::string_view text) {
  text = TrimBlanks(text);
  bool negative = false;
  if (!text.empty() && (text.front() == '-' || text.front() == '+')) {
    negative = text.front() == '-';
    text.remove_prefix(1);
  }
  int value = 0;
  // Nine digits at most: no value of these reports is longer, and none can overflow.
  for (size_t i = 0; i < text.size() && i < 9 && text[i] >= '0' && text[i] <= '9'; ++i) {
    value = value * 10 + (text[i] - '0');
  }
  return negative ? -value : value;
}

// ---------------------------------------------------------------------------------------
// Lines and pages

void ReportSplitter::Feed(std::string_view bytes) {
  while (!bytes.empty()) {
    const size_t lf = bytes.find('\n');
    const bool ends = lf != std::string_view::npos;
    const std::string_view part = ends ? bytes.substr(0, lf) : bytes;
    bytes.remove_prefix(ends ? lf + 1 : bytes.size());
    if (carry_.empty() && ends) {
      EndLine(part);
      continue;
    }
    carry_.append(part);
    if (ends) {
      EndLine(carry_);
      carry_.clear();
    } else {
      // A line without end so far: its full pieces go now, so that no line is held whole.
      // One character more stays, in case it is the CR before the LF.
      size_t given = 0;
      while (carry_.size() - given > kMaxLineLength + 1) {
        Emit(std::string_view(carry_).substr(given, kMaxLineLength));
        given += kMaxLineLength;
      }
      carry_.erase(0, given);
    }
  }
}

void ReportSplitter::Finish() {
  if (!carry_.empty()) EndLine(carry_);
  carry_.clear();
}

void ReportSplitter::EndLine(std::string_view line) {
  if (line.ends_with('\r')) line.remove_suffix(1);
  while (line.size() > kMaxLineLength) {
    Emit(line.substr(0, kMaxLineLength));
    line.remove_prefix(kMaxLineLength);
  }
  Emit(line);
  ++number_;
}

void ReportSplitter::Emit(std::string_view line) {
  const long number = number_ + 1;
  size_t feed = line.find(kFormFeed);
  if (feed == std::string_view::npos) {
    visitor_.OnLine(line, number);
    return;
  }
  if (!TrimBlanks(line.substr(0, feed)).empty()) visitor_.OnLine(line.substr(0, feed), number);
  while (feed != std::string_view::npos) {
    visitor_.OnPageBreak();
    const size_t next = line.find(kFormFeed, feed + 1);
    const std::string_view rest =
        line.substr(feed + 1, next == std::string_view::npos ? line.npos : next - feed - 1);
    if (!TrimBlanks(rest).empty()) {
      // The text keeps its columns: what stood before it, the form feed too, is blanked.
      std::string kept(feed + 1, ' ');
      kept.append(rest);
      visitor_.OnLine(kept, number);
    }
    feed = next;
  }
}

void SplitReport(std::string_view bytes, ReportVisitor& visitor) {
  ReportSplitter splitter(visitor);
  splitter.Feed(bytes);
  splitter.Finish();
}

bool ReadReportFile(const std::string& path, ReportVisitor& visitor,
                    const std::function<void(uint64_t done)>& progress) {
  std::optional<File> file = File::Open(path, File::Mode::kRead);
  if (!file) return false;
  ReportSplitter splitter(visitor);
  std::vector<char> piece(kReadPiece);
  uint64_t done = 0;
  for (;;) {
    const int64_t got = file->ReadSomeAt(done, piece.data(), piece.size());
    if (got < 0) return false;
    if (got == 0) break;
    splitter.Feed(std::string_view(piece.data(), static_cast<size_t>(got)));
    done += static_cast<uint64_t>(got);
    if (progress) progress(done);
  }
  splitter.Finish();
  return true;
}

// ---------------------------------------------------------------------------------------
// The company data

Account AccountRowOf(std::string_view line) {
  for (size_t i = 0; i < kAccountCount; ++i) {
    if (HasLabelAt(line, kAccountLabelColumn, kAccountLabels[i])) return static_cast<Account>(i);
  }
  return kAccountCount;
}

std::string BookLettersOf(std::string_view heading_line) {
  std::string letters;
  for (size_t book = 0; book < kMaxBooks; ++book) {
    const std::string_view heading =
        TrimBlanks(ColumnsOf(heading_line, {kHeadingFirstColumn + book * kCellWidth, kCellWidth}));
    auto known = std::find_if(
        kBookHeadings.begin(), kBookHeadings.end(),
        [heading](const BookHeading& h) { return EqualIgnoringCase(heading, h.heading); });
    if (known == kBookHeadings.end()) break;
    letters.push_back(known->letter);
  }
  return letters;
}

void SummaryReader::OnLine(std::string_view text, long number) {
  if (first_page_ && !summary_.company_name && number <= static_cast<long>(kNameLastLine)) {
    const size_t at = text.find(kNameMarker);
    if (at != std::string_view::npos) {
      // The line ends with the report's date, which is not part of the name.
      std::string_view rest = text.substr(at + std::string_view(kNameMarker).size());
      while (!rest.empty() && rest.back() == ' ') rest.remove_suffix(1);
      rest = rest.size() > kNameDateWidth ? rest.substr(0, rest.size() - kNameDateWidth) : "";
      summary_.company_name = std::string(TrimBlanks(rest).substr(0, kNameKept));
    }
  }
  if (!TrimBlanks(text).empty()) text_seen_ = true;

  if (!summary_.year_end) {
    const size_t at = text.find(kMonthsEndedMarker);
    if (at != std::string_view::npos) {
      const size_t from = at >= kMonthsWidth ? at - kMonthsWidth : 0;
      std::string_view date =
          TrimBlanks(text.substr(at + std::string_view(kMonthsEndedMarker).size()));
      date = date.substr(0, date.find(' '));
      std::optional<Date> year_end = ParseDisplayDate(date);
      if (year_end && !year_end->empty()) {
        summary_.year_end = year_end;
        summary_.months = LeadingInteger(text.substr(from, at - from));
      }
    }
  }

  if (number >= kHeadingsFirstLine && !headings_found_) ReadHeadings(text);

  if (HasLabelAt(text, kLabelColumn, kSingleValueRows[kAssetNo].label)) {
    const std::string_view asset_no =
        TrimBlanks(ColumnsOf(text, kSingleValueRows[kAssetNo].columns));
    if (asset_no.size() < kUsableAssetNoBelow) {
      for (char c : asset_no) {
        if ((c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z')) summary_.letters_in_numbers = true;
        if (c == '-') summary_.dashes_in_numbers = true;
      }
    }
  }

  if (headings_found_ && !acquired_found_ &&
      HasLabelAt(text, kLabelColumn, kRowLabels[kDateAcquired].label)) {
    acquired_found_ = true;
    for (size_t book = 0; book < summary_.books.size(); ++book) {
      const char letter = summary_.books[book];
      if (TrimBlanks(ColumnsOf(text, BookCell(book))).empty() ||
          summary_.acquired_books.find(letter) != std::string::npos ||
          summary_.acquired_books.size() >= kMaxNewSchedules) {
        continue;
      }
      summary_.acquired_books.push_back(letter);
    }
  }

  if (summary_.accounts_started) {
    const Account row = AccountRowOf(text);
    if (row != kAccountCount) {
      accounts_[row] = Trimmed(ColumnsOf(text, kAccountNumber));
      if (row == kExpenseAccount) {
        const bool blank = std::all_of(accounts_.begin(), accounts_.end(),
                                       [](const std::string& a) { return a.empty(); });
        if (!blank && sets_seen_.insert(accounts_).second) {
          summary_.account_sets.push_back(accounts_);
        }
        accounts_ = {};
      }
    }
  }
}

void SummaryReader::ReadHeadings(std::string_view text) {
  if (text.size() < kShortLineBelow) {
    short_line_seen_ = true;
  } else if (short_line_seen_ && text.size() > kHeadingLineAbove) {
    // A line that names no book is no heading line: the next short line starts the search
    // again, so that a report is not left without books by a line that only looks like one.
    summary_.books = BookLettersOf(text);
    headings_found_ = !summary_.books.empty();
    short_line_seen_ = false;
  }
}

void SummaryReader::OnPageBreak() {
  if (text_seen_) first_page_ = false;
  summary_.accounts_started = true;
}

// ---------------------------------------------------------------------------------------
// Asset pages

const std::string& AssetPage::value(SingleValue which) const {
  static const std::string kNone;
  return values[which] ? *values[which] : kNone;
}

const std::string& AssetPage::cell(Row row, size_t book) const {
  static const std::string kNone;
  return book < kMaxBooks ? rows[row].cells[book] : kNone;
}

bool AssetPage::HasRows() const {
  return std::any_of(values.begin(), values.end(), [](const auto& v) { return v.has_value(); }) ||
         std::any_of(rows.begin(), rows.end(), [](const BookCells& r) { return r.present; });
}

bool ReadRow(std::string_view line, long number, AssetPage* page) {
  for (size_t i = 0; i < kSingleValueCount; ++i) {
    if (HasLabelAt(line, kLabelColumn, kSingleValueRows[i].label)) {
      page->values[i] = Trimmed(ColumnsOf(line, kSingleValueRows[i].columns));
      if (i == kAssetNo || page->line == 0) page->line = number;
      return true;
    }
  }
  for (size_t r = 0; r < kRowCount; ++r) {
    if (!HasLabelAt(line, kLabelColumn, kRowLabels[r].label)) continue;
    BookCells& row = page->rows[r];
    row.present = true;
    for (size_t book = 0; book < kMaxBooks; ++book) {
      const std::string_view cell = TrimBlanks(ColumnsOf(line, BookCell(book)));
      row.cells[book] = kRowLabels[r].amount ? WithoutCommas(cell) : std::string(cell);
    }
    if (page->line == 0) page->line = number;
    return true;
  }
  const Account account = AccountRowOf(line);
  if (account == kAccountCount) return false;
  page->accounts[account] = Trimmed(ColumnsOf(line, kAccountNumber));
  return true;
}

void AssetPageReader::OnLine(std::string_view text, long number) {
  if (page_.has(kAssetNo) && HasLabelAt(text, kLabelColumn, kSingleValueRows[kAssetNo].label)) {
    EndPage();
  }
  static_cast<void>(ReadRow(text, number, &page_));
}

void AssetPageReader::OnPageBreak() {
  EndPage();
}

void AssetPageReader::Finish() {
  EndPage();
  if (pending_) sink_(*pending_);
  pending_.reset();
}

void AssetPageReader::EndPage() {
  if (page_.has(kAssetNo)) {
    if (pending_) sink_(*pending_);
    pending_ = std::move(page_);
  } else if (pending_) {
    // The asset goes on over this page: its rows are read as if no form feed stood between.
    for (size_t i = 0; i < kSingleValueCount; ++i) {
      if (page_.values[i]) pending_->values[i] = std::move(page_.values[i]);
    }
    for (size_t r = 0; r < kRowCount; ++r) {
      if (page_.rows[r].present) pending_->rows[r] = std::move(page_.rows[r]);
    }
    for (size_t a = 0; a < kAccountCount; ++a) {
      if (!page_.accounts[a].empty()) pending_->accounts[a] = std::move(page_.accounts[a]);
    }
  } else if (page_.HasRows()) {
    sink_(page_);
  }
  page_ = AssetPage{};
}

// ---------------------------------------------------------------------------------------
// Dispositions

std::optional<Disposition> ParseDispositionLine(std::string_view line, long number) {
  if (line.size() <= kDispositionLongerThan) return std::nullopt;
  const std::string_view acquired = TrimBlanks(ColumnsOf(line, kDspAcquired));
  const std::string_view disposed = TrimBlanks(ColumnsOf(line, kDspDisposed));
  if (acquired.empty() || disposed.empty()) return std::nullopt;
  Disposition d;
  d.line = number;
  d.asset_no = Trimmed(ColumnsOf(line, kDspAssetNo));
  d.disposal_text = std::string(disposed);
  d.disposal_date = ParseDisplayDate(disposed);
  if (d.disposal_date && d.disposal_date->empty()) d.disposal_date.reset();
  d.gross_proceeds = ReadAmount(WithoutCommas(ColumnsOf(line, kDspProceeds)));
  d.expense_of_sale = ReadAmount(WithoutCommas(ColumnsOf(line, kDspExpense)));
  return d;
}

void DispositionReader::OnLine(std::string_view text, long number) {
  if (std::optional<Disposition> d = ParseDispositionLine(text, number)) {
    dispositions_.push_back(std::move(*d));
  }
}

}  // namespace nv::aicpa
