#pragma once

#include "direction/cptzcloud.h"
#include "zeph_plugin_manager/cdrivertestaccess.h"
#include "panel/cpreviewptzwnd.h"

#include "ptz_devices/csimclock.h"
#include "ptz_devices/csimulatedcamera.h"
#include "site_store/csitestore.h"
#include "site_store/demosite.h"
#include "zeph_plugin_manager/ccameramanager.h"
#include "zeph_ptz_controller/cptzstatestoragemanager.h"
#include "zeph_ptz_controller/cuniversalptzcontroller.h"

#include <QCoreApplication>
#include <QEvent>

#include <memory>

// A seeded in-memory site whose simulated cameras answer on the next event-loop pass
// and move only when the test advances the manual clock, plus one panel bound to nothing.
class PanelTestEnv
{
public:
    void setUp()
    {
        site_store::CSiteStore::InstallCurrent(site_store::CSiteStore::OpenInMemory());
        m_clock = new ptz_devices::CSimClock(ptz_devices::CSimClock::Mode::Manual);
        manager()->SetSimClock(m_clock);
        zeph_ptz_controller::CPTZStateStorageManager::Instance()->Clear();
        store()->setCurrentUser(QString::fromLatin1(site_store::demo::kOperator));
        m_controller = std::make_shared<zeph_ptz_controller::CUniversalPTZController>();
    }

    void tearDown()
    {
        m_controller.reset();
        zeph_ptz_controller::CPTZStateStorageManager::Instance()->Clear();
        manager()->Clear();
        manager()->SetSimClock(nullptr);
        site_store::CSiteStore::InstallCurrent(nullptr);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        delete m_clock;
        m_clock = nullptr;
    }

    static ZephPluginManager::CCameraManager *manager() { return ZephPluginManager::CCameraManager::Instance(); }
    static site_store::CSiteStore *store() { return site_store::CSiteStore::Current(); }

    ptz_devices::CSimulatedCamera *camera(const QString &id) const
    {
        return qobject_cast<ptz_devices::CSimulatedCamera *>(ZephPluginManager::CDriverTestAccess::GetDriver(id));
    }
    ptz_devices::CSimClock *clock() const { return m_clock; }
    std::shared_ptr<zeph_ptz_controller::CUniversalPTZController> controller() const { return m_controller; }

    // Replaces the abilities of a demo camera and makes the host see the change.
    void setAbilities(const QString &id, const QList<int> &abilities, bool cascade = false)
    {
        auto record = store()->camera(id);
        if (!record)
            return;
        record->abilities = abilities;
        record->cascade = cascade;
        store()->upsertCamera(*record);
        manager()->Reload();
    }

    // Operations the camera received, oldest first.
    QList<ptz_devices::DriverOperation> operations(const QString &id) const
    {
        QList<ptz_devices::DriverOperation> ops;
        if (auto *cam = camera(id)) {
            const auto log = cam->requestLog();
            for (const auto &entry : log)
                ops << entry.operation;
        }
        return ops;
    }

private:
    ptz_devices::CSimClock *m_clock = nullptr;
    std::shared_ptr<zeph_ptz_controller::CUniversalPTZController> m_controller;
};
