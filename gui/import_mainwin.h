// The client window of import mode: one button per importer in columns of three, Close
// and Help at the right, the banner of the calling package's label and the version text.
#pragma once

#include <QColor>
#include <QString>

#include "gui/main_client_window.h"

namespace nv {

struct Banner {
  QString text;
  QColor color;
};

// The banner of a label code: 4, 5 and 6 the neutral label, 2 and 3 a further private
// label, every other code the maker's label in gold.
Banner BannerForLabel(long label_code);

class NVImportMainwin : public MainClientWindow {
  Q_OBJECT

 public:
  static constexpr int kButtonWidth = 160, kRowStep = 35, kColumnStep = 180, kRows = 3;

  NVImportMainwin(long label_code, CommandRunner runner, QWidget* parent = nullptr);

  QString bannerText() const { return banner_.text; }
  QColor bannerColor() const { return banner_.color; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  Banner banner_;
};

}  // namespace nv
