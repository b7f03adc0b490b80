#include "gui/company_screen_window.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

#include "gui/build_screen.h"
#include "gui/code_list_window.h"
#include "gui/display_text.h"
#include "gui/permissions_window.h"

namespace nv {

namespace {

QPushButton* MakeButton(const QString& text, QWidget* parent) {
  auto* button = new QPushButton(text, parent);
  button->setAutoDefault(false);
  return button;
}

// A widget that holds the screen's controls at their own places, as large as they need.
QWidget* MakeCanvas(QWidget* parent) {
  auto* canvas = new QWidget(parent);
  canvas->setObjectName(QStringLiteral("screen"));
  return canvas;
}

void FitCanvas(QWidget* canvas) {
  const QRect used = canvas->childrenRect();
  canvas->setMinimumSize(used.right() + 12, used.bottom() + 8);
}

ScreenOptions OptionsFor(Ui& ui) {
  ScreenOptions options;
  options.ui = &ui;
  return options;
}

}  // namespace

// ---- The editors' windows ---------------------------------------------------------------

void QtCompanyScreenWindows::RunCodeList(CodeListEditor& editor) {
  CodeListWindow window(editor, parent_);
  window.exec();
}

bool QtCompanyScreenWindows::RunUserFields(UserFieldsScreen& screen) {
  UserFieldsWindow window(screen, ui_, parent_);
  return window.exec() == QDialog::Accepted;
}

void QtCompanyScreenWindows::RunPermissions(PermissionsDialogModel& model) {
  QtPermissionsDialogRunner(ui_, parent_)(model);
}

// ---- The company screen -----------------------------------------------------------------

CompanyScreenWindow::CompanyScreenWindow(CompanyScreen& screen, Ui& ui, QWidget* parent)
    : QDialog(parent), screen_(screen), ui_(ui), windows_(ui, this) {
  setWindowTitle(QString::fromLatin1(kCompanyScreenTitle));
  setModal(true);

  QWidget* canvas = MakeCanvas(this);
  controls_ = BuildScreen(screen.table(), canvas, OptionsFor(ui));
  FitCanvas(canvas);

  save_ = MakeButton(QStringLiteral("&Save"), this);
  save_->setDefault(true);
  cancel_ = MakeButton(QStringLiteral("Cancel"), this);
  auto* buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(save_);
  buttons->addWidget(cancel_);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(canvas);
  layout->addLayout(buttons);
  layout->setSizeConstraint(QLayout::SetFixedSize);

  connect(controls_, &ScreenControls::FieldChanged, this, &CompanyScreenWindow::FieldChanged);
  connect(controls_, &ScreenControls::ButtonClicked, this, &CompanyScreenWindow::ButtonClicked);
  connect(save_, &QPushButton::clicked, this, &CompanyScreenWindow::SaveClicked);
  connect(cancel_, &QPushButton::clicked, this, &CompanyScreenWindow::reject);
  controls_->FocusInitial();
}

// A control writes what was typed into its field; the rule may have taken it otherwise
// (upper case, letters arranged) and changed other fields with it (a year end filled).
void CompanyScreenWindow::FieldChanged() {
  screen_.Refresh();
  controls_->ShowAll();
}

void CompanyScreenWindow::ButtonClicked(int id) {
  const std::string button = CompanyScreen::ButtonOfControl(id);
  if (button.empty()) return;
  static_cast<void>(screen_.Press(button, windows_));
  controls_->ShowAll();
}

void CompanyScreenWindow::SaveClicked() {
  if (!controls_->CommitFocused()) return;
  action_ = screen_.Save();
  controls_->ShowAll();
  if (action_ == kCompanyScreenStays) return;
  QDialog::accept();
}

void CompanyScreenWindow::reject() {
  action_ = screen_.Cancel();
  QDialog::reject();
}

// ---- The user-fields screen -------------------------------------------------------------

UserFieldsWindow::UserFieldsWindow(UserFieldsScreen& screen, Ui& ui, QWidget* parent)
    : QDialog(parent), screen_(screen) {
  setWindowTitle(QString::fromLatin1(kUserFieldsTitle));
  setModal(true);

  QWidget* canvas = MakeCanvas(this);
  controls_ = BuildScreen(screen.table(), canvas, OptionsFor(ui));
  FitCanvas(canvas);

  ok_ = MakeButton(QStringLiteral("OK"), this);
  ok_->setDefault(true);
  auto* cancel = MakeButton(QStringLiteral("Cancel"), this);
  auto* help = MakeButton(QStringLiteral("&Help"), this);
  auto* buttons = new QHBoxLayout;
  buttons->addWidget(help);
  buttons->addStretch();
  buttons->addWidget(ok_);
  buttons->addWidget(cancel);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(canvas);
  layout->addLayout(buttons);
  layout->setSizeConstraint(QLayout::SetFixedSize);

  connect(controls_, &ScreenControls::ButtonClicked, this,
          [this](int id) { screen_.PressValues(id - UserFieldsScreen::kValuesId); });
  connect(ok_, &QPushButton::clicked, this, &UserFieldsWindow::OkClicked);
  connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
  connect(help, &QPushButton::clicked, this, [&ui] { ui.ShowHelp(kUserFieldsHelpTopic); });
  controls_->FocusInitial();
}

void UserFieldsWindow::OkClicked() {
  if (controls_->CommitFocused()) accept();
}

}  // namespace nv
