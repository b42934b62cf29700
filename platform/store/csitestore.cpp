#include "site_store/csitestore.h"

#include "csitestore_p.h"

#include "tarn/base/logging.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QMutex>
#include <QSqlError>
#include <QStandardPaths>

#include <atomic>

namespace site_store {

const QString CSiteStore::kAllCameras = QStringLiteral("*");
const char *const CSiteStore::kPathEnvVar = "PTZ_SITE_STORE";
const QString CSiteStore::kIsSupportPTZLock = QStringLiteral("IsSupportPTZLock");
const QString CSiteStore::kIsSupportVirtualPTZ = QStringLiteral("IsSupportVirtualPTZ");
const QString CSiteStore::kIsSupportUpdatePTZInfo = QStringLiteral("IsSupportUpdatePTZInfo");
const QString CSiteStore::kResumeCruiseAfterInterrupt = QStringLiteral("ResumeCruiseAfterInterrupt");
const QString CSiteStore::kShowPreSetTabWidget = QStringLiteral("ShowPreSetTabWidget");
const QString CSiteStore::kShowExtraButton = QStringLiteral("ShowExtraButton");
const QString CSiteStore::kShowUserLevel = QStringLiteral("ShowUserLevel");
const QString CSiteStore::kGetTrackNum = QStringLiteral("GetTrackNum");
const QString CSiteStore::kProductType = QStringLiteral("ProductType");
const QString CSiteStore::kCurrentUser = QStringLiteral("CurrentUser");

namespace {

// Process-wide current store.
QMutex g_currentMutex;
std::unique_ptr<CSiteStore> g_current;
std::atomic<quint64> g_generation{1};
std::atomic<int> g_connectionCounter{0};

// The SQL driver must not outlive the application object: drop the current
// store when the application ends rather than at static destruction.
void dropCurrentAtExit()
{
    std::unique_ptr<CSiteStore> old;
    QMutexLocker lock(&g_currentMutex);
    old = std::move(g_current);
    ++g_generation;
}

void registerExitCleanup()
{
    static bool registered = false;
    if (!registered && QCoreApplication::instance()) {
        registered = true;
        qAddPostRoutine(dropCurrentAtExit);
    }
}

} // namespace

// ---------------------------------------------------------------- lifetime

CSiteStore::CSiteStore(QObject *parent)
    : QObject(parent)
    , d(new Private)
{
    d->connection = QStringLiteral("site_store_%1").arg(++g_connectionCounter);
    qRegisterMetaType<site_store::CSiteStore::Table>("site_store::CSiteStore::Table");
}

CSiteStore::~CSiteStore()
{
    d->dataVersionQuery.reset();
    {
        QSqlDatabase db = d->db();
        if (db.isOpen())
            db.close();
    }
    QSqlDatabase::removeDatabase(d->connection);
}

namespace {

// A file marked read-only for everybody counts as read-only even for a process allowed to write it
// anyway (root): somebody protected it on purpose.
bool isReadOnlyFile(const QFileInfo &info)
{
    const QFile::Permissions writable = QFile::WriteOwner | QFile::WriteGroup | QFile::WriteOther;
    return info.exists() && (!info.isWritable() || !(info.permissions() & writable));
}

QString pathProblem(const QString &path)
{
    if (path.isEmpty())
        return CSiteStore::tr("no file name was given");
    const QFileInfo info(path);
    if (info.exists() && !info.isFile())
        return CSiteStore::tr("%1 is not a file").arg(QDir::toNativeSeparators(path));
    if (!QDir().mkpath(info.absolutePath()))
        return CSiteStore::tr("the folder %1 cannot be created").arg(QDir::toNativeSeparators(info.absolutePath()));
    return {};
}

} // namespace

std::unique_ptr<CSiteStore> CSiteStore::OpenInMemory()
{
    std::unique_ptr<CSiteStore> store(new CSiteStore);
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), store->d->connection);
    db.setDatabaseName(QStringLiteral(":memory:"));
    bool isNew = true;
    QString error;
    if (!prepareDatabase(db, OpenMode::Memory, &isNew, &error)) {
        // Nothing sensible is left to fall back to; report and go on empty.
        store->d->openError = error;
        ZEPH_LOG_WARN("in-memory site store failed: %s", qUtf8Printable(error));
        return store;
    }
    store->seedDemoSite();
    return store;
}

