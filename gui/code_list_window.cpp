#include "gui/code_list_window.h"

#include <QFontMetrics>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTableWidget>
#include <QVBoxLayout>

#include "gui/display_text.h"

namespace nv {

namespace {

QPushButton* MakeButton(const QString& text, QWidget* parent) {
  auto* button = new QPushButton(text, parent);
  button->setAutoDefault(false);
  return button;
}

}  // namespace

CodeListWindow::CodeListWindow(CodeListEditor& editor, QWidget* parent)
    : QDialog(parent), editor_(editor) {
  setWindowTitle(FromWindowsText(editor.caption()));
  setModal(true);

  const std::vector<CodeListColumn>& columns = editor.columns();
  table_ = new QTableWidget(0, static_cast<int>(columns.size()), this);
  QStringList titles;
  for (const CodeListColumn& column : columns) titles.append(FromWindowsText(column.title));
  table_->setHorizontalHeaderLabels(titles);
  table_->verticalHeader()->setVisible(false);
  table_->setSelectionMode(QAbstractItemView::SingleSelection);
  const QFontMetrics metrics(table_->font());
  for (size_t c = 0; c < columns.size(); ++c) {
    // Room for the column's characters, or for its title when that is wider.
    const int text = metrics.averageCharWidth() * static_cast<int>(columns[c].width + 2);
    const int title = metrics.horizontalAdvance(titles[static_cast<int>(c)]) + 16;
    table_->setColumnWidth(static_cast<int>(c), std::max(text, title));
  }
  table_->horizontalHeader()->setStretchLastSection(true);

  insert_ = MakeButton(QStringLiteral("&Insert Row"), this);
  delete_ = MakeButton(QStringLiteral("&Delete Row"), this);
  ok_ = MakeButton(QStringLiteral("OK"), this);
  ok_->setDefault(true);
  auto* cancel = MakeButton(QStringLiteral("Cancel"), this);

  auto* buttons = new QHBoxLayout;
  buttons->addWidget(insert_);
  buttons->addWidget(delete_);
  buttons->addStretch();
  buttons->addWidget(ok_);
  buttons->addWidget(cancel);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(table_);
  layout->addLayout(buttons);

  connect(table_, &QTableWidget::itemChanged, this, &CodeListWindow::Edited);
  connect(insert_, &QPushButton::clicked, this, &CodeListWindow::InsertClicked);
  connect(delete_, &QPushButton::clicked, this, &CodeListWindow::DeleteClicked);
  connect(ok_, &QPushButton::clicked, this, &CodeListWindow::OkClicked);
  connect(cancel, &QPushButton::clicked, this, &QDialog::reject);

  Fill();
  resize(editor.width(), editor.height());
}

void CodeListWindow::Fill() {
  const QSignalBlocker blocker(table_);
  const std::vector<CodeListEditor::Row>& rows = editor_.rows();
  table_->setRowCount(static_cast<int>(rows.size()) + 1);
  for (int r = 0; r < table_->rowCount(); ++r) {
    for (size_t c = 0; c < editor_.columns().size(); ++c) {
      const size_t row = static_cast<size_t>(r);
      table_->setItem(r, static_cast<int>(c), MakeItem(row < rows.size() ? rows[row][c] : "", c));
    }
  }
}

QTableWidgetItem* CodeListWindow::MakeItem(const std::string& text, size_t column) const {
  auto* item = new QTableWidgetItem(FromWindowsText(text));
  if (editor_.columns()[column].right_aligned)
    item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
  return item;
}

void CodeListWindow::Edited(QTableWidgetItem* item) {
  const size_t row = static_cast<size_t>(item->row());
  const size_t column = static_cast<size_t>(item->column());
  editor_.SetCell(row, column, ToWindowsText(item->text()));
  const QSignalBlocker blocker(table_);
  // The column's rules may have changed the text.
  item->setText(FromWindowsText(editor_.rows()[row][column]));
  // Typing in the blank row made it a row of the list: a new blank row follows it.
  if (table_->rowCount() == static_cast<int>(editor_.rows().size())) {
    const int blank = table_->rowCount();
    table_->insertRow(blank);
    for (size_t c = 0; c < editor_.columns().size(); ++c)
      table_->setItem(blank, static_cast<int>(c), MakeItem("", c));
  }
}

void CodeListWindow::InsertClicked() {
  const int row = std::max(table_->currentRow(), 0);
  editor_.InsertRow(std::min(static_cast<size_t>(row), editor_.rows().size()));
  Fill();
  table_->setCurrentCell(row, 0);
}

void CodeListWindow::DeleteClicked() {
  const int row = table_->currentRow();
  if (row < 0) return;
  editor_.RemoveRow(static_cast<size_t>(row));
  Fill();
  table_->setCurrentCell(std::min(row, table_->rowCount() - 1), 0);
}

void CodeListWindow::OkClicked() {
  if (editor_.Save()) accept();
}

}  // namespace nv
