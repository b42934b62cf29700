#pragma once

#include "zeph_ptz_controller/cptzgetcontroller.h"
#include "zeph_ptz_controller/cptzstatestoragemanager.h"

#include "ptz_devices/csimclock.h"
#include "ptz_devices/csimulatedcamera.h"
#include "site_store/csitestore.h"
#include "site_store/demosite.h"
#include "zeph_plugin_manager/ccameramanager.h"
#include "zeph_plugin_manager/cdrivertestaccess.h"
#include "zeph_plugin_manager/cptzbusinessinterfacemgr.h"

#include <QCoreApplication>
#include <QEvent>

// A fresh seeded in-memory site whose simulated cameras answer at once and
// move only when the test advances the manual clock.
class PtzTestEnv
{
public:
    void setUp()
    {
        site_store::CSiteStore::InstallCurrent(site_store::CSiteStore::OpenInMemory());
        m_clock = new ptz_devices::CSimClock(ptz_devices::CSimClock::Mode::Manual);
        manager()->SetSimClock(m_clock);
        zeph_ptz_controller::CPTZStateStorageManager::Instance()->Clear();
        zeph_ptz_controller::CPTZGetController::ClearCachedData();
        zeph_ptz_controller::CPTZStateStorageManager::Instance()->SetInterruptWaitTime(
            zeph_ptz_controller::CPTZStateStorageManager::kDefaultInterruptWaitMs);
    }

    void tearDown()
    {
        zeph_ptz_controller::CPTZStateStorageManager::Instance()->Clear();
        manager()->Clear();
        manager()->SetSimClock(nullptr);
        site_store::CSiteStore::InstallCurrent(nullptr);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        delete m_clock;
        m_clock = nullptr;
    }

    static ZephPluginManager::CCameraManager *manager()
    {
        return ZephPluginManager::CCameraManager::Instance();
    }
    static ZephPluginManager::CPTZBusinessInterfaceMgr *business()
    {
        return ZephPluginManager::CPTZBusinessInterfaceMgr::Instance();
    }
    static site_store::CSiteStore *store() { return site_store::CSiteStore::Current(); }

    ptz_devices::CSimulatedCamera *camera(const char *id) const
    {
        return qobject_cast<ptz_devices::CSimulatedCamera *>(ZephPluginManager::CDriverTestAccess::GetDriver(QString::fromLatin1(id)));
    }
    ptz_devices::CSimClock *clock() const { return m_clock; }

private:
    ptz_devices::CSimClock *m_clock = nullptr;
};
