// The window "Export Company Data" for people: the controls of the ExportWindow model
// (export/export_window.h), each bound to one of its operations. After every operation the
// window shows the model again, so that what the model refuses (letters that name no
// column, say) is put back at once.
#pragma once

#include <QDialog>

#include "export/export_window.h"

class QCheckBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QRadioButton;

namespace nv {

class ExportDefinitionsWindow : public QDialog {
  Q_OBJECT

 public:
  // REQUIRES: `model` outlives the window.
  explicit ExportDefinitionsWindow(ExportWindow& model, QWidget* parent = nullptr);

  // True when the window ended with a finished export.
  bool exported() const { return exported_; }

  // The controls, by the names the window shows, for tests.
  QListWidget* groups() const { return groups_; }
  QListWidget* available() const { return available_; }
  QListWidget* columns() const { return columns_; }
  QPushButton* add_button() const { return add_; }
  QPushButton* remove_button() const { return remove_; }
  QLineEdit* column_box() const { return column_; }
  QLineEdit* heading_box() const { return heading_; }
  QCheckBox* flag_box(ExportWindow::Flag flag) const { return flags_[static_cast<int>(flag)]; }
  QLabel* definition_box() const { return definition_; }
  QLineEdit* file_name_box() const { return file_name_; }
  QLineEdit* folder_box() const { return folder_; }
  QPushButton* button(const QString& text) const;

 private:
  QWidget* BuildFieldLists();
  QWidget* BuildProperties();
  QWidget* BuildOptions();
  QWidget* BuildButtons();
  // Shows the model in every control, without the controls' signals reaching it.
  void ShowModel();
  void Export();

  ExportWindow& model_;
  bool exported_ = false;
  bool showing_ = false;  // ShowModel is filling the controls
  QLabel* definition_ = nullptr;
  QListWidget* groups_ = nullptr;
  QListWidget* available_ = nullptr;
  QListWidget* columns_ = nullptr;
  QPushButton* add_ = nullptr;
  QPushButton* remove_ = nullptr;
  QLineEdit* column_ = nullptr;
  QLineEdit* heading_ = nullptr;
  QCheckBox* flags_[4] = {};
  QCheckBox* include_headings_ = nullptr;
  QRadioButton* by_number_ = nullptr;
  QRadioButton* by_sort_order_ = nullptr;
  QRadioButton* all_assets_ = nullptr;
  QRadioButton* selected_assets_ = nullptr;
  QLineEdit* file_name_ = nullptr;
  QLineEdit* folder_ = nullptr;
};

}  // namespace nv
