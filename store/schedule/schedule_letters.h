// Rules for a company's string of schedule letters, as the company edit screen applies
// them: when the user leaves the schedules field (ScheduleLettersEdit::Leave) and when the
// company is saved (ScheduleLettersEdit::ConfirmSave).
//
//   - no letter may stand twice (blanks aside);
//   - an ACE schedule (letter C whose definition in force has type C) needs Tax (T) and AMT
//     (A): missing ones are inserted when the field has room, and the three are arranged
//     so that T comes before A and A before C;
//   - removing letters of a saved company loses their data: the user is warned once per
//     edit, and asked to confirm when the company is saved.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "base/ui.h"
#include "store/schedule/schedule_entry.h"

namespace nv {

inline constexpr char kRepeatedLettersMessage[] = "Do not repeat letters.";
inline constexpr char kAceNeedsTaxAndAmtMessage[] =
    "ACE cannot be used without Tax and AMT schedules.";
inline constexpr char kRemovingSchedulesWarning[] =
    "Removing Schedules will cause data\nfor those Schedules to be lost.";

// True when a letter other than a blank stands twice.
[[nodiscard]] bool HasRepeatedLetters(std::string_view letters);

// The letters with T and A inserted where missing and T, A and C put in that order; nullopt
// when T or A is missing and the field (field_width characters) has no room for both.
// REQUIRES: letters holds C.
std::optional<std::string> ArrangeAceLetters(std::string letters, size_t field_width);

// The letters of `stored` that `letters` no longer holds, in stored order, blanks aside.
std::string RemovedLetters(std::string_view stored, std::string_view letters);

// One edit of a company's letters, against the letters the company record holds.
class ScheduleLettersEdit {
 public:
  // `company`: the company as saved. existing_company: the company has been saved before,
  // so its schedules hold data.
  ScheduleLettersEdit(CompanySchedules company, bool existing_company, size_t field_width);

  // Leaving the field: the letters trimmed, upper-cased and arranged as the rules want
  // them, or nullopt after telling the user why they cannot stand.
  std::optional<std::string> Leave(std::string_view letters, Ui& ui);

  // Saving the company with these letters: true to go on. When letters of the saved
  // company are gone, the user must confirm losing their data.
  [[nodiscard]] bool ConfirmSave(std::string_view letters, Ui& ui) const;

 private:
  CompanySchedules company_;
  bool existing_company_;
  size_t field_width_;
  bool removal_warned_ = false;
};

}  // namespace nv
