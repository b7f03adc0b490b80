// The AICPA importer: the asset detail report NAME.AST, with the dispositions report
// NAME.DSP beside it when there is one, into a NORVANE company.
//
//   1. The source must be a ".AST" file. When NAME.DSP is missing the user is asked
//      whether to go on without dispositions; no ends the import before anything is made.
//   2. Company number (default: the file's name up to its first "-") and an existing
//      company (Select, Add or Abort). Then the user chooses which of an asset's accounts
//      names its account group, and the report is read once for the company: a new
//      company's name, year and schedules, and the account sets of all assets.
//   3. A new company's setup screen; then whether declining-balance methods of books that
//      are neither MACRS nor ACRS switch to straight line (closing the question ends the
//      import).
//   4. The account groups are added to the company's .ACG file; every asset page is
//      converted and added with the current-year files kept; then the dispositions are
//      applied to the assets this import added; then the count.
#pragma once

#include <array>
#include <memory>

#include "import/frame/import_frame.h"

namespace nv {

inline constexpr char kAicpaTitle[] = "AICPA Import";
inline constexpr char kAicpaWrongExtension[] =
    "You must select a file with an \".AST\" extension.  See Help information";
inline constexpr char kAicpaCannotOpenAssetFile[] =
    "Unable to open asset file. Cannot perform import\nwithout this file. See help for more "
    "information.";
inline constexpr char kAicpaNoDispositionsQuestion[] =
    "Unable to open dispositions file.  Without this file,\ndispositions must be entered "
    "manually.  See help for \nmore details.  Continue?";
inline constexpr char kAicpaAccountChoice[] = "Select Number used to identify Account Group:";
// In the order offered; the position is the account's (aicpa::Account).
inline constexpr std::array<const char*, 3> kAicpaAccountOptions = {
    "Asset Account No.", "Accumulated Depr. Account Account No.",
    "Depreciation Expense Account No."};
inline constexpr char kAicpaSwitchQuestion[] =
    "Do you want Non-MACRS/ACRS Declining Balance\nmethods to switch to Straight Line?";
// When the report's column headings name no book (the assets then get no schedules).
inline constexpr char kAicpaNoBooksWarning[] =
    "The report's column headings name no book (Federal, AMT, ACE, State, Book or\n"
    "Other).  The assets will be copied without their depreciation schedules.";
// Texts of the progress window.
inline constexpr char kAicpaGettingCompanyData[] = "Getting Company Data";
inline constexpr char kAicpaFindingAccounts[] = "Finding Categories && Accounts";
inline constexpr char kAicpaCopyingAssets[] = "Copying Assets";
inline constexpr char kAicpaFindingDispositions[] = "Finding Dispositions";
// Names the importer gives the company's user fields 1 and 2 when assets fill them.
inline constexpr char kAicpaUserField1Name[] = "User-defined 1";
inline constexpr char kAicpaUserField2Name[] = "User-defined 2";

ImportDescriptor AicpaDescriptor();
std::unique_ptr<Importer> MakeAicpaImporter();

}  // namespace nv
