#include "store/asset/asset_no_format.h"

#include <algorithm>

#include "base/str_format.h"

namespace nv {

std::string NvAssetNoFormat::DisplayText() const {
  return StrPrintf("%d char (%s, %s), %d digit subasset", main_length,
                   letters() ? "letters OK" : "numeric only", dashes() ? "dashes OK" : "no dashes",
                   subasset_length);
}

NvAssetNoFormat NvAssetNoFormat::Normalized() const {
  NvAssetNoFormat format = *this;
  format.main_length = std::clamp(main_length, 1, kMaxMainLength);
  format.subasset_length = std::clamp(subasset_length, 1, kMaxSubassetLength);
  return format;
}

}  // namespace nv
