#include "gui/permissions_window.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTemporaryDir>
#include <QTest>

#include "gui/modal_driver_testing.h"
#include "ui/scripted_ui.h"

namespace nv {
namespace {

using testing::ModalDriver;

QStringList Items(const QComboBox* combo) {
  QStringList items;
  for (int i = 0; i < combo->count(); ++i) items.append(combo->itemText(i));
  return items;
}

// The id of the checked radio button, 0 for none; -1 when the enabled state disagrees.
int CheckedRadio(const PermissionsWindow& window) {
  int checked = 0;
  for (int id = kRadioNoAccess; id <= kRadioFullAccess; ++id) {
    if (window.radio(id)->isChecked()) checked = id;
  }
  for (int id = kRadioNoAccess; id <= kRadioFullAccess; ++id) {
    if (window.radio(id)->isEnabled() != (checked != 0)) return -1;
  }
  return checked;
}

void Retype(PermissionsWindow& window, const QString& text) {
  QLineEdit* edit = window.names()->lineEdit();
  edit->selectAll();
  if (text.isEmpty()) {
    QTest::keyClick(edit, Qt::Key_Backspace);
  } else {
    QTest::keyClicks(edit, text);
  }
}

}  // namespace

class PermissionsWindowTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void ShowsSortedEntriesAndSelectedLevel() {
    PermissionsDialogModel model("*:R|bob:F|ALICE:W", "JSMITH");
    ScriptedUi ui(AnswerScript{});
    PermissionsWindow window(model, ui);
    window.show();
    QCOMPARE(window.windowTitle(), QStringLiteral("Change User Permissions"));
    QCOMPARE(Items(window.names()), QStringList({"ALICE", "bob", "Default User (*)"}));
    QCOMPARE(window.names()->currentText(), QStringLiteral("ALICE"));
    QCOMPARE(CheckedRadio(window), kRadioReadWrite);
    QVERIFY(!window.add_button()->isEnabled());
    QVERIFY(window.remove_button()->isEnabled());

    // Choosing from the list with the keyboard selects the next entry.
    QTest::keyClick(window.names()->lineEdit(), Qt::Key_Down);
    QCOMPARE(window.names()->currentText(), QStringLiteral("bob"));
    QCOMPARE(model.selection(), 1);
    QCOMPARE(CheckedRadio(window), kRadioFullAccess);
    QTest::keyClick(window.names()->lineEdit(), Qt::Key_Down);
    QCOMPARE(CheckedRadio(window), kRadioReadOnly);
    QVERIFY(!window.remove_button()->isEnabled());  // the default user stays

    window.radio(kRadioNoAccess)->click();
    QCOMPARE(model.PermissionsText(), std::string("ALICE:W|bob:F|*:N"));
  }

  void TypingAddsAndRemoves() {
    PermissionsDialogModel model("*:R|BOB:F", "JSMITH");
    std::string errors;
    std::unique_ptr<ScriptedUi> script = ScriptedUi::FromString("yes\n", &errors);
    QVERIFY(script);
    ScriptedUi& ui = *script;
    PermissionsWindow window(model, ui);
    window.show();

    Retype(window, "Dave");
    QVERIFY(window.add_button()->isEnabled());
    QVERIFY(!window.remove_button()->isEnabled());
    QCOMPARE(CheckedRadio(window), 0);  // a new name has no level yet
    window.add_button()->click();
    QCOMPARE(Items(window.names()), QStringList({"BOB", "Dave", "Default User (*)"}));
    QCOMPARE(window.names()->currentIndex(), 1);
    QCOMPARE(window.names()->currentText(), QStringLiteral("Dave"));
    QVERIFY(!window.add_button()->isEnabled());
    QCOMPARE(CheckedRadio(window), kRadioReadOnly);  // the default user's level
    window.radio(kRadioFullAccess)->click();
    QCOMPARE(model.PermissionsText(), std::string("BOB:F|Dave:F|*:R"));

    Retype(window, "bob");
    QVERIFY(!window.add_button()->isEnabled());
    QCOMPARE(CheckedRadio(window), kRadioFullAccess);
    window.remove_button()->click();
    QCOMPARE(Items(window.names()), QStringList({"Dave", "Default User (*)"}));
    QCOMPARE(window.names()->currentText(), QString());
    QCOMPARE(CheckedRadio(window), 0);
    QCOMPARE(model.PermissionsText(), std::string("Dave:F|*:R"));

    Retype(window, "");
    QVERIFY(!window.add_button()->isEnabled());
    window.help_button()->click();
    QVERIFY(ui.transcript().find("text=\"Remove user BOB?") != std::string::npos);
    QVERIFY(ui.transcript().ends_with("help topic=\"nvsy0w6r.html\"\n"));
    QVERIFY(!ui.failed());
  }

  void RunnerWritesTheListBackOnClose() {
    QTemporaryDir dir;
    InstallationContext context;
    context.network_mode = true;
    context.user_name = "JSMITH";
    NvCompany company(context);
    company.SetLocation("ACME", dir.path().toStdString());
    company.record().permissions = "*:W|JSMITH:F";
    ScriptedUi ui(AnswerScript{});

    ModalDriver driver;
    driver.Then([](QWidget* modal) {
      auto* window = qobject_cast<PermissionsWindow*>(modal);
      QVERIFY(window);
      window->names()->lineEdit()->selectAll();
      QTest::keyClicks(window->names()->lineEdit(), "EVE");
      window->add_button()->click();
      window->radio(kRadioNoAccess)->click();
      window->close_button()->click();
    });
    QVERIFY(EditUserPermissions(company, kFullAccess, ui, QtPermissionsDialogRunner(ui, nullptr)));
    QVERIFY(driver.done());
    QCOMPARE(company.record().permissions, std::string("*:W|EVE:N|JSMITH:F"));
  }
};

}  // namespace nv

QTEST_MAIN(nv::PermissionsWindowTest)
#include "permissions_window_test.moc"
