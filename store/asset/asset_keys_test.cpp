#include "store/asset/asset_keys.h"

#include <algorithm>
#include <vector>

#include <gtest/gtest.h>

#include "store/file/key_compare.h"

namespace nv {
namespace {

constexpr NvAssetNoFormat kShort{6, 2, 0};
constexpr NvAssetNoFormat kLong{8, 3, NvAssetNoFormat::kLetters};

NvAsset Asset(std::string_view number, const NvAssetNoFormat& format) {
  NvAsset asset;
  asset.Clear("AB");
  asset.number = NvAssetNo::Parse(number, format);
  return asset;
}

TEST(AssetKeys, SortKeyForAccountCategoryLocation) {
  AssetRecordFormat format{kShort, false, "AB", "ACL"};
  NvAsset a = Asset("123.1", kShort);
  a.account = "1500-00";
  a.category = "EQUIP";
  a.location = "";  // blank: "0"
  const std::string expected =
      "1500-00                 "  // A, 24
      "EQUIP     "                // C, 10
      "0         "                // L, 10
      "   123.01";                // asset number, 9
  EXPECT_EQ(AssetSortKey(a, format), expected);
  EXPECT_EQ(AssetNumberKey(a, format), "   123.01");

  // Long format: 14 bytes for the number, zeros after its 12.
  format.asset_no_format = kLong;
  NvAsset b = Asset("ab123.4", kLong);
  b.account = "X";
  b.category = "C";
  b.location = "L";
  EXPECT_EQ(AssetSortKey(b, format),
            "X                       C         L         "
            "   AB123.004" +
                std::string(2, '\0'));
}

TEST(AssetKeys, EveryPieceAtItsWidth) {
  AssetRecordFormat format{kShort, false, "AB", "LCAPDY09"};
  NvAsset a = Asset("9", kShort);
  a.location = "WAREHOUSE-NORTH";  // cut to 10
  a.category = "TOOLS";
  a.account = "A";
  a.property_code = "7";
  a.new_used_trade = kTrade;
  a.purchase_date = {3, 15, 2023};
  a.date_in_service = {4, 1, 2023};
  a.Schedule('A')->useful_life = {7, 6};
  a.user_fields[9] = "ten";
  a.user_fields[8] = "nine";
  std::string key = AssetSortKey(a, format);
  ASSERT_EQ(key.size(), I2KeyLength(true, format.sort_order, false));
  EXPECT_EQ(key,
            "WAREHOUSE-"
            "TOOLS     "
            "A                       "
            " 7"
            "20230315"  // Purchase Date for a trade
            " 7-6 "
            "ten                 "
            "nine                "
            "     9.00");

  // Date in Service unless traded; SL Life before Useful Life; whole years alone.
  a.new_used_trade = kUsed;
  a.Schedule('A')->sl_life = {40, 0};
  format.sort_order = "DY";
  EXPECT_EQ(AssetSortKey(a, format), "2023040140   " + std::string("     9.00"));
  a.Schedule('A')->sl_life = {123, 11};  // cut to 5
  EXPECT_EQ(AssetSortKey(a, format).substr(8, 5), "123-1");
}

// Keys built from the fields sort the way the fields say.
TEST(AssetKeys, SortKeysOrderAssetsByTheirFields) {
  AssetRecordFormat format{kShort, false, "AB", "ACL"};
  struct Row {
    const char* number;
    const char* account;
    const char* category;
    const char* location;
  };
  // In the expected order: accounts in natural order (9 before 10), then category, then
  // location, then the asset number (9 before 10 again).
  const std::vector<Row> rows = {
      {"50", "1500-9", "Z", "A"},  {"3", "1500-10", "A", "B"},   {"2", "1500-10", "B", ""},
      {"1", "1500-10", "B", "X9"}, {"9", "1500-10", "B", "X10"}, {"10", "1500-10", "B", "X10"},
      {"4", "2000", "", ""},
  };
  std::vector<std::string> keys;
  for (const Row& row : rows) {
    NvAsset a = Asset(row.number, kShort);
    a.account = row.account;
    a.category = row.category;
    a.location = row.location;
    keys.push_back(AssetSortKey(a, format));
  }
  std::vector<std::string> sorted = keys;
  std::reverse(sorted.begin(), sorted.end());
  std::sort(sorted.begin(), sorted.end(), [&](const std::string& x, const std::string& y) {
    return CompareI2Keys(x, y, format.sort_order) < 0;
  });
  EXPECT_EQ(sorted, keys);

  // Dates sort by year first.
  format.sort_order = "D";
  NvAsset late = Asset("1", kShort);
  late.date_in_service = {1, 2, 2024};
  NvAsset early = Asset("2", kShort);
  early.date_in_service = {12, 31, 2023};
  EXPECT_LT(CompareI2Keys(AssetSortKey(early, format), AssetSortKey(late, format), "D"), 0);
}

}  // namespace
}  // namespace nv
