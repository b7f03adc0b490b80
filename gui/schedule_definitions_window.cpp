#include "gui/schedule_definitions_window.h"

#include <QApplication>
#include <QEvent>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>
#include <QVBoxLayout>

#include "gui/display_text.h"

namespace nv {

QRect sdefRowDelegate::ColumnRect(const QRect& line, int column) {
  const int left = line.left() + kColumnX[static_cast<size_t>(column)];
  const int right = column + 1 < static_cast<int>(kColumnX.size())
                        ? line.left() + kColumnX[static_cast<size_t>(column) + 1] - 1
                        : line.right();
  return QRect(QPoint(left, line.top()), QPoint(std::max(left, right), line.bottom()));
}

void sdefRowDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                            const QModelIndex& index) const {
  QStyleOptionViewItem background = option;
  initStyleOption(&background, index);
  background.text.clear();
  const QWidget* widget = option.widget;
  QStyle* style = widget ? widget->style() : QApplication::style();
  style->drawControl(QStyle::CE_ItemViewItem, &background, painter, widget);

  painter->save();
  const bool selected = option.state & QStyle::State_Selected;
  painter->setPen(option.palette.color(
      option.state & QStyle::State_Enabled ? QPalette::Normal : QPalette::Disabled,
      selected ? QPalette::HighlightedText : QPalette::Text));
  for (int column = 0; column < static_cast<int>(kColumnX.size()); ++column) {
    const QRect rect = ColumnRect(option.rect, column);
    const QString text = option.fontMetrics.elidedText(index.data(kColumnRole + column).toString(),
                                                       Qt::ElideRight, rect.width());
    painter->drawText(rect, Qt::AlignLeft | Qt::AlignVCenter, text);
  }
  painter->restore();
}

QSize sdefRowDelegate::sizeHint(const QStyleOptionViewItem& option,
                                const QModelIndex& index) const {
  QSize size = QStyledItemDelegate::sizeHint(option, index);
  size.setWidth(kColumnX.back() + option.fontMetrics.averageCharWidth() * 20);
  return size;
}

ScheduleDefinitionsWindow::ScheduleDefinitionsWindow(DlgEdScheduleDefinitions& editor,
                                                     QWidget* parent)
    : QDialog(parent), editor_(editor) {
  setWindowTitle(QStringLiteral("Schedule Definitions"));
  setModal(true);

  definitions_ = new QListWidget(this);
  definitions_->setObjectName(QStringLiteral("sdefSchLb%1").arg(kSdefDefinitionsList));
  definitions_->setItemDelegate(new sdefRowDelegate(definitions_));
  definitions_->setMinimumWidth(sdefRowDelegate::kColumnX.back() + 160);

  caption_ = new QLabel(this);
  types_ = new QListWidget(this);
  types_->setObjectName(QStringLiteral("sdefTyLb%1").arg(kSdefTypeList));
  letter_ = new QLineEdit(this);
  letter_->setObjectName(QStringLiteral("sdefEdit%1").arg(kSdefLetter));
  letter_->setMaxLength(1);
  description_ = new QLineEdit(this);
  description_->setObjectName(QStringLiteral("sdefEdit%1").arg(kSdefDescription));
  description_->setMaxLength(static_cast<int>(kScheduleDescriptionWidth));
  all_companies_ = new QRadioButton(QStringLiteral("All Companies"), this);
  all_companies_->setObjectName(QStringLiteral("sdefRadioButton%1").arg(kSdefAllCompanies));
  this_company_ = new QRadioButton(QStringLiteral("This Company Only"), this);
  this_company_->setObjectName(QStringLiteral("sdefRadioButton%1").arg(kSdefThisCompany));
  letter_->installEventFilter(this);
  description_->installEventFilter(this);

  auto* fields = new QGroupBox(this);
  auto* field_layout = new QVBoxLayout(fields);
  field_layout->addWidget(caption_);
  field_layout->addWidget(new QLabel(QStringLiteral("Letter:"), fields));
  field_layout->addWidget(letter_);
  field_layout->addWidget(new QLabel(QStringLiteral("Description:"), fields));
  field_layout->addWidget(description_);
  field_layout->addWidget(new QLabel(QStringLiteral("Type:"), fields));
  field_layout->addWidget(types_);
  field_layout->addWidget(all_companies_);
  field_layout->addWidget(this_company_);

  auto* button_row = new QHBoxLayout;
  const std::pair<int, const char*> commands[] = {
      {kSdefSave, "&Save"},     {kSdefNew, "&New"},
      {kSdefDelete, "&Delete"}, {kSdefCancelEdit, "C&ancel Edit"},
      {kSdefClose, "Close"},    {kSdefHelp, "Help"}};
  for (const auto& [id, text] : commands)
    button_row->addWidget(AddButton(id, QString::fromLatin1(text)));

  auto* top = new QHBoxLayout;
  top->addWidget(definitions_, 3);
  top->addWidget(fields, 2);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(top);
  layout->addLayout(button_row);

  FillTypes();
  connect(definitions_, &QListWidget::currentRowChanged, this, [this](int row) {
    if (refreshing_) return;
    editor_.Select(row < 0 ? std::nullopt : std::optional<size_t>(static_cast<size_t>(row)));
    Refresh();
  });
  connect(types_, &QListWidget::currentRowChanged, this, [this](int row) {
    if (refreshing_ || row < 0) return;
    editor_.ChooseType(static_cast<size_t>(row));
    Refresh();
  });
  connect(letter_, &QLineEdit::textEdited, this,
          [this](const QString& text) { editor_.SetLetterText(ToWindowsText(text)); });
  connect(description_, &QLineEdit::textEdited, this,
          [this](const QString& text) { editor_.SetDescription(ToWindowsText(text)); });
  connect(this_company_, &QRadioButton::toggled, this, [this](bool checked) {
    if (!refreshing_) editor_.SetThisCompanyOnly(checked);
  });
  Refresh();
}

