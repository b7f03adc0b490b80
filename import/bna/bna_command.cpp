// Command 107 from its start to the dialog's close.
#include "base/ascii.h"
#include "base/file_util.h"
#include "base/str_format.h"
#include "import/bna/bna_dialog.h"
#include "import/bna/bna_import.h"
#include "import/bna/bna_profile.h"
#include "import/frame/dry_run.h"

namespace nv {
namespace {

void RunSession(BnaSession& session) {
  if (!RunBnaCompanySteps(session)) return;
  // Each "Import Data" runs against the company of the steps, whose lock the session holds
  // until the dialog closes.
  BnaNdDialog dialog(session.state, session.context, BnaSettingsFile(session.context), session.ui,
                     [&session] { static_cast<void>(RunBnaImportData(session)); });
  session.ui.RunBnaDialog(dialog);
}

bool IsProfileName(std::string_view name) {
  const size_t dot = name.rfind('.');
  return dot != std::string_view::npos && EqualIgnoringCase(name.substr(dot + 1), "IMP");
}

// After a test import: the profiles the dialog changed in the scratch, and the user's
// remembered profile, copied into the installation when the person wants them.
void OfferProfileChanges(const TestImportScratch& scratch, const InstallationContext& real,
                         Ui& ui) {
  const std::vector<TestImportScratch::ChangedFile> changed = scratch.ChangedFiles(IsProfileName);
  const std::string chosen =
      ReadUserImportProfile(BnaSettingsFile(scratch.context()), real.user_name);
  const std::string settings = BnaSettingsFile(real);
  const bool rechosen = ReadUserImportProfile(settings, real.user_name) != chosen;
  if (changed.empty() && !rechosen) return;
  std::string names;
  for (const TestImportScratch::ChangedFile& file : changed) names += "  " + file.real + "\n";
  if (changed.empty()) names = "  " + chosen + "\n";
  if (ui.Question(StrPrintf(kBnaKeepProfilesQuestion, names.c_str()), DefaultButton::kYes) !=
      Answer::kYes) {
    return;
  }
  for (const TestImportScratch::ChangedFile& file : changed) {
    std::optional<std::string> bytes = ReadFileBytes(file.scratch);
    if (!bytes || !WriteFileAtomically(file.real, *bytes)) {
      ui.Message(StrPrintf("Unable to write %s", file.real.c_str()), "Error");
    }
  }
  if (rechosen && !WriteUserImportProfile(settings, real.user_name, chosen)) {
    ui.Message(StrPrintf("Unable to write %s", settings.c_str()), "Error");
  }
}

}  // namespace

void RunBnaImport(const InstallationContext& context, Ui& ui, bool test_import) {
  if (!test_import) {
    BnaSession session(context, ui);
    RunSession(session);
    return;
  }
  TestImportScratch scratch(context);
  if (!scratch.Make(ui)) return;
  {
    BnaSession session(scratch.context(), ui, scratch.Hooks(ui, {}));
    session.outside_profile_file = [&scratch](const std::string& path) {
      return scratch.OutsideFile(path);
    };
    RunSession(session);
  }
  OfferProfileChanges(scratch, context, ui);
}

}  // namespace nv
