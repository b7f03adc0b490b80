#include "import/frame/import_frame.h"

#include <ctime>

#include "base/ascii.h"
#include "base/file.h"
#include "base/file_util.h"
#include "base/path.h"
#include "base/str_format.h"
#include "import/frame/import_backup.h"
#include "store/asset/asset.h"
#include "store/company/master_file.h"
#include "store/company/permissions.h"
#include "store/file/status.h"
#include "ui/company_selection.h"

namespace nv {

// ---------------------------------------------------------------------------------------
// ImportRun

ImportRun::ImportRun(const InstallationContext& context, Ui& ui, Importer& importer,
                     ImportHooks hooks)
    : context_(context),
      ui_(ui),
      importer_(importer),
      company_(std::make_unique<NvCompany>(context)),
      hooks_(std::move(hooks)) {}

ImportRun::~ImportRun() {
  static_cast<void>(ReleaseCompany());
}

int ImportRun::ReleaseCompany() {
  int status = 0;
  if (company_ && company_->is_open()) status = company_->Close();
  if (!state_.backup_folder.empty()) {
    // Still under the lock, so nobody has written to the company since the import did.
    // A backup without its record is still there to be restored by a forced undo.
    static_cast<void>(SettleImportBackup(state_.backup_folder,
                                         CompanyFolder(context_, state_.company_number),
                                         state_.company_number));
    state_.backup_folder.clear();
  }
  lock_.Release();
  return status;
}

void ImportRun::RenewCompany() {
  static_cast<void>(ReleaseCompany());
  company_ = std::make_unique<NvCompany>(context_);
}

// ---------------------------------------------------------------------------------------
// Company files and the company list

bool CompanyFilesExist(const InstallationContext& context, std::string_view number) {
  return FindFileIgnoringCase(CompanyFolder(context, number), AsciiUpper(number) + ".A")
      .has_value();
}

bool EnterIntoCompanyList(const InstallationContext& context, const std::string& number,
                          const std::string& name) {
  MasterFile master;
  master.subfolders = context.current.subfolders;
  const MasterFileStatus rc = ReadMasterFile(context.data_directory(), &master);
  if (rc != MasterFileStatus::kOk && rc != MasterFileStatus::kNotFound) return false;
  bool listed = false;
  for (NvMasterRec& entry : master.companies) {
    if (EqualIgnoringCase(entry.number, number)) {
      if (entry.name == name) return true;
      entry.name = name;
      listed = true;
    }
  }
  if (!listed) InsertMasterRec(&master.companies, {number, name});
  return WriteMasterFile(context.data_directory(), master) == MasterFileStatus::kOk;
}

bool BackUpBeforeChange(ImportRun& run) {
  std::optional<std::string> folder = BackUpBeforeImport(run.company(), run.ui());
  if (!folder) return false;
  run.state().backup_folder = *folder;
  return true;
}

int EraseAllAssets(NvCompany& company) {
  NvAsset asset;
  for (;;) {
    company.ResetAssetWalk();
    if (int rc = company.NextAsset(AssetOrder::kNumber, &asset); rc < 0) return rc;
    if (asset.record_number == 0) return kOk;
    if (int rc = company.DeleteAsset(asset); rc < 0) return rc;
  }
}

std::string ImportReportPath(const InstallationContext& context, std::string_view number) {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  const std::string folder =
      WithTrailingSeparator(JoinPath(context.data_directory(), kImportReportFolder));
  const std::string stem =
      std::string(number) + StrPrintf("-%04d%02d%02d-%02d%02d%02d", local.tm_year + 1900,
                                      local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min,
                                      local.tm_sec);
  std::string path = folder + stem + ".txt";
  for (int n = 2; PathExists(path) && n < 1000; ++n) {
    path = folder + stem + StrPrintf("-%d.txt", n);
  }
  return path;
}

// ---------------------------------------------------------------------------------------
// The steps

bool ChooseSourceFile(ImportRun& run) {
  const SourceFileDialog& dialog = run.descriptor().source_dialog;
  FileDialogRequest request;
  request.title = dialog.title;
  request.filter = dialog.filter;
  request.initial_directory =
      dialog.initial_folder.empty() ? run.context().data_directory() : dialog.initial_folder;
  std::optional<std::string> chosen = run.ui().ChooseFile(request);
  if (!chosen) return false;
  // A name typed without an extension means the file with the dialog's.
  const size_t name_at = chosen->find_last_of("/\\") + 1;
  if (!dialog.default_extension.empty() && chosen->find('.', name_at) == std::string::npos &&
      !PathExists(*chosen) && PathExists(*chosen + dialog.default_extension)) {
    *chosen += dialog.default_extension;
  }
  ImportState& state = run.state();
  state.source_path = *chosen;
  const size_t slash = chosen->find_last_of("/\\");
  state.source_folder = slash == std::string::npos ? "" : chosen->substr(0, slash + 1);
  run.report().SetSource(run.descriptor().product, state.source_path);
  return run.importer().CheckSource(run);
}

bool AskCompanyNumber(ImportRun& run, const std::string& default_number) {
  return AskCompanyNumber(run, default_number, CompanyNumberForm::kNew);
}

bool AskCompanyNumber(ImportRun& run, const std::string& default_number, CompanyNumberForm form) {
  std::string initial = AsciiUpper(TrimBlanks(default_number));
  if (initial.size() > kCompanyNumberLength) initial.resize(kCompanyNumberLength);
  // The companies there are already, as the company list shows them.
  std::vector<std::string> listing;
  MasterFile master;
  master.subfolders = run.context().current.subfolders;
  if (ReadMasterFile(run.context().data_directory(), &master) == MasterFileStatus::kOk) {
    for (const NvMasterRec& company : master.companies) {
      listing.push_back(CompanyListLine(company));
    }
  }
  std::optional<std::string> number = AskNewCompanyNumber(
      run.ui(), StrPrintf(kCompanyNumberPrompt, run.context().product_name().c_str()), initial,
      std::move(listing),
      form == CompanyNumberForm::kExisting ? kExistingCompanyNumberTitle : kNewCompanyNumberTitle);
  if (!number) return false;
  run.state().company_number = *number;
  return true;
}

namespace {

// Opens an existing company for writing under the run's lock. Tells the user why not.
bool OpenExisting(ImportRun& run) {
  const std::string& number = run.state().company_number;
  const int flags = NvCompany::kOpenI1 | NvCompany::kOpenI2 | NvCompany::kLoadLocCat;
  const int rc = run.company().Open(number, flags, run.ui(), run.lock());
  if (rc > 0) return true;
  if (rc == kNewerVersion) {
    run.ui().Message(kNewerVersionMessage, "Error");
  } else {
    MessageF(run.ui(), "Error", kUnableToOpenMessage, number.c_str());
  }
  static_cast<void>(run.ReleaseCompany());
  return false;
}

enum class ExistingChoice { kSelect, kErase, kAdd, kAbort };

const char* ExistingChoiceText(ExistingChoice choice) {
  switch (choice) {
    case ExistingChoice::kSelect:
      return kSelectDifferentNumberOption;
    case ExistingChoice::kErase:
      return kEraseAssetsOption;
    case ExistingChoice::kAdd:
      return kAddAssetsOption;
    case ExistingChoice::kAbort:
      break;
  }
  return kAbortImportOption;
}

ExistingChoice AskExistingChoice(ImportRun& run) {
  const ExistingCompanyChoices& choices = run.descriptor().existing;
  NvCompany& company = run.company();
  const bool may_change =
      company.permission() != kReadOnlyAccess && company.permission() != kNoAccess;
  ChoiceListRequest request;
  request.message = StrPrintf(kCompanyExistsMessage, company.number().c_str(),
                              run.context().product_name().c_str());
  if (!may_change) request.note = kNoChangePermissionNote;
  std::vector<ExistingChoice> offered = {ExistingChoice::kSelect};
  if (may_change && choices.offers_erase) offered.push_back(ExistingChoice::kErase);
  if (may_change) offered.push_back(ExistingChoice::kAdd);
  offered.push_back(ExistingChoice::kAbort);
  for (ExistingChoice choice : offered) {
    request.options.push_back({ExistingChoiceText(choice), -1});
  }
  const int chosen = run.ui().ChoiceList(request);
  if (chosen < 0 || static_cast<size_t>(chosen) >= offered.size()) return ExistingChoice::kAbort;
  return offered[static_cast<size_t>(chosen)];
}

}  // namespace

int ResolveExistingCompany(ImportRun& run) {
  run.RenewCompany();
  ImportState& state = run.state();
  const ImportDescriptor& descriptor = run.descriptor();
  // The number's lock is held from here until the run lets the company go, so nobody can
  // make a company of that number while this one is being set up.
  if (!TakeCompanyLock(run.context(), state.company_number, run.lock(), run.ui())) {
    return kResolveOtherNumber;
  }
  if (!CompanyFilesExist(run.context(), state.company_number)) {
    state.new_company = true;
    state.setup_screen = true;
  } else {
    // A company whose files are there but will not open is never taken for a new one:
    // creating it again would destroy it.
    if (!OpenExisting(run)) return kResolveOtherNumber;
    switch (AskExistingChoice(run)) {
      case ExistingChoice::kSelect:
        run.RenewCompany();
        return kResolveOtherNumber;
      case ExistingChoice::kAbort:
        run.RenewCompany();
        return kResolveAbort;
      case ExistingChoice::kErase:
        if (descriptor.existing.confirm_erase &&
            !AskYes(run.ui(), DefaultButton::kNo, "%s", kEraseQuestion)) {
          run.RenewCompany();
          return kResolveOtherNumber;
        }
        if (!BackUpBeforeChange(run)) {
          run.RenewCompany();
          return kResolveAbort;
        }
        if (int rc = EraseAllAssets(run.company()); rc < 0) {
          MessageF(run.ui(), "Error", kUnableToOpenMessage, state.company_number.c_str());
          run.RenewCompany();
          return kResolveAbort;
        }
        state.new_company = false;
        state.setup_screen = true;
        break;
      case ExistingChoice::kAdd:
        if (!AskYes(run.ui(), DefaultButton::kNo, "%s", run.importer().AddQuestion(run).c_str())) {
          run.RenewCompany();
          return kResolveOtherNumber;
        }
        if (!BackUpBeforeChange(run)) {
          run.RenewCompany();
          return kResolveAbort;
        }
        state.new_company = false;
        state.setup_screen = descriptor.existing.setup_screen_after_add;
        break;
    }
    if (!run.importer().AfterExistingCompany(run)) {
      run.RenewCompany();
      return kResolveAbort;
    }
  }
  if (state.new_company) {
    NvCompany& company = run.company();
    company.SetLocation(state.company_number, CompanyFolder(run.context(), state.company_number));
    NvCompanyRecord record;
    record.number = company.number();
    record.global_loc_cat = descriptor.new_loc_cat;
    if (!run.importer().FillCompanyRecord(run, record)) return kResolveAbort;
    record.number = company.number();
    InitializeDerivedValues(&record);
    record.months_in_year = 12;
    company.record() = std::move(record);
  }
  if (state.setup_screen) return RunSetupLoop(run);
  return kResolveGoOn;
}

void ReportCount(ImportRun& run, long count, std::string_view details) {
  const char* message =
      run.hooks().count_message ? run.hooks().count_message : kAssetsCopiedMessage;
  run.ui().MessageWithDetails(StrPrintf(message, static_cast<int>(count)), "Done", details);
}

// ---------------------------------------------------------------------------------------
// The add step

AddStep::AddStep(ImportRun& run)
    : run_(run),
      locations_at_start_(run.company().locations()),
      categories_at_start_(run.company().categories()) {
  if (run.descriptor().current_year_files) current_year_.Open(run.company());
}

AddStep::~AddStep() = default;

void AddStep::OpenMeter(long total) {
  meter_ =
      run_.ui().OpenProgress(run_.descriptor().meter_title, run_.descriptor().meter_text, total);
}

void AddStep::SetMeterPosition(long done) {
  if (meter_) meter_->SetPosition(done);
}

void AddStep::SetMeterText(std::string_view text) {
  if (meter_) meter_->SetText(text);
}

bool AddStep::Add(NvAsset& asset, std::string_view source) {
  NvCompany& company = run_.company();
  const std::string number = asset.number.Text();
  const int rc = company.AddAsset(&asset);
  if (rc >= 0) {
    run_.report().Added(asset);
    current_year_.Record(asset, asset.record_number);
    return true;
  }
  LeftOutRecord left{std::string(source), std::string(TrimBlanks(number)),
                     LeftOutReason::kRefusedByStore, ""};
  if (rc == kDuplicate) {
    left.reason = LeftOutReason::kDuplicateNumber;
  } else if (rc == kInvalidAsset) {
    left.reason = LeftOutReason::kInvalidNumber;
  } else {
    left.detail = StrPrintf("status %d", rc);
  }
  run_.report().LeftOut(std::move(left));
  return false;
}

void AddStep::Filtered(std::string_view source, std::string_view number, std::string reason) {
  run_.report().LeftOut({std::string(source), std::string(TrimBlanks(number)),
                         LeftOutReason::kFiltered, std::move(reason)});
}

void AddStep::RecordCurrentYear(const NvAsset& asset) {
  current_year_.Record(asset, asset.record_number);
}

bool AddStep::Finish() {
  bool ok = current_year_.Close();
  NvCompany& company = run_.company();
  // Only lists the conversion added to are written: a global list is shared with every
  // company and may be edited elsewhere meanwhile.
  if (!(company.locations() == locations_at_start_)) {
    ok = SaveLocCatList(company.LocCatPath(kLocations), company.locations()) >= 0 && ok;
  }
  if (!(company.categories() == categories_at_start_)) {
    ok = SaveLocCatList(company.LocCatPath(kCategories), company.categories()) >= 0 && ok;
  }
  ok = company.WriteCompanyRecord() >= 0 && ok;
  meter_.reset();
  return ok;
}

// ---------------------------------------------------------------------------------------
// The sequence

ImportResult RunImport(const InstallationContext& context, Ui& ui, Importer& importer,
                       ImportHooks hooks) {
  ImportResult result;
  ImportRun run(context, ui, importer, std::move(hooks));
  Importer& importer_hooks = run.importer();
  if (!importer_hooks.PreSteps(run)) return result;
  if (!ChooseSourceFile(run)) return result;
  int resolved = kResolveOtherNumber;
  while (resolved == kResolveOtherNumber) {
    if (!AskCompanyNumber(run, importer_hooks.DefaultCompanyNumber(run))) return result;
    if (run.hooks().company_chosen && !run.hooks().company_chosen(run.state().company_number)) {
      continue;
    }
    resolved = ResolveExistingCompany(run);
  }
  if (resolved != kResolveGoOn) return result;
  if (!importer_hooks.Match(run)) return result;

  NvCompany& company = run.company();
  run.report().SetCompany(company.number(), run.hooks().report_folder
                                                ? run.hooks().report_folder(company.folder())
                                                : company.folder());
  AddStep add(run);
  const bool copied = importer_hooks.CopyAssets(run, add);
  const bool finished = add.Finish();
  const std::string backup = run.state().backup_folder;
  const int closed = run.ReleaseCompany();
  if (!backup.empty() && PathExists(backup)) result.backup_folder = backup;
  result.added = add.added();
  result.outcome =
      copied && finished && closed >= 0 ? ImportOutcome::kCompleted : ImportOutcome::kFailed;
  result.report_text = run.report().Text();
  const std::string path = ImportReportPath(context, run.state().company_number);
  if (MakeDirectories(context.data_directory() + kImportReportFolder) &&
      WriteTextFile(path, result.report_text)) {
    result.report_path = path;
  }
  if (!finished || closed < 0) {
    MessageF(ui, "Error", "Unable to write company %s.", run.state().company_number.c_str());
  }
  if (copied) ReportCount(run, result.added, result.report_text);
  return result;
}

}  // namespace nv
