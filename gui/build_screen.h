// Screens from field tables: BuildScreen makes the Qt controls of a FieldTable on a parent
// widget, in table order, and returns the ScreenControls through which the screen's owner
// reads and refreshes them by identifier. Every position, size and rule comes from the
// logic in ui/screen/; this file only turns it into widgets.
//
// Values flow both ways. A control shows its field's data (edit fields through their
// display format). When the user changes it, the field's check runs with the new text;
// false puts the old value back, true writes the text into the data, shows the field (and
// its display(ID) field) again and emits FieldChanged. Edit fields count as changed when
// they lose the focus or move on, not at each keystroke, so that a check sees whole
// values; a ckkillfocus field writes its text without the check until it leaves its group.
//
// Data of each kind:
//   edit field        the value (multiline: lines separated by CR LF, as Windows keeps them)
//   radio, check box  the group's data, as groups.h says; items keep their captions
//   combo, list box   the items; the chosen text is read with Text(id), set with SetChoice
//   button            the caption; a click runs the check with it, then emits ButtonClicked
//   static text, item the caption
// An item outside any group, or in a titled box, is a check box of its own: Checked(id),
// no check.
//
// Fonts: a field with flag 8 uses the screen's regular font, with flag 16 its second
// font; a field with neither keeps its parent's font. The metrics of the layout (cw, lh)
// come from the regular font.
#pragma once

#include <QFont>
#include <QObject>
#include <QPointer>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/ui.h"
#include "ui/screen/field_description.h"
#include "ui/screen/field_help.h"
#include "ui/screen/layout.h"
#include "ui/screen/navigation.h"

class QWidget;

namespace nv {

struct ScreenFonts {
  QFont regular;  // the screen font, which also sizes the layout
  QFont second;   // flag 16: by default the regular font in bold
  // The application's font and its bold variant.
  static ScreenFonts Default();
};

// The layout units of a font: the average width of its letters, rounded up, and a line
// that holds an edit field of that font with its frame (the font's height and 6 pixels).
ScreenMetrics MetricsOf(const QFont& font);

struct ScreenOptions {
  Ui* ui = nullptr;  // REQUIRED: the check-box maximum note and help go through it
  ScreenFonts fonts = ScreenFonts::Default();
  // Folder that the picture paths of gdiplus(...) are relative to; "" the current folder.
  std::string picture_folder;
  BuiltInPickers pickers;  // h(*name) pickers
};

class ScreenControls;

// Makes the controls of `table` (up to its end entry) on `parent` and returns the object
// that keeps them, owned by `parent`. REQUIRES: `table` outlives the parent's controls and
// keeps its size; options.ui outlives them too.
ScreenControls* BuildScreen(FieldTable& table, QWidget* parent, ScreenOptions options);

class ScreenControls : public QObject {
  Q_OBJECT

 public:
  ~ScreenControls() override;

  const FieldTable& table() const { return table_; }
  const ScreenMetrics& metrics() const { return metrics_; }

  // The control of a field; id + 10000 is its skipck box, id + 20000 its picker button.
  // Null when there is none.
  QWidget* Control(int id) const;

  // Shows the field's data again (after the owner changed it).
  void Show(int id);
  void ShowAll();

  // What the field's control holds now: an edit field's text as it stands (also before
  // it is written), a group's data, the chosen text of a combo or list box, a caption.
  std::string Text(int id) const;
  // Chooses (or, in an editable combo box, types) `text` in a combo or list box without
  // running the check.
  void SetChoice(int id, std::string_view text);

  // Skipck boxes (id + 10000) and items standing alone.
  bool Checked(int id) const;
  void SetChecked(int id, bool checked);

  // Enables or disables a field with its skipck box and picker button.
  void SetFieldEnabled(int id, bool enabled);
  // Every field but those marked "exception".
  void SetAllEnabled(bool enabled);

  // Writes what the focused field holds, as leaving it would. False when its check
  // refused it (the old value is back). For the owner's save command.
  bool CommitFocused();

  // The field's help: its choices to pick from, its named picker, a button's msg text, or
  // "Help is not available for this field."; a value picked is taken as if typed.
  void ShowHelp(int id);

  // Gives the focus to the first "key" field, or else the first field that takes it.
  void FocusInitial();

 Q_SIGNALS:
  void FieldChanged(int id);
  void ButtonClicked(int id);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  friend ScreenControls* BuildScreen(FieldTable& table, QWidget* parent, ScreenOptions options);
  struct Entry;

  ScreenControls(FieldTable& table, QWidget* parent, ScreenOptions options);

  void Build();
  void MakeControl(size_t index);
  QWidget* MakeEdit(size_t index);
  QWidget* MakeButton(size_t index);
  QWidget* MakeGroup(size_t index);
  QWidget* MakeItem(size_t index);
  QWidget* MakeStatic(size_t index);
  QWidget* MakeCombo(size_t index);
  QWidget* MakeList(size_t index);
  QWidget* MakeCustom(size_t index);
  void AddSkipCheck(size_t index);
  void AddPickerButton(size_t index);

  void ShowIndex(size_t index);
  void ShowEdit(size_t index);
  void ShowGroup(size_t index);
  void ShowChoices(size_t index);
  std::string EditText(size_t index) const;
  void FilterTyping(size_t index);
  // Runs the check of the field with `text`; writes it or puts the old value back.
  bool Change(size_t index, const std::string& text);
  bool CommitEdit(size_t index, bool run_check);
  void OnFocusLeft(size_t index);
  void OnRadioChosen(size_t group, size_t position);
  void OnCheckBoxTicked(size_t group, size_t position, bool ticked);
  void OnChoice(size_t index, const std::string& text);
  void RunPicker(size_t index);
  void TakePicked(size_t index, const std::string& value);
  void MoveFocus(size_t from, FieldMove move);

  std::optional<size_t> IndexOfWidget(const QWidget* widget) const;
  std::optional<int> IdOfWidget(const QWidget* widget) const;
  Entry* EntryOfId(int id);
  const Entry* EntryOfId(int id) const;

  FieldTable& table_;
  QPointer<QWidget> parent_;
  ScreenOptions options_;
  ScreenMetrics metrics_;
  std::vector<std::unique_ptr<Entry>> entries_;  // one per field up to the end entry
  bool showing_ = false;                         // controls are being set, not changed
  bool committing_ = false;                      // a check is running
};

}  // namespace nv
