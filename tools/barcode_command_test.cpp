#include "tools/barcode_command.h"

#include <gtest/gtest.h>

#include <climits>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "base/temp_dir_testing.h"
#include "tools/gray_bitmap.h"
#include "tools/nvtool_commands.h"

namespace nv {
namespace {

std::string ReadFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream bytes;
  bytes << in.rdbuf();
  return bytes.str();
}

// Row y of the image as '#' for black and '.' for white.
std::string Row(const GrayBitmap& image, int y) {
  std::string row;
  for (int x = 0; x < image.width(); ++x) row += image.at(x, y) == 0 ? '#' : '.';
  return row;
}

TEST(GrayBitmap, FillsOnlyWhatLiesOnTheImage) {
  GrayBitmap image(4, 3);
  image.FillRect(-2, 1, 3, 5, 0x000000);  // columns 0, rows 1 and 2
  image.FillRect(3, -1, 9, 2, 0xFF0000);  // column 3, row 0: red is gray 76
  image.FillRect(LLONG_MAX, 0, LLONG_MAX, 1, 0);
  image.FillRect(LLONG_MIN, LLONG_MIN, LLONG_MAX, LLONG_MAX, 0);
  image.FillRect(1, 1, 0, 1, 0);
  image.FillRect(1, 1, 1, -4, 0);
  EXPECT_EQ(image.at(3, 0), 76);
  EXPECT_EQ(Row(image, 0), "....");
  EXPECT_EQ(Row(image, 1), "#...");
  EXPECT_EQ(Row(image, 2), "#...");
  EXPECT_EQ(GrayOf(0xFFFFFF), 255);
  EXPECT_EQ(GrayOf(0x0000FF), 29);  // 255 x 0.114 = 29.07

  GrayBitmap none(-5, 10);
  none.FillRect(0, 0, 10, 10, 0);
  EXPECT_TRUE(none.pixels().empty());
}

TEST(Code128Label, SymbolSitsBetweenItsQuietZones) {
  // "A" at 1 pixel a module: 65 wide, the start bar after 10 white, Stop's final bar ending
  // at column 55, nine white after it.
  const GrayBitmap image = Code128Label("A", 1, 3);
  ASSERT_EQ(image.width(), 65);
  const std::string start_b = "##.#..#....";
  const std::string stop = "##...###.#.##";
  const std::string row = Row(image, 0);
  EXPECT_EQ(row.substr(0, 10), std::string(10, '.'));
  EXPECT_EQ(row.substr(10, 11), start_b);
  EXPECT_EQ(row.substr(43, 13), stop);
  EXPECT_EQ(row.substr(56), std::string(9, '.'));
  EXPECT_EQ(Row(image, 2), row);

  const GrayBitmap wide = Code128Label("A", 3, 1);
  EXPECT_EQ(Row(wide, 0).substr(30, 9), "######...");
}

struct ToolRun {
  int status;
  std::string out, err;
};

ToolRun Nvtool(const std::vector<std::string>& args) {
  std::ostringstream out, err;
  const int status = RunNvtool(args, out, err);
  return {status, out.str(), err.str()};
}

TEST(BarcodeCommand, WritesAPngLabelOfTheText) {
  TempDir dir;
  const std::string file = dir.File("label.png");
  const ToolRun run = Nvtool({"barcode", "A-1", file});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out, "wrote " + file + " (174 x 60 pixels)\n");  // (33 + 54) x 2
  const std::string png = ReadFile(file);
  ASSERT_GT(png.size(), 33u);
  EXPECT_EQ(png.substr(1, 3), "PNG");
  EXPECT_EQ(png.substr(16, 8), std::string("\0\0\0\xae\0\0\0\x3c", 8));  // 174, 60

  const ToolRun sized = Nvtool({"barcode", "A\tB", file, "--height", "7", "--module", "1"});
  ASSERT_EQ(sized.status, 0) << sized.err;
  EXPECT_EQ(sized.out,
            "wrote " + file + " (87 x 7 pixels); characters left out (outside 32 to 126): 1\n");
}

TEST(BarcodeCommand, RefusesWhatItCannotDraw) {
  TempDir dir;
  const std::string file = dir.File("label.png");
  for (const std::vector<std::string>& args : std::vector<std::vector<std::string>>{
           {"barcode"},
           {"barcode", "A"},
           {"barcode", "A", file, "--module"},
           {"barcode", "A", file, "--width", "3"},
           {"barcode", "A", file, "--module", "0"},
           {"barcode", "A", file, "--module", "21"},
           {"barcode", "A", file, "--height", "1001"},
           {"barcode", "A", file, "--height", "5x"},
           {"barcode", "A", file, "--height", "-3"},
       }) {
    const ToolRun run = Nvtool(args);
    EXPECT_EQ(run.status, 2) << args.size();
    EXPECT_NE(run.err.find("usage: nvtool"), std::string::npos);
  }
  const ToolRun empty = Nvtool({"barcode", "", file});
  EXPECT_EQ(empty.status, 1);
  EXPECT_EQ(empty.err,
            "nvtool: barcode: the text has no character a barcode carries (32 to 126)\n");
  EXPECT_EQ(Nvtool({"barcode", "\x01\x7f\xff", file}).status, 1);
  EXPECT_EQ(Nvtool({"barcode", std::string(101, 'X'), file}).status, 1);
  EXPECT_EQ(Nvtool({"barcode", std::string(100, 'X'), file}).status, 0);
  const ToolRun unwritable = Nvtool({"barcode", "A", dir.File("no/such/folder.png")});
  EXPECT_EQ(unwritable.status, 1);
  EXPECT_EQ(unwritable.err, "nvtool: cannot write " + dir.File("no/such/folder.png") + "\n");
}

}  // namespace
}  // namespace nv