std::unique_ptr<CSiteStore> CSiteStore::Open(const QString &path)
{
    QString error = pathProblem(path);
    if (error.isEmpty()) {
        const OpenMode mode = isReadOnlyFile(QFileInfo(path)) ? OpenMode::ReadOnly : OpenMode::ReadWrite;
        std::unique_ptr<CSiteStore> store(new CSiteStore);
        Private &d = *store->d;
        d.path = path;
        bool isNew = false;
        {
            QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), d.connection);
            db.setDatabaseName(path);
            if (mode == OpenMode::ReadOnly)
                db.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY"));
            if (!prepareDatabase(db, mode, &isNew, &error))
                db.close();
        }
        if (error.isEmpty()) {
            d.identity = FileIdentity::Of(path);
            d.headerStamped = fileHeaderIsStore(path, false);
            if (mode == OpenMode::ReadOnly) {
                d.refusal = tr("The site store %1 is read-only: the client shows its site but cannot save changes.")
                                .arg(QDir::toNativeSeparators(path));
                d.openError = d.refusal;
                ZEPH_LOG_WARN("%s", qUtf8Printable(d.openError));
            } else if (isNew && !store->seedDemoSite()) {
                ZEPH_LOG_WARN("seeding the site store %s failed: %s", qUtf8Printable(path),
                              qUtf8Printable(store->lastError()));
            }
            ZEPH_LOG_INFO("site store %s opened%s", qUtf8Printable(path), isNew ? " (new, demo site)" : "");
            return store;
        }
    }

    std::unique_ptr<CSiteStore> fallback = OpenInMemory();
    fallback->d->fallback = true;
    fallback->d->openError =
        tr("The site store %1 cannot be used (%2). The client runs on a temporary demo site that is not saved.")
            .arg(QDir::toNativeSeparators(path), error);
    ZEPH_LOG_WARN("%s", qUtf8Printable(fallback->d->openError));
    return fallback;
}

QString CSiteStore::DefaultPath()
{
    QString dir = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    if (dir.isEmpty())
        dir = QDir::homePath() + QStringLiteral("/.ptz-site");
    return dir + QStringLiteral("/site.sqlite");
}

QString CSiteStore::ResolvePath(const QStringList &arguments)
{
    for (int i = 0; i < arguments.size(); ++i) {
        const QString &a = arguments.at(i);
        if (a == QLatin1String("--site") && i + 1 < arguments.size())
            return arguments.at(i + 1);
        if (a.startsWith(QLatin1String("--site=")))
            return a.mid(7);
    }
    const QString env = qEnvironmentVariable(kPathEnvVar);
    if (!env.isEmpty())
        return env;
    return DefaultPath();
}

CSiteStore *CSiteStore::Current()
{
    QMutexLocker lock(&g_currentMutex);
    if (!g_current) {
        const QStringList args = QCoreApplication::instance() ? QCoreApplication::arguments() : QStringList();
        g_current = Open(ResolvePath(args));
        ++g_generation;
        registerExitCleanup();
    }
    return g_current.get();
}

void CSiteStore::InstallCurrent(std::unique_ptr<CSiteStore> store)
{
    std::unique_ptr<CSiteStore> old;
    {
        QMutexLocker lock(&g_currentMutex);
        old = std::move(g_current);
        g_current = std::move(store);
        ++g_generation;
        registerExitCleanup();
    }
}

quint64 CSiteStore::CurrentGeneration()
{
    return g_generation.load();
}

QString CSiteStore::path() const
{
    return d->path;
}
bool CSiteStore::isFallback() const
{
    return d->fallback;
}
QString CSiteStore::openError() const
{
    return d->openError;
}
QString CSiteStore::lastError() const
{
    return d->lastError;
}
bool CSiteStore::isReadOnly() const
{
    return !d->refusal.isEmpty();
}
QString CSiteStore::writeRefusal() const
{
    return d->refusal;
}

} // namespace site_store
