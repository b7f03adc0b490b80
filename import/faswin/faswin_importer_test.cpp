#include "import/faswin/faswin_importer.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "base/ascii.h"
#include "import/faswin/faswin_testing.h"
#include "store/asset/asset.h"
#include "store/codes/account_groups.h"
#include "store/company/asset_testing.h"
#include "store/store_testing.h"
#include "ui/scripted_ui_testing.h"

namespace nv {
namespace {

using faswin::testing::Lines;
using faswin::testing::Record;
using nv::testing::ContextFor;
using nv::testing::Script;
using nv::testing::TempDir;
using nv::testing::WriteText;

class FasWinImportTest : public ::testing::Test {
 protected:
  FasWinImportTest() : ctx_(ContextFor(dir_.path())), folder_(dir_.path() + "/export/") {
    std::filesystem::create_directory(folder_);
  }

  void Put(const std::string& name, const std::string& bytes) { WriteText(folder_ + name, bytes); }

  // The older layout: company HARB with the Tax, Internal, AMT and Book 6 books.
  void PutOlderCompany() {
    Put("HARBcmpy.wfa", Lines({"1,\"Harbour Marine Supply\",2024"}));
    Put("HARBbook.wfa",
        Lines({"B,0,Tax,1", "B,1,Internal,1", "B,2,State,0", "B,3,AMT,1", "B,5,Book 6,1"}));
    // Asset fields: 2 number, 3 status, 5 property type, 6 class, 8 ITC option, 11 ITC
    // amount, 12 acquired, 14-18 disposal, 20 description, 21 location, 23-24 accounts.
    Put("HARBasst.wfa", Lines({Record(33, {{2, "100"},
                                           {3, "A"},
                                           {5, "P"},
                                           {6, "OFFICE"},
                                           {8, "N"},
                                           {11, "0"},
                                           {12, "03/15/2021"},
                                           {20, "\"Office chair, blue\""},
                                           {21, " Dock 1 "},
                                           {23, "1500"},
                                           {24, "1510"}}),
                               Record(33, {{2, "200"},
                                           {3, "D"},
                                           {5, "R"},
                                           {6, "BL"},
                                           {8, "D"},
                                           {12, "01/10/2019"},
                                           {14, "06/30/2023"},
                                           {15, "S"},
                                           {16, "5000"},
                                           {17, "0"},
                                           {18, "125.50"},
                                           {20, "Shed"},
                                           {23, "1500"},
                                           {24, "1510"}}),
                               Record(33, {{2, "300"}, {3, "I"}, {20, "Gone"}})}));
    // Book fields: 3 book, 4 in service, 5 cost, 6 method, 7 percent, 8 life, 10-11 Sec.
    // 179, 13 mid-quarter mark, 19 prior depreciation.
    Put("HARBbkas.wfa",
        Lines(
            {Record(19, {{2, "100"},
                         {3, "0"},
                         {4, "03/20/2021"},
                         {5, "1200"},
                         {6, "MF"},
                         {8, "0700"},
                         {13, "0"},
                         {19, "300"}}),
             Record(19,
                    {{2, "100"}, {3, "1"}, {5, "1200"}, {6, "SL"}, {8, "0700"}, {19, "171.43"}}),
             Record(19, {{2, "100"}, {3, "5"}, {5, "1200"}, {6, "SL"}, {8, "0500"}}),
             Record(19, {{2, "200"},
                         {3, "0"},
                         {5, "45000"},
                         {6, "MF"},
                         {8, "3906"},
                         {13, "1"},
                         {19, "5000"}}),
             Record(19, {{2, "200"}, {3, "3"}, {5, "45000"}, {6, "AD"}, {8, "4000"}, {19, "4000"}}),
             Record(19, {{2, "300"}, {3, "0"}, {5, "10"}, {6, "SL"}})}));
  }

