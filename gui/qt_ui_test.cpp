#include "gui/qt_ui.h"

#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBrowser>

#include "gui/choice_list_dialog.h"
#include "gui/display_text.h"
#include "gui/file_filters.h"
#include "gui/help_viewer.h"
#include "gui/match_panel_widget.h"
#include "gui/modal_driver_testing.h"
#include "gui/progress_window.h"
#include "gui/text_entry_dialog.h"

Q_DECLARE_METATYPE(nv::Answer)
Q_DECLARE_METATYPE(nv::DefaultButton)

namespace nv {
namespace {

using testing::ModalDriver;

ChoiceListRequest ThreeOptions() {
  ChoiceListRequest request;
  request.title = "Existing Company";
  request.message = "Company 100 already exists.\nWhat do you want to do?";
  request.note = "Replacing deletes its assets.";
  request.options = {{"Replace the company", 7}, {"Add to the company", -1}, {"Cancel", 9}};
  return request;
}

}  // namespace

class QtUiTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void WindowsTextKeepsEveryByte() {
    std::string all;
    for (int byte = 1; byte < 256; ++byte) all.push_back(static_cast<char>(byte));
    QCOMPARE(ToWindowsText(FromWindowsText(all)), all);
    QCOMPARE(FromWindowsText("\x80 \x93q\x94"), QString::fromUtf8("\u20ac \u201cq\u201d"));
  }

  void MessageShowsTitleAndText() {
    QtUi ui("");
    QString title, text, buttons;
    ModalDriver driver;
    driver.Then([&](QWidget* modal) {
      auto* box = qobject_cast<QMessageBox*>(modal);
      QVERIFY(box);
      title = box->windowTitle();
      text = box->text();
      for (QAbstractButton* b : box->buttons()) buttons += b->text();
      box->buttons().first()->click();
    });
    ui.Message(
        "Unable to read Master File\n\x93"
        "100\x94",
        "Error");
    QCOMPARE(title, QStringLiteral("Error"));
    QCOMPARE(text, QString::fromUtf8("Unable to read Master File\n\u201c100\u201d"));
    QCOMPARE(buttons, QStringLiteral("OK"));
  }

  // The box keeps its text; the report opens behind "Details…" and the box stays until OK.
  void MessageWithDetailsOpensTheReportBehindTheBox() {
    QtUi ui("");
    QString text, report;
    ModalDriver driver;
    driver.Then([&](QWidget* modal) {
      auto* box = qobject_cast<QMessageBox*>(modal);
      QVERIFY(box);
      text = box->text();
      ModalDriver::Button(modal, QStringLiteral("Details\u2026"))->click();
    });
    driver.Then([&](QWidget* modal) {
      auto* view = modal->findChild<QPlainTextEdit*>();
      QVERIFY(view);
      report = view->toPlainText();
      qobject_cast<QDialog*>(modal)->accept();
    });
    driver.Then(ModalDriver::Click(QStringLiteral("OK")));
    ui.MessageWithDetails("2 assets copied.", "Done", "Import report\nAssets added: 2\n");
    QCOMPARE(text, QStringLiteral("2 assets copied."));
    QCOMPARE(report, QStringLiteral("Import report\nAssets added: 2\n"));
    QVERIFY(driver.done());
  }

  void QuestionAnswers_data() {
    QTest::addColumn<DefaultButton>("default_button");
    QTest::addColumn<QString>("click");
    QTest::addColumn<Answer>("answer");
    QTest::newRow("yes") << DefaultButton::kYes << "&Yes" << Answer::kYes;
    QTest::newRow("no") << DefaultButton::kYes << "&No" << Answer::kNo;
    QTest::newRow("cancel") << DefaultButton::kNo << "Cancel" << Answer::kCancel;
    QTest::newRow("escape") << DefaultButton::kNo << "" << Answer::kCancel;
    QTest::newRow("closed") << DefaultButton::kYes << "close" << Answer::kCancel;
  }
  void QuestionAnswers() {
    QFETCH(DefaultButton, default_button);
    QFETCH(QString, click);
    QFETCH(Answer, answer);
    QtUi ui("");
    QString title, default_text;
    QStringList texts;
    ModalDriver driver;
    driver.Then([&](QWidget* modal) {
      auto* box = qobject_cast<QMessageBox*>(modal);
      QVERIFY(box);
      title = box->windowTitle();
      for (QAbstractButton* b : box->buttons()) texts.append(b->text());
      default_text = box->defaultButton()->text();
      if (click.isEmpty()) {
        QTest::keyClick(box, Qt::Key_Escape);
      } else if (click == "close") {
        box->close();
      } else {
        ModalDriver::Button(box, click)->click();
      }
    });
    QCOMPARE(ui.Question("Continue?", default_button), answer);
    QCOMPARE(title, QStringLiteral("Question"));
    texts.sort();
    QCOMPARE(texts, QStringList({"&No", "&Yes", "Cancel"}));
    QCOMPARE(default_text, default_button == DefaultButton::kYes ? "&Yes" : "&No");
  }

