#include "quillon/citemdatarole.h"
#include "quillon/cstandarditem.h"
#include "quillon/cstandarditemmodel.h"
#include "quillon/ctableview.h"

#include <QSignalSpy>
#include <QTest>

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
    void nothingButAPixmapClickReacts_data()
    {
        QTest::addColumn<int>("row");
        QTest::addColumn<int>("slot");
        QTest::addColumn<QPoint>("offset");
        QTest::newRow("just left of the first pixmap") << 0 << 0 << QPoint(-1, 0);
        QTest::newRow("just above the first pixmap") << 0 << 0 << QPoint(0, -1);
        QTest::newRow("gap between first and second") << 0 << 0 << QPoint(24, 0);
        QTest::newRow("text area of the cell") << 0 << 0 << QPoint(-60, 0);
        QTest::newRow("row without pixmaps") << 2 << 0 << QPoint();
        QTest::newRow("second slot of a row with one pixmap") << 1 << 1 << QPoint();
        QTest::newRow("third slot of a row with one pixmap") << 1 << 2 << QPoint();
    }
    void nothingButAPixmapClickReacts()
    {
        QFETCH(int, row);
        QFETCH(int, slot);
        QFETCH(QPoint, offset);
        QSignalSpy spy(m_view, &CTableView::signalClickedPixmap);
        // Slots line up from row to row: the place is taken from the row with all three.
        const QRect rect = m_view->PixmapRect(m_model->index(0, 1), kRoles[slot]);
        const int dy =
            m_view->visualRect(m_model->index(row, 1)).top() - m_view->visualRect(m_model->index(0, 1)).top();
        const QPoint pos = rect.topLeft() + offset + QPoint(0, dy);
        QVERIFY(!m_view->PixmapAt(pos, nullptr, nullptr));
        QTest::mouseClick(m_view->viewport(), Qt::LeftButton, Qt::NoModifier, pos);
        // The empty area below the rows, a press released elsewhere, a right click and a disabled row neither.
        QTest::mouseClick(m_view->viewport(), Qt::LeftButton, Qt::NoModifier,
                          QPoint(rect.center().x(), m_view->viewport()->height() - 2));
        QTest::mousePress(m_view->viewport(), Qt::LeftButton, Qt::NoModifier, rect.center());
        QTest::mouseRelease(m_view->viewport(), Qt::LeftButton, Qt::NoModifier,
                            m_view->PixmapRect(m_model->index(0, 1), kRoles[(slot + 1) % 3]).center());
        QTest::mouseClick(m_view->viewport(), Qt::RightButton, Qt::NoModifier, rect.center());
        m_model->item(0, 1)->setEnabled(false);
        QTest::mouseClick(m_view->viewport(), Qt::LeftButton, Qt::NoModifier, rect.center());
        QCOMPARE(spy.count(), 0);
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
