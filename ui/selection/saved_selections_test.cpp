#include "ui/selection/saved_selections.h"

#include <gtest/gtest.h>

#include "base/profile.h"
#include "base/temp_dir_testing.h"
#include "ui/scripted_ui_testing.h"
#include "ui/selection/barcode_scan.h"

namespace nv {
namespace {

class SavedSelectionsTest : public ::testing::Test {
 protected:
  SavedSelectionsTest() : files_{dir_.File("CO1.ini"), dir_.File("KELNVWIN.INI")} {}

  std::string Stored(bool all_companies, const std::string& name) {
    return ReadProfileString(all_companies ? files_.installation_settings : files_.company_settings,
                             kAssetSelectionSection, name, "", 2000);
  }

  TempDir dir_;
  SelectionFiles files_;
};

KelSelection LocationsNotSold() {
  KelSelection s;
  s.name = "Near";
  s.schedule = 'T';
  s.criteria[kSelLocation] = {true, "01-05", false};
  s.criteria[kSelDisposalCode] = {true, "S", true};
  s.criteria[kSelDescription] = {false, "not saved", false};
  return s;
}

TEST_F(SavedSelectionsTest, ValueFormAndItsFile) {
  KelSelection s = LocationsNotSold();
  ASSERT_TRUE(SaveSelection(files_, s));
  EXPECT_EQ(Stored(false, "Near"), "Schedule T;Location:01-05;!Disposal Code:S;");
  EXPECT_EQ(Stored(true, "Near"), "");
  s.all_companies = true;
  s.schedule = 0;
  ASSERT_TRUE(SaveSelection(files_, s));
  EXPECT_EQ(Stored(true, "Near"), "Location:01-05;!Disposal Code:S;");
}

TEST_F(SavedSelectionsTest, SemicolonsAndBackslashesSurviveSavingAndLoading) {
  KelSelection s = LocationsNotSold();
  s.criteria[kSelDescription] = {true, "'a;b',50% off\\*;", false};
  s.criteria[kSelUserField10] = {true, "ends\\", false};
  s.criteria[kSelUserField1] = {true, std::string(450, 'x'), false};  // past the first buffer
  ASSERT_TRUE(SaveSelection(files_, s));
  KelSelection loaded;
  ASSERT_TRUE(LoadSelection(files_, "near", false, 'T', &loaded));
  EXPECT_EQ(loaded.criteria, s.criteria);
  EXPECT_EQ(loaded.schedule, 'T');
  EXPECT_EQ(loaded.name, "near");
}

TEST_F(SavedSelectionsTest, ReadingDropsEveryBackslashAndPassesOverUnknownFields) {
  KelSelection s;
  s.criteria[kSelLocation] = {true, "old", true};
  ASSERT_TRUE(ReadSelectionValue("asset desc.:x\\;y\\z;Colour:red;!CATEGORY:C1;", 0, &s));
  EXPECT_EQ(s.criteria[kSelDescription], (SelectionCriterion{true, "x;yz", false}));
  EXPECT_EQ(s.criteria[kSelCategory], (SelectionCriterion{true, "C1", true}));
  EXPECT_FALSE(s.criteria[kSelLocation].in_use);
}

TEST_F(SavedSelectionsTest, ABadValueOrAnotherScheduleLoadsNothing) {
  for (const char* bad : {"Location:01", "Location 01;", "Schedule T;Location:01;"}) {
    KelSelection s;
    s.criteria[kSelCategory].in_use = true;
    EXPECT_FALSE(ReadSelectionValue(bad, bad[0] == 'S' ? 'B' : 0, &s)) << bad;
    EXPECT_FALSE(s.AnyInUse()) << bad;
  }
  ASSERT_TRUE(SaveSelection(files_, LocationsNotSold()));
  KelSelection s;
  EXPECT_FALSE(LoadSelection(files_, "Near", false, 'B', &s));
  EXPECT_FALSE(LoadSelection(files_, "Near", false, 0, &s));
  EXPECT_FALSE(LoadSelection(files_, "Near", true, 'T', &s));
  EXPECT_FALSE(s.AnyInUse());
}

TEST_F(SavedSelectionsTest, NamesAndTextsASettingsFileCannotHoldAreRefused) {
  KelSelection s = LocationsNotSold();
  for (const char* name : {"", " Near", "a=b", "[x", ";x", "a\nb"}) {
    s.name = name;
    EXPECT_FALSE(SaveSelection(files_, s)) << name;
  }
  s.name = "Near";
  s.criteria[kSelAssetNumber] = {true, "1\r\n2", false};
  EXPECT_FALSE(SaveSelection(files_, s));
  EXPECT_TRUE(ListProfileKeys(files_.company_settings, kAssetSelectionSection).empty());
}

TEST_F(SavedSelectionsTest, ListingGivesTheInstallationsFirstWithTheirSchedules) {
  KelSelection s = LocationsNotSold();
  ASSERT_TRUE(SaveSelection(files_, s));  // this company, T
  s.name = "Everywhere";
  s.all_companies = true;
  s.schedule = 0;
  ASSERT_TRUE(SaveSelection(files_, s));
  s.name = "Books";
  s.schedule = 'B';
  ASSERT_TRUE(SaveSelection(files_, s));
  std::vector<SavedSelectionEntry> expected = {
      {"Everywhere", true, 0}, {"Books", true, 'B'}, {"Near", false, 'T'}};
  EXPECT_EQ(ListSavedSelections(files_), expected);
}

TEST_F(SavedSelectionsTest, DeletingAsksFirst) {
  ASSERT_TRUE(SaveSelection(files_, LocationsNotSold()));
  auto ui = testing::Script("no\nyes\n");
  EXPECT_FALSE(DeleteSelection(*ui, files_, "Near", false));
  EXPECT_EQ(ListSavedSelections(files_).size(), 1u);
  EXPECT_TRUE(DeleteSelection(*ui, files_, "Near", false));
  EXPECT_TRUE(ListSavedSelections(files_).empty());
  EXPECT_NE(ui->transcript().find("Delete Current Asset Selection(Near)?"), std::string::npos);
}

TEST(BarcodeScan, CodesSortedOnceEachIntoTheAssetNumberAlone) {
  EXPECT_EQ(ScannedCodesCriterion("12\r\n5\n 12 \r\n\r\n7,5"), "12,5,7");
  EXPECT_EQ(ScannedCodesCriterion("\r\n"), "");
  KelSelection s;
  s.criteria[kSelLocation] = {true, "01", false};
  s.criteria[kSelAssetNumber] = {false, "99", true};
  ApplyScannedCodes("100.1\r\n100.1\r\n", &s);
  EXPECT_EQ(s.criteria[kSelAssetNumber], (SelectionCriterion{true, "100.1", false}));
  EXPECT_FALSE(s.criteria[kSelLocation].in_use);
}

}  // namespace
}  // namespace nv
