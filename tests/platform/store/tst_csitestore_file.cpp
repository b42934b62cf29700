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

using site_store::CSiteStore;
using site_store::VirtualPresetRecord;

// A store never acknowledges a write that did not reach its file: a file removed or replaced while
// the store is open stops all writes, a read-only file is only read, another program's is not touched.
class TestSiteStoreFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void fileChangedUnderOpenStore_data();
    void fileChangedUnderOpenStore();
    void fileNotOursToWrite_data();
    void fileNotOursToWrite();
    void storeFromBeforeTheStampIsAdopted();

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

    std::unique_ptr<QTemporaryDir> m_dir;
    QString m_path;
};

void TestSiteStoreFile::init()
{
    m_dir.reset(new QTemporaryDir);
    QVERIFY(m_dir->isValid());
    m_path = m_dir->filePath(QStringLiteral("site.sqlite"));
}

void TestSiteStoreFile::fileChangedUnderOpenStore_data()
{
    QTest::addColumn<QString>("change");
    QTest::newRow("file deleted") << "delete";
    QTest::newRow("overwritten in place with garbage") << "garbage";
    QTest::newRow("garbage moved over it") << "move-garbage";
    QTest::newRow("another store copied over it") << "other-store";
}

void TestSiteStoreFile::fileChangedUnderOpenStore()
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

void TestSiteStoreFile::fileNotOursToWrite_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<bool>("readOnly"); // opened read-only; else refused with the in-memory fallback
    QTest::addColumn<QString>("reason");
    QTest::newRow("store file mode 0444") << "store-0444" << true << "read-only";
    QTest::newRow("another program's database") << "foreign" << false << "another program";
    QTest::newRow("another program's database, mode 0444") << "foreign-0444" << false << "another program";
    QTest::newRow("empty file, mode 0444") << "empty-0444" << false << "read-only";
}

void TestSiteStoreFile::fileNotOursToWrite()
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

void TestSiteStoreFile::storeFromBeforeTheStampIsAdopted()
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

QTEST_GUILESS_MAIN(TestSiteStoreFile)
#include "tst_csitestore_file.moc"
