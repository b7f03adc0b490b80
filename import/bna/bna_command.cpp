// Command 107 from its start to the dialog's close.
#include "import/bna/bna_dialog.h"
#include "import/bna/bna_import.h"

namespace nv {

void RunBnaImport(const InstallationContext& context, Ui& ui) {
  BnaSession session(context, ui);
  if (!RunBnaCompanySteps(session)) return;
  // Each "Import Data" runs against the company of the steps, whose lock the session holds
  // until the dialog closes.
  BnaNdDialog dialog(session.state, context, BnaSettingsFile(context), ui,
                     [&session] { static_cast<void>(RunBnaImportData(session)); });
  ui.RunBnaDialog(dialog);
}

}  // namespace nv
