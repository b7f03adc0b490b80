// The client window of import mode: one button per importer in columns of three, Close
// and Help at the right, the banner of the calling package's label and the version text.
//
// The banner's own size (50-pixel Times New Roman Bold) does not fit the window the
// program is given: the buttons fill all but the bottom 25 pixels. So the banner stands in
// the band under the buttons, left of the version text, in the largest size up to 50
// pixels whose letters fit that band whole.
#pragma once

#include <QColor>
#include <QString>

class QCheckBox;

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

  // Under the last importer's button: the "Test import" check box (off at first), then
  // the button that undoes a company's last import.
  static constexpr int kOptionsColumn = 2;

  QCheckBox* testImportBox() const { return test_import_; }
  QPushButton* undoButton() const { return undo_; }
  // What the commands must know of the window: whether imports are test imports.
  ImportWindowState state() const;

  QString bannerText() const { return banner_.text; }
  QColor bannerColor() const { return banner_.color; }

  // The band under the buttons and left of the version text that the banner fits into.
  QRect BannerBand() const;
  // The banner's font, scaled down from 50 pixels until the letters fit the band.
  QFont BannerFont() const;
  // Where the banner's letters stand: at the band's bottom left.
  QRect BannerRect() const;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  // The baseline origin that puts the letters' box at the band's bottom left.
  QPoint BannerOrigin() const;

  Banner banner_;
  QCheckBox* test_import_ = nullptr;
  QPushButton* undo_ = nullptr;
};

}  // namespace nv
