// The one-line text entry of the Ui port: a prompt, a field with its typing rules, OK and
// Cancel.
#pragma once

#include <QDialog>

#include "base/ui.h"

class QLineEdit;

namespace nv {

class TextEntryDialog : public QDialog {
  Q_OBJECT

 public:
  TextEntryDialog(const TextEntryRequest& request, QWidget* parent);
  QLineEdit* field() const { return field_; }
  // The field's text in Windows-1252.
  std::string text() const;

 private:
  QLineEdit* field_ = nullptr;
};

}  // namespace nv
