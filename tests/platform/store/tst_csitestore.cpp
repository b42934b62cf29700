#include "site_store/csitestore.h"
#include "site_store/demosite.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTest>
#include <QtEndian>

#include <cstdio>

#include <functional>

using namespace site_store;

using Write = std::function<bool(CSiteStore &)>;
using Read = std::function<QString(const CSiteStore &)>;
Q_DECLARE_METATYPE(Write)
Q_DECLARE_METATYPE(Read)

class TestSiteStore : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_dir.reset(new QTemporaryDir);
        QVERIFY(m_dir->isValid());
        m_path = m_dir->filePath(QStringLiteral("site.sqlite"));
    }

    // A store never acknowledges a write that did not reach its file: a file removed or replaced while
    // the store is open stops all writes, a read-only file is only read, another program's is not touched.
    void fileChangedUnderOpenStore_data();
    void fileChangedUnderOpenStore();
    void fileNotOursToWrite_data();
    void fileNotOursToWrite();
    void storeFromBeforeTheStampIsAdopted();
    void reopenKeepsEveryTable()
    {
        const QString cam = QString::fromLatin1(demo::kSpeedDome);
        const QDateTime expiry = QDateTime::currentDateTimeUtc().addSecs(600);
        {
            auto store = openTemp();
            QVERIFY(store->upsertUser({QStringLiteral("eve"), 7}));
            QVERIFY(store->grantPermission(QStringLiteral("eve"), cam, 15));
            QVERIFY(store->setCurrentUser(QStringLiteral("eve")));
            QVERIFY(store->setBoolSetting(CSiteStore::kIsSupportPTZLock, false));
            QVERIFY(store->upsertVirtualPreset({cam, 12, QStringLiteral("Door"), 3, 10.5, -20, 4}));
            PatrolRecord patrol{
                cam, 3, 3, QStringLiteral("cruise3"), {{12, 0, 20, QStringLiteral("Door")}, {1, 0, 15, {}}}};
            QVERIFY(store->upsertPatrol(patrol));
            QVERIFY(store->setParkAction({cam, true, 60, 3, 3}));
            QVERIFY(store->setRecovery({cam, true, 45}));
            QVERIFY(store->setLock({cam, QStringLiteral("eve"), 7, expiry, QStringLiteral("desk-1")}));
            QVERIFY(store->setDeviceState(cam, QStringLiteral("presets"), R"({"a":1})"));
        }
        auto store = openTemp();
        QCOMPARE(store->user(QStringLiteral("eve"))->ptzLevel, 7);
        QVERIFY(store->hasPermission(QStringLiteral("eve"), cam, 15));
        QCOMPARE(store->currentUserName(), QStringLiteral("eve"));
        QCOMPARE(store->boolSetting(CSiteStore::kIsSupportPTZLock, true), false);
        QCOMPARE(store->virtualPreset(cam, 12)->pan, 10.5);
        QCOMPARE(store->patrol(cam, 3)->points.at(0), (PatrolPointRecord{12, 0, 20, QStringLiteral("Door")}));
        QCOMPARE(store->parkAction(cam).waitSeconds, 60);
        QCOMPARE(store->recovery(cam).waitSeconds, 45);
        QCOMPARE(store->lock(cam)->holderDetail, QStringLiteral("desk-1"));
        QCOMPARE(store->lock(cam)->expiresAt.toMSecsSinceEpoch(), expiry.toMSecsSinceEpoch());
        QCOMPARE(store->deviceState(cam, QStringLiteral("presets")), QByteArray(R"({"a":1})"));
    }
    void reopenDoesNotReseed()
    {
        {
            auto store = openTemp();
            QVERIFY(store->removeCamera(QString::fromLatin1(demo::kBoxZoom)));
            QVERIFY(store->removeUser(QString::fromLatin1(demo::kJunior)));
        }
        auto store = openTemp();
        QCOMPARE(store->cameras().size(), 4);
        QVERIFY(!store->camera(QString::fromLatin1(demo::kBoxZoom)));
        QVERIFY(!store->user(QString::fromLatin1(demo::kJunior)));
        QVERIFY(store->permissions(QString::fromLatin1(demo::kJunior)).isEmpty());
    }

    void unusableFileFallsBack_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::newRow("garbage bytes") << "garbage";
        QTest::newRow("path is a folder") << "folder";
        QTest::newRow("parent is a file") << "under-file";
    }
    void unusableFileFallsBack()
    {
        QFETCH(QString, kind);
        QString path = m_path;
        const QByteArray bytes = kind == QLatin1String("garbage") ? garbage() : QByteArray();
        if (!bytes.isEmpty()) {
            QVERIFY(writeFile(path, bytes));
        } else if (kind == QLatin1String("folder")) {
            QVERIFY(QDir().mkpath(path));
        } else {
            QVERIFY(writeFile(m_dir->filePath(QStringLiteral("plain")), QByteArray()));
            path = m_dir->filePath(QStringLiteral("plain/site.sqlite"));
        }

        auto store = CSiteStore::Open(path);
        QVERIFY(store->isFallback());
        QVERIFY(!store->openError().isEmpty());
        QVERIFY2(store->openError().contains(QDir::toNativeSeparators(path)), qPrintable(store->openError()));
        QVERIFY(store->path().isEmpty());
        // The fallback is a full seeded store that takes writes.
        QCOMPARE(store->cameras().size(), 5);
        QVERIFY(store->upsertVirtualPreset(preset(1)));
        QCOMPARE(store->virtualPresets(QString::fromLatin1(demo::kSpeedDome)).size(), 1);

        if (!bytes.isEmpty())
            QCOMPARE(readFile(path), bytes); // the unreadable file is left for inspection
    }

    void badInputIsRefused_data()
    {
        QTest::addColumn<Write>("write");
        const QString cam = QString::fromLatin1(demo::kSpeedDome);
        auto preset = [](const VirtualPresetRecord &p) {
            return Write([p](CSiteStore &s) { return s.upsertVirtualPreset(p); });
        };
        auto patrol = [](const PatrolRecord &p) { return Write([p](CSiteStore &s) { return s.upsertPatrol(p); }); };
        QTest::newRow("preset 0") << preset({cam, 0, QStringLiteral("x"), 3, 0, 0, 1});
        QTest::newRow("patrol 9") << patrol({cam, 9, 3, QStringLiteral("c"), {}});
        QTest::newRow("unknown current user")
            << Write([](CSiteStore &s) { return s.setCurrentUser(QStringLiteral("nobody")); });
        QTest::newRow("remove missing preset") << Write([cam](CSiteStore &s) { return s.removeVirtualPreset(cam, 5); });
        QTest::newRow("lock without holder") << Write([cam](CSiteStore &s) {
            return s.setLock({cam, QString(), 1, QDateTime::currentDateTimeUtc().addSecs(5), {}});
        });
    }
    void badInputIsRefused()
    {
        QFETCH(Write, write);
        auto store = openTemp();
        const QString cam = QString::fromLatin1(demo::kSpeedDome);
        QSignalSpy spy(store.get(), &CSiteStore::changed);
        QVERIFY(!write(*store));
        QVERIFY(!store->lastError().isEmpty());
        QCOMPARE(spy.count(), 0);
        QVERIFY(store->virtualPresets(cam).isEmpty());
        QVERIFY(store->patrols(cam).isEmpty());
        QCOMPARE(store->currentUserName(), QString::fromLatin1(demo::kOperator));
    }

    void permissionsPerCameraAndWildcard()
    {
        auto store = openTemp();
        const QString user = QStringLiteral("ann");
        const QString dome = QString::fromLatin1(demo::kSpeedDome);
        const QString box = QString::fromLatin1(demo::kBoxZoom);
        QVERIFY(store->upsertUser({user, 30}));
        QVERIFY(store->grantPermission(user, dome, 15));
        QVERIFY(!store->hasPermission(user, box, 15));

        QVERIFY(store->grantPermission(user, CSiteStore::kAllCameras, 796));
        QVERIFY(store->hasPermission(user, QStringLiteral("any-camera-at-all"), 796));
        QVERIFY(!store->hasPermission(user, box, 15));

        QVERIFY(store->revokePermission(user, dome, 15));
        QVERIFY(!store->hasPermission(user, dome, 15));
        QVERIFY(store->hasPermission(user, dome, 796));
    }
    void lockLapsesAtExpiry()
    {
        auto store = openTemp();
        const QString cam = QString::fromLatin1(demo::kSpeedDome);
        const QDateTime t0 = QDateTime(QDate(2026, 1, 1), QTime(12, 0), Qt::UTC);
        QVERIFY(store->setLock({cam, QStringLiteral("operator"), 50, t0.addSecs(10), {}}));

        QVERIFY(store->lock(cam, t0));
        QCOMPARE(store->lock(cam, t0)->remainingSeconds(t0), 10);
        QCOMPARE(store->lock(cam, t0.addMSecs(9500))->remainingSeconds(t0.addMSecs(9500)), 1);
        QVERIFY(!store->lock(cam, t0.addSecs(10)));

        QVERIFY(store->clearLock(cam));
        QVERIFY(!store->lock(cam, t0));
    }
    // Reads are answered from memory between writes: a write must be seen by the next read of the
    // store that wrote it and of another store on the same file (another client).
    void writesAreSeenByTheNextRead_data()
    {
        QTest::addColumn<Write>("write");
        QTest::addColumn<Read>("read");
        QTest::addColumn<QString>("expected");
        const QString cam = QString::fromLatin1(demo::kSpeedDome);
        const QString junior = QString::fromLatin1(demo::kJunior);
        const QDateTime later = QDateTime::currentDateTimeUtc().addSecs(300);
        const Read lock = [cam](const CSiteStore &s) {
            const auto lock = s.lock(cam);
            return lock ? lock->holder + QLatin1Char('/') + lock->holderDetail : QString();
        };
        QTest::newRow("lock taken") << Write([cam, later](CSiteStore &s) {
            return s.setLock({cam, QStringLiteral("senior"), 80, later, QStringLiteral("desk 2")});
        }) << lock << "senior/desk 2";
        QTest::newRow("lock cleared") << Write([cam, later, lock](CSiteStore &s) {
            return s.setLock({cam, QStringLiteral("senior"), 80, later, {}}) && lock(s) == "senior/"
                   && s.clearLock(cam);
        }) << lock << "";
        QTest::newRow("camera reseeded") << Write([cam](CSiteStore &s) {
            return s.removeCamera(cam) && !s.camera(cam) && s.seedDemoSite();
        }) << Read([cam](const CSiteStore &s) { return QString::number(s.camera(cam).has_value()); })
                                         << "1";
        QTest::newRow("permission revoked") << Write([junior](CSiteStore &s) {
            return s.revokePermission(junior, CSiteStore::kAllCameras, CSiteStore::kPermPtzControl);
        }) << Read([cam, junior](const CSiteStore &s) {
            return QString::number(s.hasPermission(junior, cam, CSiteStore::kPermPtzControl));
        }) << "0";
    }
    void writesAreSeenByTheNextRead()
    {
        QFETCH(Write, write);
        QFETCH(Read, read);
        QFETCH(QString, expected);
        auto writer = openTemp();
        auto reader = CSiteStore::Open(m_path);
        QVERIFY(!writer->isFallback() && !reader->isFallback());
        const QString before = read(*reader);
        QCOMPARE(read(*writer), before);
        QCOMPARE(read(*reader), before); // now answered from memory
        QVERIFY2(write(*writer), qPrintable(writer->lastError()));
        QCOMPARE(read(*writer), expected);
        QCOMPARE(read(*reader), expected);
    }
    void changeSignal()
    {
        auto store = openTemp();
        const QString cam = QString::fromLatin1(demo::kPtzNoPattern);
        QSignalSpy spy(store.get(), &CSiteStore::changed);
        QVERIFY(store->upsertVirtualPreset({cam, 4, QStringLiteral("p"), 3, 0, 0, 1}));
        QCOMPARE(spy.count(), 1);
        QCOMPARE(spy.at(0).at(0).value<CSiteStore::Table>(), CSiteStore::Table::VirtualPresets);
        QCOMPARE(spy.at(0).at(1).toString(), cam);

        QVERIFY(store->setBoolSetting(CSiteStore::kShowUserLevel, false));
        QVERIFY(store->seedDemoSite());
        QCOMPARE(spy.count(), 3); // one notice for the whole batch
        QCOMPARE(spy.at(2).at(0).value<CSiteStore::Table>(), CSiteStore::Table::All);
        QVERIFY(store->boolSetting(CSiteStore::kShowUserLevel));
        // Reseeding keeps what is not part of the demo site.
        QVERIFY(store->virtualPreset(cam, 4));
    }
    void currentStoreAndPath_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("env");
        QTest::addColumn<QString>("expected");
        QTest::newRow("environment") << QStringList{"app", "--user", "x"} << "/tmp/env.sqlite"
                                     << "/tmp/env.sqlite";
        QTest::newRow("default") << QStringList{"app"} << "" << CSiteStore::DefaultPath();
    }
    void currentStoreAndPath()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, env);
        QFETCH(QString, expected);
        const QByteArray old = qgetenv(CSiteStore::kPathEnvVar);
        if (env.isEmpty())
            qunsetenv(CSiteStore::kPathEnvVar);
        else
            qputenv(CSiteStore::kPathEnvVar, env.toLocal8Bit());
        QCOMPARE(CSiteStore::ResolvePath(arguments), expected);
        qputenv(CSiteStore::kPathEnvVar, old);

        const quint64 generation = CSiteStore::CurrentGeneration();
        auto store = openTemp();
        CSiteStore *raw = store.get();
        CSiteStore::InstallCurrent(std::move(store));
        QCOMPARE(CSiteStore::Current(), raw);
        QVERIFY(CSiteStore::CurrentGeneration() > generation);
        CSiteStore::InstallCurrent(nullptr);
    }

