// Starts the real nvimport binary the way the main program does: "/pid:" token and mode
// word on the command line, the parameter lines written into a pipe on its standard
// input. Runs in scripted mode, so no window opens; the transcript shows what a person
// would have seen.
#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/temp_dir_testing.h"
#include "import/aicpa/aicpa_testing.h"
#include "import/fas1000/fas1000_testing.h"
#include "import/faswin/faswin_testing.h"
#include "import/mba/mba_testing.h"
#include "store/company/asset_testing.h"
#include "store/company/master_file.h"
#include "ui/scripted_ui.h"

namespace nv {
namespace {

constexpr char kStandaloneLine[] =
    "message title=\"Error\" text=\"This is not a standalone program.  It must\\nbe run from "
    "the Fixed Assets Program.\"";

struct ProcessResult {
  int exit_code = -1;
  std::string transcript;
};

std::string ReadAll(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream s;
  s << in.rdbuf();
  return s.str();
}

std::string TenLines(const std::string& token) {
  return "NORVANE\nl2\nl3\n" + token + "\nl5\nl6\nl7\n12\nl9\n0\n";
}

class NvimportProcess : public ::testing::Test {
 protected:
  void SetUp() override {
    std::ofstream(dir_.File("MASTER.A"), std::ios::binary) << "\"0\"\r\n";
    WriteScript("command 1\n");
  }

  void WriteScript(const std::string& text) {
    std::ofstream(dir_.File("answers.txt"), std::ios::binary) << text;
  }

  // Runs nvimport with `args`, writing `input` into its standard input through a pipe.
  ProcessResult Start(const std::vector<std::string>& args, const std::string& input) {
    std::string transcript = dir_.File("transcript.txt");
    ::unlink(transcript.c_str());
    int fds[2];
    EXPECT_EQ(::pipe(fds), 0);
    pid_t pid = ::fork();
    if (pid == 0) {
      ::dup2(fds[0], 0);
      ::close(fds[0]);
      ::close(fds[1]);
      ::setenv("NV_UI_SCRIPT", dir_.File("answers.txt").c_str(), 1);
      ::setenv("NV_UI_TRANSCRIPT", transcript.c_str(), 1);
      ::setenv("NV_INSTALL_DIR", dir_.path().c_str(), 1);
      ::setenv("KELNETNAME", "TESTER", 1);
      std::vector<char*> argv;
      argv.push_back(const_cast<char*>(NVIMPORT_PATH));
      for (const auto& a : args) argv.push_back(const_cast<char*>(a.c_str()));
      argv.push_back(nullptr);
      ::execv(NVIMPORT_PATH, argv.data());
      ::_exit(127);
    }
    ::close(fds[0]);
    ::signal(SIGPIPE, SIG_IGN);
    // One write, as the main program does: a reader that stops at its first short read
    // would otherwise see only part of the lines (hand_off_test covers piecewise delivery).
    if (!input.empty()) (void)!::write(fds[1], input.data(), input.size());
    ::close(fds[1]);
    int status = 0;
    ::waitpid(pid, &status, 0);
    ProcessResult run;
    run.exit_code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    run.transcript = ReadAll(transcript);
    return run;
  }

