#include "gui/bna_dialog_window.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeWidget>

#include "base/file_util.h"
#include "base/profile.h"
#include "gui/import_source_window.h"
#include "gui/modal_driver_testing.h"
#include "gui/qt_ui.h"
#include "ui/scripted_ui.h"

namespace nv {
namespace {

using testing::ModalDriver;

constexpr char kProfile[] =
    "[Parameters]\r\n"
    "Data CheckBoxes=*G\r\n"
    "[conversion definitions]\r\n"
    "Asset No.=A,ENTIRE,0,\r\n"
    "Description=B,ENTIRE,0,\r\n"
    "Basis=,DEFAULT,0,\r\n"
    "Basis, Tax=D,ENTIRE,0,\r\n";

constexpr char kReport[] =
    "* Fixed asset listing\n"
    "1001\tOak desk\t1250.00\t01/15/2023\n"
    "1002\tChair\t180.00\t02/01/2023\n"
    "1003\tLaser printer\t499.99\t03/20/2023\n";

template <typename T>
T* ControlOf(const BnaDialogWindow& window, int id) {
  return qobject_cast<T*>(window.Control(id));
}

}  // namespace

class BnaDialogWindowTest : public QObject {
  Q_OBJECT

 private:
  QTemporaryDir dir_;
  InstallationContext context_;
  std::string settings_file_;

  std::string File(const char* name) const { return dir_.path().toStdString() + "/" + name; }
  std::string ReadProfile(const char* section, const char* key) const {
    return ReadProfileString(File("@BNA_ND.IMP"), section, key, "<none>", 500);
  }

 private Q_SLOTS:
  void init() {
    context_.installation_folder = dir_.path().toStdString() + "/";
    context_.current.slot.data_path = context_.installation_folder;
    context_.user_name = "ANNA";
    settings_file_ = File("KELNVWIN.INI");
    QVERIFY(WriteFileAtomically(File("@BNA_ND.IMP"), kProfile));
    QVERIFY(WriteFileAtomically(File("report.txt"), kReport));
  }

  // Choose the report, click column C of the grid for Basis, make it "Copy right" 3 and
  // import.
  void ChooseClickStoreAndImport() {
    std::string errors;
    auto ui = ScriptedUi::FromString("file " + File("report.txt") + "\n", &errors);
    QVERIFY(ui);
    BnaImportState state;
    state.profiles = StartBnaProfiles(context_.installation_folder, "");
    int imports = 0;
    BnaNdDialog dialog(state, context_, settings_file_, *ui, [&] { ++imports; });
    BnaDialogWindow window(dialog);
    window.resize(1000, 520);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QCOMPARE(window.windowTitle(), QStringLiteral("BNA Next Dimension import"));
    QCOMPARE(ControlOf<QLabel>(window, 483)->text(), QStringLiteral("@BNA_ND.IMP"));
    QVERIFY(ControlOf<QRadioButton>(window, 555)->isChecked());
    QVERIFY(ControlOf<QCheckBox>(window, 134)->isChecked());
    QVERIFY(!ControlOf<QCheckBox>(window, 132)->isChecked());
    QCOMPARE(window.list()->topLevelItemCount(), 3);

    ControlOf<QPushButton>(window, 201)->click();
    QCOMPARE(dialog.grid().measure().data_lines, 3);
    QCOMPARE(window.grid()->verticalBar()->maximum(), 2);

    QTreeWidgetItem* basis = window.list()->topLevelItem(2);
    QCOMPARE(basis->text(0), QStringLiteral("Basis"));
    QTest::mouseClick(window.list()->viewport(), Qt::LeftButton, {},
                      window.list()->visualItemRect(basis).center());
    QCOMPARE(ControlOf<QLabel>(window, 482)->text(), QStringLiteral("Basis"));
    QVERIFY(ControlOf<QRadioButton>(window, 118)->isChecked());

    // Into the middle of column C, on the second line.
    ImportSourceWindow* grid = window.grid();
    const int x = grid->margin() + (dialog.grid().ColumnStart(2) + 2) * grid->cell_width();
    QTest::mouseClick(grid, Qt::LeftButton, {}, QPoint(x, grid->row_height() * 2 + 3));
    QCOMPARE(ControlOf<QLineEdit>(window, 126)->text(), QStringLiteral("C"));

    ControlOf<QRadioButton>(window, 115)->click();
    QLineEdit* count = ControlOf<QLineEdit>(window, 121);
    count->setFocus();
    QTest::keyClicks(count, QStringLiteral("3"));
    QTest::keyClick(count, Qt::Key_Tab);
    QCOMPARE(basis->text(1), QStringLiteral("Rt 3--C"));

    // "Do not copy" holds the method buttons off.
    ControlOf<QCheckBox>(window, 113)->click();
    QVERIFY(!ControlOf<QRadioButton>(window, 114)->isEnabled());
    QCOMPARE(basis->text(1), QStringLiteral("No Copy--C"));
    ControlOf<QCheckBox>(window, 113)->click();
    QVERIFY(ControlOf<QRadioButton>(window, 114)->isEnabled());

    const QString folder = QCoreApplication::applicationDirPath() + QStringLiteral("/screenshots");
    QDir().mkpath(folder);
    QVERIFY(window.grab().save(folder + QStringLiteral("/bna_dialog.png")));

    ControlOf<QPushButton>(window, 203)->click();
    QCOMPARE(imports, 1);

    ControlOf<QPushButton>(window, 2)->click();
    QCOMPARE(ReadProfile("conversion definitions", "Basis"), std::string("C,RIGHT,3,"));
    QCOMPARE(ReadProfile("Parameters", "source file"), File("report.txt"));
    QVERIFY(!ui->failed());
  }

