#include "store/company/master_file.h"

#include <algorithm>
#include <cctype>
#include <string_view>

#include "base/ascii.h"
#include "base/comma_text.h"
#include "base/compare_codes.h"
#include "base/file_util.h"

namespace nv {
namespace {

NvMasterRec Normalized(NvMasterRec company) {
  company.number = AsciiUpper(TrimBlanks(company.number));
  if (company.number.size() > kMasterNumberLength) company.number.resize(kMasterNumberLength);
  company.name = std::string(TrimBlanks(company.name));
  if (company.name.size() > kMasterNameLength) company.name.resize(kMasterNameLength);
  return company;
}

}  // namespace

MasterFileStatus ReadMasterFile(const std::string& data_directory, MasterFile* master) {
  std::optional<CommaTextReader> reader =
      CommaTextReader::Open(PathIgnoringCase(data_directory, kMasterFileName));
  if (!reader) return MasterFileStatus::kNotFound;
  std::optional<std::vector<std::string>> header = reader->ReadLine();
  if (!header) return MasterFileStatus::kUnreadable;
  const std::string_view count = TrimBlanks(header->front());
  if (count.empty() || !std::isdigit(static_cast<unsigned char>(count.front()))) {
    return MasterFileStatus::kUnreadable;
  }
  MasterFile read;
  read.subfolders = count.back() == 'S' || count.back() == 's';
  while (std::optional<std::vector<std::string>> line = reader->ReadLine()) {
    NvMasterRec company;
    company.number = (*line)[0];
    if (line->size() > 1) company.name = (*line)[1];
    company = Normalized(std::move(company));
    if (company.number.empty()) continue;
    read.companies.push_back(std::move(company));
  }
  SortMasterRecs(&read.companies);
  *master = std::move(read);
  return MasterFileStatus::kOk;
}

MasterFileStatus WriteMasterFile(const std::string& data_directory, const MasterFile& master) {
  CommaTextWriter writer;
  std::string count = std::to_string(master.companies.size());
  if (master.subfolders) count += " S";
  writer.Text(count);
  writer.EndLine();
  for (const NvMasterRec& company : master.companies) {
    writer.Text(company.number);
    writer.Text(company.name);
    writer.EndLine(kMasterLineColumn);
  }
  const std::string path = PathIgnoringCase(data_directory, kMasterFileName);
  return WriteFileAtomically(path, writer.text()) ? MasterFileStatus::kOk
                                                  : MasterFileStatus::kWriteFailed;
}

void SortMasterRecs(MasterRecArray* companies) {
  std::stable_sort(companies->begin(), companies->end(),
                   [](const NvMasterRec& a, const NvMasterRec& b) {
                     return CompareCodes(a.number, b.number) < 0;
                   });
}

void InsertMasterRec(MasterRecArray* companies, NvMasterRec company) {
  company = Normalized(std::move(company));
  for (NvMasterRec& existing : *companies) {
    if (EqualIgnoringCase(existing.number, company.number)) {
      existing = std::move(company);
      return;
    }
  }
  auto at = std::upper_bound(companies->begin(), companies->end(), company,
                             [](const NvMasterRec& a, const NvMasterRec& b) {
                               return CompareCodes(a.number, b.number) < 0;
                             });
  companies->insert(at, std::move(company));
}

}  // namespace nv
