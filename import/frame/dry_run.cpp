#include "import/frame/dry_run.h"

#include <set>

#include "base/ascii.h"
#include "base/file.h"
#include "base/file_util.h"
#include "base/path.h"
#include "base/str_format.h"
#include "base/temp_folder.h"
#include "import/frame/import_backup.h"
#include "store/company/company.h"
#include "ui/company_selection.h"

namespace nv {
namespace {

// Copies a file, or a folder with everything in it.
bool CopyTree(const std::string& from, const std::string& to) {
  if (!IsFolder(from)) return CopyFileBytes(from, to);
  if (!MakeFolder(to) && !IsFolder(to)) return false;
  for (const std::string& name : ListFolder(from)) {
    if (!CopyTree(from + "/" + name, to + "/" + name)) return false;
  }
  return true;
}

std::string Extension(std::string_view name) {
  const size_t dot = name.find('.');
  return dot == std::string_view::npos ? "" : AsciiUpper(name.substr(dot + 1));
}

// The installation's files that a run reads and may write.
bool IsInstallationFile(std::string_view name) {
  return EqualIgnoringCase(name, "KELNVWIN.INI") ||
         (name.size() > 5 && EqualIgnoringCase(name.substr(0, 5), "TERM.")) ||
         Extension(name).ends_with("IMP");
}

constexpr char kScratchPrefix[] = "nvtest-";

}  // namespace

TestImportScratch::TestImportScratch(const InstallationContext& real)
    : real_(real), scratch_(real) {}

TestImportScratch::~TestImportScratch() {
  if (!root_.empty()) static_cast<void>(RemoveAll(root_));
}

bool TestImportScratch::Make(Ui& ui) {
  // A test import that was killed leaves its scratch behind, a company's worth of files:
  // the next one clears what is a day old.
  static_cast<void>(RemoveStaleTemporaryFolders(kScratchPrefix, std::chrono::hours(24)));
  std::optional<std::string> root = MakeTemporaryFolder(kScratchPrefix);
  if (root) {
    root_ = *root;
    const bool shared = real_.installation_folder.empty() ||
                        SameFile(real_.installation_folder, real_.data_directory());
    const std::string data = root_ + "data/";
    const std::string install = shared ? data : root_ + "install/";
    if (MakeFolder(data) && (shared || MakeFolder(install))) {
      scratch_.installation_folder = install;
      scratch_.current.slot.data_path = data;
      scratch_.configuration.slots[static_cast<size_t>(real_.configuration.current % 10)]
          .data_path = data;
      if (CopyDataFiles() && (shared || CopyInstallationFiles())) return true;
    }
  }
  ui.Message(kTestImportFailedMessage, "Error");
  return false;
}

ImportHooks TestImportScratch::Hooks(Ui& ui, ImportHooks hooks) {
  auto chosen = std::move(hooks.company_chosen);
  hooks.company_chosen = [this, &ui, chosen](const std::string& number) {
    if (chosen && !chosen(number)) return false;
    return CopyCompany(number, ui);
  };
  hooks.count_message = kTestImportCountMessage;
  hooks.report_folder = [this](const std::string& folder) { return RealFolder(folder); };
  return hooks;
}

// The company's files, once per number, under the company's lock. False when the company
// is in use (told) or its files could not be copied (told).
bool TestImportScratch::CopyCompany(const std::string& number, Ui& ui) {
  if (copied_.contains(number)) return true;
  const std::string folder = CompanyFolder(real_, number);
  if (!CompanyFilesExist(real_, number)) {
    copied_.insert(number);
    return true;
  }
  CompanyInUseLock lock;
  if (!TakeCompanyLock(real_, number, lock, ui)) return false;
  const std::string into = scratch_.data_directory() + folder.substr(real_.data_directory().size());
  bool ok = MakeDirectories(into);
  const std::string backups = CompanyBackupsFolder(folder, number);
  for (const std::string& name : CompanyEntries(folder, number)) {
    if (!ok) break;
    if (Extension(name) == "LOK" || EqualIgnoringCase(folder + name + "/", backups)) continue;
    ok = CopyTree(folder + name, into + name);
  }
  if (!ok) {
    ui.Message(kTestImportFailedMessage, "Error");
    return false;
  }
  copied_.insert(number);
  return true;
}

std::string TestImportScratch::RealFolder(const std::string& folder) const {
  const std::string& data = scratch_.data_directory();
  if (!folder.starts_with(data)) return folder;
  return real_.data_directory() + folder.substr(data.size());
}

// Top-level files of the data directory that belong to no listed company.
bool TestImportScratch::CopyDataFiles() {
  const std::string& from = real_.data_directory();
  std::set<std::string> companies;
  for (const NvMasterRec& entry : real_.current.companies) companies.insert(entry.number);
  for (const std::string& name : ListFolder(from)) {
    if (IsFolder(from + name)) continue;
    const std::string stem = AsciiUpper(std::string_view(name).substr(0, name.find('.')));
    if (name.find('.') != std::string::npos && companies.contains(stem)) continue;
    if (Extension(name) == "LOK") continue;
    if (!CopyFileBytes(from + name, scratch_.data_directory() + name)) return false;
  }
  return true;
}

bool TestImportScratch::CopyInstallationFiles() {
  const std::string& from = real_.installation_folder;
  for (const std::string& name : ListFolder(from)) {
    if (IsFolder(from + name) || !IsInstallationFile(name)) continue;
    if (!CopyFileBytes(from + name, scratch_.installation_folder + name)) return false;
  }
  return true;
}

std::string TestImportScratch::OutsideFile(const std::string& path) {
  auto [it, added] = outside_.try_emplace(path);
  if (added) {
    // Numbered, so that two files of one name from different folders stay apart.
    const std::string folder = root_ + StrPrintf("outside/%zu/", outside_.size());
    const size_t separator = LastSeparator(path);
    it->second = folder + path.substr(separator == std::string::npos ? 0 : separator + 1);
    if (MakeDirectories(folder) && PathExists(path)) {
      static_cast<void>(CopyFileBytes(path, it->second));
    }
  }
  return it->second;
}

std::vector<TestImportScratch::ChangedFile> TestImportScratch::ChangedFiles(
    bool (*wanted)(std::string_view name)) const {
  std::vector<ChangedFile> changed;
  auto differs = [](const std::string& real, const std::string& copy) {
    std::optional<std::string> now = ReadFileBytes(copy);
    return now && ReadFileBytes(real) != now;
  };
  const std::string& folder = scratch_.installation_folder;
  for (const std::string& name : ListFolder(folder)) {
    if (IsFolder(folder + name) || !IsInstallationFile(name) || !wanted(name)) continue;
    const std::string real = FindFileIgnoringCase(real_.installation_folder, name)
                                 .value_or(real_.installation_folder + name);
    if (differs(real, folder + name)) changed.push_back({real, folder + name});
  }
  for (const auto& [real, copy] : outside_) {
    if (differs(real, copy)) changed.push_back({real, copy});
  }
  return changed;
}

ImportResult TestImport(const InstallationContext& context, Ui& ui, Importer& importer,
                        ImportHooks hooks) {
  TestImportScratch scratch(context);
  if (!scratch.Make(ui)) return {};
  ImportResult result =
      RunImport(scratch.context(), ui, importer, scratch.Hooks(ui, std::move(hooks)));
  result.report_path.clear();
  result.backup_folder.clear();
  return result;
}

}  // namespace nv
