// Treats the input as an AICPA asset detail report: its lines and pages must come out the
// same whether the bytes arrive whole or in pieces, the company pass must keep to the
// layout's limits, and every asset page must convert into an asset of every schedule.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "fuzz/scratch_company.h"
#include "import/aicpa/aicpa_convert.h"
#include "import/aicpa/aicpa_report.h"

using nv::fuzz::Check;

namespace {

class Recorder final : public nv::aicpa::ReportVisitor {
 public:
  void OnLine(std::string_view text, long number) override {
    Check(text.size() <= nv::aicpa::kMaxLineLength);
    Check(text.find('\n') == std::string_view::npos);
    Check(text.find('\f') == std::string_view::npos);
    Check(number >= last_number_);
    last_number_ = number;
    events_.push_back(std::string(text));
  }
  void OnPageBreak() override { events_.push_back("\f"); }
  const std::vector<std::string>& events() const { return events_; }

 private:
  long last_number_ = 1;
  std::vector<std::string> events_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);

  Recorder whole;
  nv::aicpa::SplitReport(bytes, whole);
  // The same bytes in pieces whose size the first byte chooses.
  Recorder pieces;
  {
    nv::aicpa::ReportSplitter splitter(pieces);
    const size_t piece = size == 0 ? 1 : 1 + data[0] % 97;
    for (size_t at = 0; at < size; at += piece) splitter.Feed(bytes.substr(at, piece));
    splitter.Finish();
  }
  Check(whole.events() == pieces.events());

  nv::aicpa::SummaryReader summary_reader;
  nv::aicpa::SplitReport(bytes, summary_reader);
  const nv::aicpa::ReportSummary& summary = summary_reader.summary();
  Check(summary.books.size() <= nv::aicpa::kMaxBooks);
  Check(summary.acquired_books.size() <= nv::aicpa::kMaxNewSchedules);
  for (char letter : summary.acquired_books) {
    Check(summary.books.find(letter) != std::string::npos);
  }
  Check(!summary.company_name || summary.company_name->size() <= nv::aicpa::kNameKept);

  nv::NvCompanyRecord company;
  company.schedule_letters = "TACSBO";
  for (char letter : company.schedule_letters) {
    company.schedules.push_back({letter, std::string(1, letter), ""});
  }
  const std::string books = summary.books.empty() ? "TACSBO" : summary.books;
  nv::aicpa::AccountGroupFinder groups({});
  nv::aicpa::AssetPageReader pages([&](const nv::aicpa::AssetPage& page) {
    for (bool switch_to_sl : {false, true}) {
      const nv::NvAsset asset = nv::aicpa::ConvertAssetPage(page, books, company, switch_to_sl);
      Check(asset.schedules.size() == company.schedule_letters.size());
      for (const nv::NvAssetSchedule& s : asset.schedules) {
        Check(s.business_percent >= 0 && s.business_percent <= 100);
        Check(s.useful_life.years >= 0 && s.useful_life.months >= 0);
      }
    }
    static_cast<void>(groups.Find(page.accounts));
  });
  nv::aicpa::SplitReport(bytes, pages);
  pages.Finish();
  return 0;
}