  // The newer layout: company NEWR without book.wfa (all seven books used).
  void PutNewerCompany() {
    Put("NEWRcmpy.wfa", Lines({"1,Newark Haulage"}));
    // Asset fields: 3 property type, 4 class, 6 ITC option, 8 acquired, 11 description, 12
    // location, 14-15 accounts.
    Put("NEWRasst.wfa",
        Lines({Record(35, {{2, "10"},
                           {3, "A"},
                           {4, "VEHICLE"},
                           {6, "X"},
                           {8, "2/1/22"},
                           {11, "Truck"},
                           {12, "Yard"},
                           {14, "1700"},
                           {15, "1710"}}),
               Record(35, {{2, "20"}, {3, "P"}, {8, "1/5/20"}, {11, "Old lathe"}})}));
    // Book fields: 5 in service, 6 cost, 7 method, 8 percent, 9 life, 11-12 Sec. 179, 14
    // mid-quarter mark, 18 prior depreciation.
    Put("NEWRpart.wfa",
        Lines(
            {Record(18, {{2, "10"},
                         {3, "0"},
                         {5, "02/15/2022"},
                         {6, "38000"},
                         {7, "DD"},
                         {8, "200"},
                         {9, "0500"},
                         {11, "1"},
                         {12, "1000"},
                         {14, "0"},
                         {18, "7000"}}),
             Record(18, {{2, "10"}, {3, "4"}, {6, "38000"}, {7, "SL"}, {9, "0500"}, {18, "6000"}}),
             Record(18, {{2, "20"}, {3, "0"}, {6, "900"}, {7, "SL"}, {9, "0300"}})}));
    // chld fields: 43 status, 45 disposal date, 46 method, 47-49 proceeds, 51 ITC amount.
    Put("NEWRchld.wfa", Lines({Record(51, {{2, "10"}, {43, "A"}, {45, "01/01/2024"}, {46, "E"}}),
                               Record(51, {{2, "20"}, {43, "D"}, {45, "12/31/2023"}, {46, "A"}})}));
  }

  // A CSV export of one book of assets 7 and 8 (8 disposed), its values by column.
  static std::string CsvBook(std::string_view method, std::string_view life,
                             std::string_view accumulated, std::string_view disposed) {
    return "Harbour,Book,2024\r\n"
           "System No,Activity Code,Description,Class,Acquisition Date,Location,Acquisition "
           "Value,Depreciation Method,Depreciation Percent,Estimated Life,Current Accum "
           "Depr,Current YTD Depr,Disposal Date,Disposal Method,Cash Proceeds,Non-Cash "
           "Proceeds,Custodian,User Field 2,ITC Option\r\n" +
           std::string("7,A,Forklift,EQUIP,04/01/2022,Dock,25000,") + std::string(method) +
           ",200," + std::string(life) + "," + std::string(accumulated) +
           ",1000,,,,,Pat Lee,Blue,C\r\n" + "8,D,Crane,EQUIP,05/01/2020,Dock,90000," +
           std::string(method) + ",150," + std::string(life) + ",0,0," + std::string(disposed) +
           ",S,100,50,,,\r\n" + "x!,A,No number\r\n";
  }

  ImportResult Run(std::string_view script) {
    std::unique_ptr<Importer> importer = MakeFasWinImporter();
    auto ui = Script(script);
    ImportResult result = RunImport(ctx_, *ui, *importer);
    transcript_ = ui->transcript();
    failed_ = ui->failed();
    return result;
  }

  bool Shown(std::string_view text) const { return transcript_.find(text) != std::string::npos; }

  std::map<std::string, NvAsset> Assets(const std::string& number,
                                        NvCompanyRecord* record = nullptr) {
    NvCompany company(ctx_);
    std::map<std::string, NvAsset> assets;
    EXPECT_GT(company.Open(number, NvCompany::kOpenI1 | NvCompany::kReadOnly, *Script("")), 0);
    if (record) *record = company.record();
    NvAsset asset;
    while (company.NextAsset(AssetOrder::kNumber, &asset) == 0 && asset.record_number != 0) {
      assets[std::string(TrimBlanks(asset.number.Text()))] = asset;
    }
    static_cast<void>(company.Close());
    return assets;
  }

