#include "store/company/company.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>

#include "base/coding.h"
#include "base/path.h"
#include "store/company/asset_testing.h"
#include "store/company/company_check.h"
#include "store/company/master_file.h"
#include "store/file/key_compare.h"
#include "store/file/status.h"
#include "store/store_testing.h"
#include "ui/scripted_ui_testing.h"

namespace nv {
namespace {

// A path as the transcript shows it, backslashes doubled.
std::string Escaped(const std::string& path) {
  std::string out;
  for (char c : path) out += c == '\\' ? std::string("\\\\") : std::string(1, c);
  return out;
}

using testing::Bytes;
using testing::ReadAll;
using testing::WriteAll;

// A company's block file as the layout gives it: the data cut into 138-byte pieces, one
// per 145-byte block (145 in the length field, marker, next block), blocks 0, 1, 2, ...
Bytes CompanyBlocks(const std::string& data, uint8_t first_marker) {
  Bytes out;
  size_t pieces = (data.size() + 137) / 138;
  for (size_t i = 0; i < pieces; ++i) {
    out.push_back(145);
    out.push_back(0);
    out.push_back(i == 0 ? first_marker : 0xE1);
    uint32_t next = i + 1 < pieces ? static_cast<uint32_t>(i + 1) : 0;
    for (int b = 0; b < 4; ++b) out.push_back(static_cast<uint8_t>(next >> (8 * b)));
    for (size_t j = 0; j < 138; ++j) {
      size_t at = i * 138 + j;
      out.push_back(at < data.size() ? static_cast<uint8_t>(data[at]) : 0);
    }
  }
  return out;
}

class CompanyTest : public ::testing::Test {
 protected:
  CompanyTest() {
    ctx_.run.product_name = "NORVANE";
    ctx_.current.slot.data_path = dir_.path() + "/";
    ctx_.user_name = "BOB";
  }

  NvCompanyRecord SmallRecord() {
    NvCompanyRecord r;
    r.name = "Acme";
    r.schedule_letters = "B";
    r.schedules = {{'B', "B", "Book"}};
    r.current_year_end = {12, 31, 2024};
    r.last_closed = {12, 31, 2023};
    r.global_loc_cat = 'N';
    return r;
  }

  int CreateCompany(const std::string& number, const NvCompanyRecord& record, int flags = 3) {
    NvCompany company(ctx_);
    company.record() = record;
    return company.Create({number, record.name}, flags);
  }

  std::string File(const std::string& name) const { return dir_.path() + "/" + name; }

