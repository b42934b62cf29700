#include "support/tabfixture.h"

#include <QTabWidget>
#include <QTest>

using PreviewPTZControl::CPreviewPTZWnd;
using vs_ui_data_controller::CNomalMessageManager;

void TabFixture::setUp()
{
    TestEnv::setUp();
    tips.clear();
    asked.clear();
    answer = CNomalMessageManager::AnswerConfirm;
    CNomalMessageManager::Instance()->SetAnswerProvider([this](const QString &text) {
        asked << text;
        return answer;
    });
}

void TabFixture::tearDown()
{
    CNomalMessageManager::Instance()->SetAnswerProvider({});
    dropPanels();
    TestEnv::tearDown();
}

CPreviewPTZWnd *TabFixture::newPanel(zeph_ptz_controller::CVirtualPtzControllor *virtualController)
{
    auto *panel = new CPreviewPTZWnd(unsigned(m_panels.size()), false, false);
    m_panels << panel;
    QObject::connect(panel, &CPreviewPTZWnd::SignalMessageTipNeeded, &m_context,
                     [this](const QString &tip, int level) { tips << qMakePair(tip, level); });
    panel->resize(600, 900);
    panel->SetPTZController(controller(), virtualController);
    panel->SetCamera(QString(), kDome, false, false);
    return panel;
}

void TabFixture::dropPanels()
{
    qDeleteAll(m_panels);
    m_panels.clear();
}

void TabFixture::showTab(CPreviewPTZWnd *panel, const char *page)
{
    auto *tabs = child<QTabWidget>(panel, "m_pTabWidget");
    auto *widget = child<QWidget>(panel, page);
    if (tabs->currentWidget() == widget)
        tabs->setCurrentIndex(0);
    tabs->setCurrentWidget(widget);
}

void TabFixture::settle() const
{
    QTRY_COMPARE(controller()->PendingRequestCount(), 0);
    QTRY_COMPARE(dome()->pendingRequestCount(), 0);
}
