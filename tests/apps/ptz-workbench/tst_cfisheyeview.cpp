#include "support/workbenchfixture.h"

#include "cfisheyeview.h"
#include "cliveview.h"
#include "cworkbenchscript.h"

#include "direction/cptzcloud.h"
#include "panel/cpreviewptzwnd.h"
#include "zeph_ptz_controller/csimplefisheyecontroller.h"

#include <QTest>

using PreviewPTZControl::CPTZCloud;

namespace {
struct Pos
{
    double pan = 0, tilt = 0, zoom = 0;
};

Pos SubViewPos(CFishEyeView *view, int index)
{
    Pos p;
    view->Controller()->GetWndPTZPos(index, p.pan, p.tilt, p.zoom);
    return p;
}
} // namespace

class TestFishEyeView : public QObject
{
    Q_OBJECT
private slots:
    void init()
    {
        m_fx.setUp();
        m_fx.window()->resize(1400, 800);
    }
    void cleanup() { m_fx.tearDown(); }
    void viewOpensAndClosesAndThePanelFollows()
    {
        CWorkbenchWindow *window = m_fx.window();
        CWorkbenchScript script;
        QString error;
        const auto run = [&](const QString &text) { return script.Parse(text, &error) && script.Run(window, &error); };
        QVERIFY2(run(QStringLiteral("bind 1 %1\nfisheye 1 open\n").arg(kFishEye)), qPrintable(error));
        QVERIFY(CFishEyeView::Of(window->View(0)));
        QCOMPARE(window->Panel(0)->WndType(), PreviewPTZControl::PTZWndSoftware);
        QVERIFY2(run(QStringLiteral("fisheye 1 close\n")), qPrintable(error));
        QVERIFY(!CFishEyeView::Of(window->View(0)));
        QCOMPARE(window->Panel(0)->WndType(), PreviewPTZControl::PTZWndDevice);
        // Another picture on the screen closes the view; a camera without the lens has none.
        QVERIFY(open());
        window->BindCamera(0, kDome);
        QVERIFY(!CFishEyeView::Of(window->View(0)));
        QVERIFY(!window->SetFishEyeOpen(0, true));
    }
    void padSteersTheSelectedSubView_data()
    {
        QTest::addColumn<int>("subView"); // selected by a click on the picture, ending the auto-pan mark
        QTest::addColumn<int>("section");
        QTest::addColumn<double>("minPan");
        QTest::addColumn<double>("maxPan");

        // Sub-view 1 starts at pan 0: a move to the left wraps past 360.
        QTest::newRow("left wraps") << 0 << int(CPTZCloud::MiddleLeft) << 180.0 << 359.99;
        QTest::newRow("third sub-view clicked, right") << 2 << int(CPTZCloud::MiddleRight) << 0.0 << 360.0;
    }
    void padSteersTheSelectedSubView()
    {
        QFETCH(int, subView);
        QFETCH(int, section);
        QFETCH(double, minPan);
        QFETCH(double, maxPan);
        CFishEyeView *fishEye = open();
        QCOMPARE(fishEye->SelectedSubView(), 0);
        if (subView != 0) {
            cloud()->SetSectionChecked(CPTZCloud::Center, true);
            QTest::mouseClick(fishEye, Qt::LeftButton, Qt::NoModifier, fishEye->SubViewRect(subView).center());
            QCOMPARE(fishEye->SelectedSubView(), subView);
            QCOMPARE(cloud()->sectionStatus(CPTZCloud::Center), 0);
        }
        const Pos start = SubViewPos(fishEye, subView);
        const int other = (subView + 1) % 4;
        const Pos otherStart = SubViewPos(fishEye, other);
        const QImage before = fishEye->SubViewImage(subView);

        emit cloud()->signalPressSection(nullptr, CPTZCloud::enClickSection(section));
        QTRY_VERIFY(SubViewPos(fishEye, subView).pan != start.pan || SubViewPos(fishEye, subView).tilt != start.tilt);
        emit cloud()->signalReleaseSection(nullptr, CPTZCloud::enClickSection(section));

        const double pan = SubViewPos(fishEye, subView).pan;
        QVERIFY2(pan >= minPan && pan <= maxPan, qPrintable(QString::number(pan)));
        QVERIFY(fishEye->SubViewImage(subView) != before);
        // Only the selected sub-view moves.
        QVERIFY(SubViewPos(fishEye, other).pan == otherStart.pan && SubViewPos(fishEye, other).tilt == otherStart.tilt);
    }
    void keysSteerTheSubViewNotTheDevice()
    {
        CFishEyeView *fishEye = open();
        m_fx.camera(kFishEye)->clearRequestLog();
        const Pos start = SubViewPos(fishEye, 0);
        QTest::keyPress(m_fx.window(), Qt::Key_Right);
        QTRY_VERIFY(SubViewPos(fishEye, 0).pan != start.pan);
        QTest::keyRelease(m_fx.window(), Qt::Key_Right);
        // While the next key tilts the sub-view, its pan must stand where the release left it.
        const Pos stopped = SubViewPos(fishEye, 0);
        QTest::keyPress(m_fx.window(), Qt::Key_Up);
        QTRY_VERIFY(SubViewPos(fishEye, 0).tilt != stopped.tilt);
        QTest::keyRelease(m_fx.window(), Qt::Key_Up);
        QCOMPARE(SubViewPos(fishEye, 0).pan, stopped.pan);
        QVERIFY(m_fx.operations(kFishEye).isEmpty());
    }

private:
    CPTZCloud *cloud() const { return m_fx.window()->Panel(0)->findChild<CPTZCloud *>(QStringLiteral("ptr_cloud_")); }
    // Opens the fish-eye view of the fish-eye camera on the first screen.
    CFishEyeView *open()
    {
        m_fx.window()->BindCamera(0, kFishEye);
        if (!m_fx.window()->SetFishEyeOpen(0, true))
            return nullptr;
        CFishEyeView *view = CFishEyeView::Of(m_fx.window()->View(0));
        view->resize(800, 450);
        return view;
    }

    WorkbenchFixture m_fx;
};

QTEST_MAIN(TestFishEyeView)
#include "tst_cfisheyeview.moc"
