#include "gui/selection_window.h"

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QDir>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QTemporaryDir>
#include <QTest>

#include "base/profile.h"
#include "gui/build_screen.h"
#include "gui/choice_list_dialog.h"
#include "gui/modal_driver_testing.h"
#include "gui/qt_ui.h"
#include "store/codes/loc_cat_list.h"

namespace nv {
namespace {

using testing::ModalDriver;
using W = SelectionWindow;

QLineEdit* Entry(const SelectionWindowDialog& d, int field) {
  return qobject_cast<QLineEdit*>(d.rows()->Control(W::RowId(field, W::kEntryPart)));
}

QCheckBox* Box(const SelectionWindowDialog& d, int field, int part) {
  return qobject_cast<QCheckBox*>(d.rows()->Control(W::RowId(field, part)));
}

QPushButton* PanelButton(const SelectionWindowDialog& d, int id) {
  return qobject_cast<QPushButton*>(d.panel()->Control(id));
}

// Types into an entry and leaves it, as a person does.
void Type(QLineEdit* edit, const QString& text) {
  edit->setFocus();
  edit->selectAll();
  QTest::keyClicks(edit, text);
  QTest::keyClick(edit, Qt::Key_Tab);
}

}  // namespace

class SelectionWindowDialogTest : public QObject {
  Q_OBJECT

 private:
  QTemporaryDir dir_;
  SelectionWindowSetup setup_;

  std::string File(const char* name) const { return (dir_.path() + "/" + name).toStdString(); }

 private Q_SLOTS:
  void init() {
    setup_ = {};
    setup_.files = {File("ACME.ini"), File("KELNVWIN.INI")};
    QFile::remove(QString::fromStdString(setup_.files.company_settings));
    QFile::remove(QString::fromStdString(setup_.files.installation_settings));
    setup_.schedules = {{'B', "Book"}, {'T', "Tax"}};
    setup_.locations_file = File("ACME.LOC");
    setup_.categories_file = File("ACME.CAT");
    setup_.company_folder = dir_.path().toStdString() + "/";
    setup_.company_number = "ACME";
    NvLocCatList locations;
    locations.Insert("01", "Main Office");
    locations.Insert("02", "Plant");
    QCOMPARE(SaveLocCatList(setup_.locations_file, locations), 2);
  }

