#include "tools/nvtool_commands.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include <nlohmann/json.hpp>

#include "base/file_util.h"
#include "base/path.h"
#include "base/temp_dir_testing.h"
#include "store/codes/account_groups.h"
#include "store/company/master_file.h"

namespace nv {
namespace {

struct ToolRun {
  int status;
  std::string out;
  std::string err;
};

ToolRun Nvtool(std::vector<std::string> args) {
  std::ostringstream out, err;
  int status = RunNvtool(args, out, err);
  return {status, out.str(), err.str()};
}

// A document as dump --json writes it: every member, in the dump's order.
const char kDocument[] = R"({
  "company": {
    "number": "ACME",
    "name": "Acme Tools Caf\u00e9",
    "ein": "12-3456789",
    "last_closed": "12/31/2023",
    "current_year_end": "12/31/2024",
    "asset_number_format": {"main": 8, "sub": 3, "letters": true, "dashes": true, "free_form": false},
    "schedules": [{"letter": "B", "type": "B", "name": "Book"},
                  {"letter": "T", "type": "T", "name": "Tax"},
                  {"letter": "X", "type": "CA", "name": "Calif"}],
    "sort_order": "ACL",
    "business_category": 4,
    "round_dollars": false,
    "mid_quarter_override": "Q",
    "global_loc_cat": "N",
    "user_fields": [{"name": "Dept", "default": "100"}, {"name": "", "default": ""},
                    {"name": "", "default": ""}, {"name": "", "default": ""},
                    {"name": "", "default": ""}, {"name": "", "default": ""},
                    {"name": "", "default": ""}, {"name": "", "default": ""},
                    {"name": "", "default": ""}, {"name": "Bin", "default": "A-1"}],
    "misc_codes": "B",
    "logging_flags": 16777215,
    "permissions": "*:R|BOB:F"
  },
  "assets": [
    {"asset_no": "12-A.001", "description": "Lathe", "asset_codes": "X1", "location": "SHOP",
     "category": "MACH", "account": "1500-10", "cash_and_notes": 12000.5, "trade_in": 500.0,
     "purchase_date": "01/15/2022", "date_in_service": "02/01/2022", "new_used_trade": "U",
     "prior_short_years": 1, "property_code": "P1", "type_4797": 50,
     "user_fields": ["7", "", "", "", "", "", "", "", "", "bin 4"],
     "disposal": {"code": "S", "transferred_to": "", "traded_to": "", "amount": 12500.5,
                  "date": "06/30/2024", "sale_amount": 9000.0},
     "schedules": {
       "B": {"method": 2, "amortized": false, "am_code_section": "", "asset_type": "L",
             "business_percent": 80, "useful_life": "7-6", "sl_life": "0-0",
             "depreciable_basis": 12500.5, "substitute_basis": 0.0, "subst_itc_basis": 0.0,
             "itc_code": 5, "itc_percent": 10, "itc_bas_red_pct": 50, "itc": 125.0,
             "convention": "Y", "sec_179": 1000.0, "prior_allowed": 3000.0,
             "prior_allowable": 3100.0, "bonus": 0.0, "salvage": 100.0, "current_depr": 1500.25,
             "misc_codes": "M", "state": "", "extra_amount": 42.5, "extra_flag": 2,
             "further_1": 1.5, "further_2": -2.25},
       "T": {"method": 13, "amortized": false, "am_code_section": "", "asset_type": "A",
             "business_percent": 0, "useful_life": "0-0", "sl_life": "0-0",
             "depreciable_basis": 5.0, "substitute_basis": 77.0, "subst_itc_basis": 0.0,
             "itc_code": 0, "itc_percent": 0, "itc_bas_red_pct": 0, "itc": 6.0,
             "convention": "", "sec_179": 0.0, "prior_allowed": 0.0, "prior_allowable": 0.0,
             "bonus": 0.0, "salvage": 0.0, "current_depr": 0.0, "misc_codes": "", "state": "",
             "extra_amount": 0.0, "extra_flag": 0, "further_1": 7.0, "further_2": 8.0},
       "X": {"method": 3, "amortized": true, "am_code_section": "197", "asset_type": "",
             "business_percent": 100, "useful_life": "5-0", "sl_life": "39-0",
             "depreciable_basis": 12500.5, "substitute_basis": 0.0, "subst_itc_basis": 0.0,
             "itc_code": 0, "itc_percent": 0, "itc_bas_red_pct": 0, "itc": 0.0,
             "convention": "Q", "sec_179": 0.0, "prior_allowed": 0.0, "prior_allowable": 0.0,
             "bonus": 250.0, "salvage": 0.0, "current_depr": 0.0, "misc_codes": "", "state": "CA",
             "extra_amount": 0.0, "extra_flag": 0, "further_1": 0.0, "further_2": 0.0}},
     "pauses": {"schedules": "BX", "intervals": [["03/01/2023", "05/31/2023"]]}},
    {"asset_no": "7.002", "description": "Truck traded", "asset_codes": "", "location": "YARD",
     "category": "AUTO", "account": "1600", "cash_and_notes": 30000.0, "trade_in": 0.0,
     "purchase_date": "", "date_in_service": "07/04/2021", "new_used_trade": "N",
     "prior_short_years": 0, "property_code": "", "type_4797": 0,
     "user_fields": ["", "", "", "", "", "", "", "", "", ""],
     "disposal": {"code": "E", "transferred_to": "", "traded_to": "12-A.001", "amount": 0.0,
                  "date": "", "sale_amount": 0.0}}
  ]
})";

