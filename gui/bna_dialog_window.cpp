#include "gui/bna_dialog_window.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "gui/display_text.h"
#include "gui/import_source_window.h"

namespace nv {
namespace {

constexpr int kListBox = 111;
constexpr int kNoCopyBox = 113;
constexpr int kFirstMethodButton = 114;
constexpr int kFirstField = 121;
constexpr int kGridControl = 135;
constexpr int kSelectFileButton = 201;
constexpr int kSelectProfileButton = 202;
constexpr int kImportButton = 203;
constexpr int kNameLabel = 482;
constexpr int kProfileLabel = 483;
constexpr int kTabsButton = 555;
constexpr int kCommasButton = 556;
constexpr int kExitButton = 2;

// The method buttons, 114 to 120 in this order.
struct MethodButton {
  ConversionMethod method;
  const char* caption;
};
constexpr MethodButton kMethodButtons[] = {
    {ConversionMethod::kEntire, "Copy entire column"},
    {ConversionMethod::kRight, "Copy right"},
    {ConversionMethod::kLeft, "Copy left"},
    {ConversionMethod::kMid, "Copy Middle"},
    {ConversionMethod::kDefault, "Save default value"},
    {ConversionMethod::kSpecial, "Perform special conversion"},
    {ConversionMethod::kSet, "Set value to"},
};

// The group boxes' numbers, in the order of kBnaGroupBoxes (G T B A C S O).
constexpr int kGroupBoxIds[] = {134, 132, 131, 130, 129, 128, 127};
static_assert(std::size(kGroupBoxIds) == std::size(kBnaGroupBoxes));

void Name(QWidget* widget, int id) {
  widget->setObjectName(QStringLiteral("bna%1").arg(id));
}

}  // namespace

BnaDialogWindow::BnaDialogWindow(BnaNdDialog& dialog, QWidget* parent)
    : QDialog(parent), dialog_(dialog) {
  setWindowTitle(FromWindowsText(dialog_.caption()));
  auto* layout = new QVBoxLayout(this);
  BuildTop(layout);

  grid_ = new ImportSourceWindow(dialog_.grid(), this);
  Name(grid_, kGridControl);
  connect(grid_, &ImportSourceWindow::cellClicked, this, [this](int x) {
    dialog_.ClickGrid(x);
    ShowPanel();
  });
  layout->addWidget(grid_);

  auto* lower = new QHBoxLayout;
  list_ = new QTreeWidget(this);
  Name(list_, kListBox);
  list_->setColumnCount(2);
  list_->setHeaderHidden(true);
  list_->setRootIsDecorated(false);
  list_->setMinimumWidth(300);
  list_->header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
  connect(list_, &QTreeWidget::currentItemChanged, this, [this] {
    dialog_.SelectLine(list_->indexOfTopLevelItem(list_->currentItem()));
    ShowPanel();
  });
  lower->addWidget(list_, 1);

  auto* groups = new QGroupBox(QStringLiteral("Data"), this);
  auto* groups_layout = new QVBoxLayout(groups);
  for (size_t i = 0; i < std::size(kBnaGroupBoxes); ++i) {
    auto* box = new QCheckBox(QString::fromLatin1(kBnaGroupBoxes[i].caption), groups);
    Name(box, kGroupBoxIds[i]);
    const char letter = kBnaGroupBoxes[i].letter;
    connect(box, &QCheckBox::toggled, this, [this, letter](bool checked) {
      dialog_.SetGroupChecked(letter, checked);
      ShowList();
    });
    groups_layout->addWidget(box);
    groups_[i] = box;
  }
  groups_layout->addStretch();
  lower->addWidget(groups);
  lower->addWidget(BuildPanel());
  layout->addLayout(lower, 1);
  ShowState();
}

void BnaDialogWindow::BuildTop(QVBoxLayout* layout) {
  auto* top = new QHBoxLayout;
  top->addWidget(new QLabel(QStringLiteral("Import Profile:"), this));
  profile_ = new QLabel(this);
  Name(profile_, kProfileLabel);
  profile_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  top->addWidget(profile_, 1);

  tabs_ = new QRadioButton(QStringLiteral("Tab separated"), this);
  Name(tabs_, kTabsButton);
  commas_ = new QRadioButton(QStringLiteral("Comma separatd"), this);
  Name(commas_, kCommasButton);
  connect(tabs_, &QRadioButton::clicked, this, [this] {
    dialog_.SetFileType(kBnaTabSeparated);
    ShowState();
  });
  connect(commas_, &QRadioButton::clicked, this, [this] {
    dialog_.SetFileType(kBnaCommaSeparated);
    ShowState();
  });
  top->addWidget(tabs_);
  top->addWidget(commas_);

  auto add_button = [&](int id, const QString& caption, auto command) {
    auto* button = new QPushButton(caption, this);
    Name(button, id);
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, this, command);
    top->addWidget(button);
  };
  add_button(kSelectFileButton, QStringLiteral("Select File"), [this] {
    dialog_.SelectFile();
    ShowState();
  });
  add_button(kSelectProfileButton, QStringLiteral("Select Profile"), [this] {
    dialog_.SelectProfile();
    ShowState();
  });
  add_button(kImportButton, QStringLiteral("Import Data"), [this] {
    dialog_.ImportData();
    ShowState();
  });
  add_button(kExitButton, QStringLiteral("Exit"), [this] { accept(); });
  layout->addLayout(top);
}

