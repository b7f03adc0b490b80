// Company selection, used before an export and when an importer adds to a company: the
// list of the data directory's companies (or a new number), the in-use lock, and the open.
//
//   1. "%8.8s  %-40.40s" per company; "New Company" asks for a number. No companies:
//      "No companies in data directory.".
//   2. The in-use lock; held by another user: "You cannot select ..., because ...".
//   3. Open with the asset-number and sort indexes, under the lock of step 2 (which the
//      company leaves held when it closes). A newer version cannot be used; other
//      index troubles (-110 to -119) offer a quick rebuild, which this program leaves to
//      the main program, so the open fails again and is reported.
//   4. No Access: "You are not permitted to access company %s".
//   5. Other failures: "Unable to open company %s".
//   6. An opened company missing from MASTER.A is added to it. When no company ends up
//      open, the lock is let go.
#pragma once

#include <string>
#include <vector>

#include "base/installation_context.h"
#include "base/ui.h"
#include "store/company/company.h"
#include "store/company/company_lock.h"

namespace nv {

inline constexpr char kNewCompanyOption[] = "New Company";
inline constexpr char kNoCompaniesMessage[] = "No companies in data directory.";
inline constexpr char kNewerVersionMessage[] =
    "Files for this company were produced using a\nnewer version of NORVANE. They cannot be\n"
    "used or rebuilt by this version.";
inline constexpr char kQuickRebuildQuestion[] =
    "A quick rebuild will automatically be\nperformed on this company, in order to\nmake its "
    "index files usable for the\ncurrent version of %s.\n\nContinue?";
inline constexpr char kBackupNotSupported[] =
    "Company file backup is not supported by the import program.";
inline constexpr char kRebuildNotHere[] = "Exit import software to perform company rebuild.";
inline constexpr char kNoAccessMessage[] = "You are not permitted to access company %s";
inline constexpr char kUnableToOpenMessage[] = "Unable to open company %s";

enum class CompanyChoice {
  kOpened,     // the company is open with flags 1 + 2 and its lock is held
  kNewNumber,  // the user entered a new company number (nothing is open or locked)
  kCancelled,  // nothing chosen, or the chosen company could not be used
};

struct CompanySelectionResult {
  CompanyChoice choice = CompanyChoice::kCancelled;
  std::string new_number;  // with kNewNumber
};

// `title` heads the list; `offer_new` adds "New Company".
CompanySelectionResult SelectCompany(const InstallationContext& context, Ui& ui,
                                     CompanyInUseLock& lock, NvCompany& company,
                                     std::string_view title, bool offer_new);

// A company as the company list shows it: "%8.8s  %-40.40s" (number, name).
std::string CompanyListLine(const NvMasterRec& company);

// Asks for a new company number ("Enter New Company Number", "Company Number:") until the
// user gives a valid one or cancels. Upper case, trimmed.
std::optional<std::string> AskNewCompanyNumber(Ui& ui);
// The same with the entry's prompt and the number it opens with.
inline constexpr char kNewCompanyNumberTitle[] = "Enter New Company Number";
std::optional<std::string> AskNewCompanyNumber(Ui& ui, std::string prompt, std::string initial,
                                               std::vector<std::string> listing = {},
                                               std::string title = kNewCompanyNumberTitle);

// Takes the in-use lock of a company; tells the user who holds it when it is taken.
bool TakeCompanyLock(const InstallationContext& context, std::string_view number,
                     CompanyInUseLock& lock, Ui& ui);

// Adds the company to MASTER.A when it is not listed there yet.
bool ListCompanyInMasterFile(const InstallationContext& context, const std::string& number,
                             const std::string& name);

}  // namespace nv
