#include "tools/company_json.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

namespace nv {
namespace {

// Format 8, 3 with letters and dashes; schedules B and X.
NvCompanyRecord TestCompany() {
  NvCompanyRecord r;
  r.number = "ACME";
  r.name = "Acme Tools Caf\xE9";  // Windows-1252 é
  r.ein = "12-3456789";
  r.last_closed = {12, 31, 2023};
  r.current_year_end = {12, 31, 2024};
  r.asset_no_format = {8, 3, NvAssetNoFormat::kLetters | NvAssetNoFormat::kDashes};
  r.schedule_letters = "BX";
  r.schedules = {{'B', "B", "Book"}, {'X', "CA", "Calif"}};
  r.sort_order = "ACL";
  r.business_category = 4;
  r.round_dollars = true;
  r.mid_quarter_override = 'Q';
  r.global_loc_cat = 'L';
  r.user_fields[0] = {"Dept", "100"};
  r.user_fields[9] = {"Bin", "A-1"};
  r.misc_codes = "B";
  r.logging_flags = 16777215;
  r.permissions = "*:R|BOB:F";
  return r;
}

const char kCompanyText[] =
    R"({"number":"ACME","name":"Acme Tools Café","ein":"12-3456789","last_closed":"12/31/2023",)"
    R"("current_year_end":"12/31/2024","asset_number_format":{"main":8,"sub":3,"letters":true,)"
    R"("dashes":true,"free_form":false},"schedules":[{"letter":"B","type":"B","name":"Book"},)"
    R"({"letter":"X","type":"CA","name":"Calif"}],"sort_order":"ACL","business_category":4,)"
    R"("round_dollars":true,"mid_quarter_override":"Q","global_loc_cat":"L","user_fields":[)"
    R"({"name":"Dept","default":"100"},{"name":"","default":""},{"name":"","default":""},)"
    R"({"name":"","default":""},{"name":"","default":""},{"name":"","default":""},)"
    R"({"name":"","default":""},{"name":"","default":""},{"name":"","default":""},)"
    R"({"name":"Bin","default":"A-1"}],"misc_codes":"B","logging_flags":16777215,)"
    R"("permissions":"*:R|BOB:F"})";

// Every member with a value of its own, so that two members swapped in a table show.
NvAsset TestAsset() {
  const NvAssetNoFormat& f = TestCompany().asset_no_format;
  NvAsset a;
  a.Clear("BX");
  a.number = NvAssetNo::Parse("12-A.001", f);
  a.description = "Lathe \x80";  // Windows-1252 euro sign
  a.asset_codes = "X1";
  a.location = "SHOP";
  a.category = "MACH";
  a.account = "1500-10";
  a.cash_and_notes = 12000.5;
  a.trade_in = 500;
  a.purchase_date = {1, 15, 2022};
  a.date_in_service = {2, 1, 2022};
  a.new_used_trade = 'U';
  a.prior_short_years = 1;
  a.property_code = "P1";
  a.type_4797 = 50;
  a.user_fields[0] = "7";
  a.user_fields[9] = "bin 4";
  a.disposal_code = 'T';
  a.transferred_to = NvAssetNo::Parse("7.002", f);
  a.traded_to = NvAssetNo(f);
  a.amount_disposed = 12500.75;
  a.disposal_date = {6, 30, 2024};
  a.sale_amount = 9000;
  NvAssetSchedule& b = *a.Schedule('B');
  b = {.method = 2,
       .amortized = true,
       .am_code_section = "197",
       .asset_type = "L",
       .business_percent = 80,
       .useful_life = {7, 6},
       .sl_life = {0, 3},
       .depreciable_basis = 12500.5,
       .substitute_basis = 1,
       .subst_itc_basis = 2,
       .itc_code = 5,
       .itc_percent = 10,
       .itc_basis_reduction_pct = 50,
       .itc = 125,
       .convention = 'Y',
       .sec179_expense = 1000,
       .prior_allowed_depr = 3000,
       .prior_allowable_depr = 3100,
       .bonus_depr = 3,
       .salvage_value = 100,
       .current_depr = 1500.25,
       .misc_codes = "M",
       .state = "CA",
       .extra_flag = 1,
       .extra_amount = 42.5,
       .further_amount_1 = 1.5,
       .further_amount_2 = -2.25};
  a.pauses = NvAssetPauseDeprInfo{"BX", {{{3, 1, 2023}, {5, 31, 2023}}, {{}, {12, 31, 2024}}}};
  return a;
}

const char kAssetText[] =
    R"({"asset_no":"12-A.001","description":"Lathe €","asset_codes":"X1","location":"SHOP",)"
    R"("category":"MACH","account":"1500-10","cash_and_notes":12000.5,"trade_in":500.0,)"
    R"("purchase_date":"01/15/2022","date_in_service":"02/01/2022","new_used_trade":"U",)"
    R"("prior_short_years":1,"property_code":"P1","type_4797":50,)"
    R"("user_fields":["7","","","","","","","","","bin 4"],)"
    R"("disposal":{"code":"T","transferred_to":"7.002","traded_to":"","amount":12500.75,)"
    R"("date":"06/30/2024","sale_amount":9000.0},)"
    R"("schedules":{"B":{"method":2,"amortized":true,"am_code_section":"197","asset_type":"L",)"
    R"("business_percent":80,"useful_life":"7-6","sl_life":"0-3","depreciable_basis":12500.5,)"
    R"("substitute_basis":1.0,"subst_itc_basis":2.0,"itc_code":5,"itc_percent":10,)"
    R"("itc_bas_red_pct":50,"itc":125.0,"convention":"Y","sec_179":1000.0,)"
    R"("prior_allowed":3000.0,"prior_allowable":3100.0,"bonus":3.0,"salvage":100.0,)"
    R"("current_depr":1500.25,"misc_codes":"M","state":"CA","extra_amount":42.5,)"
    R"("extra_flag":1,"further_1":1.5,"further_2":-2.25},)"
    R"("X":{"method":13,"amortized":false,"am_code_section":"","asset_type":"",)"
    R"("business_percent":0,"useful_life":"0-0","sl_life":"0-0","depreciable_basis":0.0,)"
    R"("substitute_basis":0.0,"subst_itc_basis":0.0,"itc_code":0,"itc_percent":0,)"
    R"("itc_bas_red_pct":0,"itc":0.0,"convention":"","sec_179":0.0,"prior_allowed":0.0,)"
    R"("prior_allowable":0.0,"bonus":0.0,"salvage":0.0,"current_depr":0.0,"misc_codes":"",)"
    R"("state":"","extra_amount":0.0,"extra_flag":0,"further_1":0.0,"further_2":0.0}},)"
    R"("pauses":{"schedules":"BX","intervals":[["03/01/2023","05/31/2023"],["","12/31/2024"]]}})";

template <typename R>
std::string Compact(void (*write)(const R&, JsonWriter&), const R& record) {
  std::ostringstream out;
  {
    JsonWriter w(out);
    write(record, w);
  }
  return out.str();
}

// Keeps what a document hands over.
class Collector : public CompanyDocumentSink {
 public:
  Collector() : form_(AssetRecordFormatOf(TestCompany())) {}