  // Through the Qt Ui: the missing Asset No. column is told in a box, a group box refills
  // the list, and Escape closes the window, saving the profile.
  void MissingAssetColumnIsToldAndEscapeSaves() {
    QVERIFY(WriteFileAtomically(File("@BNA_ND.IMP"),
                                "[conversion definitions]\r\nAsset No.=,ENTIRE,0,\r\n"
                                "Basis, Tax=D,ENTIRE,0,\r\n"));
    QtUi ui("", nullptr);
    BnaImportState state;
    state.profiles = StartBnaProfiles(context_.installation_folder, "");
    int imports = 0;
    BnaNdDialog dialog(state, context_, settings_file_, ui, [&] { ++imports; });
    QString told;
    ModalDriver driver;
    driver.Then([&](QWidget* modal) {
      auto* window = qobject_cast<BnaDialogWindow*>(modal);
      QVERIFY(window);
      QCOMPARE(window->list()->topLevelItemCount(), 1);
      ControlOf<QCheckBox>(*window, 132)->click();
      QCOMPARE(window->list()->topLevelItemCount(), 2);
      ModalDriver message;
      message.Then([&](QWidget* box) {
        told = box->windowTitle() + QStringLiteral(": ") + qobject_cast<QMessageBox*>(box)->text();
        qobject_cast<QDialog*>(box)->accept();
      });
      ControlOf<QPushButton>(*window, 203)->click();
      QVERIFY(message.done());
      QTest::keyClick(window, Qt::Key_Escape);
    });
    driver.RejectRest();
    ui.RunBnaDialog(dialog);
    QVERIFY(driver.done());
    QCOMPARE(told, QStringLiteral("Error: You must define the Asset No. column."));
    QCOMPARE(imports, 0);
    QCOMPARE(ReadProfile("Parameters", "Data CheckBoxes"), std::string("*T"));
    QCOMPARE(ReadProfileString(settings_file_, "User ANNA", "Import Profile", "", 500),
             std::string("@BNA_ND.IMP"));
  }
};

}  // namespace nv

QTEST_MAIN(nv::BnaDialogWindowTest)
#include "bna_dialog_window_test.moc"
