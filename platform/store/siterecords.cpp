#include "site_store/siterecords.h"

namespace site_store {

bool CameraRecord::operator==(const CameraRecord &o) const
{
    return id == o.id && name == o.name && driverKind == o.driverKind && driverAddress == o.driverAddress
           && model == o.model && abilities == o.abilities && cascade == o.cascade && fishEye == o.fishEye
           && accessProtocol == o.accessProtocol;
}

int LockRecord::remainingSeconds(const QDateTime &now) const
{
    if (!expiresAt.isValid())
        return 0;
    const qint64 ms = now.msecsTo(expiresAt);
    return ms <= 0 ? 0 : int((ms + 999) / 1000);
}

} // namespace site_store