  NvCompanyRecord* CompanyTarget() override {
    calls += "company ";
    return read_company ? &company : nullptr;
  }
  bool CompanyRead(const std::string& error) override {
    calls += "company-read ";
    company_error = error;
    return true;
  }
  const AssetRecordFormat* AssetForm() override {
    calls += "assets ";
    return read_assets ? &form_ : nullptr;
  }
  bool AssetRead(NvAsset& asset, const std::string& label, const std::string& error) override {
    labels.push_back(label);
    errors.push_back(error);
    if (error.empty()) assets.push_back(asset);
    return labels.size() != stop_after;
  }

  bool read_company = true;
  bool read_assets = true;
  size_t stop_after = 0;  // assets; 0 reads them all
  std::string calls;
  NvCompanyRecord company;
  std::string company_error;
  std::vector<std::string> labels;
  std::vector<std::string> errors;
  std::vector<NvAsset> assets;

 private:
  AssetRecordFormat form_;
};

DocumentResult Read(const std::string& text, Collector& sink) {
  std::istringstream in(text);
  return ReadCompanyDocument(in, sink);
}

TEST(CompanyJsonTest, CompanyObjectBothWays) {
  EXPECT_EQ(Compact(WriteCompanyJson, TestCompany()), kCompanyText);
  Collector sink;
  ASSERT_EQ(Read(std::string("{\"company\": ") + kCompanyText + "}", sink).outcome,
            DocumentOutcome::kRead);
  EXPECT_EQ(sink.company_error, "");
  EXPECT_EQ(sink.company, TestCompany());
}

TEST(CompanyJsonTest, AssetObjectBothWays) {
  EXPECT_EQ(Compact(WriteAssetJson, TestAsset()), kAssetText);
  NvAsset without_pauses = TestAsset();
  without_pauses.pauses.reset();
  EXPECT_EQ(Compact(WriteAssetJson, without_pauses).find("pauses"), std::string::npos);

  Collector sink;
  ASSERT_EQ(Read(std::string("{\"assets\": [") + kAssetText + "]}", sink).outcome,
            DocumentOutcome::kRead);
  ASSERT_EQ(sink.assets.size(), 1u) << sink.errors[0];
  EXPECT_EQ(sink.assets[0], TestAsset());
  EXPECT_EQ(sink.labels[0], "12-A.001");
}

TEST(CompanyJsonTest, MembersInAnyOrderMissingNullOrUnknown) {
  Collector sink;
  ASSERT_EQ(Read(R"({"assets": [
      {"type_4797": 45, "trade_in": 7, "asset_no": "2.1", "description": null,
       "extra": {"schedules": {"Z": {}}}, "more": [1, [2, {}]],
       "schedules": {"X": {"state": "NV"}, "B": {"method": 3}}, "account": "9"}]})",
                 sink)
                .outcome,
            DocumentOutcome::kRead);
  ASSERT_EQ(sink.assets.size(), 1u) << sink.errors[0];
  NvAsset expected;
  expected.Clear("BX");
  expected.number = NvAssetNo::Parse("2.1", TestCompany().asset_no_format);
  expected.type_4797 = 45;
  expected.trade_in = 7;
  expected.account = "9";
  expected.Schedule('B')->method = 3;
  expected.Schedule('X')->state = "NV";
  EXPECT_EQ(sink.assets[0], expected);
}

