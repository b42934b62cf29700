#pragma once

#include <QList>
#include <QString>
#include <QStringList>

// Talking to ONVIF cameras from the site tool.
namespace onvifsetup {

// Connects to the camera and reads its abilities; false and a readable reason
// when it cannot be reached, refuses the credentials or offers no PTZ.
bool CheckCamera(const QString &address, const QString &user, const QString &password, int timeoutMs,
                 QList<int> *abilities, QString *error);

// The address as stored: the device service with the credentials in its user part.
QString StoredAddress(const QString &address, const QString &user, const QString &password);

// Makes the store file and its journal readable and writable by the owner only.
void RestrictToOwner(const QString &storePath);
// Creates the store file empty and owner-only when it does not exist yet.
void CreateOwnerOnly(const QString &storePath);

// Lists the devices that answer a WS-Discovery probe within the timeout, one
// line each: "<service addresses>\t<scopes>". The probe goes to the multicast
// group, or to `target` ("host:port") when given; a bad target is an error.
QStringList Discover(const QString &target, int timeoutMs, QString *error);

} // namespace onvifsetup
