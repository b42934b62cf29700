#pragma once

#include "support/child.h"
#include "support/records.h"
#include "support/testenv.h"

#include "panel/cpreviewptzwnd.h"
#include "vs_ui_data_controller/cnomalmessagemanager.h"

#include <QList>
#include <QObject>
#include <QPair>
#include <QStringList>

namespace zeph_ptz_controller {
class CVirtualPtzControllor;
}

// Panels bound to the speed dome on a fresh test site, for the tests of the patrol and pattern
// tabs: the tips the panels raise are collected and their questions answered with `answer`.
class TabFixture : public TestEnv
{
public:
    void setUp();
    void tearDown();
    // A panel of the next free screen, bound to the dome; deleted by dropPanels() or tearDown().
    PreviewPTZControl::CPreviewPTZWnd *
    newPanel(zeph_ptz_controller::CVirtualPtzControllor *virtualController = nullptr);
    void dropPanels();
    // Shows the tab holding the page of this object name; a tab already shown is entered again,
    // which makes the panel read the camera's lists again.
    static void showTab(PreviewPTZControl::CPreviewPTZWnd *panel, const char *page);
    // Waits until neither the controller nor the dome has a request pending.
    void settle() const;
    ptz_devices::CSimulatedCamera *dome() const { return camera(kDome); }
    bool tipped(const QString &text, int level) const { return tips.contains(qMakePair(text, level)); }

    QList<QPair<QString, int>> tips;
    QStringList asked;
    int answer = vs_ui_data_controller::CNomalMessageManager::AnswerConfirm;

private:
    QObject m_context;
    QList<PreviewPTZControl::CPreviewPTZWnd *> m_panels;
};
