#include "shell/hand_off.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "shell/shell_testing.h"

namespace nv {
namespace {

std::string Lines(int count, const std::string& token = "ABC") {
  std::string text;
  for (int i = 1; i <= count; ++i) {
    if (i == 4) {
      text += token;
    } else if (i == 8) {
      text += "  812xyz";
    } else if (i == 10) {
      text += "5";
    } else {
      text += "line " + std::to_string(i);
    }
    text += '\n';
  }
  return text;
}

// A pipe whose writer thread delivers pieces of the given sizes, pausing between them so
// that each piece arrives on its own. Piece sizes of 0 stand for "all the rest".
class SlowPipe {
 public:
  SlowPipe(std::string bytes, std::vector<size_t> pieces, bool close_after = true) {
    int fds[2];
    EXPECT_EQ(testing::MakePipe(fds), 0);
    read_fd_ = fds[0];
    write_fd_ = fds[1];
    writer_ =
        std::thread([this, bytes = std::move(bytes), pieces = std::move(pieces), close_after] {
          size_t at = 0;
          for (size_t piece : pieces) {
            if (piece == 0 || at + piece > bytes.size()) piece = bytes.size() - at;
            EXPECT_EQ(::write(write_fd_, bytes.data() + at, piece), static_cast<ssize_t>(piece));
            at += piece;
            std::this_thread::sleep_for(std::chrono::milliseconds(150));
          }
          if (close_after) CloseWriter();
        });
  }
  ~SlowPipe() {
    Join();
    CloseWriter();
    ::close(read_fd_);
  }
  int fd() const { return read_fd_; }
  void Join() {
    if (writer_.joinable()) writer_.join();
  }

  // Bytes still waiting in the pipe (after the writer finished and closed).
  std::string Remaining() {
    Join();
    CloseWriter();
    std::string rest;
    char buffer[256];
    ssize_t got;
    while ((got = ::read(read_fd_, buffer, sizeof buffer)) > 0) rest.append(buffer, got);
    return rest;
  }

 private:
  void CloseWriter() {
    if (write_fd_ >= 0) ::close(write_fd_);
    write_fd_ = -1;
  }

