// A company's schedules as its company record holds them, and what the schedule modules
// need to know of a company: where its definitions are stored and which schedules it has.
// The schedule modules take this rather than the company, so that they stay below it.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <vector>

namespace nv {

inline constexpr int kMaxSchedules = 25;
inline constexpr size_t kScheduleTypeWidth = 2;
inline constexpr size_t kScheduleNameWidth = 10;

// One schedule (book) of the company.
struct ScheduleEntry {
  char letter = ' ';
  std::string type;  // 1 or 2 characters: "B", "T", ... or a state code "CA"
  std::string name;  // at most 10 characters
  friend bool operator==(const ScheduleEntry&, const ScheduleEntry&) = default;
};

// The entry of a letter, or nullptr.
inline const ScheduleEntry* FindScheduleEntry(std::span<const ScheduleEntry> entries,
                                              char letter) {
  for (const ScheduleEntry& entry : entries) {
    if (entry.letter == letter) return &entry;
  }
  return nullptr;
}

struct CompanySchedules {
  std::string settings_file;               // the company's NUMBER.ini
  std::string installation_settings_file;  // the installation's KELNVWIN.INI
  std::string letters;                     // the record's schedule letters, in order
  std::vector<ScheduleEntry> entries;      // the record's schedules
};

}  // namespace nv
