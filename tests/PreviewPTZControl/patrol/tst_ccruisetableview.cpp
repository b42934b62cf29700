#include "patrol/ccruisecombobox.h"
#include "patrol/ccruisetablemodel.h"
#include "patrol/ccruisetableview.h"

#include "quillon/citemdatarole.h"

#include <QAbstractItemModelTester>
#include <QColor>
#include <QEvent>
#include <QPixmap>
#include <QSignalSpy>
#include <QtTest>

#include <algorithm>

using PreviewPTZControl::CCruiseComboBox;
using PreviewPTZControl::CCruiseTableModel;
using PreviewPTZControl::CCruiseTableView;

Q_DECLARE_METATYPE(Quillon::CItemDataRole)

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

// Running shows in the action cell's role and as the name cell's mark; both must agree.
int Running(const CCruiseTableModel &model, int row)
{
    const bool role = model.index(row, 1).data(CCruiseTableModel::PatrolRunningRole).toBool();
    return role == model.index(row, 0).data(Quillon::ItemRunningRole).toBool() ? int(role) : -1;
}
} // namespace

class TstCCruiseTableView : public QObject
{
    Q_OBJECT
private slots:
    void updatePatrols_data();
    void updatePatrols();
    void singleRowRefreshDiffers_data();
    void singleRowRefreshDiffers();
    void playState_data();
    void playState();
    void whiteThemeSwapsShownIconsOnly();
    void init();
    void cleanup();
    void clickRules_data();
    void clickRules();
    void actionWidthByPixelRatio_data();
    void actionWidthByPixelRatio();
    void pressBelowRowsClearsSelection();
    void runningRowGetsRedDot();
    void comboBoxKeepsSelectionForValuesNotOffered();
    void comboBoxSwallowsHover_data();
    void comboBoxSwallowsHover();

private:
    CCruiseTableModel *m_model = nullptr;
    CCruiseTableView *m_view = nullptr;
};

void TstCCruiseTableView::updatePatrols_data()
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

void TstCCruiseTableView::updatePatrols()
{
    QFETCH(QVector<int>, numbers);
    QFETCH(bool, canEdit);
    QFETCH(int, runningRow);
    QFETCH(int, row);
    QFETCH(RowIcons, icons);
    QFETCH(bool, enabled);

    CCruiseTableModel model;
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QCOMPARE(model.rowCount(), 8);
    if (runningRow >= 0)
        model.SetPlayingIndex(model.index(runningRow, 0), true);
    model.UpdatePatrols(Patrols(numbers), canEdit);
    QCOMPARE(IconsOf(model, row), icons);
    QCOMPARE(bool(model.index(row, 0).flags() & Qt::ItemIsEnabled), enabled);
    QCOMPARE(model.index(row, 1).data(CCruiseTableModel::PatrolConfiguredRole).toBool(), enabled);
    QCOMPARE(Running(model, row), int(row == runningRow));
    const double alpha = model.index(row, 0).data(Quillon::ItemTextColorRole).value<QColor>().alphaF();
    QVERIFY2(qAbs(alpha - (enabled ? 0.7 : 0.2)) < 0.01, qPrintable(QString::number(alpha)));
}

void TstCCruiseTableView::singleRowRefreshDiffers_data()
{
    QTest::addColumn<bool>("configured");
    QTest::addColumn<RowIcons>("icons");
    QTest::newRow("saved") << true << RowIcons{Start, None, Delete};
    QTest::newRow("deleted") << false << RowIcons{None, None, None};
}

void TstCCruiseTableView::singleRowRefreshDiffers()
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
    QCOMPARE(Running(model, 3), 1);
}

void TstCCruiseTableView::playState_data()
{
    QTest::addColumn<int>("playRow");
    QTest::addColumn<bool>("playing");
    QTest::addColumn<int>("expectedRow");
    QTest::addColumn<RowIcons>("row0");
    QTest::addColumn<RowIcons>("row1");

    QTest::newRow("start row 1") << 1 << true << 1 << RowIcons{Start, Edit, Delete} << RowIcons{Pause, Edit, Delete};
    QTest::newRow("playing false clears whatever the index")
        << 0 << false << -1 << RowIcons{Start, Edit, Delete} << RowIcons{Start, Edit, Delete};
    QTest::newRow("unconfigured row changes nothing in it")
        << 2 << true << 2 << RowIcons{Start, Edit, Delete} << RowIcons{Start, Edit, Delete};
}

