// The matching panel's window content: paints a MatchPanel (the two instruction lines,
// the column headings, the items) and turns the left mouse button into the model's
// Press, Move and Release. OK, Cancel and Reset are real push buttons at the model's places;
// the dialog around the widget (QtUi::RunMatchPanel) connects them.
#pragma once

#include <QFont>
#include <QWidget>

#include "ui/match_panel.h"

class QPushButton;

namespace nv {

class MatchPanelWidget : public QWidget {
  Q_OBJECT

 public:
  // Where the two instruction lines stand and where the column headings stand.
  static constexpr int kInstructionTop = 8, kInstructionStep = 18, kHeadingTop = 52;

  // REQUIRES: `panel` outlives the widget. The widget takes the size of the panel's
  // client area (the panel's height less its caption).
  explicit MatchPanelWidget(MatchPanel& panel, QWidget* parent = nullptr);

  MatchPanel& panel() const { return panel_; }
  QPushButton* okButton() const { return ok_; }
  QPushButton* cancelButton() const { return cancel_; }
  // Returns the panel to the importer's own pre-set matches.
  QPushButton* resetButton() const { return reset_; }

  // 15-pixel Arial (bold for the heading words), or the nearest sans-serif face.
  static QFont InstructionFont(bool bold);
  // The item texts: 12-pixel Arial, or the nearest sans-serif face.
  static QFont ItemFont();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  // One instruction line centred at `top`: plain text, the bold heading, plain text.
  void PaintInstruction(QPainter& painter, int top, const QString& before, const QString& heading,
                        const QString& after);
  void PaintItem(QPainter& painter, const mapIcon& item);

  MatchPanel& panel_;
  QPushButton* ok_ = nullptr;
  QPushButton* cancel_ = nullptr;
  QPushButton* reset_ = nullptr;
};

}  // namespace nv
