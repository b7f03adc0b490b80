#include "import/dbs/dbs_reader.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <type_traits>
#include <variant>

#include "base/file.h"
#include "store/asset/asset_text_layout.h"

namespace nv {
namespace {

constexpr size_t kDelimitedDateWidth = 10;
constexpr size_t kFixedDateWidth = 8;

bool IsBlank(char c) {
  return c == ' ' || c == '\t' || c == '\r';
}

std::string_view TrimRight(std::string_view text) {
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

std::string_view Trim(std::string_view text) {
  text = TrimRight(text);
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  return text;
}

int ExpandYear(int year) {
  return year < 30 ? 2000 + year : 1900 + year;
}

// Whole digits only: the value, or -1.
int Digits(std::string_view text) {
  if (text.empty() || text.size() > 9) return -1;
  int value = 0;
  for (char c : text) {
    if (c < '0' || c > '9') return -1;
    value = value * 10 + (c - '0');
  }
  return value;
}

// Reads the fields of one line in order. A field's text stays valid until the next field
// is read.
class FieldCursor {
 public:
  FieldCursor(std::string_view line, char delimiter) : line_(line), delimiter_(delimiter) {}

  std::string_view Next(size_t width, bool date) { return Read(width, date, &position_); }
  std::string_view Peek(size_t width, bool date) {
    size_t at = position_;
    return Read(width, date, &at);
  }

 private:
  std::string_view Read(size_t width, bool date, size_t* at) {
    const size_t n = line_.size();
    size_t pos = std::min(*at, n);
    if (delimiter_ == '\0') {
      if (date) width = kFixedDateWidth;
      *at = pos + width;
      return line_.substr(pos, width);
    }
    if (date) width = kDelimitedDateWidth;
    if (pos < n && line_[pos] == '"') {
      quoted_.clear();
      ++pos;
      while (pos < n) {
        if (line_[pos] == '"') {
          if (pos + 1 >= n || line_[pos + 1] == delimiter_) {
            pos += 2;  // the closing quote and the delimiter after it
            break;
          }
          ++pos;  // a quote inside: dropped, the character after it kept
        }
        if (quoted_.size() < width) quoted_.push_back(line_[pos]);
        ++pos;
      }
      *at = pos;
      return quoted_;
    }
    size_t end = line_.find(delimiter_, pos);
    if (end == std::string_view::npos) end = n;
    *at = end + 1;
    return line_.substr(pos, std::min(end - pos, width));
  }

  std::string_view line_;
  char delimiter_;
  size_t position_ = 0;
  std::string quoted_;
};

NvAssetNo ReadNumber(std::string_view text, const NvAssetNoFormat& format) {
  if (Trim(text).empty()) return NvAssetNo(format);
  return NvAssetNo::Parse(text, format);
}

template <typename T>
void Assign(T& target, std::string_view text, const NvAssetNoFormat& format, bool fixed) {
  if constexpr (std::is_same_v<T, std::string>) {
    target = std::string(fixed ? TrimRight(text) : text);
  } else if constexpr (std::is_same_v<T, double>) {
    target = ReadDbsAmount(text);
  } else if constexpr (std::is_same_v<T, int>) {
    target = ReadDbsInteger(text);
  } else if constexpr (std::is_same_v<T, bool>) {
    target = Trim(text) == "Y";
  } else if constexpr (std::is_same_v<T, char>) {
    target = text.empty() ? ' ' : text.front();
  } else if constexpr (std::is_same_v<T, Date>) {
    target = ReadDbsDate(text);
  } else if constexpr (std::is_same_v<T, YearsMonths>) {
    target = ReadDbsLife(text);
  } else {
    static_assert(std::is_same_v<T, NvAssetNo>);
    target = ReadNumber(text, format);
  }
}

// The text of the Asset No. field of a record line.
std::string AssetNumberText(std::string_view line, char delimiter, size_t number_width) {
  FieldCursor cursor(line, delimiter);
  for (const TextRecordField& field : TextRecordLayout()) {
    const bool number = field.kind == TextFieldKind::kAssetNumber;
    const std::string_view text =
        cursor.Next(number ? number_width : static_cast<size_t>(field.width),
                    field.kind == TextFieldKind::kDate);
    if (number) return std::string(text);
  }
  return {};
}

// Characters of a fixed record other than its two asset numbers.
size_t FixedLengthWithoutNumbers() {
  size_t length = 0;
  for (const TextRecordField& field : TextRecordLayout()) {
    if (field.width != kAssetNumberWidth) length += static_cast<size_t>(field.width);
  }
  return length;
}

}  // namespace

NvAssetNoFormat GuessDbsAssetNoFormat(DbsLineReader lines, char delimiter) {
  NvAssetNoFormat format;
  size_t number_width = 64;  // delimited: wide enough for any number
  int main_length = 0;
  int subasset_length = 0;
  int flags = 0;
  for (bool first = true; std::optional<std::string_view> line = lines.Next(); first = false) {
    if (first && delimiter == '\0') {
      // The first record's length, less every other field, is twice the number's length.
      const size_t rest = FixedLengthWithoutNumbers();
      if (line->size() <= rest || (line->size() - rest) % 2 != 0) return format;
      number_width = (line->size() - rest) / 2;
      const NvAssetNoFormat widest{NvAssetNoFormat::kMaxMainLength,
                                   NvAssetNoFormat::kMaxSubassetLength, 0};
      if (number_width < 3 || number_width > static_cast<size_t>(widest.KeyLength())) {
        return format;
      }
    }
    const std::string text = AssetNumberText(*line, delimiter, number_width);
    const size_t dot = text.find('.');
    if (dot == std::string::npos) continue;
    const std::string_view main = Trim(std::string_view(text).substr(0, dot));
    for (char c : main) {
      if (c == '-') flags |= NvAssetNoFormat::kDashes;
      if ((c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z')) flags |= NvAssetNoFormat::kLetters;
    }
    const int main_width = static_cast<int>(delimiter == '\0' ? dot : main.size());
    main_length = std::max(main_length, main_width);
    subasset_length =
        std::max(subasset_length, static_cast<int>(Trim(text.substr(dot + 1)).size()));
  }
  if (main_length == 0) return format;
  format.main_length = std::min(std::max(main_length, delimiter == '\0' ? 1 : 6),
                                static_cast<int>(NvAssetNoFormat::kMaxMainLength));
  format.subasset_length =
      std::clamp(subasset_length, 1, static_cast<int>(NvAssetNoFormat::kMaxSubassetLength));
  format.flags = flags;
  return format;
}

std::optional<DbsLineReader> DbsLineReader::OpenFile(const std::string& path) {
  auto file = std::make_shared<std::optional<File>>(File::Open(path, File::Mode::kRead));
  if (!*file) return std::nullopt;
  auto offset = std::make_shared<uint64_t>(0);
  return DbsLineReader([file, offset](char* buffer, size_t size) -> int64_t {
    const int64_t got = (**file).ReadSomeAt(*offset, buffer, size);
    if (got > 0) *offset += static_cast<uint64_t>(got);
    return got;
  });
}

void DbsLineReader::Fill(size_t want) {
  while (!at_end_ && buffer_.size() - position_ < want) {
    // Drop what was consumed, then append a piece.
    owned_.erase(0, position_);
    consumed_ += position_;
    position_ = 0;
    const size_t had = owned_.size();
    owned_.resize(had + piece_);
    const int64_t got = read_(owned_.data() + had, piece_);
    owned_.resize(had + static_cast<size_t>(std::max<int64_t>(got, 0)));
    if (got <= 0) {
      at_end_ = true;
      failed_ = got < 0;
    }
    buffer_ = owned_;
  }
}

std::optional<std::string_view> DbsLineReader::Next() {
  for (;;) {
    // A whole line, a feed included, is at most kTextRecordMaxLength + 1 bytes.
    size_t feed = buffer_.find('\n', position_);
    if (feed == std::string_view::npos || feed - position_ > kTextRecordMaxLength) {
      Fill(kTextRecordMaxLength + 1);
      feed = buffer_.find('\n', position_);
    }
    if (position_ >= buffer_.size()) return std::nullopt;
    const std::string_view rest = buffer_.substr(position_);
    feed = feed == std::string_view::npos ? feed : feed - position_;
    std::string_view line = rest.substr(0, std::min(feed, kTextRecordMaxLength));
    const bool whole = line.size() == (feed == std::string_view::npos ? rest.size() : feed);
    position_ += line.size() + (whole && feed != std::string_view::npos ? 1 : 0);
    ++line_number_;
    if (whole && !line.empty() && line.back() == '\r') line.remove_suffix(1);
    if (line.find_first_not_of(' ') == std::string_view::npos) continue;
    return line;
  }
}

double ReadDbsAmount(std::string_view text) {
  text = Trim(text);
  char copy[32];  // amounts are cut to 11 characters; a longer text reads as its start
  const size_t length = std::min(text.size(), sizeof copy - 1);
  text.copy(copy, length);
  copy[length] = '\0';
  const double value = std::strtod(copy, nullptr);
  return std::isfinite(value) ? value : 0;
}

int ReadDbsInteger(std::string_view text) {
  text = Trim(text);
  bool negative = false;
  if (!text.empty() && (text.front() == '-' || text.front() == '+')) {
    negative = text.front() == '-';
    text.remove_prefix(1);
  }
  long long value = 0;
  for (char c : text) {
    if (c < '0' || c > '9') break;
    value = std::min<long long>(value * 10 + (c - '0'), INT_MAX);
  }
  return static_cast<int>(negative ? -value : value);
}

Date ReadDbsDate(std::string_view text) {
  std::string t;
  for (char c : text) {
    if (IsBlank(c)) continue;
    t.push_back(c == '-' ? '/' : c);
  }
  Date date;
  if (t.find('/') != std::string::npos) {
    int month = 0, day = 0, year = 0;
    if (std::sscanf(t.c_str(), "%d/%d/%d", &month, &day, &year) != 3) return {};
    if (month == 0 && day == 0) year = 0;
    if (year >= 0 && year < 100) year = ExpandYear(year);
    date = {month, day, year};
  } else if (t.size() == 6 || t.size() == 8) {
    const int month = Digits(std::string_view(t).substr(0, 2));
    const int day = Digits(std::string_view(t).substr(2, 2));
    int year = Digits(std::string_view(t).substr(4));
    if (month < 0 || day < 0 || year < 0) return {};
    if (t.size() == 6) year = ExpandYear(year);
    date = {month, day, year};
  } else {
    return {};
  }
  if (date.month == 0 || date.day == 0 || !IsValidDate(date)) return {};
  return date;
}

YearsMonths ReadDbsLife(std::string_view text) {
  YearsMonths life;
  life.years = ReadDbsInteger(text);
  const size_t dash = text.find('-');
  if (dash != std::string_view::npos) life.months = ReadDbsInteger(text.substr(dash + 1));
  return life;
}

DbsRecordInfo ReadDbsRecord(std::string_view line, char delimiter, const NvAssetNoFormat& format,
                            std::string_view schedule_letters, NvAsset* asset) {
  asset->Clear(schedule_letters);
  DbsRecordInfo info;
  const bool fixed = delimiter == '\0';
  const size_t number_width = static_cast<size_t>(format.KeyLength());
  FieldCursor cursor(line, delimiter);
  std::string slot_letters;
  std::array<NvAssetSchedule, kTextRecordSlots> slots;
  std::array<bool, kTextRecordSlots> listed{};

  for (const TextRecordField& field : TextRecordLayout()) {
    const size_t width =
        field.width == kAssetNumberWidth ? number_width : static_cast<size_t>(field.width);
    const bool date = field.kind == TextFieldKind::kDate;
    if (field.slot == 0 && info.older_layout &&
        (field.block_start || field.role == TextFieldRole::kListedFlag)) {
      continue;
    }
    if (field.slot == 0 && field.block_start && ReadDbsInteger(cursor.Peek(width, false)) == 0) {
      info.older_layout = true;
      slots[0].method = ReadDbsInteger(asset->user_fields[3]);
      listed[0] = !asset->user_fields[4].empty() && asset->user_fields[4].front() == 'Y';
      asset->user_fields[3].clear();
      asset->user_fields[4].clear();
      continue;
    }
    const std::string_view text = cursor.Next(width, date);
    NvAssetSchedule* schedule = field.slot >= 0 ? &slots[field.slot] : nullptr;
    switch (field.role) {
      case TextFieldRole::kSlotLetters:
        slot_letters = TrimRight(text);
        break;
      case TextFieldRole::kUserField:
        Assign(asset->user_fields[field.index], text, format, fixed);
        break;
      case TextFieldRole::kListedFlag:
        listed[field.slot] = Trim(text) == "Y";
        break;
      case TextFieldRole::kAssetType:
        Assign(schedule->asset_type, text, format, fixed);
        break;
      case TextFieldRole::kTransferredTo:
        Assign(
            asset->disposal_code == kDisposalExchanged ? asset->traded_to : asset->transferred_to,
            text, format, fixed);
        break;
      case TextFieldRole::kMember:
        if (schedule != nullptr) {
          std::visit(
              [&](auto member) {
                if constexpr (!std::is_same_v<decltype(member), std::monostate>) {
                  Assign(schedule->*member, text, format, fixed);
                }
              },
              field.schedule_member);
        } else {
          std::visit(
              [&](auto member) {
                if constexpr (!std::is_same_v<decltype(member), std::monostate>) {
                  Assign(asset->*member, text, format, fixed);
                }
              },
              field.asset_member);
        }
        break;
    }
  }

  std::string placed;
  for (size_t i = 0; i < slot_letters.size() && i < slots.size(); ++i) {
    NvAssetSchedule& slot = slots[i];
    if (listed[i]) slot.asset_type.push_back('L');
    const char letter = slot_letters[i];
    NvAssetSchedule* schedule = asset->Schedule(letter);
    if (schedule != nullptr && placed.find(letter) == std::string::npos) {
      *schedule = std::move(slot);
      placed.push_back(letter);
    } else if (slot.method != kMethodNa && slot.method != 0 && letter != ' ') {
      info.dropped_letters.push_back(letter);
    }
  }
  return info;
}

}  // namespace nv
