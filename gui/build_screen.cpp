#include "gui/build_screen.h"

#include <QApplication>
#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QFileInfo>
#include <QFocusEvent>
#include <QFontMetrics>
#include <QFrame>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPainter>
#include <QPixmap>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <algorithm>
#include <cassert>

#include "base/ascii.h"
#include "base/cp1252.h"
#include "base/file_util.h"
#include "gui/display_text.h"
#include "ui/screen/attributes.h"
#include "ui/screen/edit_field.h"
#include "ui/screen/field_table.h"
#include "ui/screen/groups.h"
#include "ui/screen/list_controls.h"
#include "ui/screen/navigation.h"

namespace nv {

struct ScreenControls::Entry {
  QPointer<QWidget> widget;
  QPointer<QCheckBox> skip_check;
  QPointer<QPushButton> picker_button;
  // Groups: the members' buttons in member order; radio groups also hold them exclusive.
  std::vector<QPointer<QAbstractButton>> members;
  QPointer<QButtonGroup> radio;
  std::unique_ptr<CheckBoxGroup> ticks;
  // Edit fields: the text last shown or written (a change is a difference from it), the
  // text before the user's latest edit (for the input filter), and the data that last
  // passed the check (what a ckkillfocus field goes back to).
  std::string shown;
  QString typed;
  std::string accepted;
  std::optional<InputFilter> filter;
  std::optional<size_t> limit;
  // Combo and list boxes: the chosen text.
  std::string choice;
};

namespace {

// A button that draws its picture file stretched over its face, the caption on top: the
// gdiplus(...) buttons, whose pictures are button faces without text.
class PictureButton : public QPushButton {
 public:
  PictureButton(const QPixmap& picture, QWidget* parent) : QPushButton(parent), picture_(picture) {}

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.drawPixmap(rect(), picture_);
    if (isDown()) painter.fillRect(rect(), QColor(0, 0, 0, 40));
    painter.setPen(isEnabled() ? palette().color(QPalette::ButtonText)
                               : palette().color(QPalette::Disabled, QPalette::ButtonText));
    painter.drawText(rect(), Qt::AlignCenter | Qt::TextShowMnemonic, text());
    if (hasFocus()) painter.drawRect(rect().adjusted(2, 2, -3, -3));
  }

 private:
  QPixmap picture_;
};

QRect ToQRect(const ScreenRect& rect) {
  return QRect(rect.x, rect.y, rect.width, rect.height);
}

bool IsMultiline(const FieldDescription& field) {
  return HasAttribute("multiline", field.attributes);
}

// Multiline fields keep CR LF between lines; the control shows LF.
QString ToControlLines(const std::string& text) {
  QString shown = FromWindowsText(text);
  shown.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
  return shown;
}

std::string FromControlLines(const QString& text) {
  QString lines = text;
  lines.replace(QStringLiteral("\n"), QStringLiteral("\r\n"));
  return ToWindowsText(lines);
}

// The path of a gdiplus(...) picture that exists, or "" when it does not. Installation
// paths are written with either separator and in any case; each part is looked up
// ignoring case.
QString PicturePath(const std::string& folder, const std::string& path) {
  std::string relative = path;
  std::replace(relative.begin(), relative.end(), '\\', '/');
  std::string current = relative.starts_with('/') ? "/" : folder.empty() ? "." : folder;
  size_t start = 0;
  while (start < relative.size()) {
    size_t end = std::min(relative.find('/', start), relative.size());
    std::string part = relative.substr(start, end - start);
    start = end + 1;
    if (part.empty() || part == ".") continue;
    std::optional<std::string> found = FindFileIgnoringCase(current, part);
    if (!found) return QString();
    current = *found;
  }
  QFileInfo info(QString::fromStdString(current));
  return relative.empty() || !info.isFile() ? QString() : info.filePath();
}

}  // namespace

ScreenFonts ScreenFonts::Default() {
  ScreenFonts fonts;
  fonts.regular = QApplication::font();
  fonts.second = fonts.regular;
  fonts.second.setBold(true);
  return fonts;
}