  void ChoiceListResult_data() {
    QTest::addColumn<int>("row");
    QTest::addColumn<bool>("accept");
    QTest::addColumn<int>("result");
    QTest::newRow("value") << 0 << true << 7;
    QTest::newRow("position when value is -1") << 1 << true << 1;
    QTest::newRow("last value") << 2 << true << 9;
    QTest::newRow("closed") << 1 << false << -1;
  }
  void ChoiceListResult() {
    QFETCH(int, row);
    QFETCH(bool, accept);
    QFETCH(int, result);
    QtUi ui("");
    QStringList shown;
    QStringList labels;
    ModalDriver driver;
    driver.Then([&](QWidget* modal) {
      auto* dialog = qobject_cast<ChoiceListDialog*>(modal);
      QVERIFY(dialog);
      for (int i = 0; i < dialog->list()->count(); ++i)
        shown.append(dialog->list()->item(i)->text());
      for (QLabel* label : dialog->findChildren<QLabel*>()) labels.append(label->text());
      dialog->list()->setCurrentRow(row);
      if (accept) {
        QTest::keyClick(dialog->list(), Qt::Key_Return);
      } else {
        dialog->close();
      }
    });
    QCOMPARE(ui.ChoiceList(ThreeOptions()), result);
    QCOMPARE(shown, QStringList({"Replace the company", "Add to the company", "Cancel"}));
    QCOMPARE(labels, QStringList({"Company 100 already exists.", "What do you want to do?",
                                  "Replacing deletes its assets."}));
  }

  void ChoiceListWidth() {
    QFont font;
    const QFontMetrics metrics(font);
    ChoiceListRequest request;
    request.message = "Short";
    request.options = {{"abcd", -1}, {"abcdefghij", -1}};
    QCOMPARE(ChoiceListDialog::ListWidth(request, metrics), 16 * metrics.averageCharWidth());
    request.message = "x\n" + std::string(200, 'W');
    QCOMPARE(ChoiceListDialog::ListWidth(request, metrics),
             metrics.horizontalAdvance(QString(200, QLatin1Char('W'))));
  }

  void ChoiceListCentredOnOwner() {
    QWidget owner;
    owner.setGeometry(100, 120, 600, 400);
    owner.show();
    ChoiceListDialog dialog(ThreeOptions(), &owner);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    QVERIFY((dialog.frameGeometry().center() - owner.frameGeometry().center()).manhattanLength() <=
            2);
  }

  void FileFilters_data() {
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QStringList>("filters");
    QTest::newRow("pairs") << "PC/FAS files|*.dat;*.DAT|All files|*.*"
                           << QStringList({"PC/FAS files (*.dat *.DAT)", "All files (*)"});
    QTest::newRow("odd part dropped") << "Text|*.txt|Orphan" << QStringList({"Text (*.txt)"});
    QTest::newRow("empty") << "" << QStringList({"All files (*)"});
  }
  void FileFilters() {
    QFETCH(QString, pattern);
    QFETCH(QStringList, filters);
    QCOMPARE(NameFiltersFromPattern(pattern.toStdString()), filters);
  }