TEST(CompanyJsonTest, AMemberOfTheWrongFormRefusesItsAssetAndNamesItsPlace) {
  // Each asset with one fault, and where the message must point.
  const std::vector<std::pair<std::string, std::string>> faults = {
      {R"("cash_and_notes": "lots")", "asset: cash_and_notes "},
      {R"("description": 5)", "asset: description "},
      {R"("description": {"a": 1})", "asset: description "},
      {R"("new_used_trade": "UT")", "asset: new_used_trade "},
      {R"("purchase_date": "13/45/2022")", "asset: purchase_date "},
      {R"("prior_short_years": 1.5)", "asset: prior_short_years "},
      {R"("prior_short_years": 3000000000)", "asset: prior_short_years "},
      {R"("disposal": {"amount": "x"})", "asset.disposal: amount "},
      {R"("disposal": [])", "asset: disposal "},
      {R"("schedules": {"B": {"useful_life": "seven"}})", "asset.schedules.B: useful_life "},
      {R"("schedules": {"X": {"amortized": 1}})", "asset.schedules.X: amortized "},
      {R"("schedules": {"B": 5})", "asset.schedules: B "},
      {R"("schedules": {"Z": {}})", "asset: schedule \"Z\" "},
      {R"("schedules": ["B"])", "asset: schedules "},
      {R"("user_fields": ["a", 1])", "asset: user_fields "},
      {R"("user_fields": ["1","2","3","4","5","6","7","8","9","10","11"])", "asset: user_fields "},
      {R"("pauses": {"intervals": [["01/01/2020"]]})", "asset.pauses: intervals "},
      {R"("pauses": {"intervals": [["01/01/2020", "31/01/2020"]]})", "asset.pauses: intervals "},
      {R"("pauses": {"schedules": 7})", "asset.pauses: schedules "},
  };
  std::string doc = "{\"assets\": [";
  for (const auto& [member, where] : faults) doc += "{\"asset_no\": \"1.1\", " + member + "},";
  // A fault does not carry over: the asset after them all is read.
  doc += R"({"asset_no": "5.1", "description": "fine"}, 7, [], {"asset_no": ""}]})";

  Collector sink;
  ASSERT_EQ(Read(doc, sink).outcome, DocumentOutcome::kRead);
  ASSERT_EQ(sink.errors.size(), faults.size() + 4);
  for (size_t i = 0; i < faults.size(); ++i) {
    EXPECT_TRUE(sink.errors[i].starts_with(faults[i].second))
        << faults[i].first << " gave \"" << sink.errors[i] << "\"";
    EXPECT_GT(sink.errors[i].size(), faults[i].second.size()) << faults[i].first;
  }
  ASSERT_EQ(sink.assets.size(), 2u);
  EXPECT_EQ(sink.assets[0].description, "fine");
  EXPECT_FALSE(sink.assets[1].number.valid());  // "" is no number: the caller refuses it
  // Without a number of their own, assets are named by their place in the list.
  const size_t n = faults.size();
  EXPECT_EQ(sink.labels[n + 1], "#" + std::to_string(n + 2));
  EXPECT_NE(sink.errors[n + 1], "");
  EXPECT_EQ(sink.labels[n + 2], "#" + std::to_string(n + 3));
  EXPECT_NE(sink.errors[n + 2], "");
  EXPECT_EQ(sink.labels[n + 3], "#" + std::to_string(n + 4));
}

