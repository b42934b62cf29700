#include "cworkbenchsignin.h"

#include "site_store/csitestore.h"
#include "site_store/demosite.h"
#include "zeph_plugin_manager/ccurrentuser.h"

#include <QStringList>

QString CWorkbenchSignIn::DefaultOperator()
{
    site_store::CSiteStore *store = site_store::CSiteStore::Current();
    const QString demoOperator = QString::fromLatin1(site_store::demo::kOperator);
    if (store->user(demoOperator))
        return demoOperator;
    const QList<site_store::UserRecord> users = store->users();
    return users.isEmpty() ? QString() : users.constFirst().name;
}

bool CWorkbenchSignIn::SignIn(const QString &name, QString *error)
{
    site_store::CSiteStore *store = site_store::CSiteStore::Current();
    const QString wanted = name.isEmpty() ? DefaultOperator() : name;
    if (!name.isEmpty() && !store->user(name)) {
        QStringList known;
        for (const site_store::UserRecord &user : store->users())
            known << user.name;
        if (error)
            *error = QStringLiteral("no operator named '%1' on this site; known operators: %2.")
                         .arg(name, known.join(QStringLiteral(", ")));
        return false;
    }
    if (wanted.isEmpty())
        return true;
    auto *current = Tarn::Base::CSingleton<ZephPluginManager::CCurrentUser>::Instance();
    if (current->GetUserName() == wanted)
        return true;
    if (!current->SetUser(wanted)) {
        if (error)
            *error = QStringLiteral("cannot sign in as '%1': %2").arg(wanted, current->LastError());
        return false;
    }
    return true;
}
