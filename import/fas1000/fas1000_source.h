// The files of a FAS 1000 or FAS 2000 company, and their readers. The company folder holds
// a binary company header, a binary book setup, and four fixed-column text files that FAS
// exports beside them. Nothing here knows of NORVANE companies: the readers turn bytes
// into plain source records, and fas1000_convert.h makes assets of them.
//
// COMPANY.SAF (binary; the first 125 bytes are read, fewer is a read failure):
//
//   OFFSET  SIZE  DESCRIPTION
//   16      30    company name (a zero byte ends it early)
//   47      1     non-zero: amounts are rounded to dollars
//
// cmpsetup.dat (binary; the first 396 bytes are read, fewer means the file is not there):
//
//   OFFSET  SIZE  DESCRIPTION
//   135     1     non-zero: the IRS book is used
//   168     1     non-zero: the internal book is used
//   201     1     non-zero: the state book is used
//   234     1     non-zero: the AMT book is used
//   300     1     non-zero: the ACE book is used
//
// The four text files: lines split at line feeds (a carriage return before the line feed
// is dropped), at most 750 characters of a line are read. Columns are 0-based character
// positions; a column past the end of a line reads as blank. Amounts are decimal numbers
// (blanks before them, anything after them ignored), whole numbers likewise; dates are
// MMDDYY with two-digit years (below 30: 20xx). Every file is in ascending order of its
// asset key, the first 10 characters of a line, compared byte by byte.
//
// assetgen.asc, one line per asset (required):
//
//   COLUMNS   CONTENT
//   0-9       asset key; also the asset number; 0-8 are shown while copying
//   11-22     company asset number ("Co Asset #")
//   24        status: "A" active; a line is imported only with "A"
//   26        property type letter
//   28-29     category
//   31-34     class life, 4 digits ("Class Life")
//   36        investment credit code: "X" no credit; "C" or "D" used property
//   61-75     investment credit amount
//   77-106    description
//   190-195   disposal date; blank when not disposed
//   197       disposal method letter
//   199-213   cash proceeds
//   215-229   other proceeds
//   231-245   expense of sale
//
// bookdata.asc, one line per asset and book (required):
//
//   COLUMNS   CONTENT
//   0-9       asset key
//   11        book digit: "0" IRS, "1" internal, "2" state, "3" AMT, "5" ACE
//   13-18     acquisition date
//   20-34     cost
//   36-37     method code
//   39-41     declining-balance percentage
//   43-46     life: years (43-44), months (45-46)
//   84-98     Sec. 179 expense
//   102       "S": declining balance switches to straight line
//   270-284   accumulated depreciation
//   371       "M": the mid-quarter convention applies
//
// lablinfo.asc, labels (optional):
//
//   COLUMNS   CONTENT
//   0-9       asset key
//   11-37     "G/L Code"
//   79-98     "Custodian"; 79-90 are also the location
//   126-137   "P O Number"
//   139-158   "Mfg Serial #"
//   160-179   "Vendor/Mfg"
//   186-191   "Warranty Date"
//   193, 214, 235, 256, 277   "FAS User Field 1" to "FAS User Field 5", 20 each
//
// listed.asc, business-use percentages (optional):
//
//   COLUMNS   CONTENT
//   0-9       asset key
//   12        book digit
//   22-24     business-use percentage
//
// Merging: each imported assetgen line takes the lablinfo line of its key and every
// bookdata line of its key, and each of those the listed line of the same key and book
// digit. A line that cannot take part (out of key order, no asset of its key, too short)
// is passed over and told, with its reason, in the passed-over list.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/date.h"
#include "base/file.h"