TEST(CompanyJsonTest, CompanyRules) {
  auto read = [](const std::string& company, NvCompanyRecord start = TestCompany()) {
    Collector sink;
    sink.company = start;
    EXPECT_EQ(Read("{\"company\": " + company + "}", sink).outcome, DocumentOutcome::kRead);
    return std::make_pair(sink.company, sink.company_error);
  };
  // Flags are set and cleared one by one; lengths not given stay.
  auto [flags, ok] = read(R"({"asset_number_format": {"letters": false, "free_form": true}})");
  EXPECT_EQ(ok, "");
  EXPECT_EQ(flags.asset_no_format,
            (NvAssetNoFormat{8, 3, NvAssetNoFormat::kDashes | NvAssetNoFormat::kFreeForm}));
  EXPECT_TRUE(read(R"({"asset_number_format": {"main": 11}})")
                  .second.starts_with("company: asset_number_format "));
  EXPECT_TRUE(read(R"({"asset_number_format": {"sub": 0}})")
                  .second.starts_with("company: asset_number_format "));

  // A schedules list replaces the schedules and their letters.
  auto [one, fine] = read(R"({"schedules": [{"letter": "T", "type": "T", "name": "Tax"}]})");
  EXPECT_EQ(fine, "");
  EXPECT_EQ(one.schedule_letters, "T");
  EXPECT_EQ(one.schedules, (std::vector<ScheduleEntry>{{'T', "T", "Tax"}}));
  EXPECT_TRUE(read(R"({"schedules": [{"letter": "T"}, {"letter": "T"}]})")
                  .second.starts_with("company: schedules "));
  EXPECT_TRUE(read(R"({"schedules": [{"type": "T"}]})").second.starts_with("company: schedules "));
  auto letters_to = [](char last) {
    std::string list;
    for (char c = 'A'; c <= last; ++c) {
      list += std::string(list.empty() ? "" : ",") + "{\"letter\": \"" + c + "\"}";
    }
    return "{\"schedules\": [" + list + "]}";
  };
  EXPECT_EQ(read(letters_to('Y')).second, "");
  EXPECT_TRUE(read(letters_to('Z')).second.starts_with("company: schedules "));

  // User fields fill from the first; the others stay.
  auto [fields, good] = read(R"({"user_fields": [{"name": "Room"}, {"default": "x"}]})");
  EXPECT_EQ(good, "");
  EXPECT_EQ(fields.user_fields[0], (UserFieldDefinition{"Room", "100"}));
  EXPECT_EQ(fields.user_fields[1], (UserFieldDefinition{"", "x"}));
  EXPECT_EQ(fields.user_fields[9], (UserFieldDefinition{"Bin", "A-1"}));
  std::string eleven = "[{}";
  for (int i = 0; i < 10; ++i) eleven += ",{}";
  EXPECT_TRUE(
      read("{\"user_fields\": " + eleven + "]}").second.starts_with("company: user_fields "));
  EXPECT_TRUE(read(R"({"user_fields": ["Dept"]})").second.starts_with("company: user_fields "));
  EXPECT_TRUE(read(R"({"round_dollars": "yes"})").second.starts_with("company: round_dollars "));
}

