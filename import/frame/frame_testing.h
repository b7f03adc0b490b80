// A source product of the tests' own, small enough to read at a glance, for driving the
// import frame the way every importer does.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "base/date.h"
#include "base/file_util.h"
#include "base/str_format.h"
#include "import/frame/import_frame.h"
#include "import/frame/matching.h"
#include "store/asset/asset.h"

namespace nv::testing {

// A source product of its own for the frame's tests: the first line names the company,
// each further line is "NUMBER|DESCRIPTION|COST|IN SERVICE|DISPOSAL CODE|DISPOSAL DATE",
// and a line beginning with "#" is passed over as a comment.
class TinyImporter : public Importer {
 public:
  explicit TinyImporter(ImportDescriptor descriptor) : descriptor_(std::move(descriptor)) {}
  const ImportDescriptor& descriptor() const override { return descriptor_; }

  bool CheckSource(ImportRun& run) override {
    std::optional<std::string> text = ReadFileBytes(run.state().source_path);
    if (!text) {
      run.ui().Message("Unable to read the tiny file.", "Error");
      return false;
    }
    text_ = *text;
    return true;
  }
  std::string DefaultCompanyNumber(const ImportRun&) const override { return "tiny"; }
  bool FillCompanyRecord(ImportRun&, NvCompanyRecord& record) override {
    record.name = text_.substr(0, text_.find('\n'));
    record.schedules = {{'T', "T", "Tax"}};
    record.sort_order = "C";
    record.business_category = 1;
    return true;
  }
  bool CopyAssets(ImportRun& run, AddStep& add) override {
    if (throw_in_copy) throw std::runtime_error("conversion failed");
    const NvCompanyRecord& company = run.company().record();
    size_t at = text_.find('\n');
    int line_number = 1;
    add.OpenMeter(static_cast<long>(text_.size()));
    while (at != std::string::npos && at + 1 < text_.size()) {
      const size_t end = text_.find('\n', at + 1);
      const std::string line = text_.substr(at + 1, end - at - 1);
      at = end;
      ++line_number;
      add.CountRead();
      const std::string where = StrPrintf("line %d", line_number);
      std::vector<std::string> f;
      for (size_t from = 0;;) {
        const size_t bar = line.find('|', from);
        f.push_back(line.substr(from, bar - from));
        if (bar == std::string::npos) break;
        from = bar + 1;
      }
      if (line.starts_with("#")) {
        add.Filtered(where, f[0].substr(1), "a comment");
        continue;
      }
      f.resize(6);
      NvAsset asset;
      asset.Clear(company.schedule_letters);
      asset.number = NvAssetNo::Parse(f[0], company.asset_no_format);
      asset.description = f[1];
      asset.cash_and_notes = std::atof(f[2].c_str());
      asset.date_in_service = ParseDisplayDate(f[3]).value_or(Date{});
      if (!f[4].empty()) asset.disposal_code = f[4][0];
      asset.disposal_date = ParseDisplayDate(f[5]).value_or(Date{});
      for (NvAssetSchedule& schedule : asset.schedules) {
        schedule.method = 2;
        schedule.sec179_expense = 100;
        schedule.prior_allowed_depr = asset.cash_and_notes / 4;
      }
      add.Add(asset, where);
      add.SetMeterPosition(static_cast<long>(at == std::string::npos ? text_.size() : at));
    }
    return true;
  }

  // When it has items, the run matches them before copying.
  bool Match(ImportRun& run) override {
    return fields.destinations.empty() || MatchFields(run, fields);
  }

  bool throw_in_copy = false;
  FieldMatching fields;

 private:
  ImportDescriptor descriptor_;
  std::string text_;
};

// Every file under `root` (relative path -> bytes), for telling whether a run changed any.
// Paths that begin with one of `skip` are left out.
inline std::map<std::string, std::string> FolderSnapshot(
    const std::string& root, const std::vector<std::string>& skip = {}) {
  std::map<std::string, std::string> files;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
    if (!entry.is_regular_file()) continue;
    const std::string relative = std::filesystem::relative(entry.path(), root).string();
    bool skipped = false;
    for (const std::string& prefix : skip) skipped |= relative.starts_with(prefix);
    if (!skipped) files[relative] = ReadFileBytes(entry.path().string()).value_or("(unreadable)");
  }
  return files;
}

inline ImportDescriptor TinyDescriptor() {
  ImportDescriptor d;
  d.kind = "tiny";
  d.product = "Tiny";
  d.source_dialog = {"Select Tiny File", "Tiny files|*.tny", ".tny", ""};
  d.existing = {.offers_erase = true, .confirm_erase = true, .setup_screen_after_add = false};
  d.meter_title = "Tiny Import";
  d.meter_text = "Copying Tiny assets\n ";
  return d;
}

}  // namespace nv::testing
