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
using ptz_plugin_protocol::PresetInfo;

namespace {
QStringList Names(const QAbstractItemModel &model)
{
    QStringList names;
    for (int r = 0; r < model.rowCount(); ++r)
        names << model.index(r, 1).data().toString();
    return names;
}

QPixmap Pix(const QAbstractItemModel &model, int row, int column, int role)
{
    return model.index(row, column).data(role).value<QPixmap>();
}

bool SamePixmap(const QPixmap &a, const QPixmap &b)
{
    return !a.isNull() && a.cacheKey() == b.cacheKey();
}

bool Enabled(const QAbstractItemModel &model, int row, int column)
{
    return model.flags(model.index(row, column)) & Qt::ItemIsEnabled;
}
} // namespace

// The preset list: its model, the filter proxy, the view and its delegate.
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
    void updateFiltersByKind_data()
    {
        QTest::addColumn<int>("shownType");
        QTest::addColumn<QStringList>("expected");
        const QStringList deviceAndVirtual{"dev1", "virt3", "dev2", "odd9"};
        QTest::newRow("not set yet (-1): device and virtual") << -1 << deviceAndVirtual;
        QTest::newRow("virtual: device and virtual") << 3 << deviceAndVirtual;
        QTest::newRow("fish-eye: fish-eye only") << 2 << QStringList{"fish5"};
    }
    void updateFiltersByKind()
    {
        QFETCH(int, shownType);
        QFETCH(QStringList, expected);
        CPresetTableModel model(1.0);
        model.SetPresetType(shownType);
        model.UpdatePresetList({Preset(1, 1, "dev1"), Preset(4, -1, "invalid"), Preset(3, 3, "virt3"),
                                Preset(5, 2, "fish5"), Preset(2, 1, "dev2"), Preset(6, -1, "invalid2"),
                                Preset(9, 9, "odd9")},
                               true);
        QCOMPARE(Names(model), expected);
        // Each row shows the icon of its kind; an unknown kind shows the not-set icon.
        const auto &icons = model.GetIcons();
        for (int r = 0; r < model.rowCount(); ++r) {
            const int type = model.index(r, 2).data(Quillon::ItemFirstStateRole).toInt();
            QVERIFY(SamePixmap(Pix(model, r, 0, Quillon::ItemLeadingPixmapRole), icons.GetPresetTypePixmap(type)));
        }
        QVERIFY(SamePixmap(icons.GetPresetTypePixmap(9), icons.GetNotSetPixmap()));
        QVERIFY(!SamePixmap(icons.GetPresetTypePixmap(1), icons.GetNotSetPixmap()));
    }
    void updateKeepsRowsAndAppendsUnknown()
    {
        CPresetTableModel model(1.0);
        model.UpdatePresetList({Preset(7, 1, "seven"), Preset(2, 1, "two")}, true);
        model.UpdatePresetList({Preset(2, 1, "TWO"), Preset(1, 1, "one"), Preset(7, 3, "seven virt")}, true);
        // Existing numbers update in place, the new number goes last, not in number order.
        QCOMPARE(Names(model), (QStringList{"seven virt", "TWO", "one"}));
        QCOMPARE(model.index(0, 0).data(Quillon::ItemNumberRole).toInt(), 7);
        QCOMPARE(model.index(0, 2).data(Quillon::ItemFirstStateRole).toInt(), 3);
        QCOMPARE(model.index(1, 1).data(Qt::ToolTipRole).toString(), QStringLiteral("TWO"));
        QCOMPARE(model.FindPresetRow(1), 2);
        QCOMPARE(model.FindPresetRow(99), -1);

        // New rows go at the top or the end, as asked.
        model.AddPresetItem(Preset(9, 3, "top"), true, true);
        model.AddPresetItem(Preset(8, 1, "end"), true, false);
        QCOMPARE(Names(model), (QStringList{"top", "seven virt", "TWO", "one", "end"}));
        QCOMPARE(model.index(0, 0).data(Quillon::ItemNumberRole).toInt(), 9);
        for (int c = 0; c < 3; ++c)
            QVERIFY(Enabled(model, 0, c));
    }
    void editActionsOffered_data()
    {
        QTest::addColumn<int>("reserved");
        QTest::addColumn<bool>("mayEdit");
        QTest::addColumn<bool>("offered");
        QTest::newRow("ordinary, may edit") << 0 << true << true;
        QTest::newRow("ordinary, no edit permission") << 0 << false << false;
        QTest::newRow("fixed, may edit") << 1 << true << false;
        QTest::newRow("other flag value, may edit") << 2 << true << true;
    }
    void editActionsOffered()
    {
        QFETCH(int, reserved);
        QFETCH(bool, mayEdit);
        QFETCH(bool, offered);
        // Both paths: a new row (append) and an existing row updated in place.
        for (bool existing : {false, true}) {
            CPresetTableModel model(1.0);
            if (existing)
                model.UpdatePresetList({Preset(4, 1, "old")}, true);
            model.UpdatePresetList({Preset(4, 1, "p", reserved)}, mayEdit);
            QCOMPARE(model.rowCount(), 1);
            const QModelIndex action = model.index(0, 2);
            QVERIFY(!Pix(model, 0, 2, Quillon::ItemFirstRightPixmapRole).isNull());
            QVERIFY(!action.data(Quillon::ItemFirstRightPixmapTipRole).toString().isEmpty());
            QCOMPARE(!Pix(model, 0, 2, Quillon::ItemSecondRightPixmapRole).isNull(), offered);
            QCOMPARE(!Pix(model, 0, 2, Quillon::ItemThirdRightPixmapRole).isNull(), offered);
            QCOMPARE(action.data(Quillon::ItemSecondRightPixmapTipRole).toString().isEmpty(), !offered);
            QCOMPARE(action.data(Quillon::ItemThirdRightPixmapTipRole).toString().isEmpty(), !offered);
        }
    }
    // An emptied row is named by its position; after the reset of all rows (at most 256) only its
    // number is disabled, after clearing one row all three items are.
    void emptyRowsAreNamedByPosition()
    {
        CPresetTableModel model(1.0);
        QVector<PresetInfo> presets{Preset(12, 1, "twelve"), Preset(3, 3, "three")};
        for (int n = 13; n <= 268; ++n)
            presets << Preset(n, 1, "x");
        model.UpdatePresetList(presets, true);
        model.ClearPresetItem(1);
        QCOMPARE(model.index(1, 1).data().toString(), QStringLiteral("Preset2"));
        QVERIFY(!Enabled(model, 1, 0) && !Enabled(model, 1, 1) && !Enabled(model, 1, 2));
        model.setData(model.index(0, 1), QStringLiteral("renamed"), Qt::DisplayRole);
        model.RestorePresetItem(0);
        QVERIFY(Enabled(model, 0, 0) && Enabled(model, 0, 1) && Enabled(model, 0, 2));
        QCOMPARE(model.index(0, 1).data(Qt::ToolTipRole).toString(), QStringLiteral("renamed"));
        QVERIFY(SamePixmap(Pix(model, 0, 0, Quillon::ItemLeadingPixmapRole), model.GetIcons().GetPresetTypePixmap(1)));
        QVERIFY(!Pix(model, 0, 2, Quillon::ItemThirdRightPixmapRole).isNull());

        model.ResetPresetItems();
        for (int r : {0, 1, 255}) {
            QCOMPARE(model.index(r, 1).data().toString(), QStringLiteral("Preset%1").arg(r + 1));
            QCOMPARE(model.index(r, 1).data(Qt::ToolTipRole).toString(), QStringLiteral("Preset%1").arg(r + 1));
            QVERIFY(!Enabled(model, r, 0) && Enabled(model, r, 1) && Enabled(model, r, 2));
            QVERIFY(SamePixmap(Pix(model, r, 0, Quillon::ItemLeadingPixmapRole), model.GetIcons().GetNotSetPixmap()));
            QCOMPARE(model.index(r, 2).data(Quillon::ItemFirstStateRole).toInt(), -1);
        }
        QCOMPARE(model.index(256, 1).data().toString(), QStringLiteral("x"));
        QVERIFY(Enabled(model, 256, 0));
    }
    void pixmapClickToSignal_data()
    {
        QTest::addColumn<int>("role");
        QTest::addColumn<bool>("realClick"); // else the view's own signal, as the delegate emits it
        QTest::addColumn<bool>("enabled");
        QTest::addColumn<bool>("validIndex");
        QTest::addColumn<int>("expected"); // 0 none, 1 play, 2 edit, 3 delete
        QTest::newRow("click on call") << int(Quillon::ItemFirstRightPixmapRole) << true << true << true << 1;
        QTest::newRow("click on edit") << int(Quillon::ItemSecondRightPixmapRole) << true << true << true << 2;
        QTest::newRow("click on delete") << int(Quillon::ItemThirdRightPixmapRole) << true << true << true << 3;
        QTest::newRow("inert pixmap") << int(Quillon::ItemInertPixmapRole) << false << true << true << 0;
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
        QPainter painter(&image);
        delegate.paint(&painter, option, model.index(0, 0));
        painter.end();
        QVERIFY(QColor(image.pixel(35, 10)) == QColor(Qt::red) && QColor(image.pixel(5, 10)) != QColor(Qt::red));
    }

private:
    CPresetTableModel *m_model = nullptr;
    QSortFilterProxyModel *m_proxy = nullptr;
    CPresetTableView *m_view = nullptr;
};

QTEST_MAIN(TstCPresetTableView)
#include "tst_cpresettableview.moc"
