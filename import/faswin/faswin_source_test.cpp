#include "import/faswin/faswin_source.h"

#include <gtest/gtest.h>

#include "import/faswin/faswin_testing.h"

namespace nv::faswin {
namespace {

using testing::AllRows;
using testing::Lines;
using testing::Record;
using Fields = std::vector<std::string>;

TEST(FasWinRecordsTest, QuotesCloseOnlyBeforeACommaALineFeedOrTheEnd) {
  const std::vector<CommaRecord> records = SplitRecords(
      "\"a,b\",c\n"
      "\"say \"hi\"\",x\n"
      "\"two\nlines\",z\r\n"
      ",,\n"
      "\"last\"");
  ASSERT_EQ(records.size(), 5u);
  EXPECT_EQ(records[0].fields, (Fields{"a,b", "c"}));
  EXPECT_EQ(records[1].fields, (Fields{"say \"hi\"", "x"}));
  EXPECT_EQ(records[2].fields, (Fields{"two\nlines", "z"}));
  EXPECT_EQ(records[3].fields, (Fields{"", "", ""}));
  EXPECT_EQ(records[4].fields, (Fields{"last"}));
  // The line feed inside the quotes counts: the fourth record starts on line 5.
  EXPECT_EQ(records[2].line, 3);
  EXPECT_EQ(records[3].line, 5);
}

TEST(FasWinRecordsTest, CrLfEndsRecordsAndAQuoteNeverClosedEndsWithItsLine) {
  const std::vector<CommaRecord> records = SplitRecords("1,\"b\"\r\n\"open,2\r\n3,4\r\n");
  ASSERT_EQ(records.size(), 3u) << "the final line feed starts no empty record";
  EXPECT_EQ(records[0].fields, (Fields{"1", "b"}));
  EXPECT_EQ(records[1].fields, (Fields{"open,2"}));
  EXPECT_EQ(records[2].fields, (Fields{"3", "4"}));
  EXPECT_EQ(records[2].Field(2), "4");
  EXPECT_EQ(records[2].Field(3), "") << "past the end";
  EXPECT_EQ(records[2].Field(0), "");
  // A comma as the data's last byte leaves an empty last field.
  EXPECT_EQ(SplitRecords("x,").at(0).fields, (Fields{"x", ""}));
}

TEST(FasWinCompanyFilesTest, NameAndUsedBooks) {
  EXPECT_EQ(ParseCompanyName("1,\"  Harbour Marine  \",x\r\n2,Other\r\n"), "Harbour Marine");
  EXPECT_EQ(ParseCompanyName(""), "");
  // Books 0, 3 and 6 used; book 1 marked 0, book 9 and a text flag ignored.
  const BooksUsed books = ParseBooksUsed(Lines(
      {"B,0,Tax,1", "B,1,Internal,0", "B,3,AMT,-1", "B,6,Seven,2", "B,9,Nine,1", "B,2,State,Y"}));
  EXPECT_TRUE(books.used[0]);
  EXPECT_FALSE(books.used[1]);
  EXPECT_FALSE(books.used[2]);
  EXPECT_TRUE(books.used[3]);
  EXPECT_FALSE(books.used[4]);
  EXPECT_FALSE(books.used[5]);
  EXPECT_TRUE(books.used[6]);
  EXPECT_FALSE(ParseBooksUsed("").any());
  EXPECT_TRUE(AllBooksUsed().used[6]);
}

TEST(FasWinReaderTest, BookAndDisposalRecordsJoinTheirAssetInStep) {
  // Assets 10, 20 (32 fields: passed over) and 30 of the newer layout (35 fields).
  const std::string assets = Lines(
      {Record(35, {{2, "10"}, {11, "Desk"}}), Record(32, {{2, "20"}}), Record(35, {{2, "30"}})});
  // Book lines: 5 (no asset), 10 twice, 20 (its asset was passed over), 30.
  const std::string books =
      Lines({Record(18, {{2, "5"}, {3, "0"}}), Record(18, {{2, "10"}, {3, "0"}}),
             Record(18, {{2, "10"}, {3, "1"}}), Record(18, {{2, "20"}, {3, "0"}}),
             Record(18, {{2, "30"}, {3, "0"}})});
  // Disposals: 10 with 50 fields (passed over), 30 twice (the second passed over).
  const std::string disposals =
      Lines({Record(50, {{2, "10"}}), Record(51, {{2, "30"}, {43, "D"}}), Record(51, {{2, "30"}})});
  WfaReader reader(WfaLayout::kNewer, assets, books, disposals);

  WfaAsset asset;
  ASSERT_TRUE(reader.Next(&asset));
  EXPECT_EQ(asset.asset.Field(11), "Desk");
  ASSERT_EQ(asset.books.size(), 2u);
  EXPECT_EQ(asset.books[0].Field(3), "0");
  EXPECT_EQ(asset.books[1].Field(3), "1");
  EXPECT_FALSE(asset.disposal);
  std::vector<PassedOver> passed = reader.TakePassedOver();
  ASSERT_EQ(passed.size(), 2u);
  EXPECT_EQ(passed[0].file, "part.wfa");
  EXPECT_EQ(passed[0].line, 1);
  EXPECT_EQ(passed[0].key, "5");
  EXPECT_EQ(passed[1].file, "chld.wfa");
  EXPECT_EQ(passed[1].reason, "50 fields, not 51");

  ASSERT_TRUE(reader.Next(&asset));
  EXPECT_EQ(asset.asset.Field(2), "30");
  ASSERT_EQ(asset.books.size(), 1u);
  ASSERT_TRUE(asset.disposal);
  EXPECT_EQ(asset.disposal->Field(43), "D");
  passed = reader.TakePassedOver();
  // The 32-field asset 20, its book line, and the second disposal of 30.
  ASSERT_EQ(passed.size(), 3u);
  EXPECT_EQ(passed[0].file, "asst.wfa");
  EXPECT_EQ(passed[0].reason, "32 fields, not 35");
  EXPECT_EQ(passed[1].file, "part.wfa");
  EXPECT_EQ(passed[1].key, "20");
  EXPECT_EQ(passed[2].reason, "a second disposal record of its asset");
  EXPECT_FALSE(reader.Next(&asset));
}

TEST(FasWinReaderTest, SystemNumbersCompareAsNumbersAndLeftoversAreTold) {
  // 9 comes before 10 although "9" > "10" byte by byte; book lines of 99 outlast the assets.
  const std::string assets = Lines({Record(33, {{2, "9"}}), Record(33, {{2, "10"}})});
  const std::string books = Lines({Record(19, {{2, "9"}, {3, "0"}}),
                                   Record(19, {{2, "10"}, {3, "0"}}), Record(19, {{2, "99"}})});
  WfaReader reader(WfaLayout::kOlder, assets, books, "");
  WfaAsset asset;
  ASSERT_TRUE(reader.Next(&asset));
  EXPECT_EQ(asset.books.size(), 1u);
  ASSERT_TRUE(reader.Next(&asset));
  EXPECT_EQ(asset.books.size(), 1u);
  EXPECT_TRUE(reader.TakePassedOver().empty());
  EXPECT_FALSE(reader.Next(&asset));
  const std::vector<PassedOver> passed = reader.TakePassedOver();
  ASSERT_EQ(passed.size(), 1u);
  EXPECT_EQ(passed[0].file, "bkas.wfa");
  EXPECT_EQ(passed[0].key, "99");
}

TEST(FasWinCsvTest, ColumnsByNameAndShortLines) {
  EXPECT_FALSE(CsvBook::Parse("Company,Book\nSystem No\n1\n")) << "first line of two fields";
  EXPECT_FALSE(CsvBook::Parse("a,b,c\n")) << "no column names";
  std::optional<CsvBook> book =
      CsvBook::Parse("Harbour,Tax,2024\r\n System No ,Description,Class\r\n7, Boat ,VE\r\n8\r\n");
  ASSERT_TRUE(book);
  ASSERT_EQ(AllRows(*book).size(), 2u);
  EXPECT_EQ(AllRows(*book)[1].line, 4);
  EXPECT_EQ(book->ColumnNumber("System No"), 1);
  EXPECT_EQ(book->ColumnNumber("Location"), 0);
  EXPECT_EQ(book->Value(AllRows(*book)[0], "Description"), "Boat");
  EXPECT_EQ(book->Value(AllRows(*book)[1], "System No"), "8");
  EXPECT_EQ(book->Value(AllRows(*book)[1], "Class"), "") << "a short line reads empty";
  EXPECT_EQ(book->Value(AllRows(*book)[0], "Location"), "") << "no such column";
}

TEST(FasWinValuesTest, DatesAndAmounts) {
  EXPECT_EQ(SourceDate("3/15/21"), (Date{3, 15, 2021}));
  EXPECT_EQ(SourceDate(" 12/31/1999 "), (Date{12, 31, 1999}));
  EXPECT_EQ(SourceDate("07041976"), (Date{7, 4, 1976}));
  EXPECT_FALSE(SourceDate(""));
  EXPECT_FALSE(SourceDate("00/00/0000"));
  EXPECT_FALSE(SourceDate("2/30/2024"));
  EXPECT_EQ(Amount("1,250.50"), 1250.5);
  EXPECT_EQ(Amount("-12"), -12);
  EXPECT_EQ(Amount("n/a"), 0);
}

}  // namespace
}  // namespace nv::faswin
