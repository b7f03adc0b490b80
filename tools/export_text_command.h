// nvtool export-text FOLDER NUMBER FILE --type tab|comma|fixed|fixed-nolines [--replace]:
// writes company NUMBER of data folder FOLDER into the whole-company text file FILE, as
// the export window's "Export All Asset Data Fields" does, and prints the count it shows.
#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace nv {

// args after "export-text". 0 when every asset was written; 1 after an error (one line
// on err) or with erroneous records; 2 for a usage error.
int RunExportTextCommand(const std::vector<std::string>& args, std::ostream& out,
                         std::ostream& err);

}  // namespace nv
