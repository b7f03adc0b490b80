#include "gui/company_screen_window.h"

#include <QCoreApplication>
#include <QDir>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>

#include "gui/build_screen.h"
#include "gui/code_list_window.h"
#include "gui/modal_driver_testing.h"
#include "gui/qt_ui.h"
#include "store/codes/user_fields.h"
#include "ui/scripted_ui.h"

namespace nv {
namespace {

using testing::ModalDriver;

// Screenshots go into the build tree beside the test, for a person to look at.
void SaveScreenshot(QWidget& window, const QString& name) {
  const QString folder = QCoreApplication::applicationDirPath() + QStringLiteral("/screenshots");
  QDir().mkpath(folder);
  QVERIFY(window.grab().save(folder + QLatin1Char('/') + name));
}

QLineEdit* Edit(const CompanyScreenWindow& window, const char* field) {
  return qobject_cast<QLineEdit*>(window.controls()->Control(CompanyScreen::ControlId(field)));
}

QRadioButton* Radio(QWidget& window, const QString& caption) {
  for (QRadioButton* radio : window.findChildren<QRadioButton*>()) {
    if (radio->text() == caption) return radio;
  }
  return nullptr;
}

// Types into a field and leaves it, as a person does.
void Type(QLineEdit* edit, const QString& text) {
  edit->setFocus();
  edit->selectAll();
  QTest::keyClicks(edit, text);
  QTest::keyClick(edit, Qt::Key_Tab);
}

std::unique_ptr<ScriptedUi> Script(const char* text) {
  std::string errors;
  return ScriptedUi::FromString(text, &errors);
}

}  // namespace

class CompanyScreenWindowTest : public QObject {
  Q_OBJECT

 private:
  // A company about to be made in a folder of its own.
  void Setup() {
    context_.run.product_name = "NORVANE";
    context_.installation_folder = dir_.path().toStdString() + "/";
    context_.current.slot.data_path = context_.installation_folder;
    context_.user_name = "JSMITH";
    company_ = std::make_unique<NvCompany>(context_);
    company_->SetLocation("ACME", context_.installation_folder);
    NvCompanyRecord& r = company_->record();
    r.number = "ACME";
    r.schedule_letters = "BT";
    r.schedules = {{'B', "B", "Book"}, {'T', "T", "Tax"}};
    r.sort_order = "ACL";
    r.business_category = 4;
  }

  QTemporaryDir dir_;
  InstallationContext context_;
  std::unique_ptr<NvCompany> company_;

 private Q_SLOTS:
  void init() { Setup(); }

  void FilledAndSaved() {
    auto ui = Script("yes\n");
    QVERIFY(ui);
    CompanyScreen screen(*company_, true, *ui);
    CompanyScreenWindow window(screen, *ui);
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QCOMPARE(Edit(window, "number")->text(), QStringLiteral("ACME"));
    QVERIFY(Edit(window, "number")->isReadOnly());

    Type(Edit(window, "name"), QStringLiteral("Acme Tools & Dies"));
    Type(Edit(window, "ein"), QStringLiteral("12-3456789"));
    Type(Edit(window, "last_closed"), QStringLiteral("12/31/2024"));
    QCOMPARE(Edit(window, "current_year_end")->text(), QStringLiteral("12/31/2025"));
    Type(Edit(window, "schedule_letters"), QStringLiteral("btc"));
    QCOMPARE(Edit(window, "schedule_letters")->text(), QStringLiteral("BTAC"));  // ACE wants AMT
    Type(Edit(window, "asset_number_format.main"), QStringLiteral("11"));
    QCOMPARE(Edit(window, "asset_number_format.main")->text().trimmed(), QStringLiteral("6"));
    Type(Edit(window, "asset_number_format.main"), QStringLiteral("8"));
    Radio(window, QStringLiteral("D-Detailed"))->click();
    Radio(window, QStringLiteral("L-Locations only"))->click();
    SaveScreenshot(window, QStringLiteral("company_screen.png"));

    window.save_button()->click();
    QCOMPARE(window.action(), kCompanyScreenSave);
    const NvCompanyRecord& saved = company_->record();
    QCOMPARE(saved.name, std::string("Acme Tools & Dies"));
    QCOMPARE(saved.current_year_end, (Date{12, 31, 2025}));
    QCOMPARE(saved.schedule_letters, std::string("BTAC"));
    QCOMPARE(saved.asset_no_format.main_length, 8);
    QCOMPARE(saved.logging_flags, kLoggingDetailed);
    QCOMPARE(saved.global_loc_cat, 'L');
    QVERIFY(ui->transcript().find("Asset Number must be at least 3") != std::string::npos);
    QVERIFY(!ui->failed());
  }

