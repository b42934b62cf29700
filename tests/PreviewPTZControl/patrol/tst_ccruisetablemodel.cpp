#include "patrol/ccruisetablemodel.h"

#include "quillon/citemdatarole.h"

#include <QAbstractItemModelTester>
#include <QPixmap>
#include <QtTest>

using PreviewPTZControl::CCruiseTableModel;
using ptz_plugin_protocol::CruiseInfo;

namespace {
// What a row's action cell shows: "start", "pause", "edit", "delete" or "-" per icon slot.
enum Icon { None, Start, Pause, Edit, Delete };
using RowIcons = QVector<int>;

QVector<CruiseInfo> Patrols(const QVector<int> &numbers)
{
    QVector<CruiseInfo> patrols;
    for (int slot : numbers) {
        CruiseInfo info;
        info.cruise_index = slot;
        info.cruise_type = 1;
        patrols << info;
    }
    return patrols;
}

int IconOf(const CCruiseTableModel &model, int row, int role)
{
    const QPixmap pixmap = model.index(row, 1).data(role).value<QPixmap>();
    if (pixmap.isNull())
        return None;
    const auto &icons = model.GetIcons();
    for (auto pair : {qMakePair(icons.GetStartPixmap(), int(Start)), qMakePair(icons.GetPausePixmap(), int(Pause)),
                      qMakePair(icons.GetEditPixmap(), int(Edit)), qMakePair(icons.GetDeletePixmap(), int(Delete))}) {
        if (pixmap.cacheKey() == pair.first.cacheKey())
            return pair.second;
    }
    return -1;
}

RowIcons IconsOf(const CCruiseTableModel &model, int row)
{
    return {IconOf(model, row, Quillon::ItemFirstRightPixmapRole), IconOf(model, row, Quillon::ItemSecondRightPixmapRole),
            IconOf(model, row, Quillon::ItemThirdRightPixmapRole)};
}

bool Running(const CCruiseTableModel &model, int row)
{
    return model.index(row, 1).data(CCruiseTableModel::PatrolRunningRole).toBool();
}

bool Marked(const CCruiseTableModel &model, int row)
{
    return model.index(row, 0).data(Quillon::ItemRunningRole).toBool();
}
} // namespace

class TstCCruiseTableModel : public QObject
{
    Q_OBJECT
private slots:
    void builtWithEightEmptySlots();
    void updatePatrols_data();
    void updatePatrols();
    void singleRowRefreshDiffers_data();
    void singleRowRefreshDiffers();
    void playState_data();
    void playState();
    void whiteThemeSwapsShownIconsOnly();
    void modelTester();
};

void TstCCruiseTableModel::builtWithEightEmptySlots()
{
    CCruiseTableModel model;
    QCOMPARE(model.rowCount(), 8);
    QCOMPARE(model.columnCount(), 2);
    QCOMPARE(model.index(7, 0).data(Quillon::ItemTextRole).toString(), QStringLiteral("Patrol8"));
    for (int row = 0; row < 8; ++row) {
        QCOMPARE(IconsOf(model, row), (RowIcons{None, Edit, None}));
        QVERIFY(!(model.index(row, 0).flags() & Qt::ItemIsEnabled));
        QVERIFY(!(model.index(row, 0).flags() & Qt::ItemIsEditable));
    }
    QCOMPARE(model.PlayingRow(), -1);
    QVERIFY(!model.GetIcons().GetStartPixmap().isNull());
    QVERIFY(!model.GetIcons().GetPausePixmap().isNull());
}

void TstCCruiseTableModel::updatePatrols_data()
{
    QTest::addColumn<QVector<int>>("numbers");
    QTest::addColumn<bool>("canEdit");
    QTest::addColumn<int>("runningRow");
    QTest::addColumn<int>("row");
    QTest::addColumn<RowIcons>("icons");
    QTest::addColumn<bool>("enabled");
    QTest::addColumn<bool>("running");

    QTest::newRow("configured") << QVector<int>{1, 3} << true << -1 << 2 << RowIcons{Start, Edit, Delete} << true << false;
    QTest::newRow("empty slot offers edit") << QVector<int>{1} << true << -1 << 1 << RowIcons{None, Edit, None} << false
                                           << false;
    QTest::newRow("running slot shows pause") << QVector<int>{2} << true << 1 << 1 << RowIcons{Pause, Edit, Delete}
                                              << true << true;
    QTest::newRow("no edit right: configured plays only") << QVector<int>{2} << false << -1 << 1
                                                          << RowIcons{Start, None, None} << true << false;
    QTest::newRow("no edit right: empty shows nothing") << QVector<int>{2} << false << -1 << 0
                                                        << RowIcons{None, None, None} << false << false;
    QTest::newRow("slot numbers outside 1..8 change nothing") << QVector<int>{0, 9, -1} << true << -1 << 7
                                                              << RowIcons{None, Edit, None} << false << false;
    QTest::newRow("two entries for one slot") << QVector<int>{8, 8} << true << -1 << 7
                                              << RowIcons{Start, Edit, Delete} << true << false;
}

