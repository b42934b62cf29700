#include "quillon/citemdatarole.h"
#include "quillon/cstandarditem.h"
#include "quillon/cstandarditemmodel.h"
#include "quillon/ctableview.h"
#include "quillon/ctreeviewwithrightpixmapdelegate.h"

#include <QHelpEvent>
#include <QSignalSpy>
#include <QStyledItemDelegate>
#include <QTest>
#include <QToolTip>

using namespace Quillon;

namespace {
QPixmap Solid(const QColor &color)
{
    QPixmap pm(24, 24);
    pm.fill(color);
    return pm;
}

const QColor kColors[3] = {QColor(255, 0, 0), QColor(0, 255, 0), QColor(0, 0, 255)};
const CItemDataRole kRoles[3] = {ItemFirstRightPixmapRole, ItemSecondRightPixmapRole, ItemThirdRightPixmapRole};
} // namespace

// The role numbers are a contract with every model that feeds the views.
static_assert(ItemNumberRole == 306);
static_assert(ItemInertPixmapRole == 356);
static_assert(ItemTextRole == 362);
static_assert(ItemTextColorRole == 363);
static_assert(ColumnWidthRole == 388);
static_assert(ItemRunningRole == 430);
static_assert(ItemFirstRightPixmapRole == 436);
static_assert(ItemSecondRightPixmapRole == 437);
static_assert(ItemThirdRightPixmapRole == 438);
static_assert(ItemLeadingPixmapRole == 441);
static_assert(ItemFirstRightPixmapTipRole == 466);
static_assert(ItemSecondRightPixmapTipRole == 467);
static_assert(ItemThirdRightPixmapTipRole == 468);
static_assert(ItemExtraTextRole == 471);
static_assert(ItemFirstStateRole == 1257);
static_assert(ItemSecondStateRole == 1258);
static_assert(ItemThirdStateRole == 1259);

