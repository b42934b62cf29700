#include "patrol/ccruisecombobox.h"
#include "patrol/ccruisetablemodel.h"
#include "patrol/ccruisetableview.h"

#include "quillon/citemdatarole.h"
#include "quillon/cscrollbar.h"

#include <QAbstractItemView>
#include <QEvent>
#include <QHeaderView>
#include <QSignalSpy>
#include <QtTest>

using PreviewPTZControl::CCruiseComboBox;
using PreviewPTZControl::CCruiseTableModel;
using PreviewPTZControl::CCruiseTableView;

Q_DECLARE_METATYPE(Quillon::CItemDataRole)

namespace {
QVector<ptz_plugin_protocol::CruiseInfo> Slots(std::initializer_list<int> numbers)
{
    QVector<ptz_plugin_protocol::CruiseInfo> patrols;
    for (int n : numbers) {
        ptz_plugin_protocol::CruiseInfo info;
        info.cruise_index = n;
        info.cruise_type = 1;
        patrols << info;
    }
    return patrols;
}
} // namespace

class TstCCruiseTableView : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void clickRules_data();
    void clickRules();
    void invalidIndexEmitsNothing();
    void actionWidthByPixelRatio_data();
    void actionWidthByPixelRatio();
    void pressBelowRowsClearsSelection();
    void runningRowGetsRedDot();
    void comboBoxEntriesAndSelection();
    void comboBoxSwallowsHover_data();
    void comboBoxSwallowsHover();

private:
    CCruiseTableModel *m_model = nullptr;
    CCruiseTableView *m_view = nullptr;
};

void TstCCruiseTableView::init()
{
    m_model = new CCruiseTableModel;
    m_model->UpdatePatrols(Slots({1, 2}), true);
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
    QTest::addColumn<int>("runningRow");
    QTest::addColumn<Quillon::CItemDataRole>("role");
    QTest::addColumn<int>("play");   // SignalPatrolPlayControl: -1 none, else its flag
    QTest::addColumn<int>("edit");   // emissions
    QTest::addColumn<int>("remove"); // emissions

    QTest::newRow("play icon of a stopped patrol starts") << -1 << Quillon::ItemFirstRightPixmapRole << 1 << 0 << 0;
    QTest::newRow("play icon of the running patrol stops") << 0 << Quillon::ItemFirstRightPixmapRole << 0 << 0 << 0;
    QTest::newRow("edit icon") << -1 << Quillon::ItemSecondRightPixmapRole << -1 << 1 << 0;
    QTest::newRow("delete icon") << -1 << Quillon::ItemThirdRightPixmapRole << -1 << 0 << 1;
    QTest::newRow("inert pixmap") << -1 << Quillon::ItemInertPixmapRole << -1 << 0 << 0;
    QTest::newRow("other role") << -1 << Quillon::ItemLeadingPixmapRole << -1 << 0 << 0;
}

void TstCCruiseTableView::clickRules()
{
    QFETCH(int, runningRow);
    QFETCH(Quillon::CItemDataRole, role);
    QFETCH(int, play);
    QFETCH(int, edit);
    QFETCH(int, remove);
    if (runningRow >= 0)
        m_model->SetPlayingIndex(m_model->index(runningRow, 0), true);
    QSignalSpy playSpy(m_view, &CCruiseTableView::SignalPatrolPlayControl);
    QSignalSpy editSpy(m_view, &CCruiseTableView::SignalPatrolEdit);
    QSignalSpy deleteSpy(m_view, &CCruiseTableView::SignalPatrolDelete);
    // Clicks arrive through the library view's pixmap signal.
    emit m_view->signalClickedPixmap(m_model->index(0, 1), role);
    QCOMPARE(playSpy.count(), play < 0 ? 0 : 1);
    if (play >= 0) {
        QCOMPARE(playSpy.first().at(0).toModelIndex().row(), 0);
        QCOMPARE(playSpy.first().at(1).toBool(), bool(play));
    }
    QCOMPARE(editSpy.count(), edit);
    QCOMPARE(deleteSpy.count(), remove);
}

void TstCCruiseTableView::invalidIndexEmitsNothing()
{
    QSignalSpy playSpy(m_view, &CCruiseTableView::SignalPatrolPlayControl);
    QSignalSpy editSpy(m_view, &CCruiseTableView::SignalPatrolEdit);
    m_view->OnTableViewClicked(QModelIndex(), Quillon::ItemFirstRightPixmapRole);
    m_view->OnTableViewClicked(QModelIndex(), Quillon::ItemSecondRightPixmapRole);
    QCOMPARE(playSpy.count() + editSpy.count(), 0);
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
    QTest::newRow("3.0") << 3.0 << 180;
}

void TstCCruiseTableView::actionWidthByPixelRatio()
{
    QFETCH(double, ratio);
    QFETCH(int, width);
    m_view->SetDevicePixelRatioOverride(ratio);
    QCOMPARE(m_view->columnWidth(1), width);
    QCOMPARE(m_view->columnWidth(0), m_view->viewport()->width() - width);
    m_view->resize(400, 400);
    QCOMPARE(m_view->columnWidth(0) + m_view->columnWidth(1), m_view->viewport()->width());
}

void TstCCruiseTableView::pressBelowRowsClearsSelection()
{
    m_view->selectionModel()->select(m_model->index(1, 0), QItemSelectionModel::Select | QItemSelectionModel::Rows);
    QVERIFY(m_view->selectionModel()->hasSelection());
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

void TstCCruiseTableView::comboBoxEntriesAndSelection()
{
    const CCruiseComboBox::Entries entries{{QStringLiteral("Gate"), 4}, {QStringLiteral("Yard"), 7}};
    CCruiseComboBox combo(entries, 7);
    QCOMPARE(combo.count(), 2);
    QCOMPARE(combo.CurrentValue(), 7);
    QCOMPARE(combo.itemData(0, Qt::ToolTipRole).toString(), QStringLiteral("Gate"));
    // A value that is not offered leaves the selection as it is.
    combo.SetCurrentValue(99);
    QCOMPARE(combo.CurrentValue(), 7);
    combo.SetCurrentValue(4);
    QCOMPARE(combo.currentText(), QStringLiteral("Gate"));
    // The drop-down's list scrolls with the library's bar.
    combo.EnsurePopupView();
    auto *bar = qobject_cast<Quillon::CScrollBar *>(combo.view()->verticalScrollBar());
    QVERIFY(bar);
    QCOMPARE(bar->objectName(), QStringLiteral("CruiseScrollBar"));

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
        Probe() : CCruiseComboBox({{QStringLiteral("1"), 1}}, 1) {}
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
