#include "import/faswin/faswin_source.h"

#include <algorithm>
#include <charconv>

#include "base/ascii.h"
#include "base/compare_codes.h"
#include "base/money.h"
#include "base/str_format.h"

namespace nv::faswin {

const WfaFields& FieldsOf(WfaLayout layout) {
  return layout == WfaLayout::kOlder ? kOlderFields : kNewerFields;
}

std::string_view CommaRecord::Field(int number) const {
  if (number < 1 || static_cast<size_t>(number) > fields.size()) return {};
  return fields[static_cast<size_t>(number) - 1];
}

// ---------------------------------------------------------------------------------------
// Records

size_t CommaRecordReader::ClosingQuote(size_t from) {
  if (closing_known_ && (closing_ == std::string_view::npos || closing_ >= from)) return closing_;
  closing_known_ = true;
  const size_t size = bytes_.size();
  for (size_t i = bytes_.find('"', from); i != std::string_view::npos;
       i = bytes_.find('"', i + 1)) {
    if (i + 1 == size) return closing_ = i;
    const char next = bytes_[i + 1];
    if (next == ',' || next == '\n') return closing_ = i;
    if (next == '\r' && (i + 2 == size || bytes_[i + 2] == '\n')) return closing_ = i;
  }
  return closing_ = std::string_view::npos;
}

bool CommaRecordReader::Next(CommaRecord* record) {
  const size_t size = bytes_.size();
  if (pos_ >= size) return false;
  record->line = line_;
  record->fields.clear();
  for (;;) {
    if (pos_ >= size) {
      // A comma at the very end: an empty last field.
      record->fields.emplace_back();
      return true;
    }
    std::string_view field;
    size_t end = 0;  // where the separator after the field stands
    if (bytes_[pos_] == '"') {
      const size_t close = ClosingQuote(pos_ + 1);
      if (close != std::string_view::npos) {
        field = bytes_.substr(pos_ + 1, close - pos_ - 1);
        end = close + 1;
      } else {
        // Never closed: the field is the rest of its line.
        end = std::min(bytes_.find('\n', pos_), size);
        field = bytes_.substr(pos_ + 1, end - pos_ - 1);
      }
    } else {
      end = std::min(bytes_.find_first_of(",\n", pos_), size);
      field = bytes_.substr(pos_, end - pos_);
    }
    line_ += std::count(field.begin(), field.end(), '\n');
    // A CR before the line feed (or the end) belongs to the line end.
    if (end < size && bytes_[end] == '\r') ++end;
    if ((end >= size || bytes_[end] == '\n') && !field.empty() && field.back() == '\r') {
      field.remove_suffix(1);
    }
    record->fields.emplace_back(field);
    if (end < size && bytes_[end] == ',') {
      pos_ = end + 1;
      continue;
    }
    if (end < size) ++line_;  // the line feed
    pos_ = end + 1;
    return true;
  }
}

std::vector<CommaRecord> SplitRecords(std::string_view bytes) {
  std::vector<CommaRecord> records;
  CommaRecordReader reader(bytes);
  CommaRecord record;
  while (reader.Next(&record)) records.push_back(std::move(record));
  return records;
}

// ---------------------------------------------------------------------------------------
// Company and books

std::string ParseCompanyName(std::string_view bytes) {
  CommaRecordReader reader(bytes);
  CommaRecord record;
  if (!reader.Next(&record)) return "";
  return std::string(TrimBlanks(record.Field(2)));
}

bool BooksUsed::any() const {
  return std::any_of(std::begin(used), std::end(used), [](bool u) { return u; });
}

namespace {

std::optional<long> WholeNumber(std::string_view text) {
  text = TrimBlanks(text);
  if (!text.empty() && text.front() == '+') text.remove_prefix(1);
  long value = 0;
  const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (ec != std::errc() || end != text.data() + text.size() || text.empty()) return std::nullopt;
  return value;
}

}  // namespace

BooksUsed ParseBooksUsed(std::string_view bytes) {
  BooksUsed books;
  CommaRecordReader reader(bytes);
  CommaRecord record;
  while (reader.Next(&record)) {
    const std::optional<long> book = WholeNumber(record.Field(kBooksBookField));
    const std::optional<long> used = WholeNumber(record.Field(kBooksUsedField));
    if (book && *book >= 0 && *book < kFasBooks && used && *used != 0) {
      books.used[*book] = true;
    }
  }
  return books;
}

BooksUsed AllBooksUsed() {
  BooksUsed books;
  std::fill(std::begin(books.used), std::end(books.used), true);
  return books;
}

// ---------------------------------------------------------------------------------------
// The three WFA files in step

WfaReader::WfaReader(WfaLayout layout, std::string_view assets, std::string_view books,
                     std::string_view disposals)
    : layout_(layout), assets_(assets), books_(books), disposals_(disposals) {}

template <typename Take>
void WfaReader::ReadUpTo(CommaRecordReader& file, std::optional<CommaRecord>& ahead,
                         const char* name, const std::string* key, Take take) {
  for (;;) {
    if (!ahead) {
      CommaRecord record;
      if (!file.Next(&record)) return;
      ahead = std::move(record);
    }
    const std::string_view ahead_key = TrimBlanks(ahead->Field(kSystemNumberField));
    const int order = key == nullptr ? -1 : CompareCodes(ahead_key, *key);
    if (order > 0) return;
    if (order == 0) {
      take(std::move(*ahead));
    } else if (ahead->fields.size() > 1 || !ahead->fields[0].empty()) {
      passed_over_.push_back(
          {name, ahead->line, std::string(ahead_key), "no asset of its system number"});
    }
    ahead.reset();
  }
}

bool WfaReader::Next(WfaAsset* asset) {
  const WfaFields& fields = FieldsOf(layout_);
  const char* book_file =
      layout_ == WfaLayout::kOlder ? kOlderBookFileSuffix : kNewerBookFileSuffix;
  CommaRecord record;
  while (assets_.Next(&record)) {
    if (record.fields.size() != fields.asset_fields) {
      if (record.fields.size() > 1 || !record.fields[0].empty()) {
        passed_over_.push_back(
            {kAssetFileSuffix, record.line,
             std::string(TrimBlanks(record.Field(kSystemNumberField))),
             StrPrintf("%zu fields, not %zu", record.fields.size(), fields.asset_fields)});
      }
      continue;
    }
    const std::string key(TrimBlanks(record.Field(kSystemNumberField)));
    asset->asset = std::move(record);
    asset->books.clear();
    asset->disposal.reset();
    ReadUpTo(books_, book_ahead_, book_file, &key,
             [asset](CommaRecord&& book) { asset->books.push_back(std::move(book)); });
    ReadUpTo(disposals_, disposal_ahead_, kDisposalFileSuffix, &key,
             [this, asset](CommaRecord&& d) {
               if (d.fields.size() != kDisposalFields) {
                 passed_over_.push_back(
                     {kDisposalFileSuffix, d.line, std::string(TrimBlanks(d.Field(2))),
                      StrPrintf("%zu fields, not %zu", d.fields.size(), kDisposalFields)});
               } else if (asset->disposal) {
                 passed_over_.push_back({kDisposalFileSuffix, d.line,
                                         std::string(TrimBlanks(d.Field(2))),
                                         "a second disposal record of its asset"});
               } else {
                 asset->disposal = std::move(d);
               }
             });
    return true;
  }
  // What is left of the other two files belongs to no asset.
  ReadUpTo(books_, book_ahead_, book_file, nullptr, [](CommaRecord&&) {});
  ReadUpTo(disposals_, disposal_ahead_, kDisposalFileSuffix, nullptr, [](CommaRecord&&) {});
  return false;
}

std::vector<PassedOver> WfaReader::TakePassedOver() {
  std::vector<PassedOver> taken;
  taken.swap(passed_over_);
  return taken;
}

// ---------------------------------------------------------------------------------------
// CSV

std::optional<CsvBook> CsvBook::Parse(std::string bytes) {
  CsvBook book;
  book.bytes_ = std::move(bytes);
  CommaRecordReader reader(book.bytes_);
  CommaRecord first, names;
  if (!reader.Next(&first) || first.fields.size() < 3 || !reader.Next(&names)) return std::nullopt;
  for (const std::string& name : names.fields) book.names_.emplace_back(TrimBlanks(name));
  book.rows_at_ = reader.consumed();
  book.rows_line_ = reader.line();
  return book;
}

int CsvBook::ColumnNumber(std::string_view column) const {
  column = TrimBlanks(column);
  const auto it = std::find(names_.begin(), names_.end(), column);
  return it == names_.end() ? 0 : static_cast<int>(it - names_.begin()) + 1;
}

std::string CsvBook::Value(const CommaRecord& row, std::string_view column) const {
  return std::string(TrimBlanks(row.Field(ColumnNumber(column))));
}

// ---------------------------------------------------------------------------------------
// Values

double Amount(std::string_view text) {
  return ParseMoney(text).value_or(0.0);
}

std::optional<Date> SourceDate(std::string_view text) {
  text = TrimBlanks(text);
  if (text.empty()) return std::nullopt;
  std::optional<Date> date = ParseDisplayDate(text);
  if (!date && text.size() == 8) date = ParseRecordDate(text);
  if (!date || date->empty()) return std::nullopt;
  return date;
}

}  // namespace nv::faswin
