// The application of nvimport: it chooses the main window by the mode word, puts it in
// its frame, loads the installation for it and owns all of it until the program ends.
// The QApplication itself is made by the caller first (main or a test).
#pragma once

#include <QMainWindow>
#include <QString>
#include <memory>
#include <optional>
#include <string>

#include "base/installation_context.h"
#include "gui/main_client_window.h"
#include "gui/qt_ui.h"
#include "shell/hand_off.h"

namespace nv {

inline constexpr char kApplicationName[] = "IMPORT";
inline constexpr char kImportCaption[] = "KEL Fixed Assets -- Import";
inline constexpr char kExportCaption[] = "Export Fixed Assets";

class TImportApp {
 public:
  static constexpr QSize kImportFrameSize{650, 130};
  static constexpr QSize kExportFrameSize{300, 200};

  TImportApp(RunParameters run, std::string installation_folder);
  ~TImportApp();
  TImportApp(const TImportApp&) = delete;
  TImportApp& operator=(const TImportApp&) = delete;

  // Creates the frame and client window of `mode`, centred on the screen and not yet
  // shown; false (and no window) for kNone.
  bool SetupMainWindow(ProgramMode mode);

  // The start-up loading, its messages owned by the frame. On failure returns false and
  // sets *exit_code.
  bool LoadInstallation(int* exit_code);

  // For tests that bring their own installation.
  void set_context(InstallationContext context) { context_ = std::move(context); }

  QMainWindow* frame() const { return frame_.get(); }
  MainClientWindow* client() const { return client_; }
  QtUi& ui() { return ui_; }

  // Left and top of a frame of `size` centred on a screen of `screen` (rounded toward zero).
  static QPoint CentredOrigin(QSize screen, QSize size);

 private:
  CommandEffects Run(ProgramMode mode, int id, const std::function<void()>& disable);

  RunParameters run_;
  std::string installation_folder_;
  std::optional<InstallationContext> context_;
  QtUi ui_;
  std::unique_ptr<QMainWindow> frame_;
  MainClientWindow* client_ = nullptr;
};

}  // namespace nv
