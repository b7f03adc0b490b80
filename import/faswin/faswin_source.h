// The files of a FAS for Windows company, and their readers. FAS for Windows exports a
// company as comma-separated ASCII files named after a four-character prefix ("ACME" in
// ACMEcmpy.wfa), or one book of it as a ".CSV" file. Nothing here knows of NORVANE
// companies: the readers turn bytes into plain source records, and faswin_convert.h makes
// assets of them.
//
// Records (all files): fields are separated by ",", a record ends at a line feed. A field
// that begins with a double quote runs to the next double quote followed by ",", a line
// feed or the end of the data; any other double quote inside it is a character of the
// field, and so is a line feed. Windows writes CR LF, so a quote followed by CR LF closes
// the field too, and a CR before the line feed is not part of the last field. A quote
// that is never closed ends at the end of its line, so one stray quote cannot swallow
// the rest of the file.
//
// Field numbers below count from 1. Where the two WFA layouts differ they are given as
// OLDER / NEWER: the older layout has prefix + "bkas.wfa" as its book file, the newer one
// prefix + "part.wfa".
//
// prefix + "cmpy.wfa", the company: field 2 of the first record is its name.
// prefix + "book.wfa", the books: field 2 the book number (0 to 6), field 4 a non-zero
//   whole number when the book is used. Without the file every book counts as used.
//
// prefix + "asst.wfa", one record per asset, exactly 33 (older) or 35 (newer) fields;
// records of any other length are passed over:
//
//   FIELD    CONTENT
//   2        FAS system number: the asset number, and the key of the three files
//   3 / -    status: "I" inactive, "D" disposed (newer layout: chld.wfa field 43)
//   5 / 3    property type letter
//   6 / 4    class; the first 2 characters are the category
//   8 / 6    ITC option: "X" no credit, "C" or "D" used property
//   11 / -   ITC amount (newer layout: chld.wfa field 51)
//   12 / 8   acquisition date
//   14 / -   disposal date (newer: chld.wfa 45)
//   15 / -   disposal method letter (newer: chld.wfa 46)
//   16-18 /- cash proceeds, non-cash proceeds, expense of sale (newer: chld.wfa 47-49)
//   20 / 11  description
//   21 / 12  location
//   23 / 14  G/L asset account
//   24 / 15  G/L accumulated depreciation account
//
// prefix + "chld.wfa", disposal data (may be missing), 51 fields a record; others are
// passed over. Field 2 the system number; 43 status; 45 disposal date; 46 disposal method;
// 47, 48, 49 cash proceeds, non-cash proceeds, expense of sale; 51 ITC amount.
//
// prefix + "bkas.wfa" / prefix + "part.wfa", one record per asset and FAS book:
//
//   FIELD    CONTENT
//   2        FAS system number
//   3        FAS book number, 0 to 6
//   4 / 5    date placed in service
//   5 / 6    cost
//   6 / 7    method code (the first 2 characters)
//   7 / 8    declining-balance percentage
//   8 / 9    life: years in the first 2 characters, months from the third on
//   10 / 11  "1": the next field is Sec. 179 expense, else bonus depreciation
//   11 / 12  Sec. 179 expense or bonus depreciation
//   13 / 14  mid-quarter mark: beginning with "1" when the mid-quarter convention applies
//   19 / 18  accumulated depreciation before the current year
//
// Merging: the asset file leads. The book and disposal files are read in step with it,
// both in ascending order of system number (CompareCodes): records are read until one
// whose system number is not smaller than the asset's, and those of the same number
// belong to the asset. A record that belongs to no asset is passed over and told.
//
// The CSV export of one book: the first line has at least three fields and is passed
// over; the second names the columns; every further line is one asset, its fields looked
// up by column name (a line shorter than the names reads empty for the rest).
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/date.h"

namespace nv::faswin {

inline constexpr char kCompanyFileSuffix[] = "cmpy.wfa";
inline constexpr size_t kPrefixLength = 4;
inline constexpr size_t kCompanyFileNameLength = kPrefixLength + 8;
static_assert(kCompanyFileNameLength == 12);
inline constexpr char kBookFileSuffix[] = "book.wfa";
inline constexpr char kAssetFileSuffix[] = "asst.wfa";
inline constexpr char kOlderBookFileSuffix[] = "bkas.wfa";
inline constexpr char kNewerBookFileSuffix[] = "part.wfa";
inline constexpr char kDisposalFileSuffix[] = "chld.wfa";

inline constexpr int kFasBooks = 7;  // book numbers 0 to 6

enum class WfaLayout { kOlder, kNewer };

// The fields of one WFA layout, as 1-based field numbers; 0 where the layout keeps the
// value in chld.wfa instead.
struct WfaFields {
  size_t asset_fields;  // exact field count of an asset record
  int status;
  int property_type;
  int category;
  int itc_option;
  int itc_amount;
  int acquisition_date;
  int disposal_date;
  int disposal_method;
  int cash_proceeds;
  int non_cash_proceeds;
  int expense_of_sale;
  int description;
  int location;
  int asset_account;
  int accumulated_account;
  // The book file.
  int in_service;
  int cost;
  int method;
  int percent;
  int life;
  int sec179_flag;
  int sec179_or_bonus;
  int mid_quarter;
  int prior_depreciation;
};

inline constexpr WfaFields kOlderFields = {33, 3,  5,  6, 8, 11, 12, 14, 15, 16, 17, 18, 20,
                                           21, 23, 24, 4, 5, 6,  7,  8,  10, 11, 13, 19};
inline constexpr WfaFields kNewerFields = {35, 0,  3,  4, 6, 0, 8, 0, 0,  0,  0,  0, 11,
                                           12, 14, 15, 5, 6, 7, 8, 9, 11, 12, 14, 18};
const WfaFields& FieldsOf(WfaLayout layout);

inline constexpr int kBooksBookField = 2;  // book.wfa
inline constexpr int kBooksUsedField = 4;
inline constexpr int kSystemNumberField = 2;
inline constexpr int kBookNumberField = 3;
inline constexpr size_t kDisposalFields = 51;
inline constexpr int kChldStatus = 43;
inline constexpr int kChldDisposalDate = 45;
inline constexpr int kChldDisposalMethod = 46;
inline constexpr int kChldCashProceeds = 47;
inline constexpr int kChldNonCashProceeds = 48;
inline constexpr int kChldExpenseOfSale = 49;
inline constexpr int kChldItcAmount = 51;

// One record of a comma-separated file.
struct CommaRecord {
  long line = 0;  // the line it starts on, from 1
  std::vector<std::string> fields;

