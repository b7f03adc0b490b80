// The schedule definitions editor's window: a thin view over DlgEdScheduleDefinitions.
// Every control hands its change to the model and every command runs there; afterwards the
// window shows the model's state again. The list of definitions is drawn by its owner in
// four columns: letter, description, type and source.
#pragma once

#include <QDialog>
#include <QStringList>
#include <QStyledItemDelegate>
#include <array>
#include <vector>

#include "ui/schedule_definitions_editor.h"

class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QRadioButton;

namespace nv {

// Control identifiers of the window.
inline constexpr int kSdefDefinitionsList = 676;
inline constexpr int kSdefTypeList = 677;
inline constexpr int kSdefLetter = 324;
inline constexpr int kSdefDescription = 264;
inline constexpr int kSdefAllCompanies = 870;
inline constexpr int kSdefThisCompany = 871;
inline constexpr int kSdefSave = 613;
inline constexpr int kSdefNew = 608;
inline constexpr int kSdefDelete = 618;
inline constexpr int kSdefCancelEdit = 626;
inline constexpr int kSdefClose = 1;
inline constexpr int kSdefHelp = 9;

// Draws one definition's columns at their fixed offsets within the line.
class sdefRowDelegate : public QStyledItemDelegate {
  Q_OBJECT

 public:
  static constexpr std::array<int, 4> kColumnX = {10, 35, 100, 180};
  // The item data role of column 0; the others follow it.
  static constexpr int kColumnRole = Qt::UserRole + 1;

  using QStyledItemDelegate::QStyledItemDelegate;

  // Where column `column` is drawn within a line's rectangle.
  static QRect ColumnRect(const QRect& line, int column);

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;
  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

class ScheduleDefinitionsWindow : public QDialog {
  Q_OBJECT

 public:
  ScheduleDefinitionsWindow(DlgEdScheduleDefinitions& editor, QWidget* parent);

  QListWidget* definitions() const { return definitions_; }
  QListWidget* types() const { return types_; }
  QLineEdit* letter() const { return letter_; }
  QLineEdit* description() const { return description_; }
  QRadioButton* all_companies() const { return all_companies_; }
  QRadioButton* this_company() const { return this_company_; }
  QLabel* caption() const { return caption_; }
  // The push button of a command identifier (613, 608, 618, 626, 1, 9), or null.
  QPushButton* button(int id) const;

  // Shows the model's state.
  void Refresh();

 protected:
  // Escape and the window's own close button run the close command like button 1.
  void reject() override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QPushButton* AddButton(int id, const QString& text);
  void RunCommand(int id);
  void FillDefinitions();
  void FillTypes();

  DlgEdScheduleDefinitions& editor_;
  bool refreshing_ = false;

  QLabel* caption_ = nullptr;
  QListWidget* definitions_ = nullptr;
  QListWidget* types_ = nullptr;
  QLineEdit* letter_ = nullptr;
  QLineEdit* description_ = nullptr;
  QRadioButton* all_companies_ = nullptr;
  QRadioButton* this_company_ = nullptr;
  std::vector<QPushButton*> buttons_;
  std::vector<QStringList> shown_rows_;  // the columns of the lines in the list
};

// Runs the window modally over the editor until the close command closes it.
class QtScheduleDefinitionsRunner : public ScheduleDefinitionsWindowRunner {
 public:
  explicit QtScheduleDefinitionsRunner(QWidget* parent) : parent_(parent) {}
  void Run(DlgEdScheduleDefinitions& editor) override;

 private:
  QWidget* parent_;
};

}  // namespace nv