class NvtoolTest : public ::testing::Test {
 protected:
  std::string Write(const std::string& name, const std::string& text) {
    std::string path = dir_.File(name);
    std::ofstream(path, std::ios::binary) << text;
    return path;
  }
  TempDir dir_;
};

TEST_F(NvtoolTest, LoadThenDumpGivesTheDocumentBack) {
  const std::string doc = Write("acme.json", kDocument);
  ToolRun load = Nvtool({"load", dir_.path(), "acme", doc});
  ASSERT_EQ(load.status, 0) << load.err;
  EXPECT_EQ(load.out, "created company ACME\n2 assets added, 0 refused\n");

  MasterFile master;
  ASSERT_EQ(ReadMasterFile(dir_.path() + "/", &master), MasterFileStatus::kOk);
  ASSERT_EQ(master.companies.size(), 1u);
  EXPECT_EQ(master.companies[0].number, "ACME");

  ToolRun dump = Nvtool({"dump", dir_.path(), "ACME", "--json"});
  ASSERT_EQ(dump.status, 0) << dump.err;
  nlohmann::json expected = nlohmann::json::parse(kDocument);
  nlohmann::json got = nlohmann::json::parse(dump.out);
  // Assets come in asset-number order: 7.002 before 12-A.001.
  std::swap(expected["assets"][0], expected["assets"][1]);
  EXPECT_EQ(got["company"], expected["company"]) << got["company"].dump(1);
  ASSERT_EQ(got["assets"].size(), 2u);
  EXPECT_EQ(got["assets"][1], expected["assets"][1]) << got["assets"][1].dump(1);
  // 7.002 was given without schedules: it has each of the company's, not applicable (the
  // members of such a schedule are pinned in company_json_test).
  nlohmann::json schedules = got["assets"][0]["schedules"];
  got["assets"][0].erase("schedules");
  EXPECT_EQ(got["assets"][0], expected["assets"][0]) << got["assets"][0].dump(1);
  ASSERT_EQ(schedules.size(), 3u);
  for (const char* letter : {"B", "T", "X"}) {
    EXPECT_EQ(schedules[letter]["method"], 13) << letter;
    EXPECT_EQ(schedules[letter], schedules["B"]) << letter;
  }

  ToolRun check = Nvtool({"check", dir_.path(), "acme"});
  EXPECT_EQ(check.status, 0) << check.out;
  EXPECT_EQ(check.out, "company ACME: 2 assets, no problems\n");

  ToolRun text = Nvtool({"dump", dir_.path(), "ACME"});
  EXPECT_EQ(text.status, 0);
  EXPECT_NE(text.out.find("Company ACME  Acme Tools Caf\xC3\xA9\n"), std::string::npos);
  EXPECT_NE(text.out.find("\nAsset 12-A.001  Lathe\n"), std::string::npos);
}

