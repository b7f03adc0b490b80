// The importer of the whole-company text file (the file the text-file export writes): tab-
// or comma-delimited or fixed-length records, one asset a line, every field going to a fixed
// asset field, so there is nothing to match.
//
// Before the file dialog it asks whether to go on with five user fields only; after it, the
// record type. The default company number is the file's name without its extension (at
// most 8 characters). A new company is filled from the file: the schedules whose slots hold
// a schedule in some record, in slot order, each named by its letter's default name; Sort
// Order "ACL", Business Category 1, neither list global.
#pragma once

#include <memory>
#include <string>

#include "import/frame/import_frame.h"

namespace nv {

inline constexpr char kFiveUserFieldsImportQuestion[] =
    "This import format only supports 5 user definable fields.\n\nContinue?";
inline constexpr char kSelectRecordTypeMessage[] = "Select record type";
inline constexpr char kNoRecordTypeMessage[] = "No record type selected.";
// The record type choices, in their order.
inline constexpr const char* kImportRecordTypes[] = {"Tab-Delimited", "Comma-Delimited",
                                                     "Fixed Length"};

std::unique_ptr<Importer> MakeDataBaseFileImporter();

}  // namespace nv
