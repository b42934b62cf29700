#include "site_store/csitestore.h"
#include "site_store/demosite.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <functional>

#include <signal.h>

using site_store::CSiteStore;
using site_store::LockRecord;

// Two clients on one site file see each other's writes on their next read, although each answers
// repeated reads from memory; a lock left by a client that died lapses at its time.
class TestSiteStoreSharing : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void otherConnectionsWritesAreRead_data();
    void otherConnectionsWritesAreRead();
    void lockOfDeadProcessLapsesAtItsTime();

private:
    std::unique_ptr<QTemporaryDir> m_dir;
    QString m_path;
};

using Write = std::function<bool(CSiteStore &)>;
using Read = std::function<QString(const CSiteStore &)>;
Q_DECLARE_METATYPE(Write)
Q_DECLARE_METATYPE(Read)

namespace {

const QString kCamera = QString::fromLatin1(site_store::demo::kSpeedDome);
const QString kJunior = QString::fromLatin1(site_store::demo::kJunior);

} // namespace

void TestSiteStoreSharing::init()
{
    m_dir.reset(new QTemporaryDir);
    QVERIFY(m_dir->isValid());
    m_path = m_dir->filePath(QStringLiteral("site.sqlite"));
}

void TestSiteStoreSharing::otherConnectionsWritesAreRead_data()
{
    QTest::addColumn<Write>("write");
    QTest::addColumn<Read>("read");

    const QDateTime later = QDateTime::currentDateTimeUtc().addSecs(300);
    QTest::newRow("lock taken") << Write([later](CSiteStore &s) {
        return s.setLock({kCamera, QStringLiteral("senior"), 80, later, QStringLiteral("desk 2")});
    }) << Read([](const CSiteStore &s) {
        const auto lock = s.lock(kCamera);
        return lock ? lock->holder + QLatin1Char('/') + lock->holderDetail : QString();
    });
    QTest::newRow("switch") << Write([](CSiteStore &s) {
        return s.setBoolSetting(CSiteStore::kIsSupportPTZLock, false);
    }) << Read([](const CSiteStore &s) { return QString::number(s.boolSetting(CSiteStore::kIsSupportPTZLock, true)); });
    QTest::newRow("camera renamed") << Write([](CSiteStore &s) {
        auto camera = *s.camera(kCamera);
        camera.name = QStringLiteral("Renamed");
        return s.upsertCamera(camera);
    }) << Read([](const CSiteStore &s) { return s.camera(kCamera)->name; });
    QTest::newRow("user level") << Write([](CSiteStore &s) { return s.upsertUser({kJunior, 99}); })
                                << Read([](const CSiteStore &s) { return QString::number(s.user(kJunior)->ptzLevel); });
    QTest::newRow("permission revoked") << Write([](CSiteStore &s) {
        return s.revokePermission(kJunior, CSiteStore::kAllCameras, CSiteStore::kPermPtzControl);
    }) << Read([](const CSiteStore &s) {
        return QString::number(s.hasPermission(kJunior, kCamera, CSiteStore::kPermPtzControl));
    });
}

void TestSiteStoreSharing::otherConnectionsWritesAreRead()
{
    QFETCH(Write, write);
    QFETCH(Read, read);
    auto writer = CSiteStore::Open(m_path);
    auto reader = CSiteStore::Open(m_path);
    QVERIFY2(!writer->isFallback() && !reader->isFallback(), qPrintable(writer->openError() + reader->openError()));

    const QString before = read(*reader);
    QCOMPARE(read(*reader), before); // now answered from the reader's memory
    QVERIFY2(write(*writer), qPrintable(writer->lastError()));
    const QString expected = read(*writer);
    QVERIFY(expected != before);
    QCOMPARE(read(*reader), expected);
}

void TestSiteStoreSharing::lockOfDeadProcessLapsesAtItsTime()
{
    auto reader = CSiteStore::Open(m_path);
    QVERIFY(!reader->lock(kCamera));

    QProcess holder;
    QByteArray out;
    connect(&holder, &QProcess::readyReadStandardOutput, this, [&] { out += holder.readAllStandardOutput(); });
    holder.start(QStringLiteral(SITE_STORE_WRITER), {QStringLiteral("--lock"), m_path, kCamera, QStringLiteral("60")});
    QVERIFY2(holder.waitForStarted(), qPrintable(holder.errorString()));
    QTRY_VERIFY2_WITH_TIMEOUT(out.contains('\n'), holder.readAllStandardError().constData(), 30000);
    QVERIFY2(out.startsWith("locked "), out.constData());
    const QDateTime expiry = QDateTime::fromMSecsSinceEpoch(out.mid(7).trimmed().toLongLong(), Qt::UTC);

    auto lock = reader->lock(kCamera);
    QVERIFY(lock);
    QCOMPARE(lock->holder, QStringLiteral("writer"));
    QCOMPARE(lock->expiresAt, expiry);

    ::kill(pid_t(holder.processId()), SIGKILL);
    QVERIFY(holder.waitForFinished(10000));
    // Nobody releases it: it holds until its time, then it is gone.
    QVERIFY(reader->lock(kCamera, expiry.addMSecs(-1)));
    QVERIFY(!reader->lock(kCamera, expiry));
    auto later = CSiteStore::Open(m_path);
    QVERIFY(later->lock(kCamera, expiry.addMSecs(-1)));
    QVERIFY(!later->lock(kCamera, expiry.addSecs(1)));
}

QTEST_GUILESS_MAIN(TestSiteStoreSharing)
#include "tst_csitestore_sharing.moc"
