// Export definitions in their profile files: the column values as the definitions window
// writes and reads them, and whole definitions saved, loaded, listed and deleted.
#include "export/export_definition.h"

#include <gtest/gtest.h>

#include "base/ascii.h"
#include "base/profile.h"
#include "base/temp_dir_testing.h"
#include "store/store_testing.h"

namespace nv {
namespace {

ExportColumn Column(int field, char group, std::string heading, std::string_view flags) {
  ExportColumn column;
  column.field = field;
  column.group = group;
  column.heading = std::move(heading);
  column.addition = flags.find('A') != std::string_view::npos;
  column.disposition = flags.find('D') != std::string_view::npos;
  column.current = flags.find('C') != std::string_view::npos;
  column.none_of_the_above = flags.find('N') != std::string_view::npos;
  return column;
}

void ExpectSameColumn(const ExportColumn& got, const ExportColumn& want) {
  EXPECT_EQ(got.field, want.field);
  EXPECT_EQ(got.group, want.group);
  EXPECT_EQ(got.heading, want.heading);
  EXPECT_EQ(got.addition, want.addition);
  EXPECT_EQ(got.disposition, want.disposition);
  EXPECT_EQ(got.current, want.current);
  EXPECT_EQ(got.none_of_the_above, want.none_of_the_above);
}

TEST(ExportColumnValueTest, ScheduleColumnIsStoredWithItsGroupCode) {
  const ExportColumn method = Column(2001, 'B', "Method", "AC");
  EXPECT_EQ(ExportColumnValue(method), "Depr. Method,66,AC,Method");
  const std::optional<ExportColumn> read = ParseExportColumnValue("Depr. Method,66,AC,Method");
  ASSERT_TRUE(read);
  ExpectSameColumn(*read, method);

  EXPECT_EQ(ExportColumnValue(Column(1010, '*', "", "DN")), "Date in Service,42,DN,");
}

TEST(ExportColumnValueTest, ReadingIsLenientAboutCaseAndTakesTheRestAsHeading) {
  const std::optional<ExportColumn> read =
      ParseExportColumnValue("depr. METHOD,84,nd,Cost, net, 1999");
  ASSERT_TRUE(read);
  ExpectSameColumn(*read, Column(2001, 'T', "Cost, net, 1999", "DN"));

  // Flags are read in any order; letters that are no flag are passed over.
  const std::optional<ExportColumn> flags = ParseExportColumnValue("Cost,42,cXa,");
  ASSERT_TRUE(flags);
  ExpectSameColumn(*flags, Column(1008, '*', "", "AC"));
}

TEST(ExportColumnValueTest, ValuesThatNameNoColumnAreDropped) {
  // A general field asked for in a schedule, and the other way round.
  EXPECT_FALSE(ParseExportColumnValue("Asset No.,66,A,No"));
  EXPECT_FALSE(ParseExportColumnValue("Depr. Method,42,A,Method"));
  EXPECT_FALSE(ParseExportColumnValue("Depr Method,66,A,Method"));
  // Three commas are needed, even for an empty heading.
  EXPECT_FALSE(ParseExportColumnValue("Depr. Method,66,AC"));
  EXPECT_FALSE(ParseExportColumnValue(""));
  // A group code must be a number naming "*" or a schedule letter.
  EXPECT_FALSE(ParseExportColumnValue("Depr. Method,B,AC,Method"));
  EXPECT_FALSE(ParseExportColumnValue("Depr. Method,322,AC,Method"));  // 322 = 256 + 'B'
  EXPECT_FALSE(ParseExportColumnValue("Depr. Method,98,AC,Method"));   // 'b'
  EXPECT_FALSE(ParseExportColumnValue("Depr. Method,-66,AC,Method"));
}

TEST(ExportFieldTest, NamesAndNumbersFindTheSameFieldInEachGroup) {
  for (const ExportField& field : GeneralExportFields()) {
    EXPECT_EQ(FindExportField('*', field.name), &field);
    EXPECT_EQ(FindExportField(field.number), &field);
    EXPECT_EQ(FindExportField('B', field.name), nullptr) << field.name;
  }
  for (const ExportField& field : ScheduleExportFields()) {
    EXPECT_EQ(FindExportField('Z', AsciiUpper(field.name)), &field);
    EXPECT_EQ(FindExportField(field.number), &field);
  }
  EXPECT_EQ(FindExportField(1030), nullptr);
}

class ExportDefinitionFileTest : public ::testing::Test {
 protected:
  ExportDefinition Sample() const {
    ExportDefinition definition;
    definition.name = "Year end";
    definition.include_headings = false;
    definition.select_assets = true;
    definition.file_name = "yearend.txt";
    definition.changed = true;
    definition.columns = {Column(1001, '*', "Asset, number", "ADCN"),
                          Column(2019, 'T', "Ending, tax, allowable", "C"),
                          Column(2001, 'B', "", "")};
    return definition;
  }

