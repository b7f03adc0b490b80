// nvtool export: the definition and selection it finds, the file and count, the errors with
// their statuses, and the file as LibreOffice Calc reads it.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <sstream>

#include "base/path.h"
#include "base/str_format.h"
#include "base/temp_dir_testing.h"
#include "export/export_testing.h"
#include "store/company/asset_testing.h"
#include "store/file/status.h"
#include "store/store_testing.h"
#include "tools/nvtool_commands.h"
#include "ui/scripted_ui_testing.h"
#include "ui/selection/saved_selections.h"

namespace nv {
namespace {

using testing::MakeColumn;

struct ToolRun {
  int status;
  std::string out;
  std::string err;
};

class ExportCommandTest : public ::testing::Test {
 protected:
  // Company ACME with assets 1 to 3 at locations L1, "B,2" and L3; asset 2 was placed in
  // service and disposed of in the current year, asset 3 is half in business use. The
  // definition "Short" of the company and the one for all companies differ in their columns.
  ExportCommandTest() : ctx_(testing::ContextFor(dir_.path())) {
    NvCompany company(ctx_);
    company.record() = testing::TwoBookCompany();
    EXPECT_EQ(company.Create({"ACME", "Acme Tools"}, NvCompany::kOpenI1 | NvCompany::kOpenI2), 0);
    auto quiet = testing::Script("");
    EXPECT_EQ(company.Open("ACME", NvCompany::kOpenI1 | NvCompany::kOpenI2, *quiet), 1);
    for (int n : {1, 2, 3}) {
      NvAsset asset = testing::MakeAsset(company.record(), n * 7, n);
      if (n == 1) asset.description = "Pipe 3\" \"heavy\", bent";
      if (n == 2) {
        asset.date_in_service = {2, 1, 2024};
        asset.disposal_code = kDisposalSold;
        asset.disposal_date = {11, 30, 2024};
        asset.location = "B,2";
      }
      if (n == 3) {
        asset.Schedule('B')->business_percent = 50;
        asset.Schedule('B')->prior_allowable_depr = 10;
        asset.Schedule('B')->useful_life = {27, 6};
      }
      EXPECT_EQ(company.AddAsset(&asset), kOk);
    }
    EXPECT_EQ(company.Close(), 0);

    ExportDefinition mine;
    mine.name = "Short";
    mine.file_name = "short.txt";
    mine.columns = {MakeColumn(1001, '*', "ADC", "Asset No."),
                    MakeColumn(1002, '*', "ADC", "Description, \"short\""),
                    MakeColumn(1003, '*', "ADC", "Location"),
                    MakeColumn(1027, '*', "D", "Disposed"),
                    MakeColumn(2006, 'B', "C", "Life"),
                    MakeColumn(2019, 'B', "ADC", "Allowable")};
    EXPECT_TRUE(SaveDefinition(dir_.File("ACME.EXP"), mine));
    ExportDefinition global = mine;
    global.include_headings = false;
    global.columns = {MakeColumn(1003, '*', "ADC", "Loc")};
    EXPECT_TRUE(SaveDefinition(dir_.File("global.exp"), global));

    const SelectionFiles files = {dir_.File("ACME.ini"), dir_.File("KELNVWIN.INI")};
    EXPECT_TRUE(SaveSelection(files, Selection("Some", "L1-L3", false)));
    EXPECT_TRUE(SaveSelection(files, Selection("Some", "L3", true)));
    EXPECT_TRUE(SaveSelection(files, Selection("Third", "L3", true)));
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
};

TEST_F(ExportCommandTest, RunsTheDefinitionOverTheSavedSelection) {
  ToolRun run = Export({"short"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out, "3 assets exported.\n");
  EXPECT_EQ(run.err, "");
  EXPECT_TRUE(testing::ReadText(dir_.File("short.txt")).ends_with("\t\t27-6\t419.60\r\n"));

  ToolRun global = Export({"Short", "--all-companies", "--out", dir_.File("g.txt")});
  EXPECT_EQ(global.status, 0) << global.err;
  EXPECT_EQ(testing::ReadText(dir_.File("g.txt")), "L1\r\nB,2\r\nL3\r\n");

  // The company's selection of a name comes before the one for all companies.
  ToolRun some = Export({"Short", "--all-companies", "--selection", "some", "--out",
                         dir_.File("g.txt"), "--replace"});
  EXPECT_EQ(some.status, 0) << some.err;
  EXPECT_EQ(some.out, "2 assets exported.\n");
  ToolRun third = Export({"Short", "--all-companies", "--selection", "Third", "--out",
                          dir_.File("g.txt"), "--replace"});
  EXPECT_EQ(third.status, 0) << third.err;
  EXPECT_EQ(testing::ReadText(dir_.File("g.txt")), "L3\r\n");
}

TEST_F(ExportCommandTest, ErrorsAreOneLineAndUsageErrorsStatusTwo) {
  const std::string file = dir_.File("short.txt");
  testing::WriteText(file, "keep");
  ToolRun kept = Export({"Short"});
  EXPECT_EQ(kept.status, 1);
  EXPECT_EQ(kept.err, "nvtool: " + file + " exists already; --replace writes over it\n");
  EXPECT_EQ(testing::ReadText(file), "keep");

  ToolRun definition = Export({"Long"});
  EXPECT_EQ(definition.status, 1);
  EXPECT_EQ(definition.err, "nvtool: no export definition Long in " + dir_.File("ACME.EXP") + "\n");
  ToolRun selection = Export({"Short", "--selection", "None"});
  EXPECT_EQ(selection.status, 1);
  EXPECT_EQ(selection.err, "nvtool: no saved asset selection None that can be read\n");
  ToolRun folder = Export({"Short", "--out", dir_.File("no/such/x.txt")});
  EXPECT_EQ(folder.status, 1);
  EXPECT_EQ(folder.err,
            "nvtool: Unable to open file " + JoinPath(dir_.File("no/such"), "x.txt") + "\n");
  std::ostringstream out, err;
  EXPECT_EQ(RunNvtool({"export", dir_.path(), "NOPE", "Short"}, out, err), 1);
  EXPECT_EQ(err.str(), "nvtool: no company NOPE in " + WithTrailingSeparator(dir_.path()) + "\n");

  for (const std::vector<std::string>& args : std::vector<std::vector<std::string>>{
           {}, {"Short", "extra"}, {"Short", "--out"}, {"Short", "--force"}}) {
    ToolRun run = Export(args);
    EXPECT_EQ(run.status, 2);
    EXPECT_NE(run.err.find("usage: nvtool"), std::string::npos);
  }
}

std::optional<std::string> FindSoffice() {
  const char* path = std::getenv("PATH");
  std::stringstream folders(path != nullptr ? path : "");
  for (std::string folder; std::getline(folders, folder, ':');) {
    const std::filesystem::path candidate = std::filesystem::path(folder) / "soffice";
    if (!folder.empty() && std::filesystem::exists(candidate)) return candidate.string();
  }
  return std::nullopt;
}

// Rows of comma-separated cells as Calc writes them: in double quotes with quotes doubled,
// or bare.
std::vector<std::vector<std::string>> ParseCsv(const std::string& text) {
  std::vector<std::vector<std::string>> rows;
  bool quoted = false, fresh_row = true;
  for (size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (fresh_row && c != '\n' && c != '\r') {
      rows.emplace_back(1);
      fresh_row = false;
    }
    if (quoted && c == '"' && i + 1 < text.size() && text[i + 1] == '"') {
      rows.back().back() += text[++i];
    } else if (c == '"') {
      quoted = !quoted;
    } else if (!quoted && c == ',') {
      rows.back().emplace_back();
    } else if (!quoted && (c == '\n' || c == '\r')) {
      fresh_row = true;
    } else {
      rows.back().back() += c;
    }
  }
  return rows;
}

// Calc opens the file as tab-separated text with every column as text, and writes it out
// as comma-separated text; it runs with a profile of its own in the test's folder, so that
// runs side by side do not share one.
TEST_F(ExportCommandTest, CalcReadsTheCellsTheAssetsHold) {
  const std::optional<std::string> soffice = FindSoffice();
  if (!soffice) {
    GTEST_SKIP() << "soffice is not installed: LibreOffice Calc (Debian's libreoffice-calc, "
                    "which scripts/setup.sh installs) reads the exported file back";
  }
  ASSERT_EQ(Export({"Short"}).status, 0);
  const std::string profile = dir_.File("office");
  const std::string command = StrPrintf(
      "cd '%s' && HOME='%s' timeout 300 '%s' -env:UserInstallation=file://%s --headless "
      "--norestore --infilter='Text - txt - csv (StarCalc):9,34,76,1,1/2/2/2/3/2/4/2/5/2/6/2' "
      "--convert-to 'csv:Text - txt - csv (StarCalc):44,34,76,1,,0,true' --outdir calc "
      "short.txt > office.log 2>&1",
      dir_.path().c_str(), profile.c_str(), soffice->c_str(), profile.c_str());
  ASSERT_EQ(std::system(command.c_str()), 0) << testing::ReadText(dir_.File("office.log"));

  const std::string csv = testing::ReadText(dir_.File("calc/short.csv"));
  const std::vector<std::vector<std::string>> expected = {
      {"Asset No.", "Description, \"short\"", "Location", "Disposed", "Life", "Allowable"},
      {"       1.001", "Pipe 3\" \"heavy\", bent", "L1", "", " 6", "201.60"},
      {"       2.001", "Asset 14 variant 2", "B,2", "11/30/2024", "", "203.20"},
      {"       3.001", "Asset 21 variant 3", "L3", "", "27-6", "419.60"},
  };
  EXPECT_EQ(ParseCsv(csv), expected) << csv;
}

}  // namespace
}  // namespace nv
