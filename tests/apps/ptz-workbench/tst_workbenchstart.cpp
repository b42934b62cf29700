// Starting the workbench: the command line, the operator's sign-in, and the real program with
// what an operator sees on the terminal and in the exit code.
#include "cworkbenchoptions.h"
#include "cworkbenchsignin.h"

#include "site_store/csitestore.h"
#include "zeph_plugin_manager/ccurrentuser.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

class TestWorkbenchStart : public QObject
{
    Q_OBJECT
private slots:
    void cleanup() { site_store::CSiteStore::InstallCurrent(nullptr); }
    void goodLineIsRead()
    {
        CWorkbenchOptions options;
        QString error;
        const QStringList args{"ptz-workbench", "--site", "/tmp/s.db", "--user",  "guard",        "--screens=9",
                               "--theme",       "white",  "--layout",  "stacked", "--screenshot", "a.png"};
        QVERIFY2(options.Parse(args, &error), qPrintable(error));
        QCOMPARE((QStringList{options.site, options.user, options.screenshot}),
                 (QStringList{"/tmp/s.db", "guard", "a.png"}));
        QVERIFY(options.screens == 9 && options.white && options.stacked);
    }
    // Starts in a row on one site file: a refused name keeps the last one, no name is the default operator.
    void startsInARow()
    {
        const QStringList names{"junior", "nosuchuser", ""};
        const QStringList runsAs{"junior", "junior", "operator"};
        QTemporaryDir dir;
        for (int i = 0; i < names.size(); ++i) {
            // A new start opens the site file again.
            site_store::CSiteStore::InstallCurrent(
                site_store::CSiteStore::Open(dir.filePath(QStringLiteral("site.sqlite"))));
            QString error;
            QCOMPARE(CWorkbenchSignIn::SignIn(names.at(i), &error), i != 1);
            QCOMPARE(error.isEmpty(), i != 1);
            QCOMPARE(ZephPluginManager::CCurrentUser::Instance()->GetUserName(), runsAs.at(i));
        }
        // A site without the demo operator: no name signs in another operator.
        site_store::CSiteStore *store = site_store::CSiteStore::Current();
        QVERIFY(store->setCurrentUser(QStringLiteral("senior")) && store->removeUser(QStringLiteral("operator")));
        const QString fallback = CWorkbenchSignIn::DefaultOperator();
        QVERIFY(!fallback.isEmpty() && fallback != QLatin1String("operator"));
        QVERIFY(CWorkbenchSignIn::SignIn(QString(), nullptr));
        QCOMPARE(store->currentUserName(), fallback);
    }
    void refusalsNeedNoDisplay_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QByteArray>("script"); // written to a file passed with --script, when not empty
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("says");
        QTest::newRow("help") << QStringList{"--help"} << QByteArray() << 0 << "--screens";
        QTest::newRow("screens 3") << QStringList{"--screens", "3"} << QByteArray() << 2 << "1, 4 or 9, not '3'";
        QTest::newRow("empty user") << QStringList{"--user="} << QByteArray() << 2 << "--user expects a user name.";
        QTest::newRow("unknown option") << QStringList{"--colour"} << QByteArray() << 2 << "colour";
        QTest::newRow("missing value") << QStringList{"--site"} << QByteArray() << 2 << "site";
        QTest::newRow("stray word") << QStringList{"dome"} << QByteArray() << 2 << "unexpected argument 'dome'";
        QTest::newRow("repeated option") << QStringList{"--theme", "dark", "--theme", "white"} << QByteArray() << 2
                                         << "--theme";
        QTest::newRow("missing script") << QStringList{"--script", "/nonexistent/x.txt"} << QByteArray() << 2
                                        << "x.txt";
        QTest::newRow("NUL before the release")
            << QStringList() << QByteArray("select 1\npress up\nwait 10\x00junk\nrelease up\n", 42) << 2
            << "line 3 contains a NUL";
        QTest::newRow("invalid UTF-8") << QStringList() << QByteArray("select 1\nbind 1 \xff\xfe\n") << 2
                                       << "line 2 is not valid UTF-8";
        QTest::newRow("very long line is cut")
            << QStringList() << QByteArray("select 1\n") + QByteArray(200000, 'x') + "\n"
            << 2 << QString(80, QLatin1Char('x')) + QChar(0x2026) + "'";
    }
    void refusalsNeedNoDisplay()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QByteArray, script);
        QFETCH(int, code);
        QFETCH(QString, says);
        if (!script.isEmpty()) {
            QFile file(m_dir.filePath(QStringLiteral("script.txt")));
            QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
            file.write(script);
            arguments << QStringLiteral("--script") << file.fileName();
        }
        const Run run = start(arguments, false);
        QCOMPARE(run.code, code);
        QVERIFY2((code == 0 ? run.out : run.err).contains(says), qPrintable(run.err.left(400)));
        QVERIFY(run.err.size() < 400);
    }
    // Signing in needs the window system.
    void unknownOperatorRefusesToStart()
    {
        const QStringList shot{QStringLiteral("--screenshot"), m_dir.filePath(QStringLiteral("shot.png"))};
        QCOMPARE(start(QStringList{"--user", "senior"} + shot, true).code, 0);
        const Run unknown = start(QStringList{"--user", "nosuchuser"} + shot, true);
        QCOMPARE(unknown.code, 2);
        QVERIFY2(unknown.err.contains(QStringLiteral("nosuchuser")), qPrintable(unknown.err));
    }

private:
    struct Run
    {
        int code = -1;
        QString out;
        QString err;
    };
    Run start(const QStringList &arguments, bool display) const
    {
        QProcess process;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.remove(QStringLiteral("DISPLAY"));
        env.remove(QStringLiteral("WAYLAND_DISPLAY"));
        // Without a display the default platform plugin cannot start: nothing here may need it.
        env.insert(QStringLiteral("QT_QPA_PLATFORM"), display ? QStringLiteral("offscreen") : QStringLiteral("xcb"));
        env.insert(QStringLiteral("PTZ_SITE_STORE"), m_dir.filePath(QStringLiteral("site.sqlite")));
        process.setProcessEnvironment(env);
        process.start(QStringLiteral(PTZ_WORKBENCH_BIN), arguments);
        Run run;
        if (!process.waitForFinished(120000))
            return run;
        run.code = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
        run.out = QString::fromUtf8(process.readAllStandardOutput());
        run.err = QString::fromUtf8(process.readAllStandardError());
        return run;
    }

    QTemporaryDir m_dir;
};

QTEST_GUILESS_MAIN(TestWorkbenchStart)
#include "tst_workbenchstart.moc"
