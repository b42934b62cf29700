// Starts the real program: what an operator sees on the terminal and in the exit code.
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

class TestWorkbenchStart : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { QVERIFY(QFile::exists(QStringLiteral(PTZ_WORKBENCH_BIN))); }
    void refusalsNeedNoDisplay_data();
    void refusalsNeedNoDisplay();
    void unknownOperatorRefusesToStart();

private:
    struct Run
    {
        int code = -1;
        QString out;
        QString err;
    };
    Run start(const QStringList &arguments, bool display) const;

    QTemporaryDir m_dir;
};

TestWorkbenchStart::Run TestWorkbenchStart::start(const QStringList &arguments, bool display) const
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

void TestWorkbenchStart::refusalsNeedNoDisplay_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("script"); // written to a file passed with --script, when not empty
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("says");
    QTest::newRow("help") << QStringList{"--help"} << QByteArray() << 0 << "--screens";
    QTest::newRow("unknown option") << QStringList{"--colour", "red"} << QByteArray() << 2 << "colour";
    QTest::newRow("bad value") << QStringList{"--screens", "5"} << QByteArray() << 2 << "1, 4 or 9";
    QTest::newRow("repeated option") << QStringList{"--theme", "dark", "--theme", "white"} << QByteArray() << 2
                                     << "--theme";
    QTest::newRow("missing script") << QStringList{"--script", "/nonexistent/x.txt"} << QByteArray() << 2 << "x.txt";
    QTest::newRow("NUL before the release")
        << QStringList() << QByteArray("select 1\npress up\nwait 10\x00junk\nrelease up\n", 42) << 2
        << "line 3 contains a NUL";
    QTest::newRow("invalid UTF-8") << QStringList() << QByteArray("select 1\nbind 1 \xff\xfe\n") << 2
                                   << "line 2 is not valid UTF-8";
    QTest::newRow("very long line is cut") << QStringList() << QByteArray("select 1\n") + QByteArray(200000, 'x') + "\n"
                                           << 2 << QString(80, QLatin1Char('x')) + QChar(0x2026) + "'";
}

void TestWorkbenchStart::refusalsNeedNoDisplay()
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

void TestWorkbenchStart::unknownOperatorRefusesToStart()
{
    const QString shot = m_dir.filePath(QStringLiteral("shot.png"));
    QCOMPARE(
        start({QStringLiteral("--user"), QStringLiteral("senior"), QStringLiteral("--screenshot"), shot}, true).code,
        0);
    const Run unknown =
        start({QStringLiteral("--user"), QStringLiteral("nosuchuser"), QStringLiteral("--screenshot"), shot}, true);
    QCOMPARE(unknown.code, 2);
    QVERIFY2(unknown.err.contains(QStringLiteral("nosuchuser")), qPrintable(unknown.err));
}

QTEST_GUILESS_MAIN(TestWorkbenchStart)
#include "tst_workbenchstart.moc"
