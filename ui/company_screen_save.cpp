// The company screen's save: the rules that look at the whole record, the questions of
// saving, and the change-log entry afterwards.
#include "base/str_format.h"
#include "store/company/change_log.h"
#include "ui/company_record_rules.h"
#include "ui/company_screen.h"
#include "ui/refused_features.h"

namespace nv {

int CompanyScreen::Save() {
  if (!AskYes(ui_, DefaultButton::kYes, "%s",
              new_company_ ? kSaveNewCompanyQuestion : kSaveChangesQuestion)) {
    return kCompanyScreenStays;
  }
  const bool passed =
      CheckDates() && CheckScheduleLetters() && CheckSortOrderChange() && CheckFormatChange();
  Refresh();
  if (!passed) return kCompanyScreenStays;
  // A logging level the screen does not offer is shown as Partial and saved as Partial.
  const int32_t flags = record_.logging_flags;
  if (flags != kLoggingNone && flags != kLoggingDetailed) record_.logging_flags = kLoggingPartial;
  // The company's lists go with the record: each is held under the saved global choice.
  LocCatListUnderChoice(kLocations);
  LocCatListUnderChoice(kCategories);
  company_.record() = record_;
  return kCompanyScreenSave;
}

// Each date was checked when it was left, but Last Closed may have moved since the year end
// was entered, and the election depends on both.
bool CompanyScreen::CheckDates() {
  if (const char* problem = YearEndProblem(record_.last_closed, record_.current_year_end)) {
    ui_.Message(problem);
    return false;
  }
  if (record_.mid_quarter_override == 'E' &&
      !ElectionAllowed(record_.last_closed, record_.current_year_end)) {
    ui_.Message(kElectionMessage);
    return false;
  }
  return true;
}

bool CompanyScreen::CheckScheduleLetters() {
  return letters_edit_.ConfirmSave(record_.schedule_letters, ui_);
}

// The sort index of an existing company is keyed by its sort order, and this program never
// rebuilds index files: the user was warned when the field was left, and the save is
// refused with the old order back on the screen.
bool CompanyScreen::CheckSortOrderChange() {
  if (new_company_ || record_.sort_order == original_.sort_order) return true;
  RefuseCompanyRebuild(ui_);
  record_.sort_order = original_.sort_order;
  return false;
}

// A changed format of an existing company changes the asset-number index's keys. Narrowing
// it is checked against every asset first; then the change needs a rebuild, which only the
// main program performs, so the old format comes back on the screen in every case.
bool CompanyScreen::CheckFormatChange() {
  const NvAssetNoFormat& before = original_.asset_no_format;
  const NvAssetNoFormat& now = record_.asset_no_format;
  if (new_company_ || now == before) return true;
  const std::vector<std::string> restrictions = FormatRestrictions(before, now);
  if (!restrictions.empty()) {
    std::string question =
        StrPrintf(kNarrowingQuestion, company_.context().product_name().c_str()) + "\n";
    for (const std::string& line : restrictions) question += line + "\n";
    question += "\nContinue?";
    if (!AskYes(ui_, DefaultButton::kYes, "%s", question.c_str())) return false;
    if (!company_.is_open()) {
      ui_.Message("The company's assets cannot be read.", "Error");
      return false;
    }
    const std::vector<FormatMisfit> misfits = FindAssetsOutsideFormat(company_, now, ui_);
    if (!misfits.empty()) {
      ui_.Message(FormatMisfitMessage(misfits), "Error");
      return false;
    }
  }
  if (AskYes(ui_, DefaultButton::kNo, "%s", kFormatRebuildQuestion)) RefuseCompanyRebuild(ui_);
  record_.asset_no_format = before;
  return false;
}

void CompanyScreen::LogSaved(NvCompany& company, const LogClock& clock) const {
  LogCompanyChanges(company, new_company_ ? nullptr : &original_, company.record(),
                    new_company_ ? kTagNewCompany : kTagEditCompany, kHeadingEditCompany, clock);
}

}  // namespace nv
