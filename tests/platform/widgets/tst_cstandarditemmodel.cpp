#include "quillon/citemdatarole.h"
#include "quillon/cstandarditem.h"
#include "quillon/cstandarditemmodel.h"

#include <QAbstractItemModelTester>
#include <QTest>

using namespace Quillon;

class TestCStandardItemModel : public QObject
{
    Q_OBJECT

private slots:
    void modelIsConsistentThroughEdits()
    {
        CStandardItemModel model;
        QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        model.setColumnCount(3);
        for (int i = 0; i < 5; ++i)
            model.appendRow({new CStandardItem(QString::number(i)), new CStandardItem, new CStandardItem});
        model.insertRow(0, {new CStandardItem(QStringLiteral("top")), new CStandardItem, new CStandardItem});
        model.item(2, 2)->setData(QPixmap(8, 8), ItemFirstRightPixmapRole);
        model.removeRows(1, 2);
        model.GetItem(0)->SetItemEnabled(false);
        model.clear();
        QCOMPARE(model.rowCount(), 0);
    }
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
    void itemTextSetsBothRoles()
    {
        CStandardItem item;
        item.SetItemText(QStringLiteral("Patrol 1"));
        QCOMPARE(item.text(), QStringLiteral("Patrol 1"));
        QCOMPARE(item.data(ItemTextRole).toString(), QStringLiteral("Patrol 1"));
        item.setData(QStringLiteral("painted"), ItemTextRole);
        QCOMPARE(item.GetItemText(), QStringLiteral("painted"));

        CStandardItem plain(QStringLiteral("display only"));
        QCOMPARE(plain.GetItemText(), QStringLiteral("display only"));
        plain.SetItemEnabled(false);
        QVERIFY(!(plain.flags() & Qt::ItemIsEnabled));
    }
    void clonedItemKeepsTypeAndData()
    {
        CStandardItem item(QStringLiteral("x"));
        item.setData(3, ItemNumberRole);
        QScopedPointer<QStandardItem> copy(item.clone());
        QVERIFY(dynamic_cast<CStandardItem *>(copy.data()));
        QCOMPARE(copy->data(ItemNumberRole).toInt(), 3);
    }
};

QTEST_MAIN(TestCStandardItemModel)
#include "tst_cstandarditemmodel.moc"
