#include "import/bna/subasset.h"

#include <set>

#include <gtest/gtest.h>

namespace nv {
namespace {

TEST(FreeSubasset, CountsUpPastTakenNumbersAndStopsAt999) {
  std::set<int> taken{0, 1, 2, 4};
  auto has = [&taken](int n) { return taken.count(n) > 0; };
  EXPECT_EQ(FreeSubasset(0, has), 3);
  EXPECT_EQ(FreeSubasset(4, has), 5);
  EXPECT_EQ(FreeSubasset(998, has), 999);
  EXPECT_EQ(FreeSubasset(999, has), std::nullopt);

  for (int n = 1; n <= 999; ++n) taken.insert(n);
  EXPECT_EQ(FreeSubasset(0, has), std::nullopt);
  EXPECT_EQ(FreeSubasset(500, has), std::nullopt);
}

}  // namespace
}  // namespace nv
