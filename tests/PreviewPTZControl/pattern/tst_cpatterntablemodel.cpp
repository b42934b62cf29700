#include "pattern/cpatterntablemodel.h"

#include "quillon/citemdatarole.h"

#include <QAbstractItemModelTester>
#include <QPixmap>
#include <QtTest>

using PreviewPTZControl::CPatternTableModel;

namespace {
// The row's three actions as letters: play 'p' / stop 's', record 'r' / stop recording 'x',
// delete 'd', '-' for an empty slot; a pixmap whose tip does not match reads '?'.
QString Actions(const CPatternTableModel &model, int row)
{
    const auto &icons = model.GetIcons();
    const struct {
        int role;
        QVector<QPair<QPixmap, QPair<char, const char *>>> choices;
    } columns[] = {
        {Quillon::ItemFirstRightPixmapRole,
         {{icons.GetPlayPixmap(), {'p', "CallBQA8YLFY"}}, {icons.GetStopPlayPixmap(), {'s', "Stop"}}}},
        {Quillon::ItemSecondRightPixmapRole,
         {{icons.GetRecordPixmap(), {'r', "StartRecordingPattern"}},
          {icons.GetStopRecordPixmap(), {'x', "StopRecordingPattern"}}}},
        {Quillon::ItemThirdRightPixmapRole, {{icons.GetDeletePixmap(), {'d', "Delete"}}}},
    };
    QString result;
    const QModelIndex action = model.index(row, CPatternTableModel::kColumnAction);
    for (const auto &column : columns) {
        const QPixmap shown = action.data(column.role).value<QPixmap>();
        const QString tip = action.data(Quillon::RightPixmapTipRole(column.role)).toString();
        QChar letter = shown.isNull() && tip.isEmpty() ? QLatin1Char('-') : QLatin1Char('?');
        for (const auto &choice : column.choices) {
            if (!shown.isNull() && shown.cacheKey() == choice.first.cacheKey()
                && tip == QLatin1String(choice.second.second))
                letter = QLatin1Char(choice.second.first);
        }
        result += letter;
    }
    return result;
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
    void whiteThemeTakesWhiteImages();
};

void TestPatternTableModel::rowsStartDisabledAndNamedBySlot()
{
    CPatternTableModel model(1.0);
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    model.InitPatterns(4, true);
    QCOMPARE(model.rowCount(), 4);
    for (int row = 0; row < 4; ++row) {
        // Without a loaded translation the slot number is appended to the key.
        QVERIFY(model.index(row, 0).data(Quillon::ItemTextRole).toString().endsWith(QString::number(row + 1)));
        QVERIFY(!(model.flags(model.index(row, 0)) & Qt::ItemIsEnabled));
        QVERIFY(!(model.flags(model.index(row, 1)) & Qt::ItemIsEnabled));
    }
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

void TestPatternTableModel::listMarksRecordedSlotsAndClearsMarks()
{
    CPatternTableModel model(1.0);
    model.InitPatterns(4, true);
    model.SetPlayingState(2, true);
    model.SetRecordingState(3, true);
    QVERIFY(model.UpdatePatterns({3, 1}));
    QCOMPARE((QVector<bool>{model.IsRecorded(0), model.IsRecorded(1), model.IsRecorded(2), model.IsRecorded(3)}),
             (QVector<bool>{true, false, true, false}));
    // A fresh list starts from "nothing runs"; the panel restores the shared state afterwards.
    QVERIFY(!model.IsPlaying(2));
    QVERIFY(!model.IsRecording(3));
    QVERIFY(model.flags(model.index(3, 1)) & Qt::ItemIsEnabled);
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
    QVERIFY(model.IsPlaying(1));
}

void TestPatternTableModel::whiteThemeTakesWhiteImages()
{
    CPatternTableModel dark(1.0, nullptr, false);
    CPatternTableModel white(1.0, nullptr, true);
    auto image = [](const CPatternTableModel &model, int role) {
        return model.index(0, 1).data(role).value<QPixmap>().toImage();
    };
    for (auto *model : {&dark, &white}) {
        model->InitPatterns(1, true);
        QVERIFY(model->UpdatePatterns({1}));
    }
    QVERIFY(!image(dark, Quillon::ItemFirstRightPixmapRole).isNull());
    QVERIFY(image(dark, Quillon::ItemFirstRightPixmapRole) != image(white, Quillon::ItemFirstRightPixmapRole));
    dark.SetWhiteTheme(true);
    for (int role : {Quillon::ItemFirstRightPixmapRole, Quillon::ItemSecondRightPixmapRole,
                     Quillon::ItemThirdRightPixmapRole})
        QCOMPARE(image(dark, role), image(white, role));
}

QTEST_MAIN(TestPatternTableModel)
#include "tst_cpatterntablemodel.moc"
