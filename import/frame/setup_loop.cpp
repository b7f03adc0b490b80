// The setup loop: the company screen until the user saves or cancels, then the company
// made or written, entered into MASTER.A, with its own code lists.
#include "base/file.h"
#include "import/frame/import_frame.h"
#include "store/codes/loc_cat_list.h"
#include "store/file/status.h"
#include "ui/company_screen.h"

namespace nv {
namespace {

constexpr int kOpenFlags = NvCompany::kOpenI1 | NvCompany::kOpenI2 | NvCompany::kLoadLocCat;

// Creates the new company, or writes the existing one's record. False when that failed
// (told), with a new company's half-made files gone again.
bool SaveCompany(ImportRun& run, CompanyScreen& screen) {
  NvCompany& company = run.company();
  const std::string number = company.number();
  std::unique_ptr<ProgressMeter> note = run.ui().OpenProgress("Note", kSavingCompanyData, 0);
  bool saved = false;
  if (run.state().new_company) {
    // Create writes the record from memory and closes; the lists made on the screen are
    // kept across the reopen.
    NvLocCatList locations = company.locations();
    NvLocCatList categories = company.categories();
    const int created = company.Create({number, company.record().name}, kOpenFlags, run.lock());
    saved = created >= 0 && company.Open(number, kOpenFlags, run.ui(), run.lock()) > 0;
    if (saved) {
      company.locations() = std::move(locations);
      company.categories() = std::move(categories);
      // What the screen held until the company existed: property codes, user-field
      // values, this company's schedule definitions.
      saved = screen.WriteSettings(company);
    } else if (created != kCompanyInUse) {
      static_cast<void>(DeleteCompanyFiles(run.context(), number, &run.lock()));
    }
  } else {
    saved = company.WriteCompanyRecord() >= 0;
  }
  if (saved) {
    // The company's own lists; global ones are written by their editor when edited.
    for (char which : {kLocations, kCategories}) {
      if (LocCatListIsGlobal(company.record().global_loc_cat, which)) continue;
      const NvLocCatList& list = which == kLocations ? company.locations() : company.categories();
      saved = SaveLocCatList(company.LocCatPath(which), list) >= 0 && saved;
    }
  }
  note.reset();
  if (!saved) {
    run.RenewCompany();
    run.ui().Message(kUnableToCreateCompany, "Error");
    return false;
  }
  // A company that exists but cannot be listed is still whole; the main program lists it
  // when it next selects it.
  static_cast<void>(EnterIntoCompanyList(run.context(), number, company.record().name));
  screen.LogSaved(company);
  return true;
}

}  // namespace

int RunSetupLoop(ImportRun& run) {
  NvCompany& company = run.company();
  if (run.hooks().before_setup_screen) {
    NvCompanyRecord& record = company.record();
    run.hooks().before_setup_screen(record);
    if (run.state().new_company) {
      InitializeDerivedValues(&record);
      record.months_in_year = 12;
    } else {
      record.schedule_letters = ScheduleLettersOf(record.schedules);
    }
  }
  CompanyScreen screen(company, run.state().new_company, run.ui());
  for (;;) {
    // The screen keeps the code lists under the choice of global lists it saves with,
    // making or dropping the company's own as that choice changes.
    const int action = run.ui().RunCompanyScreen(screen);
    if (action <= 0) return kResolveScreenCancelled;
    if (action == kCompanyScreenShowAgain) continue;
    if (!SaveCompany(run, screen)) return kResolveAbort;
    return kResolveGoOn;
  }
}

}  // namespace nv