QWidget* BnaDialogWindow::BuildPanel() {
  auto* panel = new QGroupBox(this);
  auto* grid = new QGridLayout(panel);
  name_ = new QLabel(panel);
  Name(name_, kNameLabel);
  QFont bold = name_->font();
  bold.setBold(true);
  name_->setFont(bold);
  grid->addWidget(name_, 0, 0, 1, 4);

  no_copy_ = new QCheckBox(QStringLiteral("Do not copy"), panel);
  Name(no_copy_, kNoCopyBox);
  connect(no_copy_, &QCheckBox::toggled, this, [this](bool checked) {
    dialog_.SetNoCopy(checked);
    ShowPanel();
    ShowList();
  });
  grid->addWidget(no_copy_, 1, 0, 1, 4);

  methods_ = new QButtonGroup(panel);
  for (size_t i = 0; i < std::size(kMethodButtons); ++i) {
    auto* button = new QRadioButton(QString::fromLatin1(kMethodButtons[i].caption), panel);
    Name(button, kFirstMethodButton + static_cast<int>(i));
    methods_->addButton(button, static_cast<int>(i));
    grid->addWidget(button, 2 + static_cast<int>(i), 0);
  }
  connect(methods_, &QButtonGroup::idClicked, this, [this](int i) {
    dialog_.SetMethod(kMethodButtons[i].method);
    ShowList();
  });

  AddField(kFirstField + 0, grid, 3, 1, "characters", BnaPanelField::kRightCount);
  AddField(kFirstField + 1, grid, 4, 1, "characters", BnaPanelField::kLeftCount);
  AddField(kFirstField + 2, grid, 5, 1, "characters from", BnaPanelField::kMidCount);
  AddField(kFirstField + 3, grid, 5, 3, nullptr, BnaPanelField::kMidStart);
  QLineEdit* set = AddField(kFirstField + 4, grid, 8, 1, nullptr, BnaPanelField::kSetText);
  grid->addWidget(set, 8, 1, 1, 3);
  grid->addWidget(new QLabel(QStringLiteral("Column"), panel), 9, 0, Qt::AlignRight);
  AddField(kFirstField + 5, grid, 9, 1, nullptr, BnaPanelField::kColumn);
  grid->setRowStretch(10, 1);
  return panel;
}

