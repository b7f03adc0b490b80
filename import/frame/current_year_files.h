// The company's current-year files that an import keeps up to date for the main program:
//
//   NUMBER.CY   current-year activity: the 9 bytes "NVW3000\r\n", then the record number
//               of each asset with activity in the current year, 4 bytes little-endian,
//               each number once. A file without that header is the older layout, bare
//               record numbers from its first byte; it is written back in the newer one.
//   NUMBER.179  Section 179 summary of the current year's disposals, by schedule. Text,
//               CR LF lines: the line "NVW179", then one line per schedule that had such a
//               disposal: the schedule letter, a tab, the number of disposed assets, a tab,
//               their Sec. 179 Expense with two decimals ("T\t2\t15000.00"). Lines of another
//               form are passed over when read; a schedule's line is replaced when written.
//
// An asset has current-year activity when it is disposed, or when its Date in Service or
// its disposal date falls on or after the start of the company's current year. That year
// runs from the day after Last Closed to Current Year End; without Last Closed it starts a
// year before Current Year End, and without either date only disposal counts.
//
// Both files are read when the import opens them and written whole (a new file renamed
// over the old) when it closes them, so a run killed before that leaves them as they were.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "base/date.h"

namespace nv {

class NvAsset;
class NvCompany;

inline constexpr char kCurrentYearHeader[] = "NVW3000\r\n";
inline constexpr char kSection179Header[] = "NVW179";

struct Section179Line {
  long assets = 0;
  double expense = 0;
  friend bool operator==(const Section179Line&, const Section179Line&) = default;
};

// The start and end of the company's current year (either may be empty).
struct CurrentYear {
  Date start;
  Date end;
  bool Contains(const Date& date) const;
  bool OnOrAfterStart(const Date& date) const;
};
CurrentYear CompanyCurrentYear(const Date& last_closed, const Date& current_year_end);

class CurrentYearFiles {
 public:
  // Reads both files of the company (missing files are empty).
  void Open(const NvCompany& company);
  // Records an asset that was stored at `record`.
  void Record(const NvAsset& asset, uint32_t record);
  // Writes both files; false when either could not be written.
  [[nodiscard]] bool Close();

  bool is_open() const { return open_; }
  const std::vector<uint32_t>& records() const { return records_; }
  const std::map<char, Section179Line>& section_179() const { return section_179_; }

 private:
  bool open_ = false;
  std::string cy_path_;
  std::string s179_path_;
  CurrentYear year_;
  std::vector<uint32_t> records_;  // in the order recorded
  std::set<uint32_t> known_;
  std::map<char, Section179Line> section_179_;
};

// The record numbers of a .CY file's bytes, either layout; a trailing piece shorter than
// four bytes is passed over.
std::vector<uint32_t> ParseCurrentYearFile(const std::string& bytes);
std::map<char, Section179Line> ParseSection179File(const std::string& text);
std::string FormatSection179File(const std::map<char, Section179Line>& lines);

}  // namespace nv
