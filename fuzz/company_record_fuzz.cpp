// Parses the input as a company record in both layouts. Whatever the bytes, the parsed
// record written out and read back must give the same bytes again, and the same format,
// sort order and schedule letters, on which the index keys depend.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "store/company/company_record.h"

namespace {

void CheckFixedPoint(const nv::ParsedCompanyRecord& parsed) {
  std::string once = nv::SerializeCompanyRecord(parsed.record, parsed.counters);
  nv::ParsedCompanyRecord again = nv::ParseCompanyRecord(once);
  std::string twice = nv::SerializeCompanyRecord(again.record, again.counters);
  if (once != twice) std::abort();
  // What the index keys depend on must survive the trip unchanged.
  const nv::NvCompanyRecord& r = parsed.record;
  if (again.record.asset_no_format != r.asset_no_format.Normalized() ||
      again.record.sort_order != r.sort_order ||
      again.record.schedule_letters != r.schedule_letters) {
    std::abort();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string_view bytes(reinterpret_cast<const char*>(data), size);
  CheckFixedPoint(nv::ParseCompanyRecord(bytes));
  CheckFixedPoint(nv::ParseOldCompanyRecord(bytes));
  return 0;
}
