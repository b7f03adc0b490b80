// Feeds arbitrary bytes to the hand-off reader as its standard input (a memory file) and
// checks the line rules: at most 99 bytes per line, no newline inside a line.
#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "shell/hand_off.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const int fd = ::memfd_create("hand_off_fuzz", 0);
  if (fd < 0) return 0;
  if (::write(fd, data, size) != static_cast<ssize_t>(size) || ::lseek(fd, 0, SEEK_SET) != 0) {
    ::close(fd);
    return 0;
  }
  std::optional<std::vector<std::string>> lines = nv::ReadParameterLines(fd);
  if (lines) {
    for (const std::string& line : *lines) {
      if (line.size() >= nv::kParameterBufferSize || line.find('\n') != std::string::npos) {
        std::abort();
      }
    }
  }
  ::lseek(fd, 0, SEEK_SET);
  const char* const argv[] = {"nvimport", "/pid:token", "IMPORT"};
  std::optional<nv::RunParameters> run = nv::CheckHandOff(3, argv, fd);
  if (run && (!lines || lines->size() != 10 || run->token.size() != 5)) std::abort();
  ::close(fd);
  return 0;
}
