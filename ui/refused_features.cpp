#include "ui/refused_features.h"

namespace nv {

void RefuseGlobalFileEditing(Ui& ui) {
  ui.Message("You must exit the import software\nto edit global files.", "Error");
}

void RefuseCompanyRebuild(Ui& ui) {
  ui.Message("Exit import software to perform company rebuild.", "Error");
}

void RefuseCustomAccountingYears(Ui& ui) {
  ui.Message("Custom years are not supported by the import program.", "Note");
}

void RefuseAccountGroupEditing(Ui& ui) {
  ui.Message("Account Group editing is not supported by the import program.", "Note");
}

void RefuseAssetRenumbering(Ui& ui) {
  ui.Message("Renumbering is not supported by the import program.", "Note");
}

bool RefuseCompanyFileBackup(Ui& ui) {
  ui.Message("Company file backup is not supported by the import program.", "Note");
  return true;
}

}  // namespace nv