  int read_fd_ = -1;
  int write_fd_ = -1;
  std::thread writer_;
};

// The piece sizes a correct reader asks for when the text arrives exactly as asked:
// 100 minus what is pending after the complete lines were cut off.
std::vector<size_t> AskedSizes(const std::string& text) {
  std::vector<size_t> sizes;
  size_t at = 0, pending = 0;
  while (at < text.size()) {
    const size_t asked = std::min(kParameterBufferSize - pending, text.size() - at);
    sizes.push_back(asked);
    const std::string chunk = text.substr(at - pending, pending + asked);
    pending = chunk.size() - (chunk.rfind('\n') == std::string::npos ? 0 : chunk.rfind('\n') + 1);
    at += asked;
  }
  return sizes;
}

const char* const kArgs[] = {"nvimport", "/pid:ABC", "IMPORT"};

TEST(HandOffTest, TenLinesDeliveredExactlyAsAskedAreAccepted) {
  // Long lines so that reads end in the middle of a line and text stays pending.
  std::string text;
  for (int i = 1; i <= 10; ++i) {
    text += i == 4 ? std::string("ABC") : std::to_string(i) + std::string(60 + i, 'p');
    text += '\n';
  }
  SlowPipe pipe(text, AskedSizes(text));
  const auto run = CheckHandOff(3, kArgs, pipe.fd());
  ASSERT_TRUE(run.has_value());
  EXPECT_EQ(run->product_name, "1" + std::string(61, 'p'));
  EXPECT_EQ(run->token, "ABC");
  EXPECT_EQ(run->line8, 8);
  EXPECT_EQ(run->line9, "9" + std::string(69, 'p'));
  EXPECT_EQ(run->label_code, 10);
}

TEST(HandOffTest, ShortReadEndsReadingEvenWhenMoreWouldFollow) {
  // The first piece is less than the 100 bytes asked for: reading stops after it, only
  // its complete lines count, and the rest stays in the pipe.
  const std::string text = Lines(10);
  SlowPipe pipe(text, {30, 0});
  EXPECT_EQ(ReadParameterLines(pipe.fd()),
            (std::vector<std::string>{"line 1", "line 2", "line 3", "ABC"}));
  EXPECT_EQ(pipe.Remaining(), text.substr(30));
}

TEST(HandOffTest, LinesAndConversions) {
  SlowPipe pipe(Lines(10), {0});
  const auto run = CheckHandOff(3, kArgs, pipe.fd());
  ASSERT_TRUE(run.has_value());
  EXPECT_EQ(run->product_name, "line 1");
  EXPECT_EQ(run->line2, "line 2");
  EXPECT_EQ(run->line7, "line 7");
  EXPECT_EQ(run->line8, 812);  // as atol: leading blanks skipped, stops at the first non-digit
  EXPECT_EQ(run->label_code, 5);
}

TEST(HandOffTest, OnlyExactlyTenLinesAreAccepted) {
  for (int count : {9, 11}) {
    SlowPipe pipe(Lines(count), {0});
    EXPECT_EQ(CheckHandOff(3, kArgs, pipe.fd()), std::nullopt) << count;
  }
  // A last line without its newline is dropped: nine lines.
  std::string text = Lines(10);
  text.pop_back();
  SlowPipe pipe(text, {0});
  EXPECT_EQ(CheckHandOff(3, kArgs, pipe.fd()), std::nullopt);
}

TEST(HandOffTest, TokenComparesIgnoringCaseAndCarriageReturnStays) {
  const char* const lower[] = {"nvimport", "/PID:abc", "export"};
  {
    SlowPipe pipe(Lines(10, "ABC"), {0});
    EXPECT_TRUE(CheckHandOff(3, lower, pipe.fd()).has_value());
  }
  {
    SlowPipe pipe(Lines(10, "ABD"), {0});
    EXPECT_EQ(CheckHandOff(3, lower, pipe.fd()), std::nullopt);
  }
  {
    SlowPipe pipe(Lines(10, "ABC\r"), {0});  // "ABC\r" is not "abc"
    EXPECT_EQ(CheckHandOff(3, lower, pipe.fd()), std::nullopt);
  }
}

TEST(HandOffTest, LineOfHundredBytesFails) {
  {
    SlowPipe pipe(std::string(99, 'x') + "\n" + Lines(9), {0});
    const auto lines = ReadParameterLines(pipe.fd());
    ASSERT_TRUE(lines.has_value());
    EXPECT_EQ(lines->size(), 10u);
  }
  {
    SlowPipe pipe(std::string(100, 'x') + "\n" + Lines(9), {0});
    EXPECT_EQ(ReadParameterLines(pipe.fd()), std::nullopt);
  }
  {
    SlowPipe pipe(Lines(3) + std::string(150, 'x') + "\n" + Lines(6), {0});
    EXPECT_EQ(CheckHandOff(3, kArgs, pipe.fd()), std::nullopt);
  }
}

TEST(HandOffTest, WithoutPidArgumentStandardInputIsNotRead) {
  const char* const no_args[] = {"nvimport"};
  const char* const other[] = {"nvimport", "/pix:ABC", "IMPORT"};
  const char* const short_arg[] = {"nvimport", "/pid", "IMPORT"};
  const std::string text = Lines(10);
  SlowPipe pipe(text, {0});
  pipe.Join();
  EXPECT_EQ(CheckHandOff(1, no_args, pipe.fd()), std::nullopt);
  EXPECT_EQ(CheckHandOff(3, other, pipe.fd()), std::nullopt);
  EXPECT_EQ(CheckHandOff(3, short_arg, pipe.fd()), std::nullopt);
  EXPECT_EQ(pipe.Remaining(), text);
}

TEST(HandOffTest, FailedReadAndEmptyInputGiveNoLines) {
  EXPECT_EQ(ReadParameterLines(-1), std::vector<std::string>{});  // failed read ends reading
  SlowPipe empty("", {});
  EXPECT_EQ(CheckHandOff(3, kArgs, empty.fd()), std::nullopt);
}

TEST(ModeWordTest, ImportExportAndExportLimInAnyCase) {
  auto mode = [](const char* word) {
    const char* const argv[] = {"nvimport", "/pid:x", word};
    return ParseModeWord(3, argv);
  };
  EXPECT_EQ(mode("IMPORT"), ProgramMode::kImport);
  EXPECT_EQ(mode("import"), ProgramMode::kImport);
  EXPECT_EQ(mode("export"), ProgramMode::kExport);
  EXPECT_EQ(mode("ExportLim"), ProgramMode::kExport);
  EXPECT_EQ(mode("EXPORTLIMIT"), ProgramMode::kNone);
  EXPECT_EQ(mode(""), ProgramMode::kNone);
  EXPECT_EQ(ParseModeWord(2, kArgs), ProgramMode::kNone);
}

}  // namespace
}  // namespace nv
