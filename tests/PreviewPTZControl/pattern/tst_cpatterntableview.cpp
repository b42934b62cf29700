#include "pattern/cpatterntablemodel.h"
#include "pattern/cpatterntableview.h"

#include "quillon/citemdatarole.h"

#include <QAbstractItemModelTester>
#include <QPixmap>
#include <QSignalSpy>
#include <QtTest>

using PreviewPTZControl::CPatternTableModel;
using PreviewPTZControl::CPatternTableView;

namespace {
const int kRoles[] = {Quillon::ItemFirstRightPixmapRole, Quillon::ItemSecondRightPixmapRole,
                      Quillon::ItemThirdRightPixmapRole};

// The row's three actions as letters: play 'p' / stop 's', record 'r' / stop recording 'x',
// delete 'd', '-' for none; a pixmap or tip that does not match reads '?'.
QString Actions(const CPatternTableModel &model, int row)
{
    const auto &icons = model.GetIcons();
    const struct
    {
        int role;
        QPixmap pixmap;
        char letter;
        const char *tip;
    } offers[] = {{kRoles[0], icons.GetPlayPixmap(), 'p', "CallBQA8YLFY"},
                  {kRoles[0], icons.GetStopPlayPixmap(), 's', "Stop"},
                  {kRoles[1], icons.GetRecordPixmap(), 'r', "StartRecordingPattern"},
                  {kRoles[1], icons.GetStopRecordPixmap(), 'x', "StopRecordingPattern"},
                  {kRoles[2], icons.GetDeletePixmap(), 'd', "Delete"}};
    const QModelIndex action = model.index(row, CPatternTableModel::kColumnAction);
    QString result;
    for (int role : kRoles) {
        const QPixmap shown = action.data(role).value<QPixmap>();
        const QString tip = action.data(Quillon::RightPixmapTipRole(role)).toString();
        QChar letter = shown.isNull() && tip.isEmpty() ? QLatin1Char('-') : QLatin1Char('?');
        for (const auto &offer : offers)
            if (offer.role == role && !shown.isNull() && shown.cacheKey() == offer.pixmap.cacheKey()
                && tip == QLatin1String(offer.tip))
                letter = QLatin1Char(offer.letter);
        result += letter;
    }
    return result;
}
} // namespace

class TestPatternTableView : public QObject
{
    Q_OBJECT

private slots:
    void rowActionsFollowState_data();
    void rowActionsFollowState();
    void listEnablesRowsAndClearsMarks();
    void whiteThemeTakesWhiteImages();
    void init();
    void cleanup();
    void clickAsksForWhatTheRowOffers_data();
    void clickAsksForWhatTheRowOffers();
    void mouseClickOnPixmapReachesSignal();

private:
    CPatternTableModel *m_model = nullptr;
    CPatternTableView *m_view = nullptr;
};

void TestPatternTableView::rowActionsFollowState_data()
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
    QTest::newRow("playing, no rights") << true << false << true << false << false << "s--";
    QTest::newRow("recording a new slot") << false << true << false << true << true << "pxd";
    QTest::newRow("recording over a pattern") << true << true << false << true << true << "pxd";
}

void TestPatternTableView::rowActionsFollowState()
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

void TestPatternTableView::listEnablesRowsAndClearsMarks()
{
    CPatternTableModel model(1.0);
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    model.InitPatterns(4, true);
    // Without a loaded translation the slot number is appended to the key.
    QVERIFY(model.index(3, 0).data(Quillon::ItemTextRole).toString().endsWith(QLatin1Char('4')));
    for (int column : {0, 1})
        QVERIFY(!(model.flags(model.index(3, column)) & Qt::ItemIsEnabled));
    model.SetPlayingState(2, true);
    model.SetRecordingState(3, true);
    QVERIFY(model.UpdatePatterns({3, 1}));
    QCOMPARE((QVector<bool>{model.IsRecorded(0), model.IsRecorded(1), model.IsRecorded(2), model.IsRecorded(3)}),
             (QVector<bool>{true, false, true, false}));
    // A fresh list starts from "nothing runs"; the panel restores the shared state afterwards.
    QVERIFY(!model.IsPlaying(2));
    QVERIFY(!model.IsRecording(3));
    QVERIFY(model.flags(model.index(3, 1)) & Qt::ItemIsEnabled);

    // A list longer than the rows changes nothing.
    model.SetPlayingState(1, true);
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    QVERIFY(!model.UpdatePatterns({1, 2, 3, 4, 5}));
    QCOMPARE(changed.count(), 0);
    QVERIFY(model.IsRecorded(0));
    QVERIFY(model.IsPlaying(1));
}

void TestPatternTableView::whiteThemeTakesWhiteImages()
{
    CPatternTableModel dark(1.0, nullptr, false);
    CPatternTableModel white(1.0, nullptr, true);
    for (auto *model : {&dark, &white}) {
        model->InitPatterns(1, true);
        QVERIFY(model->UpdatePatterns({1}));
    }
    const auto image = [](const CPatternTableModel &model, int role) {
        return model.index(0, 1).data(role).value<QPixmap>().toImage();
    };
    QVERIFY(!image(dark, kRoles[0]).isNull());
    QVERIFY(image(dark, kRoles[0]) != image(white, kRoles[0]));
    dark.SetWhiteTheme(true);
    for (int role : kRoles)
        QCOMPARE(image(dark, role), image(white, role));
}

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
    QTest::addColumn<QString>("expected"); // "play:1", "play:0", "record:1", "record:0", "delete" or ""

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
    // Every signal names the clicked row.
    QStringList emitted;
    const auto seen = [&emitted](const QModelIndex &i, const QString &what) {
        emitted << (i.row() == 1 ? what : QStringLiteral("row %1").arg(i.row()));
    };
    connect(m_view, &CPatternTableView::SignalPattenPlayControl, this,
            [&seen](const QModelIndex &i, bool on) { seen(i, QStringLiteral("play:%1").arg(on)); });
    connect(m_view, &CPatternTableView::SignalPattenRecordControl, this,
            [&seen](const QModelIndex &i, bool on) { seen(i, QStringLiteral("record:%1").arg(on)); });
    connect(m_view, &CPatternTableView::SignalPattenDeleteControl, this,
            [&seen](const QModelIndex &i) { seen(i, QStringLiteral("delete")); });

    const QModelIndex index = validIndex ? m_model->index(1, CPatternTableModel::kColumnAction) : QModelIndex();
    m_view->OnTableViewClicked(index, Quillon::CItemDataRole(role));
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
    QTest::mouseClick(m_view->viewport(), Qt::LeftButton, Qt::NoModifier, rect.center());
    QCOMPARE(record.count(), 1);
    QCOMPARE(record.first().at(0).value<QModelIndex>().row(), 2);
    QCOMPARE(record.first().at(1).toBool(), true);
}

QTEST_MAIN(TestPatternTableView)
#include "tst_cpatterntableview.moc"
