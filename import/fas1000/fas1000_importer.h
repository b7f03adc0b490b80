// The FAS 1000/2000 importer: a company of FAS 1000 or FAS 2000 from its folder, which
// holds COMPANY.SAF, cmpsetup.dat and the ASCII files FAS exports beside them
// (fas1000_source.h). The user picks COMPANY.SAF; the company number defaults to the
// name of its folder; FAS label fields are matched to the account number and three user
// fields; each active asset of assetgen.asc is converted (fas1000_convert.h) and added.
#pragma once

#include <memory>

#include "import/frame/import_frame.h"

namespace nv {

inline constexpr char kFasSelectCompanyFile[] = "You must select a file called COMPANY.SAF";
// Followed by the name of the company's folder and ".".
inline constexpr char kFasProduceAsciiFiles[] =
    "You must use FAS to produce ASCII files\nbefore importing company";
inline constexpr char kFasSetupMissingNote[] =
    "FAS File CMPSETUP.DAT was not found.\nThis file is used by the import software\nto "
    "determine which depreciation books are\ndefined by FAS.  All books (IRS, Internal\nBook, "
    "State, AMT and ACE) will be assumed\nso that no data is lost.";
inline constexpr char kFasUnableToOpenFiles[] =
    "Unable to open assetgen.asc or bookdata.asc file(s).\nCannot perform import without these "
    "files.";
inline constexpr char kFasMeterTitle[] = "FAS Import";
inline constexpr char kFasMeterText[] = "Copying FAS assets\n ";
inline constexpr char kFasMeterAssetText[] = "Copying FAS assets\nAsset %9.9s";

std::unique_ptr<Importer> MakeFas1000Importer();

}  // namespace nv
