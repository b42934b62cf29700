#pragma once

#include <QString>

// Who the workbench runs as. A named operator must exist on the site; without a name the
// workbench runs as the site's default operator, never as whoever the last start named.
class CWorkbenchSignIn
{
public:
    // Makes `name` (or, when empty, the default operator) the current user. False with a
    // sentence in `error` when the site does not know the name; the current user is unchanged.
    static bool SignIn(const QString &name, QString *error);

    // The demo site's "operator" when the site has it, otherwise the first user it lists;
    // empty for a site without users.
    static QString DefaultOperator();
};
