// Treats the input as a company's current-year activity file and as its Section 179
// summary: every four bytes after the header are one record number, and a summary read,
// written and read again is written the same way.
#include <cstddef>
#include <cstdint>
#include <string>

#include "fuzz/scratch_company.h"
#include "import/frame/current_year_files.h"

using nv::fuzz::Check;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  const std::string header(nv::kCurrentYearHeader);
  const size_t body = bytes.compare(0, header.size(), header) == 0 ? size - header.size() : size;
  Check(nv::ParseCurrentYearFile(bytes).size() == body / 4);

  const std::string once = nv::FormatSection179File(nv::ParseSection179File(bytes));
  const std::string twice = nv::FormatSection179File(nv::ParseSection179File(once));
  Check(once == twice);
  return 0;
}
