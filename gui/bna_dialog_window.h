// The BNA Next Dimension import dialog for people: the buttons and file-type choice on
// top, the source grid, the definitions list with the group boxes beside it, and the
// panel that edits the selected definition. Every control calls a command of the
// BnaNdDialog model and then shows the model's state again; the window keeps no state of
// its own. Closing it, by Exit, Escape or the window's close button, runs the model's
// Close, which saves the profile.
//
// Controls carry their numbers in their object names ("bna201" is "Select File"), so that
// tests find them.
#pragma once

#include <QDialog>
#include <array>

#include "import/bna/bna_dialog.h"

class QAbstractButton;
class QButtonGroup;
class QCheckBox;
class QGridLayout;
class QLabel;
class QLineEdit;
class QRadioButton;
class QTreeWidget;
class QVBoxLayout;

namespace nv {

class ImportSourceWindow;

class BnaDialogWindow : public QDialog {
  Q_OBJECT

 public:
  // REQUIRES: `dialog` outlives the window.
  explicit BnaDialogWindow(BnaNdDialog& dialog, QWidget* parent = nullptr);

  ImportSourceWindow* grid() const { return grid_; }
  QTreeWidget* list() const { return list_; }
  // A control by its number, or null.
  QWidget* Control(int id) const;

  void done(int result) override;

 private:
  void BuildTop(QVBoxLayout* layout);
  QWidget* BuildPanel();
  QLineEdit* AddField(int id, QGridLayout* grid, int row, int column, const char* caption,
                      BnaPanelField field);
  // Shows the model's state in every control, without firing their signals.
  void ShowState();
  void ShowList();
  void ShowPanel();

  BnaNdDialog& dialog_;
  bool closed_ = false;
  QLabel* profile_ = nullptr;
  QRadioButton* tabs_ = nullptr;
  QRadioButton* commas_ = nullptr;
  ImportSourceWindow* grid_ = nullptr;
  QTreeWidget* list_ = nullptr;
  std::array<QCheckBox*, std::size(kBnaGroupBoxes)> groups_{};
  QLabel* name_ = nullptr;
  QCheckBox* no_copy_ = nullptr;
  QButtonGroup* methods_ = nullptr;
  std::array<QLineEdit*, 6> fields_{};  // in the order of BnaPanelField
};

}  // namespace nv
