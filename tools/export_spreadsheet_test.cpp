// The file nvtool export writes, opened by LibreOffice Calc as a tab-separated text file
// with every column as text: the spreadsheet must see the cells the assets hold, whatever
// quotes, commas and blank-only cells they contain. Calc runs headless with a profile of its
// own in the test's folder, so that runs side by side do not share one.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <sstream>

#include "base/str_format.h"
#include "base/temp_dir_testing.h"
#include "export/export_definition.h"
#include "store/company/asset_testing.h"
#include "store/file/status.h"
#include "store/store_testing.h"
#include "tools/nvtool_commands.h"
#include "ui/scripted_ui_testing.h"

namespace nv {
namespace {

using Rows = std::vector<std::vector<std::string>>;

std::optional<std::string> FindSoffice() {
  const char* path = std::getenv("PATH");
  std::stringstream folders(path != nullptr ? path : "");
  for (std::string folder; std::getline(folders, folder, ':');) {
    const std::filesystem::path candidate = std::filesystem::path(folder) / "soffice";
    if (!folder.empty() && std::filesystem::exists(candidate)) return candidate.string();
  }
  return std::nullopt;
}

// Comma-separated rows as Calc writes them: fields in double quotes with quotes doubled,
// or bare; LF or CR LF line ends.
Rows ParseCsv(const std::string& text) {
  Rows rows(1, std::vector<std::string>(1));
  bool quoted = false;
  for (size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    std::string& cell = rows.back().back();
    if (quoted) {
      if (c == '"' && i + 1 < text.size() && text[i + 1] == '"') {
        cell += '"';
        ++i;
      } else if (c == '"') {
        quoted = false;
      } else {
        cell += c;
      }
    } else if (c == '"') {
      quoted = true;
    } else if (c == ',') {
      rows.back().emplace_back();
    } else if (c == '\n') {
      rows.emplace_back(1);
    } else if (c != '\r') {
      cell += c;
    }
  }
  if (rows.back() == std::vector<std::string>(1)) rows.pop_back();
  return rows;
}

ExportColumn Column(int field, char group, std::string heading, std::string_view flags) {
  ExportColumn column;
  column.field = field;
  column.group = group;
  column.heading = std::move(heading);
  column.addition = flags.find('A') != std::string_view::npos;
  column.disposition = flags.find('D') != std::string_view::npos;
  column.current = flags.find('C') != std::string_view::npos;
  return column;
}

TEST(ExportSpreadsheetTest, CalcReadsTheCellsTheAssetsHold) {
  const std::optional<std::string> soffice = FindSoffice();
  if (!soffice) {
    GTEST_SKIP() << "soffice is not installed: LibreOffice Calc (Debian's libreoffice-calc, "
                    "which scripts/setup.sh installs) reads the exported file back";
  }
  TempDir dir;
  const InstallationContext ctx = testing::ContextFor(dir.path());
  NvCompany company(ctx);
  company.record() = testing::TwoBookCompany();
  ASSERT_EQ(company.Create({"ACME", "Acme Tools"}, NvCompany::kOpenI1 | NvCompany::kOpenI2), 0);
  auto quiet = testing::Script("");
  ASSERT_EQ(company.Open("ACME", NvCompany::kOpenI1 | NvCompany::kOpenI2, *quiet), 1);
  for (int n : {1, 2, 3}) {
    NvAsset asset = testing::MakeAsset(company.record(), n * 7, 0);
    if (n == 1) asset.description = "Pipe 3\" \"heavy\", bent";
    if (n == 2) {  // placed in service and disposed of in the current year
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
    ASSERT_EQ(company.AddAsset(&asset), kOk);
  }
  ASSERT_EQ(company.Close(), 0);

  ExportDefinition definition;
  definition.name = "Sheet";
  definition.file_name = "sheet.txt";
  definition.columns = {
      Column(1001, '*', "Asset No.", "ADC"), Column(1002, '*', "Description, \"short\"", "ADC"),
      Column(1003, '*', "Location", "ADC"),  Column(1027, '*', "Disposed", "D"),
      Column(2006, 'B', "Life", "C"),        Column(2019, 'B', "Allowable", "ADC")};
  ASSERT_TRUE(SaveDefinition(dir.File("ACME.EXP"), definition));
  std::ostringstream out, err;
  ASSERT_EQ(RunNvtool({"export", dir.path(), "ACME", "Sheet"}, out, err), 0) << err.str();

  const std::string profile = dir.File("office");
  const std::string text_columns = "1/2/2/2/3/2/4/2/5/2/6/2";
  const std::string command = StrPrintf(
      "cd '%s' && HOME='%s' timeout 300 '%s' -env:UserInstallation=file://%s --headless "
      "--norestore --infilter='Text - txt - csv (StarCalc):9,34,76,1,%s' "
      "--convert-to 'csv:Text - txt - csv (StarCalc):44,34,76,1,,0,true' --outdir '%s' "
      "sheet.txt > office.log 2>&1",
      dir.path().c_str(), profile.c_str(), soffice->c_str(), profile.c_str(), text_columns.c_str(),
      dir.File("calc").c_str());
  ASSERT_EQ(std::system(command.c_str()), 0) << testing::ReadText(dir.File("office.log"));

  const Rows expected = {
      {"Asset No.", "Description, \"short\"", "Location", "Disposed", "Life", "Allowable"},
      {"       1.001", "Pipe 3\" \"heavy\", bent", "L0", "", " 5", "201.40"},
      {"       2.001", "Asset 14 variant 0", "B,2", "11/30/2024", "", "202.80"},
      {"       3.001", "Asset 21 variant 0", "L0", "", "27-6", "418.40"},
  };
  EXPECT_EQ(ParseCsv(testing::ReadText(dir.File("calc/sheet.csv"))), expected)
      << testing::ReadText(dir.File("calc/sheet.csv"));
}

}  // namespace
}  // namespace nv