ScreenMetrics MetricsOf(const QFont& font) {
  QFontMetrics metrics(font);
  // The font's own average width counts the narrow punctuation too, and fields sized by
  // it cut off their digits; the letters' average, rounded up, holds them.
  static const QString kLetters =
      QStringLiteral("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz");
  int letters = metrics.horizontalAdvance(kLetters);
  int cw = static_cast<int>((letters + kLetters.size() - 1) / kLetters.size());
  return ScreenMetrics{std::max(cw, 1), metrics.height() + 6};
}

ScreenControls* BuildScreen(FieldTable& table, QWidget* parent, ScreenOptions options) {
  assert(options.ui);
  auto* controls = new ScreenControls(table, parent, std::move(options));
  controls->Build();
  return controls;
}

ScreenControls::ScreenControls(FieldTable& table, QWidget* parent, ScreenOptions options)
    : QObject(parent),
      table_(table),
      parent_(parent),
      options_(std::move(options)),
      metrics_(MetricsOf(options_.fonts.regular)) {}

ScreenControls::~ScreenControls() = default;

void ScreenControls::Build() {
  entries_.resize(FieldCount(table_));
  for (std::unique_ptr<Entry>& entry : entries_) entry = std::make_unique<Entry>();
  for (size_t i = 0; i < entries_.size(); ++i) MakeControl(i);
  for (size_t i = 0; i < entries_.size(); ++i) {
    if (table_[i].flags & kFieldDisabledAfterCreation) SetFieldEnabled(table_[i].id, false);
  }
  ShowAll();
  FocusInitial();
}

void ScreenControls::MakeControl(size_t index) {
  const FieldDescription& field = table_[index];
  QWidget* widget = nullptr;
  switch (field.kind) {
    case kFieldEdit:
      widget = MakeEdit(index);
      break;
    case kFieldButton:
      widget = MakeButton(index);
      break;
    case kFieldGroup:
      widget = MakeGroup(index);
      break;
    case kFieldItem:
      widget = MakeItem(index);
      break;
    case kFieldStatic:
      widget = MakeStatic(index);
      break;
    case kFieldCombo:
      widget = MakeCombo(index);
      break;
    case kFieldList:
      widget = MakeList(index);
      break;
    case kFieldCustom:
      widget = MakeCustom(index);
      break;
    case kFieldPanel: {
      // A panel is an empty sunken frame for the screen's owner to fill.
      auto* frame = new QFrame(parent_);
      frame->setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
      widget = frame;
      break;
    }
    default:
      return;  // a kind the language does not know makes no control
  }
  if (!widget) return;
  Entry& entry = *entries_[index];
  entry.widget = widget;
  widget->setObjectName(QStringLiteral("field%1").arg(field.id));
  if (field.flags & 16) {
    widget->setFont(options_.fonts.second);
  } else if (field.flags & 8) {
    widget->setFont(options_.fonts.regular);
  }
  widget->setGeometry(ToQRect(FieldRect(table_, index, metrics_)));
  widget->installEventFilter(this);
  for (QWidget* child : widget->findChildren<QWidget*>()) child->installEventFilter(this);
  if (field.flags & kFieldStartsDisabled) widget->setEnabled(false);
  if (HasSkipCheck(field)) AddSkipCheck(index);
  if (HasPickerButton(field)) AddPickerButton(index);
  widget->show();
}

QWidget* ScreenControls::MakeEdit(size_t index) {
  const FieldDescription& field = table_[index];
  Entry& entry = *entries_[index];
  entry.filter.emplace(field.attributes);
  entry.limit = TextLimit(field);
  bool read_only = HasAttribute("readonly", field.attributes);
  if (IsMultiline(field)) {
    auto* edit = new QPlainTextEdit(parent_);
    edit->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    edit->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    edit->setLineWrapMode(QPlainTextEdit::WidgetWidth);
    edit->setTabChangesFocus(true);
    edit->setReadOnly(read_only);
    connect(edit, &QPlainTextEdit::textChanged, this, [this, index] { FilterTyping(index); });
    return edit;
  }
  auto* edit = new QLineEdit(parent_);
  edit->setReadOnly(read_only);
  if (IsRightAligned(field)) edit->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  connect(edit, &QLineEdit::textEdited, this, [this, index] { FilterTyping(index); });
  return edit;
}

