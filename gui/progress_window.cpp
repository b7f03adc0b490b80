#include "gui/progress_window.h"

#include <QCoreApplication>
#include <QLabel>
#include <QProgressBar>
#include <QVBoxLayout>
#include <algorithm>

#include "gui/display_text.h"

namespace nv {

ProgressWindow::ProgressWindow(std::string_view title, std::string_view text, long total,
                               QWidget* owner)
    // No Qt parent: the caller owns the meter through the Ui port and destroys it.
    : QWidget(nullptr, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint),
      total_(std::max(total, 0L)) {
  setWindowTitle(FromWindowsText(title));
  setAttribute(Qt::WA_ShowWithoutActivating);
  auto* layout = new QVBoxLayout(this);
  label_ = new QLabel(FromWindowsText(text), this);
  label_->setTextFormat(Qt::PlainText);
  label_->setMinimumWidth(300);
  layout->addWidget(label_);
  bar_ = new QProgressBar(this);
  // The bar counts in per cent: totals can exceed what the bar's int range holds.
  bar_->setRange(0, 100);
  bar_->setValue(0);
  bar_->setVisible(total_ > 0);
  layout->addWidget(bar_);
  adjustSize();
  if (owner) {
    QRect frame = frameGeometry();
    frame.moveCenter(owner->window()->frameGeometry().center());
    move(frame.topLeft());
  }
  show();
  Repaint();
}

void ProgressWindow::SetText(std::string_view text) {
  label_->setText(FromWindowsText(text));
  Repaint();
}

void ProgressWindow::SetPosition(long done) {
  if (total_ <= 0) return;
  const long clamped = std::clamp(done, 0L, total_);
  bar_->setValue(static_cast<int>(static_cast<double>(clamped) * 100.0 / total_));
  Repaint();
}

QString ProgressWindow::text() const {
  return label_->text();
}

int ProgressWindow::percent() const {
  return bar_->value();
}

void ProgressWindow::Repaint() {
  // Paint and timer events only: the user cannot start a second command meanwhile.
  QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

}  // namespace nv
