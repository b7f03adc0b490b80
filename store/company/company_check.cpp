#include "store/company/company_check.h"

#include <algorithm>

#include "base/file.h"
#include "base/str_format.h"
#include "store/asset/asset.h"
#include "store/asset/asset_keys.h"
#include "store/asset/asset_record.h"
#include "store/file/status.h"
#include "store/file/structure_check.h"

namespace nv {
namespace {

// At most this many lines of one kind, so that a badly damaged company stays readable.
constexpr size_t kMaxLinesOfAKind = 20;

void Add(std::vector<std::string>* problems, const std::string& prefix,
         const std::vector<std::string>& lines) {
  for (size_t i = 0; i < lines.size() && i < kMaxLinesOfAKind; ++i) {
    problems->push_back(prefix + lines[i]);
  }
  if (lines.size() > kMaxLinesOfAKind) {
    problems->push_back(
        StrPrintf("%s... and %zu more", prefix.c_str(), lines.size() - kMaxLinesOfAKind));
  }
}

// Everything but the marker of a run that did not end.
CompanyCheck CheckFiles(NvCompany& company) {
  CompanyCheck check;
  std::vector<std::string>& problems = check.problems;
  NvRecFile& blocks = company.blocks();
  const uint64_t in_file = blocks.RecordsInFile();
  if (in_file == 0 || blocks.highest_record() >= in_file) {
    problems.push_back(StrPrintf("block file: highest record %u, but the file holds %llu blocks",
                                 blocks.highest_record(),
                                 static_cast<unsigned long long>(in_file)));
  }
  if (blocks.free_count() > blocks.highest_record()) {
    problems.push_back(StrPrintf("block file: free count %u above highest record %u",
                                 blocks.free_count(), blocks.highest_record()));
  }
  const std::string& order = company.record().sort_order;
  TreeCheck i1 = CheckTree(company.number_index(), "");
  TreeCheck i2 = CheckTree(company.sort_index(), order);
  Add(&problems, ".I1: ", i1.problems);
  Add(&problems, ".I2: ", i2.problems);
  check.assets = i1.keys;

  std::vector<uint32_t> starts = {0};
  starts.insert(starts.end(), i1.data.begin(), i1.data.end());
  Add(&problems, ".A: ", CheckBlockFile(blocks, starts));

  std::vector<uint32_t> a = i1.data, b = i2.data;
  std::sort(a.begin(), a.end());
  std::sort(b.begin(), b.end());
  if (a != b) {
    std::vector<uint32_t> only_a, only_b;
    std::set_difference(a.begin(), a.end(), b.begin(), b.end(), std::back_inserter(only_a));
    std::set_difference(b.begin(), b.end(), a.begin(), a.end(), std::back_inserter(only_b));
    std::vector<std::string> lines;
    for (uint32_t r : only_a)
      lines.push_back(StrPrintf("asset at block %u is missing from .I2", r));
    for (uint32_t r : only_b)
      lines.push_back(StrPrintf("asset at block %u is missing from .I1", r));
    if (lines.empty()) lines.push_back("an asset is named more than once");
    Add(&problems, "indexes: ", lines);
  }
  if (!i1.problems.empty() || !i2.problems.empty()) return check;

  // Each key must be the one its record gives.
  const AssetRecordFormat format = company.RecordFormat();
  std::vector<std::string> key_lines;
  NvBTreeFile& number_index = company.number_index();
  NvBTreeFile& sort_index = company.sort_index();
  number_index.ClearPath();
  for (uint64_t n = 0; n <= i1.keys; ++n) {
    uint32_t record = 0;
    if (number_index.Next(&record) != kOk || record == 0) break;
    const std::string key = number_index.current_key();
    NvAsset asset;
    if (int rc = company.ReadAsset(record, &asset); rc != kOk) {
      key_lines.push_back(StrPrintf("asset at block %u unreadable (%d)", record, rc));
      continue;
    }
    if (AssetNumberKey(asset, format) != key) {
      key_lines.push_back(StrPrintf(".I1 key of the asset at block %u is not its number \"%s\"",
                                    record, asset.number.Text().c_str()));
    }
    uint32_t sorted = 0;
    if (sort_index.Find(AssetSortKey(asset, format), order, &sorted) != kOk || sorted != record) {
      key_lines.push_back(StrPrintf("asset \"%s\" at block %u has no .I2 entry under its sort key",
                                    asset.number.Text().c_str(), record));
    }
  }
  number_index.ClearPath();
  sort_index.ClearPath();
  Add(&problems, "assets: ", key_lines);
  return check;
}

}  // namespace

CompanyCheck CheckCompany(NvCompany& company) {
  CompanyCheck check = CheckFiles(company);
  // A run that died between two operations leaves whole files behind, so the marker alone
  // is no problem; beside one, it says how the company is repaired.
  if (!check.problems.empty() && PathExists(company.FilePath(kChangingMarkerExtension))) {
    check.problems.insert(check.problems.begin(),
                          "a run that changed the company did not end; opening it for writing "
                          "repairs it");
  }
  return check;
}

}  // namespace nv