QWidget* ScreenControls::MakeButton(size_t index) {
  const FieldDescription& field = table_[index];
  QPushButton* button = nullptr;
  QString picture =
      PicturePath(options_.picture_folder, FindAttribute("gdiplus", field.attributes).value_or(""));
  QPixmap pixmap;
  if (!picture.isEmpty() && pixmap.load(picture)) {
    button = new PictureButton(pixmap, parent_);
    button->setProperty("picture", picture);
  } else {
    button = new QPushButton(parent_);
  }
  button->setAutoDefault(false);
  if (std::optional<std::string> help = FindAttribute("msg", field.attributes)) {
    button->setToolTip(FromWindowsText(*help));
    button->setStatusTip(FromWindowsText(*help));
  }
  connect(button, &QPushButton::clicked, this, [this, index] {
    FieldDescription& clicked = table_[index];
    // A button's check is its command; what it answers changes nothing here.
    if (clicked.check) static_cast<void>(clicked.check(table_, index, clicked.data));
    Q_EMIT ButtonClicked(clicked.id);
  });
  return button;
}

QWidget* ScreenControls::MakeGroup(size_t index) {
  const FieldDescription& field = table_[index];
  auto* box = new QGroupBox(FromWindowsText(GroupTitle(field)), parent_);
  box->setFocusPolicy(Qt::NoFocus);
  if (StyleOfGroup(field) == GroupStyle::kRadio) {
    entries_[index]->radio = new QButtonGroup(box);
  } else if (StyleOfGroup(field) == GroupStyle::kCheckBox) {
    entries_[index]->ticks = std::make_unique<CheckBoxGroup>(table_, index);
  }
  return box;
}

QWidget* ScreenControls::MakeItem(size_t index) {
  // Members stand beside their group's box rather than in it, so that an item placed a
  // little outside the box is still shown whole; the box is made first and lies below.
  std::optional<size_t> group = GroupOfItem(table_, index);
  GroupStyle style = group ? StyleOfGroup(table_[*group]) : GroupStyle::kTitledBox;
  QString caption = FromWindowsText(ItemCaption(table_[index]));
  if (!group || style == GroupStyle::kTitledBox) {
    auto* alone = new QCheckBox(caption, parent_);
    connect(alone, &QCheckBox::toggled, this, [this, index] {
      if (!showing_) Q_EMIT FieldChanged(table_[index].id);
    });
    return alone;
  }
  Entry& group_entry = *entries_[*group];
  size_t position = group_entry.members.size();
  QAbstractButton* button = nullptr;
  if (style == GroupStyle::kRadio) {
    button = new QRadioButton(caption, parent_);
    group_entry.radio->addButton(button);
    connect(button, &QRadioButton::toggled, this, [this, g = *group, position](bool on) {
      if (on && !showing_) OnRadioChosen(g, position);
    });
  } else {
    button = new QCheckBox(caption, parent_);
    connect(button, &QCheckBox::toggled, this, [this, g = *group, position](bool on) {
      if (!showing_) OnCheckBoxTicked(g, position, on);
    });
  }
  group_entry.members.push_back(button);
  return button;
}

QWidget* ScreenControls::MakeStatic(size_t index) {
  const FieldDescription& field = table_[index];
  auto* label = new QLabel(parent_);
  // "clipped" keeps a static text on one line, cut at its edge; others wrap at words.
  bool clipped = HasAttribute("clipped", field.attributes);
  label->setWordWrap(!clipped);
  bool one_line = !HasAttribute("height", field.attributes);
  label->setAlignment(Qt::AlignLeft | (one_line ? Qt::AlignVCenter : Qt::AlignTop));
  // "opaque" fills the text's rectangle, hiding what lies behind; "opaque(box)" frames it.
  if (std::optional<std::string> opaque = FindAttribute("opaque", field.attributes)) {
    label->setAutoFillBackground(true);
    if (EqualIgnoringCase(*opaque, "box")) label->setFrameStyle(QFrame::Box | QFrame::Plain);
  }
  return label;
}

