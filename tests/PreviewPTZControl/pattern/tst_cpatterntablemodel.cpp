#include "pattern/cpatterntablemodel.h"

#include "quillon/citemdatarole.h"

#include <QAbstractItemModelTester>
#include <QPixmap>
#include <QtTest>

using PreviewPTZControl::CPatternTableModel;

namespace {
constexpr int kAction = CPatternTableModel::kColumnAction;

QPixmap Pix(const QAbstractItemModel &model, int row, int role)
{
    return model.index(row, kAction).data(role).value<QPixmap>();
}

QString Tip(const QAbstractItemModel &model, int row, int role)
{
    return model.index(row, kAction).data(role).toString();
}

bool Same(const QPixmap &a, const QPixmap &b)
{
    return !a.isNull() && a.cacheKey() == b.cacheKey();
}
} // namespace

class TestPatternTableModel : public QObject
{
    Q_OBJECT

private slots:
    void rowsStartDisabledAndNamedBySlot();
    void rowActionsFollowState_data();
    void rowActionsFollowState();
    void listMarksRecordedSlotsAndClearsMarks();
    void listLongerThanRowsChangesNothing();
    void permissionsAppliedToEveryRow();
    void whiteThemeTakesWhiteImages();
};

void TestPatternTableModel::rowsStartDisabledAndNamedBySlot()
{
    CPatternTableModel model(1.0);
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    model.InitPatterns(4, true);
    QCOMPARE(model.rowCount(), 4);
    QCOMPARE(model.columnCount(), 2);
    for (int row = 0; row < 4; ++row) {
        // Without a loaded translation the slot number is appended to the key.
        QVERIFY(model.index(row, 0).data(Quillon::ItemTextRole).toString().endsWith(QString::number(row + 1)));
        QVERIFY(model.index(row, 0).data(Quillon::ItemTextColorRole).value<QColor>().isValid());
        QVERIFY(!(model.flags(model.index(row, 0)) & Qt::ItemIsEnabled));
        QVERIFY(!(model.flags(model.index(row, kAction)) & Qt::ItemIsEnabled));
    }
    // A second fill replaces the rows instead of adding to them.
    model.InitPatterns(2, true);
    QCOMPARE(model.rowCount(), 2);
}

void TestPatternTableModel::rowActionsFollowState_data()
{
    QTest::addColumn<bool>("recorded");
    QTest::addColumn<bool>("recording");
    QTest::addColumn<bool>("playing");
    QTest::addColumn<bool>("mayRecord");
    QTest::addColumn<bool>("mayDelete");
    // Expected: 'p' play, 's' stop, '-' none | 'r' record, 'x' stop recording, '-' | 'd' delete, '-'.
    QTest::addColumn<QString>("actions");

    QTest::newRow("empty slot") << false << false << false << true << true << "-r-";
    QTest::newRow("empty slot, no rights") << false << false << false << false << false << "---";
    QTest::newRow("recorded") << true << false << false << true << true << "prd";
    QTest::newRow("recorded, record right only") << true << false << false << true << false << "pr-";
    QTest::newRow("recorded, delete right only") << true << false << false << false << true << "p--";
    QTest::newRow("recorded, no rights") << true << false << false << false << false << "p--";
    QTest::newRow("playing") << true << false << true << true << true << "srd";
    QTest::newRow("playing, no rights") << true << false << true << false << false << "s--";
    QTest::newRow("recording a new slot") << false << true << false << true << true << "pxd";
    QTest::newRow("recording over a pattern") << true << true << false << true << true << "pxd";
}