  TempDir dir_;
  std::string file_ = dir_.File("ACME.EXP");
};

TEST_F(ExportDefinitionFileTest, SavedDefinitionLoadsBackTheSame) {
  ExportDefinition saved = Sample();
  ASSERT_TRUE(SaveDefinition(file_, saved));
  EXPECT_FALSE(saved.changed);

  ExportDefinition loaded;
  loaded.columns = {Column(1002, '*', "left over", "A")};
  loaded.changed = true;
  ASSERT_TRUE(LoadDefinition(file_, "YEAR END", loaded));
  EXPECT_FALSE(loaded.changed);
  EXPECT_FALSE(loaded.include_headings);
  EXPECT_TRUE(loaded.select_assets);
  EXPECT_EQ(loaded.file_name, "yearend.txt");
  ASSERT_EQ(loaded.columns.size(), saved.columns.size());
  for (size_t i = 0; i < saved.columns.size(); ++i)
    ExpectSameColumn(loaded.columns[i], saved.columns[i]);

  // The section as the main program's readers expect it, keys in this order.
  EXPECT_EQ(
      testing::ReadText(file_),
      "[Year end]\r\nInclude Headings=No\r\nFilename=yearend.txt\r\nSelect Assets=Yes\r\n"
      "0=Asset No.,42,ADCN,Asset, number\r\n1=Ending Allwble Dpr,84,C,Ending, tax, allowable\r\n"
      "2=Depr. Method,66,,\r\n");
}

TEST_F(ExportDefinitionFileTest, SavingReplacesTheWholeSectionAndKeepsOthers) {
  ExportDefinition first = Sample();
  ASSERT_TRUE(SaveDefinition(file_, first));
  ExportDefinition other = Sample();
  other.name = "Other";
  ASSERT_TRUE(SaveDefinition(file_, other));

  ExportDefinition shorter = Sample();
  shorter.name = "year END";
  shorter.columns.resize(1);
  ASSERT_TRUE(SaveDefinition(file_, shorter));
  ExportDefinition loaded;
  ASSERT_TRUE(LoadDefinition(file_, "Year end", loaded));
  EXPECT_EQ(loaded.columns.size(), 1u);  // keys "1" and "2" of the old one are gone

  const std::vector<std::string> names = ListDefinitions(file_);
  ASSERT_EQ(names.size(), 2u);
  EXPECT_EQ(names[0], "Other");
  EXPECT_EQ(names[1], "year END");

  ASSERT_TRUE(DeleteDefinition(file_, "YEAR end"));
  EXPECT_FALSE(LoadDefinition(file_, "Year end", loaded));
  EXPECT_EQ(ListDefinitions(file_), std::vector<std::string>{"Other"});

  ExportDefinition unnamed = Sample();
  unnamed.name.reset();
  EXPECT_FALSE(SaveDefinition(file_, unnamed));
  EXPECT_TRUE(unnamed.changed);
}

TEST_F(ExportDefinitionFileTest, HandWrittenSectionReadsWithDefaults) {
  testing::WriteText(file_,
                     "[Quick]\n"
                     "Include Headings=maybe\n"
                     "Select Assets=no thanks\n"
                     "0=Desc.,42,A,Description\n"
                     "1=Nothing Like It,42,A,Gone\n"
                     "x=Cost,42,A,Not a column\n"
                     "7 = Cost , 42 , c ,  Cost\n"
                     "[Empty]\n");
  ExportDefinition loaded;
  loaded.file_name = "stale.txt";
  ASSERT_TRUE(LoadDefinition(file_, "quick", loaded));
  EXPECT_TRUE(loaded.include_headings);  // anything but "No"
  EXPECT_FALSE(loaded.select_assets);    // only "Yes"
  EXPECT_EQ(loaded.file_name, "");
  ASSERT_EQ(loaded.columns.size(), 2u);
  ExpectSameColumn(loaded.columns[0], Column(1002, '*', "Description", "A"));
  ExpectSameColumn(loaded.columns[1], Column(1008, '*', "  Cost", "C"));

  ASSERT_TRUE(LoadDefinition(file_, "Empty", loaded));
  EXPECT_TRUE(loaded.columns.empty());
  EXPECT_FALSE(LoadDefinition(dir_.File("none.exp"), "Quick", loaded));
}

TEST_F(ExportDefinitionFileTest, LongValuesAreCutAsTheWindowReadsThem) {
  ExportDefinition definition = Sample();
  definition.columns = {Column(1002, '*', std::string(400, 'h'), "A")};
  ASSERT_TRUE(SaveDefinition(file_, definition));
  ExportDefinition loaded;
  ASSERT_TRUE(LoadDefinition(file_, "Year end", loaded));
  ASSERT_EQ(loaded.columns.size(), 1u);
  EXPECT_EQ(loaded.columns[0].heading.size(), 299u - std::string("Desc.,42,A,").size());
}

}  // namespace
}  // namespace nv
