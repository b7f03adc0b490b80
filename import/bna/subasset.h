// "create subasset": a line whose asset number exists is added under the next subasset
// number that no asset has, counting up from the number's own; a line that would need
// subasset 1000 is skipped.
#pragma once

#include <functional>
#include <optional>

namespace nv {

inline constexpr int kBnaLastSubasset = 999;

// The first subasset number above `subasset` for which `taken` is false; none when every
// number up to 999 is taken.
std::optional<int> FreeSubasset(int subasset, const std::function<bool(int)>& taken);

}  // namespace nv
