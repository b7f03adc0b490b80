#include "gui/permissions_window.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include "gui/display_text.h"

namespace nv {

namespace {

QPushButton* MakeButton(const QString& text, int id, QWidget* parent) {
  auto* button = new QPushButton(text, parent);
  button->setObjectName(QStringLiteral("button%1").arg(id));
  button->setAutoDefault(false);
  return button;
}

}  // namespace

PermissionsWindow::PermissionsWindow(PermissionsDialogModel& model, Ui& ui, QWidget* parent)
    : QDialog(parent), model_(model), ui_(ui) {
  setWindowTitle(QString::fromLatin1(kPermissionsDialogTitle));
  setModal(true);

  names_ = new QComboBox(this);
  names_->setEditable(true);
  // Typed names become entries through Add only.
  names_->setInsertPolicy(QComboBox::NoInsert);
  names_->setCompleter(nullptr);
  names_->setMinimumContentsLength(24);

  auto* level_box = new QGroupBox(QStringLiteral("Permission"), this);
  auto* level_layout = new QVBoxLayout(level_box);
  levels_ = new QButtonGroup(this);
  const std::pair<int, const char*> radios[] = {{kRadioNoAccess, "&No Access"},
                                                {kRadioReadOnly, "Read &Only"},
                                                {kRadioReadWrite, "Read/&Write"},
                                                {kRadioFullAccess, "&Full Access"}};
  for (const auto& [id, text] : radios) {
    auto* button = new QRadioButton(QString::fromLatin1(text), level_box);
    button->setObjectName(QStringLiteral("radio%1").arg(id));
    levels_->addButton(button, id);
    level_layout->addWidget(button);
  }

  add_ = MakeButton(QStringLiteral("&Add"), kPermissionsAddButton, this);
  remove_ = MakeButton(QStringLiteral("&Remove"), kPermissionsRemoveButton, this);
  help_ = MakeButton(QStringLiteral("&Help"), kPermissionsHelpButton, this);
  close_ = MakeButton(QStringLiteral("Close"), 1, this);
  close_->setDefault(true);

  auto* layout = new QGridLayout(this);
  layout->addWidget(new QLabel(QStringLiteral("User:"), this), 0, 0);
  layout->addWidget(names_, 1, 0);
  layout->addWidget(level_box, 2, 0);
  auto* buttons = new QVBoxLayout;
  for (QPushButton* button : {add_, remove_, help_, close_}) buttons->addWidget(button);
  buttons->addStretch();
  layout->addLayout(buttons, 0, 1, 3, 1);

  connect(names_->lineEdit(), &QLineEdit::textEdited, this, &PermissionsWindow::Typed);
  connect(names_, &QComboBox::activated, this, &PermissionsWindow::Chosen);
  connect(levels_, &QButtonGroup::idClicked, this, [this](int id) {
    model_.ClickRadio(id);
    ShowState();
  });
  connect(add_, &QPushButton::clicked, this, &PermissionsWindow::AddClicked);
  connect(remove_, &QPushButton::clicked, this, &PermissionsWindow::RemoveClicked);
  connect(help_, &QPushButton::clicked, this, [this] { model_.Help(ui_); });
  connect(close_, &QPushButton::clicked, this, &QDialog::accept);

  FillList();
}

QRadioButton* PermissionsWindow::radio(int id) const {
  return qobject_cast<QRadioButton*>(levels_->button(id));
}

void PermissionsWindow::Typed(const QString& text) {
  model_.SetEditText(ToWindowsText(text));
  ShowState();
}

void PermissionsWindow::Chosen(int index) {
  model_.Select(index);
  ShowState();
}

void PermissionsWindow::AddClicked() {
  if (model_.Add()) FillList();
}

void PermissionsWindow::RemoveClicked() {
  if (model_.Remove(ui_)) FillList();
}

void PermissionsWindow::FillList() {
  {
    const QSignalBlocker blocker(names_);
    names_->clear();
    for (const std::string& text : model_.ListTexts()) names_->addItem(FromWindowsText(text));
    names_->setCurrentIndex(model_.selection());
    names_->setEditText(FromWindowsText(model_.edit_text()));
  }
  ShowState();
}

void PermissionsWindow::ShowState() {
  const int checked = model_.CheckedRadio();
  // With nothing selected no button is checked, which an exclusive group does not allow.
  levels_->setExclusive(false);
  for (QAbstractButton* button : levels_->buttons()) {
    button->setChecked(levels_->id(button) == checked);
    button->setEnabled(checked != 0);
  }
  levels_->setExclusive(true);
  add_->setEnabled(model_.add_enabled());
  remove_->setEnabled(model_.remove_enabled());
}

PermissionsDialogRunner QtPermissionsDialogRunner(Ui& ui, QWidget* parent) {
  return [&ui, parent](PermissionsDialogModel& model) {
    PermissionsWindow window(model, ui, parent);
    window.exec();
  };
}

}  // namespace nv