TEST_F(NvtoolTest, LoadReportsRefusedAssets) {
  ASSERT_EQ(Nvtool({"load", dir_.path(), "ACME", Write("a.json", kDocument)}).status, 0);
  const std::string more = Write("more.json", R"({"assets": [
      {"asset_no": "7.2", "description": "again"},
      {"asset_no": "123456789", "description": "too long"},
      {"asset_no": "8.001", "schedules": {"Z": {"method": 2}}},
      {"asset_no": "9.001", "cash_and_notes": "lots"},
      {"asset_no": "10.001", "description": "fine"}]})");
  ToolRun load = Nvtool({"load", dir_.path(), "ACME", more});
  ASSERT_EQ(load.status, 0) << load.err;
  EXPECT_EQ(load.out,
            "refused 7.2: duplicate asset number\n"
            "refused 123456789: invalid number under the company's format 8 char (letters OK, "
            "dashes OK), 3 digit subasset\n"
            "refused 8.001: asset: schedule \"Z\" is not one of the company's\n"
            "refused 9.001: asset: cash_and_notes is not a number\n"
            "1 assets added, 4 refused\n");
  EXPECT_EQ(Nvtool({"check", dir_.path(), "ACME"}).out, "company ACME: 3 assets, no problems\n");
}

TEST_F(NvtoolTest, ErrorsAreOneLineAndAFailingStatus) {
  ToolRun none = Nvtool({"check", dir_.path(), "NOPE"});
  EXPECT_EQ(none.status, 1);
  EXPECT_EQ(none.err, "nvtool: no company NOPE in " + WithTrailingSeparator(dir_.path()) + "\n");

  Write("BAD.A", std::string(145, 'x'));
  ToolRun bad = Nvtool({"dump", dir_.path(), "BAD"});
  EXPECT_EQ(bad.status, 1);
  EXPECT_EQ(bad.err, "nvtool: cannot open company BAD: its block file is not a company's\n");

  const std::string cut = Write("b.json", "{\"assets\": [");
  ToolRun broken = Nvtool({"load", dir_.path(), "NEW", cut});
  EXPECT_EQ(broken.status, 1);
  EXPECT_TRUE(broken.err.starts_with("nvtool: " + cut + ": not valid JSON at line 1, column "))
      << broken.err;
  EXPECT_EQ(broken.err.find('\n'), broken.err.size() - 1);
  ToolRun list = Nvtool({"load", dir_.path(), "NEW", Write("l.json", "[{}]")});
  EXPECT_EQ(list.err, "nvtool: " + dir_.File("l.json") + ": not a JSON object\n");
  ToolRun assets = Nvtool({"load", dir_.path(), "NEW", Write("m.json", R"({"assets": {}})")});
  EXPECT_EQ(assets.err, "nvtool: bad document: assets is not a list\n");
  ToolRun no_company = Nvtool({"load", dir_.path(), "NEW", Write("c.json", "{\"assets\": []}")});
  EXPECT_EQ(no_company.status, 1);
  EXPECT_EQ(no_company.err, "nvtool: no company NEW yet, and the document has no company object\n");
  ToolRun wrong =
      Nvtool({"load", dir_.path(), "NEW",
              Write("d.json", R"({"company": {"number": "OTHER", "round_dollars": 1}})")});
  EXPECT_EQ(wrong.status, 1);
  EXPECT_EQ(wrong.err, "nvtool: bad document: company: round_dollars is not true or false\n");
  EXPECT_FALSE(std::filesystem::exists(dir_.File("NEW.A")));
  EXPECT_FALSE(std::filesystem::exists(dir_.File("MASTER.A")));

  EXPECT_EQ(Nvtool({"load", dir_.path(), "NEW", dir_.File("missing.json")}).err,
            "nvtool: cannot read " + dir_.File("missing.json") + "\n");
  EXPECT_EQ(Nvtool({}).status, 2);
  EXPECT_EQ(Nvtool({"frobnicate"}).err.substr(0, 36), "nvtool: unknown command 'frobnicate'");
  EXPECT_EQ(Nvtool({"version"}).out, "nvtool 4.1.141\n");
}

