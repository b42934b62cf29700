// The panel fits the default window: nothing of it is cut at 1, 4 or 9 screens, in either layout
// and either theme.
#include "support/workbenchfixture.h"

#include "panel/cpreviewptzwnd.h"
#include "preset/cpresettablemodel.h"
#include "quillon/citemdatarole.h"

#include <QLineEdit>
#include <QTabBar>
#include <QTest>

#include <cmath>

namespace {
double Contrast(const QColor &a, const QColor &b)
{
    const auto channel = [](double v) { return v <= 0.03928 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4); };
    const auto luminance = [&](const QColor &c) {
        return 0.2126 * channel(c.redF()) + 0.7152 * channel(c.greenF()) + 0.0722 * channel(c.blueF());
    };
    const double la = luminance(a), lb = luminance(b);
    return (std::max(la, lb) + 0.05) / (std::min(la, lb) + 0.05);
}

// The contrast of an icon's opaque pixel that stands out most from the background.
double InkContrast(const QPixmap &pixmap, const QColor &background)
{
    const QImage image = pixmap.toImage().convertToFormat(QImage::Format_ARGB32);
    double best = 1.0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (qAlpha(image.pixel(x, y)) > 200)
                best = std::max(best, Contrast(QColor::fromRgba(image.pixel(x, y)), background));
    return best;
}

} // namespace

class TestWorkbenchLayout : public QObject
{
    Q_OBJECT
private slots:
    void init() { m_fx.setUp(); }
    void cleanup() { m_fx.tearDown(); }
    void panelFitsTheDefaultWindow_data()
    {
        QTest::addColumn<int>("screens");
        QTest::addColumn<bool>("stacked");
        QTest::addColumn<bool>("white");
        for (int screens : {1, 4, 9})
            for (bool stacked : {false, true})
                for (bool white : {false, true})
                    QTest::addRow("%d screens, %s, %s", screens, stacked ? "stacked" : "side", white ? "white" : "dark")
                        << screens << stacked << white;
    }
    void panelFitsTheDefaultWindow()
    {
        QFETCH(int, screens);
        QFETCH(bool, stacked);
        QFETCH(bool, white);
        CWorkbenchWindow *window = m_fx.window();
        window->SetScreenCount(screens);
        // Through the other layout first: switching back must restore the rows it rearranged.
        window->SetStackedLayout(!stacked);
        window->SetStackedLayout(stacked);
        window->SetWhiteTheme(white);
        QVERIFY(m_fx.showActive());
        PreviewPTZControl::CPreviewPTZWnd *panel = window->Panel(window->SelectedScreen());
        QVERIFY(window->rect().contains(QRect(panel->mapTo(window, QPoint(0, 0)), panel->size())));
        // Side by side, the function buttons start at the top like the pad, with no empty band above.
        if (!stacked) {
            const QString strip = white ? "m_pFrameAppendFun_white_" : "m_pFrameAppendFun";
            QTRY_VERIFY(panel->findChild<QWidget *>(strip)->mapTo(panel, QPoint(0, 0)).y() < 40);
        }
        // Each visible control is whole: inside the panel, and at least its minimum size.
        int controls = 0;
        for (QWidget *w : panel->findChildren<QWidget *>()) {
            if (!w->isVisibleTo(panel) || !(qobject_cast<QLineEdit *>(w) || qobject_cast<QTabBar *>(w)))
                continue;
            ++controls;
            const QRect r(w->mapTo(panel, QPoint(0, 0)), w->size());
            QVERIFY2(panel->rect().contains(r), qPrintable(w->objectName()));
            if (auto *tabs = qobject_cast<QTabBar *>(w))
                QVERIFY2(tabs->rect().contains(tabs->tabRect(tabs->count() - 1)), "the last tab is cut off");
        }
        QVERIFY(controls > 0);
        // The preset list is built before the host switches the panel's theme: its rows follow, and
        // their icons stand out from the list's background.
        const auto *model = panel->findChild<PreviewPTZControl::CPresetTableModel *>();
        const PreviewPTZControl::CPresetModelIcon &icons = model->GetIcons();
        QCOMPARE(icons.IsWhiteTheme(), white);
        for (int row = 0; row < model->rowCount(); ++row) {
            const QModelIndex action = model->index(row, PreviewPTZControl::CPresetTableModel::kColumnAction);
            QCOMPARE(action.data(Quillon::ItemFirstRightPixmapRole).value<QPixmap>().cacheKey(),
                     icons.GetStartPixmap().cacheKey());
        }
        const QColor background = white ? QColor(Qt::white) : QColor(0x23, 0x27, 0x2e);
        for (const QPixmap &icon : {icons.GetStartPixmap(), icons.GetEditPixmap(), icons.GetDeletePixmap()})
            QVERIFY2(InkContrast(icon, background) >= 3.0, qPrintable(QString::number(InkContrast(icon, background))));
    }

private:
    WorkbenchFixture m_fx;
};

QTEST_MAIN(TestWorkbenchLayout)
#include "tst_workbenchlayout.moc"
