#include "tools/select_command.h"

#include <gtest/gtest.h>

#include <sstream>

#include "base/temp_dir_testing.h"
#include "store/company/asset_testing.h"
#include "store/company/company.h"
#include "tools/nvtool_commands.h"
#include "tools/nvtool_context.h"
#include "ui/scripted_ui_testing.h"

namespace nv {
namespace {

struct ToolRun {
  int status;
  std::string out;
  std::string err;
};

class SelectCommandTest : public ::testing::Test {
 protected:
  // Company SEL with assets 1 to 12 (format 6, 2): location "0N" by asset 1 to 6 and 7 to
  // 12 again, disposal code S for every third, Tax method 13, 33, 3 in turn.
  SelectCommandTest() {
    const InstallationContext ctx = ToolContext(dir_.path());
    NvCompany company(ctx);
    company.record() = testing::TwoBookCompany();
    company.record().asset_no_format = {6, 2, 0};
    EXPECT_EQ(company.Create({"SEL", "Selection"}, NvCompany::kOpenI1 | NvCompany::kOpenI2), 0);
    EXPECT_GT(company.Open("SEL", NvCompany::kOpenI1 | NvCompany::kOpenI2, *testing::Script("")),
              0);
    for (int n = 1; n <= 12; ++n) {
      NvAsset a;
      a.Clear("BT");
      a.number = NvAssetNo::Parse(std::to_string(n), company.record().asset_no_format);
      a.location = "0" + std::to_string((n - 1) % 6 + 1);
      if (n % 3 == 0) {
        a.disposal_code = 'S';
        a.disposal_date = {6, 30, 2024};
      }
      a.Schedule('T')->method = std::array{3, 13, 33}[n % 3];
      EXPECT_EQ(company.AddAsset(&a), 0);
    }
    EXPECT_EQ(company.Close(), 0);
  }

  ToolRun Select(std::vector<std::string> criteria) {
    std::vector<std::string> args = {"select", dir_.path(), "sel"};
    args.insert(args.end(), criteria.begin(), criteria.end());
    std::ostringstream out, err;
    int status = RunNvtool(args, out, err);
    return {status, out.str(), err.str()};
  }

  TempDir dir_;
};

TEST_F(SelectCommandTest, ListsTheNumbersTheCriteriaTake) {
  ToolRun run = Select({"Location=01-02,05", "disposal code!=S"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out, "1.00\n2.00\n5.00\n7.00\n8.00\n11.00\n");
  // The first schedule, B, is N/A for every asset. In T, 3, 6, 9 and 12 have method 3,
  // 2, 5, 8 and 11 method 33; of those, 2, 3, 8 and 9 are in locations up to 04.
  EXPECT_EQ(Select({"Depr Method=3,33"}).out, "");
  EXPECT_EQ(Select({"--schedule", "t", "Depr Method=3,33", "Location=-04"}).out,
            "2.00\n3.00\n8.00\n9.00\n");
  EXPECT_EQ(Select({"Disposal Date=//", "Asset Number=10-"}).out, "10.00\n11.00\n");
}

TEST_F(SelectCommandTest, RefusedCriteriaAndUsage) {
  ToolRun run = Select({"Colour=red"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err, "nvtool: no selection field Colour\n");
  run = Select({"Disposal Date=13/1/2024"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err, "nvtool: Disposal Date: Invalid date\n");
  EXPECT_EQ(Select({"Location"}).status, 1);
  EXPECT_EQ(Select({"--schedule", "X"}).err, "nvtool: company SEL has no schedule X\n");
  EXPECT_EQ(Select({"--schedule"}).status, 2);
  std::ostringstream out, err;
  EXPECT_EQ(RunNvtool({"select", dir_.path(), "NONE"}, out, err), 1);
  EXPECT_NE(err.str().find("no company NONE"), std::string::npos);
}

}  // namespace
}  // namespace nv
