// Reads the input as an asset record under one of a few company formats (picked by the
// first byte), then checks that writing is stable: what one write gives back, a read and a
// second write must reproduce exactly. Also checks the key lengths and that a valid asset
// number reads back from its text form unchanged.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "store/asset/asset_keys.h"
#include "store/asset/asset_record.h"
#include "store/file/key_compare.h"

namespace {

const nv::AssetRecordFormat kFormats[] = {
    {{6, 2, 0}, false, "BTSA", "LCA"},
    {{10, 3, nv::NvAssetNoFormat::kLetters | nv::NvAssetNoFormat::kDashes},
     true,
     "ABCDEFGHIJKLMNOPQRSTUVWXY",
     "DY1"},
    {{8, 2, nv::NvAssetNoFormat::kFreeForm}, false, "B", "P0"},
    {{40, 0, 0xFF}, true, "", "Q"},  // a damaged company record
    {{1, 1, nv::NvAssetNoFormat::kDashes}, false, "A B\tX", "9Z"},
};

void Check(bool ok) {
  if (!ok) std::abort();
}

void CheckNumber(std::string_view text, const nv::NvAssetNoFormat& format) {
  nv::NvAssetNo number = nv::NvAssetNo::Parse(text, format);
  if (!number.valid() || number.format().free_form()) return;
  Check(static_cast<int>(number.Text().size()) == number.KeyLength());
  nv::NvAssetNo again = nv::NvAssetNo::Parse(number.Text(), format);
  Check(again.valid() && again.main() == number.main() && again.subasset() == number.subasset());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 1) return 0;
  const nv::AssetRecordFormat& format = kFormats[data[0] % std::size(kFormats)];
  std::string_view bytes(reinterpret_cast<const char*>(data + 1), size - 1);

  nv::NvAsset asset;
  nv::ParseAssetRecord(bytes, format, &asset);
  std::string first = nv::SerializeAssetRecord(asset, format);
  nv::ParseAssetRecord(first, format, &asset);
  std::string second = nv::SerializeAssetRecord(asset, format);
  nv::ParseAssetRecord(second, format, &asset);
  std::string third = nv::SerializeAssetRecord(asset, format);
  Check(second == third);

  const nv::NvAssetNoFormat number_format = format.asset_no_format.Normalized();
  Check(nv::AssetSortKey(asset, format).size() ==
        nv::I2KeyLength(true, format.sort_order, number_format.IsLong()));
  Check(static_cast<int>(nv::AssetNumberKey(asset, format).size()) == number_format.KeyLength());
  CheckNumber(bytes.substr(0, bytes.find('\t')), format.asset_no_format);
  return 0;
}
