// Reads arbitrary bytes as the line found in another user's company lock file and builds
// the refusal message from it; then checks that a lock line written from the same bytes
// reads back as written, and that a taker refused by a holder whose file holds the bytes
// reads them from the file.
//
// Input: one byte giving the length (0-8) of the company number that follows it, then the
// holder's line.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "base/ascii.h"
#include "base/lock_file.h"
#include "base/str_format.h"
#include "fuzz/fuzz_scratch.h"
#include "store/company/company_lock.h"

namespace {

bool HasControlByte(std::string_view text) {
  for (char c : text) {
    if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) return true;
  }
  return false;
}

void CheckHolder(const nv::LockHolder& holder) {
  if (holder.name.empty() || holder.name.size() > 25 || HasControlByte(holder.name)) std::abort();
  if (holder.date_text && holder.date_text->size() != 10) std::abort();
  if (holder.hour.has_value() != holder.minute.has_value()) std::abort();
  if (holder.hour && (*holder.hour < 0 || *holder.hour > 23)) std::abort();
  if (holder.minute && (*holder.minute < 0 || *holder.minute > 59)) std::abort();
}

// A lock line for a user name and a time made of the input's bytes must parse back.
void CheckRoundTrip(std::string_view bytes) {
  auto at = [&](size_t i) { return i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0; };
  nv::LockTime when{nv::Date{at(0) % 13, at(1) % 32, (at(2) * 256 + at(3)) % 10000}, at(4) % 24,
                    at(5) % 60, at(6) % 60};
  std::string user(bytes.substr(0, 30));
  std::string line = nv::FormatLockLine(user, when);
  nv::LockHolder holder = nv::ParseLockHolderLine(line);
  CheckHolder(holder);
  if (HasControlByte(user)) return;  // cut short, or masked: nothing exact to expect
  if (holder.date_text !=
      nv::StrPrintf("%2.2d/%2.2d/%4.4d", when.date.month, when.date.day, when.date.year)) {
    std::abort();
  }
  if (holder.hour != when.hour || holder.minute != when.minute) std::abort();
  std::string_view name = nv::TrimBlanks(std::string_view(user).substr(0, 25));
  if (holder.name != (name.empty() ? "*" : name)) std::abort();
}

// Another writer holds the lock with `line` in its file: a refused Take gives back what the
// file holds, cut to the 100 bytes a taker reads.
void CheckReadFromHoldersFile(std::string_view line) {
  // An empty file is a holder that has not written yet; Take waits for it a while.
  if (line.empty()) return;
  const std::string path = nv::fuzzing::ScratchFolder("lock_line") + "FUZZ.LOK";
  nv::LockFile holder;
  if (holder.TryAcquire(path) != nv::LockStatus::kAcquired || !holder.WriteContent(line)) {
    std::abort();
  }
  nv::CompanyInUseLock taker;
  if (taker.Take(path, "FUZZER", nv::LockTime{}) != line.substr(0, 100) || taker.held()) {
    std::abort();
  }
  holder.ReleaseAndRemove();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  if (bytes.empty()) return 0;
  const size_t number_size = static_cast<unsigned char>(bytes[0]) % 9;
  const std::string_view number = bytes.substr(1, number_size);
  const std::string_view line = bytes.substr(1 + number.size());

  nv::LockHolder holder = nv::ParseLockHolderLine(line);
  CheckHolder(holder);
  std::string message = nv::CompanyInUseMessage(number, line);
  // Fits an information box, and the holder's line cannot add lines of its own.
  if (message.size() > 1000) std::abort();
  if (message.rfind("You cannot select ", 0) != 0) std::abort();
  if (number.find_first_of(std::string_view("\n\0", 2)) == std::string_view::npos) {
    size_t lines = 0;
    for (char c : message) lines += c == '\n';
    if (lines != 3) std::abort();
    if (message.find("Network Name\n" + holder.name + "\n(Company in use since ") ==
        std::string::npos) {
      std::abort();
    }
  }
  CheckRoundTrip(line);
  CheckReadFromHoldersFile(line);
  return 0;
}
