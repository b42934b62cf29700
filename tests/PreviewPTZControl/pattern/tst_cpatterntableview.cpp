#include "pattern/cpatterntablemodel.h"
#include "pattern/cpatterntableview.h"

#include "quillon/citemdatarole.h"

#include <QSignalSpy>
#include <QtTest>

using PreviewPTZControl::CPatternTableModel;
using PreviewPTZControl::CPatternTableView;

class TestPatternTableView : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void clickAsksForWhatTheRowOffers_data();
    void clickAsksForWhatTheRowOffers();
    void mouseClickOnPixmapReachesSignal();

private:
    CPatternTableModel *m_model = nullptr;
    CPatternTableView *m_view = nullptr;
};

void TestPatternTableView::init()
{
    m_model = new CPatternTableModel(1.0);
    m_model->InitPatterns(4, true);
    QVERIFY(m_model->UpdatePatterns({1, 2}));
    m_view = new CPatternTableView;
    m_view->setModel(m_model);
    m_view->resize(320, 200);
}

void TestPatternTableView::cleanup()
{
    delete m_view;
    delete m_model;
}

void TestPatternTableView::clickAsksForWhatTheRowOffers_data()
{
    QTest::addColumn<int>("role");
    QTest::addColumn<bool>("validIndex");
    QTest::addColumn<bool>("viewEnabled");
    QTest::addColumn<bool>("playing");
    QTest::addColumn<bool>("recording");
    // Expected: "play:1", "play:0", "record:1", "record:0", "delete" or "" for nothing.
    QTest::addColumn<QString>("expected");

    QTest::newRow("play an idle pattern") << 436 << true << true << false << false << "play:1";
    QTest::newRow("stop a playing pattern") << 436 << true << true << true << false << "play:0";
    QTest::newRow("start recording") << 437 << true << true << false << false << "record:1";
    QTest::newRow("stop recording") << 437 << true << true << false << true << "record:0";
    QTest::newRow("delete") << 438 << true << true << false << false << "delete";
    QTest::newRow("inert pixmap") << 356 << true << true << false << false << "";
    QTest::newRow("leading pixmap") << 441 << true << true << false << false << "";
    QTest::newRow("invalid index") << 436 << false << true << false << false << "";
    QTest::newRow("disabled view, play") << 436 << true << false << false << false << "";
    QTest::newRow("disabled view, delete") << 438 << true << false << false << false << "";
}

void TestPatternTableView::clickAsksForWhatTheRowOffers()
{
    QFETCH(int, role);
    QFETCH(bool, validIndex);
    QFETCH(bool, viewEnabled);
    QFETCH(bool, playing);
    QFETCH(bool, recording);
    QFETCH(QString, expected);

    m_model->SetPlayingState(1, playing);
    m_model->SetRecordingState(1, recording);
    m_view->setEnabled(viewEnabled);
    QSignalSpy play(m_view, &CPatternTableView::SignalPattenPlayControl);
    QSignalSpy record(m_view, &CPatternTableView::SignalPattenRecordControl);
    QSignalSpy remove(m_view, &CPatternTableView::SignalPattenDeleteControl);

    const QModelIndex index = validIndex ? m_model->index(1, CPatternTableModel::kColumnAction) : QModelIndex();
    m_view->OnTableViewClicked(index, Quillon::CItemDataRole(role));

    QStringList emitted;
    for (const auto &args : qAsConst(play)) {
        QCOMPARE(args.at(0).value<QModelIndex>().row(), 1);
        emitted << QStringLiteral("play:%1").arg(args.at(1).toBool());
    }
    for (const auto &args : qAsConst(record)) {
        QCOMPARE(args.at(0).value<QModelIndex>().row(), 1);
        emitted << QStringLiteral("record:%1").arg(args.at(1).toBool());
    }
    for (const auto &args : qAsConst(remove)) {
        QCOMPARE(args.at(0).value<QModelIndex>().row(), 1);
        emitted << QStringLiteral("delete");
    }
    QCOMPARE(emitted.join(QLatin1Char(',')), expected);
}

void TestPatternTableView::mouseClickOnPixmapReachesSignal()
{
    m_view->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_view));
    QSignalSpy record(m_view, &CPatternTableView::SignalPattenRecordControl);
    // Row 3 holds no pattern: record is its only action, in the middle slot.
    const QModelIndex empty = m_model->index(2, CPatternTableModel::kColumnAction);
    QVERIFY(m_view->PixmapRect(empty, Quillon::ItemFirstRightPixmapRole).isEmpty());
    const QRect rect = m_view->PixmapRect(empty, Quillon::ItemSecondRightPixmapRole);
    QVERIFY(!rect.isEmpty());
    QTest::mouseClick(m_view->viewport(), Qt::LeftButton, Qt::NoModifier, rect.center());
    QCOMPARE(record.count(), 1);
    QCOMPARE(record.first().at(0).value<QModelIndex>().row(), 2);
    QCOMPARE(record.first().at(1).toBool(), true);
}

QTEST_MAIN(TestPatternTableView)
#include "tst_cpatterntableview.moc"