TEST(CompanyJsonTest, TheDocumentAroundCompanyAndAssets) {
  // The company may follow the assets; members elsewhere named "assets" are not the list.
  Collector later;
  later.read_assets = false;
  EXPECT_EQ(Read(R"({"meta": {"assets": 5, "company": []}, "assets": [{}],
                     "company": {"name": "Late"}})",
                 later)
                .outcome,
            DocumentOutcome::kRead);
  EXPECT_EQ(later.calls, "assets company company-read ");
  EXPECT_EQ(later.company.name, "Late");
  EXPECT_TRUE(later.labels.empty());

  // A company that is not an object counts as missing; so does one the sink passes over.
  Collector skip;
  skip.read_company = false;
  EXPECT_EQ(Read(R"({"company": 5, "company": {"name": 7}})", skip).outcome,
            DocumentOutcome::kRead);
  EXPECT_EQ(skip.calls, "company ");

  for (const char* not_object : {"[1]", "5", "\"x\"", "null"}) {
    Collector sink;
    EXPECT_EQ(Read(not_object, sink).outcome, DocumentOutcome::kNotAnObject) << not_object;
  }
  for (const char* not_list : {R"({"assets": {}})", R"({"assets": null})", R"({"assets": 1})"}) {
    Collector sink;
    EXPECT_EQ(Read(not_list, sink).outcome, DocumentOutcome::kAssetsNotAList) << not_list;
  }

  // A sink may end the reading.
  Collector stop;
  stop.stop_after = 2;
  EXPECT_EQ(Read(R"({"assets": [{}, {}, {}]})", stop).outcome, DocumentOutcome::kEnded);
  EXPECT_EQ(stop.labels.size(), 2u);
}

TEST(CompanyJsonTest, TextThatStopsBeingJsonAfterSomeAssets) {
  Collector sink;
  DocumentResult cut = Read("{\"assets\": [{\"asset_no\": \"1.1\"},\n{\"asset_no\": ", sink);
  EXPECT_EQ(cut.outcome, DocumentOutcome::kBadJson);
  EXPECT_TRUE(cut.syntax_error.starts_with("at line 2, column ")) << cut.syntax_error;
  ASSERT_EQ(sink.labels, std::vector<std::string>{"1.1"});

  Collector trailing;
  EXPECT_EQ(Read(R"({"assets": []} {})", trailing).outcome, DocumentOutcome::kBadJson);
  Collector empty;
  EXPECT_EQ(Read("", empty).outcome, DocumentOutcome::kBadJson);
}

}  // namespace
}  // namespace nv