TEST_F(NvtoolTest, ACompanyWithoutAssetsIsDumped) {
  const std::string doc =
      Write("e.json", R"({"company": {"name": "Empty"}, "assets": [{"asset_no": ""}]})");
  ToolRun load = Nvtool({"load", dir_.path(), "ACME", doc});
  ASSERT_EQ(load.status, 0) << load.err;
  EXPECT_TRUE(load.out.ends_with("\n0 assets added, 1 refused\n")) << load.out;

  ToolRun json = Nvtool({"dump", dir_.path(), "ACME", "--json"});
  ASSERT_EQ(json.status, 0) << json.err;
  EXPECT_EQ(json.err, "");
  EXPECT_TRUE(
      json.out.starts_with("{\n  \"company\": {\n    \"number\": \"ACME\",\n    \"name\": "
                           "\"Empty\",\n"))
      << json.out;
  EXPECT_TRUE(
      json.out.ends_with("\n  },\n  \"account_groups\": [],\n  \"locations\": [],\n"
                         "  \"categories\": [],\n  \"assets\": []\n}\n"))
      << json.out;
  ToolRun text = Nvtool({"dump", dir_.path(), "ACME"});
  ASSERT_EQ(text.status, 0) << text.err;
  EXPECT_TRUE(text.out.starts_with("Company ACME  Empty\n")) << text.out;
  EXPECT_TRUE(text.out.ends_with("\n0 assets\n")) << text.out;
}

// The code lists come out in the order the store keeps them (each sorted by code when
// read), with their Windows-1252 texts in UTF-8.
TEST_F(NvtoolTest, DumpListsAccountGroupsLocationsAndCategoriesInListOrder) {
  ToolRun load = Nvtool({"load", dir_.path(), "ACME", Write("c.json", R"({"company": {}})")});
  ASSERT_EQ(load.status, 0) << load.err;
  const std::string folder = dir_.path() + "/";
  ASSERT_TRUE(
      WriteFileAtomically(folder + "ACME.LOC", "NVW3000\r\n20\tYard\r\n10\tMain \xE9tage\r\n"));
  ASSERT_TRUE(WriteFileAtomically(folder + "ACME.CAT", "NVW3000\r\nV\tVehicles\r\n"));
  AccountGroupList groups;
  SetAccountGroupDefaults(folder, "ACME", &groups);
  groups.groups.push_back({"ZETA", "last code", {"1500", "1510", "6000", ""}});
  groups.groups.push_back({"ALPHA", "first code", {"1600", "", "", "7000"}});
  ASSERT_EQ(SaveAccountGroups(folder, "ACME", groups), 2);

  ToolRun json = Nvtool({"dump", dir_.path(), "ACME", "--json"});
  ASSERT_EQ(json.status, 0) << json.err;
  const nlohmann::json doc = nlohmann::json::parse(json.out);
  EXPECT_EQ(doc["account_groups"], nlohmann::json::parse(R"([
      {"code": "ALPHA", "description": "first code", "accounts": ["1600", "", "", "7000"]},
      {"code": "ZETA", "description": "last code", "accounts": ["1500", "1510", "6000", ""]}])"));
  EXPECT_EQ(doc["locations"], nlohmann::json::parse(R"([
      {"code": "10", "description": "Main \u00e9tage"}, {"code": "20", "description": "Yard"}])"));
  EXPECT_EQ(doc["categories"],
            nlohmann::json::parse(R"([{"code": "V", "description": "Vehicles"}])"));
}

