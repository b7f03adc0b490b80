// nvimport: started by the main fixed-assets program with "/pid:<token>" and a mode word,
// and its ten parameter lines on standard input. With NV_UI_SCRIPT set the whole run is
// answered from that script instead of a person, without any window.
#include <unistd.h>
#include <QApplication>
#include <QMessageBox>
#include <cstdlib>

#include "gui/import_app.h"
#include "shell/hand_off.h"
#include "shell/program.h"

int main(int argc, char** argv) {
  if (const char* script = std::getenv("NV_UI_SCRIPT")) {
    const char* transcript = std::getenv("NV_UI_TRANSCRIPT");
    return nv::RunScriptedProgram(argc, argv, STDIN_FILENO, script, transcript ? transcript : "",
                                  nv::InstallationFolder());
  }

  QApplication app(argc, argv);
  QApplication::setApplicationName(QString::fromLatin1(nv::kApplicationName));

  const std::optional<nv::RunParameters> run = nv::CheckHandOff(argc, argv, STDIN_FILENO);
  if (!run) {
    QMessageBox box(QMessageBox::Critical, QStringLiteral("Error"),
                    QString::fromLatin1(nv::kStandaloneMessage), QMessageBox::Ok);
    box.exec();
    return 0;
  }

  nv::TImportApp import_app(*run, nv::InstallationFolder());
  if (!import_app.SetupMainWindow(nv::ParseModeWord(argc, argv))) return 0;
  int exit_code = 0;
  if (!import_app.LoadInstallation(&exit_code)) return exit_code;
  import_app.frame()->show();
  return app.exec();
}
