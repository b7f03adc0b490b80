#include "ui/selection/select_assets.h"

#include "ui/selection/selection_window.h"

namespace nv {

bool SelectAssets(Ui& ui, NvCompany& company, KelSelection& selection, std::string_view title) {
  SelectionWindow window(ui, SelectionWindowSetupFor(company), selection, std::string(title));
  if (!ui.RunSelectionWindow(window)) return false;
  selection = window.selection();
  return true;
}

}  // namespace nv
