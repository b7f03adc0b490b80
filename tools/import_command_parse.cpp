#include <algorithm>
#include <array>
#include <cctype>

#include "base/ascii.h"
#include "import/aicpa/aicpa_importer.h"
#include "import/bna/bna_import.h"
#include "import/dbs/dbs_importer.h"
#include "import/faswin/faswin_importer.h"
#include "import/importers.h"
#include "store/company/company.h"
#include "tools/import_command.h"

namespace nv {
namespace {

// A whole decimal number of at most nine digits.
std::optional<int> WholeNumber(std::string_view text) {
  if (text.empty() || text.size() > 9) return std::nullopt;
  int value = 0;
  for (char c : text) {
    if (c < '0' || c > '9') return std::nullopt;
    value = value * 10 + (c - '0');
  }
  return value;
}

// "A=B,C=D": each pair split at its "="; false on a piece without one, or empty sides.
bool SplitPairs(std::string_view list, std::vector<std::pair<std::string, std::string>>* pairs) {
  if (list.empty()) return false;
  for (size_t from = 0;;) {
    size_t comma = list.find(',', from);
    std::string_view piece =
        list.substr(from, comma == std::string_view::npos ? list.npos : comma - from);
    const size_t eq = piece.find('=');
    if (eq == std::string_view::npos || eq == 0 || eq + 1 == piece.size()) return false;
    pairs->emplace_back(std::string(piece.substr(0, eq)), std::string(piece.substr(eq + 1)));
    if (comma == std::string_view::npos) return true;
    from = comma + 1;
  }
}

const ImporterOption* FindImporterOption(std::string_view kind, std::string_view option) {
  for (const ImporterOption& o : ImporterOptions()) {
    if (o.kind == kind && o.option == option) return &o;
  }
  return nullptr;
}

std::string OptionValues(const ImporterOption& option) {
  std::string values;
  for (const auto& [value, answer] : option.values) {
    values += (values.empty() ? "" : "|") + std::string(value);
  }
  return values;
}

// The --duplicates values, in the order of the duplicate modes.
constexpr std::array<std::string_view, 4> kBnaDuplicatesValues{"combine", "replace", "ignore",
                                                               "subasset"};

// bna's options that are no answer to one prompt: 1 taken, 0 not one of them, -1 wrong
// (the reason in *error).
int ParseBnaOption(const std::string& arg, const std::string& value, ImportCommandOptions* options,
                   std::string* error) {
  if (arg == "--profile") {
    options->bna_profile = value;
    return 1;
  }
  if (arg == "--today") {
    std::optional<Date> today = ParseDisplayDate(value);
    if (!today || today->empty()) {
      *error = "--today takes a date MM/DD/YYYY, not '" + value + "'";
      return -1;
    }
    options->today = today;
    return 1;
  }
  if (arg == "--duplicates") {
    auto it = std::find(kBnaDuplicatesValues.begin(), kBnaDuplicatesValues.end(), value);
    if (it == kBnaDuplicatesValues.end()) {
      *error = "--duplicates takes combine|replace|ignore|subasset, not '" + value + "'";
      return -1;
    }
    // The question of the profile's mode is confirmed when it is this one; otherwise the
    // mode is changed through the list.
    const auto wanted = static_cast<DuplicateMode>(it - kBnaDuplicatesValues.begin() + 1);
    for (int m = 1; m <= 4; ++m) {
      const auto mode = static_cast<DuplicateMode>(m);
      options->prompt_answers[BnaDuplicateQuestion(mode)] = mode == wanted ? "yes" : "no";
    }
    options->prompt_answers[kBnaDuplicatesTitle] = BnaDuplicateOption(wanted);
    return 1;
  }
  return 0;
}

}  // namespace

const std::vector<ImporterOption>& ImporterOptions() {
  static const std::vector<ImporterOption> options = {
      {"text",
       "--type",
       kSelectRecordTypeMessage,
       {{"tab", kImportRecordTypes[0]},
        {"comma", kImportRecordTypes[1]},
        {"fixed", kImportRecordTypes[2]}},
       true},
      {"text", "--user-fields", kFiveUserFieldsImportQuestion, {{"yes", "yes"}, {"no", "no"}}},
      {"aicpa",
       "--account",
       kAicpaAccountChoice,
       {{"asset", kAicpaAccountOptions[0]},
        {"accumulated", kAicpaAccountOptions[1]},
        {"expense", kAicpaAccountOptions[2]}},
       false,
       "asset"},
      {"aicpa", "--switch-sl", kAicpaSwitchQuestion, {{"yes", "yes"}, {"no", "no"}}, false, "no"},
      {"faswin",
       "--delete-disposed",
       kFasWinDeleteDisposedQuestion,
       {{"yes", "yes"}, {"no", "no"}, {"cancel", "cancel"}},
       false,
       "no"},
      {"aicpa",
       "--without-dispositions",
       kAicpaNoDispositionsQuestion,
       {{"yes", "yes"}, {"no", "no"}},
       false,
       "no"},
      {"bna",
       "--company-type",
       kBnaCompanyTypeMessage,
       {{"new", kBnaNewCompanyOption}, {"existing", kBnaExistingCompanyOption}},
       false,
       "new"},
  };
  return options;
}

std::optional<ImportCommandOptions> ParseImportCommand(const std::vector<std::string>& args,
                                                       std::string* error) {
  ImportCommandOptions options;
  std::vector<std::string> positional;
  std::vector<std::pair<std::string, std::string>> own_options;  // checked once KIND is known
  for (size_t i = 0; i < args.size(); ++i) {
    const std::string& arg = args[i];
    if (!arg.starts_with("--")) {
      positional.push_back(arg);
      continue;
    }
    if (arg == "--dry-run") {
      options.dry_run = true;
      continue;
    }
    if (i + 1 >= args.size()) {
      *error = arg + " needs a value";
      return std::nullopt;
    }
    const std::string& value = args[++i];
    if (arg == "--existing") {
      if (value != "select" && value != "erase" && value != "add" && value != "abort") {
        *error = "--existing takes select, erase, add or abort, not '" + value + "'";
        return std::nullopt;
      }
      options.existing = value;
    } else if (arg == "--schedule") {
      if (value.size() != 1 || !std::isalpha(static_cast<unsigned char>(value[0]))) {
        *error = "--schedule takes a schedule letter, not '" + value + "'";
        return std::nullopt;
      }
      options.schedule = AsciiUpper(value[0]);
    } else if (arg == "--company") {
      options.company_json = value;
    } else if (arg == "--match" || arg == "--books") {
      std::vector<std::pair<std::string, std::string>> pairs;
      if (!SplitPairs(value, &pairs)) {
        *error = arg + " takes pairs " + (arg == "--match" ? "DEST=SRC" : "LETTER=BOOK") +
                 " separated by commas, not '" + value + "'";
        return std::nullopt;
      }
      for (const auto& [left, right] : pairs) {
        std::optional<int> source = WholeNumber(right);
        if (arg == "--match") {
          std::optional<int> destination = WholeNumber(left);
          if (!destination || !source) {
            *error = "--match pair '" + left + "=" + right + "' is not two item ids";
            return std::nullopt;
          }
          options.matches.emplace_back(*destination, *source);
        } else {
          if (left.size() != 1 || !std::isalpha(static_cast<unsigned char>(left[0])) || !source) {
            *error = "--books pair '" + left + "=" + right +
                     "' is not a schedule letter and a book item id";
            return std::nullopt;
          }
          options.books.emplace_back(AsciiUpper(left[0]), *source);
        }
      }
    } else {
      own_options.emplace_back(arg, value);
    }
  }
  if (positional.size() != 4) {
    *error = "import takes KIND SOURCE FOLDER NUMBER";
    return std::nullopt;
  }
  options.kind = positional[0];
  options.source = positional[1];
  options.folder = positional[2];
  options.number = AsciiUpper(TrimBlanks(positional[3]));
  if (FindImporterByKind(options.kind) == nullptr) {
    std::string kinds;
    for (const ImporterEntry& entry : ImporterEntries()) {
      kinds += (kinds.empty() ? "" : ", ") + std::string(entry.kind);
    }
    *error = "unknown kind '" + options.kind + "' (kinds: " + kinds + ")";
    return std::nullopt;
  }
  if (options.schedule != 0 && options.kind != "faswin") {
    *error = "--schedule is an option of faswin only";
    return std::nullopt;
  }
  for (const auto& [arg, value] : own_options) {
    if (options.kind == "bna") {
      const int taken = ParseBnaOption(arg, value, &options, error);
      if (taken < 0) return std::nullopt;
      if (taken > 0) continue;
    }
    const ImporterOption* option = FindImporterOption(options.kind, arg);
    if (option == nullptr) {
      std::string known = "--existing, --company, --match, --books, --dry-run";
      if (options.kind == "bna") known += ", --profile, --today, --duplicates";
      for (const ImporterOption& o : ImporterOptions()) {
        if (o.kind == options.kind) known += ", " + std::string(o.option);
      }
      *error = "unknown option " + arg + " for " + options.kind + " (options: " + known + ")";
      return std::nullopt;
    }
    const std::string& given = value;
    auto it = std::find_if(option->values.begin(), option->values.end(),
                           [&given](const auto& pair) { return pair.first == given; });
    if (it == option->values.end()) {
      *error = arg + " takes " + OptionValues(*option) + ", not '" + value + "'";
      return std::nullopt;
    }
    options.prompt_answers[std::string(option->prompt)] = std::string(it->second);
  }
  for (const ImporterOption& option : ImporterOptions()) {
    const std::string prompt(option.prompt);
    if (option.kind != options.kind || options.prompt_answers.contains(prompt)) continue;
    for (const auto& [value, answer] : option.values) {
      if (value == option.default_value) options.prompt_answers[prompt] = std::string(answer);
    }
    if (option.required && !options.prompt_answers.contains(prompt)) {
      *error = options.kind + " needs " + std::string(option.option) + " " + OptionValues(option);
      return std::nullopt;
    }
  }
  if (options.kind == "bna") {
    if (options.bna_profile.empty()) {
      *error = "bna needs --profile FILE";
      return std::nullopt;
    }
    // The profile's own mode when --duplicates does not say.
    for (int m = 1; m <= 4; ++m) {
      options.prompt_answers.try_emplace(BnaDuplicateQuestion(static_cast<DuplicateMode>(m)),
                                         "yes");
    }
  }
  if (options.number.empty() || options.number.size() > kCompanyNumberLength ||
      !IsValidCompanyNumber(options.number)) {
    *error = "company number '" + positional[3] + "' must be 1 to 8 letters, digits or & # $ @";
    return std::nullopt;
  }
  return options;
}

}  // namespace nv