void TstCCruiseTableModel::updatePatrols()
{
    QFETCH(QVector<int>, numbers);
    QFETCH(bool, canEdit);
    QFETCH(int, runningRow);
    QFETCH(int, row);
    QFETCH(RowIcons, icons);
    QFETCH(bool, enabled);
    QFETCH(bool, running);

    CCruiseTableModel model;
    if (runningRow >= 0)
        model.SetPlayingIndex(model.index(runningRow, 0), true);
    model.UpdatePatrols(Patrols(numbers), canEdit);
    QCOMPARE(IconsOf(model, row), icons);
    QCOMPARE(bool(model.index(row, 0).flags() & Qt::ItemIsEnabled), enabled);
    QCOMPARE(model.index(row, 1).data(CCruiseTableModel::PatrolConfiguredRole).toBool(), enabled);
    QCOMPARE(Running(model, row), running);
    QCOMPARE(Marked(model, row), running);
    const double alpha = model.index(row, 0).data(Quillon::ItemTextColorRole).value<QColor>().alphaF();
    QVERIFY2(qAbs(alpha - (enabled ? 0.7 : 0.2)) < 0.01, qPrintable(QString::number(alpha)));
}

void TstCCruiseTableModel::singleRowRefreshDiffers_data()
{
    QTest::addColumn<bool>("configured");
    QTest::addColumn<RowIcons>("icons");
    QTest::newRow("saved") << true << RowIcons{Start, None, Delete};
    QTest::newRow("deleted") << false << RowIcons{None, None, None};
}

void TstCCruiseTableModel::singleRowRefreshDiffers()
{
    QFETCH(bool, configured);
    QFETCH(RowIcons, icons);
    CCruiseTableModel model;
    // Without the edit right the full refresh hides edit; the single-row refresh leaves it so and
    // offers delete regardless.
    model.UpdatePatrols(Patrols({4}), false);
    model.UpdatePatrolRow(3, configured);
    QCOMPARE(IconsOf(model, 3), icons);
    QVERIFY(model.index(3, 0).flags() & Qt::ItemIsEnabled); // untouched
    QCOMPARE(model.index(3, 1).data(CCruiseTableModel::PatrolConfiguredRole).toBool(), configured);

    // The running state is left alone as well.
    model.UpdatePatrols(Patrols({4}), true);
    model.SetPlayingIndex(model.index(3, 0), true);
    model.UpdatePatrolRow(3, configured);
    QVERIFY(Running(model, 3));
    QVERIFY(Marked(model, 3));
}

void TstCCruiseTableModel::playState_data()
{
    QTest::addColumn<int>("playRow");
    QTest::addColumn<bool>("playing");
    QTest::addColumn<int>("expectedRow");
    QTest::addColumn<RowIcons>("row0");
    QTest::addColumn<RowIcons>("row1");
    QTest::addColumn<RowIcons>("row2");

    QTest::newRow("start row 1") << 1 << true << 1 << RowIcons{Start, Edit, Delete} << RowIcons{Pause, Edit, Delete}
                                 << RowIcons{None, Edit, None};
    QTest::newRow("playing false clears whatever the index") << 0 << false << -1 << RowIcons{Start, Edit, Delete}
                                                             << RowIcons{Start, Edit, Delete}
                                                             << RowIcons{None, Edit, None};
    QTest::newRow("unconfigured row changes nothing in it") << 2 << true << 2 << RowIcons{Start, Edit, Delete}
                                                            << RowIcons{Start, Edit, Delete}
                                                            << RowIcons{None, Edit, None};
}

void TstCCruiseTableModel::playState()
{
    QFETCH(int, playRow);
    QFETCH(bool, playing);
    QFETCH(int, expectedRow);
    QFETCH(RowIcons, row0);
    QFETCH(RowIcons, row1);
    QFETCH(RowIcons, row2);

    CCruiseTableModel model;
    model.UpdatePatrols(Patrols({1, 2}), true);
    model.SetPlayingIndex(model.index(0, 0), true); // something runs before
    model.SetPlayingIndex(model.index(playRow, 0), playing);
    QCOMPARE(model.PlayingRow(), expectedRow);
    QCOMPARE(IconsOf(model, 0), row0);
    QCOMPARE(IconsOf(model, 1), row1);
    QCOMPARE(IconsOf(model, 2), row2);
    QVERIFY(!Marked(model, 2));
    QCOMPARE(model.index(1, 1).data(Quillon::ItemFirstRightPixmapTipRole).toString(),
             expectedRow == 1 ? QStringLiteral("Stop") : QStringLiteral("CallBQA8YLFY"));

    model.ClearPlaying();
    QCOMPARE(model.PlayingRow(), -1);
    for (int row = 0; row < 8; ++row) {
        QVERIFY(!Running(model, row));
        QVERIFY(!Marked(model, row));
    }
}

void TstCCruiseTableModel::whiteThemeSwapsShownIconsOnly()
{
    CCruiseTableModel model;
    model.UpdatePatrols(Patrols({1}), true);
    model.SetPlayingIndex(model.index(0, 0), true);
    model.SetWhiteTheme(true);
    QVERIFY(model.GetIcons().IsWhiteTheme());
    QCOMPARE(IconsOf(model, 0), (RowIcons{Pause, Edit, Delete}));
    QCOMPARE(IconsOf(model, 1), (RowIcons{None, Edit, None}));
}

void TstCCruiseTableModel::modelTester()
{
    CCruiseTableModel model;
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    model.UpdatePatrols(Patrols({1, 5}), true);
    model.SetPlayingIndex(model.index(4, 0), true);
    model.UpdatePatrolRow(4, false);
    model.ClearPlaying();
}

QTEST_MAIN(TstCCruiseTableModel)
#include "tst_ccruisetablemodel.moc"
