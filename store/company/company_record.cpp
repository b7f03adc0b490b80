#include "store/company/company_record.h"

#include <algorithm>
#include <cstdlib>
#include <optional>

#include "base/ascii.h"
#include "base/coding.h"
#include "base/str_format.h"
#include "base/version.h"

namespace nv {

// Old layout (first block marker 0xE0, 142 data bytes a block). Records of this layout
// come from versions before 3.0, which knew neither the version and format fields nor the
// reserved text, the stored asset number, user permissions or logging flags:
//
//   #   FIELD                       FORM ON DISK
//   1   block file counters         u16 highest record, u16 free head, u16 free count
//   2   separator                   one tab
//   3   Current Year End            "%2.2d%2.2d%4.4d" or empty
//   4   months in current year      decimal
//   5   Company Name                40
//   6   EIN or SSN                  12
//   7   Last Closed                 as field 3
//   8   schedules                   as in the current layout
//   9   Sort Order                  3
//   10  Business Category           decimal
//   11  Round Dollars               "Y" or "N"
//   12  Mid-Quarter Override        1
//   13  Global Loc/Cat Designation  1
//   14  number of user fields       decimal
//   15  user fields                 name 30, default value 20, as many as field 14 says
//   16  Misc Codes                  10
//
// Such a company has the short asset-number format and logs at the partial level.

namespace {

constexpr char kLogFlagsPrefix[] = "LOGFLAGS(";

// Reads tab-ended fields one after the other; past the end every field is empty.
class FieldReader {
 public:
  explicit FieldReader(std::string_view text) : text_(text) {}
  bool at_end() const { return pos_ >= text_.size(); }
  std::string_view Peek() const {
    if (at_end()) return {};
    size_t tab = text_.find('\t', pos_);
    return text_.substr(pos_, tab == std::string_view::npos ? std::string_view::npos : tab - pos_);
  }
  std::string_view Next() {
    std::string_view field = Peek();
    pos_ = std::min(text_.size(), pos_ + field.size() + 1);
    return field;
  }
  std::string Text(size_t width) { return FitText(Next(), width); }

