#include "store/asset_no_format.h"

#include "base/str_format.h"

namespace nv {

std::string NvAssetNoFormat::DisplayText() const {
  return StrPrintf("%d char (%s, %s), %d digit subasset", main_length,
                   letters() ? "letters OK" : "numeric only", dashes() ? "dashes OK" : "no dashes",
                   subasset_length);
}

}  // namespace nv
