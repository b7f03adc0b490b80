#include "import/fas1000/fas1000_source.h"

#include <charconv>
#include <cmath>

#include "base/ascii.h"
#include "base/str_format.h"

namespace nv::fas1000 {
namespace {

// Bytes read from a file at a time.
constexpr size_t kReadPiece = 64 * 1024;

// Minimum lengths of the lines of the other files: up to the last column that every line
// needs (the book digit; the key of a label line).
constexpr size_t kBookMinLength = kBookDigit + 1;
constexpr size_t kLabelMinLength = kKey.width;
constexpr size_t kListedMinLength = kListedDigit + 1;

bool IsPrintable(char c) {
  return c >= 0x20 && c < 0x7F;
}

std::string_view SkipBlanks(std::string_view text) {
  while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
  return text;
}

std::string Text(std::string_view line, Column column) {
  return std::string(ColumnText(line, column));
}

std::string Key(std::string_view line) {
  return Text(line, kKey);
}

}  // namespace

std::string ShownChar(char c) {
  return IsPrintable(c) ? StrPrintf("\"%c\"", c)
                        : StrPrintf("byte 0x%02X", static_cast<unsigned char>(c));
}

std::string_view SourceFileName(SourceFile file) {
  switch (file) {
    case SourceFile::kAssetGen:
      return kAssetGenFileName;
    case SourceFile::kBookData:
      return kBookDataFileName;
    case SourceFile::kLabels:
      return kLabelFileName;
    case SourceFile::kListed:
      return kListedFileName;
  }
  return "";
}

// ---- Binary headers ---------------------------------------------------------------------

std::optional<CompanyHeader> ParseCompanyHeader(std::string_view bytes) {
  if (bytes.size() < kCompanyHeaderSize) return std::nullopt;
  std::string_view name = bytes.substr(kCompanyName.at, kCompanyName.width);
  name = name.substr(0, name.find('\0'));
  CompanyHeader header;
  header.name = std::string(TrimBlanks(name));
  header.round_dollars = bytes[kRoundDollarsOffset] != 0;
  return header;
}

std::optional<BooksUsed> ParseBookSetup(std::string_view bytes) {
  if (bytes.size() < kSetupSize) return std::nullopt;
  BooksUsed books;
  books.irs = bytes[kIrsBookOffset] != 0;
  books.internal = bytes[kInternalBookOffset] != 0;
  books.state = bytes[kStateBookOffset] != 0;
  books.amt = bytes[kAmtBookOffset] != 0;
  books.ace = bytes[kAceBookOffset] != 0;
  return books;
}

// ---- Columns ----------------------------------------------------------------------------

std::string_view ColumnText(std::string_view line, Column column) {
  if (column.at >= line.size()) return {};
  return line.substr(column.at, column.width);
}

char ColumnChar(std::string_view line, size_t at) {
  return at < line.size() ? line[at] : ' ';
}

double ColumnAmount(std::string_view line, Column column) {
  std::string_view text = SkipBlanks(ColumnText(line, column));
  if (!text.empty() && text.front() == '+') text.remove_prefix(1);
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  static_cast<void>(end);
  if (error != std::errc() || !std::isfinite(value)) return 0;
  return value;
}

int ColumnInteger(std::string_view line, Column column) {
  std::string_view text = SkipBlanks(ColumnText(line, column));
  bool negative = false;
  if (!text.empty() && (text.front() == '+' || text.front() == '-')) {
    negative = text.front() == '-';
    text.remove_prefix(1);
  }
  constexpr int kLimit = 999'999'999;
  int value = 0;
  for (char c : text) {
    if (c < '0' || c > '9') break;
    value = value > (kLimit - (c - '0')) / 10 ? kLimit : value * 10 + (c - '0');
  }
  return negative ? -value : value;
}

Date ColumnDate(std::string_view line, Column column) {
  std::string_view text = ColumnText(line, column);
  if (text.size() != 6) return Date{};
  for (char c : text) {
    if (c < '0' || c > '9') return Date{};
  }
  auto two = [text](size_t at) { return (text[at] - '0') * 10 + (text[at + 1] - '0'); };
  const Date date{two(0), two(2), ExpandTwoDigitYear(two(4))};
  return IsValidDate(date) ? date : Date{};
}

// ---- Lines ------------------------------------------------------------------------------

GeneralLine ParseGeneralLine(std::string_view line) {
  GeneralLine g;
  g.key = Key(line);
  g.meter_text = Text(line, kGenMeterText);
  g.company_asset_no = Text(line, kGenCompanyAssetNo);
  g.status = ColumnChar(line, kGenStatus);
  g.property_type = ColumnChar(line, kGenPropertyType);
  g.category = Text(line, kGenCategory);
  g.class_life = Text(line, kGenClassLife);
  g.credit_code = ColumnChar(line, kGenCreditCode);
  g.credit_amount = ColumnAmount(line, kGenCreditAmount);
  g.description = Text(line, kGenDescription);
  g.disposed = !TrimBlanks(ColumnText(line, kGenDisposalDate)).empty();
  g.disposal_date = ColumnDate(line, kGenDisposalDate);
  g.disposal_method = ColumnChar(line, kGenDisposalMethod);
  g.cash_proceeds = ColumnAmount(line, kGenCashProceeds);
  g.other_proceeds = ColumnAmount(line, kGenOtherProceeds);
  g.expense_of_sale = ColumnAmount(line, kGenExpenseOfSale);
  return g;
}

BookLine ParseBookLine(std::string_view line) {
  BookLine b;
  b.key = Key(line);
  b.digit = ColumnChar(line, kBookDigit);
  b.acquired = ColumnDate(line, kBookAcquired);
  b.cost = ColumnAmount(line, kBookCost);
  b.method = Text(line, kBookMethod);
  b.percent = ColumnInteger(line, kBookPercent);
  b.life_years = ColumnInteger(line, kBookLifeYears);
  b.life_months = ColumnInteger(line, kBookLifeMonths);
  b.sec179 = ColumnAmount(line, kBookSec179);
  b.switch_to_sl = ColumnChar(line, kBookSwitch) == 'S';
  b.accumulated = ColumnAmount(line, kBookAccumulated);
  b.mid_quarter = ColumnChar(line, kBookMidQuarter) == 'M';
  return b;
}

LabelLine ParseLabelLine(std::string_view line) {
  LabelLine l;
  l.key = Key(line);
  l.gl_code = Text(line, kLabelGlCode);
  l.custodian = Text(line, kLabelCustodian);
  l.location = std::string(TrimBlanks(ColumnText(line, kLabelLocation)));
  if (l.location.size() > 10) l.location.resize(10);
  l.po_number = Text(line, kLabelPoNumber);
  l.serial = Text(line, kLabelSerial);
  l.vendor = Text(line, kLabelVendor);
  l.warranty = Text(line, kLabelWarranty);
  for (size_t i = 0; i < kLabelUserFieldCount; ++i) {
    l.user_fields[i] = Text(line, {kLabelUserFieldAt[i], kLabelUserFieldWidth});
  }
  return l;
}

ListedLine ParseListedLine(std::string_view line) {
  ListedLine l;
  l.key = Key(line);
  l.digit = ColumnChar(line, kListedDigit);
  l.percent = ColumnInteger(line, kListedPercent);
  return l;
}

// ---- LineSource -------------------------------------------------------------------------

std::optional<LineSource> LineSource::Open(const std::string& path) {
  std::optional<File> file = File::Open(path, File::Mode::kRead);
  if (!file) return std::nullopt;
  LineSource source;
  source.size_ = file->Size().value_or(0);
  source.file_ = std::move(file);
  return source;
}

bool LineSource::Fill() {
  if (in_memory_ || !file_) return false;
  buffer_.resize(kReadPiece);
  const int64_t got = file_->ReadSomeAt(file_offset_, buffer_.data(), buffer_.size());
  if (got <= 0) {
    buffer_.clear();
    window_ = 0;
    at_ = 0;
    return false;
  }
  file_offset_ += static_cast<uint64_t>(got);
  window_ = static_cast<size_t>(got);
  at_ = 0;
  return true;
}

bool LineSource::Next(std::string_view* line) {
  line_.clear();
  size_t length = 0;  // of the whole line, beyond what is kept
  bool any = false;
  bool ended = false;
  while (!ended) {
    if (at_ >= Window().size() && !Fill()) break;
    const std::string_view window = Window();
    any = true;
    const size_t lf = window.find('\n', at_);
    const size_t end = lf == std::string_view::npos ? window.size() : lf;
    // One character more than a line keeps, so that a CR right before the LF is seen.
    const size_t room = kMaxLineLength + 1 - std::min(line_.size(), kMaxLineLength + 1);
    line_.append(window.substr(at_, std::min(end - at_, room)));
    length += end - at_;
    consumed_ += end - at_;
    if (lf != std::string_view::npos) {
      ++consumed_;
      ended = true;
    }
    at_ = lf == std::string_view::npos ? window.size() : lf + 1;
  }
  if (!any) return false;
  if (length == line_.size() && !line_.empty() && line_.back() == '\r') line_.pop_back();
  if (line_.size() > kMaxLineLength) line_.resize(kMaxLineLength);
  ++line_number_;
  *line = line_;
  return true;
}

// ---- FasSourceReader --------------------------------------------------------------------

FasSourceReader::FasSourceReader(LineSource assetgen, LineSource bookdata, LineSource labels,
                                 LineSource listed)
    : assetgen_(std::move(assetgen)),
      books_{SourceFile::kBookData, std::move(bookdata), kBookMinLength},
      labels_{SourceFile::kLabels, std::move(labels), kLabelMinLength},
      listed_{SourceFile::kListed, std::move(listed), kListedMinLength} {}

std::vector<PassedOverLine> FasSourceReader::TakePassedOver() {
  std::vector<PassedOverLine> passed;
  passed.swap(passed_);
  return passed;
}

bool FasSourceReader::Advance(Follower& f) {
  if (f.has_line) {
    f.last_key = Key(f.line);
    f.started = true;
  }
  f.has_line = false;
  std::string_view line;
  while (f.source.Next(&line)) {
    const long number = f.source.line_number();
    if (line.size() < f.min_length || !IsPrintable(line.front())) {
      std::string reason = line.empty() || !IsPrintable(line.front())
                               ? std::string("the line does not begin with a printable character")
                               : StrPrintf("the line is shorter than %zu characters", f.min_length);
      passed_.push_back({f.file, number, std::string(line.substr(0, kKey.width)), reason});
      continue;
    }
    f.line.assign(line);
    f.line_number = number;
    f.has_line = true;
    return true;
  }
  return false;
}

std::string FasSourceReader::UnmatchedReason(const Follower& f, std::string_view key) const {
  if (f.started && key < f.last_key) {
    return StrPrintf("out of key order in %s", std::string(SourceFileName(f.file)).c_str());
  }
  if ((any_asset_ && key == last_asset_key_) || key == current_key_) {
    if (f.file == SourceFile::kListed) {
      return StrPrintf("no book line of this asset has book digit %s",
                       ShownChar(ColumnChar(f.line, kListedDigit)).c_str());
    }
    return StrPrintf("another line of this asset in %s came first",
                     std::string(SourceFileName(f.file)).c_str());
  }
  if (passed_asset_keys_.contains(std::string(key))) {
    return StrPrintf("the asset's line in %s was passed over", kAssetGenFileName);
  }
  return StrPrintf("no line in %s has this key", kAssetGenFileName);
}

void FasSourceReader::PassOver(Follower& f) {
  const std::string key = Key(f.line);
  passed_.push_back({f.file, f.line_number, key, UnmatchedReason(f, key)});
  Advance(f);
}

void FasSourceReader::PassBelow(Follower& f, std::string_view key, std::optional<char> digit) {
  if (!f.primed) {
    f.primed = true;
    Advance(f);
  }
  while (f.has_line) {
    const std::string_view line_key = ColumnText(f.line, kKey);
    if (line_key > key) return;
    if (line_key == key &&
        (!digit || static_cast<unsigned char>(ColumnChar(f.line, kListedDigit)) >=
                       static_cast<unsigned char>(*digit))) {
      return;
    }
    PassOver(f);
  }
}

bool FasSourceReader::Next(FasAsset* asset) {
  std::string_view line;
  while (assetgen_.Next(&line)) {
    const long number = assetgen_.line_number();
    const std::string key = Key(line);
    std::string reason;
    if (line.empty() || !IsPrintable(line.front())) {
      reason = "the line does not begin with a printable character";
    } else if (line.size() < kGenMinLength) {
      reason = StrPrintf("the line is shorter than %zu characters", kGenMinLength);
    } else if (line[kGenStatus] != 'A') {
      reason = StrPrintf("status %s in column %zu, not \"A\"", ShownChar(line[kGenStatus]).c_str(),
                         kGenStatus);
    } else if (any_asset_ && key < last_asset_key_) {
      reason = StrPrintf("out of key order in %s", kAssetGenFileName);
    } else if (any_asset_ && key == last_asset_key_) {
      reason = "the line before has the same key";
    }
    if (!reason.empty()) {
      passed_.push_back({SourceFile::kAssetGen, number, key, std::move(reason)});
      passed_asset_keys_.insert(key);
      continue;
    }

    current_key_ = key;
    *asset = FasAsset{};
    asset->general = ParseGeneralLine(line);
    asset->general.line = number;

    PassBelow(labels_, key);
    if (labels_.has_line && ColumnText(labels_.line, kKey) == key) {
      asset->label = ParseLabelLine(labels_.line);
      asset->label->line = labels_.line_number;
      Advance(labels_);
    }

    PassBelow(books_, key);
    while (books_.has_line && ColumnText(books_.line, kKey) == key) {
      BookLine book = ParseBookLine(books_.line);
      book.line = books_.line_number;
      Advance(books_);
      PassBelow(listed_, key, book.digit);
      if (listed_.has_line && ColumnText(listed_.line, kKey) == key &&
          ColumnChar(listed_.line, kListedDigit) == book.digit) {
        book.business_percent = ParseListedLine(listed_.line).percent;
        Advance(listed_);
      }
      asset->books.push_back(std::move(book));
    }

    last_asset_key_ = key;
    any_asset_ = true;
    return true;
  }
  DrainFollowers();
  return false;
}

void FasSourceReader::DrainFollowers() {
  if (drained_) return;
  drained_ = true;
  for (Follower* f : {&labels_, &books_, &listed_}) {
    if (!f->primed) {
      f->primed = true;
      Advance(*f);
    }
    while (f->has_line) PassOver(*f);
  }
}

}  // namespace nv::fas1000
