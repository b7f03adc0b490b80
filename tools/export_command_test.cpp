// nvtool export: the definition and selection it finds, the file and count, and the errors
// with their statuses.
#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

#include "base/temp_dir_testing.h"
#include "export/export_definition.h"
#include "store/company/asset_testing.h"
#include "store/file/status.h"
#include "store/store_testing.h"
#include "tools/nvtool_commands.h"
#include "ui/scripted_ui_testing.h"
#include "ui/selection/saved_selections.h"

namespace nv {
namespace {

struct ToolRun {
  int status;
  std::string out;
  std::string err;
};

ExportColumn Column(int field, char group, std::string heading) {
  ExportColumn column;
  column.field = field;
  column.group = group;
  column.heading = std::move(heading);
  column.addition = column.current = true;
  return column;
}

class ExportCommandTest : public ::testing::Test {
 protected:
  // Company ACME with assets 1 to 3 at locations L1 to L3; a definition "Short" of the
  // company and one "Short" for all companies, which differ in their columns.
  ExportCommandTest() : ctx_(testing::ContextFor(dir_.path())) {
    NvCompany company(ctx_);
    company.record() = testing::TwoBookCompany();
    EXPECT_EQ(company.Create({"ACME", "Acme Tools"}, NvCompany::kOpenI1 | NvCompany::kOpenI2), 0);
    auto quiet = testing::Script("");
    EXPECT_EQ(company.Open("ACME", NvCompany::kOpenI1 | NvCompany::kOpenI2, *quiet), 1);
    for (int n : {1, 2, 3}) {
      NvAsset asset = testing::MakeAsset(company.record(), n * 7, n);
      EXPECT_EQ(company.AddAsset(&asset), kOk);
    }
    EXPECT_EQ(company.Close(), 0);

    ExportDefinition mine;
    mine.name = "Short";
    mine.file_name = "short.txt";
    mine.columns = {Column(1003, '*', "Loc"), Column(2019, 'B', "Ending, allowable")};
    EXPECT_TRUE(SaveDefinition(dir_.File("ACME.EXP"), mine));
    ExportDefinition global = mine;
    global.include_headings = false;
    global.columns = {Column(1003, '*', "Loc")};
    EXPECT_TRUE(SaveDefinition(dir_.File("global.exp"), global));

    files_ = {dir_.File("ACME.ini"), dir_.File("KELNVWIN.INI")};
    EXPECT_TRUE(SaveSelection(files_, Selection("Some", "L1-L2", false)));
    EXPECT_TRUE(SaveSelection(files_, Selection("Some", "L3", true)));
    EXPECT_TRUE(SaveSelection(files_, Selection("Third", "L3", true)));
  }

  static KelSelection Selection(std::string name, std::string locations, bool all_companies) {
    KelSelection selection;
    selection.name = std::move(name);
    selection.all_companies = all_companies;
    selection.criteria[*FindSelectionField("Location")] = {true, std::move(locations), false};
    return selection;
  }

  ToolRun Export(std::vector<std::string> more) {
    std::vector<std::string> args = {"export", dir_.path(), "acme"};
    args.insert(args.end(), more.begin(), more.end());
    std::ostringstream out, err;
    const int status = RunNvtool(args, out, err);
    return {status, out.str(), err.str()};
  }

  TempDir dir_;
  InstallationContext ctx_;
  SelectionFiles files_;
};

TEST_F(ExportCommandTest, RunsTheCompanysDefinitionOrTheOneForAllCompanies) {
  ToolRun run = Export({"short"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out, "3 assets exported.\n");
  EXPECT_EQ(run.err, "");
  // Business percent 100: the ending allowable is prior + current, a fifth of the cost.
  EXPECT_EQ(testing::ReadText(dir_.File("short.txt")),
            "Loc\tEnding, allowable\r\nL1\t201.60\r\nL2\t203.20\r\nL3\t204.80\r\n");

  ToolRun global = Export({"Short", "--all-companies", "--out", dir_.File("g.txt")});
  EXPECT_EQ(global.status, 0) << global.err;
  EXPECT_EQ(testing::ReadText(dir_.File("g.txt")), "L1\r\nL2\r\nL3\r\n");
}

TEST_F(ExportCommandTest, SavedSelectionOfTheCompanyComesFirst) {
  ToolRun some = Export({"Short", "--selection", "some", "--out", dir_.File("some.txt")});
  EXPECT_EQ(some.status, 0) << some.err;
  EXPECT_EQ(some.out, "2 assets exported.\n");
  ToolRun third = Export({"Short", "--selection", "Third", "--out", dir_.File("third.txt")});
  EXPECT_EQ(third.status, 0) << third.err;
  EXPECT_EQ(testing::ReadText(dir_.File("third.txt")), "Loc\tEnding, allowable\r\nL3\t204.80\r\n");
}

TEST_F(ExportCommandTest, AnExistingFileIsWrittenOverOnlyWithReplace) {
  const std::string file = dir_.File("short.txt");
  testing::WriteText(file, "keep");
  ToolRun kept = Export({"Short"});
  EXPECT_EQ(kept.status, 1);
  EXPECT_EQ(kept.out, "");
  EXPECT_EQ(kept.err, "nvtool: " + file + " exists already; --replace writes over it\n");
  EXPECT_EQ(testing::ReadText(file), "keep");
  ToolRun replaced = Export({"Short", "--replace"});
  EXPECT_EQ(replaced.status, 0) << replaced.err;
  EXPECT_TRUE(testing::ReadText(file).starts_with("Loc\t"));
}

TEST_F(ExportCommandTest, MissingPiecesAreNamedAndUsageErrorsStatusTwo) {
  ToolRun definition = Export({"Long"});
  EXPECT_EQ(definition.status, 1);
  EXPECT_EQ(definition.err, "nvtool: no export definition Long in " + dir_.File("ACME.EXP") + "\n");

  ToolRun selection = Export({"Short", "--selection", "None"});
  EXPECT_EQ(selection.status, 1);
  EXPECT_EQ(selection.err, "nvtool: no saved asset selection None that can be read\n");
  EXPECT_FALSE(std::filesystem::exists(dir_.File("short.txt")));

  std::ostringstream out, err;
  EXPECT_EQ(RunNvtool({"export", dir_.path(), "NOPE", "Short"}, out, err), 1);
  EXPECT_EQ(err.str(), "nvtool: no company NOPE in " + dir_.path() + "/\n");

  ToolRun folder = Export({"Short", "--out", dir_.File("no/such/x.txt")});
  EXPECT_EQ(folder.status, 1);
  EXPECT_EQ(folder.err, "nvtool: Unable to open file " + dir_.File("no/such/x.txt") + "\n");

  for (const std::vector<std::string>& args : std::vector<std::vector<std::string>>{
           {}, {"Short", "extra"}, {"Short", "--out"}, {"Short", "--force"}}) {
    ToolRun run = Export(args);
    EXPECT_EQ(run.status, 2);
    EXPECT_NE(run.err.find("usage: nvtool"), std::string::npos);
  }
}

}  // namespace
}  // namespace nv
