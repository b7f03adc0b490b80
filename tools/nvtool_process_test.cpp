// One writer per company, with real processes: the built nvtool started twice at the same
// moment to load two documents into one company, and started while this process's company
// selection holds the company. A load that finds the company in use says so on one line of
// standard error and ends with status 1; afterwards the company is whole (nvtool check) and
// holds exactly the assets of the loads that ended well.
#include <gtest/gtest.h>

#ifdef _WIN32
TEST(NvtoolProcesses, StartedWithFork) {
  GTEST_SKIP() << "these start nvtool with fork; scripts/windows_check.sh runs nvtool.exe "
                  "against native processes instead";
}
#else
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "base/file_util.h"
#include "base/installation_context.h"
#include "base/lock_file.h"
#include "base/temp_dir_testing.h"
#include "store/asset/asset.h"
#include "store/company/asset_testing.h"
#include "store/company/company.h"
#include "store/company/company_check.h"
#include "store/company/master_file.h"
#include "store/file/status.h"
#include "store/store_testing.h"
#include "tools/nvtool_commands.h"
#include "ui/company_selection.h"
#include "ui/scripted_ui_testing.h"

namespace nv {
namespace {

#if defined(NV_SANITIZED)
constexpr int kRounds = 10;
#else
constexpr int kRounds = 20;
#endif
constexpr int kAssetsPerDocument = 400;

struct ToolRun {
  int status = -1;  // exit status, -1 when the process did not exit by itself
  std::string out;
  std::string err;
};

struct Launch {
  std::vector<std::string> args;  // nvtool's arguments
  std::string user;               // its network name (KELNETNAME), which its lock line names
};

// Starts every launch, all held at a gate until each is forked, then lets them go at once
// and waits for all.
std::vector<ToolRun> RunTogether(const std::vector<Launch>& launches, const std::string& scratch) {
  int gate[2];
  EXPECT_EQ(::pipe(gate), 0);
  std::vector<pid_t> pids;
  for (size_t i = 0; i < launches.size(); ++i) {
    const std::string out = scratch + "/out" + std::to_string(i);
    const std::string err = scratch + "/err" + std::to_string(i);
    pid_t pid = ::fork();
    if (pid == 0) {
      ::close(gate[1]);
      char go;
      // Only the end of file matters: the parent closes the gate to let all go.
      static_cast<void>(!::read(gate[0], &go, 1));
      int out_fd = ::open(out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
      int err_fd = ::open(err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
      if (out_fd < 0 || err_fd < 0) ::_exit(126);
      ::dup2(out_fd, 1);
      ::dup2(err_fd, 2);
      ::setenv("KELNETNAME", launches[i].user.c_str(), 1);
      std::vector<char*> argv;
      argv.push_back(const_cast<char*>(NVTOOL_PATH));
      for (const auto& a : launches[i].args) argv.push_back(const_cast<char*>(a.c_str()));
      argv.push_back(nullptr);
      ::execv(NVTOOL_PATH, argv.data());
      ::_exit(127);
    }
    EXPECT_GT(pid, 0);
    pids.push_back(pid);
  }
  ::close(gate[0]);
  ::close(gate[1]);
  std::vector<ToolRun> runs(launches.size());
  for (size_t i = 0; i < pids.size(); ++i) {
    int status = 0;
    ::waitpid(pids[i], &status, 0);
    runs[i].status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    runs[i].out = ReadFileBytes(scratch + "/out" + std::to_string(i)).value_or("");
    runs[i].err = ReadFileBytes(scratch + "/err" + std::to_string(i)).value_or("");
  }
  return runs;
}

ToolRun Nvtool(const std::vector<std::string>& args, const std::string& scratch) {
  return RunTogether({{args, "TOOL"}}, scratch)[0];
}

// A document for company ACME (format 8.3, digits) with assets first.001 to
// (first + count - 1).001; their numbers as dump --json writes them go into *numbers.
std::string Document(int first, int count, std::set<std::string>* numbers) {
  nlohmann::json doc;
  doc["company"] = {
      {"number", "ACME"},
      {"name", "Acme"},
      {"asset_number_format",
       {{"main", 8}, {"sub", 3}, {"letters", false}, {"dashes", false}, {"free_form", false}}},
      {"schedules", {{{"letter", "B"}, {"type", "B"}, {"name", "Book"}}}},
      {"sort_order", "ACL"}};
  nlohmann::json assets = nlohmann::json::array();
  for (int n = first; n < first + count; ++n) {
    std::string number = std::to_string(n) + ".001";
    numbers->insert(number);
    assets.push_back({{"asset_no", number},
                      {"description", "Asset " + std::to_string(n)},
                      {"location", "L" + std::to_string(n % 13)},
                      {"category", "C" + std::to_string(n % 7)},
                      {"account", "A" + std::to_string(n % 5)},
                      {"cash_and_notes", n * 10.5}});
  }
  doc["assets"] = std::move(assets);
  return doc.dump();
}

// What nvtool writes when the holder of `holder_line` keeps it out: the in-use message on
// one line.
std::string RefusalLine(const std::string& holder_line) {
  std::string message = CompanyInUseMessage("ACME", holder_line);
  std::replace(message.begin(), message.end(), '\n', ' ');
  return "nvtool: " + message + "\n";
}

// True when `err` is that line for a holder named `name` whose time is not known here.
bool IsRefusalNaming(const std::string& err, const std::string& name) {
  std::string head = RefusalLine(name);  // a line of the name alone: no time in it
  head = head.substr(0, head.find('('));
  return err.rfind(head, 0) == 0 && err.find('\n') == err.size() - 1;
}

class NvtoolProcessTest : public ::testing::Test {
 protected:
  std::string Write(const std::string& name, const std::string& text) {
    std::string path = dir_.File(name);
    std::ofstream(path, std::ios::binary) << text;
    return path;
  }

  // The company is whole (nvtool check, and CheckCompany here), holds exactly `expected`,
  // and (unless `locked`) no lock file is left in its folder.
  void ExpectCompany(const std::string& data, const std::set<std::string>& expected,
                     const std::string& where, bool locked = false) {
    ToolRun check = Nvtool({"check", data, "ACME"}, dir_.path());
    EXPECT_EQ(check.status, 0) << where << "\n" << check.out << check.err;
    EXPECT_EQ(check.out,
              "company ACME: " + std::to_string(expected.size()) + " assets, no problems\n")
        << where;
    InstallationContext ctx = Context(data);
    NvCompany company(ctx);
    std::unique_ptr<ScriptedUi> ui = testing::Script("");
    ASSERT_EQ(
        company.Open("ACME", NvCompany::kOpenI1 | NvCompany::kOpenI2 | NvCompany::kReadOnly, *ui),
        1)
        << where;
    CompanyCheck whole = CheckCompany(company);
    EXPECT_TRUE(whole.problems.empty()) << where << ": " << whole.problems.front();
    EXPECT_EQ(whole.assets, expected.size()) << where;
    for (const std::string& number : expected) {
      NvAsset asset;
      ASSERT_EQ(company.FindAsset(number, &asset), kOk) << where << ": asset " << number;
      ASSERT_EQ(asset.description, "Asset " + number.substr(0, number.find('.'))) << where;
    }
    EXPECT_EQ(std::filesystem::exists(company.folder() + "ACME.LOK"), locked) << where;
  }

  // The data directory as a program of this process sees it.
  InstallationContext Context(const std::string& data) const {
    InstallationContext ctx = testing::ContextFor(data);
    ctx.current.subfolders = subfolders_;
    ctx.user_name = "SELECTOR";
    return ctx;
  }

  TempDir dir_;
  bool subfolders_ = false;
};

// What the data directory holds when the two loads start.
enum class Before {
  kNoCompany,              // both would create the company
  kNoCompanyInASubfolder,  // the same, with companies in subfolders: the folder holds the lock
  kEmptyCompany,           // made by a load without assets: both open it
};

class NvtoolTwoLoadsTest : public NvtoolProcessTest,
                           public ::testing::WithParamInterface<Before> {};

// Each round two loads of their own assets started together into a fresh data directory.
// A load either adds all its assets or is refused with the in-use line naming the other
// (nothing on standard output); at least one runs; afterwards the company is whole and
// holds exactly the assets of the loads that ran.
TEST_P(NvtoolTwoLoadsTest, StartedTogetherLeaveOneWholeCompany) {
  std::set<std::string> numbers[2], none;
  const std::string documents[2] = {
      Write("first.json", Document(1, kAssetsPerDocument, &numbers[0])),
      Write("second.json", Document(10001, kAssetsPerDocument, &numbers[1]))};
  const std::string empty = Write("empty.json", Document(1, 0, &none));
  const char* const users[2] = {"LOADER1", "LOADER2"};
  subfolders_ = GetParam() == Before::kNoCompanyInASubfolder;
  for (int round = 0; round < kRounds; ++round) {
    const std::string where = "round " + std::to_string(round);
    const std::string data = dir_.File("r" + std::to_string(round));
    ASSERT_TRUE(std::filesystem::create_directory(data));
    if (subfolders_) {
      MasterFile master;
      master.subfolders = true;
      ASSERT_EQ(WriteMasterFile(data + "/", master), MasterFileStatus::kOk);
    }
    if (GetParam() == Before::kEmptyCompany) {
      ASSERT_EQ(Nvtool({"load", data, "ACME", empty}, dir_.path()).status, 0);
    }

    std::vector<ToolRun> runs = RunTogether({{{"load", data, "ACME", documents[0]}, users[0]},
                                             {{"load", data, "ACME", documents[1]}, users[1]}},
                                            dir_.path());
    std::set<std::string> expected;
    for (int i = 0; i < 2; ++i) {
      const ToolRun& run = runs[i];
      if (run.status == 0) {
        EXPECT_EQ(run.err, "") << where;
        EXPECT_NE(run.out.find(std::to_string(kAssetsPerDocument) + " assets added, 0 refused\n"),
                  std::string::npos)
            << where << "\n"
            << run.out;
        expected.insert(numbers[i].begin(), numbers[i].end());
      } else {
        EXPECT_EQ(run.status, 1) << where << "\n" << run.out << run.err;
        EXPECT_EQ(run.out, "") << where;
        // "*" when the holder was caught between making the file and writing its line.
        EXPECT_TRUE(IsRefusalNaming(run.err, users[1 - i]) || IsRefusalNaming(run.err, "*"))
            << where << "\n"
            << run.err;
      }
    }
    EXPECT_FALSE(expected.empty()) << where << ": both loads were refused";
    if (subfolders_) {
      EXPECT_TRUE(std::filesystem::exists(data + "/ACME.CLT/ACME.A")) << where;
    }
    ExpectCompany(data, expected, where);
    if (::testing::Test::HasFailure()) return;
  }
}

INSTANTIATE_TEST_SUITE_P(Before, NvtoolTwoLoadsTest,
                         ::testing::Values(Before::kNoCompany, Before::kNoCompanyInASubfolder,
                                           Before::kEmptyCompany),
                         [](const ::testing::TestParamInfo<Before>& info) {
                           switch (info.param) {
                             case Before::kNoCompany:
                               return "NoCompany";
                             case Before::kNoCompanyInASubfolder:
                               return "NoCompanyInASubfolder";
                             case Before::kEmptyCompany:
                               return "EmptyCompany";
                           }
                           return "";
                         });

// While this process's company selection holds the company (as the import window does), a
// load is refused and names the selecting user; once selection lets go, the load runs.
TEST_F(NvtoolProcessTest, LoadIsRefusedWhileSelectionHoldsTheCompany) {
  std::set<std::string> first_numbers, second_numbers;
  const std::string data = dir_.path();
  ASSERT_EQ(Nvtool({"load", data, "ACME",
                    Write("first.json", Document(1, kAssetsPerDocument, &first_numbers))},
                   data)
                .status,
            0);
  const std::string second =
      Write("second.json", Document(10001, kAssetsPerDocument, &second_numbers));

  InstallationContext ctx = Context(data);
  CompanyInUseLock lock;
  std::unique_ptr<ScriptedUi> ui = testing::Script("choose 0\n");
  NvCompany company(ctx);
  ASSERT_EQ(SelectCompany(ctx, *ui, lock, company, "Import", false).choice, CompanyChoice::kOpened);

  const std::string line = ReadFileBytes(dir_.File("ACME.LOK")).value_or("");
  ASSERT_EQ(line.substr(0, 9), "SELECTOR ");
  ToolRun refused = Nvtool({"load", data, "ACME", second}, data);
  EXPECT_EQ(refused.status, 1);
  EXPECT_EQ(refused.out, "");
  EXPECT_EQ(refused.err, RefusalLine(line));
  // Reading is not refused, and the company is as the first load left it.
  ExpectCompany(data, first_numbers, "while selected", /*locked=*/true);

  // Closed but still selected: the lock stays with selection, and loads stay out.
  EXPECT_EQ(company.Close(), 0);
  EXPECT_TRUE(lock.held());
  EXPECT_TRUE(LockFile::IsHeldByOther(dir_.File("ACME.LOK")));
  ToolRun still = Nvtool({"load", data, "ACME", second}, data);
  EXPECT_EQ(still.status, 1);
  EXPECT_EQ(still.err, RefusalLine(line));
  ExpectCompany(data, first_numbers, "closed, still selected", /*locked=*/true);

  lock.Release();
  ToolRun loaded = Nvtool({"load", data, "ACME", second}, data);
  EXPECT_EQ(loaded.status, 0) << loaded.err;
  std::set<std::string> both = first_numbers;
  both.insert(second_numbers.begin(), second_numbers.end());
  ExpectCompany(data, both, "after selection let go");
}

// The same in this process, with a holder's line known here; and a lock that cannot be
// made is not told as someone's.
TEST_F(NvtoolProcessTest, RefusalIsOneLineNamingTheHolder) {
  std::set<std::string> numbers;
  const std::string doc = Write("doc.json", Document(1, 3, &numbers));
  CompanyInUseLock held;
  ASSERT_EQ(held.Take(dir_.File("ACME.LOK"), "BOB", LockTime{Date{6, 15, 2024}, 13, 30, 5}), "");
  const std::string line = ReadFileBytes(dir_.File("ACME.LOK")).value_or("");
  std::ostringstream out, err;
  EXPECT_EQ(RunNvtool({"load", dir_.path(), "acme", doc}, out, err), 1);
  EXPECT_EQ(out.str(), "");
  EXPECT_EQ(err.str(), RefusalLine(line));
  EXPECT_FALSE(std::filesystem::exists(dir_.File("ACME.A")));
  held.Release();

  std::ostringstream out2, err2;
  const std::string missing = dir_.File("no/such/folder");
  EXPECT_EQ(RunNvtool({"load", missing, "ACME", doc}, out2, err2), 1);
  EXPECT_FALSE(IsRefusalNaming(err2.str(), "*")) << err2.str();
  EXPECT_NE(err2.str().find(missing + " does not exist"), std::string::npos) << err2.str();
  EXPECT_EQ(err2.str().find('\n'), err2.str().size() - 1);

  std::ostringstream out3, err3;
  EXPECT_EQ(RunNvtool({"load", dir_.path(), "ACME", doc}, out3, err3), 0) << err3.str();
  ExpectCompany(dir_.path(), numbers, "after the holder let go");
}

}  // namespace
}  // namespace nv

namespace nv {
namespace {

// The pairs a matching panel's transcript line lists after `field`=.
std::string PanelPairs(const std::string& out, const std::string& field) {
  const size_t panel = out.find("match-panel ");
  if (panel == std::string::npos) return "(no panel)";
  const size_t at = out.find(" " + field + "=[", panel);
  if (at == std::string::npos) return "(no " + field + ")";
  const size_t from = at + field.size() + 3;
  return out.substr(from, out.find(']', from) - from);
}

// A matching confirmed by one nvtool is what the next one, a new process, opens with; a
// person of another name still gets the importer's own.
TEST_F(NvtoolProcessTest, AConfirmedMatchingIsTheNextProcesssPreset) {
  const std::string data = dir_.File("data");
  ASSERT_TRUE(MakeDirectories(data));
  const std::string source = std::string(NV_SOURCE_DIR) + "/testdata/pcfas/LAKESIDE/COMPANY1.FAS";
  const ToolRun first =
      Nvtool({"import", "pcfas", source, data, "ONE", "--match", "202=103,201=102"}, dir_.path());
  ASSERT_EQ(first.status, 0) << first.out << first.err;
  const ToolRun second = Nvtool({"import", "pcfas", source, data, "TWO"}, dir_.path());
  ASSERT_EQ(second.status, 0) << second.out << second.err;
  EXPECT_EQ(PanelPairs(second.out, "preset"), PanelPairs(first.out, "pairs"));
  EXPECT_NE(PanelPairs(second.out, "preset"), PanelPairs(first.out, "preset"));

  const ToolRun other =
      RunTogether({{{"import", "pcfas", source, data, "THREE"}, "SOMEONE ELSE"}}, dir_.path())[0];
  ASSERT_EQ(other.status, 0) << other.out << other.err;
  EXPECT_EQ(PanelPairs(other.out, "preset"), PanelPairs(first.out, "preset"));
}

}  // namespace
}  // namespace nv
#endif  // _WIN32