  TempDir dir_;
  InstallationContext ctx_;
  std::string folder_;
  std::string transcript_;
  bool failed_ = false;
};

TEST_F(FasWinImportTest, OlderLayoutFieldByField) {
  PutOlderCompany();
  // User Field 1 takes the accumulated account; the books keep their pre-matches; old
  // disposals are kept.
  const ImportResult result =
      Run("file " + folder_ + "HARBcmpy.wfa\ntext HARB\nsave\nyes\nmatch 202=102\nok\nok\nno\n");
  ASSERT_FALSE(failed_) << transcript_;
  EXPECT_EQ(result.outcome, ImportOutcome::kCompleted);
  EXPECT_EQ(result.added, 2);
  EXPECT_TRUE(Shown("prompt=\"NORVANE company number.\" text=\"HARB\"")) << transcript_;
  EXPECT_TRUE(
      Shown("destinations=[201 \"T Tax\", 202 \"B Book\", 203 \"A AMT\"] sources=[101 "
            "\"Tax\", 102 \"Internal Book\", 104 \"AMT\", 106 \"Book 6\"] "
            "preset=[201=101, 202=102, 203=104]"))
      << transcript_;
  EXPECT_TRUE(
      Shown("question title=\"Question\" text=\"Delete assets disposed on or before "
            "00/00/0000\""))
      << transcript_;
  EXPECT_TRUE(Shown("progress title=\"FAS for Windows Import\" text=\"Copying FAS assets\\n \""));
  EXPECT_TRUE(Shown("last-text=\"Copying FAS assets\\nAsset       300\"")) << transcript_;

  NvCompanyRecord company;
  std::map<std::string, NvAsset> assets = Assets("HARB", &company);
  EXPECT_EQ(company.name, "Harbour Marine Supply");
  ASSERT_EQ(company.schedules.size(), 3u);
  EXPECT_EQ(company.schedules[1], (ScheduleEntry{'B', "B", "Book"}));
  EXPECT_EQ(company.user_fields[0].name, "G/L Accum Acct.");
  ASSERT_EQ(assets.size(), 2u) << "300 is inactive";

  const NvAsset& chair = assets["100.00"];
  EXPECT_EQ(chair.description, "Office chair, blue");
  EXPECT_EQ(chair.category, "OF");
  EXPECT_EQ(chair.location, "Dock 1");
  EXPECT_EQ(chair.account, "1500");
  EXPECT_EQ(chair.user_fields[0], "1510");
  EXPECT_EQ(chair.purchase_date, (Date{3, 15, 2021}));
  EXPECT_EQ(chair.date_in_service, (Date{3, 20, 2021}));
  EXPECT_EQ(chair.cash_and_notes, 1200);
  EXPECT_EQ(chair.new_used_trade, kNew);
  EXPECT_EQ(chair.type_4797, 45);
  const NvAssetSchedule& tax = *chair.Schedule('T');
  EXPECT_EQ(tax.method, kMethodMacrs);
  EXPECT_EQ(tax.convention, 'Y');
  EXPECT_EQ(tax.useful_life, (YearsMonths{7, 0}));
  EXPECT_EQ(tax.itc_code, 2);
  EXPECT_EQ(tax.prior_allowed_depr, 300);
  const NvAssetSchedule& book = *chair.Schedule('B');
  EXPECT_EQ(book.method, kMethodStraightLine);
  EXPECT_EQ(book.convention, '2');
  EXPECT_EQ(book.itc_code, 3);
  EXPECT_EQ(book.prior_allowable_depr, 171.43);
  EXPECT_TRUE(chair.Schedule('A')->not_applicable());

  const NvAsset& shed = assets["200.00"];
  EXPECT_EQ(shed.new_used_trade, kUsed);
  EXPECT_EQ(shed.disposal_code, kDisposalSold);
  EXPECT_EQ(shed.disposal_date, (Date{6, 30, 2023}));
  EXPECT_EQ(shed.sale_amount, 4874.5);
  EXPECT_EQ(shed.amount_disposed, 45000);
  EXPECT_EQ(shed.type_4797, 50);
  EXPECT_EQ(shed.Schedule('T')->convention, 'M') << "mid-quarter real property over 26 years";
  EXPECT_EQ(shed.Schedule('A')->method, kMethodAmt);
  EXPECT_EQ(shed.Schedule('A')->sl_life, (YearsMonths{40, 0}));

  // Both assets share the accounts 1500 and 1510: one group.
  AccountGroupList groups;
  ASSERT_EQ(LoadAccountGroups(CompanyFolder(ctx_, "HARB"), "HARB", &groups), 1);
  EXPECT_EQ(groups.groups[0].code, "1500");
  EXPECT_EQ(groups.groups[0].accounts[2], "1510");
}

TEST_F(FasWinImportTest, NewerLayoutWithDisposalsFromChldAndOldOnesDeleted) {
  PutNewerCompany();
  const ImportResult result = Run("file " + folder_ +
                                  "NEWRCMPY.WFA\ntext NEWR\nfield last_closed 12/31/2023\nsave\n"
                                  "yes\nok\nok\nyes\n");
  ASSERT_FALSE(failed_) << transcript_;
  EXPECT_EQ(result.added, 1) << transcript_;
  EXPECT_TRUE(
      Shown("sources=[101 \"Tax\", 102 \"Internal Book\", 103 \"State\", 104 \"AMT\", 105 "
            "\"ACE\", 106 \"Book 6\", 107 \"Book 7\"]"))
      << "without book.wfa every book is offered\n"
      << transcript_;
  EXPECT_TRUE(Shown("text=\"Delete assets disposed on or before 12/31/2023\"")) << transcript_;

  NvCompanyRecord company;
  std::map<std::string, NvAsset> assets = Assets("NEWR", &company);
  EXPECT_EQ(company.schedule_letters, "TBSAC");
  ASSERT_EQ(assets.size(), 1u) << "20 was disposed on Last Closed";
  const NvAsset& truck = assets["10.00"];
  EXPECT_EQ(truck.description, "Truck");
  EXPECT_EQ(truck.category, "VE");
  EXPECT_EQ(truck.location, "Yard");
  EXPECT_EQ(truck.account, "1700");
  EXPECT_EQ(truck.purchase_date, (Date{2, 1, 2022}));
  EXPECT_EQ(truck.date_in_service, (Date{2, 15, 2022}));
  EXPECT_EQ(truck.cash_and_notes, 38000);
  EXPECT_EQ(truck.disposal_code, kDisposalExchanged);
  EXPECT_EQ(truck.disposal_date, (Date{1, 1, 2024}));
  EXPECT_EQ(truck.amount_disposed, 38000);
  const NvAssetSchedule& tax = *truck.Schedule('T');
  EXPECT_EQ(tax.method, kMethodDb200Sl) << "DD with 200%";
  EXPECT_EQ(tax.convention, '2');
  EXPECT_EQ(tax.asset_type, "AL");
  EXPECT_EQ(tax.itc_code, 3) << "ITC option X";
  EXPECT_EQ(tax.sec179_expense, 1000);
  EXPECT_EQ(tax.prior_allowed_depr, 7000);
  const NvAssetSchedule& ace = *truck.Schedule('C');
  EXPECT_EQ(ace.method, kMethodStraightLine);
  EXPECT_EQ(ace.prior_allowed_depr, 6000);
  EXPECT_TRUE(truck.Schedule('S')->not_applicable());
}

TEST_F(FasWinImportTest, FileNamesAndMissingCompanionFiles) {
  Put("ABCDcmpy.wfa", Lines({"1,Four"}));
  Put("ABCcmpy.wfa", Lines({"1,Three"}));
  Run("file " + folder_ + "ABCcmpy.wfa\n");
  EXPECT_TRUE(
      Shown("message title=\"Error\" text=\"You must select a file of the form "
            "xxxxCMPY.WFA\""))
      << transcript_;
  // Neither companion file is there: both are listed.
  Run("file " + folder_ + "ABCDcmpy.wfa\n");
  EXPECT_TRUE(
      Shown("text=\"Unable to find the following ASCII file(s), which\\nshould have been "
            "produced by FAS export:\\nABCDasst.wfa, ABCDpart.wfa\""))
      << transcript_;
  // With them there, the number offered is the prefix.
  Put("ABCDasst.wfa", "");
  Put("ABCDbkas.wfa", "");
  Run("file " + folder_ + "ABCDcmpy.wfa\ncancel\n");
  EXPECT_TRUE(Shown("text=\"ABCD\"")) << transcript_;
  // A CSV file whose first line has two fields is no FAS export.
  Put("short.CSV", "Harbour,Tax\nSystem No\n1\n");
  Run("file " + folder_ + "short.CSV\n");
  EXPECT_TRUE(
      Shown("message title=\"Error\" text=\"short.CSV is not a FAS for Windows CSV "
            "export:"))
      << transcript_;
}

TEST_F(FasWinImportTest, EveryScheduleMustReceiveABook) {
  PutOlderCompany();
  // Unpair the AMT schedule: the panel comes back until it is paired again.
  Run("file " + folder_ +
      "HARBcmpy.wfa\ntext HARB\nsave\nyes\nok\nmatch 203=0\nok\nmatch "
      "203=106\nok\nno\n");
  ASSERT_FALSE(failed_) << transcript_;
  EXPECT_TRUE(
      Shown("message title=\"Error\" text=\"All items in the left column must have "
            "matches.\""))
      << transcript_;
  // Book 6 went to the AMT schedule: asset 100's line of book 5 fills it, not book 3's.
  std::map<std::string, NvAsset> assets = Assets("HARB");
  EXPECT_EQ(assets["100.00"].Schedule('A')->method, kMethodStraightLine);
  EXPECT_EQ(assets["100.00"].Schedule('A')->useful_life, (YearsMonths{5, 0}));
  EXPECT_TRUE(assets["200.00"].Schedule('A')->not_applicable());
}

TEST_F(FasWinImportTest, TwoCsvBooksFillTwoSchedulesOfTheSameAssets) {
  Put("tax-2024.csv", CsvBook("MF", "0700", "5000", "12/31/2023"));
  Put("book.csv", CsvBook("SL", "1000", "2500", "01/01/2024"));
  // A new company with schedules T and B, Custodian in User Field 1; the Tax book first,
  // old disposals deleted (8 was disposed on Last Closed).
  ImportResult result =
      Run("file " + folder_ +
          "tax-2024.csv\ntext CSVCO\nfield schedule_letters TB\nfield last_closed "
          "12/31/2023\nsave\nyes\nmatch 202=109\nok\nyes\nchoose 0\n");
  ASSERT_FALSE(failed_) << transcript_;
  EXPECT_EQ(result.added, 1) << transcript_;
  EXPECT_TRUE(Shown("choice title=\"\" text=\"Select Schedule to Import\"")) << transcript_;
  EXPECT_TRUE(Shown("prompt=\"NORVANE company number.\" text=\"TAX2024\"")) << transcript_;
  // Then the internal book into the same company: merged, 8 (disposed a day after Last
  // Closed in this file) comes in new.
  result = Run("file " + folder_ +
               "book.csv\ntext CSVCO\nchoose-text Add assets to existing company\nyes\nmatch "
               "202=109 203=112\nok\nyes\nchoose 1\n");
  ASSERT_FALSE(failed_) << transcript_;
  EXPECT_EQ(result.added, 2) << transcript_;
  EXPECT_TRUE(
      Shown("text=\"Data encountered for any already existing asset numbers\\nwill be "
            "merged with the existing data. Continue?\""))
      << transcript_;

  NvCompanyRecord company;
  std::map<std::string, NvAsset> assets = Assets("CSVCO", &company);
  ASSERT_EQ(assets.size(), 2u);
  EXPECT_EQ(company.user_fields[0].name, "Custodian");
  EXPECT_EQ(company.user_fields[1].name, "FAS User Field 2");
  const NvAsset& forklift = assets["7.00"];
  EXPECT_EQ(forklift.description, "Forklift");
  EXPECT_EQ(forklift.category, "EQUIP");
  EXPECT_EQ(forklift.location, "Dock");
  EXPECT_EQ(forklift.purchase_date, (Date{4, 1, 2022}));
  EXPECT_EQ(forklift.cash_and_notes, 25000);
  EXPECT_EQ(forklift.new_used_trade, kUsed);
  EXPECT_EQ(forklift.user_fields[0], "Pat Lee");
  EXPECT_EQ(forklift.user_fields[1], "Blue");
  const NvAssetSchedule& tax = *forklift.Schedule('T');
  EXPECT_EQ(tax.method, kMethodMacrs);
  EXPECT_EQ(tax.useful_life, (YearsMonths{7, 0}));
  EXPECT_EQ(tax.prior_allowed_depr, 4000);
  const NvAssetSchedule& book = *forklift.Schedule('B');
  EXPECT_EQ(book.method, kMethodStraightLine);
  EXPECT_EQ(book.useful_life, (YearsMonths{10, 0}));
  EXPECT_EQ(book.prior_allowable_depr, 1500);

  const NvAsset& crane = assets["8.00"];
  EXPECT_TRUE(crane.Schedule('T')->not_applicable()) << "left out of the Tax book";
  EXPECT_EQ(crane.disposal_code, kDisposalSold);
  EXPECT_EQ(crane.sale_amount, 150);
  EXPECT_EQ(crane.amount_disposed, 90000);
  EXPECT_EQ(crane.Schedule('B')->method, kMethodStraightLine);
}

}  // namespace
}  // namespace nv
