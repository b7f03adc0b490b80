// Backups of a company that an import changes, and undoing the last import.
//
// Before an import adds to or erases the assets of an existing company, the company's
// files are copied with the company's own back-up step (NvCompany::BackUp) into a dated
// folder beside them; right after the import the files' state is recorded there, so that
// an undo can tell whether anybody (the main program) wrote to the company since:
//
//   ACME.backups/20261124-041230/    ACME.A, ACME.I1, ACME.I2, ACME.ini, ... as before
//                                    import-state.txt
//
// import-state.txt, one item a line, fields separated by tabs, LF or CR LF line ends:
//
//   listed  NAME                the company's name in MASTER.A before the import
//   file    NAME  SIZE  HASH    a company file after the import: its name, its size in
//                               bytes and its 64-bit FNV-1a hash in 16 hex digits
//   complete                    the import ended and the file lines are its result
//
// A backup of an import that did not change the company after all is removed again. Only
// the last five backups of a company are kept; names sort in natural text order, and two
// in one second get "-2", "-3", ...
//
// Undo restores the last backup under the company's in-use lock. The files are copied
// into a staging folder first, the company's files are moved aside, the copies moved in;
// a failure at any step puts back what was moved, so the company is either restored
// whole or left as it was.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/installation_context.h"
#include "base/ui.h"

namespace nv {

class NvCompany;

inline constexpr int kBackupsKept = 5;
inline constexpr char kImportStateFile[] = "import-state.txt";

inline constexpr char kNoBackupMessage[] = "There is no backup of company %s to undo.";
inline constexpr char kChangedSinceImportMessage[] =
    "Company %s was changed after the import that backup %s was made for.\n"
    "Restoring it would lose those changes; nothing was restored.";
inline constexpr char kImportUnfinishedMessage[] =
    "The import into company %s that backup %s was made for did not finish,\n"
    "so it cannot be told whether the company changed since; nothing was restored.";
inline constexpr char kUndoLeftOverMessage[] =
    "An earlier undo of company %s did not finish: see the folder\n%s";
inline constexpr char kUndoFailedMessage[] =
    "Unable to restore company %s from backup %s.\nThe company is as it was before.";
inline constexpr char kUndoneMessage[] =
    "Company %s is restored as it was before the import of %s.";

// A company file as the state record holds it.
struct CompanyFileState {
  std::string name;
  uint64_t size = 0;
  uint64_t hash = 0;
  bool operator==(const CompanyFileState&) const = default;
};

struct ImportStateRecord {
  std::optional<std::string> listed_name;
  std::vector<CompanyFileState> files;  // sorted by name
  bool complete = false;
};

// The record's text; nullopt for a text that is no state record (an unknown line, a
// field missing, a size or hash that is no number, a control byte in a line, a file
// named twice).
std::optional<ImportStateRecord> ParseImportStateRecord(std::string_view text);
std::string ImportStateRecordText(const ImportStateRecord& record);

// 64-bit FNV-1a of a file's bytes; nullopt when it cannot be read.
std::optional<CompanyFileState> FileState(const std::string& folder, const std::string& name);
// The company's files (every number + ".*" but folders and the lock file), sorted by name;
// nullopt when one of them cannot be read.
std::optional<std::vector<CompanyFileState>> CompanyFileStates(const std::string& folder,
                                                               std::string_view number);

// company folder + number + ".backups/".
std::string CompanyBackupsFolder(const std::string& company_folder, std::string_view number);
// The backups of a company, oldest first (folder names, without the separator).
std::vector<std::string> ListCompanyBackups(const std::string& backups_folder);

// Backs up an open company before an import changes it and drops the backups beyond the
// last five. The new backup's folder (with the separator), or nullopt when it failed (told).
std::optional<std::string> BackUpBeforeImport(const NvCompany& company, Ui& ui);
// After the import, under its lock: a backup of files that the import left as they were is
// removed; any other gets its state record from the company's files as they are now.
// False when the record could not be written (the backup stays, and an undo of it must
// then be forced).
[[nodiscard]] bool SettleImportBackup(const std::string& backup_folder,
                                      const std::string& company_folder, std::string_view number);

enum class UndoOutcome {
  kRestored,
  kNoBackup,
  kInUse,     // the company's lock is held elsewhere
  kChanged,   // changed after the import, or the import did not finish; not forced
  kLeftOver,  // an earlier undo was interrupted; a person must look first
  kFailed,    // a step failed; the company is as it was
};

struct UndoOptions {
  bool force = false;  // restore even when the company changed after the import
  // Asked before each file is written or moved, with the path it goes to; false makes that
  // step fail as a full disk would. For the tests of the way back.
  std::function<bool(const std::string& to)> before_write;
};

// Restores the company's last backup and drops it, so the backup before it becomes the
// last. Tells the user the outcome (the messages above, titles "Error" and "Done").
UndoOutcome UndoLastImport(const InstallationContext& context, std::string_view number, Ui& ui,
                           const UndoOptions& options = {});

}  // namespace nv
