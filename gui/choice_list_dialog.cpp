#include "gui/choice_list_dialog.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

#include "gui/display_text.h"

namespace nv {

namespace {

QStringList MessageLines(const std::string& message) {
  return FromWindowsText(message).split(QLatin1Char('\n'));
}

}  // namespace

ChoiceListDialog::ChoiceListDialog(const ChoiceListRequest& request, QWidget* parent)
    : QDialog(parent), options_(request.options) {
  setWindowTitle(FromWindowsText(request.title));
  setModal(true);

  auto* layout = new QVBoxLayout(this);
  for (const QString& line : MessageLines(request.message)) {
    auto* label = new QLabel(line, this);
    label->setTextFormat(Qt::PlainText);
    layout->addWidget(label);
  }
  if (!request.note.empty()) {
    auto* note = new QLabel(FromWindowsText(request.note), this);
    note->setTextFormat(Qt::PlainText);
    note->setObjectName(QStringLiteral("note"));
    layout->addWidget(note);
  }

  list_ = new QListWidget(this);
  for (const ChoiceOption& option : options_) list_->addItem(FromWindowsText(option.text));
  if (!options_.empty()) list_->setCurrentRow(0);
  list_->setFixedWidth(ListWidth(request, list_->fontMetrics()));
  layout->addWidget(list_);

  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  layout->addWidget(buttons);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  connect(list_, &QListWidget::itemActivated, this, &QDialog::accept);
  buttons->button(QDialogButtonBox::Ok)->setEnabled(!options_.empty());
}

int ChoiceListDialog::ListWidth(const ChoiceListRequest& request, const QFontMetrics& metrics) {
  size_t longest_option = 0;
  for (const ChoiceOption& option : request.options)
    longest_option = std::max(longest_option, option.text.size());
  int width = static_cast<int>(longest_option + 6) * metrics.averageCharWidth();
  for (const QString& line : MessageLines(request.message))
    width = std::max(width, metrics.horizontalAdvance(line));
  return width;
}

int ChoiceListDialog::Result() const {
  if (result() != QDialog::Accepted) return -1;
  const int row = list_->currentRow();
  if (row < 0 || row >= static_cast<int>(options_.size())) return -1;
  const int value = options_[static_cast<size_t>(row)].value;
  return value == -1 ? row : value;
}

void ChoiceListDialog::showEvent(QShowEvent* event) {
  QDialog::showEvent(event);
  // Centred on the main window rather than wherever the window manager puts it.
  if (QWidget* owner = parentWidget()) {
    QRect frame = frameGeometry();
    frame.moveCenter(owner->window()->frameGeometry().center());
    move(frame.topLeft());
  }
}

}  // namespace nv
