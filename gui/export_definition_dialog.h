// The dialog "Select Export Definition" for people, over ExportDefinitionPicker
// (export/select_export_definition.h): an editable combo box of the listed definitions,
// "Applies To" with its two choices, OK and Cancel. OK closes it only when the picker takes
// the name.
#pragma once

#include <QDialog>

#include "export/select_export_definition.h"

class QComboBox;
class QRadioButton;

namespace nv {

class ExportDefinitionDialog : public QDialog {
  Q_OBJECT

 public:
  // REQUIRES: `picker` outlives the dialog.
  explicit ExportDefinitionDialog(ExportDefinitionPicker& picker, QWidget* parent = nullptr);

  QComboBox* names() const { return names_; }
  QRadioButton* all_companies() const { return all_; }

 private:
  void Ok();

  ExportDefinitionPicker& picker_;
  QComboBox* names_ = nullptr;
  QRadioButton* company_ = nullptr;
  QRadioButton* all_ = nullptr;
};

}  // namespace nv
