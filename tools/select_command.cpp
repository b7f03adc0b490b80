#include "tools/select_command.h"

#include <cctype>
#include <memory>
#include <optional>

#include "base/ascii.h"
#include "base/file_util.h"
#include "store/asset/asset.h"
#include "store/company/company.h"
#include "store/file/status.h"
#include "tools/nvtool_context.h"
#include "ui/scripted_ui.h"
#include "ui/selection/criterion.h"
#include "ui/selection/selection_match.h"

namespace nv {
namespace {

struct SelectOptions {
  std::string folder;
  std::string number;
  char schedule = 0;
  KelSelection selection;
};

// FIELD=TEXT or FIELD!=TEXT into the selection; false after saying why on err.
bool AddCriterion(std::string_view arg, KelSelection* selection, std::ostream& err) {
  const size_t equals = arg.find('=');
  if (equals == std::string_view::npos) {
    err << "nvtool: criterion " << arg << " is not FIELD=TEXT or FIELD!=TEXT\n";
    return false;
  }
  std::string_view name = arg.substr(0, equals);
  const bool exclude = !name.empty() && name.back() == '!';
  if (exclude) name.remove_suffix(1);
  const std::optional<int> field = FindSelectionField(TrimBlanks(name));
  if (!field) {
    err << "nvtool: no selection field " << name << "\n";
    return false;
  }
  std::string text(arg.substr(equals + 1));
  if (CriterionError error = ValidateCriterion(*field, &text); error != CriterionError::kNone) {
    err << "nvtool: " << SelectionFields()[*field].name << ": " << CriterionErrorMessage(error)
        << "\n";
    return false;
  }
  selection->criteria[*field] = {true, text, exclude};
  return true;
}

// nullopt with the status 1 or 2 in *status after saying why on err.
std::optional<SelectOptions> ParseOptions(const std::vector<std::string>& args, std::ostream& err,
                                          int* status) {
  *status = 2;
  if (args.size() < 2) return std::nullopt;
  SelectOptions options;
  options.folder = args[0];
  options.number = AsciiUpper(args[1]);
  for (size_t i = 2; i < args.size(); ++i) {
    if (args[i] == "--schedule") {
      if (i + 1 == args.size() || args[i + 1].size() != 1 || !std::isalpha(args[i + 1][0] & 0xff)) {
        err << "nvtool: --schedule takes one letter\n";
        return std::nullopt;
      }
      options.schedule = AsciiUpper(args[++i][0]);
    } else if (!AddCriterion(args[i], &options.selection, err)) {
      *status = 1;
      return std::nullopt;
    }
  }
  return options;
}

}  // namespace

int RunSelectCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
  int status = 0;
  std::optional<SelectOptions> options = ParseOptions(args, err, &status);
  if (!options) return status;
  const InstallationContext ctx = ToolContext(options->folder);
  if (!FindFileIgnoringCase(CompanyFolder(ctx, options->number), options->number + ".A")) {
    err << "nvtool: no company " << options->number << " in " << ctx.data_directory() << "\n";
    return 1;
  }
  std::string ignored;
  std::unique_ptr<ScriptedUi> ui = ScriptedUi::FromString("", &ignored);
  NvCompany company(ctx);
  const int flags = NvCompany::kOpenI1 | NvCompany::kReadOnly;
  if (int rc = company.Open(options->number, flags, *ui); rc <= 0) {
    err << "nvtool: cannot open company " << options->number << " (status " << rc << ")\n";
    return 1;
  }
  const std::string& letters = company.record().schedule_letters;
  char schedule = options->schedule;
  if (schedule == 0 && !letters.empty()) schedule = letters[0];
  if (schedule != 0 && letters.find(schedule) == std::string::npos) {
    err << "nvtool: company " << options->number << " has no schedule " << schedule << "\n";
    static_cast<void>(company.Close());  // read-only: nothing to write
    return 1;
  }
  options->selection.schedule = schedule;
  const NvAssetNoFormat format = company.record().asset_no_format;
  company.ResetAssetWalk();
  NvAsset asset;
  for (size_t done = 0;; ++done) {
    if (int rc = company.NextAsset(AssetOrder::kNumber, &asset); rc != kOk) {
      err << "nvtool: reading the assets failed after " << done << " (status " << rc << ")\n";
      static_cast<void>(company.Close());  // read-only: nothing to write
      return 1;
    }
    if (asset.record_number == 0) break;
    if (MatchAsset(options->selection, AssetSelectionValues(asset, schedule, format), 0)) {
      out << TrimBlanks(asset.number.Text()) << "\n";
    }
  }
  static_cast<void>(company.Close());  // read-only: nothing to write
  return 0;
}

}  // namespace nv
