#include "cworkbenchscript.h"
#include "cworkbenchwindow.h"

#include "ptz_devices/csimclock.h"
#include "ptz_devices/csimulatedcamera.h"
#include "site_store/csitestore.h"
#include "site_store/demosite.h"
#include "zeph_plugin_manager/ccameramanager.h"
#include "zeph_plugin_manager/cdrivertestaccess.h"

#include <QTemporaryDir>
#include <QTest>

class TestWorkbenchScript : public QObject
{
    Q_OBJECT
private slots:
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
        QCOMPARE(script.Actions().at(0).args, (QStringList { "1", "demo-speed-dome" }));
        QCOMPARE(script.Actions().at(3).verb, QStringLiteral("wait"));
    }
    void badLinesAreReported_data()
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
        QTemporaryDir dir;
        auto *cameras = Tarn::Base::CSingleton<ZephPluginManager::CCameraManager>::Instance();
        cameras->Clear();
        ptz_devices::CSimClock clock(ptz_devices::CSimClock::Mode::Manual);
        cameras->SetSimClock(&clock);
        site_store::CSiteStore::InstallCurrent(
            site_store::CSiteStore::Open(dir.filePath(QStringLiteral("site.sqlite"))));
        {
            CWorkbenchWindow window;
            auto *dome = qobject_cast<ptz_devices::CSimulatedCamera *>(
                ZephPluginManager::CDriverTestAccess::GetDriver(QString::fromLatin1(site_store::demo::kSpeedDome)));
            QVERIFY(dome);
            dome->setPosition(90, -30, 1);
            CWorkbenchScript script;
            QString error;
            QVERIFY(script.Parse(
                QStringLiteral("bind 2 demo-speed-dome\nselect 2\npress up\nwait 500\nrelease up\nwait 200\n"),
                &error));
            // Script time is the camera's time: each wait lets the answers arrive, then advances the clock.
            QVERIFY2(script.Run(&window, &error,
                         [&clock](int ms) {
                             QCoreApplication::processEvents();
                             clock.advance(ms);
                             QCoreApplication::processEvents();
                         }),
                qPrintable(error));
            QTRY_VERIFY(!dome->status().panTiltMoving);
            QVERIFY(dome->status().tilt > -30.0);
            const double stopped = dome->status().tilt;
            clock.advance(1000);
            QCOMPARE(dome->status().tilt, stopped);
        }
        cameras->Clear();
        cameras->SetSimClock(nullptr);
    }
    void unknownCameraFailsAtItsLine()
    {
        QTemporaryDir dir;
        site_store::CSiteStore::InstallCurrent(
            site_store::CSiteStore::Open(dir.filePath(QStringLiteral("site.sqlite"))));
        CWorkbenchWindow window;
        CWorkbenchScript script;
        QString error;
        QVERIFY(script.Parse(QStringLiteral("select 1\nbind 3 no-such-camera\n"), &error));
        QVERIFY(!script.Run(&window, &error, [](int) {}));
        QCOMPARE(error, QStringLiteral("line 2: unknown camera 'no-such-camera'"));
        QVERIFY(script.Parse(QStringLiteral("click no_such_button\n"), &error));
        QVERIFY(!script.Run(&window, &error, [](int) {}));
        QVERIFY(error.startsWith(QLatin1String("line 1: no button named")));
        // Scripts name buttons by their dark names; the white theme renames them.
        QVERIFY(script.Parse(QStringLiteral("theme white\nclick m_pBtnKeyFocus\n"), &error));
        QVERIFY2(script.Run(&window, &error, [](int) {}), qPrintable(error));
        Tarn::Base::CSingleton<ZephPluginManager::CCameraManager>::Instance()->Clear();
    }
};

QTEST_MAIN(TestWorkbenchScript)
#include "tst_cworkbenchscript.moc"