  testing::TempDir dir_;
  InstallationContext ctx_;
};

TEST_F(CompanyTest, CreateWritesRecordChainWithCountersAndIndexHeaders) {
  NvCompanyRecord r = SmallRecord();
  r.permissions = std::string(150, 'P');  // two blocks: block 1 is allocated on writing
  ASSERT_EQ(CreateCompany("acme", r), 0);

  std::string user_fields = "10\t";
  for (int i = 0; i < 10; ++i) user_fields += "\t\t";
  // Counters after the chain took block 1: highest 1, free head 0, free count 0.
  std::string data = std::string("\x01\0\0\0\0\0\0\0\0\0\0\0\t", 13) + "12312024\t12\t\tAcme\t\t" +
                     "12312023\t" + "B      B Book      " + std::string(12, ' ') + "\t" + "\t" +
                     "0\tN\t\tN\t" + user_fields + "\t" + std::string(150, 'P') + "\t\t" +
                     "LOGFLAGS(10)\t0\t0\t";
  EXPECT_EQ(ReadAll(File("ACME.A")), CompanyBlocks(data, 0xE3));

  // Empty indexes: magic, highest 0, root 0, free head 0, free count 0, then 0xAA.
  Bytes i1 = ReadAll(File("ACME.I1"));
  ASSERT_EQ(i1.size(), 3u * 9 + 28);  // key length 6 + 2 + 1
  EXPECT_EQ(std::string(i1.begin(), i1.begin() + 7), "NVW3300");
  EXPECT_EQ(Bytes(i1.begin() + 7, i1.begin() + 23), Bytes(16, 0));
  EXPECT_EQ(i1[23], 0xAA);
  // Sort order empty: the .I2 key is the short-format base of 9 bytes.
  EXPECT_EQ(ReadAll(File("ACME.I2")).size(), 3u * 9 + 28);
}

TEST_F(CompanyTest, OpenReadsWhatCreateWroteAndFixesTheYearEnd) {
  NvCompanyRecord r = SmallRecord();
  r.current_year_end = {6, 30, 2026};  // more than a year after Last Closed
  r.asset_no_format = {8, 3, NvAssetNoFormat::kLetters};
  r.sort_order = "ACL";
  ASSERT_EQ(CreateCompany("ACME", r), 0);
  EXPECT_EQ(ReadAll(File("ACME.A"))[2], 0xE5);

  auto ui = testing::Script("");
  NvCompany company(ctx_);
  ASSERT_EQ(company.Open("acme", NvCompany::kOpenI1 | NvCompany::kOpenI2, *ui), 1);
  EXPECT_EQ(company.number(), "ACME");
  EXPECT_EQ(company.record().name, "Acme");
  EXPECT_EQ(company.record().schedule_letters, "B");
  EXPECT_EQ(company.record().asset_no_format, r.asset_no_format);
  EXPECT_EQ(company.record().current_year_end, (Date{12, 31, 2024}));
  EXPECT_EQ(company.number_index().key_length(), 12u);
  EXPECT_EQ(company.sort_index().key_length(), 14u + 24 + 10 + 10);
  EXPECT_EQ(company.Close(), 0);
  EXPECT_EQ(ui->transcript(), "");
}

TEST_F(CompanyTest, TenBlocksAreReadWholeAndALongerRecordIsCutAtTen) {
  NvCompanyRecord r = SmallRecord();
  // Permissions long enough to make the record exactly ten blocks of 138 bytes.
  std::string head = SerializeCompanyRecord(r, {});
  const size_t fixed = head.size();  // permissions empty
  r.permissions = std::string(10 * 138 - fixed, 'W');
  r.misc_codes = "";
  ASSERT_EQ(SerializeCompanyRecord(r, {}).size(), 10u * 138);
  ASSERT_EQ(CreateCompany("TEN", r), 0);
  ASSERT_EQ(ReadAll(File("TEN.A")).size(), 10u * 145);
  auto ui = testing::Script("");
  {
    NvCompany company(ctx_);
    ASSERT_EQ(company.Open("TEN", NvCompany::kReadOnly, *ui), 1);
    EXPECT_EQ(company.record().permissions, r.permissions);
    EXPECT_EQ(company.record().logging_flags, kLoggingPartial);
  }
  r.permissions += std::string(200, 'X');
  r.logging_flags = kLoggingDetailed;
  ASSERT_EQ(CreateCompany("ELEVEN", r), 0);
  ASSERT_EQ(ReadAll(File("ELEVEN.A")).size(), 12u * 145);
  NvCompany company(ctx_);
  ASSERT_EQ(company.Open("ELEVEN", NvCompany::kReadOnly, *ui), 1);
  // The permissions text runs to the end of the tenth block; what followed is lost.
  const size_t after_permissions = std::string("\t\tLOGFLAGS(10)\t0\t0\t").size();
  const size_t permissions_at = fixed - after_permissions;
  EXPECT_EQ(company.record().permissions, r.permissions.substr(0, 10 * 138 - permissions_at));
  EXPECT_EQ(company.record().logging_flags, kLoggingPartial);
}

TEST_F(CompanyTest, NewerVersionDamagedAndMissingFiles) {
  auto ui = testing::Script("");
  NvCompany company(ctx_);
  EXPECT_EQ(company.Open("NONE", 0, *ui), kBlockFileMissing);

  std::string newer = std::string(12, '\0') + "\tv4.2.0\tf8/3/0\t12312024\t12\t\tNew\t";
  WriteAll(File("NEW.A"), CompanyBlocks(newer, 0xE5));
  EXPECT_EQ(company.Open("NEW", 3, *ui), kNewerVersion);
  EXPECT_FALSE(company.is_open());

  WriteAll(File("BAD.A"), CompanyBlocks("x", 0xE4));  // an asset's marker at block 0
  EXPECT_EQ(company.Open("BAD", 0, *ui), kBadMarker);
  Bytes odd = CompanyBlocks("x", 0xE3);
  odd[0] = 144;  // a block length other than 145
  WriteAll(File("ODD.A"), odd);
  EXPECT_EQ(company.Open("ODD", 0, *ui), kBadMarker);
  WriteAll(File("EMPTY.A"), {});
  EXPECT_EQ(company.Open("EMPTY", 0, *ui), kBlockFileMissing);

  // A chain whose second block lies past the end of the file.
  Bytes cut = CompanyBlocks(std::string(200, 'z'), 0xE3);
  cut.resize(145);
  WriteAll(File("CUT.A"), cut);
  EXPECT_EQ(company.Open("CUT", NvCompany::kReadOnly, *ui), kBrokenChain);
  EXPECT_EQ(company.Open("CUT", NvCompany::kReadOnly | NvCompany::kTolerateShortChain, *ui), 1);
  EXPECT_EQ(company.Close(), 0);

  ASSERT_EQ(CreateCompany("IDX", SmallRecord(), 0), 0);
  EXPECT_EQ(company.Open("IDX", NvCompany::kOpenI1, *ui), kI1Failed);
  EXPECT_EQ(company.Open("IDX", NvCompany::kOpenI2, *ui), kI2Failed);
  WriteAll(File("IDX.I1"), Bytes(55, 'j'));
  EXPECT_EQ(company.Open("IDX", NvCompany::kOpenI1, *ui), kBadHeaderI1);
  EXPECT_FALSE(company.is_open());
}

TEST_F(CompanyTest, ReadOnlyOpenWritesNothing) {
  ASSERT_EQ(CreateCompany("RO", SmallRecord()), 0);
  const Bytes before = ReadAll(File("RO.A"));
  const Bytes i1_before = ReadAll(File("RO.I1"));
  auto ui = testing::Script("");
  NvCompany company(ctx_);
  ASSERT_EQ(company.Open("RO", 3 | NvCompany::kReadOnly, *ui), 1);
  company.record().name = "Changed";
  EXPECT_EQ(company.Close(), 0);
  EXPECT_EQ(ReadAll(File("RO.A")), before);
  EXPECT_EQ(ReadAll(File("RO.I1")), i1_before);
}

class OldCompanyTest : public CompanyTest {
 protected:
  void SetUp() override {
    NvCompanyRecord r = SmallRecord();
    std::string data = SerializeOldCompanyRecord(r, {0, 0, 0});
    // Old layout: u16 next block at 0, marker 0xE0, 142 data bytes.
    Bytes block = {0, 0, 0xE0};
    for (size_t i = 0; i < 142; ++i) block.push_back(i < data.size() ? data[i] : 0);
    ASSERT_LE(data.size(), 142u);
    old_bytes_ = block;
    WriteAll(File("OLD.A"), block);
    WriteAll(File("OLD.ini"), {'x'});
  }
  Bytes old_bytes_;
};

TEST_F(OldCompanyTest, BackupThenRewriteInTheCurrentLayout) {
  auto ui = testing::Script("yes\n");
  {
    NvCompany company(ctx_);
    ASSERT_EQ(company.Open("OLD", 0, *ui), 1);
    EXPECT_TRUE(company.old_layout());
    EXPECT_EQ(company.record().name, "Acme");
  }
  const std::string backup = File("OLD.pre_v3");
  EXPECT_EQ(ReadAll(backup + "/OLD.A"), old_bytes_);
  EXPECT_EQ(ReadAll(backup + "/OLD.ini"), Bytes{'x'});
  const std::string question =
      "question title=\"Question\" text=\"Opening this company using this version of "
      "NORVANE\\nwill make it impossible for versions prior to version 3.0 to open this "
      "company.\\n\\nWe recommend that you create a backup copy of this company's files. "
      "\\nNORVANE can create a backup copy in folder\\n  " +
      Escaped(backup) +
      "\\nWould you like NORVANE to create this backup copy?\" buttons=[\"&Yes\", \"&No\", "
      "\"Cancel\"] default=\"&Yes\" -> yes\n";
  EXPECT_EQ(ui->transcript(), question);
  Bytes now = ReadAll(File("OLD.A"));
  ASSERT_EQ(now.size(), 145u);
  EXPECT_EQ(now[0], 145);
  EXPECT_EQ(now[2], 0xE3);

  // Asked again, the backup folder exists: the open is refused and nothing changes.
  WriteAll(File("OLD.A"), old_bytes_);
  auto again = testing::Script("yes\n");
  NvCompany company(ctx_);
  EXPECT_EQ(company.Open("OLD", 0, *again), kNewerVersion);
  EXPECT_NE(again->transcript().find("NORVANE cannot create the backup files, because folder"),
            std::string::npos);
  EXPECT_EQ(ReadAll(File("OLD.A")), old_bytes_);
}

TEST_F(OldCompanyTest, DecliningTheBackupAsksOnceMore) {
  auto refused = testing::Script("no\nno\n");
  NvCompany company(ctx_);
  EXPECT_EQ(company.Open("OLD", 0, *refused), kNewerVersion);
  EXPECT_NE(refused->transcript().find("Are you sure you want to open this company without "
                                       "making a backup copy first?\" buttons=[\"&Yes\", "
                                       "\"&No\", \"Cancel\"] default=\"&No\" -> no"),
            std::string::npos);
  EXPECT_EQ(ReadAll(File("OLD.A")), old_bytes_);
  EXPECT_FALSE(std::filesystem::exists(File("OLD.pre_v3")));

  auto confirmed = testing::Script("no\nyes\n");
  ASSERT_EQ(company.Open("OLD", 0, *confirmed), 1);
  EXPECT_EQ(company.Close(), 0);
  EXPECT_EQ(ReadAll(File("OLD.A"))[2], 0xE3);

  // Read-only opens never ask.
  WriteAll(File("OLD.A"), old_bytes_);
  auto none = testing::Script("");
  ASSERT_EQ(company.Open("OLD", NvCompany::kReadOnly, *none), 1);
  EXPECT_EQ(none->transcript(), "");
}

// The first change to an old company writes its record in the current layout at once, so
// that the counters written after each operation land in a block 0 that has their place,
// and a reader sees the new asset before the writer closes.
TEST_F(OldCompanyTest, FirstAssetTurnsBlockZeroCurrentAtOnce) {
  const NvCompanyRecord record = SmallRecord();
  const NvAssetNoFormat& format = record.asset_no_format;
  // Indexes in the current layout: only block 0 is old here.
  NvBTreeFile index;
  ASSERT_EQ(
      index.Create(File("OLD.I1"), I1KeyLength(true, format.main_length, format.subasset_length),
                   kBadHeaderI1),
      kOk);
  ASSERT_EQ(index.Close(), 0);
  ASSERT_EQ(index.Create(File("OLD.I2"), I2KeyLength(true, record.sort_order, format.IsLong()),
                         kBadHeaderI2),
            kOk);
  ASSERT_EQ(index.Close(), 0);

  auto ui = testing::Script("no\nyes\n");
  NvCompany writer(ctx_);
  ASSERT_EQ(writer.Open("OLD", NvCompany::kOpenI1 | NvCompany::kOpenI2, *ui), 1);
  NvAsset asset = testing::MakeAsset(writer.record(), 50);
  ASSERT_EQ(writer.AddAsset(&asset), kOk);

  const Bytes a = ReadAll(File("OLD.A"));
  const uint32_t highest = writer.blocks().highest_record();
  ASSERT_EQ(a.size(), (highest + 1) * 145u);
  // Length field 145, marker E3, then after the next field the counters: highest record,
  // free head, free count.
  EXPECT_EQ(testing::Slice(a, 0, 3), Bytes({145, 0, 0xE3}));
  EXPECT_EQ(testing::Slice(a, 7, 12), testing::ByteBuilder().U32(highest).U32(0).U32(0).bytes());

  NvCompany reader(ctx_);
  auto none = testing::Script("");
  ASSERT_EQ(
      reader.Open("OLD", NvCompany::kOpenI1 | NvCompany::kOpenI2 | NvCompany::kReadOnly, *none), 1);
  EXPECT_FALSE(reader.old_layout());
  const CompanyCheck check = CheckCompany(reader);
  for (const std::string& problem : check.problems) ADD_FAILURE() << problem;
  NvAsset found;
  ASSERT_EQ(reader.FindAsset(asset.number.Text(), &found), kOk);
  EXPECT_EQ(found.description, asset.description);
}

TEST_F(CompanyTest, BackUpCopiesCompanyFilesButNotTheLockOrFolders) {
  ASSERT_EQ(CreateCompany("ACME", SmallRecord()), 0);
  WriteAll(File("ACME.LOK"), {'l'});
  WriteAll(File("acme.cat"), {'c'});
  WriteAll(File("ACMEX.A"), {'o'});  // another company
  std::filesystem::create_directory(File("ACME.img"));
  auto ui = testing::Script("");
  NvCompany company(ctx_);
  company.SetLocation("ACME", dir_.path());
  ASSERT_TRUE(company.BackUp(File("bk"), *ui));
  std::vector<std::string> names;
  for (const auto& e : std::filesystem::directory_iterator(File("bk"))) {
    names.push_back(e.path().filename().string());
  }
  std::sort(names.begin(), names.end());
  EXPECT_EQ(names, (std::vector<std::string>{"ACME.A", "ACME.I1", "ACME.I2", "acme.cat"}));
  EXPECT_FALSE(company.BackUp(dir_.path() + "/no/such/folder", *ui));
  EXPECT_NE(ui->transcript().find("Unable to create folder\\n"), std::string::npos);
}

TEST_F(CompanyTest, SubfoldersDeleteAndNumbers) {
  ctx_.current.subfolders = true;
  MasterFile master;
  master.subfolders = true;
  InsertMasterRec(&master.companies, {"ACME", "Acme"});
  InsertMasterRec(&master.companies, {"ZED", "Zed"});
  ASSERT_EQ(WriteMasterFile(ctx_.data_directory(), master), MasterFileStatus::kOk);
  ASSERT_EQ(CreateCompany("ACME", SmallRecord()), 0);
  EXPECT_TRUE(std::filesystem::exists(File("ACME.CLT/ACME.A")));
  EXPECT_EQ(CompanyFolder(ctx_, "acme"), WithTrailingSeparator(File("ACME.CLT")));

  EXPECT_TRUE(DeleteCompanyFiles(ctx_, "acme"));
  EXPECT_FALSE(std::filesystem::exists(File("ACME.CLT")));
  ASSERT_EQ(ReadMasterFile(ctx_.data_directory(), &master), MasterFileStatus::kOk);
  ASSERT_EQ(master.companies.size(), 1u);
  EXPECT_EQ(master.companies[0].number, "ZED");

  EXPECT_TRUE(IsValidCompanyNumber(" A&#$@19 "));
  EXPECT_FALSE(IsValidCompanyNumber("abc"));  // entry is upper case
  EXPECT_FALSE(IsValidCompanyNumber("A.B"));
  EXPECT_FALSE(IsValidCompanyNumber("123456789"));
  EXPECT_FALSE(IsValidCompanyNumber("  "));
}

TEST_F(CompanyTest, LocationAndCategoryListsLoadWithTheirFlag) {
  ASSERT_EQ(CreateCompany("ACME", SmallRecord()), 0);
  testing::WriteAll(File("acme.loc"),
                    testing::Bytes{'N', 'V', 'W', '3', '0', '0', '0', '\r', '\n', '0', '1', '\t',
                                   'M', 'a', 'i', 'n', '\r', '\n'});
  auto ui = testing::Script("");
  NvCompany company(ctx_);
  ASSERT_EQ(company.Open("ACME", NvCompany::kReadOnly, *ui), 1);
  EXPECT_TRUE(company.locations().empty());
  ASSERT_EQ(company.Open("ACME", NvCompany::kReadOnly | NvCompany::kLoadLocCat, *ui), 1);
  ASSERT_EQ(company.locations().size(), 1u);
  EXPECT_EQ(company.locations()[0].code, "01");
  EXPECT_TRUE(company.categories().empty());
}

TEST_F(CompanyTest, CustomYearsLoadOnOpenAndAreWrittenBackOnClose) {
  NvCompanyRecord r = SmallRecord();
  r.schedule_letters = "BT";
  r.schedules.push_back({'T', "T", "Tax"});
  ASSERT_EQ(CreateCompany("ACME", r), 0);
  const std::string ini =
      "[Custom Accounting Year T]\r\nPeriodWeight=Equal\r\n"
      "CurrentYear=12/31/2024*4:03/31/2024,06/30/2024,09/30/2024,12/31/2024\r\n";
  testing::WriteAll(File("ACME.ini"), testing::Bytes(ini.begin(), ini.end()));
  auto ui = testing::Script("");
  {
    NvCompany company(ctx_);
    ASSERT_EQ(company.Open("ACME", 0, *ui), 1);
    EXPECT_EQ(company.CustomYear('B'), nullptr);
    ASSERT_NE(company.CustomYear('T'), nullptr);
    // Dropped in memory only: opening again without kKeepSchedules reads it back.
    company.custom_years().erase('T');
    // With kKeepSchedules the years in memory stay as they are.
    ASSERT_EQ(company.Open("ACME", NvCompany::kKeepSchedules, *ui), 1);
    EXPECT_EQ(company.CustomYear('T'), nullptr);
    ASSERT_EQ(company.Open("ACME", 0, *ui), 1);
    ASSERT_NE(company.CustomYear('T'), nullptr);
    ASSERT_EQ(company.Close(), 0);
  }
  testing::Bytes after = testing::ReadAll(File("ACME.ini"));
  EXPECT_EQ(std::string(after.begin(), after.end()), ini);
}

}  // namespace
}  // namespace nv
