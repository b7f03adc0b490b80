#include "gui/schedule_definitions_window.h"

#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QTemporaryDir>
#include <QTest>
#include <memory>

#include "base/file_util.h"
#include "gui/modal_driver_testing.h"
#include "store/company/company.h"
#include "ui/scripted_ui.h"

namespace nv {
namespace {

using testing::ModalDriver;

// A company using Book and Tax in a temporary installation, with a scripted Ui for the
// editor's questions.
struct Installation {
  explicit Installation(const char* answers) {
    std::string errors;
    ui = ScriptedUi::FromString(answers, &errors);
    context.installation_folder = dir.path().toStdString() + "/";
    context.current.slot.data_path = context.installation_folder;
    company = std::make_unique<NvCompany>(context);
    company->SetLocation("CO1", context.current.slot.data_path);
    company->record().schedules = {{'B', "B", "Book"}, {'T', "T", "Tax"}};
    company->record().schedule_letters = "BT";
    list = LoadScheduleDefinitions(company->Schedules(), kAllScheduleSources);
  }

  std::string InstallationFile() const {
    return ReadFileBytes(context.installation_folder + "KELNVWIN.INI").value_or("<none>");
  }

  QTemporaryDir dir;
  InstallationContext context;
  std::unique_ptr<NvCompany> company;
  ScheduleDefinitionList list;
  std::unique_ptr<ScriptedUi> ui;
};

// The editor over the installation's definitions, and its window shown.
struct Shown {
  explicit Shown(const char* answers)
      : inst(answers),
        editor(inst.company->Schedules(), inst.list, "BT", true, *inst.ui),
        window(editor, nullptr) {
    window.show();
  }
  Installation inst;
  DlgEdScheduleDefinitions editor;
  ScheduleDefinitionsWindow window;
};

void ClickItem(QListWidget* list, int row) {
  QListWidgetItem* item = list->item(row);
  list->scrollToItem(item);
  QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(item).center());
}

int TypeRow(QListWidget* types, const QString& text) {
  const QList<QListWidgetItem*> found = types->findItems(text, Qt::MatchExactly);
  return found.isEmpty() ? -1 : types->row(found.first());
}

}  // namespace

class ScheduleDefinitionsWindowTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void ControlsAndColumns() {
    Installation inst("");
    DlgEdScheduleDefinitions editor(inst.company->Schedules(), inst.list, "BT", true, *inst.ui);
    ScheduleDefinitionsWindow window(editor, nullptr);

    const QRect line(0, 40, 400, 16);
    QCOMPARE(sdefRowDelegate::ColumnRect(line, 0), QRect(10, 40, 25, 16));
    QCOMPARE(sdefRowDelegate::ColumnRect(line, 1), QRect(35, 40, 65, 16));
    QCOMPARE(sdefRowDelegate::ColumnRect(line, 2), QRect(100, 40, 80, 16));
    QCOMPARE(sdefRowDelegate::ColumnRect(line, 3), QRect(180, 40, 220, 16));

