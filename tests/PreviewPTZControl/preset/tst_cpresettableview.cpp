#include "support/records.h"

#include "preset/cpresettablemodel.h"
#include "preset/cpresettableview.h"
#include "preset/cpresettableviewdelegate.h"
#include "preset/csortpresetfiltermodel.h"

#include "quillon/citemdatarole.h"
#include "quillon/cscrollbar.h"
#include "quillon/cscrollbardelegate.h"

#include <QHeaderView>
#include <QImage>
#include <QPainter>
#include <QSignalSpy>
#include <QtTest>

using PreviewPTZControl::CPresetTableModel;
using PreviewPTZControl::CPresetTableView;
using PreviewPTZControl::CSortPresetFilterModel;
using ptz_plugin_protocol::PresetInfo;

class TstCPresetTableView : public QObject
{
    Q_OBJECT
private slots:
    void init()
    {
        m_model = new CPresetTableModel(1.0);
        m_model->UpdatePresetList({ Preset(1, 1, "one"), Preset(2, 3, "two") }, true);
        m_proxy = new CSortPresetFilterModel;
        m_proxy->setSourceModel(m_model);
        m_view = new CPresetTableView;
        m_view->setModel(m_proxy);
        m_view->resize(320, 240);
    }
    void cleanup()
    {
        delete m_view;
        delete m_proxy;
        delete m_model;
    }
    void pixmapRoleToSignal_data()
    {
        QTest::addColumn<int>("role");
        QTest::addColumn<bool>("enabled");
        QTest::addColumn<bool>("validIndex");
        QTest::addColumn<int>("expected"); // 0 none, 1 play, 2 edit, 3 delete
        QTest::newRow("call") << int(Quillon::ItemFirstRightPixmapRole) << true << true << 1;
        QTest::newRow("edit") << int(Quillon::ItemSecondRightPixmapRole) << true << true << 2;
        QTest::newRow("delete") << int(Quillon::ItemThirdRightPixmapRole) << true << true << 3;
        QTest::newRow("inert pixmap") << int(Quillon::ItemInertPixmapRole) << true << true << 0;
        QTest::newRow("type pixmap") << int(Quillon::ItemLeadingPixmapRole) << true << true << 0;
        QTest::newRow("view disabled") << int(Quillon::ItemFirstRightPixmapRole) << false << true << 0;
        QTest::newRow("invalid index") << int(Quillon::ItemThirdRightPixmapRole) << true << false << 0;
    }
    void pixmapRoleToSignal()
    {
        QFETCH(int, role);
        QFETCH(bool, enabled);
        QFETCH(bool, validIndex);
        QFETCH(int, expected);
        m_view->setEnabled(enabled);
        QSignalSpy play(m_view, &CPresetTableView::SignalPlayPreset);
        QSignalSpy edit(m_view, &CPresetTableView::SignalEditPreset);
        QSignalSpy del(m_view, &CPresetTableView::SignalDeletePreset);
        const QModelIndex index = validIndex ? m_proxy->index(1, 2) : QModelIndex();
        emit m_view->signalClickedPixmap(index, Quillon::CItemDataRole(role));
        QCOMPARE(play.count(), expected == 1 ? 1 : 0);
        QCOMPARE(edit.count(), expected == 2 ? 1 : 0);
        QCOMPARE(del.count(), expected == 3 ? 1 : 0);
        const QSignalSpy *hit = expected == 1 ? &play : expected == 2 ? &edit : expected == 3 ? &del : nullptr;
        if (hit)
            QCOMPARE(hit->first().first().toModelIndex(), index);
    }
    void realClicksOnPixmaps_data()
    {
        QTest::addColumn<int>("role");
        QTest::addColumn<int>("expected");
        QTest::newRow("call") << int(Quillon::ItemFirstRightPixmapRole) << 1;
        QTest::newRow("edit") << int(Quillon::ItemSecondRightPixmapRole) << 2;
        QTest::newRow("delete") << int(Quillon::ItemThirdRightPixmapRole) << 3;
    }
    void realClicksOnPixmaps()
    {
        QFETCH(int, role);
        QFETCH(int, expected);
        m_view->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_view));
        QSignalSpy play(m_view, &CPresetTableView::SignalPlayPreset);
        QSignalSpy edit(m_view, &CPresetTableView::SignalEditPreset);
        QSignalSpy del(m_view, &CPresetTableView::SignalDeletePreset);
        const QModelIndex index = m_proxy->index(1, 2);
        const QRect rect = m_view->PixmapRect(index, Quillon::CItemDataRole(role));
        QVERIFY(!rect.isEmpty());
        QTest::mouseClick(m_view->viewport(), Qt::LeftButton, {}, rect.center());
        QCOMPARE(play.count() + edit.count() + del.count(), 1);
        const QSignalSpy &hit = expected == 1 ? play : expected == 2 ? edit : del;
        QCOMPARE(hit.count(), 1);
        QCOMPARE(hit.first().first().toModelIndex().row(), 1);
    }
    void actionColumnWidth_data()
    {
        QTest::addColumn<double>("ratio");
        QTest::addColumn<int>("width");
        QTest::newRow("1.0") << 1.0 << 120;
        QTest::newRow("1.23") << 1.23 << 120;
        QTest::newRow("1.24") << 1.24 << 130;
        QTest::newRow("1.48") << 1.48 << 130;
        QTest::newRow("1.49") << 1.49 << 145;
        QTest::newRow("1.5") << 1.5 << 145;
        QTest::newRow("1.73") << 1.73 << 145;
        QTest::newRow("1.74") << 1.74 << 160;
        QTest::newRow("1.98") << 1.98 << 160;
        QTest::newRow("1.99") << 1.99 << 180;
        QTest::newRow("3.0") << 3.0 << 180;
    }
    void actionColumnWidth()
    {
        QFETCH(double, ratio);
        QFETCH(int, width);
        QCOMPARE(CPresetTableView::ActionColumnWidth(ratio), width);
        m_view->SetDevicePixelRatioOverride(ratio);
        m_view->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_view));
        QCOMPARE(m_view->columnWidth(0), 26);
        QCOMPARE(m_view->columnWidth(2), width);
        QCOMPARE(m_view->columnWidth(1), m_view->viewport()->width() - width - 26);
    }
    void layoutOnResize()
    {
        m_view->SetDevicePixelRatioOverride(1.0);
        m_view->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_view));
        m_view->resize(500, 240);
        QTRY_COMPARE(m_view->columnWidth(1), m_view->viewport()->width() - 120 - 26);

        // A model of another shape is left alone.
        QStandardItemModel two(1, 2);
        m_view->setModel(&two);
        m_view->setColumnWidth(0, 77);
        m_view->resize(400, 240);
        QCOMPARE(m_view->columnWidth(0), 77);
        m_view->setModel(m_proxy);
    }
    void theme()
    {
        m_view->SetWhiteTheme(true);
        QVERIFY(m_view->alternatingRowColors());
        QCOMPARE(m_view->selectionMode(), QAbstractItemView::NoSelection);
        m_view->SetWhiteTheme(false);
        QVERIFY(!m_view->alternatingRowColors());
        auto *bars = m_view->GetScrollBarDelegate();
        QVERIFY(bars);
        if (auto *v = bars->GetVerticalScrollBar())
            QCOMPARE(v->objectName(), QStringLiteral("ptr_ptz_black_scrollbar_"));
        if (auto *h = bars->GetHorizontalScrollBar())
            QCOMPARE(h->objectName(), QStringLiteral("ptr_ptz_black_scrollbar_"));
    }
    void delegatePaintsTypePixmapRightAligned()
    {
        QStandardItemModel model(1, 3);
        QPixmap red(10, 10);
        red.fill(Qt::red);
        model.setData(model.index(0, 0), red, Quillon::ItemLeadingPixmapRole);
        PreviewPTZControl::CPresetTableViewDelegate delegate;
        QImage image(40, 20, QImage::Format_ARGB32);
        image.fill(Qt::white);
        QStyleOptionViewItem option;
        option.rect = QRect(0, 0, 40, 20);
        option.state = QStyle::State_Enabled;
        {
            QPainter painter(&image);
            delegate.paint(&painter, option, model.index(0, 0));
        }
        QCOMPARE(QColor(image.pixel(35, 10)), QColor(Qt::red));
        QVERIFY(QColor(image.pixel(5, 10)) != QColor(Qt::red));

        // Other columns never draw the type pixmap.
        model.setData(model.index(0, 1), red, Quillon::ItemLeadingPixmapRole);
        image.fill(Qt::white);
        {
            QPainter painter(&image);
            delegate.paint(&painter, option, model.index(0, 1));
        }
        QVERIFY(QColor(image.pixel(35, 10)) != QColor(Qt::red));
    }

private:
    CPresetTableModel *m_model = nullptr;
    CSortPresetFilterModel *m_proxy = nullptr;
    CPresetTableView *m_view = nullptr;
};

QTEST_MAIN(TstCPresetTableView)
#include "tst_cpresettableview.moc"