QWidget* ScreenControls::MakeCombo(size_t index) {
  const FieldDescription& field = table_[index];
  auto* combo = new QComboBox(parent_);
  // Qt has no combo box with its list always open; "simple" is typed into like "dropdown".
  combo->setEditable(StyleOfCombo(field) != ComboStyle::kDropDownList);
  // The list's lines count its edit line and frame; the items get the rest.
  combo->setMaxVisibleItems(std::max(ComboListLines(field) - 2, 1));
  connect(combo, &QComboBox::activated, this, [this, index, combo](int row) {
    if (!showing_) OnChoice(index, ToWindowsText(combo->itemText(row)));
  });
  if (combo->lineEdit()) {
    connect(combo->lineEdit(), &QLineEdit::editingFinished, this, [this, index, combo] {
      if (!showing_) OnChoice(index, ToWindowsText(combo->currentText()));
    });
  }
  return combo;
}

QWidget* ScreenControls::MakeList(size_t index) {
  auto* list = new QListWidget(parent_);
  connect(list, &QListWidget::currentRowChanged, this, [this, index, list](int row) {
    if (!showing_ && row >= 0) OnChoice(index, ToWindowsText(list->item(row)->text()));
  });
  return list;
}

QWidget* ScreenControls::MakeCustom(size_t index) {
  FieldDescription& field = table_[index];
  if (!field.creator) return nullptr;
  std::any made = field.creator(std::any(parent_.data()), table_, index);
  QWidget* const* widget = std::any_cast<QWidget*>(&made);
  return widget ? *widget : nullptr;
}

void ScreenControls::AddSkipCheck(size_t index) {
  const FieldDescription& field = table_[index];
  Entry& entry = *entries_[index];
  entry.skip_check = new QCheckBox(QStringLiteral("X"), parent_);
  entry.skip_check->setObjectName(QStringLiteral("field%1").arg(field.id + kSkipCheckIdOffset));
  entry.skip_check->setGeometry(
      ToQRect(SkipCheckRect(FieldRect(table_, index, metrics_), metrics_)));
  entry.skip_check->setEnabled(entry.widget->isEnabled());
  entry.skip_check->installEventFilter(this);
  entry.skip_check->show();
}

void ScreenControls::AddPickerButton(size_t index) {
  const FieldDescription& field = table_[index];
  Entry& entry = *entries_[index];
  entry.picker_button = new QPushButton(QStringLiteral("..."), parent_);
  entry.picker_button->setObjectName(
      QStringLiteral("field%1").arg(field.id + kPickerButtonIdOffset));
  entry.picker_button->setGeometry(
      ToQRect(PickerButtonRect(FieldRect(table_, index, metrics_), metrics_)));
  entry.picker_button->setAutoDefault(false);
  // Clicking it leaves the focus in the field, so that the field's value is not taken as
  // left behind.
  entry.picker_button->setFocusPolicy(Qt::NoFocus);
  entry.picker_button->setEnabled(entry.widget->isEnabled());
  connect(entry.picker_button, &QPushButton::clicked, this, [this, index] { RunPicker(index); });
  entry.picker_button->show();
}

// --- Showing values ---

void ScreenControls::Show(int id) {
  if (std::optional<size_t> index = FieldIndexOfId(table_, id)) {
    if (*index < entries_.size()) ShowIndex(*index);
  }
}

void ScreenControls::ShowAll() {
  for (size_t i = 0; i < entries_.size(); ++i) ShowIndex(i);
}

void ScreenControls::ShowIndex(size_t index) {
  Entry& entry = *entries_[index];
  if (!entry.widget) return;
  const FieldDescription& field = table_[index];
  bool was_showing = showing_;
  showing_ = true;
  switch (field.kind) {
    case kFieldEdit:
      ShowEdit(index);
      break;
    case kFieldGroup:
      ShowGroup(index);
      break;
    case kFieldButton:
    case kFieldItem:
      if (auto* button = qobject_cast<QAbstractButton*>(entry.widget)) {
        button->setText(
            FromWindowsText(field.kind == kFieldItem ? ItemCaption(field) : field.data));
      }
      break;
    case kFieldStatic:
      if (auto* label = qobject_cast<QLabel*>(entry.widget))
        label->setText(FromWindowsText(field.data));
      break;
    case kFieldCombo:
    case kFieldList:
      ShowChoices(index);
      break;
    default:
      break;  // panels and custom controls show what their owners put in them
  }
  showing_ = was_showing;
}

