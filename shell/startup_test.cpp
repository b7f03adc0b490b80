#include "shell/startup.h"

#include <gtest/gtest.h>
#include <stdlib.h>
#ifndef _WIN32
#include <pwd.h>
#include <unistd.h>
#endif

#include "base/date.h"
#include "shell/configuration.h"
#include "shell/shell_testing.h"
#include "shell/user_name.h"

namespace nv {
namespace {

using testing::MessageLines;
using testing::ReadFile;
using testing::SilentUi;
using testing::TempFolder;
using testing::WriteFile;

// Sets KELNETNAME (or removes it) for one test and puts the old value back.
class ScopedNetName {
 public:
  explicit ScopedNetName(const char* value) {
    if (const char* old = ::getenv("KELNETNAME")) old_ = old;
    testing::SetEnvironment("KELNETNAME", value);
  }
  ~ScopedNetName() { testing::SetEnvironment("KELNETNAME", old_ ? old_->c_str() : nullptr); }

 private:
  std::optional<std::string> old_;
};

TEST(UserNameTest, KelnetnameWinsEvenWhenEmpty) {
  {
    ScopedNetName name("Front Desk");
    EXPECT_EQ(DetermineUserName(NameType::kComputer), "Front Desk");
    EXPECT_EQ(DetermineUserName(NameType::kUser), "Front Desk");
  }
#ifndef _WIN32  // Windows keeps no empty variables: setting "" removes it
  ScopedNetName empty("");
  EXPECT_EQ(DetermineUserName(NameType::kComputer), "");
#endif
}

TEST(UserNameTest, ComputerOrLoginNameCutToTheirBuffers) {
  ScopedNetName none(nullptr);
#ifdef _WIN32
  // The system keeps both in the environment of every process as well.
  const char* computer = ::getenv("COMPUTERNAME");
  const char* user = ::getenv("USERNAME");
  ASSERT_TRUE(computer != nullptr && user != nullptr);
  EXPECT_EQ(DetermineUserName(NameType::kComputer), std::string(computer).substr(0, 15));
  const std::string login = user;
#else
  char host[256] = {};
  ASSERT_EQ(::gethostname(host, sizeof host - 1), 0);
  EXPECT_EQ(DetermineUserName(NameType::kComputer), std::string(host).substr(0, 15));
  const passwd* entry = ::getpwuid(::geteuid());
  const std::string login = entry ? entry->pw_name : kSingleUserName;
#endif
  EXPECT_EQ(DetermineUserName(NameType::kUser), login.substr(0, 99));
}

class StartupTest : public ::testing::Test {
 protected:
  StartupTest() : name_("ALICE") {
    run_.product_name = "Fixed Assets 9";
    run_.label_code = 5;
    WriteFile(dir_ / "MASTER.A", "\"1\"\r\n\"CO1\",\"First\"\r\n");
  }

  std::optional<InstallationContext> Start() {
    std::string folder = dir_.path();
    folder.pop_back();  // the caller may leave the separator off
    return LoadStartup(run_, folder, *ui_, &exit_code_);
  }

