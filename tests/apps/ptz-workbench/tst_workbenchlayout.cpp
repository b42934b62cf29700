// The panel fits the default window: nothing of it is cut at 1, 4 or 9 screens, in either layout.
#include "cworkbenchwindow.h"

#include "panel/cpreviewptzwnd.h"
#include "preset/cpresettablemodel.h"
#include "quillon/citemdatarole.h"
#include "site_store/csitestore.h"
#include "zeph_plugin_manager/ccameramanager.h"
#include "ptz_devices/csimclock.h"

#include <QAbstractButton>
#include <QLineEdit>
#include <QTabBar>
#include <QTemporaryDir>
#include <QTest>

#include <cmath>

class TestWorkbenchLayout : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void panelFitsTheDefaultWindow_data();
    void panelFitsTheDefaultWindow();
    void presetRowIconsStandOut_data();
    void presetRowIconsStandOut();

private:
    QTemporaryDir m_dir;
    ptz_devices::CSimClock m_clock{ptz_devices::CSimClock::Mode::Manual};
};

void TestWorkbenchLayout::initTestCase()
{
    Tarn::Base::CSingleton<ZephPluginManager::CCameraManager>::Instance()->SetSimClock(&m_clock);
    site_store::CSiteStore::InstallCurrent(site_store::CSiteStore::Open(m_dir.filePath(QStringLiteral("site.sqlite"))));
}

void TestWorkbenchLayout::panelFitsTheDefaultWindow_data()
{
    QTest::addColumn<int>("screens");
    QTest::addColumn<bool>("stacked");
    QTest::addColumn<bool>("white");
    for (int screens : {1, 4, 9})
        for (bool stacked : {false, true})
            for (bool white : {false, true})
                QTest::newRow(qPrintable(QStringLiteral("%1 screens, %2, %3")
                                             .arg(screens)
                                             .arg(stacked ? "stacked" : "side", white ? "white" : "dark")))
                    << screens << stacked << white;
}

void TestWorkbenchLayout::panelFitsTheDefaultWindow()
{
    QFETCH(int, screens);
    QFETCH(bool, stacked);
    QFETCH(bool, white);
    CWorkbenchWindow window;
    window.SetScreenCount(screens);
    // Through the other layout first: switching back must restore the rows it rearranged.
    window.SetStackedLayout(!stacked);
    window.SetStackedLayout(stacked);
    window.SetWhiteTheme(white);
    window.resize(CWorkbenchWindow::DefaultSize());
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    PreviewPTZControl::CPreviewPTZWnd *panel = window.Panel(window.SelectedScreen());
    const QRect inWindow(panel->mapTo(&window, QPoint(0, 0)), panel->size());
    QVERIFY2(window.rect().contains(inWindow), qPrintable(QStringLiteral("panel at %1,%2 %3x%4")
                                                              .arg(inWindow.x()).arg(inWindow.y())
                                                              .arg(inWindow.width()).arg(inWindow.height())));
    // Side by side, the function buttons start at the top like the pad, with no empty band above.
    if (!stacked) {
        const QString strip = white ? "m_pFrameAppendFun_white_" : "m_pFrameAppendFun";
        QTRY_VERIFY(panel->findChild<QWidget *>(strip)->mapTo(panel, QPoint(0, 0)).y() < 40);
    }
    // Each visible control is whole: inside the panel, and at least its minimum size.
    QList<QWidget *> controls;
    for (QWidget *w : panel->findChildren<QWidget *>())
        if (w->isVisibleTo(panel) && (qobject_cast<QLineEdit *>(w) || qobject_cast<QTabBar *>(w)))
            controls << w;
    QVERIFY(!controls.isEmpty());
    for (QWidget *w : qAsConst(controls)) {
        const QRect r(w->mapTo(panel, QPoint(0, 0)), w->size());
        QVERIFY2(panel->rect().contains(r), qPrintable(QStringLiteral("%1 at %2,%3 %4x%5 outside %6x%7")
                                                           .arg(w->objectName()).arg(r.x()).arg(r.y())
                                                           .arg(r.width()).arg(r.height())
                                                           .arg(panel->width()).arg(panel->height())));
        if (auto *tabs = qobject_cast<QTabBar *>(w)) {
            const QRect last = tabs->tabRect(tabs->count() - 1);
            QVERIFY2(tabs->rect().contains(last), "the last tab is cut off");
        }
    }
}

namespace {
double Luminance(const QColor &c)
{
    auto channel = [](double v) { return v <= 0.03928 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4); };
    return 0.2126 * channel(c.redF()) + 0.7152 * channel(c.greenF()) + 0.0722 * channel(c.blueF());
}
double Contrast(const QColor &a, const QColor &b)
{
    const double la = Luminance(a), lb = Luminance(b);
    return (std::max(la, lb) + 0.05) / (std::min(la, lb) + 0.05);
}
// The darkest or lightest opaque pixel of an icon, whichever stands further from the background.
QColor InkOf(const QPixmap &pixmap, const QColor &background)
{
    const QImage image = pixmap.toImage().convertToFormat(QImage::Format_ARGB32);
    QColor best = background;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) {
            const QColor c = QColor::fromRgba(image.pixel(x, y));
            if (c.alpha() > 200 && Contrast(c, background) > Contrast(best, background))
                best = c;
        }
    return best;
}
} // namespace

void TestWorkbenchLayout::presetRowIconsStandOut_data()
{
    QTest::addColumn<bool>("white");
    QTest::addColumn<QColor>("background");
    QTest::newRow("dark") << false << QColor(0x23, 0x27, 0x2e);
    QTest::newRow("white") << true << QColor(Qt::white);
}

void TestWorkbenchLayout::presetRowIconsStandOut()
{
    QFETCH(bool, white);
    QFETCH(QColor, background);
    CWorkbenchWindow window;
    window.SetWhiteTheme(white);
    auto *model = window.Panel(0)->findChild<PreviewPTZControl::CPresetTableModel *>();
    QVERIFY(model);
    const PreviewPTZControl::CPresetModelIcon &icons = model->GetIcons();
    // The list is built before the host switches the panel to white: the rows must follow.
    QCOMPARE(icons.IsWhiteTheme(), white);
    for (int row = 0; row < model->rowCount(); ++row) {
        const QModelIndex action = model->index(row, PreviewPTZControl::CPresetTableModel::kColumnAction);
        QCOMPARE(action.data(Quillon::ItemFirstRightPixmapRole).value<QPixmap>().cacheKey(),
                 icons.GetStartPixmap().cacheKey());
    }
    for (const QPixmap &icon : {icons.GetStartPixmap(), icons.GetEditPixmap(), icons.GetDeletePixmap()})
        QVERIFY2(Contrast(InkOf(icon, background), background) >= 3.0,
                 qPrintable(QString::number(Contrast(InkOf(icon, background), background))));
}

QTEST_MAIN(TestWorkbenchLayout)
#include "tst_workbenchlayout.moc"