namespace nv::fas1000 {

// A fixed column range of a line: `at` is 0-based, `width` characters.
struct Column {
  size_t at;
  size_t width;
};

inline constexpr char kCompanyFileName[] = "COMPANY.SAF";
inline constexpr char kSetupFileName[] = "cmpsetup.dat";
inline constexpr char kAssetGenFileName[] = "assetgen.asc";
inline constexpr char kBookDataFileName[] = "bookdata.asc";
inline constexpr char kLabelFileName[] = "lablinfo.asc";
inline constexpr char kListedFileName[] = "listed.asc";

// COMPANY.SAF
inline constexpr size_t kCompanyHeaderSize = 125;
inline constexpr Column kCompanyName{16, 30};
inline constexpr size_t kRoundDollarsOffset = 47;
static_assert(kCompanyName.at + kCompanyName.width <= kCompanyHeaderSize);

// cmpsetup.dat
inline constexpr size_t kSetupSize = 396;
inline constexpr size_t kIrsBookOffset = 135;
inline constexpr size_t kInternalBookOffset = 168;
inline constexpr size_t kStateBookOffset = 201;
inline constexpr size_t kAmtBookOffset = 234;
inline constexpr size_t kAceBookOffset = 300;
static_assert(kAceBookOffset < kSetupSize);

// The text files.
inline constexpr size_t kMaxLineLength = 750;
inline constexpr Column kKey{0, 10};

// assetgen.asc
inline constexpr Column kGenMeterText{0, 9};
inline constexpr Column kGenCompanyAssetNo{11, 12};
inline constexpr size_t kGenStatus = 24;
inline constexpr size_t kGenMinLength = kGenStatus + 1;
inline constexpr size_t kGenPropertyType = 26;
inline constexpr Column kGenCategory{28, 2};
inline constexpr Column kGenClassLife{31, 4};
inline constexpr size_t kGenCreditCode = 36;
inline constexpr Column kGenCreditAmount{61, 15};
inline constexpr Column kGenDescription{77, 30};
inline constexpr Column kGenDisposalDate{190, 6};
inline constexpr size_t kGenDisposalMethod = 197;
inline constexpr Column kGenCashProceeds{199, 15};
inline constexpr Column kGenOtherProceeds{215, 15};
inline constexpr Column kGenExpenseOfSale{231, 15};

// bookdata.asc
inline constexpr size_t kBookDigit = 11;
inline constexpr Column kBookAcquired{13, 6};
inline constexpr Column kBookCost{20, 15};
inline constexpr Column kBookMethod{36, 2};
inline constexpr Column kBookPercent{39, 3};
inline constexpr Column kBookLifeYears{43, 2};
inline constexpr Column kBookLifeMonths{45, 2};
inline constexpr Column kBookSec179{84, 15};
inline constexpr size_t kBookSwitch = 102;
inline constexpr Column kBookAccumulated{270, 15};
inline constexpr size_t kBookMidQuarter = 371;

// lablinfo.asc
inline constexpr Column kLabelGlCode{11, 27};
inline constexpr Column kLabelCustodian{79, 20};
inline constexpr Column kLabelLocation{79, 12};
inline constexpr Column kLabelPoNumber{126, 12};
inline constexpr Column kLabelSerial{139, 20};
inline constexpr Column kLabelVendor{160, 20};
inline constexpr Column kLabelWarranty{186, 6};
inline constexpr size_t kLabelUserFieldCount = 5;
inline constexpr size_t kLabelUserFieldWidth = 20;
// Field 1 starts at 193, each next one 21 columns on (20 and a blank).
inline constexpr size_t kLabelUserFieldAt[kLabelUserFieldCount] = {193, 214, 235, 256, 277};

// listed.asc
inline constexpr size_t kListedDigit = 12;
inline constexpr Column kListedPercent{22, 3};

// ---- Records ---------------------------------------------------------------------------

struct CompanyHeader {
  std::string name;  // trimmed
  bool round_dollars = false;
};

// The books cmpsetup.dat says are used.
struct BooksUsed {
  bool irs = false;
  bool internal = false;
  bool state = false;
  bool amt = false;
  bool ace = false;
  friend bool operator==(const BooksUsed&, const BooksUsed&) = default;
};

// One assetgen.asc line. Texts are as the columns hold them (blanks kept).
struct GeneralLine {
  long line = 0;  // 1-based line of the file
  std::string key;
  std::string meter_text;
  std::string company_asset_no;
  char status = ' ';
  char property_type = ' ';
  std::string category;
  std::string class_life;
  char credit_code = ' ';
  double credit_amount = 0;
  std::string description;
  bool disposed = false;  // the disposal date columns are not blank
  Date disposal_date;     // empty when the columns do not name a valid date
  char disposal_method = ' ';
  double cash_proceeds = 0;
  double other_proceeds = 0;
  double expense_of_sale = 0;
};

// One bookdata.asc line, with the business-use percentage of its listed.asc line.
struct BookLine {
  long line = 0;
  std::string key;
  char digit = ' ';
  Date acquired;  // empty when the columns do not name a valid date
  double cost = 0;
  std::string method;  // two characters as they stand
  int percent = 0;     // declining-balance percentage
  int life_years = 0;
  int life_months = 0;
  double sec179 = 0;
  bool switch_to_sl = false;
  double accumulated = 0;
  bool mid_quarter = false;
  std::optional<int> business_percent;  // from listed.asc
};

// One lablinfo.asc line.
struct LabelLine {
  long line = 0;
  std::string key;
  std::string gl_code;
  std::string custodian;
  std::string location;  // columns 79-90, blanks removed at both ends, at most 10
  std::string po_number;
  std::string serial;
  std::string vendor;
  std::string warranty;
  std::string user_fields[kLabelUserFieldCount];
};

// One listed.asc line.
struct ListedLine {
  long line = 0;
  std::string key;
  char digit = ' ';
  int percent = 0;
};

// A character for a message: "X" in quotes when printable, else its code ("byte 0x09").
std::string ShownChar(char c);

// Which file a passed-over line is in.
enum class SourceFile { kAssetGen, kBookData, kLabels, kListed };
std::string_view SourceFileName(SourceFile file);

struct PassedOverLine {
  SourceFile file = SourceFile::kAssetGen;
  long line = 0;
  std::string key;  // as the line holds it (blanks kept)
  std::string reason;
};

// One asset to import: its assetgen line with the lines of the other files that have its key.
struct FasAsset {
  GeneralLine general;
  std::optional<LabelLine> label;
  std::vector<BookLine> books;  // in file order
};

// ---- Readers ----------------------------------------------------------------------------

// nullopt when fewer than kCompanyHeaderSize bytes are given.
std::optional<CompanyHeader> ParseCompanyHeader(std::string_view bytes);
// nullopt when fewer than kSetupSize bytes are given.
std::optional<BooksUsed> ParseBookSetup(std::string_view bytes);

// A decimal number in the column, after blanks; 0 when there is none (or it is not finite).
double ColumnAmount(std::string_view line, Column column);
// A whole number in the column, after blanks; 0 when there is none. Held to +-999,999,999.
int ColumnInteger(std::string_view line, Column column);
// The column's characters (fewer, or none, past the end of the line).
std::string_view ColumnText(std::string_view line, Column column);
// The character at `at`, or a blank past the end of the line.
char ColumnChar(std::string_view line, size_t at);
// MMDDYY; the empty date when blank, zero or not a valid date.
Date ColumnDate(std::string_view line, Column column);

GeneralLine ParseGeneralLine(std::string_view line);
BookLine ParseBookLine(std::string_view line);
LabelLine ParseLabelLine(std::string_view line);
ListedLine ParseListedLine(std::string_view line);

// The lines of one text file, read in pieces from the file or taken from bytes in memory.
// Lines longer than kMaxLineLength are cut there; the rest of such a line is passed over.
class LineSource {
 public:
  // A source without lines (an optional file that is not there).
  LineSource() = default;
  // REQUIRES: `bytes` outlive the source.
  explicit LineSource(std::string_view bytes) : bytes_(bytes), in_memory_(true) {}
  // The file at `path`; nullopt when it cannot be opened.
  static std::optional<LineSource> Open(const std::string& path);

