// ptz-site: looks at and edits the site store from the shell (cameras, users, switches).
#include "onvifsetup.h"

#include "ptz_devices/cdriverfactory.h"
#include "site_store/csitestore.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QLoggingCategory>
#include <QTextStream>

#include <algorithm>

#include <cstdio>

namespace {

QTextStream &out()
{
    static QTextStream s(stdout);
    return s;
}

QTextStream &err()
{
    static QTextStream s(stderr);
    return s;
}

QString joinCodes(const QList<int> &codes)
{
    QStringList parts;
    for (int c : codes)
        parts << QString::number(c);
    return parts.join(QLatin1Char(','));
}

bool parseCodes(const QString &text, QList<int> *codes)
{
    codes->clear();
    const QStringList parts = text.split(QLatin1Char(','), Qt::SkipEmptyParts);
    for (const QString &part : parts) {
        bool ok = false;
        const int code = part.trimmed().toInt(&ok);
        if (!ok)
            return false;
        codes->append(code);
    }
    std::sort(codes->begin(), codes->end());
    return true;
}

int listCameras(const site_store::CSiteStore &store)
{
    const QList<site_store::CameraRecord> cameras = store.cameras();
    for (const site_store::CameraRecord &c : cameras) {
        out() << c.id << '\t' << c.name << '\t' << c.driverKind << ':' << c.model << '\t'
              << "abilities=" << joinCodes(c.abilities) << (c.cascade ? "\tcascaded" : "")
              << (c.fishEye ? "\tfish-eye" : "") << '\n';
    }
    return 0;
}

int listUsers(const site_store::CSiteStore &store)
{
    const QString current = store.currentUserName();
    const QList<site_store::UserRecord> users = store.users();
    for (const site_store::UserRecord &u : users)
        out() << u.name << '\t' << "level=" << u.ptzLevel << (u.name == current ? "\tcurrent" : "") << '\n';
    return 0;
}

// The tool's options, one object so that each command reads what it needs.
struct Options
{
    const QCommandLineOption siteOpt{QStringLiteral("site"), QStringLiteral("Store file."), QStringLiteral("FILE")};
    const QCommandLineOption idOpt{QStringLiteral("id"), QStringLiteral("Camera identifier."), QStringLiteral("ID")};
    const QCommandLineOption nameOpt{QStringLiteral("name"), QStringLiteral("Camera name."), QStringLiteral("NAME")};
    const QCommandLineOption kindOpt{QStringLiteral("kind"), QStringLiteral("Driver kind (default simulated)."),
                                     QStringLiteral("KIND"), QStringLiteral("simulated")};
    const QCommandLineOption modelOpt{QStringLiteral("model"), QStringLiteral("Driver model, e.g. speed-dome."),
                                      QStringLiteral("MODEL")};
    const QCommandLineOption addressOpt{QStringLiteral("address"), QStringLiteral("Device address."),
                                        QStringLiteral("ADDR")};
    const QCommandLineOption abilitiesOpt{QStringLiteral("abilities"),
                                          QStringLiteral("Ability codes, comma separated (1,6,26,33,35,46,48,49,50)."),
                                          QStringLiteral("CODES")};
    const QCommandLineOption cascadeOpt{QStringLiteral("cascade"), QStringLiteral("The camera is cascaded.")};
    const QCommandLineOption fishEyeOpt{QStringLiteral("fisheye"), QStringLiteral("The camera is a fish-eye.")};
    const QCommandLineOption keyOpt{QStringLiteral("key"), QStringLiteral("Switch name."), QStringLiteral("KEY")};
    const QCommandLineOption valueOpt{QStringLiteral("value"), QStringLiteral("Switch value."),
                                      QStringLiteral("VALUE")};
    const QCommandLineOption userOpt{QStringLiteral("user"), QStringLiteral("User name on the camera."),
                                     QStringLiteral("USER")};
    const QCommandLineOption passwordOpt{QStringLiteral("password"), QStringLiteral("Password on the camera."),
                                         QStringLiteral("PASSWORD")};
    const QCommandLineOption timeoutOpt{QStringLiteral("timeout"),
                                        QStringLiteral("How long to wait for cameras (discover, add-camera)."),
                                        QStringLiteral("MS"), QStringLiteral("5000")};
    const QCommandLineOption probeOpt{
        QStringLiteral("probe"),
        QStringLiteral("discover: probe this address instead of the local multicast group (cameras beyond a router)."),
        QStringLiteral("HOST:PORT")};
};

int discover(const QString &target, int timeoutMs)
{
    QString error;
    const QStringList found = onvifsetup::Discover(target, timeoutMs, &error);
    if (!error.isEmpty()) {
        err() << error << '\n';
        return 1;
    }
    for (const QString &line : found)
        out() << line << '\n';
    if (found.isEmpty())
        err() << "No ONVIF device answered within " << timeoutMs << " ms.\n";
    return 0;
}

int addCamera(const QCommandLineParser &parser, const Options &o, site_store::CSiteStore &store, const QString &path,
              int timeoutMs)
{
    const bool onvif = parser.value(o.kindOpt) == QLatin1String("onvif");
    if (!parser.isSet(o.idOpt) || (!parser.isSet(o.modelOpt) && !onvif) || (onvif && !parser.isSet(o.addressOpt))) {
        err() << "add-camera needs --id and --model (an ONVIF camera: --id and --address).\n";
        return 2;
    }
    site_store::CameraRecord camera;
    camera.id = parser.value(o.idOpt);
    camera.name = parser.isSet(o.nameOpt) ? parser.value(o.nameOpt) : camera.id;
    camera.driverKind = parser.value(o.kindOpt);
    camera.model = parser.isSet(o.modelOpt) ? parser.value(o.modelOpt) : QStringLiteral("generic");
    camera.driverAddress = parser.value(o.addressOpt);
    camera.cascade = parser.isSet(o.cascadeOpt);
    camera.fishEye = parser.isSet(o.fishEyeOpt);
    if (!ptz_devices::CDriverFactory::kinds().contains(camera.driverKind)) {
        err() << "Unknown driver kind '" << camera.driverKind
              << "'; known: " << ptz_devices::CDriverFactory::kinds().join(QStringLiteral(", ")) << ".\n";
        return 2;
    }
    if (!ptz_devices::CDriverFactory::models(camera.driverKind).contains(camera.model)) {
        err() << "Unknown model '" << camera.model
              << "'; known: " << ptz_devices::CDriverFactory::models(camera.driverKind).join(QStringLiteral(", "))
              << ".\n";
        return 2;
    }
    if (!parseCodes(parser.value(o.abilitiesOpt), &camera.abilities)) {
        err() << "--abilities expects numbers separated by commas, e.g. 1,48,49,50.\n";
        return 2;
    }
    if (onvif) {
        // What the camera reports, never what was typed; the password is not echoed.
        QString error;
        if (!onvifsetup::CheckCamera(camera.driverAddress, parser.value(o.userOpt), parser.value(o.passwordOpt),
                                     timeoutMs, &camera.abilities, &error)) {
            err() << "The camera at " << camera.driverAddress << " cannot be added: " << error << ".\n";
            return 1;
        }
        camera.driverAddress =
            onvifsetup::StoredAddress(camera.driverAddress, parser.value(o.userOpt), parser.value(o.passwordOpt));
        onvifsetup::RestrictToOwner(path);
    }
    if (!store.upsertCamera(camera)) {
        err() << store.lastError() << '\n';
        return 1;
    }
    out() << "Camera " << camera.id << " saved in " << path << " (abilities " << joinCodes(camera.abilities) << ").\n";
    if (onvif)
        onvifsetup::RestrictToOwner(path);
    return 0;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("ptz-workbench"));
    // The store logs every open; a shell tool only wants its answers.
    QLoggingCategory::setFilterRules(QStringLiteral("ZephClientInfo.info=false"));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Edits the site store of the PTZ workbench.\n"
        "Commands: cameras | users | add-camera | remove-camera | set-switch | discover\n"
        "An ONVIF camera: add-camera --kind onvif --id ID --address http://HOST:PORT/onvif/device_service\n"
        "  --user U --password P (the camera is asked for its abilities first)."));
    parser.addHelpOption();
    parser.addPositionalArgument(QStringLiteral("command"), QStringLiteral("What to do."));
    const Options o;
    parser.addOptions({o.siteOpt, o.idOpt, o.nameOpt, o.kindOpt, o.modelOpt, o.addressOpt, o.abilitiesOpt, o.cascadeOpt,
                       o.fishEyeOpt, o.keyOpt, o.valueOpt, o.userOpt, o.passwordOpt, o.timeoutOpt, o.probeOpt});
    parser.process(app);

    const QStringList args = parser.positionalArguments();
    if (args.size() != 1) {
        err() << "Expected one command: cameras, users, add-camera, remove-camera, set-switch or discover.\n";
        return 2;
    }
    bool timeoutOk = false;
    const int timeoutMs = parser.value(o.timeoutOpt).toInt(&timeoutOk);
    if (!timeoutOk || timeoutMs <= 0) {
        err() << "--timeout expects a number of milliseconds.\n";
        return 2;
    }
    if (args.first() == QLatin1String("discover"))
        return discover(parser.value(o.probeOpt), timeoutMs);
    const QString path = parser.isSet(o.siteOpt) ? parser.value(o.siteOpt) : site_store::CSiteStore::ResolvePath({});
    // A store that will hold a camera password is owner-only from its first byte.
    if (args.first() == QLatin1String("add-camera") && parser.value(o.kindOpt) == QLatin1String("onvif"))
        onvifsetup::CreateOwnerOnly(path);
    std::unique_ptr<site_store::CSiteStore> store = site_store::CSiteStore::Open(path);
    if (store->isFallback()) {
        err() << store->openError() << '\n';
        return 1;
    }

    const QString command = args.first();
    if (command == QLatin1String("cameras"))
        return listCameras(*store);
    if (command == QLatin1String("users"))
        return listUsers(*store);
    if (command == QLatin1String("add-camera"))
        return addCamera(parser, o, *store, path, timeoutMs);
    if (command == QLatin1String("remove-camera")) {
        if (!parser.isSet(o.idOpt) || !store->removeCamera(parser.value(o.idOpt))) {
            err() << (parser.isSet(o.idOpt) ? store->lastError() : QStringLiteral("remove-camera needs --id.")) << '\n';
            return 1;
        }
        return 0;
    }
    if (command == QLatin1String("set-switch")) {
        if (!parser.isSet(o.keyOpt) || !parser.isSet(o.valueOpt)
            || !store->setSetting(parser.value(o.keyOpt), parser.value(o.valueOpt))) {
            err() << (parser.isSet(o.keyOpt) ? store->lastError()
                                             : QStringLiteral("set-switch needs --key and --value."))
                  << '\n';
            return 1;
        }
        return 0;
    }
    err() << "Unknown command '" << command << "'.\n";
    return 2;
}