QLineEdit* BnaDialogWindow::AddField(int id, QGridLayout* grid, int row, int column,
                                     const char* caption, BnaPanelField field) {
  auto* edit = new QLineEdit(grid->parentWidget());
  Name(edit, id);
  edit->setMaximumWidth(field == BnaPanelField::kSetText ? QWIDGETSIZE_MAX : 60);
  grid->addWidget(edit, row, column);
  if (caption) grid->addWidget(new QLabel(QString::fromLatin1(caption)), row, column + 1);
  connect(edit, &QLineEdit::textEdited, this, [this, field](const QString& text) {
    dialog_.TypePanelField(field, ToWindowsText(text));
  });
  // Leaving the field (or Enter) stores the panel.
  connect(edit, &QLineEdit::editingFinished, this, [this] {
    dialog_.LeavePanelField();
    ShowList();
  });
  fields_[static_cast<size_t>(field)] = edit;
  return edit;
}

QWidget* BnaDialogWindow::Control(int id) const {
  return findChild<QWidget*>(QStringLiteral("bna%1").arg(id));
}

void BnaDialogWindow::ShowState() {
  profile_->setText(FromWindowsText(dialog_.ProfileCaption()));
  {
    const QSignalBlocker block_tabs(tabs_), block_commas(commas_);
    tabs_->setChecked(dialog_.file_type() != kBnaCommaSeparated);
    commas_->setChecked(dialog_.file_type() == kBnaCommaSeparated);
  }
  for (size_t i = 0; i < groups_.size(); ++i) {
    const QSignalBlocker block(groups_[i]);
    groups_[i]->setChecked(dialog_.GroupChecked(kBnaGroupBoxes[i].letter));
  }
  grid_->Refresh();
  ShowList();
  ShowPanel();
}

void BnaDialogWindow::ShowList() {
  const QSignalBlocker block(list_);
  const std::vector<std::string>& lines = dialog_.list_lines();
  if (list_->topLevelItemCount() != static_cast<int>(lines.size())) list_->clear();
  for (size_t i = 0; i < lines.size(); ++i) {
    const std::string& line = lines[i];
    const size_t tab = line.find('\t');
    const QString name = FromWindowsText(std::string_view(line).substr(0, tab));
    const QString method = tab == std::string::npos
                               ? QString()
                               : FromWindowsText(std::string_view(line).substr(tab + 1));
    QTreeWidgetItem* item = list_->topLevelItem(static_cast<int>(i));
    if (!item) item = new QTreeWidgetItem(list_);
    item->setText(0, name);
    item->setText(1, method);
  }
  list_->setCurrentItem(
      dialog_.list_selection() >= 0 ? list_->topLevelItem(dialog_.list_selection()) : nullptr);
}

void BnaDialogWindow::ShowPanel() {
  const BnaPanel& panel = dialog_.panel();
  name_->setText(FromWindowsText(panel.name));
  {
    const QSignalBlocker block(no_copy_);
    no_copy_->setChecked(panel.no_copy);
  }
  // No button checked is a state of its own: the group lets go while it is set.
  methods_->setExclusive(false);
  for (size_t i = 0; i < std::size(kMethodButtons); ++i) {
    QAbstractButton* button = methods_->button(static_cast<int>(i));
    const QSignalBlocker block(button);
    button->setChecked(panel.method == kMethodButtons[i].method);
    button->setEnabled(dialog_.method_buttons_enabled());
  }
  methods_->setExclusive(true);
  for (size_t i = 0; i < fields_.size(); ++i) {
    const QString text = FromWindowsText(panel.Field(static_cast<BnaPanelField>(i)));
    if (fields_[i]->text() != text) {
      const QSignalBlocker block(fields_[i]);
      fields_[i]->setText(text);
    }
  }
}

void BnaDialogWindow::done(int result) {
  if (!closed_) {
    closed_ = true;
    dialog_.Close();
  }
  QDialog::done(result);
}

}  // namespace nv
