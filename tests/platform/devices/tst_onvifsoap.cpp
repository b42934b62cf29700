#include "ptz_devices/convifclient.h"
#include "ptz_devices/onvifsoap.h"

#include <QtTest>

using namespace ptz_devices;

// Conversions between the panel's terms and what goes over the wire.
class tst_OnvifSoap : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void durations_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("ms");
        QTest::newRow("seconds") << QStringLiteral("PT3S") << 3000;
        QTest::newRow("fraction") << QStringLiteral("PT0.1S") << 100;
        QTest::newRow("minutes") << QStringLiteral("PT1M30S") << 90000;
        QTest::newRow("hours") << QStringLiteral("PT1H") << 3600000;
        QTest::newRow("empty period") << QStringLiteral("PT") << -1;
        QTest::newRow("not a duration") << QStringLiteral("5 seconds") << -1;
    }
    void durations()
    {
        QFETCH(QString, text);
        QFETCH(int, ms);
        QCOMPARE(onvif::durationMs(text), ms);
        if (ms > 0)
            QCOMPARE(onvif::durationMs(onvif::durationText(ms)), ms);
    }

    void speedsAndVelocities_data()
    {
        QTest::addColumn<int>("direction");
        QTest::addColumn<int>("speed");
        QTest::addColumn<double>("rangeMax");
        QTest::addColumn<double>("velocity");
        QTest::newRow("full right") << 1 << 40 << 1.0 << 1.0;
        QTest::newRow("half left") << -1 << 20 << 1.0 << -0.5;
        QTest::newRow("slowest, wide range") << 1 << 1 << 8.0 << 0.2;
        QTest::newRow("no direction") << 0 << 30 << 1.0 << 0.0;
    }
    void speedsAndVelocities()
    {
        QFETCH(int, direction);
        QFETCH(int, speed);
        QFETCH(double, rangeMax);
        QFETCH(double, velocity);
        QCOMPARE(onvif::velocityFromSpeed(direction, speed, 40, rangeMax), velocity);
        QCOMPARE(onvif::speedFromVelocity(velocity, 40, rangeMax), direction == 0 ? 0 : speed);
    }

    void positions_data()
    {
        QTest::addColumn<double>("pan");
        QTest::addColumn<double>("x");
        QTest::newRow("ahead") << 0.0 << 0.0;
        QTest::newRow("right") << 90.0 << 0.5;
        QTest::newRow("behind") << 180.0 << 1.0;
        QTest::newRow("left") << 270.0 << -0.5;
    }
    void positions()
    {
        QFETCH(double, pan);
        QFETCH(double, x);
        QCOMPARE(onvif::xFromPan(pan), x);
        QCOMPARE(onvif::panFromX(x), pan);
        QCOMPARE(onvif::tiltFromY(onvif::yFromTilt(-35.0, -90.0, 10.0), -90.0, 10.0), -35.0);
        QCOMPARE(onvif::zoomFromX(onvif::xFromZoom(12.0, 30.0), 30.0), 12.0);
    }

    void faultsReadAsSentences_data()
    {
        QTest::addColumn<QString>("details");
        QTest::addColumn<QString>("text");
        QTest::newRow("subcode") << QStringLiteral("Sender not Authorized env:Sender ter:NotAuthorized")
                                 << QStringLiteral("not authorized");
        QTest::newRow("http") << QStringLiteral("Host requires authentication") << QStringLiteral("not authorized");
        QTest::newRow("no token") << QStringLiteral("ter:InvalidArgVal ter:NoToken")
                                  << QStringLiteral("no such preset");
        QTest::newRow("empty") << QString() << QStringLiteral("the camera refused the request");
    }
    void faultsReadAsSentences()
    {
        QFETCH(QString, details);
        QFETCH(QString, text);
        QCOMPARE(COnvifClient::readableFault(details), text);
    }
};

QTEST_GUILESS_MAIN(tst_OnvifSoap)
#include "tst_onvifsoap.moc"
