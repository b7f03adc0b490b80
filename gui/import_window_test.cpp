// The import window's "Test import" check box and its undo button, driven as a person
// does: the box starts unticked and reaches the commands; the button asks for a company
// and restores its last import's backup.
#include <QCheckBox>
#include <QDir>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <filesystem>

#include "base/file_util.h"
#include "gui/choice_list_dialog.h"
#include "gui/import_app.h"
#include "gui/import_mainwin.h"
#include "gui/modal_driver_testing.h"
#include "import/frame/import_backup.h"
#include "import/frame/import_frame.h"
#include "store/asset/asset.h"
#include "store/company/company.h"
#include "ui/scripted_ui.h"

namespace nv {
namespace {

using testing::ModalDriver;

InstallationContext ContextIn(const std::string& folder) {
  InstallationContext ctx;
  ctx.run.product_name = "NORVANE";
  ctx.installation_folder = folder + "/";
  ctx.current.slot.data_path = folder + "/";
  ctx.user_name = "TESTER";
  return ctx;
}

// Company TINY, backed up as an import does and then given an asset.
bool MakeImportedCompany(const InstallationContext& ctx) {
  ScriptedUi ui{AnswerScript{}};
  NvCompany company(ctx);
  company.record().name = "Tiny Widgets";
  company.record().schedule_letters = "B";
  company.record().schedules = {{'B', "B", "Book"}};
  company.record().sort_order = "C";
  if (company.Create({"TINY", "Tiny Widgets"}, NvCompany::kOpenI1 | NvCompany::kOpenI2) != 0 ||
      !EnterIntoCompanyList(ctx, "TINY", "Tiny Widgets") ||
      company.Open("TINY", NvCompany::kOpenI1 | NvCompany::kOpenI2, ui) <= 0) {
    return false;
  }
  std::optional<std::string> backup = BackUpBeforeImport(company, ui);
  NvAsset asset;
  asset.Clear(company.record().schedule_letters);
  asset.number = NvAssetNo::Parse("7", company.record().asset_no_format);
  const bool added = backup && company.AddAsset(&asset) >= 0;
  if (company.Close() != 0 || !added) return false;
  return SettleImportBackup(*backup, company.folder(), "TINY");
}

}  // namespace

class ImportWindowTest : public QObject {
  Q_OBJECT

 private:
  std::unique_ptr<TImportApp> MakeApp(const InstallationContext& ctx) {
    RunParameters run;
    run.product_name = "NORVANE";
    auto app = std::make_unique<TImportApp>(run, "");
    if (!app->SetupMainWindow(ProgramMode::kImport)) return nullptr;
    app->set_context(ctx);
    app->frame()->show();
    return app;
  }

 private Q_SLOTS:
  void TestImportStartsUntickedAndReachesTheCommands() {
    auto app = MakeApp(InstallationContext{});
    auto* window = qobject_cast<NVImportMainwin*>(app->client());
    QVERIFY(window);
    QVERIFY(QTest::qWaitForWindowExposed(app->frame()));
    QCOMPARE(window->testImportBox()->text(), QStringLiteral("Test import"));
    QVERIFY(!window->testImportBox()->isChecked());
    QVERIFY(!window->state().test_import);
    QTest::mouseClick(window->testImportBox(), Qt::LeftButton, {},
                      window->testImportBox()->rect().center());
    QVERIFY(window->state().test_import);
    // Beside the importers' buttons, not over any of them or the banner.
    for (const QPushButton* button : window->buttons()) {
      QVERIFY(!button->geometry().intersects(window->testImportBox()->geometry()));
      QVERIFY(!button->geometry().intersects(window->undoButton()->geometry()));
    }
    QVERIFY(!window->BannerBand().intersects(window->undoButton()->geometry()));
    const QString folder = QCoreApplication::applicationDirPath() + QStringLiteral("/screenshots");
    QVERIFY(QDir().mkpath(folder));
    QVERIFY(app->frame()->grab().save(folder + QStringLiteral("/import_window_test_import.png")));
  }

  void UndoButtonRestoresTheChosenCompany() {
    char pattern[] = "/tmp/nv_gui_undo_XXXXXX";
    QVERIFY(::mkdtemp(pattern) != nullptr);
    const std::string dir = pattern;
    const InstallationContext ctx = ContextIn(dir);
    QVERIFY(MakeImportedCompany(ctx));
    const std::string backups = CompanyBackupsFolder(dir + "/", "TINY");
    const std::vector<std::string> made = ListCompanyBackups(backups);
    QCOMPARE(made.size(), size_t{1});
    const std::optional<std::string> before = ReadFileBytes(backups + made[0] + "/TINY.A");
    QVERIFY(before.has_value());

    auto app = MakeApp(ctx);
    auto* window = qobject_cast<NVImportMainwin*>(app->client());
    QStringList companies;
    QString done;
    ModalDriver driver;
    driver.Then([&](QWidget* modal) {
      auto* list = qobject_cast<ChoiceListDialog*>(modal);
      QVERIFY(list);
      for (int i = 0; i < list->list()->count(); ++i) companies << list->list()->item(i)->text();
      list->list()->setCurrentRow(0);
      list->accept();
    });
    driver.Then([&](QWidget* modal) {
      done = qobject_cast<QMessageBox*>(modal)->text();
      qobject_cast<QDialog*>(modal)->accept();
    });
    driver.RejectRest();
    QTest::mouseClick(window->undoButton(), Qt::LeftButton);
    QVERIFY(driver.done());
    QCOMPARE(companies.size(), 1);
    QVERIFY(companies[0].contains(QStringLiteral("TINY")));
    QVERIFY2(done.startsWith(QStringLiteral("Company TINY is restored")), qPrintable(done));
    QCOMPARE(ReadFileBytes(dir + "/TINY.A"), before);
    QVERIFY(ListCompanyBackups(backups).empty());
    std::filesystem::remove_all(dir);
  }
};

}  // namespace nv

QTEST_MAIN(nv::ImportWindowTest)
#include "import_window_test.moc"
