#include "store/codes/loc_cat_list.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/file_util.h"
#include "store/store_testing.h"

namespace nv {
namespace {

using testing::TempDir;

std::vector<std::string> Codes(const NvLocCatList& list) {
  std::vector<std::string> codes;
  for (const NvLocCatEntry& e : list.entries()) codes.push_back(e.code);
  return codes;
}

class LocCatListTest : public ::testing::Test {
 protected:
  LocCatListTest() {
    files_ = {dir_.path() + "/data/", "CO1", dir_.path() + "/inst/", 'N'};
    EXPECT_TRUE(MakeDirectories(files_.installation_folder));
    EXPECT_TRUE(MakeDirectories(files_.company_folder));
  }

  std::string Data(const std::string& name) const { return files_.company_folder + name; }
  std::string Inst(const std::string& name) const { return files_.installation_folder + name; }
  std::string Path(char which) const { return LocCatFilePath(files_, which); }

  TempDir dir_;
  LocCatFiles files_;
};

TEST_F(LocCatListTest, WritesHeaderAndTabSeparatedLinesWithCrLf) {
  NvLocCatList list;
  list.Append("01", "Main office");
  list.Append("", "No code");
  list.Append("02", "A description longer than twenty-five");
  ASSERT_EQ(SaveLocCatList(Path(kLocations), list), 3);
  EXPECT_EQ(testing::ReadText(Data("CO1.LOC")),
            "NVW3000\r\n01\tMain office\r\n\tNo code\r\n02\tA description longer than\r\n");
  ASSERT_EQ(SaveLocCatList(Path(kCategories), NvLocCatList()), 0);
  EXPECT_EQ(testing::ReadText(Data("CO1.CAT")), "NVW3000\r\n");
}

TEST_F(LocCatListTest, ReadsOnlyCompleteLinesWithATab) {
  testing::WriteText(Data("CO1.LOC"), "NVW3000\r\n01\tMain office\r\n\r\n02 Warehouse\r\n03\tYard");
  NvLocCatList list;
  list.Append("99", "stale entry");
  ASSERT_EQ(LoadLocCatList(Path(kLocations), &list), 1);
  ASSERT_EQ(list.size(), 1u);
  EXPECT_EQ(list[0], (NvLocCatEntry{"01", "Main office"}));

  // Either header in any case; bare CR or LF end lines; over-long fields are cut; a second
  // tab belongs to the description.
  testing::WriteText(Data("CO1.LOC"),
                     "nvw2000\n7\tSeven\r12345678901\tDesc\twith tab\n\tBlank code\n8\t" +
                         std::string(30, 'd') + "\n");
  ASSERT_EQ(LoadLocCatList(Path(kLocations), &list), 4);
  EXPECT_EQ(list.entries(), (std::vector<NvLocCatEntry>{{"", "Blank code"},
                                                        {"7", "Seven"},
                                                        {"8", std::string(25, 'd')},
                                                        {"1234567890", "Desc\twith tab"}}));
}

TEST_F(LocCatListTest, LineCutByAPieceEndIsCarriedOver) {
  // 18-byte lines after the 9-byte header up to 16,371; the next line runs over the first
  // piece's end at 16,384.
  std::string file = "NVW3000\r\n";
  int lines = 0;
  while (file.size() + 18 <= 16384 - 5) {
    file += std::to_string(1000 + lines) + "\tfiller line\r\n";  // 4 + 1 + 11 + 2 bytes
    ++lines;
  }
  ASSERT_EQ(file.size(), 16371u);
  file += "ACROSS\tthe piece boundary\r\n";
  // A CR ending the second piece and its LF starting the third make no extra entry.
  file.append(2 * 16384 - 1 - file.size(), 'x');
  file += "\r\n";
  file += "LAST\tin third piece\r\n";
  testing::WriteText(Data("CO1.LOC"), file);

  NvLocCatList list;
  ASSERT_EQ(LoadLocCatList(Path(kLocations), &list), lines + 2);
  const NvLocCatEntry* across = FindLocCat(list, "ACROSS");
  ASSERT_NE(across, nullptr);
  EXPECT_EQ(across->description, "the piece boundary");
  ASSERT_NE(FindLocCat(list, "LAST"), nullptr);
  EXPECT_EQ(FindLocCat(list, "LAST")->description, "in third piece");
}

TEST_F(LocCatListTest, SortsByNaturalOrderWithBlankCodeAsZero) {
  testing::WriteText(Data("CO1.CAT"),
                     "NVW3000\r\n10\tten\r\n9\tnine\r\n9-2\tnine two\r\n \tblank\r\n-1\tminus\r\n");
  NvLocCatList list;
  ASSERT_EQ(LoadLocCatList(Path(kCategories), &list), 5);
  // "-1" sorts before "0", so before the blank code, which an empty text would not.
  EXPECT_EQ(Codes(list), (std::vector<std::string>{"-1", " ", "9", "9-2", "10"}));
  ASSERT_NE(FindLocCat(list, "0"), nullptr);
  EXPECT_EQ(FindLocCat(list, "0")->description, "blank");
  EXPECT_EQ(FindLocCat(list, "9-3"), nullptr);
}

TEST_F(LocCatListTest, ReadsOlderFixedRecords) {
  auto record = [](const std::string& number, char mark, const std::string& description) {
    std::string r = number + mark + description;
    r.append(29 - r.size(), ' ');
    return r;
  };
  testing::WriteText(Data("CO1.LOC"),
                     record(" 12", '+', "Yard") + record("  3", ' ', "Not in use") +
                         record("  0", '+', "Zero") +
                         record("  1", '+', std::string("Nul\0after", 9)) + "  4+partial");
  NvLocCatList list;
  ASSERT_EQ(LoadLocCatList(Path(kLocations), &list), 3);
  EXPECT_EQ(list.entries(),
            (std::vector<NvLocCatEntry>{
                {"         0", "Zero"}, {"         1", "Nul"}, {"        12", "Yard"}}));

  // Nothing at all when the first record's number is below 1.
  testing::WriteText(Data("CO1.LOC"), record("  0", '+', "Zero") + record("  5", '+', "Five"));
  EXPECT_EQ(LoadLocCatList(Path(kLocations), &list), 0);
  EXPECT_TRUE(list.empty());
}

TEST_F(LocCatListTest, GlobalChoiceSelectsTheInstallationFiles) {
  testing::WriteText(Data("CO1.LOC"), "NVW3000\r\nOWN\tcompany location\r\n");
  testing::WriteText(Data("co1.cat"), "NVW3000\r\nOWNC\tcompany category\r\n");
  testing::WriteText(Inst("GLOBAL.LOC"), "NVW3000\r\nGL\tglobal location\r\n");
  testing::WriteText(Inst("global.cat"), "NVW3000\r\nGC\tglobal category\r\n");
  NvLocCatList locations;
  NvLocCatList categories;

  files_.global_choice = 'B';
  ASSERT_EQ(LoadLocCatList(Path(kLocations), &locations), 1);
  ASSERT_EQ(LoadLocCatList(Path(kCategories), &categories), 1);
  EXPECT_EQ(locations[0].code, "GL");
  EXPECT_EQ(categories[0].code, "GC");
  EXPECT_TRUE(AddLocCatIfAbsent(&categories, "GD", "added"));
  ASSERT_EQ(SaveLocCatList(Path(kCategories), categories), 2);
  EXPECT_EQ(testing::ReadText(Inst("global.cat")),
            "NVW3000\r\nGC\tglobal category\r\nGD\tadded\r\n");
  EXPECT_EQ(testing::ReadText(Data("co1.cat")), "NVW3000\r\nOWNC\tcompany category\r\n");

  files_.global_choice = 'L';
  ASSERT_EQ(LoadLocCatList(Path(kLocations), &locations), 1);
  ASSERT_EQ(LoadLocCatList(Path(kCategories), &categories), 1);
  EXPECT_EQ(locations[0].code, "GL");
  EXPECT_EQ(categories[0].code, "OWNC");

  files_.global_choice = 'C';
  ASSERT_EQ(LoadLocCatList(Path(kLocations), &locations), 1);
  EXPECT_EQ(locations[0].code, "OWN");

  files_.global_choice = 'N';
  ASSERT_EQ(LoadLocCatList(Path(kCategories), &categories), 1);
  EXPECT_EQ(categories[0].code, "OWNC");
}

TEST_F(LocCatListTest, MissingFileReadsEmptyAndUncreatableFileFails) {
  NvLocCatList list;
  list.Append("1", "one");
  EXPECT_EQ(LoadLocCatList(Path(kCategories), &list), 0);
  EXPECT_TRUE(list.empty());

  list.Append("1", "one");
  EXPECT_EQ(SaveLocCatList(dir_.path() + "/missing/CO1.LOC", list), kFileNotCreated);
  EXPECT_EQ(list.size(), 1u);
}

TEST(LocCatLookupTest, AddFindAndFreeTextCodes) {
  NvLocCatList list;
  EXPECT_TRUE(AddLocCatIfAbsent(&list, "20", "Twenty"));
  EXPECT_TRUE(AddLocCatIfAbsent(&list, "3", "Three"));
  EXPECT_TRUE(AddLocCatIfAbsent(&list, "100", "Hundred"));
  EXPECT_FALSE(AddLocCatIfAbsent(&list, "3", "Other three"));
  EXPECT_EQ(Codes(list), (std::vector<std::string>{"3", "20", "100"}));
  EXPECT_EQ(FindLocCat(list, "3")->description, "Three");
  ASSERT_NE(FindLocCatByDescription(list, "HUNDRED"), nullptr);
  EXPECT_EQ(FindLocCatByDescription(list, "HUNDRED")->code, "100");

  // Free text: a known description gives its code; new text adds its first 10 characters
  // as code and is itself the answer.
  EXPECT_EQ(LocCatCodeForText(&list, "  twenty "), "20");
  EXPECT_EQ(LocCatCodeForText(&list, "North warehouse, second floor"), "North warehouse, second f");
  const NvLocCatEntry* added = FindLocCat(list, "North ware");
  ASSERT_NE(added, nullptr);
  EXPECT_EQ(added->description, "North warehouse, second f");
  // Same first 10 characters, other text: no second entry, the text still comes back.
  EXPECT_EQ(LocCatCodeForText(&list, "North ware B"), "North ware B");
  EXPECT_EQ(list.size(), 4u);
  // The code is trimmed.
  EXPECT_EQ(LocCatCodeForText(&list, "Lot 7     east"), "Lot 7     east");
  EXPECT_NE(FindLocCat(list, "Lot 7"), nullptr);
  EXPECT_EQ(LocCatCodeForText(&list, "   "), "");
  EXPECT_EQ(list.size(), 5u);
  // Line breaks could not be written to the file.
  EXPECT_TRUE(AddLocCatIfAbsent(&list, "A\tB", "x\ny"));
  EXPECT_EQ(FindLocCat(list, "A B")->description, "x y");
}

}  // namespace
}  // namespace nv
