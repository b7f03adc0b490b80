// The window of a code-list editor (locations, categories, property codes, a user field's
// values): a thin view of CodeListEditor. A table shows the rows with one blank row at the
// foot for a new entry; "Insert Row" and "Delete Row" work at the current row; "OK" saves
// through the model and closes unless the save fails; "Cancel" closes without saving.
#pragma once

#include <QDialog>

#include "ui/code_list_editor.h"

class QPushButton;
class QTableWidget;
class QTableWidgetItem;

namespace nv {

class CodeListWindow : public QDialog {
  Q_OBJECT

 public:
  // REQUIRES: `editor` outlives the window.
  explicit CodeListWindow(CodeListEditor& editor, QWidget* parent = nullptr);

  QTableWidget* table() const { return table_; }
  QPushButton* insert_button() const { return insert_; }
  QPushButton* delete_button() const { return delete_; }
  QPushButton* ok_button() const { return ok_; }

 private:
  void Edited(QTableWidgetItem* item);
  void InsertClicked();
  void DeleteClicked();
  void OkClicked();
  // The table from the model's rows, and the blank row after them.
  void Fill();
  QTableWidgetItem* MakeItem(const std::string& text, size_t column) const;

  CodeListEditor& editor_;
  QTableWidget* table_ = nullptr;
  QPushButton* insert_ = nullptr;
  QPushButton* delete_ = nullptr;
  QPushButton* ok_ = nullptr;
  bool filling_ = false;
};

}  // namespace nv