class TestCTableView : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_model = new CStandardItemModel(this);
        m_model->setColumnCount(2);
        for (int row = 0; row < 3; ++row)
            m_model->appendRow({new CStandardItem(QStringLiteral("Row%1").arg(row + 1)), new CStandardItem});
        // Row 0: all three pixmaps; row 1: only the first; row 2: none.
        for (int i = 0; i < 3; ++i) {
            m_model->item(0, 1)->setData(Solid(kColors[i]), kRoles[i]);
            m_model->item(0, 1)->setData(QStringLiteral("tip%1").arg(i + 1), RightPixmapTipRole(kRoles[i]));
        }
        m_model->item(1, 1)->setData(Solid(kColors[0]), ItemFirstRightPixmapRole);
        m_model->item(1, 1)->setData(QStringLiteral("only"), ItemFirstRightPixmapTipRole);
        m_model->item(1, 1)->setData(QPixmap(), ItemSecondRightPixmapRole);
        m_model->SetColumnWidth(0, 140);
        m_model->SetColumnWidth(1, 150);

        m_view = new CTableView;
        m_view->setModel(m_model);
        m_view->setHeaderHidden(true);
        m_view->resize(320, 200);
        m_view->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_view));
    }
    void cleanup()
    {
        delete m_view;
        delete m_model;
    }

    void pixmapIsPaintedClickedAndTippedInItsSlot_data()
    {
        QTest::addColumn<int>("row");
        QTest::addColumn<int>("slot");
        QTest::addColumn<QString>("tip");
        QTest::newRow("row 0, first") << 0 << 0 << "tip1";
        QTest::newRow("row 0, second") << 0 << 1 << "tip2";
        QTest::newRow("row 0, third") << 0 << 2 << "tip3";
        QTest::newRow("row 1, first") << 1 << 0 << "only";
    }
    void pixmapIsPaintedClickedAndTippedInItsSlot()
    {
        QFETCH(int, row);
        QFETCH(int, slot);
        QFETCH(QString, tip);
        const QModelIndex index = m_model->index(row, 1);
        const QRect rect = m_view->PixmapRect(index, kRoles[slot]);
        QVERIFY(!rect.isEmpty());
        QVERIFY(m_view->visualRect(index).contains(rect));

        const QImage shot = m_view->viewport()->grab().toImage();
        const qreal dpr = shot.devicePixelRatio();
        // The style may tint the row slightly; the pixmap's own colour must dominate.
        const QColor seen(shot.pixel(int(rect.center().x() * dpr), int(rect.center().y() * dpr)));
        const QColor want = kColors[slot];
        QVERIFY2(qAbs(seen.red() - want.red()) < 48 && qAbs(seen.green() - want.green()) < 48
                     && qAbs(seen.blue() - want.blue()) < 48,
                 qPrintable(seen.name()));

        // Corners of the slot count as much as its centre.
        QSignalSpy spy(m_view, &CTableView::signalClickedPixmap);
        QTest::mouseClick(m_view->viewport(), Qt::LeftButton, Qt::NoModifier, rect.topLeft());
        QTest::mouseClick(m_view->viewport(), Qt::LeftButton, Qt::NoModifier, rect.bottomRight());
        QCOMPARE(spy.count(), 2);
        for (const auto &args : qAsConst(spy)) {
            QCOMPARE(args.at(0).value<QModelIndex>(), index);
            QCOMPARE(args.at(1).value<Quillon::CItemDataRole>(), kRoles[slot]);
        }

        QCOMPARE(m_view->PixmapToolTipAt(rect.center()), tip);
        const QRect first = m_view->PixmapRect(index, ItemFirstRightPixmapRole);
        QCOMPARE(m_view->PixmapToolTipAt(QPoint(first.left() - 10, rect.center().y())), QString());
    }
    void clicksOffPixmapsEmitNothing_data()
    {
        QTest::addColumn<QPoint>("offsetFromFirst");
        QTest::addColumn<int>("row");
        QTest::newRow("just left of the first pixmap") << QPoint(-1, 0) << 0;
        QTest::newRow("just above the first pixmap") << QPoint(0, -1) << 0;
        QTest::newRow("gap between first and second") << QPoint(24, 0) << 0;
        QTest::newRow("text area of the cell") << QPoint(-60, 0) << 0;
        QTest::newRow("row without pixmaps") << QPoint(0, 0) << 2;
    }
    void clicksOffPixmapsEmitNothing()
    {
        QFETCH(QPoint, offsetFromFirst);
        QFETCH(int, row);
        QSignalSpy spy(m_view, &CTableView::signalClickedPixmap);
        const QRect first = m_view->PixmapRect(m_model->index(0, 1), ItemFirstRightPixmapRole);
        const int rowShift =
            m_view->visualRect(m_model->index(row, 1)).top() - m_view->visualRect(m_model->index(0, 1)).top();
        const QPoint pos = first.topLeft() + offsetFromFirst + QPoint(0, rowShift);
        QVERIFY(!m_view->PixmapAt(pos, nullptr, nullptr));
        QTest::mouseClick(m_view->viewport(), Qt::LeftButton, Qt::NoModifier, pos);
        // The name column and the empty area below the rows never react either.
        QTest::mouseClick(m_view->viewport(), Qt::LeftButton, Qt::NoModifier,
                          m_view->visualRect(m_model->index(0, 0)).center());
        QTest::mouseClick(m_view->viewport(), Qt::LeftButton, Qt::NoModifier,
                          QPoint(first.center().x(), m_view->viewport()->height() - 2));
        QCOMPARE(spy.count(), 0);
    }
    void rowWithOnePixmapOnlyReactsToIt()
    {
        QSignalSpy spy(m_view, &CTableView::signalClickedPixmap);
        const QModelIndex row1 = m_model->index(1, 1);
        QVERIFY(m_view->PixmapRect(row1, ItemSecondRightPixmapRole).isEmpty());
        const int dy = m_view->visualRect(row1).top() - m_view->visualRect(m_model->index(0, 1)).top();
        for (CItemDataRole role : {ItemSecondRightPixmapRole, ItemThirdRightPixmapRole}) {
            const QPoint where = m_view->PixmapRect(m_model->index(0, 1), role).center() + QPoint(0, dy);
            QTest::mouseClick(m_view->viewport(), Qt::LeftButton, Qt::NoModifier, where);
        }
        QCOMPARE(spy.count(), 0);
        // Slots line up from row to row and end near the cell's right edge.
        const QRect a = m_view->PixmapRect(m_model->index(0, 1), ItemFirstRightPixmapRole);
        const QRect third = m_view->PixmapRect(m_model->index(0, 1), ItemThirdRightPixmapRole);
        QCOMPARE(m_view->PixmapRect(row1, ItemFirstRightPixmapRole).left(), a.left());
        QVERIFY(a.right() < third.left());
        QVERIFY(m_view->visualRect(m_model->index(0, 1)).right() - third.right() <= 16);
    }
    void pressReleaseElsewhereOrDisabledEmitsNothing()
    {
        QSignalSpy spy(m_view, &CTableView::signalClickedPixmap);
        const QModelIndex index = m_model->index(0, 1);
        QTest::mousePress(m_view->viewport(), Qt::LeftButton, Qt::NoModifier,
                          m_view->PixmapRect(index, ItemFirstRightPixmapRole).center());
        QTest::mouseRelease(m_view->viewport(), Qt::LeftButton, Qt::NoModifier,
                            m_view->PixmapRect(index, ItemThirdRightPixmapRole).center());
        QTest::mouseClick(m_view->viewport(), Qt::RightButton, Qt::NoModifier,
                          m_view->PixmapRect(index, ItemSecondRightPixmapRole).center());
        m_model->item(0, 1)->setEnabled(false);
        QTest::mouseClick(m_view->viewport(), Qt::LeftButton, Qt::NoModifier,
                          m_view->PixmapRect(index, ItemFirstRightPixmapRole).center());
        QCOMPARE(spy.count(), 0);
    }
    void helpEventShowsPixmapTip()
    {
        const QRect rect = m_view->PixmapRect(m_model->index(0, 1), ItemSecondRightPixmapRole);
        QHelpEvent event(QEvent::ToolTip, rect.center(), m_view->viewport()->mapToGlobal(rect.center()));
        QApplication::sendEvent(m_view->viewport(), &event);
        QTRY_COMPARE(QToolTip::text(), QStringLiteral("tip2"));
        QToolTip::hideText();
    }
    void foreignDelegateStillHitTests()
    {
        // A subclass may install a plain delegate; clicks keep working with the defaults.
        QStyledItemDelegate plain;
        m_view->setItemDelegate(&plain);
        QSignalSpy spy(m_view, &CTableView::signalClickedPixmap);
        QTest::mouseClick(m_view->viewport(), Qt::LeftButton, Qt::NoModifier,
                          m_view->PixmapRect(m_model->index(0, 1), ItemThirdRightPixmapRole).center());
        QCOMPARE(spy.count(), 1);
        QCOMPARE(spy.at(0).at(1).value<Quillon::CItemDataRole>(), ItemThirdRightPixmapRole);
        m_view->setItemDelegate(nullptr);
    }
    void columnWidthsFollowTheModel()
    {
        QCOMPARE(m_view->columnWidth(0), 140);
        m_model->SetColumnWidth(1, 170);
        QCOMPARE(m_view->columnWidth(1), 170);
    }
    void emptyViewTextShowsOnlyWithoutRows()
    {
        CStandardItemModel empty;
        CTableView view;
        view.setModel(&empty);
        view.resize(200, 100);
        const QImage blank = view.viewport()->grab().toImage();
        view.SetEmptyViewText(QStringLiteral("NoData"));
        QVERIFY(view.viewport()->grab().toImage() != blank);

        empty.appendRow(new CStandardItem);
        const QImage withText = view.viewport()->grab().toImage();
        view.SetEmptyViewText(QString());
        QCOMPARE(view.viewport()->grab().toImage(), withText);
    }

private:
    CStandardItemModel *m_model = nullptr;
    CTableView *m_view = nullptr;
};

QTEST_MAIN(TestCTableView)
#include "tst_ctableview.moc"
