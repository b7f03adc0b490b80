#include <cctype>

#include "base/ascii.h"
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

// "yes" or "no".
std::optional<bool> YesNo(std::string_view text) {
  if (text == "yes") return true;
  if (text == "no") return false;
  return std::nullopt;
}

}  // namespace

std::optional<ImportCommandOptions> ParseImportCommand(const std::vector<std::string>& args,
                                                       std::string* error) {
  ImportCommandOptions options;
  std::vector<std::string> positional;
  for (size_t i = 0; i < args.size(); ++i) {
    const std::string& arg = args[i];
    if (!arg.starts_with("--")) {
      positional.push_back(arg);
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
    } else if (arg == "--account") {
      if (value != "asset" && value != "accumulated" && value != "expense") {
        *error = "--account takes asset, accumulated or expense, not '" + value + "'";
        return std::nullopt;
      }
      options.account = value;
    } else if (arg == "--switch-sl" || arg == "--without-dispositions") {
      std::optional<bool> yes = YesNo(value);
      if (!yes) {
        *error = arg + " takes yes or no, not '" + value + "'";
        return std::nullopt;
      }
      (arg == "--switch-sl" ? options.switch_sl : options.without_dispositions) = *yes;
    } else {
      // The importers' own questions get options of their own as they are built; every
      // other option is a mistake.
      *error = "unknown option " + arg +
               " (options: --existing, --company, --match, --books, --account, --switch-sl, "
               "--without-dispositions)";
      return std::nullopt;
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
  if (options.number.empty() || options.number.size() > kCompanyNumberLength ||
      !IsValidCompanyNumber(options.number)) {
    *error = "company number '" + positional[3] + "' must be 1 to 8 letters, digits or & # $ @";
    return std::nullopt;
  }
  return options;
}

}  // namespace nv
