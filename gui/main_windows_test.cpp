#include <QDir>
#include <QMessageBox>
#include <QTest>

#include "gui/export_mainwin.h"
#include "gui/import_app.h"
#include "gui/import_mainwin.h"
#include "gui/modal_driver_testing.h"

Q_DECLARE_METATYPE(nv::ProgramMode)

namespace nv {
namespace {

using testing::ModalDriver;

struct ButtonRow {
  int id;
  const char* text;
  QRect geometry;
};

}  // namespace

class MainWindowsTest : public QObject {
  Q_OBJECT

 private:
  // An application whose window is set up, with an empty installation.
  static std::unique_ptr<TImportApp> MakeApp(ProgramMode mode, long label_code = 0) {
    RunParameters run;
    run.product_name = "NORVANE";
    run.label_code = label_code;
    auto app = std::make_unique<TImportApp>(run, "");
    if (!app->SetupMainWindow(mode)) return nullptr;
    app->set_context(InstallationContext{});
    app->frame()->show();
    return app;
  }

  static void CheckButtons(const MainClientWindow& client, const std::vector<ButtonRow>& rows) {
    QCOMPARE(client.buttons().size(), static_cast<qsizetype>(rows.size()));
    for (size_t i = 0; i < rows.size(); ++i) {
      const QPushButton* b = client.buttons()[static_cast<qsizetype>(i)];
      QCOMPARE(b->property("commandId").toInt(), rows[i].id);
      QCOMPARE(b->objectName(), QStringLiteral("button%1").arg(rows[i].id));
      QCOMPARE(b->text(), QString::fromLatin1(rows[i].text));
      QCOMPARE(b->geometry(), rows[i].geometry);
      QCOMPARE(b->isDefault(), rows[i].id == kCloseCommand);
      QCOMPARE(client.button(rows[i].id), b);
    }
  }

 private Q_SLOTS:
  void ImportWindowLayout() {
    auto app = MakeApp(ProgramMode::kImport);
    QVERIFY(app);
    QCOMPARE(app->frame()->windowTitle(), QStringLiteral("KEL Fixed Assets -- Import"));
    QCOMPARE(app->frame()->size(), QSize(650, 130));
    QCOMPARE(app->client()->width(), 650);
    CheckButtons(*app->client(), {
                                     {102, "Best PC/FAS", QRect(10, 10, 160, 25)},
                                     {103, "Best FAS1000 or FAS2000", QRect(10, 45, 160, 25)},
                                     {104, "Best FAS for Windows", QRect(10, 80, 160, 25)},
                                     {105, "AICPA Depreciation", QRect(190, 10, 160, 25)},
                                     {107, "BNA Next Dimension", QRect(190, 45, 160, 25)},
                                     {106, "NORVANE Text Format", QRect(190, 80, 160, 25)},
                                     {108, "MBA Software", QRect(370, 10, 160, 25)},
                                     {1, "Close", QRect(565, 10, 75, 25)},
                                     {9, "Help", QRect(565, 45, 75, 25)},
                                 });
  }

  void ExportWindowLayout() {
    auto app = MakeApp(ProgramMode::kExport);
    QVERIFY(app);
    QCOMPARE(app->frame()->windowTitle(), QStringLiteral("Export Fixed Assets"));
    QCOMPARE(app->frame()->size(), QSize(300, 200));
    CheckButtons(*app->client(), {
                                     {205, "Export All Asset Data Fields", QRect(50, 100, 200, 25)},
                                     {204, "Export Selected Asset Data", QRect(50, 135, 200, 25)},
                                     {1, "Close", QRect(215, 10, 75, 25)},
                                     {9, "Help", QRect(215, 45, 75, 25)},
                                 });
  }

  void FramesCentredRoundingTowardZero() {
    QCOMPARE(TImportApp::CentredOrigin(QSize(1024, 768), QSize(650, 130)), QPoint(187, 319));
    QCOMPARE(TImportApp::CentredOrigin(QSize(1025, 769), QSize(300, 200)), QPoint(362, 284));
    // A screen smaller than the frame: negative halves round toward zero too.
    QCOMPARE(TImportApp::CentredOrigin(QSize(640, 127), QSize(650, 130)), QPoint(-5, -1));
    auto app = MakeApp(ProgramMode::kImport);
    const QSize screen = QGuiApplication::primaryScreen()->geometry().size();
    QCOMPARE(app->frame()->pos(), TImportApp::CentredOrigin(screen, QSize(650, 130)));
  }

  void NoWindowWithoutMode() {
    TImportApp app(RunParameters{}, "");
    QVERIFY(!app.SetupMainWindow(ProgramMode::kNone));
    QVERIFY(!app.frame());
  }

