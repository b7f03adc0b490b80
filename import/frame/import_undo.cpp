// Undoing the last import of a company: its last backup put back in place of its files.
#include "base/ascii.h"
#include "base/file.h"
#include "base/file_util.h"
#include "import/frame/import_backup.h"
#include "import/frame/import_frame.h"
#include "store/company/company.h"
#include "ui/company_selection.h"

namespace nv {
namespace {

// The staging folders of an undo, inside the backups folder. Either one still there means
// an undo was cut off (the machine stopped): a person must look before anything moves.
constexpr char kUndoNewFolder[] = "undo-new";
constexpr char kUndoOldFolder[] = "undo-old";

enum class RestoreResult { kRestored, kUnchanged, kStuck };

// Moves the company's files for the backup's, through two staging folders, so that every
// step before the last can be taken back.
class FileSwap {
 public:
  FileSwap(std::string company_folder, const std::string& backups, std::string backup,
           const UndoOptions& options)
      : folder_(std::move(company_folder)),
        backup_(std::move(backup)),
        staged_(backups + kUndoNewFolder + "/"),
        aside_(backups + kUndoOldFolder + "/"),
        options_(options) {}

  RestoreResult Run(const std::vector<std::string>& restored,
                    const std::vector<std::string>& replaced) {
    if (!MakeFolder(staged_) || !MakeFolder(aside_)) return Abandon();
    // 1. The backup's files copied beside the company: nothing of it touched yet.
    for (const std::string& name : restored) {
      if (!May(staged_ + name) || !CopyFileBytes(backup_ + name, staged_ + name)) return Abandon();
    }
    // 2. The company's files moved aside.
    for (const std::string& name : replaced) {
      if (!May(aside_ + name) || !RenamePath(folder_ + name, aside_ + name)) return Abandon();
      moved_aside_.push_back(name);
    }
    // 3. The copies moved in.
    for (const std::string& name : restored) {
      if (!May(folder_ + name) || !RenamePath(staged_ + name, folder_ + name)) return Abandon();
      placed_.push_back(name);
    }
    // Done: what was moved aside is the state the undo replaced; it goes.
    static_cast<void>(RemoveAll(staged_));
    static_cast<void>(RemoveAll(aside_));
    return RestoreResult::kRestored;
  }

  const std::string& aside() const { return aside_; }

 private:
  bool May(const std::string& to) const {
    return !options_.before_write || options_.before_write(to);
  }

  // Takes every step back. When a file cannot be put back the staging folders stay, so
  // that nothing is lost and the next undo stops at them.
  RestoreResult Abandon() {
    bool whole = true;
    for (const std::string& name : placed_) whole = RemoveFile(folder_ + name) && whole;
    for (const std::string& name : moved_aside_) {
      whole = RenamePath(aside_ + name, folder_ + name) && whole;
    }
    if (!whole) return RestoreResult::kStuck;
    static_cast<void>(RemoveAll(staged_));
    static_cast<void>(RemoveAll(aside_));
    return RestoreResult::kUnchanged;
  }

  std::string folder_;
  std::string backup_;
  std::string staged_;
  std::string aside_;
  const UndoOptions& options_;
  std::vector<std::string> moved_aside_;
  std::vector<std::string> placed_;
};

// The company's own files of a folder: no folders, no lock file.
std::vector<std::string> CompanyFileNames(const std::string& folder, std::string_view number) {
  std::vector<std::string> names = CompanyEntries(folder, number);
  std::erase_if(names, [&](const std::string& name) {
    return IsFolder(folder + name) ||
           EqualIgnoringCase(std::string_view(name).substr(number.size() + 1), "lok");
  });
  return names;
}

}  // namespace

UndoOutcome UndoLastImport(const InstallationContext& context, std::string_view number_text, Ui& ui,
                           const UndoOptions& options) {
  const std::string number = AsciiUpper(TrimBlanks(number_text));
  const std::string folder = CompanyFolder(context, number);
  const std::string backups = CompanyBackupsFolder(folder, number);
  const std::vector<std::string> list = ListCompanyBackups(backups);
  if (list.empty()) {
    MessageF(ui, "Error", kNoBackupMessage, number.c_str());
    return UndoOutcome::kNoBackup;
  }
  for (const char* staging : {kUndoNewFolder, kUndoOldFolder}) {
    if (PathExists(backups + staging)) {
      MessageF(ui, "Error", kUndoLeftOverMessage, number.c_str(), (backups + staging).c_str());
      return UndoOutcome::kLeftOver;
    }
  }
  CompanyInUseLock lock;
  if (!TakeCompanyLock(context, number, lock, ui)) return UndoOutcome::kInUse;

  const std::string& name = list.back();
  const std::string backup = backups + name + "/";
  std::optional<std::string> text = ReadFileBytes(backup + kImportStateFile);
  const std::optional<ImportStateRecord> record =
      text ? ParseImportStateRecord(*text) : std::optional<ImportStateRecord>();
  if (!options.force) {
    if (!record || !record->complete) {
      MessageF(ui, "Error", kImportUnfinishedMessage, number.c_str(), name.c_str());
      return UndoOutcome::kChanged;
    }
    const std::optional<std::vector<CompanyFileState>> now = CompanyFileStates(folder, number);
    if (!now || *now != record->files) {
      MessageF(ui, "Error", kChangedSinceImportMessage, number.c_str(), name.c_str());
      return UndoOutcome::kChanged;
    }
  }

  std::vector<std::string> restored = ListFolder(backup);
  std::erase_if(restored, [&](const std::string& file) {
    return file == kImportStateFile || IsFolder(backup + file);
  });
  FileSwap swap(folder, backups, backup, options);
  switch (swap.Run(restored, CompanyFileNames(folder, number))) {
    case RestoreResult::kRestored:
      break;
    case RestoreResult::kUnchanged:
      MessageF(ui, "Error", kUndoFailedMessage, number.c_str(), name.c_str());
      return UndoOutcome::kFailed;
    case RestoreResult::kStuck:
      MessageF(ui, "Error", kUndoLeftOverMessage, number.c_str(), swap.aside().c_str());
      return UndoOutcome::kFailed;
  }
  // Undone: the backup before this one is now the last. One that cannot be removed would
  // be offered again, and refused, since the company no longer matches its record.
  static_cast<void>(RemoveAll(backups + name));
  // The setup screen may have renamed the company in the company list.
  if (record && record->listed_name) {
    static_cast<void>(EnterIntoCompanyList(context, number, *record->listed_name));
  }
  MessageF(ui, "Done", kUndoneMessage, number.c_str(), name.c_str());
  return UndoOutcome::kRestored;
}

}  // namespace nv
