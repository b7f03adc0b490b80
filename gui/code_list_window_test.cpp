#include "gui/code_list_window.h"

#include <QPushButton>
#include <QTableWidget>
#include <QTest>

namespace nv {

class CodeListWindowTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void TypedCellsFollowTheColumnsAndOkSaves() {
    std::vector<CodeListEditor::Row> saved;
    CodeListEditor editor(kPropertyCodesCaption, kSmallListEditorWidth, kSmallListEditorHeight,
                          PropertyCodeColumns(), {{"R1", "Rental"}},
                          [&saved](const std::vector<CodeListEditor::Row>& rows) {
                            saved = rows;
                            return true;
                          });
    CodeListWindow window(editor);
    window.show();
    QCOMPARE(window.windowTitle(), QStringLiteral("Property Codes"));
    QTableWidget* table = window.table();
    QCOMPARE(table->horizontalHeaderItem(0)->text(), QStringLiteral("Code"));
    QCOMPARE(table->rowCount(), 2);  // the code and a blank row for the next

    table->item(1, 0)->setText(QStringLiteral("a-1x"));
    QCOMPARE(table->item(1, 0)->text(), QStringLiteral("A1"));
    QCOMPARE(table->rowCount(), 3);
    table->item(1, 1)->setText(QStringLiteral("Residential"));
    table->setCurrentCell(0, 0);
    window.delete_button()->click();
    QCOMPARE(table->rowCount(), 2);
    window.ok_button()->click();
    QVERIFY(saved == (std::vector<CodeListEditor::Row>{{"A1", "Residential"}}));
    QCOMPARE(window.result(), int(QDialog::Accepted));
  }

  void AFailedSaveKeepsTheWindowOpen() {
    CodeListEditor editor(kLocationsCaption, kLocCatEditorWidth, kLocCatEditorHeight,
                          LocCatColumns(), {{"1", "Main"}},
                          [](const std::vector<CodeListEditor::Row>&) { return false; });
    CodeListWindow window(editor);
    window.show();
    // Codes stand right-aligned, as the list shows them.
    QVERIFY(window.table()->item(0, 0)->textAlignment() & Qt::AlignRight);
    window.table()->setCurrentCell(0, 0);
    window.insert_button()->click();
    QCOMPARE(editor.rows().size(), size_t{2});
    QCOMPARE(window.table()->item(1, 1)->text(), QStringLiteral("Main"));
    window.ok_button()->click();
    QVERIFY(window.isVisible());
  }
};

}  // namespace nv

QTEST_MAIN(nv::CodeListWindowTest)
#include "code_list_window_test.moc"