    for (int id : {613, 608, 618, 626, 1, 9}) QVERIFY(window.button(id));
    // The type list shows the model's entries in the model's order.
    const std::vector<sdefTypeEntry>& types = DlgEdScheduleDefinitions::TypeEntries();
    QCOMPARE(window.types()->count(), static_cast<int>(types.size()));
    QCOMPARE(window.types()->item(57)->text().toStdString(), types[57].text);
    QCOMPARE(window.definitions()->count(), static_cast<int>(editor.rows().size()));
    QListWidgetItem* first = window.definitions()->item(0);
    QCOMPARE(first->data(sdefRowDelegate::kColumnRole + 1).toString(), QStringLiteral("Tax"));
    QCOMPARE(first->data(sdefRowDelegate::kColumnRole + 3).toString(),
             QStringLiteral("Standard Definition"));
    QCOMPARE(window.caption()->text(), QStringLiteral("New Definition"));
    QVERIFY(!window.description()->isEnabled());
    QVERIFY(!window.button(613)->isEnabled());
  }

  void NewSaveSelectAndClose() {
    Shown shown("yes\n");
    DlgEdScheduleDefinitions& editor = shown.editor;
    ScheduleDefinitionsWindow& window = shown.window;
    QVERIFY(QTest::qWaitForWindowExposed(&window));

    QTest::mouseClick(window.button(kSdefNew), Qt::LeftButton);
    QCOMPARE(editor.mode(), DlgEdScheduleDefinitions::Mode::kNew);
    QVERIFY(!window.definitions()->isEnabled());
    QVERIFY(!window.button(kSdefClose)->isEnabled());
    QVERIFY(window.letter()->isEnabled());
    QCOMPARE(window.description()->text(), QStringLiteral("New Defn"));
    QCOMPARE(window.types()->currentItem()->text(), QStringLiteral("Other"));

    QTest::keyClicks(window.letter(), "Q");
    QCOMPARE(editor.letter_text(), std::string("Q"));
    ClickItem(window.types(), TypeRow(window.types(), "State(NY)"));
    QCOMPARE(editor.type(), std::string("NY"));
    QCOMPARE(window.description()->text(), QStringLiteral("New York"));
    QTest::keyClick(window.description(), Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(window.description(), "Quarterly");
    QCOMPARE(editor.description(), std::string("Quarterly"));
    QTest::mouseClick(window.all_companies(), Qt::LeftButton);
    QVERIFY(!editor.this_company_only());

    QTest::mouseClick(window.button(kSdefSave), Qt::LeftButton);
    QCOMPARE(editor.mode(), DlgEdScheduleDefinitions::Mode::kSelected);
    QVERIFY(window.definitions()->isEnabled());
    QCOMPARE(window.caption()->text(), QStringLiteral("Selected Definition"));
    QCOMPARE(window.definitions()->count(), 7);
    QListWidgetItem* current = window.definitions()->currentItem();
    QVERIFY(current);
    QCOMPARE(current->data(sdefRowDelegate::kColumnRole).toString(), QStringLiteral("Q"));
    QCOMPARE(current->data(sdefRowDelegate::kColumnRole + 2).toString(),
             QStringLiteral("State(NY)"));

    // A standard definition shows its values with the fields locked.
    ClickItem(window.definitions(), 0);
    QCOMPARE(editor.selected_row(), std::optional<size_t>(0));
    QCOMPARE(window.description()->text(), QStringLiteral("Tax"));
    QVERIFY(!window.description()->isEnabled());
    QVERIFY(!window.button(kSdefDelete)->isEnabled());

    QTest::mouseClick(window.button(kSdefClose), Qt::LeftButton);
    QCOMPARE(window.result(), static_cast<int>(QDialog::Accepted));
    QVERIFY(editor.saved());
    QCOMPARE(shown.inst.InstallationFile(),
             std::string("[Schedule Definitions]\r\nQ=NY,Quarterly\r\n"));
    QVERIFY(!shown.inst.ui->failed());
  }

  void EscapeRunsTheCloseCommand() {
    Shown shown("cancel\nno\n");
    DlgEdScheduleDefinitions& editor = shown.editor;
    ScheduleDefinitionsWindow& window = shown.window;
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    ClickItem(window.definitions(), 0);
    QTest::mouseClick(window.button(kSdefNew), Qt::LeftButton);
    QTest::keyClicks(window.letter(), "Z");
    QTest::mouseClick(window.button(kSdefSave), Qt::LeftButton);
    // Cancel at the save question keeps the window open, No closes it without saving.
    QTest::keyClick(&window, Qt::Key_Escape);
    QVERIFY(window.isVisible());
    QTest::keyClick(&window, Qt::Key_Escape);
    QVERIFY(!window.isVisible());
    QCOMPARE(window.result(), static_cast<int>(QDialog::Accepted));
    QVERIFY(!editor.saved());
    QCOMPARE(shown.inst.InstallationFile(), std::string("<none>"));
  }

  void RunnerShowsTheWindowUntilItCloses() {
    Installation inst("yes\n");
    QtScheduleDefinitionsRunner runner(nullptr);
    ModalDriver driver;
    driver.Then([](QWidget* modal) {
      auto* window = qobject_cast<ScheduleDefinitionsWindow*>(modal);
      QVERIFY(window);
      window->button(kSdefNew)->click();
      QTest::keyClicks(window->letter(), "R");
      QVERIFY(!window->button(kSdefClose)->isEnabled());  // until the new one is saved
      window->button(kSdefSave)->click();
      window->button(kSdefClose)->click();
    });
    QVERIFY(EditScheduleDefinitions(runner, *inst.ui, inst.company->Schedules(), &inst.list, "BT",
                                    true));
    QVERIFY(inst.list.Find('R', kThisCompanySource).has_value());
    QCOMPARE(ReadFileBytes(inst.company->SettingsPath()).value_or(""),
             std::string("[Schedule Definitions]\r\nR=O,New Defn\r\n"));
  }
};

}  // namespace nv

QTEST_MAIN(nv::ScheduleDefinitionsWindowTest)
#include "schedule_definitions_window_test.moc"
