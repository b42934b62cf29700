#include "quillon/csecondarysortfiltermodel.h"
#include "quillon/csortfiltermodel.h"

#include <QAbstractItemModelTester>
#include <QStandardItemModel>
#include <QTest>

using namespace Quillon;

class TestCSortFilterModel : public QObject
{
    Q_OBJECT

private slots:
    void naturalCompare_data()
    {
        QTest::addColumn<QString>("left");
        QTest::addColumn<QString>("right");
        QTest::addColumn<int>("sign");
        QTest::newRow("numbers by value") << "Preset2"
                                          << "Preset10" << -1;
        QTest::newRow("case ignored first") << "preset"
                                            << "PRESETA" << -1;
        QTest::newRow("prefix first") << "Preset"
                                      << "Preset1" << -1;
        QTest::newRow("leading zeros keep value order") << "a007"
                                                        << "a10" << -1;
        QTest::newRow("same value, fewer zeros first") << "a7"
                                                       << "a07" << -1;
        QTest::newRow("case differs only") << "A"
                                           << "a" << -1;
    }
    void naturalCompare()
    {
        QFETCH(QString, left);
        QFETCH(QString, right);
        QFETCH(int, sign);
        QCOMPARE(CSortFilterModel::NaturalCompare(left, right), sign);
        QCOMPARE(CSortFilterModel::NaturalCompare(right, left), -sign);
    }
    void secondaryColumnBreaksTies_data()
    {
        QTest::addColumn<Qt::SortOrder>("order");
        QTest::addColumn<QStringList>("names");
        QTest::newRow("ascending") << Qt::AscendingOrder << QStringList({"a1", "b2", "c1", "c2", "c10"});
        QTest::newRow("descending") << Qt::DescendingOrder << QStringList({"c10", "c2", "c1", "b2", "a1"});
    }
    void secondaryColumnBreaksTies()
    {
        QFETCH(Qt::SortOrder, order);
        QFETCH(QStringList, names);
        // Column 0 the group (ties), column 1 a number that orders within a group.
        QStandardItemModel source;
        const QList<QPair<QString, int>> rows = {{"c", 10}, {"a", 1}, {"c", 1}, {"b", 2}, {"c", 2}};
        for (const auto &row : rows) {
            auto *number = new QStandardItem;
            number->setData(row.second, Qt::DisplayRole);
            source.appendRow({new QStandardItem(row.first), number});
        }
        CSecondarySortFilterModel proxy;
        QAbstractItemModelTester tester(&proxy, QAbstractItemModelTester::FailureReportingMode::QtTest);
        proxy.setSourceModel(&source);
        proxy.SetSecondarySortColumn(1);
        proxy.sort(0, order);
        QStringList seen;
        for (int r = 0; r < proxy.rowCount(); ++r)
            seen << proxy.index(r, 0).data().toString() + proxy.index(r, 1).data().toString();
        QCOMPARE(seen, names);
    }
};

QTEST_MAIN(TestCSortFilterModel)
#include "tst_csortfiltermodel.moc"
