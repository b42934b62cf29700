#pragma once

#include <QString>
#include <QStringList>

// The workbench's command line, checked before anything starts so a bad value
// exits with code 2 and a sentence saying what was expected.
class CWorkbenchOptions
{
public:
    QString site;
    QString user;
    int screens = 4;
    bool white = false;
    bool stacked = false;
    QString script;
    QString screenshot;
    bool onvifDemo = false; // add the demo ONVIF camera to the site if missing
    bool help = false;
    QString helpText;

    // `arguments` includes the program name first, as QCoreApplication::arguments().
    bool Parse(const QStringList &arguments, QString *error);
};
