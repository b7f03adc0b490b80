// Features of the main fixed-assets program that screens shared with it can reach, but
// that this utility refuses: each tells the user so through the Ui and does nothing else.
#pragma once

#include "base/ui.h"

namespace nv {

void RefuseGlobalFileEditing(Ui& ui);
void RefuseCompanyRebuild(Ui& ui);
void RefuseCustomAccountingYears(Ui& ui);
void RefuseAccountGroupEditing(Ui& ui);
void RefuseAssetRenumbering(Ui& ui);
// Returns true, the result of a successful backup: the caller carries on as if the
// company had been backed up.
bool RefuseCompanyFileBackup(Ui& ui);

}  // namespace nv
