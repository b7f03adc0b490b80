#include "gui/text_file_screen_window.h"

#include <QCoreApplication>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

#include "gui/build_screen.h"
#include "gui/modal_driver_testing.h"
#include "gui/qt_ui.h"
#include "store/company/master_file.h"
#include "ui/scripted_ui.h"

namespace nv {
namespace {

using testing::ModalDriver;

QLineEdit* Edit(const TextFileScreenWindow& window, const char* field) {
  return qobject_cast<QLineEdit*>(window.controls()->Control(TextFileScreen::ControlId(field)));
}

QPushButton* Button(const TextFileScreenWindow& window, const char* button) {
  return qobject_cast<QPushButton*>(window.controls()->Control(TextFileScreen::ControlId(button)));
}

// Types into a field and leaves it, as a person does.
void Type(QLineEdit* edit, const QString& text) {
  edit->setFocus();
  edit->selectAll();
  QTest::keyClicks(edit, text);
  QTest::keyClick(edit, Qt::Key_Tab);
}

}  // namespace

class TextFileScreenWindowTest : public QObject {
  Q_OBJECT

 private:
  QTemporaryDir dir_;
  InstallationContext context_;

 private Q_SLOTS:
  // An installation whose company list holds ACME.
  void initTestCase() {
    context_.installation_folder = dir_.path().toStdString() + "/";
    context_.current.slot.data_path = context_.installation_folder;
    MasterFile master;
    master.companies = {{"ACME", "Acme Tools"}};
    QVERIFY(WriteMasterFile(context_.data_directory(), master) == MasterFileStatus::kOk);
  }

  void TypedAndCreated() {
    std::string errors;
    auto ui = ScriptedUi::FromString("", &errors);
    TextFileScreen screen(context_, {context_.data_directory(), "", "", ""}, *ui);
    TextFileScreenWindow window(screen, *ui);
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QCOMPARE(windowTitleOf(window), QStringLiteral("Create Text File for Export"));

    Type(Edit(window, "company_number"), QStringLiteral("acme"));
    QCOMPARE(Edit(window, "company_number")->text(), QStringLiteral("ACME"));
    QCOMPARE(Edit(window, "file_name")->text(), QStringLiteral("ACME.DBS"));
    bool name_shown = false;
    for (QLabel* label : window.findChildren<QLabel*>()) {
      name_shown = name_shown || label->text() == QStringLiteral("Acme Tools");
    }
    QVERIFY(name_shown);
    Edit(window, "file_name")->setFocus();
    Edit(window, "file_name")->selectAll();
    QTest::keyClicks(Edit(window, "file_name"), QStringLiteral("acme.txt"));  // Create commits it
    const QString folder = QCoreApplication::applicationDirPath() + QStringLiteral("/screenshots");
    QDir().mkpath(folder);
    QVERIFY(window.grab().save(folder + QStringLiteral("/text_file_screen.png")));

    Button(window, "create")->click();
    QVERIFY(window.create());
    QCOMPARE(screen.request().file_name, std::string("acme.txt"));
    QVERIFY(!ui->failed());
  }

  void RefusedValueStaysAndEscapeCloses() {
    QtUi ui("", nullptr);
    TextFileScreen screen(context_, {context_.data_directory(), "ACME", "", ""}, ui);
    ModalDriver driver;
    driver.Then([](QWidget* modal) {
      auto* window = qobject_cast<TextFileScreenWindow*>(modal);
      QVERIFY(window);
      QVERIFY(QTest::qWaitForWindowActive(window));
      QString told;
      ModalDriver message;
      message.Then([&](QWidget* box) {
        told = qobject_cast<QMessageBox*>(box)->text();
        qobject_cast<QDialog*>(box)->accept();
      });
      Type(Edit(*window, "company_number"), QStringLiteral("ZZZ"));
      QVERIFY(message.done());
      QCOMPARE(told, QStringLiteral("Company not found."));
      QCOMPARE(Edit(*window, "company_number")->text(), QStringLiteral("ACME"));
      QTest::keyClick(window, Qt::Key_Escape);
    });
    driver.RejectRest();
    QVERIFY(!ui.RunTextFileScreen(screen));
    QVERIFY(driver.done());
  }

 private:
  static QString windowTitleOf(const QWidget& window) { return window.windowTitle(); }
};

}  // namespace nv

QTEST_MAIN(nv::TextFileScreenWindowTest)
#include "text_file_screen_window_test.moc"