TEST_F(NvtoolTest, LoadTakesTheCompanyAfterTheAssets) {
  // Keys sorted by name put "assets" first: the company is made, then the assets read.
  const std::string doc = Write("sorted.json", R"({"assets": [
      {"asset_no": "1.001", "description": "first"}, {"asset_no": "1.001"},
      {"asset_no": "2.001", "schedules": {"B": {"method": 2}}}],
    "company": {"asset_number_format": {"main": 8, "sub": 3}, "name": "Sorted",
                "schedules": [{"letter": "B", "name": "Book", "type": "B"}]}})");
  ToolRun load = Nvtool({"load", dir_.path(), "ACME", doc});
  ASSERT_EQ(load.status, 0) << load.err;
  EXPECT_EQ(load.out,
            "created company ACME\n"
            "refused 1.001: duplicate asset number\n"
            "2 assets added, 1 refused\n");
  EXPECT_EQ(Nvtool({"check", dir_.path(), "ACME"}).out, "company ACME: 2 assets, no problems\n");
  nlohmann::json dump = nlohmann::json::parse(Nvtool({"dump", dir_.path(), "ACME", "--json"}).out);
  EXPECT_EQ(dump["company"]["name"], "Sorted");
  EXPECT_EQ(dump["assets"][0]["description"], "first");
  EXPECT_EQ(dump["assets"][1]["schedules"]["B"]["method"], 2);
}

TEST_F(NvtoolTest, LoadOfADocumentCutShortKeepsTheAssetsBeforeTheCut) {
  std::string text = kDocument;
  text.resize(text.find("{\"asset_no\": \"7.002\"") + 20);
  const std::string doc = Write("cut.json", text);
  ToolRun load = Nvtool({"load", dir_.path(), "ACME", doc});
  EXPECT_EQ(load.status, 1);
  EXPECT_EQ(load.out, "created company ACME\n1 assets added, 0 refused\n");
  EXPECT_TRUE(load.err.starts_with("nvtool: " + doc + ": not valid JSON at line ")) << load.err;
  EXPECT_EQ(load.err.find('\n'), load.err.size() - 1) << load.err;
  EXPECT_EQ(Nvtool({"check", dir_.path(), "ACME"}).out, "company ACME: 1 assets, no problems\n");
}

TEST_F(NvtoolTest, LoadSaysWhyACompanyCannotBeCreated) {
  const std::string doc = Write("a.json", kDocument);
  const std::string nowhere = dir_.File("nowhere");
  ToolRun missing = Nvtool({"load", nowhere, "ACME", doc});
  EXPECT_EQ(missing.status, 1);
  EXPECT_EQ(missing.err,
            "nvtool: cannot create company ACME: the folder " + nowhere + " does not exist\n");
  EXPECT_FALSE(std::filesystem::exists(nowhere));

  ToolRun file = Nvtool({"load", doc, "ACME", doc});
  EXPECT_EQ(file.status, 1);
  EXPECT_EQ(file.err, "nvtool: cannot create company ACME: " + doc + " is not a folder\n");

  // The folder is there, but the company's index cannot be made in it.
  std::filesystem::create_directory(dir_.File("ACME.I1"));
  ToolRun refused = Nvtool({"load", dir_.path(), "ACME", doc});
  EXPECT_EQ(refused.status, 1);
  EXPECT_EQ(refused.err, "nvtool: cannot create company ACME: its files cannot be written in " +
                             WithTrailingSeparator(dir_.path()) + " (status -52)\n");
}

TEST_F(NvtoolTest, CheckFindsADamagedIndex) {
  ASSERT_EQ(Nvtool({"load", dir_.path(), "ACME", Write("a.json", kDocument)}).status, 0);
  // Drop the sort index's root: both assets are then missing from it.
  std::string i2 = *ReadFileBytes(dir_.File("ACME.I2"));
  for (int i = 11; i < 15; ++i) i2[i] = 0;
  Write("ACME.I2", i2);
  ToolRun check = Nvtool({"check", dir_.path(), "ACME"});
  EXPECT_EQ(check.status, 1);
  EXPECT_NE(check.out.find("indexes: asset at block"), std::string::npos) << check.out;
  EXPECT_NE(check.out.find("company ACME: 2 assets, "), std::string::npos);
}

}  // namespace
}  // namespace nv
