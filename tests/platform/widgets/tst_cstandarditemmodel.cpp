#include "quillon/citemdatarole.h"
#include "quillon/cstandarditem.h"
#include "quillon/cstandarditemmodel.h"

#include <QTest>

using namespace Quillon;

class TestCStandardItemModel : public QObject
{
    Q_OBJECT

private slots:
    void createdCellsAreLibraryItems_data()
    {
        QTest::addColumn<int>("row");
        QTest::addColumn<int>("column");
        QTest::newRow("first cell") << 0 << 0;
        QTest::newRow("last cell") << 3 << 1;
    }
    void createdCellsAreLibraryItems()
    {
        QFETCH(int, row);
        QFETCH(int, column);
        // Cells the model makes itself (setData on an empty cell) must be of the
        // library's type, or casts in views and models fail.
        CStandardItemModel sized(4, 2);
        QVERIFY(sized.setData(sized.index(row, column), QStringLiteral("t")));
        QVERIFY(sized.GetItem(row, column));

        CStandardItemModel grown;
        grown.setRowCount(4);
        grown.setColumnCount(2);
        QVERIFY(grown.setData(grown.index(row, column), 7, ItemNumberRole));
        CStandardItem *item = grown.GetItem(row, column);
        QVERIFY(item);
        QCOMPARE(item->type(), int(CStandardItem::Type));
        QCOMPARE(item->data(ItemNumberRole).toInt(), 7);
        QCOMPARE(grown.GetItemFromIndex(grown.index(row, column)), item);
    }
    void foreignItemsAreNotCast()
    {
        CStandardItemModel model;
        model.appendRow(new QStandardItem(QStringLiteral("plain")));
        QVERIFY(model.item(0));
        QVERIFY(!model.GetItem(0));
        QVERIFY(!model.GetItem(5, 5));

        CStandardItemModel other;
        other.appendRow(new CStandardItem);
        QVERIFY(!model.GetItemFromIndex(other.index(0, 0)));
    }
};

QTEST_MAIN(TestCStandardItemModel)
#include "tst_cstandarditemmodel.moc"
