// What the import and export main windows share: one push button per command of their
// table (control id = command id), Close and Help at the right edge, the version text
// at the bottom right, and the handling of a command's effects.
#pragma once

#include <QList>
#include <QPushButton>
#include <QWidget>
#include <functional>

#include "shell/main_commands.h"

namespace nv {

inline constexpr char kVersionText[] = "Version 4.1.141 - 01/23/25";

// Runs one command to completion; the callback greys the export buttons before an export.
using CommandRunner =
    std::function<CommandEffects(int id, const std::function<void()>& disable_export_buttons)>;

class MainClientWindow : public QWidget {
  Q_OBJECT

 public:
  // Close and Help: 75 x 25, 10 pixels from the right edge, at y = 10 and y = 45.
  static constexpr int kSideButtonWidth = 75, kButtonHeight = 25, kMargin = 10;

  // The button of command `id`, or null.
  QPushButton* button(int id) const;
  // Every button in the order created.
  const QList<QPushButton*>& buttons() const { return buttons_; }

  // Runs command `id` as a click on its button does.
  void RunCommand(int id);

  // The version text's font (16-pixel Arial or the nearest sans-serif face) and where its
  // letters stand: the bottom right of the window, one line.
  static QFont VersionFont();
  QRect VersionRect() const;

 protected:
  MainClientWindow(CommandRunner runner, QWidget* parent);

  // Creates the window's buttons; `place` gives the geometry of each command button that
  // is neither Close nor Help, by its index among them.
  void CreateButtons(std::span<const MainCommand> commands,
                     const std::function<QRect(int index)>& place);
  virtual void DisableExportButtons() {}

  void PaintVersion(QPainter& painter);
  void resizeEvent(QResizeEvent* event) override;

 private:
  void PlaceSideButtons();

  CommandRunner runner_;
  QList<QPushButton*> buttons_;
};

}  // namespace nv
