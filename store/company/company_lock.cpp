#include "store/company/company_lock.h"

#include <unistd.h>

#include <ctime>

#include "base/ascii.h"
#include "base/file.h"
#include "base/path.h"
#include "base/str_format.h"

namespace nv {
namespace {

// A refused taker reads at most this much of the holder's file.
constexpr size_t kMaxHolderLine = 100;

// Between the holder's create and its write the file is empty, and between another
// holder's delete and our read it is missing; both mean "look again". These bound how
// often, so that a holder that never writes its line cannot keep us waiting.
constexpr int kTakeAttempts = 20;
constexpr useconds_t kEmptyLineWaitMicros = 500;

// Where the parts of a lock line sit: name 25, blank, date 10, blank, time 8.
constexpr size_t kNameWidth = 25;
constexpr size_t kDateAt = kNameWidth + 1;
constexpr size_t kDateWidth = 10;
constexpr size_t kTimeAt = kDateAt + kDateWidth + 1;
static_assert(kTimeAt == 37);

// Up to kMaxHolderLine bytes of the file; nullopt when it cannot be opened or read, with
// *missing telling whether the file (or its folder) is not there.
std::optional<std::string> ReadHolderLine(const std::string& path, bool* missing) {
  std::optional<File> file = File::Open(path, File::Mode::kRead, missing);
  if (!file) return std::nullopt;
  std::string line(kMaxHolderLine, '\0');
  const int64_t got = file->ReadSomeAt(0, line.data(), line.size());
  if (got < 0) return std::nullopt;
  line.resize(static_cast<size_t>(got));
  return line;
}

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

// The two decimal digits at `at`, or -1.
int TwoDigits(std::string_view text, size_t at) {
  if (at + 2 > text.size() || !IsDigit(text[at]) || !IsDigit(text[at + 1])) return -1;
  return (text[at] - '0') * 10 + (text[at + 1] - '0');
}

// "MM/DD/YYYY": digits with slashes where the lock line puts them.
bool LooksLikeDateText(std::string_view text) {
  if (text.size() != kDateWidth) return false;
  for (size_t i = 0; i < text.size(); ++i) {
    bool slash = i == 2 || i == 5;
    if (slash ? text[i] != '/' : !IsDigit(text[i])) return false;
  }
  return true;
}

}  // namespace

LockTime LockTimeNow() {
  std::time_t now = std::time(nullptr);
  std::tm local = {};
  if (::localtime_r(&now, &local) == nullptr) return LockTime{};
  return LockTime{Date{local.tm_mon + 1, local.tm_mday, local.tm_year + 1900}, local.tm_hour,
                  local.tm_min, local.tm_sec};
}

std::string FormatLockLine(std::string_view user_name, const LockTime& when) {
  const std::string name(user_name);
  return StrPrintf("%-25.25s %2.2d/%2.2d/%4.4d %2.2d:%2.2d:%2.2d\n", name.c_str(), when.date.month,
                   when.date.day, when.date.year, when.hour, when.minute, when.second);
}

std::string CompanyLockPath(std::string_view folder, std::string_view number) {
  std::string path = JoinPath(folder, number);
  path += ".LOK";
  return path;
}

bool CompanyInUseLock::HoldsFileAt(const std::string& path) const {
  if (!held() || lost()) return false;
  if (path == file_.path()) return true;
  // Another spelling of the same file (a doubled separator, a link) is the same lock.
  return SameFile(file_.path(), path);
}

std::string CompanyInUseLock::Take(const std::string& path, std::string_view user_name,
                                   const LockTime& when) {
  if (HoldsFileAt(path)) return {};
  if (held() && path == file_.path()) file_.Release();  // deleted under us: not ours now

  std::string line = FormatLockLine(user_name, when);
  line.insert(line.size() - 1, "\r");  // a text file written the Windows way
  for (int attempt = 1;; ++attempt) {
    LockFile fresh;
    LockStatus status = fresh.TryAcquire(path);
    if (status == LockStatus::kAcquired) {
      // The lock keeps others out whether or not the line could be written, and a reader
      // that finds no line says "*".
      (void)fresh.WriteContent(line);
      file_.ReleaseAndRemove();
      file_ = std::move(fresh);
      return {};
    }
    bool missing = false;
    std::optional<std::string> holder = ReadHolderLine(path, &missing);
    if (holder && !holder->empty()) return *holder;
    // Held, but the holder has just let go (missing) or not yet written (empty).
    bool look_again = status == LockStatus::kHeldByOther && (holder || missing);
    if (!look_again || attempt == kTakeAttempts) return "*";
    if (holder) ::usleep(kEmptyLineWaitMicros);
  }
}

void CompanyInUseLock::Release() {
  file_.ReleaseAndRemove();
}

LockHolder ParseLockHolderLine(std::string_view line) {
  // Only the first line counts, and a NUL ends it as it would end a C string.
  size_t end = line.find_first_of(std::string_view("\r\n\0", 3));
  if (end != std::string_view::npos) line = line.substr(0, end);

  LockHolder holder;
  std::string name(TrimBlanks(line.substr(0, kNameWidth)));
  for (char& c : name) {
    if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) c = '?';  // no control bytes
  }
  if (!name.empty()) holder.name = std::move(name);

  if (line.size() >= kDateAt + kDateWidth) {
    std::string_view date = line.substr(kDateAt, kDateWidth);
    if (LooksLikeDateText(date)) holder.date_text = std::string(date);
  }
  int hour = TwoDigits(line, kTimeAt);
  int minute = TwoDigits(line, kTimeAt + 3);
  bool colon = line.size() > kTimeAt + 2 && line[kTimeAt + 2] == ':';
  if (colon && hour >= 0 && hour <= 23 && minute >= 0 && minute <= 59) {
    holder.hour = hour;
    holder.minute = minute;
  }
  return holder;
}

std::string FormatLockHolderTime(int hour, int minute) {
  const char* half = hour < 12 ? "a.m." : "p.m.";
  int shown = hour > 12 ? hour - 12 : hour;
  return StrPrintf("%d:%2.2d %s", shown, minute, half);
}

std::string CompanyInUseMessage(std::string_view number, std::string_view holder_line) {
  std::string_view trimmed = TrimBlanks(number);
  std::string company =
      trimmed.empty() ? std::string("this company") : "company " + std::string(trimmed);
  LockHolder holder = ParseLockHolderLine(holder_line);
  std::string time = holder.hour ? FormatLockHolderTime(*holder.hour, *holder.minute)
                                 : std::string("an unknown time");
  std::string date = holder.date_text.value_or("an unknown date");
  return StrPrintf(
      "You cannot select %s, because\ncompany data is in use by Network Name\n%s\n"
      "(Company in use since %s on %s)",
      company.c_str(), holder.name.c_str(), time.c_str(), date.c_str());
}

}  // namespace nv
