#pragma once

#include "support/child.h"
#include "support/records.h"
#include "support/testenv.h"

#include "direction/cptzcloud.h"
#include "panel/cpreviewptzwnd.h"
#include "zeph_ptz_controller/cptzstatestoragemanager.h"

#include <QApplication>
#include <QTimer>

#include <functional>
#include <memory>

namespace zeph_ptz_controller {
class CSimpleFishEyeController;
}

// A panel of screen 0 on a fresh test site, talking to the site's controller.
// A software-PTZ panel also gets a fish-eye controller (four pictures).
class PanelFixture : public TestEnv
{
public:
    void setUp(bool softwarePtz = false);
    void tearDown();
    // Replaces the panel with a fresh one, or drops it (e.g. before the store is swapped).
    void newPanel(bool softwarePtz = false);
    void dropPanel();
    // Binds the panel (empty: unbinds) and forgets what the camera received so far.
    void bind(const QString &camera);
    // Another panel of the given screen on the same controller, bound to `camera`.
    std::unique_ptr<PreviewPTZControl::CPreviewPTZWnd> otherPanel(const QString &camera, unsigned screen = 1) const;

    PreviewPTZControl::CPreviewPTZWnd *panel() const { return m_panel; }
    zeph_ptz_controller::CSimpleFishEyeController *fishEye() const { return m_fishEye; }
    template <typename T>
    T *child(const char *name) const
    {
        return ::child<T>(m_panel, name);
    }
    PreviewPTZControl::CPTZCloud *cloud() const;
    // The controller's record of what runs on each camera (auto-scan, patrols, light, wiper).
    static zeph_ptz_controller::CPTZStateStorageManager *storage()
    {
        return zeph_ptz_controller::CPTZStateStorageManager::Instance();
    }

    // The pad emits these on mouse press and release over a section.
    void pressSection(int section);
    void releaseSection(int section);
    // Left-button press or release on a panel widget, as the operator's mouse sends it.
    void press(const char *widget);
    void release(const char *widget);
    static void sendMouse(QWidget *widget, bool press);

    int count(const QString &camera, ptz_devices::DriverOperation op) const { return operations(camera).count(op); }

    // Waits until the controller and the camera have nothing pending, then runs what was queued.
    void settle(const QString &camera = kDome);
    // The pad's mouse surface and a point well inside a section (1-9; others: off the ring), in its coordinates.
    QWidget *padViewport() const;
    static QPoint padPoint(int section);

    // Answers the next modal dialog of type D from inside its event loop.
    template <typename D>
    static void answerNextDialog(std::function<void(D *)> fill, bool accept = true, bool *seen = nullptr)
    {
        QTimer::singleShot(0, qApp, [fill, accept, seen]() {
            auto *dialog = qobject_cast<D *>(QApplication::activeModalWidget());
            if (!dialog)
                return;
            if (seen)
                *seen = true;
            if (fill)
                fill(dialog);
            if (accept)
                dialog->GetConfirmButton()->click();
            else
                dialog->GetCancelButton()->click();
        });
    }

private:
    PreviewPTZControl::CPreviewPTZWnd *m_panel = nullptr;
    zeph_ptz_controller::CSimpleFishEyeController *m_fishEye = nullptr;
};
