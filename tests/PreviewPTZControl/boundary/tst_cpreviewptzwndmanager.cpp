#include "boundary/cpreviewptzwndmanager.h"
#include "boundary/cptzboardwidgetinterface.h"
#include "boundary/previewptzcontroltranslator.h"
#include "boundary/ptzcontrolparam.h"
#include "panel/cpreviewptzwnd.h"

#include "ptz_devices/csimulatedcamera.h"
#include "site_store/csitestore.h"
#include "zeph_plugin_manager/ccameramanager.h"
#include "zeph_plugin_manager/cdrivertestaccess.h"
#include "zeph_ptz_controller/cuniversalptzcontroller.h"

#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QThread>

#include <atomic>

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

    void firstPanelForAScreenStays()
    {
        CPreviewPTZWnd first(3, false, false);
        CPreviewPTZWnd second(3, false, false);
        registry()->AddPreviewPTZWnd(3, &first);
        registry()->AddPreviewPTZWnd(3, &second);
        QCOMPARE(registry()->GetPreviewPTZWndByScreenIndex(3), &first);
        QCOMPARE(registry()->GetAllPreviewPTZWnd().size(), 1);

        registry()->RemovePreviewPTZWnd(3);
        registry()->AddPreviewPTZWnd(3, &second);
        QCOMPARE(registry()->GetPreviewPTZWndByScreenIndex(3), &second);
    }
    void unknownScreenIsNull()
    {
        CPreviewPTZWnd panel(0, false, false);
        registry()->AddPreviewPTZWnd(0, &panel);
        QCOMPARE(registry()->GetPreviewPTZWndByScreenIndex(1), nullptr);
        QCOMPARE(registry()->GetPreviewPTZWndByScreenIndex(0), &panel);
    }
    void nullPanelIsIgnored()
    {
        registry()->AddPreviewPTZWnd(5, nullptr);
        QVERIFY(!registry()->GetAllPreviewPTZWnd().contains(5));
        CPreviewPTZWnd panel(5, false, false);
        registry()->AddPreviewPTZWnd(5, &panel);
        QCOMPARE(registry()->GetPreviewPTZWndByScreenIndex(5), &panel);
    }
    void removeDropsOnlyThatScreen()
    {
        CPreviewPTZWnd a(0, false, false);
        CPreviewPTZWnd b(1, false, false);
        registry()->AddPreviewPTZWnd(0, &a);
        registry()->AddPreviewPTZWnd(1, &b);
        registry()->RemovePreviewPTZWnd(7); // absent: nothing happens
        registry()->RemovePreviewPTZWnd(0);
        const auto all = registry()->GetAllPreviewPTZWnd();
        QCOMPARE(all.keys(), QList<unsigned int> { 1 });
        QCOMPARE(all.value(1), &b);
    }
    void racingThreadsGetOneRegistry()
    {
        CPreviewPTZWndManager::DestroyInstance();
        std::atomic<int> go { 0 };
        CPreviewPTZWndManager *seen[8] = {};
        QList<QThread *> threads;
        for (int i = 0; i < 8; ++i) {
            threads << QThread::create([&go, &seen, i] {
                while (!go.load())
                    ;
                seen[i] = CPreviewPTZWndManager::Instance();
            });
            threads.last()->start();
        }
        go = 1;
        for (QThread *thread : qAsConst(threads)) {
            QVERIFY(thread->wait(5000));
            delete thread;
        }
        for (auto *instance : seen)
            QCOMPARE(instance, seen[0]);
        // The registry lives on the user-interface thread.
        seen[0]->moveToThread(thread());
    }
    void controlParamForms()
    {
        const PTZControlParam press(QStringLiteral("cam"), 21, 0, 1);
        QCOMPARE(press.camera_index_code, QStringLiteral("cam"));
        QVERIFY(press.owner_index_code.isEmpty());
        QCOMPARE(press.command, 21u);
        QCOMPARE(press.action, 0u);
        QCOMPARE(press.skip, false);
        QCOMPARE(press.extra, 1u);

        const PTZControlParam stop(QStringLiteral("owner"), QStringLiteral("cam"), 44, 1, true);
        QCOMPARE(stop.owner_index_code, QStringLiteral("owner"));
        QCOMPARE(stop.camera_index_code, QStringLiteral("cam"));
        QCOMPARE(stop.command, 44u);
        QCOMPARE(stop.action, 1u);
        QCOMPARE(stop.skip, true);
        QCOMPARE(stop.extra, 0u);
    }
    void boardWidgetForwardsTips()
    {
        CPTZBoardWidgetInterface board(2, false, false);
        QVERIFY(board.PreviewPTZWnd());
        QCOMPARE(board.PreviewPTZWnd()->parentWidget(), &board);
        QSignalSpy tips(&board, &CPTZBoardWidgetInterface::SignalMessageTipNeeded);
        emit board.PreviewPTZWnd()->SignalMessageTipNeeded(QStringLiteral("from panel"), 2);
        QCOMPARE(tips.count(), 1);
        QCOMPARE(tips.at(0), (QVariantList { QStringLiteral("from panel"), 2 }));

        // A failure of the board's own controller reaches the host as a tip as well.
        board.SetCamera(QString(), QStringLiteral("demo-speed-dome"));
        QVERIFY(board.PreviewPTZWnd()->IsWorking());
        auto *camera = qobject_cast<ptz_devices::CSimulatedCamera *>(
            ZephPluginManager::CDriverTestAccess::GetDriver(QStringLiteral("demo-speed-dome")));
        QVERIFY(camera);
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