  // Field `number` (from 1); empty when the record is shorter.
  std::string_view Field(int number) const;
};

// Reads records one by one from bytes it does not own (they must outlive it).
class CommaRecordReader {
 public:
  explicit CommaRecordReader(std::string_view bytes, size_t from = 0, long line = 1)
      : bytes_(bytes), pos_(from), line_(line) {}
  // The next record; false at the end of the data. A final line feed ends the last record
  // rather than starting an empty one.
  bool Next(CommaRecord* record);
  size_t consumed() const { return pos_; }
  long line() const { return line_; }  // the line the next record starts on

 private:
  // Where the quoted field opened at `from` closes: the next quote followed by ",", a line
  // feed, CR LF or the end; npos when there is none. Fields only move forward, so the
  // last answer serves until the reader passes it, and no byte is searched twice.
  size_t ClosingQuote(size_t from);

  std::string_view bytes_;
  size_t pos_ = 0;
  long line_ = 1;
  bool closing_known_ = false;
  size_t closing_ = 0;
};

// The whole of a file's bytes split into records.
std::vector<CommaRecord> SplitRecords(std::string_view bytes);

// cmpy.wfa: the company name (field 2 of the first record); empty when there is none.
std::string ParseCompanyName(std::string_view bytes);

// book.wfa: for each FAS book 0 to 6, whether it is used.
struct BooksUsed {
  bool used[kFasBooks] = {};
  bool any() const;
};
BooksUsed ParseBooksUsed(std::string_view bytes);
BooksUsed AllBooksUsed();

// A record of the book or disposal file passed over, and why.
struct PassedOver {
  std::string file;  // "part.wfa"
  long line = 0;
  std::string key;
  std::string reason;
};

// One asset as the three WFA files give it.
struct WfaAsset {
  CommaRecord asset;
  std::optional<CommaRecord> disposal;  // chld.wfa
  std::vector<CommaRecord> books;       // bkas.wfa / part.wfa, in file order
};

// Reads the asset file and, in step, the book and disposal files. The bytes must outlive
// the reader.
class WfaReader {
 public:
  WfaReader(WfaLayout layout, std::string_view assets, std::string_view books,
            std::string_view disposals);

  WfaLayout layout() const { return layout_; }
  // The next asset record of the right length; false at the end. Records of the asset
  // file that are passed over are counted in passed_over_assets().
  bool Next(WfaAsset* asset);
  // Book and disposal records passed over since the last call, and asset records.
  std::vector<PassedOver> TakePassedOver();
  size_t assets_consumed() const { return assets_.consumed(); }

 private:
  // Reads `file` up to `key`: records with smaller keys are passed over, and those equal
  // to it are handed to `take`.
  template <typename Take>
  void ReadUpTo(CommaRecordReader& file, std::optional<CommaRecord>& ahead, const char* name,
                const std::string* key, Take take);  // key nullptr: to the end

  WfaLayout layout_;
  CommaRecordReader assets_;
  CommaRecordReader books_;
  CommaRecordReader disposals_;
  std::optional<CommaRecord> book_ahead_;
  std::optional<CommaRecord> disposal_ahead_;
  bool books_started_ = false;
  bool disposals_started_ = false;
  std::vector<PassedOver> passed_over_;
};

// The CSV export of one book. It keeps the file's bytes and reads its data lines one by
// one, so that a large file is never held twice.
class CsvBook {
 public:
  // nullopt when the first line has fewer than three fields or there is no line of
  // column names.
  static std::optional<CsvBook> Parse(std::string bytes);

  const std::vector<std::string>& column_names() const { return names_; }
  // A reader of the data lines, one asset each. It reads the book's bytes: the book must
  // outlive it and not be moved meanwhile.
  CommaRecordReader Rows() const { return CommaRecordReader(bytes_, rows_at_, rows_line_); }
  size_t size() const { return bytes_.size(); }
  // The field number (from 1) of the first column of that name, blanks around it ignored;
  // 0 when there is none.
  int ColumnNumber(std::string_view column) const;
  // The value of a row under a column name (blanks around the name ignored), without
  // blanks at either end; empty when there is no such column or the row is short.
  std::string Value(const CommaRecord& row, std::string_view column) const;

 private:
  std::string bytes_;
  std::vector<std::string> names_;
  size_t rows_at_ = 0;  // where the first data line starts
  long rows_line_ = 0;
};

// Helpers of both forms.
// An amount: ParseMoney's forms, 0 for anything else.
double Amount(std::string_view text);
// A date: MM/DD/YYYY or MM/DD/YY (two-digit years below 30 are 20xx), or MMDDYYYY;
// nullopt for anything else, and for blanks.
std::optional<Date> SourceDate(std::string_view text);

}  // namespace nv::faswin
