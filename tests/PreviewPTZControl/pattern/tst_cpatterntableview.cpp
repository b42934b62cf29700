#include "pattern/cpatterntablemodel.h"
#include "pattern/cpatterntableview.h"

#include "quillon/citemdatarole.h"

#include <QPixmap>
#include <QSignalSpy>
#include <QtTest>

using PreviewPTZControl::CPatternTableModel;
using PreviewPTZControl::CPatternTableView;

namespace {
const int kRoles[] = {Quillon::ItemFirstRightPixmapRole, Quillon::ItemSecondRightPixmapRole,
                      Quillon::ItemThirdRightPixmapRole};

// The row's three actions as letters: play 'p' / stop 's', record 'r' / stop recording 'x',
// delete 'd', '-' for none; a pixmap that does not match reads '?'.
QString Actions(const CPatternTableModel &model, int row)
{
    const auto &icons = model.GetIcons();
    const QList<QPair<QPixmap, char>> offers[] = {{{icons.GetPlayPixmap(), 'p'}, {icons.GetStopPlayPixmap(), 's'}},
                                                  {{icons.GetRecordPixmap(), 'r'}, {icons.GetStopRecordPixmap(), 'x'}},
                                                  {{icons.GetDeletePixmap(), 'd'}}};
    QString result;
    for (int slot = 0; slot < 3; ++slot) {
        const QPixmap shown = model.index(row, CPatternTableModel::kColumnAction).data(kRoles[slot]).value<QPixmap>();
        QChar letter = shown.isNull() ? QLatin1Char('-') : QLatin1Char('?');
        for (const auto &offer : offers[slot])
            if (!shown.isNull() && shown.cacheKey() == offer.first.cacheKey())
                letter = QLatin1Char(offer.second);
        result += letter;
    }
    return result;
}
} // namespace

class TestPatternTableView : public QObject
{
    Q_OBJECT

private slots:
    // The panel's tests run with every right; the rights are checked here.
    void rowActionsFollowState_data()
    {
        QTest::addColumn<bool>("recorded");
        QTest::addColumn<bool>("recording");
        QTest::addColumn<bool>("playing");
        QTest::addColumn<bool>("mayRecord");
        QTest::addColumn<bool>("mayDelete");
        QTest::addColumn<QString>("actions");

        QTest::newRow("empty slot") << false << false << false << true << true << "-r-";
        QTest::newRow("empty slot, no rights") << false << false << false << false << false << "---";
        QTest::newRow("recorded") << true << false << false << true << true << "prd";
        QTest::newRow("recorded, record right only") << true << false << false << true << false << "pr-";
        QTest::newRow("recorded, delete right only") << true << false << false << false << true << "p--";
        QTest::newRow("playing") << true << false << true << true << true << "srd";
        QTest::newRow("recording a new slot") << false << true << false << true << true << "pxd";
    }
    void rowActionsFollowState()
    {
        QFETCH(bool, recorded);
        QFETCH(bool, recording);
        QFETCH(bool, playing);
        QFETCH(bool, mayRecord);
        QFETCH(bool, mayDelete);
        QFETCH(QString, actions);

        CPatternTableModel model(1.0);
        model.InitPatterns(4, true);
        QVERIFY(model.UpdatePatterns(recorded ? QVector<int>{2} : QVector<int>{}));
        model.SetPermissions(mayRecord, mayDelete);
        // On and off again first: a state switched back must not leave its pixmap behind.
        for (bool on : {true, false}) {
            model.SetPlayingState(1, on);
            model.SetRecordingState(1, on);
        }
        model.SetRecordingState(1, recording);
        model.SetPlayingState(1, playing);

        QCOMPARE(Actions(model, 1), actions);
        QCOMPARE(model.index(1, 1).data(Quillon::ItemFirstStateRole).toBool(), playing);
        QCOMPARE(model.index(1, 1).data(Quillon::ItemSecondStateRole).toBool(), recording);
        // The rights apply to every row, and only the row asked for changes state.
        QCOMPARE(Actions(model, 0), mayRecord ? QStringLiteral("-r-") : QStringLiteral("---"));
    }
    void mouseClickOnPixmapReachesSignal()
    {
        CPatternTableModel model(1.0);
        model.InitPatterns(4, true);
        QVERIFY(model.UpdatePatterns({1, 2}));
        CPatternTableView view;
        view.setModel(&model);
        view.resize(320, 200);
        view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&view));
        QSignalSpy record(&view, &CPatternTableView::SignalPattenRecordControl);
        // Row 3 holds no pattern: record is its only action, in the middle slot.
        const QModelIndex empty = model.index(2, CPatternTableModel::kColumnAction);
        QVERIFY(view.PixmapRect(empty, Quillon::ItemFirstRightPixmapRole).isEmpty());
        const QRect rect = view.PixmapRect(empty, Quillon::ItemSecondRightPixmapRole);
        QTest::mouseClick(view.viewport(), Qt::LeftButton, Qt::NoModifier, rect.center());
        QCOMPARE(record.count(), 1);
        QCOMPARE(record.first().at(0).value<QModelIndex>().row(), 2);
        QCOMPARE(record.first().at(1).toBool(), true);
    }
};

QTEST_MAIN(TestPatternTableView)
#include "tst_cpatterntableview.moc"