QPushButton* ScheduleDefinitionsWindow::AddButton(int id, const QString& text) {
  auto* button = new QPushButton(text, this);
  button->setObjectName(QStringLiteral("sdefButton%1").arg(id));
  button->setProperty("controlId", id);
  button->setAutoDefault(false);
  connect(button, &QPushButton::clicked, this, [this, id] { RunCommand(id); });
  buttons_.push_back(button);
  return button;
}

QPushButton* ScheduleDefinitionsWindow::button(int id) const {
  for (QPushButton* b : buttons_) {
    if (b->property("controlId").toInt() == id) return b;
  }
  return nullptr;
}

void ScheduleDefinitionsWindow::RunCommand(int id) {
  switch (id) {
    case kSdefSave:
      editor_.Save();
      break;
    case kSdefNew:
      editor_.New();
      if (editor_.mode() == DlgEdScheduleDefinitions::Mode::kNew) letter_->setFocus();
      break;
    case kSdefDelete:
      editor_.Delete();
      break;
    case kSdefCancelEdit:
      editor_.CancelEdit();
      break;
    case kSdefHelp:
      editor_.Help();
      break;
    case kSdefClose:
      if (editor_.Close() == DlgEdScheduleDefinitions::CloseResult::kClosed) {
        QDialog::accept();
        return;
      }
      break;
  }
  Refresh();
}

void ScheduleDefinitionsWindow::reject() {
  if (editor_.close_enabled()) RunCommand(kSdefClose);
}

bool ScheduleDefinitionsWindow::eventFilter(QObject* watched, QEvent* event) {
  // Entering a field selects its whole text, once the focus change has settled.
  if (event->type() == QEvent::FocusIn) {
    if (auto* edit = qobject_cast<QLineEdit*>(watched))
      QTimer::singleShot(0, edit, &QLineEdit::selectAll);
  }
  return QDialog::eventFilter(watched, event);
}

void ScheduleDefinitionsWindow::FillTypes() {
  for (const sdefTypeEntry& entry : DlgEdScheduleDefinitions::TypeEntries()) {
    types_->addItem(FromWindowsText(entry.text));
  }
}

void ScheduleDefinitionsWindow::FillDefinitions() {
  std::vector<QStringList> shown;
  for (const sdefRow& row : editor_.rows()) {
    shown.push_back({FromWindowsText(row.letter), FromWindowsText(row.description),
                     FromWindowsText(row.type_caption), FromWindowsText(row.source)});
  }
  // Rebuilt only when the lines change: a click that selects must not pull the items away
  // from under the list's own handling of it.
  if (shown == shown_rows_) return;
  shown_rows_ = shown;
  definitions_->clear();
  for (const QStringList& columns : shown) {
    auto* item = new QListWidgetItem(columns.join(QLatin1Char('\t')), definitions_);
    for (int c = 0; c < columns.size(); ++c) {
      item->setData(sdefRowDelegate::kColumnRole + c, columns[c]);
    }
  }
}

void ScheduleDefinitionsWindow::Refresh() {
  refreshing_ = true;
  FillDefinitions();
  const std::optional<size_t> selected = editor_.selected_row();
  definitions_->setCurrentRow(selected ? static_cast<int>(*selected) : -1);
  definitions_->setEnabled(editor_.list_enabled());

  caption_->setText(FromWindowsText(editor_.caption()));
  const bool fields = editor_.fields_enabled();
  const std::optional<size_t> type = editor_.type_entry();
  types_->setCurrentRow(type ? static_cast<int>(*type) : -1);
  types_->setEnabled(fields);
  if (ToWindowsText(letter_->text()) != editor_.letter_text()) {
    letter_->setText(FromWindowsText(editor_.letter_text()));
  }
  letter_->setEnabled(editor_.letter_enabled());
  if (ToWindowsText(description_->text()) != editor_.description()) {
    description_->setText(FromWindowsText(editor_.description()));
  }
  description_->setEnabled(fields);
  this_company_->setChecked(editor_.this_company_only());
  all_companies_->setChecked(!editor_.this_company_only());
  this_company_->setEnabled(fields);
  all_companies_->setEnabled(fields);

  button(kSdefSave)->setEnabled(fields);
  button(kSdefCancelEdit)->setEnabled(fields);
  button(kSdefDelete)->setEnabled(editor_.delete_enabled());
  button(kSdefClose)->setEnabled(editor_.close_enabled());
  refreshing_ = false;
}

void QtScheduleDefinitionsRunner::Run(DlgEdScheduleDefinitions& editor) {
  ScheduleDefinitionsWindow window(editor, parent_);
  window.exec();
}

}  // namespace nv
