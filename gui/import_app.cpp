#include "gui/import_app.h"

#include <QGuiApplication>
#include <QScreen>

#include "gui/export_mainwin.h"
#include "gui/import_mainwin.h"
#include "shell/startup.h"

namespace nv {

TImportApp::TImportApp(RunParameters run, std::string installation_folder)
    : run_(std::move(run)),
      installation_folder_(std::move(installation_folder)),
      ui_(installation_folder_) {}

TImportApp::~TImportApp() = default;

QPoint TImportApp::CentredOrigin(QSize screen, QSize size) {
  return QPoint((screen.width() - size.width()) / 2, (screen.height() - size.height()) / 2);
}

bool TImportApp::SetupMainWindow(ProgramMode mode) {
  if (mode == ProgramMode::kNone) return false;
  const bool import = mode == ProgramMode::kImport;
  frame_ = std::make_unique<QMainWindow>();
  frame_->setWindowTitle(QString::fromLatin1(import ? kImportCaption : kExportCaption));
  CommandRunner runner = [this, mode](int id, const std::function<void()>& disable) {
    return Run(mode, id, disable);
  };
  if (import) {
    client_ = new NVImportMainwin(run_.label_code, std::move(runner), frame_.get());
  } else {
    client_ = new NVExportMainwin(std::move(runner), frame_.get());
  }
  frame_->setCentralWidget(client_);
  const QSize size = import ? kImportFrameSize : kExportFrameSize;
  frame_->setFixedSize(size);
  if (QScreen* screen = QGuiApplication::primaryScreen())
    frame_->move(CentredOrigin(screen->geometry().size(), size));
  ui_.set_owner(frame_.get());
  return true;
}

bool TImportApp::LoadInstallation(int* exit_code) {
  context_ = LoadStartup(run_, installation_folder_, ui_, exit_code);
  return context_.has_value();
}

CommandEffects TImportApp::Run(ProgramMode mode, int id, const std::function<void()>& disable) {
  // Commands cannot arrive before the installation is loaded: the frame is shown after.
  if (!context_) return {};
  if (mode == ProgramMode::kImport) {
    const auto* window = qobject_cast<const NVImportMainwin*>(client_);
    return RunImportCommand(id, *context_, ui_, window ? window->state() : ImportWindowState{});
  }
  return RunExportCommand(id, *context_, ui_, disable);
}

}  // namespace nv
