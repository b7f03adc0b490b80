#include "tools/export_text_command.h"

#include <algorithm>
#include <filesystem>
#include <optional>

#include "base/ascii.h"
#include "base/file.h"
#include "base/file_util.h"
#include "export/text_file_export.h"
#include "tools/nvtool_context.h"
#include "ui/scripted_ui.h"

namespace nv {
namespace {

// The --type words, in the order of the record type list.
constexpr const char* kTypeWords[] = {"tab", "comma", "fixed", "fixed-nolines"};

struct ExportTextOptions {
  std::string folder;
  std::string number;
  std::string file;
  int type = -1;  // position in the record type list
  bool replace = false;
};

// The options, or nothing after saying on err what is wrong with them.
std::optional<ExportTextOptions> ParseOptions(const std::vector<std::string>& args,
                                              std::ostream& err) {
  ExportTextOptions options;
  std::vector<std::string> positional;
  for (size_t i = 0; i < args.size(); ++i) {
    if (args[i] == "--replace") {
      options.replace = true;
    } else if (args[i] == "--type") {
      if (i + 1 == args.size()) {
        err << "nvtool: --type needs one of tab, comma, fixed, fixed-nolines\n";
        return std::nullopt;
      }
      const std::string& word = args[++i];
      const auto found = std::find(std::begin(kTypeWords), std::end(kTypeWords), word);
      if (found == std::end(kTypeWords)) {
        err << "nvtool: unknown record type '" << word
            << "' (tab, comma, fixed or fixed-nolines)\n";
        return std::nullopt;
      }
      options.type = static_cast<int>(found - std::begin(kTypeWords));
    } else if (args[i].starts_with("--")) {
      err << "nvtool: export-text has no option " << args[i] << " (--type, --replace)\n";
      return std::nullopt;
    } else {
      positional.push_back(args[i]);
    }
  }
  if (positional.size() != 3) {
    err << "nvtool: export-text needs FOLDER NUMBER FILE\n";
    return std::nullopt;
  }
  if (options.type < 0) {
    err << "nvtool: export-text needs --type tab|comma|fixed|fixed-nolines\n";
    return std::nullopt;
  }
  options.folder = positional[0];
  options.number = AsciiUpper(positional[1]);
  options.file = positional[2];
  return options;
}

// The Ui of the run: the record type list is answered from --type; the count goes to out
// and every other message, an error, to err, each on one line.
class ExportTextUi final : public ScriptedUi {
 public:
  ExportTextUi(int type, std::ostream& out, std::ostream& err)
      : ScriptedUi(AnswerScript{}), type_(type), out_(out), err_(err) {}

  bool told_error() const { return told_error_; }

  int ChoiceList(const ChoiceListRequest& request) override {
    ScriptAnswer answer;
    answer.kind = ScriptAnswer::Kind::kChoose;
    answer.position = type_;
    PushAnswers({answer});
    return ScriptedUi::ChoiceList(request);
  }

  void Message(std::string_view text, std::string_view title) override {
    ScriptedUi::Message(text, title);
    std::string line(text);
    std::replace(line.begin(), line.end(), '\n', ' ');
    if (title == kTextFileDoneTitle) {
      out_ << line << "\n";
    } else {
      err_ << "nvtool: " << line << "\n";
      told_error_ = true;
    }
  }

 private:
  int type_;
  std::ostream& out_;
  std::ostream& err_;
  bool told_error_ = false;
};

}  // namespace

int RunExportTextCommand(const std::vector<std::string>& args, std::ostream& out,
                         std::ostream& err) {
  const std::optional<ExportTextOptions> options = ParseOptions(args, err);
  if (!options) return 2;
  const InstallationContext ctx = ToolContext(options->folder);
  if (!FindFileIgnoringCase(CompanyFolder(ctx, options->number), options->number + ".A")) {
    err << "nvtool: no company " << options->number << " in " << ctx.data_directory() << "\n";
    return 1;
  }
  const std::filesystem::path file(options->file);
  TextFileRequest request;
  request.folder = file.has_parent_path() ? file.parent_path().string() : std::string(".");
  request.file_name = file.filename().string();
  request.company_number = options->number;
  if (request.file_name.empty() || !IsFolder(request.folder)) {
    err << "nvtool: " << options->file << " is not a file in an existing folder\n";
    return 1;
  }
  if (PathExists(options->file) && !options->replace) {
    err << "nvtool: " << options->file << " exists already; --replace writes over it\n";
    return 1;
  }
  ExportTextUi ui(options->type, out, err);
  const TextFileResult result = WriteTextFile(ctx, request, ui);
  return result.written && result.erroneous == 0 && !ui.told_error() ? 0 : 1;
}

}  // namespace nv
