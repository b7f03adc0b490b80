#include "gui/selection_window.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QStyle>
#include <QVBoxLayout>
#include <algorithm>

#include "gui/build_screen.h"
#include "gui/display_text.h"

namespace nv {
namespace {

constexpr int kScrollerRow = 3;
constexpr int kScrollerLines = 22;

// A canvas of absolutely placed controls, as large as they need.
void FitCanvas(QWidget* canvas) {
  const QRect used = canvas->childrenRect();
  canvas->setMinimumSize(used.right() + 12, used.bottom() + 8);
}

}  // namespace

SelectionWindowDialog::SelectionWindowDialog(SelectionWindow& window, Ui& ui, QWidget* parent)
    : QDialog(parent), window_(window), ui_(ui) {
  setWindowTitle(FromWindowsText(window.title()));
  setModal(true);
  ScreenOptions options;
  options.ui = &ui;

  auto* canvas = new QWidget(this);
  canvas->setObjectName(QStringLiteral("screen"));
  panel_ = BuildScreen(window.panel(), canvas, options);
  const ScreenMetrics metrics = panel_->metrics();

  // The rows scroll under the headings, left of the saved selections.
  scroller_ = new QScrollArea(canvas);
  scroller_->setObjectName(QStringLiteral("Selection Scroller"));
  auto* items = new QWidget;
  items->setObjectName(QStringLiteral("Selection Items"));
  rows_ = BuildScreen(window.rows(), items, options);
  FitCanvas(items);
  items->resize(items->minimumSize());
  scroller_->setWidget(items);
  scroller_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  // As wide as a row with the scroll bar beside it, short of the saved selections.
  const QWidget* side = panel_->Control(SelectionWindow::kSavedListId);
  const int width =
      std::min(items->minimumWidth() + style()->pixelMetric(QStyle::PM_ScrollBarExtent) +
                   2 * scroller_->frameWidth(),
               side->x() - metrics.cw);
  scroller_->setGeometry(0, kScrollerRow * metrics.lh, width, kScrollerLines * metrics.lh);
  scroller_->show();
  FitCanvas(canvas);

  auto* layout = new QVBoxLayout(this);
  layout->addWidget(canvas);
  layout->setSizeConstraint(QLayout::SetFixedSize);

  // A picked value joins what the entry holds, typed or not: the entry keeps the focus
  // while its picker button is pressed, so its text is taken first.
  for (int field = 0; field < kSelectionFieldCount; ++field) {
    const int picker =
        SelectionWindow::RowId(field, SelectionWindow::kEntryPart) + kPickerButtonIdOffset;
    if (auto* button = qobject_cast<QAbstractButton*>(rows_->Control(picker))) {
      connect(button, &QAbstractButton::pressed, rows_,
              [this] { static_cast<void>(rows_->CommitFocused()); });
    }
  }
  connect(rows_, &ScreenControls::FieldChanged, this, &SelectionWindowDialog::RowChanged);
  connect(panel_, &ScreenControls::FieldChanged, this, [this](int) { ShowModel(); });
  connect(panel_, &ScreenControls::ButtonClicked, this, &SelectionWindowDialog::PanelButton);
  ShowModel();
  rows_->FocusInitial();
}

void SelectionWindowDialog::ShowModel() {
  window_.Refresh();
  rows_->ShowAll();
  for (int field = 0; field < kSelectionFieldCount; ++field) {
    const SelectionCriterion& c = window_.selection().criteria[static_cast<size_t>(field)];
    rows_->SetChecked(SelectionWindow::RowId(field, SelectionWindow::kInUsePart), c.in_use);
    rows_->SetChecked(SelectionWindow::RowId(field, SelectionWindow::kExcludePart), c.exclude);
  }
  panel_->ShowAll();
  panel_->SetChoice(SelectionWindow::kScheduleId, window_.ScheduleCaption());
}

void SelectionWindowDialog::RowChanged(int id) {
  const std::optional<std::pair<int, int>> row = SelectionWindow::RowOfId(id);
  if (!row) return;
  const auto [field, part] = *row;
  if (part == SelectionWindow::kInUsePart) window_.SetInUse(field, rows_->Checked(id));
  if (part == SelectionWindow::kExcludePart) window_.SetExclude(field, rows_->Checked(id));
  // The entry's check has taken the text already; show it as the model keeps it.
  ShowModel();
}

void SelectionWindowDialog::PanelButton(int id) {
  switch (id) {
    case SelectionWindow::kSaveCurrentId:
      SaveCurrent();
      break;
    case SelectionWindow::kDeleteId:
      DeleteChosen();
      break;
    case SelectionWindow::kScanId:
      ScanBarcodes();
      break;
    case SelectionWindow::kOkId:
      Ok();
      break;
    case SelectionWindow::kCancelId:
      reject();
      break;
    case SelectionWindow::kHelpId:
      window_.Help();
      break;
    default:
      break;
  }
}

void SelectionWindowDialog::SaveCurrent() {
  if (!rows_->CommitFocused()) return;
  SaveSelectionDialog dialog(window_, ui_, this);
  dialog.exec();
  ShowModel();
}

void SelectionWindowDialog::DeleteChosen() {
  const std::string chosen = panel_->Text(SelectionWindow::kSavedListId);
  if (std::optional<size_t> index = window_.SavedIndexOfCaption(chosen)) {
    static_cast<void>(window_.Delete(*index));
  }
  ShowModel();
}

void SelectionWindowDialog::ScanBarcodes() {
  QDialog box(this);
  box.setWindowTitle(QStringLiteral("Scan Barcodes"));
  auto* layout = new QVBoxLayout(&box);
  layout->addWidget(new QLabel(QStringLiteral("Scan the asset numbers:"), &box));
  auto* codes = new QPlainTextEdit(&box);
  codes->setObjectName(QStringLiteral("codes"));
  layout->addWidget(codes);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &box);
  QPushButton* clear = buttons->addButton(QStringLiteral("Clear"), QDialogButtonBox::ResetRole);
  // A scanner ends each code with Enter: that must not end the box.
  for (QAbstractButton* button : buttons->buttons()) {
    if (auto* push = qobject_cast<QPushButton*>(button)) push->setAutoDefault(false);
  }
  connect(clear, &QPushButton::clicked, codes, &QPlainTextEdit::clear);
  connect(buttons, &QDialogButtonBox::accepted, &box, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, &box, &QDialog::reject);
  layout->addWidget(buttons);
  codes->setFocus();
  if (box.exec() != QDialog::Accepted) return;
  window_.Scan(ToWindowsText(codes->toPlainText()));
  ShowModel();
}

