#include "gui/match_panel_widget.h"

#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>

#include "gui/display_text.h"

namespace nv {

namespace {

// Paired items share one fill, so a pair reads as one bar across both columns.
const QColor kPairedFill(210, 236, 210);
const QColor kPairedEdge(46, 125, 50);
const QColor kDestinationFill(232, 232, 232);
const QColor kSourceFill(255, 255, 255);
const QColor kDraggedFill(255, 243, 196);
const QColor kEdge(110, 110, 110);

QRect ToQRect(const MapRect& r) {
  return QRect(r.x, r.y, r.width, r.height);
}

QFont SansFont(int pixels, bool bold) {
  QFont font(QStringLiteral("Arial"));
  font.setStyleHint(QFont::SansSerif);
  font.setPixelSize(pixels);
  font.setBold(bold);
  return font;
}

}  // namespace

QFont MatchPanelWidget::InstructionFont(bool bold) {
  return SansFont(15, bold);
}

QFont MatchPanelWidget::ItemFont() {
  return SansFont(12, false);
}

MatchPanelWidget::MatchPanelWidget(MatchPanel& panel, QWidget* parent)
    : QWidget(parent), panel_(panel) {
  setFixedSize(MatchPanel::kWidth, panel_.frame().height - panel_.screen().caption_height);
  ok_ = new QPushButton(QStringLiteral("OK"), this);
  ok_->setObjectName(QStringLiteral("mapOk%1").arg(kMatchPanelOk));
  ok_->setGeometry(ToQRect(panel_.ok_button()));
  ok_->setDefault(true);
  cancel_ = new QPushButton(QStringLiteral("Cancel"), this);
  cancel_->setObjectName(QStringLiteral("mapCancel%1").arg(kMatchPanelCancel));
  cancel_->setGeometry(ToQRect(panel_.cancel_button()));
  reset_ = new QPushButton(QStringLiteral("Reset"), this);
  reset_->setObjectName(QStringLiteral("mapReset"));
  reset_->setGeometry(ToQRect(panel_.reset_button()));
  connect(reset_, &QPushButton::clicked, this, [this] {
    panel_.ResetToStandardMatches();
    update();
  });
}

void MatchPanelWidget::PaintInstruction(QPainter& painter, int top, const QString& before,
                                        const QString& heading, const QString& after) {
  const QFont plain = InstructionFont(false);
  const QFont bold = InstructionFont(true);
  const QFontMetrics plain_metrics(plain), bold_metrics(bold);
  const int width = plain_metrics.horizontalAdvance(before) +
                    bold_metrics.horizontalAdvance(heading) +
                    plain_metrics.horizontalAdvance(after);
  int x = (this->width() - width) / 2;
  const int baseline = top + std::max(plain_metrics.ascent(), bold_metrics.ascent());
  painter.setFont(plain);
  painter.drawText(x, baseline, before);
  x += plain_metrics.horizontalAdvance(before);
  painter.setFont(bold);
  painter.drawText(x, baseline, heading);
  x += bold_metrics.horizontalAdvance(heading);
  painter.setFont(plain);
  painter.drawText(x, baseline, after);
}

void MatchPanelWidget::PaintItem(QPainter& painter, const mapIcon& item) {
  const QRect box(item.x, item.y, mapIcon::kWidth - 1, mapIcon::kHeight - 1);
  const bool paired = item.matched_id != 0;
  QColor fill = item.kind == mapIcon::Kind::kDestination ? kDestinationFill : kSourceFill;
  if (paired) fill = kPairedFill;
  if (item.dragging) {
    fill = kDraggedFill;
    painter.fillRect(box.translated(3, 3), QColor(0, 0, 0, 60));  // lifted off the panel
  }
  painter.setPen(paired ? kPairedEdge : kEdge);
  painter.setBrush(fill);
  painter.drawRect(box);
  painter.setPen(palette().color(QPalette::WindowText));
  painter.setFont(ItemFont());
  const QRect text_box = box.adjusted(5, 0, -4, 0);
  painter.drawText(text_box, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                   painter.fontMetrics().elidedText(FromWindowsText(item.text), Qt::ElideRight,
                                                    text_box.width()));
}

void MatchPanelWidget::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setPen(palette().color(QPalette::WindowText));
  const QString source_heading = FromWindowsText(panel_.source_heading());
  const QString destination_heading = FromWindowsText(panel_.destination_heading());
  PaintInstruction(painter, kInstructionTop,
                   QStringLiteral("Using the Left mouse button, drag items from the "),
                   source_heading, QString());
  PaintInstruction(painter, kInstructionTop + kInstructionStep,
                   QStringLiteral("Column to corresponding items in the "), destination_heading,
                   QStringLiteral(" column."));

  // Each heading centred over its column; a long one may spill past the column's edges.
  painter.setFont(InstructionFont(true));
  const int spill = mapIcon::kWidth;
  for (int column = 0; column < 2; ++column) {
    const QRect over(mapIcon::kHomeX + column * mapIcon::kColumnStep - spill, kHeadingTop,
                     mapIcon::kWidth + 2 * spill, mapIcon::kHomeY - kHeadingTop);
    painter.drawText(over, Qt::AlignHCenter | Qt::AlignTop | Qt::TextSingleLine,
                     column == 0 ? destination_heading : source_heading);
  }

  for (const mapIcon& item : panel_.items()) {
    if (!item.dragging) PaintItem(painter, item);
  }
  if (const mapIcon* dragged = panel_.dragged()) {
    // Show where the item would land if let go now.
    if (const mapIcon* target = FindDropTarget(panel_.items(), *panel_.DropArea())) {
      painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
      painter.setBrush(Qt::NoBrush);
      painter.drawRect(QRect(target->x, target->y, 2 * mapIcon::kWidth, mapIcon::kHeight)
                           .adjusted(-1, -1, 0, 0));
    }
    PaintItem(painter, *dragged);
  }
}

void MatchPanelWidget::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return QWidget::mousePressEvent(event);
  const QPoint at = event->position().toPoint();
  if (panel_.Press(at.x(), at.y())) setCursor(Qt::ClosedHandCursor);
  update();
}

void MatchPanelWidget::mouseMoveEvent(QMouseEvent* event) {
  if (!panel_.dragged()) return QWidget::mouseMoveEvent(event);
  const QPoint at = event->position().toPoint();
  panel_.Move(at.x(), at.y());
  update();
}

void MatchPanelWidget::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return QWidget::mouseReleaseEvent(event);
  const QPoint at = event->position().toPoint();
  panel_.Release(at.x(), at.y());
  unsetCursor();
  update();
}

}  // namespace nv
