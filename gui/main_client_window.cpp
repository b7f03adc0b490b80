#include "gui/main_client_window.h"

#include <QFontDatabase>
#include <QPainter>
#include <QResizeEvent>

#include "gui/display_text.h"

namespace nv {

MainClientWindow::MainClientWindow(CommandRunner runner, QWidget* parent)
    : QWidget(parent), runner_(std::move(runner)) {
  // The buttons use the proportional system font, as the stock variable-pitch font was.
  setFont(QFontDatabase::systemFont(QFontDatabase::GeneralFont));
}

QPushButton* MainClientWindow::button(int id) const {
  for (QPushButton* b : buttons_) {
    if (b->property("commandId").toInt() == id) return b;
  }
  return nullptr;
}

void MainClientWindow::CreateButtons(std::span<const MainCommand> commands,
                                     const std::function<QRect(int index)>& place) {
  int index = 0;
  for (const MainCommand& command : commands) {
    auto* b = new QPushButton(FromWindowsText(command.text), this);
    b->setProperty("commandId", command.id);
    b->setObjectName(QStringLiteral("button%1").arg(command.id));
    if (command.id == kCloseCommand) b->setDefault(true);
    if (command.id != kCloseCommand && command.id != kHelpCommand) b->setGeometry(place(index++));
    const int id = command.id;
    connect(b, &QPushButton::clicked, this, [this, id] { RunCommand(id); });
    buttons_.append(b);
  }
  PlaceSideButtons();
}

void MainClientWindow::PlaceSideButtons() {
  const int x = width() - kMargin - kSideButtonWidth;
  if (QPushButton* close = button(kCloseCommand))
    close->setGeometry(x, kMargin, kSideButtonWidth, kButtonHeight);
  if (QPushButton* help = button(kHelpCommand))
    help->setGeometry(x, 45, kSideButtonWidth, kButtonHeight);
}

void MainClientWindow::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  PlaceSideButtons();
}

void MainClientWindow::RunCommand(int id) {
  const CommandEffects effects = runner_(id, [this] { DisableExportButtons(); });
  if (effects.disable_export_buttons) DisableExportButtons();
  // The frame is the main window: closing it ends the program.
  if (effects.close_window) window()->close();
}

QFont MainClientWindow::VersionFont() {
  QFont font(QStringLiteral("Arial"));
  font.setStyleHint(QFont::SansSerif);
  font.setPixelSize(16);
  return font;
}

namespace {

constexpr int kVersionFlags = Qt::AlignRight | Qt::AlignBottom | Qt::TextSingleLine;

}  // namespace

QRect MainClientWindow::VersionRect() const {
  return QFontMetrics(VersionFont())
      .boundingRect(rect().adjusted(0, 0, -2, -2), kVersionFlags,
                    QString::fromLatin1(kVersionText));
}

void MainClientWindow::PaintVersion(QPainter& painter) {
  painter.setFont(VersionFont());
  painter.setPen(palette().color(QPalette::WindowText));
  painter.drawText(rect().adjusted(0, 0, -2, -2), kVersionFlags, QString::fromLatin1(kVersionText));
}

}  // namespace nv
