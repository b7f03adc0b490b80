// nvtool import KIND SOURCE FOLDER NUMBER [options]: one importer run through the same
// frame as the import window, with the windows answered from the options.
#pragma once

#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace nv {

struct ImportCommandOptions {
  std::string kind;
  std::string source;
  std::string folder;
  std::string number;
  std::string existing = "abort";            // select | erase | add | abort
  std::string company_json;                  // --company FILE.json
  std::vector<std::pair<int, int>> matches;  // --match DEST=SRC (SRC 0 unpairs)
  std::vector<std::pair<char, int>> books;   // --books LETTER=BOOK (BOOK 0 unpairs)
  // AICPA: the account that names account groups, whether declining balance switches to
  // straight line, and whether to go on when the dispositions file is missing.
  std::string account = "asset";      // --account asset | accumulated | expense
  bool switch_sl = false;             // --switch-sl yes | no
  bool without_dispositions = false;  // --without-dispositions yes | no
};

// args begin after "import". nullopt with the reason in *error on a usage error.
std::optional<ImportCommandOptions> ParseImportCommand(const std::vector<std::string>& args,
                                                       std::string* error);

// Exit status: 0 the import ran to its count, 1 it ended on an error or was refused, 2 an
// option the run found wrong (an item id the panel does not have).
int RunImportCommand(const ImportCommandOptions& options, std::ostream& out, std::ostream& err);

class Importer;
// The same with an importer of the caller's (the tests' own source product).
int RunImportCommandWith(Importer& importer, const ImportCommandOptions& options, std::ostream& out,
                         std::ostream& err);

}  // namespace nv
