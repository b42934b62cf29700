#include "ptz_devices/cdriverfactory.h"
#include "ptz_devices/convifdriver.h"
#include "ptz_devices/csimulatedcamera.h"
#include "ptz_onvif_camera/cloopbackonvifcamera.h"

#include <QTcpServer>
#include <QTcpSocket>
#include <QtTest>

#include <memory>

using namespace ptz_devices;
using ptz_onvif_camera::CLoopbackOnvifCamera;

namespace {

const QString kUser = QStringLiteral("admin");
const QString kPassword = QStringLiteral("s3cret&<>");

// Answers every HTTP request with the same bytes, as a broken camera would.
class CBrokenCamera : public QTcpServer
{
public:
    explicit CBrokenCamera(const QByteArray &answer)
        : m_answer(answer)
    {
        connect(this, &QTcpServer::newConnection, this, [this] {
            while (QTcpSocket *socket = nextPendingConnection()) {
                connect(socket, &QTcpSocket::readyRead, socket, [this, socket] {
                    m_request += socket->readAll();
                    const int end = m_request.indexOf("\r\n\r\n");
                    if (end < 0)
                        return;
                    m_request.clear();
                    socket->write(m_answer);
                    socket->disconnectFromHost();
                });
            }
        });
        listen(QHostAddress::LocalHost);
    }
    QString address() const { return QStringLiteral("http://127.0.0.1:%1/onvif/device_service").arg(serverPort()); }

private:
    QByteArray m_answer;
    QByteArray m_request;
};

QByteArray httpAnswer(const QByteArray &status, const QByteArray &body)
{
    return "HTTP/1.1 " + status + "\r\nContent-Type: application/soap+xml\r\nContent-Length: "
           + QByteArray::number(body.size()) + "\r\nConnection: close\r\n\r\n" + body;
}

} // namespace

// The ONVIF driver against the loopback camera on a free port of 127.0.0.1:
// real HTTP and SOAP both ways, the simulated head behind it.
class tst_OnvifDriver : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<CLoopbackOnvifCamera> m_camera;
    std::unique_ptr<COnvifDriver> m_driver;
    QVector<DriverReply> m_replies;

    void startCamera(const QString &model = QStringLiteral("speed-dome"), int clockSkewSeconds = 0)
    {
        CLoopbackOnvifCamera::Options options;
        options.clockSkewSeconds = clockSkewSeconds;
        options.user = kUser;
        options.password = kPassword;
        options.model = model;
        m_camera = std::make_unique<CLoopbackOnvifCamera>(options);
        QString error;
        QVERIFY2(m_camera->start(&error), qPrintable(error));
    }

    void openDriver(const QString &password = kPassword, bool waitConnected = true)
    {
        DriverConfig config;
        config.kind = QStringLiteral("onvif");
        config.cameraId = QStringLiteral("onvif-1");
        config.address = m_camera->deviceAddress();
        config.user = kUser;
        config.password = password;
        QString error;
        m_driver.reset(qobject_cast<COnvifDriver *>(CDriverFactory::create(config, &error)));
        QVERIFY2(m_driver, qPrintable(error));
        m_driver->setReconnectDelays(20, 100);
        connect(m_driver.get(), &IPtzDriver::replied, this, [this](const DriverReply &r) { m_replies << r; });
        if (waitConnected)
            QTRY_VERIFY(m_driver->isConnected());
    }

    // Waits for the one answer to `id`.
    DriverReply await(quint64 id)
    {
        const auto count = [this, id] {
            return std::count_if(m_replies.begin(), m_replies.end(),
                                 [id](const DriverReply &r) { return r.requestId == id; });
        };
        [&] { QTRY_COMPARE_WITH_TIMEOUT(count(), 1l, 15000); }();
        for (const DriverReply &r : m_replies) {
            if (r.requestId == id)
                return r;
        }
        return DriverReply();
    }

    CSimulatedCamera *head() const { return m_camera->camera(); }
    int received(const QString &operation) const { return m_camera->receivedOperations().count(operation); }

