// The company screen for people: a dialog that builds the screen's field table with
// BuildScreen, binds it to the CompanyScreen model, and opens the editors of its buttons in
// windows of their own. "Save" commits the field being edited and runs the model's save;
// "Cancel" and closing the window cancel. The user-fields screen is a dialog of the same
// kind over UserFieldsScreen.
#pragma once

#include <QDialog>

#include "base/ui.h"
#include "gui/schedule_definitions_window.h"
#include "ui/company_screen.h"

class QPushButton;

namespace nv {

class ScreenControls;

// The windows of the screen's buttons, shown modally over `parent`.
class QtCompanyScreenWindows : public CompanyScreenWindows {
 public:
  // REQUIRES: `ui` outlives the object.
  QtCompanyScreenWindows(Ui& ui, QWidget* parent)
      : ui_(ui), parent_(parent), definitions_(parent) {}

  void RunCodeList(CodeListEditor& editor) override;
  bool RunUserFields(UserFieldsScreen& screen) override;
  ScheduleDefinitionsWindowRunner& schedule_definitions() override { return definitions_; }
  void RunPermissions(PermissionsDialogModel& model) override;

 private:
  Ui& ui_;
  QWidget* parent_;
  QtScheduleDefinitionsRunner definitions_;
};

class CompanyScreenWindow : public QDialog {
  Q_OBJECT

 public:
  // REQUIRES: `screen` and `ui` outlive the window.
  CompanyScreenWindow(CompanyScreen& screen, Ui& ui, QWidget* parent = nullptr);

  // The action the window ended with: kCompanyScreenSave, or kCompanyScreenCancelled.
  int action() const { return action_; }
  ScreenControls* controls() const { return controls_; }
  QPushButton* save_button() const { return save_; }
  QPushButton* cancel_button() const { return cancel_; }

  void reject() override;

 private:
  void FieldChanged();
  void ButtonClicked(int id);
  void SaveClicked();

  CompanyScreen& screen_;
  Ui& ui_;
  QtCompanyScreenWindows windows_;
  ScreenControls* controls_ = nullptr;
  QPushButton* save_ = nullptr;
  QPushButton* cancel_ = nullptr;
  int action_ = kCompanyScreenCancelled;
};

class UserFieldsWindow : public QDialog {
  Q_OBJECT

 public:
  // REQUIRES: `screen` and `ui` outlive the window.
  UserFieldsWindow(UserFieldsScreen& screen, Ui& ui, QWidget* parent = nullptr);

  ScreenControls* controls() const { return controls_; }
  QPushButton* ok_button() const { return ok_; }

 private:
  void OkClicked();

  UserFieldsScreen& screen_;
  ScreenControls* controls_ = nullptr;
  QPushButton* ok_ = nullptr;
};

}  // namespace nv
