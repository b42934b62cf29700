#include "support/records.h"

#include "preset/cpresettablemodel.h"
#include "preset/csortpresetfiltermodel.h"

#include "quillon/citemdatarole.h"
#include "quillon/cstandarditem.h"

#include <QAbstractItemModelTester>
#include <QPixmap>
#include <QtTest>

using PreviewPTZControl::CPresetTableModel;
using PreviewPTZControl::CSortPresetFilterModel;
using ptz_plugin_protocol::PresetInfo;

Q_DECLARE_METATYPE(QVector<PresetInfo>)

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
} // namespace

class TstCPresetTableModel : public QObject
{
    Q_OBJECT
private slots:
    void pixmapsResolve()
    {
        CPresetTableModel model(1.0);
        const auto &icons = model.GetIcons();
        QVERIFY(!icons.GetNotSetPixmap().isNull());
        for (int type : { 1, 2, 3 })
            QVERIFY2(!icons.GetPresetTypePixmap(type).isNull(), qPrintable(QString::number(type)));
        QVERIFY(!icons.GetStartPixmap().isNull());
        QVERIFY(!icons.GetEditPixmap().isNull());
        QVERIFY(!icons.GetDeletePixmap().isNull());
        QVERIFY(icons.GetEmptyPixmap().isNull());
        CPresetTableModel hidpi(2.0);
        QCOMPARE(hidpi.GetIcons().GetStartPixmap().size(), QSize(48, 48));
    }
    void updateFiltersByKind_data()
    {
        QTest::addColumn<int>("shownType");
        QTest::addColumn<QStringList>("expected");
        const QStringList deviceAndVirtual { QStringLiteral("dev1"), QStringLiteral("virt3"), QStringLiteral("dev2") };
        QTest::newRow("not set yet (-1): device and virtual") << -1 << deviceAndVirtual;
        QTest::newRow("device: device and virtual") << 1 << deviceAndVirtual;
        QTest::newRow("virtual: device and virtual") << 3 << deviceAndVirtual;
        QTest::newRow("fish-eye: fish-eye only") << 2 << QStringList { QStringLiteral("fish5") };
    }
    void updateFiltersByKind()
    {
        QFETCH(int, shownType);
        QFETCH(QStringList, expected);
        CPresetTableModel model(1.0);
        model.SetPresetType(shownType);
        model.UpdatePresetList({ Preset(1, 1, "dev1"), Preset(4, -1, "invalid"), Preset(3, 3, "virt3"),
                                   Preset(5, 2, "fish5"), Preset(2, 1, "dev2"), Preset(6, -1, "invalid2") },
            true);
        QCOMPARE(Names(model), expected);
    }
    void updateKeepsRowsAndAppendsUnknown()
    {
        CPresetTableModel model(1.0);
        model.UpdatePresetList({}, true);
        QCOMPARE(model.rowCount(), 0);

        model.UpdatePresetList({ Preset(7, 1, "seven"), Preset(2, 1, "two") }, true);
        model.UpdatePresetList({ Preset(2, 1, "TWO"), Preset(1, 1, "one"), Preset(7, 3, "seven virt") }, true);
        // Existing numbers update in place, the new number goes last, not in number order.
        QCOMPARE(
            Names(model), (QStringList { QStringLiteral("seven virt"), QStringLiteral("TWO"), QStringLiteral("one") }));
        QCOMPARE(model.index(0, 0).data(Quillon::ItemNumberRole).toInt(), 7);
        QCOMPARE(model.index(0, 2).data(Quillon::ItemFirstStateRole).toInt(), 3);
        QCOMPARE(model.index(1, 1).data(Qt::ToolTipRole).toString(), QStringLiteral("TWO"));
        QCOMPARE(model.FindPresetRow(1), 2);
        QCOMPARE(model.FindPresetRow(99), -1);
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
        model.UpdatePresetList({ Preset(1, type, "p") }, true);
        QCOMPARE(model.rowCount(), 1);
        const QPixmap expected = model.GetIcons().GetPresetTypePixmap(type);
        QVERIFY(SamePixmap(Pix(model, 0, 0, Quillon::ItemLeadingPixmapRole), expected));
        if (type == 9)
            QVERIFY(SamePixmap(expected, model.GetIcons().GetNotSetPixmap()));
        else
            QVERIFY(!SamePixmap(expected, model.GetIcons().GetNotSetPixmap()));
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
        for (bool existing : { false, true }) {
            CPresetTableModel model(1.0);
            if (existing)
                model.UpdatePresetList({ Preset(4, 1, "old") }, true);
            model.UpdatePresetList({ Preset(4, 1, "p", reserved) }, mayEdit);
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
    void addAtTopOrEnd()
    {
        CPresetTableModel model(1.0);
        model.UpdatePresetList({ Preset(1, 1, "a"), Preset(2, 1, "b") }, true);
        model.AddPresetItem(Preset(9, 3, "top"), true, true);
        model.AddPresetItem(Preset(8, 1, "end"), true, false);
        QCOMPARE(Names(model),
            (QStringList { QStringLiteral("top"), QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("end") }));
        QCOMPARE(model.index(0, 0).data(Quillon::ItemNumberRole).toInt(), 9);
        for (int c = 0; c < 3; ++c)
            QVERIFY(model.flags(model.index(0, c)) & Qt::ItemIsEnabled);
    }
    void resetNamesRowsByPosition()
    {
        CPresetTableModel model(1.0);
        model.UpdatePresetList({ Preset(12, 1, "twelve"), Preset(3, 3, "three") }, true);
        model.ResetPresetItems();
        QCOMPARE(Names(model), (QStringList { QStringLiteral("Preset1"), QStringLiteral("Preset2") }));
        for (int r = 0; r < 2; ++r) {
            QVERIFY(!(model.flags(model.index(r, 0)) & Qt::ItemIsEnabled));
            QVERIFY(model.flags(model.index(r, 1)) & Qt::ItemIsEnabled);
            QVERIFY(model.flags(model.index(r, 2)) & Qt::ItemIsEnabled);
            QVERIFY(SamePixmap(Pix(model, r, 0, Quillon::ItemLeadingPixmapRole), model.GetIcons().GetNotSetPixmap()));
            QCOMPARE(model.index(r, 2).data(Quillon::ItemFirstStateRole).toInt(), -1);
            QCOMPARE(model.index(r, 1).data(Qt::ToolTipRole).toString(), QStringLiteral("Preset%1").arg(r + 1));
        }
    }
    void resetStopsAt256()
    {
        CPresetTableModel model(1.0);
        QVector<PresetInfo> presets;
        for (int n = 1; n <= 258; ++n)
            presets << Preset(n, 1, "x");
        model.UpdatePresetList(presets, true);
        QCOMPARE(model.rowCount(), 258);
        model.ResetPresetItems();
        QCOMPARE(model.index(255, 1).data().toString(), QStringLiteral("Preset256"));
        QCOMPARE(model.index(256, 1).data().toString(), QStringLiteral("x"));
        QCOMPARE(model.index(257, 1).data().toString(), QStringLiteral("x"));
        QVERIFY(model.flags(model.index(256, 0)) & Qt::ItemIsEnabled);
    }
    void clearAndRestoreRow()
    {
        CPresetTableModel model(1.0);
        model.UpdatePresetList({ Preset(5, 1, "a"), Preset(6, 3, "b") }, true);
        model.ClearPresetItem(1);
        QCOMPARE(model.index(1, 1).data().toString(), QStringLiteral("Preset2"));
        for (int c = 0; c < 3; ++c)
            QVERIFY(!(model.flags(model.index(1, c)) & Qt::ItemIsEnabled));
        QCOMPARE(model.index(0, 1).data().toString(), QStringLiteral("a"));

        CPresetTableModel edited(1.0);
        edited.UpdatePresetList({ Preset(6, 3, "b") }, true);
        edited.setData(edited.index(0, 1), QStringLiteral("renamed"), Qt::DisplayRole);
        edited.RestorePresetItem(0);
        for (int c = 0; c < 3; ++c)
            QVERIFY(edited.flags(edited.index(0, c)) & Qt::ItemIsEnabled);
        QCOMPARE(edited.index(0, 1).data(Qt::ToolTipRole).toString(), QStringLiteral("renamed"));
        QVERIFY(
            SamePixmap(Pix(edited, 0, 0, Quillon::ItemLeadingPixmapRole), edited.GetIcons().GetPresetTypePixmap(3)));
        QVERIFY(!Pix(edited, 0, 2, Quillon::ItemThirdRightPixmapRole).isNull());
    }
    void filterMatchesNamesOnly_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("empty shows all") << QString() << QStringList { "Preset12", "PRESET", "Gate", "Door 12" };
        QTest::newRow("case-insensitive substring") << "pre" << QStringList { "Preset12", "PRESET" };
        QTest::newRow("middle of the name") << "ATE" << QStringList { "Gate" };
        QTest::newRow("digits in names only, not numbers") << "12" << QStringList { "Preset12", "Door 12" };
        QTest::newRow("preset number is not searched") << "7" << QStringList {};
        QTest::newRow("wildcards are literal") << "P*" << QStringList {};
    }
    void filterMatchesNamesOnly()
    {
        QFETCH(QString, text);
        QFETCH(QStringList, expected);
        CPresetTableModel model(1.0);
        model.UpdatePresetList(
            { Preset(7, 1, "Preset12"), Preset(17, 1, "PRESET"), Preset(27, 3, "Gate"), Preset(77, 1, "Door 12") },
            true);
        CSortPresetFilterModel proxy;
        proxy.setSourceModel(&model);
        proxy.setFilterKeyColumn(1);
        proxy.setDynamicSortFilter(true);
        proxy.setFilterCaseSensitivity(Qt::CaseInsensitive);
        proxy.setFilterRole(Qt::DisplayRole);
        proxy.setFilterFixedString(text);
        QCOMPARE(Names(proxy), expected);
    }
    void modelTester()
    {
        CPresetTableModel model(1.0);
        CSortPresetFilterModel proxy;
        proxy.setSourceModel(&model);
        proxy.setFilterKeyColumn(1);
        proxy.setFilterCaseSensitivity(Qt::CaseInsensitive);
        QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        QAbstractItemModelTester proxyTester(&proxy, QAbstractItemModelTester::FailureReportingMode::QtTest);
        model.UpdatePresetList({ Preset(1, 1, "a"), Preset(2, 3, "b") }, true);
        proxy.setFilterFixedString(QStringLiteral("a"));
        model.AddPresetItem(Preset(3, 1, "c"), false, true);
        model.UpdatePresetList({ Preset(1, 1, "aa"), Preset(4, 1, "d") }, false);
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
