// The import frame: the one sequence every importer runs, from the source file to the
// count. An importer fills an ImportDescriptor (its variants of every step, as data) and
// implements the Importer hooks (its checks, its company record, its matching, its copy);
// the frame does the rest once:
//
//   1. PreSteps; ChooseSourceFile (the importer's dialog, then its checks).
//   2. AskCompanyNumber and ResolveExistingCompany, again while the latter says -3.
//   3. FillCompanyRecord for a new company; the setup loop with the company screen,
//      which creates or reopens the company and enters it into MASTER.A.
//   4. Match (the importer's panels: MatchFields, MatchBooks), then CopyAssets, which adds
//      each converted asset through the AddStep, under a progress meter.
//   5. ReportCount ("%d assets copied.", with the import report behind it), and the report
//      written as a text file (ImportReportPath).
//
// The company and its in-use lock belong to the ImportRun and are let go when it ends,
// whatever ends it: a cancel, a failure, a failed write halfway or an exception.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/installation_context.h"
#include "base/ui.h"
#include "import/frame/current_year_files.h"
#include "import/frame/import_report.h"
#include "import/frame/import_state.h"
#include "store/company/company.h"
#include "store/company/company_lock.h"

namespace nv {

class ImportRun;
class AddStep;

inline constexpr char kCompanyNumberPrompt[] = "%s company number.";
inline constexpr char kCompanyExistsMessage[] = "Company %s already exists in %s";
inline constexpr char kSelectDifferentNumberOption[] = "Select different company number";
inline constexpr char kEraseAssetsOption[] = "Erase existing company's assets only";
inline constexpr char kAddAssetsOption[] = "Add assets to existing company";
inline constexpr char kAbortImportOption[] = "Abort this import";
inline constexpr char kEraseQuestion[] =
    "Are you sure you want to delete all of this company's assets?";
inline constexpr char kDuplicatesQuestion[] =
    "Duplicate asset numbers will\nbe dropped.  Continue?";
inline constexpr char kSavingCompanyData[] = "Saving Company Data";
inline constexpr char kUnableToCreateCompany[] = "Unable to create company.";
inline constexpr char kAssetsCopiedMessage[] = "%d assets copied.";
inline constexpr char kMakerInitials[] = "KEL";

// Results of ResolveExistingCompany (and of the setup loop).
inline constexpr int kResolveGoOn = 0;
inline constexpr int kResolveAbort = -1;
inline constexpr int kResolveScreenCancelled = -2;
inline constexpr int kResolveOtherNumber = -3;

struct SourceFileDialog {
  std::string title;
  std::string filter;             // "PC/FAS files|*.fas"
  std::string default_extension;  // ".FAS": added to a name typed without one
  std::string initial_folder;     // empty: the installation's data directory
};

// The options of ResolveExistingCompany and what they lead to. The options are told
// apart by their place in the list, not by numbers of their own: the product's tables
// give FAS 1000/2000's Abort the number -1, which a choice list turns into the option's
// place (2), the number of Add; chosen by place, Abort always aborts.
struct ExistingCompanyChoices {
  bool offers_erase = false;   // "Erase existing company's assets only"
  bool confirm_erase = false;  // ask kEraseQuestion before erasing
  bool setup_screen_after_add = false;
};

struct ImportDescriptor {
  std::string kind;     // nvtool's name of the importer: "pcfas"
  std::string product;  // the source product as the report names it: "PC/FAS"
  SourceFileDialog source_dialog;
  ExistingCompanyChoices existing;
  char new_loc_cat = 'L';           // Global Loc/Cat Designation of a new company record
  bool current_year_files = false;  // the add step keeps NUMBER.CY and NUMBER.179
  std::string meter_title;          // "PC/FAS Import"
  std::string meter_text;           // "Copying PC/FAS assets\n "
};

// An importer's own part of a run. Every hook that returns false has told the user why
// (or the user cancelled); the run then ends.
class Importer {
 public:
  virtual ~Importer() = default;
  virtual const ImportDescriptor& descriptor() const = 0;

  // Questions before the file dialog.
  virtual bool PreSteps(ImportRun&) { return true; }
  // Checks of the chosen source file's name and of the files that must stand beside it.
  virtual bool CheckSource(ImportRun& run) = 0;
  virtual std::string DefaultCompanyNumber(const ImportRun& run) const = 0;
  // The confirmation of "Add assets to existing company".
  virtual std::string AddQuestion(const ImportRun&) const { return kDuplicatesQuestion; }
  // A question of the importer's own after an existing company was chosen to add to or
  // to erase.
  virtual bool AfterExistingCompany(ImportRun&) { return true; }
  // Fills a new company's record from the source (number already set).
  virtual bool FillCompanyRecord(ImportRun& run, NvCompanyRecord& record) = 0;
  // The matching panels, data fields first, then books.
  virtual bool Match(ImportRun&) { return true; }
  // Reads and converts every source record, adding each through `add`. False when the
  // copy ended on an error (told); what was added stays.
  virtual bool CopyAssets(ImportRun& run, AddStep& add) = 0;
};

// What a caller adds to a run beyond the windows' answers (nvtool import's options).
struct ImportHooks {
  // Changes the company record before the setup screen first shows it.
  std::function<void(NvCompanyRecord& record)> before_setup_screen;
  // Called with each company number entered, before anything is done with it; false
  // asks for the number again, as a company in use does.
  std::function<bool(const std::string& number)> company_chosen;
  // The count's message; null for the importer's own ("%d assets copied." on the frame).
  const char* count_message = nullptr;
  // The folder the report names for the company's files, given the one written to.
  std::function<std::string(const std::string& folder)> report_folder;
};

class ImportRun {
 public:
  ImportRun(const InstallationContext& context, Ui& ui, Importer& importer, ImportHooks hooks = {});
  ~ImportRun();
  ImportRun(const ImportRun&) = delete;
  ImportRun& operator=(const ImportRun&) = delete;

