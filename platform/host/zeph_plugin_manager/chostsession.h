#pragma once

#include "zeph_plugin_manager/host_services_export.h"

#include <QString>
#include <QStringList>

namespace ZephPluginManager {

// Start-up of the host services from the command line: opens the site store
// ("--site FILE", else $PTZ_SITE_STORE, else the default location), makes it
// current and selects the operator given by "--user NAME".
class HOST_SERVICES_EXPORT CHostSession
{
public:
    struct Result
    {
        bool storeFallback = false; // running on a temporary in-memory site
        QString storePath;          // the file in use; empty for the fallback
        // Problems to show the user at start (unusable store, unknown user);
        // empty when everything went as asked.
        QStringList messages;
    };

    static Result Start(const QStringList &arguments);
    // Drops cameras and drivers, then the store (before the application ends).
    static void Stop();
};

} // namespace ZephPluginManager