  ScopedNetName name_;
  TempFolder dir_;
  RunParameters run_;
  std::unique_ptr<ScriptedUi> ui_ = SilentUi();
  int exit_code_ = -1;
};

TEST_F(StartupTest, FillsTheContextFromTheSettingsAndTheConfiguration) {
  WriteFile(dir_ / "kelnvwin.ini",
            "[NV Parameters]\r\nConfiguration Locked=0\r\n"
            "[network]\r\nname type = user\r\nName Case-Sensitive=NO\r\n"
            "[User ALICE]\r\nprint to screen font=LOGFONT(-13,0,0,0,400,0,0,0,0,3,2,1,49,"
            "Lucida Console                  )\r\n");
  WriteFile(dir_ / "TERM.1", "\"7.1N\",\"" + dir_.path() + "\",0\r\n\"alice\",3\r\n");
  const auto ctx = Start();
  ASSERT_TRUE(ctx.has_value());
  EXPECT_EQ(exit_code_, 0);
  EXPECT_EQ(ctx->installation_folder, dir_.path());
  EXPECT_EQ(ctx->product_name(), "Fixed Assets 9");
  EXPECT_EQ(ctx->run.label_code, 5);
  EXPECT_EQ(ctx->today, Today());
  EXPECT_FALSE(ctx->configuration_locked);
  EXPECT_EQ(ctx->name_type, NameType::kUser);
  EXPECT_TRUE(ctx->exact_name_match);
  EXPECT_EQ(ctx->user_name, "ALICE");
  ASSERT_TRUE(ctx->screen_print_font.has_value());
  EXPECT_EQ(ctx->screen_print_font->face_name, "Lucida Console");
  EXPECT_EQ(ctx->screen_print_font->weight, 400);
  // Exact matching: "alice" is not ALICE, who becomes terminal 4.
  EXPECT_TRUE(ctx->network_mode);
  EXPECT_EQ(ReadFile(dir_ / "TERM.1"),
            "\"7.1N\",\"" + dir_.path() + "\",0\r\n\"alice\",3\r\n\"ALICE\",4\r\n");
  EXPECT_EQ(ctx->data_directory(), dir_.path());
  ASSERT_EQ(ctx->current.companies.size(), 1u);
  EXPECT_EQ(ui_->transcript(), "");
}

TEST_F(StartupTest, DefaultsWithoutASettingsFile) {
  WriteFile(dir_ / "TERM.1", "\"7.1N\",\"" + dir_.path() + "\",0\r\n\"alice\",3\r\n");
  // Header only: fewer than ten slot lines, so the defaults are taken and written.
  WriteFile(dir_ / "TERM.003", "\"7.1A\",\"" + dir_.path() + "\",0\r\n");
  const auto ctx = Start();
  ASSERT_TRUE(ctx.has_value());
  EXPECT_EQ(ctx->name_type, NameType::kComputer);
  EXPECT_FALSE(ctx->exact_name_match);
  EXPECT_FALSE(ctx->screen_print_font.has_value());
  EXPECT_EQ(ctx->current.slot.name, "Standard");
  EXPECT_NE(ReadFile(dir_ / "TERM.003")
                .find("\"Standard\",\"" + dir_.path() + "\",\"Y\",\"C\",31,113,111,\"\"\r\n"),
            std::string::npos);
  // Ignoring case "alice" is ALICE: no line was added.
  EXPECT_EQ(ReadFile(dir_ / "TERM.1"), "\"7.1N\",\"" + dir_.path() + "\",0\r\n\"alice\",3\r\n");
}

TEST_F(StartupTest, FailuresWithoutQuitCodeEndWithZero) {
  WriteFile(dir_ / "TERM.1", "\"7.1A\",\"x\",0,0\r\n");
  EXPECT_EQ(Start(), std::nullopt);
  EXPECT_EQ(exit_code_, 0);
  EXPECT_EQ(ui_->transcript(), "");

  std::filesystem::remove(dir_ / "TERM.1");
  std::filesystem::remove(dir_ / "MASTER.A");
  EXPECT_EQ(Start(), std::nullopt);
  EXPECT_EQ(exit_code_, 0);
  EXPECT_EQ(ui_->transcript(), MessageLines({{"Error", "Unable to read Master File"}}));
}

TEST(UserFontTest, WrittenAndReadInTheUsersSection) {
  TempFolder dir;
  const std::string ini = IniFilePath(dir.path());
  EXPECT_EQ(ReadUserFont(ini, "BOB", kScreenPrintFontKey), std::nullopt);
  LogFont font{-16, 0, 0, 0, 700, 1, 0, 0, 0, 0, 0, 0, 0, "Courier New"};
  ASSERT_TRUE(WriteUserFont(ini, "BOB", kScreenPrintFontKey, font));
  EXPECT_NE(ReadFile(ini).find("[User BOB]\r\nprint to screen font=LOGFONT(-16,0,0,0,700,1,0,0,0,"
                               "0,0,0,0,Courier New                     )\r\n"),
            std::string::npos);
  const auto read = ReadUserFont(ini, "bob", kScreenPrintFontKey);
  ASSERT_TRUE(read.has_value());
  EXPECT_EQ(read->height, -16);
  EXPECT_EQ(read->italic, 1);
  EXPECT_EQ(read->face_name, "Courier New");
  EXPECT_EQ(ReadUserFont(ini, "", kScreenPrintFontKey), std::nullopt);  // "User " is another
}

}  // namespace
}  // namespace nv
