// "Change Company Number": gives an existing company a new number. Its files (number +
// ".*", the lock file excepted) move to the new number's names, into the new number's
// folder when companies live in subfolders; the in-use lock moves with them, the company
// record is rewritten and MASTER.A lists the new number in place of the old.
#pragma once

#include <optional>
#include <string>

#include "base/installation_context.h"
#include "base/ui.h"
#include "store/company/company.h"
#include "store/company/company_lock.h"

namespace nv {

inline constexpr char kSameNumberMessage[] = "New company number is the same as the old one.";
inline constexpr char kFilesExistMessage[] = "Files for this company already exist.";
inline constexpr char kSubfolderFailedMessage[] = "Unable to create new company's subdirectory.";
inline constexpr char kRenameFailedMessage[] =
    "An error occurred during company number\nrename.  Ensure that files are complete.";

// Asks for the new number in the dialog and changes it; nothing happens on Cancel.
// `company` names the company (open or not); it is closed afterwards.
bool RunChangeCompanyNumber(const InstallationContext& context, NvCompany& company,
                            CompanyInUseLock& lock, Ui& ui);

enum class RenumberResult {
  kDone,     // the company has its new number
  kRefused,  // the number was refused before anything changed; the dialog stays
  kFailed,   // moving the files or the lock failed; the user was told to check them
};

// The dialog's OK: checks the new number, tells the user what is wrong, then moves the
// files.
RenumberResult ChangeCompanyNumber(const InstallationContext& context, NvCompany& company,
                                   std::string_view new_number, CompanyInUseLock& lock, Ui& ui);

}  // namespace nv
