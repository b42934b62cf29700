#include "ptz_devices/cdriverfactory.h"
#include "ptz_devices/csimulatedcamera.h"

#include <QtTest>

#include <memory>

using namespace ptz_devices;

class tst_CDriverFactory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void unknownKindOrModelFails_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("model");
        QTest::newRow("unknown kind") << QStringLiteral("telepathy") << QStringLiteral("speed-dome");
        QTest::newRow("unknown model") << QStringLiteral("simulated") << QStringLiteral("hover-drone");
    }
    void unknownKindOrModelFails()
    {
        QFETCH(QString, kind);
        QFETCH(QString, model);
        QString error;
        std::unique_ptr<IPtzDriver> driver(
            CDriverFactory::create(kind, model, QStringLiteral("x"), nullptr, nullptr, nullptr, &error));
        QVERIFY(!driver);
        QVERIFY(!error.isEmpty());
    }
    void registeredKindIsUsed()
    {
        DriverConfig seen;
        CDriverFactory::registerKind(QStringLiteral("network-test"), {QStringLiteral("any")},
                                     [&seen](const DriverConfig &config, QString *) -> IPtzDriver * {
                                         seen = config;
                                         // Stand-in for a network driver: reuse the simulation.
                                         return new CSimulatedCamera(config.cameraId, QStringLiteral("speed-dome"),
                                                                     nullptr, nullptr, config.parent);
                                     });
        DriverConfig config;
        config.kind = QStringLiteral("network-test");
        config.model = QStringLiteral("any");
        config.cameraId = QStringLiteral("cam-9");
        config.address = QStringLiteral("http://10.0.0.9");
        std::unique_ptr<IPtzDriver> driver(CDriverFactory::create(config));
        QVERIFY(driver);
        QCOMPARE(seen.address, QStringLiteral("http://10.0.0.9"));
        QCOMPARE(driver->cameraId(), QStringLiteral("cam-9"));
    }
};

QTEST_GUILESS_MAIN(tst_CDriverFactory)
#include "tst_cdriverfactory.moc"
