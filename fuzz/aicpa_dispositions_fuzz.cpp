// Treats the input as an AICPA dispositions report: every disposition read keeps to the
// layout's columns, and a disposal date it gives is a real date.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "fuzz/scratch_company.h"
#include "import/aicpa/aicpa_report.h"

using nv::fuzz::Check;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  nv::aicpa::DispositionReader reader;
  nv::aicpa::SplitReport(bytes, reader);
  long last_line = 0;
  for (const nv::aicpa::Disposition& d : reader.dispositions()) {
    Check(d.line >= last_line);
    last_line = d.line;
    Check(d.asset_no.size() <= nv::aicpa::kDspAssetNo.width);
    Check(!d.disposal_text.empty() && d.disposal_text.size() <= nv::aicpa::kDspDisposed.width);
    Check(!d.disposal_date || nv::IsValidDate(*d.disposal_date));
  }
  return 0;
}
