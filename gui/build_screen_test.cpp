#include "gui/build_screen.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QLinearGradient>
#include <QListWidget>
#include <QPainter>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <memory>

#include "base/money.h"
#include "ui/screen/attributes.h"
#include "ui/screen/layout.h"
#include "ui/scripted_ui.h"

namespace nv {
namespace {

enum : int {
  kNumber = 101,
  kName = 102,
  kCost = 103,
  kPlaced = 104,
  kBonus = 105,
  kRound = 200,
  kRoundYes = 201,
  kRoundNo = 202,
  kSchedules = 210,
  kBook = 211,
  kTax = 212,
  kState = 213,
  kAmt = 214,
  kChosen = 220,
  kMethod = 230,
  kConvention = 240,
  kNotes = 250,
  kGauge = 260,
  kSave = 300,
  kValues = 301,
};

// One of each kind, laid out as a small asset screen.
FieldTable SampleScreen() {
  FieldTable table = {
      MakeField(kFieldStatic, 1, 1, 1, 16, "Asset number:"),
      MakeField(kFieldEdit, kNumber, 1, 19, 10, "A-100", "upr,chars(0-9A-Za-z-.),key"),
      MakeField(kFieldStatic, 2, 2, 1, 16, "Description:"),
      MakeField(kFieldEdit, kName, 2, 19, 30, "Delivery van", "skipck"),
      MakeField(kFieldStatic, 3, 3, 1, 16, "Cost:"),
      MakeField(kFieldEdit, kCost, 3, 19, 12, "18250", "dollar"),
      MakeField(kFieldStatic, 4, 4, 1, 16, "Placed in service:"),
      MakeField(kFieldEdit, kPlaced, 4, 19, 10, "03/15/2024"),
      MakeField(kFieldStatic, 5, 5, 1, 16, "Bonus taken:"),
      MakeField(kFieldEdit, kBonus, 5, 19, 4, "No", "upr,h(Yes\nNo\n),button"),
      MakeField(kFieldGroup, kRound, 7, 1, 1, "1",
                "radio(Round dollars),numeric,width(16),hplus(10),y-"),
      MakeField(kFieldItem, kRoundYes, 7, 2, 8, "Yes", "yplus(4)"),
      MakeField(kFieldItem, kRoundNo, 8, 2, 8, "No", "yplus(4)"),
      MakeField(kFieldGroup, kSchedules, 7, 19, 2, "B",
                "checkbox(Schedules),display(220),width(14),hplus(14),y-"),
      MakeField(kFieldItem, kBook, 7, 20, 8, "Book", "yplus(4)"),
      MakeField(kFieldItem, kTax, 8, 20, 8, "Tax", "yplus(4)"),
      MakeField(kFieldItem, kState, 9, 20, 8, "State", "yplus(4)"),
      MakeField(kFieldItem, kAmt, 10, 20, 8, "AMT", "yplus(4)"),
      MakeField(kFieldStatic, kChosen, 11, 19, 13, "", "yplus(12),opaque(box),clipped"),
      MakeField(kFieldStatic, 6, 7, 36, 11, "Method:"),
      MakeField(kFieldCombo, kMethod, 7, 48, 13, "MACRS\nStraight line\nADS\n", "dropdownlist"),
      MakeField(kFieldStatic, 7, 8, 36, 11, "Convention:", "yplus(4)"),
      MakeField(kFieldList, kConvention, 8, 48, 13, "Half year\nMid-quarter\nMid-month\n",
                "height(3),yplus(4)"),
      MakeField(kFieldStatic, 8, 13, 1, 16, "Notes:", "yplus(2)"),
      MakeField(kFieldEdit, kNotes, 13, 19, 42, "Bought used.\r\nSecond line.",
                "multiline,height(3),notextlimit"),
      MakeField(kFieldCustom, kGauge, 17, 1, 15, ""),
      MakeField(kFieldButton, kSave, 17, 36, 10, "&Save"),
      MakeField(kFieldButton, kValues, 17, 48, 12, "&Values",
                "bmp(104,30),gdiplus(kelimg/bluebutton.png),msg(Define values for this field)"),
      MakeField(kFieldEnd, 0, 0, 0, 0, ""),
  };
  table[18].flags = 16;  // the second font
  // Cost takes amounts that are not negative.
  table[5].check = [](FieldTable&, size_t, const std::string& text) {
    std::optional<double> amount = ParseMoney(text);
    return amount && *amount >= 0;
  };
  table[7].picker = [](FieldTable&, size_t) { return std::optional<std::string>("01/01/2025"); };
  // The chosen schedules are spelled out under the group.
  table[13].check = [](FieldTable& t, size_t, const std::string& text) {
    t[18].data = "Schedules: " + text;
    return true;
  };
  table[25].creator = [](const std::any& parent, FieldTable&, size_t) {
    auto* gauge = new QLabel(QStringLiteral("custom control"), std::any_cast<QWidget*>(parent));
    gauge->setFrameStyle(QFrame::Panel | QFrame::Sunken);
    gauge->setAlignment(Qt::AlignCenter);
    return std::any(static_cast<QWidget*>(gauge));
  };
  table[18].data = "Schedules: B";
  return table;
}

void WriteButtonPicture(const QString& folder);

// A screen on a window of its own with a scripted Ui.
struct Screen {
  explicit Screen(const char* answers, FieldTable fields = SampleScreen(), bool picture = false)
      : table(std::move(fields)) {
    if (picture) WriteButtonPicture(pictures.path());
    std::string errors;
    ui = ScriptedUi::FromString(answers, &errors);
    ScreenOptions options;
    options.ui = ui.get();
    options.picture_folder = pictures.path().toStdString();
    controls = BuildScreen(table, &window, std::move(options));
    window.resize(63 * controls->metrics().cw, 19 * controls->metrics().lh);
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
  }

