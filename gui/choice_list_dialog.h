// The small modal list of options that importers and the exporter use to ask for one of
// several choices: message lines, an optional note under them, and the options in the
// order given.
#pragma once

#include <QDialog>
#include <QFontMetrics>

#include "base/ui.h"

class QListWidget;

namespace nv {

class ChoiceListDialog : public QDialog {
  Q_OBJECT

 public:
  ChoiceListDialog(const ChoiceListRequest& request, QWidget* parent);

  // Width of the list: the longest option text in average characters plus six
  // characters, or the widest message line when that is wider.
  static int ListWidth(const ChoiceListRequest& request, const QFontMetrics& metrics);

  // The chosen option's value, its position when the value is -1, or -1 when the
  // dialog was closed without a choice.
  int Result() const;

  QListWidget* list() const { return list_; }

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  std::vector<ChoiceOption> options_;
  QListWidget* list_ = nullptr;
};

}  // namespace nv
