#include "ptz_onvif_camera/cloopbackonvifcamera.h"
#include "site_store/csitestore.h"

#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QUdpSocket>
#include <QtTest>

#include <memory>

using ptz_onvif_camera::CLoopbackOnvifCamera;

// The site tool against a loopback ONVIF camera served by this process: the tool
// runs as its own process while this one's event loop answers for the camera.
class tst_PtzSite : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    std::unique_ptr<CLoopbackOnvifCamera> m_camera;
    quint16 m_discoveryPort = 0;
    QString m_out;
    QString m_err;

    QString storePath() const { return m_dir.filePath(QStringLiteral("site.sqlite")); }

    int run(const QStringList &arguments)
    {
        QProcess tool;
        QSignalSpy finished(&tool, qOverload<int, QProcess::ExitStatus>(&QProcess::finished));
        tool.start(QStringLiteral(PTZ_SITE_BIN), arguments);
        [&] { QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, 20000); }();
        m_out = QString::fromUtf8(tool.readAllStandardOutput());
        m_err = QString::fromUtf8(tool.readAllStandardError());
        return finished.isEmpty() ? -1 : finished.first().first().toInt();
    }

private Q_SLOTS:
    void init()
    {
        CLoopbackOnvifCamera::Options options;
        options.user = QStringLiteral("admin");
        options.password = QStringLiteral("pa55word");
        QUdpSocket free;
        QVERIFY(free.bind(QHostAddress(QHostAddress::LocalHost), 0));
        options.discoveryPort = m_discoveryPort = free.localPort();
        free.close();
        m_camera = std::make_unique<CLoopbackOnvifCamera>(options);
        QVERIFY(m_camera->start());
        QFile::remove(storePath());
    }
    void cleanup() { m_camera.reset(); }

    void addCamera_data()
    {
        QTest::addColumn<QString>("password");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("message");
        QTest::newRow("right password") << QStringLiteral("pa55word") << 0 << QStringLiteral("abilities 1,48,49,50");
        QTest::newRow("wrong password") << QStringLiteral("guessed1") << 1 << QStringLiteral("not authorized");
    }
    // The abilities are what the camera reports; the password is never shown and
    // the store that keeps it is readable by its owner only.
    void addCamera()
    {
        QFETCH(QString, password);
        QFETCH(int, exitCode);
        QFETCH(QString, message);
        QCOMPARE(run({QStringLiteral("add-camera"), QStringLiteral("--kind"), QStringLiteral("onvif"),
                      QStringLiteral("--id"), QStringLiteral("gate"), QStringLiteral("--address"),
                      m_camera->deviceAddress(), QStringLiteral("--user"), QStringLiteral("admin"),
                      QStringLiteral("--password"), password, QStringLiteral("--site"), storePath()}),
                 exitCode);
        const QString said = m_out + m_err;
        QVERIFY2(said.contains(message), qPrintable(said));
        QVERIFY(!said.contains(password));
        QCOMPARE(int(QFile::permissions(storePath()) & 0x0077), 0); // nothing for group or others
        const auto store = site_store::CSiteStore::Open(storePath());
        const auto camera = store->camera(QStringLiteral("gate"));
        QCOMPARE(camera.has_value(), exitCode == 0);
        if (camera)
            QCOMPARE(camera->abilities, (QList<int>{1, 48, 49, 50}));
    }

    void discoverListsTheCamera()
    {
        QCOMPARE(run({QStringLiteral("discover"), QStringLiteral("--probe"),
                      QStringLiteral("127.0.0.1:%1").arg(m_discoveryPort), QStringLiteral("--timeout"),
                      QStringLiteral("1500")}),
                 0);
        QVERIFY2(m_out.startsWith(m_camera->deviceAddress() + QLatin1Char('\t')), qPrintable(m_out + m_err));
        QCOMPARE(m_out.count(QLatin1Char('\n')), 1);
        QVERIFY(m_out.contains(QStringLiteral("onvif://www.onvif.org/type/ptz")));
    }
};

QTEST_MAIN(tst_PtzSite)
#include "tst_ptzsite.moc"