void ScreenControls::ShowEdit(size_t index) {
  Entry& entry = *entries_[index];
  const FieldDescription& field = table_[index];
  if (auto* line = qobject_cast<QLineEdit*>(entry.widget)) {
    line->setText(FromWindowsText(FormatForDisplay(field)));
    line->setCursorPosition(0);
    entry.typed = line->text();
  } else if (auto* text = qobject_cast<QPlainTextEdit*>(entry.widget)) {
    text->setPlainText(ToControlLines(FormatForDisplay(field)));
    entry.typed = text->toPlainText();
  }
  entry.shown = EditText(index);
  entry.accepted = field.data;
}

void ScreenControls::ShowGroup(size_t index) {
  Entry& entry = *entries_[index];
  if (entry.radio) {
    std::optional<size_t> chosen = ChosenRadioMember(table_, index);
    // An exclusive group cannot have its last choice taken away.
    entry.radio->setExclusive(false);
    for (size_t i = 0; i < entry.members.size(); ++i) {
      if (entry.members[i]) entry.members[i]->setChecked(chosen == i);
    }
    entry.radio->setExclusive(true);
  } else if (entry.ticks) {
    entry.ticks = std::make_unique<CheckBoxGroup>(table_, index);
    for (size_t i = 0; i < entry.members.size() && i < entry.ticks->size(); ++i) {
      if (entry.members[i]) entry.members[i]->setChecked(entry.ticks->ticked(i));
    }
  }
}

void ScreenControls::ShowChoices(size_t index) {
  Entry& entry = *entries_[index];
  std::vector<std::string> items = ControlItems(table_[index]);
  QString choice = FromWindowsText(entry.choice);
  if (auto* combo = qobject_cast<QComboBox*>(entry.widget)) {
    combo->clear();
    for (const std::string& item : items) combo->addItem(FromWindowsText(item));
    int row = combo->findText(choice, Qt::MatchExactly);
    combo->setCurrentIndex(row);
    if (row < 0 && combo->isEditable()) combo->setEditText(choice);
  } else if (auto* list = qobject_cast<QListWidget*>(entry.widget)) {
    list->clear();
    for (const std::string& item : items) list->addItem(FromWindowsText(item));
    QList<QListWidgetItem*> found = list->findItems(choice, Qt::MatchExactly);
    list->setCurrentRow(found.isEmpty() ? -1 : list->row(found.first()));
  }
}

std::string ScreenControls::EditText(size_t index) const {
  const Entry& entry = *entries_[index];
  if (auto* line = qobject_cast<QLineEdit*>(entry.widget)) return ToWindowsText(line->text());
  if (auto* text = qobject_cast<QPlainTextEdit*>(entry.widget))
    return FromControlLines(text->toPlainText());
  return std::string();
}

std::string ScreenControls::Text(int id) const {
  std::optional<size_t> found = FieldIndexOfId(table_, id);
  if (!found || *found >= entries_.size()) return std::string();
  size_t index = *found;
  const Entry* entry = entries_[index].get();
  const FieldDescription& field = table_[index];
  switch (field.kind) {
    case kFieldEdit:
      return EditText(index);
    case kFieldCombo: {
      auto* combo = qobject_cast<QComboBox*>(entry->widget);
      return combo && combo->isEditable() ? ToWindowsText(combo->currentText()) : entry->choice;
    }
    case kFieldList:
      return entry->choice;
    case kFieldItem:
      return ItemCaption(field);
    default:
      return field.data;
  }
}

void ScreenControls::SetChoice(int id, std::string_view text) {
  Entry* entry = EntryOfId(id);
  if (!entry) return;
  entry->choice = std::string(text);
  Show(id);
}

// --- Typing and changes ---

