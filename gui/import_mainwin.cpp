#include "gui/import_mainwin.h"

#include <QPainter>

namespace nv {

Banner BannerForLabel(long label_code) {
  switch (label_code) {
    case 4:
    case 5:
    case 6:
      return {QStringLiteral("Fixed Asset Import"), QColor(32, 48, 80)};
    case 2:
    case 3:
      return {QStringLiteral("Asset Import Utility"), QColor(32, 48, 80)};
    default:
      return {QStringLiteral("KEL Fixed Assets Import"), QColor(213, 172, 49)};
  }
}

NVImportMainwin::NVImportMainwin(long label_code, CommandRunner runner, QWidget* parent)
    : MainClientWindow(std::move(runner), parent), banner_(BannerForLabel(label_code)) {
  CreateButtons(ImportWindowCommands(), [](int index) {
    return QRect(kMargin + (index / kRows) * kColumnStep, kMargin + (index % kRows) * kRowStep,
                 kButtonWidth, kButtonHeight);
  });
}

void NVImportMainwin::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  QFont font(QStringLiteral("Times New Roman"));
  font.setStyleHint(QFont::Serif);
  font.setPixelSize(50);
  font.setWeight(QFont::Bold);  // 700
  painter.setFont(font);
  painter.setPen(banner_.color);
  // Below the button rows, left of the version text; the buttons cover what overlaps.
  painter.drawText(rect().adjusted(kMargin, 0, 0, 0),
                   Qt::AlignLeft | Qt::AlignBottom | Qt::TextSingleLine, banner_.text);
  PaintVersion(painter);
}

}  // namespace nv
