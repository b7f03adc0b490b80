#include "import/fas1000/fas1000_source.h"

#include <gtest/gtest.h>

#include <fstream>

#include "base/temp_dir_testing.h"
#include "import/fas1000/fas1000_testing.h"

namespace nv::fas1000 {
namespace {

using testing::CmpSetup;
using testing::ColumnLine;
using testing::CompanySaf;
using testing::Key;

std::vector<std::string> AllLines(LineSource& source) {
  std::vector<std::string> lines;
  std::string_view line;
  while (source.Next(&line)) lines.emplace_back(line);
  return lines;
}

TEST(Fas1000HeadersTest, CompanyAndSetupAreReadFromTheirOffsetsAndRefusedWhenShort) {
  std::string saf = CompanySaf("Acme Tools", true);
  std::optional<CompanyHeader> header = ParseCompanyHeader(saf);
  ASSERT_TRUE(header);
  EXPECT_EQ(header->name, "Acme Tools");
  EXPECT_TRUE(header->round_dollars);

  // A name of all 30 bytes ends at byte 45, whatever byte 46 holds.
  saf = CompanySaf(std::string(30, 'N'), false);
  saf[46] = 'Z';
  header = ParseCompanyHeader(saf);
  ASSERT_TRUE(header);
  EXPECT_EQ(header->name, std::string(30, 'N'));
  EXPECT_FALSE(header->round_dollars);
  EXPECT_FALSE(ParseCompanyHeader(CompanySaf("Acme", false, 124)));

  std::optional<BooksUsed> books = ParseBookSetup(CmpSetup(true, false, true, false, true));
  ASSERT_TRUE(books);
  EXPECT_EQ(*books,
            (BooksUsed{.irs = true, .internal = false, .state = true, .amt = false, .ace = true}));
  books = ParseBookSetup(CmpSetup(false, true, false, true, false));
  ASSERT_TRUE(books);
  EXPECT_EQ(*books,
            (BooksUsed{.irs = false, .internal = true, .state = false, .amt = true, .ace = false}));
  EXPECT_FALSE(ParseBookSetup(CmpSetup(true, true, true, true, true, 395)));
}

TEST(Fas1000ColumnsTest, NumbersAndDatesReadAsTheOldConversionsDid) {
  const std::string line = ColumnLine()
                               .At(0, "   1234.56")
                               .At(10, "-12.5abc")
                               .At(20, "nan")
                               .At(25, "+7")
                               .At(30, "  39")
                               .At(34, "1a")
                               .At(36, "99999999999")
                               .At(50, "013124")
                               .At(56, "123199")
                               .At(62, "023024")
                               .At(68, "000000")
                               .At(74, "12 124")
                               .At(80, "0131");
  EXPECT_DOUBLE_EQ(ColumnAmount(line, {0, 10}), 1234.56);
  EXPECT_DOUBLE_EQ(ColumnAmount(line, {10, 8}), -12.5);
  EXPECT_EQ(ColumnAmount(line, {20, 3}), 0) << "not a number";
  EXPECT_EQ(ColumnAmount(line, {25, 2}), 7);
  EXPECT_EQ(ColumnAmount(line, {500, 15}), 0) << "past the end of the line";
  // The column's width bounds the number: "1234.5" of "1234.56".
  EXPECT_DOUBLE_EQ(ColumnAmount(line, {0, 9}), 1234.5);

  EXPECT_EQ(ColumnInteger(line, {30, 4}), 39);
  EXPECT_EQ(ColumnInteger(line, {34, 2}), 1);
  EXPECT_EQ(ColumnInteger(line, {36, 11}), 999'999'999) << "held, not overflowed";

  EXPECT_EQ(ColumnDate(line, {50, 6}), (Date{1, 31, 2024}));
  EXPECT_EQ(ColumnDate(line, {56, 6}), (Date{12, 31, 1999}));
  EXPECT_TRUE(ColumnDate(line, {62, 6}).empty()) << "30 February";
  EXPECT_TRUE(ColumnDate(line, {68, 6}).empty());
  EXPECT_TRUE(ColumnDate(line, {74, 6}).empty());
  EXPECT_TRUE(ColumnDate(line, {80, 6}).empty()) << "cut short by the end of the line";

  EXPECT_EQ(ColumnText(line, {80, 10}), "0131");
  EXPECT_EQ(ColumnChar(line, 84), ' ');
}

TEST(Fas1000LineSourceTest, LinesEndAtLineFeedsAndAreCutAt750) {
  const std::string bytes = "one\r\ntwo\n\nthree";
  LineSource source(bytes);
  EXPECT_EQ(AllLines(source), (std::vector<std::string>{"one", "two", "", "three"}));
  EXPECT_EQ(source.consumed(), bytes.size());

  const std::string long_lines = std::string(800, 'x') + "\r\nnext\n" + std::string(750, 'y') +
                                 "\r\n" + std::string(751, 'z') + "\n";
  LineSource cut(long_lines);
  EXPECT_EQ(AllLines(cut),
            (std::vector<std::string>{std::string(750, 'x'), "next", std::string(750, 'y'),
                                      std::string(750, 'z')}));
}

TEST(Fas1000LineSourceTest, AFileReadInPiecesGivesTheSameLinesAsItsBytes) {
  TempDir dir;
  std::string bytes;
  for (int i = 0; i < 3000; ++i) {
    bytes += std::string(static_cast<size_t>(i % 97), static_cast<char>('a' + i % 26));
    bytes += i % 3 == 0 ? "\r\n" : "\n";
  }
  bytes += std::string(900, 'q');  // a last line without a line end, longer than kept
  std::ofstream(dir.File("assetgen.asc"), std::ios::binary) << bytes;

  std::optional<LineSource> file = LineSource::Open(dir.File("assetgen.asc"));
  ASSERT_TRUE(file);
  EXPECT_EQ(file->size(), bytes.size());
  LineSource memory(bytes);
  const std::vector<std::string> expected = AllLines(memory);
  ASSERT_EQ(expected.size(), 3001u);
  EXPECT_EQ(AllLines(*file), expected);
  EXPECT_EQ(file->consumed(), bytes.size());
  EXPECT_FALSE(LineSource::Open(dir.File("missing.asc")));
}

TEST(Fas1000FieldsTest, EachLineKindReadsItsColumns) {
  const std::string gen = ColumnLine()
                              .At(0, Key("123.01"))
                              .At(11, "CO-77")
                              .At(24, "A")
                              .At(26, "R")
                              .At(28, "BL")
                              .At(31, "0700")
                              .At(36, "C")
                              .At(61, "250.00")
                              .At(77, "Warehouse roof")
                              .At(190, "063023")
                              .At(197, "S")
                              .At(199, "5000")
                              .At(215, "250.5")
                              .At(231, "100");
  const GeneralLine g = ParseGeneralLine(gen);
  EXPECT_EQ(g.key, "    123.01");
  EXPECT_EQ(g.meter_text, "    123.0");
  EXPECT_EQ(g.company_asset_no, "CO-77       ");
  EXPECT_EQ(g.status, 'A');
  EXPECT_EQ(g.property_type, 'R');
  EXPECT_EQ(g.category, "BL");
  EXPECT_EQ(g.class_life, "0700");
  EXPECT_EQ(g.credit_code, 'C');
  EXPECT_EQ(g.credit_amount, 250);
  EXPECT_EQ(g.description, "Warehouse roof" + std::string(16, ' '));
  EXPECT_TRUE(g.disposed);
  EXPECT_EQ(g.disposal_date, (Date{6, 30, 2023}));
  EXPECT_EQ(g.disposal_method, 'S');
  EXPECT_EQ(g.cash_proceeds, 5000);
  EXPECT_EQ(g.other_proceeds, 250.5);
  EXPECT_EQ(g.expense_of_sale, 100);
  EXPECT_FALSE(ParseGeneralLine(ColumnLine().At(0, Key("1")).At(24, "A").str()).disposed);

  const std::string book = ColumnLine()
                               .At(0, Key("7"))
                               .At(11, "3")
                               .At(13, "011524")
                               .At(20, "12000.50")
                               .At(36, "DH")
                               .At(39, "125")
                               .At(43, "0706")
                               .At(84, "1000")
                               .At(102, "S")
                               .At(270, "3500.25")
                               .At(371, "M");
  const BookLine b = ParseBookLine(book);
  EXPECT_EQ(b.key, Key("7"));
  EXPECT_EQ(b.digit, '3');
  EXPECT_EQ(b.acquired, (Date{1, 15, 2024}));
  EXPECT_EQ(b.cost, 12000.5);
  EXPECT_EQ(b.method, "DH");
  EXPECT_EQ(b.percent, 125);
  EXPECT_EQ(b.life_years, 7);
  EXPECT_EQ(b.life_months, 6);
  EXPECT_EQ(b.sec179, 1000);
  EXPECT_TRUE(b.switch_to_sl);
  EXPECT_EQ(b.accumulated, 3500.25);
  EXPECT_TRUE(b.mid_quarter);
  const BookLine short_book = ParseBookLine(ColumnLine().At(0, Key("7")).At(11, "0").str());
  EXPECT_FALSE(short_book.switch_to_sl);
  EXPECT_FALSE(short_book.mid_quarter);
  EXPECT_EQ(short_book.method, "");

  ColumnLine label;
  label.At(0, Key("7"))
      .At(11, "1500-200-ABC")
      .At(79, "  Plant 4 North  X")
      .At(126, "PO-9")
      .At(139, "SN123")
      .At(160, "Acme")
      .At(186, "123125");
  for (int i = 0; i < 5; ++i)
    label.At(193 + 21 * static_cast<size_t>(i), "user " + std::to_string(i + 1));
  const LabelLine l = ParseLabelLine(label.str());
  EXPECT_EQ(l.key, Key("7"));
  EXPECT_EQ(l.gl_code, "1500-200-ABC" + std::string(15, ' '));
  EXPECT_EQ(l.custodian, "  Plant 4 North  X  ");
  EXPECT_EQ(l.location, "Plant 4 No") << "columns 79-90, trimmed, 10 at most";
  EXPECT_EQ(l.po_number, "PO-9        ");
  EXPECT_EQ(l.serial, "SN123" + std::string(15, ' '));
  EXPECT_EQ(l.vendor, "Acme" + std::string(16, ' '));
  EXPECT_EQ(l.warranty, "123125");
  EXPECT_EQ(l.user_fields[0], "user 1" + std::string(14, ' '));
  EXPECT_EQ(l.user_fields[4], "user 5");

  const ListedLine listed =
      ParseListedLine(ColumnLine().At(0, Key("7")).At(12, "3").At(22, " 65").str());
  EXPECT_EQ(listed.digit, '3');
  EXPECT_EQ(listed.percent, 65);
}

// Four files whose keys meet in every way the merge must handle.
class Fas1000MergeTest : public ::testing::Test {
 protected:
  static std::string Gen(std::string_view number, char status = 'A') {
    return ColumnLine().At(0, Key(number)).At(24, std::string(1, status)).str() + "\r\n";
  }
  static std::string Book(std::string_view number, char digit) {
    return ColumnLine().At(0, Key(number)).At(11, std::string(1, digit)).At(20, "100").str() +
           "\r\n";
  }
  static std::string Label(std::string_view number, std::string_view gl) {
    return ColumnLine().At(0, Key(number)).At(11, gl).str() + "\n";
  }
  static std::string Listed(std::string_view number, char digit, std::string_view percent) {
    return ColumnLine().At(0, Key(number)).At(12, std::string(1, digit)).At(22, percent).str() +
           "\n";
  }

