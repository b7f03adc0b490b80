// The asset selection window for people: the rows of criteria in a scroller, built from the
// SelectionWindow model's screen tables, with the schedule, the saved selections and the
// buttons around them. Every command goes to the model; this class only shows its state
// again afterwards. "Save Current" opens the save dialog, "Scan Barcodes" a box that the
// scanner types into.
#pragma once

#include <QDialog>

#include "base/ui.h"
#include "ui/selection/selection_window.h"

class QScrollArea;

namespace nv {

class ScreenControls;

class SelectionWindowDialog : public QDialog {
  Q_OBJECT

 public:
  // REQUIRES: `window` and `ui` outlive the dialog.
  SelectionWindowDialog(SelectionWindow& window, Ui& ui, QWidget* parent = nullptr);

  // True when the dialog ended with OK and every criterion passed its check.
  bool ok() const { return ok_; }
  ScreenControls* rows() const { return rows_; }
  ScreenControls* panel() const { return panel_; }
  QScrollArea* scroller() const { return scroller_; }

 private:
  void ShowModel();
  void RowChanged(int id);
  void PanelButton(int id);
  void SaveCurrent();
  void DeleteChosen();
  void ScanBarcodes();
  void Ok();

  SelectionWindow& window_;
  Ui& ui_;
  ScreenControls* rows_ = nullptr;
  ScreenControls* panel_ = nullptr;
  QScrollArea* scroller_ = nullptr;
  bool ok_ = false;
};

// The save dialog "Save Asset Selection": where to save (all companies or this one) and
// the name, picked from the names saved so far or typed. Save hands both to the model,
// which tells what it refuses; the dialog stays until a save succeeds or it is cancelled.
class SaveSelectionDialog : public QDialog {
  Q_OBJECT

 public:
  // REQUIRES: `window` outlives the dialog.
  SaveSelectionDialog(SelectionWindow& window, Ui& ui, QWidget* parent = nullptr);
  ScreenControls* controls() const { return controls_; }

 private:
  void ButtonClicked(int id);

  SelectionWindow& window_;
  FieldTable table_;
  ScreenControls* controls_ = nullptr;
};

}  // namespace nv
