#include "tools/barcode_command.h"

#include <gtest/gtest.h>

#include <climits>
#include <sstream>
#include <string>
#include <vector>

#include "base/file_util.h"
#include "base/temp_dir_testing.h"
#include "tools/gray_bitmap.h"
#include "tools/nvtool_commands.h"

namespace nv {
namespace {

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
  image.FillRect(1, 1, 1, -4, 0);
  EXPECT_EQ(image.at(3, 0), 76);
  EXPECT_EQ(Row(image, 0), "....");
  EXPECT_EQ(Row(image, 1), "#...");
  EXPECT_EQ(Row(image, 2), "#...");
  EXPECT_EQ(GrayOf(0x0000FF), 29);  // 255 x 0.114 = 29.07
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
  const std::string png = ReadFileBytes(file).value_or("");
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
           {"barcode", "A", file, "--module", "21"},
           {"barcode", "A", file, "--height", "5x"},
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
  const ToolRun unwritable = Nvtool({"barcode", "A", dir.File("no/such/folder.png")});
  EXPECT_EQ(unwritable.status, 1);
  EXPECT_EQ(unwritable.err, "nvtool: cannot write " + dir.File("no/such/folder.png") + "\n");
}

}  // namespace
}  // namespace nv
