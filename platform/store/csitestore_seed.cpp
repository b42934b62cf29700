#include "site_store/csitestore.h"
#include "site_store/demosite.h"

#include "csitestore_p.h"
#include "csitetransaction.h"

namespace site_store {

namespace {

CameraRecord demoCamera(const char *id, const QString &name, const char *model, QList<int> abilities)
{
    CameraRecord c;
    c.id = QString::fromLatin1(id);
    c.name = name;
    c.driverKind = QString::fromLatin1(demo::kSimulatedKind);
    c.model = QString::fromLatin1(model);
    c.abilities = abilities;
    return c;
}

} // namespace

bool CSiteStore::seedDemoSite()
{
    // One transaction for the whole site: the writes below join it.
    CSiteTransaction batch(this, *d);
    if (!batch.isOpen())
        return false;

    const QList<int> allAbilities{1, 6, 26, 33, 35, 46, 48, 49, 50};

    QList<CameraRecord> cameras;
    cameras << demoCamera(demo::kSpeedDome, tr("Speed Dome - Lobby"), "speed-dome", allAbilities);
    QList<int> noPatterns = allAbilities;
    noPatterns.removeAll(46);
    cameras << demoCamera(demo::kPtzNoPattern, tr("PTZ Camera - Gate"), "ptz-no-pattern", noPatterns);
    cameras << demoCamera(demo::kBoxZoom, tr("Box Camera - Corridor"), "box-zoom", {1, 50});
    CameraRecord fishEye = demoCamera(demo::kFishEye, tr("Fish-eye - Hall"), "fisheye", {1});
    fishEye.fishEye = true;
    cameras << fishEye;
    CameraRecord cascade = demoCamera(demo::kCascade, tr("Cascaded Dome - Branch Office"), "cascaded", allAbilities);
    cascade.cascade = true;
    // Reached through another site: its PTZ information cannot be refreshed from here.
    cascade.accessProtocol = 9;
    cameras << cascade;

    const QList<UserRecord> users{
        {QString::fromLatin1(demo::kOperator), demo::kOperatorLevel},
        {QString::fromLatin1(demo::kJunior), demo::kJuniorLevel},
        {QString::fromLatin1(demo::kSenior), demo::kSeniorLevel},
        {QString::fromLatin1(demo::kNoPark), demo::kNoParkLevel},
    };

    bool ok = true;
    for (const CameraRecord &c : qAsConst(cameras))
        ok = ok && upsertCamera(c);
    for (const UserRecord &u : users) {
        ok = ok && upsertUser(u) && grantPermission(u.name, kAllCameras, kPermPtzControl);
        if (u.name != QLatin1String(demo::kNoPark))
            ok = ok && grantPermission(u.name, kAllCameras, kPermParkAction);
    }
    for (const QString &key : {kIsSupportPTZLock, kIsSupportVirtualPTZ, kIsSupportUpdatePTZInfo,
                               kResumeCruiseAfterInterrupt, kShowPreSetTabWidget, kShowExtraButton, kShowUserLevel})
        ok = ok && setBoolSetting(key, true);
    ok = ok && setSetting(kGetTrackNum, QStringLiteral("4"));
    ok = ok && setSetting(kProductType, QStringLiteral("Standard"));
    ok = ok && setSetting(kCurrentUser, QString::fromLatin1(demo::kOperator));
    if (!ok)
        return batch.fail(lastError());
    if (!batch.exec(QStringLiteral("INSERT OR REPLACE INTO meta (key, value) VALUES ('seeded', '1')")))
        return false;
    return batch.commit(Table::All, QString());
}

} // namespace site_store
