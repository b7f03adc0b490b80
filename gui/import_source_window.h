// The source grid of the BNA dialog: paints a BnaSourceGrid (column letters over four
// lines of the report, each headed by its line number, vertical rules between the
// columns) with its two scroll bars, and reports a click in the data area by the cell
// it fell on.
#pragma once

#include <QFont>
#include <QWidget>

#include "import/bna/bna_source_grid.h"

class QScrollBar;

namespace nv {

class ImportSourceWindow : public QWidget {
  Q_OBJECT

 public:
  // REQUIRES: `grid` outlives the widget.
  explicit ImportSourceWindow(BnaSourceGrid& grid, QWidget* parent = nullptr);

  // The data: fixed-pitch "Courier New", 14 pixels high.
  static QFont DataFont();
  // Line numbers and column letters: "Arial", 14 pixels high.
  static QFont LabelFont();

  // Takes the grid's measure and positions again, after it was loaded anew.
  void Refresh();

  // The width of a character cell, the left margin of the line numbers and the height of
  // a row (the letters' row and each line's).
  int cell_width() const { return cell_width_; }
  int margin() const { return margin_; }
  int row_height() const { return row_height_; }
  // How many cells of the data area are visible.
  int VisibleCells() const;
  QScrollBar* horizontalBar() const { return horizontal_; }
  QScrollBar* verticalBar() const { return vertical_; }

  QSize sizeHint() const override;

 Q_SIGNALS:
  // A click in the data area, at cell x counted from its left edge (the scroll position
  // not added).
  void cellClicked(int x);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  // The data area: right of the margin, above the horizontal bar, left of the vertical.
  QRect DataArea() const;
  void UpdateRanges();

  BnaSourceGrid& grid_;
  QScrollBar* horizontal_ = nullptr;
  QScrollBar* vertical_ = nullptr;
  int cell_width_ = 8;
  int margin_ = 0;
  int row_height_ = 16;
};

}  // namespace nv
