#include "gui/barcode_painter.h"

#include <QCoreApplication>
#include <QDir>
#include <QImage>
#include <QLabel>
#include <QPainter>
#include <QPixmap>
#include <QTest>
#include <string>
#include <vector>

namespace nv {
namespace {

// Row y of the image as '#' for dark and '.' for light pixels.
std::string Row(const QImage& image, int y) {
  std::string row;
  for (int x = 0; x < image.width(); ++x) row += qGray(image.pixel(x, y)) < 128 ? '#' : '.';
  return row;
}

// Bars and spaces from element widths in modules, each module `unit` pixels.
std::string Pattern(const std::vector<int>& widths, int unit) {
  std::string pattern;
  for (size_t i = 0; i < widths.size(); ++i) pattern.append(widths[i] * unit, "#."[i % 2]);
  return pattern;
}

int CountBars(const std::string& row) {
  int bars = 0;
  for (size_t i = 0; i < row.size(); ++i) bars += row[i] == '#' && (i == 0 || row[i - 1] == '.');
  return bars;
}

class BarcodePainterTest final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void PaintsTheLetterAInsideTheRectangle() {
    QImage image(200, 50, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    // 130 pixels for 65 modules: a module of 2, a quiet zone of (130 - 45 x 2) / 2 = 20.
    QCOMPARE(DrawCode128(painter, 10, 5, 130, 40, "A"), 20 + 46 * 2 + 20);
    painter.end();
    // Start B, value 33, check 34, Stop, from the published table.
    const std::string symbol =
        Pattern({2, 1, 1, 2, 1, 4, 1, 1, 1, 3, 2, 3, 1, 3, 1, 1, 2, 3, 2, 3, 3, 1, 1, 1, 2}, 2);
    const std::string expected = std::string(30, '.') + symbol + std::string(200 - 30 - 92, '.');
    QCOMPARE(Row(image, 5), expected);
    QCOMPARE(Row(image, 44), expected);
    QCOMPARE(Row(image, 45), std::string(200, '.'));

    QPainter red(&image);
    DrawCode128(red, 0, 0, 65, 4, "A", {.bar_colour = 0xC00000});
    red.end();
    QCOMPARE(image.pixel(10, 2), qRgb(0xC0, 0, 0));  // the first bar, after the quiet zone
  }

  void LabelScreenshot() {
    const std::string number = "  A-1234.001";  // main part of 8, subasset of 3: 12 characters
    // The number above its barcode, as a label window shows it.
    QPixmap picture(420, 140);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    painter.drawText(QRect(0, 8, 420, 20), Qt::AlignHCenter, QString::fromLatin1(number.c_str()));
    DrawCode128(painter, 10, 36, 400, 90, number);
    painter.end();
    QLabel label;
    label.setPixmap(picture);
    label.show();
    QVERIFY(QTest::qWaitForWindowExposed(&label));
    const QImage shot = label.grab().toImage();
    // Start, 12 characters and the check symbol have three bars each; Stop has four.
    QCOMPARE(CountBars(Row(shot, 80)), 3 * 14 + 4);
    QCOMPARE(CountBars(Row(shot, 130)), 0);
    const QString folder = QCoreApplication::applicationDirPath() + QStringLiteral("/screenshots");
    QVERIFY(QDir().mkpath(folder));
    QVERIFY(shot.save(folder + QStringLiteral("/barcode_label.png")));
  }
};

}  // namespace
}  // namespace nv

QTEST_MAIN(nv::BarcodePainterTest)
#include "barcode_painter_test.moc"