  const InstallationContext& context() const { return context_; }
  Ui& ui() { return ui_; }
  Importer& importer() { return importer_; }
  const ImportDescriptor& descriptor() const { return importer_.descriptor(); }
  ImportState& state() { return state_; }
  const ImportState& state() const { return state_; }
  NvCompany& company() { return *company_; }
  CompanyInUseLock& lock() { return lock_; }
  ImportReport& report() { return report_; }
  const ImportHooks& hooks() const { return hooks_; }

  // Closes the company (writing it when it is open for writing), settles the backup made
  // before the import changed it, and lets its lock go. Returns the close status (0 when
  // nothing was open).
  int ReleaseCompany();
  // A new, empty company object (the old one released).
  void RenewCompany();

 private:
  const InstallationContext& context_;
  Ui& ui_;
  Importer& importer_;
  ImportState state_;
  std::unique_ptr<NvCompany> company_;
  CompanyInUseLock lock_;
  ImportReport report_;
  ImportHooks hooks_;
};

// Adds converted assets to the run's company: duplicates and refused numbers are left out
// without a message and not counted, but listed in the report; the current-year files are
// kept when the importer asks for them; a progress meter shows the copy.
class AddStep {
 public:
  explicit AddStep(ImportRun& run);
  ~AddStep();

  // The meter, over `total` steps of the importer's choosing (records, bytes).
  void OpenMeter(long total);
  void SetMeterPosition(long done);
  void SetMeterText(std::string_view text);

  // One source record read (counted in the report whatever becomes of it).
  void CountRead() { run_.report().CountRead(); }
  // Adds `asset`, converted from the record at `source` ("line 12"). True when added.
  bool Add(NvAsset& asset, std::string_view source);
  // A record the importer passes over, and why.
  void Filtered(std::string_view source, std::string_view number, std::string reason);
  // Records an asset stored some other way (replaced by the importer) as current-year
  // activity when it has some.
  void RecordCurrentYear(const NvAsset& asset);

  long added() const { return run_.report().added(); }
  // Writes the current-year files and the company record and closes the meter.
  [[nodiscard]] bool Finish();

 private:
  ImportRun& run_;
  std::unique_ptr<ProgressMeter> meter_;
  CurrentYearFiles current_year_;
  NvLocCatList locations_at_start_;
  NvLocCatList categories_at_start_;
};

enum class ImportOutcome {
  kEnded,      // cancelled or refused before copying; nothing copied
  kFailed,     // the run ended on an error
  kCompleted,  // copied and counted
};

struct ImportResult {
  ImportOutcome outcome = ImportOutcome::kEnded;
  long added = 0;
  std::string report_text;    // when copying started
  std::string report_path;    // where the report was written ("" when it was not)
  std::string backup_folder;  // the company's files before the import ("" when none)
};

// Runs one import to its end.
ImportResult RunImport(const InstallationContext& context, Ui& ui, Importer& importer,
                       ImportHooks hooks = {});

// The steps, for importers with variants of their own and for tests.
bool ChooseSourceFile(ImportRun& run);
bool AskCompanyNumber(ImportRun& run, const std::string& default_number);
// The entry of a number that names a company there is already: the same entry under its
// own title. A number of no company there still goes on as a new company.
inline constexpr char kExistingCompanyNumberTitle[] = "Enter Company Number";
enum class CompanyNumberForm { kNew, kExisting };
bool AskCompanyNumber(ImportRun& run, const std::string& default_number, CompanyNumberForm form);
int ResolveExistingCompany(ImportRun& run);
int RunSetupLoop(ImportRun& run);
void ReportCount(ImportRun& run, long count, std::string_view details);

// Whether the company's files are in the data directory (its block file is there).
bool CompanyFilesExist(const InstallationContext& context, std::string_view number);
// Enters the company into MASTER.A, or gives its entry the company's name.
bool EnterIntoCompanyList(const InstallationContext& context, const std::string& number,
                          const std::string& name);
// Backs up the run's open company before the import changes it (import_backup.h). False
// when the backup failed (told); the import must not go on.
[[nodiscard]] bool BackUpBeforeChange(ImportRun& run);
// Deletes every asset of an open company, keeping its record, schedules and code lists.
[[nodiscard]] int EraseAllAssets(NvCompany& company);

// Where a run's import report is written: the folder "import-reports" of the data
// directory, named NUMBER-YYYYMMDD-HHMMSS.txt.
inline constexpr char kImportReportFolder[] = "import-reports";
std::string ImportReportPath(const InstallationContext& context, std::string_view number);

}  // namespace nv
