#include "gui/qt_ui.h"

#include <QDialogButtonBox>
#include <QFileDialog>
#include <QGuiApplication>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QStyle>
#include <QVBoxLayout>

#include "gui/bna_dialog_window.h"
#include "gui/choice_list_dialog.h"
#include "gui/company_screen_window.h"
#include "gui/display_text.h"
#include "gui/export_definition_dialog.h"
#include "gui/export_definitions_window.h"
#include "gui/file_filters.h"
#include "gui/help_viewer.h"
#include "gui/match_panel_widget.h"
#include "gui/progress_window.h"
#include "gui/selection_window.h"
#include "gui/text_entry_dialog.h"
#include "gui/text_file_screen_window.h"

namespace nv {

namespace {

QString Cut(std::string_view text, size_t limit) {
  return FromWindowsText(text.substr(0, std::min(text.size(), limit)));
}

}  // namespace

QtUi::QtUi(std::string installation_folder, QWidget* owner)
    : installation_folder_(std::move(installation_folder)), owner_(owner) {}

QtUi::~QtUi() {
  // A viewer opened before there was a main window belongs to nobody else.
  if (help_viewer_ && !help_viewer_->parent()) delete help_viewer_.data();
}

void QtUi::Message(std::string_view text, std::string_view title) {
  QMessageBox box(owner_);
  box.setWindowTitle(FromWindowsText(title));
  box.setTextFormat(Qt::PlainText);
  box.setText(Cut(text, kMaxMessageLength));
  box.setIcon(title == "Error" || title == "Program Error" ? QMessageBox::Critical
              : title == "Warning"                         ? QMessageBox::Warning
                                                           : QMessageBox::Information);
  box.setStandardButtons(QMessageBox::Ok);
  box.exec();
}

void QtUi::MessageWithDetails(std::string_view text, std::string_view title,
                              std::string_view details) {
  QMessageBox box(owner_);
  box.setWindowTitle(FromWindowsText(title));
  box.setTextFormat(Qt::PlainText);
  box.setText(Cut(text, kMaxMessageLength));
  box.setIcon(QMessageBox::Information);
  QPushButton* ok = box.addButton(QMessageBox::Ok);
  QPushButton* more = box.addButton(QStringLiteral("Details\u2026"), QMessageBox::ActionRole);
  box.setDefaultButton(ok);
  box.setEscapeButton(ok);
  // The box stays until OK: the details open over it as often as asked for.
  while (box.exec(), box.clickedButton() == more) ShowNote(title, details);
}

Answer QtUi::Question(std::string_view text, DefaultButton default_button) {
  QMessageBox box(owner_);
  box.setWindowTitle(QStringLiteral("Question"));
  box.setTextFormat(Qt::PlainText);
  box.setText(Cut(text, kMaxQuestionLength));
  box.setIcon(QMessageBox::Question);
  QPushButton* yes = box.addButton(QStringLiteral("&Yes"), QMessageBox::YesRole);
  QPushButton* no = box.addButton(QStringLiteral("&No"), QMessageBox::NoRole);
  QPushButton* cancel = box.addButton(QStringLiteral("Cancel"), QMessageBox::RejectRole);
  box.setDefaultButton(default_button == DefaultButton::kYes ? yes : no);
  // Escape and the window's close button both count as Cancel.
  box.setEscapeButton(cancel);
  box.exec();
  if (box.clickedButton() == yes) return Answer::kYes;
  if (box.clickedButton() == no) return Answer::kNo;
  return Answer::kCancel;
}

int QtUi::ChoiceList(const ChoiceListRequest& request) {
  ChoiceListDialog dialog(request, owner_);
  dialog.exec();
  return dialog.Result();
}

std::optional<std::string> QtUi::ChooseFile(const FileDialogRequest& request) {
  QFileDialog dialog(owner_, FromWindowsText(request.title));
  dialog.setAcceptMode(request.save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
  dialog.setFileMode(request.save || !request.must_exist ? QFileDialog::AnyFile
                                                         : QFileDialog::ExistingFile);
  if (!request.default_extension.empty()) {
    dialog.setDefaultSuffix(FromWindowsText(request.default_extension));
  }
  dialog.setNameFilters(NameFiltersFromPattern(request.filter));
  if (!request.initial_directory.empty())
    dialog.setDirectory(FromWindowsText(request.initial_directory));
  if (!request.initial_name.empty()) dialog.selectFile(FromWindowsText(request.initial_name));
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return std::nullopt;
  return ToWindowsText(QDir::toNativeSeparators(dialog.selectedFiles().first()));
}

std::optional<std::string> QtUi::ChooseFolder(std::string_view title,
                                              std::string_view initial_folder) {
  const QString folder = QFileDialog::getExistingDirectory(owner_, FromWindowsText(title),
                                                           FromWindowsText(initial_folder));
  if (folder.isEmpty()) return std::nullopt;
  return ToWindowsText(QDir::toNativeSeparators(folder));
}

std::optional<std::string> QtUi::EnterText(const TextEntryRequest& request) {
  TextEntryDialog dialog(request, owner_);
  if (dialog.exec() != QDialog::Accepted) return std::nullopt;
  return dialog.text();
}

void QtUi::ShowNote(std::string_view title, std::string_view text) {
  QDialog dialog(owner_);
  dialog.setWindowTitle(FromWindowsText(title));
  auto* layout = new QVBoxLayout(&dialog);
  auto* view = new QPlainTextEdit(FromWindowsText(text), &dialog);
  view->setReadOnly(true);
  view->setLineWrapMode(QPlainTextEdit::NoWrap);
  layout->addWidget(view);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok, &dialog);
  QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
  layout->addWidget(buttons);
  dialog.resize(560, 400);
  dialog.exec();
}

int QtUi::RunMatchPanel(MatchPanel& panel) {
  panel.BeginRun();
  QDialog dialog(owner_);
  dialog.setWindowTitle(FromWindowsText(panel.caption()));
  QScreen* screen = owner_ ? owner_->screen() : QGuiApplication::primaryScreen();
  if (screen) {
    const QRect area = screen->geometry();
    panel.SetScreen(
        {area.width(), area.height(), dialog.style()->pixelMetric(QStyle::PM_TitleBarHeight)});
  }
  auto* widget = new MatchPanelWidget(panel, &dialog);
  QObject::connect(widget->okButton(), &QPushButton::clicked, &dialog, &QDialog::accept);
  QObject::connect(widget->cancelButton(), &QPushButton::clicked, &dialog, &QDialog::reject);
  dialog.setFixedSize(widget->size());
  if (screen) dialog.move(screen->geometry().topLeft() + QPoint(panel.frame().x, panel.frame().y));
  // Escape and the window's close button count as Cancel.
  return dialog.exec() == QDialog::Accepted ? kMatchPanelOk : kMatchPanelCancel;
}

std::unique_ptr<ProgressMeter> QtUi::OpenProgress(std::string_view title, std::string_view text,
                                                  long total) {
  return std::make_unique<ProgressWindow>(title, text, total, owner_);
}

void QtUi::ShowHelp(std::string_view topic) {
  const std::optional<QString> path = FindHelpTopic(installation_folder_, topic);
  if (!path) {
    Message("Help topic \"" + std::string(topic) + "\" was not found in the help folder.", "Error");
    return;
  }
  // One viewer window; a second topic replaces the first.
  if (!help_viewer_) help_viewer_ = new HelpViewer(owner_);
  help_viewer_->ShowTopic(*path);
}

int QtUi::RunCompanyScreen(CompanyScreen& screen) {
  CompanyScreenWindow window(screen, *this, owner_);
  window.exec();
  return window.action();
}

bool QtUi::RunTextFileScreen(TextFileScreen& screen) {
  TextFileScreenWindow window(screen, *this, owner_);
  window.exec();
  return window.create();
}

bool QtUi::RunSelectionWindow(SelectionWindow& window) {
  SelectionWindowDialog dialog(window, *this, owner_);
  dialog.exec();
  return dialog.ok();
}

void QtUi::RunBnaDialog(BnaDialogCommands& dialog) {
  BnaDialogWindow window(dialog.dialog(), owner_);
  window.exec();
}

bool QtUi::RunWindow(ScriptedWindow& window) {
  if (auto* model = dynamic_cast<ExportWindow*>(&window)) {
    ExportDefinitionsWindow view(*model, owner_);
    view.exec();
    return view.exported();
  }
  if (auto* picker = dynamic_cast<ExportDefinitionPicker*>(&window)) {
    ExportDefinitionDialog view(*picker, owner_);
    return view.exec() == QDialog::Accepted;
  }
  Message("No window is built for \"" + window.ScriptName() + "\".", "Program Error");
  return false;
}

bool QtUi::AltKeyHeld() {
  return (QGuiApplication::queryKeyboardModifiers() & Qt::AltModifier) != 0;
}

}  // namespace nv
