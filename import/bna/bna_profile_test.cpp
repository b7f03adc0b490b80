#include "import/bna/bna_profile.h"

#include <string>

#include <gtest/gtest.h>

#include "base/file_util.h"
#include "base/temp_dir_testing.h"
#include "import/bna/bna_source.h"
#include "import/bna/field_value.h"

namespace nv {
namespace {

class BnaProfileTest : public ::testing::Test {
 protected:
  void Put(const std::string& name, std::string_view bytes) {
    ASSERT_TRUE(WriteFileAtomically(dir_.File(name), bytes));
  }
  std::string Contents(const std::string& name) {
    return ReadFileBytes(dir_.File(name)).value_or("<none>");
  }
  BnaProfiles Start(std::string_view stored = "") {
    return StartBnaProfiles(dir_.path() + "/", stored);
  }
  // Loads the current profile as a run does: the checked boxes first, then the list.
  void Load(const BnaProfiles& profiles, ImportConversionList& list) {
    LoadDefinitions(profiles, ReadBnaParameters(profiles).checked_groups, list);
  }

  TempDir dir_;
};

std::optional<std::string> Value(const ImportConversionList& list, std::string_view field,
                                 std::string_view line,
                                 std::optional<std::string_view> schedule = std::nullopt) {
  ColumnClass columns(line, kBnaTabSeparated);
  return ProduceFieldValue(list, field, columns, kNoLengthLimit, schedule, nullptr);
}

constexpr char kBasisProfile[] =
    "[conversion definitions]\r\n"
    "Asset No.=A,ENTIRE,0,\r\n"
    "Basis=B,ENTIRE,0,\r\n"
    "Basis, Tax=C,ENTIRE,0,\r\n";

TEST_F(BnaProfileTest, PlainBasisServesEveryScheduleWithoutItsOwnKey) {
  Put("@BNA_ND.IMP", std::string(kBasisProfile) + "[Parameters]\r\nData CheckBoxes=*GTB\r\n");
  ImportConversionList list;
  Load(Start(), list);
  ASSERT_EQ(list.size(), 3u);
  EXPECT_EQ(list.entries()[2].group, 'T');
  EXPECT_EQ(Value(list, "Basis", "1001\t500\t450", "Book"), "500");
  EXPECT_EQ(Value(list, "Basis", "1001\t500\t450", "Tax"), "450");
  EXPECT_EQ(Value(list, "Basis", "1001\t500\t450"), "500");
}

TEST_F(BnaProfileTest, ScheduleKeyOfAnUncheckedBoxGivesNothing) {
  Put("@BNA_ND.IMP", std::string(kBasisProfile) + "[Parameters]\r\nData CheckBoxes=*G\r\n");
  ImportConversionList list;
  Load(Start(), list);
  // The Tax key exists, so there is no fall back to the plain Basis: the field stays.
  EXPECT_EQ(Value(list, "Basis", "1001\t500\t450", "Tax"), std::nullopt);
  EXPECT_EQ(Value(list, "Basis", "1001\t500\t450", "Book"), "500");
}

TEST_F(BnaProfileTest, WithoutDataCheckBoxesOnlyTheAssetNumberIsActive) {
  Put("@BNA_ND.IMP", std::string(kBasisProfile) + "Description=D,ENTIRE,0,\r\n");
  ImportConversionList list;
  Load(Start(), list);
  EXPECT_EQ(Value(list, "Asset No.", "1001\t500\t450\tDesk"), "1001");
  EXPECT_EQ(Value(list, "Description", "1001\t500\t450\tDesk"), std::nullopt);
  EXPECT_EQ(Value(list, "Basis", "1001\t500\t450\tDesk", "Book"), std::nullopt);
}

TEST_F(BnaProfileTest, LowerCaseNocopyIsWrittenBackInCapitals) {
  Put("my.imp", "[conversion definitions]\r\nDescription=nocopy,B,ENTIRE,0,\r\n");
  BnaProfiles profiles = Start("my.imp");
  ImportConversionList list;
  Load(profiles, list);
  ASSERT_EQ(list.size(), 1u);
  EXPECT_TRUE(list.entries()[0].no_copy);
  EXPECT_EQ(list.entries()[0].column, 1);
  EXPECT_EQ(Value(list, "Description", "1001\tDesk"), std::nullopt);

  BnaDialogSettings settings{"TG", "", kBnaCommaSeparated};
  ASSERT_TRUE(SaveBnaProfile(profiles, list, settings));
  EXPECT_EQ(Contents("my.imp"),
            "[conversion definitions]\r\n"
            "Description=NOCOPY,B,ENTIRE,0,\r\n"
            "[Parameters]\r\n"  // right after the last line, as the system writes it
            "Data CheckBoxes=*GT\r\n"
            "source file=\r\n"
            "file type=CSV\r\n");
}

TEST_F(BnaProfileTest, SaveKeepsWhatTheListDoesNotHoldAndTextsSurviveTheTrip) {
  Put("keep.imp",
      "; notes of the user\r\n"
      "[special conversions]\r\nLocation=concat({Location}, \"-\")\r\n"
      "[conversion definitions]\r\nOld Field=A,ENTIRE,0,\r\n"
      "[Parameters]\r\nMain Profile=@BNA_ND.IMP\r\n");
  BnaProfiles profiles = Start("keep.imp");
  ImportConversionList list;
  list.Add("New/Used", false, -1, ConversionMethod::kSet, 0, "N  ", 'G');
  list.Add("Misc. Codes", false, -1, ConversionMethod::kSet, 0, "\"a,b\"", 'G');
  list.Add("Account No.", false, 3, ConversionMethod::kMid, 2, "6", 'G');
  BnaDialogSettings settings{"G", "/reports/fa.txt", kBnaTabSeparated};
  ASSERT_TRUE(SaveBnaProfile(profiles, list, settings));
  EXPECT_EQ(Contents("keep.imp"),
            "; notes of the user\r\n"
            "[special conversions]\r\nLocation=concat({Location}, \"-\")\r\n"
            "[conversion definitions]\r\nOld Field=A,ENTIRE,0,\r\n"
            "New/Used=,SET,0,\"N  \"\r\n"
            "Misc. Codes=,SET,0,\"\"\"a,b\"\"\"\r\n"
            "Account No.=D,MID,2,6\r\n"
            "[Parameters]\r\nMain Profile=@BNA_ND.IMP\r\n"
            "Data CheckBoxes=*G\r\nsource file=/reports/fa.txt\r\nfile type=Tabs\r\n");

  ImportConversionList again;
  LoadDefinitions(profiles, "G", again);
  ASSERT_EQ(again.size(), 4u);
  EXPECT_EQ(again.Find("New/Used")->text, "N  ");
  EXPECT_EQ(again.Find("Misc. Codes")->text, "\"a,b\"");
  EXPECT_EQ(again.Find("Account No.")->column, 3);
  EXPECT_EQ(ReadProfileValue(profiles, kBnaSpecialSection, "location", ""),
            "concat({Location}, \"-\")");
}

TEST_F(BnaProfileTest, EmptyOrMissingValuesComeFromTheMainProfile) {
  Put("main.imp",
      "[parameters]\r\ndollar decimal places=2\r\nfile type=CSV\r\n"
      "duplicate processing=replace asset\r\nData CheckBoxes=*T\r\n"
      "[special conversions]\r\nBasis=add({C}, 1)\r\n"
      "[conversion definitions]\r\nDescription=B,ENTIRE,0,\r\n");
  Put("client.imp",
      "[Parameters]\r\nMain Profile=main.imp\r\nfile type=\r\n"
      "DUPLICATE PROCESSING=Create Subasset\r\nProfile Type=bna_nd\r\n");
  BnaProfiles profiles = Start("client.imp");
  EXPECT_EQ(profiles.main, "main.imp");
  BnaParameters p = ReadBnaParameters(profiles);
  EXPECT_EQ(p.implied_decimals, 2);
  EXPECT_EQ(p.file_type, kBnaCommaSeparated);
  EXPECT_EQ(p.duplicate_mode, DuplicateMode::kCreateSubasset);
  EXPECT_TRUE(p.bna_nd_profile_type);
  EXPECT_FALSE(p.always_copy_basis);
  EXPECT_EQ(p.checked_groups, "T");
  EXPECT_EQ(ReadProfileValue(profiles, kBnaSpecialSection, "Basis", ""), "add({C}, 1)");
  EXPECT_EQ(ReadProfileValue(profiles, kBnaSpecialSection, "Basis", "", false), "");
  // The definitions are the profile's own.
  ImportConversionList list;
  LoadDefinitions(profiles, p.checked_groups, list);
  EXPECT_EQ(list.size(), 0u);
}

TEST_F(BnaProfileTest, ParametersDefaultWhenNoProfileHasThem) {
  Put("bare.imp",
      "[Parameters]\r\nsubst basis=Always Copy basis\r\n"
      "duplicate processing=merge\r\n");
  BnaParameters p = ReadBnaParameters(Start("bare.imp"));
  EXPECT_EQ(p.checked_groups, "");
  EXPECT_EQ(p.file_type, kBnaTabSeparated);
  EXPECT_EQ(p.implied_decimals, 0);
  EXPECT_TRUE(p.always_copy_basis);
  EXPECT_EQ(p.duplicate_mode, DuplicateMode::kReplaceValues);
  EXPECT_FALSE(p.bna_nd_profile_type);
  // A profile that does not exist reads as empty.
  EXPECT_EQ(ReadBnaParameters(Start("nowhere.imp")).file_type, kBnaTabSeparated);
}

TEST_F(BnaProfileTest, ValuesAreReadWithA500CharacterBuffer) {
  Put("long.imp", "[special conversions]\r\nNote Text=" + std::string(600, 'x') + "\r\n");
  EXPECT_EQ(ReadProfileValue(Start("long.imp"), kBnaSpecialSection, "Note Text", "").size(), 499u);
}

TEST_F(BnaProfileTest, ProfileNamesWithoutAFolderLiveInTheProgramFolder) {
  Put("@bna_nd.imp", "[Parameters]\r\nMain Profile=shared.imp\r\n");
  BnaProfiles profiles = Start();
  EXPECT_EQ(profiles.current, "@BNA_ND.IMP");
  EXPECT_EQ(profiles.main, "shared.imp");  // found although its case differs
  std::string folder = dir_.path() + "/";
  EXPECT_EQ(BnaProfilePath(folder, "other.imp"), folder + "other.imp");
  EXPECT_EQ(BnaProfilePath(folder, "/elsewhere/a.imp"), "/elsewhere/a.imp");
  EXPECT_EQ(BnaProfilePath(folder, "c:a.imp"), "c:a.imp");
}

TEST_F(BnaProfileTest, NewProfileNamesItsMainProfileAndSwitchingRereadsIt) {
  BnaProfiles profiles = Start();
  EXPECT_EQ(profiles.main, "");
  ASSERT_TRUE(CreateBnaProfile(profiles, "client.imp"));
  EXPECT_EQ(profiles.current, "client.imp");
  EXPECT_EQ(profiles.main, "@BNA_ND.IMP");
  EXPECT_EQ(Contents("client.imp"), "[Parameters]\r\nMain Profile=@BNA_ND.IMP\r\n");

  Put("plain.imp", "[Parameters]\r\nfile type=CSV\r\n");
  SwitchBnaProfile(profiles, "plain.imp");
  EXPECT_EQ(profiles.main, "");

  ASSERT_TRUE(WriteProfileValue(profiles, kBnaParametersSection, kBnaDuplicatesKey,
                                DuplicateKeyword(DuplicateMode::kDropNewAsset)));
  EXPECT_EQ(ReadBnaParameters(profiles).duplicate_mode, DuplicateMode::kDropNewAsset);
  ASSERT_TRUE(WriteProfileValue(profiles, kBnaParametersSection, "FILE TYPE", std::nullopt));
  EXPECT_EQ(Contents("plain.imp"), "[Parameters]\r\nduplicate processing=drop new asset\r\n");
}

TEST_F(BnaProfileTest, TheUsersProfileIsRememberedInTheSettingsFile) {
  std::string ini = dir_.File("KELNVWIN.INI");
  EXPECT_EQ(ReadUserImportProfile(ini, "ANNA"), "");
  ASSERT_TRUE(WriteUserImportProfile(ini, "ANNA", "client.imp"));
  EXPECT_EQ(Contents("KELNVWIN.INI"), "[User ANNA]\r\nImport Profile=client.imp\r\n");
  EXPECT_EQ(ReadUserImportProfile(ini, "anna"), "client.imp");
}

}  // namespace
}  // namespace nv
