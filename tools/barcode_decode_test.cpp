// Labels read back by an independent decoder: zbarimg of Debian's zbar-tools, which
// scripts/setup.sh installs. Without it the tests are skipped and say so.
#include <stdio.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "base/temp_dir_testing.h"
#include "store/asset/asset_no.h"
#include "tools/nvtool_commands.h"

namespace nv {
namespace {

bool HaveZbarimg() {
  return std::system("command -v zbarimg >/dev/null 2>&1") == 0;
}

constexpr char kNoZbar[] =
    "zbarimg not found on PATH: install Debian's zbar-tools (scripts/setup.sh does) to decode "
    "the labels";

// Draws text with nvtool barcode and expects zbarimg to find exactly it, as Code 128.
void ExpectReadBack(const TempDir& dir, const std::string& text, std::vector<std::string> options) {
  const std::string file = dir.File("label.png");
  std::vector<std::string> args = {"barcode", text, file};
  args.insert(args.end(), options.begin(), options.end());
  std::ostringstream out, err;
  ASSERT_EQ(RunNvtool(args, out, err), 0) << err.str();
  const std::string command =
      "zbarimg --quiet --raw -Sdisable -Scode128.enable '" + file + "' 2>/dev/null";
  FILE* pipe = ::popen(command.c_str(), "r");
  ASSERT_NE(pipe, nullptr);
  std::string read;
  char buffer[256];
  for (size_t got; (got = fread(buffer, 1, sizeof buffer, pipe)) > 0;) read.append(buffer, got);
  EXPECT_EQ(::pclose(pipe), 0) << "'" << text << "' not found";
  EXPECT_EQ(read, text + "\n") << options[1] << " pixels a module";
}

// An asset number in its text form under a random format (main part right-aligned, "."
// and the zero-padded subasset), as the asset selection receives it from a scanner.
std::string RandomAssetNumber(std::mt19937& random) {
  auto pick = [&](int low, int high) { return std::uniform_int_distribution(low, high)(random); };
  for (;;) {
    NvAssetNoFormat format;
    format.main_length = pick(1, NvAssetNoFormat::kMaxMainLength);
    format.subasset_length = pick(1, NvAssetNoFormat::kMaxSubassetLength);
    format.flags = pick(0, NvAssetNoFormat::kLetters | NvAssetNoFormat::kDashes);
    std::string allowed = "0123456789";
    if (format.letters()) allowed += "ABCDEFGHIJKLMNOPQRSTUVWXYZ";
    if (format.dashes()) allowed += "-";
    std::string entry;
    for (int i = pick(1, format.main_length); i > 0; --i) {
      entry += allowed[static_cast<size_t>(pick(0, static_cast<int>(allowed.size()) - 1))];
    }
    entry += "." + std::to_string(pick(0, 9));
    const NvAssetNo number = NvAssetNo::Parse(entry, format);
    if (number.valid()) return number.Text();
  }
}

TEST(BarcodeDecode, RandomAssetNumbersReadBackExactly) {
  if (!HaveZbarimg()) GTEST_SKIP() << kNoZbar;
  TempDir dir;
  std::mt19937 random(20261124);
  // A module of one pixel is below what zbar resolves reliably; the widths at one unit are
  // pinned by the coder's own tests. 200 rows of a wide label pass one stored PNG block.
  std::uniform_int_distribution module(2, 4), height(12, 200);
  for (int i = 0; i < 200; ++i) {
    ExpectReadBack(
        dir, RandomAssetNumber(random),
        {"--module", std::to_string(module(random)), "--height", std::to_string(height(random))});
  }
}

// Every character of code set B: the texts walk 32 to 126 in order, then random texts put
// the check values to use.
TEST(BarcodeDecode, EveryPrintableCharacterReadsBack) {
  if (!HaveZbarimg()) GTEST_SKIP() << kNoZbar;
  TempDir dir;
  std::mt19937 random(7);
  std::uniform_int_distribution printable(32, 126), length(1, 30);
  for (int i = 0; i < 24; ++i) {
    std::string text;
    for (int c = 32 + i * 24; i < 4 && c < 32 + (i + 1) * 24 && c <= 126; ++c) text += char(c);
    for (int n = i < 4 ? 0 : length(random); n > 0; --n) text += char(printable(random));
    ExpectReadBack(dir, text, {"--module", "2"});
  }
}

}  // namespace
}  // namespace nv