  Fas1000MergeTest() {
    assetgen_ = Gen("100") + Gen("200", 'D') + "short line\r\n" + Gen("300") + Gen("250") +
                Gen("300") + Gen("400");
    bookdata_ = Book("100", '0') + Book("100", '3') + Book("150", '0') + Book("200", '0') +
                Book("300", '0') + Book("300", '1') + Book("120", '0') + Book("400", '0') +
                Book("500", '0') + "   x\r\n";
    labels_ = Label("100", "GL-1") + Label("100", "GL-1b") + Label("400", "GL-4");
    listed_ = Listed("100", '0', "60") + Listed("100", '1', "70") + Listed("100", '3', "80") +
              Listed("300", '1', "50");
  }

  std::string assetgen_, bookdata_, labels_, listed_;
};

TEST_F(Fas1000MergeTest, EachAssetTakesTheLinesOfItsKeyAndEveryOtherLineIsToldWhy) {
  FasSourceReader reader{LineSource(assetgen_), LineSource(bookdata_), LineSource(labels_),
                         LineSource(listed_)};
  std::vector<PassedOverLine> passed;
  auto take = [&] {
    for (PassedOverLine& line : reader.TakePassedOver()) passed.push_back(std::move(line));
  };

  FasAsset asset;
  ASSERT_TRUE(reader.Next(&asset));
  take();
  EXPECT_EQ(asset.general.key, Key("100"));
  EXPECT_EQ(asset.general.line, 1);
  ASSERT_TRUE(asset.label);
  EXPECT_EQ(asset.label->line, 1);
  EXPECT_EQ(asset.label->gl_code.substr(0, 4), "GL-1");
  ASSERT_EQ(asset.books.size(), 2u);
  EXPECT_EQ(asset.books[0].digit, '0');
  EXPECT_EQ(asset.books[0].business_percent, 60);
  EXPECT_EQ(asset.books[1].digit, '3');
  EXPECT_EQ(asset.books[1].business_percent, 80);
  EXPECT_EQ(asset.books[1].line, 2);

  ASSERT_TRUE(reader.Next(&asset));
  take();
  EXPECT_EQ(asset.general.key, Key("300"));
  EXPECT_EQ(asset.general.line, 4);
  EXPECT_FALSE(asset.label) << "no label line has its key";
  ASSERT_EQ(asset.books.size(), 2u);
  EXPECT_EQ(asset.books[0].business_percent, std::nullopt);
  EXPECT_EQ(asset.books[1].business_percent, 50);

  ASSERT_TRUE(reader.Next(&asset));
  take();
  EXPECT_EQ(asset.general.key, Key("400"));
  EXPECT_EQ(asset.general.line, 7);
  ASSERT_TRUE(asset.label);
  EXPECT_EQ(asset.label->line, 3);
  ASSERT_EQ(asset.books.size(), 1u);
  EXPECT_EQ(asset.books[0].line, 8);

  EXPECT_FALSE(reader.Next(&asset));
  take();
  EXPECT_FALSE(reader.Next(&asset)) << "and stays at its end";
  EXPECT_TRUE(reader.TakePassedOver().empty()) << "the rest is told once";

  struct Expected {
    SourceFile file;
    long line;
    std::string key;
    std::string reason;
  };
  const Expected expected[] = {
      {SourceFile::kListed, 2, Key("100"), "no book line of this asset has book digit \"1\""},
      {SourceFile::kAssetGen, 2, Key("200"), "status \"D\" in column 24, not \"A\""},
      {SourceFile::kAssetGen, 3, "short line", "the line is shorter than 25 characters"},
      {SourceFile::kLabels, 2, Key("100"), "another line of this asset in lablinfo.asc came first"},
      {SourceFile::kBookData, 3, Key("150"), "no line in assetgen.asc has this key"},
      {SourceFile::kBookData, 4, Key("200"), "the asset's line in assetgen.asc was passed over"},
      {SourceFile::kAssetGen, 5, Key("250"), "out of key order in assetgen.asc"},
      {SourceFile::kAssetGen, 6, Key("300"), "the line before has the same key"},
      {SourceFile::kBookData, 7, Key("120"), "out of key order in bookdata.asc"},
      {SourceFile::kBookData, 9, Key("500"), "no line in assetgen.asc has this key"},
      {SourceFile::kBookData, 10, "   x", "the line is shorter than 12 characters"},
  };
  ASSERT_EQ(passed.size(), std::size(expected));
  for (size_t i = 0; i < passed.size(); ++i) {
    SCOPED_TRACE(i);
    EXPECT_EQ(passed[i].file, expected[i].file);
    EXPECT_EQ(passed[i].line, expected[i].line);
    EXPECT_EQ(passed[i].key, expected[i].key);
    EXPECT_EQ(passed[i].reason, expected[i].reason);
  }
}

TEST_F(Fas1000MergeTest, WithoutTheOptionalFilesAssetsHaveNoLabelsOrPercentages) {
  FasSourceReader reader{LineSource(assetgen_), LineSource(bookdata_), LineSource(), LineSource()};
  FasAsset asset;
  int assets = 0;
  while (reader.Next(&asset)) {
    ++assets;
    EXPECT_FALSE(asset.label);
    for (const BookLine& book : asset.books) EXPECT_EQ(book.business_percent, std::nullopt);
  }
  EXPECT_EQ(assets, 3);
}

TEST(Fas1000MergeEdgeTest, LinesThatAreNotTextArePassedOverWithoutStoppingTheRest) {
  const std::string assetgen = std::string("\x01") + std::string(30, 'A') + "\n\n" +
                               ColumnLine().At(0, Key("9")).At(24, "A").str();
  const std::string labels = std::string("\x02") + std::string(20, 'x') + "\n" +
                             ColumnLine().At(0, Key("9")).At(11, "GL").str();
  FasSourceReader reader{LineSource(assetgen), LineSource(""), LineSource(labels), LineSource()};
  FasAsset asset;
  ASSERT_TRUE(reader.Next(&asset));
  EXPECT_EQ(asset.general.line, 3);
  EXPECT_TRUE(asset.label);
  EXPECT_TRUE(asset.books.empty());
  const std::vector<PassedOverLine> passed = reader.TakePassedOver();
  ASSERT_EQ(passed.size(), 3u);
  for (const PassedOverLine& line : passed) {
    EXPECT_EQ(line.reason, "the line does not begin with a printable character");
  }
  EXPECT_FALSE(reader.Next(&asset));
}

}  // namespace
}  // namespace nv::fas1000
