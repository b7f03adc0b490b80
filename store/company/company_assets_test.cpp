#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "base/file.h"
#include "store/asset/asset_keys.h"
#include "store/asset/asset_record.h"
#include "store/company/asset_testing.h"
#include "store/company/company_check.h"
#include "store/file/status.h"
#include "store/store_testing.h"
#include "ui/scripted_ui_testing.h"

namespace nv {
namespace {

using testing::MakeAsset;

class CompanyAssetsTest : public ::testing::Test {
 protected:
  CompanyAssetsTest() : ctx_(testing::ContextFor(dir_.path())), company_(ctx_) {
    company_.record() = testing::TwoBookCompany();
    company_.record().logging_flags = kLoggingPartial;
    EXPECT_EQ(company_.Create({"ACME", "Acme"}, NvCompany::kOpenI1 | NvCompany::kOpenI2), 0);
    EXPECT_EQ(company_.Open("ACME", NvCompany::kOpenI1 | NvCompany::kOpenI2, *ui_), 1);
  }
  uint64_t Size(const char* ext) { return std::filesystem::file_size(company_.FilePath(ext)); }
  // The main parts of the numbers met on a walk from the start, "" for none; "error N" when
  // a step fails.
  std::string Walk(AssetOrder order, bool forward) {
    std::string seen;
    company_.ResetAssetWalk();
    for (;;) {
      NvAsset a;
      a.record_number = 77;  // a step must say the end itself
      int rc = forward ? company_.NextAsset(order, &a) : company_.PreviousAsset(order, &a);
      if (rc != kOk) return seen + "error " + std::to_string(rc);
      if (a.record_number == 0) return seen;
      seen += a.number.Text().substr(0, 8) + ";";
    }
  }
  // Every walk of an empty company ends at its first step.
  void ExpectEveryWalkEmpty() {
    for (AssetOrder order : {AssetOrder::kNumber, AssetOrder::kSort}) {
      for (bool forward : {true, false}) {
        EXPECT_EQ(Walk(order, forward), "") << (order == AssetOrder::kNumber ? "number" : "sort")
                                            << (forward ? " next" : " previous");
      }
    }
  }
  std::vector<std::string> Check() {
    EXPECT_EQ(company_.Close(), 0);
    EXPECT_EQ(company_.Open("ACME", 3 | NvCompany::kReadOnly, *ui_), 1);
    return CheckCompany(company_).problems;
  }

