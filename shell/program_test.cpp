#include "shell/program.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <string>
#include <vector>

#include "base/file.h"
#include "base/path.h"
#include "shell/configuration.h"
#include "shell/hand_off.h"
#include "shell/shell_testing.h"

namespace nv {
namespace {

using testing::FileExists;
using testing::ReadFile;
using testing::TempFolder;
using testing::WriteFile;

// A single-user installation: TERM.1 is its own configuration, slot 0 on the installation
// folder, whose MASTER.A lists one company.
void WriteInstallation(const TempFolder& dir) {
  std::string term = "\"7.1A\",\"" + dir.path() + "\",0\r\n";
  term += "\"Standard\",\"" + dir.path() + "\",\"Y\",\"C\",31,113,111,\"\"\r\n";
  for (int slot = 1; slot < 10; ++slot)
    term += "\"Undefined\",\"\",\"Y\",\"C\",31,113,111,\"\"\r\n";
  WriteFile(dir / "TERM.1", term);
  WriteFile(dir / "MASTER.A", "\"1\"\r\n\"CO1\",\"First\"\r\n");
}

class ScriptedProgramTest : public ::testing::Test {
 protected:
  ScriptedProgramTest() { WriteInstallation(dir_); }

  // Runs the program with the ten parameter lines written into a real pipe.
  int Run(std::vector<const char*> argv, const std::string& script, int lines = 10) {
    WriteFile(dir_ / "answers.txt", script);
    int fds[2];
    EXPECT_EQ(testing::MakePipe(fds), 0);
    std::string input;
    for (int i = 1; i <= lines; ++i) input += i == 4 ? "ABC\n" : "line " + std::to_string(i) + "\n";
    input[0] = 'P';  // product name "Pine 5"
    EXPECT_EQ(::write(fds[1], input.data(), input.size()), static_cast<ssize_t>(input.size()));
    ::close(fds[1]);
    argv.insert(argv.begin(), "nvimport");
    int code = RunScriptedProgram(static_cast<int>(argv.size()), argv.data(), fds[0],
                                  dir_ / "answers.txt", dir_ / "transcript.txt", dir_.path());
    // What the program left unread of its standard input.
    char rest[256];
    ssize_t got = ::read(fds[0], rest, sizeof rest);
    unread_ = got > 0 ? std::string(rest, got) : "";
    ::close(fds[0]);
    return code;
  }

  std::string Transcript() { return ReadFile(dir_ / "transcript.txt"); }

