#include "support/panelfixture.h"

#include "zeph_ptz_controller/csimplefisheyecontroller.h"

#include <QCoreApplication>
#include <QGraphicsView>
#include <QMouseEvent>
#include <QTest>

using PreviewPTZControl::CPTZCloud;

void PanelFixture::setUp(bool softwarePtz)
{
    TestEnv::setUp();
    newPanel(softwarePtz);
}

void PanelFixture::newPanel(bool softwarePtz)
{
    dropPanel();
    m_panel = new PreviewPTZControl::CPreviewPTZWnd(0, softwarePtz, false);
    m_panel->SetPTZController(controller(), nullptr);
    if (softwarePtz) {
        m_fishEye = new zeph_ptz_controller::CSimpleFishEyeController(4);
        m_panel->SetFishEyeController(m_fishEye);
    }
}

void PanelFixture::tearDown()
{
    dropPanel();
    TestEnv::tearDown();
}

void PanelFixture::dropPanel()
{
    delete m_panel;
    m_panel = nullptr;
    delete m_fishEye;
    m_fishEye = nullptr;
}

void PanelFixture::bind(const QString &camera)
{
    m_panel->SetCamera(QString(), camera, false, false);
    QCoreApplication::processEvents();
    if (auto *cam = TestEnv::camera(camera))
        cam->clearRequestLog();
}

std::unique_ptr<PreviewPTZControl::CPreviewPTZWnd> PanelFixture::otherPanel(const QString &camera,
                                                                            unsigned screen) const
{
    auto panel = std::make_unique<PreviewPTZControl::CPreviewPTZWnd>(screen, false, false);
    panel->SetPTZController(controller(), nullptr);
    panel->SetCamera(QString(), camera, false, false);
    return panel;
}

CPTZCloud *PanelFixture::cloud() const
{
    return child<CPTZCloud>("ptr_cloud_");
}

void PanelFixture::pressSection(int section)
{
    emit cloud()->signalPressSection(nullptr, CPTZCloud::enClickSection(section));
}

void PanelFixture::releaseSection(int section)
{
    emit cloud()->signalReleaseSection(nullptr, CPTZCloud::enClickSection(section));
}

void PanelFixture::sendMouse(QWidget *widget, bool press)
{
    const auto type = press ? QEvent::MouseButtonPress : QEvent::MouseButtonRelease;
    QMouseEvent event(type, QPointF(4, 4), Qt::LeftButton, press ? Qt::LeftButton : Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &event);
}

void PanelFixture::press(const char *widget)
{
    sendMouse(child<QWidget>(widget), true);
}

void PanelFixture::release(const char *widget)
{
    sendMouse(child<QWidget>(widget), false);
}

void PanelFixture::settle(const QString &camera)
{
    auto *cam = TestEnv::camera(camera);
    QTRY_VERIFY(controller()->PendingRequestCount() == 0 && (!cam || cam->pendingRequestCount() == 0));
    QCoreApplication::processEvents();
}

QWidget *PanelFixture::padViewport() const
{
    auto *view = cloud()->findChild<QGraphicsView *>(QStringLiteral("ptr_graphics_view"));
    return view ? view->viewport() : nullptr;
}

QPoint PanelFixture::padPoint(int section)
{
    static const QPoint inside[] = {{-45, -45}, {0, -50},  {45, -45}, {-50, 0}, {0, 0},
                                    {50, 0},    {-45, 45}, {0, 50},   {45, 45}};
    return (section >= 1 && section <= 9 ? inside[section - 1] : QPoint(103, -67)) + QPoint(87, 87);
}