  // Criteria typed, ticked and picked, the schedule chosen, the selection saved for all
  // companies through the save dialog, then OK.
  void FillPickSaveAndOk() {
    QtUi ui("", nullptr);
    SelectionWindow model(ui, setup_, KelSelection{}, "Export Assets");
    SelectionWindowDialog dialog(model, ui);
    dialog.show();
    dialog.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    QCOMPARE(dialog.windowTitle(), QStringLiteral("Export Assets"));

    Type(Entry(dialog, kSelAssetNumber), QStringLiteral("a1-a9"));
    QCOMPARE(Entry(dialog, kSelAssetNumber)->text(), QStringLiteral("A1-A9"));
    QVERIFY(Box(dialog, kSelAssetNumber, W::kInUsePart)->isChecked());
    Box(dialog, kSelAssetNumber, W::kExcludePart)->click();
    QVERIFY(model.selection().criteria[kSelAssetNumber].exclude);

    // The location picker lists the company's locations; the second joins the code typed
    // before the button was pressed.
    ModalDriver driver;
    driver.Then([](QWidget* modal) {
      auto* list = qobject_cast<ChoiceListDialog*>(modal);
      QVERIFY(list);
      QCOMPARE(list->list()->count(), 2);
      list->list()->setCurrentRow(1);
      list->accept();
    });
    auto* picker = qobject_cast<QPushButton*>(
        dialog.rows()->Control(W::RowId(kSelLocation, W::kEntryPart) + kPickerButtonIdOffset));
    QVERIFY(picker);
    Entry(dialog, kSelLocation)->setFocus();
    QTest::keyClicks(Entry(dialog, kSelLocation), QStringLiteral("01"));
    QTest::mouseClick(picker, Qt::LeftButton);
    QVERIFY(driver.done());
    QCOMPARE(Entry(dialog, kSelLocation)->text(), QStringLiteral("01,02"));
    QVERIFY(Box(dialog, kSelLocation, W::kInUsePart)->isChecked());

    auto* schedule = qobject_cast<QComboBox*>(dialog.panel()->Control(W::kScheduleId));
    QCOMPARE(schedule->currentText(), QStringLiteral("B-Book"));
    schedule->setCurrentIndex(1);
    Q_EMIT schedule->activated(1);
    QCOMPARE(model.selection().schedule, 'T');

    // The rows below the first screenful are reached by scrolling. What is typed into the
    // last row counts once a button is pressed, without leaving the row first.
    dialog.activateWindow();  // back from the picker
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    QLineEdit* last = Entry(dialog, kSelDeprPaused);
    dialog.scroller()->ensureWidgetVisible(last);
    last->setFocus();
    QTest::keyClicks(last, QStringLiteral("01/01/2024-06/30/2024"));

    ModalDriver save;
    save.Then([](QWidget* modal) {
      auto* saving = qobject_cast<SaveSelectionDialog*>(modal);
      QVERIFY(saving);
      QCOMPARE(saving->windowTitle(), QStringLiteral("Save Asset Selection"));
      auto* name = qobject_cast<QComboBox*>(saving->controls()->Control(W::kDescriptionId));
      name->setFocus();
      name->setEditText(QStringLiteral("Nearby"));
      for (QRadioButton* radio : saving->findChildren<QRadioButton*>()) {
        if (radio->text() == QStringLiteral("All Companies")) radio->click();
      }
      ModalDriver::Button(saving, QStringLiteral("Save"))->click();
    });
    PanelButton(dialog, W::kSaveCurrentId)->click();
    QVERIFY(save.done());
    QVERIFY(model.selection().criteria[kSelDeprPaused].in_use);
    dialog.scroller()->ensureWidgetVisible(Entry(dialog, kSelAssetNumber));
    QVERIFY(!ReadProfileString(setup_.files.installation_settings, kAssetSelectionSection, "Nearby",
                               "", 500)
                 .empty());
    auto* saved = qobject_cast<QListWidget*>(dialog.panel()->Control(W::kSavedListId));
    QCOMPARE(saved->count(), 1);
    QCOMPARE(saved->item(0)->text(), QStringLiteral("Nearby (All Companies)"));

    const QString folder = QCoreApplication::applicationDirPath() + QStringLiteral("/screenshots");
    QDir().mkpath(folder);
    QVERIFY(dialog.grab().save(folder + QStringLiteral("/selection_window.png")));

    PanelButton(dialog, W::kOkId)->click();
    QVERIFY(dialog.ok());
    const KelSelection& s = model.selection();
    QCOMPARE(s.criteria[kSelAssetNumber].text, std::string("A1-A9"));
    QCOMPARE(s.criteria[kSelLocation].text, std::string("01,02"));
    QCOMPARE(s.schedule, 'T');
    QCOMPARE(s.name, std::string("Nearby"));
  }

  // OK with a criterion that does not read tells why and leaves the window open on that
  // criterion; a saved selection chosen in the list is loaded; Escape cancels.
  void RefusedOkThenLoadAndEscape() {
    KelSelection stored;
    stored.name = "Plant";
    stored.criteria[kSelLocation] = {true, "02", false};
    QVERIFY(SaveSelection(setup_.files, stored));

    QtUi ui("", nullptr);
    SelectionWindow model(ui, setup_, KelSelection{}, "");
    ModalDriver driver;
    driver.Then([&](QWidget* modal) {
      auto* dialog = qobject_cast<SelectionWindowDialog*>(modal);
      QVERIFY(dialog);
      QVERIFY(QTest::qWaitForWindowActive(dialog));
      QString told;
      ModalDriver message;
      message.Then([&](QWidget* box) {
        told = qobject_cast<QMessageBox*>(box)->text();
        qobject_cast<QDialog*>(box)->accept();
      });
      Type(Entry(*dialog, kSelDatePurchased), QStringLiteral("13/01/2020"));
      PanelButton(*dialog, W::kOkId)->click();
      QVERIFY(message.done());
      QCOMPARE(told, QStringLiteral("Invalid date"));
      QVERIFY(!dialog->ok());
      QCOMPARE(dialog->focusWidget(), Entry(*dialog, kSelDatePurchased));

      auto* saved = qobject_cast<QListWidget*>(dialog->panel()->Control(W::kSavedListId));
      saved->setCurrentRow(0);
      QCOMPARE(Entry(*dialog, kSelLocation)->text(), QStringLiteral("02"));
      QVERIFY(!Box(*dialog, kSelDatePurchased, W::kInUsePart)->isChecked());
      QTest::keyClick(dialog, Qt::Key_Escape);
    });
    driver.RejectRest();
    QVERIFY(!ui.RunSelectionWindow(model));
    QVERIFY(driver.done());
  }
};

}  // namespace nv

QTEST_MAIN(nv::SelectionWindowDialogTest)
#include "selection_window_test.moc"
