#include "quillon/csecondarysortfiltermodel.h"
#include "quillon/csortfiltermodel.h"

#include <QAbstractItemModelTester>
#include <QStandardItemModel>
#include <QTest>

using namespace Quillon;

namespace {
QStringList Column(const QAbstractItemModel &model, int column)
{
    QStringList out;
    for (int r = 0; r < model.rowCount(); ++r)
        out << model.index(r, column).data().toString();
    return out;
}
} // namespace

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
        QTest::newRow("equal") << "Patrol 3"
                               << "Patrol 3" << 0;
        QTest::newRow("prefix first") << "Preset"
                                      << "Preset1" << -1;
        QTest::newRow("letters") << "b"
                                 << "a" << 1;
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
    void sortsTextInNaturalOrder()
    {
        QStandardItemModel source;
        for (const char *name : {"Preset10", "preset2", "Preset1", "Home", "Preset3"})
            source.appendRow(new QStandardItem(QString::fromLatin1(name)));
        CSortFilterModel proxy;
        QAbstractItemModelTester tester(&proxy, QAbstractItemModelTester::FailureReportingMode::QtTest);
        proxy.setSourceModel(&source);
        proxy.sort(0, Qt::AscendingOrder);
        QCOMPARE(Column(proxy, 0), QStringList({"Home", "Preset1", "preset2", "Preset3", "Preset10"}));
        proxy.sort(0, Qt::DescendingOrder);
        QCOMPARE(Column(proxy, 0).first(), QStringLiteral("Preset10"));
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
    void filterAndSortStayConsistent()
    {
        QStandardItemModel source;
        for (const char *name : {"Preset12", "PRESET", "Gate", "preset3"})
            source.appendRow({new QStandardItem(QString::fromLatin1(name)), new QStandardItem(QStringLiteral("x"))});
        CSecondarySortFilterModel proxy;
        QAbstractItemModelTester tester(&proxy, QAbstractItemModelTester::FailureReportingMode::QtTest);
        proxy.setSourceModel(&source);
        proxy.setDynamicSortFilter(true);
        proxy.setFilterCaseSensitivity(Qt::CaseInsensitive);
        proxy.setFilterKeyColumn(0);
        proxy.sort(0);
        proxy.setFilterFixedString(QStringLiteral("pre"));
        QCOMPARE(Column(proxy, 0), QStringList({"PRESET", "preset3", "Preset12"}));
        source.appendRow(new QStandardItem(QStringLiteral("Preset1")));
        QCOMPARE(Column(proxy, 0), QStringList({"PRESET", "Preset1", "preset3", "Preset12"}));
        source.removeRow(0);
        QCOMPARE(proxy.rowCount(), 3);
    }
};

QTEST_MAIN(TestCSortFilterModel)
#include "tst_csortfiltermodel.moc"
