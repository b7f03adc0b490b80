#include "gui/text_file_screen_window.h"

#include <QVBoxLayout>

#include "gui/build_screen.h"

namespace nv {

TextFileScreenWindow::TextFileScreenWindow(TextFileScreen& screen, Ui& ui, QWidget* parent)
    : QDialog(parent), screen_(screen) {
  setWindowTitle(QString::fromLatin1(kTextFileScreenTitle));
  setModal(true);

  auto* canvas = new QWidget(this);
  canvas->setObjectName(QStringLiteral("screen"));
  ScreenOptions options;
  options.ui = &ui;
  controls_ = BuildScreen(screen.table(), canvas, options);
  const QRect used = canvas->childrenRect();
  canvas->setMinimumSize(used.right() + 12, used.bottom() + 8);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(canvas);
  layout->setSizeConstraint(QLayout::SetFixedSize);

  connect(controls_, &ScreenControls::FieldChanged, this, &TextFileScreenWindow::FieldChanged);
  connect(controls_, &ScreenControls::ButtonClicked, this, &TextFileScreenWindow::ButtonClicked);
  controls_->FocusInitial();
}

// A field's check may have changed other fields with it (a company number names the file).
void TextFileScreenWindow::FieldChanged() {
  screen_.Refresh();
  controls_->ShowAll();
}

void TextFileScreenWindow::ButtonClicked(int id) {
  const std::string button = TextFileScreen::ButtonOfControl(id);
  if (button == "browse") {
    screen_.Browse();
    controls_->ShowAll();
  } else if (button == "create") {
    if (!controls_->CommitFocused()) return;
    create_ = screen_.Create();
    controls_->ShowAll();
    if (create_) accept();
  } else if (button == "close") {
    reject();
  }
}

}  // namespace nv
