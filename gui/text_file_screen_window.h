// The screen "Create Text File for Export" for people: a dialog built from the screen's
// field table with BuildScreen and bound to the TextFileScreen model. Browse opens the
// folder dialog, Create commits the field being edited and runs the screen's checks, and
// Close, Escape or closing the window leave it.
#pragma once

#include <QDialog>

#include "base/ui.h"
#include "ui/text_file_screen.h"

namespace nv {

class ScreenControls;

class TextFileScreenWindow : public QDialog {
  Q_OBJECT

 public:
  // REQUIRES: `screen` and `ui` outlive the window.
  TextFileScreenWindow(TextFileScreen& screen, Ui& ui, QWidget* parent = nullptr);

  // True when the window ended with Create and every check passed.
  bool create() const { return create_; }
  ScreenControls* controls() const { return controls_; }

 private:
  void FieldChanged();
  void ButtonClicked(int id);

  TextFileScreen& screen_;
  ScreenControls* controls_ = nullptr;
  bool create_ = false;
};

}  // namespace nv
