// A profile (INI) file held in memory as its lines, with the Windows profile-string rules:
//   - "[name]" starts a section (blanks around the line and the name ignored; a line
//     without "]" is no header); lines before the first section belong to none;
//   - "key=value" is an entry (the first "=" splits; blanks around key and value ignored);
//     a line starting with ";" is a comment, which listings leave out but a read of that
//     very name finds; other lines are kept but carry nothing;
//   - section and key names compare ignoring ASCII case; the first matching section and
//     within it the first matching key are the ones that count for reads, writes and
//     deletes; listings give every header and every entry name as the file has them;
//   - edits change only the lines they concern; every other line stays byte for byte.
// Lines are kept without their line ends; Serialize ends every line with CR LF.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nv {

class ProfileText {
 public:
  // Accepts any bytes: lines end at LF, one CR before the LF is dropped.
  static ProfileText Parse(std::string_view bytes);
  std::string Serialize() const;

  // The trimmed value as written in the file (quotes still on), or nullopt.
  std::optional<std::string> Find(std::string_view section, std::string_view key) const;
  // Section names in file order, a name given twice listed twice.
  std::vector<std::string> Sections() const;
  // Key names of the first matching section in file order, comments left out.
  std::vector<std::string> Keys(std::string_view section) const;

  // Sets key=value in the first matching section, adding the key at the end of the
  // section's entries or the section at the end of the text (right after the last line,
  // as the system's writer does: no blank line is added). False (and nothing changed)
  // when a name is empty after trimming, a name or the value holds a line break, the key
  // holds "=" or starts with "[" or ";", or the section holds "]".
  [[nodiscard]] bool Set(std::string_view section, std::string_view key, std::string_view value);
  // Removes the first entry of the key in the first matching section. True if a line went.
  [[nodiscard]] bool RemoveKey(std::string_view section, std::string_view key);
  // Removes the first matching section with all its lines. True if a line went.
  [[nodiscard]] bool RemoveSection(std::string_view section);

  const std::vector<std::string>& lines() const { return lines_; }

 private:
  struct Range {
    size_t begin;  // the header line
    size_t end;    // one past the section's last line
  };
  std::optional<Range> FindSection(std::string_view section, size_t from = 0) const;
  size_t SectionEnd(size_t header) const;

  std::vector<std::string> lines_;
};

// Whether Set would take key=value for the section (names trimmed first); the same rules
// guard writes that go through the system's profile functions.
bool CanWriteProfileEntry(std::string_view section, std::string_view key, std::string_view value);

// What a read hands back for a raw value: one pair of enclosing double or single quotes
// removed, then cut to buffer_size - 1 characters (nothing when buffer_size is 0).
std::string ProfileValueForRead(std::string_view raw, size_t buffer_size);

}  // namespace nv
