// The company's change log: a plain text file, company number + ".LOG", to which every
// change of the company's settings and every asset deletion is appended as one line. The
// main program appends to the same file from other machines, so a line is always handed
// to the system in one write on a file opened for appending, and nothing here ever
// shortens or rewrites the file. Lines end with CR LF, as a file written in text mode on
// Windows does.
//
// A line is a prefix, a blank and the text; with a schedule letter "%s Sch %c: %s".
// The prefix is "%4.4d/%2.2d/%2.2d %2.2d:%2.2d %10.10s v%-10.10s %4.4s %3.3s %14.14s":
//
//   FIELD          WIDTH  CONTENT
//   year           4      local time of the line (a logger's: of its first line)
//   month, day     2, 2   after "/"
//   hour, minute   2, 2   after a blank, joined by ":"
//   user           10     right-aligned; a longer name keeps its first 10 characters
//   version        "v"+10 left-aligned program version
//   tag            4      right-aligned: "CNEW", "CEDT", "DEL " ...
//   asset mark     3      "Ast" when the line concerns an asset, else blanks
//   asset number   14     right-aligned display form of the asset number, else blanks
//
// How much is logged is the company's logging flags (NvCompanyRecord::logging_flags): a
// request carries a mask and is written only when mask and flags share a bit. Bit 0 asks
// for the detailed entry of a new company.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "base/date.h"
#include "base/file.h"
#include "base/str_format.h"
#include "store/asset/asset_no_format.h"
#include "store/company/company.h"
#include "store/company/company_record.h"

namespace nv {

// The local time stamped on a line. The clock is a parameter so that tests can fix it.
struct LogTime {
  int year = 0;
  int month = 0;
  int day = 0;
  int hour = 0;
  int minute = 0;
};
using LogClock = std::function<LogTime()>;
// The local time now.
LogTime LocalLogTime();

inline constexpr char kLogExtension[] = "LOG";
inline constexpr char kTagNewCompany[] = "CNEW";
inline constexpr char kTagEditCompany[] = "CEDT";
inline constexpr char kTagAssetDeleted[] = "DEL ";
inline constexpr char kHeadingEditCompany[] = "Edit Company";
inline constexpr int32_t kLogAllMask = 0xFFFFFF;
// Texts that a Write formats are cut to this length.
inline constexpr size_t kMaxLogTextLength = 254;

// The line prefix described above. `asset_no` is the asset number's display form, or
// none for a line that concerns no asset.
std::string LogLinePrefix(const LogTime& time, std::string_view user_name, std::string_view tag,
                          std::optional<std::string_view> asset_no);

// The whole line as it goes to disk: prefix, optional "Sch %c:", text, CR LF. A line end
// inside the text becomes CR LF too, as text mode writes it.
std::string LogLineBytes(std::string_view prefix, std::optional<char> letter,
                         std::string_view text);

// Writes one line at once, whatever the flags: opens the log for appending, writes, closes.
// False when the file cannot be opened or written.
[[nodiscard]] bool WriteLogLine(const NvCompany& company, std::optional<std::string_view> asset_no,
                                std::optional<char> letter, std::string_view tag,
                                std::string_view text, const LogClock& clock = LocalLogTime);

// WriteLogLine when `mask` and the company's logging flags share a bit; true when nothing
// had to be written.
[[nodiscard]] bool LogIf(int32_t mask, const NvCompany& company,
                         std::optional<std::string_view> asset_no, std::string_view tag,
                         std::string_view text, const LogClock& clock = LocalLogTime);

// One logging run: every line carries the same prefix, made at the first line, and the file
// stays open from the first line until the logger ends. Lines concern no asset.
class NvLogger {
 public:
  // Options: write the heading as the first line.
  static constexpr int kWriteHeading = 0x01;

  NvLogger(const NvCompany& company, std::string tag, std::optional<std::string> heading = {},
           int options = 0, LogClock clock = LocalLogTime);
  virtual ~NvLogger();
  NvLogger(const NvLogger&) = delete;
  NvLogger& operator=(const NvLogger&) = delete;