private:
    static VirtualPresetRecord preset(int number)
    {
        const QString camera = QString::fromLatin1(site_store::demo::kSpeedDome);
        return {camera, number, QStringLiteral("p%1").arg(number), 3, 0, 0, 1};
    }
    static QByteArray garbage()
    {
        QByteArray bytes;
        for (int i = 0; i < 8192; ++i)
            bytes.append(char((i * 131 + 7) % 251));
        return bytes;
    }
    static bool writeFile(const QString &path, const QByteArray &bytes)
    {
        QFile f(path);
        return f.open(QIODevice::WriteOnly | QIODevice::Truncate) && f.write(bytes) == bytes.size();
    }
    static QByteArray readFile(const QString &path)
    {
        QFile f(path);
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }
    // Another program's database: a table of its own, optionally its own application id.
    static bool writeForeignDatabase(const QString &path, int applicationId)
    {
        bool ok = false;
        {
            QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("foreign"));
            db.setDatabaseName(path);
            QSqlQuery q(db);
            ok = db.open() && q.exec(QStringLiteral("CREATE TABLE songs (title TEXT)"))
                 && q.exec(QStringLiteral("INSERT INTO songs VALUES ('one')"))
                 && q.exec(QStringLiteral("PRAGMA application_id = %1").arg(applicationId));
            db.close();
        }
        QSqlDatabase::removeDatabase(QStringLiteral("foreign"));
        return ok;
    }

    std::unique_ptr<CSiteStore> openTemp()
    {
        auto store = CSiteStore::Open(m_path);
        if (store->isFallback())
            qWarning("%s", qPrintable(store->openError()));
        return store;
    }
    QString m_path;
    std::unique_ptr<QTemporaryDir> m_dir;
};

