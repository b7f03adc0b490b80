#include "gui/import_mainwin.h"

#include <QCheckBox>
#include <QPainter>
#include <QPushButton>
#include <algorithm>

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
  // The rows the last column of importers leaves free.
  const int x = kMargin + kOptionsColumn * kColumnStep;
  test_import_ = new QCheckBox(QString::fromLatin1(kTestImportCheckBox), this);
  test_import_->setObjectName(QStringLiteral("testImport"));
  test_import_->setGeometry(x, kMargin + kRowStep, kButtonWidth, kButtonHeight);
  undo_ = new QPushButton(QString::fromLatin1(kUndoImportButton), this);
  undo_->setObjectName(QStringLiteral("undoImport"));
  undo_->setGeometry(x, kMargin + 2 * kRowStep, kButtonWidth, kButtonHeight);
  connect(undo_, &QPushButton::clicked, this, [this] { RunCommand(kUndoImportCommand); });
}

ImportWindowState NVImportMainwin::state() const {
  return {.test_import = test_import_->isChecked()};
}

namespace {

constexpr int kBannerPixels = 50;
constexpr int kBannerGap = 3;  // between the banner and the buttons or the version text

QFont BannerFontOfSize(int pixels) {
  QFont font(QStringLiteral("Times New Roman"));
  font.setStyleHint(QFont::Serif);
  font.setPixelSize(pixels);
  font.setWeight(QFont::Bold);  // 700
  return font;
}

}  // namespace

QRect NVImportMainwin::BannerBand() const {
  int top = 0;
  for (const QPushButton* b : buttons()) {
    // Close and Help stand at the right, beside the band, not over it.
    const int id = b->property("commandId").toInt();
    if (id != kCloseCommand && id != kHelpCommand) top = std::max(top, b->geometry().bottom() + 1);
  }
  const QRect version = VersionRect();
  return QRect(QPoint(kMargin, top + kBannerGap),
               QPoint(version.left() - 2 * kBannerGap, version.bottom()));
}

QFont NVImportMainwin::BannerFont() const {
  const QRect band = BannerBand();
  // Glyph boxes grow with the size, so the first size from the top that fits is the largest.
  for (int pixels = kBannerPixels; pixels > 6; --pixels) {
    const QFont font = BannerFontOfSize(pixels);
    const QRect letters = QFontMetrics(font).tightBoundingRect(banner_.text);
    if (letters.width() <= band.width() && letters.height() <= band.height()) return font;
  }
  return BannerFontOfSize(6);
}

QPoint NVImportMainwin::BannerOrigin() const {
  const QRect band = BannerBand();
  const QRect letters = QFontMetrics(BannerFont()).tightBoundingRect(banner_.text);
  return QPoint(band.left() - letters.left(), band.bottom() - letters.bottom());
}

QRect NVImportMainwin::BannerRect() const {
  return QFontMetrics(BannerFont()).tightBoundingRect(banner_.text).translated(BannerOrigin());
}

void NVImportMainwin::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setFont(BannerFont());
  painter.setPen(banner_.color);
  painter.drawText(BannerOrigin(), banner_.text);
  PaintVersion(painter);
}

}  // namespace nv