  void BannerByLabelCode_data() {
    QTest::addColumn<long>("label_code");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("gold");
    QTest::newRow("0") << 0L << "KEL Fixed Assets Import" << true;
    QTest::newRow("1") << 1L << "KEL Fixed Assets Import" << true;
    QTest::newRow("2") << 2L << "Asset Import Utility" << false;
    QTest::newRow("3") << 3L << "Asset Import Utility" << false;
    QTest::newRow("4") << 4L << "Fixed Asset Import" << false;
    QTest::newRow("5") << 5L << "Fixed Asset Import" << false;
    QTest::newRow("6") << 6L << "Fixed Asset Import" << false;
    QTest::newRow("7") << 7L << "KEL Fixed Assets Import" << true;
    QTest::newRow("-1") << -1L << "KEL Fixed Assets Import" << true;
  }
  void BannerByLabelCode() {
    QFETCH(long, label_code);
    QFETCH(QString, text);
    QFETCH(bool, gold);
    auto app = MakeApp(ProgramMode::kImport, label_code);
    auto* client = qobject_cast<NVImportMainwin*>(app->client());
    QVERIFY(client);
    QCOMPARE(client->bannerText(), text);
    const QColor gold_colour(213, 172, 49);
    QCOMPARE(client->bannerColor() == gold_colour, gold);
    if (!gold) QVERIFY(client->bannerColor().lightness() < 100);  // neutral and dark
    QVERIFY(QTest::qWaitForWindowExposed(app->frame()));

    // The whole banner reads: inside the window, clear of every button and of the
    // version text, in a size a person reads without effort.
    const QRect letters = client->BannerRect();
    QVERIFY(client->rect().contains(letters));
    for (const QPushButton* b : client->buttons()) QVERIFY(!b->geometry().intersects(letters));
    QVERIFY(!client->VersionRect().intersects(letters));
    QVERIFY(client->BannerFont().pixelSize() <= 50);
    QVERIFY(client->BannerFont().pixelSize() >= 16);
    // And it is painted there and nowhere else.
    const QImage image = client->grab().toImage();
    int inside = 0, outside = 0;
    for (int y = 0; y < image.height(); ++y) {
      for (int x = 0; x < image.width(); ++x) {
        if (image.pixelColor(x, y) != client->bannerColor()) continue;
        ++(letters.contains(x, y) ? inside : outside);
      }
    }
    QVERIFY(inside > 50);
    QCOMPARE(outside, 0);
  }

  // Writes the import window as a person sees it to gui/screenshots/ in the build tree.
  void ImportWindowScreenshot() {
    const QString folder = QCoreApplication::applicationDirPath() + QStringLiteral("/screenshots");
    QVERIFY(QDir().mkpath(folder));
    for (long label_code : {0L, 5L, 2L}) {
      auto app = MakeApp(ProgramMode::kImport, label_code);
      QVERIFY(QTest::qWaitForWindowExposed(app->frame()));
      QVERIFY(app->frame()->grab().save(
          folder + QStringLiteral("/import_window_label%1.png").arg(label_code)));
    }
  }

  void CloseEndsTheWindow_data() {
    QTest::addColumn<ProgramMode>("mode");
    QTest::newRow("import") << ProgramMode::kImport;
    QTest::newRow("export") << ProgramMode::kExport;
  }
  void CloseEndsTheWindow() {
    QFETCH(ProgramMode, mode);
    auto app = MakeApp(mode);
    QTest::mouseClick(app->client()->button(kCloseCommand), Qt::LeftButton);
    QVERIFY(!app->frame()->isVisible());
    // No window is left visible, so the application's event loop ends.
    for (QWidget* w : QApplication::topLevelWidgets()) QVERIFY(!w->isVisible());
  }

  void ExportAllAnsweredNoKeepsButtons() {
    auto app = MakeApp(ProgramMode::kExport);
    QString question;
    ModalDriver driver;
    driver.Then([&](QWidget* modal) {
      question = qobject_cast<QMessageBox*>(modal)->text();
      ModalDriver::Button(modal, "&No")->click();
    });
    QTest::mouseClick(app->client()->button(205), Qt::LeftButton);
    QCOMPARE(
        question,
        QStringLiteral("This export format only supports 5 user definable fields.\n\nContinue?"));
    QVERIFY(app->client()->button(204)->isEnabled());
    QVERIFY(app->client()->button(205)->isEnabled());
    QVERIFY(app->frame()->isVisible());
  }

  void ExportAllAnsweredYesGreysAndCloses() {
    auto app = MakeApp(ProgramMode::kExport);
    bool grey_during_export = false;
    ModalDriver driver;
    driver.Then(ModalDriver::Click("&Yes"));
    // Every export asks or tells something; the buttons are grey by then. The rest is closed.
    driver.Then([&](QWidget* modal) {
      grey_during_export =
          !app->client()->button(204)->isEnabled() && !app->client()->button(205)->isEnabled();
      if (auto* dialog = qobject_cast<QDialog*>(modal)) dialog->reject();
    });
    driver.RejectRest();
    QTest::mouseClick(app->client()->button(205), Qt::LeftButton);
    QVERIFY(driver.done());
    QVERIFY(grey_during_export);
    QVERIFY(!app->client()->button(204)->isEnabled());
    QVERIFY(!app->client()->button(205)->isEnabled());
    QVERIFY(app->client()->button(kCloseCommand)->isEnabled());
    QVERIFY(!app->frame()->isVisible());
  }

  void HelpButtonOpensTopicOrSaysItIsMissing() {
    auto app = MakeApp(ProgramMode::kExport);
    QString text;
    ModalDriver driver;
    driver.Then([&](QWidget* modal) {
      text = qobject_cast<QMessageBox*>(modal)->text();
      ModalDriver::Button(modal, "OK")->click();
    });
    QTest::mouseClick(app->client()->button(kHelpCommand), Qt::LeftButton);
    QVERIFY(text.contains("nvsy0xnp.html"));
    QVERIFY(app->frame()->isVisible());
  }
};

}  // namespace nv

QTEST_MAIN(nv::MainWindowsTest)
#include "main_windows_test.moc"