  template <typename T>
  T* Get(int id) const {
    return qobject_cast<T*>(controls->Control(id));
  }
  const FieldDescription& Data(int id) const {
    for (const FieldDescription& field : table) {
      if (field.id == id) return field;
    }
    return table.back();
  }

  QTemporaryDir pictures;
  FieldTable table;
  std::unique_ptr<ScriptedUi> ui;
  QWidget window;
  ScreenControls* controls = nullptr;
};

void WriteButtonPicture(const QString& folder) {
  QDir(folder).mkpath(QStringLiteral("KelImg"));
  QImage face(104, 30, QImage::Format_ARGB32);
  QPainter painter(&face);
  QLinearGradient gradient(0, 0, 0, 30);
  gradient.setColorAt(0, QColor(0x9c, 0xc3, 0xf0));
  gradient.setColorAt(1, QColor(0x2a, 0x5d, 0xa8));
  painter.fillRect(face.rect(), gradient);
  painter.end();
  QVERIFY(face.save(folder + QStringLiteral("/KelImg/BlueButton.png")));
}

}  // namespace

class BuildScreenTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void GeometryFollowsTheLayout() {
    Screen screen("");
    const ScreenMetrics& metrics = screen.controls->metrics();
    QCOMPARE(metrics.cw, MetricsOf(QApplication::font()).cw);
    for (size_t i = 0; i + 1 < screen.table.size(); ++i) {
      const FieldDescription& field = screen.table[i];
      QWidget* control = screen.controls->Control(field.id);
      QVERIFY2(control, qPrintable(QStringLiteral("field %1").arg(field.id)));
      ScreenRect rect = FieldRect(screen.table, i, metrics);
      QCOMPARE(control->geometry(), QRect(rect.x, rect.y, rect.width, rect.height));
      QCOMPARE(control->isEnabled(), true);
    }
    ScreenRect name = FieldRect(screen.table, 3, metrics);
    ScreenRect skip = SkipCheckRect(name, metrics);
    QWidget* skip_box = screen.controls->Control(kName + kSkipCheckIdOffset);
    QVERIFY(qobject_cast<QCheckBox*>(skip_box));
    QCOMPARE(skip_box->geometry(), QRect(skip.x, skip.y, skip.width, skip.height));
    ScreenRect placed = FieldRect(screen.table, 7, metrics);
    ScreenRect picker = PickerButtonRect(placed, metrics);
    QWidget* picker_button = screen.controls->Control(kPlaced + kPickerButtonIdOffset);
    QVERIFY(picker_button);
    QCOMPARE(picker_button->geometry(), QRect(picker.x, picker.y, picker.width, picker.height));
    QVERIFY(screen.controls->Control(kBonus + kPickerButtonIdOffset));  // "button"
    QVERIFY(!screen.controls->Control(kNumber + kPickerButtonIdOffset));

