// The BNA Next Dimension import (command 107): the company steps at its start, and the
// import run behind the dialog's "Import Data".
//
//   start        the profiles (the user's "Import Profile", else "@BNA_ND.IMP"), "Select
//                company type:", the company number, the existing-company choice (with
//                Erase and Add), the company record and setup screen of a new or erased
//                company. The company is then closed; its in-use lock stays held by the
//                session until it ends.
//   Import Data  the parameters; for an existing company added to, the duplicate mode
//                (asked, and written back when changed); the company opened, every data
//                line of the report converted by the definitions and added, updated,
//                replaced, dropped or added as a subasset; the lists, account groups and
//                company written; "%d assets imported." and the import report.
//
// A run may be repeated while the dialog is open: each one re-reads the report from its
// start and opens and closes the company.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "base/date.h"
#include "base/installation_context.h"
#include "base/ui.h"
#include "import/bna/bna_state.h"
#include "import/frame/import_frame.h"

namespace nv {

class BnaFrameImporter;

inline constexpr char kBnaProduct[] = "BNA Next Dimension";
inline constexpr char kBnaCompanyTypeMessage[] = "Select company type:";
inline constexpr char kBnaNewCompanyOption[] = "New Company";
inline constexpr char kBnaExistingCompanyOption[] = "Existing company";
inline constexpr char kBnaAddQuestion[] =
    "Duplicate asset numbers can be processed in several ways:,\n"
    "  The new data can be combined with the current asset data.\n"
    "  The new asset can replace the current asset.\n"
    "  The new asset can be ignored.\n"
    "  The new asset can be added with a new subasset no.\n"
    "You can choose how to process duplicate asset numbers at the time of the import.\n\n"
    "Continue?";
inline constexpr char kBnaDuplicatesTitle[] = "Choose Duplicate Processing";
inline constexpr char kBnaMeterTitle[] = "Importing Data";
inline constexpr char kBnaImportedMessage[] = "%d assets imported.";
inline constexpr char kBnaSettingsFile[] = "KELNVWIN.INI";

// The question that confirms a duplicate mode before a run into an existing company.
const char* BnaDuplicateQuestion(DuplicateMode mode);
// The option of the list "Choose Duplicate Processing" that stands for a mode.
const char* BnaDuplicateOption(DuplicateMode mode);

// What command 107 keeps while its dialog is open.
struct BnaSession {
  // `hooks`: what a caller adds to the company steps (nvtool's --company).
  BnaSession(const InstallationContext& context, Ui& ui, ImportHooks hooks = {});
  ~BnaSession();
  BnaSession(const BnaSession&) = delete;
  BnaSession& operator=(const BnaSession&) = delete;

  const InstallationContext& context;
  Ui& ui;
  BnaImportState state;
  // The stand-in file of a profile named by a full path (a test import's scratch copy).
  std::function<std::string(const std::string& path)> outside_profile_file;
  // STDDATE's TODAY and the stamp of the notes a run adds; the clock's at the start.
  Date today;
  int32_t note_seconds = 0;  // time of day of those notes, seconds since midnight

  // The frame's run: the target company's object and its in-use lock.
  std::unique_ptr<BnaFrameImporter> importer;
  std::unique_ptr<ImportRun> run;
};

// The installation's settings file, where the user's "Import Profile" is kept.
std::string BnaSettingsFile(const InstallationContext& context);

inline constexpr char kBnaKeepProfilesQuestion[] =
    "The test import changed these import profiles:\n%s\nKeep the changes to the profiles?";

// Command 107: the company steps, then the dialog, whose "Import Data" runs
// RunBnaImportData; returns when the dialog closes or the steps end the command.
// A test import does all of it in a scratch installation (import/frame/dry_run.h); the
// profiles the dialog changed there are copied back only when the person says so at the
// end, as they are the person's work and not the import's.
void RunBnaImport(const InstallationContext& context, Ui& ui, bool test_import = false);

// The steps before the dialog. False when the user cancelled or the company cannot be
// used (told); nothing is left open or locked then.
bool RunBnaCompanySteps(BnaSession& session);

struct BnaImportResult {
  bool started = false;    // the run went past the duplicate question
  bool completed = false;  // the report was read and the company written back
  long imported = 0;
  std::string report_text;  // when the company opened and the report was read
  std::string report_path;  // where the report was written ("" when it was not)
};

// One "Import Data" with the session's definitions and source. REQUIRES: the company steps
// succeeded.
BnaImportResult RunBnaImportData(BnaSession& session);

}  // namespace nv
