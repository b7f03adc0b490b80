// nvtool export FOLDER NUMBER DEFINITION [--all-companies] [--selection NAME] [--out FILE]
// [--replace]: runs the stored export definition DEFINITION for company NUMBER of data
// folder FOLDER, as the "Export Company Data" window's Export does, and prints the count
// it shows.
//
// The definition is read from the company's NUMBER.EXP, or with --all-companies from
// global.exp in FOLDER (nvtool takes the data folder as the installation's folder).
// --selection takes only the assets of the saved asset selection NAME, this company's or,
// when it has none of that name, the one saved for all companies; without it every asset
// is exported, whatever the definition's "Select Assets" says. --out FILE writes FILE in
// place of the definition's folder and file name. An existing file is written over only
// with --replace.
#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace nv {

// args after "export". 0 after the count; 1 when the company, the definition or the
// selection is missing or the run ends early (one line on err); 2 for a usage error.
int RunExportCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

}  // namespace nv