    // Each kind's control, and the values shown.
    QCOMPARE(screen.Get<QLineEdit>(kCost)->text(), QStringLiteral("    18250.00"));
    QCOMPARE(screen.Get<QPlainTextEdit>(kNotes)->toPlainText(),
             QStringLiteral("Bought used.\nSecond line."));
    QVERIFY(screen.Get<QRadioButton>(kRoundYes)->isChecked());
    QVERIFY(screen.Get<QCheckBox>(kBook)->isChecked());
    QVERIFY(!screen.Get<QCheckBox>(kTax)->isChecked());
    QCOMPARE(screen.Get<QComboBox>(kMethod)->itemText(0), QStringLiteral("ADS"));  // sorted
    QCOMPARE(screen.Get<QListWidget>(kConvention)->count(), 3);
    QCOMPARE(screen.Get<QLabel>(kGauge)->text(), QStringLiteral("custom control"));
    QVERIFY(screen.Get<QLabel>(kChosen)->font().bold());
    QVERIFY(!screen.Get<QLabel>(kChosen)->wordWrap());
    QCOMPARE(screen.Get<QPushButton>(kValues)->toolTip(),
             QStringLiteral("Define values for this field"));
    QCOMPARE(QApplication::focusWidget(), screen.controls->Control(kNumber));  // "key"
  }

  void TypingIsFilteredAndLimited() {
    Screen screen("");
    QLineEdit* number = screen.Get<QLineEdit>(kNumber);
    number->setFocus();
    number->clear();
    QTest::keyClicks(number, "ab-1/.c d_e");
    QCOMPARE(number->text(), QStringLiteral("AB-1.CDE"));
    QTest::keyClicks(number, "fghijk");
    QCOMPARE(number->text(), QStringLiteral("AB-1.CDEFGH"));  // width 10: 11 characters
    // Text put in at once goes through the same filter: refused whole when any character is.
    number->setSelection(0, number->text().size());
    number->insert(QStringLiteral("x y"));
    QCOMPARE(number->text(), QStringLiteral("AB-1.CDEFGH"));
    number->setSelection(0, number->text().size());
    number->insert(QStringLiteral("xy-9"));
    QCOMPARE(number->text(), QStringLiteral("XY-9"));
    number->end(false);
    number->insert(QStringLiteral("0123456789"));
    QCOMPARE(number->text(), QStringLiteral("XY-90123456"));  // cut to the limit
    number->setSelection(4, 7);
    number->insert(QStringLiteral("-"));
    QCOMPARE(number->text(), QStringLiteral("XY-9-"));
    QCOMPARE(screen.Data(kNumber).data, std::string("A-100"));  // not written before leaving
    QTest::keyClick(number, Qt::Key_Return);
    QCOMPARE(screen.Data(kNumber).data, std::string("XY-9-"));
    QCOMPARE(QApplication::focusWidget(), screen.controls->Control(kName));

    // A multiline field takes Enter as a line break and keeps CR LF in its data.
    QPlainTextEdit* notes = screen.Get<QPlainTextEdit>(kNotes);
    notes->setFocus();
    notes->moveCursor(QTextCursor::End);
    QTest::keyClick(notes, Qt::Key_Return);
    QTest::keyClicks(notes, "Third.");
    QCOMPARE(screen.controls->Text(kNotes), std::string("Bought used.\r\nSecond line.\r\nThird."));
    QTest::keyClick(notes, Qt::Key_Tab);
    QCOMPARE(screen.Data(kNotes).data, std::string("Bought used.\r\nSecond line.\r\nThird."));
  }