  testing::TempDir dir_;
  InstallationContext ctx_;
  std::unique_ptr<ScriptedUi> ui_ = testing::Script("");
  NvCompany company_;
};

TEST_F(CompanyAssetsTest, RefusedAddsLeaveNothingBehind) {
  NvAsset first = MakeAsset(company_.record(), 100);
  ASSERT_EQ(company_.AddAsset(&first), kOk);
  const uint64_t a = Size("A"), i1 = Size("I1"), i2 = Size("I2");
  const uint32_t highest = company_.blocks().highest_record();

  NvAsset again = MakeAsset(company_.record(), 100, 7);
  EXPECT_EQ(company_.AddAsset(&again), kDuplicate);
  NvAsset invalid = MakeAsset(company_.record(), 100);
  invalid.number = NvAssetNo::Parse("123456789", company_.record().asset_no_format);
  EXPECT_EQ(company_.AddAsset(&invalid), kInvalidAsset);
  EXPECT_EQ(company_.blocks().highest_record(), highest);
  EXPECT_EQ(company_.blocks().free_count(), 0u);
  EXPECT_EQ(Size("A"), a);
  EXPECT_EQ(Size("I1"), i1);
  EXPECT_EQ(Size("I2"), i2);

  // A sort key already taken (a damaged .I2): the new .I1 key is taken back out.
  NvAsset clash = MakeAsset(company_.record(), 200);
  const std::string sort_key = AssetSortKey(clash, company_.RecordFormat());
  uint32_t node = 0;
  ASSERT_EQ(company_.sort_index().Insert(sort_key, first.record_number, "ACL", &node), kOk);
  EXPECT_EQ(company_.AddAsset(&clash), kDuplicate);
  NvAsset found;
  EXPECT_EQ(company_.FindAsset(clash.number.Text(), &found), kNotFound);
  ASSERT_EQ(company_.sort_index().Delete(sort_key, "ACL"), kOk);
  EXPECT_EQ(Check(), std::vector<std::string>{});
}

TEST_F(CompanyAssetsTest, FindReplaceAndDeleteWithTheirStatusCodes) {
  NvAsset asset = MakeAsset(company_.record(), 100);
  ASSERT_EQ(company_.AddAsset(&asset), kOk);
  NvAsset found;
  EXPECT_EQ(company_.FindAsset("12A", &found), kNumberKeyFailed);
  EXPECT_EQ(company_.FindAsset("99.1", &found), kNotFound);
  ASSERT_EQ(company_.FindAsset(asset.number.Text(), &found), kOk);
  EXPECT_EQ(found.description, asset.description);
  EXPECT_EQ(found.record_number, asset.record_number);

  NvAsset unread = MakeAsset(company_.record(), 300);
  EXPECT_EQ(company_.ReplaceAsset(&unread), kInvalidAsset);
  EXPECT_EQ(company_.DeleteAsset(unread), kInvalidAsset);

  // A longer record grows its chain in place; the number changes too.
  found.description = std::string(30, 'D');
  for (std::string& field : found.user_fields) field = std::string(20, 'u');
  found.number = NvAssetNo::Parse("555.3", company_.record().asset_no_format);
  ASSERT_EQ(company_.ReplaceAsset(&found), kOk);
  NvAsset moved;
  EXPECT_EQ(company_.FindAsset(asset.number.Text(), &moved), kNotFound);
  ASSERT_EQ(company_.FindAsset("555.3", &moved), kOk);
  EXPECT_EQ(moved.user_fields[9], std::string(20, 'u'));
  EXPECT_EQ(moved.record_number, asset.record_number);
  EXPECT_EQ(Check(), std::vector<std::string>{});

  ASSERT_EQ(company_.Open("ACME", 3, *ui_), 1);
  ASSERT_EQ(company_.FindAsset("555.3", &moved), kOk);
  ASSERT_EQ(company_.DeleteAsset(moved), kOk);
  EXPECT_EQ(company_.FindAsset("555.3", &moved), kNotFound);
  std::string log = testing::ReadText(company_.FilePath("LOG"));
  // User TESTER, tag "DEL ", "Ast" and the number right-aligned in 14, then the text.
  EXPECT_NE(log.find("     TESTER v4.1.141    DEL  Ast        555.003 Asset deleted\r\n"),
            std::string::npos)
      << log;
  EXPECT_EQ(Check(), std::vector<std::string>{});
  // Every block but the company record's second one is free again.
  EXPECT_EQ(company_.blocks().free_count(), company_.blocks().highest_record() - 1);
}

TEST_F(CompanyAssetsTest, WalksInBothOrders) {
  // Sort order "ACL": the account comes first, so sort order differs from number order.
  for (long n : {5, 3, 9, 1}) {
    NvAsset asset = MakeAsset(company_.record(), n * 7, static_cast<int>(10 - n));
    ASSERT_EQ(company_.AddAsset(&asset), kOk);
  }
  EXPECT_EQ(Walk(AssetOrder::kNumber, true), "       1;       3;       5;       9;");
  EXPECT_EQ(Walk(AssetOrder::kNumber, false), "       9;       5;       3;       1;");
  // Accounts 1500 + variant % 5: variants 9, 7, 5, 1 give 1504, 1502, 1500, 1501.
  EXPECT_EQ(Walk(AssetOrder::kSort, true), "       5;       9;       3;       1;");
}

TEST_F(CompanyAssetsTest, ACompanyWithoutAssetsIsWalkedFoundAndDeletedIn) {
  // A new company: both indexes without a root.
  ExpectEveryWalkEmpty();
  NvAsset found;
  EXPECT_EQ(company_.FindAsset("1.1", &found), kNotFound);
  // A failed find leaves no place to step on from: the walk still ends at once.
  NvAsset step;
  step.record_number = 77;
  EXPECT_EQ(company_.NextAsset(AssetOrder::kNumber, &step), kOk);
  EXPECT_EQ(step.record_number, 0u);
  NvAsset stale = MakeAsset(company_.record(), 100);
  stale.record_number = 1;
  EXPECT_EQ(company_.DeleteAsset(stale), kNumberKeyFailed);
  EXPECT_EQ(company_.blocks().free_count(), 0u);
  EXPECT_EQ(Check(), std::vector<std::string>{});
  ExpectEveryWalkEmpty();  // read-only as well
}

TEST_F(CompanyAssetsTest, ACompanyEmptiedByDeletingItsLastAsset) {
  NvAsset only = MakeAsset(company_.record(), 100);
  ASSERT_EQ(company_.AddAsset(&only), kOk);
  ASSERT_EQ(company_.DeleteAsset(only), kOk);
  ExpectEveryWalkEmpty();
  NvAsset found;
  EXPECT_EQ(company_.FindAsset(only.number.Text(), &found), kNotFound);
  EXPECT_EQ(company_.DeleteAsset(only), kNumberKeyFailed);
  EXPECT_EQ(Check(), std::vector<std::string>{});
  ExpectEveryWalkEmpty();

  // It takes assets again.
  ASSERT_EQ(company_.Open("ACME", 3, *ui_), 1);
  NvAsset next = MakeAsset(company_.record(), 7 * 4);
  ASSERT_EQ(company_.AddAsset(&next), kOk);
  EXPECT_EQ(Walk(AssetOrder::kSort, false), "       4;");
  EXPECT_EQ(Walk(AssetOrder::kNumber, true), "       4;");
}

TEST_F(CompanyAssetsTest, InterruptedRunIsRepairedOnTheNextOpen) {
  for (long n = 1; n <= 50; ++n) {
    NvAsset asset = MakeAsset(company_.record(), n);
    ASSERT_EQ(company_.AddAsset(&asset), kOk);
  }
  // The run dies: nothing is closed, the marker stays, the counters on disk are stale.
  const std::string marker = company_.FilePath(kChangingMarkerExtension);
  EXPECT_TRUE(std::filesystem::exists(marker));
  ASSERT_TRUE(CopyFileBytes(company_.FilePath("A"), dir_.File("saved.A")));
  ASSERT_TRUE(CopyFileBytes(company_.FilePath("I1"), dir_.File("saved.I1")));
  EXPECT_EQ(company_.Close(), 0);
  ASSERT_TRUE(CopyFileBytes(dir_.File("saved.A"), company_.FilePath("A")));
  // The index as it stood before the last few splits: the rebuild does not need it.
  testing::WriteAll(company_.FilePath("I1"), testing::Bytes(55, 0));
  testing::WriteAll(marker, {});

  ASSERT_EQ(company_.Open("ACME", 3, *ui_), 1);
  EXPECT_EQ(Check(), std::vector<std::string>{});
  EXPECT_FALSE(std::filesystem::exists(marker));
  NvAsset found;
  for (long n = 1; n <= 50; ++n) {
    ASSERT_EQ(company_.FindAsset(MakeAsset(company_.record(), n).number.Text(), &found), kOk) << n;
  }
}

// Assets of a company from before the current layout keep their old chains (16-bit next
// field at 0, marker at 2, 142 data bytes) until they are rewritten, with either old
// first-block marker; the rebuild after an interrupted run keeps them.
TEST_F(CompanyAssetsTest, RebuildKeepsOldLayoutChains) {
  const AssetRecordFormat format = company_.RecordFormat();
  std::vector<NvAsset> assets;
  uint32_t block = company_.blocks().highest_record() + 1;
  for (uint8_t first_marker : {0xE0, 0xE2}) {
    NvAsset asset = MakeAsset(company_.record(), first_marker == 0xE0 ? 40 : 41);
    const std::string bytes = SerializeAssetRecord(asset, format);
    const size_t pieces = (bytes.size() + 141) / 142;
    for (size_t i = 0; i < pieces; ++i, ++block) {
      const uint16_t next = i + 1 < pieces ? static_cast<uint16_t>(block + 1) : 0;
      testing::Bytes b = testing::ByteBuilder()
                             .U16(next)
                             .Raw({i == 0 ? first_marker : uint8_t{0xE1}})
                             .Text(bytes.substr(i * 142, 142))
                             .bytes();
      b.resize(145, 0);
      ASSERT_TRUE(company_.blocks().WriteRecord(block, b.data()));
    }
    assets.push_back(asset);
  }
  EXPECT_EQ(company_.Close(), 0);
  testing::WriteAll(company_.FilePath(kChangingMarkerExtension), {});

  ASSERT_EQ(company_.Open("ACME", 3, *ui_), 1);
  NvAsset found;
  for (const NvAsset& asset : assets) {
    ASSERT_EQ(company_.FindAsset(asset.number.Text(), &found), kOk) << asset.number.Text();
    EXPECT_EQ(found.description, asset.description);
  }
  EXPECT_EQ(company_.blocks().free_count(), 0u);
  EXPECT_EQ(Check(), std::vector<std::string>{});
}

}  // namespace
}  // namespace nv
