// Labels read back by an independent decoder: zbarimg of Debian's zbar-tools, which
// scripts/setup.sh installs. Without it the test is skipped and says so.
#include <stdio.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "base/temp_dir_testing.h"
#include "store/asset/asset_no.h"
#include "tools/nvtool_commands.h"

namespace nv {
namespace {

std::optional<std::string> FindOnPath(const std::string& program) {
  const char* path = std::getenv("PATH");
  if (path == nullptr) return std::nullopt;
  std::stringstream folders(path);
  for (std::string folder; std::getline(folders, folder, ':');) {
    if (folder.empty()) continue;
    const std::string candidate = folder + "/" + program;
    if (::access(candidate.c_str(), X_OK) == 0) return candidate;
  }
  return std::nullopt;
}

// What zbarimg reads as Code 128 in the file: one line per symbol found, without the
// line ends; its exit status in *status.
std::vector<std::string> Decode(const std::string& zbarimg, const std::string& file, int* status) {
  const std::string command =
      zbarimg + " --quiet --raw -Sdisable -Scode128.enable '" + file + "' 2>/dev/null";
  std::vector<std::string> lines;
  FILE* pipe = ::popen(command.c_str(), "r");
  if (pipe == nullptr) {
    *status = -1;
    return lines;
  }
  std::string output;
  char buffer[256];
  for (size_t got; (got = fread(buffer, 1, sizeof buffer, pipe)) > 0;) output.append(buffer, got);
  const int wait_status = ::pclose(pipe);
  *status = WIFEXITED(wait_status) ? WEXITSTATUS(wait_status) : -1;
  std::stringstream stream(output);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

// An asset number in its text form under a random format: main part right-aligned, "."
// and the zero-padded subasset, as the asset selection receives it from a scanner.
std::string RandomAssetNumber(std::mt19937& random) {
  auto pick = [&](int low, int high) { return std::uniform_int_distribution(low, high)(random); };
  for (;;) {
    NvAssetNoFormat format;
    format.main_length = pick(1, NvAssetNoFormat::kMaxMainLength);
    format.subasset_length = pick(1, NvAssetNoFormat::kMaxSubassetLength);
    format.flags = pick(0, 3);  // letters, dashes
    std::string allowed = "0123456789";
    if (format.letters()) allowed += "ABCDEFGHIJKLMNOPQRSTUVWXYZ";
    if (format.dashes()) allowed += "-";
    std::string main;
    for (int i = pick(1, format.main_length); i > 0; --i) {
      main += allowed[static_cast<size_t>(pick(0, static_cast<int>(allowed.size()) - 1))];
    }
    const int subasset_max = format.subasset_length == 1   ? 9
                             : format.subasset_length == 2 ? 99
                                                           : 999;
    const NvAssetNo number =
        NvAssetNo::Parse(main + "." + std::to_string(pick(0, subasset_max)), format);
    if (number.valid()) return number.Text();
  }
}

TEST(BarcodeDecode, RandomAssetNumbersReadBackExactly) {
  const std::optional<std::string> zbarimg = FindOnPath("zbarimg");
  if (!zbarimg) {
    GTEST_SKIP() << "zbarimg not found on PATH: install Debian's zbar-tools "
                    "(scripts/setup.sh does) to decode the labels";
  }
  TempDir dir;
  std::mt19937 random(20261124);
  // A module of one pixel is below what zbar resolves reliably (its edge filter needs two);
  // the widths at one pixel are pinned by the coder's own tests.
  std::uniform_int_distribution module(2, 4);
  std::uniform_int_distribution height(12, 200);  // 200 rows of a wide label pass 65535 bytes
  for (int i = 0; i < 200; ++i) {
    const std::string text = RandomAssetNumber(random);
    const std::string file = dir.File("label" + std::to_string(i) + ".png");
    std::ostringstream out, err;
    ASSERT_EQ(RunNvtool({"barcode", text, file, "--module", std::to_string(module(random)),
                         "--height", std::to_string(height(random))},
                        out, err),
              0)
        << err.str();
    int status = 0;
    const std::vector<std::string> read = Decode(*zbarimg, file, &status);
    EXPECT_EQ(status, 0) << "'" << text << "' in " << file;
    EXPECT_EQ(read, std::vector<std::string>{text}) << file;
  }
}

// Every character of code set B, in texts that also put each check value to use.
TEST(BarcodeDecode, EveryPrintableCharacterReadsBack) {
  const std::optional<std::string> zbarimg = FindOnPath("zbarimg");
  if (!zbarimg) GTEST_SKIP() << "zbarimg not found on PATH: install Debian's zbar-tools";
  TempDir dir;
  std::mt19937 random(7);
  std::uniform_int_distribution printable(32, 126);
  for (int i = 0; i < 24; ++i) {
    std::string text;
    // The first texts walk the set in order; later ones are random, 1 to 30 characters.
    if (i < 4) {
      for (int c = 32 + i * 24; c < 32 + (i + 1) * 24 && c <= 126; ++c)
        text += static_cast<char>(c);
    } else {
      for (int n = std::uniform_int_distribution(1, 30)(random); n > 0; --n) {
        text += static_cast<char>(printable(random));
      }
    }
    const std::string file = dir.File("text" + std::to_string(i) + ".png");
    std::ostringstream out, err;
    ASSERT_EQ(RunNvtool({"barcode", text, file}, out, err), 0) << err.str();
    int status = 0;
    EXPECT_EQ(Decode(*zbarimg, file, &status), std::vector<std::string>{text});
    EXPECT_EQ(status, 0) << "'" << text << "'";
  }
}

}  // namespace
}  // namespace nv
