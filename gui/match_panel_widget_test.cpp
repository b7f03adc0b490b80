#include "gui/match_panel_widget.h"

#include <QCoreApplication>
#include <QDir>
#include <QImage>
#include <QPushButton>
#include <QTest>

namespace nv {
namespace {

// The data-field panel of the FAS importers, with its pre-set first pair.
void FillFieldPanel(MatchPanel& panel) {
  const char* destinations[] = {"Asset Number", "Description", "Date in Service", "Cost",
                                "Location Code"};
  const char* sources[] = {"Asset No.", "Asset Description", "Placed in Service", "Acquired Value",
                           "Dept",      "Caf\xE9 Region"};
  for (int i = 0; i < 5; ++i) QVERIFY(panel.AddDestination(201 + i, destinations[i]));
  for (int i = 0; i < 6; ++i) QVERIFY(panel.AddSource(101 + i, sources[i]));
}

QPoint Centre(const MatchPanel& panel, int id) {
  const mapIcon* item = panel.Find(id);
  return QPoint(item->x + mapIcon::kWidth / 2, item->y + mapIcon::kHeight / 2);
}

}  // namespace

class MatchPanelWidgetTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void DragsASourceOntoADestinationAndAwayAgain() {
    MatchPanel panel("FAS to KEL data field conversion", "KEL Data Field", "FAS Data Field");
    FillFieldPanel(panel);
    MatchPanelWidget widget(panel);
    widget.show();
    QVERIFY(QTest::qWaitForWindowExposed(&widget));
    QVERIFY(widget.okButton()->isDefault());

    const QPoint grab = Centre(panel, 104);
    const QPoint onto = Centre(panel, 204) + QPoint(40, 3);
    QTest::mousePress(&widget, Qt::LeftButton, {}, grab);
    QTest::mouseMove(&widget, (grab + onto) / 2);
    QCOMPARE(panel.dragged() ? panel.dragged()->id : 0, 104);
    QTest::mouseMove(&widget, onto);
    const QString folder = QCoreApplication::applicationDirPath() + QStringLiteral("/screenshots");
    QVERIFY(QDir().mkpath(folder));
    QVERIFY(widget.grab().save(folder + QStringLiteral("/match_panel_dragging.png")));
    QTest::mouseRelease(&widget, Qt::LeftButton, {}, onto);
    QCOMPARE(panel.GetMatch(204), 104);
    QCOMPARE(panel.dragged(), nullptr);

    // Taken off again and dropped in the empty space under the columns.
    QTest::mousePress(&widget, Qt::LeftButton, {}, Centre(panel, 104));
    QTest::mouseMove(&widget, QPoint(300, widget.height() - 5));
    QTest::mouseRelease(&widget, Qt::LeftButton, {}, QPoint(300, widget.height() - 5));
    QCOMPARE(panel.GetMatch(204), 0);
    QCOMPARE(panel.Find(104)->x, panel.Find(104)->home_x());

    // The right button drags nothing.
    QTest::mousePress(&widget, Qt::RightButton, {}, Centre(panel, 101));
    QCOMPARE(panel.dragged(), nullptr);
  }

  // A panel opened with the pairs remembered from last time: Reset, a button under Cancel,
  // puts back the importer's own and repaints.
  void ResetButtonReturnsToTheImportersOwnMatches() {
    MatchPanel panel("FAS to KEL data field conversion", "KEL Data Field", "FAS Data Field");
    FillFieldPanel(panel);
    QVERIFY(panel.SetMatch(201, 103));
    QVERIFY(panel.SetMatch(204, 104));
    panel.SetStandardMatches({{201, 101}});
    panel.BeginRun();
    MatchPanelWidget widget(panel);
    widget.show();
    QVERIFY(QTest::qWaitForWindowExposed(&widget));
    QCOMPARE(widget.resetButton()->text(), QStringLiteral("Reset"));
    QVERIFY(!widget.resetButton()->geometry().intersects(widget.cancelButton()->geometry()));
    QVERIFY(widget.rect().contains(widget.resetButton()->geometry()));
    const QImage before = widget.grab().toImage();
    QTest::mouseClick(widget.resetButton(), Qt::LeftButton);
    QCOMPARE(panel.Matches(), (std::vector<std::pair<int, int>>{{201, 101}}));
    QVERIFY(widget.grab().toImage() != before);
  }

  // Writes the panel as a person sees it to gui/screenshots/match_panel.png in the build
  // tree, and checks that a pair and a loose item do not look alike.
  void Screenshot() {
    MatchPanel panel("FAS to KEL data field conversion", "KEL Data Field", "FAS Data Field");
    FillFieldPanel(panel);
    QVERIFY(panel.SetMatch(201, 101));
    QVERIFY(panel.SetMatch(204, 104));
    MatchPanelWidget widget(panel);
    widget.show();
    QVERIFY(QTest::qWaitForWindowExposed(&widget));
    const QImage image = widget.grab().toImage();

    const QString folder = QCoreApplication::applicationDirPath() + QStringLiteral("/screenshots");
    QVERIFY(QDir().mkpath(folder));
    QVERIFY(image.save(folder + QStringLiteral("/match_panel.png")));

    // Sampled just inside each item's top left corner, clear of its text.
    auto fill = [&](int id) {
      const mapIcon* item = panel.Find(id);
      return image.pixelColor(item->x + 2, item->y + 2);
    };
    QCOMPARE(fill(101), fill(201));  // a pair reads as one bar
    QVERIFY(fill(201) != fill(202));
    QVERIFY(fill(104) != fill(105));
    QVERIFY(fill(101) != image.pixelColor(5, 5));  // items stand out from the panel
  }
};

}  // namespace nv

QTEST_MAIN(nv::MatchPanelWidgetTest)
#include "match_panel_widget_test.moc"
