// The "Change User Permissions" window: a thin view of PermissionsDialogModel. The combo
// box with its edit field lists the entries, four radio buttons show and set the selected
// entry's level, and "Add", "Remove", "Help" and "Close" run the model's commands. Controls
// are named by their identifiers ("radio430" .. "radio433", "button617", "button618",
// "button9") so that tests can find them.
#pragma once

#include <QDialog>

#include "base/ui.h"
#include "ui/permissions_dialog.h"

class QButtonGroup;
class QComboBox;
class QPushButton;
class QRadioButton;

namespace nv {

class PermissionsWindow : public QDialog {
  Q_OBJECT

 public:
  // REQUIRES: `model` and `ui` outlive the window.
  PermissionsWindow(PermissionsDialogModel& model, Ui& ui, QWidget* parent = nullptr);

  QComboBox* names() const { return names_; }
  // The radio button of a control identifier (430 to 433), or null.
  QRadioButton* radio(int id) const;
  QPushButton* add_button() const { return add_; }
  QPushButton* remove_button() const { return remove_; }
  QPushButton* help_button() const { return help_; }
  QPushButton* close_button() const { return close_; }

 private:
  void Typed(const QString& text);
  void Chosen(int index);
  void AddClicked();
  void RemoveClicked();
  // The list from the model, its selection shown in the edit field.
  void FillList();
  // Radio buttons and the enabled state of the buttons from the model.
  void ShowState();

  PermissionsDialogModel& model_;
  Ui& ui_;
  QComboBox* names_ = nullptr;
  QButtonGroup* levels_ = nullptr;
  QPushButton* add_ = nullptr;
  QPushButton* remove_ = nullptr;
  QPushButton* help_ = nullptr;
  QPushButton* close_ = nullptr;
};

// The dialog runner for people: shows the window modally over `parent` until it is closed.
// REQUIRES: `ui` outlives the runner.
PermissionsDialogRunner QtPermissionsDialogRunner(Ui& ui, QWidget* parent);

}  // namespace nv
