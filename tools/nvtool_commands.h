// The commands of nvtool, the command-line companion: checking, dumping and loading
// companies of a data directory. main() only hands its arguments over, so that the tests
// run the commands in-process.
#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace nv {

// args without the program name. Output goes to out, one clear line per error to err.
// Returns the exit status: 0 success, 1 the command failed (problems found, no such
// company, unreadable files, a bad document), 2 a usage error.
int RunNvtool(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

}  // namespace nv
