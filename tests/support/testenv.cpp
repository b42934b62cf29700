#include "support/testenv.h"
#include "zeph_plugin_manager/cdrivertestaccess.h"

#include "zeph_ptz_controller/cptzgetcontroller.h"
#include "zeph_ptz_controller/cptzstatestoragemanager.h"

#include <QCoreApplication>
#include <QEvent>

using zeph_ptz_controller::CPTZStateStorageManager;

void TestEnv::setUp()
{
    site_store::CSiteStore::InstallCurrent(site_store::CSiteStore::OpenInMemory());
    m_clock = new ptz_devices::CSimClock(ptz_devices::CSimClock::Mode::Manual);
    manager()->SetSimClock(m_clock);
    CPTZStateStorageManager::Instance()->Clear();
    CPTZStateStorageManager::Instance()->SetInterruptWaitTime(CPTZStateStorageManager::kDefaultInterruptWaitMs);
    zeph_ptz_controller::CPTZGetController::ClearCachedData();
    store()->setCurrentUser(QString::fromLatin1(site_store::demo::kOperator));
}

void TestEnv::tearDown()
{
    m_controller.reset();
    CPTZStateStorageManager::Instance()->Clear();
    manager()->Clear();
    manager()->SetSimClock(nullptr);
    site_store::CSiteStore::InstallCurrent(nullptr);
    zeph_ptz_controller::CPTZGetController::ClearCachedData();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    delete m_clock;
    m_clock = nullptr;
}

ptz_devices::CSimulatedCamera *TestEnv::camera(const QString &id) const
{
    return qobject_cast<ptz_devices::CSimulatedCamera *>(ZephPluginManager::CDriverTestAccess::GetDriver(id));
}

std::shared_ptr<zeph_ptz_controller::CUniversalPTZController> TestEnv::controller() const
{
    if (!m_controller)
        m_controller = std::make_shared<zeph_ptz_controller::CUniversalPTZController>();
    return m_controller;
}

void TestEnv::setAbilities(const QString &id, const QList<int> &abilities, bool cascade)
{
    auto record = store()->camera(id);
    if (!record)
        return;
    record->abilities = abilities;
    record->cascade = cascade;
    store()->upsertCamera(*record);
    manager()->Reload();
}

QList<ptz_devices::DriverOperation> TestEnv::operations(const QString &id) const
{
    QList<ptz_devices::DriverOperation> ops;
    if (auto *cam = camera(id))
        for (const auto &entry : cam->requestLog())
            ops << entry.operation;
    return ops;
}
