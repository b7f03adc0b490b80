#include "import/bna/subasset.h"

#include <algorithm>

namespace nv {

std::optional<int> FreeSubasset(int subasset, const std::function<bool(int)>& taken) {
  for (int n = std::max(subasset, 0) + 1; n <= kBnaLastSubasset; ++n) {
    if (!taken(n)) return n;
  }
  return std::nullopt;
}

}  // namespace nv