void ScreenControls::FilterTyping(size_t index) {
  Entry& entry = *entries_[index];
  if (showing_ || !entry.filter) return;
  auto* line = qobject_cast<QLineEdit*>(entry.widget);
  auto* plain = qobject_cast<QPlainTextEdit*>(entry.widget);
  QString now = line ? line->text() : plain ? plain->toPlainText() : QString();
  const QString& before = entry.typed;
  if (now == before) return;

  // What the edit put in: the text between what stayed the same at either end.
  qsizetype prefix = 0;
  while (prefix < now.size() && prefix < before.size() && now[prefix] == before[prefix]) ++prefix;
  qsizetype suffix = 0;
  while (suffix < now.size() - prefix && suffix < before.size() - prefix &&
         now[now.size() - 1 - suffix] == before[before.size() - 1 - suffix]) {
    ++suffix;
  }
  QString inserted = now.mid(prefix, now.size() - prefix - suffix);

  bool refused = false;
  QString taken;
  for (char32_t code_point : inserted.toUcs4()) {
    char byte = CodePointToCp1252(code_point);
    std::optional<char> filtered = entry.filter->Filter(byte);
    // A character the field's code page cannot hold is refused like a filtered one.
    if ((byte == '?' && code_point != U'?') || !filtered) {
      refused = true;
      break;
    }
    taken += QChar(static_cast<char16_t>(Cp1252ToCodePoint(static_cast<unsigned char>(*filtered))));
  }
  QString result = now.left(prefix) + taken + now.right(suffix);
  // The limit stops typing and cuts text put in at once, as the Windows edit control
  // does; a value shown longer than the limit can still be shortened.
  auto length = [plain](const QString& text) {
    return plain ? FromControlLines(text).size() : ToWindowsText(text).size();
  };
  if (!refused && entry.limit && result.size() > before.size()) {
    while (!taken.isEmpty() && length(result) > *entry.limit) {
      taken.chop(1);
      result = now.left(prefix) + taken + now.right(suffix);
    }
    refused = taken.isEmpty();  // nothing of it fits: the text stays as it was
  }
  if (refused) result = before;
  if (result != now) {
    showing_ = true;
    qsizetype cursor = refused ? prefix : prefix + taken.size();
    if (line) {
      line->setText(result);
      line->setCursorPosition(static_cast<int>(cursor));
    } else {
      plain->setPlainText(result);
      QTextCursor text_cursor = plain->textCursor();
      text_cursor.setPosition(static_cast<int>(std::min(cursor, result.size())));
      plain->setTextCursor(text_cursor);
    }
    showing_ = false;
  }
  entry.typed = result;
}

bool ScreenControls::Change(size_t index, const std::string& text) {
  committing_ = true;
  bool accepted = EnterFieldValue(table_, index, text);
  committing_ = false;
  FieldDescription& field = table_[index];
  if (!accepted && field.kind == kFieldEdit) field.data = entries_[index]->accepted;
  ShowIndex(index);
  if (!accepted) return false;
  if (std::optional<int> target = DisplayTarget(field)) Show(*target);
  Q_EMIT FieldChanged(field.id);
  return true;
}

bool ScreenControls::CommitEdit(size_t index, bool run_check) {
  Entry& entry = *entries_[index];
  std::string text = EditText(index);
  if (text == entry.shown) return true;
  if (!run_check) {
    // Inside its ckkillfocus group the field's text is kept unchecked until it leaves.
    table_[index].data = text;
    entry.shown = text;
    return true;
  }
  return Change(index, text);
}

void ScreenControls::OnFocusLeft(size_t index) {
  if (committing_ || table_[index].kind != kFieldEdit) return;
  const FieldDescription& field = table_[index];
  if (!HasAttribute("ckkillfocus", field.attributes)) {
    CommitEdit(index, true);
    return;
  }
  std::optional<int> to_id = IdOfWidget(QApplication::focusWidget());
  if (RunsCheckOnFocusLoss(table_, index, to_id)) {
    Change(index, EditText(index));
  } else {
    CommitEdit(index, false);
  }
}

bool ScreenControls::CommitFocused() {
  std::optional<size_t> index = IndexOfWidget(QApplication::focusWidget());
  if (!index || table_[*index].kind != kFieldEdit) return true;
  if (HasAttribute("ckkillfocus", table_[*index].attributes)) {
    return Change(*index, EditText(*index));
  }
  return CommitEdit(*index, true);
}

