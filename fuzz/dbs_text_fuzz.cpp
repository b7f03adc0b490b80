// Reads arbitrary bytes as a whole-company text file in each record type, under a format
// and schedule letters taken from the first bytes, and checks what the reader promises:
// lines no longer than the importer's line, texts no longer than their fields, the asset
// holding exactly the company's schedules.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "import/dbs/dbs_reader.h"
#include "store/asset/asset_text_layout.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 2) return 0;
  nv::NvAssetNoFormat format;
  format.main_length = 1 + data[0] % 10;
  format.subasset_length = 1 + (data[0] / 10) % 3;
  format.flags = data[1] & 0x83;
  const std::string_view letters = (data[1] & 0x40) ? "BTASOCF" : "TB";
  const std::string_view bytes(reinterpret_cast<const char*>(data) + 2, size - 2);

  // Read in small pieces, the lines are those of the bytes read whole.
  {
    nv::DbsLineReader whole(bytes);
    size_t at = 0;
    nv::DbsLineReader pieces(
        [&](char* buffer, size_t size) -> int64_t {
          const size_t n = std::min(size, bytes.size() - at);
          bytes.copy(buffer, n, at);
          at += n;
          return static_cast<int64_t>(n);
        },
        1 + data[0] % 64);
    for (;;) {
      const std::optional<std::string_view> a = whole.Next();
      const std::optional<std::string_view> b = pieces.Next();
      if (a != b || whole.line_number() != pieces.line_number()) std::abort();
      if (!a) break;
    }
  }

  for (char delimiter : {'\t', ',', '\0'}) {
    nv::DbsLineReader lines(bytes);
    nv::NvAsset asset;
    while (std::optional<std::string_view> line = lines.Next()) {
      if (line->size() > nv::kTextRecordMaxLength) std::abort();
      const nv::DbsRecordInfo info = nv::ReadDbsRecord(*line, delimiter, format, letters, &asset);
      if (asset.schedule_letters != letters || asset.schedules.size() != letters.size())
        std::abort();
      if (asset.description.size() > 30 || asset.location.size() > 3 || asset.account.size() > 24) {
        std::abort();
      }
      for (const nv::NvAssetSchedule& s : asset.schedules) {
        if (s.asset_type.size() > 5) std::abort();  // 4 and the listed "L"
      }
      if (info.dropped_letters.size() > nv::kTextRecordSlots) std::abort();
      if (lines.position() > bytes.size()) std::abort();
    }
    static_cast<void>(nv::GuessDbsAssetNoFormat(nv::DbsLineReader(bytes), delimiter));
  }
  return 0;
}
