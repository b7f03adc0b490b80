#include "tools/export_command.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>

#include "base/ascii.h"
#include "base/file_util.h"
#include "export/export_definition.h"
#include "export/export_run.h"
#include "store/company/company.h"
#include "tools/nvtool_context.h"
#include "ui/scripted_ui.h"
#include "ui/selection/saved_selections.h"

namespace nv {
namespace {

struct ExportOptions {
  std::string folder;
  std::string number;
  std::string definition;
  bool all_companies = false;
  std::optional<std::string> selection;
  std::optional<std::string> out;
  bool replace = false;
};

// The options, or nothing after saying on err what is wrong with them.
std::optional<ExportOptions> ParseOptions(const std::vector<std::string>& args, std::ostream& err) {
  ExportOptions options;
  std::vector<std::string> positional;
  for (size_t i = 0; i < args.size(); ++i) {
    const std::string& arg = args[i];
    if (arg == "--all-companies") {
      options.all_companies = true;
    } else if (arg == "--replace") {
      options.replace = true;
    } else if (arg == "--selection" || arg == "--out") {
      if (i + 1 == args.size()) {
        err << "nvtool: " << arg << " needs a value\n";
        return std::nullopt;
      }
      (arg == "--out" ? options.out : options.selection) = args[++i];
    } else if (arg.starts_with("--")) {
      err << "nvtool: export has no option " << arg
          << " (--all-companies, --selection, --out, --replace)\n";
      return std::nullopt;
    } else {
      positional.push_back(arg);
    }
  }
  if (positional.size() != 3) {
    err << "nvtool: export needs FOLDER NUMBER DEFINITION\n";
    return std::nullopt;
  }
  options.folder = positional[0];
  options.number = AsciiUpper(positional[1]);
  options.definition = positional[2];
  return options;
}

// The Ui of the run: the question before erasing a file is answered by --replace; the count
// goes to out and every other message, an error, to err, each on one line.
class ExportUi final : public ScriptedUi {
 public:
  ExportUi(bool replace, std::string path, std::ostream& out, std::ostream& err)
      : ScriptedUi(AnswerScript{}),
        replace_(replace),
        path_(std::move(path)),
        out_(out),
        err_(err) {}

  bool told_error() const { return told_error_; }

  Answer Question(std::string_view text, DefaultButton default_button) override {
    ScriptAnswer answer;
    answer.kind = replace_ ? ScriptAnswer::Kind::kYes : ScriptAnswer::Kind::kNo;
    PushAnswers({answer});
    if (!replace_) {
      err_ << "nvtool: " << path_ << " exists already; --replace writes over it\n";
      told_error_ = true;
    }
    return ScriptedUi::Question(text, default_button);
  }

  void Message(std::string_view text, std::string_view title) override {
    ScriptedUi::Message(text, title);
    std::string line(text);
    std::replace(line.begin(), line.end(), '\n', ' ');
    if (title == "Note") {
      out_ << line << "\n";
    } else {
      err_ << "nvtool: " << line << "\n";
      told_error_ = true;
    }
  }

 private:
  bool replace_;
  std::string path_;
  std::ostream& out_;
  std::ostream& err_;
  bool told_error_ = false;
};

// The saved selection `name`: this company's, else the one for all companies.
std::optional<KelSelection> FindSavedSelection(const SelectionFiles& files, std::string_view name) {
  std::optional<SavedSelectionEntry> found;
  for (const SavedSelectionEntry& entry : ListSavedSelections(files)) {
    if (!EqualIgnoringCase(entry.name, name)) continue;
    if (!found || (found->all_companies && !entry.all_companies)) found = entry;
  }
  if (!found) return std::nullopt;
  KelSelection selection;
  if (!LoadSelection(files, found->name, found->all_companies, found->schedule, &selection)) {
    return std::nullopt;
  }
  return selection;
}

}  // namespace

int RunExportCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
  const std::optional<ExportOptions> options = ParseOptions(args, err);
  if (!options) return 2;
  const InstallationContext ctx = ToolContext(options->folder);
  const std::string company_folder = CompanyFolder(ctx, options->number);
  if (!FindFileIgnoringCase(company_folder, options->number + ".A")) {
    err << "nvtool: no company " << options->number << " in " << ctx.data_directory() << "\n";
    return 1;
  }
  NvCompany company(ctx);
  company.SetLocation(options->number, company_folder);

  const ExportScope scope =
      options->all_companies ? ExportScope::kAllCompanies : ExportScope::kThisCompany;
  const std::string file = ExportDefinitionFile(scope, ctx.installation_folder, company);
  ExportDefinition definition;
  if (!LoadDefinition(file, options->definition, definition)) {
    err << "nvtool: no export definition " << options->definition << " in " << file << "\n";
    return 1;
  }
  definition.name = options->definition;
  definition.scope = scope;

  std::optional<KelSelection> selection;
  if (options->selection) {
    selection = FindSavedSelection(SelectionFilesFor(company, ctx), *options->selection);
    if (!selection) {
      err << "nvtool: no saved asset selection " << *options->selection << " that can be read\n";
      return 1;
    }
  }
  if (options->out) {
    const std::filesystem::path path(*options->out);
    definition.folder = path.has_parent_path() ? path.parent_path().string() : std::string(".");
    definition.file_name = path.filename().string();
  }

  const std::string path = ExportFilePath(
      definition.folder.empty() ? company_folder : definition.folder, definition.file_name);
  ExportUi ui(options->replace, path, out, err);
  const std::optional<int> exported =
      ExportToFile(ctx, options->number, definition, selection ? &*selection : nullptr, ui);
  return exported && !ui.told_error() ? 0 : 1;
}

}  // namespace nv
