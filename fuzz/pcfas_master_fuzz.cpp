// Reads arbitrary bytes as a PC/FAS MASTER.ASC file, handed over in pieces of a size taken
// from the first byte, and checks that the records are the same as read at once, that
// every record keeps to the field limits, and that every record converts (in both book
// layouts, into a company with all five schedules) without reading past its fields.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "import/pcfas/pcfas_convert.h"
#include "import/pcfas/pcfas_source.h"
#include "store/asset/asset.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  const size_t chunk = 2 + data[0] % 17;
  const std::string_view bytes(reinterpret_cast<const char*>(data) + 1, size - 1);

  std::vector<nv::PcFasRecord> whole;
  nv::PcFasMasterReader at_once = nv::PcFasMasterReader::FromBytes(bytes);
  for (nv::PcFasRecord record; at_once.Next(&record);) {
    if (record.fields.empty() || record.fields.size() > nv::kPcFasMaxFields) std::abort();
    for (const std::string& field : record.fields) {
      if (field.size() > nv::kPcFasMaxFieldBytes) std::abort();
    }
    if (whole.size() > bytes.size()) std::abort();  // every record takes a byte at least
    whole.push_back(record);
  }
  if (at_once.offset() != bytes.size()) std::abort();

  nv::PcFasMasterReader pieces = nv::PcFasMasterReader::FromBytes(bytes, chunk);
  size_t n = 0;
  for (nv::PcFasRecord record; pieces.Next(&record); ++n) {
    if (n >= whole.size() || record.fields != whole[n].fields || record.line != whole[n].line) {
      std::abort();
    }
  }
  if (n != whole.size()) std::abort();

  nv::PcFasConversion conversion;
  conversion.schedule_letters = "TBSAC";
  conversion.asset_no_format = {10, 3, nv::NvAssetNoFormat::kLetters};
  conversion.last_closed = {12, 31, 1995};
  conversion.account_field = nv::PcFasSourceItemField(101);
  conversion.user_field_fields = {nv::PcFasSourceItemField(108), nv::PcFasSourceItemField(111),
                                  nv::PcFasSourceItemField(106)};
  nv::NvAsset asset;
  for (const nv::PcFasRecord& record : whole) {
    for (nv::PcFasLayout layout : {nv::PcFasLayout::kShort, nv::PcFasLayout::kLong}) {
      conversion.layout = layout;
      nv::ConvertPcFasRecord(record.fields, conversion, &asset);
      if (asset.schedules.size() != 5 || asset.description.size() > 30 ||
          asset.account.size() > 24) {
        std::abort();
      }
    }
  }
  return 0;
}
