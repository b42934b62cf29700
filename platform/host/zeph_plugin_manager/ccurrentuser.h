#pragma once

#include "zeph_plugin_manager/host_services_export.h"

#include "tarn/base/singleton.h"

#include <QObject>
#include <QString>

#include <string>

namespace ZephPluginManager {

// The operator signed in to the client. Name and PTZ level come from the site
// store; switching the user is persisted there too.
class HOST_SERVICES_EXPORT CCurrentUser : public QObject, public Tarn::Base::CSingleton<CCurrentUser>
{
    Q_OBJECT
    friend class Tarn::Base::CSingleton<CCurrentUser>;

public:
    QString GetUserName() const;
    std::string GetUserID() const; // UTF-8 of the name
    // -1 when the current user is unknown to the store.
    int GetPTZLevel() const;

    // False (and LastError()) for a user the store does not know.
    bool SetUser(const QString &name);
    QString LastError() const;

Q_SIGNALS:
    void SignalUserChanged(const QString &name);

private:
    CCurrentUser() = default;
    ~CCurrentUser() override = default;

    QString m_lastError;
};

} // namespace ZephPluginManager