  void RefusedCheckPutsTheOldValueBack() {
    Screen screen("");
    QSignalSpy changed(screen.controls, &ScreenControls::FieldChanged);
    QLineEdit* cost = screen.Get<QLineEdit>(kCost);
    cost->setFocus();
    cost->selectAll();
    QTest::keyClicks(cost, "-5");
    QTest::keyClick(cost, Qt::Key_Tab);
    QCOMPARE(cost->text(), QStringLiteral("    18250.00"));
    QCOMPARE(screen.Data(kCost).data, std::string("18250"));
    QCOMPARE(changed.count(), 0);

    cost->setFocus();
    cost->selectAll();
    QTest::keyClicks(cost, "1,234.5");
    QTest::keyClick(cost, Qt::Key_Escape);  // moves back a field, taking the value
    QCOMPARE(QApplication::focusWidget(), screen.controls->Control(kName));
    QCOMPARE(screen.Data(kCost).data, std::string("1,234.5"));
    QCOMPARE(cost->text(), QStringLiteral("     1234.50"));
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed.at(0).at(0).toInt(), static_cast<int>(kCost));
  }

  void GroupsWriteTheirDataAndKeepTheirMaximum() {
    Screen screen("");
    QTest::mouseClick(screen.Get<QRadioButton>(kRoundNo), Qt::LeftButton);
    QCOMPARE(screen.Data(kRound).data, std::string("2"));

    QTest::mouseClick(screen.Get<QCheckBox>(kState), Qt::LeftButton);
    QCOMPARE(screen.Data(kSchedules).data, std::string("BS"));
    QCOMPARE(screen.Get<QLabel>(kChosen)->text(), QStringLiteral("Schedules: BS"));  // display
    QTest::mouseClick(screen.Get<QCheckBox>(kTax), Qt::LeftButton);
    QVERIFY(!screen.Get<QCheckBox>(kTax)->isChecked());
    QCOMPARE(screen.Data(kSchedules).data, std::string("BS"));
    QCOMPARE(screen.ui->transcript(),
             std::string("message title=\"Note\" text=\"A maximum of 2 selections can be "
                         "checked.\"\n"));
    QTest::mouseClick(screen.Get<QCheckBox>(kBook), Qt::LeftButton);
    QTest::mouseClick(screen.Get<QCheckBox>(kTax), Qt::LeftButton);
    QVERIFY(screen.Get<QCheckBox>(kTax)->isChecked());
    QCOMPARE(screen.Data(kSchedules).data, std::string("TS"));
    QCOMPARE(screen.Get<QLabel>(kChosen)->text(), QStringLiteral("Schedules: TS"));

    // The owner changes data and shows it again.
    screen.table[10].data = "1";
    screen.controls->Show(kRound);
    QVERIFY(screen.Get<QRadioButton>(kRoundYes)->isChecked());
  }

  void ChoicesPickersAndHelp() {
    Screen screen("choose 0\n");
    QLineEdit* bonus = screen.Get<QLineEdit>(kBonus);
    bonus->setFocus();
    QTest::keyClick(bonus, Qt::Key_F1);
    QCOMPARE(screen.Data(kBonus).data, std::string("Yes"));
    QCOMPARE(bonus->text(), QStringLiteral("Yes"));
    QLineEdit* name = screen.Get<QLineEdit>(kName);
    name->setFocus();
    QTest::keyClick(name, Qt::Key_F1);
    QVERIFY(screen.ui->transcript().ends_with(
        "message title=\"Message\" text=\"Help is not available for this field.\"\n"));
    QPushButton* values = screen.Get<QPushButton>(kValues);
    values->setFocus();
    QTest::keyClick(values, Qt::Key_F1);
    QVERIFY(screen.ui->transcript().ends_with("text=\"Define values for this field\"\n"));
    QVERIFY(!screen.ui->failed());

    QTest::mouseClick(screen.Get<QPushButton>(kPlaced + kPickerButtonIdOffset), Qt::LeftButton);
    QCOMPARE(screen.Data(kPlaced).data, std::string("01/01/2025"));

    QSignalSpy changed(screen.controls, &ScreenControls::FieldChanged);
    QComboBox* method = screen.Get<QComboBox>(kMethod);
    method->setCurrentIndex(1);
    Q_EMIT method->activated(1);
    QCOMPARE(screen.controls->Text(kMethod), std::string("MACRS"));
    QListWidget* convention = screen.Get<QListWidget>(kConvention);
    convention->setCurrentRow(2);
    QCOMPARE(screen.controls->Text(kConvention), std::string("Mid-month"));
    QCOMPARE(changed.count(), 2);

    QSignalSpy clicked(screen.controls, &ScreenControls::ButtonClicked);
    QTest::mouseClick(screen.Get<QPushButton>(kSave), Qt::LeftButton);
    QCOMPARE(clicked.count(), 1);
    QCOMPARE(clicked.at(0).at(0).toInt(), static_cast<int>(kSave));
  }

  void EnablingAndSkipBoxes() {
    FieldTable table = SampleScreen();
    table[3].flags = kFieldStartsDisabled;
    table[5].attributes += ",exception";
    Screen screen("", table);
    QVERIFY(!screen.controls->Control(kName)->isEnabled());
    QVERIFY(!screen.controls->Control(kName + kSkipCheckIdOffset)->isEnabled());
    screen.controls->SetAllEnabled(true);
    QVERIFY(screen.controls->Control(kName + kSkipCheckIdOffset)->isEnabled());
    screen.controls->SetAllEnabled(false);
    QVERIFY(!screen.controls->Control(kNumber)->isEnabled());
    QVERIFY(screen.controls->Control(kCost)->isEnabled());  // exception
    QVERIFY(!screen.controls->Control(kBook)->isEnabled());
    QVERIFY(!screen.controls->Control(kPlaced + kPickerButtonIdOffset)->isEnabled());
    screen.controls->SetChecked(kName + kSkipCheckIdOffset, true);
    QVERIFY(screen.controls->Checked(kName + kSkipCheckIdOffset));
  }

  void CheckOnFocusLossWaitsUntilTheGroupIsLeft() {
    int checks = 0;
    FieldTable table = {
        MakeField(kFieldEdit, 1, 0, 0, 4, "", "ckkillfocus,group(1-2)"),
        MakeField(kFieldEdit, 2, 0, 6, 4, ""),
        MakeField(kFieldEdit, 3, 0, 12, 4, ""),
    };
    table[0].check = [&checks](FieldTable&, size_t, const std::string& text) {
      ++checks;
      return text != "bad";
    };
    Screen screen("", table);
    QLineEdit* first = screen.Get<QLineEdit>(1);
    first->setFocus();
    QTest::keyClicks(first, "bad");
    QTest::keyClick(first, Qt::Key_Tab);
    QCOMPARE(checks, 0);
    QCOMPARE(screen.Data(1).data, std::string("bad"));  // kept unchecked inside the group
    QTest::keyClick(screen.Get<QLineEdit>(2), Qt::Key_Backtab);
    QCOMPARE(QApplication::focusWidget(), static_cast<QWidget*>(first));
    screen.Get<QLineEdit>(3)->setFocus(Qt::MouseFocusReason);
    QCOMPARE(checks, 1);
    QCOMPARE(screen.Data(1).data, std::string(""));
    QCOMPARE(first->text(), QString());
  }

  void ScreenshotReadsWell() {
    Screen plain("");
    QVERIFY(plain.controls->Control(kValues)->property("picture").toString().isEmpty());
    Screen screen("", SampleScreen(), true);
    QVERIFY(screen.controls->Control(kValues)->property("picture").toString().endsWith(
        QStringLiteral("KelImg/BlueButton.png")));  // found whatever its case
    screen.controls->SetChoice(kMethod, "MACRS");
    QCOMPARE(screen.Get<QComboBox>(kMethod)->currentText(), QStringLiteral("MACRS"));
    QVERIFY(QTest::qWaitForWindowExposed(&screen.window));
    QString folder = QCoreApplication::applicationDirPath() + QStringLiteral("/screenshots");
    QVERIFY(QDir().mkpath(folder));
    QVERIFY(screen.window.grab().save(folder + QStringLiteral("/build_screen.png")));
  }
};

}  // namespace nv

QTEST_MAIN(nv::BuildScreenTest)
#include "build_screen_test.moc"
