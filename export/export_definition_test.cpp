// Export definitions in their profile files: the column values as the definitions window
// writes and reads them, and whole definitions saved, loaded, listed and deleted.
#include "export/export_definition.h"

#include <gtest/gtest.h>

#include "base/temp_dir_testing.h"
#include "export/export_testing.h"
#include "store/store_testing.h"

namespace nv {
namespace {

using testing::MakeColumn;

// The column as its stored value would be written.
std::string Stored(const std::optional<ExportColumn>& column) {
  return column ? ExportColumnValue(*column) : "(dropped)";
}

TEST(ExportColumnValueTest, WrittenAndReadWithTheGroupsCharacterCode) {
  EXPECT_EQ(ExportColumnValue(MakeColumn(2001, 'B', "AC", "Method")), "Depr. Method,66,AC,Method");
  EXPECT_EQ(ExportColumnValue(MakeColumn(1010, '*', "NDCA", "")), "Date in Service,42,ADCN,");
  EXPECT_EQ(ExportColumnValue(MakeColumn(1002, '*', "", std::string("a\0b", 3))),
            std::string("Desc.,42,,a\0b", 13));
  const std::optional<ExportColumn> read = ParseExportColumnValue("Depr. Method,66,AC,Method");
  ASSERT_TRUE(read);
  EXPECT_EQ(read->field, 2001);
  EXPECT_EQ(read->group, 'B');
  EXPECT_EQ(read->heading, "Method");
  EXPECT_TRUE(read->addition && read->current && !read->disposition && !read->none_of_the_above);

  // Names and flags in any case; the heading is everything after the third comma.
  EXPECT_EQ(Stored(ParseExportColumnValue("depr. METHOD, 84 ,nxd,Cost, net, 1999")),
            "Depr. Method,84,DN,Cost, net, 1999");
  // A name of the other group, an unknown name, a missing comma, or a group code that
  // names neither "*" nor a schedule letter: no column.
  for (const char* value : {"Asset No.,66,A,No", "Depr. Method,42,A,M", "Depr Method,66,A,M",
                            "Depr. Method,66,AC", "Depr. Method,B,A,M", "Depr. Method,322,A,M",
                            "Depr. Method,98,A,M", "Depr. Method,-66,A,M", ""}) {
    EXPECT_EQ(Stored(ParseExportColumnValue(value)), "(dropped)") << value;
  }
}

class ExportDefinitionFileTest : public ::testing::Test {
 protected:
  ExportDefinition Sample(std::string name = "Year end") const {
    ExportDefinition d;
    d.name = std::move(name);
    d.include_headings = false;
    d.select_assets = true;
    d.file_name = "yearend.txt";
    d.changed = true;
    d.columns = {MakeColumn(1001, '*', "ADCN", "Asset, number"),
                 MakeColumn(2019, 'T', "C", "Ending, tax, allowable"),
                 MakeColumn(2001, 'B', "", "")};
    return d;
  }

  TempDir dir_;
  std::string file_ = dir_.File("ACME.EXP");
};

TEST_F(ExportDefinitionFileTest, SavedDefinitionLoadsBackTheSame) {
  ExportDefinition saved = Sample();
  ASSERT_TRUE(SaveDefinition(file_, saved));
  EXPECT_FALSE(saved.changed);
  EXPECT_EQ(testing::ReadText(file_),
            "[Year end]\r\nInclude Headings=No\r\nFilename=yearend.txt\r\nSelect Assets=Yes\r\n"
            "0=Asset No.,42,ADCN,Asset, number\r\n1=Ending Allwble Dpr,84,C,Ending, tax, "
            "allowable\r\n2=Depr. Method,66,,\r\n");

  ExportDefinition loaded;
  loaded.columns = {MakeColumn(1002, '*', "A", "left over")};
  loaded.changed = true;
  ASSERT_TRUE(LoadDefinition(file_, "YEAR END", loaded));
  EXPECT_FALSE(loaded.changed);
  EXPECT_FALSE(loaded.include_headings);
  EXPECT_TRUE(loaded.select_assets);
  EXPECT_EQ(loaded.file_name, "yearend.txt");
  ASSERT_EQ(loaded.columns.size(), saved.columns.size());
  for (size_t i = 0; i < saved.columns.size(); ++i) {
    EXPECT_EQ(ExportColumnValue(loaded.columns[i]), ExportColumnValue(saved.columns[i]));
  }
}

TEST_F(ExportDefinitionFileTest, SavingReplacesTheWholeSectionAndKeepsOthers) {
  ExportDefinition first = Sample(), other = Sample("Other"), shorter = Sample("year END");
  ASSERT_TRUE(SaveDefinition(file_, first));
  ASSERT_TRUE(SaveDefinition(file_, other));
  shorter.columns.resize(1);
  ASSERT_TRUE(SaveDefinition(file_, shorter));
  ExportDefinition loaded;
  ASSERT_TRUE(LoadDefinition(file_, "Year end", loaded));
  EXPECT_EQ(loaded.columns.size(), 1u);  // keys "1" and "2" of the old one are gone
  EXPECT_EQ(ListDefinitions(file_), (std::vector<std::string>{"Other", "year END"}));

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
  EXPECT_EQ(ExportColumnValue(loaded.columns[0]), "Desc.,42,A,Description");
  EXPECT_EQ(ExportColumnValue(loaded.columns[1]), "Cost,42,C,  Cost");

  ASSERT_TRUE(LoadDefinition(file_, "Empty", loaded));
  EXPECT_TRUE(loaded.columns.empty());
  EXPECT_FALSE(LoadDefinition(dir_.File("none.exp"), "Quick", loaded));
}

}  // namespace
}  // namespace nv