private Q_SLOTS:
    void init()
    {
        m_replies.clear();
        startCamera();
    }
    void cleanup()
    {
        m_driver.reset();
        m_camera.reset();
    }

    void abilitiesComeFromTheCamera_data()
    {
        QTest::addColumn<QString>("model");
        QTest::addColumn<QVector<int>>("abilities");
        QTest::addColumn<int>("clockSkew");
        QTest::newRow("speed dome") << QStringLiteral("speed-dome") << QVector<int>{1, 48, 49, 50} << 0;
        QTest::newRow("zoom only") << QStringLiteral("box-zoom") << QVector<int>{1, 50} << 0;
        // Its tokens must carry the camera's time, or it refuses them.
        QTest::newRow("camera clock two hours behind")
            << QStringLiteral("speed-dome") << QVector<int>{1, 48, 49, 50} << -7200;
    }
    void abilitiesComeFromTheCamera()
    {
        QFETCH(QString, model);
        QFETCH(QVector<int>, abilities);
        QFETCH(int, clockSkew);
        startCamera(model, clockSkew);
        openDriver();
        QVector<int> got = m_driver->capabilities().abilities;
        std::sort(got.begin(), got.end());
        QCOMPARE(got, abilities);
        QCOMPARE(m_driver->capabilities().presetSlots, head()->capabilities().presetSlots);
        QCOMPARE(m_driver->capabilities().patternSlots, 0);
        if (!abilities.contains(AbilityPan)) {
            const DriverReply r = await(m_driver->movePanTilt(1, 0, 20));
            QVERIFY(!r.ok);
            QVERIFY(!r.error.isEmpty());
        }
    }

    void heldMoveIsRenewedAndStopsOnRelease()
    {
        openDriver();
        m_driver->setMoveTimeout(300);
        QVERIFY(await(m_driver->movePanTilt(1, 1, 40)).ok);
        QVERIFY(head()->status().panTiltMoving);
        // Held well past one timeout: renewals keep it going.
        QTRY_VERIFY(received(QStringLiteral("ContinuousMove")) >= 4);
        QVERIFY(head()->status().panTiltMoving);

        QVERIFY(await(m_driver->stopPanTilt()).ok);
        QVERIFY(!head()->status().panTiltMoving);
        // A later round trip shows nothing moved it again.
        QVERIFY(await(m_driver->requestStatus()).ok);
        const QStringList ops = m_camera->receivedOperations();
        QCOMPARE(ops.mid(ops.lastIndexOf(QStringLiteral("Stop"))).count(QStringLiteral("ContinuousMove")), 0);
        QVERIFY(!head()->status().panTiltMoving);
    }

    void stoppingOneAxisLeavesTheOther_data()
    {
        QTest::addColumn<bool>("stopZoom");
        QTest::newRow("zoom stop keeps pan") << true;
        QTest::newRow("pan stop keeps zoom") << false;
    }
    void stoppingOneAxisLeavesTheOther()
    {
        QFETCH(bool, stopZoom);
        openDriver();
        head()->setPosition(0.0, 0.0, 20.0); // room to zoom out
        QVERIFY(await(m_driver->movePanTilt(1, 0, 10)).ok);
        QVERIFY(await(m_driver->zoom(-1, 10)).ok);
        QVERIFY(await(stopZoom ? m_driver->zoom(0, 0) : m_driver->stopPanTilt()).ok);
        QCOMPARE(head()->status().panTiltMoving, stopZoom);
        QCOMPARE(head()->status().zoomMoving, !stopZoom);
        QVERIFY(await(m_driver->stopActivity()).ok);
        QVERIFY(!head()->status().panTiltMoving && !head()->status().zoomMoving);
    }

    void presetRoundTrip_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("xml specials") << QStringLiteral("A&B <1>");
        QTest::newRow("quotes") << QStringLiteral("\"gate\" & 'yard' ]]>");
        QTest::newRow("non-latin") << QStringLiteral("Tor Süd ☃");
    }
    void presetRoundTrip()
    {
        QFETCH(QString, name);
        openDriver();
        QVERIFY(await(m_driver->setPreset(3, name)).ok);
        DriverReply list = await(m_driver->listPresets());
        QVERIFY(list.ok);
        QVector<DevicePreset> presets = list.result.value<QVector<DevicePreset>>();
        QCOMPARE(presets.size(), 1);
        QCOMPARE(presets.first().number, 3);
        QCOMPARE(presets.first().name, name);
        QCOMPARE(head()->presets().first().name, name);

        QVERIFY(await(m_driver->renamePreset(3, name + QStringLiteral(" 2"))).ok);
        QCOMPARE(head()->presets().first().name, name + QStringLiteral(" 2"));
        QVERIFY(await(m_driver->gotoPreset(3)).ok);
        QVERIFY(await(m_driver->removePreset(3)).ok);
        QVERIFY(head()->presets().isEmpty());
        const DriverReply gone = await(m_driver->gotoPreset(3));
        QVERIFY(!gone.ok);
        QCOMPARE(gone.error, QStringLiteral("no such preset"));
    }

    void presetTourIsAPatrol()
    {
        openDriver();
        QCOMPARE(m_driver->capabilities().patrolSlots, head()->capabilities().patrolSlots);
        QVERIFY(await(m_driver->setPreset(1, QStringLiteral("one"))).ok);
        head()->setPosition(90.0, -20.0);
        QVERIFY(await(m_driver->setPreset(2, QStringLiteral("two"))).ok);
        const QVector<DevicePatrolPoint> points{{1, 40, 2, QString()}, {2, 10, 5, QString()}};
        QVERIFY(await(m_driver->writePatrol(3, points)).ok);
        const DriverReply read = await(m_driver->readPatrol(3));
        QVERIFY(read.ok);
        QCOMPARE(read.result.value<DevicePatrol>().points, points);
        QCOMPARE(head()->patrols().size(), 1);
        QCOMPARE(head()->patrols().first().points, points);

        QVERIFY(await(m_driver->startPatrol(3)).ok);
        QCOMPARE(head()->status().runningPatrol, head()->patrols().first().number);
        QVERIFY(await(m_driver->stopPatrol(0)).ok);
        QCOMPARE(head()->status().runningPatrol, 0);
        QVERIFY(await(m_driver->removePatrol(3)).ok);
        QVERIFY(head()->patrols().isEmpty());
        const DriverReply list = await(m_driver->listPatrols());
        QVERIFY(list.ok);
        QVERIFY(list.result.value<QVector<DevicePatrol>>().isEmpty());
    }

    void lensAndSwitches()
    {
        openDriver();
        m_driver->setMoveTimeout(300); // a held iris steps every 100 ms
        QVERIFY(await(m_driver->setLight(true)).ok);
        QVERIFY(await(m_driver->setWiper(true)).ok);
        QVERIFY(head()->status().light && head()->status().wiper);
        QVERIFY(await(m_driver->setLight(false)).ok);
        QVERIFY(!head()->status().light && head()->status().wiper);

        const double before = head()->status().focus;
        QVERIFY(await(m_driver->focus(1, 40)).ok);
        QTRY_VERIFY(head()->status().focus > before);
        QVERIFY(await(m_driver->focus(0, 0)).ok);
        const double stopped = head()->status().focus;
        QVERIFY(await(m_driver->requestStatus()).ok);
        QCOMPARE(head()->status().focus, stopped);
        QVERIFY(await(m_driver->oneKeyFocus()).ok);
        QCOMPARE(head()->status().focus, 0.5);

        // The iris has no continuous move: it steps while held, to the end of the range, and stops on release.
        QVERIFY(await(m_driver->iris(-1, 40)).ok);
        QTRY_COMPARE(head()->status().iris, 0.0);
        QVERIFY(await(m_driver->iris(0, 0)).ok);
        const int steps = received(QStringLiteral("SetImagingSettings"));
        QVERIFY(await(m_driver->iris(1, 20)).ok);
        QVERIFY(await(m_driver->iris(0, 0)).ok);
        QVERIFY(await(m_driver->requestStatus()).ok);
        QVERIFY(head()->status().iris > 0.0);
        QVERIFY(received(QStringLiteral("SetImagingSettings")) <= steps + 2);
    }

    void refusalsAreReadable_data()
    {
        QTest::addColumn<QString>("password");
        QTest::addColumn<QString>("fault");
        QTest::addColumn<QString>("error");
        QTest::newRow("wrong password") << QStringLiteral("guess") << QString() << QStringLiteral("not authorized");
        QTest::newRow("busy") << kPassword << QStringLiteral("The camera is busy")
                              << QStringLiteral("the camera is busy");
        QTest::newRow("other fault") << kPassword << QStringLiteral("Motor jammed")
                                     << QStringLiteral("the camera refused the request: Motor jammed Sender");
    }
    void refusalsAreReadable()
    {
        QFETCH(QString, password);
        QFETCH(QString, fault);
        QFETCH(QString, error);
        openDriver(password, fault.isEmpty() ? false : true);
        if (!fault.isEmpty())
            m_camera->failNextRequests(1, fault);
        const DriverReply r = await(m_driver->listPresets());
        QVERIFY(!r.ok);
        QCOMPARE(r.error, error);
        // One refusal is one answer; the driver stays usable unless the credentials are wrong.
        QCOMPARE(await(m_driver->listPresets()).ok, fault.isEmpty() ? false : true);
        if (fault.isEmpty()) {
            QCOMPARE(m_driver->lastError(), error);
            QVERIFY(!m_driver->isConnected());
            QCOMPARE(received(QStringLiteral("GetServices")), 1);
        }
    }

    void brokenCameraGivesAReadableFailure_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::newRow("http 500") << httpAnswer("500 Internal Server Error", "oops");
        QTest::newRow("malformed xml") << httpAnswer("200 OK", "<Envelope><Body><GetServicesResponse>");
        QTest::newRow("empty body") << httpAnswer("200 OK", QByteArray());
        QTest::newRow("10 MB") << httpAnswer("200 OK", QByteArray(10 * 1024 * 1024, 'x'));
        static const char notHttp[] = "\x00\x01garbage\r\n\r\n";
        QTest::newRow("not http") << QByteArray(notHttp, sizeof(notHttp) - 1);
        QTest::newRow("unreachable") << QByteArray();
    }
    void brokenCameraGivesAReadableFailure()
    {
        QFETCH(QByteArray, answer);
        std::unique_ptr<CBrokenCamera> broken;
        QString address = QStringLiteral("http://127.0.0.1:%1/onvif/device_service").arg(m_camera->port());
        if (answer.isEmpty())
            m_camera->stop();
        else
            broken = std::make_unique<CBrokenCamera>(answer), address = broken->address();
        m_driver = std::make_unique<COnvifDriver>(QStringLiteral("broken"), address, kUser, kPassword);
        connect(m_driver.get(), &IPtzDriver::replied, this, [this](const DriverReply &r) { m_replies << r; });
        const DriverReply r = await(m_driver->listPresets());
        QVERIFY(!r.ok);
        QVERIFY2(r.error.size() > 10, qPrintable(r.error));
        QCOMPARE(m_driver->lastError(), r.error);
        QVERIFY(!m_driver->isConnected());
    }

    void killedCameraStopsByItselfAndDriverReconnects()
    {
        openDriver();
        m_driver->setMoveTimeout(400);
        QSignalSpy connection(m_driver.get(), &IPtzDriver::connectionChanged);
        QVERIFY(await(m_driver->movePanTilt(-1, 0, 30)).ok);
        QVERIFY(head()->status().panTiltMoving);

        m_camera->stop();
        // Nobody can release the move now: the camera's own timeout ends it.
        QTRY_VERIFY(!head()->status().panTiltMoving);
        QTRY_COMPARE(connection.count(), 1);
        QCOMPARE(connection.first().first().toBool(), false);
        QVERIFY(!m_driver->isConnected());
        const DriverReply refused = await(m_driver->listPresets());
        QVERIFY(!refused.ok);
        QVERIFY(!refused.error.isEmpty());

        QVERIFY(m_camera->start());
        QTRY_COMPARE(connection.count(), 2);
        QVERIFY(m_driver->isConnected());
        QVERIFY(await(m_driver->listPresets()).ok);
    }

    void silentCameraFailsTheRequestOnce()
    {
        openDriver();
        m_driver->setRequestTimeout(300);
        m_camera->setLatency(3000);
        const quint64 id = m_driver->listPresets();
        const quint64 waiting = m_driver->setLight(true);
        const DriverReply r = await(id);
        QVERIFY(!r.ok);
        QVERIFY(r.error.contains(QStringLiteral("did not answer")));
        QVERIFY(!await(waiting).ok);
        QVERIFY(!m_driver->isConnected());
        m_camera->setLatency(0);
        QTRY_VERIFY(m_driver->isConnected());
        QVERIFY(await(m_driver->listPresets()).ok);
        // The late answers to the failed requests were not delivered again.
        QCOMPARE(
            std::count_if(m_replies.begin(), m_replies.end(), [id](const DriverReply &x) { return x.requestId == id; }),
            1l);
    }

    void tapsUnderLatencyKeepOrderAndEveryStop()
    {
        openDriver();
        m_camera->setLatency(30);
        QVector<quint64> ids;
        for (int tap = 0; tap < 10; ++tap) {
            ids << m_driver->movePanTilt(tap % 2 ? 1 : -1, 0, 20);
            ids << m_driver->stopPanTilt();
        }
        await(ids.last());
        QTRY_COMPARE(m_replies.size(), ids.size());
        for (int i = 0; i < ids.size(); ++i) {
            QCOMPARE(m_replies.at(i).requestId, ids.at(i));
            QVERIFY(m_replies.at(i).ok);
        }
        QCOMPARE(received(QStringLiteral("Stop")), 10);
        QVERIFY(received(QStringLiteral("ContinuousMove")) <= 10);
        QCOMPARE(m_camera->receivedOperations().last(), QStringLiteral("Stop"));
        QVERIFY(!head()->status().panTiltMoving);
    }
};

QTEST_GUILESS_MAIN(tst_OnvifDriver)
#include "tst_onvifdriver.moc"
