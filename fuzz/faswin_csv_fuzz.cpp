// The reader of a FAS for Windows CSV export of one book, and the conversion of each of
// its lines into an asset with two schedules, as a new asset and merged into that asset
// again under the other schedule. The first byte chooses the schedule's type (AMT or not)
// and whether old disposals are left out.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "fuzz/scratch_company.h"
#include "import/faswin/faswin_convert.h"
#include "import/faswin/faswin_source.h"

using nv::fuzz::Check;
namespace fw = nv::faswin;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  const std::string_view bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
  const std::optional<fw::CsvBook> book = fw::CsvBook::Parse(std::string(bytes));
  if (!book) return 0;
  const fw::CsvColumns columns(*book);
  fw::CsvSettings settings;
  settings.schedule_letters = "TA";
  settings.schedule = 'T';
  settings.schedule_type = (data[0] & 1) ? "A" : "T";
  settings.asset_no_format = {10, 3, nv::NvAssetNoFormat::kLetters | nv::NvAssetNoFormat::kDashes};
  settings.sources.account = fw::kSourceAssetAccount;
  for (int i = 0; i < fw::kMatchedUserFields; ++i) {
    settings.sources.user_fields[static_cast<size_t>(i)] = 101 + (i * 3) % 15;
  }
  settings.delete_disposed = (data[0] & 2) != 0;
  settings.last_closed = {12, 31, 2023};
  fw::CommaRecordReader rows = book->Rows();
  fw::CommaRecord record;
  long line = 0;
  while (rows.Next(&record)) {
    Check(record.line > line && record.line >= 3);
    line = record.line;
    const fw::CsvRow row(columns, record);
    if (fw::CsvLeaveOutReason(row, settings)) continue;
    nv::NvAsset asset;
    asset.Clear("A");  // an asset with fewer schedules than the company takes them on
    fw::ApplyCsvRow(row, settings, true, &asset);
    Check(asset.number.valid());
    Check(asset.schedule_letters == "TA" && asset.schedules.size() == 2);
    const double cost = asset.cash_and_notes;
    settings.schedule = 'A';
    fw::ApplyCsvRow(row, settings, false, &asset);
    settings.schedule = 'T';
    Check(asset.cash_and_notes == cost || (cost != cost));  // kept on merge (NaN aside)
    Check(asset.description.size() <= fw::kDescriptionWidth);
    Check(asset.category.size() <= fw::kCsvCategoryWidth);
    for (const std::string& field : asset.user_fields) Check(field.size() <= 20);
  }
  return 0;
}