void TestSiteStore::fileChangedUnderOpenStore_data()
{
    QTest::addColumn<QString>("change");
    QTest::newRow("file deleted") << "delete";
    QTest::newRow("overwritten in place with garbage") << "garbage";
    QTest::newRow("garbage moved over it") << "move-garbage";
    QTest::newRow("another store copied over it") << "other-store";
}

void TestSiteStore::fileChangedUnderOpenStore()
{
    QFETCH(QString, change);
    auto store = CSiteStore::Open(m_path);
    QVERIFY2(!store->isFallback() && !store->isReadOnly(), qPrintable(store->openError()));
    QVERIFY2(store->upsertVirtualPreset(preset(1)), qPrintable(store->lastError()));

    const QString other = m_dir->filePath(QStringLiteral("other.sqlite"));
    if (change == QLatin1String("delete")) {
        QVERIFY(QFile::remove(m_path));
    } else if (change == QLatin1String("garbage")) {
        QVERIFY(writeFile(m_path, garbage()));
    } else if (change == QLatin1String("move-garbage")) {
        QVERIFY(writeFile(other, garbage()));
        QCOMPARE(std::rename(QFile::encodeName(other).constData(), QFile::encodeName(m_path).constData()), 0);
    } else {
        CSiteStore::Open(other).reset();
        QVERIFY(QFile::remove(m_path));
        QVERIFY(QFile::copy(other, m_path));
    }

    QSignalSpy lost(store.get(), &CSiteStore::fileLost);
    QSignalSpy changed(store.get(), &CSiteStore::changed);
    QVERIFY(!store->upsertVirtualPreset(preset(2)));
    QVERIFY2(store->lastError().contains(QDir::toNativeSeparators(m_path)), qPrintable(store->lastError()));
    QCOMPARE(lost.count(), 1);
    QCOMPARE(lost.at(0).at(0).toString(), store->lastError());
    QVERIFY(store->isReadOnly());
    // Every later write is refused as well, announced once.
    QVERIFY(!store->setBoolSetting(CSiteStore::kShowUserLevel, false));
    QVERIFY(!store->setLock({QString::fromLatin1(site_store::demo::kSpeedDome), QStringLiteral("operator"), 50,
                             QDateTime::currentDateTimeUtc().addSecs(60), QString()}));
    QCOMPARE(lost.count(), 1);
    QCOMPARE(changed.count(), 0);
    // Reads still answer what the store held.
    QCOMPARE(store->virtualPresets(QString::fromLatin1(site_store::demo::kSpeedDome)).size(), 1);
    store.reset();

    // Whatever the next start finds, the refused writes are not in it.
    auto reopened = CSiteStore::Open(m_path);
    QVERIFY(!reopened->virtualPreset(QString::fromLatin1(site_store::demo::kSpeedDome), 2));
    QVERIFY(reopened->boolSetting(CSiteStore::kShowUserLevel));
    QVERIFY(!reopened->lock(QString::fromLatin1(site_store::demo::kSpeedDome)));
}