  LineSource(LineSource&&) = default;
  LineSource& operator=(LineSource&&) = default;

  // The next line without its line end; false at the end. The view lives until the next call.
  bool Next(std::string_view* line);
  long line_number() const { return line_number_; }
  // Bytes of the source consumed so far.
  uint64_t consumed() const { return consumed_; }
  // Size in bytes (0 when unknown).
  uint64_t size() const { return size_; }

 private:
  // More bytes into the window; false at the end of the source.
  bool Fill();

  // The bytes at hand: the whole source in memory, or the piece of the file read last.
  std::string_view Window() const {
    return in_memory_ ? bytes_ : std::string_view(buffer_).substr(0, window_);
  }

  std::string_view bytes_;  // in memory: the whole source
  bool in_memory_ = false;
  std::optional<File> file_;
  std::string buffer_;  // from a file: the piece read last, window_ bytes of it
  size_t window_ = 0;
  uint64_t file_offset_ = 0;
  size_t at_ = 0;  // next unread byte of the window
  std::string line_;
  long line_number_ = 0;
  uint64_t consumed_ = 0;
  uint64_t size_ = 0;
};

// Merges the four text files by asset key: each call of Next gives the next assetgen line
// to import with its lines from the other files. Lines passed over on the way are kept
// for TakePassedOver; once Next has returned false they include the lines the other files
// had left.
class FasSourceReader {
 public:
  FasSourceReader(LineSource assetgen, LineSource bookdata, LineSource labels, LineSource listed);

  bool Next(FasAsset* asset);
  // The lines passed over since the last call, in the order met.
  std::vector<PassedOverLine> TakePassedOver();

  long assetgen_lines() const { return assetgen_.line_number(); }
  uint64_t assetgen_consumed() const { return assetgen_.consumed(); }
  uint64_t assetgen_size() const { return assetgen_.size(); }

 private:
  // One of the three files that follow assetgen.asc, with one line looked at ahead.
  struct Follower {
    Follower(SourceFile f, LineSource s, size_t min)
        : file(f), source(std::move(s)), min_length(min) {}
    SourceFile file;
    LineSource source;
    size_t min_length;    // lines shorter than this are passed over
    bool primed = false;  // the first line has been looked at
    bool has_line = false;
    std::string line;  // the line ahead
    long line_number = 0;
    bool started = false;  // a well-formed line came before the line ahead
    std::string last_key;  // and this was its key
  };

  // Moves `f` to its next well-formed line (passing over the others); false at its end.
  bool Advance(Follower& f);
  // Passes over the lines of `f` with a key below `key` (or equal to it, and a book digit
  // below `digit`, when `digit` is given).
  void PassBelow(Follower& f, std::string_view key, std::optional<char> digit = std::nullopt);
  void PassOver(Follower& f);
  // Why a line of another file whose key met no asset was passed over.
  std::string UnmatchedReason(const Follower& f, std::string_view key) const;
  void DrainFollowers();

  LineSource assetgen_;
  Follower books_;
  Follower labels_;
  Follower listed_;
  std::string last_asset_key_;  // the assetgen line given before the current one
  bool any_asset_ = false;
  std::string current_key_;                  // the assetgen line being given (or given last)
  std::set<std::string> passed_asset_keys_;  // keys of assetgen lines passed over
  std::vector<PassedOverLine> passed_;
  bool drained_ = false;
};

}  // namespace nv::fas1000
