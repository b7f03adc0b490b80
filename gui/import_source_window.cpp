#include "gui/import_source_window.h"

#include <QFontMetrics>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <algorithm>

#include "base/column_letters.h"
#include "gui/display_text.h"

namespace nv {
namespace {

const QColor kRule(160, 160, 160);
const QColor kHeaderFill(236, 236, 236);
const QColor kCommentText(0, 110, 0);

}  // namespace

QFont ImportSourceWindow::DataFont() {
  QFont font(QStringLiteral("Courier New"));
  font.setStyleHint(QFont::TypeWriter);
  font.setFixedPitch(true);
  font.setPixelSize(14);
  return font;
}

QFont ImportSourceWindow::LabelFont() {
  QFont font(QStringLiteral("Arial"));
  font.setStyleHint(QFont::SansSerif);
  font.setPixelSize(14);
  return font;
}

ImportSourceWindow::ImportSourceWindow(BnaSourceGrid& grid, QWidget* parent)
    : QWidget(parent), grid_(grid) {
  const QFontMetrics data(DataFont()), label(LabelFont());
  cell_width_ = std::max(1, data.averageCharWidth());
  margin_ = label.horizontalAdvance(QStringLiteral("0000"));
  row_height_ = std::max(data.height(), label.height()) + 2;
  horizontal_ = new QScrollBar(Qt::Horizontal, this);
  horizontal_->setObjectName(QStringLiteral("bna139"));
  vertical_ = new QScrollBar(Qt::Vertical, this);
  vertical_->setObjectName(QStringLiteral("bna138"));
  connect(horizontal_, &QScrollBar::valueChanged, this, [this](int value) {
    grid_.SetHorizontalPosition(value, VisibleCells());
    update();
  });
  connect(vertical_, &QScrollBar::valueChanged, this, [this](int value) {
    grid_.SetVerticalPosition(value);
    update();
  });
  setFocusPolicy(Qt::ClickFocus);
  Refresh();
}

QSize ImportSourceWindow::sizeHint() const {
  return QSize(margin_ + 80 * cell_width_ + vertical_->sizeHint().width(),
               (1 + kBnaGridLines) * row_height_ + horizontal_->sizeHint().height() + 2);
}

QRect ImportSourceWindow::DataArea() const {
  const int bar_width = vertical_->sizeHint().width();
  const int bar_height = horizontal_->sizeHint().height();
  return QRect(margin_, 0, std::max(0, width() - margin_ - bar_width),
               std::max(0, height() - bar_height));
}

int ImportSourceWindow::VisibleCells() const {
  return DataArea().width() / cell_width_;
}

void ImportSourceWindow::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  const int bar_width = vertical_->sizeHint().width();
  const int bar_height = horizontal_->sizeHint().height();
  horizontal_->setGeometry(0, height() - bar_height, width() - bar_width, bar_height);
  vertical_->setGeometry(width() - bar_width, 0, bar_width, height() - bar_height);
  UpdateRanges();
}

void ImportSourceWindow::Refresh() {
  UpdateRanges();
  update();
}

void ImportSourceWindow::UpdateRanges() {
  const QSignalBlocker block_h(horizontal_), block_v(vertical_);
  grid_.SetHorizontalPosition(grid_.horizontal_position(), VisibleCells());
  horizontal_->setRange(0, grid_.HorizontalMaximum(VisibleCells()));
  horizontal_->setPageStep(std::max(1, VisibleCells()));
  horizontal_->setValue(grid_.horizontal_position());
  vertical_->setRange(0, grid_.VerticalMaximum());
  vertical_->setPageStep(kBnaGridLines);
  vertical_->setValue(grid_.vertical_position());
}

void ImportSourceWindow::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QRect area = DataArea();
  painter.fillRect(rect(), palette().base());
  painter.fillRect(QRect(0, 0, area.right() + 1, row_height_), kHeaderFill);

  const QFont data_font = DataFont(), label_font = LabelFont();
  const int h = grid_.horizontal_position();
  const std::vector<int32_t>& widths = grid_.measure().widths;
  auto cell_x = [&](int cell) { return area.left() + (cell - h) * cell_width_; };

  // Column letters, centred over their columns, and the rules after each column.
  painter.setClipRect(area);
  painter.setFont(label_font);
  for (int c = 0; c < static_cast<int>(widths.size()); ++c) {
    const int left = cell_x(grid_.ColumnStart(c));
    const int right = left + widths[c] * cell_width_;
    if (right + cell_width_ < area.left() || left > area.right()) continue;
    painter.setPen(palette().text().color());
    painter.drawText(QRect(left, 0, std::max(right - left, cell_width_), row_height_),
                     Qt::AlignCenter, QString::fromStdString(ColumnLetters(c)));
    painter.setPen(kRule);
    const int rule = right + cell_width_ / 2;
    painter.drawLine(rule, 0, rule, (1 + kBnaGridLines) * row_height_);
  }

  // The lines: comment lines raw, split lines column by column.
  const QFontMetrics data_metrics(data_font);
  const std::vector<BnaGridLine> lines = grid_.ShownLines();
  for (size_t i = 0; i < lines.size(); ++i) {
    const int top = static_cast<int>(i + 1) * row_height_;
    const int baseline = top + (row_height_ + data_metrics.ascent() - data_metrics.descent()) / 2;
    painter.setClipping(false);
    painter.setFont(label_font);
    painter.setPen(palette().text().color());
    painter.drawText(QRect(0, top, margin_ - 1, row_height_), Qt::AlignRight | Qt::AlignVCenter,
                     QString::number(lines[i].number));
    painter.setClipRect(area);
    painter.setFont(data_font);
    if (lines[i].comment) {
      painter.setPen(kCommentText);
      painter.drawText(area.left(), baseline, FromWindowsText(lines[i].text).mid(h));
      continue;
    }
    painter.setPen(palette().text().color());
    for (size_t c = 0; c < lines[i].columns.size() && c < widths.size(); ++c) {
      const int left = cell_x(grid_.ColumnStart(static_cast<int>(c)));
      const QRect cell(left, top, widths[c] * cell_width_, row_height_);
      if (cell.right() < area.left() || cell.left() > area.right()) continue;
      painter.save();
      painter.setClipRect(cell.intersected(area));
      painter.drawText(left, baseline, FromWindowsText(lines[i].columns[c]));
      painter.restore();
    }
  }
  painter.setClipping(false);
  painter.setPen(kRule);
  painter.drawLine(area.left() - 1, 0, area.left() - 1, area.bottom());
  painter.drawLine(0, row_height_ - 1, area.right(), row_height_ - 1);
}

void ImportSourceWindow::mousePressEvent(QMouseEvent* event) {
  const QRect area = DataArea();
  const QPoint at = event->position().toPoint();
  if (event->button() != Qt::LeftButton || !area.contains(at)) return;
  Q_EMIT cellClicked((at.x() - area.left()) / cell_width_);
}

}  // namespace nv
