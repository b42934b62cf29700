#include "patrol/ccruisetablemodel.h"

#include "quillon/citemdatarole.h"

#include <QPixmap>
#include <QtTest>

#include <algorithm>

using PreviewPTZControl::CCruiseTableModel;

namespace {
// What a row's action cell shows, per icon slot.
enum Icon { None, Start, Pause, Edit, Delete };
using RowIcons = QVector<int>;

QVector<ptz_plugin_protocol::CruiseInfo> Patrols(const QVector<int> &numbers)
{
    QVector<ptz_plugin_protocol::CruiseInfo> patrols;
    for (int slot : numbers) {
        ptz_plugin_protocol::CruiseInfo info;
        info.cruise_index = slot;
        info.cruise_type = 1;
        patrols << info;
    }
    return patrols;
}

RowIcons IconsOf(const CCruiseTableModel &model, int row)
{
    const auto &icons = model.GetIcons();
    const qint64 keys[] = {0, icons.GetStartPixmap().cacheKey(), icons.GetPausePixmap().cacheKey(),
                           icons.GetEditPixmap().cacheKey(), icons.GetDeletePixmap().cacheKey()};
    RowIcons result;
    for (int role :
         {Quillon::ItemFirstRightPixmapRole, Quillon::ItemSecondRightPixmapRole, Quillon::ItemThirdRightPixmapRole}) {
        const QPixmap pixmap = model.index(row, 1).data(role).value<QPixmap>();
        const qint64 *found = std::find(std::begin(keys) + 1, std::end(keys), pixmap.cacheKey());
        result << (pixmap.isNull() ? int(None) : found == std::end(keys) ? -1 : int(found - std::begin(keys)));
    }
    return result;
}
} // namespace

class TstCCruiseTableModel : public QObject
{
    Q_OBJECT
private slots:
    // The panel always has the edit right; what an operator without it sees is checked here.
    void updatePatrols_data()
    {
        QTest::addColumn<QVector<int>>("numbers");
        QTest::addColumn<bool>("canEdit");
        QTest::addColumn<int>("runningRow");
        QTest::addColumn<int>("row");
        QTest::addColumn<RowIcons>("icons");
        QTest::addColumn<bool>("enabled");

        QTest::newRow("configured") << QVector<int>{1, 3} << true << -1 << 2 << RowIcons{Start, Edit, Delete} << true;
        QTest::newRow("empty slot offers edit")
            << QVector<int>{1} << true << -1 << 1 << RowIcons{None, Edit, None} << false;
        QTest::newRow("running slot shows pause")
            << QVector<int>{2} << true << 1 << 1 << RowIcons{Pause, Edit, Delete} << true;
        QTest::newRow("no edit right: configured plays only")
            << QVector<int>{2} << false << -1 << 1 << RowIcons{Start, None, None} << true;
        QTest::newRow("no edit right: empty shows nothing")
            << QVector<int>{2} << false << -1 << 0 << RowIcons{None, None, None} << false;
        QTest::newRow("slot numbers outside 1..8 change nothing")
            << QVector<int>{0, 9, -1} << true << -1 << 7 << RowIcons{None, Edit, None} << false;
        QTest::newRow("two entries for one slot")
            << QVector<int>{8, 8} << true << -1 << 7 << RowIcons{Start, Edit, Delete} << true;
    }
    void updatePatrols()
    {
        QFETCH(QVector<int>, numbers);
        QFETCH(bool, canEdit);
        QFETCH(int, runningRow);
        QFETCH(int, row);
        QFETCH(RowIcons, icons);
        QFETCH(bool, enabled);

        CCruiseTableModel model;
        if (runningRow >= 0)
            model.SetPlayingIndex(model.index(runningRow, 0), true);
        model.UpdatePatrols(Patrols(numbers), canEdit);
        QCOMPARE(IconsOf(model, row), icons);
        QCOMPARE(bool(model.index(row, 0).flags() & Qt::ItemIsEnabled), enabled);
        QCOMPARE(model.index(row, 1).data(CCruiseTableModel::PatrolConfiguredRole).toBool(), enabled);
    }
};

QTEST_MAIN(TstCCruiseTableModel)
#include "tst_ccruisetablemodel.moc"
