#include "zeph_plugin_manager/ccameramanager.h"
#include "zeph_plugin_manager/ccurrentuser.h"
#include "zeph_plugin_manager/chostsession.h"

#include "site_store/csitestore.h"
#include "site_store/demosite.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace ZephPluginManager;
using site_store::CSiteStore;

class TestHostSession : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { CHostSession::Stop(); }
    void start_data()
    {
        QTest::addColumn<QString>("file");    // "good", "garbage"
        QTest::addColumn<QString>("userArg"); // appended as --user
        QTest::addColumn<bool>("fallback");
        QTest::addColumn<int>("messages");
        QTest::addColumn<QString>("expectedUser");

        QTest::newRow("store and user") << "good" << QString::fromLatin1(site_store::demo::kJunior) << false << 0
                                        << QString::fromLatin1(site_store::demo::kJunior);
        QTest::newRow("unknown user") << "good"
                                      << "nobody" << false << 1 << "operator";
        QTest::newRow("corrupt store, unknown user") << "garbage"
                                                     << "nobody" << true << 2 << "operator";
    }
    void start()
    {
        QFETCH(QString, file);
        QFETCH(QString, userArg);
        QFETCH(bool, fallback);
        QFETCH(int, messages);
        QFETCH(QString, expectedUser);

        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("site.sqlite"));
        if (file == QLatin1String("garbage")) {
            QFile f(path);
            QVERIFY(f.open(QIODevice::WriteOnly));
            f.write(QByteArray(4096, '\x5a'));
        }
        QStringList args{QStringLiteral("ptz-workbench"), QStringLiteral("--site"), path};
        if (!userArg.isEmpty())
            args << QStringLiteral("--user") << userArg;

        const CHostSession::Result result = CHostSession::Start(args);
        QCOMPARE(result.storeFallback, fallback);
        QCOMPARE(result.messages.size(), messages);
        for (const QString &m : result.messages)
            QVERIFY(!m.isEmpty());
        QCOMPARE(result.storePath, fallback ? QString() : path);
        QCOMPARE(CSiteStore::Current()->isFallback(), fallback);
        QCOMPARE(CCurrentUser::Instance()->GetUserName(), expectedUser);
        QCOMPARE(int(CCameraManager::Instance()->GetCameras().size()), 5);
    }
};

QTEST_GUILESS_MAIN(TestHostSession)
#include "tst_chostsession.moc"
