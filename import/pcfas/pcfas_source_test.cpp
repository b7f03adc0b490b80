#include "import/pcfas/pcfas_source.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace nv {
namespace {

// ---- COMPANY1.FAS ---------------------------------------------------------------------

// 256 blanks with texts put at the offsets of the layout.
class HeaderBytes {
 public:
  HeaderBytes() : bytes_(256, ' ') {}
  HeaderBytes& Put(size_t offset, const std::string& text) {
    bytes_.replace(offset, text.size(), text);
    return *this;
  }
  const std::string& bytes() const { return bytes_; }

 private:
  std::string bytes_;
};

TEST(PcFasCompanyTest, ReadsTheNameFlagsAndTheElevenLabelsFromTheirSlots) {
  HeaderBytes h;
  h.Put(0, "Harbor Freight Lines")
      .Put(30, "NOT NAME")  // past the 30 characters of the name
      .Put(43, "Y")
      .Put(44, "ACCOUNT   ")
      .Put(54, "DEPT")
      .Put(64, "VENDOR")
      .Put(74, "SERIAL NUMBR")
      .Put(86, "PO NUMBER")
      .Put(96, "TAG")
      .Put(104, "BLDG")
      .Put(171, "FLOOR")
      .Put(176, "ROOM")
      .Put(183, "INSURER")
      .Put(192, "GL")
      .Put(219, "YNYYN");
  std::optional<PcFasCompany> company = ParsePcFasCompany(h.bytes());
  ASSERT_TRUE(company);
  EXPECT_EQ(company->name, "Harbor Freight Lines");
  EXPECT_TRUE(company->round_dollars);
  const std::vector<std::string> labels(company->labels.begin(), company->labels.end());
  // Items 101 .. 111: A, B (at 104), C, D, E, F, G, H, I, J, K.
  EXPECT_EQ(labels,
            (std::vector<std::string>{"ACCOUNT", "BLDG", "DEPT", "VENDOR", "SERIAL NUMBR",
                                      "PO NUMBER", "TAG", "FLOOR", "ROOM", "INSURER", "GL"}));
  EXPECT_EQ(company->books, (std::array<bool, 5>{true, false, true, true, false}));
}

TEST(PcFasCompanyTest, SlotsEndAtAZeroByteAndNeighboursDoNotRunTogether) {
  HeaderBytes h;
  h.Put(0, std::string("Acme\0garbage", 12)).Put(43, "N").Put(96, "ABCDEFGH").Put(104, "IJKLMNOPQ");
  h.Put(171, "12345").Put(176, "6789012");
  std::optional<PcFasCompany> company = ParsePcFasCompany(h.bytes());
  ASSERT_TRUE(company);
  EXPECT_EQ(company->name, "Acme");
  EXPECT_FALSE(company->round_dollars);
  EXPECT_EQ(company->labels[6], "ABCDEFGH");   // G: 8 bytes at 96
  EXPECT_EQ(company->labels[1], "IJKLMNOPQ");  // B: 9 bytes at 104
  EXPECT_EQ(company->labels[7], "12345");      // H: 5 bytes at 171
  EXPECT_EQ(company->labels[8], "6789012");    // I: 7 bytes at 176
  EXPECT_EQ(company->books, (std::array<bool, 5>{}));
}

TEST(PcFasCompanyTest, FewerThan256BytesCannotBeRead) {
  EXPECT_FALSE(ParsePcFasCompany(std::string(255, 'Y')));
  EXPECT_TRUE(ParsePcFasCompany(std::string(300, 'Y')));
}

// ---- MASTER.ASC -----------------------------------------------------------------------

std::vector<PcFasRecord> ReadAll(std::string_view bytes, size_t chunk) {
  PcFasMasterReader reader = PcFasMasterReader::FromBytes(bytes, chunk);
  std::vector<PcFasRecord> records;
  PcFasRecord record;
  while (reader.Next(&record)) records.push_back(record);
  EXPECT_EQ(reader.offset(), bytes.size());
  return records;
}

using Fields = std::vector<std::string>;

// Every reading is checked with the bytes handed over in pieces of 2, 3 and 7 bytes and
// at once, so that no rule depends on where a piece ends.
void ExpectRecords(std::string_view bytes, const std::vector<Fields>& expected) {
  for (size_t chunk : {2, 3, 7, 4096}) {
    std::vector<PcFasRecord> records = ReadAll(bytes, chunk);
    ASSERT_EQ(records.size(), expected.size()) << "pieces of " << chunk;
    for (size_t i = 0; i < records.size(); ++i) {
      EXPECT_EQ(records[i].fields, expected[i]) << "record " << i << ", pieces of " << chunk;
    }
  }
}

TEST(PcFasMasterReaderTest, SplitsFieldsAtCommasAndRecordsAtLineEnds) {
  ExpectRecords("1,A,,x y\n2, ,z\n", {{"1", "A", "", "x y"}, {"2", " ", "z"}});
  // CR LF as LF; a last line without a line end is a record; an empty line a record of one
  // empty field.
  ExpectRecords("1,A\r\n\r\n2,B", {{"1", "A"}, {""}, {"2", "B"}});
  // A CR that ends no line stays.
  ExpectRecords("a\rb,c\n", {{"a\rb", "c"}});
}

TEST(PcFasMasterReaderTest, QuotedFieldsEndOnlyAtAQuoteBeforeACommaOrLineEnd) {
  ExpectRecords("\"a,b\",\"c\"\n", {{"a,b", "c"}});
  // A quote followed by anything else is a character; inside quotes a line feed and a
  // zero byte are blanks, so a record may run over lines.
  ExpectRecords("\"5\" pipe\",\"two\nlines\",\"nul" + std::string(1, '\0') + "x\"\n9\n",
                {{"5\" pipe", "two lines", "nul x"}, {"9"}});
  // Closed by CR LF and by the end of the file; quotes within an unquoted field stay.
  ExpectRecords("\"a\"\r\nb\"c\",\"d", {{"a"}, {"b\"c\"", "d"}});
  // "" is an empty field; a quote after a comma opens.
  ExpectRecords("\"\",x\n", {{"", "x"}});
}

TEST(PcFasMasterReaderTest, RecordsKnowTheLineTheyBeginOn) {
  std::vector<PcFasRecord> records = ReadAll("a\n\"b\nc\",d\ne\n", 3);
  ASSERT_EQ(records.size(), 3u);
  EXPECT_EQ(records[0].line, 1);
  EXPECT_EQ(records[1].line, 2);
  EXPECT_EQ(records[1].fields, (Fields{"b c", "d"}));
  EXPECT_EQ(records[2].line, 4);
}

TEST(PcFasMasterReaderTest, KeepsOnly120FieldsAndTheNextRecordStartsOnTheNextLine) {
  std::string line;
  for (int i = 0; i < 125; ++i) line += (i ? "," : "") + std::to_string(i);
  // A quoted line feed among the dropped fields does not end the record.
  line += ",\"x\ny\",last\nnext,A\n";
  for (size_t chunk : {2, 4096}) {
    std::vector<PcFasRecord> records = ReadAll(line, chunk);
    ASSERT_EQ(records.size(), 2u);
    ASSERT_EQ(records[0].fields.size(), 120u);
    EXPECT_EQ(records[0].fields[0], "0");
    EXPECT_EQ(records[0].fields[119], "119");
    EXPECT_EQ(records[1].fields, (Fields{"next", "A"}));
    EXPECT_EQ(records[1].line, 3);
  }
}

TEST(PcFasMasterReaderTest, ALongFieldKeepsItsFirstBytes) {
  const std::string long_text(5000, 'x');
  std::vector<PcFasRecord> records = ReadAll(long_text + ",b\n", 4096);
  ASSERT_EQ(records.size(), 1u);
  EXPECT_EQ(records[0].fields[0], std::string(1024, 'x'));
  EXPECT_EQ(records[0].fields[1], "b");
}

TEST(PcFasMasterReaderTest, CtrlZEndsTheFileOnlyWhenNothingFollows) {
  ExpectRecords("1,A\n\x1a\x1a", {{"1", "A"}});
  ExpectRecords("1,A\n\x1a,B\n", {{"1", "A"}, {"\x1a", "B"}});
  ExpectRecords("", {});
}

TEST(PcFasMasterReaderTest, TheFirstRecordsCountChoosesTheLayout) {
  EXPECT_EQ(PcFasLayoutFor(101), PcFasLayout::kShort);
  EXPECT_EQ(PcFasLayoutFor(118), PcFasLayout::kShort);
  EXPECT_EQ(PcFasLayoutFor(119), PcFasLayout::kLong);
  EXPECT_EQ(PcFasLayoutFor(120), PcFasLayout::kLong);
}

}  // namespace
}  // namespace nv
