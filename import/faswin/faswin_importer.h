// The FAS for Windows importer. The person picks either xxxxCMPY.WFA, the company file of
// the ASCII export of a whole company (its companion files beside it, faswin_source.h),
// or the CSV export of one book. The WFA form makes or fills a company with a schedule
// per FAS book; the CSV form fills one chosen schedule, merging into assets of the same
// number already in the company, so that the books of one company can be brought in one
// file after another. Both forms match FAS data fields to the account number and user
// fields and ask whether old disposals are left out; the WFA form also matches FAS books
// to the company's schedules.
#pragma once

#include <memory>

#include "import/frame/import_frame.h"

namespace nv {

inline constexpr char kFasWinSelectFile[] = "You must select a file of the form xxxxCMPY.WFA";
// Followed by the missing files' names, separated by ", ".
inline constexpr char kFasWinMissingFiles[] =
    "Unable to find the following ASCII file(s), which\nshould have been produced by FAS "
    "export:\n";
inline constexpr char kFasWinUnableToOpenFiles[] = "Unable to open FAS data file(s).";
inline constexpr char kFasWinMergeQuestion[] =
    "Data encountered for any already existing asset numbers\nwill be merged with the "
    "existing data. Continue?";
// Followed by the company's Last Closed date.
inline constexpr char kFasWinDeleteDisposedQuestion[] = "Delete assets disposed on or before ";
inline constexpr char kFasWinSelectSchedule[] = "Select Schedule to Import";
inline constexpr char kFasWinUnableToOpenCompany[] = "Unable to open destination company %s";
inline constexpr char kFasWinNotCsvExport[] =
    "%s is not a FAS for Windows CSV export:\nits first line must have at least three "
    "fields\nand its second line the column names.";
inline constexpr char kFasWinNoSchedules[] = "Company %s has no schedules to import the book into.";
inline constexpr char kFasWinAccountGroupsNotSaved[] = "Unable to write the account groups to %s";
inline constexpr char kFasWinMeterTitle[] = "FAS for Windows Import";
inline constexpr char kFasWinMeterText[] = "Copying FAS assets\n ";
inline constexpr char kFasWinMeterAssetText[] = "Copying FAS assets\nAsset %9.9s";
inline constexpr char kFasWinMeterCsvAssetText[] = "Copying FAS assets\nAsset %s";

// The text of a schedule in "Select Schedule to Import": its letter, " - ", its name.
std::string FasWinScheduleOption(char letter, const std::string& name);

std::unique_ptr<Importer> MakeFasWinImporter();

}  // namespace nv
