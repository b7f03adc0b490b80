// Treats the input as an MBA Software export: splits it into lines, reads every line's
// fields and ID, numbers the IDs as an import does, and converts each line into an asset
// of a company with a schedule of every kind, checking what each step promises.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "base/ascii.h"
#include "import/mba/mba_convert.h"
#include "import/mba/mba_numbering.h"
#include "import/mba/mba_source.h"

namespace {

void Check(bool ok) {
  if (!ok) std::abort();
}

bool Fits(const nv::Date& date) {
  return date.empty() || nv::IsValidDate(date);
}

const nv::NvCompanyRecord& Company() {
  static const nv::NvCompanyRecord record = [] {
    nv::NvCompanyRecord r;
    r.schedules = {{'T', "T", "Tax"}, {'A', "A", "AMT"}, {'B', "B", "Book"}, {'X', "CA", "Calif"}};
    r.schedule_letters = "TABX";
    return r;
  }();
  return record;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  const std::vector<nv::MbaSourceLine> lines = nv::SplitMbaLines(bytes);
  Check(lines.size() <= size);

  nv::MbaNumbering numbering;
  std::vector<nv::MbaRecord> records;
  for (const nv::MbaSourceLine& source : lines) {
    Check(source.text.find('\n') == std::string_view::npos);
    Check(!nv::TrimBlanks(source.text).empty());
    nv::MbaRecord record{source.number, nv::ParseMbaLine(source.text), {}};
    const nv::MbaLine& line = record.line;
    Check(line.id.size() <= 14 && line.description.size() <= 40);
    Check(line.asset_account.size() <= 12 && line.expense_account.size() <= 12);
    Check(Fits(line.acquired) && Fits(line.disposed));
    for (const nv::MbaBookBlock& book : line.books) {
      Check(book.life >= 0 && book.life <= 99);
      Check(std::isfinite(book.basis) && std::isfinite(book.accumulated));
    }

    // The pieces of the ID put together give the ID without its outer blanks.
    record.id = nv::SplitMbaAssetId(line.id);
    const nv::MbaAssetId& id = record.id;
    Check(id.location + id.category + id.middle + id.number_text == nv::TrimBlanks(line.id));
    Check(id.number_text.empty() || id.location.size() + id.category.size() == 4);
    Check(id.whole_number >= 0 && id.whole_number <= 999999);
    Check(id.number >= 0 && id.number < 1000000);
    Check(id.number_text.find_first_not_of("0123456789.") == std::string::npos);
    numbering.Scan(id);
    records.push_back(std::move(record));
  }
  numbering.Choose();

  std::vector<nv::AccountGroup> groups;
  nv::NvAssetNoFormat format;
  for (const nv::MbaRecord& record : records) {
    const double number = numbering.Number(record.id);
    Check(std::isfinite(number) && number >= 0);
    // The schemes that place IDs by their lists keep every number within six digits.
    if (numbering.scheme() == 0 || numbering.scheme() == 8) Check(number < 1000000);
    const nv::NvAssetNo asset_number = nv::NvAssetNo::Parse(std::to_string(number), format);
    const std::string account = nv::MbaAccountGroupFor(record.line, &groups);
    Check(account.size() <= nv::kAccountGroupCodeWidth);
    Check(account.empty() == record.line.asset_account.empty());
    const nv::NvAsset asset = nv::ConvertMbaLine(record, asset_number, account, Company());
    Check(asset.schedules.size() == Company().schedule_letters.size());
    Check(asset.description.size() <= nv::kMbaDescriptionWidth);
    Check(asset.disposed() == (record.line.status == 'D' || record.line.status == 'S'));
  }
  return 0;
}
