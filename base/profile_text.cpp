#include "base/profile_text.h"

#include "base/ascii.h"
#include "base/file_util.h"

namespace nv {
namespace {

// A stray CR counts as a blank, so that a file with CR CR LF line ends still reads.
bool IsBlank(char c) {
  return c == ' ' || c == '\t' || c == '\r';
}

std::string_view Trim(std::string_view s) {
  while (!s.empty() && IsBlank(s.front())) s.remove_prefix(1);
  while (!s.empty() && IsBlank(s.back())) s.remove_suffix(1);
  return s;
}

// The section name when the line is a header; without its "]" the line is no header.
std::optional<std::string_view> HeaderName(std::string_view line) {
  line = Trim(line);
  if (line.empty() || line.front() != '[') return std::nullopt;
  line.remove_prefix(1);
  const size_t close = line.find(']');
  if (close == std::string_view::npos) return std::nullopt;
  return Trim(line.substr(0, close));
}

struct Entry {
  std::string_view key;
  std::string_view value;
};

// The entry when the line is "key=value" with a non-empty key. A comment (";k=v") is an
// entry too, one that a listing leaves out, as the system's reader does.
std::optional<Entry> EntryOf(std::string_view line) {
  std::string_view trimmed = Trim(line);
  if (trimmed.empty() || trimmed.front() == '[') return std::nullopt;
  size_t eq = trimmed.find('=');
  if (eq == std::string_view::npos) return std::nullopt;
  std::string_view key = Trim(trimmed.substr(0, eq));
  if (key.empty()) return std::nullopt;
  return Entry{key, Trim(trimmed.substr(eq + 1))};
}

bool HasLineBreak(std::string_view s) {
  return s.find('\n') != std::string_view::npos || s.find('\r') != std::string_view::npos;
}

// Whether key=value can go into the section without the file reading back differently.
bool CanWrite(std::string_view section, std::string_view key, std::string_view value) {
  if (section.empty() || key.empty()) return false;
  if (HasLineBreak(section) || HasLineBreak(key) || HasLineBreak(value)) return false;
  if (section.find(']') != std::string_view::npos) return false;
  return key.find('=') == std::string_view::npos && key.front() != '[' && key.front() != ';';
}

}  // namespace

bool CanWriteProfileEntry(std::string_view section, std::string_view key, std::string_view value) {
  return CanWrite(Trim(section), Trim(key), value);
}

ProfileText ProfileText::Parse(std::string_view bytes) {
  ProfileText text;
  text.lines_ = SplitTextLines(bytes);
  return text;
}

std::string ProfileText::Serialize() const {
  std::string out;
  for (const std::string& line : lines_) {
    out += line;
    out += "\r\n";
  }
  return out;
}

size_t ProfileText::SectionEnd(size_t header) const {
  size_t i = header + 1;
  while (i < lines_.size() && !HeaderName(lines_[i])) ++i;
  return i;
}

std::optional<ProfileText::Range> ProfileText::FindSection(std::string_view section,
                                                           size_t from) const {
  section = Trim(section);
  for (size_t i = from; i < lines_.size(); ++i) {
    std::optional<std::string_view> name = HeaderName(lines_[i]);
    if (name && EqualIgnoringCase(*name, section)) return Range{i, SectionEnd(i)};
  }
  return std::nullopt;
}

std::optional<std::string> ProfileText::Find(std::string_view section, std::string_view key) const {
  std::optional<Range> range = FindSection(section);
  if (!range) return std::nullopt;
  key = Trim(key);
  for (size_t i = range->begin + 1; i < range->end; ++i) {
    std::optional<Entry> entry = EntryOf(lines_[i]);
    if (entry && EqualIgnoringCase(entry->key, key)) return std::string(entry->value);
  }
  return std::nullopt;
}

std::vector<std::string> ProfileText::Sections() const {
  std::vector<std::string> names;
  for (const std::string& line : lines_) {
    std::optional<std::string_view> name = HeaderName(line);
    if (name) names.emplace_back(*name);
  }
  return names;
}

std::vector<std::string> ProfileText::Keys(std::string_view section) const {
  std::vector<std::string> keys;
  std::optional<Range> range = FindSection(section);
  if (!range) return keys;
  for (size_t i = range->begin + 1; i < range->end; ++i) {
    std::optional<Entry> entry = EntryOf(lines_[i]);
    if (entry && entry->key.front() != ';') keys.emplace_back(entry->key);
  }
  return keys;
}

bool ProfileText::Set(std::string_view section, std::string_view key, std::string_view value) {
  section = Trim(section);
  key = Trim(key);
  if (!CanWrite(section, key, value)) return false;
  std::string line = std::string(key) + "=" + std::string(value);
  std::optional<Range> range = FindSection(section);
  if (!range) {
    lines_.push_back("[" + std::string(section) + "]");
    lines_.push_back(std::move(line));
    return true;
  }
  size_t insert_at = range->begin + 1;
  for (size_t i = range->begin + 1; i < range->end; ++i) {
    std::optional<Entry> entry = EntryOf(lines_[i]);
    if (!entry) continue;
    if (EqualIgnoringCase(entry->key, key)) {
      lines_[i] = std::move(line);
      return true;
    }
    insert_at = i + 1;
  }
  lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(insert_at), std::move(line));
  return true;
}

bool ProfileText::RemoveKey(std::string_view section, std::string_view key) {
  std::optional<Range> range = FindSection(section);
  if (!range) return false;
  key = Trim(key);
  for (size_t i = range->begin + 1; i < range->end; ++i) {
    std::optional<Entry> entry = EntryOf(lines_[i]);
    if (entry && EqualIgnoringCase(entry->key, key)) {
      lines_.erase(lines_.begin() + static_cast<std::ptrdiff_t>(i));
      return true;
    }
  }
  return false;
}

bool ProfileText::RemoveSection(std::string_view section) {
  std::optional<Range> range = FindSection(section);
  if (!range) return false;
  lines_.erase(lines_.begin() + static_cast<std::ptrdiff_t>(range->begin),
               lines_.begin() + static_cast<std::ptrdiff_t>(range->end));
  return true;
}

std::string ProfileValueForRead(std::string_view raw, size_t buffer_size) {
  if (raw.size() >= 2 && (raw.front() == '"' || raw.front() == '\'') && raw.back() == raw.front()) {
    raw = raw.substr(1, raw.size() - 2);
  }
  if (buffer_size == 0) return std::string();
  return std::string(raw.substr(0, buffer_size - 1));
}

}  // namespace nv
