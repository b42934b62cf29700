#include "support/workbenchfixture.h"

#include "cworkbenchscript.h"

#include <QTest>

class TestWorkbenchScript : public QObject
{
    Q_OBJECT
private slots:
    void init() { m_fx.setUp(); }
    void cleanup() { m_fx.tearDown(); }
    // Bad lines are refused before anything runs; what cannot be carried out stops the run at its line.
    void scriptsRunOrSayWhichLineFailed_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("message"); // the start of the error, empty when the script runs
        QTest::newRow("unknown verb") << QStringLiteral("bind 1 cam\njump 3") << "line 2: expected one of bind";
        QTest::newRow("bind without camera") << QStringLiteral("bind 1") << "line 1: expected 'bind SCREEN CAMERA_ID'";
        QTest::newRow("screen 0") << QStringLiteral("select 0")
                                  << "line 1: expected 'select SCREEN' with SCREEN from 1 to 9";
        QTest::newRow("unknown direction") << QStringLiteral("\n\npress north") << "line 3: expected 'press DIRECTION'";
        QTest::newRow("negative wait") << QStringLiteral("wait -5") << "line 1: expected 'wait MS'";
        QTest::newRow("click two names") << QStringLiteral("click a b") << "line 1: expected 'click OBJECTNAME'";
        QTest::newRow("unknown camera") << QStringLiteral("select 1\nbind 3 no-such-camera\n")
                                        << "line 2: unknown camera 'no-such-camera'";
        QTest::newRow("unknown button") << QStringLiteral("click no_such_button\n") << "line 1: no button named";
        // Comments and blank lines are skipped; buttons go by their dark names, also in the white theme.
        QTest::newRow("holding up tilts the dome")
            << QStringLiteral("# steer the dome\nbind 2 demo-speed-dome\n\nselect 2   # the second screen\n"
                              "press up\nwait 500\nrelease up\npress zoomin\nrelease zoomin\n"
                              "screens 9\ntheme white\nlayout stacked\nclick m_pBtnKeyFocus\n")
            << QString();
        QTest::newRow("tabs, CR LF, UTF-8 comment")
            << QString::fromUtf8("select\t1\n\tpress  \t up\r\nwait 500\nrelease up # caf\xc3\xa9\n") << QString();
    }
    void scriptsRunOrSayWhichLineFailed()
    {
        QFETCH(QString, text);
        QFETCH(QString, message);
        ptz_devices::CSimulatedCamera *dome = m_fx.camera(kDome);
        dome->setPosition(90, -30, 1);
        CWorkbenchScript script;
        QString error;
        // Script time is the camera's time: each wait lets the answers arrive, then advances the clock.
        const auto wait = [this](int ms) {
            QCoreApplication::processEvents();
            m_fx.clock()->advance(ms);
            QCoreApplication::processEvents();
        };
        const bool parsed = script.ParseFile(text.toUtf8(), &error);
        QVERIFY(parsed || script.Actions().isEmpty());
        QCOMPARE(parsed && script.Run(m_fx.window(), &error, wait), message.isEmpty());
        QVERIFY2(error.startsWith(message), qPrintable(error));
        QTRY_VERIFY(!dome->status().panTiltMoving);
        QCOMPARE(dome->status().tilt > -30.0, text.contains(QLatin1String("wait 500"))); // up held for a while
    }

private:
    WorkbenchFixture m_fx;
};

QTEST_MAIN(TestWorkbenchScript)
#include "tst_cworkbenchscript.moc"
