#include "shell/configuration.h"

#include <gtest/gtest.h>

#include "shell/shell_testing.h"

namespace nv {
namespace {

using testing::FileExists;
using testing::MessageLines;
using testing::ReadFile;
using testing::SilentUi;
using testing::TempFolder;
using testing::WriteFile;

std::string SlotLine(const std::string& name, const std::string& path, const char* flag = "Y",
                     const std::string& options = "") {
  return "\"" + name + "\",\"" + path + "\",\"" + flag + "\",\"C\",31,113,111,\"" + options +
         "\"\r\n";
}

// The file a new configuration gets, written out from the layout.
std::string DefaultFile(const std::string& folder) {
  std::string text = "\"7.1A\",\"" + folder + "\",0\r\n" + SlotLine("Standard", folder);
  for (int i = 1; i < 10; ++i) text += SlotLine("Undefined", "");
  return text;
}

std::string NineUndefinedSlots() {
  std::string text;
  for (int i = 1; i < 10; ++i) text += SlotLine("Undefined", "");
  return text;
}

class ConfigurationTest : public ::testing::Test {
 protected:
  ConfigurationTest() {
    ctx_.installation_folder = dir_.path();
    ctx_.user_name = "CAROL";
    WriteFile(dir_ / "MASTER.A", "\"1\"\r\n\"CO1\",\"First\"\r\n");
  }

  int Load(bool company_list = true) {
    exit_code_ = 0;
    return LoadConfiguration(&ctx_, company_list, *ui_, &exit_code_);
  }

  std::string NetworkList(const std::string& users) {
    return "\"7.1N\",\"" + dir_.path() + "\",0\r\n" + users;
  }

