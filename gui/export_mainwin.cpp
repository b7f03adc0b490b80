#include "gui/export_mainwin.h"

#include <QPainter>

namespace nv {

NVExportMainwin::NVExportMainwin(CommandRunner runner, QWidget* parent)
    : MainClientWindow(std::move(runner), parent) {
  CreateButtons(ExportWindowCommands(), [](int index) {
    return QRect(kButtonX, kFirstButtonY + index * kRowStep, kButtonWidth, kButtonHeight);
  });
}

void NVExportMainwin::DisableExportButtons() {
  for (int id : {204, 205}) {
    if (QPushButton* b = button(id)) b->setEnabled(false);
  }
  // Show the grey buttons before the export takes the thread.
  repaint();
}

void NVExportMainwin::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  PaintVersion(painter);
}

}  // namespace nv
