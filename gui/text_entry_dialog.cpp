#include "gui/text_entry_dialog.h"

#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QRegularExpressionValidator>
#include <QVBoxLayout>

#include "gui/display_text.h"

namespace nv {

TextEntryDialog::TextEntryDialog(const TextEntryRequest& request, QWidget* parent)
    : QDialog(parent) {
  setWindowTitle(FromWindowsText(request.title));
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(new QLabel(FromWindowsText(request.prompt), this));
  field_ = new QLineEdit(FromWindowsText(request.initial), this);
  if (request.max_length > 0) field_->setMaxLength(static_cast<int>(request.max_length));
  if (!request.allowed.empty()) {
    // Lower-case letters pass the validator when the field upper-cases them.
    QString allowed = QRegularExpression::escape(FromWindowsText(request.allowed));
    if (request.upper_case) allowed += "a-z";
    field_->setValidator(
        new QRegularExpressionValidator(QRegularExpression("[" + allowed + "]*"), field_));
  }
  if (request.upper_case) {
    connect(field_, &QLineEdit::textEdited, this, [this](const QString& text) {
      int at = field_->cursorPosition();
      field_->setText(text.toUpper());
      field_->setCursorPosition(at);
    });
  }
  layout->addWidget(field_);
  if (!request.listing.empty()) {
    auto* listing = new QListWidget(this);
    listing->setObjectName(QStringLiteral("listing"));
    listing->setSelectionMode(QAbstractItemView::NoSelection);
    listing->setFocusPolicy(Qt::NoFocus);
    QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    listing->setFont(fixed);
    for (const std::string& line : request.listing) listing->addItem(FromWindowsText(line));
    layout->addWidget(listing);
  }
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  layout->addWidget(buttons);
}

std::string TextEntryDialog::text() const {
  return ToWindowsText(field_->text());
}

}  // namespace nv
