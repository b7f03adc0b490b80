// The company screen under an answers script: `field` and `save` lines, the screen's
// transcript line, and the errors of a script that lost step.
#include <gtest/gtest.h>

#include "base/temp_dir_testing.h"
#include "store/company/asset_testing.h"
#include "ui/company_screen.h"
#include "ui/scripted_ui_testing.h"

namespace nv {
namespace {

using testing::Script;

// The transcript's lines.
std::vector<std::string> Lines(const std::string& transcript) {
  std::vector<std::string> lines;
  for (size_t start = 0; start < transcript.size();) {
    const size_t end = transcript.find('\n', start);
    lines.push_back(transcript.substr(start, end - start));
    start = end + 1;
  }
  return lines;
}

class ScriptedCompanyScreenTest : public ::testing::Test {
 protected:
  ScriptedCompanyScreenTest() : ctx_(testing::ContextFor(dir_.path())), company_(ctx_) {
    company_.SetLocation("NEWCO", dir_.path() + "/");
    company_.record().number = "NEWCO";
  }

  TempDir dir_;
  InstallationContext ctx_;
  NvCompany company_;
};

TEST_F(ScriptedCompanyScreenTest, FieldLinesNameFieldsOfTheScreen) {
  std::string errors;
  EXPECT_EQ(ScriptedUi::FromString("field\nfield nosuch 1\nsave now\nfield name\n", &errors),
            nullptr);
  EXPECT_EQ(errors,
            "line 1: 'field' needs a field name and a value, e.g. 'field name Acme Tools'\n"
            "line 2: unknown screen field 'nosuch'\n"
            "line 3: 'save' takes nothing after it\n");
}

TEST_F(ScriptedCompanyScreenTest, EachPassIsOneLineAndTheRulesAskInBetween) {
  auto ui = Script(
      "field name Acme Tools\n"
      "field current_year_end 06/15/2025\n"
      "field last_closed 12/31/2024\n"
      "save\n"
      "no\n"
      "field ein  12-3456789\n"
      "save\n"
      "yes\n");
  CompanyScreen screen(company_, true, *ui);
  EXPECT_EQ(ui->RunCompanyScreen(screen), kCompanyScreenSave);
  EXPECT_FALSE(ui->failed()) << ui->transcript();
  EXPECT_EQ(company_.record().ein, "12-3456789");
  const std::vector<std::string> lines = Lines(ui->transcript());
  ASSERT_EQ(lines.size(), 5u) << ui->transcript();
  EXPECT_EQ(lines[0].find("company-screen number=\"NEWCO\" name=\"\" ein=\"\" last_closed=\"\" "
                          "current_year_end=\"\" asset_number_format.main=\"6\" "),
            0u)
      << lines[0];
  EXPECT_NE(lines[0].find(" logging_flags=\"P\" user_fields.1.name=\"\""), std::string::npos);
  EXPECT_NE(
      lines[0].find("user_fields.10.default=\"\" -> field name \"Acme Tools\", field "
                    "current_year_end \"06/15/2025\", field last_closed \"12/31/2024\", save"),
      std::string::npos)
      << lines[0];
  EXPECT_EQ(lines[1], "message title=\"Message\" text=\"Must be last day of the month.\"");
  EXPECT_NE(lines[2].find("\"Save this company?\""), std::string::npos);
  EXPECT_NE(lines[3].find("name=\"Acme Tools\" ein=\"\" last_closed=\"12/31/2024\" "
                          "current_year_end=\"12/31/2025\""),
            std::string::npos);
  EXPECT_NE(lines[3].find("-> field ein \"12-3456789\", save"), std::string::npos);
}

TEST_F(ScriptedCompanyScreenTest, CancelCloseAndLostStepEndTheScreen) {
  auto cancelled = Script("field name X\ncancel\n");
  CompanyScreen screen(company_, true, *cancelled);
  EXPECT_EQ(cancelled->RunCompanyScreen(screen), kCompanyScreenCancelled);
  EXPECT_FALSE(cancelled->failed());
  EXPECT_EQ(company_.record().name, "");

  // A question answer where the screen wants a field: the script has lost step.
  auto lost = Script("yes\n");
  CompanyScreen lost_screen(company_, true, *lost);
  EXPECT_EQ(lost->RunCompanyScreen(lost_screen), kCompanyScreenCancelled);
  EXPECT_TRUE(lost->failed());
  EXPECT_NE(lost->transcript().find(" -> close\nerror: line 1 (\"yes\") does not answer the "
                                    "company screen\n"),
            std::string::npos)
      << lost->transcript();

  auto empty = Script("");
  CompanyScreen empty_screen(company_, true, *empty);
  EXPECT_EQ(empty->RunCompanyScreen(empty_screen), kCompanyScreenCancelled);
  EXPECT_NE(empty->transcript().find("error: no answer left for the company screen"),
            std::string::npos);
}

}  // namespace
}  // namespace nv
