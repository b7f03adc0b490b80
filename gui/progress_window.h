// The progress meter of long runs: a message window without buttons that shows a title,
// a text and how far the run has come. Every change lets the application repaint, so the
// window stays alive while a command runs to completion on the one thread.
#pragma once

#include <QWidget>
#include <string_view>

#include "base/ui.h"

class QLabel;
class QProgressBar;

namespace nv {

class ProgressWindow : public QWidget, public ProgressMeter {
  Q_OBJECT

 public:
  ProgressWindow(std::string_view title, std::string_view text, long total, QWidget* owner);

  void SetText(std::string_view text) override;
  void SetPosition(long done) override;

  QString text() const;
  int percent() const;

 private:
  void Repaint();

  long total_;
  QLabel* label_ = nullptr;
  QProgressBar* bar_ = nullptr;
};

}  // namespace nv
