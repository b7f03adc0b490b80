#include "import/frame/current_year_files.h"

#include <cstdlib>

#include "base/coding.h"
#include "base/file_util.h"
#include "base/str_format.h"
#include "store/asset/asset.h"
#include "store/company/company.h"

namespace nv {

bool CurrentYear::OnOrAfterStart(const Date& date) const {
  return !start.empty() && !date.empty() && date >= start;
}

bool CurrentYear::Contains(const Date& date) const {
  return OnOrAfterStart(date) && (end.empty() || date <= end);
}

CurrentYear CompanyCurrentYear(const Date& last_closed, const Date& current_year_end) {
  CurrentYear year;
  year.end = current_year_end;
  if (!last_closed.empty()) {
    year.start = AddDays(last_closed, 1);
  } else if (!current_year_end.empty()) {
    year.start = AddDays(OneYearBefore(current_year_end), 1);
  }
  return year;
}

std::vector<uint32_t> ParseCurrentYearFile(const std::string& bytes) {
  size_t at = 0;
  const std::string_view header(kCurrentYearHeader);
  if (bytes.compare(0, header.size(), header) == 0) at = header.size();
  std::vector<uint32_t> records;
  for (; at + 4 <= bytes.size(); at += 4) {
    records.push_back(DecodeU32(reinterpret_cast<const uint8_t*>(bytes.data() + at)));
  }
  return records;
}

std::map<char, Section179Line> ParseSection179File(const std::string& text) {
  std::map<char, Section179Line> lines;
  size_t at = 0;
  while (at < text.size()) {
    size_t end = text.find('\n', at);
    if (end == std::string::npos) end = text.size();
    std::string line = text.substr(at, end - at);
    at = end + 1;
    if (!line.empty() && line.back() == '\r') line.pop_back();
    // "L<tab>count<tab>amount"
    if (line.size() < 5 || line[1] != '\t') continue;
    const size_t tab = line.find('\t', 2);
    if (tab == std::string::npos) continue;
    char* stop = nullptr;
    const std::string count_text = line.substr(2, tab - 2);
    const long count = std::strtol(count_text.c_str(), &stop, 10);
    if (count_text.empty() || *stop != '\0' || count < 0) continue;
    const std::string amount_text = line.substr(tab + 1);
    const double amount = std::strtod(amount_text.c_str(), &stop);
    if (amount_text.empty() || *stop != '\0') continue;
    lines[line[0]] = Section179Line{count, amount};
  }
  return lines;
}

namespace {

// The company's file of that extension, found ignoring case, or the name to create.
std::string CompanyFile(const NvCompany& company, std::string_view extension) {
  const std::string name = company.number() + "." + std::string(extension);
  if (std::optional<std::string> found = FindFileIgnoringCase(company.folder(), name)) {
    return *found;
  }
  return company.FilePath(extension);
}

}  // namespace

std::string FormatSection179File(const std::map<char, Section179Line>& lines) {
  std::string text = std::string(kSection179Header) + "\r\n";
  for (const auto& [letter, line] : lines) {
    text += StrPrintf("%c\t%ld\t%.2f\r\n", letter, line.assets, line.expense);
  }
  return text;
}

void CurrentYearFiles::Open(const NvCompany& company) {
  cy_path_ = CompanyFile(company, "CY");
  s179_path_ = CompanyFile(company, "179");
  year_ = CompanyCurrentYear(company.record().last_closed, company.record().current_year_end);
  records_.clear();
  known_.clear();
  if (std::optional<std::string> bytes = ReadFileBytes(cy_path_)) {
    for (uint32_t record : ParseCurrentYearFile(*bytes)) {
      if (known_.insert(record).second) records_.push_back(record);
    }
  }
  section_179_.clear();
  if (std::optional<std::string> text = ReadFileBytes(s179_path_)) {
    section_179_ = ParseSection179File(*text);
  }
  open_ = true;
}

void CurrentYearFiles::Record(const NvAsset& asset, uint32_t record) {
  if (!open_) return;
  const bool activity = asset.disposed() || year_.OnOrAfterStart(asset.date_in_service) ||
                        year_.OnOrAfterStart(asset.disposal_date);
  if (activity && known_.insert(record).second) records_.push_back(record);
  if (asset.disposed() && year_.Contains(asset.disposal_date)) {
    for (size_t i = 0; i < asset.schedules.size() && i < asset.schedule_letters.size(); ++i) {
      Section179Line& line = section_179_[asset.schedule_letters[i]];
      ++line.assets;
      line.expense += asset.schedules[i].sec179_expense;
    }
  }
}

bool CurrentYearFiles::Close() {
  if (!open_) return true;
  open_ = false;
  std::string cy(kCurrentYearHeader);
  for (uint32_t record : records_) PutU32(&cy, record);
  bool ok = WriteFileAtomically(cy_path_, cy);
  if (!section_179_.empty()) {
    ok = WriteFileAtomically(s179_path_, FormatSection179File(section_179_)) && ok;
  }
  return ok;
}

}  // namespace nv