  TempDir dir_;
};

// The rules of the hand-off are tested in shell/hand_off_test; here only that the binary
// applies them to its real arguments and standard input.
TEST_F(NvimportProcess, BadHandOffsShowTheStandaloneMessageAndExitZero) {
  const std::string ten = TenLines("abc");
  struct Case {
    const char* what;
    std::vector<std::string> args;
    std::string input;
  } cases[] = {
      {"no arguments", {}, ten},
      {"token differs", {"/pid:abd", "IMPORT"}, ten},
      {"eleven lines", {"/pid:abc", "IMPORT"}, ten + "extra\n"},
  };
  for (const auto& c : cases) {
    ProcessResult run = Start(c.args, c.input);
    EXPECT_EQ(run.exit_code, 0) << c.what;
    EXPECT_EQ(run.transcript, std::string(kStandaloneLine) + "\n") << c.what;
  }
  EXPECT_FALSE(std::ifstream(dir_.File("TERM.1")).good()) << "nothing may be written";
}

TEST_F(NvimportProcess, GoodStartRunsCloseInEitherCaseOfToken) {
  ProcessResult run = Start({"/PID:abc", "import"}, TenLines("ABC"));
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_EQ(run.transcript, "command 1 \"Close\"\nwindow closed\n");
  // Start-up wrote the single-user configuration pointing at the installation.
  std::string term = ReadAll(dir_.File("TERM.1"));
  EXPECT_EQ(term.rfind("\"7.1A\",\"" + dir_.path() + "/\",", 0), 0u) << term;
}

// Command 102 imports a PC/FAS company: a header and one asset of the long layout.
TEST_F(NvimportProcess, PcFasImportCommandMakesACompany) {
  const std::string folder = dir_.path() + "/ACME";
  ASSERT_EQ(::mkdir(folder.c_str(), 0755), 0);
  std::string header(256, ' ');
  header.replace(219, 2, "YY");  // IRS and internal book
  std::ofstream(folder + "/COMPANY1.FAS", std::ios::binary) << header;
  // Number 17, status A, IRS cost 2500 (field 34) by straight line (35).
  std::ofstream(folder + "/MASTER.ASC", std::ios::binary)
      << "17,A" << std::string(33, ',') << "2500,S" << std::string(84, ',') << "\r\n";
  WriteScript("command 102\nfile " + folder + "/COMPANY1.FAS\ntext ACME\nsave\nyes\nok\n");
  const ProcessResult run = Start({"/pid:abc", "IMPORT"}, TenLines("abc"));
  EXPECT_EQ(run.exit_code, 0) << run.transcript;
  EXPECT_NE(
      run.transcript.find("progress title=\"PC/FAS Import\" text=\"Copying PC/FAS assets\\n \""),
      std::string::npos)
      << run.transcript;
  EXPECT_NE(run.transcript.find("text=\"1 assets copied.\""), std::string::npos) << run.transcript;
  EXPECT_TRUE(std::ifstream(dir_.File("ACME.A")).good());
}

TEST_F(NvimportProcess, ExportAllAssetDataFieldsWritesTheTextFile) {
  // Company ACME with two assets, in the company list.
  const InstallationContext ctx = testing::ContextFor(dir_.path());
  NvCompany company(ctx);
  company.record() = testing::TwoBookCompany();
  ASSERT_EQ(company.Create({"ACME", "Acme Tools"}, NvCompany::kOpenI1 | NvCompany::kOpenI2), 0);
  std::string errors;
  auto quiet = ScriptedUi::FromString("", &errors);
  ASSERT_EQ(company.Open("ACME", NvCompany::kOpenI1 | NvCompany::kOpenI2, *quiet), 1);
  for (long n : {1, 2}) {
    NvAsset asset = testing::MakeAsset(company.record(), n);
    ASSERT_EQ(company.AddAsset(&asset), kOk);
  }
  ASSERT_EQ(company.Close(), 0);
  MasterFile master;
  master.companies = {{"ACME", "Acme Tools"}};
  ASSERT_EQ(WriteMasterFile(dir_.path() + "/", master), MasterFileStatus::kOk);

  WriteScript(
      "command 205\n"
      "yes\n"           // only five user fields
      "choose 0\n"      // company ACME
      "press create\n"  // into the data folder as ACME.DBS
      "choose 0\n"      // tab-delimited
      "press close\n");
  ProcessResult run = Start({"/pid:abc", "EXPORT"}, TenLines("abc"));
  EXPECT_EQ(run.exit_code, 0) << run.transcript;
  EXPECT_NE(run.transcript.find("message title=\"Create Text File\" text=\"2 assets copied.\"\n"),
            std::string::npos)
      << run.transcript;
  EXPECT_TRUE(run.transcript.ends_with("window closed\n")) << run.transcript;
  const std::string text = ReadAll(dir_.File("ACME.DBS"));
  EXPECT_TRUE(text.starts_with("BATSC\t")) << text;
  EXPECT_NE(text.find("\tAsset 1 variant 0\t"), std::string::npos) << text;
  EXPECT_TRUE(text.ends_with("\r\n"));
}

// The import window's AICPA command, run to its count by the real binary: the company is
// made from the report and its asset copied.
TEST_F(NvimportProcess, AicpaImportRunsToItsCount) {
  std::vector<std::string> lines =
      testing::ReportHead("Process Co", "For the 12 Months Ended 12/31/2024", {"Federal"});
  for (const std::string& line : {std::string("\f"), testing::ValueRow("Asset No.", "42", 41),
                                  testing::ValueRow("Asset Description (line 1)", "Forklift"),
                                  testing::BookRow("Date Acquired", {"02/01/2024"}),
                                  testing::BookRow("Cost or Basis", {"21,000.00"})}) {
    lines.push_back(line);
  }
  std::ofstream(dir_.File("PROC.AST"), std::ios::binary) << testing::Joined(lines);
  WriteScript("command 105\ncommand 1\nfile " + dir_.File("PROC.AST") +
              "\nyes\ntext PROC\nchoose 0\nsave\nyes\nno\n");
  ProcessResult run = Start({"/pid:abc", "IMPORT"}, TenLines("abc"));
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_NE(run.transcript.find("command 105 \"AICPA Depreciation\""), std::string::npos)
      << run.transcript;
  EXPECT_NE(run.transcript.find("text=\"Unable to open dispositions file."), std::string::npos)
      << run.transcript;
  EXPECT_NE(run.transcript.find("message title=\"Done\" text=\"1 assets copied.\""),
            std::string::npos)
      << run.transcript;
  EXPECT_TRUE(std::ifstream(dir_.File("PROC.A")).good());
  EXPECT_EQ(run.transcript.find("error:"), std::string::npos) << run.transcript;
}

// One importer end to end in the real binary: the import window's MBA command, through the
// file dialog, the company number and the company screen, into a new company.
TEST_F(NvimportProcess, TheMbaCommandImportsAFileIntoANewCompany) {
  testing::MbaLineText press('A', "0102PRESS12");
  press.Description("Press").Cost("1200").Acquired("031598").Accounts("1500", "1510", "6100");
  const std::string source = dir_.File("mbafa.txt");
  std::ofstream(source, std::ios::binary) << press.text() << "\r\n";
  WriteScript("command 108\ncommand 1\nfile " + source + "\ntext MBA1\nsave\nyes\n");
  ProcessResult run = Start({"/pid:abc", "IMPORT"}, TenLines("abc"));
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_NE(run.transcript.find("prompt=\"NORVANE company number.\" text=\"MBAFA\""),
            std::string::npos)
      << run.transcript;
  EXPECT_NE(run.transcript.find("message title=\"Done\" text=\"1 assets copied.\""),
            std::string::npos)
      << run.transcript;
  EXPECT_TRUE(std::ifstream(dir_.File("MBA1.A")).good());
  EXPECT_TRUE(std::ifstream(dir_.File("MBA1.ACG")).good());
}

// Command 106 reads a whole-company text file into a new company.
TEST_F(NvimportProcess, TextImportCommandMakesACompanyFromATextFile) {
  const std::string general = "1500" + std::string(20, '\t');
  std::ofstream(dir_.File("SHOP.DBS"), std::ios::binary)
      << "BT\t" << general << "1.01\tPress" << std::string(17, '\t') << "2\r\n"
      << "BT\t" << general << "2.01\tLathe" << std::string(17, '\t') << "2\r\n";
  WriteScript("command 106\nyes\nfile " + dir_.File("SHOP.DBS") +
              "\nchoose-text Tab-Delimited\ntext SHOP\nsave\nyes\n");
  const ProcessResult run = Start({"/pid:77", "IMPORT"}, TenLines("77"));
  EXPECT_EQ(run.exit_code, 0) << run.transcript;
  EXPECT_NE(run.transcript.find("text=\"2 assets copied.\""), std::string::npos) << run.transcript;
  EXPECT_TRUE(std::ifstream(dir_.File("SHOP.A")).good());
}

// One import through the real binary: the FAS 1000/2000 button, a company folder written
// from the layouts, and the answers a person would give.
TEST_F(NvimportProcess, Fas1000ImportRunsFromItsButtonToTheCount) {
  using fas1000::testing::ColumnLine;
  using fas1000::testing::Key;
  const std::string source = dir_.path() + "/FASCO/";
  ::mkdir(source.c_str(), 0755);
  std::ofstream(source + "COMPANY.SAF", std::ios::binary)
      << fas1000::testing::CompanySaf("Fas Test Co", true);
  std::ofstream(source + "cmpsetup.dat", std::ios::binary)
      << fas1000::testing::CmpSetup(true, true, false, false, false);
  std::ofstream(source + "assetgen.asc", std::ios::binary)
      << ColumnLine().At(0, Key("1")).At(24, "A").At(77, "Press").str() << "\r\n"
      << ColumnLine().At(0, Key("2")).At(24, "A").At(77, "Lathe").str() << "\r\n";
  const std::string press =
      ColumnLine().At(0, Key("1")).At(11, "0").At(13, "010524").At(20, "900").At(36, "SL").str();
  const std::string lathe =
      ColumnLine().At(0, Key("2")).At(11, "1").At(13, "020124").At(20, "400").At(36, "SL").str();
  std::ofstream(source + "bookdata.asc", std::ios::binary) << press << "\r\n" << lathe << "\r\n";
  WriteScript("command 103\nfile " + source +
              "COMPANY.SAF\ntext FASCO\nsave\nyes\nok\ncommand 1\n");

  ProcessResult run = Start({"/pid:abc", "IMPORT"}, TenLines("abc"));
  EXPECT_EQ(run.exit_code, 0) << run.transcript;
  EXPECT_EQ(
      run.transcript.rfind("command 103 \"Best FAS1000 or FAS2000\"\nfile-open title=\"Select "
                           "FAS 1000 or 2000 Company File\"",
                           0),
      0u)
      << run.transcript;
  EXPECT_NE(run.transcript.find("company-screen number=\"FASCO\" name=\"Fas Test Co\""),
            std::string::npos);
  EXPECT_NE(run.transcript.find("message title=\"Done\" text=\"2 assets copied.\""),
            std::string::npos)
      << run.transcript;
  EXPECT_TRUE(run.transcript.ends_with("command 1 \"Close\"\nwindow closed\n")) << run.transcript;
  EXPECT_TRUE(std::ifstream(dir_.File("FASCO.A")).good());
  EXPECT_NE(ReadAll(dir_.File("MASTER.A")).find("FASCO"), std::string::npos);
}

// The FAS for Windows button in the real binary: a newer-layout export written from the
// layouts, the data fields and books as paired beforehand, old disposals kept.
TEST_F(NvimportProcess, FasWindowsImportRunsFromItsButtonToTheCount) {
  using faswin::testing::Lines;
  using faswin::testing::Record;
  const std::string source = dir_.path() + "/export/";
  ::mkdir(source.c_str(), 0755);
  std::ofstream(source + "WINDcmpy.wfa", std::ios::binary) << Lines({"1,Wind Farm Co"});
  std::ofstream(source + "WINDbook.wfa", std::ios::binary) << Lines({"B,0,Tax,1"});
  std::ofstream(source + "WINDasst.wfa", std::ios::binary)
      << Lines({Record(35, {{2, "1"}, {11, "Turbine"}}), Record(35, {{2, "2"}, {11, "Mast"}})});
  std::ofstream(source + "WINDpart.wfa", std::ios::binary)
      << Lines({Record(18, {{2, "1"}, {3, "0"}, {6, "900"}, {7, "SL"}, {9, "0500"}}),
                Record(18, {{2, "2"}, {3, "0"}, {6, "400"}, {7, "SL"}, {9, "0500"}})});
  WriteScript("command 104\nfile " + source +
              "WINDcmpy.wfa\ntext WIND\nsave\nyes\nok\nok\nno\ncommand 1\n");

  ProcessResult run = Start({"/pid:abc", "IMPORT"}, TenLines("abc"));
  EXPECT_EQ(run.exit_code, 0) << run.transcript;
  EXPECT_EQ(run.transcript.rfind("command 104 \"Best FAS for Windows\"\nfile-open title=\"Select "
                                 "FAS for Windows Company File\"",
                                 0),
            0u)
      << run.transcript;
  EXPECT_NE(run.transcript.find("message title=\"Done\" text=\"2 assets copied.\""),
            std::string::npos)
      << run.transcript;
  EXPECT_EQ(run.transcript.find("error:"), std::string::npos) << run.transcript;
  EXPECT_TRUE(std::ifstream(dir_.File("WIND.A")).good());
}

}  // namespace
}  // namespace nv
