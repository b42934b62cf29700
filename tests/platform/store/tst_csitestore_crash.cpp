#include "site_store/csitestore.h"
#include "site_store/demosite.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <signal.h>

using site_store::CSiteStore;

// Clients that die: a writer killed with SIGKILL in the middle of its work leaves a store that
// opens cleanly and holds every committed row, intact, and nothing else; a lock left behind lapses
// at its time. Regression: the current store outlived the application object and the SQL driver
// crashed at static destruction.

class TestSiteStoreCrash : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void killedWriterLeavesCommittedRows()
    {
        const int killAfter = 400; // hundreds of commits in
        QTemporaryDir dir;
        QVERIFY(dir.isValid());
        const QString path = dir.filePath(QStringLiteral("site.sqlite"));

        QProcess writer;
        QByteArray out;
        int lastReported = 0;
        auto readReports = [&] {
            out += writer.readAllStandardOutput();
            int end;
            while ((end = out.indexOf('\n')) >= 0) {
                lastReported = out.left(end).toInt();
                out.remove(0, end + 1);
            }
        };
        connect(&writer, &QProcess::readyReadStandardOutput, this, readReports);
        writer.start(QStringLiteral(SITE_STORE_WRITER), {path});
        QVERIFY2(writer.waitForStarted(), qPrintable(writer.errorString()));
        QTRY_VERIFY2_WITH_TIMEOUT(lastReported >= killAfter, writer.readAllStandardError().constData(), 60000);

        ::kill(pid_t(writer.processId()), SIGKILL);
        QVERIFY(writer.waitForFinished(10000));
        QCOMPARE(writer.exitStatus(), QProcess::CrashExit);
        readReports();

        auto store = CSiteStore::Open(path);
        QVERIFY2(!store->isFallback(), qPrintable(store->openError()));
        const QStringList keys = store->deviceStateKeys(QStringLiteral("crash"));
        // The last commit may have landed just before the kill, unreported.
        QVERIFY2(keys.size() == lastReported || keys.size() == lastReported + 1,
                 qPrintable(QStringLiteral("%1 rows, %2 reported").arg(keys.size()).arg(lastReported)));
        for (int i = 1; i <= keys.size(); ++i) {
            const QString key = QStringLiteral("row-%1").arg(i, 8, 10, QLatin1Char('0'));
            QCOMPARE(keys.at(i - 1), key);
            const QJsonObject row = QJsonDocument::fromJson(store->deviceState(QStringLiteral("crash"), key)).object();
            QCOMPARE(row.value(QStringLiteral("i")).toInt(), i);
            QCOMPARE(row.value(QStringLiteral("pad")).toString().size(), 512);
        }
        // The demo site written before the first row survived as well.
        QCOMPARE(store->cameras().size(), 5);
    }
    void processEndsCleanlyWithCurrentStore()
    {
        QTemporaryDir dir;
        QProcess process;
        process.start(QStringLiteral(SITE_STORE_WRITER),
                      {QStringLiteral("--current"), dir.filePath(QStringLiteral("s.sqlite"))});
        QVERIFY(process.waitForFinished(30000));
        QCOMPARE(process.exitStatus(), QProcess::NormalExit);
        QCOMPARE(process.exitCode(), 0);
        QCOMPARE(process.readAllStandardOutput().trimmed(), QByteArray("5"));
    }
    void lockOfDeadProcessLapsesAtItsTime()
    {
        const QString camera = QString::fromLatin1(site_store::demo::kSpeedDome);
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("site.sqlite"));
        auto reader = CSiteStore::Open(path);
        QVERIFY(!reader->lock(camera));

        QProcess holder;
        QByteArray out;
        connect(&holder, &QProcess::readyReadStandardOutput, this, [&] { out += holder.readAllStandardOutput(); });
        holder.start(QStringLiteral(SITE_STORE_WRITER), {QStringLiteral("--lock"), path, camera, QStringLiteral("60")});
        QVERIFY2(holder.waitForStarted(), qPrintable(holder.errorString()));
        QTRY_VERIFY2_WITH_TIMEOUT(out.contains('\n'), holder.readAllStandardError().constData(), 30000);
        QVERIFY2(out.startsWith("locked "), out.constData());
        const QDateTime expiry = QDateTime::fromMSecsSinceEpoch(out.mid(7).trimmed().toLongLong(), Qt::UTC);

        auto lock = reader->lock(camera);
        QVERIFY(lock);
        QCOMPARE(lock->holder, QStringLiteral("writer"));
        QCOMPARE(lock->expiresAt, expiry);

        ::kill(pid_t(holder.processId()), SIGKILL);
        QVERIFY(holder.waitForFinished(10000));
        // Nobody releases it: it holds until its time, then it is gone.
        QVERIFY(reader->lock(camera, expiry.addMSecs(-1)));
        QVERIFY(!reader->lock(camera, expiry));
    }
};

QTEST_GUILESS_MAIN(TestSiteStoreCrash)
#include "tst_csitestore_crash.moc"
