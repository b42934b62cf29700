#include "support/workbenchfixture.h"

#include "cliveview.h"

#include <QApplication>
#include <QTest>

void WorkbenchFixture::setUp()
{
    TestEnv::setUp();
    m_window = std::make_unique<CWorkbenchWindow>();
}

void WorkbenchFixture::tearDown()
{
    m_other.reset();
    m_window.reset();
    TestEnv::tearDown();
}

bool WorkbenchFixture::showActive()
{
    m_window->resize(CWorkbenchWindow::DefaultSize());
    m_window->show();
    QApplication::setActiveWindow(m_window.get());
    return QTest::qWaitForWindowActive(m_window.get());
}

bool WorkbenchFixture::switchAway()
{
    m_other = std::make_unique<QWidget>();
    m_other->show();
    QApplication::setActiveWindow(m_other.get());
    return QTest::qWaitFor([this] { return !m_window->isActiveWindow(); });
}

QStringList WorkbenchFixture::moving() const
{
    QStringList out;
    for (int i = 0; i < m_window->ScreenCount(); ++i) {
        const QString id = m_window->View(i)->CameraId();
        const ptz_devices::CSimulatedCamera *cam = camera(id);
        if (cam && (cam->status().panTiltMoving || cam->status().zoomMoving) && !out.contains(id))
            out << id;
    }
    return out;
}
