// The client window of export mode: the two exports one above the other, Close and Help
// at the right, and the version text. It serves one export.
#pragma once

#include "gui/main_client_window.h"

namespace nv {

class NVExportMainwin : public MainClientWindow {
  Q_OBJECT

 public:
  static constexpr int kButtonX = 50, kFirstButtonY = 100, kButtonWidth = 200, kRowStep = 35;

  explicit NVExportMainwin(CommandRunner runner, QWidget* parent = nullptr);

 protected:
  void DisableExportButtons() override;
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace nv