  TempFolder dir_;
  InstallationContext ctx_;
  std::unique_ptr<ScriptedUi> ui_ = SilentUi();
  int exit_code_ = 0;
};

TEST_F(ConfigurationTest, WithoutTerm1ASingleUserConfigurationIsWritten) {
  EXPECT_EQ(Load(), kConfigurationCreated);
  EXPECT_EQ(ReadFile(dir_ / "TERM.1"), DefaultFile(dir_.path()));
  EXPECT_FALSE(ctx_.network_mode);
  EXPECT_EQ(ctx_.current.slot.name, "Standard");
  EXPECT_EQ(ctx_.data_directory(), dir_.path());
  ASSERT_EQ(ctx_.current.companies.size(), 1u);
  EXPECT_EQ(ctx_.current.companies[0].name, "First");
  EXPECT_EQ(ui_->transcript(), "");
  // The next start reads what was written.
  EXPECT_EQ(Load(), kConfigurationFound);
  EXPECT_EQ(ctx_.configuration.slots[1].name, "Undefined");
}

TEST_F(ConfigurationTest, LockedConfigurationIsNotWritten) {
  ctx_.configuration_locked = true;
  EXPECT_EQ(Load(), kConfigurationMalformed);
  EXPECT_EQ(exit_code_, kLockedExitCode);
  EXPECT_EQ(ui_->transcript(),
            MessageLines({{"Program Error",
                           "Attempt to write configuration file when configuration is locked."}}));
  EXPECT_FALSE(FileExists(dir_ / "TERM.1"));

  // A file that would have to be rewritten is refused with the other message.
  ui_ = SilentUi();
  const std::string old_file = "\"5.0A\",\"" + dir_.path() + "\",0\r\n";
  WriteFile(dir_ / "TERM.1", old_file);
  EXPECT_EQ(Load(), kConfigurationMalformed);
  EXPECT_EQ(exit_code_, kLockedExitCode);
  EXPECT_EQ(
      ui_->transcript(),
      MessageLines({{"Program Error",
                     "Attempting to rewrite configuration file when configuration is locked."}}));
  EXPECT_EQ(ReadFile(dir_ / "TERM.1"), old_file);
}

TEST_F(ConfigurationTest, MalformedFirstLineFails) {
  for (const std::string& text : {std::string(""), std::string("\"7.1A\",\"/x/\"\r\n"),
                                  std::string("\"7.1A\",\"/x/\",0,\"extra\"\r\n"),
                                  std::string("\"7.1A\"\r\n\"/x/\",0\r\n")}) {
    WriteFile(dir_ / "TERM.1", text);
    EXPECT_EQ(Load(), kConfigurationMalformed) << text;
    EXPECT_EQ(ReadFile(dir_ / "TERM.1"), text);
    EXPECT_EQ(exit_code_, 0);
  }
  EXPECT_EQ(ui_->transcript(), "");
}

TEST_F(ConfigurationTest, SingleUserFileChoosesTheCurrentSlotAndItsCompanyList) {
  TempFolder data;
  WriteFile(data / "Master.a", "\"2 S\"\r\n\"b\",\"Bee\"\r\n\"a\",\"Ay\"\r\n");
  std::string data_path = data.path();
  data_path.pop_back();  // a path without its separator gets one
  const std::string text = "\"7.1A\",\"" + dir_.path() + "\",2\r\n" +
                           SlotLine("Standard", dir_.path()) + SlotLine("Old", "/old/", "N") +
                           SlotLine("Clients", data_path, "Y", "S") + SlotLine("x", "") +
                           SlotLine("x", "") + SlotLine("x", "") + SlotLine("x", "") +
                           SlotLine("x", "") + SlotLine("x", "") + SlotLine("x", "");
  WriteFile(dir_ / "term.1", text);
  EXPECT_EQ(Load(), kConfigurationFound);
  EXPECT_EQ(ReadFile(dir_ / "term.1"), text);  // a current file is not rewritten
  EXPECT_FALSE(FileExists(dir_ / "TERM.1") && !FileExists(dir_ / "term.1"));
  EXPECT_EQ(ctx_.configuration.current, 2);
  EXPECT_FALSE(ctx_.configuration.slots[1].enabled);
  EXPECT_EQ(ctx_.current.slot.name, "Clients");
  EXPECT_EQ(ctx_.data_directory(), data.path());
  EXPECT_EQ(ctx_.current.slot.options, "S");
  EXPECT_TRUE(ctx_.current.subfolders);
  ASSERT_EQ(ctx_.current.companies.size(), 2u);
  EXPECT_EQ(ctx_.current.companies[0].number, "A");

  ctx_.current = {};
  EXPECT_EQ(Load(false), kConfigurationFound);  // no company list wanted
  EXPECT_TRUE(ctx_.current.companies.empty());
  EXPECT_EQ(ctx_.current.slot.name, "Clients");
}

TEST_F(ConfigurationTest, MissingMasterFileFails) {
  std::filesystem::remove(dir_ / "MASTER.A");
  EXPECT_EQ(Load(), kMasterFileFailed);
  EXPECT_EQ(ui_->transcript(), MessageLines({{"Error", "Unable to read Master File"}}));
  EXPECT_EQ(exit_code_, 0);
}

TEST_F(ConfigurationTest, UnusableFileGetsDefaultsAndIsRewritten) {
  const std::string header = "\"7.1A\",\"" + dir_.path() + "\",1\r\n";
  for (const std::string& text :
       {"\"5.0A\",\"" + dir_.path() + "\",0\r\n",                       // another format
        header + SlotLine("Standard", "/a/") + SlotLine("Two", "/b/"),  // two slot lines
        header + SlotLine("Standard", "/a/") + "\"Short\",\"/b/\",\"Y\",\"C\",31,113,111\r\n" +
            NineUndefinedSlots()}) {
    WriteFile(dir_ / "TERM.1", text);
    EXPECT_EQ(Load(), kConfigurationFound);
    EXPECT_EQ(ReadFile(dir_ / "TERM.1"), DefaultFile(dir_.path()));
    EXPECT_EQ(ctx_.current.slot.name, "Standard");
  }
}

TEST_F(ConfigurationTest, OlderFormatsAreReadAndRewrittenInTheCurrentForm) {
  TempFolder data;
  WriteFile(data / "MASTER.A", "\"0\"\r\n");
  std::string six = "\"6\",\"" + dir_.path() + "\",1\r\n\"Standard\",\"" + dir_.path() +
                    "\",\"Y\"\r\n\"Branch\",\"" + data.path() + "\",\"N\"\r\n";
  std::string zero = "\"0\",\"" + dir_.path() + "\",1\r\n\"Standard\",\"" + dir_.path() +
                     "\"\r\n\"Branch\",\"" + data.path() + "\"\r\n";
  for (int i = 2; i < 10; ++i) {
    six += "\"Undefined\",\"\",\"Y\"\r\n";
    zero += "\"Undefined\",\"\"\r\n";
  }
  const std::string expected = "\"7.1A\",\"" + dir_.path() + "\",1\r\n" +
                               SlotLine("Standard", dir_.path()) +
                               SlotLine("Branch", data.path(), "N") +
                               NineUndefinedSlots().substr(SlotLine("Undefined", "").size());
  for (const auto& [text, enabled] : {std::pair{six, false}, std::pair{zero, true}}) {
    WriteFile(dir_ / "TERM.1", text);
    EXPECT_EQ(Load(), kConfigurationFound);
    EXPECT_EQ(ctx_.current.slot.name, "Branch");
    EXPECT_EQ(ctx_.current.slot.enabled, enabled);
    EXPECT_EQ(ctx_.data_directory(), data.path());
    std::string written = expected;
    if (enabled) written = written.replace(written.find("\"N\""), 3, "\"Y\"");
    EXPECT_EQ(ReadFile(dir_ / "TERM.1"), written);
  }
}

TEST_F(ConfigurationTest, NewNetworkUserGetsHighestNumberPlusOne) {
  const std::string list = NetworkList("\"ALICE\",1\r\n\"BOB\",4\r\n");
  WriteFile(dir_ / "TERM.1", list);
  EXPECT_EQ(Load(), kTerminalAdded);
  EXPECT_TRUE(ctx_.network_mode);
  EXPECT_EQ(ReadFile(dir_ / "TERM.1"), list + "\"CAROL\",5\r\n");
  EXPECT_EQ(ReadFile(dir_ / "TERM.005"), DefaultFile(dir_.path()));
  // Next time CAROL is found and her file read.
  EXPECT_EQ(Load(), kConfigurationFound);
  EXPECT_EQ(ReadFile(dir_ / "TERM.1"), list + "\"CAROL\",5\r\n");
}

TEST_F(ConfigurationTest, AppendedLineStartsOnALineOfItsOwn) {
  WriteFile(dir_ / "TERM.1", NetworkList("\"ALICE\",7"));
  EXPECT_EQ(Load(), kTerminalAdded);
  EXPECT_EQ(ReadFile(dir_ / "TERM.1"), NetworkList("\"ALICE\",7\r\n\"CAROL\",8\r\n"));
  // Behind an end-of-file mark a line would never be read again: it goes before the mark.
  WriteFile(dir_ / "TERM.1", NetworkList("\"ALICE\",7\r\n\x1a"));
  EXPECT_EQ(Load(), kTerminalAdded);
  EXPECT_EQ(ReadFile(dir_ / "TERM.1"), NetworkList("\"ALICE\",7\r\n\"CAROL\",8\r\n\x1a"));
}

TEST_F(ConfigurationTest, UserNamesMatchIgnoringCaseUnlessExactMatchingIsOn) {
  WriteFile(dir_ / "TERM.1", NetworkList("\"alice\",3\r\n"));
  WriteFile(dir_ / "TERM.003", "\"7.1A\",\"" + dir_.path() + "\",0\r\n" +
                                   SlotLine("Alice's", dir_.path()) + NineUndefinedSlots());
  ctx_.user_name = "ALICE";
  EXPECT_EQ(Load(), kConfigurationFound);
  EXPECT_EQ(ctx_.current.slot.name, "Alice's");

  ctx_.exact_name_match = true;  // "Name Case-Sensitive" = no
  EXPECT_EQ(Load(), kTerminalAdded);
  EXPECT_EQ(ReadFile(dir_ / "TERM.1"), NetworkList("\"alice\",3\r\n\"ALICE\",4\r\n"));
  EXPECT_EQ(ctx_.current.slot.name, "Standard");
  EXPECT_TRUE(FileExists(dir_ / "TERM.004"));
}

TEST_F(ConfigurationTest, EmptyUserNameIsAUserLikeAnyOther) {
  ctx_.user_name = "";
  WriteFile(dir_ / "TERM.1", NetworkList("\"ALICE\",2\r\n"));
  EXPECT_EQ(Load(), kTerminalAdded);
  EXPECT_EQ(ReadFile(dir_ / "TERM.1"), NetworkList("\"ALICE\",2\r\n\"\",3\r\n"));
  EXPECT_EQ(Load(), kConfigurationFound);
}

TEST_F(ConfigurationTest, ListedUserWhoseFileIsGoneIsListedAgain) {
  const std::string list = NetworkList("\"ALICE\",1\r\n\"CAROL\",4\r\n\"BOB\",9\r\n");
  WriteFile(dir_ / "TERM.1", list);
  EXPECT_EQ(Load(), kTerminalAdded);
  EXPECT_EQ(ReadFile(dir_ / "TERM.1"), list + "\"CAROL\",4\r\n");
  EXPECT_EQ(ReadFile(dir_ / "TERM.004"), DefaultFile(dir_.path()));
  EXPECT_FALSE(FileExists(dir_ / "TERM.010"));
}

TEST_F(ConfigurationTest, NetworkUserFileWithMalformedFirstLineFails) {
  WriteFile(dir_ / "TERM.1", NetworkList("\"CAROL\",2\r\n"));
  WriteFile(dir_ / "TERM.002", "\"7.1A\",\"" + dir_.path() + "\"\r\n");
  EXPECT_EQ(Load(), kConfigurationMalformed);
  EXPECT_EQ(ReadFile(dir_ / "TERM.002"), "\"7.1A\",\"" + dir_.path() + "\"\r\n");
}

TEST_F(ConfigurationTest, BaseFlagTakesTheSlotsFromTerm000) {
  TempFolder shared;
  WriteFile(shared / "MASTER.A", "\"1\"\r\n\"SHARED\",\"Shared company\"\r\n");
  WriteFile(dir_ / "TERM.1", NetworkList("\"CAROL\",2\r\n"));
  const std::string own = "\"7.1A\",\"" + dir_.path() + "\",1B\r\n" +
                          SlotLine("Standard", dir_.path()) + SlotLine("Mine", "/mine/") +
                          NineUndefinedSlots().substr(SlotLine("Undefined", "").size());
  WriteFile(dir_ / "TERM.002", own);
  WriteFile(dir_ / "TERM.000", "\"7.1A\",\"" + dir_.path() + "\",0\r\n" +
                                   SlotLine("Standard", dir_.path()) +
                                   SlotLine("Shared", shared.path()) +
                                   NineUndefinedSlots().substr(SlotLine("Undefined", "").size()));
  EXPECT_EQ(Load(), kConfigurationFound);
  EXPECT_TRUE(ctx_.configuration.base);
  EXPECT_EQ(ctx_.configuration.current, 1);
  EXPECT_EQ(ctx_.current.slot.name, "Shared");
  ASSERT_EQ(ctx_.current.companies.size(), 1u);
  EXPECT_EQ(ctx_.current.companies[0].number, "SHARED");
  EXPECT_EQ(ReadFile(dir_ / "TERM.002"), own);

  // Single-user installations have no base configuration: the flag changes nothing.
  WriteFile(dir_ / "TERM.1", own);
  EXPECT_EQ(Load(false), kConfigurationFound);
  EXPECT_EQ(ctx_.current.slot.name, "Mine");
}

}  // namespace
}  // namespace nv