void TestPatternTableModel::rowActionsFollowState()
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
    // Turned on and off again first: a state switched back must not leave its pixmap behind.
    model.SetPlayingState(1, true);
    model.SetRecordingState(1, true);
    model.SetPlayingState(1, false);
    model.SetRecordingState(1, false);
    model.SetRecordingState(1, recording);
    model.SetPlayingState(1, playing);
    const auto &icons = model.GetIcons();

    const QPixmap first = Pix(model, 1, Quillon::ItemFirstRightPixmapRole);
    const QString firstTip = Tip(model, 1, Quillon::ItemFirstRightPixmapTipRole);
    switch (actions.at(0).toLatin1()) {
    case 'p':
        QVERIFY(Same(first, icons.GetPlayPixmap()));
        QCOMPARE(firstTip, QStringLiteral("CallBQA8YLFY"));
        break;
    case 's':
        QVERIFY(Same(first, icons.GetStopPlayPixmap()));
        QCOMPARE(firstTip, QStringLiteral("Stop"));
        break;
    default:
        QVERIFY(first.isNull());
        QVERIFY(firstTip.isEmpty());
    }
    const QPixmap second = Pix(model, 1, Quillon::ItemSecondRightPixmapRole);
    const QString secondTip = Tip(model, 1, Quillon::ItemSecondRightPixmapTipRole);
    switch (actions.at(1).toLatin1()) {
    case 'r':
        QVERIFY(Same(second, icons.GetRecordPixmap()));
        QCOMPARE(secondTip, QStringLiteral("StartRecordingPattern"));
        break;
    case 'x':
        QVERIFY(Same(second, icons.GetStopRecordPixmap()));
        QCOMPARE(secondTip, QStringLiteral("StopRecordingPattern"));
        break;
    default:
        QVERIFY(second.isNull());
        QVERIFY(secondTip.isEmpty());
    }
    const QPixmap third = Pix(model, 1, Quillon::ItemThirdRightPixmapRole);
    if (actions.at(2) == QLatin1Char('d')) {
        QVERIFY(Same(third, icons.GetDeletePixmap()));
        QCOMPARE(Tip(model, 1, Quillon::ItemThirdRightPixmapTipRole), QStringLiteral("Delete"));
    } else {
        QVERIFY(third.isNull());
        QVERIFY(Tip(model, 1, Quillon::ItemThirdRightPixmapTipRole).isEmpty());
    }
    QCOMPARE(model.index(1, kAction).data(Quillon::ItemFirstStateRole).toBool(), playing);
    QCOMPARE(model.index(1, kAction).data(Quillon::ItemSecondStateRole).toBool(), recording);
    // Only the row asked for changes.
    QVERIFY(!model.IsPlaying(0) && !model.IsRecording(0) && !model.IsPlaying(2) && !model.IsRecording(2));
}

void TestPatternTableModel::listMarksRecordedSlotsAndClearsMarks()
{
    CPatternTableModel model(1.0);
    model.InitPatterns(4, true);
    model.SetPlayingState(2, true);
    model.SetRecordingState(3, true);
    QVERIFY(model.UpdatePatterns({3, 1}));
    const QVector<bool> recorded{model.IsRecorded(0), model.IsRecorded(1), model.IsRecorded(2), model.IsRecorded(3)};
    QCOMPARE(recorded, (QVector<bool>{true, false, true, false}));
    // A fresh list starts from "nothing runs"; the panel restores the shared state afterwards.
    QVERIFY(!model.IsPlaying(2));
    QVERIFY(!model.IsRecording(3));
    for (int row = 0; row < 4; ++row)
        QVERIFY(model.flags(model.index(row, kAction)) & Qt::ItemIsEnabled);
}

void TestPatternTableModel::listLongerThanRowsChangesNothing()
{
    CPatternTableModel model(1.0);
    model.InitPatterns(4, true);
    QVERIFY(model.UpdatePatterns({2}));
    model.SetPlayingState(1, true);
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    QVERIFY(!model.UpdatePatterns({1, 2, 3, 4, 5}));
    QCOMPARE(changed.count(), 0);
    QVERIFY(!model.IsRecorded(0));
    QVERIFY(model.IsRecorded(1));
    QVERIFY(model.IsPlaying(1));
}

void TestPatternTableModel::permissionsAppliedToEveryRow()
{
    CPatternTableModel model(1.0);
    model.InitPatterns(4, false);
    QVERIFY(model.UpdatePatterns({1, 2, 3, 4}));
    for (int row = 0; row < 4; ++row) {
        QVERIFY(Pix(model, row, Quillon::ItemSecondRightPixmapRole).isNull());
        QVERIFY(Pix(model, row, Quillon::ItemThirdRightPixmapRole).isNull());
    }
    model.SetPermissions(true, true);
    for (int row = 0; row < 4; ++row) {
        QVERIFY(!Pix(model, row, Quillon::ItemSecondRightPixmapRole).isNull());
        QVERIFY(!Pix(model, row, Quillon::ItemThirdRightPixmapRole).isNull());
    }
}

void TestPatternTableModel::whiteThemeTakesWhiteImages()
{
    CPatternTableModel dark(1.0, nullptr, false);
    CPatternTableModel white(1.0, nullptr, true);
    for (auto *model : {&dark, &white}) {
        model->InitPatterns(1, true);
        QVERIFY(model->UpdatePatterns({1}));
    }
    // The white images are drawn in other colours, so the rendered pixels differ.
    const QImage darkPlay = Pix(dark, 0, Quillon::ItemFirstRightPixmapRole).toImage();
    QVERIFY(!darkPlay.isNull());
    QVERIFY(darkPlay != Pix(white, 0, Quillon::ItemFirstRightPixmapRole).toImage());
    dark.SetWhiteTheme(true);
    QCOMPARE(Pix(dark, 0, Quillon::ItemFirstRightPixmapRole).toImage(),
             Pix(white, 0, Quillon::ItemFirstRightPixmapRole).toImage());
    QCOMPARE(Pix(dark, 0, Quillon::ItemSecondRightPixmapRole).toImage(),
             Pix(white, 0, Quillon::ItemSecondRightPixmapRole).toImage());
}

QTEST_MAIN(TestPatternTableModel)
#include "tst_cpatterntablemodel.moc"
