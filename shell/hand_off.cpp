#include "shell/hand_off.h"

#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <string_view>

#include "base/ascii.h"

namespace nv {
namespace {

constexpr std::string_view kPidPrefix = "/pid:";

bool HasPidPrefix(std::string_view argument) {
  return argument.size() >= kPidPrefix.size() &&
         EqualIgnoringCase(argument.substr(0, kPidPrefix.size()), kPidPrefix);
}

// Decimal text as atol reads it, but without atol's undefined overflow.
long AsLong(const std::string& text) {
  return std::strtol(text.c_str(), nullptr, 10);
}

ssize_t ReadSome(int fd, char* buffer, size_t count) {
  ssize_t got;
  do {
    got = ::read(fd, buffer, count);
  } while (got < 0 && errno == EINTR);
  return got;
}

}  // namespace

std::optional<std::vector<std::string>> ReadParameterLines(int fd) {
  std::vector<std::string> lines;
  std::string pending;
  char buffer[kParameterBufferSize];
  for (;;) {
    // A full buffer without a newline: the reader would ask for nothing forever.
    if (pending.size() >= kParameterBufferSize) return std::nullopt;
    const size_t asked = kParameterBufferSize - pending.size();
    const ssize_t got = ReadSome(fd, buffer, asked);
    if (got > 0) pending.append(buffer, static_cast<size_t>(got));
    size_t newline;
    while ((newline = pending.find('\n')) != std::string::npos) {
      lines.push_back(pending.substr(0, newline));
      pending.erase(0, newline + 1);
    }
    if (got < 0 || static_cast<size_t>(got) != asked) break;
  }
  return lines;
}

std::optional<RunParameters> CheckHandOff(int argc, const char* const* argv, int stdin_fd) {
  if (argc < 2 || argv[1] == nullptr || !HasPidPrefix(argv[1])) return std::nullopt;
  std::optional<std::vector<std::string>> lines = ReadParameterLines(stdin_fd);
  if (!lines || lines->size() != kParameterLineCount) return std::nullopt;
  const std::vector<std::string>& l = *lines;
  if (!EqualIgnoringCase(std::string_view(argv[1]).substr(kPidPrefix.size()), l[3])) {
    return std::nullopt;
  }
  RunParameters run;
  run.product_name = l[0];
  run.line2 = l[1];
  run.line3 = l[2];
  run.token = l[3];
  run.line5 = l[4];
  run.line6 = l[5];
  run.line7 = l[6];
  run.line8 = AsLong(l[7]);
  run.line9 = l[8];
  run.label_code = AsLong(l[9]);
  return run;
}

ProgramMode ParseModeWord(int argc, const char* const* argv) {
  if (argc < 3 || argv[2] == nullptr) return ProgramMode::kNone;
  const std::string_view word = argv[2];
  if (EqualIgnoringCase(word, "IMPORT")) return ProgramMode::kImport;
  if (EqualIgnoringCase(word, "EXPORT") || EqualIgnoringCase(word, "EXPORTLIM")) {
    return ProgramMode::kExport;
  }
  return ProgramMode::kNone;
}

}  // namespace nv
