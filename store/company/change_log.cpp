#include "store/company/change_log.h"

#include <cstdarg>
#include <ctime>

#include "base/ascii.h"
#include "base/file.h"
#include "base/str_format.h"
#include "base/version.h"

namespace nv {

namespace {

// Each line then goes to the system in one append, so that lines of other users appending
// at the same time never interleave with ours.
std::optional<File> OpenForAppending(const std::string& path) {
  return File::Open(path, File::Mode::kAppend);
}

std::optional<std::string> TrimmedOrNone(std::optional<std::string_view> text) {
  if (!text) return std::nullopt;
  std::string_view trimmed = TrimBlanks(*text);
  if (trimmed.empty()) return std::nullopt;
  return std::string(trimmed);
}

std::optional<int> NonZero(int value) {
  if (value == 0) return std::nullopt;
  return value;
}

}  // namespace

LogTime LocalLogTime() {
  std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  return LogTime{local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour,
                 local.tm_min};
}

std::string LogLinePrefix(const LogTime& time, std::string_view user_name, std::string_view tag,
                          std::optional<std::string_view> asset_no) {
  const std::string user(user_name);
  const std::string tag_text(tag);
  const std::string number(asset_no.value_or(""));
  return StrPrintf("%4.4d/%2.2d/%2.2d %2.2d:%2.2d %10.10s v%-10.10s %4.4s %3.3s %14.14s", time.year,
                   time.month, time.day, time.hour, time.minute, user.c_str(), kProgramVersion,
                   tag_text.c_str(), asset_no ? "Ast" : "", number.c_str());
}

std::string LogLineBytes(std::string_view prefix, std::optional<char> letter,
                         std::string_view text) {
  std::string line(prefix);
  if (letter) {
    line += " Sch ";
    line += *letter;
    line += ':';
  }
  line += ' ';
  for (char c : text) {
    if (c == '\n') line += '\r';
    line += c;
  }
  line += "\r\n";
  return line;
}

bool WriteLogLine(const NvCompany& company, std::optional<std::string_view> asset_no,
                  std::optional<char> letter, std::string_view tag, std::string_view text,
                  const LogClock& clock) {
  const std::string line = LogLineBytes(
      LogLinePrefix(clock(), company.context().user_name, tag, asset_no), letter, text);
  std::optional<File> log = OpenForAppending(company.FilePath(kLogExtension));
  if (!log) return false;
  const bool written = log->Append(line);
  return log->Close() == 0 && written;
}

bool LogIf(int32_t mask, const NvCompany& company, std::optional<std::string_view> asset_no,
           std::string_view tag, std::string_view text, const LogClock& clock) {
  if ((mask & company.record().logging_flags) == 0) return true;
  return WriteLogLine(company, asset_no, std::nullopt, tag, text, clock);
}

// ---- NvLogger ----

NvLogger::NvLogger(const NvCompany& company, std::string tag, std::optional<std::string> heading,
                   int options, LogClock clock)
    : company_(company),
      tag_(std::move(tag)),
      heading_(std::move(heading)),
      options_(options),
      clock_(clock ? std::move(clock) : LogClock(LocalLogTime)),
      flags_(company.record().logging_flags) {}

NvLogger::~NvLogger() = default;

bool NvLogger::Begin() {
  if (log_) return true;
  log_ = OpenForAppending(company_.FilePath(kLogExtension));
  if (!log_) return false;
  if (!prefix_) prefix_ = LogLinePrefix(clock_(), company_.context().user_name, tag_, std::nullopt);
  if (heading_ && (options_ & kWriteHeading) != 0) {
    if (!log_->Append(LogLineBytes(*prefix_, std::nullopt, *heading_))) return false;
  }
  return true;
}

bool NvLogger::WriteText(std::optional<char> letter, std::string_view text) {
  if (!Begin()) return false;
  return log_->Append(LogLineBytes(*prefix_, letter, text));
}

bool NvLogger::Write(std::optional<char> letter, const char* format, ...) {
  va_list args;
  va_start(args, format);
  std::string text = StrVPrintf(format, args);
  va_end(args);
  if (text.size() > kMaxLogTextLength) text.resize(kMaxLogTextLength);
  return WriteText(letter, text);
}

// The change lines below record work already done: a line the log does not take is lost,
// the change is not, so their statuses are dropped on purpose.
void NvLogger::WriteChange(std::optional<char> letter, std::string_view field,
                           const std::optional<std::string>& old_text,
                           const std::optional<std::string>& new_text) {
  const std::string name(field);
  if (old_text && new_text) {
    static_cast<void>(Write(letter, "%s changed from <%s> to <%s>", name.c_str(), old_text->c_str(),
                            new_text->c_str()));
  } else if (new_text) {
    static_cast<void>(Write(letter, "%s set to <%s>", name.c_str(), new_text->c_str()));
  } else if (old_text) {
    static_cast<void>(Write(letter, "%s removed", name.c_str()));
  }
}

void NvLogger::LogChange(std::optional<char> letter, std::string_view field,
                         std::optional<std::string_view> old_text,
                         std::optional<std::string_view> new_text) {
  std::optional<std::string> old_value = TrimmedOrNone(old_text);
  std::optional<std::string> new_value = TrimmedOrNone(new_text);
  if (old_value == new_value) return;
  WriteChange(letter, field, old_value, new_value);
}

void NvLogger::LogIntChange(std::optional<char> letter, std::string_view field,
                            std::optional<int> old_value, std::optional<int> new_value) {
  if (old_value == new_value) return;
  auto text = [](std::optional<int> v) -> std::optional<std::string> {
    if (!v) return std::nullopt;
    return StrPrintf("%d", *v);
  };
  WriteChange(letter, field, text(old_value), text(new_value));
}

void NvLogger::LogDateChange(std::optional<char> letter, std::string_view field,
                             std::optional<Date> old_date, std::optional<Date> new_date) {
  if (old_date && old_date->empty()) old_date.reset();
  if (new_date && new_date->empty()) new_date.reset();
  if (old_date == new_date) return;
  auto text = [](std::optional<Date> d) -> std::optional<std::string> {
    if (!d) return std::nullopt;
    return StrPrintf("%2.2d/%2.2d/%4.4d", d->month, d->day, d->year);
  };
  WriteChange(letter, field, text(old_date), text(new_date));
}

void NvLogger::LogCharChange(std::optional<char> letter, std::string_view field,
                             std::optional<char> old_char, std::optional<char> new_char) {
  auto present = [](std::optional<char> c) -> std::optional<char> {
    if (!c || *c == ' ' || *c == '\0') return std::nullopt;
    return c;
  };
  old_char = present(old_char);
  new_char = present(new_char);
  if (old_char == new_char) return;
  auto text = [](std::optional<char> c) -> std::optional<std::string> {
    if (!c) return std::nullopt;
    return std::string(1, *c);
  };
  WriteChange(letter, field, text(old_char), text(new_char));
}

void NvLogger::LogFormatChange(std::optional<char> letter, std::string_view field,
                               std::optional<NvAssetNoFormat> old_format,
                               std::optional<NvAssetNoFormat> new_format) {
  if (old_format == new_format) return;
  auto text = [](const std::optional<NvAssetNoFormat>& f) -> std::optional<std::string> {
    if (!f) return std::nullopt;
    return f->DisplayText();
  };
  WriteChange(letter, field, text(old_format), text(new_format));
}

// ---- CompanyChangeLogger ----

std::string LogScheduleName(const ScheduleEntry& entry) {
  const std::string type(TrimBlanks(entry.type));
  const std::string description(TrimBlanks(entry.name));
  if (type.size() == 1 && type[0] == entry.letter)
    return StrPrintf("%c-%s", entry.letter, description.c_str());
  return StrPrintf("%c(%s)-%s", entry.letter, type.c_str(), description.c_str());
}

// The heading goes with detailed logging, bit 0 of the flags, which only the Detailed level
// sets: there every field has a line of its own and the heading shows where one save's lines
// begin. A company at the Partial level (bits 1 and 3, the default) writes a line or two per
// save, which read well without it, and its log keeps the form it has always had.
int CompanyChangeLogger::HeadingOptions(const NvCompanyRecord& record) {
  return (record.logging_flags & 0x01) != 0 ? kWriteHeading : 0;
}

CompanyChangeLogger::CompanyChangeLogger(const NvCompany& company,
                                         const NvCompanyRecord* old_record,
                                         const NvCompanyRecord& new_record, std::string tag,
                                         std::string heading, LogClock clock)
    : NvLogger(company, std::move(tag), std::move(heading), HeadingOptions(new_record),
               std::move(clock)),
      old_(old_record),
      new_(new_record) {
  set_flags(new_record.logging_flags);
}

void CompanyChangeLogger::Run() {
  if (old_ == nullptr) {
    LogNewCompany();
  } else {
    LogEdits();
  }
}

void CompanyChangeLogger::LogNewCompany() {
  const NvCompanyRecord& r = new_;
  if ((flags() & 0x01) == 0) {
    const std::string number(TrimBlanks(r.number));
    const std::string name(TrimBlanks(r.name));
    const std::string letters(TrimBlanks(r.schedule_letters));
    const Date& end = r.current_year_end;
    static_cast<void>(Write(std::nullopt, "Co %s %s, Schedules: %s, %2.2d/%2.2d/%4.4d Year End",
                            number.c_str(), name.c_str(), letters.c_str(), end.month, end.day,
                            end.year));
    return;
  }
  // Detailed: every field that has a value, in the order of the edit screen.
  const auto none = std::nullopt;
  LogChange(none, "Company No", none, r.number);
  LogChange(none, "Company Name", none, r.name);
  LogChange(none, "EIN", none, r.ein);
  LogDateChange(none, "Last Closed", none, r.last_closed);
  LogDateChange(none, "Current Year End", none, r.current_year_end);
  LogFormatChange(none, "Asset No. Format", none, r.asset_no_format);
  for (const ScheduleEntry& entry : r.schedules) {
    static_cast<void>(Write(none, "Schedule added: <%s>", LogScheduleName(entry).c_str()));
  }
  LogChange(none, "Sort Order", none, r.sort_order);
  LogIntChange(none, "Business Category", none, NonZero(r.business_category));
  LogIntChange(none, "Round Dollars", none, NonZero(r.round_dollars ? 1 : 0));
  LogCharChange(none, "Mid-Quarter Override", none, r.mid_quarter_override);
  LogCharChange(none, "Global Loc/Cat Designation", none, r.global_loc_cat);
  for (int i = 0; i < kUserFieldCount; ++i) {
    const UserFieldDefinition& field = r.user_fields[static_cast<size_t>(i)];
    const std::string name(TrimBlanks(field.name));
    const std::string value(TrimBlanks(field.default_value));
    if (name.empty() && value.empty()) continue;
    static_cast<void>(Write(none, "User Field %d: name set to <%s>, default set to <%s>", i + 1,
                            name.c_str(), value.c_str()));
  }
  LogChange(none, "Misc Codes", none, r.misc_codes);
  LogIntChange(none, "Logging Flags", none, NonZero(r.logging_flags));
}

void CompanyChangeLogger::LogEdits() {
  const NvCompanyRecord& o = *old_;
  const NvCompanyRecord& n = new_;
  const auto none = std::nullopt;
  LogChange(none, "Company No", o.number, n.number);
  LogChange(none, "Company Name", o.name, n.name);
  LogChange(none, "EIN", o.ein, n.ein);
  LogDateChange(none, "Last Closed", o.last_closed, n.last_closed);
  LogDateChange(none, "Current Year End", o.current_year_end, n.current_year_end);
  LogFormatChange(none, "Asset No. Format", o.asset_no_format, n.asset_no_format);
  LogScheduleEdits();
  LogChange(none, "Sort Order", o.sort_order, n.sort_order);
  LogIntChange(none, "Business Category", o.business_category, n.business_category);
  LogIntChange(none, "Round Dollars", o.round_dollars ? 1 : 0, n.round_dollars ? 1 : 0);
  LogCharChange(none, "Mid-Quarter Override", o.mid_quarter_override, n.mid_quarter_override);
  LogCharChange(none, "Global Loc/Cat Designation", o.global_loc_cat, n.global_loc_cat);
  LogUserFieldEdits();
  LogChange(none, "Misc Codes", o.misc_codes, n.misc_codes);
  LogIntChange(none, "Logging Flags", o.logging_flags, n.logging_flags);
}

void CompanyChangeLogger::LogScheduleEdits() {
  const NvCompanyRecord& o = *old_;
  const NvCompanyRecord& n = new_;
  LogChange(std::nullopt, "Schedules", o.schedule_letters, n.schedule_letters);
  for (const ScheduleEntry& entry : n.schedules) {
    const ScheduleEntry* before = o.FindSchedule(entry.letter);
    if (before == nullptr) {
      static_cast<void>(
          Write(std::nullopt, "Schedule added: <%s>", LogScheduleName(entry).c_str()));
    } else if (TrimBlanks(before->type) != TrimBlanks(entry.type) ||
               TrimBlanks(before->name) != TrimBlanks(entry.name)) {
      static_cast<void>(Write(std::nullopt, "Schedule change: From <%s> to <%s>",
                              LogScheduleName(*before).c_str(), LogScheduleName(entry).c_str()));
    }
  }
  for (const ScheduleEntry& entry : o.schedules) {
    if (n.FindSchedule(entry.letter) == nullptr)
      static_cast<void>(
          Write(std::nullopt, "Schedule removed: <%s>", LogScheduleName(entry).c_str()));
  }
}

void CompanyChangeLogger::LogUserFieldEdits() {
  for (int i = 0; i < kUserFieldCount; ++i) {
    const UserFieldDefinition& before = old_->user_fields[static_cast<size_t>(i)];
    const UserFieldDefinition& after = new_.user_fields[static_cast<size_t>(i)];
    LogChange(std::nullopt, StrPrintf("User Field %d name", i + 1), before.name, after.name);
    LogChange(std::nullopt, StrPrintf("User Field %d default value", i + 1), before.default_value,
              after.default_value);
  }
}

void LogCompanyChanges(const NvCompany& company, const NvCompanyRecord* old_record,
                       const NvCompanyRecord& new_record, std::string_view tag,
                       std::string_view heading, const LogClock& clock) {
  if (new_record.logging_flags == kLoggingNone) {
    if (old_record == nullptr) {
      static_cast<void>(WriteLogLine(company, std::nullopt, std::nullopt, kTagNewCompany,
                                     "Company created with no logging.", clock));
    } else if (old_record->logging_flags != kLoggingNone) {
      static_cast<void>(WriteLogLine(company, std::nullopt, std::nullopt, kTagEditCompany,
                                     "Company changed to have no logging.", clock));
    }
    return;
  }
  CompanyChangeLogger logger(company, old_record, new_record, std::string(tag),
                             std::string(heading), clock);
  logger.Run();
}

}  // namespace nv
