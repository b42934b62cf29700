#include "support/records.h"

#include "preset/cpresettablemodel.h"
#include "preset/cpresettableview.h"
#include "preset/cpresettableviewdelegate.h"
#include "preset/csortpresetfiltermodel.h"

#include "quillon/citemdatarole.h"

#include <QImage>
#include <QPainter>
#include <QSignalSpy>
#include <QtTest>

using PreviewPTZControl::CPresetTableModel;
using PreviewPTZControl::CPresetTableView;

class TstCPresetTableView : public QObject
{
    Q_OBJECT
private slots:
    void init()
    {
        m_model = new CPresetTableModel(1.0);
        m_model->UpdatePresetList({Preset(1, 1, "one"), Preset(2, 3, "two")}, true);
        m_proxy = new PreviewPTZControl::CSortPresetFilterModel;
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
    void pixmapClickToSignal_data()
    {
        QTest::addColumn<int>("role");
        QTest::addColumn<bool>("realClick"); // else the view's own signal, as the delegate emits it
        QTest::addColumn<bool>("enabled");
        QTest::addColumn<bool>("validIndex");
        QTest::addColumn<int>("expected"); // 0 none, 1 play, 2 edit, 3 delete
        for (bool click : {false, true}) {
            const char *how = click ? "click on " : "";
            QTest::addRow("%scall", how) << int(Quillon::ItemFirstRightPixmapRole) << click << true << true << 1;
            QTest::addRow("%sedit", how) << int(Quillon::ItemSecondRightPixmapRole) << click << true << true << 2;
            QTest::addRow("%sdelete", how) << int(Quillon::ItemThirdRightPixmapRole) << click << true << true << 3;
        }
        QTest::newRow("inert pixmap") << int(Quillon::ItemInertPixmapRole) << false << true << true << 0;
        QTest::newRow("type pixmap") << int(Quillon::ItemLeadingPixmapRole) << false << true << true << 0;
        QTest::newRow("view disabled") << int(Quillon::ItemFirstRightPixmapRole) << false << false << true << 0;
        QTest::newRow("invalid index") << int(Quillon::ItemThirdRightPixmapRole) << false << true << false << 0;
    }
    void pixmapClickToSignal()
    {
        QFETCH(int, role);
        QFETCH(bool, realClick);
        QFETCH(bool, enabled);
        QFETCH(bool, validIndex);
        QFETCH(int, expected);
        m_view->setEnabled(enabled);
        QSignalSpy play(m_view, &CPresetTableView::SignalPlayPreset);
        QSignalSpy edit(m_view, &CPresetTableView::SignalEditPreset);
        QSignalSpy del(m_view, &CPresetTableView::SignalDeletePreset);
        const QModelIndex index = validIndex ? m_proxy->index(1, 2) : QModelIndex();
        if (realClick) {
            m_view->show();
            QVERIFY(QTest::qWaitForWindowExposed(m_view));
            const QRect rect = m_view->PixmapRect(index, Quillon::CItemDataRole(role));
            QVERIFY(!rect.isEmpty());
            QTest::mouseClick(m_view->viewport(), Qt::LeftButton, {}, rect.center());
        } else {
            emit m_view->signalClickedPixmap(index, Quillon::CItemDataRole(role));
        }
        QCOMPARE(play.count() + edit.count() + del.count(), expected ? 1 : 0);
        const QSignalSpy *hit = expected == 1 ? &play : expected == 2 ? &edit : expected == 3 ? &del : nullptr;
        if (hit)
            QCOMPARE(hit->first().first().toModelIndex(), index);
    }
    void actionColumnWidth_data()
    {
        QTest::addColumn<double>("ratio");
        QTest::addColumn<int>("width");
        const QList<QPair<double, int>> rows{{1.0, 120},  {1.23, 120}, {1.24, 130}, {1.48, 130}, {1.49, 145},
                                             {1.73, 145}, {1.74, 160}, {1.98, 160}, {1.99, 180}, {3.0, 180}};
        for (const auto &row : rows)
            QTest::addRow("%.2f", row.first) << row.first << row.second;
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
        m_view->resize(500, 240);
        QTRY_COMPARE(m_view->columnWidth(1), m_view->viewport()->width() - width - 26);

        // A model of another shape is left alone.
        QStandardItemModel two(1, 2);
        m_view->setModel(&two);
        m_view->setColumnWidth(0, 77);
        m_view->resize(400, 240);
        QCOMPARE(m_view->columnWidth(0), 77);
        m_view->setModel(m_proxy);
    }
    void delegatePaintsTypePixmapRightAligned()
    {
        QStandardItemModel model(1, 3);
        QPixmap red(10, 10);
        red.fill(Qt::red);
        // Other columns never draw the type pixmap.
        for (int column : {0, 1}) {
            model.setData(model.index(0, column), red, Quillon::ItemLeadingPixmapRole);
            PreviewPTZControl::CPresetTableViewDelegate delegate;
            QImage image(40, 20, QImage::Format_ARGB32);
            image.fill(Qt::white);
            QStyleOptionViewItem option;
            option.rect = QRect(0, 0, 40, 20);
            option.state = QStyle::State_Enabled;
            QPainter painter(&image);
            delegate.paint(&painter, option, model.index(0, column));
            painter.end();
            QCOMPARE(QColor(image.pixel(35, 10)) == QColor(Qt::red), column == 0);
            QVERIFY(QColor(image.pixel(5, 10)) != QColor(Qt::red));
        }
    }

private:
    CPresetTableModel *m_model = nullptr;
    QSortFilterProxyModel *m_proxy = nullptr;
    CPresetTableView *m_view = nullptr;
};

QTEST_MAIN(TstCPresetTableView)
#include "tst_cpresettableview.moc"
