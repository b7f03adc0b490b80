#include "import/bna/bna_source.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace nv {
namespace {

std::vector<std::string> Split(std::string_view line, int file_type) {
  ColumnClass columns(line, file_type);
  std::vector<std::string> out;
  for (int i = 0; i < columns.Count(); ++i) out.emplace_back(*columns.Column(i));
  return out;
}

using Texts = std::vector<std::string>;

TEST(ColumnClass, TabsDropLeadingBlanksAndEnclosingQuotes) {
  EXPECT_EQ(Split("  1001\t\"Desk, oak\"\t x \t", kBnaTabSeparated),
            (Texts{"1001", "Desk, oak", "x "}));
  EXPECT_EQ(Split("a\t\tb", kBnaTabSeparated), (Texts{"a", "", "b"}));
  // A lone quote is a field of one character and stays; "" is an empty field.
  EXPECT_EQ(Split("\"\t\"\"\t\"a", kBnaTabSeparated), (Texts{"\"", "", "\"a"}));
  // Commas mean nothing in a tab file, and any type but 2 splits at tabs.
  EXPECT_EQ(Split("a,b\tc", 0), (Texts{"a,b", "c"}));
  EXPECT_EQ(Split("a,b\tc", 7), (Texts{"a,b", "c"}));
}

TEST(ColumnClass, CommasHonourQuotedFieldsAndDoubledQuotes) {
  EXPECT_EQ(Split("1001, \"Chair, oak\",\"He said \"\"no\"\" twice\",\"\"", kBnaCommaSeparated),
            (Texts{"1001", "Chair, oak", "He said \"no\" twice", ""}));
  // Text after the closing quote stays with the field; an open quote runs to the end.
  EXPECT_EQ(Split("\"ab\"cd,e,\"f,g", kBnaCommaSeparated), (Texts{"abcd", "e", "f,g"}));
  // Still enclosed after the quotes are undone: those go too.
  EXPECT_EQ(Split("\"\"\"x\"\"\"", kBnaCommaSeparated), (Texts{"x"}));
  // Tabs are text in a comma file.
  EXPECT_EQ(Split("a\tb,c", kBnaCommaSeparated), (Texts{"a\tb", "c"}));
}

TEST(ColumnClass, NothingAfterTheLastSeparatorIsNoColumn) {
  EXPECT_EQ(Split("a,b,", kBnaCommaSeparated), (Texts{"a", "b"}));
  EXPECT_EQ(Split("a,,", kBnaCommaSeparated), (Texts{"a", ""}));
  EXPECT_EQ(Split("a,, ", kBnaCommaSeparated), (Texts{"a", "", ""}));
  EXPECT_EQ(Split("a\t", kBnaTabSeparated), (Texts{"a"}));
  ColumnClass none("", kBnaCommaSeparated);
  EXPECT_EQ(none.Count(), 0);
  EXPECT_FALSE(none.Column(0).has_value());
  ColumnClass two("x,y", kBnaCommaSeparated);
  EXPECT_FALSE(two.Column(-1).has_value());
  EXPECT_FALSE(two.Column(2).has_value());
  EXPECT_EQ(two.Column(1), "y");
}

TEST(BnaSourceLines, NumbersCountCommentLines) {
  std::string bytes = "* BNA report\r\n1001\tDesk\r\n\r\n*page 2\n1002\tChair";
  BnaSourceLines lines(bytes);
  std::vector<BnaSourceLine> seen;
  BnaSourceLine line;
  while (lines.Next(&line)) seen.push_back(line);
  ASSERT_EQ(seen.size(), 5u);
  EXPECT_TRUE(seen[0].comment);
  EXPECT_EQ(seen[1].number, 2);  // the first data line, after one comment line
  EXPECT_EQ(seen[1].text, "1001\tDesk");
  EXPECT_FALSE(seen[1].comment);
  EXPECT_EQ(seen[2].text, "");
  EXPECT_FALSE(seen[2].comment);
  EXPECT_TRUE(seen[3].comment);
  EXPECT_EQ(seen[4].number, 5);
  EXPECT_EQ(seen[4].text, "1002\tChair");  // the last line needs no line end

  BnaSourceLines ended("a\n");
  ASSERT_TRUE(ended.Next(&line));
  EXPECT_FALSE(ended.Next(&line));  // a final LF starts no line
}

TEST(MeasureBnaSource, CountsDataLinesColumnsAndWidths) {
  std::string bytes =
      "*comment line that is the longest of all\n"
      "1,Desk,1200\n"
      "22,\"Chair, oak\"\n"
      "\n";
  BnaSourceMeasure m = MeasureBnaSource(bytes, kBnaCommaSeparated);
  EXPECT_EQ(m.data_lines, 3);  // the empty line is a data line with no columns
  EXPECT_EQ(m.columns, 3);
  EXPECT_EQ(m.widths, (std::vector<int32_t>{2, 10, 4}));
  EXPECT_EQ(m.total_width, 2 + 10 + 4 + 3);
  EXPECT_EQ(m.longest_line, 40);

  BnaSourceMeasure empty = MeasureBnaSource("", kBnaTabSeparated);
  EXPECT_EQ(empty.data_lines, 0);
  EXPECT_EQ(empty.columns, 0);
  EXPECT_EQ(empty.total_width, 0);
}

TEST(BnaAmount, ImpliedDecimalsOnlyWithoutAPoint) {
  EXPECT_DOUBLE_EQ(BnaAmount("1234", 2), 12.34);
  EXPECT_DOUBLE_EQ(BnaAmount("-500", 2), -5.0);
  EXPECT_DOUBLE_EQ(BnaAmount("12.5", 3), 12.5);
  EXPECT_DOUBLE_EQ(BnaAmount("1,234", 0), 1234.0);
  EXPECT_DOUBLE_EQ(BnaAmount("1234", -2), 1234.0);
}

TEST(BnaAmount, ParenthesesAreNegativeWhateverTheDecimals) {
  EXPECT_DOUBLE_EQ(BnaAmount("(1,234.50)", 2), -1234.5);
  EXPECT_DOUBLE_EQ(BnaAmount("  (1,234.50)", 0), -1234.5);
  EXPECT_DOUBLE_EQ(BnaAmount("(250)", 1), -25.0);
  EXPECT_DOUBLE_EQ(BnaAmount("", 2), 0.0);
  EXPECT_DOUBLE_EQ(BnaAmount("n/a", 2), 0.0);
  EXPECT_DOUBLE_EQ(BnaAmount("$12", 0), 0.0);
  EXPECT_DOUBLE_EQ(BnaAmount("12abc", 0), 12.0);
}

}  // namespace
}  // namespace nv