  // Formats the text (cut to kMaxLogTextLength) and writes a line. False when the file
  // could not be opened or written.
  [[nodiscard]] bool Write(std::optional<char> letter, const char* format, ...)
      NV_PRINTF_FORMAT(3, 4);

  // Change texts, for values trimmed of blanks at both ends; a blank value counts as none:
  //   both values, different: "%s changed from <%s> to <%s>"
  //   only the new value:     "%s set to <%s>"
  //   only the old value:     "%s removed"
  // Nothing is written when both are none or they are equal.
  void LogChange(std::optional<char> letter, std::string_view field,
                 std::optional<std::string_view> old_text,
                 std::optional<std::string_view> new_text);
  // Integers ("%d"), compared by value.
  void LogIntChange(std::optional<char> letter, std::string_view field,
                    std::optional<int> old_value, std::optional<int> new_value);
  // Dates ("%2.2d/%2.2d/%4.4d"); the empty date counts as none.
  void LogDateChange(std::optional<char> letter, std::string_view field,
                     std::optional<Date> old_date, std::optional<Date> new_date);
  // Single characters ("%c"); a blank or NUL counts as none.
  void LogCharChange(std::optional<char> letter, std::string_view field,
                     std::optional<char> old_char, std::optional<char> new_char);
  // Asset number formats (NvAssetNoFormat::DisplayText), compared field by field.
  void LogFormatChange(std::optional<char> letter, std::string_view field,
                       std::optional<NvAssetNoFormat> old_format,
                       std::optional<NvAssetNoFormat> new_format);

  int32_t flags() const { return flags_; }
  const std::string& tag() const { return tag_; }

 protected:
  void set_flags(int32_t flags) { flags_ = flags; }

 private:
  // Writes the change text of two values already known to differ (none for absent).
  void WriteChange(std::optional<char> letter, std::string_view field,
                   const std::optional<std::string>& old_text,
                   const std::optional<std::string>& new_text);
  [[nodiscard]] bool WriteText(std::optional<char> letter, std::string_view text);
  // Opens the file and makes the prefix at the first line. False when it cannot be opened.
  [[nodiscard]] bool Begin();

  const NvCompany& company_;
  std::string tag_;
  std::optional<std::string> heading_;
  int options_ = 0;
  LogClock clock_;
  int32_t flags_ = 0;
  std::optional<std::string> prefix_;
  std::optional<File> log_;
};

// Logs a company's creation (old record none) or the changes of an edit, under the heading
// when the new record's logging is detailed. `old_record`, when given, and `new_record` are
// read only while the logger runs.
class CompanyChangeLogger : public NvLogger {
 public:
  CompanyChangeLogger(const NvCompany& company, const NvCompanyRecord* old_record,
                      const NvCompanyRecord& new_record, std::string tag, std::string heading,
                      LogClock clock = LocalLogTime);

  void Run();

  // kWriteHeading when the record's logging asks for detail (bit 0), else 0.
  static int HeadingOptions(const NvCompanyRecord& record);

 private:
  void LogNewCompany();
  void LogEdits();
  void LogScheduleEdits();
  void LogUserFieldEdits();

  const NvCompanyRecord* old_;
  const NvCompanyRecord& new_;
};

// The name of a schedule in the log: "%c-%s" (letter, description) when the type is the
// letter itself, else "%c(%s)-%s" (letter, type, description): "B-Book", "X(CA)-Calif".
std::string LogScheduleName(const ScheduleEntry& entry);

// Logs a company's creation or edit with a CompanyChangeLogger when the new record's flags
// are not 0. When they are 0, writes "Company created with no logging." (CNEW) for a new
// company, or "Company changed to have no logging." (CEDT) for an edit that turned logging
// off, regardless of the flags. `company` names the log file and the user.
void LogCompanyChanges(const NvCompany& company, const NvCompanyRecord* old_record,
                       const NvCompanyRecord& new_record, std::string_view tag,
                       std::string_view heading, const LogClock& clock = LocalLogTime);

}  // namespace nv
