// Writing the whole-company text file: which records go out and in what order, what the
// user is told, and the command from the company selection to the screen's second showing.
// The records' bytes are the record writer's tests.
#include "export/text_file_export.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "base/path.h"
#include "base/temp_dir_testing.h"
#include "store/asset/asset.h"
#include "store/company/asset_testing.h"
#include "store/company/master_file.h"
#include "store/file/block_chain.h"
#include "store/store_testing.h"
#include "ui/scripted_ui_testing.h"

namespace nv {
namespace {

using testing::Script;

// The records of a file whose records end with CR LF.
std::vector<std::string> Records(const std::string& path) {
  const std::string bytes = testing::ReadText(path);
  std::vector<std::string> records;
  for (size_t start = 0; start < bytes.size();) {
    const size_t end = bytes.find("\r\n", start);
    if (end == std::string::npos) {
      ADD_FAILURE() << "a record without its line end in " << path;
      break;
    }
    records.push_back(bytes.substr(start, end - start));
    start = end + 2;
  }
  return records;
}

bool Holds(const std::string& record, const std::string& text) {
  return record.find(text) != std::string::npos;
}

class TextFileExportTest : public ::testing::Test {
 protected:
  // Company ACME (schedules B and T) with four assets added in the order 15, 1, 8, 22
  // (numbers 2.2, 0.2, 1.2, 3.2): record-number order is not asset-number order. Asset 8
  // is deleted and asset 22's first block is damaged.
  TextFileExportTest() : ctx_(testing::ContextFor(dir_.path())) {
    NvCompany company(ctx_);
    company.record() = testing::TwoBookCompany();
    EXPECT_EQ(company.Create({"ACME", "Acme Tools"}, NvCompany::kOpenI1 | NvCompany::kOpenI2), 0);
    auto quiet = Script("");
    EXPECT_EQ(company.Open("ACME", NvCompany::kOpenI1 | NvCompany::kOpenI2, *quiet), 1);
    uint32_t damaged = 0;
    for (long n : {15, 1, 8, 22}) {
      NvAsset asset = testing::MakeAsset(company.record(), n);
      EXPECT_EQ(company.AddAsset(&asset), kOk);
      if (n == 8) {
        EXPECT_EQ(company.DeleteAsset(asset), kOk);
      }
      if (n == 22) damaged = asset.record_number;
    }
    EXPECT_EQ(company.Close(), 0);
    auto blocks = testing::ReadAll(dir_.File("ACME.A"));
    blocks.at(damaged * kBlockLength + kBlockMarkerOffset) = 0x77;
    testing::WriteAll(dir_.File("ACME.A"), blocks);

    MasterFile master;
    master.companies = {{"ACME", "Acme Tools"}};
    EXPECT_EQ(WriteMasterFile(ctx_.data_directory(), master), MasterFileStatus::kOk);
  }

  TextFileRequest Request(std::string folder, std::string name = "ACME.DBS") const {
    return {std::move(folder), "ACME", std::move(name), "Acme Tools"};
  }

