// nvtool import KIND SOURCE FOLDER NUMBER [options]: one importer run through the same
// frame as the import window, with the windows answered from the options.
#pragma once

#include <map>
#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "base/date.h"

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
  char schedule = 0;     // --schedule LETTER (faswin CSV); 0: the company's first schedule
  bool dry_run = false;  // --dry-run: a test import into a scratch copy; nothing changes
  // The importer's own options (ImporterOptions), as answers to its prompts: question text
  // -> "yes", "no" or "cancel" (a question whose text runs on after the prompt, as a
  // date does, is answered by it too); choice-list message -> the text of the option.
  std::map<std::string, std::string> prompt_answers;
  // bna: the profile (--profile FILE) and the date of STDDATE TODAY and of the notes
  // (--today MM/DD/YYYY; the clock's when not given).
  std::string bna_profile;
  std::optional<Date> today;
};

// An option of one importer that answers one of its prompts.
struct ImporterOption {
  std::string_view kind;
  std::string_view option;  // "--type"
  std::string_view prompt;  // the question's text or the choice list's message
  std::vector<std::pair<std::string_view, std::string_view>> values;  // value -> answer
  bool required = false;
  std::string_view default_value = {};  // the value taken when the option is not given
};
const std::vector<ImporterOption>& ImporterOptions();

// args begin after "import". nullopt with the reason in *error on a usage error.
std::optional<ImportCommandOptions> ParseImportCommand(const std::vector<std::string>& args,
                                                       std::string* error);

// Exit status: 0 the import ran to its count, 1 it ended on an error or was refused, 2 an
// option the run found wrong (an item id the panel does not have).
int RunImportCommand(const ImportCommandOptions& options, std::ostream& out, std::ostream& err);

// nvtool import bna: the company steps, then one "Import Data" with the profile's
// definitions, as the dialog would run it.
int RunBnaImportCommand(const ImportCommandOptions& options, std::ostream& out, std::ostream& err);

class Importer;
// The same with an importer of the caller's (the tests' own source product).
int RunImportCommandWith(Importer& importer, const ImportCommandOptions& options, std::ostream& out,
                         std::ostream& err);

}  // namespace nv
