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
// Any importer that runs through RunImport runs as a test through TestImport.
#pragma once

#include "import/frame/import_frame.h"

namespace nv {

inline constexpr char kTestImportCountMessage[] =
    "Test import: %d assets would be copied.\nNothing was changed.";
inline constexpr char kTestImportFailedMessage[] =
    "Unable to make a scratch copy of the data for a test import.";

// Runs `importer` as RunImport does, into the scratch installation. The result's report
// is the run's; report_path and backup_folder are empty, as nothing is kept.
ImportResult TestImport(const InstallationContext& context, Ui& ui, Importer& importer,
                        ImportHooks hooks = {});

}  // namespace nv