void TestSiteStore::fileNotOursToWrite_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<bool>("readOnly"); // opened read-only; else refused with the in-memory fallback
    QTest::addColumn<QString>("reason");
    QTest::newRow("store file mode 0444") << "store-0444" << true << "read-only";
    QTest::newRow("another program's database") << "foreign" << false << "another program";
    QTest::newRow("another program's database, mode 0444") << "foreign-0444" << false << "another program";
    QTest::newRow("empty file, mode 0444") << "empty-0444" << false << "read-only";
}

void TestSiteStore::fileNotOursToWrite()
{
    QFETCH(QString, kind);
    QFETCH(bool, readOnly);
    QFETCH(QString, reason);
    if (kind.startsWith(QLatin1String("store"))) {
        auto writer = CSiteStore::Open(m_path);
        QVERIFY(writer->upsertVirtualPreset(preset(7)));
    } else if (kind.startsWith(QLatin1String("foreign"))) {
        QVERIFY(writeForeignDatabase(m_path, kind == QLatin1String("foreign-0444") ? 0x12345678 : 0));
    } else {
        QVERIFY(writeFile(m_path, QByteArray()));
    }
    if (kind.endsWith(QLatin1String("0444")))
        QVERIFY(QFile::setPermissions(m_path, QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther));
    const QByteArray before = readFile(m_path);

    auto store = CSiteStore::Open(m_path);
    QCOMPARE(store->isFallback(), !readOnly);
    QVERIFY2(store->openError().contains(reason), qPrintable(store->openError()));
    QVERIFY2(store->openError().contains(QDir::toNativeSeparators(m_path)), qPrintable(store->openError()));
    if (readOnly) {
        QVERIFY(store->isReadOnly());
        QCOMPARE(store->cameras().size(), 5);
        QVERIFY(store->virtualPreset(QString::fromLatin1(site_store::demo::kSpeedDome), 7));
        QSignalSpy changed(store.get(), &CSiteStore::changed);
        QVERIFY(!store->upsertVirtualPreset(preset(8)));
        QCOMPARE(store->lastError(), store->writeRefusal());
        QVERIFY(!store->writeRefusal().isEmpty());
        QCOMPARE(changed.count(), 0);
    }
    store.reset();
    QCOMPARE(readFile(m_path), before);
}

void TestSiteStore::storeFromBeforeTheStampIsAdopted()
{
    CSiteStore::Open(m_path).reset();
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("unstamp"));
        db.setDatabaseName(m_path);
        QVERIFY(db.open());
        QSqlQuery q(db);
        QVERIFY(q.exec(QStringLiteral("PRAGMA application_id = 0")));
        QVERIFY(q.exec(QStringLiteral("PRAGMA wal_checkpoint(TRUNCATE)")));
        db.close();
    }
    QSqlDatabase::removeDatabase(QStringLiteral("unstamp"));
    QCOMPARE(qFromBigEndian<qint32>(readFile(m_path).constData() + 68), 0);

    auto store = CSiteStore::Open(m_path);
    QVERIFY2(!store->isFallback() && !store->isReadOnly(), qPrintable(store->openError()));
    QVERIFY(store->upsertVirtualPreset(preset(3)));
    QVERIFY(qFromBigEndian<qint32>(readFile(m_path).constData() + 68) != 0);
}

QTEST_GUILESS_MAIN(TestSiteStore)
#include "tst_csitestore.moc"
