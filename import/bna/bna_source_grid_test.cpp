#include "import/bna/bna_source_grid.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/file_util.h"
#include "base/temp_dir_testing.h"

namespace nv {
namespace {

// Two comment lines among three data lines; the widest columns are 4, 10 and 3.
constexpr char kReport[] =
    "* Asset report\r\n"
    "1001\tDesk\t500\r\n"
    "*page 2\r\n"
    "1002\tChair, oak\r\n"
    "  1003\t\"Lamp\"\t20\t\r\n";

TEST(BnaSourceGrid, MeasuresDataLinesAndNumbersEveryLine) {
  BnaSourceGrid grid;
  grid.SetSource(kReport, kBnaTabSeparated);
  EXPECT_EQ(grid.line_count(), 5);
  EXPECT_EQ(grid.comment_lines(), 2);
  EXPECT_EQ(grid.measure().data_lines, 3);
  EXPECT_EQ(grid.measure().widths, (std::vector<int32_t>{4, 10, 3}));
  EXPECT_EQ(grid.measure().total_width, 4 + 1 + 10 + 1 + 3 + 1);

  std::vector<BnaGridLine> shown = grid.ShownLines();
  ASSERT_EQ(shown.size(), 4u);
  EXPECT_EQ(shown[0].number, 1);
  EXPECT_TRUE(shown[0].comment);
  EXPECT_TRUE(shown[0].columns.empty());
  EXPECT_EQ(shown[0].text, "* Asset report");
  EXPECT_EQ(shown[1].columns, (std::vector<std::string>{"1001", "Desk", "500"}));
  EXPECT_EQ(shown[3].number, 4);

  // The range covers the data lines; the lines shown are the file's from the position.
  EXPECT_EQ(grid.VerticalMaximum(), 2);
  grid.SetVerticalPosition(99);
  EXPECT_EQ(grid.vertical_position(), 2);
  shown = grid.ShownLines();
  ASSERT_EQ(shown.size(), 3u);
  EXPECT_EQ(shown[0].number, 3);
  EXPECT_EQ(shown[2].columns, (std::vector<std::string>{"1003", "Lamp", "20"}));
}

TEST(BnaSourceGrid, FileTypeDecidesTheColumns) {
  BnaSourceGrid grid;
  grid.SetSource("1001,\"Desk, oak\",500\n", kBnaCommaSeparated);
  EXPECT_EQ(grid.measure().columns, 3);
  EXPECT_EQ(grid.ShownLines()[0].columns[1], "Desk, oak");
  grid.SetSource("1001,\"Desk, oak\",500\n", kBnaTabSeparated);
  EXPECT_EQ(grid.measure().columns, 1);
}

TEST(BnaSourceGrid, ColumnUnderACellCountsTheRuleAndTheScroll) {
  BnaSourceGrid grid;
  grid.SetSource(kReport, kBnaTabSeparated);
  // Cells 0-3 column A, 4 its rule; 5-14 B, 15 rule; 16-18 C, 19 rule.
  EXPECT_EQ(grid.ColumnAt(0), 0);
  EXPECT_EQ(grid.ColumnAt(4), 0);
  EXPECT_EQ(grid.ColumnAt(5), 1);
  EXPECT_EQ(grid.ColumnAt(15), 1);
  EXPECT_EQ(grid.ColumnAt(16), 2);
  EXPECT_EQ(grid.ColumnAt(19), 2);
  EXPECT_EQ(grid.ColumnAt(20), std::nullopt);
  EXPECT_EQ(grid.ColumnAt(-1), std::nullopt);
  EXPECT_EQ(grid.ColumnStart(2), 16);
  EXPECT_EQ(grid.ColumnStart(3), -1);

  // 8 cells fit: the grid scrolls 12 cells at most, and cell 0 then lies in column C.
  EXPECT_EQ(grid.HorizontalMaximum(8), 12);
  EXPECT_EQ(grid.HorizontalMaximum(40), 0);
  grid.SetHorizontalPosition(50, 8);
  EXPECT_EQ(grid.horizontal_position(), 12);
  EXPECT_EQ(grid.ColumnAt(0), 1);
  EXPECT_EQ(grid.ColumnAt(4), 2);
  EXPECT_EQ(grid.ColumnAt(8), std::nullopt);
}

TEST(BnaSourceGrid, LoadingAgainStartsAtTheTopAndNoFileIsEmpty) {
  TempDir dir;
  const std::string path = dir.File("report.txt");
  ASSERT_TRUE(WriteFileAtomically(path, kReport));
  BnaSourceGrid grid;
  EXPECT_TRUE(grid.Load(path, kBnaTabSeparated));
  grid.SetVerticalPosition(2);
  grid.SetHorizontalPosition(3, 1);
  EXPECT_TRUE(grid.Load(path, kBnaCommaSeparated));
  EXPECT_EQ(grid.vertical_position(), 0);
  EXPECT_EQ(grid.horizontal_position(), 0);
  EXPECT_EQ(grid.file_type(), kBnaCommaSeparated);

  EXPECT_FALSE(grid.Load(dir.File("missing.txt"), kBnaTabSeparated));
  EXPECT_TRUE(grid.empty());
  EXPECT_TRUE(grid.Load(std::nullopt, kBnaTabSeparated));
  EXPECT_TRUE(grid.ShownLines().empty());
  EXPECT_EQ(grid.ColumnAt(0), std::nullopt);
  EXPECT_EQ(grid.VerticalMaximum(), 0);
}

}  // namespace
}  // namespace nv
