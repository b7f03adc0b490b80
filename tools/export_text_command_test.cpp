// nvtool export-text: the file, the count line, and the errors with their statuses.
#include <gtest/gtest.h>

#include <sstream>

#include "base/path.h"
#include "base/temp_dir_testing.h"
#include "store/company/asset_testing.h"
#include "store/file/block_chain.h"
#include "store/store_testing.h"
#include "tools/nvtool_commands.h"
#include "ui/scripted_ui_testing.h"

namespace nv {
namespace {

struct ToolRun {
  int status;
  std::string out;
  std::string err;
};

class ExportTextCommandTest : public ::testing::Test {
 protected:
  // Company ACME with assets 1 and 2, in a folder without MASTER.A (nvtool needs none).
  ExportTextCommandTest() : ctx_(testing::ContextFor(dir_.path())) {
    NvCompany company(ctx_);
    company.record() = testing::TwoBookCompany();
    EXPECT_EQ(company.Create({"ACME", "Acme Tools"}, NvCompany::kOpenI1 | NvCompany::kOpenI2), 0);
    auto quiet = testing::Script("");
    EXPECT_EQ(company.Open("ACME", NvCompany::kOpenI1 | NvCompany::kOpenI2, *quiet), 1);
    for (long n : {1, 2}) {
      NvAsset asset = testing::MakeAsset(company.record(), n);
      EXPECT_EQ(company.AddAsset(&asset), kOk);
      records_.push_back(asset.record_number);
    }
    EXPECT_EQ(company.Close(), 0);
  }

  ToolRun Export(std::vector<std::string> more) {
    std::vector<std::string> args = {"export-text", dir_.path(), "acme", out_file_};
    args.insert(args.end(), more.begin(), more.end());
    std::ostringstream out, err;
    const int status = RunNvtool(args, out, err);
    return {status, out.str(), err.str()};
  }

  TempDir dir_;
  InstallationContext ctx_;
  std::vector<uint32_t> records_;
  std::string out_file_ = dir_.File("acme.csv");
};

TEST_F(ExportTextCommandTest, WritesTheFileAndPrintsTheCount) {
  ToolRun run = Export({"--type", "comma"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out, "2 assets copied.\n");
  EXPECT_EQ(run.err, "");
  const std::string text = testing::ReadText(out_file_);
  EXPECT_TRUE(text.starts_with("BATSC,")) << text;  // the slot letters of books B and T
  EXPECT_NE(text.find("Asset 1 variant 0,"), std::string::npos);
  EXPECT_TRUE(text.ends_with("\r\n"));

  // A file there is written over only when asked.
  ToolRun kept = Export({"--type", "fixed-nolines"});
  EXPECT_EQ(kept.status, 1);
  EXPECT_EQ(kept.err, "nvtool: " + out_file_ + " exists already; --replace writes over it\n");
  EXPECT_EQ(testing::ReadText(out_file_), text);
  ToolRun replaced = Export({"--replace", "--type", "fixed-nolines"});
  EXPECT_EQ(replaced.status, 0) << replaced.err;
  EXPECT_EQ(testing::ReadText(out_file_).find('\n'), std::string::npos);
}

TEST_F(ExportTextCommandTest, ADamagedRecordIsCountedAndFailsTheRun) {
  auto blocks = testing::ReadAll(dir_.File("ACME.A"));
  blocks.at(records_[0] * kBlockLength + kBlockMarkerOffset) = 0x77;
  testing::WriteAll(dir_.File("ACME.A"), blocks);
  ToolRun run = Export({"--type", "tab"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out, "1 assets copied. 1 erroneous records.\n");
}

TEST_F(ExportTextCommandTest, ErrorsAreOneLineAndUsageErrorsStatusTwo) {
  out_file_ = dir_.File("no/such/folder/acme.csv");
  ToolRun folder = Export({"--type", "tab"});
  EXPECT_EQ(folder.status, 1);
  EXPECT_EQ(folder.err, "nvtool: " + out_file_ + " is not a file in an existing folder\n");

  std::ostringstream out, err;
  EXPECT_EQ(
      RunNvtool({"export-text", dir_.path(), "NOPE", dir_.File("x"), "--type", "tab"}, out, err),
      1);
  EXPECT_EQ(err.str(), "nvtool: no company NOPE in " + WithTrailingSeparator(dir_.path()) + "\n");

  out_file_ = dir_.File("acme.csv");
  for (const auto& [args, first_line] :
       std::vector<std::pair<std::vector<std::string>, std::string>>{
           {{}, "nvtool: export-text needs --type tab|comma|fixed|fixed-nolines"},
           {{"--type", "csv"},
            "nvtool: unknown record type 'csv' (tab, comma, fixed or fixed-nolines)"},
           {{"--type", "tab", "--force"},
            "nvtool: export-text has no option --force (--type, --replace)"}}) {
    ToolRun run = Export(args);
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.err.substr(0, run.err.find('\n')), first_line);
    EXPECT_NE(run.err.find("usage: nvtool"), std::string::npos);
  }
  EXPECT_FALSE(std::filesystem::exists(out_file_));
}

}  // namespace
}  // namespace nv
