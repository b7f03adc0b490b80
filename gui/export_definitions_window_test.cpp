#include "gui/export_definitions_window.h"

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QTemporaryDir>
#include <QTest>

#include "export/select_export_definition.h"
#include "gui/export_definition_dialog.h"
#include "gui/modal_driver_testing.h"
#include "gui/qt_ui.h"
#include "store/company/asset_testing.h"
#include "ui/scripted_ui.h"

namespace nv {
namespace {

using testing::ModalDriver;

QStringList Lines(const QListWidget* list) {
  QStringList lines;
  for (int i = 0; i < list->count(); ++i) lines << list->item(i)->text();
  return lines;
}

// Chooses the row of `text` as a click on it does.
void ClickRow(QListWidget* list, const QString& text) {
  const QList<QListWidgetItem*> found = list->findItems(text, Qt::MatchExactly);
  QVERIFY(found.size() == 1);
  const QRect rect = list->visualItemRect(found.front());
  QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, rect.center());
}

}  // namespace

class ExportDefinitionsWindowTest : public QObject {
  Q_OBJECT

 private:
  QTemporaryDir dir_;
  InstallationContext context_;
  std::unique_ptr<NvCompany> company_;

 private Q_SLOTS:
  // Company ACME with schedules B ("Book") and T ("Tax"), selected and closed again.
  void initTestCase() {
    context_ = nv::testing::ContextFor(dir_.path().toStdString());
    company_ = std::make_unique<NvCompany>(context_);
    company_->record() = nv::testing::TwoBookCompany();
    QCOMPARE(company_->Create({"ACME", "Acme Tools"}, NvCompany::kOpenI1 | NvCompany::kOpenI2), 0);
  }

  void ControlsFollowTheModel() {
    std::string errors;
    auto ui = ScriptedUi::FromString("", &errors);
    ExportWindow model(context_, *company_, *ui);
    ExportDefinitionsWindow window(model);
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QCOMPARE(window.windowTitle(), QStringLiteral("Export Company Data"));
    QCOMPARE(window.definition_box()->text(), QString::fromLatin1(kNoDefinitionText));
    QVERIFY(!window.add_button()->isEnabled());
    QVERIFY(!window.heading_box()->isEnabled());

    // Checking "B-Book" brings its fields.
    QListWidgetItem* book = window.groups()->item(1);
    QCOMPARE(book->text(), QStringLiteral("B-Book"));
    const int general = window.available()->count();
    book->setCheckState(Qt::Checked);
    QCOMPARE(window.available()->count(),
             general + static_cast<int>(ScheduleExportFields().size()));

    for (const char* value : {"Cost", "Desc.", "Depr. Method, Book"}) {
      ClickRow(window.available(), QString::fromLatin1(value));
      QVERIFY(window.add_button()->isEnabled());
      window.add_button()->click();
    }
    QCOMPARE(Lines(window.columns()),
             (QStringList{"A\tCost", "B\tDesc.", "C\tDepr. Method, Book"}));
    QVERIFY(window.heading_box()->isEnabled());
    QCOMPARE(window.column_box()->text(), QStringLiteral("C"));
    QVERIFY(window.flag_box(ExportWindow::Flag::kAddition)->isChecked());
    QVERIFY(!window.flag_box(ExportWindow::Flag::kNoneOfTheAbove)->isChecked());

    // New letters move the column when the box is left; letters past the end are put back.
    window.column_box()->setFocus();
    window.column_box()->selectAll();
    QTest::keyClicks(window.column_box(), QStringLiteral("a"));
    QTest::keyClick(window.column_box(), Qt::Key_Tab);
    QCOMPARE(Lines(window.columns()),
             (QStringList{"A\tDepr. Method, Book", "B\tCost", "C\tDesc."}));
    QCOMPARE(window.columns()->currentRow(), 0);
    window.column_box()->setFocus();
    window.column_box()->selectAll();
    QTest::keyClicks(window.column_box(), QStringLiteral("Q"));
    QTest::keyClick(window.column_box(), Qt::Key_Tab);
    QCOMPARE(window.column_box()->text(), QStringLiteral("A"));

    window.heading_box()->setFocus();
    window.heading_box()->selectAll();
    QTest::keyClicks(window.heading_box(), QStringLiteral("Method"));
    QCOMPARE(model.definition().columns[0].heading, std::string("Method"));
    window.flag_box(ExportWindow::Flag::kNoneOfTheAbove)->click();
    QVERIFY(model.definition().columns[0].none_of_the_above);

    const QString folder = QCoreApplication::applicationDirPath() + QStringLiteral("/screenshots");
    QDir().mkpath(folder);
    QVERIFY(window.grab().save(folder + QStringLiteral("/export_definitions_window.png")));

    ClickRow(window.columns(), QStringLiteral("B\tCost"));
    window.remove_button()->click();
    QCOMPARE(Lines(window.columns()), (QStringList{"A\tDepr. Method, Book", "B\tDesc."}));
    QVERIFY(!window.remove_button()->isEnabled());
    QVERIFY(!window.column_box()->isEnabled());
  }

  // Save As through the dialog, then an Export whose check fails keeps the window open.
  void SaveAsDialogAndAFailedCheck() {
    QtUi ui("", nullptr);
    ExportWindow model(context_, *company_, ui);
    model.ChooseValue(0);
    model.Add();
    ExportDefinitionsWindow window(model);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));

    ModalDriver driver;
    driver.Then([](QWidget* modal) {
      auto* dialog = qobject_cast<ExportDefinitionDialog*>(modal);
      QVERIFY(dialog);
      QCOMPARE(dialog->windowTitle(), QStringLiteral("Select Export Definition"));
      dialog->names()->setEditText(QStringLiteral("  Numbers "));
      dialog->all_companies()->click();
      ModalDriver::Button(dialog, QStringLiteral("OK"))->click();
    });
    window.button(QStringLiteral("Save As"))->click();
    QVERIFY(driver.done());
    QCOMPARE(window.definition_box()->text(),
             QStringLiteral("Current Definition: Numbers\r\n\r\nDefined for All Companies"));
    QCOMPARE(ListDefinitions(context_.installation_folder + kGlobalExportFile),
             std::vector<std::string>{"Numbers"});

    QString told;
    driver.Then([&](QWidget* box) {
      told = qobject_cast<QMessageBox*>(box)->text();
      qobject_cast<QDialog*>(box)->accept();
    });
    window.file_name_box()->clear();
    QTest::keyClicks(window.file_name_box(), QStringLiteral(" "));
    window.button(QStringLiteral("Export"))->click();
    QVERIFY(driver.done());
    QCOMPARE(told, QString::fromLatin1(kNoExportFileName));
    QVERIFY(window.isVisible());
    QVERIFY(!window.exported());
  }
};

}  // namespace nv

QTEST_MAIN(nv::ExportDefinitionsWindowTest)
#include "export_definitions_window_test.moc"
