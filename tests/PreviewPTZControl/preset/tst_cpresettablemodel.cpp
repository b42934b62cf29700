#include "support/records.h"

#include "preset/cpresettablemodel.h"
#include "preset/csortpresetfiltermodel.h"

#include "quillon/citemdatarole.h"

#include <QAbstractItemModelTester>
#include <QPixmap>
#include <QtTest>

using PreviewPTZControl::CPresetTableModel;
using ptz_plugin_protocol::PresetInfo;

namespace {
QStringList Names(const QAbstractItemModel &model)
{
    QStringList names;
    for (int r = 0; r < model.rowCount(); ++r)
        names << model.index(r, 1).data().toString();
    return names;
}

QPixmap Pix(const QAbstractItemModel &model, int row, int column, int role)
{
    return model.index(row, column).data(role).value<QPixmap>();
}

bool SamePixmap(const QPixmap &a, const QPixmap &b)
{
    return !a.isNull() && a.cacheKey() == b.cacheKey();
}

bool Enabled(const QAbstractItemModel &model, int row, int column)
{
    return model.flags(model.index(row, column)) & Qt::ItemIsEnabled;
}
} // namespace

class TstCPresetTableModel : public QObject
{
    Q_OBJECT
private slots:
    void updateFiltersByKind_data()
    {
        QTest::addColumn<int>("shownType");
        QTest::addColumn<QStringList>("expected");
        const QStringList deviceAndVirtual{"dev1", "virt3", "dev2"};
        QTest::newRow("not set yet (-1): device and virtual") << -1 << deviceAndVirtual;
        QTest::newRow("device: device and virtual") << 1 << deviceAndVirtual;
        QTest::newRow("virtual: device and virtual") << 3 << deviceAndVirtual;
        QTest::newRow("fish-eye: fish-eye only") << 2 << QStringList{"fish5"};
    }
    void updateFiltersByKind()
    {
        QFETCH(int, shownType);
        QFETCH(QStringList, expected);
        CPresetTableModel model(1.0);
        model.SetPresetType(shownType);
        model.UpdatePresetList({Preset(1, 1, "dev1"), Preset(4, -1, "invalid"), Preset(3, 3, "virt3"),
                                Preset(5, 2, "fish5"), Preset(2, 1, "dev2"), Preset(6, -1, "invalid2")},
                               true);
        QCOMPARE(Names(model), expected);
    }
    void updateKeepsRowsAndAppendsUnknown()
    {
        CPresetTableModel model(1.0);
        model.UpdatePresetList({Preset(7, 1, "seven"), Preset(2, 1, "two")}, true);
        model.UpdatePresetList({Preset(2, 1, "TWO"), Preset(1, 1, "one"), Preset(7, 3, "seven virt")}, true);
        // Existing numbers update in place, the new number goes last, not in number order.
        QCOMPARE(Names(model), (QStringList{"seven virt", "TWO", "one"}));
        QCOMPARE(model.index(0, 0).data(Quillon::ItemNumberRole).toInt(), 7);
        QCOMPARE(model.index(0, 2).data(Quillon::ItemFirstStateRole).toInt(), 3);
        QCOMPARE(model.index(1, 1).data(Qt::ToolTipRole).toString(), QStringLiteral("TWO"));
        QCOMPARE(model.FindPresetRow(1), 2);
        QCOMPARE(model.FindPresetRow(99), -1);

        // New rows go at the top or the end, as asked.
        model.AddPresetItem(Preset(9, 3, "top"), true, true);
        model.AddPresetItem(Preset(8, 1, "end"), true, false);
        QCOMPARE(Names(model), (QStringList{"top", "seven virt", "TWO", "one", "end"}));
        QCOMPARE(model.index(0, 0).data(Quillon::ItemNumberRole).toInt(), 9);
        for (int c = 0; c < 3; ++c)
            QVERIFY(Enabled(model, 0, c));
    }
    void typePixmapPerType_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<int>("shownType");
        QTest::newRow("device") << 1 << 1;
        QTest::newRow("fish-eye") << 2 << 2;
        QTest::newRow("virtual") << 3 << 1;
        QTest::newRow("unknown kind") << 9 << 1;
    }
    void typePixmapPerType()
    {
        QFETCH(int, type);
        QFETCH(int, shownType);
        CPresetTableModel model(1.0);
        model.SetPresetType(shownType);
        model.UpdatePresetList({Preset(1, type, "p")}, true);
        const QPixmap expected = model.GetIcons().GetPresetTypePixmap(type);
        QVERIFY(SamePixmap(Pix(model, 0, 0, Quillon::ItemLeadingPixmapRole), expected));
        QCOMPARE(SamePixmap(expected, model.GetIcons().GetNotSetPixmap()), type == 9);
        CPresetTableModel hidpi(2.0);
        QCOMPARE(hidpi.GetIcons().GetStartPixmap().size(), QSize(48, 48));
    }
    void editActionsOffered_data()
    {
        QTest::addColumn<int>("reserved");
        QTest::addColumn<bool>("mayEdit");
        QTest::addColumn<bool>("offered");
        QTest::newRow("ordinary, may edit") << 0 << true << true;
        QTest::newRow("ordinary, no edit permission") << 0 << false << false;
        QTest::newRow("fixed, may edit") << 1 << true << false;
        QTest::newRow("fixed, no edit permission") << 1 << false << false;
        QTest::newRow("other flag value, may edit") << 2 << true << true;
    }
    void editActionsOffered()
    {
        QFETCH(int, reserved);
        QFETCH(bool, mayEdit);
        QFETCH(bool, offered);
        // Both paths: a new row (append) and an existing row updated in place.
        for (bool existing : {false, true}) {
            CPresetTableModel model(1.0);
            if (existing)
                model.UpdatePresetList({Preset(4, 1, "old")}, true);
            model.UpdatePresetList({Preset(4, 1, "p", reserved)}, mayEdit);
            QCOMPARE(model.rowCount(), 1);
            const QModelIndex action = model.index(0, 2);
            QVERIFY(!Pix(model, 0, 2, Quillon::ItemFirstRightPixmapRole).isNull());
            QVERIFY(!action.data(Quillon::ItemFirstRightPixmapTipRole).toString().isEmpty());
            QCOMPARE(!Pix(model, 0, 2, Quillon::ItemSecondRightPixmapRole).isNull(), offered);
            QCOMPARE(!Pix(model, 0, 2, Quillon::ItemThirdRightPixmapRole).isNull(), offered);
            QCOMPARE(action.data(Quillon::ItemSecondRightPixmapTipRole).toString().isEmpty(), !offered);
            QCOMPARE(action.data(Quillon::ItemThirdRightPixmapTipRole).toString().isEmpty(), !offered);
        }
    }
    void resetNamesRowsByPositionUpTo256()
    {
        CPresetTableModel model(1.0);
        QVector<PresetInfo> presets{Preset(12, 1, "twelve"), Preset(3, 3, "three")};
        for (int n = 13; n <= 268; ++n)
            presets << Preset(n, 1, "x");
        model.UpdatePresetList(presets, true);
        model.ResetPresetItems();
        for (int r : {0, 1, 255}) {
            QCOMPARE(model.index(r, 1).data().toString(), QStringLiteral("Preset%1").arg(r + 1));
            QCOMPARE(model.index(r, 1).data(Qt::ToolTipRole).toString(), QStringLiteral("Preset%1").arg(r + 1));
            QVERIFY(!Enabled(model, r, 0) && Enabled(model, r, 1) && Enabled(model, r, 2));
            QVERIFY(SamePixmap(Pix(model, r, 0, Quillon::ItemLeadingPixmapRole), model.GetIcons().GetNotSetPixmap()));
            QCOMPARE(model.index(r, 2).data(Quillon::ItemFirstStateRole).toInt(), -1);
        }
        QCOMPARE(model.index(256, 1).data().toString(), QStringLiteral("x"));
        QVERIFY(Enabled(model, 256, 0));
    }
    void clearAndRestoreRow()
    {
        CPresetTableModel model(1.0);
        model.UpdatePresetList({Preset(5, 1, "a"), Preset(6, 3, "b")}, true);
        model.ClearPresetItem(1);
        QCOMPARE(Names(model), (QStringList{"a", "Preset2"}));
        for (int c = 0; c < 3; ++c)
            QVERIFY(!Enabled(model, 1, c));

        model.setData(model.index(0, 1), QStringLiteral("renamed"), Qt::DisplayRole);
        model.RestorePresetItem(0);
        for (int c = 0; c < 3; ++c)
            QVERIFY(Enabled(model, 0, c));
        QCOMPARE(model.index(0, 1).data(Qt::ToolTipRole).toString(), QStringLiteral("renamed"));
        QVERIFY(SamePixmap(Pix(model, 0, 0, Quillon::ItemLeadingPixmapRole), model.GetIcons().GetPresetTypePixmap(1)));
        QVERIFY(!Pix(model, 0, 2, Quillon::ItemThirdRightPixmapRole).isNull());
    }
    void modelTester()
    {
        CPresetTableModel model(1.0);
        PreviewPTZControl::CSortPresetFilterModel proxy;
        proxy.setSourceModel(&model);
        proxy.setFilterKeyColumn(1);
        QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        QAbstractItemModelTester proxyTester(&proxy, QAbstractItemModelTester::FailureReportingMode::QtTest);
        model.UpdatePresetList({Preset(1, 1, "a"), Preset(2, 3, "b")}, true);
        proxy.setFilterFixedString(QStringLiteral("a"));
        model.AddPresetItem(Preset(3, 1, "c"), false, true);
        model.UpdatePresetList({Preset(1, 1, "aa"), Preset(4, 1, "d")}, false);
        model.ResetPresetItems();
        model.ClearPresetItem(0);
        model.RestorePresetItem(0);
        proxy.setFilterFixedString(QString());
        model.removeRow(1);
        QCOMPARE(model.rowCount(), 3);
    }
};

QTEST_MAIN(TstCPresetTableModel)
#include "tst_cpresettablemodel.moc"