  TempFolder dir_;
  std::string unread_;
};

TEST_F(ScriptedProgramTest, ImportRunsCommandsInOrderUntilClose) {
  EXPECT_EQ(Run({"/PID:abc", "import"},
                "# two imports, then help\ncommand 102\ncommand 106\ncommand 9\n"
                "command 1\ncommand 103\n# the PC/FAS file dialog, the text import's first "
                "question\ncancel\ncancel\n"),
            0);
  // What each import shows is its own business; the commands run in order, Close ends the
  // run and the command after it is never reached.
  const std::string transcript = Transcript();
  size_t at = 0;
  for (const char* step : {"command 102 \"Best PC/FAS\"\n", "command 106 \"NORVANE Text Format\"\n",
                           "command 9 \"Help\"\nhelp topic=\"nvsy6dis.html\"\n",
                           "command 1 \"Close\"\nwindow closed\n"}) {
    at = transcript.find(step, at);
    ASSERT_NE(at, std::string::npos) << step << " in\n" << transcript;
  }
  EXPECT_TRUE(transcript.ends_with("window closed\n"));
  EXPECT_EQ(unread_, "");
}

TEST_F(ScriptedProgramTest, ACommandMarkedTestRunsATestImport) {
  const std::string answers =
      "file " + std::string(NV_SOURCE_DIR) + "/testdata/mba/mbademo.txt\ntext MBADEMO\nsave\nyes\n";
  EXPECT_EQ(Run({"/PID:abc", "import"}, "command 108 test\ncommand 1\n" + answers), 0);
  const std::string transcript = Transcript();
  const size_t at = transcript.find("command 108 \"MBA Software\" test\n");
  ASSERT_NE(at, std::string::npos) << transcript;
  EXPECT_NE(transcript.find("Test import: 6 assets would be copied.", at), std::string::npos)
      << transcript;
  EXPECT_FALSE(PathExists(dir_ / "MBADEMO.A"));
}

TEST_F(ScriptedProgramTest, ExportEndsWhenAnExportClosedTheWindow) {
  // The export's company list is closed: the command ends with nothing chosen.
  EXPECT_EQ(
      Run({"/pid:ABC", "ExportLim"}, "command 205\nno\ncommand 205\nyes\nclose\ncommand 204\n"), 0);
  const std::string question =
      "question title=\"Question\" text=\"This export format only supports 5 user definable "
      "fields.\\n\\nContinue?\" buttons=[\"&Yes\", \"&No\", \"Cancel\"] default=\"&Yes\"";
  // What the export itself shows lies between the disabled buttons and the closed window.
  const std::string start = "command 205 \"Export All Asset Data Fields\"\n" + question +
                            " -> no\n" + "command 205 \"Export All Asset Data Fields\"\n" +
                            question + " -> yes\n" + "export buttons 204 and 205 disabled\n";
  EXPECT_EQ(Transcript().rfind(start, 0), 0u) << Transcript();
  EXPECT_EQ(Transcript().substr(Transcript().size() - 14), "window closed\n");
}

TEST_F(ScriptedProgramTest, CommandOfTheOtherWindowFailsTheRun) {
  EXPECT_EQ(Run({"/pid:abc", "EXPORT"}, "command 102\ncommand 204\n"), kScriptFailedExitCode);
  EXPECT_EQ(Transcript(), "error: command 102 is not a button of the export window\n");
}

TEST_F(ScriptedProgramTest, UnusedOrMissingAnswersFailTheRun) {
  EXPECT_EQ(Run({"/pid:abc", "import"}, "command 9\nyes\nno\n"), kScriptFailedExitCode);
  EXPECT_EQ(Transcript(),
            "command 9 \"Help\"\n"
            "help topic=\"nvsy6dis.html\"\n"
            "error: 2 answers of the script were not used\n");

  EXPECT_EQ(Run({"/pid:abc", "export"}, "command 205\n"), kScriptFailedExitCode);
  EXPECT_NE(Transcript().find("-> cancel\nerror: no answer left for a question box\n"),
            std::string::npos)
      << Transcript();
}

TEST_F(ScriptedProgramTest, HandOffFailureShowsTheStandaloneMessageAndEndsWithZero) {
  const std::string standalone =
      "message title=\"Error\" text=\"This is not a standalone program.  It must\\nbe run from "
      "the Fixed Assets Program.\"\n";
  EXPECT_EQ(Run({"pid:abc", "import"}, "command 1\n"), 0);
  EXPECT_EQ(Transcript(), standalone);
  EXPECT_EQ(unread_.substr(0, 7), "Pine 1\n");  // standard input was not read

  EXPECT_EQ(Run({"/pid:abc", "import"}, "command 1\n", 9), 0);
  EXPECT_EQ(Transcript(), standalone);
}

TEST_F(ScriptedProgramTest, NoModeWordEndsQuietly) {
  EXPECT_EQ(Run({"/pid:abc"}, "command 102\n"), 0);
  EXPECT_EQ(Transcript(), "");
  EXPECT_EQ(Run({"/pid:abc", "report"}, "command 102\n"), 0);
  EXPECT_EQ(Transcript(), "");
}

TEST_F(ScriptedProgramTest, StartupFailureEndsWithItsCode) {
  std::filesystem::remove(dir_ / "MASTER.A");
  EXPECT_EQ(Run({"/pid:abc", "import"}, "command 102\n"), 0);
  EXPECT_EQ(Transcript(), "message title=\"Error\" text=\"Unable to read Master File\"\n");
  WriteFile(dir_ / "KELNVWIN.INI", "[NV Parameters]\r\nConfiguration Locked=1\r\n");
  std::filesystem::remove(dir_ / "TERM.1");
  EXPECT_EQ(Run({"/pid:abc", "import"}, "command 102\n"), kLockedExitCode);
}

TEST_F(ScriptedProgramTest, BrokenScriptEndsWithThreeBeforeAnythingHappens) {
  EXPECT_EQ(Run({"/pid:abc", "import"}, "command 102\nmaybe\n"), kScriptFailedExitCode);
  EXPECT_FALSE(FileExists(dir_ / "transcript.txt"));
  EXPECT_EQ(unread_.substr(0, 7), "Pine 1\n");

  const char* argv[] = {"nvimport", "/pid:abc", "import"};
  EXPECT_EQ(RunScriptedProgram(3, argv, -1, dir_ / "missing.txt", "", dir_.path()),
            kScriptFailedExitCode);
}

TEST(InstallationFolder, EnvironmentOverridesTheProgramFolder) {
  const char* old = ::getenv("NV_INSTALL_DIR");
  std::string saved = old ? old : "";
  testing::SetEnvironment("NV_INSTALL_DIR", nullptr);
  std::string own = InstallationFolder();
  EXPECT_TRUE(IsPathSeparator(own.back()));
#ifdef _WIN32
  EXPECT_TRUE(std::filesystem::exists(own + "nv_shell_tests.exe")) << own;
#else
  EXPECT_TRUE(std::filesystem::exists(own + "nv_shell_tests")) << own;
#endif
  testing::SetEnvironment("NV_INSTALL_DIR", "/opt/nv");
  EXPECT_EQ(InstallationFolder(), "/opt/nv" + std::string(1, kPathSeparator));
  testing::SetEnvironment("NV_INSTALL_DIR", "/opt/nv/");
  EXPECT_EQ(InstallationFolder(), "/opt/nv/");
  testing::SetEnvironment("NV_INSTALL_DIR", old ? saved.c_str() : nullptr);
}

}  // namespace
}  // namespace nv
