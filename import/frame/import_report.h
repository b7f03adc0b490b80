// The import report: what one run of an importer read, added and left out, and why, with
// control totals over the added assets, so that a person can check a migration against
// the source product's own reports. The add step keeps it for every run of every importer.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace nv {

class NvAsset;

enum class LeftOutReason {
  kDuplicateNumber,  // an asset of that number is in the company already
  kInvalidNumber,    // the number does not fit the company's asset-number format
  kRefusedByStore,   // the store refused the add (status in `detail`)
  kFiltered,         // the importer passed the record over (its reason in `detail`)
};

struct LeftOutRecord {
  std::string source;  // where in the source: "line 12", "record 4"
  std::string number;  // the asset number as the source gave it
  LeftOutReason reason = LeftOutReason::kFiltered;
  std::string detail;
};

// Totals over the added assets that have a schedule.
struct ScheduleTotals {
  long count = 0;
  double cost = 0;                // Cash and Notes + Trade In
  double section_179 = 0;         // Sec. 179 Expense
  double prior_depreciation = 0;  // Prior Allowd Dpr
};

class ImportReport {
 public:
  void SetSource(std::string product, std::string path);
  void SetCompany(std::string number, std::string folder);

  // One source record read (whatever becomes of it).
  void CountRead() { ++read_; }
  void Added(const NvAsset& asset);
  void LeftOut(LeftOutRecord record);
  // Something of a record that was added but could not be carried whole.
  void Note(std::string source, std::string number, std::string text);

  long read() const { return read_; }
  long added() const { return added_; }
  long left_out() const { return static_cast<long>(left_out_.size()); }
  const std::vector<LeftOutRecord>& left_out_records() const { return left_out_; }
  // Notes, in the form "line 3: asset \"12.01\": text".
  const std::vector<std::string>& notes() const { return notes_; }
  const std::map<char, ScheduleTotals>& totals() const { return totals_; }

  // The report as text for people, LF line ends.
  std::string Text() const;

 private:
  std::string product_;
  std::string source_path_;
  std::string company_number_;
  std::string company_folder_;
  long read_ = 0;
  long added_ = 0;
  std::vector<LeftOutRecord> left_out_;
  std::vector<std::string> notes_;
  std::map<char, ScheduleTotals> totals_;  // by schedule letter
};

std::string_view LeftOutReasonText(LeftOutReason reason);

}  // namespace nv