void ScreenControls::OnRadioChosen(size_t group, size_t position) {
  std::string data = RadioChoiceData(table_, group, position);
  if (data != table_[group].data) Change(group, data);
}

void ScreenControls::OnCheckBoxTicked(size_t group, size_t position, bool ticked) {
  Entry& entry = *entries_[group];
  if (!entry.ticks || position >= entry.ticks->size()) return;
  bool state = entry.ticks->Set(position, ticked, *options_.ui);
  if (state != ticked) {
    showing_ = true;
    if (entry.members[position]) entry.members[position]->setChecked(state);
    showing_ = false;
    return;
  }
  std::string data = entry.ticks->Data();
  if (data != table_[group].data) Change(group, data);
}

void ScreenControls::OnChoice(size_t index, const std::string& text) {
  FieldDescription& field = table_[index];
  Entry& entry = *entries_[index];
  if (text == entry.choice) return;
  committing_ = true;
  bool accepted = !field.check || field.check(table_, index, text);
  committing_ = false;
  if (accepted) {
    entry.choice = text;
    if (std::optional<int> target = DisplayTarget(field)) Show(*target);
    Q_EMIT FieldChanged(field.id);
  }
  ShowIndex(index);
}

void ScreenControls::RunPicker(size_t index) {
  FieldDescription& field = table_[index];
  std::optional<std::string> value =
      field.picker ? field.picker(table_, index)
                   : RunFieldHelp(table_, index, *options_.ui, options_.pickers);
  if (value) TakePicked(index, *value);
}

void ScreenControls::TakePicked(size_t index, const std::string& value) {
  switch (table_[index].kind) {
    case kFieldEdit:
      Change(index, value);
      break;
    case kFieldCombo:
    case kFieldList:
      OnChoice(index, value);
      break;
    default:
      break;
  }
}

void ScreenControls::ShowHelp(int id) {
  std::optional<size_t> index = FieldIndexOfId(table_, id);
  if (!index || *index >= entries_.size()) return;
  if (table_[*index].kind == kFieldEdit) CommitEdit(*index, false);
  std::optional<std::string> value = RunFieldHelp(table_, *index, *options_.ui, options_.pickers);
  if (value) TakePicked(*index, *value);
}

// --- Focus and keys ---

void ScreenControls::MoveFocus(size_t from, FieldMove move) {
  CanFocus can_focus = [this](size_t i) {
    QWidget* widget = i < entries_.size() ? entries_[i]->widget.data() : nullptr;
    return widget && widget->isEnabled() && !widget->isHidden() &&
           (widget->focusPolicy() & Qt::TabFocus);
  };
  if (std::optional<size_t> next = NextFocusField(table_, from, move, can_focus)) {
    entries_[*next]->widget->setFocus(move == FieldMove::kNext ? Qt::TabFocusReason
                                                               : Qt::BacktabFocusReason);
  }
}

void ScreenControls::FocusInitial() {
  CanFocus can_focus = [this](size_t i) {
    QWidget* widget = entries_[i]->widget.data();
    return widget && widget->isEnabled() && !widget->isHidden() &&
           (widget->focusPolicy() & Qt::TabFocus);
  };
  if (std::optional<size_t> first = InitialFocusField(table_, can_focus)) {
    entries_[*first]->widget->setFocus(Qt::OtherFocusReason);
  }
}