 private:
  std::string_view text_;
  size_t pos_ = 0;
};

void PutField(std::string* out, std::string_view field) {
  out->append(field);
  out->push_back('\t');
}

// A number in decimal, keeping its last `width` digits (100 in two digits is 0).
std::string LastDigits(long value, size_t width) {
  std::string text = StrPrintf("%ld", value);
  if (text.size() <= width) return text;
  text.erase(0, text.size() - width);
  return StrPrintf("%ld", std::strtol(text.c_str(), nullptr, 10));
}

long ToLong(std::string_view text) {
  std::string s(TrimBlanks(text));
  return std::strtol(s.c_str(), nullptr, 10);
}

std::string DateField(const Date& date) {
  return date.empty() ? std::string() : FormatRecordDate(date);
}

Date ParseDateField(std::string_view text) {
  std::optional<Date> date = ParseRecordDate(text);
  return date ? *date : Date{};
}

char CharField(std::string_view text, char if_empty) {
  std::string_view t = TrimBlanks(text);
  return t.empty() ? if_empty : t.front();
}

std::string CharText(char c) {
  return FitText(std::string_view(&c, c == '\0' ? 0 : 1), 1);
}

// "f%d/%d/%d": a missing subasset length is 2, missing flags 0.
NvAssetNoFormat ParseFormatField(std::string_view field) {
  NvAssetNoFormat format;
  std::string text(field.substr(1));
  int values[3] = {6, 2, 0};
  const char* p = text.c_str();
  for (int i = 0; i < 3 && *p != '\0'; ++i) {
    char* end = nullptr;
    long v = std::strtol(p, &end, 10);
    if (end == p) break;
    values[i] = static_cast<int>(std::clamp(v, -1000L, 1000L));
    p = end;
    if (*p != '/') break;
    ++p;
  }
  format.main_length = values[0];
  format.subasset_length = values[1];
  format.flags = values[2];
  // Lengths out of range (a damaged record) are held to what a number can have, so that
  // the keys, the key lengths and the record agree wherever the format is used.
  return format.Normalized();
}

void ReadUserFields(FieldReader& in, NvCompanyRecord* record) {
  long count = ToLong(in.Next());
  for (long i = 0; i < count && !in.at_end(); ++i) {
    std::string name = in.Text(kUserFieldNameWidth);
    std::string value = in.Text(kUserFieldDefaultWidth);
    if (i < kUserFieldCount) record->user_fields[i] = {std::move(name), std::move(value)};
  }
}

void WriteUserFields(std::string* out, const NvCompanyRecord& record) {
  PutField(out, StrPrintf("%d", kUserFieldCount));
  for (const UserFieldDefinition& field : record.user_fields) {
    PutField(out, FitText(field.name, kUserFieldNameWidth));
    PutField(out, FitText(field.default_value, kUserFieldDefaultWidth));
  }
}

// Field 19: digits, "-" and "." only, leading zeros dropped, at most key length characters.
std::string StoredAssetNoField(const NvCompanyRecord& record) {
  std::string kept;
  for (char c : record.stored_asset_no) {
    if ((c >= '0' && c <= '9') || c == '-' || c == '.') kept.push_back(c);
  }
  size_t width = static_cast<size_t>(std::max(0, record.asset_no_format.KeyLength()));
  if (kept.size() > width) kept.erase(0, kept.size() - width);
  size_t first = kept.find_first_not_of('0');
  kept.erase(0, first == std::string::npos ? kept.size() : first);
  return kept;
}

// Company Name through the user fields: the same fields in both layouts.
void WriteSharedFields(std::string* out, const NvCompanyRecord& record) {
  PutField(out, FitText(record.name, kCompanyNameWidth));
  PutField(out, FitText(record.ein, kEinWidth));
  PutField(out, DateField(record.last_closed));
  PutField(out, FormatSchedulesField(record));
  PutField(out, FitText(record.sort_order, kSortOrderWidth));
  PutField(out, LastDigits(record.business_category, 1));
  PutField(out, record.round_dollars ? "Y" : "N");
  PutField(out, CharText(record.mid_quarter_override));
  PutField(out, CharText(record.global_loc_cat));
  WriteUserFields(out, record);
}

void ReadSharedFields(FieldReader& in, NvCompanyRecord* r) {
  r->name = in.Text(kCompanyNameWidth);
  r->ein = in.Text(kEinWidth);
  r->last_closed = ParseDateField(in.Next());
  ParseSchedulesField(in.Next(), r);
  r->sort_order = in.Text(kSortOrderWidth);
  r->business_category = static_cast<int>(ToLong(in.Next()));
  r->round_dollars = CharField(in.Next(), 'N') == 'Y';
  r->mid_quarter_override = CharField(in.Next(), ' ');
  r->global_loc_cat = CharField(in.Next(), ' ');
  ReadUserFields(in, r);
}

}  // namespace

std::string FormatSchedulesField(const NvCompanyRecord& record) {
  std::string field = record.schedule_letters + " ";
  if (field.size() < kScheduleLettersWidth) field.resize(kScheduleLettersWidth, ' ');
  auto put_entry = [&field](std::string_view type, std::string_view name) {
    std::string t(type.substr(0, kScheduleTypeWidth));
    t.resize(kScheduleTypeWidth, ' ');
    std::string n(name.substr(0, kScheduleNameWidth));
    n.resize(kScheduleNameWidth, ' ');
    field += t;
    field += n;
  };
  for (char letter : record.schedule_letters) {
    const ScheduleEntry* entry = record.FindSchedule(letter);
    put_entry(entry ? std::string_view(entry->type) : "",
              entry ? std::string_view(entry->name) : "");
  }
  put_entry("", "");
  return field;
}

void ParseSchedulesField(std::string_view field, NvCompanyRecord* record) {
  size_t blank = field.find(' ');
  std::string_view letters = field.substr(0, blank);
  record->schedule_letters = std::string(letters);
  record->schedules.clear();
  size_t pos = std::max(kScheduleLettersWidth, letters.size() + 1);
  constexpr size_t kEntry = kScheduleTypeWidth + kScheduleNameWidth;
  for (size_t i = 0; i < letters.size(); ++i, pos += kEntry) {
    std::string_view entry = pos < field.size() ? field.substr(pos, kEntry) : std::string_view();
    ScheduleEntry schedule;
    schedule.letter = letters[i];
    schedule.type =
        std::string(TrimBlanks(entry.substr(0, std::min(entry.size(), kScheduleTypeWidth))));
    if (entry.size() > kScheduleTypeWidth) {
      std::string_view name = entry.substr(kScheduleTypeWidth);
      while (!name.empty() && name.back() == ' ') name.remove_suffix(1);
      schedule.name = std::string(name);
    }
    record->schedules.push_back(std::move(schedule));
  }
}

std::string SerializeCompanyRecord(const NvCompanyRecord& record,
                                   const BlockFileCounters& counters) {
  std::string out;
  PutU32(&out, counters.highest_record);
  PutU32(&out, counters.free_head);
  PutU32(&out, counters.free_count);
  out.push_back('\t');
  const NvAssetNoFormat& format = record.asset_no_format;
  if (format.NeedsRecordFields()) {
    PutField(&out, std::string("v") + kRecordVersionText);
    PutField(&out,
             StrPrintf("f%d/%d/%d", format.main_length, format.subasset_length, format.flags));
  }
  PutField(&out, DateField(record.current_year_end));
  PutField(&out, LastDigits(record.months_in_year, 2));
  PutField(&out, FitText(record.reserved, kReservedTextWidth));
  WriteSharedFields(&out, record);
  PutField(&out, StoredAssetNoField(record));
  PutField(&out, TrimBlanks(record.permissions));
  PutField(&out, FitText(record.misc_codes, kMiscCodesWidth));
  PutField(&out, StrPrintf("%s%d)", kLogFlagsPrefix, record.logging_flags));
  PutField(&out, "0");
  PutField(&out, "0");
  return out;
}

ParsedCompanyRecord ParseCompanyRecord(std::string_view bytes) {
  ParsedCompanyRecord parsed;
  NvCompanyRecord& r = parsed.record;
  if (bytes.size() >= kCountersBytes) {
    const auto* b = reinterpret_cast<const uint8_t*>(bytes.data());
    parsed.counters = {DecodeU32(b), DecodeU32(b + 4), DecodeU32(b + 8)};
  }
  bytes.remove_prefix(std::min(bytes.size(), kCountersBytes + 1));
  // The data of the last block is padded with zero bytes; the record ends before them.
  if (size_t nul = bytes.find('\0'); nul != std::string_view::npos) bytes = bytes.substr(0, nul);
  FieldReader in(bytes);
  if (in.Peek().starts_with("v")) {
    r.version = std::string(in.Next().substr(1));
    parsed.newer_version = IsNewerVersion(r.version);
    if (in.Peek().starts_with("f")) r.asset_no_format = ParseFormatField(in.Next());
  } else if (in.Peek().starts_with("f")) {
    r.asset_no_format = ParseFormatField(in.Next());
  }
  r.current_year_end = ParseDateField(in.Next());
  r.months_in_year = static_cast<int>(ToLong(in.Next()));
  r.reserved = in.Text(kReservedTextWidth);
  ReadSharedFields(in, &r);
  r.stored_asset_no = std::string(TrimBlanks(in.Next()));
  r.permissions = std::string(TrimBlanks(in.Next()));
  r.misc_codes = in.Text(kMiscCodesWidth);
  r.logging_flags = kLoggingPartial;
  // A field cut short by the ten-block limit has lost its ")" and is not trusted.
  if (std::string_view flags = in.Peek();
      flags.starts_with(kLogFlagsPrefix) && flags.ends_with(")")) {
    r.logging_flags = static_cast<int32_t>(ToLong(flags.substr(sizeof kLogFlagsPrefix - 1)));
  }
  return parsed;
}

ParsedCompanyRecord ParseOldCompanyRecord(std::string_view bytes) {
  ParsedCompanyRecord parsed;
  NvCompanyRecord& r = parsed.record;
  if (bytes.size() >= kOldCountersBytes) {
    const auto* b = reinterpret_cast<const uint8_t*>(bytes.data());
    parsed.counters = {DecodeU16(b), DecodeU16(b + 2), DecodeU16(b + 4)};
  }
  bytes.remove_prefix(std::min(bytes.size(), kOldCountersBytes + 1));
  if (size_t nul = bytes.find('\0'); nul != std::string_view::npos) bytes = bytes.substr(0, nul);
  FieldReader in(bytes);
  r.current_year_end = ParseDateField(in.Next());
  r.months_in_year = static_cast<int>(ToLong(in.Next()));
  ReadSharedFields(in, &r);
  r.misc_codes = in.Text(kMiscCodesWidth);
  return parsed;
}

std::string SerializeOldCompanyRecord(const NvCompanyRecord& record,
                                      const BlockFileCounters& counters) {
  std::string out;
  PutU16(&out, static_cast<uint16_t>(counters.highest_record));
  PutU16(&out, static_cast<uint16_t>(counters.free_head));
  PutU16(&out, static_cast<uint16_t>(counters.free_count));
  out.push_back('\t');
  PutField(&out, DateField(record.current_year_end));
  PutField(&out, LastDigits(record.months_in_year, 2));
  WriteSharedFields(&out, record);
  PutField(&out, FitText(record.misc_codes, kMiscCodesWidth));
  return out;
}

bool IsNewerVersion(std::string_view version) {
  const long mine[3] = {kProgramVersionMajor, kProgramVersionMinor, kProgramVersionBuild};
  std::string text(version.substr(0, version.find('/')));
  const char* p = text.c_str();
  for (int i = 0; i < 3; ++i) {
    char* end = nullptr;
    long v = std::strtol(p, &end, 10);
    if (end == p) v = 0;
    if (v != mine[i]) return v > mine[i];
    p = end;
    if (*p != '.') return false;
    ++p;
  }
  return false;
}

int MonthsInCurrentYear(const Date& last_closed, const Date& current_year_end) {
  int months = current_year_end.month - last_closed.month;
  if (months < 1) months += 12;
  if (months < 1 || months > 12) months = 12;
  return months;
}

void CorrectYearEnd(NvCompanyRecord* record) {
  if (!IsValidDate(record->last_closed)) return;
  Date limit = OneYearAfter(record->last_closed);
  if (record->current_year_end <= record->last_closed || record->current_year_end > limit) {
    record->current_year_end = limit;
  }
}

std::string ScheduleLettersOf(const std::vector<ScheduleEntry>& schedules) {
  std::string letters;
  for (const ScheduleEntry& schedule : schedules) {
    if (schedule.letter != ' ' && schedule.letter != '\0') letters += schedule.letter;
  }
  return letters;
}

void InitializeDerivedValues(NvCompanyRecord* record) {
  record->schedule_letters = ScheduleLettersOf(record->schedules);
  CorrectYearEnd(record);
  record->months_in_year = MonthsInCurrentYear(record->last_closed, record->current_year_end);
  record->asset_no_format = record->asset_no_format.Normalized();
}

AssetRecordFormat AssetRecordFormatOf(const NvCompanyRecord& company) {
  return AssetRecordFormat{company.asset_no_format, company.round_dollars, company.schedule_letters,
                           company.sort_order};
}

const ScheduleEntry* NvCompanyRecord::FindSchedule(char letter) const {
  return FindScheduleEntry(schedules, letter);
}

}  // namespace nv
