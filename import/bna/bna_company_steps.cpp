// The start of command 107: profiles, company type, company number, the existing-company
// choice and the setup screen, through the frame's steps with BNA's settings.
#include <ctime>

#include "base/file_util.h"
#include "import/bna/bna_import.h"
#include "import/frame/import_frame.h"

namespace nv {

// BNA's settings of the frame's steps. The frame never copies through it: the dialog's
// "Import Data" does.
class BnaFrameImporter final : public Importer {
 public:
  explicit BnaFrameImporter(BnaImportState& state) : state_(state) {
    descriptor_.kind = "bna";
    descriptor_.product = kBnaProduct;
    descriptor_.existing = {
        .offers_erase = true, .confirm_erase = true, .setup_screen_after_add = false};
    descriptor_.new_loc_cat = 'N';
    descriptor_.meter_title = kBnaMeterTitle;
  }

  const ImportDescriptor& descriptor() const override { return descriptor_; }
  bool CheckSource(ImportRun&) override { return true; }
  std::string DefaultCompanyNumber(const ImportRun&) const override { return ""; }
  std::string AddQuestion(const ImportRun&) const override { return kBnaAddQuestion; }

  bool AfterExistingCompany(ImportRun& run) override {
    // Erasing leads to the setup screen; adding does not.
    state_.adding_to_existing = !run.state().setup_screen;
    return true;
  }

  bool FillCompanyRecord(ImportRun&, NvCompanyRecord& record) override {
    record.name.clear();
    record.ein.clear();
    record.misc_codes.clear();
    record.current_year_end = {};
    record.last_closed = {};
    record.schedules = {
        {'B', "B", "Book"}, {'T', "T", "Tax"}, {'A', "A", "AMT"}, {'C', "C", "ACE"}};
    record.sort_order = "ACL";
    record.global_loc_cat = 'N';
    for (UserFieldDefinition& field : record.user_fields) field = {};
    return true;
  }

  bool CopyAssets(ImportRun&, AddStep&) override { return false; }

 private:
  BnaImportState& state_;
  ImportDescriptor descriptor_;
};

namespace {

int32_t SecondsNow() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  return local.tm_hour * 3600 + local.tm_min * 60 + local.tm_sec;
}

}  // namespace

std::string BnaSettingsFile(const InstallationContext& context) {
  return FindFileIgnoringCase(context.installation_folder, kBnaSettingsFile)
      .value_or(context.installation_folder + kBnaSettingsFile);
}

BnaSession::BnaSession(const InstallationContext& context_in, Ui& ui_in, ImportHooks hooks)
    : context(context_in),
      ui(ui_in),
      today(Today()),
      note_seconds(SecondsNow()),
      importer(std::make_unique<BnaFrameImporter>(state)),
      run(std::make_unique<ImportRun>(context_in, ui_in, *importer, std::move(hooks))) {}

BnaSession::~BnaSession() {
  run.reset();  // lets the company and its lock go before the importer it refers to
}

bool RunBnaCompanySteps(BnaSession& session) {
  BnaImportState& state = session.state;
  ImportRun& run = *session.run;
  state.profiles = StartBnaProfiles(
      session.context.installation_folder,
      ReadUserImportProfile(BnaSettingsFile(session.context), session.context.user_name),
      session.outside_profile_file);

  ChoiceListRequest type;
  type.message = kBnaCompanyTypeMessage;
  type.options = {{kBnaNewCompanyOption, -1}, {kBnaExistingCompanyOption, -1}};
  const int chosen = session.ui.ChoiceList(type);
  if (chosen != 0 && chosen != 1) return false;
  state.new_company = chosen == 0;
  const CompanyNumberForm form =
      state.new_company ? CompanyNumberForm::kNew : CompanyNumberForm::kExisting;

  int resolved = kResolveOtherNumber;
  while (resolved == kResolveOtherNumber) {
    state.adding_to_existing = false;
    if (!AskCompanyNumber(run, "", form)) {
      static_cast<void>(run.ReleaseCompany());
      return false;
    }
    if (run.hooks().company_chosen && !run.hooks().company_chosen(run.state().company_number)) {
      continue;
    }
    resolved = ResolveExistingCompany(run);
  }
  if (resolved != kResolveGoOn) {
    static_cast<void>(run.ReleaseCompany());
    return false;
  }
  state.company_number = run.state().company_number;
  // Each "Import Data" opens the company again; the lock stays with the session.
  if (run.company().is_open() && run.company().Close() < 0) {
    MessageF(session.ui, "Error", "Unable to write company %s.", state.company_number.c_str());
    static_cast<void>(run.ReleaseCompany());
    return false;
  }
  return true;
}

}  // namespace nv
