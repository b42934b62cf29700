#include "support/workbenchfixture.h"

#include "cworkbenchscript.h"

#include <QTest>

class TestWorkbenchScript : public QObject
{
    Q_OBJECT
private slots:
    void cleanup() { m_fx.tearDown(); }
    void validScriptParses()
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
        // From a file: tabs separate words, CR LF ends lines, comments may hold any UTF-8.
        QVERIFY(script.ParseFile("select\t1\n\tpress  \t up\r\nrelease up # caf\xc3\xa9\n", &error));
        QCOMPARE(script.Actions().size(), 3);
    }
    void badLinesAreReported_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("message");
        QTest::newRow("unknown verb") << QStringLiteral("bind 1 cam\njump 3") << "line 2: expected one of bind";
        QTest::newRow("bind without camera") << QStringLiteral("bind 1") << "line 1: expected 'bind SCREEN CAMERA_ID'";
        QTest::newRow("screen 0") << QStringLiteral("select 0")
                                  << "line 1: expected 'select SCREEN' with SCREEN from 1 to 9";
        QTest::newRow("screen count 5") << QStringLiteral("screens 5")
                                        << "line 1: expected 'screens 1', 'screens 4' or 'screens 9'";
        QTest::newRow("unknown direction") << QStringLiteral("\n\npress north") << "line 3: expected 'press DIRECTION'";
        QTest::newRow("negative wait") << QStringLiteral("wait -5") << "line 1: expected 'wait MS'";
        QTest::newRow("theme") << QStringLiteral("theme blue") << "line 1: expected 'theme dark' or 'theme white'";
        QTest::newRow("layout") << QStringLiteral("layout grid")
                                << "line 1: expected 'layout side' or 'layout stacked'";
        QTest::newRow("click two names") << QStringLiteral("click a b") << "line 1: expected 'click OBJECTNAME'";
    }
    void badLinesAreReported()
    {
        QFETCH(QString, text);
        QFETCH(QString, message);
        CWorkbenchScript script;
        QString error;
        QVERIFY(!script.Parse(text, &error));
        QVERIFY2(error.startsWith(message), qPrintable(error));
        QVERIFY(script.Actions().isEmpty());
    }
    void holdingUpTiltsTheDomeAndStops()
    {
        m_fx.setUp();
        ptz_devices::CSimulatedCamera *dome = m_fx.camera(kDome);
        dome->setPosition(90, -30, 1);
        CWorkbenchScript script;
        QString error;
        QVERIFY(script.Parse(
            QStringLiteral("bind 2 demo-speed-dome\nselect 2\npress up\nwait 500\nrelease up\nwait 200\n"), &error));
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
    void unknownCameraOrButtonFailsAtItsLine()
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

private:
    WorkbenchFixture m_fx;
};

QTEST_MAIN(TestWorkbenchScript)
#include "tst_cworkbenchscript.moc"
