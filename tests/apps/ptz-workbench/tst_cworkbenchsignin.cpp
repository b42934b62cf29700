#include "cworkbenchsignin.h"

#include "site_store/csitestore.h"
#include "zeph_plugin_manager/ccurrentuser.h"

#include <QTemporaryDir>
#include <QTest>

class TestWorkbenchSignIn : public QObject
{
    Q_OBJECT
private slots:
    void cleanup() { site_store::CSiteStore::InstallCurrent(nullptr); }
    void startsInARow_data();
    void startsInARow();
    void siteWithoutTheDemoOperator();
};

// Each row is a series of starts on one site file, as an operator would make them.
void TestWorkbenchSignIn::startsInARow_data()
{
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<QList<bool>>("accepted");
    QTest::addColumn<QStringList>("runsAs");
    QTest::newRow("unknown after senior is refused")
        << QStringList{"senior", "nosuchuser"} << QList<bool>{true, false} << QStringList{"senior", "senior"};
    QTest::newRow("no name after senior is the default operator")
        << QStringList{"senior", "", ""} << QList<bool>{true, true, true}
        << QStringList{"senior", "operator", "operator"};
    QTest::newRow("no name after a refusal")
        << QStringList{"junior", "nosuchuser", ""} << QList<bool>{true, false, true}
        << QStringList{"junior", "junior", "operator"};
}

void TestWorkbenchSignIn::startsInARow()
{
    QFETCH(QStringList, names);
    QFETCH(QList<bool>, accepted);
    QFETCH(QStringList, runsAs);
    QTemporaryDir dir;
    for (int i = 0; i < names.size(); ++i) {
        // A new start opens the site file again.
        site_store::CSiteStore::InstallCurrent(
            site_store::CSiteStore::Open(dir.filePath(QStringLiteral("site.sqlite"))));
        QString error;
        QCOMPARE(CWorkbenchSignIn::SignIn(names.at(i), &error), accepted.at(i));
        QCOMPARE(error.isEmpty(), accepted.at(i));
        QVERIFY(accepted.at(i) || error.contains(names.at(i)));
        QCOMPARE(ZephPluginManager::CCurrentUser::Instance()->GetUserName(), runsAs.at(i));
    }
}

void TestWorkbenchSignIn::siteWithoutTheDemoOperator()
{
    site_store::CSiteStore::InstallCurrent(site_store::CSiteStore::OpenInMemory());
    site_store::CSiteStore *store = site_store::CSiteStore::Current();
    QVERIFY(store->setCurrentUser(QStringLiteral("senior")));
    QVERIFY(store->removeUser(QStringLiteral("operator")));
    const QString fallback = CWorkbenchSignIn::DefaultOperator();
    QVERIFY(!fallback.isEmpty() && fallback != QLatin1String("operator"));
    QVERIFY(CWorkbenchSignIn::SignIn(QString(), nullptr));
    QCOMPARE(store->currentUserName(), fallback);
}

QTEST_GUILESS_MAIN(TestWorkbenchSignIn)
#include "tst_cworkbenchsignin.moc"
