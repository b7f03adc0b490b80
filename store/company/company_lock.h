// The company in-use lock: while a company is selected or open for writing (NvCompany
// takes it for every open for writing and every create), its lock file (company number +
// ".LOK" in the company folder) is held open with other writers denied and carries one line
// that says who took it and when:
//
//   "%-25.25s %2.2d/%2.2d/%4.4d %2.2d:%2.2d:%2.2d\n"
//    user name, month/day/year, hours:minutes:seconds (24-hour)
//
// written as a Windows text file, so the line ends with CR LF on disk. Another copy of the
// program (or the main program) that finds the file held reads that line and tells its user
// who has the company. The holder deletes the file when it lets go; a file left behind by a
// crashed run is simply taken over, since nothing holds it any more.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/date.h"
#include "base/lock_file.h"

namespace nv {

// The moment a lock was taken, by the local clock.
struct LockTime {
  Date date;
  int hour = 0;  // 0-23
  int minute = 0;
  int second = 0;
};

LockTime LockTimeNow();

// The lock line with its "\n" line end, as the layout gives it.
std::string FormatLockLine(std::string_view user_name, const LockTime& when);

// folder + number + ".LOK"; a separator is added after a folder that lacks one.
std::string CompanyLockPath(std::string_view folder, std::string_view number);

class NvCompany;

// The in-use lock of this program. It holds at most one company's lock at a time; the
// program owns exactly one of these and hands it to whatever selects a company. An
// NvCompany opened for writing under it (NvCompany::Open and Create with a lock) is its
// writer until it closes; a lock admits one writer at a time.
class CompanyInUseLock {
 public:
  CompanyInUseLock() = default;
  // Lets go of the lock and deletes its file.
  ~CompanyInUseLock() { Release(); }
  CompanyInUseLock(const CompanyInUseLock&) = delete;
  CompanyInUseLock& operator=(const CompanyInUseLock&) = delete;

  // Takes the lock file at `path` for `user_name`, writing the lock line for `when`.
  // Returns the empty text when this program now holds it (also when it held that very
  // file already, which is then kept as it was); any other lock it held is released and
  // its file deleted. Otherwise returns the holder's line as read from the file (at most
  // 100 bytes, line end included), or "*" when the holder cannot be told; the lock held
  // before, if any, is kept.
  std::string Take(const std::string& path, std::string_view user_name, const LockTime& when);

  // Closes the held file and deletes it. Nothing happens when nothing is held.
  void Release();

  bool held() const { return file_.held(); }
  // Path of the held lock file; empty when none is held.
  const std::string& held_path() const { return file_.path(); }
  // True when the held file has been deleted or replaced by someone else since it was
  // taken, so that it no longer keeps anyone out. REQUIRES: held().
  bool lost() const { return file_.IsStale(); }
  // True when the held lock is the file at `path` (another spelling of it included).
  [[nodiscard]] bool HoldsFileAt(const std::string& path) const;
  // True while a company is open for writing under this lock.
  bool has_writer() const { return writer_ != nullptr; }

 private:
  friend class NvCompany;  // sets and clears writer_

  LockFile file_;
  const NvCompany* writer_ = nullptr;
};

// The parts of a holder's line that the refusal message shows. Any bytes are accepted:
// a part that cannot be read from the line is left unknown.
struct LockHolder {
  std::string name = "*";                // "*" when the line names nobody
  std::optional<std::string> date_text;  // "MM/DD/YYYY" as the line has it
  std::optional<int> hour;               // 0-23, set together with minute
  std::optional<int> minute;
};

LockHolder ParseLockHolderLine(std::string_view line);

// "%d:%2.2d %s" with "a.m." or "p.m."; hours 0-11 are a.m. as they are, 12 is p.m.,
// 13-23 are p.m. less 12. REQUIRES: 0 <= hour <= 23, 0 <= minute <= 59.
std::string FormatLockHolderTime(int hour, int minute);

// The message that refuses company `number` (blank: "this company") because the lock is
// held by the writer of `holder_line`.
std::string CompanyInUseMessage(std::string_view number, std::string_view holder_line);

}  // namespace nv