bool ScreenControls::eventFilter(QObject* watched, QEvent* event) {
  auto* widget = qobject_cast<QWidget*>(watched);
  std::optional<size_t> index = IndexOfWidget(widget);
  if (!index) return false;
  bool edit = table_[*index].kind == kFieldEdit && entries_[*index]->widget == widget;
  switch (event->type()) {
    case QEvent::ShortcutOverride: {
      // F1 belongs to the field, not to a shortcut of the window around it.
      auto* key = static_cast<QKeyEvent*>(event);
      if (key->key() == Qt::Key_F1) event->accept();
      return false;
    }
    case QEvent::WhatsThis:
      ShowHelp(table_[*index].id);
      return true;
    case QEvent::KeyPress: {
      auto* key = static_cast<QKeyEvent*>(event);
      if (key->key() == Qt::Key_F1) {
        ShowHelp(table_[*index].id);
        return true;
      }
      if (!edit) return false;
      std::optional<ScreenKey> screen_key;
      switch (key->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
          screen_key = ScreenKey::kEnter;
          break;
        case Qt::Key_Escape:
          screen_key = ScreenKey::kEscape;
          break;
        case Qt::Key_Tab:
          screen_key = key->modifiers() & Qt::ShiftModifier ? ScreenKey::kBacktab : ScreenKey::kTab;
          break;
        case Qt::Key_Backtab:
          screen_key = ScreenKey::kBacktab;
          break;
        default:
          return false;
      }
      FieldMove move = MoveForKey(table_[*index], *screen_key);
      if (move == FieldMove::kNone) return false;
      MoveFocus(*index, move);
      return true;
    }
    case QEvent::FocusOut: {
      auto reason = static_cast<QFocusEvent*>(event)->reason();
      // Another window (a message box of a check, say) takes the focus only for a while.
      if (edit && reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason) {
        OnFocusLeft(*index);
      }
      return false;
    }
    default:
      return false;
  }
}

std::optional<size_t> ScreenControls::IndexOfWidget(const QWidget* widget) const {
  for (; widget && widget != parent_; widget = widget->parentWidget()) {
    for (size_t i = 0; i < entries_.size(); ++i) {
      const Entry& entry = *entries_[i];
      if (entry.widget == widget || entry.skip_check == widget || entry.picker_button == widget)
        return i;
    }
  }
  return std::nullopt;
}

std::optional<int> ScreenControls::IdOfWidget(const QWidget* widget) const {
  for (; widget && widget != parent_; widget = widget->parentWidget()) {
    for (size_t i = 0; i < entries_.size(); ++i) {
      const Entry& entry = *entries_[i];
      if (entry.widget == widget) return table_[i].id;
      if (entry.skip_check == widget) return table_[i].id + kSkipCheckIdOffset;
      if (entry.picker_button == widget) return table_[i].id + kPickerButtonIdOffset;
    }
  }
  return std::nullopt;
}

// --- By identifier ---

ScreenControls::Entry* ScreenControls::EntryOfId(int id) {
  return const_cast<Entry*>(static_cast<const ScreenControls*>(this)->EntryOfId(id));
}

const ScreenControls::Entry* ScreenControls::EntryOfId(int id) const {
  std::optional<size_t> index = FieldIndexOfId(table_, id);
  if (!index || *index >= entries_.size()) return nullptr;
  return entries_[*index].get();
}

QWidget* ScreenControls::Control(int id) const {
  if (const Entry* entry = EntryOfId(id)) return entry->widget;
  if (const Entry* entry = EntryOfId(id - kSkipCheckIdOffset)) return entry->skip_check;
  if (const Entry* entry = EntryOfId(id - kPickerButtonIdOffset)) return entry->picker_button;
  return nullptr;
}

bool ScreenControls::Checked(int id) const {
  auto* box = qobject_cast<QAbstractButton*>(Control(id));
  return box && box->isChecked();
}

void ScreenControls::SetChecked(int id, bool checked) {
  if (auto* box = qobject_cast<QAbstractButton*>(Control(id))) {
    showing_ = true;
    box->setChecked(checked);
    showing_ = false;
  }
}

void ScreenControls::SetFieldEnabled(int id, bool enabled) {
  Entry* entry = EntryOfId(id);
  if (!entry) return;
  for (QWidget* widget : {static_cast<QWidget*>(entry->widget.data()),
                          static_cast<QWidget*>(entry->skip_check.data()),
                          static_cast<QWidget*>(entry->picker_button.data())}) {
    if (widget) widget->setEnabled(enabled);
  }
  for (const QPointer<QAbstractButton>& member : entry->members) {
    if (member) member->setEnabled(enabled);
  }
}

void ScreenControls::SetAllEnabled(bool enabled) {
  for (size_t i = 0; i < entries_.size(); ++i) {
    // "exception" fields keep their state whatever the rest of the screen does.
    if (!KeepsStateOnEnableAll(table_[i])) SetFieldEnabled(table_[i].id, enabled);
  }
}

}  // namespace nv