void TstCCruiseTableView::playState()
{
    QFETCH(int, playRow);
    QFETCH(bool, playing);
    QFETCH(int, expectedRow);
    QFETCH(RowIcons, row0);
    QFETCH(RowIcons, row1);

    CCruiseTableModel model;
    model.UpdatePatrols(Patrols({1, 2}), true);
    model.SetPlayingIndex(model.index(0, 0), true); // something runs before
    model.SetPlayingIndex(model.index(playRow, 0), playing);
    QCOMPARE(model.PlayingRow(), expectedRow);
    QCOMPARE(IconsOf(model, 0), row0);
    QCOMPARE(IconsOf(model, 1), row1);
    QCOMPARE(IconsOf(model, 2), (RowIcons{None, Edit, None}));
    QCOMPARE(Running(model, 2), 0);
    QCOMPARE(model.index(1, 1).data(Quillon::ItemFirstRightPixmapTipRole).toString(),
             expectedRow == 1 ? QStringLiteral("Stop") : QStringLiteral("CallBQA8YLFY"));

    model.ClearPlaying();
    QCOMPARE(model.PlayingRow(), -1);
    for (int row = 0; row < 8; ++row)
        QCOMPARE(Running(model, row), 0);
}

void TstCCruiseTableView::whiteThemeSwapsShownIconsOnly()
{
    CCruiseTableModel model;
    model.UpdatePatrols(Patrols({1}), true);
    model.SetPlayingIndex(model.index(0, 0), true);
    model.SetWhiteTheme(true);
    QVERIFY(model.GetIcons().IsWhiteTheme());
    QCOMPARE(IconsOf(model, 0), (RowIcons{Pause, Edit, Delete}));
    QCOMPARE(IconsOf(model, 1), (RowIcons{None, Edit, None}));
}

void TstCCruiseTableView::init()
{
    m_model = new CCruiseTableModel;
    m_model->UpdatePatrols(Patrols({1, 2}), true);
    m_view = new CCruiseTableView;
    m_view->setModel(m_model);
    m_view->resize(320, 400);
    m_view->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_view));
}

void TstCCruiseTableView::cleanup()
{
    delete m_view;
    delete m_model;
}

void TstCCruiseTableView::clickRules_data()
{
    QTest::addColumn<bool>("valid");
    QTest::addColumn<bool>("running");
    QTest::addColumn<Quillon::CItemDataRole>("role");
    QTest::addColumn<QString>("emitted");

    QTest::newRow("play icon of a stopped patrol starts")
        << true << false << Quillon::ItemFirstRightPixmapRole << "play:1";
    QTest::newRow("play icon of the running patrol stops")
        << true << true << Quillon::ItemFirstRightPixmapRole << "play:0";
    QTest::newRow("edit icon") << true << false << Quillon::ItemSecondRightPixmapRole << "edit";
    QTest::newRow("delete icon") << true << false << Quillon::ItemThirdRightPixmapRole << "delete";
    QTest::newRow("inert pixmap") << true << false << Quillon::ItemInertPixmapRole << "";
    QTest::newRow("other role") << true << false << Quillon::ItemLeadingPixmapRole << "";
    QTest::newRow("no row, play") << false << false << Quillon::ItemFirstRightPixmapRole << "";
    QTest::newRow("no row, edit") << false << false << Quillon::ItemSecondRightPixmapRole << "";
}

void TstCCruiseTableView::clickRules()
{
    QFETCH(bool, valid);
    QFETCH(bool, running);
    QFETCH(Quillon::CItemDataRole, role);
    QFETCH(QString, emitted);
    m_model->SetPlayingIndex(m_model->index(0, 0), running);
    // Every signal names the clicked row.
    QStringList seen;
    const auto note = [&seen](const QModelIndex &index, const QString &what) {
        seen << (index.row() == 0 ? what : QStringLiteral("row %1").arg(index.row()));
    };
    connect(m_view, &CCruiseTableView::SignalPatrolPlayControl, this,
            [&note](const QModelIndex &index, bool play) { note(index, QStringLiteral("play:%1").arg(play)); });
    connect(m_view, &CCruiseTableView::SignalPatrolEdit, this,
            [&note](const QModelIndex &index) { note(index, QStringLiteral("edit")); });
    connect(m_view, &CCruiseTableView::SignalPatrolDelete, this,
            [&note](const QModelIndex &index) { note(index, QStringLiteral("delete")); });
    // Clicks arrive through the library view's pixmap signal.
    emit m_view->signalClickedPixmap(valid ? m_model->index(0, 1) : QModelIndex(), role);
    QCOMPARE(seen.join(QLatin1Char(',')), emitted);
}

