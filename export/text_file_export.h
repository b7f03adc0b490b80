// The whole-company text file: the export window's "Export All Asset Data Fields".
//
// CreateTextFileForExport runs the screen "Create Text File for Export"
// (ui/text_file_screen.h) until the user closes it, writing one file with WriteTextFile each
// time the user presses Create. WriteTextFile opens the company for reading, asks for the
// record type and writes every asset in record-number order (the order the assets were
// added), one record each (export/text_record.h).
#pragma once

#include <string>

#include "base/installation_context.h"
#include "base/ui.h"
#include "store/company/company.h"
#include "store/company/company_lock.h"
#include "ui/text_file_screen.h"

namespace nv {

inline constexpr char kRecordTypeMessage[] = "Record Type";
inline constexpr char kTextFileMeterTitle[] = "Creating Text File";
inline constexpr char kTextFileDoneTitle[] = "Create Text File";
inline constexpr char kUnableToCreateTextFile[] = "Unable to create text file %s";
inline constexpr char kUnableToWriteAssetRecord[] = "Unable to write asset record %u";
inline constexpr char kAssetsCopied[] = "%u assets copied.";
inline constexpr char kAssetsCopiedWithErrors[] = "%u assets copied.\n%u erroneous records.";
inline constexpr char kAdvancedExportNote[] = "Entering Advanced Export Program";

// How a WriteTextFile run went.
struct TextFileResult {
  bool written = false;  // the file was made and the count shown
  unsigned copied = 0;
  unsigned erroneous = 0;  // records that could not be read or written
};

// Writes the request's company into folder + file name. Every outcome is told through ui:
// a company that does not open, the record type list closed (nothing is written then), a
// file that cannot be made, a record that cannot be written, and at the end the count.
TextFileResult WriteTextFile(const InstallationContext& context, const TextFileRequest& request,
                             Ui& ui);

// The command. `company` is the company selected so far: open, or not open when none is
// selected, in which case the company selection runs first (its lock goes into `lock`).
// Without a company, Alt held leads to the export definitions; otherwise the command ends.
void CreateTextFileForExport(const InstallationContext& context, Ui& ui, CompanyInUseLock& lock,
                             NvCompany& company);

}  // namespace nv
