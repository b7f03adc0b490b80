#include "import/frame/dry_run.h"

#include <set>

#include "base/ascii.h"
#include "base/file.h"
#include "base/file_util.h"
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

class ScratchInstallation {
 public:
  explicit ScratchInstallation(const InstallationContext& real) : real_(real), scratch_(real) {}
  ~ScratchInstallation() {
    if (!root_.empty()) static_cast<void>(RemoveAll(root_));
  }
  ScratchInstallation(const ScratchInstallation&) = delete;
  ScratchInstallation& operator=(const ScratchInstallation&) = delete;

  bool Make() {
    std::optional<std::string> root = MakeTemporaryFolder("nvtest-");
    if (!root) return false;
    root_ = *root;
    const bool shared = real_.installation_folder.empty() ||
                        SameFile(real_.installation_folder, real_.data_directory());
    const std::string data = root_ + "data/";
    const std::string install = shared ? data : root_ + "install/";
    if (!MakeFolder(data) || (!shared && !MakeFolder(install))) return false;
    scratch_.installation_folder = install;
    scratch_.current.slot.data_path = data;
    scratch_.configuration.slots[static_cast<size_t>(real_.configuration.current % 10)].data_path =
        data;
    return CopyDataFiles() && (shared || CopyInstallationFiles());
  }

  const InstallationContext& context() const { return scratch_; }

  // The company's files, once per number, under the company's lock. False when the
  // company is in use (told) or its files could not be copied (told).
  bool CopyCompany(const std::string& number, Ui& ui) {
    if (copied_.contains(number)) return true;
    const std::string folder = CompanyFolder(real_, number);
    if (!CompanyFilesExist(real_, number)) {
      copied_.insert(number);
      return true;
    }
    CompanyInUseLock lock;
    if (!TakeCompanyLock(real_, number, lock, ui)) return false;
    const std::string into =
        scratch_.data_directory() + folder.substr(real_.data_directory().size());
    if (!MakeDirectories(into)) return Fail(ui);
    const std::string backups = CompanyBackupsFolder(folder, number);
    for (const std::string& name : CompanyEntries(folder, number)) {
      if (Extension(name) == "LOK" || EqualIgnoringCase(folder + name + "/", backups)) continue;
      if (!CopyTree(folder + name, into + name)) return Fail(ui);
    }
    copied_.insert(number);
    return true;
  }

  // The real folder of a scratch folder.
  std::string RealFolder(const std::string& folder) const {
    const std::string& data = scratch_.data_directory();
    if (!folder.starts_with(data)) return folder;
    return real_.data_directory() + folder.substr(data.size());
  }

 private:
  bool Fail(Ui& ui) {
    ui.Message(kTestImportFailedMessage, "Error");
    return false;
  }

  // Top-level files of the data directory that belong to no listed company.
  bool CopyDataFiles() {
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

  bool CopyInstallationFiles() {
    const std::string& from = real_.installation_folder;
    for (const std::string& name : ListFolder(from)) {
      if (IsFolder(from + name) || !IsInstallationFile(name)) continue;
      if (!CopyFileBytes(from + name, scratch_.installation_folder + name)) return false;
    }
    return true;
  }

  const InstallationContext& real_;
  InstallationContext scratch_;
  std::string root_;
  std::set<std::string> copied_;
};

}  // namespace

ImportResult TestImport(const InstallationContext& context, Ui& ui, Importer& importer,
                        ImportHooks hooks) {
  ScratchInstallation scratch(context);
  if (!scratch.Make()) {
    ui.Message(kTestImportFailedMessage, "Error");
    return {};
  }
  auto chosen = std::move(hooks.company_chosen);
  hooks.company_chosen = [&scratch, &ui, chosen](const std::string& number) {
    if (chosen && !chosen(number)) return false;
    return scratch.CopyCompany(number, ui);
  };
  hooks.count_message = kTestImportCountMessage;
  hooks.report_folder = [&scratch](const std::string& folder) {
    return scratch.RealFolder(folder);
  };
  ImportResult result = RunImport(scratch.context(), ui, importer, std::move(hooks));
  result.report_path.clear();
  result.backup_folder.clear();
  return result;
}

}  // namespace nv
