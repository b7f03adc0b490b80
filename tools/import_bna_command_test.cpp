// nvtool import bna: the example profile over the example report, as a person would run it
// from the command line, and the company the store's check finds whole.
#include <gtest/gtest.h>

#include <sstream>

#include "base/file_util.h"
#include "base/temp_dir_testing.h"
#include "import/bna/bna_import.h"
#include "import/bna/bna_source.h"
#include "store/company/asset_testing.h"
#include "store/company/company_check.h"
#include "store/notes/note_file.h"
#include "store/store_testing.h"
#include "tools/import_command.h"
#include "ui/scripted_ui_testing.h"

namespace nv {
namespace {

using testing::TempDir;
using testing::WriteText;

const std::string kExamples = std::string(NV_SOURCE_DIR) + "/testdata/bna/";

std::string ParseError(std::vector<std::string> args) {
  std::string error;
  EXPECT_FALSE(ParseImportCommand(args, &error).has_value()) << "accepted";
  return error;
}

TEST(ImportBnaCommandTest, OptionsOfBnaAreItsOwn) {
  EXPECT_NE(ParseError({"bna", "r.csv", "/d", "A"}).find("needs --profile"), std::string::npos);
  EXPECT_NE(ParseError({"bna", "r.csv", "/d", "A", "--profile", "p", "--duplicates", "merge"})
                .find("--duplicates takes"),
            std::string::npos);
  EXPECT_NE(ParseError({"bna", "r.csv", "/d", "A", "--profile", "p", "--today", "31/12/2026"})
                .find("--today takes"),
            std::string::npos);
  EXPECT_NE(ParseError({"mba", "r.txt", "/d", "A", "--profile", "p"}).find("unknown option"),
            std::string::npos);

  std::string error;
  std::optional<ImportCommandOptions> options =
      ParseImportCommand({"bna", "r.csv", "/d", "A", "--profile", "p", "--duplicates", "subasset",
                          "--company-type", "existing"},
                         &error);
  ASSERT_TRUE(options) << error;
  // Only the subasset question is confirmed; any other mode is changed through the list.
  EXPECT_EQ(options->prompt_answers.at(BnaDuplicateQuestion(DuplicateMode::kCreateSubasset)),
            "yes");
  EXPECT_EQ(options->prompt_answers.at(BnaDuplicateQuestion(DuplicateMode::kReplaceValues)), "no");
  EXPECT_EQ(options->prompt_answers.at(kBnaDuplicatesTitle),
            BnaDuplicateOption(DuplicateMode::kCreateSubasset));
  EXPECT_EQ(options->prompt_answers.at(kBnaCompanyTypeMessage), kBnaExistingCompanyOption);
}

TEST(ImportBnaCommandTest, TheExampleImportsIntoANewCompanyAndAgainAsDuplicates) {
  TempDir dir;
  // A copy: a changed duplicate mode is written back into the profile.
  const std::string profile = dir.path() + "/EXAMPLE.IMP";
  WriteText(profile, ReadFileBytes(kExamples + "EXAMPLE.IMP").value());
  const std::string report = kExamples + "FIXEDASSETS.CSV";
  std::string error;
  std::optional<ImportCommandOptions> options = ParseImportCommand(
      {"bna", report, dir.path(), "bnademo", "--profile", profile, "--today", "11/24/2026"},
      &error);
  ASSERT_TRUE(options) << error;
  std::ostringstream out, err;
  ASSERT_EQ(RunImportCommand(*options, out, err), 0) << out.str() << err.str();

  // Every data line of the report is an asset.
  const std::string bytes = ReadFileBytes(report).value();
  const BnaSourceMeasure measure = MeasureBnaSource(bytes, kBnaCommaSeparated);
  const InstallationContext ctx = testing::ContextFor(dir.path());
  {
    NvCompany company(ctx);
    ASSERT_GT(
        company.Open("BNADEMO", NvCompany::kOpenI1 | NvCompany::kOpenI2 | NvCompany::kReadOnly,
                     *testing::Script("")),
        0);
    const CompanyCheck check = CheckCompany(company);
    EXPECT_TRUE(check.problems.empty()) << check.problems.front();
    EXPECT_EQ(check.assets, static_cast<uint64_t>(measure.data_lines));
    EXPECT_EQ(company.record().schedule_letters, "BTAC");

    // The X-ray's note keeps its doubled quotes as one, stamped with --today; its Tax
    // accumulated amounts lost its Section 179 expense (a BNA_ND profile).
    NvAsset xray;
    ASSERT_EQ(company.FindAsset("1002", &xray), 0);
    NoteFile notes(company.FilePath("NOT"),
                   static_cast<uint32_t>(company.record().asset_no_format.KeyLength()));
    NoteList list;
    ASSERT_TRUE(notes.ReadNotes(xray.number.DisplayText(), &list));
    ASSERT_EQ(list.notes.size(), 1u);
    EXPECT_NE(list.notes[0].text.find("\"Imaging Partners\""), std::string::npos);
    EXPECT_EQ(list.notes[0].date, (Date{11, 24, 2026}));
    const NvAssetSchedule& tax = *xray.Schedule('T');
    EXPECT_GT(tax.sec179_expense, 0);
    double reported = 0;  // the report's Tax prior accumulated (column N) of the X-ray
    BnaSourceLines lines(bytes);
    BnaSourceLine line;
    while (lines.Next(&line)) {
      const ColumnClass columns(line.text, kBnaCommaSeparated);
      if (!line.comment && columns.Column(0) == "1002")
        reported = BnaAmount(*columns.Column(13), 0);
    }
    EXPECT_DOUBLE_EQ(tax.prior_allowed_depr, reported - tax.sec179_expense);
    EXPECT_DOUBLE_EQ(tax.prior_allowable_depr, tax.prior_allowed_depr);
  }

  // Again into the company now there, ignoring duplicates: nothing is added and every data
  // line is named by its number in the report, comment lines counted.
  options = ParseImportCommand(
      {"bna", report, dir.path(), "bnademo", "--profile", profile, "--company-type", "existing",
       "--existing", "add", "--duplicates", "ignore"},
      &error);
  ASSERT_TRUE(options) << error;
  std::ostringstream again;
  ASSERT_EQ(RunImportCommand(*options, again, err), 0) << again.str() << err.str();
  EXPECT_NE(again.str().find("text=\"0 assets imported.\""), std::string::npos) << again.str();
  BnaSourceLines lines(bytes);
  BnaSourceLine line;
  while (lines.Next(&line)) {
    const std::string where = "line " + std::to_string(line.number) + ":";
    EXPECT_EQ(again.str().find(where) != std::string::npos, !line.comment) << where;
  }
  EXPECT_NE(ReadFileBytes(profile)->find("duplicate processing=drop new asset"), std::string::npos);
}

}  // namespace
}  // namespace nv