void TstCCruiseTableView::actionWidthByPixelRatio_data()
{
    QTest::addColumn<double>("ratio");
    QTest::addColumn<int>("width");
    QTest::newRow("1.0") << 1.0 << 120;
    QTest::newRow("just below 1.24") << 1.2399 << 120;
    QTest::newRow("1.24") << 1.24 << 130;
    QTest::newRow("1.49") << 1.49 << 145;
    QTest::newRow("1.74") << 1.74 << 160;
    QTest::newRow("1.98") << 1.98 << 160;
    QTest::newRow("1.99") << 1.99 << 180;
}

void TstCCruiseTableView::actionWidthByPixelRatio()
{
    QFETCH(double, ratio);
    QFETCH(int, width);
    m_view->SetDevicePixelRatioOverride(ratio);
    QCOMPARE(m_view->columnWidth(1), width);
    m_view->resize(400, 400);
    QCOMPARE(m_view->columnWidth(1), width);
    QCOMPARE(m_view->columnWidth(0), m_view->viewport()->width() - width);
}

void TstCCruiseTableView::pressBelowRowsClearsSelection()
{
    m_view->selectionModel()->select(m_model->index(1, 0), QItemSelectionModel::Select | QItemSelectionModel::Rows);
    const QRect last = m_view->visualRect(m_model->index(7, 0));
    const QPoint below(10, last.bottom() + 20);
    QVERIFY(below.y() < m_view->viewport()->height());
    QTest::mouseClick(m_view->viewport(), Qt::LeftButton, {}, below);
    QVERIFY(!m_view->selectionModel()->hasSelection());
}

void TstCCruiseTableView::runningRowGetsRedDot()
{
    const auto dotColour = [this](int row) {
        const QRect rect = m_view->visualRect(m_model->index(row, 0));
        const QImage image = m_view->viewport()->grab().toImage();
        return QColor(image.pixel(rect.left() + 10, rect.top() + rect.height() / 2));
    };
    const QColor red(250, 50, 57);
    QVERIFY(dotColour(1) != red);
    m_model->SetPlayingIndex(m_model->index(1, 0), true);
    QTRY_COMPARE(dotColour(1), red);
    QVERIFY(dotColour(0) != red);
}

void TstCCruiseTableView::comboBoxKeepsSelectionForValuesNotOffered()
{
    const CCruiseComboBox::Entries entries{{QStringLiteral("Gate"), 4}, {QStringLiteral("Yard"), 7}};
    CCruiseComboBox combo(entries, 7);
    QCOMPARE(combo.CurrentValue(), 7);
    QCOMPARE(combo.itemData(0, Qt::ToolTipRole).toString(), QStringLiteral("Gate"));
    combo.SetCurrentValue(99);
    QCOMPARE(combo.CurrentValue(), 7);
    combo.SetCurrentValue(4);
    QCOMPARE(combo.currentText(), QStringLiteral("Gate"));
    CCruiseComboBox fallback(entries, 5);
    QCOMPARE(fallback.currentIndex(), 0);
}

void TstCCruiseTableView::comboBoxSwallowsHover_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<bool>("swallowed");
    QTest::newRow("hover enter") << int(QEvent::HoverEnter) << true;
    QTest::newRow("hover leave") << int(QEvent::HoverLeave) << true;
    QTest::newRow("hover move") << int(QEvent::HoverMove) << true;
    QTest::newRow("enter") << int(QEvent::Enter) << false;
}

void TstCCruiseTableView::comboBoxSwallowsHover()
{
    QFETCH(int, type);
    QFETCH(bool, swallowed);
    // Records what reaches the widget past its own event filter.
    struct Probe : CCruiseComboBox
    {
        Probe()
            : CCruiseComboBox({{QStringLiteral("1"), 1}}, 1)
        {
        }
        bool event(QEvent *e) override
        {
            seen << int(e->type());
            return CCruiseComboBox::event(e);
        }
        QList<int> seen;
    } combo;
    QEvent event(static_cast<QEvent::Type>(type));
    QCoreApplication::sendEvent(&combo, &event);
    QCOMPARE(combo.seen.contains(type), !swallowed);
}

QTEST_MAIN(TstCCruiseTableView)
#include "tst_ccruisetableview.moc"
