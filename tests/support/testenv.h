#pragma once

#include "ptz_devices/csimclock.h"
#include "ptz_devices/csimulatedcamera.h"
#include "site_store/csitestore.h"
#include "site_store/demosite.h"
#include "zeph_plugin_manager/ccameramanager.h"
#include "zeph_plugin_manager/cptzbusinessinterfacemgr.h"
#include "zeph_ptz_controller/cuniversalptzcontroller.h"

#include <memory>

// A fresh seeded in-memory site whose simulated cameras answer on the next event-loop pass
// and move only when the test advances the manual clock. Call setUp() in init() and
// tearDown() in cleanup().
class TestEnv
{
public:
    void setUp();
    void tearDown();

    static ZephPluginManager::CCameraManager *manager() { return ZephPluginManager::CCameraManager::Instance(); }
    static ZephPluginManager::CPTZBusinessInterfaceMgr *business()
    {
        return ZephPluginManager::CPTZBusinessInterfaceMgr::Instance();
    }
    static site_store::CSiteStore *store() { return site_store::CSiteStore::Current(); }

    ptz_devices::CSimulatedCamera *camera(const QString &id) const;
    ptz_devices::CSimulatedCamera *camera(const char *id) const { return camera(QString::fromLatin1(id)); }
    ptz_devices::CSimClock *clock() const { return m_clock; }
    // The controller a panel talks to; made on first use so controller-level tests own theirs.
    std::shared_ptr<zeph_ptz_controller::CUniversalPTZController> controller() const;

    // Replaces the abilities of a demo camera and makes the host see the change.
    void setAbilities(const QString &id, const QList<int> &abilities, bool cascade = false);
    // Operations the camera received, oldest first.
    QList<ptz_devices::DriverOperation> operations(const QString &id) const;

private:
    ptz_devices::CSimClock *m_clock = nullptr;
    mutable std::shared_ptr<zeph_ptz_controller::CUniversalPTZController> m_controller;
};

// The name the controller-level tests use.
using PtzTestEnv = TestEnv;
