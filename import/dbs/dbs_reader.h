// Reading the whole-company text file (store/asset/asset_text_layout.h gives the record):
// lines, fields and the values they hold. Knows nothing of companies beyond the asset-number
// format and the schedule letters that the assets are read into.
//
// Lines: split at line feeds, a carriage return before the feed dropped, at most
// kTextRecordMaxLength characters each (the rest of a longer line is read as the next line);
// an empty line or one of blanks only is not a record.
//
// Fields of a fixed-length record are exactly their widths (dates 8), one after the other.
// A field of a delimited record runs to the next delimiter and is cut to its width (a date to
// 10 characters); one that starts with a double quote runs to the quote that the delimiter or
// the line's end follows, any other quote inside dropped and the character after it kept, so
// two quotes give one. What lies past the line's end reads as empty.
//
// Values: an amount or an integer that does not read as a number is 0; a flag is true only
// for "Y"; a character field gives its first character, a blank when empty; a date is
// M/D/Y with "-" or "/" (a year below 100 has two digits: below 30 in 2000 + year, else in
// 1900 + year), MMDDYY or MMDDYYYY, blanks ignored, and anything else, or a month or day of
// 0, or a day the month does not have, is the empty date; a life is the years before the
// first "-" and the months after it.
//
// The older layout has no Depr. Method and listed flag in the first schedule block: it is
// told by a 0 where that method would stand, and its first schedule's method and listed flag
// stand in User Fields 4 and 5 instead, which it leaves empty.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "base/date.h"
#include "store/asset/asset.h"
#include "store/asset/asset_no_format.h"

namespace nv {

// Splits the file's bytes into record lines, from memory or read from a file in pieces (so
// that a file of any size is never held whole). A line stays valid until the next call.
class DbsLineReader {
 public:
  // Fills `buffer` with up to `size` more bytes of the source; 0 at its end, -1 on an error.
  using ReadMore = std::function<int64_t(char* buffer, size_t size)>;

  explicit DbsLineReader(std::string_view bytes) : buffer_(bytes), at_end_(true) {}
  explicit DbsLineReader(ReadMore read, size_t piece = 64 * 1024)
      : read_(std::move(read)), piece_(piece) {}
  // A reader of the file at `path`; nullopt when it cannot be opened.
  static std::optional<DbsLineReader> OpenFile(const std::string& path);

  // The next line that is a record, or nullopt at the end (or after a read error).
  std::optional<std::string_view> Next();
  // The 1-based number of the line last returned (a long line split counts as two).
  long line_number() const { return line_number_; }
  // Bytes consumed so far.
  uint64_t position() const { return consumed_ + position_; }
  // True when reading the source failed part way.
  bool failed() const { return failed_; }

 private:
  // Makes at least `want` bytes available from position_, or all that is left.
  void Fill(size_t want);

  ReadMore read_;
  size_t piece_ = 0;
  std::string owned_;        // what was read from the source and not yet consumed
  std::string_view buffer_;  // the bytes being split: owned_, or the caller's
  size_t position_ = 0;      // in buffer_
  uint64_t consumed_ = 0;    // bytes dropped from the front of owned_
  bool at_end_ = false;
  bool failed_ = false;
  long line_number_ = 0;
};

struct DbsRecordInfo {
  bool older_layout = false;
  // Slot letters read whose slot holds a schedule (its method not N/A) that the asset's
  // schedules have no place for, because the company lacks the letter or the slot repeats
  // an earlier slot's letter.
  std::string dropped_letters;
};

// Reads one record line into `asset`, which is first cleared with `schedule_letters` (the
// company's): each slot's schedule goes to the asset's schedule of the slot's letter; a
// schedule of the asset that no slot names stays N/A. `delimiter` is '\t' or ',' for
// delimited records and '\0' for fixed-length ones; asset numbers are read at the format's
// key length in fixed records and parsed under `format`.
DbsRecordInfo ReadDbsRecord(std::string_view line, char delimiter, const NvAssetNoFormat& format,
                            std::string_view schedule_letters, NvAsset* asset);

// The asset-number format that the file's numbers were written under, as far as they tell:
// a fixed record's length gives the key length, and the "." of its number the main length;
// delimited numbers give the subasset digits, and the main length when a number is longer
// than 6. Letters and dashes are allowed when a number holds them. A free-form number tells
// nothing, and an empty file gives the usual 6 and 2.
NvAssetNoFormat GuessDbsAssetNoFormat(DbsLineReader lines, char delimiter);

// The values of single fields, as the record reader reads them.
Date ReadDbsDate(std::string_view text);
YearsMonths ReadDbsLife(std::string_view text);
double ReadDbsAmount(std::string_view text);
int ReadDbsInteger(std::string_view text);

}  // namespace nv
