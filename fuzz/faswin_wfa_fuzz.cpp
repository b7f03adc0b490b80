// The readers of a FAS for Windows WFA export. The first byte chooses the reader and the
// layout, the rest is its input:
//   0  cmpy.wfa             the name is a field of the first record
//   1  book.wfa             only books 0 to 6 can be used
//   2  records              every record starts on a later line than the one before, and
//                           the reader reaches the end of the bytes
//   3  the files merged     the rest split at form feeds into asst.wfa, the book file and
//                           chld.wfa; the second byte's low bit chooses the layout. Every
//                           asset given has the right field count, its book and disposal
//                           records carry its system number, and each asset converts
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/ascii.h"
#include "fuzz/scratch_company.h"
#include "import/faswin/faswin_convert.h"
#include "import/faswin/faswin_source.h"

using nv::fuzz::Check;
namespace fw = nv::faswin;

namespace {

void Records(std::string_view bytes) {
  fw::CommaRecordReader reader(bytes);
  fw::CommaRecord record;
  long line = 0;
  while (reader.Next(&record)) {
    Check(record.line > line);
    Check(!record.fields.empty());
    line = record.line;
  }
  Check(reader.consumed() >= bytes.size());
}

void Merge(std::string_view bytes) {
  if (bytes.empty()) return;
  const fw::WfaLayout layout = (bytes[0] & 1) ? fw::WfaLayout::kOlder : fw::WfaLayout::kNewer;
  bytes.remove_prefix(1);
  std::string_view parts[3];
  for (std::string_view& part : parts) {
    const size_t feed = bytes.find('\f');
    part = bytes.substr(0, feed);
    bytes = feed == std::string_view::npos ? std::string_view() : bytes.substr(feed + 1);
  }
  fw::WfaReader reader(layout, parts[0], parts[1], parts[2]);
  fw::WfaSettings settings;
  settings.layout = layout;
  settings.schedule_letters = "TBSACO";
  settings.book_letters = {'T', 'B', 'S', 'A', 'C', 'O', 0};
  settings.asset_no_format = {10, 3, nv::NvAssetNoFormat::kLetters | nv::NvAssetNoFormat::kDashes};
  settings.sources.account = fw::kSourceAssetAccount;
  settings.sources.user_fields[0] = fw::kSourceAccumulatedAccount;
  settings.sources.user_fields[1] = fw::kSourceUserField1;
  settings.delete_disposed = true;
  settings.last_closed = {12, 31, 2023};
  std::vector<nv::AccountGroup> groups;

  fw::WfaAsset asset;
  std::vector<std::string> notes;
  while (reader.Next(&asset)) {
    for (const fw::PassedOver& record : reader.TakePassedOver()) Check(!record.reason.empty());
    Check(asset.asset.fields.size() == fw::FieldsOf(layout).asset_fields);
    const std::string_view key = nv::TrimBlanks(asset.asset.Field(fw::kSystemNumberField));
    for (const fw::CommaRecord& book : asset.books) {
      Check(nv::TrimBlanks(book.Field(fw::kSystemNumberField)) == key);
    }
    if (asset.disposal) {
      Check(asset.disposal->fields.size() == fw::kDisposalFields);
      Check(nv::TrimBlanks(asset.disposal->Field(fw::kSystemNumberField)) == key);
    }
    static_cast<void>(fw::WfaLeaveOutReason(asset, settings));
    notes.clear();
    nv::NvAsset converted = fw::ConvertWfaAsset(asset, settings, &notes);
    Check(converted.schedules.size() == settings.schedule_letters.size());
    Check(converted.description.size() <= fw::kDescriptionWidth);
    Check(converted.location.size() <= fw::kLocationWidth);
    for (const std::string& field : converted.user_fields) Check(field.size() <= 20);
    for (const nv::NvAssetSchedule& s : converted.schedules) Check(s.asset_type.size() <= 10);
    converted.account =
        fw::AccountGroupCode(&groups, converted.account, fw::WfaAccounts(asset, layout));
    Check(groups.size() <= 64 * 1024);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  const std::string_view bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
  switch (data[0] % 4) {
    case 0:
      static_cast<void>(fw::ParseCompanyName(bytes));
      break;
    case 1: {
      const fw::BooksUsed books = fw::ParseBooksUsed(bytes);
      static_cast<void>(books.any());
      break;
    }
    case 2:
      Records(bytes);
      break;
    default:
      Merge(bytes);
      break;
  }
  return 0;
}