void SelectionWindowDialog::Ok() {
  if (!rows_->CommitFocused()) return;
  if (window_.Ok()) {
    ok_ = true;
    accept();
    return;
  }
  ShowModel();
  if (std::optional<int> field = window_.refused_field()) {
    QWidget* entry = rows_->Control(SelectionWindow::RowId(*field, SelectionWindow::kEntryPart));
    if (entry) {
      scroller_->ensureWidgetVisible(entry);
      entry->setFocus();
    }
  }
}

SaveSelectionDialog::SaveSelectionDialog(SelectionWindow& window, Ui& ui, QWidget* parent)
    : QDialog(parent),
      window_(window),
      table_(SelectionWindow::SaveDialogTable(window.SaveRequest())) {
  setWindowTitle(QString::fromLatin1(kSaveSelectionTitle));
  setModal(true);
  auto* canvas = new QWidget(this);
  ScreenOptions options;
  options.ui = &ui;
  controls_ = BuildScreen(table_, canvas, options);
  controls_->SetChoice(SelectionWindow::kDescriptionId, window.SaveRequest().name);
  FitCanvas(canvas);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(canvas);
  layout->setSizeConstraint(QLayout::SetFixedSize);
  connect(controls_, &ScreenControls::ButtonClicked, this, &SaveSelectionDialog::ButtonClicked);
  if (QWidget* name = controls_->Control(SelectionWindow::kDescriptionId)) name->setFocus();
}

void SaveSelectionDialog::ButtonClicked(int id) {
  if (id == SelectionWindow::kSaveButtonId) {
    const std::string name = controls_->Text(SelectionWindow::kDescriptionId);
    const bool all = controls_->Text(SelectionWindow::kSaveForId) == "All Companies";
    if (window_.Save(name, all)) accept();
  } else if (id == SelectionWindow::kSaveCancelId) {
    reject();
  } else if (id == SelectionWindow::kSaveHelpId) {
    window_.Help();
  }
}

}  // namespace nv
