#include "import/frame/import_report.h"

#include "base/ascii.h"
#include "base/str_format.h"
#include "store/asset/asset.h"

namespace nv {

void ImportReport::SetSource(std::string product, std::string path) {
  product_ = std::move(product);
  source_path_ = std::move(path);
}

void ImportReport::SetCompany(std::string number, std::string folder) {
  company_number_ = std::move(number);
  company_folder_ = std::move(folder);
}

void ImportReport::Added(const NvAsset& asset) {
  ++added_;
  for (size_t i = 0; i < asset.schedules.size() && i < asset.schedule_letters.size(); ++i) {
    const NvAssetSchedule& schedule = asset.schedules[i];
    ScheduleTotals& totals = totals_[asset.schedule_letters[i]];
    ++totals.count;
    totals.cost += asset.Cost();
    totals.section_179 += schedule.sec179_expense;
    totals.prior_depreciation += schedule.prior_allowed_depr;
  }
}

void ImportReport::LeftOut(LeftOutRecord record) {
  left_out_.push_back(std::move(record));
}

void ImportReport::Note(std::string source, std::string number, std::string text) {
  notes_.push_back(source + ": asset \"" + std::string(TrimBlanks(number)) + "\": " + text);
}

std::string_view LeftOutReasonText(LeftOutReason reason) {
  switch (reason) {
    case LeftOutReason::kDuplicateNumber:
      return "duplicate asset number";
    case LeftOutReason::kInvalidNumber:
      return "invalid asset number";
    case LeftOutReason::kRefusedByStore:
      return "refused by the company files";
    case LeftOutReason::kFiltered:
      return "passed over by the importer";
  }
  return "";
}

namespace {

std::string Amount(double value) {
  return StrPrintf("%.2f", value);
}

}  // namespace

std::string ImportReport::Text() const {
  std::string text = "Import report\n";
  text += "Source: " + product_ + " " + source_path_ + "\n";
  text += "Company: " + company_number_ + " in " + company_folder_ + "\n";
  text +=
      StrPrintf("Records read: %ld\nAssets added: %ld\nLeft out: %ld\n", read_, added_, left_out());
  if (!totals_.empty()) {
    text += "\nControl totals of the added assets, by schedule:\n";
    text += StrPrintf("  %-8s %8s %18s %18s %18s\n", "Schedule", "Assets", "Cost", "Sec. 179",
                      "Prior depr.");
    for (const auto& [letter, totals] : totals_) {
      text += StrPrintf("  %-8c %8ld %18s %18s %18s\n", letter, totals.count,
                        Amount(totals.cost).c_str(), Amount(totals.section_179).c_str(),
                        Amount(totals.prior_depreciation).c_str());
    }
  }
  if (!left_out_.empty()) {
    text += "\nLeft out:\n";
    for (const LeftOutRecord& record : left_out_) {
      text += "  " + record.source + ": asset " +
              (record.number.empty() ? std::string("(no number)") : "\"" + record.number + "\"") +
              ": " + std::string(LeftOutReasonText(record.reason));
      if (!record.detail.empty()) text += " (" + record.detail + ")";
      text += "\n";
    }
  }
  if (!notes_.empty()) {
    text += "\nNotes:\n";
    for (const std::string& note : notes_) text += "  " + note + "\n";
  }
  return text;
}

}  // namespace nv
