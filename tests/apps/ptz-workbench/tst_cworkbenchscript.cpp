#include "support/workbenchfixture.h"

#include "cworkbenchscript.h"

#include <QTest>

class TestWorkbenchScript : public QObject
{
    Q_OBJECT
private slots:
    void cleanup() { m_fx.tearDown(); }
    void validScriptParses();
    void badLinesAreReported_data();
    void badLinesAreReported();
    void fileBytes_data();
    void fileBytes();
    void holdingUpTiltsTheDomeAndStops();
    void unknownCameraOrButtonFailsAtItsLine();

private:
    WorkbenchFixture m_fx;
};

void TestWorkbenchScript::validScriptParses()
{
    CWorkbenchScript script;
    QString error;
    QVERIFY2(script.Parse(QStringLiteral("# steer the dome\n"
                                         "bind 1 demo-speed-dome\n"
                                         "\n"
                                         "select 1   # the first screen\n"
                                         "press up\nwait 500\nrelease up\n"
                                         "press zoomin\nrelease zoomin\n"
                                         "screens 9\ntheme white\nlayout stacked\nclick m_pBtnLight\n"),
                          &error),
             qPrintable(error));
    QCOMPARE(script.Actions().size(), 11);
    QCOMPARE(script.Actions().at(0).line, 2);
    QCOMPARE(script.Actions().at(0).args, (QStringList{"1", "demo-speed-dome"}));
    QCOMPARE(script.Actions().at(3).verb, QStringLiteral("wait"));
}

void TestWorkbenchScript::badLinesAreReported_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("message");
    QTest::newRow("unknown verb") << "bind 1 cam\njump 3"
                                  << "line 2: expected one of bind";
    QTest::newRow("bind without camera") << "bind 1"
                                         << "line 1: expected 'bind SCREEN CAMERA_ID'";
    QTest::newRow("screen 0") << "select 0"
                              << "line 1: expected 'select SCREEN' with SCREEN from 1 to 9";
    QTest::newRow("screen count 5") << "screens 5"
                                    << "line 1: expected 'screens 1', 'screens 4' or 'screens 9'";
    QTest::newRow("unknown direction") << "\n\npress north"
                                       << "line 3: expected 'press DIRECTION'";
    QTest::newRow("release without direction") << "release"
                                               << "line 1: expected 'release DIRECTION'";
    QTest::newRow("negative wait") << "wait -5"
                                   << "line 1: expected 'wait MS'";
    QTest::newRow("wait not a number") << "wait soon"
                                       << "line 1: expected 'wait MS'";
    QTest::newRow("theme") << "theme blue"
                           << "line 1: expected 'theme dark' or 'theme white'";
    QTest::newRow("layout") << "layout grid"
                            << "line 1: expected 'layout side' or 'layout stacked'";
    QTest::newRow("click two names") << "click a b"
                                     << "line 1: expected 'click OBJECTNAME'";
    QTest::newRow("fish-eye half") << "fisheye 1 half"
                                   << "line 1:";
}

void TestWorkbenchScript::badLinesAreReported()
{
    QFETCH(QString, text);
    QFETCH(QString, message);
    CWorkbenchScript script;
    QString error;
    QVERIFY(!script.Parse(text, &error));
    QVERIFY2(error.startsWith(message), qPrintable(error));
    QVERIFY(script.Actions().isEmpty());
}

void TestWorkbenchScript::fileBytes_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("actions"); // -1: refused
    QTest::addColumn<QString>("error");
    QTest::newRow("tabs and spaces") << QByteArray("select\t1\n\tpress  \t up\r\nrelease up\n") << 3 << QString();
    static const char withNul[] = "press up\nwait 5\x00x\nrelease up\n";
    QTest::newRow("NUL hides the release") << QByteArray(withNul, sizeof(withNul) - 1) << -1 << "line 2 contains a NUL";
    QTest::newRow("broken UTF-8") << QByteArray("press up\n\n# caf\xc3\n") << -1 << "line 3 is not valid UTF-8";
    QTest::newRow("UTF-8 comment is fine") << QByteArray("press up # caf\xc3\xa9\nrelease up") << 2 << QString();
    QTest::newRow("long line is cut in the message") << QByteArray("jump ") + QByteArray(5000, 'y') << -1
                                                     << "'jump " + QString(75, QLatin1Char('y')) + QChar(0x2026) + "'";
}

void TestWorkbenchScript::fileBytes()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, actions);
    QFETCH(QString, error);
    CWorkbenchScript script;
    QString message;
    QCOMPARE(script.ParseFile(bytes, &message), actions >= 0);
    QCOMPARE(script.Actions().size(), qMax(actions, 0));
    if (actions < 0) {
        QVERIFY2(message.contains(error), qPrintable(message.left(300)));
        QVERIFY(message.size() < 300);
    }
}

void TestWorkbenchScript::holdingUpTiltsTheDomeAndStops()
{
    m_fx.setUp();
    ptz_devices::CSimulatedCamera *dome = m_fx.camera(kDome);
    dome->setPosition(90, -30, 1);
    CWorkbenchScript script;
    QString error;
    QVERIFY(script.Parse(QStringLiteral("bind 2 demo-speed-dome\nselect 2\npress up\nwait 500\nrelease up\nwait 200\n"),
                         &error));
    // Script time is the camera's time: each wait lets the answers arrive, then advances the clock.
    const auto wait = [this](int ms) {
        QCoreApplication::processEvents();
        m_fx.clock()->advance(ms);
        QCoreApplication::processEvents();
    };
    QVERIFY2(script.Run(m_fx.window(), &error, wait), qPrintable(error));
    QTRY_VERIFY(!dome->status().panTiltMoving);
    QVERIFY(dome->status().tilt > -30.0);
    const double stopped = dome->status().tilt;
    m_fx.clock()->advance(1000);
    QCOMPARE(dome->status().tilt, stopped);
}

void TestWorkbenchScript::unknownCameraOrButtonFailsAtItsLine()
{
    m_fx.setUp();
    CWorkbenchScript script;
    QString error;
    QVERIFY(script.Parse(QStringLiteral("select 1\nbind 3 no-such-camera\n"), &error));
    QVERIFY(!script.Run(m_fx.window(), &error, [](int) {}));
    QCOMPARE(error, QStringLiteral("line 2: unknown camera 'no-such-camera'"));
    QVERIFY(script.Parse(QStringLiteral("click no_such_button\n"), &error));
    QVERIFY(!script.Run(m_fx.window(), &error, [](int) {}));
    QVERIFY(error.startsWith(QLatin1String("line 1: no button named")));
    // Scripts name buttons by their dark names; the white theme renames them.
    QVERIFY(script.Parse(QStringLiteral("theme white\nclick m_pBtnKeyFocus\n"), &error));
    QVERIFY2(script.Run(m_fx.window(), &error, [](int) {}), qPrintable(error));
}

QTEST_MAIN(TestWorkbenchScript)
#include "tst_cworkbenchscript.moc"
