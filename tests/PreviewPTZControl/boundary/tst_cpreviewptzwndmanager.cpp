#include "boundary/cpreviewptzwndmanager.h"
#include "boundary/cptzboardwidgetinterface.h"
#include "boundary/previewptzcontroltranslator.h"
#include "panel/cpreviewptzwnd.h"

#include "ptz_devices/csimulatedcamera.h"
#include "site_store/csitestore.h"
#include "zeph_plugin_manager/ccameramanager.h"
#include "zeph_plugin_manager/cdrivertestaccess.h"

#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

using namespace PreviewPTZControl;

class TestPreviewPTZWndManager : public QObject
{
    Q_OBJECT

private slots:
    void init() { site_store::CSiteStore::InstallCurrent(site_store::CSiteStore::OpenInMemory()); }
    void cleanup()
    {
        const auto all = registry()->GetAllPreviewPTZWnd();
        for (auto it = all.begin(); it != all.end(); ++it)
            registry()->RemovePreviewPTZWnd(it.key());
        ZephPluginManager::CCameraManager::Instance()->Clear();
        site_store::CSiteStore::InstallCurrent(nullptr);
    }

    void oneRegisteredPanelPerScreen()
    {
        CPreviewPTZWnd first(3, false, false);
        CPreviewPTZWnd second(3, false, false);
        CPreviewPTZWnd other(1, false, false);
        registry()->AddPreviewPTZWnd(5, nullptr); // ignored
        registry()->AddPreviewPTZWnd(3, &first);
        registry()->AddPreviewPTZWnd(3, &second); // the first for a screen stays
        registry()->AddPreviewPTZWnd(1, &other);
        QCOMPARE(registry()->GetPreviewPTZWndByScreenIndex(3), &first);
        QCOMPARE(registry()->GetPreviewPTZWndByScreenIndex(0), nullptr);
        QCOMPARE(registry()->GetAllPreviewPTZWnd().keys(), (QList<unsigned int>{1, 3}));

        registry()->RemovePreviewPTZWnd(7); // absent: nothing happens
        registry()->RemovePreviewPTZWnd(3);
        registry()->AddPreviewPTZWnd(3, &second);
        QCOMPARE(registry()->GetPreviewPTZWndByScreenIndex(3), &second);
    }
    void boardWidgetForwardsEachTipOnce()
    {
        CPTZBoardWidgetInterface board(2, false, false);
        QSignalSpy tips(&board, &CPTZBoardWidgetInterface::SignalMessageTipNeeded);
        emit board.PreviewPTZWnd()->SignalMessageTipNeeded(QStringLiteral("from panel"), 2);
        QCOMPARE(tips.count(), 1);
        QCOMPARE(tips.at(0), (QVariantList{QStringLiteral("from panel"), 2}));

        // A failure of the board's own controller reaches the host as a tip as well.
        board.SetCamera(QString(), QStringLiteral("demo-speed-dome"));
        auto *camera = qobject_cast<ptz_devices::CSimulatedCamera *>(
            ZephPluginManager::CDriverTestAccess::GetDriver(QStringLiteral("demo-speed-dome")));
        camera->failOperation(ptz_devices::DriverOperation::Light, QStringLiteral("lamp broken"));
        board.findChild<QPushButton *>(QStringLiteral("m_pBtnLight"))->click();
        QTRY_COMPARE(tips.count(), 2);
        QCOMPARE(tips.at(1).at(1).toInt(), 0);
        QCoreApplication::processEvents();
        QCOMPARE(tips.count(), 2); // once, not once per forwarding path
    }
    void translatorGivesEnglishTexts()
    {
        QVERIFY(InstallTranslator(QCoreApplication::instance(), QLocale(QLocale::German)));
        QCOMPARE(QCoreApplication::translate("PreviewPTZControl::CPTZCloud", "TurnUp"), QStringLiteral("Tilt up"));
        QCOMPARE(QCoreApplication::translate("PreviewPTZControl::CPreviewPTZWnd", "TrackOperationInProgkdawnXPU"),
                 QStringLiteral("A pattern is being recorded on this camera."));
        // Installing twice keeps one translator.
        QVERIFY(InstallTranslator(QCoreApplication::instance()));
    }

private:
    CPreviewPTZWndManager *registry() const { return CPreviewPTZWndManager::Instance(); }
};

QTEST_MAIN(TestPreviewPTZWndManager)
#include "tst_cpreviewptzwndmanager.moc"