  void ChooseFileReturnsThePathOrNothing() {
    QTemporaryDir dir;
    QFile file(dir.filePath("ASSETS.DAT"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.close();
    QtUi ui("");
    FileDialogRequest request;
    request.title = "Select PC/FAS File";
    request.filter = "PC/FAS files|*.dat;*.DAT|All files|*.*";
    request.initial_directory = dir.path().toStdString();
    QStringList filters;
    QString title;
    ModalDriver driver;
    driver.Then([&](QWidget* modal) {
      auto* dialog = qobject_cast<QFileDialog*>(modal);
      QVERIFY(dialog);
      title = dialog->windowTitle();
      filters = dialog->nameFilters();
      // The name typed as a person types it, and ended as accepted without the Open
      // button's own check: selectFile and that check both ask the dialog's file model,
      // which reads the folder in a thread of its own and, not done yet, once in a while
      // refused the file (the dialog stayed open) or had not selected it (another path
      // came back).
      auto* name = dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
      QVERIFY(name);
      name->setText(QStringLiteral("ASSETS.DAT"));
      static_cast<QDialog*>(dialog)->done(QDialog::Accepted);
    });
    driver.Then([](QWidget* modal) { qobject_cast<QDialog*>(modal)->reject(); });
    QCOMPARE(ui.ChooseFile(request),
             std::optional<std::string>(dir.filePath("ASSETS.DAT").toStdString()));
    QCOMPARE(title, QStringLiteral("Select PC/FAS File"));
    QCOMPARE(filters, QStringList({"PC/FAS files (*.dat *.DAT)", "All files (*)"}));
    QCOMPARE(ui.ChooseFile(request), std::nullopt);
  }

  void TextEntryTakesOnlyAllowedCharactersInUpperCase() {
    QtUi ui("");
    TextEntryRequest request;
    request.title = "Enter New Company Number";
    request.prompt = "Company Number:";
    request.allowed = "ABCDEFGHIJKLMNOPQRSTUVWXYZ1234567890&#$@";
    request.upper_case = true;
    request.max_length = 8;
    request.listing = {"    ACME  Acme Tools", "   BETA2  Beta \xE9tude"};
    QString title, prompt;
    QStringList listed;
    ModalDriver driver;
    driver.Then([&](QWidget* modal) {
      title = modal->windowTitle();
      prompt = modal->findChild<QLabel*>()->text();
      // The companies there are already stand under the field, not to be chosen.
      auto* listing = modal->findChild<QListWidget*>(QStringLiteral("listing"));
      for (int i = 0; listing && i < listing->count(); ++i) listed << listing->item(i)->text();
      auto* field = modal->findChild<QLineEdit*>();
      // A blank, "." and "-" are refused while typing; lower case becomes upper case.
      QTest::keyClicks(field, "ab c.1-2&#$@xyz");
      qobject_cast<QDialog*>(modal)->accept();
    });
    driver.Then([](QWidget* modal) { qobject_cast<QDialog*>(modal)->reject(); });
    QCOMPARE(ui.EnterText(request), std::optional<std::string>("ABC12&#$"));
    QCOMPARE(title, QStringLiteral("Enter New Company Number"));
    QCOMPARE(prompt, QStringLiteral("Company Number:"));
    QCOMPARE(listed, QStringList({"    ACME  Acme Tools", "   BETA2  Beta \u00e9tude"}));
    QCOMPARE(ui.EnterText(request), std::nullopt);
  }

  void NoteShowsTextReadOnly() {
    QtUi ui("");
    QString text;
    bool read_only = false;
    ModalDriver driver;
    driver.Then([&](QWidget* modal) {
      auto* view = modal->findChild<QPlainTextEdit*>();
      QVERIFY(view);
      text = view->toPlainText();
      read_only = view->isReadOnly();
      ModalDriver::Button(modal, "OK")->click();
    });
    ui.ShowNote("Import Report", "12 assets copied.\n\xA7 3 skipped");
    QCOMPARE(text, QString::fromUtf8("12 assets copied.\n\u00a7 3 skipped"));
    QVERIFY(read_only);
  }

  void MatchPanelDragsAndAsksAgainUntilEveryDestinationIsPaired() {
    QtUi ui("");
    MatchPanel panel("FAS to KEL book conversion", "KEL Schedule", "FAS Book");
    QVERIFY(panel.AddDestination(201, "B Book"));
    QVERIFY(panel.AddDestination(202, "T Tax"));
    QVERIFY(panel.AddSource(101, "Internal"));
    QVERIFY(panel.AddSource(102, "Federal"));
    auto drag = [&](QWidget* modal, int source, int destination) {
      auto* widget = modal->findChild<MatchPanelWidget*>();
      QVERIFY(widget);
      const mapIcon* s = panel.Find(source);
      const mapIcon* d = panel.Find(destination);
      const QPoint from(s->x + 10, s->y + 10), to(d->x + 70, d->y + 10);
      QTest::mousePress(widget, Qt::LeftButton, {}, from);
      QTest::mouseMove(widget, to);
      QTest::mouseRelease(widget, Qt::LeftButton, {}, to);
    };
    QString title, error;
    ModalDriver driver;
    driver.Then([&](QWidget* modal) {
      title = modal->windowTitle();
      drag(modal, 102, 202);
      ModalDriver::Button(modal, "OK")->click();
    });
    driver.Then([&](QWidget* modal) {
      error = modal->windowTitle() + ": " + qobject_cast<QMessageBox*>(modal)->text();
      ModalDriver::Button(modal, "OK")->click();
    });
    driver.Then([&](QWidget* modal) {
      drag(modal, 101, 201);
      ModalDriver::Button(modal, "OK")->click();
    });
    QCOMPARE(ExecuteMatchPanel(ui, panel, true), kMatchPanelOk);
    QCOMPARE(title, QStringLiteral("FAS to KEL book conversion"));
    QCOMPARE(error, QStringLiteral("Error: All items in the left column must have matches."));
    QCOMPARE(panel.GetMatch(201), 101);
    QCOMPARE(panel.GetMatch(202), 102);
    QVERIFY(driver.done());

    driver.RejectRest();  // closing the window is Cancel
    QCOMPARE(ui.RunMatchPanel(panel), kMatchPanelCancel);
  }

  void ProgressMeterShowsTextAndPosition() {
    QtUi ui("");
    std::unique_ptr<ProgressMeter> meter = ui.OpenProgress("Import", "Copying FAS assets", 200);
    auto* window = dynamic_cast<ProgressWindow*>(meter.get());
    QVERIFY(window);
    QVERIFY(window->isVisible());
    QCOMPARE(window->windowTitle(), QStringLiteral("Import"));
    QVERIFY(window->findChildren<QPushButton*>().isEmpty());
    meter->SetText("Copying FAS assets\nAsset   A-17");
    meter->SetPosition(50);
    QCOMPARE(window->text(), QStringLiteral("Copying FAS assets\nAsset   A-17"));
    QCOMPARE(window->percent(), 25);
    meter->SetPosition(1000);  // beyond the total: full, not more
    QCOMPARE(window->percent(), 100);
    meter->SetPosition(-5);
    QCOMPARE(window->percent(), 0);
    meter.reset();
    QCOMPARE(QApplication::topLevelWidgets().count(), 0);
  }

  void HelpOpensTopicIgnoringCase() {
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    QVERIFY(QDir(dir.path()).mkdir("Help"));
    QFile file(dir.filePath("Help/NVSY6DIS.HTML"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("<html><head><title>Importing</title></head><body>Import topics</body></html>");
    file.close();
    QtUi ui(dir.path().toStdString() + "/");
    ui.ShowHelp("nvsy6dis.html");
    QVERIFY(ui.help_viewer());
    QVERIFY(ui.help_viewer()->isVisible());
    QVERIFY(ui.help_viewer()->browser()->toPlainText().contains("Import topics"));
    QCOMPARE(ui.help_viewer()->windowTitle(), QStringLiteral("Importing"));
    QVERIFY(!FindHelpTopic(dir.path().toStdString() + "/", "../Help/nvsy6dis.html"));
  }

  void MissingHelpTopicSaysSo() {
    QTemporaryDir dir;
    QtUi ui(dir.path().toStdString() + "/");
    QString text;
    ModalDriver driver;
    driver.Then([&](QWidget* modal) {
      text = qobject_cast<QMessageBox*>(modal)->text();
      ModalDriver::Button(modal, "OK")->click();
    });
    ui.ShowHelp("nvsy0xnp.html");
    QVERIFY(text.contains("nvsy0xnp.html"));
    QVERIFY(!ui.help_viewer());
  }
};

}  // namespace nv

QTEST_MAIN(nv::QtUiTest)
#include "qt_ui_test.moc"
