#include "base/comma_text.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "base/temp_dir_testing.h"

namespace nv {
namespace {

using Fields = std::vector<std::string>;

std::vector<Fields> AllLines(const std::string& text) {
  CommaTextReader reader(text);
  std::vector<Fields> lines;
  while (auto line = reader.ReadLine()) lines.push_back(*line);
  return lines;
}

TEST(CommaTextReaderTest, QuotedAndBareFieldsWithBlanksAroundThem) {
  EXPECT_EQ(AllLines("  \"7.1N\" , \"/inst/ x\",0\r\n\"ALICE\",1\n  BOB ,4\r\n"),
            (std::vector<Fields>{{"7.1N", "/inst/ x", "0"}, {"ALICE", "1"}, {"BOB ", "4"}}));
  // A comma inside quotes belongs to the text; junk after the closing quote is skipped.
  EXPECT_EQ(AllLines("\"a,b\"xyz,c\n"), (std::vector<Fields>{{"a,b", "c"}}));
  // Empty fields, a blank line, a lone carriage return kept as text.
  EXPECT_EQ(AllLines(",\"\",\n\nx\ry\n"), (std::vector<Fields>{{"", "", ""}, {""}, {"x\ry"}}));
}

TEST(CommaTextReaderTest, ByteTwentySixOrEndOfDataEndsTheFile) {
  EXPECT_EQ(AllLines("a,b\x1a"
                     "c,d\n"),
            (std::vector<Fields>{{"a", "b"}}));
  EXPECT_EQ(AllLines("\"open quote\n\"next\",1"),
            (std::vector<Fields>{{"open quote"}, {"next", "1"}}));
  EXPECT_EQ(AllLines("\"unterminated"), (std::vector<Fields>{{"unterminated"}}));
  EXPECT_TRUE(AllLines("").empty());
  EXPECT_TRUE(AllLines("   \x1a\"x\"").empty());
}

TEST(CommaTextReaderTest, LineEndAfterAField) {
  CommaTextReader reader("\"a\",\"b\",\"c\"\r\n\"d\",\"e\",\"f\",\"g\"\n\"h\"");
  for (const char* expected : {"a", "b"}) {
    EXPECT_EQ(reader.ReadField(), expected);
    EXPECT_FALSE(reader.line_ended());
  }
  EXPECT_EQ(reader.ReadField(), "c");
  EXPECT_TRUE(reader.line_ended());
  reader.ReadField();
  reader.ReadField();
  EXPECT_EQ(reader.ReadField(), "f");
  EXPECT_FALSE(reader.line_ended());  // a fourth field follows
  reader.SkipRestOfLine();
  EXPECT_EQ(reader.ReadField(), "h");
  EXPECT_TRUE(reader.line_ended());  // end of data ends the line too
  EXPECT_TRUE(reader.at_end());
  EXPECT_EQ(reader.ReadField(), std::nullopt);
}

TEST(CommaTextReaderTest, OverlongFieldKeepsItsFirstHundredCharacters) {
  const std::string long_text(150, 'x');
  EXPECT_EQ(AllLines(long_text + ",y\n\"" + long_text + "\",z\n"),
            (std::vector<Fields>{{std::string(100, 'x'), "y"}, {std::string(100, 'x'), "z"}}));
}

TEST(CommaTextWriterTest, QuotedTextsBareNumbersPaddingAndCrLf) {
  CommaTextWriter writer;
  writer.Text("7.1A");
  writer.Text("/inst/");
  writer.Bare("3B");
  writer.EndLine();
  writer.Number(-42);
  writer.Text("say \"hi\"\n");
  writer.EndLine(20);
  writer.Text("this line is longer than the column");
  writer.EndLine(5);
  EXPECT_EQ(writer.text(),
            "\"7.1A\",\"/inst/\",3B\r\n"
            "-42,\"say 'hi' \"     \r\n"
            "\"this line is longer than the column\"\r\n");
  // What the writer produces reads back field for field.
  EXPECT_EQ(AllLines(writer.text()),
            (std::vector<Fields>{{"7.1A", "/inst/", "3B"},
                                 {"-42", "say 'hi' "},
                                 {"this line is longer than the column"}}));
}

TEST(CommaTextFilesTest, OpenWriteAndFindIgnoringCase) {
  TempDir dir;
  const std::string folder = dir.path() + "/";
  EXPECT_EQ(CommaTextReader::Open(folder + "missing"), std::nullopt);
  std::ofstream(folder + "term.1", std::ios::binary) << "\"x\"\r\n";
  EXPECT_EQ(PathIgnoringCase(folder, "TERM.1"), folder + "term.1");
  EXPECT_EQ(PathIgnoringCase(folder, "TERM.2"), folder + "TERM.2");
  auto reader = CommaTextReader::Open(PathIgnoringCase(folder, "TERM.1"));
  ASSERT_TRUE(reader.has_value());
  EXPECT_EQ(reader->ReadField(), "x");
}

}  // namespace
}  // namespace nv
