// The test import: an importer run in full, with every question and panel, into a scratch
// copy of what the run would touch, so that its import report can be read before the real
// run and nothing of the data directory or the installation changes.
//
// The scratch installation is a temporary folder, removed when the run ends:
//
//   install/   KELNVWIN.INI, TERM.* and the import profiles (*.IMP) of the installation
//   data/      every file of the data directory that is no listed company's (MASTER.A,
//              the global code lists, ...); and, when a company number is entered, that
//              company's files (its .CLT folder when companies live in subfolders),
//              copied under the company's lock
//
// When the installation folder is the data directory, one folder holds both. The report
// names the company's real folder, so that it reads as the real run's will.
//
// Any importer that runs through RunImport runs as a test through TestImport; one with
// steps of its own (BNA) runs them on a TestImportScratch.
#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "import/frame/import_frame.h"

namespace nv {

inline constexpr char kTestImportCountMessage[] =
    "Test import: %d assets would be copied.\nNothing was changed.";
inline constexpr char kTestImportFailedMessage[] =
    "Unable to make a scratch copy of the data for a test import.";

// The scratch installation of one test import; removed with the object.
class TestImportScratch {
 public:
  explicit TestImportScratch(const InstallationContext& real);
  ~TestImportScratch();
  TestImportScratch(const TestImportScratch&) = delete;
  TestImportScratch& operator=(const TestImportScratch&) = delete;

  // Makes the folders and copies the installation's and data directory's own files.
  // False (told) when they cannot be made.
  bool Make(Ui& ui);

  // The installation the run works on.
  const InstallationContext& context() const { return scratch_; }

  // `hooks` with what a test adds: a company number entered is copied into the scratch
  // first, the count is the test's, the report names the real folder.
  ImportHooks Hooks(Ui& ui, ImportHooks hooks);

  // The scratch copy of a file outside the installation and the data directory (a
  // profile named by its full path), made on first use; the file need not exist.
  std::string OutsideFile(const std::string& path);

  // The real files whose scratch copies the run wrote or made, with those copies, among
  // the installation files `wanted` picks and the outside files.
  struct ChangedFile {
    std::string real;
    std::string scratch;
  };
  std::vector<ChangedFile> ChangedFiles(bool (*wanted)(std::string_view name)) const;

 private:
  bool CopyCompany(const std::string& number, Ui& ui);
  std::string RealFolder(const std::string& folder) const;
  bool CopyDataFiles();
  bool CopyInstallationFiles();

  const InstallationContext& real_;
  InstallationContext scratch_;
  std::string root_;
  std::set<std::string> copied_;
  std::map<std::string, std::string> outside_;  // real path -> scratch copy
};

// Runs `importer` as RunImport does, into the scratch installation. The result's report
// is the run's; report_path and backup_folder are empty, as nothing is kept.
ImportResult TestImport(const InstallationContext& context, Ui& ui, Importer& importer,
                        ImportHooks hooks = {});

}  // namespace nv