  TempDir dir_;
  InstallationContext ctx_;
};

TEST_F(TextFileExportTest, WritesTheAssetsInRecordOrderAndCountsTheDamagedOne) {
  auto ui = Script("choose 0\n");
  const TextFileResult result = WriteTextFile(ctx_, Request(dir_.path() + "/"), *ui);
  EXPECT_TRUE(result.written);
  EXPECT_EQ(result.copied, 2u);
  EXPECT_EQ(result.erroneous, 1u);
  const std::vector<std::string> records = Records(dir_.File("ACME.DBS"));
  ASSERT_EQ(records.size(), 2u);
  EXPECT_TRUE(Holds(records[0], "Asset 15 variant 0"));
  EXPECT_TRUE(Holds(records[1], "Asset 1 variant 0"));
  EXPECT_TRUE(Holds(records[0], "\t"));  // the first option is the tab-delimited type

  const std::string& t = ui->transcript();
  EXPECT_EQ(t.rfind("choice title=\"\" text=\"Record Type\" note=\"\" options=[", 0), 0u) << t;
  EXPECT_NE(t.find("\nprogress title=\"Creating Text File\""), std::string::npos) << t;
  EXPECT_TRUE(
      t.ends_with("message title=\"Create Text File\" text=\"2 assets copied.\\n1 "
                  "erroneous records.\"\n"))
      << t;
}

TEST_F(TextFileExportTest, ACounterPastTheFileDoesNotLengthenTheWalk) {
  // The company record begins in block 0's data (offset 7) with the u32 highest record.
  auto blocks = testing::ReadAll(dir_.File("ACME.A"));
  const size_t in_file = blocks.size() / kBlockLength;
  blocks.at(7 + 2) = 0x10;  // 0x00100000 and more: far past the file's blocks
  testing::WriteAll(dir_.File("ACME.A"), blocks);
  auto ui = Script("choose 3\n");
  const TextFileResult result = WriteTextFile(ctx_, Request(dir_.path()), *ui);
  EXPECT_EQ(result.copied, 2u);
  EXPECT_EQ(result.erroneous, 1u);
  EXPECT_NE(ui->transcript().find(" total=" + std::to_string(in_file - 1) + " "), std::string::npos)
      << ui->transcript();
}

TEST_F(TextFileExportTest, NothingIsWrittenWhenTheRunCannotStart) {
  auto closed = Script("close\n");
  EXPECT_FALSE(WriteTextFile(ctx_, Request(dir_.path()), *closed).written);
  EXPECT_FALSE(std::filesystem::exists(dir_.File("ACME.DBS")));
  EXPECT_EQ(closed->transcript().find("message"), std::string::npos) << closed->transcript();

  auto missing = Script("choose 1\n");
  const std::string folder = dir_.File("gone");
  EXPECT_FALSE(WriteTextFile(ctx_, Request(folder + "/"), *missing).written);
  EXPECT_TRUE(missing->transcript().ends_with(
      "message title=\"Error\" text=\"Unable to create "
      "text file " +
      testing::TranscriptText(JoinPath(folder, "ACME.DBS")) + "\"\n"))
      << missing->transcript();

  auto unknown = Script("");
  TextFileRequest request = Request(dir_.path());
  request.company_number = "NOPE";
  EXPECT_FALSE(WriteTextFile(ctx_, request, *unknown).written);
  EXPECT_EQ(unknown->transcript(),
            "message title=\"Error\" text=\"Unable to open company NOPE\"\n");
}

TEST_F(TextFileExportTest, AUserWithoutAccessGetsNoFile) {
  NvCompany company(ctx_);
  auto quiet = Script("");
  ASSERT_EQ(company.Open("ACME", NvCompany::kOpenI1 | NvCompany::kOpenI2, *quiet), 1);
  company.record().permissions = "OWNER:F|*:N";
  ASSERT_EQ(company.Close(), 0);
  ctx_.network_mode = true;  // where permissions always hold
  auto ui = Script("choose 0\n");
  EXPECT_FALSE(WriteTextFile(ctx_, Request(dir_.path()), *ui).written);
  EXPECT_EQ(ui->transcript(),
            "message title=\"Message\" text=\"You are not permitted to access company ACME\"\n");
  EXPECT_FALSE(std::filesystem::exists(dir_.File("ACME.DBS")));
}

TEST_F(TextFileExportTest, AFailedWriteIsToldAndItsRecordsCounted) {
  if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "no /dev/full here";
  auto ui = Script("choose 2\n");
  const TextFileResult result = WriteTextFile(ctx_, Request("/dev", "full"), *ui);
  EXPECT_EQ(result.copied, 0u);
  EXPECT_EQ(result.erroneous, 3u);
  // Asset 15 was the first record of the piece that could not be written.
  NvCompany company(ctx_);
  auto quiet = Script("");
  ASSERT_EQ(company.Open("ACME", NvCompany::kOpenI1 | NvCompany::kReadOnly, *quiet), 1);
  NvAsset first;
  ASSERT_EQ(company.FindAsset("2.2", &first), kOk);
  EXPECT_NE(ui->transcript().find("message title=\"Error\" text=\"Unable to write asset record " +
                                  std::to_string(first.record_number) + "\"\n"),
            std::string::npos)
      << ui->transcript();
  EXPECT_TRUE(ui->transcript().ends_with("text=\"0 assets copied.\\n3 erroneous records.\"\n"));
}

TEST_F(TextFileExportTest, TheCommandSelectsWritesAndShowsTheScreenAgain) {
  CompanyInUseLock lock;
  NvCompany company(ctx_);
  auto ui = Script(
      "choose 0\n"  // the company
      "field file_name ACME.CSV\n"
      "press create\n"
      "choose 1\n"  // comma-delimited
      "press close\n");
  CreateTextFileForExport(ctx_, *ui, lock, company);
  EXPECT_FALSE(ui->failed()) << ui->transcript();
  EXPECT_EQ(ui->answers_left(), 0u);
  EXPECT_TRUE(lock.held()) << "the selection's lock is the caller's to let go";
  const std::vector<std::string> records = Records(dir_.File("ACME.CSV"));
  ASSERT_EQ(records.size(), 2u);
  EXPECT_TRUE(Holds(records[1], "Asset 1 variant 0,"));

  size_t at = 0;
  for (const char* step :
       {"choice title=\"Select Company\"", "\ntext-file-screen ", "file_name=\"ACME.DBS\"",
        "\nchoice title=\"\" text=\"Record Type\"",
        "\nmessage title=\"Create Text File\" text=\"2 assets copied.\\n1 erroneous records.\"",
        "\ntext-file-screen ", "file_name=\"ACME.CSV\" -> press close\n"}) {
    at = ui->transcript().find(step, at);
    ASSERT_NE(at, std::string::npos) << step << " in\n" << ui->transcript();
  }
}

TEST(TextFileExportCommand, WithoutACompanyAltLeadsToTheExportDefinitions) {
  TempDir empty;
  const InstallationContext ctx = testing::ContextFor(empty.path());
  const std::string no_companies =
      "message title=\"Message\" text=\"No companies in data directory.\"\n";
  for (const bool alt : {false, true}) {
    CompanyInUseLock lock;
    NvCompany company(ctx);
    auto ui = Script(alt ? "alt-held\n" : "");
    CreateTextFileForExport(ctx, *ui, lock, company);
    EXPECT_EQ(ui->transcript(),
              no_companies + (alt ? "alt-key -> held\n"
                                    "message title=\"Note\" text=\"Entering Advanced Export "
                                    "Program\"\n" +
                                        no_companies  // the definitions window asks again
                                  : "alt-key -> up\n"));
  }
}

}  // namespace
}  // namespace nv