  void UserFieldsAndTheirValues() {
    auto ui = Script("");
    QVERIFY(ui);
    CompanyScreen screen(*company_, true, *ui);
    QtCompanyScreenWindows windows(*ui, nullptr);
    // A driver's steps do not run while one of its steps waits in a window of its own, so
    // the values window opened from the user-fields window has a driver of its own.
    ModalDriver driver;
    driver.Then([](QWidget* modal) {
      auto* fields = qobject_cast<UserFieldsWindow*>(modal);
      QVERIFY(fields);
      QVERIFY(QTest::qWaitForWindowActive(fields));
      Type(qobject_cast<QLineEdit*>(fields->controls()->Control(UserFieldsScreen::kNameId + 1)),
           QStringLiteral("Color"));
      SaveScreenshot(*fields, QStringLiteral("user_fields.png"));
      ModalDriver values_driver;
      values_driver.Then([](QWidget* inner) {
        auto* values = qobject_cast<CodeListWindow*>(inner);
        QVERIFY(values);
        QCOMPARE(values->windowTitle(), QStringLiteral("Values"));
        values->table()->item(0, 0)->setText(QStringLiteral("Red"));
        values->ok_button()->click();
      });
      values_driver.RejectRest();
      qobject_cast<QPushButton*>(fields->controls()->Control(UserFieldsScreen::kValuesId + 1))
          ->click();
      QVERIFY(values_driver.done());
      fields->ok_button()->click();
    });
    driver.RejectRest();
    QVERIFY(screen.Press("user_fields", windows));
    QVERIFY(driver.done());
    QCOMPARE(screen.FieldText("user_fields.1.name"), std::string("Color"));
    // A company not yet made keeps the values until it is.
    QVERIFY(company_->Create({"ACME", ""}, NvCompany::kOpenI1 | NvCompany::kOpenI2) == 0);
    QVERIFY(screen.WriteSettings(*company_));
    std::vector<std::string> values;
    QCOMPARE(LoadUserFieldValues(company_->SettingsPath(), 1, &values), 1);
  }

  void RunThroughTheQtUi() {
    QtUi ui("", nullptr);
    CompanyScreen screen(*company_, true, ui);
    ModalDriver driver;
    driver.Then([](QWidget* modal) {
      auto* window = qobject_cast<CompanyScreenWindow*>(modal);
      QVERIFY(window);
      QVERIFY(QTest::qWaitForWindowActive(window));
      Type(Edit(*window, "name"), QStringLiteral("Acme"));
      ModalDriver question;
      question.Then(ModalDriver::Click(QStringLiteral("&No")));  // "Save this company?"
      question.RejectRest();
      window->save_button()->click();
      QVERIFY(question.done());
      window->cancel_button()->click();
    });
    driver.RejectRest();
    QCOMPARE(ui.RunCompanyScreen(screen), kCompanyScreenCancelled);
    QVERIFY(driver.done());
    QCOMPARE(company_->record().name, std::string());
  }
};

}  // namespace nv

QTEST_MAIN(nv::CompanyScreenWindowTest)
#include "company_screen_window_test.moc"
