// MASTER.A, the company list of a data directory, in the installation's comma-separated
// text form (base/comma_text.h), every field quoted:
//
//   line 1      the number of companies in decimal, followed by " S" when companies live
//               in subfolders (company number + ".CLT"); "3 S" or "3"
//   lines 2...  company number, company name; each line padded with blanks to column 58
//               before its CR LF
//
// On reading only a trailing "S" of line 1 counts (the number is not trusted: reading
// goes on to the end of the file), company numbers are trimmed, upper-cased and cut to 8
// characters, names trimmed and cut to 40, and lines without a company number are
// skipped. In memory the list is kept sorted by company number in natural text order.
#pragma once

#include <string>

#include "base/installation_context.h"

namespace nv {

inline constexpr char kMasterFileName[] = "MASTER.A";
inline constexpr size_t kMasterNumberLength = 8;
inline constexpr size_t kMasterNameLength = 40;
inline constexpr size_t kMasterLineColumn = 58;

// Outcome of the company-list operations. The list is this program's own business, not a
// store status with a number of the layouts.
enum class [[nodiscard]] MasterFileStatus{
    kOk,
    kNotFound,    // no MASTER.A in the data directory
    kUnreadable,  // empty, or its first line is not a count
    kWriteFailed,
};

struct MasterFile {
  bool subfolders = false;
  MasterRecArray companies;
};

// Reads data_directory + MASTER.A (the name matched ignoring case).
MasterFileStatus ReadMasterFile(const std::string& data_directory, MasterFile* master);

// Writes the list as it stands (callers keep it sorted) to data_directory + MASTER.A.
MasterFileStatus WriteMasterFile(const std::string& data_directory, const MasterFile& master);

// Inserts a company at its place in natural order of company number, number upper-cased
// and both texts cut to their widths. A company with the same number (ignoring case) is
// replaced.
void InsertMasterRec(MasterRecArray* companies, NvMasterRec company);

// Sorts a list into natural order of company number (stable for equal numbers).
void SortMasterRecs(MasterRecArray* companies);

}  // namespace nv
