// nvtool import --dry-run with every importer on its demo source, in a copy of the demo
// installation: the test import leaves every file of the folder as it was, and its report
// is the report of the real run that follows. The runs go in the demo's order, so that the
// later ones add to and erase companies the earlier ones made; then nvtool undo takes the
// last import back.
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <sstream>

#include "base/file_util.h"
#include "base/temp_dir_testing.h"
#include "import/frame/frame_testing.h"
#include "tools/nvtool_commands.h"

namespace nv {
namespace {

using testing::FolderSnapshot;

const std::string kSource = std::string(NV_SOURCE_DIR) + "/testdata/";

struct DemoRun {
  std::string kind;
  std::string source;  // under testdata/
  std::string number;
  std::vector<std::string> options;
};

const std::vector<DemoRun>& DemoRuns() {
  static const std::vector<DemoRun> runs = {
      {"text", "dbs/harbour.dbs", "HARBOUR", {"--type", "tab"}},
      {"pcfas",
       "pcfas/LAKESIDE/COMPANY1.FAS",
       "DEMOPC",
       {"--company", kSource + "pcfas/lakeside-year.json", "--match", "202=103"}},
      {"fas1000", "fas1000/ACME/COMPANY.SAF", "FASTOOL", {"--match", "202=108,203=104"}},
      {"aicpa", "aicpa/NWTOOL-2024.AST", "NWTOOL", {}},
      {"mba", "mba/mbademo.txt", "MBADEMO", {"--company", kSource + "mba/mbademo-company.json"}},
      {"mba", "mba/mbademo.txt", "MBADEMO", {"--existing", "erase"}},
      {"faswin", "faswin/PIER/PIERcmpy.wfa", "PIER", {}},
      {"faswin",
       "faswin/GLEN/GLENcmpy.wfa",
       "GLEN",
       {"--company", kSource + "faswin/GLEN/glen-year.json", "--delete-disposed", "yes"}},
      {"faswin",
       "faswin/csv/glen-tax.csv",
       "GLENCSV",
       {"--company", kSource + "faswin/csv/glen-company.json", "--schedule", "T", "--match",
        "202=109,203=111"}},
      {"faswin",
       "faswin/csv/glen-book.csv",
       "GLENCSV",
       {"--existing", "add", "--schedule", "B", "--match", "202=109,203=111"}},
      // The profile is the folder's copy ("@" stands for the folder): a mode other than
      // its own is written back into it by the real run, and must not be by the test.
      {"bna",
       "bna/FIXEDASSETS.CSV",
       "BNADEMO",
       {"--profile", "@/EXAMPLE.IMP", "--today", "11/24/2026"}},
      {"bna",
       "bna/FIXEDASSETS.CSV",
       "BNADEMO",
       {"--profile", "@/EXAMPLE.IMP", "--today", "11/24/2026", "--company-type", "existing",
        "--existing", "add", "--duplicates", "subasset"}},
      {"mba", "mba/mbademo.txt", "NWTOOL", {"--existing", "add"}},
  };
  return runs;
}

struct Output {
  int status = -1;
  std::string out;
  std::string err;
};

Output Nvtool(const std::vector<std::string>& args) {
  std::ostringstream out, err;
  Output o;
  o.status = RunNvtool(args, out, err);
  o.out = out.str();
  o.err = err.str();
  return o;
}

// The import report as nvtool prints it after the transcript.
std::string Report(const std::string& out) {
  const size_t from = out.find("\nImport report\n");
  if (from == std::string::npos) return "(no report)";
  const size_t end = out.find("\nreport written to ", from);
  return out.substr(from, end == std::string::npos ? std::string::npos : end + 1 - from);
}

TEST(DryRunCommand, EveryImporterLeavesEveryFileAndReportsWhatTheRealRunDoes) {
  TempDir dir;
  std::filesystem::copy(kSource + "demo", dir.path(), std::filesystem::copy_options::recursive);
  std::filesystem::copy(kSource + "bna/EXAMPLE.IMP", dir.path() + "/EXAMPLE.IMP");
  // What the real runs keep beside the companies.
  const std::vector<std::string> kept = {"import-reports", "NWTOOL.backups"};
  std::map<std::string, std::string> before_last;
  for (const DemoRun& run : DemoRuns()) {
    SCOPED_TRACE(run.kind + " into " + run.number);
    std::vector<std::string> args = {"import", run.kind, kSource + run.source, dir.path(),
                                     run.number};
    for (std::string option : run.options) {
      if (option.starts_with("@")) option.replace(0, 1, dir.path());
      args.push_back(option);
    }
    std::vector<std::string> dry_args = args;
    dry_args.push_back("--dry-run");

    const auto before = FolderSnapshot(dir.path());
    const Output dry = Nvtool(dry_args);
    ASSERT_EQ(dry.status, 0) << dry.out << dry.err;
    ASSERT_EQ(FolderSnapshot(dir.path()), before) << dry.out;
    EXPECT_NE(dry.out.find("Test import: "), std::string::npos);

    before_last = FolderSnapshot(dir.path(), kept);
    const Output real = Nvtool(args);
    ASSERT_EQ(real.status, 0) << real.out << real.err;
    EXPECT_EQ(Report(dry.out), Report(real.out));
    EXPECT_NE(FolderSnapshot(dir.path()), before);
  }

  // The last run added to an existing company: undo puts every file back.
  const Output undo = Nvtool({"undo", dir.path(), "nwtool"});
  EXPECT_EQ(undo.status, 0) << undo.out << undo.err;
  EXPECT_EQ(FolderSnapshot(dir.path(), kept), before_last);
  EXPECT_EQ(Nvtool({"undo", dir.path(), "NWTOOL"}).status, 1) << "nothing left to undo";
}

TEST(UndoCommand, RefusesAChangedCompanyUnlessForcedAndTellsWhy) {
  TempDir dir;
  std::filesystem::copy(kSource + "demo", dir.path(), std::filesystem::copy_options::recursive);
  const std::vector<std::string> import = {"import", "aicpa", kSource + "aicpa/NWTOOL-2024.AST",
                                           dir.path(), "NWTOOL"};
  ASSERT_EQ(Nvtool(import).status, 0);
  std::vector<std::string> mba = {
      "import", "mba", kSource + "mba/mbademo.txt", dir.path(), "NWTOOL", "--existing", "add"};
  const Output added = Nvtool(mba);
  ASSERT_EQ(added.status, 0) << added.out << added.err;
  EXPECT_NE(added.out.find("nvtool undo "), std::string::npos) << added.out;
  // The main program writes to the company afterwards: a note in its settings file.
  const std::string ini = dir.path() + "/NWTOOL.ini";
  ASSERT_TRUE(WriteFileAtomically(ini, ReadFileBytes(ini).value_or("") + "[Main]\r\nx=1\r\n"));

  const Output refused = Nvtool({"undo", dir.path(), "NWTOOL"});
  EXPECT_EQ(refused.status, 1);
  EXPECT_NE(refused.out.find("was changed after the import"), std::string::npos) << refused.out;
  EXPECT_NE(refused.err.find("--force"), std::string::npos);
  EXPECT_EQ(Nvtool({"undo", dir.path(), "NWTOOL", "--force"}).status, 0);
  EXPECT_EQ(Nvtool({"undo", dir.path()}).status, 2);
  EXPECT_EQ(Nvtool({"undo", dir.path(), "NWTOOL", "--hard"}).status, 2);
}

}  // namespace
}  // namespace nv
