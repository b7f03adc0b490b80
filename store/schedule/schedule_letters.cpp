#include "store/schedule/schedule_letters.h"

#include "base/ascii.h"
#include "store/schedule/schedule_definitions.h"

namespace nv {
namespace {

bool Holds(std::string_view letters, char letter) {
  return letters.find(letter) != std::string_view::npos;
}

// Moves the letter at `from` to the place right after the letter at `after` (from < after);
// the letters between shift left.
void MoveAfter(std::string* letters, size_t from, size_t after) {
  const char moving = (*letters)[from];
  letters->erase(from, 1);
  letters->insert(after, 1, moving);
}

bool IsAceSchedule(const CompanySchedules& company) {
  std::optional<ScheduleDefinition> c = LookupScheduleDefinition(company, 'C', kAllScheduleSources);
  return c && c->type == "C";
}

}  // namespace

bool HasRepeatedLetters(std::string_view letters) {
  for (size_t i = 0; i < letters.size(); ++i) {
    if (letters[i] != ' ' && letters.find(letters[i], i + 1) != std::string_view::npos) {
      return true;
    }
  }
  return false;
}

std::optional<std::string> ArrangeAceLetters(std::string letters, size_t field_width) {
  if (!Holds(letters, 'T') || !Holds(letters, 'A')) {
    // Room is wanted for both letters, even when only one of them is missing.
    if (letters.size() + 2 > field_width) return std::nullopt;
    if (!Holds(letters, 'A')) {
      const size_t t = letters.find('T');
      letters.insert(t != std::string::npos ? t : letters.find('C'), 1, 'A');
    }
    if (!Holds(letters, 'T')) letters.insert(letters.find('A'), 1, 'T');
  }
  if (letters.find('A') < letters.find('T')) {
    MoveAfter(&letters, letters.find('A'), letters.find('T'));
  }
  if (letters.find('C') < letters.find('A')) {
    MoveAfter(&letters, letters.find('C'), letters.find('A'));
  }
  return letters;
}

std::string RemovedLetters(std::string_view stored, std::string_view letters) {
  std::string removed;
  for (char letter : stored) {
    if (letter != ' ' && !Holds(letters, letter) && !Holds(removed, letter)) removed += letter;
  }
  return removed;
}

ScheduleLettersEdit::ScheduleLettersEdit(CompanySchedules company, bool existing_company,
                                         size_t field_width)
    : company_(std::move(company)),
      existing_company_(existing_company),
      field_width_(field_width) {}

std::optional<std::string> ScheduleLettersEdit::Leave(std::string_view text, Ui& ui) {
  std::string letters = AsciiUpper(TrimBlanks(text));
  if (HasRepeatedLetters(letters)) {
    ui.Message(kRepeatedLettersMessage);
    return std::nullopt;
  }
  if (Holds(letters, 'C') && IsAceSchedule(company_)) {
    std::optional<std::string> arranged = ArrangeAceLetters(letters, field_width_);
    if (!arranged) {
      ui.Message(kAceNeedsTaxAndAmtMessage);
      return std::nullopt;
    }
    letters = std::move(*arranged);
  }
  if (existing_company_ && !removal_warned_ &&
      !RemovedLetters(TrimBlanks(company_.letters), letters).empty()) {
    removal_warned_ = true;
    ui.Message(kRemovingSchedulesWarning);
  }
  return letters;
}

bool ScheduleLettersEdit::ConfirmSave(std::string_view letters, Ui& ui) const {
  if (!existing_company_) return true;
  const std::string stored(TrimBlanks(company_.letters));
  const std::string now(TrimBlanks(letters));
  const std::string removed = RemovedLetters(stored, now);
  if (removed.empty()) return true;
  std::string names;
  for (char letter : removed) {
    if (!names.empty()) names += ", ";
    names += CompanyScheduleName(company_, letter);
  }
  return AskYes(ui, DefaultButton::kNo,
                "CAUTION: Depreciation Schedules\nhave been changed from %s to %s.\nData "
                "currently in the following schedules will be lost.\n%s\n    Continue?",
                stored.c_str(), now.c_str(), names.c_str());
}

}  // namespace nv
