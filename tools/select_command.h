// nvtool select FOLDER NUMBER [--schedule LETTER] CRITERION...: prints the asset numbers of
// company NUMBER of data folder FOLDER that an asset selection takes, one a line in
// asset-number order, as the export would take them.
//
// A CRITERION is FIELD=TEXT, or FIELD!=TEXT to take the assets the text does not; FIELD is
// a field of the selection window by its caption, in any case ("Location=01-05,10",
// "Disposal Code!=S", "Depr Method=3,33", "Disposal Date=//", "Asset Desc.=Desk*"). The
// text is checked as the window checks it. The fields that take their value in a schedule
// use --schedule, or the company's first schedule.
#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace nv {

// args after "select". 0 after listing; 1 when the company cannot be read, a criterion is
// refused or the assets cannot all be read (one line on err); 2 for a usage error.
int RunSelectCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

}  // namespace nv
