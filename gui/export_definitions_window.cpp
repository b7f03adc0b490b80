#include "gui/export_definitions_window.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QFrame>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "gui/display_text.h"

namespace nv {

namespace {

// Fills a list with `lines` and chooses row `chosen`, unless it shows them already.
void ShowLines(QListWidget* list, const std::vector<std::string>& lines,
               std::optional<size_t> chosen) {
  bool same = list->count() == static_cast<int>(lines.size());
  for (int i = 0; same && i < list->count(); ++i) {
    same = list->item(i)->text() == FromWindowsText(lines[static_cast<size_t>(i)]);
  }
  if (!same) {
    list->clear();
    for (const std::string& line : lines) list->addItem(FromWindowsText(line));
  }
  list->setCurrentRow(chosen ? static_cast<int>(*chosen) : -1);
  if (!chosen) list->clearSelection();
}

void ShowText(QLineEdit* box, const std::string& text) {
  const QString shown = FromWindowsText(text);
  if (box->text() != shown) box->setText(shown);
}

std::optional<size_t> RowOf(int row) {
  if (row < 0) return std::nullopt;
  return static_cast<size_t>(row);
}

}  // namespace

ExportDefinitionsWindow::ExportDefinitionsWindow(ExportWindow& model, QWidget* parent)
    : QDialog(parent), model_(model) {
  setWindowTitle(QString::fromLatin1(kExportWindowTitle));
  setModal(true);

  definition_ = new QLabel(this);
  definition_->setObjectName(QStringLiteral("definition"));
  definition_->setFrameShape(QFrame::Box);
  definition_->setAlignment(Qt::AlignCenter);
  definition_->setMinimumHeight(48);

  auto* middle = new QHBoxLayout;
  middle->addWidget(BuildFieldLists(), 3);
  middle->addWidget(BuildProperties(), 2);

  auto* layout = new QVBoxLayout(this);
  layout->addWidget(definition_);
  layout->addLayout(middle);
  layout->addWidget(BuildOptions());
  layout->addWidget(BuildButtons());
  ShowModel();
}

QWidget* ExportDefinitionsWindow::BuildFieldLists() {
  auto* box = new QWidget(this);
  auto* grid = new QGridLayout(box);
  grid->setContentsMargins(0, 0, 0, 0);
  groups_ = new QListWidget(box);
  available_ = new QListWidget(box);
  columns_ = new QListWidget(box);
  add_ = new QPushButton(QStringLiteral(">"), box);
  remove_ = new QPushButton(QStringLiteral("<"), box);
  grid->addWidget(new QLabel(QStringLiteral("Show:"), box), 0, 0);
  grid->addWidget(groups_, 1, 0);
  grid->addWidget(new QLabel(QStringLiteral("Available Values"), box), 2, 0);
  grid->addWidget(available_, 3, 0);
  auto* arrows = new QVBoxLayout;
  arrows->addStretch();
  arrows->addWidget(add_);
  arrows->addWidget(remove_);
  arrows->addStretch();
  grid->addLayout(arrows, 3, 1);
  grid->addWidget(new QLabel(QStringLiteral("Columns to Export"), box), 0, 2);
  grid->addWidget(columns_, 1, 2, 3, 1);
  grid->setRowStretch(3, 1);
  groups_->setMaximumHeight(110);
  groups_->setMinimumWidth(210);
  available_->setMinimumSize(210, 200);
  columns_->setMinimumWidth(250);

  connect(groups_, &QListWidget::itemChanged, this, [this](QListWidgetItem* item) {
    if (showing_) return;
    const size_t index = static_cast<size_t>(groups_->row(item));
    if (index >= model_.groups().size()) return;
    model_.ShowGroup(model_.groups()[index].letter, item->checkState() == Qt::Checked);
    ShowModel();
  });
  connect(available_, &QListWidget::currentRowChanged, this, [this](int row) {
    if (showing_) return;
    model_.ChooseValue(RowOf(row));
    ShowModel();
  });
  connect(available_, &QListWidget::itemDoubleClicked, this, [this] {
    model_.Add();
    ShowModel();
  });
  connect(columns_, &QListWidget::currentRowChanged, this, [this](int row) {
    if (showing_) return;
    model_.ChooseColumn(RowOf(row));
    ShowModel();
  });
  connect(add_, &QPushButton::clicked, this, [this] {
    model_.Add();
    ShowModel();
  });
  connect(remove_, &QPushButton::clicked, this, [this] {
    model_.Remove();
    ShowModel();
  });
  return box;
}

QWidget* ExportDefinitionsWindow::BuildProperties() {
  auto* box = new QGroupBox(QStringLiteral("Column Properties"), this);
  auto* layout = new QGridLayout(box);
  column_ = new QLineEdit(box);
  column_->setMaxLength(2);
  heading_ = new QLineEdit(box);
  layout->addWidget(new QLabel(QStringLiteral("Column"), box), 0, 0);
  layout->addWidget(column_, 0, 1);
  layout->addWidget(new QLabel(QStringLiteral("Heading"), box), 1, 0);
  layout->addWidget(heading_, 1, 1);
  const char* captions[] = {"Addition", "Disposition", "Current, but not Addition or Disposition",
                            "None of the Above"};
  for (int i = 0; i < 4; ++i) {
    flags_[i] = new QCheckBox(QString::fromLatin1(captions[i]), box);
    layout->addWidget(flags_[i], 2 + i, 0, 1, 2);
    connect(flags_[i], &QCheckBox::toggled, this, [this, i](bool on) {
      if (showing_) return;
      model_.SetFlag(static_cast<ExportWindow::Flag>(i), on);
      ShowModel();
    });
  }
  layout->setRowStretch(6, 1);
  // Letters are taken when the box is left: a half-typed "A" of "AB" must not move anything.
  connect(column_, &QLineEdit::editingFinished, this, [this] {
    if (showing_ || !model_.PropertiesEnabled()) return;
    static_cast<void>(model_.SetColumnText(ToWindowsText(column_->text())));
    ShowModel();
  });
  connect(heading_, &QLineEdit::textEdited, this, [this](const QString& text) {
    model_.SetHeading(ToWindowsText(text));
    ShowModel();
  });
  return box;
}

QWidget* ExportDefinitionsWindow::BuildOptions() {
  auto* box = new QWidget(this);
  auto* grid = new QGridLayout(box);
  grid->setContentsMargins(0, 0, 0, 0);
  include_headings_ = new QCheckBox(QStringLiteral("Include Column Headings"), box);
  grid->addWidget(include_headings_, 0, 0);

  auto* sort = new QGroupBox(QStringLiteral("Sort Assets By"), box);
  auto* sort_layout = new QVBoxLayout(sort);
  by_number_ = new QRadioButton(QStringLiteral("Asset No."), sort);
  by_sort_order_ = new QRadioButton(QStringLiteral("Company Sort Order"), sort);
  sort_layout->addWidget(by_number_);
  sort_layout->addWidget(by_sort_order_);
  grid->addWidget(sort, 1, 0);

  auto* selection = new QGroupBox(QStringLiteral("Asset Selection"), box);
  auto* selection_layout = new QVBoxLayout(selection);
  all_assets_ = new QRadioButton(QStringLiteral("Print All Assets"), selection);
  selected_assets_ = new QRadioButton(QStringLiteral("Print Selected Assets"), selection);
  selection_layout->addWidget(all_assets_);
  selection_layout->addWidget(selected_assets_);
  grid->addWidget(selection, 1, 1);

  auto* files = new QGridLayout;
  file_name_ = new QLineEdit(box);
  folder_ = new QLineEdit(box);
  auto* browse = new QPushButton(QStringLiteral("Browse"), box);
  files->addWidget(new QLabel(QStringLiteral("File Name"), box), 0, 0);
  files->addWidget(file_name_, 0, 1, 1, 2);
  files->addWidget(new QLabel(QStringLiteral("Folder"), box), 1, 0);
  files->addWidget(folder_, 1, 1);
  files->addWidget(browse, 1, 2);
  grid->addLayout(files, 2, 0, 1, 2);

  connect(include_headings_, &QCheckBox::toggled, this, [this](bool on) {
    if (showing_) return;
    model_.SetIncludeHeadings(on);
    ShowModel();
  });
  connect(by_sort_order_, &QRadioButton::toggled, this, [this](bool on) {
    if (showing_) return;
    model_.SetSortOrder(on ? ExportSortOrder::kCompanySortOrder : ExportSortOrder::kAssetNumber);
  });
  connect(selected_assets_, &QRadioButton::toggled, this, [this](bool on) {
    if (showing_) return;
    model_.SetSelectAssets(on);
    ShowModel();
  });
  connect(file_name_, &QLineEdit::textEdited, this,
          [this](const QString& text) { model_.SetFileName(ToWindowsText(text)); });
  connect(folder_, &QLineEdit::textEdited, this,
          [this](const QString& text) { model_.SetFolder(ToWindowsText(text)); });
  connect(browse, &QPushButton::clicked, this, [this] {
    model_.Browse();
    ShowModel();
  });
  return box;
}

QWidget* ExportDefinitionsWindow::BuildButtons() {
  auto* box = new QWidget(this);
  auto* row = new QHBoxLayout(box);
  row->setContentsMargins(0, 0, 0, 0);
  auto add = [&](const char* text, auto action) {
    auto* button = new QPushButton(QString::fromLatin1(text), box);
    button->setAutoDefault(false);
    row->addWidget(button);
    connect(button, &QPushButton::clicked, this, [this, action] {
      action();
      ShowModel();
    });
  };
  add("Open", [this] { model_.Open(); });
  add("Save", [this] { model_.Save(); });
  add("Save As", [this] { model_.SaveAs(); });
  add("Delete", [this] { model_.Delete(); });
  add("Export", [this] { Export(); });
  add("Help", [this] { model_.Help(); });
  add("Close", [this] { reject(); });
  return box;
}

QPushButton* ExportDefinitionsWindow::button(const QString& text) const {
  for (QPushButton* candidate : findChildren<QPushButton*>()) {
    if (candidate->text() == text) return candidate;
  }
  return nullptr;
}

void ExportDefinitionsWindow::Export() {
  if (!model_.Export()) return;
  exported_ = true;
  accept();
}

void ExportDefinitionsWindow::ShowModel() {
  showing_ = true;
  definition_->setText(FromWindowsText(model_.DefinitionText()));

  std::vector<std::string> group_lines;
  for (const ExportWindow::Group& group : model_.groups()) group_lines.push_back(group.text);
  ShowLines(groups_, group_lines, std::nullopt);
  for (size_t i = 0; i < model_.groups().size(); ++i) {
    QListWidgetItem* item = groups_->item(static_cast<int>(i));
    item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsUserCheckable);
    item->setCheckState(model_.groups()[i].shown ? Qt::Checked : Qt::Unchecked);
  }
  std::vector<std::string> values;
  for (const ExportWindow::AvailableValue& value : model_.available()) values.push_back(value.text);
  ShowLines(available_, values, model_.chosen_value());
  ShowLines(columns_, model_.ColumnLines(), model_.chosen_column());
  add_->setEnabled(model_.CanAdd());
  remove_->setEnabled(model_.CanRemove());

  const bool enabled = model_.PropertiesEnabled();
  column_->setEnabled(enabled);
  heading_->setEnabled(enabled);
  ShowText(column_, model_.ColumnText());
  ShowText(heading_, model_.Heading());
  for (int i = 0; i < 4; ++i) {
    flags_[i]->setEnabled(enabled);
    flags_[i]->setChecked(model_.FlagOf(static_cast<ExportWindow::Flag>(i)));
  }

  include_headings_->setChecked(model_.include_headings());
  (model_.sort_order() == ExportSortOrder::kAssetNumber ? by_number_ : by_sort_order_)
      ->setChecked(true);
  (model_.select_assets() ? selected_assets_ : all_assets_)->setChecked(true);
  ShowText(file_name_, model_.file_name_text());
  ShowText(folder_, model_.folder_text());
  showing_ = false;
}

}  // namespace nv
